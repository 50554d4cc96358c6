// Geometry shared by the entities: plane systems, arcs' boxes, checks of input.
#pragma once

#include "arx/dbmain.h"

#define ACDB_WRITE_CHECK()                                                                         \
    if (Acad::ErrorStatus es_ = assertWriteEnabled(); es_ != Acad::eOk) return es_

namespace entgeom {

// Setters of properties: the object must be open for write; then the value, checked.
template <class V, class A>
Acad::ErrorStatus setProperty(const AcDbObject* o, V& field, const A& value) {
    if (!o->isWriteEnabled()) return Acad::eNotOpenForWrite;
    field = value;
    return Acad::eOk;
}
// A normal is kept of unit length; one without length is refused.
Acad::ErrorStatus setNormal(const AcDbObject* o, AcGeVector3d& field, const AcGeVector3d& normal);
// Radii, heights, factors: above zero.
Acad::ErrorStatus setPositive(const AcDbObject* o, double& field, double value);

// A normal must have a length to be normalised.
inline bool validNormal(const AcGeVector3d& n) {
    return !n.isZeroLength();
}

inline AcGePoint3d toOcs(const AcGeVector3d& normal, const AcGePoint3d& p) {
    return AcGeMatrix3d::worldToPlane(normal) * p;
}
inline AcGePoint3d fromOcs(const AcGeVector3d& normal, const AcGePoint3d& p) {
    return AcGeMatrix3d::planeToWorld(normal) * p;
}
// X and Y axes of the plane system of a normal.
void planeAxes(const AcGeVector3d& normal, AcGeVector3d& x, AcGeVector3d& y);

// The normal after a transformation, oriented so that what ran counter-clockwise still does
// (a mirror turns the normal round).
AcGeVector3d transformNormal(const AcGeMatrix3d& m, const AcGeVector3d& normal);
// Thickness along the new normal of the transformed extrusion.
double transformThickness(const AcGeMatrix3d& m, const AcGeVector3d& normal, double thickness,
                          const AcGeVector3d& newNormal);
// Scale of a transformation that keeps shapes (same factor on every axis, right angles).
bool uniformScale(const AcGeMatrix3d& m, double& scale);

// Box of center + cos(t) x + sin(t) y for t from start to end (end taken after start).
void addArc(AcDbExtents& box, const AcGePoint3d& center, const AcGeVector3d& x,
            const AcGeVector3d& y, double start, double end);
// Adds the box moved along the extrusion.
void addThickness(AcDbExtents& box, const AcGeVector3d& normal, double thickness);
// The angle of a world point about center in the plane system of the normal.
double angleInPlane(const AcGeVector3d& normal, const AcGePoint3d& center, const AcGePoint3d& p);
// Sweep from start to end, counter-clockwise, in [0, 2 pi).
double sweep(double start, double end);

} // namespace entgeom
