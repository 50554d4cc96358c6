// Bodies built straight from their boundary description. The general rebuild makes each face on
// its own, sews them, checks the result and heals what fails: many times the cost of making the
// body. Here the edges are made once and shared, and each is given its curve on every face it
// bounds, exactly (a line or a circle in the face's parameters), so the shell is closed as built.
// What is trusted is checked where it is cheap: every edge is run by two faces, once each way;
// every curve lies on its faces; every loop runs its face's way and a polygon does not cross
// itself. Anything else goes to the general rebuild.
#include "frombrep.h"

#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <ElSLib.hxx>
#include <Geom2d_Circle.hxx>
#include <Geom2d_Line.hxx>
#include <GeomAPI.hxx>
#include <Geom_Circle.hxx>
#include <Geom_ConicalSurface.hxx>
#include <Geom_CylindricalSurface.hxx>
#include <Geom_Line.hxx>
#include <Geom_Plane.hxx>
#include <Geom_SphericalSurface.hxx>
#include <Geom_ToroidalSurface.hxx>
#include <Precision.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shell.hxx>
#include <TopoDS_Solid.hxx>
#include <TopoDS_Wire.hxx>
#include <gp_Circ2d.hxx>
#include <gp_Cone.hxx>

#include <cmath>
#include <numeric>

namespace arxsolids {
namespace {

constexpr double kTwoPi = 2 * M_PI;
// Longest polygon checked for crossing itself (pairs of sides: its square).
constexpr std::size_t kLongestPolygon = 64;

// An angle brought into (-pi, pi].
double wrapped(double angle) {
    angle = std::remainder(angle, kTwoPi);
    return angle <= -M_PI ? angle + kTwoPi : angle;
}

// The parameters of a point on an elementary surface of revolution (closed form).
bool parametersOn(const Handle(Geom_Surface) & surface, const gp_Pnt& p, double& u, double& v) {
    if (auto s = Handle(Geom_CylindricalSurface)::DownCast(surface))
        ElSLib::Parameters(s->Cylinder(), p, u, v);
    else if (auto s = Handle(Geom_ConicalSurface)::DownCast(surface))
        ElSLib::Parameters(s->Cone(), p, u, v);
    else if (auto s = Handle(Geom_ToroidalSurface)::DownCast(surface))
        ElSLib::Parameters(s->Torus(), p, u, v);
    else
        return false;
    return std::isfinite(u) && std::isfinite(v);
}

// The flux of the position vector out through a face of revolution, whole around its axis (or
// tube) between parameters lo and hi, on the surface's own side. Summed over a closed shell it
// is three times the volume (the divergence theorem); these are its closed forms.
double revolvedFlux(const Handle(Geom_Surface) & surface, double lo, double hi) {
    if (auto cylinder = Handle(Geom_CylindricalSurface)::DownCast(surface)) {
        const double r = cylinder->Radius();
        return kTwoPi * r * r * (hi - lo);
    }
    if (auto cone = Handle(Geom_ConicalSurface)::DownCast(surface)) {
        // Over a whole turn the flux at height v is 2 pi rho(v) (R cos a - sin a (O . Z)), with
        // rho(v) = R + v sin a the radius there.
        const gp_Cone c = cone->Cone();
        const double R = c.RefRadius(), sa = std::sin(c.SemiAngle()), ca = std::cos(c.SemiAngle());
        const double oz = c.Position().Location().XYZ().Dot(c.Position().Direction().XYZ());
        return kTwoPi * (R * ca - sa * oz) * (R * (hi - lo) + sa * (hi * hi - lo * lo) / 2);
    }
    if (auto torus = Handle(Geom_ToroidalSurface)::DownCast(surface)) {
        // Around the tube: pi r^2 (C . e(u)) + 3 pi R r^2 at angle u; e(u) integrates to
        // sin u X - cos u Y.
        const gp_Ax3 pos = torus->Position();
        const double R = torus->MajorRadius(), r = torus->MinorRadius();
        const auto integral = [&](double u) {
            return pos.XDirection().XYZ() * std::sin(u) - pos.YDirection().XYZ() * std::cos(u);
        };
        const gp_XYZ centre = pos.Location().XYZ();
        return M_PI * r * r * centre.Dot(integral(hi) - integral(lo)) +
               3 * M_PI * R * r * r * (hi - lo);
    }
    return std::nan("");
}

// Each edge bounds two faces, run once each way: the shell is closed, and its faces turn the
// same way. Counted from the description before anything is built.
bool edgesRunOnceEachWay(const Brep& brep) {
    std::vector<unsigned char> along(brep.edges.size()), against(brep.edges.size());
    const int n = static_cast<int>(brep.edges.size());
    for (const BrepFace& f : brep.faces)
        for (const BrepLoop& loop : f.loops)
            for (const BrepCoedge& c : loop.coedges) {
                if (c.edge < 0 || c.edge >= n) return false;
                unsigned char& count = c.reversed ? against[c.edge] : along[c.edge];
                if (++count > 1) return false;
            }
    for (int e = 0; e < n; ++e)
        if (along[e] != 1 || against[e] != 1) return false;
    return true;
}

// The faces form one piece, joined through their edges.
bool connected(const Brep& brep) {
    std::vector<int> parent(brep.faces.size()), faceOfEdge(brep.edges.size(), -1);
    std::iota(parent.begin(), parent.end(), 0);
    const auto root = [&](int f) {
        while (parent[f] != f)
            f = parent[f] = parent[parent[f]];
        return f;
    };
    for (int f = 0; f < static_cast<int>(brep.faces.size()); ++f)
        for (const BrepLoop& loop : brep.faces[f].loops)
            for (const BrepCoedge& c : loop.coedges) {
                int& other = faceOfEdge[c.edge];
                if (other < 0)
                    other = f;
                else
                    parent[root(f)] = root(other);
            }
    for (int f = 1; f < static_cast<int>(brep.faces.size()); ++f)
        if (root(f) != root(0)) return false;
    return true;
}

// Where a circle edge runs over a surface of revolution: along one parameter (the other fixed),
// one way or the other.
struct Rim {
    int edge = -1;
    double fixed = 0.0; // the parameter held: v on a cylinder or cone, u on a torus
    double start = 0.0; // the running parameter at the edge's start (its vertex)
    int sense = 1;      // +1 when the running parameter grows with the edge's own
    int run = 1;        // +1 when the face (on the surface's own side) runs it that way
};

class DirectBuilder {
public:
    explicit DirectBuilder(const Brep& brep) : brep_(brep) {}

