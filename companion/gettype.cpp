#include "gettype.h"

#include "entity.h"
#include "reply.h"

#include <arx/brep.h>
#include <arx/editor.h>
#include <arx/solids.h>

#include <set>

namespace toviqelout {

SolidType solidType(const AcDbEntity& entity) {
    AcBrBrep brep;
    AcBrBrepFaceTraverser faces;
    if (AcDb3dSolid::cast(&entity) == nullptr || brep.set(entity) != AcBr::eOk ||
        faces.setBrep(brep) != AcBr::eOk)
        return kNotASolid;
    std::set<AcGe::EntityId> curved;
    for (; !faces.done(); faces.next()) {
        AcBrFace face;
        AcGe::EntityId kind = AcGe::kNurbSurface;
        if (faces.getFace(face) != AcBr::eOk || face.getSurfaceType(kind) != AcBr::eOk)
            return kNotASolid;
        if (kind != AcGe::kPlane) curved.insert(kind);
    }
    if (curved.empty()) return kPlanar;
    if (curved.size() > 1) return kOtherCurved;
    switch (*curved.begin()) {
    case AcGe::kSphere:
        return kSpherical;
    case AcGe::kTorus:
        return kToroidal;
    default:
        return kOtherCurved;
    }
}

int getType() {
    EntityByHandle entity(acedGetArgs());
    if (!entity) return replyEmpty();
    Reply reply;
    reply.integer(solidType(*entity.get()));
    return reply.send();
}

} // namespace toviqelout
