// What a picture of solids and regions needs from the kernel: their faces as triangles, and the
// edges that stay visible from a direction of view.
#pragma once

#include <arxsolids/region.h>
#include <arxsolids/solid.h>
#include <arxsolids/types.h>

#include <array>
#include <vector>

namespace arxsolids {

struct Triangle {
    std::array<Vec3, 3> corners; // counter-clockwise seen from outside (a region: its normal side)
    Vec3 normal;                 // unit
};

// The faces of the body as triangles, fine enough for a picture of the body alone (the chord
// error is a small fraction of its size). The body itself stays free of the facets.
// eNotApplicable for an empty body.
Status triangulate(const Solid& solid, std::vector<Triangle>& triangles);
Status triangulate(const Region& region, std::vector<Triangle>& triangles);

// A view: `toward` points from the model to the eye, `up` is the picture's up (not along
// `toward`). Picture coordinates: x to the right, y up, in model units.
struct ViewDirection {
    Vec3 toward{0, 0, 1};
    Vec3 up{0, 1, 0};
};

// The edges of all the bodies together that are seen from the view, hidden parts removed, as
// polylines in picture coordinates (z is 0). Outlines of curved faces count as edges.
Status visibleEdges(const std::vector<const Solid*>& solids,
                    const std::vector<const Region*>& regions, const ViewDirection& view,
                    std::vector<std::vector<Vec3>>& polylines);

} // namespace arxsolids
