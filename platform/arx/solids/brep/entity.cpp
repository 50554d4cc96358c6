// The body and its faces, loops, edges and vertices over the kernel's description.
#include "../../src/db/rxdefine.h"
#include "arx/brent.h"
#include "arx/dbregion.h"
#include "arx/dbsol3d.h"
#include "snapshot.h"

#include <type_traits>
#include <variant>

ACRX_DEFINE_MEMBERS(AcBrEntity, AcRxObject, nullptr)
ACRX_DEFINE_MEMBERS(AcBrBrep, AcBrEntity, nullptr)
ACRX_DEFINE_MEMBERS(AcBrFace, AcBrEntity, nullptr)
ACRX_DEFINE_MEMBERS(AcBrLoop, AcBrEntity, nullptr)
ACRX_DEFINE_MEMBERS(AcBrEdge, AcBrEntity, nullptr)
ACRX_DEFINE_MEMBERS(AcBrVertex, AcBrEntity, nullptr)

using acbr::Access;
using arxsolids::SurfaceKind;

namespace {

template <class Body>
AcBr::ErrorStatus snapshotOf(const Body& body, AcBrBrep& brep) {
    if (body.isNull()) return AcBr::eMissingTopology;
    auto snapshot = std::make_shared<acbr::Snapshot>();
    snapshot->brep = body.brep();
    if (snapshot->brep.faces.empty()) return AcBr::eMissingTopology;
    Access::setSnapshot(brep, std::move(snapshot));
    return AcBr::eOk;
}

AcGe::EntityId surfaceType(SurfaceKind kind) {
    switch (kind) {
    case SurfaceKind::kPlane:
        return AcGe::kPlane;
    case SurfaceKind::kCylinder:
        return AcGe::kCylinder;
    case SurfaceKind::kCone:
        return AcGe::kCone;
    case SurfaceKind::kSphere:
        return AcGe::kSphere;
    case SurfaceKind::kTorus:
        return AcGe::kTorus;
    case SurfaceKind::kOther:
        break;
    }
    return AcGe::kNurbSurface;
}

AcGe::EntityId curveType(const arxsolids::Curve& curve) {
    return std::visit(
        [](const auto& c) {
            using T = std::decay_t<decltype(c)>;
            if constexpr (std::is_same_v<T, arxsolids::LineCurve>) return AcGe::kLineSeg3d;
            if constexpr (std::is_same_v<T, arxsolids::CircleCurve> ||
                          std::is_same_v<T, arxsolids::ArcCurve>)
                return AcGe::kCircArc3d;
            if constexpr (std::is_same_v<T, arxsolids::EllipseCurve>) return AcGe::kEllipArc3d;
            if constexpr (std::is_same_v<T, arxsolids::PolylineCurve> ||
                          std::is_same_v<T, arxsolids::Polyline3dCurve>)
                return AcGe::kPolyline3d;
            return AcGe::kNurbCurve3d;
        },
        curve);
}

} // namespace

bool AcBrEntity::isEqualTo(const AcRxObject* other) const {
    const AcBrEntity* that = AcBrEntity::cast(other);
    return that != nullptr && !isNull() && that->isA() == isA() && that->snapshot_ == snapshot_ &&
           that->index_ == index_ && that->sub_ == sub_;
}

AcBr::ErrorStatus AcBrEntity::getBrep(AcBrBrep& brep) const {
    if (isNull()) return AcBr::eUninitialisedObject;
    Access::setSnapshot(brep, snapshot_);
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrBrep::set(const AcDbEntity& entity) {
    if (const AcDb3dSolid* solid = AcDb3dSolid::cast(&entity))
        return snapshotOf(solid->body(), *this);
    if (const AcDbRegion* region = AcDbRegion::cast(&entity))
        return snapshotOf(region->body(), *this);
    return AcBr::eWrongObjectType;
}

AcBr::ErrorStatus AcBrFace::getSurfaceType(AcGe::EntityId& type) const {
    if (isNull()) return AcBr::eUninitialisedObject;
    type = surfaceType(snapshot_->brep.faces[index_].surface.kind);
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrLoop::getType(AcBr::LoopType& type) const {
    if (isNull()) return AcBr::eUninitialisedObject;
    const arxsolids::BrepFace& face = snapshot_->brep.faces[index_];
    if (!face.loops[sub_].outer) {
        type = AcBr::kLoopInterior;
        return AcBr::eOk;
    }
    // The outer boundary of a closed surface, cut by its seam into several loops.
    int outer = 0;
    for (const arxsolids::BrepLoop& loop : face.loops)
        outer += loop.outer ? 1 : 0;
    type = outer > 1 && face.surface.kind != SurfaceKind::kPlane ? AcBr::kLoopWinding
                                                                 : AcBr::kLoopExterior;
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrEdge::getCurveType(AcGe::EntityId& type) const {
    if (isNull()) return AcBr::eUninitialisedObject;
    type = curveType(snapshot_->brep.edges[index_].curve);
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrEdge::getVertex1(AcBrVertex& vertex) const {
    if (isNull()) return AcBr::eUninitialisedObject;
    vertex = Access::make<AcBrVertex>(snapshot_, snapshot_->brep.edges[index_].startVertex);
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrEdge::getVertex2(AcBrVertex& vertex) const {
    if (isNull()) return AcBr::eUninitialisedObject;
    vertex = Access::make<AcBrVertex>(snapshot_, snapshot_->brep.edges[index_].endVertex);
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrVertex::getPoint(AcGePoint3d& point) const {
    if (isNull()) return AcBr::eUninitialisedObject;
    const arxsolids::Vec3& p = snapshot_->brep.vertices[index_].point;
    point.set(p.x, p.y, p.z);
    return AcBr::eOk;
}
