// The solid classes and the boundary walk in the host's class dictionary, where modules look
// for them at their start.
#include "arx/brhost.h"
#include "arx/brtrav.h"
#include "arx/dbregion.h"
#include "arx/dbsol3d.h"
#include "arx/dbsurf.h"
#include "arx/edhost.h"

void qelhost::registerSolidClasses() {
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
