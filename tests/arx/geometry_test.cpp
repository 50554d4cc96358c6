#include <cmath>

#include "arx_test.h"

namespace {

TEST(Geometry, RotationAboutAPointMovesPointsRoundIt) {
    // A quarter turn about the vertical line through (1, 1, 0).
    const AcGeMatrix3d m =
        AcGeMatrix3d::rotation(M_PI / 2, AcGeVector3d::kZAxis, AcGePoint3d(1, 1, 0));
    expectNear(m * AcGePoint3d(2, 1, 5), AcGePoint3d(1, 2, 5));
    expectNear(m * AcGePoint3d(1, 1, 0), AcGePoint3d(1, 1, 0));
    // Vectors turn but do not move.
    expectNear(m * AcGeVector3d(1, 0, 0), AcGeVector3d(0, 1, 0));
    // A third of a turn about the diagonal cycles the axes.
    const AcGeMatrix3d c = AcGeMatrix3d::rotation(2 * M_PI / 3, AcGeVector3d(1, 1, 1));
    expectNear(c * AcGePoint3d(1, 0, 0), AcGePoint3d(0, 1, 0));
}

TEST(Geometry, AlignCoordSysTakesCoordinatesAcross) {
    // Target system at (1, 2, 3) with X along world Y and Y along world -X.
    AcGeMatrix3d m;
    m.setToAlignCoordSys(AcGePoint3d::kOrigin, AcGeVector3d::kXAxis, AcGeVector3d::kYAxis,
                         AcGeVector3d::kZAxis, AcGePoint3d(1, 2, 3), AcGeVector3d(0, 1, 0),
                         AcGeVector3d(-1, 0, 0), AcGeVector3d::kZAxis);
    expectNear(m * AcGePoint3d(2, 1, 0), AcGePoint3d(0, 4, 3));
    // From a moved system back to the world: a move by minus its origin.
    m.setToAlignCoordSys(AcGePoint3d(5, -1, 2), AcGeVector3d::kXAxis, AcGeVector3d::kYAxis,
                         AcGeVector3d::kZAxis, AcGePoint3d::kOrigin, AcGeVector3d::kXAxis,
                         AcGeVector3d::kYAxis, AcGeVector3d::kZAxis);
    expectNear(m.translation(), AcGeVector3d(-5, 1, -2));
}

TEST(Geometry, InverseUndoesTheProduct) {
    const AcGeMatrix3d m = AcGeMatrix3d::translation({3, -2, 7}) *
                           AcGeMatrix3d::rotation(0.7, {1, 2, 3}) * AcGeMatrix3d::scaling(2.5);
    EXPECT_TRUE((m * m.inverse()).isEqualTo(AcGeMatrix3d::kIdentity, AcGeTol()));
    expectNear(m.inverse() * (m * AcGePoint3d(1, 2, 3)), AcGePoint3d(1, 2, 3));
    EXPECT_NEAR(m.scale(), 2.5, 1e-12);
    EXPECT_NEAR(m.det(), 2.5 * 2.5 * 2.5, 1e-9);
    // Products apply right to left: translate after scaling.
    expectNear((AcGeMatrix3d::translation({1, 0, 0}) * AcGeMatrix3d::scaling(2)) *
                   AcGePoint3d(1, 1, 1),
               AcGePoint3d(3, 2, 2));
}

TEST(Geometry, PerpVectorFollowsTheArbitraryAxisRule) {
    // Near the Z axis the world Y axis is crossed with the vector, else the Z axis.
    expectNear(AcGeVector3d::kZAxis.perpVector(), AcGeVector3d(1, 0, 0));
    expectNear(AcGeVector3d(0.01, 0.01, 1).perpVector(), AcGeVector3d(1, 0, -0.01));
    expectNear(AcGeVector3d(1, 0, 0).perpVector(), AcGeVector3d(0, 1, 0));
    expectNear(AcGeVector3d(0.02, 0, 1).perpVector(), AcGeVector3d(0, 0.02, 0));
    const AcGeVector3d n(3, -4, 2);
    EXPECT_NEAR(n.perpVector().dotProduct(n), 0.0, 1e-12);
}

TEST(Geometry, NormalizeKeepsVectorsTooShortToHaveADirection) {
    AcGeVector3d zero(0, 0, 0);
    EXPECT_TRUE(zero.normalize().isZeroLength());
    AcGeVector3d tiny(1e-11, 0, 0);
    EXPECT_EQ(tiny.normalize().x, 1e-11);
    AcGeTol loose;
    loose.setEqualVector(1e-3);
    AcGeVector3d small(1e-4, 0, 0);
    EXPECT_EQ(small.normalize(loose).x, 1e-4);
    EXPECT_DOUBLE_EQ(AcGeVector3d(3, 4, 0).normalize().y, 0.8);
}

TEST(Geometry, DirectionTests) {
    const AcGeVector3d a(1, 2, 3);
    EXPECT_TRUE(a.isParallelTo(a * -2));
    EXPECT_TRUE(a.isCodirectionalTo(a * 2));
    EXPECT_FALSE(a.isCodirectionalTo(a * -2));
    EXPECT_FALSE(a.isParallelTo({1, 2, 3.001}));
    EXPECT_FALSE(a.isParallelTo({0, 0, 0}));
    EXPECT_TRUE(AcGeVector3d::kXAxis.isPerpendicularTo(AcGeVector3d::kYAxis));
    expectNear(AcGeVector3d::kXAxis.crossProduct(AcGeVector3d::kYAxis), AcGeVector3d::kZAxis);
    EXPECT_DOUBLE_EQ(a.dotProduct({4, 5, 6}), 32.0);
    EXPECT_NEAR(AcGeVector3d::kXAxis.angleTo({0, -1, 0}, AcGeVector3d::kZAxis), 1.5 * M_PI, 1e-12);
    EXPECT_TRUE(AcGePoint3d(1, 1, 1).isEqualTo({1, 1, 1 + 1e-11}));
    EXPECT_FALSE(AcGePoint3d(1, 1, 1).isEqualTo({1, 1, 1 + 1e-9}));
}

TEST(Geometry, PlaneDistanceIsSignedByTheNormal) {
    const AcGePlane plane(AcGePoint3d(0, 0, 2), AcGeVector3d(0, 0, -5));
    EXPECT_DOUBLE_EQ(plane.signedDistanceTo({7, 3, 5}), -3.0);
    EXPECT_DOUBLE_EQ(plane.signedDistanceTo({0, 0, 0}), 2.0);
    const AcGePlane three(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0), AcGePoint3d(0, 1, 0));
    EXPECT_DOUBLE_EQ(three.signedDistanceTo({4, 4, 1}), 1.0);
}

