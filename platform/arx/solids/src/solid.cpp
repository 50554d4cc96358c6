// The solid: ownership, transforms, measures and explode.
#include "internal.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepCheck_Analyzer.hxx>
#include <BRep_Builder.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Solid.hxx>

#include <cmath>
#include <utility>

namespace arxsolids {

TopoDS_Face Access::face(const Surface& surface) {
    return TopoDS::Face(shape(surface));
}
bool& Access::history(Solid& solid) {
    if (!solid.impl_) solid.impl_ = std::make_unique<Solid::Impl>();
    return solid.impl_->history;
}
bool Access::history(const Solid& solid) {
    return solid.impl_ && solid.impl_->history;
}
Primitive& Access::primitive(Solid& solid) {
    if (!solid.impl_) solid.impl_ = std::make_unique<Solid::Impl>();
    return solid.impl_->primitive;
}
Primitive Access::primitive(const Solid& solid) {
    return solid.impl_ ? solid.impl_->primitive : Primitive::kNone;
}
std::array<double, 3>& Access::sizes(Solid& solid) {
    if (!solid.impl_) solid.impl_ = std::make_unique<Solid::Impl>();
    return solid.impl_->sizes;
}
std::array<double, 3> Access::sizes(const Solid& solid) {
    return solid.impl_ ? solid.impl_->sizes : std::array<double, 3>{};
}

std::vector<TopoDS_Face> facesOf(const TopoDS_Shape& shape) {
    std::vector<TopoDS_Face> faces;
    if (shape.IsNull()) return faces;
    TopTools_IndexedMapOfShape map;
    TopExp::MapShapes(shape, TopAbs_FACE, map);
    for (int i = 1; i <= map.Extent(); ++i)
        faces.push_back(TopoDS::Face(map(i)));
    return faces;
}

TopoDS_Shape compoundOf(const std::vector<TopoDS_Face>& faces) {
    if (faces.empty()) return {};
    BRep_Builder builder;
    TopoDS_Compound compound;
    builder.MakeCompound(compound);
    for (const TopoDS_Face& f : faces)
        builder.Add(compound, f);
    return compound;
}

std::optional<gp_Dir> regionNormal(const TopoDS_Shape& region) {
    for (const TopoDS_Face& face : facesOf(region)) {
        BRepAdaptor_Surface surface(face, false);
        if (surface.GetType() != GeomAbs_Plane) return std::nullopt;
        const gp_Dir n = surface.Plane().Axis().Direction();
        return face.Orientation() == TopAbs_REVERSED ? n.Reversed() : n;
    }
    return std::nullopt;
}

Status finishSolids(const TopoDS_Shape& result, TopoDS_Shape& solids, Check check) {
    std::vector<TopoDS_Solid> lumps;
    for (TopExp_Explorer it(result, TopAbs_SOLID); it.More(); it.Next()) {
        TopoDS_Solid lump = TopoDS::Solid(it.Current());
        if (check == Check::kValidity && !BRepCheck_Analyzer(lump).IsValid())
            return Status::eGeneralModelingFailure;
        if (check == Check::kTrusted) {
            lumps.push_back(lump);
            continue;
        }
        // A lump turned inside out has a negative volume; one without volume is no solid.
        const double size = roughSizeOf(lump);
        const double volume = volumeOf(lump);
        if (!(std::abs(volume) > 1e-12 * size * size * size))
            return Status::eGeneralModelingFailure;
        if (volume < 0.0) lump.Reverse();
        lumps.push_back(lump);
    }
    if (lumps.empty()) {
        solids.Nullify();
    } else if (lumps.size() == 1) {
        solids = lumps.front();
    } else {
        BRep_Builder builder;
        TopoDS_Compound compound;
        builder.MakeCompound(compound);
        for (const TopoDS_Solid& lump : lumps)
            builder.Add(compound, lump);
        solids = compound;
    }
    return Status::eOk;
}

// ---- Solid ----------------------------------------------------------------------------------

Solid::Solid() = default;
Solid::~Solid() = default;
Solid::Solid(const Solid& other)
    : impl_(other.impl_ ? std::make_unique<Impl>(*other.impl_) : nullptr) {}
Solid& Solid::operator=(const Solid& other) {
    if (this != &other) impl_ = other.impl_ ? std::make_unique<Impl>(*other.impl_) : nullptr;
    return *this;
}
Solid::Solid(Solid&&) noexcept = default;
Solid& Solid::operator=(Solid&&) noexcept = default;

bool Solid::isNull() const {
    return Access::shape(*this).IsNull();
}

void Solid::setRecordHistory(bool record) {
    Access::history(*this) = record;
}
bool Solid::recordHistory() const {
    return Access::history(*this);
}

Status Solid::transformBy(const Matrix& matrix) {
    // A rigid move keeps the shape's own topology (it only locates it): still the primitive.
    const Primitive kind = Access::primitive(std::as_const(*this));
    TopoDS_Shape& shape = Access::shape(*this);
    const Handle(TopoDS_TShape) before = shape.TShape();
    const Status status = transformShape(shape, matrix);
    if (status == Status::eOk && !shape.IsNull() && shape.TShape() == before)
        Access::primitive(*this) = kind;
    return status;
}

namespace {

// A primitive moved only has its boxes in closed form from its sizes and its place: its shape is
// not reached (after a large import that memory has long left the caches). Both boxes are the
// tightest one then.
bool primitiveBoxes(const Solid& solid) {
    Measures* cache = Access::measures(solid);
    const Primitive kind = Access::primitive(solid);
    if (!cache || kind == Primitive::kNone) return false;
    if (cache->exact && cache->enclosing) return true;
    Extents e;
    const gp_Trsf& place = Access::shape(solid).Location().Transformation();
    if (!primitiveExtents(kind, Access::sizes(solid), place, e)) return false;
    cache->exact = cache->enclosing = e;
    return true;
}

} // namespace

Status Solid::getGeomExtents(Extents& extents) const {
    primitiveBoxes(*this);
    return shapeExtents(Access::shape(*this), Access::measures(*this), true, extents);
}
Status Solid::getBoundingBox(Extents& extents) const {
    primitiveBoxes(*this);
    return shapeExtents(Access::shape(*this), Access::measures(*this), false, extents);
}

Status Solid::getArea(double& area) const {
    return shapeArea(Access::shape(*this), Access::measures(*this), area);
}

Status Solid::explode(std::vector<Piece>& pieces) const {
    return guarded([&] {
        if (isNull()) return Status::eNotApplicable;
        std::vector<Piece> out;
        for (const TopoDS_Face& face : facesOf(Access::shape(*this))) {
            if (surfaceKind(face) == SurfaceKind::kPlane) {
                Region region;
                Access::shape(region) = compoundOf({face});
                out.emplace_back(std::move(region));
            } else {
                Surface surface;
                Access::shape(surface) = face;
                out.emplace_back(std::move(surface));
            }
        }
        pieces = std::move(out);
        return Status::eOk;
    });
}

TopologyCounts Solid::topology() const {
    return shapeTopology(Access::shape(*this));
}

Brep Solid::brep() const {
    return shapeBrep(Access::shape(*this), Access::primitive(*this));
}

} // namespace arxsolids
