// Booleans, slices and sections.
#include "internal.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepAlgoAPI_Common.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepAlgoAPI_Splitter.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepGProp.hxx>
#include <BRep_Builder.hxx>
#include <GProp_GProps.hxx>
#include <ShapeUpgrade_UnifySameDomain.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_ListOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <gp_Pln.hxx>

#include <cmath>
#include <memory>

namespace arxsolids {
namespace {

// Runs a boolean; null when the kernel reports an error.
TopoDS_Shape runBoolean(BoolOperType operation, const TopoDS_Shape& a, const TopoDS_Shape& b) {
    std::unique_ptr<BRepAlgoAPI_BooleanOperation> op;
    switch (operation) {
    case BoolOperType::kBoolUnite:
        op = std::make_unique<BRepAlgoAPI_Fuse>(a, b);
        break;
    case BoolOperType::kBoolIntersect:
        op = std::make_unique<BRepAlgoAPI_Common>(a, b);
        break;
    case BoolOperType::kBoolSubtract:
        op = std::make_unique<BRepAlgoAPI_Cut>(a, b);
        break;
    }
    if (!op->IsDone() || op->HasErrors()) return {};
    // Faces split by the operation but lying on one surface are merged again.
    ShapeUpgrade_UnifySameDomain unify(op->Shape(), true, true, false);
    unify.Build();
    return unify.Shape();
}

// A square face of the plane large enough to cut through the whole shape.
TopoDS_Face cuttingFace(const TopoDS_Shape& shape, const gp_Pln& plane) {
    Extents e;
    enclosingExtentsOf(shape, e);
    const gp_Pnt centre((toPnt(e.min).XYZ() + toPnt(e.max).XYZ()) * 0.5);
    const double half = toPnt(e.min).Distance(toPnt(e.max)) + 1.0;
    // The square is centred where the shape's centre projects onto the plane.
    const gp_Vec offset(plane.Location(), centre);
    const double u = offset.Dot(gp_Vec(plane.XAxis().Direction()));
    const double v = offset.Dot(gp_Vec(plane.YAxis().Direction()));
    return BRepBuilderAPI_MakeFace(plane, u - half, u + half, v - half, v + half);
}

std::optional<gp_Pln> toPln(const Plane& plane) {
    const auto n = toDir(plane.normal);
    if (!n || !isFinite(plane.origin)) return std::nullopt;
    return gp_Pln(toPnt(plane.origin), *n);
}

} // namespace

Status Solid::booleanOper(BoolOperType operation, Solid& other) {
    return guarded([&] {
        if (isNull() || other.isNull()) return Status::eNotApplicable;
        const TopoDS_Shape result =
            runBoolean(operation, Access::shape(*this), Access::shape(other));
        if (result.IsNull()) return Status::eGeneralModelingFailure;
        TopoDS_Shape solids;
        if (Status s = finishSolids(result, solids, Check::kVolume); s != Status::eOk) return s;
        Access::shape(*this) = solids;
        Access::shape(other).Nullify();
        return Status::eOk;
    });
}

Status Solid::getSlice(const Plane& plane, bool getNegHalfToo, Solid* negHalf) {
    return guarded([&] {
        if (isNull()) return Status::eNotApplicable;
        if (getNegHalfToo && negHalf == nullptr) return Status::eInvalidInput;
        const auto pln = toPln(plane);
        if (!pln) return Status::eInvalidInput;
        const TopoDS_Shape& shape = Access::shape(*this);
        BRepAlgoAPI_Splitter splitter;
        TopTools_ListOfShape arguments, tools;
        arguments.Append(shape);
        tools.Append(cuttingFace(shape, *pln));
        splitter.SetArguments(arguments);
        splitter.SetTools(tools);
        splitter.Build();
        if (!splitter.IsDone() || splitter.HasErrors()) return Status::eGeneralModelingFailure;
        // Each piece lies wholly on one side: its centre of mass tells which.
        BRep_Builder builder;
        TopoDS_Compound kept, dropped;
        builder.MakeCompound(kept);
        builder.MakeCompound(dropped);
        const gp_Vec n(pln->Axis().Direction());
        for (TopExp_Explorer it(splitter.Shape(), TopAbs_SOLID); it.More(); it.Next()) {
            GProp_GProps props;
            volumeProperties(it.Current(), props);
            const double side = gp_Vec(pln->Location(), props.CentreOfMass()).Dot(n);
            builder.Add(side >= 0.0 ? kept : dropped, it.Current());
        }
        TopoDS_Shape keptSolids, droppedSolids;
        if (Status s = finishSolids(kept, keptSolids, Check::kVolume); s != Status::eOk) return s;
        if (Status s = finishSolids(dropped, droppedSolids, Check::kVolume); s != Status::eOk)
            return s;
        Access::shape(*this) = keptSolids;
        if (getNegHalfToo) Access::shape(*negHalf) = droppedSolids;
        return Status::eOk;
    });
}

Status Solid::getSection(const Plane& plane, Region& section) const {
    return guarded([&] {
        if (isNull()) return Status::eNotApplicable;
        const auto pln = toPln(plane);
        if (!pln) return Status::eInvalidInput;
        const TopoDS_Face cutter = cuttingFace(Access::shape(*this), *pln);
        BRepAlgoAPI_Common common(cutter, Access::shape(*this));
        if (!common.IsDone() || common.HasErrors()) return Status::eGeneralModelingFailure;
        ShapeUpgrade_UnifySameDomain unify(common.Shape(), true, true, false);
        unify.Build();
        std::vector<TopoDS_Face> faces;
        for (const TopoDS_Face& face : facesOf(unify.Shape()))
            faces.push_back(face);
        Access::shape(section) = compoundOf(faces);
        return Status::eOk;
    });
}

Status Region::booleanOper(BoolOperType operation, Region& other) {
    return guarded([&] {
        if (isNull() || other.isNull()) return Status::eNotApplicable;
        const auto n1 = regionNormal(Access::shape(*this));
        const auto n2 = regionNormal(Access::shape(other));
        if (!n1 || !n2 || !n1->IsParallel(*n2, 1e-9)) return Status::eNonCoplanarGeometry;
        // Same plane: a point of the other region lies in this one's plane.
        const TopoDS_Face f1 = facesOf(Access::shape(*this)).front();
        const TopoDS_Face f2 = facesOf(Access::shape(other)).front();
        const gp_Pln p1 = BRepAdaptor_Surface(f1, false).Plane();
        const gp_Pnt q = BRepAdaptor_Surface(f2, false).Plane().Location();
        const double size =
            std::max(roughSizeOf(Access::shape(*this)), roughSizeOf(Access::shape(other)));
        if (p1.Distance(q) > 1e-9 * std::max(1.0, size)) return Status::eNonCoplanarGeometry;
        const TopoDS_Shape result =
            runBoolean(operation, Access::shape(*this), Access::shape(other));
        if (result.IsNull()) return Status::eGeneralModelingFailure;
        // Keep this region's normal on every face of the result.
        std::vector<TopoDS_Face> faces;
        for (TopoDS_Face face : facesOf(result)) {
            if (regionNormal(compoundOf({face}))->Dot(*n1) < 0) face.Reverse();
            faces.push_back(face);
        }
        Access::shape(*this) = compoundOf(faces);
        Access::shape(other).Nullify();
        return Status::eOk;
    });
}

} // namespace arxsolids
