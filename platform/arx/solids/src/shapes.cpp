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

Status shapeExtents(const TopoDS_Shape& shape, BoxCache* cache, bool exact, Extents& extents) {
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

Status shapeArea(const TopoDS_Shape& shape, double& area) {
    return guarded([&] {
        if (shape.IsNull()) return Status::eNotApplicable;
        area = areaOf(shape);
        return Status::eOk;
    });
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
