// Curves of the drawing as points close enough for a picture.
#pragma once

#include <arxsolids/types.h>

#include <vector>

class AcDbEntity;

namespace view {

// The points of a line, circle, arc, ellipse or spline, in order; empty for other kinds.
std::vector<arxsolids::Vec3> curvePoints(const AcDbEntity& entity);

} // namespace view
