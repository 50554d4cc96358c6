#include <cmath>

#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbents.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbCircle, AcDbCurve, ACRX_T("CIRCLE"))

namespace {
AcGePoint3d ocsCenter(const AcDbCircle& c) {
    return entgeom::toOcs(c.normal(), c.center());
}
Acad::ErrorStatus setOcsCenter(AcDbCircle& c, const AcGePoint3d& p) {
    return c.setCenter(entgeom::fromOcs(c.normal(), p));
}
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbCircle")),
    dxf::value<AcDbCircle, &AcDbCircle::thickness, &AcDbCircle::setThickness>(
        39, AcDbDxfField::kOmitDefault),
    dxf::value<AcDbCircle, ocsCenter, setOcsCenter>(10, AcDbDxfField::kOcs),
    dxf::value<AcDbCircle, &AcDbCircle::radius, &AcDbCircle::setRadius>(40),
    dxf::value<AcDbCircle, &AcDbCircle::normal, &AcDbCircle::setNormal>(210,
                                                                        AcDbDxfField::kOmitDefault),
};
} // namespace
ACDB_DXF_KIND(AcDbCircle, "CIRCLE", kFields)

AcDbCircle::AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius)
    : center_(center) {
    if (entgeom::validNormal(normal)) normal_ = normal.normal();
    if (radius > 0.0) radius_ = radius;
}

Acad::ErrorStatus AcDbCircle::setCenter(const AcGePoint3d& center) {
    return entgeom::setProperty(this, center_, center);
}

Acad::ErrorStatus AcDbCircle::setRadius(double radius) {
    return entgeom::setPositive(this, radius_, radius);
}

Acad::ErrorStatus AcDbCircle::setNormal(const AcGeVector3d& normal) {
    return entgeom::setNormal(this, normal_, normal);
}

Acad::ErrorStatus AcDbCircle::setThickness(double thickness) {
    return entgeom::setProperty(this, thickness_, thickness);
}

Acad::ErrorStatus AcDbCircle::getStartPoint(AcGePoint3d& p) const {
    AcGeVector3d x, y;
    entgeom::planeAxes(normal_, x, y);
    p = center_ + x * radius_;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::getEndPoint(AcGePoint3d& p) const {
    return getStartPoint(p);
}

Acad::ErrorStatus AcDbCircle::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    double scale = 1.0;
    if (!entgeom::uniformScale(xform, scale)) return Acad::eCannotScaleNonUniformly;
    const AcGeVector3d normal = entgeom::transformNormal(xform, normal_);
    thickness_ = entgeom::transformThickness(xform, normal_, thickness_, normal);
    normal_ = normal;
    center_ = xform * center_;
    radius_ *= scale;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    AcGeVector3d x, y;
    entgeom::planeAxes(normal_, x, y);
    entgeom::addArc(extents, center_, x * radius_, y * radius_, 0.0, 2.0 * M_PI);
    entgeom::addThickness(extents, normal_, thickness_);
    return Acad::eOk;
}
