// A planar face with holes as one closed outline, for readers that take one run of points per
// face.
#pragma once

#include <arx/arx.h>

#include <optional>
#include <vector>

namespace toviqelout {

// The outer loop (counter-clockwise about the face's normal) with each hole (clockwise) joined
// in through a bridge: a straight cut inside the face from a corner of the outline to a corner
// of the hole, walked there and back. The outline reads: outer corners up to the bridge corner
// A, the hole's corners from the bridge corner B round to B again, then A again and the rest
// of the outer corners. Each hole adds its corner count plus two points; the shoelace area of
// the outline is the face's area. Bridges are the shortest cuts that cross no edge, holes being
// joined from the one reaching furthest along the face's first axis. Nothing for an outer loop
// of fewer than three corners or when no bridge is found.
std::optional<std::vector<AcGePoint3d>>
joinedOutline(const std::vector<AcGePoint3d>& outer,
              const std::vector<std::vector<AcGePoint3d>>& holes);

} // namespace toviqelout
