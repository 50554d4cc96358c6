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
    return entgeom::setProperty(this, position_, position);
}

Acad::ErrorStatus AcDbPoint::setThickness(double thickness) {
    return entgeom::setProperty(this, thickness_, thickness);
}

Acad::ErrorStatus AcDbPoint::setNormal(const AcGeVector3d& normal) {
    return entgeom::setNormal(this, normal_, normal);
}

Acad::ErrorStatus AcDbPoint::setEcsRotation(double rotation) {
    return entgeom::setProperty(this, ecsRotation_, rotation);
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