    // The solid, and its volume (negative when its faces turn inward) worked out as it is built.
    TopoDS_Shape build(double& volume) {
        if (brep_.faces.empty() || !edgesRunOnceEachWay(brep_) || !connected(brep_)) return {};
        if (buildEdges(brep_, vertices_, edges_) != Status::eOk) return {};
        TopoDS_Shell shell;
        builder_.MakeShell(shell);
        double flux = 0.0, magnitude = 0.0;
        for (const BrepFace& f : brep_.faces) {
            TopoDS_Face face;
            faceFlux_ = 0.0;
            if (!makeFace(f, face) || !std::isfinite(faceFlux_)) return {};
            if (f.reversed) face.Reverse();
            flux += f.reversed ? -faceFlux_ : faceFlux_;
            magnitude += std::abs(faceFlux_);
            builder_.Add(shell, face);
        }
        // A body with no volume to speak of (its faces' fluxes cancel to rounding) is no solid.
        if (!(std::abs(flux) > 1e-12 * magnitude)) return {};
        shell.Closed(true);
        TopoDS_Solid solid;
        builder_.MakeSolid(solid);
        builder_.Add(solid, shell);
        volume = flux / 3;
        return solid;
    }

private:
    bool makeFace(const BrepFace& f, TopoDS_Face& face) {
        const Handle(Geom_Surface) surface = surfaceOf(f.surface);
        if (surface.IsNull()) return false;
        if (f.loops.empty()) {
            // A whole sphere or torus is a body of one face, closed on itself.
            if (brep_.faces.size() != 1 ||
                (f.surface.kind != SurfaceKind::kSphere && f.surface.kind != SurfaceKind::kTorus))
                return false;
            BRepBuilderAPI_MakeFace maker(surface, Precision::Confusion());
            if (!maker.IsDone()) return false;
            face = maker.Face();
            if (auto sphere = Handle(Geom_SphericalSurface)::DownCast(surface)) {
                const double r = sphere->Radius();
                faceFlux_ = 4 * M_PI * r * r * r;
            } else {
                faceFlux_ = revolvedFlux(surface, 0.0, kTwoPi);
            }
            return true;
        }
        switch (f.surface.kind) {
        case SurfaceKind::kPlane:
            return planeFace(f, Handle(Geom_Plane)::DownCast(surface), face);
        case SurfaceKind::kCylinder:
        case SurfaceKind::kCone:
        case SurfaceKind::kTorus:
            return revolvedFace(f, surface, face);
        default:
            return false;
        }
    }

