// Splines: NURBS curves, given by control points or by points to fit.
#pragma once

#include "arx/dbents.h"

class AcDbSpline : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbSpline);
    ACDB_CLONE(AcDbSpline)
    AcDbSpline() = default;
    // Fit form: the curve of the given order passes through the points, with the end
    // tangents given (zero vectors leave them free).
    AcDbSpline(const AcGePoint3dArray& fitPoints, const AcGeVector3d& startTangent,
               const AcGeVector3d& endTangent, int order = 4, double fitTolerance = 0.0);
    AcDbSpline(const AcGePoint3dArray& fitPoints, int order = 4, double fitTolerance = 0.0);
    // Control form. A set of data setNurbsData refuses leaves an empty spline.
    AcDbSpline(int degree, bool rational, bool closed, bool periodic,
               const AcGePoint3dArray& controlPoints, const AcGeDoubleArray& knots,
               const AcGeDoubleArray& weights, double controlPtTol = 0.0, double knotTol = 0.0);

    // eInvalidInput unless degree is 1 to 25, there are at least degree + 1 control points,
    // control points + degree + 1 knots not decreasing, and (rational) one positive weight
    // per control point.
    Acad::ErrorStatus setNurbsData(int degree, bool rational, bool closed, bool periodic,
                                   const AcGePoint3dArray& controlPoints,
                                   const AcGeDoubleArray& knots, const AcGeDoubleArray& weights,
                                   double controlPtTol = 0.0, double knotTol = 0.0);
    Acad::ErrorStatus getNurbsData(int& degree, bool& rational, bool& closed, bool& periodic,
                                   AcGePoint3dArray& controlPoints, AcGeDoubleArray& knots,
                                   AcGeDoubleArray& weights, double& controlPtTol,
                                   double& knotTol) const;
    // eInvalidInput for fewer than two points or an order outside 2 to 26.
    Acad::ErrorStatus setFitData(const AcGePoint3dArray& fitPoints, int degree, double fitTolerance,
                                 const AcGeVector3d& startTangent, const AcGeVector3d& endTangent);
    // eNotApplicable when the spline has no fit data.
    Acad::ErrorStatus getFitData(AcGePoint3dArray& fitPoints, int& degree, double& fitTolerance,
                                 bool& tangentsExist, AcGeVector3d& startTangent,
                                 AcGeVector3d& endTangent) const;
    bool hasFitData() const { return !fitPoints_.isEmpty(); }
    int degree() const { return degree_; }
    bool isRational() const { return rational_; }
    bool isPeriodic() const { return periodic_; }
    int numControlPoints() const { return controlPoints_.length(); }
    Acad::ErrorStatus getControlPointAt(int index, AcGePoint3d& point) const;
    int numFitPoints() const { return fitPoints_.length(); }
    Acad::ErrorStatus getFitPointAt(int index, AcGePoint3d& point) const;
    double fitTolerance() const { return fitTolerance_; }

    bool isClosed() const override { return closed_; }
    // eDegenerateGeometry for an empty spline.
    Acad::ErrorStatus getStartPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus getEndPoint(AcGePoint3d& p) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
    // The box of the control points (which holds the curve), or of the fit points when the
    // spline has only those. eInvalidExtents for an empty spline.
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;

private:
    friend struct AcDbSplineDxf;
    int degree_ = 3;
    bool rational_ = false, closed_ = false, periodic_ = false;
    AcGePoint3dArray controlPoints_;
    AcGeDoubleArray knots_, weights_;
    AcGePoint3dArray fitPoints_;
    AcGeVector3d startTangent_, endTangent_;
    double fitTolerance_ = 0.0;
};
