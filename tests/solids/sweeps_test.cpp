// Extrusion, sweeps along paths (mitred corners included) and revolution.
#include "checks.h"

namespace solidstest {
namespace {

TEST(Extrude, RunsAlongTheRegionNormal) {
    Solid up, down;
    const Region r = polygonRegion({{0, 0}, {2, 0}, {2, 3}, {0, 3}});
    ASSERT_OK(up.extrude(r, 4.0, 0.0));
    EXPECT_VOLUME(up, 24.0, 4.0);
    EXPECT_TRUE(sameExtents({{0, 0, 0}, {2, 3, 4}}, up, 4.0));
    ASSERT_OK(down.extrude(r, -4.0, 0.0));
    EXPECT_VOLUME(down, 24.0, 4.0);
    EXPECT_TRUE(sameExtents({{0, 0, -4}, {2, 3, 0}}, down, 4.0));
}

TEST(Extrude, RegionFacingDownExtrudesDownwards) {
    // A disc whose circle turns clockwise seen from above has the normal -Z.
    Solid s;
    ASSERT_OK(s.extrude(circleRegion({0, 0, 0}, {0, 0, -1}, 1.0), 2.0, 0.0));
    EXPECT_VOLUME(s, 2 * kPi, 2.0);
    EXPECT_TRUE(sameExtents({{-1, -1, -2}, {1, 1, 0}}, s, 2.0));
}

TEST(Extrude, TaperNarrowsOutlineAndWidensHoles) {
    const double a = 4.0, b = 1.0, h = 1.0, taper = 0.1, t = std::tan(taper);
    Solid plain;
    ASSERT_OK(plain.extrude(polygonRegion({{0, 0}, {a, 0}, {a, a}, {0, a}}), h, taper));
    EXPECT_VOLUME(plain, a * a * h - 2 * a * t * h * h + 4.0 / 3.0 * t * t * h * h * h, a);

    Region plate = polygonRegion({{0, 0}, {a, 0}, {a, a}, {0, a}});
    Region hole = polygonRegion({{1.5, 1.5}, {1.5 + b, 1.5}, {1.5 + b, 1.5 + b}, {1.5, 1.5 + b}});
    ASSERT_OK(plate.booleanOper(BoolOperType::kBoolSubtract, hole));
    Solid holed;
    ASSERT_OK(holed.extrude(plate, h, taper));
    // Outline side a - 2 z t, hole side b + 2 z t at height z.
    EXPECT_VOLUME(holed, (a * a - b * b) * h - 2 * t * (a + b) * h * h, a);

    // A tapered disc is a frustum of a cone.
    Solid frustum;
    ASSERT_OK(frustum.extrude(circleRegion({0, 0, 0}, {0, 0, 1}, 1.0), h, taper));
    const double top = 1.0 - h * t;
    EXPECT_VOLUME(frustum, kPi * h * (1 + top + top * top) / 3, 1.0);
}

TEST(Extrude, RefusesZeroHeightAndEmptyRegions) {
    Solid s;
    const Region r = polygonRegion({{0, 0}, {1, 0}, {1, 1}});
    EXPECT_STATUS(Status::eInvalidInput, s.extrude(r, 0.0, 0.0));
    EXPECT_STATUS(Status::eInvalidInput, s.extrude(r, 1.0, kPi / 2));
    EXPECT_STATUS(Status::eNotApplicable, s.extrude(Region{}, 1.0, 0.0));
    EXPECT_TRUE(s.isNull());
}

TEST(SweepAlongPath, StraightPathsTranslateTheProfile) {
    const double r = 0.5;
    const Region disc = circleRegion({0, 0, 0}, {0, 0, 1}, r);
    Solid straight, oblique;
    ASSERT_OK(straight.extrudeAlongPath(disc, LineCurve{{0, 0, 0}, {0, 0, 3}}, 0.0));
    EXPECT_VOLUME(straight, kPi * r * r * 3, 3.0);
    // The profile keeps its plane: a sheared cylinder whose height is the rise of the path.
    ASSERT_OK(oblique.extrudeAlongPath(disc, LineCurve{{0, 0, 0}, {1, 0, 2}}, 0.0));
    EXPECT_VOLUME(oblique, kPi * r * r * 2, 2.0);
    EXPECT_CENTROID(oblique, (Vec3{0.5, 0, 1}), 2.0);
}

TEST(SweepAlongPath, ArcMakesAnElbow) {
    const double R = 3.0, r = 0.5, angle = kPi / 2;
    Solid elbow;
    ASSERT_OK(elbow.extrudeAlongPath(circleRegion({R, 0, 0}, {0, 1, 0}, r),
                                     ArcCurve{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, R, 0.0, angle},
                                     0.0));
    EXPECT_VOLUME(elbow, kPi * r * r * R * angle, R);
    // Each section's centroid, weighted by its distance from the bend axis, lies at
    // R + r^2 / (4 R); over a quarter turn the centroid is at 2/pi of that along X and Y.
    const double rho = R + r * r / (4 * R);
    EXPECT_CENTROID(elbow, (Vec3{rho * 2 / kPi, rho * 2 / kPi, 0}), R);
}

TEST(SweepAlongPath, EllipticArcPathKeepsTheTubeVolume) {
    // A tube of radius r about a curve of length L has volume pi r^2 L while r stays below the
    // curve's radius of curvature (here at least b^2 / a = 1.8).
    const double a = 5.0, b = 3.0, r = 0.5;
    double length = 0.0;
    const int n = 20000;
    for (int i = 0; i < n; ++i) { // midpoint rule, error far below the tolerance
        const double t = (i + 0.5) * (kPi / 2) / n;
        length += std::hypot(a * std::sin(t), b * std::cos(t)) * (kPi / 2) / n;
    }
    Solid tube;
    ASSERT_OK(tube.extrudeAlongPath(
        circleRegion({a, 0, 0}, {0, 1, 0}, r),
        EllipseCurve{{0, 0, 0}, {0, 0, 1}, {a, 0, 0}, b / a, 0.0, kPi / 2}, 0.0));
    // The swept surface along an ellipse is an approximation, good to a few parts in a million.
    EXPECT_TRUE(near(kPi * r * r * length, volumeOf(tube), kPi * r * r * length, 1e-5));
}

TEST(SweepAlongPath, SplinePathKeepsTheTubeVolume) {
    // Quadratic arc from (0, 0) to (4, 4), leaving along +Y: B(t) = (4 t^2, 8 t - 4 t^2).
    const SplineCurve path{2, {{0, 0, 0}, {0, 4, 0}, {4, 4, 0}}, {0, 0, 0, 1, 1, 1}, {}, false};
    double length = 0.0;
    const int n = 20000;
    for (int i = 0; i < n; ++i) {
        const double t = (i + 0.5) / n;
        length += std::hypot(8 * t, 8 - 8 * t) / n;
    }
    const double r = 0.2;
    Solid tube;
    ASSERT_OK(tube.extrudeAlongPath(circleRegion({0, 0, 0}, {0, 1, 0}, r), path, 0.0));
    EXPECT_TRUE(near(kPi * r * r * length, volumeOf(tube), kPi * r * r * length, 1e-5));
}

TEST(SweepAlongPath, PolylineCornersAreMitredExactly) {
    const double R = 3.0, r = 0.5, angle = kPi / 2;
    // Bevel elbow: one mitre at the half angle; the two legs have length R tan(angle / 2).
    PolylineCurve bevel;
    bevel.vertices = {
        {R, 0, 0}, {R, R * std::tan(angle / 2), 0}, {R * std::cos(angle), R * std::sin(angle), 0}};
    Solid elbow;
    ASSERT_OK(elbow.extrudeAlongPath(circleRegion({R, 0, 0}, {0, 1, 0}, r), bevel, 0.0));
    // The mitre's curve on the wall is fitted to a hundred thousandth of the bend (see below).
    EXPECT_NEAR(kPi * r * r * 2 * R * std::tan(angle / 2), volumeOf(elbow), kPi * r * r * R * 1e-5);

    // A 3-D polyline turning in two planes.
    Solid crank;
    ASSERT_OK(crank.extrudeAlongPath(
        circleRegion({0, 0, 0}, {0, 0, 1}, r),
        Polyline3dCurve{{{0, 0, 0}, {0, 0, 4}, {3, 0, 4}, {3, 5, 4}}, false}, 0.0));
    EXPECT_VOLUME(crank, kPi * r * r * 12, 5.0);
    EXPECT_EQ(1, crank.topology().solids);
}

// The segmented elbow at every small count and a spread of large ones: the path runs one segment
// beyond the end, and a slice through the bend axis and the end vertex trims the overshoot. What
// stays is one round pipe along the chords, its section square to each of them.
TEST(SweepAlongPath, SegmentedElbowsOfAnyCountAreRoundPipesAlongTheChords) {
    const double R = 0.5, r = 0.1, angle = kPi / 2;
    for (int n : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 16, 24, 31, 47, 64}) {
        SCOPED_TRACE(n);
        const double step = angle / n;
        PolylineCurve path;
        for (int i = 0; i <= n + 1; ++i)
            path.vertices.push_back({R * std::cos(i * step), R * std::sin(i * step), 0});
        Solid elbow;
        ASSERT_OK(elbow.extrudeAlongPath(circleRegion({R, 0, 0}, {0, 1, 0}, r), path, 0.0));
        const Vec3 end = polylinePoint(path, n);
        const double before = volumeOf(elbow);
        ASSERT_OK(elbow.getSlice({{0, 0, 0}, {end.y, -end.x, 0}}, false, nullptr));
        const double chords = 2 * n * R * std::sin(step / 2);
        // The mitres meet the pipe's wall in curves the kernel fits to within a hundred
        // thousandth of the bend, and the volume follows them to the section's area times that.
        const double fitted = kPi * r * r * R * 1e-5;
        EXPECT_NEAR(kPi * r * r * chords, volumeOf(elbow), fitted);
        // The overshoot was one more chord of the same pipe.
        EXPECT_NEAR(kPi * r * r * chords * (n + 1) / n, before, fitted);
        EXPECT_EQ(1, elbow.topology().solids);
        Extents e;
        ASSERT_OK(elbow.getGeomExtents(e));
        // Both ends lie on the radial planes, start and cut, each an ellipse of the round pipe
        // reaching r / cos(step / 2) out from the bend radius.
        const double reach = R + r / std::cos(step / 2);
        EXPECT_NEAR(0.0, e.min.x, r * 1e-6);
        EXPECT_NEAR(0.0, e.min.y, r * 1e-6);
        EXPECT_NEAR(reach, e.max.x, r * 1e-6);
        EXPECT_NEAR(reach, e.max.y, r * 1e-6);
    }
}

// A path of more straight pieces than the fuse can take in reasonable time is refused at once,
// and the solid stays as it was.
TEST(SweepAlongPath, APathOfTooManySegmentsIsRefusedAtOnce) {
    const double R = 0.5, r = 0.01;
    for (const int n : {257, 5000}) {
        SCOPED_TRACE(n);
        const double step = 0.5 * kPi / n;
        PolylineCurve path;
        for (int i = 0; i <= n; ++i)
            path.vertices.push_back({R * std::cos(i * step), R * std::sin(i * step), 0});
        Solid pipe;
        EXPECT_EQ(Status::eInvalidInput,
                  pipe.extrudeAlongPath(circleRegion({R, 0, 0}, {0, 1, 0}, r), path, 0.0));
        EXPECT_EQ(0, pipe.topology().solids);
    }
}

// Square to the path: the pipe starts on the region's plane and ends square to its last
// segment, a whole circle of the region's radius there, wherever the path turns in between.
TEST(SweepAlongPath, PolylineSectionStaysSquareToTheSegments) {
    const double r = 0.5;
    Solid pipe;
    ASSERT_OK(pipe.extrudeAlongPath(circleRegion({0, 0, 0}, {0, 1, 0}, r),
                                    Polyline3dCurve{{{0, 0, 0}, {3, 4, 0}, {3, 4, 6}}, false},
                                    0.0));
    EXPECT_VOLUME(pipe, kPi * r * r * 11, 6.0);
    EXPECT_EQ(1, pipe.topology().solids);
    std::vector<Piece> pieces;
    ASSERT_OK(pipe.explode(pieces));
    int ends = 0, circles = 0;
    for (const Piece& piece : pieces) {
        const auto* region = std::get_if<Region>(&piece);
        if (!region) continue;
        ++ends;
        std::vector<Curve> edges;
        ASSERT_OK(region->explode(edges));
        ASSERT_EQ(1u, edges.size());
        const auto* c = std::get_if<CircleCurve>(&edges[0]);
        if (!c) continue;
        ++circles;
        EXPECT_TRUE(samePoint({3, 4, 6}, c->center, 6.0));
        EXPECT_TRUE(sameDirection({0, 0, 1}, c->normal, 1e-9));
        EXPECT_NEAR(r, c->radius, r * 1e-6);
    }
    EXPECT_EQ(2, ends);
    EXPECT_EQ(1, circles); // the start, on the region's leaning plane, is an ellipse
}

TEST(SweepAlongPath, ObliqueExtrusionCutAtItsHeightKeepsAFlatTop) {
    // The polyline extrusion: an outline with a hole, swept far too long along an oblique
    // line that starts a little below it, then cut by the plane through the top point with
    // normal -Z. What stays is the sheared prism of the given height.
    PolylineCurve outline; // closes on its first vertex without the closed flag
    outline.vertices = {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {0, 3, 0}, {0, 0, 0}};
    PolylineCurve hole;
    hole.vertices = {{1, 1, 0}, {2, 1, 0}, {2, 2, 0}, {1, 2, 0}};
    hole.closed = true;
    std::vector<Region> outer, inner;
    ASSERT_OK(Region::createFromCurves({outline}, outer));
    ASSERT_OK(Region::createFromCurves({hole}, inner));
    ASSERT_OK(outer.at(0).booleanOper(BoolOperType::kBoolSubtract, inner.at(0)));
    const double height = 2.0, total = 8.0, e = 0.001;
    const Vec3 d = {0.6, 0.0, 0.8}; // unit direction
    Solid s;
    ASSERT_OK(s.extrudeAlongPath(
        outer[0],
        LineCurve{{-e * d.x, -e * d.y, -e * d.z}, {total * d.x, total * d.y, total * d.z}}, 0.0));
    ASSERT_OK(s.getSlice({{height * d.x, height * d.y, height * d.z}, {0, 0, -1}}, false, nullptr));
    EXPECT_VOLUME(s, 11.0 * height * d.z, 4.0);
    Extents ext;
    ASSERT_OK(s.getGeomExtents(ext));
    EXPECT_NEAR(0.0, ext.min.z, 1e-9);
    EXPECT_NEAR(height * d.z, ext.max.z, 1e-9);
}

TEST(SweepAlongPath, BulgedPolylineAndWholeCirclePaths) {
    // Straight, a quarter turn of radius 2 by bulge tan(pi / 8), straight again.
    const double r = 0.25, R = 2.0;
    PolylineCurve bend;
    bend.vertices = {{0, 0, 0}, {0, 3, std::tan(kPi / 8)}, {-R, 3 + R, 0}, {-R - 4, 3 + R, 0}};
    Solid pipe;
    ASSERT_OK(pipe.extrudeAlongPath(circleRegion({0, 0, 0}, {0, 1, 0}, r), bend, 0.0));
    EXPECT_VOLUME(pipe, kPi * r * r * (3 + R * kPi / 2 + 4), 4.0);

    // A closed path closes the tube into a ring: no ends.
    Solid ring;
    ASSERT_OK(ring.extrudeAlongPath(circleRegion({R, 0, 0}, {0, 1, 0}, r),
                                    CircleCurve{{0, 0, 0}, {0, 0, 1}, R}, 0.0));
    EXPECT_VOLUME(ring, kPi * r * r * 2 * kPi * R, R);
    EXPECT_EQ(0, ring.topology().planar);
}

TEST(SweepAlongPath, HolesInTheProfileStayHoles) {
    const double R = 3.0, r1 = 0.5, r2 = 0.3;
    Region pipe = circleRegion({R, 0, 0}, {0, 1, 0}, r1);
    Region bore = circleRegion({R, 0, 0}, {0, 1, 0}, r2);
    ASSERT_OK(pipe.booleanOper(BoolOperType::kBoolSubtract, bore));
    Solid elbow;
    ASSERT_OK(
        elbow.extrudeAlongPath(pipe, ArcCurve{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, R, 0, kPi}, 0.0));
    EXPECT_VOLUME(elbow, kPi * (r1 * r1 - r2 * r2) * R * kPi, R);
}

TEST(SweepAlongPath, RefusedInputs) {
    Solid s;
    const Region disc = circleRegion({0, 0, 0}, {0, 0, 1}, 0.5);
    // The path lies in the profile's plane: no volume.
    EXPECT_STATUS(Status::eDegenerateGeometry,
                  s.extrudeAlongPath(disc, LineCurve{{0, 0, 0}, {3, 0, 0}}, 0.0));
    EXPECT_STATUS(Status::eInvalidInput,
                  s.extrudeAlongPath(disc, LineCurve{{0, 0, 0}, {0, 0, 3}}, 0.1));
    EXPECT_STATUS(Status::eInvalidInput,
                  s.extrudeAlongPath(disc, LineCurve{{0, 0, 0}, {0, 0, 0}}, 0.0));
    EXPECT_STATUS(Status::eNotApplicable,
                  s.extrudeAlongPath(Region{}, LineCurve{{0, 0, 0}, {0, 0, 3}}, 0.0));
    EXPECT_TRUE(s.isNull());
}

TEST(Revolve, RectangleAboutAnAxisInItsPlaneMakesATube) {
    Solid tube, quarter;
    const Region r = polygonRegion({{1, 0}, {2, 0}, {2, 3}, {1, 3}});
    ASSERT_OK(tube.revolve(r, {0, 0, 0}, {0, 1, 0}, 2 * kPi));
    EXPECT_VOLUME(tube, kPi * (4 - 1) * 3, 3.0);
    EXPECT_CENTROID(tube, (Vec3{0, 1.5, 0}), 3.0);
    ASSERT_OK(quarter.revolve(r, {0, 0, 0}, {0, 1, 0}, kPi / 2));
    EXPECT_VOLUME(quarter, kPi * (4 - 1) * 3 / 4, 3.0);
    // Turning the other way round the axis sweeps the other quarter, with the same volume.
    Solid other;
    ASSERT_OK(other.revolve(r, {0, 0, 0}, {0, -1, 0}, kPi / 2));
    EXPECT_VOLUME(other, kPi * (4 - 1) * 3 / 4, 3.0);
    EXPECT_LT(centroidOf(other).z * centroidOf(quarter).z, 0.0);
}

TEST(Revolve, SemiEllipticCapIsHalfAnEllipsoid) {
    const double r = 2.0;
    std::vector<Region> regions;
    ASSERT_OK(Region::createFromCurves(
        {LineCurve{{0, 0, 0}, {r, 0, 0}},
         EllipseCurve{{0, 0, 0}, {0, 0, 1}, {r, 0, 0}, 0.5, 0.0, 1.5707963705062866},
         LineCurve{{0, r * 0.5, 0}, {0, 0, 0}}},
        regions));
    ASSERT_EQ(1u, regions.size());
    Solid cap;
    ASSERT_OK(cap.revolve(regions[0], {0, 0, 0}, {0, 1, 0}, 6.2831854820251465));
    // The quarter ellipse ends a single-precision hair past the axis.
    EXPECT_TRUE(near(kPi * r * r * r / 3, volumeOf(cap), r * r * r, 1e-7));
}

TEST(Revolve, RefusesAxesThroughOrAlongTheRegion) {
    Solid s;
    const Region r = polygonRegion({{-1, 0}, {2, 0}, {2, 3}, {-1, 3}});
    EXPECT_STATUS(Status::eInvalidInput, s.revolve(r, {0, 0, 0}, {0, 1, 0}, 2 * kPi));
    EXPECT_STATUS(Status::eInvalidInput, s.revolve(r, {0.5, 1, 0}, {0, 1, 1}, 2 * kPi));
    EXPECT_STATUS(Status::eDegenerateGeometry, s.revolve(r, {5, 0, 0}, {0, 0, 1}, kPi));
    EXPECT_STATUS(Status::eInvalidInput, s.revolve(r, {5, 0, 0}, {0, 1, 0}, 0.0));
    EXPECT_STATUS(Status::eInvalidInput, s.revolve(r, {5, 0, 0}, {0, 0, 0}, kPi));
    EXPECT_TRUE(s.isNull());
}

} // namespace
} // namespace solidstest
