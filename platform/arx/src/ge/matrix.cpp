#include "arx/gemat3d.h"

#include <algorithm>
#include <cmath>
#include <utility>

const AcGeMatrix3d AcGeMatrix3d::kIdentity;

AcGeMatrix3d::AcGeMatrix3d() {
    setToIdentity();
}

AcGeMatrix3d& AcGeMatrix3d::setToIdentity() {
    for (unsigned r = 0; r < 4; ++r)
        for (unsigned c = 0; c < 4; ++c)
            entry[r][c] = r == c ? 1.0 : 0.0;
    return *this;
}

AcGeMatrix3d& AcGeMatrix3d::setToTranslation(const AcGeVector3d& v) {
    setToIdentity();
    entry[0][3] = v.x;
    entry[1][3] = v.y;
    entry[2][3] = v.z;
    return *this;
}

AcGeMatrix3d& AcGeMatrix3d::setToRotation(double angle, const AcGeVector3d& axis,
                                          const AcGePoint3d& center) {
    setToIdentity();
    const AcGeVector3d u = axis.normal();
    if (u.isZeroLength()) return *this;
    const double c = std::cos(angle), s = std::sin(angle), t = 1.0 - c;
    const double r[3][3] = {{t * u.x * u.x + c, t * u.x * u.y - s * u.z, t * u.x * u.z + s * u.y},
                            {t * u.x * u.y + s * u.z, t * u.y * u.y + c, t * u.y * u.z - s * u.x},
                            {t * u.x * u.z - s * u.y, t * u.y * u.z + s * u.x, t * u.z * u.z + c}};
    const double p[3] = {center.x, center.y, center.z};
    for (unsigned i = 0; i < 3; ++i) {
        double moved = p[i];
        for (unsigned j = 0; j < 3; ++j) {
            entry[i][j] = r[i][j];
            moved -= r[i][j] * p[j];
        }
        entry[i][3] = moved;
    }
    return *this;
}

AcGeMatrix3d& AcGeMatrix3d::setToScaling(double scale, const AcGePoint3d& center) {
    setToIdentity();
    const double p[3] = {center.x, center.y, center.z};
    for (unsigned i = 0; i < 3; ++i) {
        entry[i][i] = scale;
        entry[i][3] = p[i] * (1.0 - scale);
    }
    return *this;
}

AcGeMatrix3d& AcGeMatrix3d::setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                                           const AcGeVector3d& yAxis, const AcGeVector3d& zAxis) {
    setToIdentity();
    const AcGeVector3d cols[4] = {xAxis, yAxis, zAxis, origin.asVector()};
    for (unsigned c = 0; c < 4; ++c)
        for (unsigned r = 0; r < 3; ++r)
            entry[r][c] = cols[c][r];
    return *this;
}

void AcGeMatrix3d::getCoordSystem(AcGePoint3d& origin, AcGeVector3d& xAxis, AcGeVector3d& yAxis,
                                  AcGeVector3d& zAxis) const {
    xAxis.set(entry[0][0], entry[1][0], entry[2][0]);
    yAxis.set(entry[0][1], entry[1][1], entry[2][1]);
    zAxis.set(entry[0][2], entry[1][2], entry[2][2]);
    origin.set(entry[0][3], entry[1][3], entry[2][3]);
}

AcGeMatrix3d&
AcGeMatrix3d::setToAlignCoordSys(const AcGePoint3d& fromOrigin, const AcGeVector3d& fromXAxis,
                                 const AcGeVector3d& fromYAxis, const AcGeVector3d& fromZAxis,
                                 const AcGePoint3d& toOrigin, const AcGeVector3d& toXAxis,
                                 const AcGeVector3d& toYAxis, const AcGeVector3d& toZAxis) {
    AcGeMatrix3d from, to;
    from.setCoordSystem(fromOrigin, fromXAxis, fromYAxis, fromZAxis);
    to.setCoordSystem(toOrigin, toXAxis, toYAxis, toZAxis);
    return *this = to * from.inverse();
}

// The arbitrary-axis rule gives each normal its own plane system.
AcGeMatrix3d& AcGeMatrix3d::setToPlaneToWorld(const AcGeVector3d& normal) {
    const AcGeVector3d z = normal.normal();
    const AcGeVector3d x = z.perpVector().normal();
    const AcGeVector3d y = z.crossProduct(x).normal();
    return setCoordSystem(AcGePoint3d::kOrigin, x, y, z);
}

AcGeMatrix3d& AcGeMatrix3d::setToWorldToPlane(const AcGeVector3d& normal) {
    setToPlaneToWorld(normal);
    return invert();
}

AcGeMatrix3d AcGeMatrix3d::translation(const AcGeVector3d& v) {
    return AcGeMatrix3d().setToTranslation(v);
}

AcGeMatrix3d AcGeMatrix3d::rotation(double angle, const AcGeVector3d& axis,
                                    const AcGePoint3d& center) {
    return AcGeMatrix3d().setToRotation(angle, axis, center);
}

AcGeMatrix3d AcGeMatrix3d::scaling(double scale, const AcGePoint3d& center) {
    return AcGeMatrix3d().setToScaling(scale, center);
}

AcGeMatrix3d AcGeMatrix3d::alignCoordSys(const AcGePoint3d& fromOrigin,
                                         const AcGeVector3d& fromXAxis,
                                         const AcGeVector3d& fromYAxis,
                                         const AcGeVector3d& fromZAxis, const AcGePoint3d& toOrigin,
                                         const AcGeVector3d& toXAxis, const AcGeVector3d& toYAxis,
                                         const AcGeVector3d& toZAxis) {
    return AcGeMatrix3d().setToAlignCoordSys(fromOrigin, fromXAxis, fromYAxis, fromZAxis, toOrigin,
                                             toXAxis, toYAxis, toZAxis);
}

