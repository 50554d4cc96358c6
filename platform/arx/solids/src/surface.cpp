// A curved face handed out by explode.
#include "internal.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepGProp.hxx>
#include <BRepTools_WireExplorer.hxx>
#include <BRep_Tool.hxx>
#include <GProp_GProps.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Iterator.hxx>

#include <algorithm>

namespace arxsolids {

Surface::Surface() = default;
Surface::~Surface() = default;
Surface::Surface(const Surface& other)
    : impl_(other.impl_ ? std::make_unique<Impl>(*other.impl_) : nullptr) {}
Surface& Surface::operator=(const Surface& other) {
    if (this != &other) impl_ = other.impl_ ? std::make_unique<Impl>(*other.impl_) : nullptr;
    return *this;
}
Surface::Surface(Surface&&) noexcept = default;
Surface& Surface::operator=(Surface&&) noexcept = default;

bool Surface::isNull() const {
    return Access::shape(*this).IsNull();
}

SurfaceDesc Surface::description() const {
    SurfaceDesc desc;
    guarded([&] {
        if (!isNull()) desc = describeSurface(Access::face(*this));
        return Status::eOk;
    });
    return desc;
}

Status Surface::getArea(double& area) const {
    return shapeArea(Access::shape(*this), Access::measures(*this), area);
}

Status Surface::getGeomExtents(Extents& extents) const {
    return shapeExtents(Access::shape(*this), Access::measures(*this), true, extents);
}
Status Surface::getBoundingBox(Extents& extents) const {
    return shapeExtents(Access::shape(*this), Access::measures(*this), false, extents);
}

Status Surface::explode(std::vector<Curve>& curves) const {
    return guarded([&] {
        if (isNull()) return Status::eNotApplicable;
        const TopoDS_Face face = Access::face(*this);
        const SurfaceDesc desc = describeSurface(face);
        // Edges with their position along the axis, for the order of a side's two circles.
        std::vector<std::pair<double, Curve>> found;
        for (TopoDS_Iterator wires(face); wires.More(); wires.Next())
            for (const TopoDS_Shape& edge : runningEdges(wires.Value(), face)) {
                if (!isBoundaryEdge(edge, face)) continue;
                BRepAdaptor_Curve curve(TopoDS::Edge(edge));
                const gp_Pnt mid =
                    curve.Value(0.5 * (curve.FirstParameter() + curve.LastParameter()));
                const double height = gp_Vec(toPnt(desc.origin), mid).Dot(toVec(desc.axis));
                // The neighbouring face's direction: a rim's normal points out of the solid's end.
                found.emplace_back(height, describeEdge(edge.Reversed(), true));
            }
        if (desc.kind == SurfaceKind::kCylinder || desc.kind == SurfaceKind::kCone)
            std::stable_sort(found.begin(), found.end(),
                             [](const auto& a, const auto& b) { return a.first < b.first; });
        curves.clear();
        for (auto& [height, curve] : found)
            curves.push_back(std::move(curve));
        return Status::eOk;
    });
}

Status Surface::transformBy(const Matrix& matrix) {
    return transformShape(Access::shape(*this), matrix);
}

} // namespace arxsolids
