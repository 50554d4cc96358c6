// Curve descriptions into the modelling kernel's edges, loops and paths.
#include "internal.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepCheck_Analyzer.hxx>
#include <BRepCheck_Wire.hxx>
#include <BRepLib_FindSurface.hxx>
#include <BRep_Builder.hxx>
#include <Bnd_Box.hxx>
#include <GC_MakeArcOfCircle.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_Circle.hxx>
#include <Geom_Ellipse.hxx>
#include <Geom_Line.hxx>
#include <Geom_Plane.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <Precision.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Vertex.hxx>

#include <algorithm>
#include <cmath>

namespace arxsolids {
namespace {

constexpr double kTwoPi = 2.0 * M_PI;

// Length below which a segment counts as a point, relative to the coordinates involved.
double pointTolerance(const gp_Pnt& a, const gp_Pnt& b) {
    const double scale = std::max({1.0, std::abs(a.X()), std::abs(a.Y()), std::abs(a.Z()),
                                   std::abs(b.X()), std::abs(b.Y()), std::abs(b.Z())});
    return 1e-12 * scale;
}

void addLine(const gp_Pnt& a, const gp_Pnt& b, std::vector<Segment>& out) {
    const double length = a.Distance(b);
    if (length <= pointTolerance(a, b)) return; // repeated vertex: no segment
    out.push_back({new Geom_Line(a, gp_Dir(gp_Vec(a, b))), 0.0, length, false});
}

// Span of an angular range running counter-clockwise from start to end, in (0, 2 pi].
double angularSpan(double start, double end) {
    double span = std::fmod(end - start, kTwoPi);
    if (span <= 0.0) span += kTwoPi;
    return span;
}

// Frame of a conic: the reference axis projected into the plane of the normal.
std::optional<gp_Ax2> conicFrame(const Vec3& center, const Vec3& normal, const Vec3& refAxis) {
    const auto n = toDir(normal);
    if (!n || !isFinite(center)) return std::nullopt;
    gp_XYZ ref = toVec(refAxis).XYZ();
    ref -= n->XYZ() * ref.Dot(n->XYZ());
    if (ref.Modulus() < 1e-9 * std::max(1.0, toVec(refAxis).Magnitude())) return std::nullopt;
    return gp_Ax2(toPnt(center), *n, gp_Dir(ref));
}

Status lineSegments(const LineCurve& c, std::vector<Segment>& out) {
    if (!isFinite(c.start) || !isFinite(c.end)) return Status::eInvalidInput;
    const std::size_t before = out.size();
    addLine(toPnt(c.start), toPnt(c.end), out);
    return out.size() > before ? Status::eOk : Status::eInvalidInput;
}

Status circleSegments(const CircleCurve& c, std::vector<Segment>& out) {
    const auto n = toDir(c.normal);
    if (!n || !isFinite(c.center) || !(c.radius > 0.0) || !std::isfinite(c.radius))
        return Status::eInvalidInput;
    out.push_back({new Geom_Circle(gp_Ax2(toPnt(c.center), *n), c.radius), 0.0, kTwoPi, true});
    return Status::eOk;
}

Status arcSegments(const ArcCurve& c, std::vector<Segment>& out) {
    const auto frame = conicFrame(c.center, c.normal, c.refAxis);
    if (!frame || !(c.radius > 0.0) || !std::isfinite(c.radius) || !std::isfinite(c.startAngle) ||
        !std::isfinite(c.endAngle))
        return Status::eInvalidInput;
    const double span = angularSpan(c.startAngle, c.endAngle);
    if (span * c.radius <= 1e-12 * std::max(1.0, c.radius)) return Status::eInvalidInput;
    const double first = std::fmod(c.startAngle, kTwoPi);
    out.push_back({new Geom_Circle(*frame, c.radius), first, first + span, false});
    return Status::eOk;
}

Status ellipseSegments(const EllipseCurve& c, std::vector<Segment>& out) {
    const auto frame = conicFrame(c.center, c.normal, c.majorAxis);
    const double major = toVec(c.majorAxis).Magnitude();
    if (!frame || !(major > 0.0) || !std::isfinite(major) || !(c.radiusRatio > 0.0) ||
        !(c.radiusRatio <= 1.0) || !std::isfinite(c.startParam) || !std::isfinite(c.endParam))
        return Status::eInvalidInput;
    const double span = angularSpan(c.startParam, c.endParam);
    const bool whole = span >= kTwoPi - 1e-12;
    Handle(Geom_Curve) basis;
    if (c.radiusRatio == 1.0)
        basis = new Geom_Circle(*frame, major);
    else
        basis = new Geom_Ellipse(*frame, major, major * c.radiusRatio);
    const double first = whole ? 0.0 : std::fmod(c.startParam, kTwoPi);
    out.push_back({basis, first, whole ? kTwoPi : first + span, whole});
    return Status::eOk;
}

Status polylineSegments(const PolylineCurve& c, std::vector<Segment>& out) {
    const std::size_t n = c.vertices.size();
    if (n < 2 || !toDir(c.normal) || !std::isfinite(c.elevation)) return Status::eInvalidInput;
    const gp_Dir normal = *toDir(c.normal);
    const std::size_t before = out.size();
    const std::size_t count = c.closed ? n : n - 1;
    for (std::size_t i = 0; i < count; ++i) {
        const PolylineVertex& v = c.vertices[i];
        if (!std::isfinite(v.x) || !std::isfinite(v.y) || !std::isfinite(v.bulge))
            return Status::eInvalidInput;
        const gp_Pnt a = toPnt(polylinePoint(c, i));
        const gp_Pnt b = toPnt(polylinePoint(c, (i + 1) % n));
        if (std::abs(v.bulge) < 1e-12 || a.Distance(b) <= pointTolerance(a, b)) {
            addLine(a, b, out);
            continue;
        }
        // The arc bulges to the right of the chord when it runs counter-clockwise; the sagitta
        // is bulge times half the chord.
        const gp_Vec chord(a, b);
        const gp_Vec left = gp_Vec(normal).Crossed(chord).Normalized();
        const gp_Pnt mid =
            a.Translated(chord * 0.5).Translated(left * (-v.bulge * chord.Magnitude() * 0.5));
        GC_MakeArcOfCircle arc(a, mid, b);
        if (!arc.IsDone()) return Status::eInvalidInput;
        const Handle(Geom_TrimmedCurve)& trimmed = arc.Value();
        out.push_back(
            {trimmed->BasisCurve(), trimmed->FirstParameter(), trimmed->LastParameter(), false});
    }
    return out.size() > before ? Status::eOk : Status::eInvalidInput;
}

Status polyline3dSegments(const Polyline3dCurve& c, std::vector<Segment>& out) {
    const std::size_t n = c.points.size();
    if (n < 2) return Status::eInvalidInput;
    for (const Vec3& p : c.points)
        if (!isFinite(p)) return Status::eInvalidInput;
    const std::size_t before = out.size();
    const std::size_t count = c.closed ? n : n - 1;
    for (std::size_t i = 0; i < count; ++i)
        addLine(toPnt(c.points[i]), toPnt(c.points[(i + 1) % n]), out);
    return out.size() > before ? Status::eOk : Status::eInvalidInput;
}

Status splineSegments(const SplineCurve& c, std::vector<Segment>& out) {
    const int nPoles = static_cast<int>(c.controlPoints.size());
    if (c.degree < 1 || c.degree > Geom_BSplineCurve::MaxDegree() || nPoles < c.degree + 1 ||
        static_cast<int>(c.knots.size()) != nPoles + c.degree + 1 ||
        (!c.weights.empty() && static_cast<int>(c.weights.size()) != nPoles))
        return Status::eInvalidInput;
    TColgp_Array1OfPnt poles(1, nPoles);
    TColStd_Array1OfReal weights(1, nPoles);
    for (int i = 0; i < nPoles; ++i) {
        if (!isFinite(c.controlPoints[i])) return Status::eInvalidInput;
        poles.SetValue(i + 1, toPnt(c.controlPoints[i]));
        const double w = c.weights.empty() ? 1.0 : c.weights[i];
        if (!(w > 0.0) || !std::isfinite(w)) return Status::eInvalidInput;
        weights.SetValue(i + 1, w);
    }
    // The flat knot vector as distinct knots with multiplicities.
    const double range = c.knots.back() - c.knots.front();
    if (!(range > 0.0) || !std::isfinite(range)) return Status::eInvalidInput;
    std::vector<double> distinct;
    std::vector<int> mults;
    for (std::size_t i = 0; i < c.knots.size(); ++i) {
        if (i > 0 && c.knots[i] < c.knots[i - 1]) return Status::eInvalidInput;
        if (!distinct.empty() && c.knots[i] - distinct.back() <= 1e-12 * range)
            ++mults.back();
        else {
            distinct.push_back(c.knots[i]);
            mults.push_back(1);
        }
    }
    for (int m : mults)
        if (m > c.degree + 1) return Status::eInvalidInput;
    TColStd_Array1OfReal knots(1, static_cast<int>(distinct.size()));
    TColStd_Array1OfInteger multiplicities(1, static_cast<int>(distinct.size()));
    for (std::size_t i = 0; i < distinct.size(); ++i) {
        knots.SetValue(static_cast<int>(i) + 1, distinct[i]);
        multiplicities.SetValue(static_cast<int>(i) + 1, mults[i]);
    }
    Handle(Geom_BSplineCurve) curve =
        c.weights.empty() ? new Geom_BSplineCurve(poles, knots, multiplicities, c.degree)
                          : new Geom_BSplineCurve(poles, weights, knots, multiplicities, c.degree);
    Segment segment{curve, curve->FirstParameter(), curve->LastParameter(), false};
    // A spline that ends where it starts (a periodic one among them) is a loop of its own.
    segment.closed = segment.start().Distance(segment.end()) <=
                     pointTolerance(segment.start(), segment.end()) * 1e3;
    out.push_back(segment);
    return Status::eOk;
}

// Tolerance for joining curve ends into loops, relative to the size of the curves: curves
// read from files end on each other only to the precision they were stored with.
double joinTolerance(const std::vector<Segment>& segments) {
    Bnd_Box box;
    for (const Segment& s : segments) {
        box.Add(s.start());
        box.Add(s.end());
        box.Add(s.curve->Value(0.5 * (s.first + s.last)));
    }
    const double size = box.IsVoid() ? 0.0 : std::sqrt(box.SquareExtent());
    return std::max(Precision::Confusion() * 1e-3, 1e-7 * size);
}

struct Use {
    std::size_t segment;
    bool reversed;
};

// Edges along a chain of segment uses, with one shared vertex at each joint (in the middle of
// the two ends, tolerant enough to hold both). `closed`: the last joins the first.
std::vector<TopoDS_Edge> chainEdges(const std::vector<Segment>& segments,
                                    const std::vector<Use>& chain, bool closed) {
    BRep_Builder builder;
    const std::size_t n = chain.size();
    auto entry = [&](std::size_t i) {
        const Segment& s = segments[chain[i].segment];
        return chain[i].reversed ? s.end() : s.start();
    };
    auto exit = [&](std::size_t i) {
        const Segment& s = segments[chain[i].segment];
        return chain[i].reversed ? s.start() : s.end();
    };
    auto joint = [&](const gp_Pnt& a, const gp_Pnt& b) {
        TopoDS_Vertex v;
        const gp_Pnt mid((a.XYZ() + b.XYZ()) * 0.5);
        builder.MakeVertex(v, mid, std::max(Precision::Confusion(), 0.51 * a.Distance(b) + 1e-9));
        return v;
    };
    // vertex[i] joins the exit of use i - 1 and the entry of use i.
    std::vector<TopoDS_Vertex> vertex(n + 1);
    for (std::size_t i = 0; i < n; ++i) {
        if (i == 0)
            vertex[0] = closed ? joint(exit(n - 1), entry(0)) : joint(entry(0), entry(0));
        else
            vertex[i] = joint(exit(i - 1), entry(i));
    }
    vertex[n] = closed ? vertex[0] : joint(exit(n - 1), exit(n - 1));

    std::vector<TopoDS_Edge> edges;
    for (std::size_t i = 0; i < n; ++i) {
        const Segment& s = segments[chain[i].segment];
        // Vertices in the curve's own direction.
        TopoDS_Vertex v1 = chain[i].reversed ? vertex[i + 1] : vertex[i];
        TopoDS_Vertex v2 = chain[i].reversed ? vertex[i] : vertex[i + 1];
        TopoDS_Edge edge;
        if (s.curve->IsKind(STANDARD_TYPE(Geom_Line))) {
            // A line is remade between its joints, so that it ends on them exactly.
            const gp_Pnt a = BRep_Tool::Pnt(v1), b = BRep_Tool::Pnt(v2);
            edge = BRepBuilderAPI_MakeEdge(new Geom_Line(a, gp_Dir(gp_Vec(a, b))), v1, v2, 0.0,
                                           a.Distance(b));
        } else {
            edge = BRepBuilderAPI_MakeEdge(s.curve, v1, v2, s.first, s.last);
        }
        edges.push_back(chain[i].reversed ? TopoDS::Edge(edge.Reversed()) : edge);
    }
    return edges;
}

TopoDS_Wire wireOf(const std::vector<TopoDS_Edge>& edges) {
    BRep_Builder builder;
    TopoDS_Wire wire;
    builder.MakeWire(wire);
    for (const TopoDS_Edge& e : edges)
        builder.Add(wire, e);
    return wire;
}

// Loops among open segments, walking from end to start; eOpenLoop when one doesn't close.
Status findLoops(const std::vector<Segment>& segments, double tol,
                 std::vector<std::vector<Use>>& loops) {
    std::vector<bool> used(segments.size(), false);
    for (std::size_t first = 0; first < segments.size(); ++first) {
        if (used[first]) continue;
        used[first] = true;
        if (segments[first].closed) {
            loops.push_back({{first, false}});
            continue;
        }
        std::vector<Use> loop{{first, false}};
        const gp_Pnt origin = segments[first].start();
        gp_Pnt at = segments[first].end();
        while (at.Distance(origin) > tol) {
            std::optional<Use> next;
            double best = tol;
            for (std::size_t j = 0; j < segments.size(); ++j) {
                if (used[j] || segments[j].closed) continue;
                const double ds = at.Distance(segments[j].start());
                const double de = at.Distance(segments[j].end());
                if (ds <= best) best = ds, next = Use{j, false};
                if (de <= best) best = de, next = Use{j, true};
            }
            if (!next) return Status::eOpenLoop;
            used[next->segment] = true;
            loop.push_back(*next);
            const Segment& s = segments[next->segment];
            at = next->reversed ? s.start() : s.end();
        }
        loops.push_back(loop);
    }
    return Status::eOk;
}

// The normal a region takes: that of the first curve that has one, else the plane's normal
// pointing up (then north, then east).
gp_Dir preferredNormal(const std::vector<Curve>& curves, const gp_Dir& planeNormal) {
    for (const Curve& curve : curves) {
        std::optional<gp_Dir> n;
        if (auto* c = std::get_if<CircleCurve>(&curve)) n = toDir(c->normal);
        if (auto* c = std::get_if<ArcCurve>(&curve)) n = toDir(c->normal);
        if (auto* c = std::get_if<EllipseCurve>(&curve)) n = toDir(c->normal);
        if (auto* c = std::get_if<PolylineCurve>(&curve)) n = toDir(c->normal);
        if (n && n->IsParallel(planeNormal, 1e-6))
            return n->Dot(planeNormal) > 0 ? planeNormal : planeNormal.Reversed();
    }
    const double eps = 1e-12;
    const bool flip =
        planeNormal.Z() < -eps ||
        (std::abs(planeNormal.Z()) <= eps &&
         (planeNormal.Y() < -eps || (std::abs(planeNormal.Y()) <= eps && planeNormal.X() < 0)));
    return flip ? planeNormal.Reversed() : planeNormal;
}

gp_Dir faceNormal(const TopoDS_Face& face) {
    BRepAdaptor_Surface surface(face, false);
    gp_Dir n = surface.Plane().Axis().Direction();
    return face.Orientation() == TopAbs_REVERSED ? n.Reversed() : n;
}

Status loopFace(const TopoDS_Wire& wire, double tol, const std::vector<Curve>& curves,
                TopoDS_Face& face) {
    BRepLib_FindSurface finder(wire, tol, true);
    if (!finder.Found()) return Status::eNonPlanarEntity;
    Handle(Geom_Plane) plane = Handle(Geom_Plane)::DownCast(finder.Surface());
    if (plane.IsNull()) return Status::eNonPlanarEntity;
    gp_Pln pln = plane->Pln().Transformed(finder.Location().Transformation());
    BRepBuilderAPI_MakeFace maker(pln, wire, true);
    if (!maker.IsDone()) return Status::eNonPlanarEntity;
    face = maker.Face();
    TopoDS_Edge e1, e2;
    BRepCheck_Wire check(wire);
    if (check.SelfIntersect(face, e1, e2, false) == BRepCheck_SelfIntersectingWire)
        return Status::eSelfIntersecting;
    if (!BRepCheck_Analyzer(face).IsValid()) return Status::eSelfIntersecting;
    const gp_Dir wanted = preferredNormal(curves, pln.Axis().Direction());
    if (faceNormal(face).Dot(wanted) < 0) face.Reverse();
    return Status::eOk;
}

} // namespace

Status toSegments(const Curve& curve, std::vector<Segment>& segments) {
    return std::visit(
        [&](const auto& c) -> Status {
            using T = std::decay_t<decltype(c)>;
            if constexpr (std::is_same_v<T, LineCurve>) return lineSegments(c, segments);
            if constexpr (std::is_same_v<T, CircleCurve>) return circleSegments(c, segments);
            if constexpr (std::is_same_v<T, ArcCurve>) return arcSegments(c, segments);
            if constexpr (std::is_same_v<T, EllipseCurve>) return ellipseSegments(c, segments);
            if constexpr (std::is_same_v<T, PolylineCurve>) return polylineSegments(c, segments);
            if constexpr (std::is_same_v<T, Polyline3dCurve>)
                return polyline3dSegments(c, segments);
            if constexpr (std::is_same_v<T, SplineCurve>) return splineSegments(c, segments);
        },
        curve);
}

Status buildLoopFaces(const std::vector<Curve>& curves, std::vector<TopoDS_Face>& faces) {
    std::vector<Segment> segments;
    for (const Curve& curve : curves)
        if (Status s = toSegments(curve, segments); s != Status::eOk) return s;
    if (segments.empty()) return Status::eInvalidInput;
    const double tol = joinTolerance(segments);
    std::vector<std::vector<Use>> loops;
    if (Status s = findLoops(segments, tol, loops); s != Status::eOk) return s;
    for (const auto& loop : loops) {
        TopoDS_Face face;
        const TopoDS_Wire wire = wireOf(chainEdges(segments, loop, true));
        if (Status s = loopFace(wire, tol, curves, face); s != Status::eOk) return s;
        if (areaOf(face) <= tol * tol) return Status::eDegenerateGeometry;
        faces.push_back(face);
    }
    return Status::eOk;
}

Status buildPathWire(const Curve& path, TopoDS_Wire& wire) {
    std::vector<Segment> segments;
    if (Status s = toSegments(path, segments); s != Status::eOk) return s;
    const double tol = joinTolerance(segments);
    std::vector<Use> chain;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        if (i > 0 && segments[i - 1].end().Distance(segments[i].start()) > tol)
            return Status::eInvalidInput;
        chain.push_back({i, false});
    }
    const bool closed = segments.size() == 1
                            ? segments[0].closed
                            : segments.back().end().Distance(segments.front().start()) <= tol;
    if (segments.size() == 1 && segments[0].closed) {
        wire = wireOf(
            {BRepBuilderAPI_MakeEdge(segments[0].curve, segments[0].first, segments[0].last)});
        return Status::eOk;
    }
    wire = wireOf(chainEdges(segments, chain, closed));
    return Status::eOk;
}

} // namespace arxsolids
