// NURBS arithmetic of splines: basis functions, points, and the curve through fit points.
#pragma once

#include "arx/gevec.h"

namespace splinefit {

// Index of the knot span holding u, for a clamped knot vector of n + 1 control points.
int findSpan(int n, int degree, double u, const AcGeDoubleArray& knots);
// Point at u of a (possibly rational) curve.
AcGePoint3d pointAt(int degree, const AcGePoint3dArray& controls, const AcGeDoubleArray& knots,
                    const AcGeDoubleArray& weights, double u);
// Control points and knots of the curve of the degree that passes through the points, with the
// end tangents when they are not zero (scaled by the length of the polygon of points). False
// for fewer than two distinct points.
bool interpolate(const AcGePoint3dArray& points, int degree, const AcGeVector3d& startTangent,
                 const AcGeVector3d& endTangent, AcGePoint3dArray& controls,
                 AcGeDoubleArray& knots);

} // namespace splinefit
