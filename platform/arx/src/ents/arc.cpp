#include <cmath>

#include "../db/rxdefine.h"
#include "../dxf/fieldtable.h"
#include "arx/dbents.h"
#include "entgeom.h"

ACRX_DEFINE_MEMBERS(AcDbArc, AcDbCurve, ACRX_T("ARC"))

namespace {
AcGePoint3d ocsCenter(const AcDbArc& a) {
    return entgeom::toOcs(a.normal(), a.center());
}
Acad::ErrorStatus setOcsCenter(AcDbArc& a, const AcGePoint3d& p) {
    return a.setCenter(entgeom::fromOcs(a.normal(), p));
}
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbCircle")),
    dxf::value<AcDbArc, &AcDbArc::thickness, &AcDbArc::setThickness>(39,
                                                                     AcDbDxfField::kOmitDefault),
    dxf::value<AcDbArc, ocsCenter, setOcsCenter>(10, AcDbDxfField::kOcs),
    dxf::value<AcDbArc, &AcDbArc::radius, &AcDbArc::setRadius>(40),
    dxf::value<AcDbArc, &AcDbArc::normal, &AcDbArc::setNormal>(210, AcDbDxfField::kOmitDefault),
    dxf::marker(ACRX_T("AcDbArc")),
    dxf::value<AcDbArc, &AcDbArc::startAngle, &AcDbArc::setStartAngle>(50, AcDbDxfField::kAngle),
    dxf::value<AcDbArc, &AcDbArc::endAngle, &AcDbArc::setEndAngle>(51, AcDbDxfField::kAngle),
};
} // namespace
ACDB_DXF_KIND(AcDbArc, "ARC", kFields)

AcDbArc::AcDbArc(const AcGePoint3d& center, double radius, double startAngle, double endAngle)
    : AcDbArc(center, AcGeVector3d::kZAxis, radius, startAngle, endAngle) {}

AcDbArc::AcDbArc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius,
                 double startAngle, double endAngle)
    : center_(center), startAngle_(startAngle), endAngle_(endAngle) {
    if (entgeom::validNormal(normal)) normal_ = normal.normal();
    if (radius > 0.0) radius_ = radius;
}

Acad::ErrorStatus AcDbArc::setCenter(const AcGePoint3d& center) {
    return entgeom::setProperty(this, center_, center);
}

Acad::ErrorStatus AcDbArc::setRadius(double radius) {
    return entgeom::setPositive(this, radius_, radius);
}

Acad::ErrorStatus AcDbArc::setStartAngle(double angle) {
    return entgeom::setProperty(this, startAngle_, angle);
}

Acad::ErrorStatus AcDbArc::setEndAngle(double angle) {
    return entgeom::setProperty(this, endAngle_, angle);
}

Acad::ErrorStatus AcDbArc::setNormal(const AcGeVector3d& normal) {
    return entgeom::setNormal(this, normal_, normal);
}

Acad::ErrorStatus AcDbArc::setThickness(double thickness) {
    return entgeom::setProperty(this, thickness_, thickness);
}

Acad::ErrorStatus AcDbArc::getStartPoint(AcGePoint3d& p) const {
    AcGeVector3d x, y;
    entgeom::planeAxes(normal_, x, y);
    p = center_ + (x * std::cos(startAngle_) + y * std::sin(startAngle_)) * radius_;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::getEndPoint(AcGePoint3d& p) const {
    AcGeVector3d x, y;
    entgeom::planeAxes(normal_, x, y);
    p = center_ + (x * std::cos(endAngle_) + y * std::sin(endAngle_)) * radius_;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::transformBy(const AcGeMatrix3d& xform) {
    ACDB_WRITE_CHECK();
    double scale = 1.0;
    if (!entgeom::uniformScale(xform, scale)) return Acad::eCannotScaleNonUniformly;
    AcGePoint3d start, end;
    getStartPoint(start);
    getEndPoint(end);
    const AcGeVector3d normal = entgeom::transformNormal(xform, normal_);
    thickness_ = entgeom::transformThickness(xform, normal_, thickness_, normal);
    normal_ = normal;
    center_ = xform * center_;
    radius_ *= scale;
    startAngle_ = entgeom::angleInPlane(normal_, center_, xform * start);
    endAngle_ = entgeom::angleInPlane(normal_, center_, xform * end);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::getGeomExtents(AcDbExtents& extents) const {
    extents = AcDbExtents();
    AcGeVector3d x, y;
    entgeom::planeAxes(normal_, x, y);
    entgeom::addArc(extents, center_, x * radius_, y * radius_, startAngle_,
                    startAngle_ + entgeom::sweep(startAngle_, endAngle_));
    entgeom::addThickness(extents, normal_, thickness_);
    return Acad::eOk;
}
