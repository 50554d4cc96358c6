// Regions: bounded planar areas, possibly with holes, as database entities.
#pragma once

#include <arxsolids/region.h>

#include <string>

#include "arx/dbmain.h"

class AcDbRegion : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbRegion);
    AcDbRegion() = default;
    AcRxObject* clone() const override { return new AcDbRegion(*this); }

    // One new region per closed loop found among the curves (AcDbLine, AcDbArc, AcDbCircle,
    // AcDbEllipse, AcDbPolyline, AcDb2dPolyline, AcDb3dPolyline, AcDbSpline), in any order and
    // direction; the caller owns them. eOpenLoop, eSelfIntersecting, eNonPlanarEntity,
    // eInvalidInput (a degenerate curve or one of another class), with no region made.
    static Acad::ErrorStatus createFromCurves(const AcDbVoidPtrArray& curveSegments,
                                              AcDbVoidPtrArray& regions);

    bool isNull() const { return body_.isNull(); }
    // The other region must lie in the same plane (eNonCoplanarGeometry) and be open for write;
    // on success it ends empty.
    Acad::ErrorStatus booleanOper(AcDb::BoolOperType operation, AcDbRegion* otherRegion);
    Acad::ErrorStatus getArea(double& area) const;
    // The side from which the outer loops run counter-clockwise.
    Acad::ErrorStatus getNormal(AcGeVector3d& normal) const;

    // Rigid motions and uniform scale; eCannotScaleNonUniformly otherwise.
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
    // The boundary curves, loop by loop: AcDbLine, AcDbArc, AcDbCircle, AcDbEllipse, AcDbSpline.
    Acad::ErrorStatus explode(AcDbVoidPtrArray& entities) const override;

    // Host side: the geometry of the region.
    const arxsolids::Region& body() const { return body_; }
    // Replaces the geometry; needs the region open for write.
    Acad::ErrorStatus setBody(arxsolids::Region body);

    // A region the host cannot represent, kept as the SAT text it was read from (its body is
    // empty); written back unchanged. Empty otherwise; setBody or a boolean that succeeds
    // clears it.
    const std::string& rawSat() const { return rawSat_; }
    // Empties the body and keeps the text; needs the region open for write.
    Acad::ErrorStatus setRawSat(std::string sat);

private:
    arxsolids::Region body_;
    std::string rawSat_;
};
