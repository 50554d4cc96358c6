// getPolyPlanerExtru: the faces of a solid or region bounded by planes and straight edges, for
// the export's box, extrusion and planar-patch writers.
#pragma once

#include <arx/arx.h>

#include <optional>
#include <vector>

namespace toviqelout {

// One outline per face, in world coordinates, running counter-clockwise about the face's
// outward normal (a region's normal). A face with holes is one outline: see outline.h.
using FaceOutlines = std::vector<std::vector<AcGePoint3d>>;

// The faces in the body's order; nothing when the entity is neither a solid nor a region, is
// empty, or has a curved face or a curved edge.
std::optional<FaceOutlines> planarFaces(const AcDbEntity& entity);

// The function: its one argument is the entity's handle as text. The reply: group 90 with the
// face count minus one; then for each face group 90 with its last vertex index (point count
// minus one) and its points, type 5009. Empty for anything planarFaces refuses and for a handle
// that names no entity.
int getPolyPlanerExtru();

} // namespace toviqelout