    // ---- Planes ----

    bool planeFace(const BrepFace& f, const Handle(Geom_Plane) & plane, TopoDS_Face& face) {
        if (plane.IsNull() || f.reversed) return false;
        const gp_Pln pln = plane->Pln();
        builder_.MakeFace(face, plane, Precision::Confusion());
        int outers = 0;
        std::vector<gp_Circ2d> circles; // loops of one circle, outer first, for the holes test
        for (const BrepLoop& loop : f.loops) {
            TopoDS_Wire wire;
            builder_.MakeWire(wire);
            std::vector<gp_Pnt2d> corners;
            double area = 0.0; // about the plane's normal: positive counter-clockwise
            for (std::size_t i = 0; i < loop.coedges.size(); ++i) {
                const BrepCoedge& c = loop.coedges[i];
                const BrepCoedge& next = loop.coedges[(i + 1) % loop.coedges.size()];
                if (endOf(c) != startOf(next)) return false;
                const TopoDS_Edge& edge = edges_[c.edge];
                double first, last;
                const Handle(Geom_Curve) curve = BRep_Tool::Curve(edge, first, last);
                const Handle(Geom2d_Curve) onPlane = GeomAPI::To2d(curve, pln);
                if (onPlane.IsNull() || !liesOn(curve, onPlane, *plane, first, last)) return false;
                builder_.UpdateEdge(edge, onPlane, face, BRep_Tool::Tolerance(edge));
                builder_.Add(wire, c.reversed ? edge.Reversed() : TopoDS_Shape(edge));
                if (auto circle = Handle(Geom2d_Circle)::DownCast(onPlane)) {
                    if (loop.coedges.size() != 1) return false;
                    const gp_Circ2d circ = circle->Circ2d();
                    area = M_PI * circ.Radius() * circ.Radius() *
                           ((circ.IsDirect() != c.reversed) ? 1.0 : -1.0);
                    circles.push_back(circ);
                } else if (Handle(Geom2d_Line)::DownCast(onPlane)) {
                    corners.push_back(onPlane->Value(c.reversed ? last : first));
                } else {
                    return false;
                }
            }
            if (!corners.empty()) {
                if (corners.size() != loop.coedges.size() || crosses(corners)) return false;
                for (std::size_t i = 0; i < corners.size(); ++i)
                    area += corners[i].XY() ^ corners[(i + 1) % corners.size()].XY();
                area /= 2;
            }
            if (loop.outer != (area > 0.0) || area == 0.0) return false;
            // Through a plane the flux is its distance from the origin times its area.
            faceFlux_ += area * pln.Location().XYZ().Dot(pln.Axis().Direction().XYZ());
            outers += loop.outer;
            wire.Closed(true);
            builder_.Add(face, wire);
        }
        // Holes are taken as they are only when every loop is a circle: each hole inside the
        // outer circle and clear of the others.
        if (outers != 1) return false;
        if (f.loops.size() > 1 && !holesClear(f, circles)) return false;
        return true;
    }

    // Circles of loops in the face's order; the outer one (there is one) holds the others, which
    // keep apart.
    static bool holesClear(const BrepFace& f, const std::vector<gp_Circ2d>& circles) {
        if (circles.size() != f.loops.size()) return false;
        std::size_t outer = 0;
        while (!f.loops[outer].outer)
            ++outer;
        const gp_Circ2d& o = circles[outer];
        for (std::size_t i = 0; i < circles.size(); ++i) {
            if (i == outer) continue;
            const gp_Circ2d& h = circles[i];
            if (o.Location().Distance(h.Location()) + h.Radius() >= o.Radius()) return false;
            for (std::size_t j = i + 1; j < circles.size(); ++j)
                if (j != outer && h.Location().Distance(circles[j].Location()) <=
                                      h.Radius() + circles[j].Radius())
                    return false;
        }
        return true;
    }

