// Boxes of bodies: the enclosing box holds the body and stays near the exact one; both are kept
// between calls and follow every change of the body.
#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "checks.h"

namespace solidstest {
namespace {

// A body posed off the axes: turned about an oblique axis, then moved away from the origin.
constexpr Vec3 kTiltAxis{1, 2, 3};
constexpr double kTilt = 0.7;
constexpr Vec3 kOffset{10, -4, 2.5};

Matrix tilt() {
    return Matrix::translation(kOffset) * Matrix::rotation(kTilt, kTiltAxis);
}

// The unit Z axis after the tilt: the axis of a posed frustum or torus.
Vec3 tiltedZ() {
    const Matrix m = tilt();
    return {m(0, 2), m(1, 2), m(2, 2)};
}

// The exact box of a circle of radius r about axis n (unit) through c, in each coordinate.
double circleHalfWidth(const Vec3& n, double r, int i) {
    const double ni = i == 0 ? n.x : i == 1 ? n.y : n.z;
    return r * std::sqrt(std::max(0.0, 1.0 - ni * ni));
}

struct Posed {
    std::string name;
    std::function<Status(Solid&)> build;
    // Half the exact box in each coordinate, about kOffset, from the closed form.
    std::function<double(int)> half;
};

std::vector<Posed> posedPrimitives() {
    const Vec3 n = tiltedZ();
    const auto coord = [](const Vec3& v, int i) { return i == 0 ? v.x : i == 1 ? v.y : v.z; };
    return {
        {"cylinder", [](Solid& s) { return s.createFrustum(4, 1, 1, 1); },
         [=](int i) { return 2 * std::abs(coord(n, i)) + circleHalfWidth(n, 1, i); }},
        {"sphere", [](Solid& s) { return s.createSphere(1.5); }, [](int) { return 1.5; }},
        {"torus", [](Solid& s) { return s.createTorus(3, 0.25); },
         [=](int i) { return circleHalfWidth(n, 3, i) + 0.25; }},
        {"thin torus", [](Solid& s) { return s.createTorus(1, 0.02); },
         [=](int i) { return circleHalfWidth(n, 1, i) + 0.02; }},
    };
}

Vec3 corner(double sign, const std::function<double(int)>& half) {
    return {kOffset.x + sign * half(0), kOffset.y + sign * half(1), kOffset.z + sign * half(2)};
}

double diagonal(const Extents& e) {
    return length(e.max - e.min);
}

// Whether the box holds `inner`, allowing the point resolution.
::testing::AssertionResult holds(const Extents& box, const Extents& inner) {
    const double slack = kPointResolution * std::max(1.0, diagonal(inner));
    const double lo[] = {inner.min.x - box.min.x, inner.min.y - box.min.y, inner.min.z - box.min.z};
    const double hi[] = {box.max.x - inner.max.x, box.max.y - inner.max.y, box.max.z - inner.max.z};
    for (int i = 0; i < 3; ++i)
        if (lo[i] < -slack || hi[i] < -slack)
            return ::testing::AssertionFailure() << "the box misses the body in coordinate " << i
                                                 << " by " << std::max(-lo[i], -hi[i]);
    return ::testing::AssertionSuccess();
}

// How far the box stands out of `inner` at its worst side.
double excess(const Extents& box, const Extents& inner) {
    return std::max({inner.min.x - box.min.x, inner.min.y - box.min.y, inner.min.z - box.min.z,
                     box.max.x - inner.max.x, box.max.y - inner.max.y, box.max.z - inner.max.z});
}

TEST(Extents, EnclosingBoxHoldsEachPosedPrimitiveAndStaysNearItsExactBox) {
    for (const Posed& p : posedPrimitives()) {
        SCOPED_TRACE(p.name);
        Solid s;
        ASSERT_OK(p.build(s));
        ASSERT_OK(s.transformBy(tilt()));
        const Extents closed{corner(-1, p.half), corner(1, p.half)};
        const double size = diagonal(closed);
        EXPECT_TRUE(sameExtents(closed, s, size));
        Extents box;
        ASSERT_OK(s.getBoundingBox(box));
        EXPECT_TRUE(holds(box, closed));
        EXPECT_LE(excess(box, closed), 0.1 * size);
    }
}

TEST(Extents, EnclosingBoxOfABodyAlongTheAxesIsItsExactBox) {
    Solid cylinder;
    ASSERT_OK(cylinder.createFrustum(4, 1, 1, 1));
    Solid box;
    ASSERT_OK(box.createBox(1, 2, 3));
    Solid torus;
    ASSERT_OK(torus.createTorus(3, 0.5));
    for (Solid* s : {&cylinder, &box, &torus}) {
        ASSERT_OK(s->transformBy(Matrix::translation(kOffset)));
        Extents exact, enclosing;
        ASSERT_OK(s->getGeomExtents(exact));
        ASSERT_OK(s->getBoundingBox(enclosing));
        EXPECT_TRUE(holds(enclosing, exact));
        EXPECT_LE(excess(enclosing, exact), 2 * kPointResolution * diagonal(exact));
    }
}

// Boxes are kept between calls; a move, a new build or a boolean must not leave the old ones.
TEST(Extents, BoxesFollowEveryChangeOfTheBody) {
    Solid s;
    ASSERT_OK(s.createSphere(1));
    Extents before, enclosingBefore;
    ASSERT_OK(s.getGeomExtents(before));
    ASSERT_OK(s.getBoundingBox(enclosingBefore));
    const Solid copy = s;

    ASSERT_OK(s.transformBy(Matrix::translation(kOffset)));
    EXPECT_TRUE(sameExtents({{kOffset.x - 1, kOffset.y - 1, kOffset.z - 1},
                             {kOffset.x + 1, kOffset.y + 1, kOffset.z + 1}},
                            s, 2));
    Extents moved;
    ASSERT_OK(s.getBoundingBox(moved));
    EXPECT_TRUE(samePoint(enclosingBefore.min, moved.min - kOffset, 2, kRelTol));
    // The copy made before the move keeps its own boxes.
    EXPECT_TRUE(sameExtents(before, copy, 2));

    ASSERT_OK(s.createBox(2, 4, 6));
    EXPECT_TRUE(sameExtents({{-1, -2, -3}, {1, 2, 3}}, s, 6));
    ASSERT_OK(s.getBoundingBox(moved));
    EXPECT_TRUE(holds(moved, {{-1, -2, -3}, {1, 2, 3}}));

    Solid cutter;
    ASSERT_OK(cutter.createBox(2, 4, 6));
    ASSERT_OK(cutter.transformBy(Matrix::translation({0, 0, 3})));
    ASSERT_OK(s.booleanOper(BoolOperType::kBoolSubtract, cutter));
    EXPECT_TRUE(sameExtents({{-1, -2, -3}, {1, 2, 0}}, s, 6));
    ASSERT_OK(s.getBoundingBox(moved));
    EXPECT_LE(moved.max.z, 2 * kPointResolution * 6);
}

} // namespace
} // namespace solidstest
