// Primitive builders: closed-form volumes, areas and centroids, the host's centring, and the
// refusal of sizes out of range.
#include "checks.h"

namespace solidstest {
namespace {

TEST(Frustum, CylinderIsCentredOnTheOrigin) {
    Solid s;
    const double r = 1.5, h = 4.0;
    ASSERT_OK(s.createFrustum(h, r, r, r));
    EXPECT_VOLUME(s, kPi * r * r * h, h);
    EXPECT_AREA(s, 2 * kPi * r * h + 2 * kPi * r * r, h);
    EXPECT_CENTROID(s, (Vec3{0, 0, 0}), h);
    EXPECT_TRUE(sameExtents({{-r, -r, -h / 2}, {r, r, h / 2}}, s, h));
}

TEST(Frustum, ConeHasItsApexAtHalfHeight) {
    Solid s;
    const double r = 2.0, h = 3.0;
    ASSERT_OK(s.createFrustum(h, r, r, 0.0));
    EXPECT_VOLUME(s, kPi * r * r * h / 3, h);
    EXPECT_AREA(s, kPi * r * r + kPi * r * std::hypot(r, h), h);
    EXPECT_CENTROID(s, (Vec3{0, 0, -h / 2 + h / 4}), h);
    EXPECT_TRUE(sameExtents({{-r, -r, -h / 2}, {r, r, h / 2}}, s, h));
}

TEST(Frustum, TruncatedConeKeepsBaseRadiusBelow) {
    Solid s;
    const double a = 2.0, b = 1.0, h = 3.0;
    ASSERT_OK(s.createFrustum(h, a, a, b));
    const double sum = a * a + a * b + b * b;
    EXPECT_VOLUME(s, kPi * h * sum / 3, h);
    const double zFromBase = h * (a * a + 2 * a * b + 3 * b * b) / (4 * sum);
    EXPECT_CENTROID(s, (Vec3{0, 0, zFromBase - h / 2}), h);
}

TEST(Frustum, DifferentXAndYRadiiGiveAnEllipticFrustum) {
    const double a = 2.0, b = 1.0, h = 3.0, k = 0.5;
    Solid frustum;
    ASSERT_OK(frustum.createFrustum(h, a, b, k * a));
    // The elliptic side is a free-form surface, integrated to about 1e-8.
    constexpr double kFreeForm = 1e-7;
    EXPECT_TRUE(
        near(kPi * a * b * h * (1 + k + k * k) / 3, volumeOf(frustum), h * h * h, kFreeForm));
    EXPECT_TRUE(sameExtents({{-a, -b, -h / 2}, {a, b, h / 2}}, frustum, h));

    Solid cone;
    ASSERT_OK(cone.createFrustum(h, b, a, 0.0)); // major axis along Y
    EXPECT_TRUE(near(kPi * a * b * h / 3, volumeOf(cone), h * h * h, kFreeForm));
    EXPECT_TRUE(sameExtents({{-b, -a, -h / 2}, {b, a, h / 2}}, cone, h));
}

TEST(Box, IsCentredWithSidesAlongTheAxes) {
    Solid s;
    ASSERT_OK(s.createBox(2.0, 3.0, 4.0));
    EXPECT_VOLUME(s, 24.0, 4.0);
    EXPECT_AREA(s, 2 * (6.0 + 12.0 + 8.0), 4.0);
    EXPECT_TRUE(sameExtents({{-1, -1.5, -2}, {1, 1.5, 2}}, s, 4.0));
}

TEST(Sphere, MatchesClosedForms) {
    Solid s;
    const double r = 1.7;
    ASSERT_OK(s.createSphere(r));
    EXPECT_VOLUME(s, 4 * kPi * r * r * r / 3, r);
    EXPECT_AREA(s, 4 * kPi * r * r, r);
    EXPECT_TRUE(sameExtents({{-r, -r, -r}, {r, r, r}}, s, r));
}

TEST(Torus, OrdinaryTorusLiesInTheXYPlane) {
    Solid s;
    const double R = 3.0, r = 1.0;
    ASSERT_OK(s.createTorus(R, r));
    EXPECT_VOLUME(s, 2 * kPi * kPi * R * r * r, R);
    EXPECT_AREA(s, 4 * kPi * kPi * R * r, R);
    EXPECT_TRUE(sameExtents({{-R - r, -R - r, -r}, {R + r, R + r, r}}, s, R));
}

// The solid swept by a circle of radius r whose centre runs round a circle of radius R, for
// |R| < r: the part of the disc on the positive side of the axis, revolved (Pappus).
double overlappingTorusVolume(double R, double r) {
    const double w = std::sqrt(r * r - R * R);
    return 2 * kPi * (2.0 / 3.0 * w * w * w + R * (r * r * (kPi / 2 + std::asin(R / r)) + R * w));
}
double overlappingTorusArea(double R, double r) {
    const double t0 = std::acos(-R / r);
    return 4 * kPi * r * (R * t0 + r * std::sin(t0));
}

TEST(Torus, MinorNotBelowMajorGivesOneSelfOverlappingSolid) {
    for (auto [R, r] : {std::pair{1.0, 2.0}, std::pair{0.0, 1.5}, std::pair{-1.0, 2.0}}) {
        SCOPED_TRACE(testing::Message() << "major " << R << " minor " << r);
        Solid s;
        ASSERT_OK(s.createTorus(R, r));
        EXPECT_VOLUME(s, overlappingTorusVolume(R, r), r);
        EXPECT_AREA(s, overlappingTorusArea(R, r), r);
        EXPECT_EQ(1, s.topology().solids);
        // The mid-plane section is a disc of radius R + r: the torus recogniser's test. Its rim is
        // an intersection curve, found to the kernel's point resolution.
        Region section;
        ASSERT_OK(s.getSection({{0, 0, 0}, {0, 0, 1}}, section));
        std::vector<Curve> rim;
        ASSERT_OK(section.explode(rim));
        ASSERT_EQ(1u, rim.size());
        ASSERT_TRUE(std::holds_alternative<CircleCurve>(rim[0])) << rim[0].index();
        EXPECT_NEAR(R + r, std::get<CircleCurve>(rim[0]).radius, kPointResolution);
        const double h = R >= 0 ? r : std::sqrt(r * r - R * R);
        EXPECT_TRUE(sameExtents({{-R - r, -R - r, -h}, {R + r, R + r, h}}, s, r));
    }
}

TEST(Torus, EqualRadiiCloseTheHole) {
    Solid s;
    ASSERT_OK(s.createTorus(1.0, 1.0));
    EXPECT_VOLUME(s, 2 * kPi * kPi, 1.0);
}

TEST(Builders, RefuseSizesOutOfRangeAndKeepTheSolid) {
    Solid s;
    ASSERT_OK(s.createBox(1, 1, 1));
    const double nan = std::nan("");
    EXPECT_STATUS(Status::eInvalidInput, s.createFrustum(0.0, 1, 1, 1));
    EXPECT_STATUS(Status::eInvalidInput, s.createFrustum(-1.0, 1, 1, 1));
    EXPECT_STATUS(Status::eInvalidInput, s.createFrustum(1.0, 0, 0, 1));
    EXPECT_STATUS(Status::eInvalidInput, s.createFrustum(1.0, 1, 1, -0.5));
    EXPECT_STATUS(Status::eInvalidInput, s.createFrustum(nan, 1, 1, 1));
    EXPECT_STATUS(Status::eInvalidInput, s.createBox(1, 0, 1));
    EXPECT_STATUS(Status::eInvalidInput, s.createBox(1, 1, INFINITY));
    EXPECT_STATUS(Status::eInvalidInput, s.createSphere(0.0));
    EXPECT_STATUS(Status::eInvalidInput, s.createTorus(1.0, 0.0));
    EXPECT_STATUS(Status::eInvalidInput, s.createTorus(-2.0, 2.0));
    // Sizes far beyond what the kernel's fixed tolerance can model: refused at once rather than
    // built into a body that later operations hang on or empty.
    EXPECT_STATUS(Status::eInvalidInput, s.createSphere(1e300));
    EXPECT_STATUS(Status::eInvalidInput, s.createSphere(1e10));
    EXPECT_STATUS(Status::eInvalidInput, s.createBox(1, 1e300, 1));
    EXPECT_STATUS(Status::eInvalidInput, s.createFrustum(1e300, 1, 1, 1));
    EXPECT_STATUS(Status::eInvalidInput, s.createFrustum(1, 1, 1, 1e300));
    EXPECT_STATUS(Status::eInvalidInput, s.createTorus(1e300, 1.0));
    EXPECT_STATUS(Status::eInvalidInput, s.createTorus(1.0, 1e300));
    // Sizes below the kernel's tolerance: a body whose faces lie within it of each other.
    const double denormal = 5e-324;
    EXPECT_STATUS(Status::eInvalidInput, s.createFrustum(denormal, 1, 1, 1));
    EXPECT_STATUS(Status::eInvalidInput, s.createFrustum(1, 1, 1, denormal));
    EXPECT_STATUS(Status::eInvalidInput, s.createBox(1, 1e-9, 1));
    EXPECT_STATUS(Status::eInvalidInput, s.createSphere(denormal));
    EXPECT_VOLUME(s, 1.0, 1.0);
}

TEST(Builders, LargestSizeInRangeIsBuiltAndSliced) {
    Solid s;
    ASSERT_OK(s.createSphere(1e8));
    ASSERT_OK(s.getSlice({{0, 0, 0}, {0, 0, 1}}, false, nullptr));
    EXPECT_VOLUME(s, 2 * kPi / 3 * 1e24, 1e8);
}

TEST(Builders, HistorySwitchIsKeptAndCopied) {
    Solid s;
    EXPECT_FALSE(s.recordHistory());
    s.setRecordHistory(true);
    ASSERT_OK(s.createSphere(1.0));
    const Solid copy = s;
    EXPECT_TRUE(copy.recordHistory());
    EXPECT_VOLUME(copy, 4 * kPi / 3, 1.0);
}

} // namespace
} // namespace solidstest