    // Two sides of a polygon that are not neighbours meet.
    static bool crosses(const std::vector<gp_Pnt2d>& p) {
        const std::size_t n = p.size();
        if (n < 3 || n > kLongestPolygon) return true;
        const auto side = [](const gp_Pnt2d& a, const gp_Pnt2d& b, const gp_Pnt2d& c) {
            const double cross = gp_Vec2d(a, b) ^ gp_Vec2d(a, c);
            return cross > 0.0 ? 1 : cross < 0.0 ? -1 : 0;
        };
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = i + 2; j < n; ++j) {
                if (i == 0 && j == n - 1) continue; // neighbours through the closing corner
                const gp_Pnt2d &a = p[i], &b = p[(i + 1) % n], &c = p[j], &d = p[(j + 1) % n];
                const int abc = side(a, b, c), abd = side(a, b, d);
                const int cda = side(c, d, a), cdb = side(c, d, b);
                if (abc * abd <= 0 && cda * cdb <= 0) return true; // touching counts too
            }
        return false;
    }

    // ---- Surfaces of revolution ----

    // A band between two whole circles (a cylinder's or cone's side, a torus's part between two
    // rims), or a cone's side closed at its apex.
    bool revolvedFace(const BrepFace& f, const Handle(Geom_Surface) & surface, TopoDS_Face& face) {
        const bool torus = f.surface.kind == SurfaceKind::kTorus;
        std::vector<Rim> rims;
        for (const BrepLoop& loop : f.loops) {
            if (loop.coedges.size() != 1) return false;
            Rim rim;
            if (!rimOf(loop.coedges.front(), f, surface, torus, rim)) return false;
            rims.push_back(rim);
        }
        builder_.MakeFace(face, surface, Precision::Confusion());
        if (rims.size() == 2) return band(rims[0], rims[1], surface, torus, face);
        if (rims.size() == 1 && f.surface.kind == SurfaceKind::kCone)
            return closedAtApex(rims[0], Handle(Geom_ConicalSurface)::DownCast(surface), face);
        return false;
    }

    // The rim a coedge runs, if its edge is a whole circle along a parameter line of the
    // surface: on a cylinder or cone at fixed v, on a torus at fixed u.
    bool rimOf(const BrepCoedge& c, const BrepFace& f, const Handle(Geom_Surface) & surface,
               bool torus, Rim& rim) const {
        const TopoDS_Edge& edge = edges_[c.edge];
        double first, last;
        const Handle(Geom_Curve) curve = BRep_Tool::Curve(edge, first, last);
        if (Handle(Geom_Circle)::DownCast(curve).IsNull() ||
            std::abs(last - first - kTwoPi) > 1e-12)
            return false;
        double u[4], v[4];
        for (int i = 0; i < 4; ++i) {
            const gp_Pnt p = curve->Value(first + i * M_PI / 2);
            if (!parametersOn(surface, p, u[i], v[i])) return false;
            if (torus) u[i] = u[0] + wrapped(u[i] - u[0]);
            if (surface->Value(torus ? u[0] : u[i], torus ? v[i] : v[0]).Distance(p) >
                Precision::Confusion())
                return false;
        }
        const double* running = torus ? v : u;
        const double quarter = wrapped(running[1] - running[0]);
        if (std::abs(std::abs(quarter) - M_PI / 2) > 1e-9) return false;
        rim.edge = c.edge;
        rim.fixed = torus ? u[0] : v[0];
        rim.start = running[0];
        rim.sense = quarter > 0 ? 1 : -1;
        // The face runs the edge against itself on the surface's own side when exactly one of
        // the coedge and the face is turned.
        rim.run = (c.reversed != f.reversed) ? -rim.sense : rim.sense;
        return true;
    }

