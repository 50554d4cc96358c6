#include <utility>
#include <vector>

#include "../../src/db/rxdefine.h"
#include "arx/dbsurf.h"
#include "convert.h"

ACRX_DEFINE_MEMBERS(AcDbSurface, AcDbEntity, ACRX_T("SURFACE"))

Acad::ErrorStatus AcDbSurface::setBody(arxsolids::Surface body) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    body_ = std::move(body);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSurface::getArea(double& area) const {
    return solident::toAcad(body_.getArea(area));
}

Acad::ErrorStatus AcDbSurface::transformBy(const AcGeMatrix3d& xform) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    return solident::toAcad(body_.transformBy(solident::toMatrix(xform)));
}

Acad::ErrorStatus AcDbSurface::getGeomExtents(AcDbExtents& extents) const {
    return solident::extentsOf(body_, extents);
}

Acad::ErrorStatus AcDbSurface::explode(AcDbVoidPtrArray& entities) const {
    return solident::explodeToCurves(body_, entities,
                                     [this](AcDbEntity* piece) { copyPropertiesTo(piece); });
}
