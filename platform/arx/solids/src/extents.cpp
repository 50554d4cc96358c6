// Tightest boxes of faces in closed form. A face straight along one direction (a plane, a
// cylinder, a cone) has its extremes on its boundary, so the boxes of its edges make its box;
// a torus adds the points inside the face where its height along an axis peaks.
#include "internal.h"

#include <BRepTools.hxx>
#include <BRep_Tool.hxx>
#include <ElSLib.hxx>
#include <Geom_Circle.hxx>
#include <Geom_ConicalSurface.hxx>
#include <Geom_CylindricalSurface.hxx>
#include <Geom_Ellipse.hxx>
#include <Geom_Line.hxx>
#include <Geom_Plane.hxx>
#include <Geom_RectangularTrimmedSurface.hxx>
#include <Geom_SphericalSurface.hxx>
#include <Geom_ToroidalSurface.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <TopExp.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_Vertex.hxx>
#include <gp_Sphere.hxx>
#include <gp_Torus.hxx>

#include <cmath>

namespace arxsolids {
namespace {

constexpr double kTwoPi = 2 * M_PI;
constexpr double kWhole = kTwoPi - 1e-9;

// Where a conic centre + cos t ax + sin t ay, t from t0 to t1, reaches furthest along each world
// axis: its ends, and the turning points inside the range.
void addConic(const gp_Pnt& centre, const gp_Vec& ax, const gp_Vec& ay, double t0, double t1,
              Bnd_Box& box) {
    const auto at = [&](double t) {
        return centre.Translated(ax * std::cos(t) + ay * std::sin(t));
    };
    box.Add(at(t0));
    box.Add(at(t1));
    for (int i = 1; i <= 3; ++i) {
        const double turn = std::atan2(ay.Coord(i), ax.Coord(i));
        for (double t : {turn, turn + M_PI}) {
            const double inRange = t0 + std::fmod(std::fmod(t - t0, kTwoPi) + kTwoPi, kTwoPi);
            if (inRange <= t1) box.Add(at(inRange));
        }
    }
}

// The exact box of an edge on a line, circle or ellipse, read from its curve as the body places
// it; false for other curves.
bool addEdge(const TopoDS_Edge& edge, Bnd_Box& box) {
    TopLoc_Location location;
    double first, last;
    Handle(Geom_Curve) curve = BRep_Tool::Curve(edge, location, first, last);
    if (auto trimmed = Handle(Geom_TrimmedCurve)::DownCast(curve)) curve = trimmed->BasisCurve();
    if (curve.IsNull()) return false;
    const gp_Trsf& place = location.Transformation();
    if (Handle(Geom_Line)::DownCast(curve)) {
        box.Add(curve->Value(first).Transformed(place));
        box.Add(curve->Value(last).Transformed(place));
        return true;
    }
    gp_Ax2 frame;
    double rx = 0.0, ry = 0.0;
    if (auto circle = Handle(Geom_Circle)::DownCast(curve)) {
        frame = circle->Position();
        rx = ry = circle->Radius();
    } else if (auto ellipse = Handle(Geom_Ellipse)::DownCast(curve)) {
        frame = ellipse->Position();
        rx = ellipse->MajorRadius();
        ry = ellipse->MinorRadius();
    } else {
        return false;
    }
    addConic(frame.Location().Transformed(place),
             gp_Vec(frame.XDirection()).Multiplied(rx).Transformed(place),
             gp_Vec(frame.YDirection()).Multiplied(ry).Transformed(place), first, last, box);
    return true;
}

// The boxes of a face's edges, conics and lines only; a collapsed edge gives its point. False
// when an edge is of another kind.
bool addEdges(const TopoDS_Face& face, Bnd_Box& box) {
    Bnd_Box edges;
    // Wires, then their edges: iterators that allocate nothing, where an explorer keeps a stack.
    for (TopoDS_Iterator wire(face); wire.More(); wire.Next())
        for (TopoDS_Iterator it(wire.Value()); it.More(); it.Next()) {
            if (it.Value().ShapeType() != TopAbs_EDGE) return false;
            const TopoDS_Edge& edge = TopoDS::Edge(it.Value());
            if (BRep_Tool::Degenerated(edge)) {
                edges.Add(BRep_Tool::Pnt(TopExp::FirstVertex(edge)));
            } else if (!addEdge(edge, edges)) {
                return false;
            }
        }
    if (edges.IsVoid()) return false;
    box.Add(edges);
    return true;
}

// A whole torus about centre c, unit axis n: along each world axis, the major circle's half
// width there plus the minor radius.
void addWholeTorus(const gp_XYZ& c, const gp_XYZ& n, double R, double r, Bnd_Box& box) {
    gp_XYZ half;
    for (int i = 1; i <= 3; ++i)
        half.SetCoord(i, R * std::sqrt(std::max(0.0, 1.0 - n.Coord(i) * n.Coord(i))) + r);
    box.Add(gp_Pnt(c - half));
    box.Add(gp_Pnt(c + half));
}

void addBall(const gp_XYZ& c, double r, Bnd_Box& box) {
    const gp_XYZ half(r, r, r);
    box.Add(gp_Pnt(c - half));
    box.Add(gp_Pnt(c + half));
}

// A part of a torus whole around its tube (an elbow's wall): its boundary, and the points inside
// where the height along a world axis is at its highest or lowest.
bool addTorusBand(const TopoDS_Face& face, const gp_Torus& torus, Bnd_Box& box) {
    double u0, u1, v0, v1;
    BRepTools::UVBounds(face, u0, u1, v0, v1);
    if (v1 - v0 < kWhole || u1 - u0 >= kWhole) return false;
    Bnd_Box band;
    if (!addEdges(face, band)) return false;
    const gp_Ax3& pos = torus.Position();
    const double R = torus.MajorRadius(), r = torus.MinorRadius();
    for (int axis = 1; axis <= 3; ++axis) {
        // Height along the axis: (R + r cos v)(a cos u + b sin u) + r c sin v, about the centre.
        const double a = pos.XDirection().Coord(axis), b = pos.YDirection().Coord(axis);
        const double c = pos.Direction().Coord(axis);
        if (std::hypot(a, b) < 1e-12) continue; // along the torus's axis: the rims hold the peaks
        for (double u : {std::atan2(b, a), std::atan2(b, a) + M_PI}) {
            double inRange = u0 + std::fmod(std::fmod(u - u0, kTwoPi) + kTwoPi, kTwoPi);
            if (inRange > u1) continue;
            const double rho = a * std::cos(u) + b * std::sin(u);
            for (double v : {std::atan2(c, rho), std::atan2(c, rho) + M_PI})
                band.Add(ElSLib::TorusValue(inRange, v, pos, R, r));
        }
    }
    box.Add(band);
    return true;
}

} // namespace

bool addExactFaceBox(const TopoDS_Face& face, Bnd_Box& box) {
    // The surface as stored, placed by its location: no adaptor, no moved copy.
    TopLoc_Location location;
    Handle(Geom_Surface) surface = BRep_Tool::Surface(face, location);
    if (auto trimmed = Handle(Geom_RectangularTrimmedSurface)::DownCast(surface))
        surface = trimmed->BasisSurface();
    if (surface.IsNull()) return false;
    const gp_Trsf& place = location.Transformation();
    if (Handle(Geom_Plane)::DownCast(surface) ||
        Handle(Geom_CylindricalSurface)::DownCast(surface) ||
        Handle(Geom_ConicalSurface)::DownCast(surface))
        return addEdges(face, box);
    if (auto s = Handle(Geom_SphericalSurface)::DownCast(surface)) {
        double u0, u1, v0, v1;
        BRepTools::UVBounds(face, u0, u1, v0, v1);
        if (u1 - u0 < kWhole || v1 - v0 < M_PI - 1e-9) return false;
        const gp_Sphere sphere = s->Sphere().Transformed(place);
        addBall(sphere.Location().XYZ(), sphere.Radius(), box);
        return true;
    }
    if (auto t = Handle(Geom_ToroidalSurface)::DownCast(surface)) {
        const gp_Torus torus = t->Torus().Transformed(place);
        double u0, u1, v0, v1;
        BRepTools::UVBounds(face, u0, u1, v0, v1);
        if (u1 - u0 >= kWhole && v1 - v0 >= kWhole) {
            addWholeTorus(torus.Location().XYZ(), torus.Axis().Direction().XYZ(),
                          torus.MajorRadius(), torus.MinorRadius(), box);
            return true;
        }
        return addTorusBand(face, torus, box);
    }
    return false;
}

bool primitiveExtents(Primitive kind, const std::array<double, 3>& sizes, const gp_Trsf& place,
                      Extents& extents) {
    const auto at = [&](double x, double y, double z) {
        return gp_Pnt(x, y, z).Transformed(place);
    };
    const gp_Vec x = gp_Vec(gp::DX()).Transformed(place), y = gp_Vec(gp::DY()).Transformed(place);
    Bnd_Box box;
    switch (kind) {
    case Primitive::kCylinder:
    case Primitive::kCone:
    case Primitive::kApexCone: {
        // Straight between its rims: those hold its extremes (an apex is a rim of no radius).
        const double base = sizes[0], top = sizes[1], half = 0.5 * sizes[2];
        addConic(at(0, 0, -half), x * base, y * base, 0.0, kTwoPi, box);
        if (top > 0.0)
            addConic(at(0, 0, half), x * top, y * top, 0.0, kTwoPi, box);
        else
            box.Add(at(0, 0, half));
        break;
    }
    case Primitive::kBox:
        for (int i = 0; i < 8; ++i)
            box.Add(at((i & 1 ? 0.5 : -0.5) * sizes[0], (i & 2 ? 0.5 : -0.5) * sizes[1],
                       (i & 4 ? 0.5 : -0.5) * sizes[2]));
        break;
    case Primitive::kSphere:
        addBall(at(0, 0, 0).XYZ(), sizes[0], box);
        break;
    case Primitive::kTorus:
        addWholeTorus(at(0, 0, 0).XYZ(), gp_Vec(gp::DZ()).Transformed(place).XYZ(), sizes[0],
                      sizes[1], box);
        break;
    case Primitive::kNone:
        return false;
    }
    return boxExtents(box, extents);
}

} // namespace arxsolids
