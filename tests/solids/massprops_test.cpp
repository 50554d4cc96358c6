// Mass properties about the world axes, transforms (similarities only) and extents.
#include "checks.h"

namespace solidstest {
namespace {

::testing::AssertionResult sameAxis(const Vec3& expected, const Vec3& actual) {
    // Principal axes have no preferred sense.
    const double d = std::abs(dot(expected, actual)) / (length(expected) * length(actual));
    if (std::abs(d - 1.0) <= 1e-9) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "axes differ: cosine " << d;
}

TEST(MassProps, RotatedOffsetBoxAgainstHandWorkedValues) {
    // Box 2 x 4 x 6 (volume 48), turned 30 degrees about Z, centred at (1, 2, 3).
    Solid s;
    ASSERT_OK(s.createBox(2, 4, 6));
    ASSERT_OK(s.transformBy(Matrix::rotation(kPi / 6, {0, 0, 1})));
    ASSERT_OK(s.transformBy(Matrix::translation({1, 2, 3})));
    MassProps p;
    ASSERT_OK(s.getMassProp(p));
    const double V = 48.0, tol = 1e-9 * 1000; // moments are of order 1000
    EXPECT_NEAR(V, p.volume, 1e-9 * V);
    EXPECT_TRUE(samePoint({1, 2, 3}, p.centroid, 6.0));
    // In the box's own axes the central moments are V/12 (b^2 + c^2) and so on: 208, 160, 80.
    // Turned by 30 degrees: Ixx = 208 cos^2 + 160 sin^2 = 196, Iyy = 172, and the central
    // product of x and y is -(208 - 160) cos sin = -12 sqrt 3. Then the parallel axes.
    EXPECT_NEAR(196 + V * (4 + 9), p.momInertia[0], tol);
    EXPECT_NEAR(172 + V * (9 + 1), p.momInertia[1], tol);
    EXPECT_NEAR(80 + V * (1 + 4), p.momInertia[2], tol);
    EXPECT_NEAR(-12 * std::sqrt(3.0) + V * 1 * 2, p.prodInertia[0], tol);
    EXPECT_NEAR(V * 2 * 3, p.prodInertia[1], tol);
    EXPECT_NEAR(V * 3 * 1, p.prodInertia[2], tol);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(std::sqrt(p.momInertia[i] / V), p.radiiGyration[i], 1e-9);
    // Principal moments ascending, with the box's axes.
    EXPECT_NEAR(80, p.prinMoments[0], tol);
    EXPECT_NEAR(160, p.prinMoments[1], tol);
    EXPECT_NEAR(208, p.prinMoments[2], tol);
    EXPECT_TRUE(sameAxis({0, 0, 1}, p.prinAxes[0]));
    EXPECT_TRUE(sameAxis({-0.5, std::sqrt(3.0) / 2, 0}, p.prinAxes[1]));
    EXPECT_TRUE(sameAxis({std::sqrt(3.0) / 2, 0.5, 0}, p.prinAxes[2]));
    const Vec3 third = {p.prinAxes[0].y * p.prinAxes[1].z - p.prinAxes[0].z * p.prinAxes[1].y,
                        p.prinAxes[0].z * p.prinAxes[1].x - p.prinAxes[0].x * p.prinAxes[1].z,
                        p.prinAxes[0].x * p.prinAxes[1].y - p.prinAxes[0].y * p.prinAxes[1].x};
    EXPECT_TRUE(sameDirection(third, p.prinAxes[2])); // right-handed
    // Extents: half sizes 1 cos + 2 sin and 1 sin + 2 cos.
    const double hx = std::cos(kPi / 6) + 2 * std::sin(kPi / 6);
    const double hy = std::sin(kPi / 6) + 2 * std::cos(kPi / 6);
    EXPECT_TRUE(samePoint({1 - hx, 2 - hy, 0}, p.extents.min, 6.0));
    EXPECT_TRUE(samePoint({1 + hx, 2 + hy, 6}, p.extents.max, 6.0));
}

TEST(MassProps, TorusPrincipalAxisOfSymmetryComesLast) {
    // The torus recogniser takes the third principal axis as the torus's axis.
    Solid s;
    const double R = 3.0, r = 1.0;
    ASSERT_OK(s.createTorus(R, r));
    ASSERT_OK(s.transformBy(Matrix::rotation(0.7, {1, 1, 0})));
    MassProps p;
    ASSERT_OK(s.getMassProp(p));
    const double V = 2 * kPi * kPi * R * r * r;
    EXPECT_NEAR(V * (R * R + 0.75 * r * r), p.prinMoments[2], 1e-9 * p.prinMoments[2]);
    EXPECT_NEAR(V * (R * R / 2 + 5.0 / 8.0 * r * r), p.prinMoments[0], 1e-9 * p.prinMoments[2]);
    const Matrix turn = Matrix::rotation(0.7, {1, 1, 0});
    EXPECT_TRUE(sameAxis({turn(0, 2), turn(1, 2), turn(2, 2)}, p.prinAxes[2]));
}

TEST(MassProps, SphereHasTheWorldAxesAsPrincipalAxes) {
    Solid s;
    ASSERT_OK(s.createSphere(2.0));
    MassProps p;
    ASSERT_OK(s.getMassProp(p));
    EXPECT_TRUE(sameDirection({1, 0, 0}, p.prinAxes[0]));
    EXPECT_TRUE(sameDirection({0, 1, 0}, p.prinAxes[1]));
    EXPECT_TRUE(sameDirection({0, 0, 1}, p.prinAxes[2]));
    Solid empty;
    EXPECT_STATUS(Status::eNotApplicable, empty.getMassProp(p));
    Extents e;
    EXPECT_STATUS(Status::eNotApplicable, empty.getGeomExtents(e));
    double area = 0.0;
    EXPECT_STATUS(Status::eNotApplicable, empty.getArea(area));
}

TEST(TransformBy, SimilaritiesMoveTheSolid) {
    Solid s;
    ASSERT_OK(s.createFrustum(3.0, 2.0, 2.0, 0.0));
    const double V = kPi * 4 * 3 / 3;
    ASSERT_OK(s.transformBy(Matrix::scaling(2.0, {0, 0, 1.5})));
    EXPECT_VOLUME(s, 8 * V, 6.0);
    // The cone's centroid was at z = -0.75; scaled about z = 1.5 it goes to -3.
    EXPECT_CENTROID(s, (Vec3{0, 0, -3.0}), 6.0);

    // A mirror keeps the volume positive and mirrors the centroid.
    Solid m;
    ASSERT_OK(m.createFrustum(3.0, 2.0, 2.0, 0.0));
    ASSERT_OK(m.transformBy(Matrix::translation({5, 0, 0})));
    Matrix mirror;
    mirror(0, 0) = -1.0;
    ASSERT_OK(m.transformBy(mirror));
    EXPECT_VOLUME(m, V, 3.0);
    EXPECT_CENTROID(m, (Vec3{-5, 0, -0.75}), 3.0);
}

TEST(TransformBy, OtherMatricesAreRefusedAndChangeNothing) {
    Solid s;
    ASSERT_OK(s.createBox(1, 2, 3));
    Matrix stretch, shear, perspective, flat;
    stretch(0, 0) = 2.0;
    shear(0, 1) = 0.5;
    perspective(3, 0) = 0.1;
    flat(2, 2) = 0.0;
    for (const Matrix& m : {stretch, shear, perspective, flat})
        EXPECT_STATUS(Status::eCannotScaleNonUniformly, s.transformBy(m));
    Matrix nan;
    nan(1, 3) = std::nan("");
    EXPECT_STATUS(Status::eCannotScaleNonUniformly, s.transformBy(nan));
    EXPECT_VOLUME(s, 6.0, 3.0);
    EXPECT_TRUE(sameExtents({{-0.5, -1, -1.5}, {0.5, 1, 1.5}}, s, 3.0));
}

TEST(TransformBy, CopiesAreIndependent) {
    Solid a;
    ASSERT_OK(a.createBox(1, 1, 1));
    Solid b = a;
    ASSERT_OK(b.transformBy(Matrix::translation({10, 0, 0})));
    EXPECT_CENTROID(a, (Vec3{0, 0, 0}), 1.0);
    EXPECT_CENTROID(b, (Vec3{10, 0, 0}), 1.0);
}

} // namespace
} // namespace solidstest
