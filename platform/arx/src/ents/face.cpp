#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbents.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbFace, AcDbEntity, ACRX_T("3DFACE"))

namespace {
template <Adesk::UInt16 I>
AcGePoint3d corner(const AcDbFace& f) {
    AcGePoint3d p;
    f.getVertexAt(I, p);
    return p;
}
template <Adesk::UInt16 I>
Acad::ErrorStatus setCorner(AcDbFace& f, const AcGePoint3d& p) {
    return f.setVertexAt(I, p);
}
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbFace")),
    dxf::value<AcDbFace, corner<0>, setCorner<0>>(10),
    dxf::value<AcDbFace, corner<1>, setCorner<1>>(11),
    dxf::value<AcDbFace, corner<2>, setCorner<2>>(12),
    dxf::value<AcDbFace, corner<3>, setCorner<3>>(13),
    dxf::value<AcDbFace, &AcDbFace::invisibleEdgeFlags, &AcDbFace::setInvisibleEdgeFlags>(
        70, AcDbDxfField::kOmitDefault),
};
} // namespace
ACDB_DXF_KIND(AcDbFace, "3DFACE", kFields)

AcDbFace::AcDbFace(const AcGePoint3d& p0, const AcGePoint3d& p1, const AcGePoint3d& p2,
                   const AcGePoint3d& p3, bool e0vis, bool e1vis, bool e2vis, bool e3vis)
    : corners_{p0, p1, p2, p3} {
    const bool visible[4] = {e0vis, e1vis, e2vis, e3vis};
    for (int i = 0; i < 4; ++i)
        if (!visible[i]) invisible_ |= Adesk::Int16(1 << i);
}

AcDbFace::AcDbFace(const AcGePoint3d& p0, const AcGePoint3d& p1, const AcGePoint3d& p2, bool e0vis,
                   bool e1vis, bool e2vis, bool e3vis)
    : AcDbFace(p0, p1, p2, p2, e0vis, e1vis, e2vis, e3vis) {}

Acad::ErrorStatus AcDbFace::getVertexAt(Adesk::UInt16 index, AcGePoint3d& point) const {
    if (index > 3) return Acad::eInvalidIndex;
    point = corners_[index];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFace::setVertexAt(Adesk::UInt16 index, const AcGePoint3d& point) {
    ACDB_WRITE_CHECK();
    if (index > 3) return Acad::eInvalidIndex;
    corners_[index] = point;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFace::isEdgeVisibleAt(Adesk::UInt16 index, bool& visible) const {
    if (index > 3) return Acad::eInvalidIndex;
    visible = !(invisible_ & (1 << index));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFace::makeEdgeInvisibleAt(Adesk::UInt16 index) {
    ACDB_WRITE_CHECK();
    if (index > 3) return Acad::eInvalidIndex;
    invisible_ |= Adesk::Int16(1 << index);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFace::makeEdgeVisibleAt(Adesk::UInt16 index) {
    ACDB_WRITE_CHECK();
    if (index > 3) return Acad::eInvalidIndex;
    invisible_ &= Adesk::Int16(~(1 << index));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFace::setInvisibleEdgeFlags(Adesk::Int16 flags) {
    ACDB_WRITE_CHECK();
    if (flags < 0 || flags > 15) return Acad::eInvalidInput;
    invisible_ = flags;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFace::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    for (AcGePoint3d& p : corners_)
        p = xform * p;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFace::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    for (const AcGePoint3d& p : corners_)
        extents.addPoint(p);
    return Acad::eOk;
}
