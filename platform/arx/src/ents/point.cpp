#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbents.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbPoint, AcDbEntity, ACRX_T("POINT"))

namespace {
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbPoint")),
    dxf::value<AcDbPoint, &AcDbPoint::position, &AcDbPoint::setPosition>(10),
    dxf::value<AcDbPoint, &AcDbPoint::thickness, &AcDbPoint::setThickness>(
        39, AcDbDxfField::kOmitDefault),
    dxf::value<AcDbPoint, &AcDbPoint::normal, &AcDbPoint::setNormal>(210,
                                                                     AcDbDxfField::kOmitDefault),
    dxf::value<AcDbPoint, &AcDbPoint::ecsRotation, &AcDbPoint::setEcsRotation>(
        50, AcDbDxfField::kOmitDefault | AcDbDxfField::kAngle),
};
} // namespace
ACDB_DXF_KIND(AcDbPoint, "POINT", kFields)

Acad::ErrorStatus AcDbPoint::setPosition(const AcGePoint3d& position) {
    ACDB_WRITE_CHECK();
    position_ = position;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPoint::setThickness(double thickness) {
    ACDB_WRITE_CHECK();
    thickness_ = thickness;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPoint::setNormal(const AcGeVector3d& normal) {
    ACDB_WRITE_CHECK();
    if (!entgeom::validNormal(normal)) return Acad::eInvalidInput;
    normal_ = normal.normal();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPoint::setEcsRotation(double rotation) {
    ACDB_WRITE_CHECK();
    ecsRotation_ = rotation;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPoint::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    const AcGeVector3d normal = entgeom::transformNormal(xform, normal_);
    thickness_ = entgeom::transformThickness(xform, normal_, thickness_, normal);
    normal_ = normal;
    position_ = xform * position_;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPoint::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    extents.addPoint(position_);
    entgeom::addThickness(extents, normal_, thickness_);
    return Acad::eOk;
}
