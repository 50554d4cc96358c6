// Solids and traces share their data and their DXF fields.
#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbents.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbSolid, AcDbEntity, ACRX_T("SOLID"))
ACRX_DEFINE_MEMBERS(AcDbTrace, AcDbEntity, ACRX_T("TRACE"))

namespace {
template <Adesk::UInt16 I>
AcGePoint3d ocsCorner(const AcDbPlanarQuad& q) {
    AcGePoint3d p;
    q.getPointAt(I, p);
    return entgeom::toOcs(q.normal(), p);
}
template <Adesk::UInt16 I>
Acad::ErrorStatus setOcsCorner(AcDbPlanarQuad& q, const AcGePoint3d& p) {
    return q.setPointAt(I, entgeom::fromOcs(q.normal(), p));
}
constexpr unsigned kOcs = AcDbDxfField::kOcs;
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbTrace")),
    dxf::value<AcDbPlanarQuad, &AcDbPlanarQuad::thickness, &AcDbPlanarQuad::setThickness>(
        39, AcDbDxfField::kOmitDefault),
    dxf::value<AcDbPlanarQuad, ocsCorner<0>, setOcsCorner<0>>(10, kOcs),
    dxf::value<AcDbPlanarQuad, ocsCorner<1>, setOcsCorner<1>>(11, kOcs),
    dxf::value<AcDbPlanarQuad, ocsCorner<2>, setOcsCorner<2>>(12, kOcs),
    dxf::value<AcDbPlanarQuad, ocsCorner<3>, setOcsCorner<3>>(13, kOcs),
    dxf::value<AcDbPlanarQuad, &AcDbPlanarQuad::normal, &AcDbPlanarQuad::setNormal>(
        210, AcDbDxfField::kOmitDefault),
};
} // namespace
ACDB_DXF_KIND(AcDbSolid, "SOLID", kFields)
ACDB_DXF_KIND(AcDbTrace, "TRACE", kFields)

Acad::ErrorStatus AcDbPlanarQuad::getPointAt(Adesk::UInt16 index, AcGePoint3d& point) const {
    if (index > 3) return Acad::eInvalidIndex;
    point = corners_[index];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPlanarQuad::setPointAt(Adesk::UInt16 index, const AcGePoint3d& point) {
    ACDB_WRITE_CHECK();
    if (index > 3) return Acad::eInvalidIndex;
    corners_[index] = point;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPlanarQuad::setThickness(double thickness) {
    return entgeom::setProperty(this, thickness_, thickness);
}

Acad::ErrorStatus AcDbPlanarQuad::setNormal(const AcGeVector3d& normal) {
    return entgeom::setNormal(this, normal_, normal);
}

Acad::ErrorStatus AcDbPlanarQuad::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    const AcGeVector3d normal = entgeom::transformNormal(xform, normal_);
    thickness_ = entgeom::transformThickness(xform, normal_, thickness_, normal);
    normal_ = normal;
    for (AcGePoint3d& p : corners_)
        p = xform * p;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPlanarQuad::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    for (const AcGePoint3d& p : corners_)
        extents.addPoint(p);
    entgeom::addThickness(extents, normal_, thickness_);
    return Acad::eOk;
}
