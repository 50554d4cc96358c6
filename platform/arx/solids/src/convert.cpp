// Value types, matrices and their conversion to the modelling kernel's geometry.
#include "internal.h"

#include <BRepBuilderAPI_Transform.hxx>
#include <TopLoc_Location.hxx>
#include <gp_Mat.hxx>

#include <cmath>

namespace arxsolids {

const char* statusName(Status status) {
    switch (status) {
    case Status::eOk:
        return "eOk";
    case Status::eInvalidInput:
        return "eInvalidInput";
    case Status::eDegenerateGeometry:
        return "eDegenerateGeometry";
    case Status::eNonCoplanarGeometry:
        return "eNonCoplanarGeometry";
    case Status::eNonPlanarEntity:
        return "eNonPlanarEntity";
    case Status::eOpenLoop:
        return "eOpenLoop";
    case Status::eSelfIntersecting:
        return "eSelfIntersecting";
    case Status::eCannotScaleNonUniformly:
        return "eCannotScaleNonUniformly";
    case Status::eNotApplicable:
        return "eNotApplicable";
    case Status::eNegativeCoordinates:
        return "eNegativeCoordinates";
    case Status::eFileAccessErr:
        return "eFileAccessErr";
    case Status::eGeneralModelingFailure:
        return "eGeneralModelingFailure";
    case Status::eOutOfMemory:
        return "eOutOfMemory";
    }
    return "unknown";
}

Matrix Matrix::translation(const Vec3& v) {
    Matrix t;
    t(0, 3) = v.x;
    t(1, 3) = v.y;
    t(2, 3) = v.z;
    return t;
}

Matrix Matrix::rotation(double angle, const Vec3& axis, const Vec3& point) {
    const double len = std::sqrt(axis.x * axis.x + axis.y * axis.y + axis.z * axis.z);
    const double x = axis.x / len, y = axis.y / len, z = axis.z / len;
    const double c = std::cos(angle), s = std::sin(angle), t = 1.0 - c;
    Matrix r;
    const double rot[3][3] = {{t * x * x + c, t * x * y - s * z, t * x * z + s * y},
                              {t * x * y + s * z, t * y * y + c, t * y * z - s * x},
                              {t * x * z - s * y, t * y * z + s * x, t * z * z + c}};
    const double p[3] = {point.x, point.y, point.z};
    for (int i = 0; i < 3; ++i) {
        double moved = 0.0;
        for (int j = 0; j < 3; ++j) {
            r(i, j) = rot[i][j];
            moved += rot[i][j] * p[j];
        }
        r(i, 3) = p[i] - moved;
    }
    return r;
}

Matrix Matrix::scaling(double factor, const Vec3& point) {
    Matrix s;
    const double p[3] = {point.x, point.y, point.z};
    for (int i = 0; i < 3; ++i) {
        s(i, i) = factor;
        s(i, 3) = p[i] * (1.0 - factor);
    }
    return s;
}

Matrix Matrix::operator*(const Matrix& rhs) const {
    Matrix product;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k)
                sum += (*this)(i, k) * rhs(k, j);
            product(i, j) = sum;
        }
    return product;
}

Vec3 polylinePoint(const PolylineCurve& polyline, std::size_t index) {
    // Arbitrary-axis rule: the plane's X axis is world Y or Z crossed with the normal.
    gp_Dir n(0, 0, 1);
    if (auto d = toDir(polyline.normal)) n = *d;
    const gp_Dir ref = (std::abs(n.X()) < 1.0 / 64.0 && std::abs(n.Y()) < 1.0 / 64.0)
                           ? gp_Dir(0, 1, 0)
                           : gp_Dir(0, 0, 1);
    const gp_Dir ax = ref.Crossed(n);
    const gp_Dir ay = n.Crossed(ax);
    const PolylineVertex& v = polyline.vertices.at(index);
    return fromXYZ(ax.XYZ() * v.x + ay.XYZ() * v.y + n.XYZ() * polyline.elevation);
}

bool isFinite(const Vec3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

std::optional<gp_Dir> toDir(const Vec3& v) {
    if (!isFinite(v)) return std::nullopt;
    const double len = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
    if (len < 1e-300 || !std::isfinite(len)) return std::nullopt;
    return gp_Dir(v.x / len, v.y / len, v.z / len);
}

Status toTrsf(const Matrix& matrix, gp_Trsf& trsf) {
    for (double value : matrix.m)
        if (!std::isfinite(value)) return Status::eCannotScaleNonUniformly;
    // No perspective part.
    if (matrix(3, 0) != 0.0 || matrix(3, 1) != 0.0 || matrix(3, 2) != 0.0 || matrix(3, 3) != 1.0)
        return Status::eCannotScaleNonUniformly;
    gp_Mat a;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            a.SetValue(i + 1, j + 1, matrix(i, j));
    const double det = a.Determinant();
    if (!(std::abs(det) > 1e-300)) return Status::eCannotScaleNonUniformly;
    const double scale = std::cbrt(det);
    // A similarity is scale times an orthogonal matrix: A A^T = scale^2 I.
    const gp_Mat gram = a.Multiplied(a.Transposed());
    const double s2 = scale * scale;
    for (int i = 1; i <= 3; ++i)
        for (int j = 1; j <= 3; ++j)
            if (std::abs(gram.Value(i, j) - (i == j ? s2 : 0.0)) > 1e-9 * s2)
                return Status::eCannotScaleNonUniformly;
    trsf.SetValues(matrix(0, 0), matrix(0, 1), matrix(0, 2), matrix(0, 3), matrix(1, 0),
                   matrix(1, 1), matrix(1, 2), matrix(1, 3), matrix(2, 0), matrix(2, 1),
                   matrix(2, 2), matrix(2, 3));
    return Status::eOk;
}

TopoDS_Shape transformed(const TopoDS_Shape& shape, const gp_Trsf& trsf) {
    // A rigid move folds into the shape's one location, so that placing a solid step by step
    // does not grow a chain of locations; scaling and mirrors rebuild the geometry.
    if (!trsf.IsNegative() && std::abs(trsf.ScaleFactor() - 1.0) <= 1e-12)
        return shape.Located(TopLoc_Location(trsf.Multiplied(shape.Location().Transformation())));
    BRepBuilderAPI_Transform maker(shape, trsf, false);
    return maker.Shape();
}

} // namespace arxsolids
