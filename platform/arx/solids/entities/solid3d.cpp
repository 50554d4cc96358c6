#include <filesystem>
#include <utility>
#include <variant>
#include <vector>

#include "../../src/db/rxdefine.h"
#include "arx/dbregion.h"
#include "arx/dbsol3d.h"
#include "arx/dbsurf.h"
#include "convert.h"

ACRX_DEFINE_MEMBERS(AcDb3dSolid, AcDbEntity, ACRX_T("3DSOLID"))

#define SOLID_WRITE_CHECK()                                                                        \
    if (Acad::ErrorStatus es_ = assertWriteEnabled(); es_ != Acad::eOk) return es_

using solident::builtOrThrow;
using solident::toAcad;
using solident::toVec;

const arxsolids::Solid& AcDb3dSolid::body() const {
    if (SatBuild build = pendingBuild_) {
        pendingBuild_ = nullptr;
        arxsolids::Solid built;
        if (build(storedSat_, built))
            body_ = std::move(built);
        else
            rawSat_ = storedSat_;
    }
    return body_;
}

const std::string& AcDb3dSolid::rawSat() const {
    body();
    return rawSat_;
}

arxsolids::Solid& AcDb3dSolid::edited() {
    body();
    storedSat_.clear();
    return body_;
}

Acad::ErrorStatus AcDb3dSolid::setBody(arxsolids::Solid body) {
    SOLID_WRITE_CHECK();
    body_ = std::move(body);
    rawSat_.clear();
    storedSat_.clear();
    pendingBuild_ = nullptr;
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dSolid::setRawSat(std::string sat) {
    SOLID_WRITE_CHECK();
    body_ = arxsolids::Solid();
    rawSat_ = std::move(sat);
    storedSat_.clear();
    pendingBuild_ = nullptr;
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dSolid::setStoredSat(std::string sat, SatBuild build) {
    SOLID_WRITE_CHECK();
    if (build) {
        body_ = arxsolids::Solid();
        rawSat_.clear();
    }
    storedSat_ = std::move(sat);
    pendingBuild_ = build;
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dSolid::rebuilt(Acad::ErrorStatus es) {
    if (es == Acad::eOk) rawSat_.clear();
    return es;
}

Acad::ErrorStatus AcDb3dSolid::setRecordHistory(bool record) {
    SOLID_WRITE_CHECK();
    body();
    body_.setRecordHistory(record);
    return Acad::eOk;
}

// ---- Builders ----

Acad::ErrorStatus AcDb3dSolid::createFrustum(double height, double xRadius, double yRadius,
                                             double topXRadius) {
    SOLID_WRITE_CHECK();
    return rebuilt(builtOrThrow(edited().createFrustum(height, xRadius, yRadius, topXRadius)));
}

Acad::ErrorStatus AcDb3dSolid::createBox(double xLen, double yLen, double zLen) {
    SOLID_WRITE_CHECK();
    return rebuilt(builtOrThrow(edited().createBox(xLen, yLen, zLen)));
}

Acad::ErrorStatus AcDb3dSolid::createSphere(double radius) {
    SOLID_WRITE_CHECK();
    return rebuilt(builtOrThrow(edited().createSphere(radius)));
}

Acad::ErrorStatus AcDb3dSolid::createTorus(double majorRadius, double minorRadius) {
    SOLID_WRITE_CHECK();
    return rebuilt(builtOrThrow(edited().createTorus(majorRadius, minorRadius)));
}

Acad::ErrorStatus AcDb3dSolid::extrude(const AcDbRegion* region, double height, double taperAngle) {
    SOLID_WRITE_CHECK();
    if (region == nullptr) return Acad::eInvalidInput;
    return rebuilt(builtOrThrow(edited().extrude(region->body(), height, taperAngle)));
}

Acad::ErrorStatus AcDb3dSolid::extrudeAlongPath(const AcDbRegion* region, const AcDbCurve* path,
                                                double taperAngle) {
    SOLID_WRITE_CHECK();
    if (region == nullptr || path == nullptr) return Acad::eInvalidInput;
    arxsolids::Curve curve;
    if (Acad::ErrorStatus es = solident::toCurve(path, curve); es != Acad::eOk) return es;
    return rebuilt(builtOrThrow(edited().extrudeAlongPath(region->body(), curve, taperAngle)));
}

Acad::ErrorStatus AcDb3dSolid::revolve(const AcDbRegion* region, const AcGePoint3d& axisPoint,
                                       const AcGeVector3d& axisDir, double angleOfRevolution) {
    SOLID_WRITE_CHECK();
    if (region == nullptr) return Acad::eInvalidInput;
    return rebuilt(builtOrThrow(
        edited().revolve(region->body(), toVec(axisPoint), toVec(axisDir), angleOfRevolution)));
}

// ---- Operations ----

Acad::ErrorStatus AcDb3dSolid::booleanOper(AcDb::BoolOperType operation, AcDb3dSolid* solid) {
    SOLID_WRITE_CHECK();
    if (solid == nullptr || solid == this) return Acad::eInvalidInput;
    if (!solid->isWriteEnabled()) return Acad::eNotOpenForWrite;
    return rebuilt(
        toAcad(edited().booleanOper(arxsolids::BoolOperType(operation), solid->edited())));
}

Acad::ErrorStatus AcDb3dSolid::getSlice(const AcGePlane& plane, Adesk::Boolean getNegHalfToo,
                                        AcDb3dSolid*& negHalfSolid) {
    negHalfSolid = nullptr;
    SOLID_WRITE_CHECK();
    arxsolids::Solid negHalf;
    const arxsolids::Status status = edited().getSlice(solident::toPlane(plane), getNegHalfToo,
                                                       getNegHalfToo ? &negHalf : nullptr);
    if (status != arxsolids::Status::eOk || !getNegHalfToo) return toAcad(status);
    negHalfSolid = new AcDb3dSolid;
    negHalfSolid->body_ = std::move(negHalf);
    copyPropertiesTo(negHalfSolid);
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dSolid::getSection(const AcGePlane& plane,
                                          AcDbRegion*& sectionRegion) const {
    sectionRegion = nullptr;
    arxsolids::Region section;
    const arxsolids::Status status = body().getSection(solident::toPlane(plane), section);
    if (status != arxsolids::Status::eOk) return toAcad(status);
    sectionRegion = new AcDbRegion;
    sectionRegion->setBody(std::move(section));
    copyPropertiesTo(sectionRegion);
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dSolid::getMassProp(double& volume, AcGePoint3d& centroid,
                                           double momInertia[3], double prodInertia[3],
                                           double prinMoments[3], AcGeVector3d prinAxes[3],
                                           double radiiGyration[3], AcDbExtents& extents) const {
    arxsolids::MassProps props;
    const arxsolids::Status status = body().getMassProp(props);
    if (status != arxsolids::Status::eOk) return toAcad(status);
    volume = props.volume;
    centroid = solident::toPoint(props.centroid);
    for (int i = 0; i < 3; ++i) {
        momInertia[i] = props.momInertia[i];
        prodInertia[i] = props.prodInertia[i];
        prinMoments[i] = props.prinMoments[i];
        prinAxes[i] = solident::toVector(props.prinAxes[i]);
        radiiGyration[i] = props.radiiGyration[i];
    }
    extents = solident::toExtents(props.extents);
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dSolid::getArea(double& area) const {
    return toAcad(body().getArea(area));
}

Acad::ErrorStatus AcDb3dSolid::stlOut(const ACHAR* fileName, Adesk::Boolean asciiFormat,
                                      double /*maxSurfaceDeviation*/) const {
    if (fileName == nullptr) return Acad::eInvalidInput;
    return toAcad(body().stlOut(std::filesystem::path(fileName).string(), asciiFormat));
}

Acad::ErrorStatus AcDb3dSolid::transformBy(const AcGeMatrix3d& xform) {
    SOLID_WRITE_CHECK();
    return toAcad(edited().transformBy(solident::toMatrix(xform)));
}

Acad::ErrorStatus AcDb3dSolid::getGeomExtents(AcDbExtents& extents) const {
    return solident::extentsOf(body(), extents);
}

Acad::ErrorStatus AcDb3dSolid::explode(AcDbVoidPtrArray& entities) const {
    std::vector<arxsolids::Piece> pieces;
    const arxsolids::Status status = body().explode(pieces);
    if (status != arxsolids::Status::eOk) return toAcad(status);
    for (arxsolids::Piece& piece : pieces) {
        AcDbEntity* entity = nullptr;
        if (auto* region = std::get_if<arxsolids::Region>(&piece)) {
            auto* r = new AcDbRegion;
            r->setBody(std::move(*region));
            entity = r;
        } else {
            auto* s = new AcDbSurface;
            s->setBody(std::move(std::get<arxsolids::Surface>(piece)));
            entity = s;
        }
        copyPropertiesTo(entity);
        entities.append(entity);
    }
    return Acad::eOk;
}