    // On the surface's own side the face's boundary runs counter-clockwise in its parameters:
    // the low rim forwards, the high one backwards. On a cylinder or cone the rims are the
    // bottom and top (v), the seam a side; on a torus the rims are the sides (u), the seam the
    // bottom and top.
    bool band(Rim a, Rim b, const Handle(Geom_Surface) & surface, bool torus, TopoDS_Face& face) {
        // The low rim is the one run forwards (counter-clockwise): on a torus that is its
        // right side, run with v growing.
        if (a.run == b.run) return false;
        Rim& low = torus ? (a.run > 0 ? b : a) : (a.run > 0 ? a : b);
        Rim& high = &low == &a ? b : a;
        if (std::abs(wrapped(a.start - b.start)) > 1e-9) return false;
        double lo = low.fixed, hi = high.fixed;
        if (torus) {
            while (hi <= lo)
                hi += kTwoPi;
            if (hi - lo > kTwoPi - 1e-9) return false;
        } else if (!(hi > lo)) {
            return false;
        }
        faceFlux_ = revolvedFlux(surface, lo, hi);
        const double seamAt = low.start;
        const TopoDS_Vertex vLow = vertexOf(low.edge), vHigh = vertexOf(high.edge);
        TopoDS_Edge seam;
        if (!seamEdge(surface, torus, seamAt, lo, hi, vLow, vHigh, face, seam)) return false;
        // Rims: the running parameter from the seam, one whole turn in the face's range.
        rimCurve(low, torus, lo, seamAt, face);
        rimCurve(high, torus, hi, seamAt, face);
        TopoDS_Wire wire;
        builder_.MakeWire(wire);
        if (!torus) {
            builder_.Add(wire, oriented(low, true));
            builder_.Add(wire, seam);
            builder_.Add(wire, oriented(high, false));
            builder_.Add(wire, seam.Reversed());
        } else {
            // The seam runs at fixed v: the bottom forwards, the top backwards; the low rim
            // (at u = lo) is the left side, run with v falling.
            builder_.Add(wire, seam);
            builder_.Add(wire, oriented(high, true));
            builder_.Add(wire, seam.Reversed());
            builder_.Add(wire, oriented(low, false));
        }
        wire.Closed(true);
        builder_.Add(face, wire);
        return true;
    }

    // A cone's side from one circle to the apex, where the boundary collapses to a point.
    bool closedAtApex(const Rim& rim, const Handle(Geom_ConicalSurface) & cone, TopoDS_Face& face) {
        if (cone.IsNull()) return false;
        const gp_Cone c = cone->Cone();
        const double apexV = -c.RefRadius() / std::sin(c.SemiAngle());
        if (!std::isfinite(apexV) || std::abs(apexV - rim.fixed) <= Precision::Confusion())
            return false;
        // Below the apex the rim is the bottom, run forwards; above it, the top.
        const bool rimLow = rim.fixed < apexV;
        if ((rim.run > 0) != rimLow) return false;
        TopoDS_Vertex apex;
        builder_.MakeVertex(apex, c.Apex(), Precision::Confusion());
        const double seamAt = rim.start;
        const double lo = std::min(rim.fixed, apexV), hi = std::max(rim.fixed, apexV);
        faceFlux_ = revolvedFlux(cone, lo, hi);
        const TopoDS_Vertex vRim = vertexOf(rim.edge);
        TopoDS_Edge seam;
        if (!seamEdge(cone, false, seamAt, lo, hi, rimLow ? vRim : apex, rimLow ? apex : vRim, face,
                      seam))
            return false;
        rimCurve(rim, false, rim.fixed, seamAt, face);
        // The collapsed edge: a curve in the parameters only.
        TopoDS_Edge point;
        builder_.MakeEdge(point);
        builder_.UpdateEdge(point, new Geom2d_Line(gp_Pnt2d(0.0, apexV), gp_Dir2d(1.0, 0.0)), face,
                            Precision::Confusion());
        builder_.Range(point, seamAt, seamAt + kTwoPi);
        builder_.Degenerated(point, true);
        builder_.Add(point, apex.Oriented(TopAbs_FORWARD));
        builder_.Add(point, apex.Oriented(TopAbs_REVERSED));
        TopoDS_Wire wire;
        builder_.MakeWire(wire);
        if (rimLow) {
            builder_.Add(wire, oriented(rim, true));
            builder_.Add(wire, seam);
            builder_.Add(wire, point.Reversed());
        } else {
            builder_.Add(wire, point);
            builder_.Add(wire, seam);
            builder_.Add(wire, oriented(rim, false));
        }
        builder_.Add(wire, seam.Reversed());
        wire.Closed(true);
        builder_.Add(face, wire);
        return true;
    }

