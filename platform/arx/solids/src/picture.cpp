// Triangles and visible edges of bodies, for pictures of a drawing.
#include "internal.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepBuilderAPI_Copy.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <GCPnts_TangentialDeflection.hxx>
#include <HLRAlgo_Projector.hxx>
#include <HLRBRep_Algo.hxx>
#include <HLRBRep_HLRToShape.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Edge.hxx>
#include <gp.hxx>
#include <gp_Ax2.hxx>

#include <algorithm>

namespace arxsolids {

std::vector<Triangle> meshTriangles(const TopoDS_Shape& meshed) {
    std::vector<Triangle> out;
    for (const TopoDS_Face& face : facesOf(meshed)) {
        TopLoc_Location location;
        const Handle(Poly_Triangulation) mesh = BRep_Tool::Triangulation(face, location);
        if (mesh.IsNull()) continue;
        const gp_Trsf trsf = location.Transformation();
        const bool reversed = face.Orientation() == TopAbs_REVERSED;
        for (int t = 1; t <= mesh->NbTriangles(); ++t) {
            int a, b, c;
            mesh->Triangle(t).Get(a, b, c);
            if (reversed) std::swap(b, c);
            const gp_XYZ p[3] = {mesh->Node(a).Transformed(trsf).XYZ(),
                                 mesh->Node(b).Transformed(trsf).XYZ(),
                                 mesh->Node(c).Transformed(trsf).XYZ()};
            const gp_XYZ n = (p[1] - p[0]).Crossed(p[2] - p[0]);
            if (n.Modulus() <= 0.0) continue; // a sliver adds nothing to the surface
            out.push_back(
                {{fromXYZ(p[0]), fromXYZ(p[1]), fromXYZ(p[2])}, fromXYZ(n / n.Modulus())});
        }
    }
    return out;
}

namespace {

// Chord error of the facets: a small part of the body's size, so that a picture of the body
// alone shows no corners on round faces.
constexpr double kRelativeDeflection = 2e-3;
constexpr double kAngularDeflection = 0.3; // radians

Status triangulateShape(const TopoDS_Shape& shape, std::vector<Triangle>& triangles) {
    triangles.clear();
    return guarded([&] {
        if (shape.IsNull()) return Status::eNotApplicable;
        // The facets go on a copy: the body itself stays free of them.
        const TopoDS_Shape copy = BRepBuilderAPI_Copy(shape, true, false).Shape();
        BRepMesh_IncrementalMesh mesher(copy, kRelativeDeflection * diagonalOf(shape), false,
                                        kAngularDeflection, false);
        if (!mesher.IsDone()) return Status::eGeneralModelingFailure;
        triangles = meshTriangles(copy);
        return Status::eOk;
    });
}

// The points of an edge of the projected drawing, in picture coordinates.
std::vector<Vec3> polylineOf(const TopoDS_Edge& edge, double deflection) {
    std::vector<Vec3> points;
    BRepAdaptor_Curve curve(edge);
    GCPnts_TangentialDeflection sampler(curve, kAngularDeflection, deflection);
    for (int i = 1; i <= sampler.NbPoints(); ++i) {
        const gp_Pnt p = sampler.Value(i);
        points.push_back({p.X(), p.Y(), 0.0});
    }
    return points;
}

} // namespace

Status triangulate(const Solid& solid, std::vector<Triangle>& triangles) {
    return triangulateShape(Access::shape(solid), triangles);
}

Status triangulate(const Region& region, std::vector<Triangle>& triangles) {
    return triangulateShape(Access::shape(region), triangles);
}

Status visibleEdges(const std::vector<const Solid*>& solids,
                    const std::vector<const Region*>& regions, const ViewDirection& view,
                    std::vector<std::vector<Vec3>>& polylines) {
    polylines.clear();
    return guarded([&] {
        TopoDS_Compound all;
        BRep_Builder builder;
        builder.MakeCompound(all);
        bool any = false;
        auto add = [&](const TopoDS_Shape& shape) {
            if (shape.IsNull()) return;
            builder.Add(all, shape);
            any = true;
        };
        for (const Solid* solid : solids)
            add(Access::shape(*solid));
        for (const Region* region : regions)
            add(Access::shape(*region));
        if (!any) return Status::eNotApplicable;
        const gp_Vec toward = toVec(view.toward);
        const gp_Vec up = toVec(view.up);
        const gp_Vec right = up.Crossed(toward);
        if (toward.Magnitude() <= 0.0 || right.Magnitude() <= 0.0) return Status::eInvalidInput;
        // The projector's frame: its main direction toward the eye, its X the picture's right.
        const HLRAlgo_Projector projector(gp_Ax2(gp::Origin(), gp_Dir(toward), gp_Dir(right)));
        Handle(HLRBRep_Algo) hlr = new HLRBRep_Algo();
        hlr->Add(all);
        hlr->Projector(projector);
        hlr->Update();
        hlr->Hide();
        HLRBRep_HLRToShape shapes(hlr);
        const double deflection = kRelativeDeflection * diagonalOf(all);
        for (const TopoDS_Shape& part :
             {shapes.VCompound(), shapes.OutLineVCompound(), shapes.Rg1LineVCompound()}) {
            if (part.IsNull()) continue;
            for (TopExp_Explorer e(part, TopAbs_EDGE); e.More(); e.Next()) {
                std::vector<Vec3> line = polylineOf(TopoDS::Edge(e.Current()), deflection);
                if (line.size() >= 2) polylines.push_back(std::move(line));
            }
        }
        return Status::eOk;
    });
}

} // namespace arxsolids
