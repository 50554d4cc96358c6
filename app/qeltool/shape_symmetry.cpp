#include "shape_symmetry.h"

#include <fmt/format.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <string_view>

namespace qeltool {

namespace {

bool hasParam(QelObject& o, const char* name) {
    return o.GetParam(name, 0) != nullptr;
}

bool doubleParam(QelObject& o, const char* name, double& value) {
    QelParam* p = o.GetParam(name, 0);
    if (!p || p->GetType() != QelDoubleType) return false;
    p->GetValue(value);
    return true;
}

// The far circle straight above the near one: a direction along +Z, or none.
bool concentric(QelObject& o, double tolerance) {
    QelParam* p = o.GetParam("direction", 0);
    if (!p) return true;
    if (p->GetType() != QelDoubleArrayType || p->GetArraySize() != 3) return false;
    double* d = nullptr;
    unsigned n = 0;
    p->GetValue(d, n, false);
    const double length = std::hypot(d[0], d[1], d[2]);
    return length > 0 && std::isfinite(length) && d[2] > 0 &&
           std::hypot(d[0], d[1]) <= tolerance * length;
}

// An arc of a whole turn; a single-precision turn is whole too.
bool fullCircle(QelObject& o, double tolerance) {
    double end = 0;
    return doubleParam(o, "endAngle", end) &&
           std::fabs(end) >= 2 * M_PI * (1 - std::max(tolerance, double(FLT_EPSILON)));
}

// The valve's caps sit at its base and part way up, not one at each end.
bool withoutCaps(QelObject& o, double) {
    return !hasParam(o, "cap0") && !hasParam(o, "cap1");
}

// The shapes as the importer builds them about their local origin: the round solids about
// local Z; the tee's run along Z through the origin and its branch along +X; the valve's cones
// along Z through the origin and its stem along +Y.
struct ShapeRule {
    const char* className;
    Symmetry symmetry;
    bool (*keeps)(QelObject&, double tolerance);
};

constexpr ShapeRule kShapes[] = {
    {"Cylinder", Symmetry::AboutAxis, nullptr},
    {"Cone", Symmetry::AboutAxis, nullptr},
    {"Flange", Symmetry::AboutAxis, nullptr},
    {"Reducer", Symmetry::AboutAxis, concentric},
    {"CircularArc3d", Symmetry::AboutAxis, fullCircle},
    {"Torus", Symmetry::AxisEitherWay, nullptr},
    {"Sphere", Symmetry::Any, nullptr},
    {"Tee", Symmetry::HalfTurnX, nullptr},
    {"Valve", Symmetry::HalfTurnY, withoutCaps},
};

using Matrix = double[9]; // row by row

void matrixOf(const double* rotation, Matrix m) {
    const double none[4] = {0, 0, 1, 0};
    rotation_to_affine(rotation ? rotation : none, m);
}

// The angle between two turns from their matrices: they differ by 2 sqrt(2) sin(angle / 2) in
// the Frobenius norm, which keeps small angles exact where the arc cosine of the trace would not.
double angleBetween(const Matrix a, const Matrix b) {
    double sum = 0;
    for (int i = 0; i < 9; ++i)
        sum += (a[i] - b[i]) * (a[i] - b[i]);
    return 2 * std::asin(std::min(1.0, std::sqrt(sum) / (2 * std::sqrt(2.0))));
}

// The angle between two columns (local axes in the world), or between one and the other's
// opposite.
double axisAngle(const Matrix a, const Matrix b, int column, double sign = 1) {
    double sum = 0;
    for (int row = 0; row < 3; ++row) {
        const double d = a[3 * row + column] - sign * b[3 * row + column];
        sum += d * d;
    }
    return 2 * std::asin(std::min(1.0, std::sqrt(sum) / 2));
}

// The frame turned by a half turn about one of its own axes: the other two columns reversed.
double halfTurnAngle(const Matrix a, const Matrix b, int axis) {
    Matrix turned;
    for (int i = 0; i < 9; ++i)
        turned[i] = i % 3 == axis ? b[i] : -b[i];
    return angleBetween(a, turned);
}

} // namespace

Symmetry symmetryOf(QelObject& object, double tolerance) {
    const std::string_view name = object.GetName();
    for (const ShapeRule& rule : kShapes)
        if (name == rule.className)
            return !rule.keeps || rule.keeps(object, tolerance) ? rule.symmetry : Symmetry::None;
    return Symmetry::None;
}

PoseTurn comparePoseTurns(Symmetry symmetry, const double* a, const double* b) {
    Matrix ma, mb;
    matrixOf(a, ma);
    matrixOf(b, mb);
    PoseTurn t;
    t.turn = angleBetween(ma, mb);
    // A rotation that is not a number places nothing: no symmetry makes it the same shape.
    if (!std::all_of(ma, ma + 9, [](double v) { return std::isfinite(v); }) ||
        !std::all_of(mb, mb + 9, [](double v) { return std::isfinite(v); })) {
        t.shape = HUGE_VAL;
        return t;
    }
    const double up = axisAngle(ma, mb, 2);
    t.endForEnd = up > M_PI / 2;
    switch (symmetry) {
    case Symmetry::None:
        t.shape = t.turn;
        break;
    case Symmetry::AboutAxis:
        t.shape = up;
        break;
    case Symmetry::AxisEitherWay:
        t.shape = std::min(up, axisAngle(ma, mb, 2, -1));
        break;
    case Symmetry::Any:
        t.shape = 0;
        break;
    case Symmetry::HalfTurnX:
    case Symmetry::HalfTurnY:
        t.shape = std::min(t.turn, halfTurnAngle(ma, mb, symmetry == Symmetry::HalfTurnX ? 0 : 1));
        break;
    }
    return t;
}

std::string sameShapeText(Symmetry symmetry, const PoseTurn& t) {
    if (symmetry == Symmetry::Any)
        return fmt::format("the same shape: turned by {:.3g} rad", t.turn);
    if (t.endForEnd) return "the same shape: turned end for end";
    return fmt::format("the same shape: turned about its own axis by {:.3g} rad", t.turn);
}

} // namespace qeltool
