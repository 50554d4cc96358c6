// The boundary walk of a moved primitive, which reads the topology of the first one of its kind
// and only its own geometry, against the full walk of the same shape: the same description to
// the bit, so that the SAT text written from it is too.
#include "checks.h"
#include "internal.h"

#include <cstdio>
#include <cstring>
#include <functional>

namespace solidstest {
namespace {

void put(std::string& out, double v) {
    char text[32];
    std::snprintf(text, sizeof text, " %a", v);
    out += text;
}
void put(std::string& out, const Vec3& v) {
    put(out, v.x);
    put(out, v.y);
    put(out, v.z);
}

// Every number and index of a description of analytic faces and edges, exactly.
std::string fingerprint(const Brep& brep) {
    std::string out;
    for (const BrepFace& f : brep.faces) {
        out += "\nF" + std::to_string(int(f.surface.kind)) + (f.reversed ? "r" : "f");
        put(out, f.surface.origin);
        put(out, f.surface.axis);
        put(out, f.surface.refAxis);
        put(out, f.surface.radius);
        put(out, f.surface.minorRadius);
        put(out, f.surface.halfAngle);
        for (const BrepLoop& loop : f.loops) {
            out += loop.outer ? " L" : " l";
            for (const BrepCoedge& c : loop.coedges)
                out += " " + std::to_string(c.edge) + (c.reversed ? "-" : "+");
            for (int v : loop.vertices)
                out += " v" + std::to_string(v);
        }
    }
    for (const BrepEdge& e : brep.edges) {
        out += "\nE" + std::to_string(e.curve.index()) + " " + std::to_string(e.startVertex) + " " +
               std::to_string(e.endVertex);
        if (const auto* c = std::get_if<CircleCurve>(&e.curve)) {
            put(out, c->center);
            put(out, c->normal);
            put(out, c->radius);
        } else if (const auto* a = std::get_if<ArcCurve>(&e.curve)) {
            put(out, a->center);
            put(out, a->normal);
            put(out, a->refAxis);
            put(out, a->radius);
            put(out, a->startAngle);
            put(out, a->endAngle);
        } else if (const auto* l = std::get_if<LineCurve>(&e.curve)) {
            put(out, l->start);
            put(out, l->end);
        } else {
            out += " other";
        }
    }
    for (const BrepVertex& v : brep.vertices)
        put(out += "\nV", v.point);
    return out;
}

void expectFullWalk(const Solid& solid, const std::string& what) {
    const Brep full = walkBrep(Access::shape(solid));
    ASSERT_FALSE(full.faces.empty()) << what;
    EXPECT_EQ(fingerprint(full), fingerprint(solid.brep())) << what;
}

Matrix pose(int i) {
    switch (i) {
    case 0:
        return {};
    case 1:
        return Matrix::translation({12.5, -3.25, 7.0}) * Matrix::rotation(kPi / 2, {0, 1, 0});
    default:
        return Matrix::translation({-1e3, 2e3, 0.1}) *
               Matrix::rotation(0.7, {1, 2, 3}, {0.5, 0.25, 0}) * Matrix::rotation(-1.1, {0, 0, 1});
    }
}

TEST(PrimitiveWalk, MovedPrimitivesOfEveryKindDescribeAsTheFullWalk) {
    const std::vector<std::pair<std::string, std::function<Status(Solid&, double)>>> kinds = {
        {"cylinder", [](Solid& s, double k) { return s.createFrustum(4 * k, k, k, k); }},
        {"cone", [](Solid& s, double k) { return s.createFrustum(2 * k, k, k, 0.3 * k); }},
        {"cone to an apex", [](Solid& s, double k) { return s.createFrustum(k, k, k, 0.0); }},
        {"box", [](Solid& s, double k) { return s.createBox(k, 2 * k, 0.5 * k); }},
        {"sphere", [](Solid& s, double k) { return s.createSphere(k); }},
        {"torus", [](Solid& s, double k) { return s.createTorus(3 * k, 0.4 * k); }},
    };
    for (const auto& [name, make] : kinds)
        for (double size : {1.0, 0.037, 250.0})
            for (int p = 0; p < 3; ++p) {
                Solid s;
                ASSERT_OK(make(s, size));
                ASSERT_OK(s.transformBy(pose(p)));
                ASSERT_OK(s.transformBy(pose(2 - p)));
                expectFullWalk(s, name + " of size " + std::to_string(size) + " at pose " +
                                      std::to_string(p));
            }
}

TEST(PrimitiveWalk, ABodyNoLongerItsPrimitiveIsWalkedInFull) {
    Solid box, warm;
    ASSERT_OK(warm.createBox(1, 1, 1));
    (void)warm.brep();
    ASSERT_OK(box.createBox(4, 4, 4));
    Solid hole;
    ASSERT_OK(hole.createFrustum(8, 1, 1, 1));
    ASSERT_OK(box.booleanOper(BoolOperType::kBoolSubtract, hole));
    EXPECT_GT(box.brep().faces.size(), 6u); // the box's six and the bore
    expectFullWalk(box, "box with a bore");

    Solid scaled, mirrored;
    ASSERT_OK(scaled.createFrustum(2, 1, 1, 1));
    ASSERT_OK(scaled.transformBy(Matrix::scaling(3.0, {1, 1, 1})));
    expectFullWalk(scaled, "scaled cylinder");
    ASSERT_OK(mirrored.createFrustum(2, 1, 1, 0.5));
    Matrix mirror;
    mirror(0, 0) = -1.0;
    ASSERT_OK(mirrored.transformBy(mirror));
    expectFullWalk(mirrored, "mirrored cone");
}

} // namespace
} // namespace solidstest
