// Traversers over the faces of a body, the loops of a face and the edges and vertices of a loop.
#include "../../src/db/rxdefine.h"
#include "arx/brtrav.h"
#include "snapshot.h"

ACRX_DEFINE_MEMBERS(AcBrTraverser, AcRxObject, nullptr)
ACRX_DEFINE_MEMBERS(AcBrBrepFaceTraverser, AcBrTraverser, nullptr)
ACRX_DEFINE_MEMBERS(AcBrFaceLoopTraverser, AcBrTraverser, nullptr)
ACRX_DEFINE_MEMBERS(AcBrLoopEdgeTraverser, AcBrTraverser, nullptr)
ACRX_DEFINE_MEMBERS(AcBrLoopVertexTraverser, AcBrTraverser, nullptr)

using acbr::Access;

namespace {

const arxsolids::BrepLoop& loopOf(const acbr::Snapshot& snapshot, int face, int loop) {
    return snapshot.brep.faces[face].loops[loop];
}

} // namespace

void AcBrTraverser::start(std::shared_ptr<const acbr::Snapshot> snapshot, int count) {
    snapshot_ = std::move(snapshot);
    count_ = count;
    position_ = 0;
}

AcBr::ErrorStatus AcBrTraverser::current() const {
    if (isNull()) return AcBr::eUninitialisedObject;
    return done() ? AcBr::eNotApplicable : AcBr::eOk;
}

AcBr::ErrorStatus AcBrTraverser::next() {
    const AcBr::ErrorStatus status = current();
    if (status == AcBr::eOk) ++position_;
    return status;
}

AcBr::ErrorStatus AcBrTraverser::restart() {
    if (isNull()) return AcBr::eUninitialisedObject;
    position_ = 0;
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrBrepFaceTraverser::setBrep(const AcBrBrep& brep) {
    if (brep.isNull()) return AcBr::eUninitialisedObject;
    const auto& snapshot = Access::snapshot(brep);
    start(snapshot, int(snapshot->brep.faces.size()));
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrBrepFaceTraverser::getFace(AcBrFace& face) const {
    if (AcBr::ErrorStatus status = current(); status != AcBr::eOk) return status;
    face = Access::make<AcBrFace>(snapshot_, position_);
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrFaceLoopTraverser::setFace(const AcBrFace& face) {
    if (face.isNull()) return AcBr::eUninitialisedObject;
    const auto& snapshot = Access::snapshot(face);
    face_ = Access::index(face);
    start(snapshot, int(snapshot->brep.faces[face_].loops.size()));
    return count_ == 0 ? AcBr::eDegenerateTopology : AcBr::eOk;
}

AcBr::ErrorStatus AcBrFaceLoopTraverser::getLoop(AcBrLoop& loop) const {
    if (AcBr::ErrorStatus status = current(); status != AcBr::eOk) return status;
    loop = Access::make<AcBrLoop>(snapshot_, face_, position_);
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrLoopEdgeTraverser::setLoop(const AcBrLoop& loop) {
    if (loop.isNull()) return AcBr::eUninitialisedObject;
    const auto& snapshot = Access::snapshot(loop);
    face_ = Access::index(loop);
    loop_ = Access::sub(loop);
    start(snapshot, int(loopOf(*snapshot, face_, loop_).coedges.size()));
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrLoopEdgeTraverser::getEdge(AcBrEdge& edge) const {
    if (AcBr::ErrorStatus status = current(); status != AcBr::eOk) return status;
    edge =
        Access::make<AcBrEdge>(snapshot_, loopOf(*snapshot_, face_, loop_).coedges[position_].edge);
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrLoopEdgeTraverser::getEdgeOrientToLoop(Adesk::Boolean& orient) const {
    if (AcBr::ErrorStatus status = current(); status != AcBr::eOk) return status;
    orient = !loopOf(*snapshot_, face_, loop_).coedges[position_].reversed;
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrLoopVertexTraverser::setLoop(const AcBrLoop& loop) {
    if (loop.isNull()) return AcBr::eUninitialisedObject;
    const auto& snapshot = Access::snapshot(loop);
    face_ = Access::index(loop);
    loop_ = Access::sub(loop);
    start(snapshot, int(loopOf(*snapshot, face_, loop_).vertices.size()));
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrLoopVertexTraverser::getVertex(AcBrVertex& vertex) const {
    if (AcBr::ErrorStatus status = current(); status != AcBr::eOk) return status;
    vertex =
        Access::make<AcBrVertex>(snapshot_, loopOf(*snapshot_, face_, loop_).vertices[position_]);
    return AcBr::eOk;
}
