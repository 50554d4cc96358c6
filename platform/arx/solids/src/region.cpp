// The region: creation from curves, measures, explode and transforms.
#include "internal.h"

#include <BRepGProp.hxx>
#include <BRepTools_WireExplorer.hxx>
#include <GProp_GProps.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Iterator.hxx>

namespace arxsolids {

Region::Region() = default;
Region::~Region() = default;
Region::Region(const Region& other)
    : impl_(other.impl_ ? std::make_unique<Impl>(*other.impl_) : nullptr) {}
Region& Region::operator=(const Region& other) {
    if (this != &other) impl_ = other.impl_ ? std::make_unique<Impl>(*other.impl_) : nullptr;
    return *this;
}
Region::Region(Region&&) noexcept = default;
Region& Region::operator=(Region&&) noexcept = default;

bool Region::isNull() const {
    return Access::shape(*this).IsNull();
}

Status Region::createFromCurves(const std::vector<Curve>& curves, std::vector<Region>& regions) {
    regions.clear();
    return guarded([&] {
        std::vector<TopoDS_Face> faces;
        if (Status s = buildLoopFaces(curves, faces); s != Status::eOk) return s;
        for (const TopoDS_Face& face : faces) {
            Region region;
            Access::shape(region) = compoundOf({face});
            regions.push_back(std::move(region));
        }
        return Status::eOk;
    });
}

Status Region::getArea(double& area) const {
    return shapeArea(Access::shape(*this), Access::measures(*this), area);
}

Status Region::getCentroid(Vec3& centroid) const {
    return guarded([&] {
        if (isNull()) return Status::eNotApplicable;
        GProp_GProps props;
        BRepGProp::SurfaceProperties(Access::shape(*this), props);
        centroid = fromPnt(props.CentreOfMass());
        return Status::eOk;
    });
}

Status Region::getNormal(Vec3& normal) const {
    return guarded([&] {
        const auto n = regionNormal(Access::shape(*this));
        if (!n) return Status::eNotApplicable;
        normal = fromDir(*n);
        return Status::eOk;
    });
}

Status Region::getGeomExtents(Extents& extents) const {
    return shapeExtents(Access::shape(*this), Access::measures(*this), true, extents);
}
Status Region::getBoundingBox(Extents& extents) const {
    return shapeExtents(Access::shape(*this), Access::measures(*this), false, extents);
}

Status Region::explode(std::vector<Curve>& curves) const {
    return guarded([&] {
        if (isNull()) return Status::eNotApplicable;
        std::vector<Curve> out;
        for (const TopoDS_Face& face : facesOf(Access::shape(*this)))
            for (TopoDS_Iterator wires(face); wires.More(); wires.Next()) {
                std::vector<Curve> loop;
                for (const TopoDS_Shape& edge : runningEdges(wires.Value(), face))
                    loop.push_back(describeEdge(edge, true));
                mergeArcs(loop);
                out.insert(out.end(), loop.begin(), loop.end());
            }
        curves = std::move(out);
        return Status::eOk;
    });
}

Status Region::transformBy(const Matrix& matrix) {
    return transformShape(Access::shape(*this), matrix);
}

Brep Region::brep() const {
    return shapeBrep(Access::shape(*this));
}

TopologyCounts Region::topology() const {
    return shapeTopology(Access::shape(*this));
}

} // namespace arxsolids