AcGeMatrix3d AcGeMatrix3d::worldToPlane(const AcGeVector3d& normal) {
    return AcGeMatrix3d().setToWorldToPlane(normal);
}

AcGeMatrix3d AcGeMatrix3d::planeToWorld(const AcGeVector3d& normal) {
    return AcGeMatrix3d().setToPlaneToWorld(normal);
}

AcGeVector3d AcGeMatrix3d::translation() const {
    return {entry[0][3], entry[1][3], entry[2][3]};
}

double AcGeMatrix3d::scale() const {
    double largest = 0.0;
    for (unsigned c = 0; c < 3; ++c)
        largest = std::max(largest, AcGeVector3d(entry[0][c], entry[1][c], entry[2][c]).length());
    return largest;
}

double AcGeMatrix3d::det() const {
    // Laplace expansion over the first row, with 3 by 3 minors.
    auto minor = [this](unsigned skipRow, unsigned skipCol) {
        double m[3][3];
        for (unsigned r = 0, i = 0; r < 4; ++r) {
            if (r == skipRow) continue;
            for (unsigned c = 0, j = 0; c < 4; ++c)
                if (c != skipCol) m[i][j++] = entry[r][c];
            ++i;
        }
        return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
               m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
               m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
    };
    double d = 0.0;
    for (unsigned c = 0; c < 4; ++c)
        d += (c % 2 ? -1.0 : 1.0) * entry[0][c] * minor(0, c);
    return d;
}

AcGeMatrix3d AcGeMatrix3d::inverse() const {
    // Gauss-Jordan with partial pivoting on [this | identity].
    double a[4][8];
    for (unsigned r = 0; r < 4; ++r)
        for (unsigned c = 0; c < 8; ++c)
            a[r][c] = c < 4 ? entry[r][c] : (c - 4 == r ? 1.0 : 0.0);
    for (unsigned col = 0; col < 4; ++col) {
        unsigned pivot = col;
        for (unsigned r = col + 1; r < 4; ++r)
            if (std::fabs(a[r][col]) > std::fabs(a[pivot][col])) pivot = r;
        if (std::fabs(a[pivot][col]) < 1e-300) return *this;
        if (pivot != col) std::swap(a[pivot], a[col]);
        const double p = a[col][col];
        for (double& v : a[col])
            v /= p;
        for (unsigned r = 0; r < 4; ++r) {
            if (r == col || a[r][col] == 0.0) continue;
            const double f = a[r][col];
            for (unsigned c = 0; c < 8; ++c)
                a[r][c] -= f * a[col][c];
        }
    }
    AcGeMatrix3d inv;
    for (unsigned r = 0; r < 4; ++r)
        for (unsigned c = 0; c < 4; ++c)
            inv.entry[r][c] = a[r][c + 4];
    return inv;
}

AcGeMatrix3d& AcGeMatrix3d::invert() {
    return *this = inverse();
}

AcGeMatrix3d AcGeMatrix3d::transpose() const {
    AcGeMatrix3d t;
    for (unsigned r = 0; r < 4; ++r)
        for (unsigned c = 0; c < 4; ++c)
            t.entry[r][c] = entry[c][r];
    return t;
}

bool AcGeMatrix3d::isSingular(const AcGeTol& tol) const {
    return std::fabs(det()) <= tol.equalVector();
}

bool AcGeMatrix3d::isEqualTo(const AcGeMatrix3d& m, const AcGeTol& tol) const {
    for (unsigned r = 0; r < 4; ++r)
        for (unsigned c = 0; c < 4; ++c)
            if (std::fabs(entry[r][c] - m.entry[r][c]) > tol.equalVector()) return false;
    return true;
}

bool AcGeMatrix3d::isUniScaledOrtho(const AcGeTol& tol) const {
    AcGePoint3d o;
    AcGeVector3d x, y, z;
    getCoordSystem(o, x, y, z);
    const double s = x.length();
    return s > tol.equalVector() && std::fabs(y.length() - s) <= tol.equalVector() * s &&
           std::fabs(z.length() - s) <= tol.equalVector() * s && x.isPerpendicularTo(y, tol) &&
           y.isPerpendicularTo(z, tol) && z.isPerpendicularTo(x, tol);
}

AcGeMatrix3d& AcGeMatrix3d::setToProduct(const AcGeMatrix3d& a, const AcGeMatrix3d& b) {
    AcGeMatrix3d p;
    for (unsigned r = 0; r < 4; ++r)
        for (unsigned c = 0; c < 4; ++c) {
            double sum = 0.0;
            for (unsigned k = 0; k < 4; ++k)
                sum += a.entry[r][k] * b.entry[k][c];
            p.entry[r][c] = sum;
        }
    return *this = p;
}

AcGeMatrix3d& AcGeMatrix3d::preMultBy(const AcGeMatrix3d& left) {
    return setToProduct(left, *this);
}

AcGeMatrix3d& AcGeMatrix3d::postMultBy(const AcGeMatrix3d& right) {
    return setToProduct(*this, right);
}

AcGeMatrix3d AcGeMatrix3d::operator*(const AcGeMatrix3d& m) const {
    return AcGeMatrix3d().setToProduct(*this, m);
}

AcGeMatrix3d& AcGeMatrix3d::operator*=(const AcGeMatrix3d& m) {
    return postMultBy(m);
}
