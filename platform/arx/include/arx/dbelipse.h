// Ellipses and elliptical arcs.
#pragma once

#include "arx/dbents.h"

class AcDbEllipse : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbEllipse);
    ACDB_CLONE(AcDbEllipse)
    AcDbEllipse() = default;
    // An ellipse that set() refuses stays the unit circle about the origin.
    AcDbEllipse(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                const AcGeVector3d& majorAxis, double radiusRatio, double startAngle = 0.0,
                double endAngle = 6.28318530717958647692);
    // eInvalidInput for a zero normal or major axis, axes not perpendicular, or a ratio of the
    // minor to the major radius outside (0, 1].
    Acad::ErrorStatus set(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                          const AcGeVector3d& majorAxis, double radiusRatio,
                          double startAngle = 0.0, double endAngle = 6.28318530717958647692);

    AcGePoint3d center() const { return center_; }
    Acad::ErrorStatus setCenter(const AcGePoint3d& center);
    AcGeVector3d normal() const { return normal_; }
    AcGeVector3d majorAxis() const { return major_; }
    // normal x major, scaled by the ratio.
    AcGeVector3d minorAxis() const;
    double radiusRatio() const { return ratio_; }
    Acad::ErrorStatus setRadiusRatio(double ratio);
    double majorRadius() const { return major_.length(); }
    double minorRadius() const { return major_.length() * ratio_; }
    // Angles from the major axis about the normal; parameters are the angles of the
    // defining circle (equal to the angles when the ratio is 1).
    double startAngle() const { return startAngle_; }
    double endAngle() const { return endAngle_; }
    Acad::ErrorStatus setStartAngle(double angle);
    Acad::ErrorStatus setEndAngle(double angle);
    double startParam() const { return paramAtAngle(startAngle_); }
    double endParam() const { return paramAtAngle(endAngle_); }
    Acad::ErrorStatus setStartParam(double param);
    Acad::ErrorStatus setEndParam(double param);
    double paramAtAngle(double angle) const;
    double angleAtParam(double param) const;
    AcGePoint3d pointAtParam(double param) const;

    bool isClosed() const override;
    Acad::ErrorStatus getStartPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus getEndPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

private:
    friend struct AcDbEllipseDxf;
    AcGePoint3d center_;
    AcGeVector3d normal_ = AcGeVector3d::kZAxis;
    AcGeVector3d major_ = AcGeVector3d::kXAxis;
    double ratio_ = 1.0;
    double startAngle_ = 0.0, endAngle_ = 6.28318530717958647692;
};
