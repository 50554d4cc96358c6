// Explode into regions and surfaces, their edges, and the boundary walk.
#include "checks.h"

#include <map>

namespace solidstest {
namespace {

struct Exploded {
    std::vector<Region> regions;
    std::vector<Surface> surfaces;
};

Exploded explodeOf(const Solid& solid) {
    std::vector<Piece> pieces;
    EXPECT_STATUS(Status::eOk, solid.explode(pieces));
    Exploded out;
    for (Piece& p : pieces) {
        if (auto* r = std::get_if<Region>(&p))
            out.regions.push_back(std::move(*r));
        else
            out.surfaces.push_back(std::move(std::get<Surface>(p)));
    }
    return out;
}

template <class Shape>
std::vector<Curve> edgesOf(const Shape& shape) {
    std::vector<Curve> curves;
    EXPECT_STATUS(Status::eOk, shape.explode(curves));
    return curves;
}

CircleCurve onlyCircle(const Region& region) {
    const auto edges = edgesOf(region);
    EXPECT_EQ(1u, edges.size());
    const auto* circle = edges.empty() ? nullptr : std::get_if<CircleCurve>(&edges[0]);
    EXPECT_NE(nullptr, circle);
    return circle ? *circle : CircleCurve{};
}

TEST(Explode, CylinderGivesTwoCircularRegionsAndOneSurface) {
    const double r = 0.5, h = 2.0;
    Solid s;
    ASSERT_OK(s.createFrustum(h, r, r, r));
    ASSERT_OK(s.transformBy(Matrix::translation({0, 0, h / 2})));
    const Exploded e = explodeOf(s);
    ASSERT_EQ(2u, e.regions.size());
    ASSERT_EQ(1u, e.surfaces.size());
    // End regions face outwards; their one edge is a circle of that normal.
    for (const Region& region : e.regions) {
        const CircleCurve c = onlyCircle(region);
        EXPECT_NEAR(r, c.radius, r * kRelTol);
        EXPECT_TRUE(sameDirection({0, 0, c.center.z > h / 2 ? 1.0 : -1.0}, c.normal));
        EXPECT_AREA(region, kPi * r * r, r);
    }
    const SurfaceDesc side = e.surfaces[0].description();
    EXPECT_EQ(SurfaceKind::kCylinder, side.kind);
    EXPECT_NEAR(r, side.radius, r * kRelTol);
    EXPECT_TRUE(sameDirection({0, 0, 1}, side.axis));
    // The side's two circles, the base first, each turning as the side runs it.
    const auto rims = edgesOf(e.surfaces[0]);
    ASSERT_EQ(2u, rims.size());
    const auto& base = std::get<CircleCurve>(rims[0]);
    const auto& top = std::get<CircleCurve>(rims[1]);
    EXPECT_TRUE(samePoint({0, 0, 0}, base.center, h));
    EXPECT_TRUE(samePoint({0, 0, h}, top.center, h));
    EXPECT_TRUE(sameDirection({0, 0, -1}, base.normal));
    EXPECT_TRUE(sameDirection({0, 0, 1}, top.normal));
}

TEST(Explode, ConeBaseCircleNormalPointsAwayFromTheApex) {
    const double r = 1.0, h = 3.0;
    Solid s;
    ASSERT_OK(s.createFrustum(h, r, r, 0.0));
    const Exploded e = explodeOf(s);
    ASSERT_EQ(1u, e.regions.size());
    ASSERT_EQ(1u, e.surfaces.size());
    EXPECT_EQ(SurfaceKind::kCone, e.surfaces[0].description().kind);
    const auto rims = edgesOf(e.surfaces[0]);
    ASSERT_EQ(1u, rims.size()); // the apex is no edge
    const auto& base = std::get<CircleCurve>(rims[0]);
    EXPECT_TRUE(samePoint({0, 0, -h / 2}, base.center, h));
    EXPECT_TRUE(sameDirection({0, 0, -1}, base.normal));
    EXPECT_NEAR(r, onlyCircle(e.regions[0]).radius, r * kRelTol);
}

TEST(Explode, SphereAndTorusAreOneSurfaceWithoutEdges) {
    Solid sphere, torus;
    ASSERT_OK(sphere.createSphere(1.0));
    ASSERT_OK(torus.createTorus(3.0, 1.0));
    for (auto [solid, kind] :
         {std::pair{&sphere, SurfaceKind::kSphere}, std::pair{&torus, SurfaceKind::kTorus}}) {
        const Exploded e = explodeOf(*solid);
        EXPECT_TRUE(e.regions.empty());
        ASSERT_EQ(1u, e.surfaces.size());
        EXPECT_EQ(kind, e.surfaces[0].description().kind);
        EXPECT_TRUE(edgesOf(e.surfaces[0]).empty());
    }
    const SurfaceDesc t = explodeOf(torus).surfaces[0].description();
    EXPECT_NEAR(3.0, t.radius, 3.0 * kRelTol);
    EXPECT_NEAR(1.0, t.minorRadius, kRelTol);
}

TEST(Explode, BoxGivesSixRegionsOfFourLines) {
    Solid s;
    ASSERT_OK(s.createBox(1, 2, 3));
    const Exploded e = explodeOf(s);
    EXPECT_TRUE(e.surfaces.empty());
    ASSERT_EQ(6u, e.regions.size());
    double total = 0.0;
    for (const Region& region : e.regions) {
        const auto lines = edgesOf(region);
        ASSERT_EQ(4u, lines.size());
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const auto& line = std::get<LineCurve>(lines[i]);
            const auto& next = std::get<LineCurve>(lines[(i + 1) % lines.size()]);
            EXPECT_TRUE(samePoint(line.end, next.start, 3.0)); // a loop, in running order
        }
        total += areaOf(region);
    }
    EXPECT_NEAR(2 * (2 + 6 + 3), total, 22 * kRelTol);
}

TEST(Explode, MitredElbowEndsAreCirclesFacingOut) {
    const double R = 3.0, r = 0.5;
    PolylineCurve bevel;
    bevel.vertices = {{R, 0, 0}, {R, R, 0}, {0, R, 0}};
    Solid elbow;
    ASSERT_OK(elbow.extrudeAlongPath(circleRegion({R, 0, 0}, {0, 1, 0}, r), bevel, 0.0));
    const Exploded e = explodeOf(elbow);
    ASSERT_EQ(2u, e.regions.size());
    ASSERT_EQ(2u, e.surfaces.size());
    std::map<double, CircleCurve> byX; // the start end at x = R, the far end at x = 0
    for (const Region& region : e.regions) {
        const CircleCurve c = onlyCircle(region);
        byX[std::round(c.center.x)] = c;
        EXPECT_NEAR(r, c.radius, r * kRelTol);
    }
    ASSERT_EQ(2u, byX.size());
    EXPECT_TRUE(samePoint({R, 0, 0}, byX[R].center, R));
    EXPECT_TRUE(sameDirection({0, -1, 0}, byX[R].normal));
    EXPECT_TRUE(samePoint({0, R, 0}, byX[0].center, R));
    EXPECT_TRUE(sameDirection({-1, 0, 0}, byX[0].normal));
    for (const Surface& side : e.surfaces)
        EXPECT_EQ(SurfaceKind::kCylinder, side.description().kind);
}

TEST(Explode, ArcElbowSideIsToroidal) {
    const double R = 3.0, r = 0.5;
    Solid elbow;
    ASSERT_OK(elbow.extrudeAlongPath(circleRegion({R, 0, 0}, {0, 1, 0}, r),
                                     ArcCurve{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, R, 0, kPi / 2},
                                     0.0));
    const Exploded e = explodeOf(elbow);
    ASSERT_EQ(2u, e.regions.size());
    ASSERT_EQ(1u, e.surfaces.size());
    EXPECT_EQ(SurfaceKind::kTorus, e.surfaces[0].description().kind);
    EXPECT_EQ(2u, edgesOf(e.surfaces[0]).size());
}

// Every edge of a closed body is run twice, once each way.
void expectClosedBoundary(const Brep& brep) {
    std::vector<int> forward(brep.edges.size()), backward(brep.edges.size());
    for (const BrepFace& face : brep.faces)
        for (const BrepLoop& loop : face.loops) {
            EXPECT_EQ(loop.coedges.size(), loop.vertices.size());
            for (const BrepCoedge& c : loop.coedges)
                ++(c.reversed ? backward : forward)[c.edge];
        }
    for (std::size_t i = 0; i < brep.edges.size(); ++i) {
        EXPECT_EQ(1, forward[i]) << "edge " << i;
        EXPECT_EQ(1, backward[i]) << "edge " << i;
    }
}

TEST(BrepWalk, BoxFacesLoopsEdgesVertices) {
    Solid s;
    ASSERT_OK(s.createBox(1, 2, 3));
    const Brep brep = s.brep();
    EXPECT_EQ(6u, brep.faces.size());
    EXPECT_EQ(12u, brep.edges.size());
    EXPECT_EQ(8u, brep.vertices.size());
    for (const BrepFace& face : brep.faces) {
        EXPECT_EQ(SurfaceKind::kPlane, face.surface.kind);
        ASSERT_EQ(1u, face.loops.size());
        EXPECT_TRUE(face.loops[0].outer);
        // The loop runs counter-clockwise about the outward normal.
        const auto& v = face.loops[0].vertices;
        ASSERT_EQ(4u, v.size());
        const Vec3 a = brep.vertices[v[0]].point, b = brep.vertices[v[1]].point,
                   c = brep.vertices[v[2]].point;
        const Vec3 u = b - a, w = c - b;
        const Vec3 turn = {u.y * w.z - u.z * w.y, u.z * w.x - u.x * w.z, u.x * w.y - u.y * w.x};
        EXPECT_TRUE(sameDirection(face.surface.axis, turn));
        // Outward: the face's plane lies on the far side of the centre.
        EXPECT_GT(dot(face.surface.axis, a), 0.0);
    }
    for (const BrepVertex& v : brep.vertices) {
        EXPECT_NEAR(0.5, std::abs(v.point.x), kRelTol);
        EXPECT_NEAR(1.5, std::abs(v.point.z), kRelTol);
    }
    expectClosedBoundary(brep);
}

TEST(BrepWalk, CylinderSideHasTwoLoopsAndNoSeam) {
    Solid s;
    ASSERT_OK(s.createFrustum(2.0, 0.5, 0.5, 0.5));
    const Brep brep = s.brep();
    EXPECT_EQ(3u, brep.faces.size());
    EXPECT_EQ(2u, brep.edges.size());
    for (const BrepEdge& edge : brep.edges) {
        EXPECT_TRUE(std::holds_alternative<CircleCurve>(edge.curve));
        EXPECT_EQ(edge.startVertex, edge.endVertex);
    }
    expectClosedBoundary(brep);
    const TopologyCounts counts = s.topology();
    EXPECT_EQ(1, counts.solids);
    EXPECT_EQ(4, counts.loops);
    EXPECT_EQ(2, counts.planar);
    EXPECT_EQ(1, counts.cylindrical);

    Solid sphere;
    ASSERT_OK(sphere.createSphere(1.0));
    const TopologyCounts round = sphere.topology();
    EXPECT_EQ(1, round.faces);
    EXPECT_EQ(0, round.loops);
    EXPECT_EQ(0, round.edges);
    EXPECT_EQ(1, round.spherical);
}

TEST(Explode, EmptyShapesGiveAStatus) {
    std::vector<Piece> pieces;
    std::vector<Curve> curves;
    EXPECT_STATUS(Status::eNotApplicable, Solid{}.explode(pieces));
    EXPECT_STATUS(Status::eNotApplicable, Region{}.explode(curves));
    EXPECT_STATUS(Status::eNotApplicable, Surface{}.explode(curves));
    EXPECT_EQ(0, Solid{}.topology().faces);
    EXPECT_TRUE(Solid{}.brep().faces.empty());
}

} // namespace
} // namespace solidstest
