// Regions from curves, their booleans and transforms, and the sweeps built from them.
#include "entity_test.h"

using namespace entitytest;

namespace {

TEST(RegionEntity, LoopsOfMixedCurvesInAnyOrderAndDirection) {
    // A 4 x 2 slot: two lines and two half circles, one line running backwards.
    AcDbVoidPtrArray curves;
    curves.append(new AcDbArc({4, 1, 0}, 1, -kPi / 2, kPi / 2));
    curves.append(new AcDbLine({0, 0, 0}, {4, 0, 0}));
    curves.append(new AcDbArc({0, 1, 0}, 1, kPi / 2, 3 * kPi / 2));
    curves.append(new AcDbLine({0, 2, 0}, {4, 2, 0}));
    // And a separate circle elsewhere: a second region.
    curves.append(new AcDbCircle({10, 0, 0}, AcGeVector3d::kZAxis, 1));
    Pieces regions;
    ASSERT_EQ(AcDbRegion::createFromCurves(curves, regions.items), Acad::eOk);
    for (int i = 0; i < curves.length(); ++i)
        delete static_cast<AcDbEntity*>(curves[i]);
    ASSERT_EQ(regions.count<AcDbRegion>(), 2);
    double total = 0.0;
    for (int i = 0; i < regions.size(); ++i)
        total += areaOf(*AcDbRegion::cast(regions.at(i)));
    EXPECT_NEAR(total, 8 + kPi + kPi, 1e-9);
}

TEST(RegionEntity, ExplodedArcsEndWhereTheirNeighboursDo) {
    // A slot in a tilted plane, so that the arcs' angles are measured in a plane system of
    // their own.
    auto* slot = new AcDbPolyline(4);
    slot->addVertexAt(0, AcGePoint2d(0, 0));
    slot->addVertexAt(1, AcGePoint2d(4, 0), 1.0);
    slot->addVertexAt(2, AcGePoint2d(4, 2));
    slot->addVertexAt(3, AcGePoint2d(0, 2), 1.0);
    slot->setClosed(true);
    ASSERT_EQ(slot->setNormal(AcGeVector3d(1, 1, 1)), Acad::eOk);
    auto region = regionOf({slot});
    EXPECT_NEAR(areaOf(*region), 8 + kPi, 1e-9);
    Pieces edges;
    ASSERT_EQ(region->explode(edges.items), Acad::eOk);
    ASSERT_EQ(edges.count<AcDbArc>(), 2);
    ASSERT_EQ(edges.count<AcDbLine>(), 2);
    // Each edge starts where the one before it ends.
    for (int i = 0; i < edges.size(); ++i) {
        AcGePoint3d end, start;
        ASSERT_EQ(AcDbCurve::cast(edges.at(i))->getEndPoint(end), Acad::eOk);
        ASSERT_EQ(AcDbCurve::cast(edges.at((i + 1) % edges.size()))->getStartPoint(start),
                  Acad::eOk);
        expectNear(end, start, 1e-9);
    }
}

TEST(RegionEntity, PolylinesEllipsesAndSplinesCloseLoops) {
    // A closed light-weight polyline with bulges: a circle of radius 1 from two half turns.
    auto* round = new AcDbPolyline(2);
    round->addVertexAt(0, AcGePoint2d(-1, 0), 1.0);
    round->addVertexAt(1, AcGePoint2d(1, 0), 1.0);
    round->setClosed(true);
    EXPECT_NEAR(areaOf(*regionOf({round})), kPi, 1e-9);

    AcGePoint3dArray corners{{0, 0, 5}, {3, 0, 5}, {3, 2, 5}, {0, 2, 5}};
    EXPECT_NEAR(areaOf(*regionOf({new AcDb3dPolyline(AcDb::k3dSimplePoly, corners, true)})), 6,
                1e-9);
    EXPECT_NEAR(areaOf(*regionOf({new AcDb2dPolyline(AcDb::k2dSimplePoly, corners, 0, true)})), 6,
                1e-9);

    auto ellipse = regionOf({new AcDbEllipse({0, 0, 0}, AcGeVector3d::kZAxis, {3, 0, 0}, 0.5)});
    EXPECT_NEAR(areaOf(*ellipse), kPi * 3 * 1.5, 1e-9);

    // A quadratic spline arch closed by a line: area 2/3 of base times height.
    AcGePoint3dArray controls{{0, 0, 0}, {1, 2, 0}, {2, 0, 0}};
    AcGeDoubleArray knots{0, 0, 0, 1, 1, 1}, weights;
    auto arch = regionOf({new AcDbSpline(2, false, false, false, controls, knots, weights),
                          new AcDbLine({0, 0, 0}, {2, 0, 0})});
    EXPECT_NEAR(areaOf(*arch), 2.0 / 3.0 * 2 * 1, 1e-9);
}

TEST(RegionEntity, HoleBySubtractionLeavesTheOtherRegionEmpty) {
    auto outer = regionOf({square(0, 0, 4)});
    auto hole = regionOf({new AcDbCircle({2, 2, 0}, AcGeVector3d::kZAxis, 1)});
    ASSERT_EQ(outer->booleanOper(AcDb::kBoolSubtract, hole.get()), Acad::eOk);
    EXPECT_TRUE(hole->isNull());
    EXPECT_NEAR(areaOf(*outer), 16 - kPi, 1e-9);
    Pieces edges;
    ASSERT_EQ(outer->explode(edges.items), Acad::eOk);
    EXPECT_EQ(edges.count<AcDbLine>(), 4);
    EXPECT_EQ(edges.count<AcDbCircle>(), 1);

    // Not in one plane: refused, nothing changes.
    auto lifted = regionOf({square(0, 0, 1)});
    ASSERT_EQ(lifted->transformBy(AcGeMatrix3d::translation({0, 0, 3})), Acad::eOk);
    EXPECT_EQ(outer->booleanOper(AcDb::kBoolUnite, lifted.get()), Acad::eNonCoplanarGeometry);
    EXPECT_FALSE(lifted->isNull());
    EXPECT_NEAR(areaOf(*outer), 16 - kPi, 1e-9);
}

TEST(RegionEntity, BadOutlinesFailWithAStatusAndNoRegion) {
    auto* bowTie = new AcDbPolyline(4);
    bowTie->addVertexAt(0, AcGePoint2d(0, 0));
    bowTie->addVertexAt(1, AcGePoint2d(2, 2));
    bowTie->addVertexAt(2, AcGePoint2d(2, 0));
    bowTie->addVertexAt(3, AcGePoint2d(0, 2));
    bowTie->setClosed(true);
    AcDbLine open1({0, 0, 0}, {1, 0, 0}), open2({1, 0, 0}, {1, 1, 0});
    AcDbPoint notACurve({0, 0, 0});

    struct Case {
        const char* name;
        AcDbVoidPtrArray curves;
        Acad::ErrorStatus expected;
    } cases[] = {
        {"self-intersecting", {bowTie}, Acad::eSelfIntersecting},
        {"open", {&open1, &open2}, Acad::eOpenLoop},
        {"not a curve", {&notACurve}, Acad::eInvalidInput},
        {"null", {nullptr}, Acad::eInvalidInput},
    };
    for (Case& c : cases) {
        SCOPED_TRACE(c.name);
        Pieces regions;
        EXPECT_EQ(AcDbRegion::createFromCurves(c.curves, regions.items), c.expected);
        EXPECT_EQ(regions.size(), 0);
    }
    delete bowTie;
}

TEST(RegionEntity, TransformByKeepsSimilaritiesOnly) {
    auto region = regionOf({square(0, 0, 2)});
    AcGeMatrix3d shear;
    shear(0, 1) = 0.5;
    EXPECT_EQ(region->transformBy(shear), Acad::eCannotScaleNonUniformly);
    expectExtents(*region, {0, 0, 0}, {2, 2, 0}, 1e-9);
    ASSERT_EQ(region->transformBy(AcGeMatrix3d::rotation(kPi / 2, AcGeVector3d::kXAxis)),
              Acad::eOk);
    expectExtents(*region, {0, 0, 0}, {2, 0, 2}, 1e-9);
    AcGeVector3d normal;
    ASSERT_EQ(region->getNormal(normal), Acad::eOk);
    expectNear(normal, {0, -1, 0}, 1e-9);
    ASSERT_EQ(region->transformBy(AcGeMatrix3d::scaling(2)), Acad::eOk);
    EXPECT_NEAR(areaOf(*region), 16, 1e-9);
}

// ---- Sweeps of regions ----

TEST(RegionSweeps, ExtrudeAlongTheNormalWithAndWithoutTaper) {
    auto base = regionOf({square(0, 0, 2)});
    AcDb3dSolid prism;
    ASSERT_EQ(prism.extrude(base.get(), 3), Acad::eOk);
    Mass m = massOf(prism);
    EXPECT_NEAR(m.volume, 12, 1e-9);
    expectNear(m.centroid, {1, 1, 1.5}, 1e-9);

    // Taper: a frustum of a pyramid narrowing by tan(angle) per unit of height on each side.
    const double angle = std::atan(0.25);
    AcDb3dSolid tapered;
    ASSERT_EQ(tapered.extrude(base.get(), 2, angle), Acad::eOk);
    // Sides 2 at the bottom and 1 at the top: h (A1 + A2 + sqrt(A1 A2)) / 3.
    EXPECT_NEAR(massOf(tapered).volume, 2 * (4 + 1 + 2) / 3.0, 1e-6);

    // Walls that would meet below the top: refused, the solid stays as it was.
    EXPECT_EQ(tapered.extrude(base.get(), 10, angle), Acad::eInvalidInput);
    EXPECT_NEAR(massOf(tapered).volume, 2 * (4 + 1 + 2) / 3.0, 1e-6);
}

TEST(RegionSweeps, ExtrudeAlongPathsTranslatesAndMitres) {
    auto disc = regionOf({new AcDbCircle({0, 0, 0}, AcGeVector3d::kZAxis, 1)});
    AcDbLine straight({0, 0, 0}, {0, 0, 5});
    AcDb3dSolid rod;
    ASSERT_EQ(rod.extrudeAlongPath(disc.get(), &straight), Acad::eOk);
    EXPECT_NEAR(massOf(rod).volume, 5 * kPi, 1e-6);

    // A right-angled elbow path: mitred corners keep pi r^2 L.
    AcGePoint3dArray bend{{0, 0, 0}, {0, 0, 4}, {4, 0, 4}};
    AcDb3dPolyline path(AcDb::k3dSimplePoly, bend);
    AcDb3dSolid elbow;
    ASSERT_EQ(elbow.extrudeAlongPath(disc.get(), &path), Acad::eOk);
    EXPECT_NEAR(massOf(elbow).volume, kPi * 8, 1e-6);

    AcDbLine inPlane({0, 0, 0}, {5, 0, 0});
    AcDb3dSolid flat;
    EXPECT_EQ(flat.extrudeAlongPath(disc.get(), &inPlane), Acad::eDegenerateGeometry);
    EXPECT_EQ(flat.extrudeAlongPath(disc.get(), nullptr), Acad::eInvalidInput);
    EXPECT_TRUE(flat.isNull());
}

TEST(RegionSweeps, RevolveFollowsPappus) {
    auto strip = regionOf({square(1, 0, 1)});
    AcDb3dSolid ring;
    ASSERT_EQ(ring.revolve(strip.get(), {0, 0, 0}, {0, 1, 0}, 2 * kPi), Acad::eOk);
    EXPECT_NEAR(massOf(ring).volume, 2 * kPi * 1.5 * 1, 1e-6);
    AcDb3dSolid half;
    ASSERT_EQ(half.revolve(strip.get(), {0, 0, 0}, {0, 1, 0}, kPi), Acad::eOk);
    EXPECT_NEAR(massOf(half).volume, kPi * 1.5, 1e-6);
    AcDb3dSolid crossing;
    EXPECT_EQ(crossing.revolve(strip.get(), {1.5, 0, 0}, {0, 1, 0}, kPi), Acad::eInvalidInput);
}

} // namespace
