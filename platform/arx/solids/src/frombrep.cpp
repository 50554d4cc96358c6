// Bodies rebuilt from a boundary description: the way back from a stored drawing.
#include "frombrep.h"

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_Sewing.hxx>
#include <BRepLib.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <ElCLib.hxx>
#include <ElSLib.hxx>
#include <GeomLib_Tool.hxx>
#include <Geom_BSplineSurface.hxx>
#include <Geom_ConicalSurface.hxx>
#include <Geom_CylindricalSurface.hxx>
#include <Geom_Plane.hxx>
#include <Geom_SphericalSurface.hxx>
#include <Geom_ToroidalSurface.hxx>
#include <Precision.hxx>
#include <ShapeFix_Face.hxx>
#include <ShapeFix_Shape.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TColStd_Array2OfReal.hxx>
#include <TColgp_Array2OfPnt.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Shell.hxx>
#include <TopoDS_Solid.hxx>
#include <TopoDS_Vertex.hxx>
#include <gp_Circ.hxx>

#include <algorithm>
#include <cmath>

namespace arxsolids {
namespace {

std::optional<gp_Ax3> frameOf(const SurfaceDesc& d) {
    const auto n = toDir(d.axis);
    if (!n || !isFinite(d.origin)) return std::nullopt;
    gp_XYZ ref = toVec(d.refAxis).XYZ();
    ref -= n->XYZ() * ref.Dot(n->XYZ());
    if (ref.Modulus() < 1e-9) return gp_Ax3(toPnt(d.origin), *n);
    return gp_Ax3(toPnt(d.origin), *n, gp_Dir(ref));
}

// Distinct knots and their multiplicities from a flat knot vector of `poles + degree + 1`
// non-decreasing values; false when it is not one.
bool knotsOf(const std::vector<double>& flat, int poles, int degree,
             std::vector<std::pair<double, int>>& out) {
    if (degree < 1 || degree > Geom_BSplineSurface::MaxDegree() || poles <= degree ||
        flat.size() != static_cast<std::size_t>(poles + degree + 1))
        return false;
    for (std::size_t i = 0; i < flat.size(); ++i) {
        if (!std::isfinite(flat[i]) || (i > 0 && flat[i] < flat[i - 1])) return false;
        if (!out.empty() && flat[i] - out.back().first <= 1e-12 * std::max(1.0, std::abs(flat[i])))
            ++out.back().second;
        else
            out.push_back({flat[i], 1});
    }
    return out.size() >= 2;
}

Handle(Geom_Surface) splineSurfaceOf(const SplineSurfaceDesc& d) {
    std::vector<std::pair<double, int>> uk, vk;
    if (!knotsOf(d.uKnots, d.uCount, d.uDegree, uk) ||
        !knotsOf(d.vKnots, d.vCount, d.vDegree, vk) ||
        d.poles.size() != static_cast<std::size_t>(d.uCount) * d.vCount ||
        (!d.weights.empty() && d.weights.size() != d.poles.size()))
        return {};
    TColgp_Array2OfPnt poles(1, d.uCount, 1, d.vCount);
    TColStd_Array2OfReal weights(1, d.uCount, 1, d.vCount);
    for (int v = 0; v < d.vCount; ++v)
        for (int u = 0; u < d.uCount; ++u) {
            const std::size_t i = static_cast<std::size_t>(v) * d.uCount + u;
            if (!isFinite(d.poles[i])) return {};
            poles(u + 1, v + 1) = toPnt(d.poles[i]);
            const double w = d.weights.empty() ? 1.0 : d.weights[i];
            if (!(w > 0.0) || !std::isfinite(w)) return {};
            weights(u + 1, v + 1) = w;
        }
    const auto arrays = [](const std::vector<std::pair<double, int>>& k,
                           TColStd_Array1OfReal& knots, TColStd_Array1OfInteger& mults) {
        for (std::size_t i = 0; i < k.size(); ++i) {
            knots(static_cast<int>(i) + 1) = k[i].first;
            mults(static_cast<int>(i) + 1) = k[i].second;
        }
    };
    TColStd_Array1OfReal uKnots(1, static_cast<int>(uk.size())),
        vKnots(1, static_cast<int>(vk.size()));
    TColStd_Array1OfInteger uMults(1, static_cast<int>(uk.size())),
        vMults(1, static_cast<int>(vk.size()));
    arrays(uk, uKnots, uMults);
    arrays(vk, vKnots, vMults);
    return new Geom_BSplineSurface(poles, weights, uKnots, vKnots, uMults, vMults, d.uDegree,
                                   d.vDegree);
}

// The circle an edge index names, run as the face (on its surface's own side) runs it.
std::optional<gp_Circ> loopCircle(const BrepFace& f, const BrepLoop& loop, const Brep& brep) {
    if (loop.coedges.size() != 1) return std::nullopt;
    const BrepCoedge& c = loop.coedges.front();
    if (c.edge < 0 || c.edge >= static_cast<int>(brep.edges.size())) return std::nullopt;
    const auto* circle = std::get_if<CircleCurve>(&brep.edges[c.edge].curve);
    const auto n = circle ? toDir(circle->normal) : std::nullopt;
    if (!n) return std::nullopt;
    const bool against = c.reversed != f.reversed;
    return gp_Circ(gp_Ax2(toPnt(circle->center), against ? n->Reversed() : *n), circle->radius);
}

// A face of revolution between two whole circles (a cylinder's or cone's side, the side of an
// elbow on a torus) is the band of the surface between them, seams included; the rims are
// joined to their neighbours by sewing.
std::optional<TopoDS_Face> bandFace(const BrepFace& f, const Handle(Geom_Surface) & surface,
                                    const Brep& brep) {
    if (f.loops.size() != 2) return std::nullopt;
    const auto a = loopCircle(f, f.loops[0], brep), b = loopCircle(f, f.loops[1], brep);
    if (!a || !b) return std::nullopt;
    // The seam goes through the first rim's vertex, so that the rims keep their one vertex.
    const auto vertexOf = [&](const BrepLoop& loop) {
        const int v = brep.edges[loop.coedges.front().edge].startVertex;
        return v >= 0 && v < static_cast<int>(brep.vertices.size())
                   ? std::optional<gp_Pnt>(toPnt(brep.vertices[v].point))
                   : std::nullopt;
    };
    const auto va0 = vertexOf(f.loops[0]), vb0 = vertexOf(f.loops[1]);
    if (!va0 || !vb0) return std::nullopt;
    const gp_Pnt pa = *va0, pb = *vb0;
    double ua, va, ub, vb;
    if (auto cyl = Handle(Geom_CylindricalSurface)::DownCast(surface)) {
        ElSLib::Parameters(cyl->Cylinder(), pa, ua, va);
        ElSLib::Parameters(cyl->Cylinder(), pb, ub, vb);
    } else if (auto cone = Handle(Geom_ConicalSurface)::DownCast(surface)) {
        ElSLib::Parameters(cone->Cone(), pa, ua, va);
        ElSLib::Parameters(cone->Cone(), pb, ub, vb);
    } else if (auto torus = Handle(Geom_ToroidalSurface)::DownCast(surface)) {
        ElSLib::Parameters(torus->Torus(), pa, ua, va);
        ElSLib::Parameters(torus->Torus(), pb, ub, vb);
        // Rims at constant u. On the surface's own side the band [u0, u1] runs its rim at u1
        // the way v grows, that is about minus the u tangent.
        const gp_Ax3 pos = torus->Position();
        auto tangent = [&](double u) {
            return gp_Vec(pos.XDirection()) * -std::sin(u) + gp_Vec(pos.YDirection()) * std::cos(u);
        };
        const bool aIsEnd = gp_Vec(a->Axis().Direction()).Dot(tangent(ua)) < 0;
        double u0 = aIsEnd ? ub : ua, u1 = aIsEnd ? ua : ub;
        while (u1 <= u0)
            u1 += 2 * M_PI;
        return BRepBuilderAPI_MakeFace(surface, u0, u1, va, va + 2 * M_PI, Precision::Confusion());
    } else {
        return std::nullopt;
    }
    // Rims at constant v.
    return BRepBuilderAPI_MakeFace(surface, ua, ua + 2 * M_PI, std::min(va, vb), std::max(va, vb),
                                   Precision::Confusion());
}

// A free-form face closed on itself (the side of a tube swept along a spline, a revolved cap)
// with rims of one closed edge each: its surface was described cut to the face's bounds, so the
// face is the whole surface, seams and collapsed edges included; sewing joins the rims. A face
// that is not (an oblique cut) leaves the shell open and the body is refused.
bool wholeSurfaceFace(const BrepFace& f, const Handle(Geom_Surface) & surface, const Brep& brep) {
    if (f.surface.kind != SurfaceKind::kOther || f.loops.empty()) return false;
    if (!surface->IsUClosed() && !surface->IsVClosed()) return false;
    for (const BrepLoop& loop : f.loops) {
        if (loop.coedges.size() != 1) return false;
        const int e = loop.coedges.front().edge;
        if (e < 0 || e >= static_cast<int>(brep.edges.size()) ||
            brep.edges[e].startVertex != brep.edges[e].endVertex)
            return false;
    }
    return true;
}

// The faces of a boundary, sharing their edges and vertices.
Status buildFaces(const Brep& brep, std::vector<TopoDS_Face>& faces) {
    BRep_Builder builder;
    std::vector<TopoDS_Vertex> vertices;
    std::vector<TopoDS_Edge> edges;
    if (Status s = buildEdges(brep, vertices, edges); s != Status::eOk) return s;
    const int nEdges = static_cast<int>(edges.size());
    for (const BrepFace& f : brep.faces) {
        if (f.surface.kind == SurfaceKind::kOther && f.surface.spline.poles.empty())
            return Status::eNotApplicable;
        const Handle(Geom_Surface) surface = surfaceOf(f.surface);
        if (surface.IsNull()) return Status::eInvalidInput;
        TopoDS_Face face;
        if (auto band = bandFace(f, surface, brep)) {
            face = *band;
        } else if (f.loops.empty()) {
            // A closed surface with no boundary: a sphere, a whole torus.
            face = BRepBuilderAPI_MakeFace(surface, Precision::Confusion());
        } else if (wholeSurfaceFace(f, surface, brep)) {
            // Boundaries that collapse to a point (a cap's crown, even one a hair past the axis
            // in single precision) become degenerated edges.
            double size = 1.0;
            for (const Vec3& p : f.surface.spline.poles)
                size = std::max({size, std::abs(p.x), std::abs(p.y), std::abs(p.z)});
            ShapeFix_Face fix(BRepBuilderAPI_MakeFace(surface, 1e-6 * size).Face());
            fix.SetPrecision(Precision::Confusion());
            fix.Perform();
            face = fix.Face();
        } else {
            builder.MakeFace(face, surface, Precision::Confusion());
            for (const BrepLoop& loop : f.loops) {
                TopoDS_Wire wire;
                builder.MakeWire(wire);
                for (const BrepCoedge& c : loop.coedges) {
                    if (c.edge < 0 || c.edge >= nEdges) return Status::eInvalidInput;
                    // Senses are given about the outward side; the face is built on the
                    // surface's own side and turned afterwards.
                    const bool against = c.reversed != f.reversed;
                    builder.Add(wire, against ? edges[c.edge].Reversed() : edges[c.edge]);
                }
                builder.Add(face, wire);
            }
            // Pcurves, and the seams that periodic surfaces need between their loops.
            ShapeFix_Face fix(face);
            fix.SetPrecision(Precision::Confusion());
            fix.FixPeriodicDegeneratedMode() = 0;
            fix.Perform();
            face = fix.Face();
        }
        if (f.reversed) face.Reverse();
        faces.push_back(face);
    }
    return Status::eOk;
}

} // namespace

Handle(Geom_Surface) surfaceOf(const SurfaceDesc& d) {
    if (d.kind == SurfaceKind::kOther) return splineSurfaceOf(d.spline);
    const auto frame = frameOf(d);
    if (!frame) return {};
    switch (d.kind) {
    case SurfaceKind::kPlane:
        return new Geom_Plane(*frame);
    case SurfaceKind::kCylinder:
        return new Geom_CylindricalSurface(*frame, d.radius);
    case SurfaceKind::kCone:
        return new Geom_ConicalSurface(*frame, d.halfAngle, d.radius);
    case SurfaceKind::kSphere:
        return new Geom_SphericalSurface(*frame, d.radius);
    case SurfaceKind::kTorus:
        return new Geom_ToroidalSurface(*frame, d.radius, d.minorRadius);
    case SurfaceKind::kOther:
        return {};
    }
    return {};
}

Status buildEdges(const Brep& brep, std::vector<TopoDS_Vertex>& vertices,
                  std::vector<TopoDS_Edge>& edges) {
    BRep_Builder builder;
    for (const BrepVertex& v : brep.vertices) {
        if (!isFinite(v.point)) return Status::eInvalidInput;
        TopoDS_Vertex vertex;
        builder.MakeVertex(vertex, toPnt(v.point), Precision::Confusion());
        vertices.push_back(vertex);
    }
    const int nVertices = static_cast<int>(vertices.size());
    for (const BrepEdge& e : brep.edges) {
        std::vector<Segment> segments;
        if (Status s = toSegments(e.curve, segments); s != Status::eOk) return s;
        if (segments.size() != 1 || e.startVertex < 0 || e.startVertex >= nVertices ||
            e.endVertex < 0 || e.endVertex >= nVertices)
            return Status::eInvalidInput;
        const Segment& seg = segments.front();
        double first = seg.first, last = seg.last;
        if (seg.closed) {
            // A closed edge starts at its vertex, wherever the description puts angle zero.
            const gp_Pnt at = BRep_Tool::Pnt(vertices[e.startVertex]);
            double u = 0.0;
            if (!GeomLib_Tool::Parameter(
                    seg.curve, at,
                    1e-6 * std::max(1.0, roughSizeOf(vertices[e.startVertex])) + 1e-7, u))
                return Status::eInvalidInput;
            first = u;
            last = u + (seg.last - seg.first);
        }
        BRepBuilderAPI_MakeEdge maker(seg.curve, vertices[e.startVertex], vertices[e.endVertex],
                                      first, last);
        if (!maker.IsDone()) return Status::eInvalidInput;
        edges.push_back(maker.Edge());
    }
    return Status::eOk;
}

Status Solid::createFromBrep(const Brep& brep) {
    return guarded([&] {
        // What the host writes itself (and most of what others write) needs none of the work
        // below: sewing, the validity check and the healing cost many times the making.
        double volume = 0.0;
        if (TopoDS_Shape direct = directSolidOf(brep, volume); !direct.IsNull()) {
            // Its volume, from the faces' closed forms, turns it outward.
            if (volume < 0.0) direct.Reverse();
            Access::shape(*this) = direct;
            return Status::eOk;
        }
        std::vector<TopoDS_Face> faces;
        if (Status s = buildFaces(brep, faces); s != Status::eOk) return s;
        if (faces.empty()) return Status::eInvalidInput;
        // Faces share their edges already, but for bands: sewing joins those.
        BRepBuilderAPI_Sewing sewing(1e-6 * std::max(1.0, roughSizeOf(compoundOf(faces))));
        for (const TopoDS_Face& face : faces)
            sewing.Add(face);
        sewing.Perform();
        const TopoDS_Shape sewn = sewing.SewedShape();
        BRep_Builder builder;
        TopoDS_Shell shell;
        if (!sewn.IsNull() && sewn.ShapeType() == TopAbs_SHELL) {
            shell = TopoDS::Shell(sewn);
        } else if (!sewn.IsNull() && sewn.ShapeType() == TopAbs_FACE) {
            builder.MakeShell(shell); // a sphere or a whole torus: one face, closed on itself
            builder.Add(shell, sewn);
        } else {
            return Status::eGeneralModelingFailure;
        }
        shell.Closed(BRep_Tool::IsClosed(shell));
        if (!shell.Closed()) return Status::eGeneralModelingFailure;
        TopoDS_Solid solid;
        builder.MakeSolid(solid);
        builder.Add(solid, shell);
        // A body that is valid as sewn (what the host itself writes) is taken as it is; only
        // one that is not goes through the healing, which costs more than the rest together.
        TopoDS_Shape solids;
        if (finishSolids(solid, solids, Check::kValidity) != Status::eOk || solids.IsNull()) {
            ShapeFix_Shape fix(solid);
            fix.Perform();
            if (Status s = finishSolids(fix.Shape(), solids, Check::kValidity); s != Status::eOk)
                return s;
        }
        if (solids.IsNull()) return Status::eGeneralModelingFailure;
        Access::shape(*this) = solids;
        return Status::eOk;
    });
}

Status Region::createFromBrep(const Brep& brep, Region& region) {
    return guarded([&] {
        std::vector<TopoDS_Face> faces;
        if (Status s = buildFaces(brep, faces); s != Status::eOk) return s;
        if (faces.empty()) return Status::eInvalidInput;
        for (const TopoDS_Face& face : faces)
            if (surfaceKind(face) != SurfaceKind::kPlane) return Status::eNonPlanarEntity;
        Access::shape(region) = compoundOf(faces);
        return Status::eOk;
    });
}

} // namespace arxsolids
