// Edges and faces of the modelling kernel as plain curve and surface descriptions.
#include "internal.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepTools_WireExplorer.hxx>
#include <BRep_Tool.hxx>
#include <GeomConvert.hxx>
#include <GeomConvert_ApproxCurve.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_Circle.hxx>
#include <Geom_Ellipse.hxx>
#include <Geom_Line.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>

#include <cmath>

namespace arxsolids {
namespace {

constexpr double kTwoPi = 2.0 * M_PI;

double normalAngle(double a) {
    a = std::fmod(a, kTwoPi);
    return a < 0.0 ? a + kTwoPi : a;
}

// A conic traversed from parameter `from` to `to` (decreasing when the edge runs backwards).
// Running backwards is running forwards about the reversed normal with negated parameters.
struct ConicRun {
    gp_Ax2 frame;
    double start, end;
    bool whole;
};
ConicRun conicRun(const gp_Ax2& frame, double first, double last, bool backwards) {
    const bool whole = last - first >= kTwoPi - 1e-9;
    if (!backwards) return {frame, normalAngle(first), normalAngle(first) + (last - first), whole};
    gp_Ax2 flipped(frame.Location(), frame.Direction().Reversed(), frame.XDirection());
    const double start = normalAngle(-last);
    return {flipped, start, start + (last - first), whole};
}

Curve splineOf(const Handle(Geom_Curve) & curve, double first, double last, bool backwards) {
    Handle(Geom_BSplineCurve) spline;
    Handle(Geom_TrimmedCurve) trimmed = new Geom_TrimmedCurve(curve, first, last);
    try {
        spline = GeomConvert::CurveToBSplineCurve(trimmed);
    } catch (const Standard_Failure&) {
        GeomConvert_ApproxCurve approx(trimmed, 1e-7, GeomAbs_C2, 200, 9);
        spline = approx.Curve();
    }
    if (backwards) spline->Reverse();
    SplineCurve out;
    out.degree = spline->Degree();
    out.periodic = spline->IsPeriodic();
    for (int i = 1; i <= spline->NbPoles(); ++i)
        out.controlPoints.push_back(fromPnt(spline->Pole(i)));
    if (spline->IsRational())
        for (int i = 1; i <= spline->NbPoles(); ++i)
            out.weights.push_back(spline->Weight(i));
    for (int i = 1; i <= spline->NbKnots(); ++i)
        for (int m = 0; m < spline->Multiplicity(i); ++m)
            out.knots.push_back(spline->Knot(i));
    return out;
}

} // namespace

Curve describeEdge(const TopoDS_Shape& shape, bool oriented) {
    const TopoDS_Edge& edge = TopoDS::Edge(shape);
    TopLoc_Location location;
    double first = 0.0, last = 0.0;
    Handle(Geom_Curve) curve = BRep_Tool::Curve(edge, location, first, last);
    if (curve.IsNull()) return LineCurve{};
    if (!location.IsIdentity())
        curve = Handle(Geom_Curve)::DownCast(curve->Transformed(location.Transformation()));
    while (auto trimmed = Handle(Geom_TrimmedCurve)::DownCast(curve))
        curve = trimmed->BasisCurve();
    const bool backwards = oriented && edge.Orientation() == TopAbs_REVERSED;

    if (auto line = Handle(Geom_Line)::DownCast(curve)) {
        const Vec3 a = fromPnt(line->Value(first)), b = fromPnt(line->Value(last));
        return backwards ? LineCurve{b, a} : LineCurve{a, b};
    }
    if (auto circle = Handle(Geom_Circle)::DownCast(curve)) {
        const ConicRun run = conicRun(circle->Position(), first, last, backwards);
        const Vec3 center = fromPnt(run.frame.Location());
        const Vec3 normal = fromDir(run.frame.Direction());
        if (run.whole) return CircleCurve{center, normal, circle->Radius()};
        return ArcCurve{center,           normal,    fromDir(run.frame.XDirection()),
                        circle->Radius(), run.start, run.end};
    }
    if (auto ellipse = Handle(Geom_Ellipse)::DownCast(curve)) {
        const ConicRun run = conicRun(ellipse->Position(), first, last, backwards);
        const double major = ellipse->MajorRadius(), minor = ellipse->MinorRadius();
        const Vec3 center = fromPnt(run.frame.Location());
        const Vec3 normal = fromDir(run.frame.Direction());
        if (minor == major) {
            if (run.whole) return CircleCurve{center, normal, major};
            return ArcCurve{center, normal,    fromDir(run.frame.XDirection()),
                            major,  run.start, run.end};
        }
        EllipseCurve out{center,
                         normal,
                         fromVec(gp_Vec(run.frame.XDirection()) * major),
                         minor / major,
                         run.whole ? 0.0 : run.start,
                         run.whole ? kTwoPi : run.end};
        return out;
    }
    return splineOf(curve, first, last, backwards);
}

SurfaceKind surfaceKind(const TopoDS_Face& face) {
    switch (BRepAdaptor_Surface(face, false).GetType()) {
    case GeomAbs_Plane:
        return SurfaceKind::kPlane;
    case GeomAbs_Cylinder:
        return SurfaceKind::kCylinder;
    case GeomAbs_Cone:
        return SurfaceKind::kCone;
    case GeomAbs_Sphere:
        return SurfaceKind::kSphere;
    case GeomAbs_Torus:
        return SurfaceKind::kTorus;
    default:
        return SurfaceKind::kOther;
    }
}

SurfaceDesc describeSurface(const TopoDS_Face& face) {
    BRepAdaptor_Surface s(face, false);
    SurfaceDesc out;
    out.kind = surfaceKind(face);
    auto frame = [&](const gp_Ax3& ax) {
        out.origin = fromPnt(ax.Location());
        out.axis = fromDir(ax.Direction());
        out.refAxis = fromDir(ax.XDirection());
    };
    switch (out.kind) {
    case SurfaceKind::kPlane:
        frame(s.Plane().Position());
        if (face.Orientation() == TopAbs_REVERSED)
            out.axis = {-out.axis.x, -out.axis.y, -out.axis.z};
        break;
    case SurfaceKind::kCylinder:
        frame(s.Cylinder().Position());
        out.radius = s.Cylinder().Radius();
        break;
    case SurfaceKind::kCone:
        frame(s.Cone().Position());
        out.radius = s.Cone().RefRadius();
        out.halfAngle = s.Cone().SemiAngle();
        break;
    case SurfaceKind::kSphere:
        frame(s.Sphere().Position());
        out.radius = s.Sphere().Radius();
        break;
    case SurfaceKind::kTorus:
        frame(s.Torus().Position());
        out.radius = s.Torus().MajorRadius();
        out.minorRadius = s.Torus().MinorRadius();
        break;
    case SurfaceKind::kOther:
        break;
    }
    return out;
}

std::vector<TopoDS_Shape> runningEdges(const TopoDS_Shape& wire, const TopoDS_Face& face) {
    std::vector<TopoDS_Shape> edges;
    for (BRepTools_WireExplorer it(TopoDS::Wire(wire), face); it.More(); it.Next())
        edges.push_back(it.Current());
    return edges;
}

bool isBoundaryEdge(const TopoDS_Shape& edge, const TopoDS_Face& face) {
    const TopoDS_Edge& e = TopoDS::Edge(edge);
    return !BRep_Tool::Degenerated(e) && !BRep_Tool::IsClosed(e, face);
}

} // namespace arxsolids
