// Edges and faces of the modelling kernel as plain curve and surface descriptions.
#include "internal.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepTools.hxx>
#include <BRepTools_WireExplorer.hxx>
#include <BRep_Tool.hxx>
#include <ElCLib.hxx>
#include <GC_MakeCircle.hxx>
#include <GeomConvert.hxx>
#include <GeomConvert_ApproxCurve.hxx>
#include <GeomConvert_ApproxSurface.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_BSplineSurface.hxx>
#include <Geom_Circle.hxx>
#include <Geom_Ellipse.hxx>
#include <Geom_Line.hxx>
#include <Geom_RectangularTrimmedSurface.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <TopExp.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Iterator.hxx>

#include <algorithm>
#include <cmath>
#include <gp_Pln.hxx>

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

// A free-form curve that runs on a circle (a section of a torus, say) is described as the
// circle or arc it is: the host's recognisers look for circles.
std::optional<Curve> circleOf(const Handle(Geom_Curve) & curve, double first, double last,
                              bool backwards) {
    constexpr int n = 24;
    std::vector<gp_Pnt> p;
    for (int i = 0; i <= n; ++i)
        p.push_back(curve->Value(first + (last - first) * i / n));
    if (backwards) std::reverse(p.begin(), p.end());
    GC_MakeCircle through(p[0], p[n / 3], p[2 * n / 3]);
    if (!through.IsDone()) return std::nullopt;
    const gp_Circ c = through.Value()->Circ();
    const double r = c.Radius();
    const gp_Pln plane(c.Location(), c.Axis().Direction());
    double swept = 0.0;
    gp_Dir normal = c.Axis().Direction();
    for (int i = 0; i <= n; ++i) {
        if (std::abs(p[i].Distance(c.Location()) - r) > 1e-6 * r || plane.Distance(p[i]) > 1e-6 * r)
            return std::nullopt;
        if (i == 0) continue;
        const gp_Vec a(c.Location(), p[i - 1]), b(c.Location(), p[i]);
        if (i == 1 && a.Crossed(b).Dot(gp_Vec(normal)) < 0) normal.Reverse();
        swept += a.AngleWithRef(b, gp_Vec(normal));
    }
    const Vec3 center = fromPnt(c.Location());
    if (p[0].Distance(p[n]) <= 1e-6 * r) return CircleCurve{center, fromDir(normal), r};
    return ArcCurve{
        center, fromDir(normal), fromVec(gp_Vec(c.Location(), p[0]).Normalized()), r, 0.0, swept};
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

// A free-form face's surface as a B-spline, cut to the face's bounds (surfaces of extrusion run
// to infinity). Surfaces of revolution and extrusion convert exactly; others are fitted.
SplineSurfaceDesc splineSurfaceOf(const TopoDS_Face& face) {
    TopLoc_Location location;
    Handle(Geom_Surface) surface = BRep_Tool::Surface(face, location);
    if (!location.IsIdentity())
        surface = Handle(Geom_Surface)::DownCast(surface->Transformed(location.Transformation()));
    double u0, u1, v0, v1;
    BRepTools::UVBounds(face, u0, u1, v0, v1);
    Handle(Geom_BSplineSurface) spline = Handle(Geom_BSplineSurface)::DownCast(surface);
    if (spline.IsNull()) {
        Handle(Geom_Surface) trimmed = new Geom_RectangularTrimmedSurface(surface, u0, u1, v0, v1);
        try {
            spline = GeomConvert::SurfaceToBSplineSurface(trimmed);
        } catch (const Standard_Failure&) {
            GeomConvert_ApproxSurface approx(trimmed, 1e-7, GeomAbs_C2, GeomAbs_C2, 9, 9, 200, 1);
            spline = approx.Surface();
        }
    } else {
        spline = Handle(Geom_BSplineSurface)::DownCast(spline->Copy());
    }
    if (spline->IsUPeriodic()) spline->SetUNotPeriodic();
    if (spline->IsVPeriodic()) spline->SetVNotPeriodic();
    SplineSurfaceDesc out;
    out.uDegree = spline->UDegree();
    out.vDegree = spline->VDegree();
    out.uCount = spline->NbUPoles();
    out.vCount = spline->NbVPoles();
    const bool rational = spline->IsURational() || spline->IsVRational();
    for (int v = 1; v <= out.vCount; ++v)
        for (int u = 1; u <= out.uCount; ++u) {
            out.poles.push_back(fromPnt(spline->Pole(u, v)));
            if (rational) out.weights.push_back(spline->Weight(u, v));
        }
    for (int i = 1; i <= spline->NbUKnots(); ++i)
        for (int m = 0; m < spline->UMultiplicity(i); ++m)
            out.uKnots.push_back(spline->UKnot(i));
    for (int i = 1; i <= spline->NbVKnots(); ++i)
        for (int m = 0; m < spline->VMultiplicity(i); ++m)
            out.vKnots.push_back(spline->VKnot(i));
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
    if (auto circle = circleOf(curve, first, last, backwards)) return *circle;
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

SurfaceDesc describeSurface(const TopoDS_Face& face, bool* reversed) {
    BRepAdaptor_Surface s(face, false);
    SurfaceDesc out;
    out.kind = surfaceKind(face);
    // A left-handed frame (a mirror makes them) turns the surface's normal: the description's
    // frame is right-handed, so the turn goes into the plane's axis or the face's sense.
    bool indirect = false;
    auto frame = [&](const gp_Ax3& ax) {
        out.origin = fromPnt(ax.Location());
        out.axis = fromDir(ax.Direction());
        out.refAxis = fromDir(ax.XDirection());
        indirect = !ax.Direct();
    };
    switch (out.kind) {
    case SurfaceKind::kPlane:
        frame(s.Plane().Position());
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
        // The B-spline's own normal: the face's orientation alone says which side is out.
        out.spline = splineSurfaceOf(face);
        break;
    }
    const bool against = (face.Orientation() == TopAbs_REVERSED) != indirect;
    if (out.kind == SurfaceKind::kPlane && against)
        out.axis = {-out.axis.x, -out.axis.y, -out.axis.z};
    if (reversed) *reversed = out.kind != SurfaceKind::kPlane && against;
    return out;
}

namespace {

// Arcs of cut edges are recognised to a millionth of their radius (see circleOf). A cut that
// runs along an existing edge can leave slivers a ten-thousandth of the radius long beside it.
constexpr double kArcTolerance = 1e-6;
constexpr double kSliver = 1e-4;

bool sameCircle(const ArcCurve& a, const ArcCurve& b) {
    const double tol = kArcTolerance * a.radius;
    return toPnt(a.center).Distance(toPnt(b.center)) <= tol &&
           std::abs(a.radius - b.radius) <= tol &&
           toVec(a.normal).Normalized().Dot(toVec(b.normal).Normalized()) >= 1.0 - kArcTolerance;
}

gp_Circ circleOf(const ArcCurve& a) {
    return gp_Circ(gp_Ax2(toPnt(a.center), gp_Dir(toVec(a.normal)), gp_Dir(toVec(a.refAxis))),
                   a.radius);
}
gp_Pnt startOf(const ArcCurve& a) {
    return ElCLib::Value(a.startAngle, circleOf(a));
}
gp_Pnt endOf(const ArcCurve& a) {
    return ElCLib::Value(a.endAngle, circleOf(a));
}
double sweepOf(const ArcCurve& a) {
    return a.endAngle - a.startAngle;
}

// A sliver: a piece far shorter than the arc beside it, ending on that arc's circle.
bool sliverOf(const ArcCurve& big, const ArcCurve& small) {
    const gp_Circ c = circleOf(big);
    const double tol = kSliver * big.radius;
    return sweepOf(small) * small.radius <= tol && c.Distance(startOf(small)) <= tol &&
           c.Distance(endOf(small)) <= tol;
}

// b follows a: one arc, or nothing when they are not of one circle.
std::optional<ArcCurve> joined(const ArcCurve& a, const ArcCurve& b) {
    const double gap = endOf(a).Distance(startOf(b));
    if (sameCircle(a, b) && gap <= kArcTolerance * a.radius) {
        ArcCurve out = a;
        out.endAngle += sweepOf(b);
        return out;
    }
    if (gap > kSliver * std::max(a.radius, b.radius)) return std::nullopt;
    if (sliverOf(a, b)) {
        ArcCurve out = a;
        out.endAngle += sweepOf(b) * b.radius / a.radius;
        return out;
    }
    if (sliverOf(b, a)) {
        ArcCurve out = b;
        out.startAngle -= sweepOf(a) * a.radius / b.radius;
        return out;
    }
    return std::nullopt;
}

} // namespace

void mergeArcs(std::vector<Curve>& loop) {
    // Arcs of one circle that follow each other are one arc: the kernel splits edges at seams
    // and cuts where the host keeps one curve.
    std::vector<Curve> out;
    for (Curve& curve : loop) {
        const auto* arc = std::get_if<ArcCurve>(&curve);
        const auto* last = out.empty() ? nullptr : std::get_if<ArcCurve>(&out.back());
        if (arc && last)
            if (auto one = joined(*last, *arc)) {
                out.back() = *one;
                continue;
            }
        out.push_back(std::move(curve));
    }
    // A run that wraps past the loop's end joins the first arc.
    if (out.size() > 1) {
        const auto* first = std::get_if<ArcCurve>(&out.front());
        const auto* last = std::get_if<ArcCurve>(&out.back());
        if (first && last)
            if (auto one = joined(*last, *first)) {
                out.front() = *one;
                out.pop_back();
            }
    }
    for (Curve& curve : out)
        if (const auto* arc = std::get_if<ArcCurve>(&curve);
            arc && sweepOf(*arc) >= 2.0 * M_PI - kSliver)
            curve = CircleCurve{arc->center, arc->normal, arc->radius};
    loop = std::move(out);
}

namespace {

// The edges of a wire that leaves no choice, in the order the wire explorer runs them: closed,
// each vertex the start of one edge and the end of one, none internal or external. The explorer
// then starts at the wire's first edge and follows the ends back to that edge's start, and its
// maps and tolerances on the face are work for nothing. False for any other wire.
bool chainedWithoutChoice(const TopoDS_Shape& wire, std::vector<TopoDS_Shape>& edges) {
    struct Run {
        TopoDS_Shape edge;
        TopoDS_Vertex first, last;
    };
    constexpr std::size_t kMost = 16; // longer wires are rare: the explorer takes them
    Run runs[kMost];
    std::size_t n = 0;
    for (TopoDS_Iterator it(wire); it.More(); it.Next(), ++n) {
        const TopoDS_Shape& edge = it.Value();
        if (n == kMost || edge.ShapeType() != TopAbs_EDGE ||
            edge.Orientation() == TopAbs_INTERNAL || edge.Orientation() == TopAbs_EXTERNAL)
            return false;
        TopExp::Vertices(TopoDS::Edge(edge), runs[n].first, runs[n].last, true);
        if (runs[n].first.IsNull() || runs[n].last.IsNull()) return false;
        runs[n].edge = edge;
    }
    if (n == 0) return false;
    std::size_t next[kMost];
    for (std::size_t i = 0; i < n; ++i) {
        int starts = 0, ends = 0;
        for (std::size_t j = 0; j < n; ++j) {
            if (runs[j].first.IsSame(runs[i].first)) ++starts;
            if (runs[j].last.IsSame(runs[i].first)) ++ends;
            if (runs[i].last.IsSame(runs[j].first)) next[i] = j;
        }
        if (starts != 1 || ends != 1) return false;
    }
    // Every end is some edge's start: the counts above leave each edge one successor.
    std::size_t at = 0;
    do {
        edges.push_back(runs[at].edge);
        at = next[at];
    } while (at != 0 && edges.size() < n);
    return true;
}

} // namespace

std::vector<TopoDS_Shape> runningEdges(const TopoDS_Shape& wire, const TopoDS_Face& face) {
    std::vector<TopoDS_Shape> edges;
    if (chainedWithoutChoice(wire, edges)) return edges;
    edges.clear();
    for (BRepTools_WireExplorer it(TopoDS::Wire(wire), face); it.More(); it.Next())
        edges.push_back(it.Current());
    return edges;
}

bool isBoundaryEdge(const TopoDS_Shape& edge, const TopoDS_Face& face) {
    const TopoDS_Edge& e = TopoDS::Edge(edge);
    return !BRep_Tool::Degenerated(e) && !BRep_Tool::IsClosed(e, face);
}

} // namespace arxsolids
