// The UCS command as the module sends it, against the frames it must give.
#include "editor_test.h"

#include <cmath>

namespace editortest {
namespace {

using UcsCommand = EditorTest;

const AcGeVector3d X = AcGeVector3d::kXAxis, Y = AcGeVector3d::kYAxis, Z = AcGeVector3d::kZAxis;

TEST_F(UcsCommand, ThreePointsFromWorldGiveTheFrameThroughThem) {
    ads_point o = {1, 2, 3}, px = {1, 7, 3}, py = {0, 2, 3};
    EXPECT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_W", RTNONE), RTNORM);
    EXPECT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_3P", RT3DPOINT, o, RT3DPOINT, px, RT3DPOINT,
                          py, RTNONE),
              RTNORM);
    expectUcs({1, 2, 3}, Y, -X);
    // The Y point need only lie in the positive half of the plane.
    ads_point slanted = {5, 9, 3};
    EXPECT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_W", RTSTR, L"_UCS", RTSTR, L"_3P", RT3DPOINT,
                          o, RT3DPOINT, px, RT3DPOINT, slanted, RTNONE),
              RTNORM);
    expectUcs({1, 2, 3}, Y, X);
}

TEST_F(UcsCommand, PointsAreTakenInTheCurrentUcs) {
    ads_point o = {0, 0, 0}, px = {0, 1, 0}, py = {-1, 0, 0};
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_3P", RT3DPOINT, o, RT3DPOINT, px, RT3DPOINT,
                          py, RTNONE),
              RTNORM);
    expectUcs({0, 0, 0}, Y, -X);
    // Origin (10, 0, 0) of this UCS is (0, 10, 0) in the world; the axes stay.
    ads_point moved = {10, 0, 0};
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_O", RT3DPOINT, moved, RTNONE), RTNORM);
    expectUcs({0, 10, 0}, Y, -X);
    // A point made now lands in the world where the UCS puts it.
    ads_point at = {1, 2, 3};
    ASSERT_EQ(acedCommand(RTSTR, L"_point", RT3DPOINT, at, RTNONE), RTNORM);
    ads_name last;
    AcDbObjectId id;
    ASSERT_EQ(acdbEntLast(last), RTNORM);
    ASSERT_EQ(acdbGetObjectId(id, last), Acad::eOk);
    AcDbPoint* point = nullptr;
    ASSERT_EQ(acdbOpenObject(point, id, AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(point->position().isEqualTo({-2, 11, 3}));
    point->close();
}

TEST_F(UcsCommand, ZAxisTurnsTheFrameAndTransWalksPointsThrough) {
    ads_point o = {0, 0, 0}, tip = {1, 0, 0};
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_W", RTSTR, L"_UCS", RTSTR, L"_ZA", RT3DPOINT,
                          o, RT3DPOINT, tip, RTNONE),
              RTNORM);
    // Z along world X; X by the arbitrary-axis rule: world Z cross the normal is world Y.
    expectUcs({0, 0, 0}, Y, Z);
    resbuf ucs, world;
    ucs.restype = world.restype = RTSHORT;
    ucs.resval.rint = 1;
    world.resval.rint = 0;
    ads_point height = {0, 0, 5}, out;
    ASSERT_EQ(acedTrans(height, &ucs, &world, 0, out), RTNORM);
    EXPECT_NEAR(out[0], 5, 1e-12);
    EXPECT_NEAR(out[1], 0, 1e-12);
    EXPECT_NEAR(out[2], 0, 1e-12);
    ads_point back;
    ASSERT_EQ(acedTrans(out, &world, &ucs, 0, back), RTNORM);
    EXPECT_NEAR(back[2], 5, 1e-12);
    resbuf display;
    display.restype = RTSHORT;
    display.resval.rint = 2;
    EXPECT_EQ(acedTrans(height, &display, &world, 0, out), RTERROR);
}

