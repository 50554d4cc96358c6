// Bodies rebuilt from their boundary walk keep their measures and their topology.
#include "checks.h"

namespace solidstest {
namespace {

// Faces whose boundaries run along their surface's parameter lines come back exactly; other
// boundaries (a mitre's ellipse on a cylinder) get their surface curves projected anew, to about
// the kernel's point resolution.
constexpr double kProjected = 1e-6;
// A mitre cut by a boolean meets the wall in a curve the kernel fits, and the properties of
// both bodies integrate over their own fits: to about a hundred thousandth of the size.
constexpr double kFitted = 1e-5;
// A revolved profile comes back as the rational B-spline it is, which the mass properties
// integrate by the adaptive rule, to a few parts in ten million near a pole (a cap's crown).
constexpr double kRationalPole = 2e-7;

void expectRoundTrip(const Solid& original, double size, double rel = kRelTol) {
    Solid copy;
    ASSERT_OK(copy.createFromBrep(original.brep()));
    expectSameBody(original, copy, size, rel);
}

TEST(FromBrep, PrimitivesComeBackWhole) {
    Solid box, cylinder, cone, frustum, sphere, torus;
    ASSERT_OK(box.createBox(1, 2, 3));
    ASSERT_OK(box.transformBy(Matrix::rotation(0.4, {1, 1, 0}, {1, 0, 0})));
    ASSERT_OK(cylinder.createFrustum(2.0, 0.5, 0.5, 0.5));
    ASSERT_OK(cone.createFrustum(3.0, 1.0, 1.0, 0.0));
    ASSERT_OK(frustum.createFrustum(3.0, 1.0, 1.0, 0.4));
    ASSERT_OK(sphere.createSphere(1.5));
    ASSERT_OK(torus.createTorus(3.0, 1.0));
    for (auto [name, solid, size] :
         {std::tuple{"box", &box, 3.0}, std::tuple{"cylinder", &cylinder, 2.0},
          std::tuple{"cone", &cone, 3.0}, std::tuple{"frustum", &frustum, 3.0},
          std::tuple{"sphere", &sphere, 1.5}, std::tuple{"torus", &torus, 4.0}}) {
        SCOPED_TRACE(name);
        expectRoundTrip(*solid, size);
    }
}

TEST(FromBrep, BoredAndSweptBodies) {
    Solid tube, bore, elbow, mitred;
    ASSERT_OK(tube.createFrustum(4.0, 1.0, 1.0, 1.0));
    ASSERT_OK(bore.createFrustum(5.0, 0.6, 0.6, 0.6));
    ASSERT_OK(tube.booleanOper(BoolOperType::kBoolSubtract, bore));
    ASSERT_OK(elbow.extrudeAlongPath(circleRegion({3, 0, 0}, {0, 1, 0}, 0.5),
                                     ArcCurve{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 3.0, 0, kPi / 2},
                                     0.0));
    PolylineCurve bevel;
    bevel.vertices = {{3, 0, 0}, {3, 3, 0}, {0, 3, 0}};
    ASSERT_OK(mitred.extrudeAlongPath(circleRegion({3, 0, 0}, {0, 1, 0}, 0.5), bevel, 0.0));
    for (auto [name, solid, size, rel] :
         {std::tuple{"tube", &tube, 4.0, kRelTol}, std::tuple{"elbow", &elbow, 3.0, kRelTol},
          std::tuple{"mitred elbow", &mitred, 3.0, kFitted}}) {
        SCOPED_TRACE(name);
        expectRoundTrip(*solid, size, rel);
    }
}

TEST(FromBrep, FreeFormFacesComeBackByTheirSplines) {
    // A quarter ellipse revolved (the semi-elliptic cap), a tube along a spline, an extrusion of
    // a spline-bounded profile: faces on surfaces of revolution and extrusion, described exactly.
    std::vector<Region> profile;
    ASSERT_OK(
        Region::createFromCurves({LineCurve{{0, 0, 0}, {2, 0, 0}},
                                  EllipseCurve{{0, 0, 0}, {0, 0, 1}, {2, 0, 0}, 0.5, 0.0, kPi / 2},
                                  LineCurve{{0, 1, 0}, {0, 0, 0}}},
                                 profile));
    ASSERT_EQ(profile.size(), 1u);
    Solid cap, tube, slab;
    ASSERT_OK(cap.revolve(profile[0], {0, 0, 0}, {0, 1, 0}, 2 * kPi));
    ASSERT_OK(tube.extrudeAlongPath(
        circleRegion({0, 0, 0}, {0, 1, 0}, 0.2),
        SplineCurve{2, {{0, 0, 0}, {0, 4, 0}, {4, 4, 0}}, {0, 0, 0, 1, 1, 1}, {}, false}, 0.0));
    std::vector<Region> lens;
    ASSERT_OK(Region::createFromCurves(
        {SplineCurve{2, {{0, 0, 0}, {2, 2, 0}, {4, 0, 0}}, {0, 0, 0, 1, 1, 1}, {}, false},
         LineCurve{{4, 0, 0}, {0, 0, 0}}},
        lens));
    ASSERT_EQ(lens.size(), 1u);
    ASSERT_OK(slab.extrude(lens[0], 1.5, 0.0));
    for (auto [name, solid, size, rel] : {std::tuple{"semi-elliptic cap", &cap, 2.0, kRationalPole},
                                          std::tuple{"tube along a spline", &tube, 4.0, kProjected},
                                          std::tuple{"spline extrusion", &slab, 4.0, kProjected}}) {
        SCOPED_TRACE(name);
        EXPECT_GT(solid->topology().other, 0);
        expectRoundTrip(*solid, size, rel);
    }
}

TEST(FromBrep, MirroredBodiesAreDescribedFromTheOutside) {
    // A mirror turns the surfaces' frames left-handed; the description stays right-handed, so
    // plane axes still point out and only a bore's face is reversed.
    const Matrix mirror{{1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};
    Solid tube, bore;
    ASSERT_OK(tube.createFrustum(4.0, 1.0, 1.0, 1.0));
    ASSERT_OK(bore.createFrustum(5.0, 0.6, 0.6, 0.6));
    ASSERT_OK(tube.booleanOper(BoolOperType::kBoolSubtract, bore));
    ASSERT_OK(tube.transformBy(mirror));
    int reversed = 0;
    for (const BrepFace& f : tube.brep().faces) {
        reversed += f.reversed;
        if (f.surface.kind == SurfaceKind::kPlane) {
            EXPECT_GT(dot(f.surface.axis, f.surface.origin - Vec3{0, 0, 0}), 0.0);
        }
    }
    EXPECT_EQ(reversed, 1);
}

TEST(FromBrep, RingsSplitWhereSeamsInterruptThem) {
    const auto ring = [](std::initializer_list<int> edges) {
        std::vector<RingCoedge> out;
        for (int e : edges)
            out.push_back(RingCoedge{{e, false}, e * 10, e >= 0});
        return out;
    };
    const auto edgesOf = [](const BrepLoop& loop) {
        std::vector<int> out;
        for (const BrepCoedge& c : loop.coedges)
            out.push_back(c.edge);
        return out;
    };
    // A cylinder's side run with its seam both ways: the two rims.
    const auto rims = loopsOfRing(ring({0, -1, 1, -1}), true);
    ASSERT_EQ(rims.size(), 2u);
    EXPECT_EQ(edgesOf(rims[0]), std::vector<int>{0});
    EXPECT_EQ(edgesOf(rims[1]), std::vector<int>{1});
    EXPECT_TRUE(rims[1].outer);
    // A run past the ring's end joins its start, vertices along.
    const auto wrapped = loopsOfRing(ring({2, -1, 3, 4}), false);
    ASSERT_EQ(wrapped.size(), 1u);
    EXPECT_EQ(edgesOf(wrapped[0]), (std::vector<int>{3, 4, 2}));
    EXPECT_EQ(wrapped[0].vertices, (std::vector<int>{30, 40, 20}));
    EXPECT_TRUE(loopsOfRing(ring({-1, -1}), false).empty());
    EXPECT_TRUE(loopsOfRing({}, false).empty());
}

TEST(FromBrep, RegionsAndRefusals) {
    Region plate = polygonRegion({{0, 0}, {4, 0}, {4, 4}, {0, 4}});
    Region hole = circleRegion({2, 2, 0}, {0, 0, 1}, 1.0);
    ASSERT_OK(plate.booleanOper(BoolOperType::kBoolSubtract, hole));
    Region copy;
    ASSERT_OK(Region::createFromBrep(plate.brep(), copy));
    EXPECT_AREA(copy, 16 - kPi, 4.0);

    Solid s;
    Brep broken;
    broken.faces.push_back({});
    broken.faces[0].surface.kind = SurfaceKind::kPlane;
    broken.faces[0].loops.push_back({true, {{5, false}}, {0}});
    EXPECT_STATUS(Status::eInvalidInput, s.createFromBrep(broken));
    broken.faces[0].surface.kind = SurfaceKind::kOther;
    EXPECT_STATUS(Status::eNotApplicable, s.createFromBrep(broken));
    EXPECT_STATUS(Status::eInvalidInput, s.createFromBrep(Brep{}));
    // One face of a box alone bounds no volume.
    Solid box;
    ASSERT_OK(box.createBox(1, 1, 1));
    Brep open = box.brep();
    open.faces.resize(1);
    EXPECT_STATUS(Status::eGeneralModelingFailure, s.createFromBrep(open));
    EXPECT_TRUE(s.isNull());
}

} // namespace
} // namespace solidstest
