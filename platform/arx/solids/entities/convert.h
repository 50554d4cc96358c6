// Between the database's geometry and entities and the kernel's plain value types.
#pragma once

#include <arxsolids/types.h>

#include <vector>

#include "arx/dbmain.h"

namespace solident {

Acad::ErrorStatus toAcad(arxsolids::Status status);
// As toAcad, but a failure of the modelling itself (not of the input) is thrown as the integer
// status, the way the host's builders report it.
Acad::ErrorStatus builtOrThrow(arxsolids::Status status);

inline arxsolids::Vec3 toVec(const AcGePoint3d& p) {
    return {p.x, p.y, p.z};
}
inline arxsolids::Vec3 toVec(const AcGeVector3d& v) {
    return {v.x, v.y, v.z};
}
inline AcGePoint3d toPoint(const arxsolids::Vec3& v) {
    return {v.x, v.y, v.z};
}
inline AcGeVector3d toVector(const arxsolids::Vec3& v) {
    return {v.x, v.y, v.z};
}
arxsolids::Matrix toMatrix(const AcGeMatrix3d& m);
AcDbExtents toExtents(const arxsolids::Extents& e);
arxsolids::Plane toPlane(const AcGePlane& plane);

// The curve of a line, arc, circle, ellipse, polyline of any kind or spline; eInvalidInput for
// anything else.
Acad::ErrorStatus toCurve(const AcDbCurve* entity, arxsolids::Curve& curve);
// A new entity drawing the curve.
AcDbEntity* toEntity(const arxsolids::Curve& curve);

// The same calls on the three kinds of body.
// The entity's extents, for zooming and picking: the body's enclosing box, not the exact one.
template <class Body>
Acad::ErrorStatus extentsOf(const Body& body, AcDbExtents& extents) {
    arxsolids::Extents e;
    const arxsolids::Status status = body.getBoundingBox(e);
    if (status == arxsolids::Status::eOk) extents = toExtents(e);
    return toAcad(status);
}

// The boundary curves of a region or surface as new entities; copyProperties(piece) gives
// each the properties of the exploded entity.
template <class Body, class CopyProperties>
Acad::ErrorStatus explodeToCurves(const Body& body, AcDbVoidPtrArray& entities,
                                  CopyProperties copyProperties) {
    std::vector<arxsolids::Curve> curves;
    const arxsolids::Status status = body.explode(curves);
    if (status != arxsolids::Status::eOk) return toAcad(status);
    for (const arxsolids::Curve& curve : curves) {
        AcDbEntity* piece = toEntity(curve);
        copyProperties(piece);
        entities.append(piece);
    }
    return Acad::eOk;
}

} // namespace solident