TEST(Geometry, LinesMeetColinearOrNot) {
    const AcGeLine3d a(AcGePoint3d(0, 0, 0), AcGePoint3d(2, 2, 0));
    const AcGeLine3d b(AcGePoint3d(0, 2, 0), AcGeVector3d(1, -1, 0));
    AcGePoint3d p;
    ASSERT_TRUE(a.intersectWith(b, p));
    expectNear(p, AcGePoint3d(1, 1, 0));
    // Skew and parallel lines share no point.
    EXPECT_FALSE(a.intersectWith(AcGeLine3d(AcGePoint3d(0, 2, 1), AcGeVector3d(1, -1, 0)), p));
    EXPECT_FALSE(a.intersectWith(AcGeLine3d(AcGePoint3d(0, 1, 0), AcGeVector3d(1, 1, 0)), p));
    EXPECT_TRUE(a.isColinearTo(AcGeLine3d(AcGePoint3d(5, 5, 0), AcGeVector3d(-3, -3, 0))));
    EXPECT_FALSE(a.isColinearTo(AcGeLine3d(AcGePoint3d(5, 5.1, 0), AcGeVector3d(1, 1, 0))));
}

TEST(Geometry, ArcPointsRunCounterClockwiseFromTheReference) {
    const AcGeCircArc3d arc(AcGePoint3d(1, 0, 0), AcGeVector3d::kZAxis, AcGeVector3d::kYAxis, 2, 0,
                            M_PI / 2);
    expectNear(arc.startPoint(), AcGePoint3d(1, 2, 0));
    expectNear(arc.endPoint(), AcGePoint3d(-1, 0, 0));
}

} // namespace
