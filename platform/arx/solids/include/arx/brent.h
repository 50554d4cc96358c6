// The boundary-representation walk: a body (AcBrBrep) and its faces, loops, edges and vertices.
// A brep set from a solid or region is a snapshot of its boundary at that moment; every object
// reached from it shares the snapshot and stays valid after the entity is closed or changed.
// Points and curves are in world coordinates.
#pragma once

#include "arx/brgbl.h"
#include "arx/gegbl.h"
#include "arx/rxobject.h"

#include <memory>

class AcDbEntity;
class AcGePoint3d;
class AcBrBrep;
class AcBrVertex;

namespace acbr {
struct Snapshot;
struct Access;
} // namespace acbr

class AcBrEntity : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcBrEntity);

    // True until the object is set (a brep from an entity, the others by a traverser).
    bool isNull() const { return snapshot_ == nullptr; }
    // The same topology of the same snapshot.
    bool isEqualTo(const AcRxObject* other) const;
    // The body this object belongs to.
    AcBr::ErrorStatus getBrep(AcBrBrep& brep) const;

protected:
    AcBrEntity() = default;

    std::shared_ptr<const acbr::Snapshot> snapshot_;
    int index_ = -1; // the face, edge or vertex; the face of a loop
    int sub_ = -1;   // the loop within its face

    friend struct acbr::Access;
};

class AcBrBrep : public AcBrEntity {
public:
    ACRX_DECLARE_MEMBERS(AcBrBrep);
    AcBrBrep() = default;

    // The boundary of an AcDb3dSolid or AcDbRegion: eWrongObjectType for any other entity,
    // eMissingTopology for an empty one; the brep is left as it was on failure.
    AcBr::ErrorStatus set(const AcDbEntity& entity);

    friend struct acbr::Access;
};

class AcBrFace : public AcBrEntity {
public:
    ACRX_DECLARE_MEMBERS(AcBrFace);
    AcBrFace() = default;

    // kPlane, kCylinder, kCone, kSphere, kTorus, or kNurbSurface for a free-form face.
    AcBr::ErrorStatus getSurfaceType(AcGe::EntityId& type) const;

    friend struct acbr::Access;
};

class AcBrLoop : public AcBrEntity {
public:
    ACRX_DECLARE_MEMBERS(AcBrLoop);
    AcBrLoop() = default;

    // kLoopExterior or kLoopInterior on a plane; on a curved face the loops that a seam of
    // the surface separates (the two rims of a cylinder's side) are kLoopWinding.
    AcBr::ErrorStatus getType(AcBr::LoopType& type) const;

    friend struct acbr::Access;
};

class AcBrEdge : public AcBrEntity {
public:
    ACRX_DECLARE_MEMBERS(AcBrEdge);
    AcBrEdge() = default;

    // kLineSeg3d, kCircArc3d (a whole circle too), kEllipArc3d or kNurbCurve3d.
    AcBr::ErrorStatus getCurveType(AcGe::EntityId& type) const;
    // The vertices at the start and end of the edge's own curve; both the same for a closed edge.
    AcBr::ErrorStatus getVertex1(AcBrVertex& vertex) const;
    AcBr::ErrorStatus getVertex2(AcBrVertex& vertex) const;

    friend struct acbr::Access;
};

class AcBrVertex : public AcBrEntity {
public:
    ACRX_DECLARE_MEMBERS(AcBrVertex);
    AcBrVertex() = default;

    AcBr::ErrorStatus getPoint(AcGePoint3d& point) const;

    friend struct acbr::Access;
};
