// Bodies built straight from their boundary: what the host writes comes back valid and whole
// without sewing or healing, and a boundary that does not hold together is left to the general
// rebuild.
#include "checks.h"
#include "frombrep.h"

#include <BRepCheck_Analyzer.hxx>

#include <functional>

namespace solidstest {
namespace {

TopoDS_Shape direct(const Brep& brep) {
    double volume = 0.0;
    return directSolidOf(brep, volume);
}

// The volume the direct build works out in closed form is the kernel's integral of the body.
void expectVolumeOf(const Brep& brep, const Solid& original, double size) {
    double volume = 0.0;
    const TopoDS_Shape shape = directSolidOf(brep, volume);
    ASSERT_FALSE(shape.IsNull());
    EXPECT_TRUE(BRepCheck_Analyzer(shape).IsValid());
    EXPECT_TRUE(near(volumeOf(original), volume, size * size * size));
    EXPECT_TRUE(near(arxsolids::volumeOf(shape), volume, size * size * size));
}

struct Sample {
    const char* name;
    Solid solid;
    double size;
};

std::vector<Sample> samples() {
    std::vector<Sample> out(9);
    out[0].name = "box";
    EXPECT_STATUS(Status::eOk, out[0].solid.createBox(1, 2, 3));
    EXPECT_STATUS(Status::eOk,
                  out[0].solid.transformBy(Matrix::rotation(0.4, {1, 1, 0}, {1, 0, 0})));
    out[0].size = 3;
    out[1].name = "cylinder";
    EXPECT_STATUS(Status::eOk, out[1].solid.createFrustum(2.0, 0.5, 0.5, 0.5));
    out[1].size = 2;
    out[2].name = "cone to a point";
    EXPECT_STATUS(Status::eOk, out[2].solid.createFrustum(3.0, 1.0, 1.0, 0.0));
    out[2].size = 3;
    out[3].name = "frustum";
    EXPECT_STATUS(Status::eOk, out[3].solid.createFrustum(3.0, 1.0, 1.0, 0.4));
    out[3].size = 3;
    out[4].name = "sphere";
    EXPECT_STATUS(Status::eOk, out[4].solid.createSphere(1.5));
    out[4].size = 1.5;
    out[5].name = "torus";
    EXPECT_STATUS(Status::eOk, out[5].solid.createTorus(3.0, 1.0));
    out[5].size = 4;
    out[6].name = "bored tube";
    Solid bore;
    EXPECT_STATUS(Status::eOk, out[6].solid.createFrustum(4.0, 1.0, 1.0, 1.0));
    EXPECT_STATUS(Status::eOk, bore.createFrustum(5.0, 0.6, 0.6, 0.6));
    EXPECT_STATUS(Status::eOk, out[6].solid.booleanOper(BoolOperType::kBoolSubtract, bore));
    out[6].size = 4;
    out[7].name = "elbow";
    EXPECT_STATUS(Status::eOk,
                  out[7].solid.extrudeAlongPath(
                      circleRegion({3, 0, 0}, {0, 1, 0}, 0.5),
                      ArcCurve{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 3.0, 0, kPi / 2}, 0.0));
    out[7].size = 3;
    out[8].name = "cone to a point, upside down and moved";
    EXPECT_STATUS(Status::eOk, out[8].solid.createFrustum(2.0, 0.7, 0.7, 0.0));
    EXPECT_STATUS(Status::eOk,
                  out[8].solid.transformBy(Matrix::rotation(kPi, {1, 0, 0}, {5, 0, 0})));
    out[8].size = 7;
    return out;
}

TEST(FromBrepDirect, WhatTheHostWritesComesBackValidAndWhole) {
    // As made, and turned about an axis away from the origin (the closed forms of the volume
    // have terms in the place of the surface).
    const Matrix turn = Matrix::rotation(0.7, {1, 2, 3}, {4, -1, 2});
    for (Sample& s : samples()) {
        for (bool turned : {false, true}) {
            SCOPED_TRACE(std::string(s.name) + (turned ? ", turned" : ""));
            if (turned) {
                ASSERT_OK(s.solid.transformBy(turn));
            }
            expectVolumeOf(s.solid.brep(), s.solid, s.size + 10);
            // The rebuilt solid measures as the original does, and turns the same way out.
            Solid copy;
            ASSERT_OK(copy.createFromBrep(s.solid.brep()));
            expectSameBody(s.solid, copy, s.size);
        }
    }
}

// Every edge described the other way round (a circle about its opposite normal, a line from its
// end), with every coedge turned to match: the same body, which the direct build takes as well.
TEST(FromBrepDirect, EdgesDescribedTheOtherWayRoundGiveTheSameBody) {
    for (const Sample& s : samples()) {
        SCOPED_TRACE(s.name);
        Brep brep = s.solid.brep();
        for (BrepEdge& e : brep.edges) {
            if (auto* circle = std::get_if<CircleCurve>(&e.curve)) {
                circle->normal = {-circle->normal.x, -circle->normal.y, -circle->normal.z};
            } else if (auto* line = std::get_if<LineCurve>(&e.curve)) {
                std::swap(line->start, line->end);
                std::swap(e.startVertex, e.endVertex);
            }
        }
        for (BrepFace& f : brep.faces)
            for (BrepLoop& loop : f.loops)
                for (BrepCoedge& c : loop.coedges)
                    c.reversed ^= true;
        expectVolumeOf(brep, s.solid, s.size);
        Solid copy;
        ASSERT_OK(copy.createFromBrep(brep));
        expectSameBody(s.solid, copy, s.size);
    }
}

// A boundary spoilt one way or another: the direct build refuses it (the general rebuild may
// still make something of it, or refuse it too).
TEST(FromBrepDirect, BoundariesThatDoNotHoldTogetherAreLeftToTheGeneralRebuild) {
    Solid box, tube, cone;
    ASSERT_OK(box.createBox(1, 2, 3));
    ASSERT_OK(tube.createFrustum(2.0, 0.5, 0.5, 0.5));
    ASSERT_OK(cone.createFrustum(3.0, 1.0, 1.0, 0.0));
    const std::vector<std::tuple<const char*, const Solid*, std::function<void(Brep&)>>> spoilers{
        {"a coedge run the wrong way", &box,
         [](Brep& b) { b.faces[0].loops[0].coedges[0].reversed ^= true; }},
        {"a face left out", &box, [](Brep& b) { b.faces.pop_back(); }},
        {"a corner off its plane", &box, [](Brep& b) { b.vertices[0].point.z += 1e-3; }},
        {"an outer loop marked inner", &box, [](Brep& b) { b.faces[2].loops[0].outer = false; }},
        {"a loop that does not close", &box,
         [](Brep& b) {
             auto& loop = b.faces[1].loops[0].coedges;
             std::swap(loop[0], loop[1]);
         }},
        {"a rim wider than its band", &tube,
         [](Brep& b) {
             for (BrepEdge& e : b.edges)
                 if (auto* c = std::get_if<CircleCurve>(&e.curve)) c->radius *= 1.01;
         }},
        {"a rim tilted off its band", &tube,
         [](Brep& b) {
             for (BrepEdge& e : b.edges)
                 if (auto* c = std::get_if<CircleCurve>(&e.curve)) {
                     c->normal = {0.01, 0, 1};
                     break;
                 }
         }},
        {"a face turned inside out", &tube,
         [](Brep& b) {
             for (BrepFace& f : b.faces)
                 if (f.surface.kind == SurfaceKind::kCylinder) f.reversed ^= true;
         }},
        {"a cone's apex beyond its rim", &cone,
         [](Brep& b) {
             for (BrepFace& f : b.faces)
                 if (f.surface.kind == SurfaceKind::kCone) f.surface.halfAngle *= -1;
         }},
    };
    for (const auto& [name, solid, spoil] : spoilers) {
        SCOPED_TRACE(name);
        Brep brep = solid->brep();
        ASSERT_FALSE(direct(brep).IsNull());
        spoil(brep);
        EXPECT_TRUE(direct(brep).IsNull());
    }
}

} // namespace
} // namespace solidstest
