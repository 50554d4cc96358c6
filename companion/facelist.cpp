#include "facelist.h"

#include "entity.h"
#include "outline.h"
#include "reply.h"

#include <arx/brep.h>
#include <arx/editor.h>

namespace toviqelout {

namespace {

// The corners of a loop whose edges are all straight, in the order the loop runs; nothing
// when an edge is curved.
std::optional<std::vector<AcGePoint3d>> straightLoop(const AcBrLoop& loop) {
    AcBrLoopEdgeTraverser edges;
    if (edges.setLoop(loop) != AcBr::eOk) return std::nullopt;
    for (; !edges.done(); edges.next()) {
        AcBrEdge edge;
        AcGe::EntityId kind = AcGe::kNurbCurve3d;
        if (edges.getEdge(edge) != AcBr::eOk || edge.getCurveType(kind) != AcBr::eOk ||
            kind != AcGe::kLineSeg3d)
            return std::nullopt;
    }
    AcBrLoopVertexTraverser vertices;
    if (vertices.setLoop(loop) != AcBr::eOk) return std::nullopt;
    std::vector<AcGePoint3d> points;
    for (; !vertices.done(); vertices.next()) {
        AcBrVertex vertex;
        AcGePoint3d p;
        if (vertices.getVertex(vertex) != AcBr::eOk || vertex.getPoint(p) != AcBr::eOk)
            return std::nullopt;
        points.push_back(p);
    }
    return points;
}

// The outline of a planar face: its outer loop with its holes joined in.
std::optional<std::vector<AcGePoint3d>> faceOutline(const AcBrFace& face) {
    AcGe::EntityId kind = AcGe::kNurbSurface;
    if (face.getSurfaceType(kind) != AcBr::eOk || kind != AcGe::kPlane) return std::nullopt;
    AcBrFaceLoopTraverser loops;
    if (loops.setFace(face) != AcBr::eOk) return std::nullopt;
    std::vector<AcGePoint3d> outer;
    std::vector<std::vector<AcGePoint3d>> holes;
    for (; !loops.done(); loops.next()) {
        AcBrLoop loop;
        AcBr::LoopType type = AcBr::kLoopUnclassified;
        if (loops.getLoop(loop) != AcBr::eOk || loop.getType(type) != AcBr::eOk)
            return std::nullopt;
        std::optional<std::vector<AcGePoint3d>> points = straightLoop(loop);
        if (!points) return std::nullopt;
        if (type == AcBr::kLoopExterior && outer.empty())
            outer = std::move(*points);
        else if (type == AcBr::kLoopInterior)
            holes.push_back(std::move(*points));
        else
            return std::nullopt;
    }
    return joinedOutline(outer, holes);
}

} // namespace

std::optional<FaceOutlines> planarFaces(const AcDbEntity& entity) {
    AcBrBrep brep;
    AcBrBrepFaceTraverser faces;
    if (brep.set(entity) != AcBr::eOk || faces.setBrep(brep) != AcBr::eOk) return std::nullopt;
    FaceOutlines out;
    for (; !faces.done(); faces.next()) {
        AcBrFace face;
        if (faces.getFace(face) != AcBr::eOk) return std::nullopt;
        std::optional<std::vector<AcGePoint3d>> outline = faceOutline(face);
        if (!outline) return std::nullopt;
        out.push_back(std::move(*outline));
    }
    return out;
}

int getPolyPlanerExtru() {
    EntityByHandle entity(acedGetArgs());
    if (!entity) return replyEmpty();
    std::optional<FaceOutlines> faces = planarFaces(*entity.get());
    if (!faces || faces->empty()) return replyEmpty();
    Reply reply;
    reply.integer(Adesk::Int32(faces->size()) - 1);
    for (const std::vector<AcGePoint3d>& face : *faces) {
        reply.integer(Adesk::Int32(face.size()) - 1);
        for (const AcGePoint3d& p : face)
            reply.point(p);
    }
    return reply.send();
}

} // namespace toviqelout
