// Invariant checkers shared by the solids tests. Tolerances are relative to the size of the
// geometry under test: the kernel integrates exact surfaces, so its figures agree with the
// closed forms to many digits.
#pragma once

#include <arxsolids/solid.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

namespace solidstest {

using namespace arxsolids;
constexpr double kPi = std::numbers::pi;

// Relative agreement of computed measures with closed forms.
constexpr double kRelTol = 1e-9;

inline double length(const Vec3& v) {
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}
inline Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline ::testing::AssertionResult statusIs(Status expected, Status actual) {
    if (expected == actual) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "expected " << statusName(expected) << ", got " << statusName(actual);
}
#define EXPECT_STATUS(expected, call) EXPECT_TRUE(solidstest::statusIs(expected, call))
#define ASSERT_OK(call) ASSERT_TRUE(solidstest::statusIs(arxsolids::Status::eOk, call))

inline ::testing::AssertionResult near(double expected, double actual, double scale,
                                       double rel = kRelTol) {
    if (std::abs(expected - actual) <= rel * scale) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "expected " << expected << ", got " << actual << " (difference " << actual - expected
           << ", allowed " << rel * scale << ")";
}

// Two points agree to a fraction of the geometry's size.
inline ::testing::AssertionResult samePoint(const Vec3& expected, const Vec3& actual, double size,
                                            double rel = kRelTol) {
    if (length(expected - actual) <= rel * size) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "expected (" << expected.x << ", " << expected.y << ", " << expected.z << "), got ("
           << actual.x << ", " << actual.y << ", " << actual.z << ")";
}

inline ::testing::AssertionResult sameDirection(const Vec3& expected, const Vec3& actual,
                                                double rel = 1e-9) {
    const double d = dot(expected, actual) / (length(expected) * length(actual));
    if (std::abs(d - 1.0) <= rel) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "expected direction (" << expected.x << ", " << expected.y << ", " << expected.z
           << "), got (" << actual.x << ", " << actual.y << ", " << actual.z << ")";
}

inline double volumeOf(const Solid& solid) {
    MassProps props;
    EXPECT_STATUS(Status::eOk, solid.getMassProp(props));
    return props.volume;
}

inline double areaOf(const Solid& solid) {
    double area = 0.0;
    EXPECT_STATUS(Status::eOk, solid.getArea(area));
    return area;
}

// A body rebuilt from a description of another (its boundary walk, its SAT text) is the same
// body: volume, centroid and area to `rel` of its size, the same topology and face kinds.
inline void expectSameBody(const Solid& original, const Solid& copy, double size,
                           double rel = kRelTol) {
    MassProps a, b;
    ASSERT_TRUE(statusIs(Status::eOk, original.getMassProp(a)));
    ASSERT_TRUE(statusIs(Status::eOk, copy.getMassProp(b)));
    EXPECT_TRUE(near(a.volume, b.volume, size * size * size, rel));
    EXPECT_TRUE(samePoint(a.centroid, b.centroid, size, rel));
    EXPECT_TRUE(near(areaOf(original), areaOf(copy), size * size, rel));
    const TopologyCounts x = original.topology(), y = copy.topology();
    EXPECT_EQ(x.solids, y.solids);
    EXPECT_EQ(x.faces, y.faces);
    EXPECT_EQ(x.edges, y.edges);
    EXPECT_EQ(x.vertices, y.vertices);
    EXPECT_EQ(x.loops, y.loops);
    EXPECT_EQ(x.planar, y.planar);
    EXPECT_EQ(x.cylindrical, y.cylindrical);
    EXPECT_EQ(x.conical, y.conical);
    EXPECT_EQ(x.spherical, y.spherical);
    EXPECT_EQ(x.toroidal, y.toroidal);
    EXPECT_EQ(x.other, y.other);
}

inline double areaOf(const Region& region) {
    double area = 0.0;
    EXPECT_STATUS(Status::eOk, region.getArea(area));
    return area;
}

inline Vec3 centroidOf(const Solid& solid) {
    MassProps props;
    EXPECT_STATUS(Status::eOk, solid.getMassProp(props));
    return props.centroid;
}

// Checks volume and centroid against closed forms; size is a typical length of the body.
#define EXPECT_VOLUME(solid, expected, size)                                                       \
    EXPECT_TRUE(solidstest::near((expected), solidstest::volumeOf(solid), (size) * (size) * (size)))
#define EXPECT_AREA(shape, expected, size)                                                         \
    EXPECT_TRUE(solidstest::near((expected), solidstest::areaOf(shape), (size) * (size)))
#define EXPECT_CENTROID(solid, expected, size)                                                     \
    EXPECT_TRUE(solidstest::samePoint((expected), solidstest::centroidOf(solid), (size)))

// Extents of curved free-form and toroidal faces are found by a search that stops at the kernel's
// point resolution, so they may stand out by that much.
constexpr double kPointResolution = 1e-7;

inline ::testing::AssertionResult sameExtents(const Extents& expected, const Solid& solid,
                                              double size) {
    Extents e;
    if (solid.getGeomExtents(e) != Status::eOk)
        return ::testing::AssertionFailure() << "no extents";
    const double rel = kRelTol + 2 * kPointResolution / size;
    auto r = samePoint(expected.min, e.min, size, rel);
    if (!r) return r << " at the minimum";
    r = samePoint(expected.max, e.max, size, rel);
    if (!r) return r << " at the maximum";
    return ::testing::AssertionSuccess();
}

// A region from one closed 2-D polyline in the XY plane.
inline Region polygonRegion(std::initializer_list<std::pair<double, double>> corners) {
    PolylineCurve outline;
    for (auto [x, y] : corners)
        outline.vertices.push_back({x, y, 0.0});
    outline.closed = true;
    std::vector<Region> regions;
    EXPECT_STATUS(Status::eOk, Region::createFromCurves({outline}, regions));
    EXPECT_EQ(1u, regions.size());
    return regions.empty() ? Region{} : regions.front();
}

inline Region circleRegion(const Vec3& center, const Vec3& normal, double radius) {
    std::vector<Region> regions;
    EXPECT_STATUS(Status::eOk,
                  Region::createFromCurves({CircleCurve{center, normal, radius}}, regions));
    EXPECT_EQ(1u, regions.size());
    return regions.empty() ? Region{} : regions.front();
}

} // namespace solidstest
