// Shared by the two ways back from a boundary description: the general rebuild (faces made one
// by one, sewn, checked and healed where needed) and the direct one (frombrep_direct.cpp).
#pragma once

#include "internal.h"

#include <Geom_Surface.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Vertex.hxx>

#include <vector>

namespace arxsolids {

// The kernel's surface for a description; null when the description is degenerate.
Handle(Geom_Surface) surfaceOf(const SurfaceDesc& d);

// The vertices and edges of a boundary, one kernel shape each, in the description's order; a
// closed edge starts at its vertex. eInvalidInput for an edge that is not one piece of curve
// between vertices of the description.
Status buildEdges(const Brep& brep, std::vector<TopoDS_Vertex>& vertices,
                  std::vector<TopoDS_Edge>& edges);

// The solid of a boundary built straight from it, each edge laid on the faces it bounds
// exactly: no sewing and no healing. Only for boundaries of the kinds that allow it (planes
// bounded by lines and circles, bands of revolution between whole circles, a cone closed at its
// apex, a whole sphere or torus) that hold together: every edge on its faces, every loop
// running its face's way, every edge bounding two faces, once each way. Null otherwise (and on
// any failure, and for a body without volume), for the general rebuild. `volume` is the solid's,
// worked out from the faces in closed form: negative when they turn inward.
TopoDS_Shape directSolidOf(const Brep& brep, double& volume);

} // namespace arxsolids
