// Solids modelled at the command line: primitives placed in the UCS, profiles swept, booleans,
// slices and explosions, against closed forms of their volumes and centroids; bad answers that
// are asked again and refusals that leave the drawing as it was.
#include "../support/model_space.h"
#include "editor_test.h"

#include <arx/dbregion.h>
#include <arx/dbsol3d.h>

#include <cmath>
#include <numbers>

namespace editortest {
namespace {

constexpr double kPi = std::numbers::pi;

class Modelling : public EditorTest {
protected:
    struct Mass {
        double volume = 0.0;
        AcGePoint3d centroid;
    };
    // The volume and centroid of the solid of that id.
    static Mass massOf(AcDbObjectId id) {
        Mass m;
        AcDb3dSolid* solid = nullptr;
        if (acdbOpenObject(solid, id, AcDb::kForRead) != Acad::eOk) return m;
        double mom[3], prod[3], prin[3], gyr[3];
        AcGeVector3d axes[3];
        AcDbExtents box;
        EXPECT_EQ(solid->getMassProp(m.volume, m.centroid, mom, prod, prin, axes, gyr, box),
                  Acad::eOk);
        solid->close();
        return m;
    }
    // The entities of model space of one kind, in drawing order.
    std::vector<AcDbObjectId> ofKind(AcRxClass* kind) const {
        std::vector<AcDbObjectId> ids;
        for (AcDbObjectId id : modelSpace()) {
            AcDbEntity* e = nullptr;
            if (acdbOpenObject(e, id, AcDb::kForRead) != Acad::eOk) continue;
            if (e->isKindOf(kind)) ids.push_back(id);
            e->close();
        }
        return ids;
    }
    std::vector<AcDbObjectId> solids() const { return ofKind(AcDb3dSolid::desc()); }
    std::vector<AcDbObjectId> regions() const { return ofKind(AcDbRegion::desc()); }
    static std::vector<AcDbObjectId> modelSpace() {
        return modelSpaceIds(*acdbHostApplicationServices()->workingDatabase());
    }
};

// Volumes are integrals over exact surfaces: they agree with the closed forms to rounding.
#define EXPECT_VOLUME(expected, actual) EXPECT_NEAR(expected, actual, 1e-9 * (expected))
#define EXPECT_POINT(expected, actual, size)                                                       \
    EXPECT_LT((expected).distanceTo(actual), 1e-9 * (size))                                        \
        << (actual).x << "," << (actual).y << "," << (actual).z

TEST_F(Modelling, PrimitivesStandOnTheUcsWithTheClosedFormsOfTheirVolumes) {
    // Box by corners and height; cylinder, cone frustum, sphere and torus by centre and radii.
    ASSERT_EQ(command(L"BOX", L"1,2,3 4,7,3\n-2\n"), RTNORM) << printed();
    ASSERT_EQ(command(L"CYLINDER", L"10,0,0 D 4 5\n"), RTNORM) << printed();
    ASSERT_EQ(command(L"CONE", L"0,20,0 3 T 1 6\n"), RTNORM) << printed();
    ASSERT_EQ(command(L"SPHERE", L"5,5,5 2\n"), RTNORM) << printed();
    ASSERT_EQ(command(L"TORUS", L"0,0,50 4 1\n"), RTNORM) << printed();
    const auto ids = solids();
    ASSERT_EQ(ids.size(), 5u);
    const Mass box = massOf(ids[0]), cyl = massOf(ids[1]), cone = massOf(ids[2]),
               ball = massOf(ids[3]), ring = massOf(ids[4]);
    // 3 x 5 x 2, hanging down from z = 3 since the height is negative.
    EXPECT_VOLUME(30.0, box.volume);
    EXPECT_POINT(AcGePoint3d(2.5, 4.5, 2), box.centroid, 5);
    EXPECT_VOLUME(kPi * 4 * 5, cyl.volume);
    EXPECT_POINT(AcGePoint3d(10, 0, 2.5), cyl.centroid, 10);
    // Frustum of radii R = 3, r = 1, height 6: V = pi h (R^2 + R r + r^2) / 3, centroid at
    // h (R^2 + 2 R r + 3 r^2) / (4 (R^2 + R r + r^2)) above the base.
    EXPECT_VOLUME(kPi * 6 * 13 / 3, cone.volume);
    EXPECT_POINT(AcGePoint3d(0, 20, 6.0 * 18 / 52), cone.centroid, 20);
    EXPECT_VOLUME(4.0 / 3.0 * kPi * 8, ball.volume);
    EXPECT_POINT(AcGePoint3d(5, 5, 5), ball.centroid, 5);
    EXPECT_VOLUME(2 * kPi * kPi * 4, ring.volume);
    EXPECT_POINT(AcGePoint3d(0, 0, 50), ring.centroid, 50);
}

TEST_F(Modelling, BoxOptionsConeAxesAndProgramsMeetTheSameCommands) {
    // A cube about its centre; by length, width and height; from the centre to a 3-D corner.
    ASSERT_EQ(command(L"BOX", L"C 0,0,0 C 2\n"), RTNORM) << printed();
    ASSERT_EQ(command(L"BOX", L"0,0,0 L 3 2 4\n"), RTNORM) << printed();
    ASSERT_EQ(command(L"BOX", L"C 1,1,1 2,3,4\n"), RTNORM) << printed();
    // A cone down an axis: its centroid a quarter of the way from the base to the apex.
    ASSERT_EQ(command(L"CONE", L"0,0,0 2 A 0,0,-3\n"), RTNORM) << printed();
    auto ids = solids();
    ASSERT_EQ(ids.size(), 4u);
    EXPECT_VOLUME(8.0, massOf(ids[0]).volume);
    EXPECT_POINT(AcGePoint3d(0, 0, 0), massOf(ids[0]).centroid, 2);
    EXPECT_VOLUME(24.0, massOf(ids[1]).volume);
    EXPECT_POINT(AcGePoint3d(1.5, 1, 2), massOf(ids[1]).centroid, 4);
    EXPECT_VOLUME(48.0, massOf(ids[2]).volume);
    EXPECT_POINT(AcGePoint3d(1, 1, 1), massOf(ids[2]).centroid, 4);
    EXPECT_VOLUME(4 * kPi, massOf(ids[3]).volume);
    EXPECT_POINT(AcGePoint3d(0, 0, -0.75), massOf(ids[3]).centroid, 3);
    // A program's acedCommand gives points and numbers as result buffers.
    ads_point base = {10, 0, 0};
    ASSERT_EQ(acedCommand(RTSTR, L"_.CYLINDER", RT3DPOINT, base, RTREAL, 1.0, RTREAL, 2.0, RTNONE),
              RTNORM);
    EXPECT_VOLUME(2 * kPi, massOf(solids().back()).volume);
    // A radius of 0 from a program is refused too, and with no answer left nothing is made.
    EXPECT_EQ(acedCommand(RTSTR, L"_.CYLINDER", RT3DPOINT, base, RTREAL, 0.0, RTNONE), RTCAN);
    EXPECT_EQ(solids().size(), 5u);
}

TEST_F(Modelling, ATurnedUcsCarriesTheBaseAndTheHeight) {
    // The UCS turned so that its Z runs along the world X, its origin at (100, 0, 0).
    answers(L"3P 100,0,0 100,1,0 100,0,1\n");
    ASSERT_EQ(qelhost::runCommand(L"UCS"), RTNORM) << printed();
    ASSERT_EQ(command(L"CYLINDER", L"0,0,0 1 10\n"), RTNORM) << printed();
    const Mass m = massOf(solids().front());
    EXPECT_VOLUME(kPi * 10, m.volume);
    EXPECT_POINT(AcGePoint3d(105, 0, 0), m.centroid, 105);
    // An axis end point overrides the height: from (0,0,0) to (0,0,4) of the UCS.
    ASSERT_EQ(command(L"CYLINDER", L"0,0,0 1 A 3,0,4\n"), RTNORM) << printed();
    EXPECT_VOLUME(kPi * 5, massOf(solids().back()).volume);
}

TEST_F(Modelling, BadAnswersAreToldAndAskedAgainAndCancelMakesNothing) {
    // A radius of 0, a negative radius and a word are refused; then 2 is taken.
    ASSERT_EQ(command(L"CYLINDER", L"0,0,0 0 -1 wide 2 0 3\n"), RTNORM) << printed();
    EXPECT_NE(printed().find(L"Value must be positive and nonzero."), std::wstring::npos);
    EXPECT_NE(printed().find(L"Value must be nonzero."), std::wstring::npos) << "height 0";
    EXPECT_VOLUME(kPi * 4 * 3, massOf(solids().front()).volume);
    // A point that does not parse is asked again.
    win::Transcript::instance().clear();
    ASSERT_EQ(command(L"SPHERE", L"1,,2 1,1,1 1\n"), RTNORM) << printed();
    EXPECT_NE(printed().find(L"Point required."), std::wstring::npos) << printed();
    // The script ends before the last answer: the command is cancelled and adds nothing.
    EXPECT_EQ(command(L"BOX", L"0,0,0 1,1\n"), RTCAN);
    EXPECT_EQ(command(L"TORUS", L"0,0,0 5\n"), RTCAN);
    EXPECT_EQ(solids().size(), 2u);
}

TEST_F(Modelling, RegionsComeOnlyFromClosedLoopsAndSweepIntoSolids) {
    // An open L of two lines makes no region and keeps the lines.
    add(new AcDbLine({0, 0, 0}, {4, 0, 0}));
    add(new AcDbLine({4, 0, 0}, {4, 3, 0}));
    EXPECT_EQ(command(L"REGION", L"ALL\n\n"), RTERROR);
    EXPECT_NE(printed().find(L"No region made: the curves do not form a closed loop."),
              std::wstring::npos)
        << printed();
    EXPECT_EQ(entityCount(), 2);
    // Closing the loop makes one region of area 6, and the lines go.
    add(new AcDbLine({4, 3, 0}, {0, 0, 0}));
    ASSERT_EQ(command(L"REGION", L"ALL\n\n"), RTNORM) << printed();
    ASSERT_EQ(regions().size(), 1u);
    EXPECT_EQ(entityCount(), 1);
    // Extruded by 2 along its plane's normal: a prism of volume 12 whose centroid is the
    // triangle's, half way up.
    ASSERT_EQ(command(L"EXTRUDE", L"L\n\n2\n"), RTNORM) << printed();
    ASSERT_EQ(solids().size(), 1u);
    EXPECT_TRUE(regions().empty()) << "the profile is used up";
    const Mass prism = massOf(solids().front());
    EXPECT_VOLUME(12.0, prism.volume);
    EXPECT_POINT(AcGePoint3d(8.0 / 3, 1, 1), prism.centroid, 4);
}

TEST_F(Modelling, CirclesExtrudeAlongTheirNormalOrAPathAndRectanglesRevolve) {
    // A circle of radius 1 extruded by 3: the cylinder stands on the circle.
    add(new AcDbCircle({0, 0, 0}, AcGeVector3d::kZAxis, 1.0));
    ASSERT_EQ(command(L"EXTRUDE", L"L\n\n3\n"), RTNORM) << printed();
    EXPECT_POINT(AcGePoint3d(0, 0, 1.5), massOf(solids().back()).centroid, 3);
    // Along a line path of length 5 leaving the circle's plane.
    add(new AcDbCircle({10, 0, 0}, AcGeVector3d::kZAxis, 1.0));
    const AcDbObjectId profile = modelSpace().back();
    const AcDbObjectId path = add(new AcDbLine({10, 0, 0}, {10, 0, 5}));
    ASSERT_EQ(command(L"EXTRUDE", handleOf(profile) + L"\n\nP " + handleOf(path) + L"\n"), RTNORM)
        << printed();
    EXPECT_VOLUME(kPi * 5, massOf(solids().back()).volume);
    // A 1 x 2 rectangle beside the Y axis, turned a full turn about it: a tube of radii 1 and 2,
    // height 2.
    auto* rect = new AcDbPolyline;
    const AcGePoint2d corners[] = {{1, 0}, {2, 0}, {2, 2}, {1, 2}};
    for (unsigned i = 0; i < 4; ++i)
        rect->addVertexAt(i, corners[i]);
    rect->setClosed(true);
    add(rect);
    ASSERT_EQ(command(L"REVOLVE", L"L\n\nY\n\n"), RTNORM) << printed();
    const Mass tube = massOf(solids().back());
    EXPECT_VOLUME(kPi * (4 - 1) * 2, tube.volume);
    EXPECT_POINT(AcGePoint3d(0, 1, 0), tube.centroid, 2);
    EXPECT_EQ(entityCount(), 4) << "three solids and the path, which stays";
}

TEST_F(Modelling, BooleansChangeTheFirstSolidOnlyWhenTheyMakeSense) {
    ASSERT_EQ(command(L"BOX", L"0,0,0 2,2\n2\n"), RTNORM);
    ASSERT_EQ(command(L"BOX", L"1,0,0 3,2\n2\n"), RTNORM);
    ASSERT_EQ(command(L"SPHERE", L"50,50,50 1\n"), RTNORM);
    auto ids = solids();
    // Handles go with "#", which tells the handle "C" from the Crossing option.
    const std::wstring a = handleOf(ids[0]), b = handleOf(ids[1]), far = handleOf(ids[2]);
    // The far sphere meets neither box: intersecting and subtracting it are refused.
    EXPECT_EQ(command(L"INTERSECT", a + L" " + far + L"\n\n"), RTERROR);
    EXPECT_NE(printed().find(L"do not overlap"), std::wstring::npos) << printed();
    EXPECT_EQ(command(L"SUBTRACT", a + L"\n\n" + far + L"\n\n"), RTERROR);
    EXPECT_EQ(solids().size(), 3u);
    EXPECT_VOLUME(8.0, massOf(ids[0]).volume);
    // The overlap of the two boxes is 1 x 2 x 2.
    ASSERT_EQ(command(L"INTERSECT", a + L" " + b + L"\n\n"), RTNORM) << printed();
    ids = solids();
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_VOLUME(4.0, massOf(ids[0]).volume);
    EXPECT_POINT(AcGePoint3d(1.5, 1, 1), massOf(ids[0]).centroid, 3);
    // A box with a sphere subtracted from its middle; then the union with a far sphere.
    ASSERT_EQ(command(L"BOX", L"10,0,0 14,4\n4\n"), RTNORM);
    ASSERT_EQ(command(L"SPHERE", L"12,2,2 1\n"), RTNORM);
    ids = solids();
    const std::wstring box = handleOf(ids[2]), hole = handleOf(ids[3]);
    ASSERT_EQ(command(L"SUBTRACT", box + L"\n\n" + hole + L"\n\n"), RTNORM) << printed();
    EXPECT_VOLUME(64.0 - 4.0 / 3.0 * kPi, massOf(ids[2]).volume);
    ASSERT_EQ(command(L"UNION", box + L" " + far + L"\n\n"), RTNORM) << printed();
    EXPECT_VOLUME(64.0, massOf(ids[2]).volume) << "the hole and the far ball weigh alike";
    EXPECT_EQ(solids().size(), 2u);
}

TEST_F(Modelling, SliceKeepsASideOrBothAndExplodeGivesTheFaces) {
    ASSERT_EQ(command(L"BOX", L"0,0,0 4,2\n2\n"), RTNORM);
    // The plane x = 1 through three points, keeping the side towards x = 4.
    ASSERT_EQ(command(L"SLICE", L"L\n\n1,0,0 1,1,0 1,0,1 4,0,0\n"), RTNORM) << printed();
    auto ids = solids();
    ASSERT_EQ(ids.size(), 1u);
    EXPECT_VOLUME(12.0, massOf(ids[0]).volume);
    EXPECT_POINT(AcGePoint3d(2.5, 1, 1), massOf(ids[0]).centroid, 4);
    // Both sides of the plane z = 0.5 (the XY option).
    ASSERT_EQ(command(L"SLICE", L"L\n\nXY 0,0,0.5\n\n"), RTNORM) << printed();
    ids = solids();
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_VOLUME(12.0, massOf(ids[0]).volume + massOf(ids[1]).volume);
    // A plane that misses the solid changes nothing.
    EXPECT_EQ(command(L"SLICE", L"ALL\n\nXY 0,0,40\n\n"), RTERROR);
    EXPECT_EQ(solids().size(), 2u);
    // A box explodes into its six faces as regions.
    ASSERT_EQ(command(L"ERASE", L"ALL\n\n"), RTNORM);
    ASSERT_EQ(command(L"BOX", L"0,0,0 1,1\n1\n"), RTNORM);
    ASSERT_EQ(command(L"EXPLODE", L"L\n\n"), RTNORM) << printed();
    EXPECT_TRUE(solids().empty());
    EXPECT_EQ(regions().size(), 6u);
    // A region explodes into its boundary lines.
    ASSERT_EQ(command(L"EXPLODE", L"L\n\n"), RTNORM);
    EXPECT_EQ(regions().size(), 5u);
    EXPECT_EQ(entityCount(), 9);
}

TEST_F(Modelling, MasspropAndListReportTheSolid) {
    ASSERT_EQ(command(L"BOX", L"0,0,0 2,4\n6\n"), RTNORM);
    win::Transcript::instance().clear();
    ASSERT_EQ(command(L"MASSPROP", L"L\n\n"), RTNORM);
    const std::wstring out = printed();
    EXPECT_NE(out.find(L"Volume:               48.0000"), std::wstring::npos) << out;
    EXPECT_NE(out.find(L"Centroid:             X: 1.0000"), std::wstring::npos) << out;
    EXPECT_NE(out.find(L"                      Z: 3.0000"), std::wstring::npos) << out;
    EXPECT_NE(out.find(L"Bounding box:         X: 0.0000  --  2.0000"), std::wstring::npos);
    // Principal moments of the box about its centroid: V (b^2 + c^2) / 12 and so on.
    EXPECT_NE(out.find(L"I: 80.0000"), std::wstring::npos) << out;
    EXPECT_NE(out.find(L"K: 208.0000"), std::wstring::npos) << out;
    win::Transcript::instance().clear();
    ASSERT_EQ(command(L"LIST", L"\n"), RTNORM);
    EXPECT_NE(printed().find(L"3DSOLID"), std::wstring::npos);
    EXPECT_NE(printed().find(L"Volume:               48.0000"), std::wstring::npos);
    // Surface area 2 (8 + 12 + 24).
    EXPECT_NE(printed().find(L"Area:                 88.0000"), std::wstring::npos) << printed();
    // Nothing to measure is told.
    add(new AcDbPoint({0, 0, 0}));
    EXPECT_EQ(command(L"MASSPROP", L"L\n\n"), RTERROR);
}

} // namespace
} // namespace editortest
