// The solid classes and the boundary walk in the host's class dictionary, where modules look
// for them at their start.
#include "arx/brhost.h"
#include "arx/brtrav.h"
#include "arx/dbregion.h"
#include "arx/dbsol3d.h"
#include "arx/dbsurf.h"
#include "arx/edhost.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

void qelhost::registerSolidClasses() {
#if defined(__GLIBC__)
    // The kernel's shapes are a great many small blocks, freed in long runs when a drawing
    // closes. With the allocator's fast bins, each free that reaches a large free block sweeps
    // them all up again (a tenth of a large import went there); without them a small block
    // goes back at once, and the per-thread caches still serve the small allocations.
    static const bool tuned = mallopt(M_MXFAST, 0) == 1;
    (void)tuned;
#endif
    static AcRxClass* (*const kClasses[])() = {
        AcDb3dSolid::desc,
        AcDbRegion::desc,
        AcDbSurface::desc,
        AcBrEntity::desc,
        AcBrBrep::desc,
        AcBrFace::desc,
        AcBrLoop::desc,
        AcBrEdge::desc,
        AcBrVertex::desc,
        AcBrTraverser::desc,
        AcBrBrepFaceTraverser::desc,
        AcBrFaceLoopTraverser::desc,
        AcBrLoopEdgeTraverser::desc,
        AcBrLoopVertexTraverser::desc,
    };
    for (auto desc : kClasses)
        addClassToDictionary(desc());
}
