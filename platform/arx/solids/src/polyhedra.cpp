// Volume integrals and areas of bodies bounded by flat faces with straight edges (boxes, steel
// members, most extrusions), in closed form. Each face, run as its oriented edges go, is a fan
// of triangles about one of its corners; each triangle and the origin make a tetrahedron whose
// integrals are known; summed with their signs they are the body's. The kernel's integration
// does the same work by quadrature, face by face, at many times the cost.
#include "internal.h"

#include <BRep_Tool.hxx>
#include <Geom_Line.hxx>
#include <Geom_Plane.hxx>
#include <Geom_RectangularTrimmedSurface.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_Vertex.hxx>

#include <array>
#include <vector>

namespace arxsolids {
namespace {

// The integrals of a body: its volume, first moments and second moments about the origin.
class Integrals : public GProp_GProps {
public:
    // Integrals over the body whose faces are the given triangles (corners counter-clockwise
    // seen from outside).
    void add(const gp_XYZ& a, const gp_XYZ& b, const gp_XYZ& c) {
        const double v = a.Dot(b.Crossed(c)) / 6.0; // signed volume of the origin and a, b, c
        const gp_XYZ s = a + b + c;
        volume_ += v;
        first_ += s * (v / 4.0);
        for (int i = 1; i <= 3; ++i)
            for (int j = i; j <= 3; ++j)
                second_[i - 1][j - 1] += v / 20.0 *
                                         (a.Coord(i) * a.Coord(j) + b.Coord(i) * b.Coord(j) +
                                          c.Coord(i) * c.Coord(j) + s.Coord(i) * s.Coord(j));
    }

    // Into the kernel's form: mass, centre, and the matrix of inertia at the origin (moments on
    // the diagonal, products negated).
    void finish() {
        dim = volume_;
        loc = gp::Origin();
        g = volume_ != 0.0 ? gp_Pnt(first_ / volume_) : gp::Origin();
        const auto m = [&](int i, int j) { return second_[std::min(i, j)][std::max(i, j)]; };
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j)
                inertia(i + 1, j + 1) = i == j ? m(0, 0) + m(1, 1) + m(2, 2) - m(i, i) : -m(i, j);
    }

private:
    double volume_ = 0.0;
    gp_XYZ first_{0, 0, 0};
    std::array<std::array<double, 3>, 3> second_{};
};

// A straight edge of a face, from where the face (as the body holds it) enters it to where it
// leaves. A reversed wire lists its edges in their own order, each turned: only the edges'
// own ends tell the way round, not their order in the list.
struct Side {
    gp_XYZ from, to;
};

// The sides of a flat face with straight edges; false for a face of another kind.
bool flatSides(const TopoDS_Face& face, std::vector<Side>& sides) {
    TopLoc_Location location;
    Handle(Geom_Surface) surface = BRep_Tool::Surface(face, location);
    if (auto trimmed = Handle(Geom_RectangularTrimmedSurface)::DownCast(surface))
        surface = trimmed->BasisSurface();
    if (Handle(Geom_Plane)::DownCast(surface).IsNull()) return false;
    sides.clear();
    for (TopoDS_Iterator wire(face); wire.More(); wire.Next()) {
        if (wire.Value().ShapeType() != TopAbs_WIRE) return false;
        for (TopoDS_Iterator it(wire.Value()); it.More(); it.Next()) {
            if (it.Value().ShapeType() != TopAbs_EDGE) return false;
            const TopoDS_Edge& edge = TopoDS::Edge(it.Value());
            TopLoc_Location at;
            double first, last;
            Handle(Geom_Curve) curve = BRep_Tool::Curve(edge, at, first, last);
            if (auto trimmed = Handle(Geom_TrimmedCurve)::DownCast(curve))
                curve = trimmed->BasisCurve();
            if (Handle(Geom_Line)::DownCast(curve).IsNull()) return false;
            const TopoDS_Vertex from = TopExp::FirstVertex(edge, true);
            const TopoDS_Vertex to = TopExp::LastVertex(edge, true);
            if (from.IsNull() || to.IsNull()) return false;
            sides.push_back({BRep_Tool::Pnt(from).XYZ(), BRep_Tool::Pnt(to).XYZ()});
        }
    }
    return sides.size() >= 3;
}

// Calls f with each face's sides, or returns false when a face is not flat with straight
// edges.
template <class F>
bool eachFlatFace(const TopoDS_Shape& shape, F f) {
    std::vector<Side> sides;
    bool any = false;
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next()) {
        if (!flatSides(TopoDS::Face(it.Current()), sides)) return false;
        f(sides);
        any = true;
    }
    return any;
}

} // namespace

bool polyhedronVolume(const TopoDS_Shape& shape, GProp_GProps& props) {
    Integrals integrals;
    const bool flat = eachFlatFace(shape, [&](const std::vector<Side>& sides) {
        // A fan about one corner of the face; holes run the other way and subtract.
        const gp_XYZ p0 = sides.front().from;
        for (const Side& side : sides)
            integrals.add(p0, side.from, side.to);
    });
    if (!flat) return false;
    integrals.finish();
    props = integrals;
    return true;
}

bool polyhedronArea(const TopoDS_Shape& shape, double& area) {
    double sum = 0.0;
    const bool flat = eachFlatFace(shape, [&](const std::vector<Side>& sides) {
        gp_XYZ twice(0, 0, 0); // twice the face's vector area
        const gp_XYZ p0 = sides.front().from;
        for (const Side& side : sides)
            twice += (side.from - p0).Crossed(side.to - p0);
        sum += twice.Modulus() / 2.0;
    });
    if (!flat) return false;
    area = sum;
    return true;
}

} // namespace arxsolids
