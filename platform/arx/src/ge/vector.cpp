#include "arx/gemat3d.h"

#include <cmath>

AcGeTol AcGeContext::gTol;

const AcGeVector2d AcGeVector2d::kIdentity{0.0, 0.0};
const AcGeVector2d AcGeVector2d::kXAxis{1.0, 0.0};
const AcGeVector2d AcGeVector2d::kYAxis{0.0, 1.0};
const AcGePoint2d AcGePoint2d::kOrigin{0.0, 0.0};
const AcGeVector3d AcGeVector3d::kIdentity{0.0, 0.0, 0.0};
const AcGeVector3d AcGeVector3d::kXAxis{1.0, 0.0, 0.0};
const AcGeVector3d AcGeVector3d::kYAxis{0.0, 1.0, 0.0};
const AcGeVector3d AcGeVector3d::kZAxis{0.0, 0.0, 1.0};
const AcGePoint3d AcGePoint3d::kOrigin{0.0, 0.0, 0.0};

double AcGeVector2d::length() const {
    return std::hypot(x, y);
}

AcGeVector2d& AcGeVector2d::normalize(const AcGeTol& tol) {
    const double len = length();
    if (len > tol.equalVector()) {
        x /= len;
        y /= len;
    }
    return *this;
}

bool AcGeVector2d::isEqualTo(const AcGeVector2d& v, const AcGeTol& tol) const {
    return (*this - v).length() <= tol.equalVector();
}

bool AcGePoint2d::isEqualTo(const AcGePoint2d& p, const AcGeTol& tol) const {
    return distanceTo(p) <= tol.equalPoint();
}

// Without squaring first: a vector above 1e154 keeps a finite length.
double AcGeVector3d::length() const {
    return std::hypot(x, y, z);
}

AcGeVector3d AcGeVector3d::crossProduct(const AcGeVector3d& v) const {
    return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
}

AcGeVector3d& AcGeVector3d::normalize(const AcGeTol& tol) {
    const double len = length();
    if (len > tol.equalVector()) *this = *this / len;
    return *this;
}

AcGeVector3d AcGeVector3d::normal(const AcGeTol& tol) const {
    AcGeVector3d v = *this;
    return v.normalize(tol);
}

AcGeVector3d AcGeVector3d::perpVector() const {
    constexpr double kArbitraryAxisLimit = 1.0 / 64.0;
    if (std::fabs(x) < kArbitraryAxisLimit && std::fabs(y) < kArbitraryAxisLimit)
        return kYAxis.crossProduct(*this);
    return kZAxis.crossProduct(*this);
}

double AcGeVector3d::angleTo(const AcGeVector3d& v) const {
    return std::atan2(crossProduct(v).length(), dotProduct(v));
}

double AcGeVector3d::angleTo(const AcGeVector3d& v, const AcGeVector3d& reference) const {
    const double angle = angleTo(v);
    if (crossProduct(v).dotProduct(reference) < 0.0) return 2.0 * M_PI - angle;
    return angle;
}

AcGeVector3d& AcGeVector3d::rotateBy(double angle, const AcGeVector3d& axis) {
    return transformBy(AcGeMatrix3d::rotation(angle, axis));
}

AcGeVector3d& AcGeVector3d::transformBy(const AcGeMatrix3d& m) {
    return *this = m * *this;
}

AcGeVector3d& AcGeVector3d::negate() {
    return *this = -*this;
}

bool AcGeVector3d::isZeroLength(const AcGeTol& tol) const {
    return length() <= tol.equalVector();
}

bool AcGeVector3d::isUnitLength(const AcGeTol& tol) const {
    return std::fabs(length() - 1.0) <= tol.equalVector();
}

bool AcGeVector3d::isEqualTo(const AcGeVector3d& v, const AcGeTol& tol) const {
    return (*this - v).length() <= tol.equalVector();
}

bool AcGeVector3d::isParallelTo(const AcGeVector3d& v, const AcGeTol& tol) const {
    if (isZeroLength(tol) || v.isZeroLength(tol)) return false;
    return normal(tol).crossProduct(v.normal(tol)).length() <= tol.equalVector();
}

bool AcGeVector3d::isCodirectionalTo(const AcGeVector3d& v, const AcGeTol& tol) const {
    if (isZeroLength(tol) || v.isZeroLength(tol)) return false;
    return normal(tol).isEqualTo(v.normal(tol), tol);
}

bool AcGeVector3d::isPerpendicularTo(const AcGeVector3d& v, const AcGeTol& tol) const {
    if (isZeroLength(tol) || v.isZeroLength(tol)) return false;
    return std::fabs(normal(tol).dotProduct(v.normal(tol))) <= tol.equalVector();
}

AcGeVector3d operator*(double s, const AcGeVector3d& v) {
    return v * s;
}

AcGeVector3d operator*(const AcGeMatrix3d& m, const AcGeVector3d& v) {
    const auto& e = m.entry;
    return {e[0][0] * v.x + e[0][1] * v.y + e[0][2] * v.z,
            e[1][0] * v.x + e[1][1] * v.y + e[1][2] * v.z,
            e[2][0] * v.x + e[2][1] * v.y + e[2][2] * v.z};
}

bool AcGePoint3d::isEqualTo(const AcGePoint3d& p, const AcGeTol& tol) const {
    return distanceTo(p) <= tol.equalPoint();
}

AcGePoint3d& AcGePoint3d::transformBy(const AcGeMatrix3d& m) {
    return *this = m * *this;
}

AcGePoint3d operator*(const AcGeMatrix3d& m, const AcGePoint3d& p) {
    const auto& e = m.entry;
    AcGePoint3d r{e[0][0] * p.x + e[0][1] * p.y + e[0][2] * p.z + e[0][3],
                  e[1][0] * p.x + e[1][1] * p.y + e[1][2] * p.z + e[1][3],
                  e[2][0] * p.x + e[2][1] * p.y + e[2][2] * p.z + e[2][3]};
    const double w = e[3][0] * p.x + e[3][1] * p.y + e[3][2] * p.z + e[3][3];
    if (w != 1.0 && w != 0.0) r.set(r.x / w, r.y / w, r.z / w);
    return r;
}