    // The seam: the parameter line through the rims' vertices, with its curve on either side of
    // the face's range (the far side for the forward use).
    bool seamEdge(const Handle(Geom_Surface) & surface, bool torus, double at, double lo, double hi,
                  const TopoDS_Vertex& from, const TopoDS_Vertex& to, const TopoDS_Face& face,
                  TopoDS_Edge& seam) {
        const Handle(Geom_Curve) curve = torus ? surface->VIso(at) : surface->UIso(at);
        if (curve.IsNull() || curve->Value(lo).Distance(BRep_Tool::Pnt(from)) > kOn ||
            curve->Value(hi).Distance(BRep_Tool::Pnt(to)) > kOn)
            return false;
        builder_.MakeEdge(seam, curve, Precision::Confusion());
        builder_.Add(seam, from.Oriented(TopAbs_FORWARD));
        builder_.Add(seam, to.Oriented(TopAbs_REVERSED));
        builder_.Range(seam, lo, hi);
        const gp_Dir2d along = torus ? gp_Dir2d(1.0, 0.0) : gp_Dir2d(0.0, 1.0);
        const gp_Pnt2d near = torus ? gp_Pnt2d(0.0, at) : gp_Pnt2d(at, 0.0);
        const gp_Pnt2d far = torus ? gp_Pnt2d(0.0, at + kTwoPi) : gp_Pnt2d(at + kTwoPi, 0.0);
        // On a cylinder or cone the forward seam is the right side (far u); on a torus it is
        // the bottom (near v).
        const Handle(Geom2d_Line) forward = new Geom2d_Line(torus ? near : far, along);
        const Handle(Geom2d_Line) backward = new Geom2d_Line(torus ? far : near, along);
        builder_.UpdateEdge(seam, forward, backward, face, Precision::Confusion());
        builder_.Range(seam, lo, hi);
        return true;
    }

    // A rim's curve in the face's parameters: at `fixed`, the running parameter from the seam
    // through a whole turn the way the edge runs.
    void rimCurve(const Rim& rim, bool torus, double fixed, double seamAt,
                  const TopoDS_Face& face) {
        const TopoDS_Edge& edge = edges_[rim.edge];
        double first, last;
        BRep_Tool::Range(edge, first, last);
        // The running parameter at the edge's own t: seamAt + sense (t - first), moved by a
        // turn when it runs backwards so that it stays in [seamAt, seamAt + 2 pi].
        const double origin = (rim.sense > 0 ? seamAt : seamAt + kTwoPi) - rim.sense * first;
        const gp_Pnt2d start = torus ? gp_Pnt2d(fixed, origin) : gp_Pnt2d(origin, fixed);
        const gp_Dir2d dir = torus ? gp_Dir2d(0.0, rim.sense) : gp_Dir2d(rim.sense, 0.0);
        builder_.UpdateEdge(edge, new Geom2d_Line(start, dir), face, BRep_Tool::Tolerance(edge));
    }

    // A rim's edge turned so that it runs the running parameter up (or down).
    TopoDS_Shape oriented(const Rim& rim, bool up) const {
        const TopoDS_Edge& edge = edges_[rim.edge];
        return (rim.sense > 0) == up ? TopoDS_Shape(edge) : edge.Reversed();
    }

    // ---- Shared pieces ----

    TopoDS_Vertex vertexOf(int edge) const { return vertices_[brep_.edges[edge].startVertex]; }
    int startOf(const BrepCoedge& c) const {
        const BrepEdge& e = brep_.edges[c.edge];
        return c.reversed ? e.endVertex : e.startVertex;
    }
    int endOf(const BrepCoedge& c) const {
        const BrepEdge& e = brep_.edges[c.edge];
        return c.reversed ? e.startVertex : e.endVertex;
    }

    // The curve and its image in the surface's parameters agree at its ends and between.
    static bool liesOn(const Handle(Geom_Curve) & curve, const Handle(Geom2d_Curve) & onSurface,
                       const Geom_Surface& surface, double first, double last) {
        for (int i = 0; i <= 4; ++i) {
            const double t = first + (last - first) * i / 4;
            const gp_Pnt2d uv = onSurface->Value(t);
            if (surface.Value(uv.X(), uv.Y()).Distance(curve->Value(t)) > kOn) return false;
        }
        return true;
    }

    // How far a point may be off the curve or surface it is said to lie on: the kernel's own
    // resolution, which the edges and vertices are made with.
    static inline const double kOn = Precision::Confusion();

    const Brep& brep_;
    BRep_Builder builder_;
    double faceFlux_ = 0.0; // of the face being built, on its surface's own side
    std::vector<TopoDS_Vertex> vertices_;
    std::vector<TopoDS_Edge> edges_;
};

} // namespace

TopoDS_Shape directSolidOf(const Brep& brep, double& volume) {
    try {
        return DirectBuilder(brep).build(volume);
    } catch (const Standard_Failure&) {
        return {};
    }
}

} // namespace arxsolids
