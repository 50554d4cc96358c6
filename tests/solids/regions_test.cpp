// Regions from curves: loops in any order and direction, the normal they take, holes by
// subtraction, and the loops the host refuses.
#include "checks.h"

#include <algorithm>

namespace solidstest {
namespace {

std::vector<Region> regionsOf(const std::vector<Curve>& curves, Status expected = Status::eOk) {
    std::vector<Region> regions;
    EXPECT_STATUS(expected, Region::createFromCurves(curves, regions));
    return regions;
}

Vec3 normalOf(const Region& region) {
    Vec3 n;
    EXPECT_STATUS(Status::eOk, region.getNormal(n));
    return n;
}

TEST(RegionFromCurves, LinesInAnyOrderAndDirectionCloseALoop) {
    const std::vector<Curve> square = {
        LineCurve{{2, 0, 0}, {2, 3, 0}}, LineCurve{{0, 0, 0}, {0, 3, 0}},
        LineCurve{{2, 0, 0}, {0, 0, 0}}, LineCurve{{0, 3, 0}, {2, 3, 0}}};
    const auto regions = regionsOf(square);
    ASSERT_EQ(1u, regions.size());
    EXPECT_AREA(regions[0], 6.0, 3.0);
    EXPECT_TRUE(sameDirection({0, 0, 1}, normalOf(regions[0])));
    Vec3 c;
    ASSERT_OK(regions[0].getCentroid(c));
    EXPECT_TRUE(samePoint({1, 1.5, 0}, c, 3.0));
}

TEST(RegionFromCurves, ArcsGiveTheirNormalToTheRegion) {
    // A slot: two straight sides and two half circles drawn clockwise seen from +Z.
    const double r = 1.0, L = 4.0;
    const std::vector<Curve> slot = {
        LineCurve{{0, -r, 0}, {L, -r, 0}}, ArcCurve{{0, 0, 0}, {0, 0, -1}, {0, -1, 0}, r, 0.0, kPi},
        LineCurve{{L, r, 0}, {0, r, 0}}, ArcCurve{{L, 0, 0}, {0, 0, -1}, {0, 1, 0}, r, 0.0, kPi}};
    const auto regions = regionsOf(slot);
    ASSERT_EQ(1u, regions.size());
    EXPECT_AREA(regions[0], 2 * r * L + kPi * r * r, L);
    EXPECT_TRUE(sameDirection({0, 0, -1}, normalOf(regions[0])));
}

TEST(RegionFromCurves, ClosedCurvesAreLoopsOfTheirOwn) {
    const auto regions = regionsOf({CircleCurve{{0, 0, 5}, {1, 0, 0}, 2.0},
                                    EllipseCurve{{10, 0, 0}, {0, 0, 1}, {3, 0, 0}, 0.5}});
    ASSERT_EQ(2u, regions.size());
    EXPECT_AREA(regions[0], kPi * 4.0, 2.0);
    EXPECT_TRUE(sameDirection({1, 0, 0}, normalOf(regions[0])));
    EXPECT_AREA(regions[1], kPi * 3.0 * 1.5, 3.0);

    std::vector<Curve> edges;
    ASSERT_OK(regions[0].explode(edges));
    ASSERT_EQ(1u, edges.size());
    const auto* circle = std::get_if<CircleCurve>(&edges[0]);
    ASSERT_NE(nullptr, circle);
    EXPECT_NEAR(2.0, circle->radius, 2.0 * kRelTol);
    EXPECT_TRUE(sameDirection({1, 0, 0}, circle->normal));
    EXPECT_TRUE(samePoint({0, 0, 5}, circle->center, 2.0));
}

TEST(RegionFromCurves, PolylineBulgesAndEndsThatMeet) {
    // Two half circles by bulge 1: a whole circle of radius 1 in a plane of normal +X.
    PolylineCurve disc;
    disc.normal = {1, 0, 0};
    disc.elevation = 3.0;
    disc.vertices = {{0, 0, 1.0}, {2, 0, 1.0}};
    disc.closed = true;
    auto regions = regionsOf({disc});
    ASSERT_EQ(1u, regions.size());
    EXPECT_AREA(regions[0], kPi, 1.0);
    EXPECT_TRUE(sameDirection({1, 0, 0}, normalOf(regions[0])));
    Extents e;
    ASSERT_OK(regions[0].getGeomExtents(e));
    EXPECT_NEAR(3.0, e.min.x, 1e-9); // the elevation is along the normal

    // Not marked closed, but the last vertex is the first: a loop all the same.
    PolylineCurve open;
    open.vertices = {{0, 0, 0}, {4, 0, 0}, {4, 1, 0}, {0, 1, 0}, {0, 0, 0}};
    regions = regionsOf({open});
    ASSERT_EQ(1u, regions.size());
    EXPECT_AREA(regions[0], 4.0, 4.0);
}

TEST(RegionFromCurves, SplineAndEllipseBoundaries) {
    // Quadratic arch y = 2x - x^2 over [0, 2], closed by its chord: area 4/3.
    const SplineCurve arch{2, {{0, 0, 0}, {1, 2, 0}, {2, 0, 0}}, {0, 0, 0, 1, 1, 1}, {}, false};
    auto regions = regionsOf({arch, LineCurve{{0, 0, 0}, {2, 0, 0}}});
    ASSERT_EQ(1u, regions.size());
    EXPECT_AREA(regions[0], 4.0 / 3.0, 2.0);

    // The profile of a semi-elliptic cap: its quarter ellipse ends at a single-precision right
    // angle, a hair beyond the line it meets.
    const double r = 100.0;
    regions =
        regionsOf({LineCurve{{0, 0, 0}, {r, 0, 0}},
                   EllipseCurve{{0, 0, 0}, {0, 0, 1}, {r, 0, 0}, 0.5, 0.0, 1.5707963705062866},
                   LineCurve{{0, r * 0.5, 0}, {0, 0, 0}}});
    ASSERT_EQ(1u, regions.size());
    EXPECT_TRUE(near(kPi * r * r * 0.5 / 4, areaOf(regions[0]), r * r, 1e-7));
}

TEST(RegionFromCurves, RefusedLoopsGiveAStatusAndNoRegion) {
    EXPECT_TRUE(regionsOf({LineCurve{{0, 0, 0}, {1, 0, 0}}, LineCurve{{1, 0, 0}, {1, 1, 0}},
                           LineCurve{{1, 1, 0}, {0, 0.5, 0}}},
                          Status::eOpenLoop)
                    .empty());
    PolylineCurve bowTie;
    bowTie.vertices = {{0, 0, 0}, {2, 2, 0}, {2, 0, 0}, {0, 2, 0}};
    bowTie.closed = true;
    EXPECT_TRUE(regionsOf({bowTie}, Status::eSelfIntersecting).empty());
    const Polyline3dCurve twisted{{{0, 0, 0}, {1, 0, 0}, {1, 1, 1}, {0, 1, 0}}, true};
    EXPECT_TRUE(regionsOf({twisted}, Status::eNonPlanarEntity).empty());
    EXPECT_TRUE(regionsOf({}, Status::eInvalidInput).empty());
    EXPECT_TRUE(regionsOf({CircleCurve{{0, 0, 0}, {0, 0, 1}, 0.0}}, Status::eInvalidInput).empty());
    EXPECT_TRUE(regionsOf({CircleCurve{{0, 0, 0}, {0, 0, 0}, 1.0}}, Status::eInvalidInput).empty());
    EXPECT_TRUE(regionsOf({LineCurve{{1, 1, 1}, {1, 1, 1}}}, Status::eInvalidInput).empty());
    const SplineCurve badKnots{3, {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}}, {0, 1}, {}, false};
    EXPECT_TRUE(regionsOf({badKnots}, Status::eInvalidInput).empty());
}

TEST(RegionBoolean, NestedLoopsMakeAHoleBySubtraction) {
    auto regions =
        regionsOf({CircleCurve{{0, 0, 0}, {0, 0, 1}, 1.0}, LineCurve{{-3, -3, 0}, {3, -3, 0}},
                   LineCurve{{3, -3, 0}, {3, 3, 0}}, LineCurve{{3, 3, 0}, {-3, 3, 0}},
                   LineCurve{{-3, 3, 0}, {-3, -3, 0}}});
    ASSERT_EQ(2u, regions.size());
    Region& hole = regions[0];
    Region& plate = regions[1];
    ASSERT_OK(plate.booleanOper(BoolOperType::kBoolSubtract, hole));
    EXPECT_TRUE(hole.isNull());
    EXPECT_AREA(plate, 36.0 - kPi, 6.0);
    EXPECT_TRUE(sameDirection({0, 0, 1}, normalOf(plate)));

    // The outline runs counter-clockwise about the normal, the hole clockwise.
    std::vector<Curve> edges;
    ASSERT_OK(plate.explode(edges));
    ASSERT_EQ(5u, edges.size());
    const auto circle = std::find_if(edges.begin(), edges.end(), [](const Curve& c) {
        return std::holds_alternative<CircleCurve>(c);
    });
    ASSERT_NE(edges.end(), circle);
    EXPECT_TRUE(sameDirection({0, 0, -1}, std::get<CircleCurve>(*circle).normal));
    const TopologyCounts counts = plate.topology();
    EXPECT_EQ(1, counts.faces);
    EXPECT_EQ(2, counts.loops);
}

TEST(RegionBoolean, UnionIntersectionAndPlanesThatDiffer) {
    Region a = polygonRegion({{0, 0}, {2, 0}, {2, 2}, {0, 2}});
    Region b = polygonRegion({{1, 1}, {3, 1}, {3, 3}, {1, 3}});
    Region c = b;
    ASSERT_OK(a.booleanOper(BoolOperType::kBoolUnite, b));
    EXPECT_AREA(a, 7.0, 3.0);
    Region far = polygonRegion({{10, 10}, {11, 10}, {11, 11}});
    ASSERT_OK(c.booleanOper(BoolOperType::kBoolIntersect, far));
    EXPECT_TRUE(c.isNull());

    // Other planes: refused, both regions as they were.
    Region flat = polygonRegion({{0, 0}, {2, 0}, {2, 2}, {0, 2}});
    Region upright = circleRegion({1, 1, 0}, {1, 0, 0}, 0.5);
    Region raised = circleRegion({1, 1, 0.5}, {0, 0, 1}, 0.5);
    EXPECT_STATUS(Status::eNonCoplanarGeometry,
                  flat.booleanOper(BoolOperType::kBoolSubtract, upright));
    EXPECT_STATUS(Status::eNonCoplanarGeometry,
                  flat.booleanOper(BoolOperType::kBoolSubtract, raised));
    EXPECT_AREA(flat, 4.0, 2.0);
    EXPECT_AREA(upright, kPi * 0.25, 0.5);
    Region empty;
    EXPECT_STATUS(Status::eNotApplicable, flat.booleanOper(BoolOperType::kBoolUnite, empty));
}

TEST(RegionTransform, SimilaritiesOnly) {
    Region r = polygonRegion({{0, 0}, {2, 0}, {2, 1}, {0, 1}});
    ASSERT_OK(r.transformBy(Matrix::rotation(kPi / 2, {1, 0, 0}) * Matrix::scaling(3.0)));
    EXPECT_AREA(r, 18.0, 6.0);
    EXPECT_TRUE(sameDirection({0, -1, 0}, normalOf(r)));
    Matrix stretch;
    stretch(0, 0) = 2.0;
    EXPECT_STATUS(Status::eCannotScaleNonUniformly, r.transformBy(stretch));
    EXPECT_AREA(r, 18.0, 6.0);
}

} // namespace
} // namespace solidstest
