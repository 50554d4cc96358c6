// Operations that solids, regions and surfaces share, each behind the exception guard.
#include "internal.h"

namespace arxsolids {

Status transformShape(TopoDS_Shape& shape, const Matrix& matrix) {
    return guarded([&] {
        gp_Trsf trsf;
        if (Status s = toTrsf(matrix, trsf); s != Status::eOk) return s;
        if (!shape.IsNull()) shape = transformed(shape, trsf);
        return Status::eOk;
    });
}

Status shapeExtents(const TopoDS_Shape& shape, Measures* cache, bool exact, Extents& extents) {
    return guarded([&] {
        std::optional<Extents>* kept = nullptr;
        if (cache) kept = exact ? &cache->exact : &cache->enclosing;
        if (kept && *kept) {
            extents = **kept;
            return Status::eOk;
        }
        Extents e;
        if (!(exact ? extentsOf(shape, e) : enclosingExtentsOf(shape, e)))
            return Status::eNotApplicable;
        if (kept) *kept = e;
        extents = e;
        return Status::eOk;
    });
}

Status shapeArea(const TopoDS_Shape& shape, Measures* cache, double& area) {
    return guarded([&] {
        if (shape.IsNull()) return Status::eNotApplicable;
        if (cache && cache->area) {
            area = *cache->area;
            return Status::eOk;
        }
        area = areaOf(shape);
        if (cache) cache->area = area;
        return Status::eOk;
    });
}

const GProp_GProps& shapeVolume(const TopoDS_Shape& shape, Measures* cache, GProp_GProps& scratch) {
    if (cache && cache->volume) return *cache->volume;
    scratch = GProp_GProps();
    volumeProperties(shape, scratch); // into the cache only once whole
    if (!cache) return scratch;
    cache->volume = scratch;
    return *cache->volume;
}

Brep shapeBrep(const TopoDS_Shape& shape, Primitive kind) {
    Brep brep;
    guarded([&] {
        brep = kind == Primitive::kNone ? walkBrep(shape) : walkPrimitive(shape, kind);
        return Status::eOk;
    });
    return brep;
}

TopologyCounts shapeTopology(const TopoDS_Shape& shape) {
    TopologyCounts counts;
    guarded([&] {
        counts = countTopology(shape);
        return Status::eOk;
    });
    return counts;
}

} // namespace arxsolids
