#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbents.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbLine, AcDbCurve, ACRX_T("LINE"))

namespace {
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbLine")),
    dxf::value<AcDbLine, &AcDbLine::thickness, &AcDbLine::setThickness>(39,
                                                                        AcDbDxfField::kOmitDefault),
    dxf::value<AcDbLine, &AcDbLine::startPoint, &AcDbLine::setStartPoint>(10),
    dxf::value<AcDbLine, &AcDbLine::endPoint, &AcDbLine::setEndPoint>(11),
    dxf::value<AcDbLine, &AcDbLine::normal, &AcDbLine::setNormal>(210, AcDbDxfField::kOmitDefault),
};
} // namespace
ACDB_DXF_KIND(AcDbLine, "LINE", kFields)

Acad::ErrorStatus AcDbLine::setStartPoint(const AcGePoint3d& point) {
    return entgeom::setProperty(this, start_, point);
}

Acad::ErrorStatus AcDbLine::setEndPoint(const AcGePoint3d& point) {
    return entgeom::setProperty(this, end_, point);
}

Acad::ErrorStatus AcDbLine::setThickness(double thickness) {
    return entgeom::setProperty(this, thickness_, thickness);
}

Acad::ErrorStatus AcDbLine::setNormal(const AcGeVector3d& normal) {
    return entgeom::setNormal(this, normal_, normal);
}

Acad::ErrorStatus AcDbLine::getStartPoint(AcGePoint3d& p) const {
    p = start_;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::getEndPoint(AcGePoint3d& p) const {
    p = end_;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    const AcGeVector3d normal = entgeom::transformNormal(xform, normal_);
    thickness_ = entgeom::transformThickness(xform, normal_, thickness_, normal);
    normal_ = normal;
    start_ = xform * start_;
    end_ = xform * end_;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    extents.addPoint(start_);
    extents.addPoint(end_);
    entgeom::addThickness(extents, normal_, thickness_);
    return Acad::eOk;
}