TEST_F(UcsCommand, DegeneratePointsAreRefusedAndTheUcsStays) {
    ads_point o = {1, 1, 0}, px = {2, 1, 0}, same = {1, 1, 0}, onLine = {3, 1, 0};
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_O", RT3DPOINT, o, RTNONE), RTNORM);
    EXPECT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_3P", RT3DPOINT, o, RT3DPOINT, same, RT3DPOINT,
                          px, RTNONE),
              RTERROR);
    EXPECT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_3P", RT3DPOINT, same, RT3DPOINT, px,
                          RT3DPOINT, onLine, RTNONE),
              RTERROR);
    EXPECT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_ZA", RT3DPOINT, o, RT3DPOINT, same, RTNONE),
              RTERROR);
    expectUcs({1, 1, 0}, X, Y);
}

TEST_F(UcsCommand, RotationsAboutTheAxes) {
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_X", RTREAL, 90.0, RTNONE), RTNORM);
    expectUcs({0, 0, 0}, X, Z);
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_W", RTSTR, L"_UCS", RTSTR, L"_Y", RTSTR, L"",
                          RTNONE),
              RTNORM);
    expectUcs({0, 0, 0}, -Z, Y);
}

TEST_F(UcsCommand, NamedSystemsAreSavedReplacedAfterDeleteAndRestored) {
    ads_point o = {5, 0, 0};
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_O", RT3DPOINT, o, RTSTR, L"_UCS", RTSTR,
                          L"_D", RTSTR, L"Pump", RTSTR, L"_UCS", RTSTR, L"_S", RTSTR, L"Pump",
                          RTNONE),
              RTNORM);
    EXPECT_NE(acdbTblSearch(L"UCS", L"Pump", 0), nullptr);
    resbuf* rb = acdbTblSearch(L"UCS", L"Pump", 0);
    acutRelRb(rb);
    ads_point other = {0, 7, 0};
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_W", RTSTR, L"_UCS", RTSTR, L"_O", RT3DPOINT,
                          other, RTSTR, L"_UCS", RTSTR, L"_D", RTSTR, L"Pump", RTSTR, L"_UCS",
                          RTSTR, L"_S", RTSTR, L"Pump", RTNONE),
              RTNORM);
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_W", RTSTR, L"_UCS", RTSTR, L"_R", RTSTR,
                          L"pump", RTNONE),
              RTNORM);
    expectUcs({0, 7, 0}, X, Y);
    // Saving over an existing name asks; "No" keeps the old one.
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_W", RTSTR, L"_UCS", RTSTR, L"_S", RTSTR,
                          L"Pump", RTSTR, L"_N", RTNONE),
              RTNORM);
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_R", RTSTR, L"Pump", RTNONE), RTNORM);
    expectUcs({0, 7, 0}, X, Y);
    // Delete takes wildcards and says when nothing matched.
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_D", RTSTR, L"P*", RTNONE), RTNORM);
    EXPECT_EQ(acdbTblSearch(L"UCS", L"Pump", 0), nullptr);
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_D", RTSTR, L"Pump", RTNONE), RTNORM);
    EXPECT_NE(printed().find(L"No matching UCS names found."), std::wstring::npos);
}

TEST_F(UcsCommand, TokensRunningOutCancelAndUnknownCommandsFail) {
    EXPECT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_3P", RTNONE), RTCAN);
    EXPECT_EQ(acedCommand(RTSTR, L"_nosuch", RTNONE), RTERROR);
    EXPECT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_Q", RTNONE), RTERROR);
    // The system variables follow the UCS.
    ads_point o = {1, 2, 3};
    ASSERT_EQ(acedCommand(RTSTR, L"_UCS", RTSTR, L"_O", RT3DPOINT, o, RTNONE), RTNORM);
    resbuf org;
    org.restype = RTNONE;
    ASSERT_EQ(acedGetVar(L"UCSORG", &org), RTNORM);
    EXPECT_EQ(org.restype, RT3DPOINT);
    EXPECT_EQ(org.resval.rpoint[2], 3.0);
}

} // namespace
} // namespace editortest
