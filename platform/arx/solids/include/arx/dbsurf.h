// Surfaces: single curved faces, as a solid's explode hands them out.
#pragma once

#include <arxsolids/surface.h>

#include "arx/dbmain.h"

class AcDbSurface : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbSurface);
    AcDbSurface() = default;
    AcRxObject* clone() const override { return new AcDbSurface(*this); }

    bool isNull() const { return body_.isNull(); }
    Acad::ErrorStatus getArea(double& area) const;

    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
    // The bounding edges as AcDbLine, AcDbArc, AcDbCircle, AcDbEllipse or AcDbSpline; a
    // cylinder's side gives its two rim circles, a sphere nothing.
    Acad::ErrorStatus explode(AcDbVoidPtrArray& entities) const override;

    // Host side: the geometry of the face.
    const arxsolids::Surface& body() const { return body_; }
    Acad::ErrorStatus setBody(arxsolids::Surface body);

private:
    arxsolids::Surface body_;
};
