// Holes joined into the outline of a face: every corner kept, the face's area, and bridges
// that run inside the face whatever lies between the hole and the nearest corner.
#include "companion_test.h"
#include "outline.h"

#include <algorithm>

namespace companiontest {
namespace {

using toviqelout::joinedOutline;

Outline square(double x, double y, double side, bool clockwise) {
    Outline s = {{x, y, 0}, {x + side, y, 0}, {x + side, y + side, 0}, {x, y + side, 0}};
    if (clockwise) std::reverse(s.begin(), s.end());
    return s;
}

bool holds(const Outline& outline, const Outline& corners) {
    return std::all_of(corners.begin(), corners.end(), [&](const AcGePoint3d& p) {
        return std::any_of(outline.begin(), outline.end(),
                           [&](const AcGePoint3d& q) { return q.distanceTo(p) < 1e-12; });
    });
}

TEST(JoinedOutline, AHoleBehindAnotherIsBridgedRoundIt) {
    // The corner nearest the big hole is hidden behind the small one.
    const Outline outer = square(0, 0, 10, false);
    const Outline small = {{0.4, 0.6, 0}, {0.4, 1.1, 0}, {0.9, 1.1, 0}, {0.9, 0.6, 0}};
    const Outline big = square(1.5, 1.5, 1.5, true);
    const auto outline = joinedOutline(outer, {small, big});
    ASSERT_TRUE(outline);
    EXPECT_EQ(outline->size(), 4u + 6u + 6u);
    EXPECT_TRUE(holds(*outline, outer));
    EXPECT_TRUE(holds(*outline, small));
    EXPECT_TRUE(holds(*outline, big));
    EXPECT_FALSE(crossesItself(*outline));
    EXPECT_NEAR(twiceArea(*outline), 2 * (100.0 - 0.25 - 2.25), 1e-9);
}

TEST(JoinedOutline, BridgesStayInsideAConcaveOutline) {
    // A C whose upper arm has a tooth reaching down to just above the lower arm: the tooth's
    // tip is the corner nearest the hole in the lower arm, but across the opening.
    const Outline outer = {{0, 0, 0},     {10, 0, 0}, {10, 3, 0}, {3, 3, 0},   {3, 7, 0}, {6, 7, 0},
                           {6.5, 3.2, 0}, {7, 7, 0},  {10, 7, 0}, {10, 10, 0}, {0, 10, 0}};
    const Outline hole = {{6, 2, 0}, {6, 2.8, 0}, {7, 2.8, 0}, {7, 2, 0}};
    const auto outline = joinedOutline(outer, {hole});
    ASSERT_TRUE(outline);
    EXPECT_EQ(outline->size(), outer.size() + hole.size() + 2);
    EXPECT_FALSE(crossesItself(*outline));
    const Apart apart = takeApart(*outline);
    EXPECT_TRUE(sameLoop(apart.outer, outer));
    EXPECT_TRUE(sameLoop(apart.hole, hole));
}

TEST(JoinedOutline, HolesRunningTheOtherWayAreTurnedAndTiltedFacesKeepTheirPlane) {
    // The face of a square with a hole, tilted out of the XY plane and moved.
    const AcGeMatrix3d tilt =
        AcGeMatrix3d::translation(AcGeVector3d(1, 2, 3)) *
        AcGeMatrix3d::rotation(1.1, AcGeVector3d(1, -2, 0.5).normal(), AcGePoint3d::kOrigin);
    auto placed = [&](Outline loop) {
        for (AcGePoint3d& p : loop)
            p.transformBy(tilt);
        return loop;
    };
    const auto outline = joinedOutline(placed(square(0, 0, 4, false)),
                                       {placed(square(1, 1, 2, false))}); // counter-clockwise
    ASSERT_TRUE(outline);
    Outline back = *outline;
    for (AcGePoint3d& p : back) {
        p.transformBy(tilt.inverse());
        EXPECT_NEAR(p.z, 0.0, 1e-12);
    }
    EXPECT_NEAR(twiceArea(back), 2 * (16.0 - 4.0), 1e-9);
    EXPECT_FALSE(crossesItself(back));
}

TEST(JoinedOutline, LoopsOfTooFewOrCollinearCornersAreRefused) {
    const Outline line = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
    EXPECT_FALSE(joinedOutline({{0, 0, 0}, {1, 0, 0}}, {}));
    EXPECT_FALSE(joinedOutline(line, {}));
    EXPECT_FALSE(joinedOutline(square(0, 0, 10, false), {{{1, 1, 0}, {2, 2, 0}}}));
    // A face without holes is its outer loop as it stands.
    const auto plain = joinedOutline(square(0, 0, 1, false), {});
    ASSERT_TRUE(plain);
    EXPECT_TRUE(sameLoop(*plain, square(0, 0, 1, false)));
}

} // namespace
} // namespace companiontest
