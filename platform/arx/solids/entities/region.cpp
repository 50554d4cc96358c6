#include <utility>
#include <vector>

#include "../../src/db/rxdefine.h"
#include "arx/dbregion.h"
#include "convert.h"

ACRX_DEFINE_MEMBERS(AcDbRegion, AcDbEntity, ACRX_T("REGION"))

Acad::ErrorStatus AcDbRegion::createFromCurves(const AcDbVoidPtrArray& curveSegments,
                                               AcDbVoidPtrArray& regions) {
    std::vector<arxsolids::Curve> curves;
    for (int i = 0; i < curveSegments.length(); ++i) {
        const AcDbCurve* entity = AcDbCurve::cast(static_cast<AcDbEntity*>(curveSegments[i]));
        if (entity == nullptr) return Acad::eInvalidInput;
        arxsolids::Curve curve;
        if (Acad::ErrorStatus es = solident::toCurve(entity, curve); es != Acad::eOk) return es;
        curves.push_back(std::move(curve));
    }
    std::vector<arxsolids::Region> bodies;
    const arxsolids::Status status = arxsolids::Region::createFromCurves(curves, bodies);
    if (status != arxsolids::Status::eOk) return solident::toAcad(status);
    for (arxsolids::Region& body : bodies) {
        auto* region = new AcDbRegion;
        region->body_ = std::move(body);
        regions.append(region);
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbRegion::setBody(arxsolids::Region body) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    body_ = std::move(body);
    rawSat_.clear();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbRegion::setRawSat(std::string sat) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    body_ = arxsolids::Region();
    rawSat_ = std::move(sat);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbRegion::booleanOper(AcDb::BoolOperType operation, AcDbRegion* otherRegion) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    if (otherRegion == nullptr || otherRegion == this) return Acad::eInvalidInput;
    if (!otherRegion->isWriteEnabled()) return Acad::eNotOpenForWrite;
    const Acad::ErrorStatus es =
        solident::toAcad(body_.booleanOper(arxsolids::BoolOperType(operation), otherRegion->body_));
    if (es == Acad::eOk) rawSat_.clear();
    return es;
}

Acad::ErrorStatus AcDbRegion::getArea(double& area) const {
    return solident::toAcad(body_.getArea(area));
}

Acad::ErrorStatus AcDbRegion::getNormal(AcGeVector3d& normal) const {
    arxsolids::Vec3 n;
    const arxsolids::Status status = body_.getNormal(n);
    if (status == arxsolids::Status::eOk) normal = solident::toVector(n);
    return solident::toAcad(status);
}

Acad::ErrorStatus AcDbRegion::transformBy(const AcGeMatrix3d& xform) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    return solident::toAcad(body_.transformBy(solident::toMatrix(xform)));
}

Acad::ErrorStatus AcDbRegion::getGeomExtents(AcDbExtents& extents) const {
    return solident::extentsOf(body_, extents);
}

Acad::ErrorStatus AcDbRegion::explode(AcDbVoidPtrArray& entities) const {
    return solident::explodeToCurves(body_, entities,
                                     [this](AcDbEntity* piece) { copyPropertiesTo(piece); });
}
