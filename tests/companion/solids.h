// The solids, regions and other entities the companion is asked about.
#pragma once

#include <arx/solids.h>

#include <numbers>
#include <vector>

namespace companiontest {

constexpr double kPi = std::numbers::pi;

AcDb3dSolid* sphere(double radius, const AcGeVector3d& at = {});
AcDb3dSolid* torus(double major, double minor);
AcDb3dSolid* cylinder(double radius, double height);
AcDb3dSolid* box(double x, double y, double z, const AcGeMatrix3d& place);
// A circle of the radius swept along an arc of radius 5 through a quarter turn.
AcDb3dSolid* arcElbow(double radius);
// A circle swept along a polyline with one right-angled corner.
AcDb3dSolid* mitredElbow(double radius);
// A sphere cut by the XY plane: the upper half with its flat face.
AcDb3dSolid* hemisphere(double radius);

// A closed polyline in the XY plane through the corners.
AcDbPolyline* polygon(const std::vector<AcGePoint2d>& corners);
// The region of the outline with the holes taken out; null (and a failure) when that fails.
AcDbRegion* region(AcDbPolyline* outline, std::vector<AcDbCurve*> holes = {});
// The region of a circle about the origin in the XY plane.
AcDbRegion* disc(double radius);
// The region extruded along +Z by the height; the region is deleted.
AcDb3dSolid* extrusion(AcDbRegion* profile, double height);
// Corners of a regular polygon of n sides about the origin, the first on the X axis.
std::vector<AcGePoint2d> regularPolygon(int n, double radius);

} // namespace companiontest
