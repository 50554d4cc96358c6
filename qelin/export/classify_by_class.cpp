// The second step: the entity's class. Curves with a thickness leave as patches or pipes, a
// polyface mesh in one plane as a face, a point of a point set once for the set, and a solid as
// the primitive its geometry shows. Each test opens the entity again by its class; what a failed
// second open means differs by class, as noted where it happens.
#include "export/classify_steps.h"
#include "export/group_members.h"
#include "export/recognise_solids.h"
#include "import/class_table.h"
#include "objectfile/type_codes.h"
#include "records/xrecords.h"

#include <arx/aced.h>
#include <arx/dbblkref.h>
#include <arx/dbmesh.h>
#include <arx/dbregion.h>
#include <arx/dbsol3d.h>

#include <cmath>
#include <vector>

namespace {

using namespace QelClassify;

constexpr double kThick = 1e-5;
constexpr double kOffPlane = 1e-6;

bool thick(double thickness) {
    return std::fabs(thickness) >= kThick;
}

template <class T>
bool isKind(AcRxClass* cls) {
    return cls->isDerivedFrom(T::desc());
}

// The entity opened again as T and asked; fallback when that open fails.
template <class T, class Ask>
int reopened(const AcDbObjectId& id, int fallback, Ask ask) {
    T* typed = nullptr;
    if (acdbOpenObject(typed, id, AcDb::kForRead) != Acad::eOk) return fallback;
    const int code = ask(*typed);
    typed->close();
    return code;
}

// A curve with a thickness is a surface; one that won't open again stays thin unless told
// otherwise.
template <class T>
int curve(const AcDbObjectId& id, int thin, int thickCode, int unopened) {
    return reopened<T>(id, unopened,
                       [&](const T& c) -> int { return thick(c.thickness()) ? thickCode : thin; });
}
template <class T>
int curve(const AcDbObjectId& id, int thin, int thickCode) {
    return curve<T>(id, thin, thickCode, thin);
}

// Whether the drawing's last block holds anything: that, not the block this reference inserts,
// decides whether a block reference is worth telling the user about.
int blockReference() {
    AcDbBlockTable* table = nullptr;
    if (acdbHostApplicationServices()->workingDatabase()->getBlockTable(table, AcDb::kForRead) !=
        Acad::eOk)
        return NoObject;
    AcDbBlockTable::Iterator* it = nullptr;
    AcDbObjectId last;
    if (table->newIterator(it) == Acad::eOk) {
        for (; !it->done(); it->step())
            it->getRecordId(last);
        delete it;
    }
    table->close();
    AcDbBlockTableRecord* block = nullptr;
    if (last.isNull() || acdbOpenObject(block, last, AcDb::kForRead) != Acad::eOk) return NoObject;
    AcDbObjectIdArray references;
    if (const Acad::ErrorStatus es = block->getBlockReferenceIds(references, true);
        es != Acad::eOk) {
        CString text;
        text.Format(L"ARX ERROR: %s", acadErrorStatusText(es));
        acedAlert(text);
    }
    bool hasEntities = false;
    AcDbBlockTableRecordIterator* entities = nullptr;
    if (block->newIterator(entities) == Acad::eOk) {
        hasEntities = !entities->done();
        delete entities;
    }
    block->close();
    if (hasEntities) return QelCode::BlockRef;
    acutPrintf(L"\nThere are no entities within this block.");
    return NoObject;
}

// The extended data text that marks the one point standing for its point set.
bool hasPointMark(const AcDbObject& object) {
    resbuf* data = object.xData(QEL_XDATA_APP);
    bool marked = false;
    for (resbuf* item = data; item && !marked; item = item->rbnext)
        marked = item->restype == 1000 && item->resval.rstring &&
                 ::wcscasecmp(item->resval.rstring, QelClassOf(QelCode::Pointset).xdata) == 0;
    acutRelRb(data);
    return marked;
}

// A grouped point is one of a point set, which leaves once, from its marked first point.
int point(const AcDbObjectId& id) {
    AcDbObjectIdArray members;
    if (groupMembers(id, members) == 0) return QelCode::Vertex3d;
    const bool marked =
        reopened<AcDbPoint>(id, 0, [](const AcDbPoint& p) -> int { return hasPointMark(p); });
    return marked && members[0] == id ? QelCode::Pointset : NoObject;
}

// A polyface mesh whose vertices lie in one plane, and whose faces are one polygon's fan in
// vertex order, is a face; anything else a triangle mesh.
int polyFaceMesh(const AcDbPolyFaceMesh& mesh) {
    std::vector<AcGePoint3d> vertices;
    std::vector<const AcDbFaceRecord*> faces;
    AcDbObjectIterator* it = mesh.vertexIterator();
    for (; it && !it->done(); it->step()) {
        if (const auto* vertex = AcDbPolyFaceMeshVertex::cast(it->entity()))
            vertices.push_back(vertex->position());
        else if (const auto* face = AcDbFaceRecord::cast(it->entity()))
            faces.push_back(face);
    }
    delete it;
    auto corner = [&](const AcDbFaceRecord& face, Adesk::UInt16 place, AcGePoint3d& at) {
        Adesk::Int16 number = 0;
        if (face.getVertexAt(place, number) != Acad::eOk) return false;
        const int index = std::abs(number) - 1;
        if (index < 0 || index >= static_cast<int>(vertices.size())) return false;
        at = vertices[index];
        return true;
    };
    bool planeFound = false;
    AcGePlane plane;
    for (const AcDbFaceRecord* face : faces) {
        AcGePoint3d p[3];
        if (!corner(*face, 0, p[0]) || !corner(*face, 1, p[1]) || !corner(*face, 2, p[2])) continue;
        AcGeVector3d normal = (p[1] - p[0]).normal().crossProduct((p[2] - p[0]).normal());
        normal.normalize(AcGeContext::gTol);
        if (normal.isZeroLength()) continue;
        plane = AcGePlane(p[0], normal);
        planeFound = true;
        break;
    }
    if (!planeFound) return QelCode::TriMesh;
    for (const AcGePoint3d& v : vertices)
        if (std::fabs(plane.signedDistanceTo(v)) > kOffPlane) return QelCode::TriMesh;
    if (faces.size() == 1) return QelCode::Poly3DFace;
    Adesk::Int16 n[4] = {0, 0, 0, 0};
    for (Adesk::UInt16 k = 0; k < 4; ++k)
        faces.front()->getVertexAt(k, n[k]);
    const int a = std::abs(n[0]), b = std::abs(n[1]), c = std::abs(n[2]), d = std::abs(n[3]);
    if (a != 1) return QelCode::TriMesh;
    return b + 1 == c && c + 1 == d ? QelCode::Poly3DFace : QelCode::TriMesh;
}

// Solids of revolution first, then balls, then rings; an elbow must be confirmed as a part of a
// ring. The ring test asks the companion, so it is asked once; an elbow's flat ends are known
// from its explode already.
int solid(const AcDbObjectId& id, const QelMemberRecord* tag) {
    return reopened<AcDb3dSolid>(id, GoOn, [&](const AcDb3dSolid& s) -> int {
        const int revolved = recogniseRevolved(s, tag);
        if (revolved >= 0 && revolved != QelCode::Elbow) return revolved;
        int ring = -1;
        if (revolved == QelCode::Elbow) {
            ring = recogniseTorus(s, id, tag, true);
            if (ring == 2) return QelCode::Elbow;
        }
        if (recogniseSphere(s, tag)) return QelCode::Sphere;
        if (ring < 0) ring = recogniseTorus(s, id, tag);
        switch (ring) {
        case 1:
            return QelCode::Torus;
        case 2:
            return QelCode::Elbow;
        default:
            return GoOn;
        }
    });
}

} // namespace

int QelClassify::byClass(const AcDbObjectId& id, const QelMemberRecord* tag) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return GoOn;
    AcRxClass* cls = entity->isA();
    entity->close();
    if (cls == AcDbBlockReference::desc()) return blockReference();
    if (isKind<AcDbSpline>(cls)) return QelCode::BSplineCurve3d;
    if (isKind<AcDbEllipse>(cls)) return QelCode::EllipticArc3d;
    if (isKind<AcDbCircle>(cls))
        return curve<AcDbCircle>(id, QelCode::CircularArc3d, QelCode::Pipe);
    // An arc that won't open again leaves the answer to its tag.
    if (isKind<AcDbArc>(cls))
        return curve<AcDbArc>(id, QelCode::CircularArc3d, QelCode::CircularArc3dPatch, Unread);
    if (isKind<AcDbLine>(cls)) return curve<AcDbLine>(id, QelCode::Line3d, QelCode::LinePatch);
    if (isKind<AcDbPolyline>(cls))
        return curve<AcDbPolyline>(id, QelCode::Polyline3d, QelCode::PolylinePatch);
    if (isKind<AcDb2dPolyline>(cls))
        return curve<AcDb2dPolyline>(id, QelCode::Polyline3d, QelCode::PolylinePatch);
    if (isKind<AcDb3dPolyline>(cls))
        return reopened<AcDb3dPolyline>(id, GoOn, [](const AcDb3dPolyline& p) -> int {
            return p.polyType() != 0 ? QelCode::BSplineCurve3d : QelCode::Polyline3d;
        });
    if (isKind<AcDbFace>(cls)) return QelCode::Poly3DFace;
    if (isKind<AcDbRegion>(cls)) return QelCode::Region;
    // A negative thickness counts as none for a trace.
    if (isKind<AcDbTrace>(cls))
        return reopened<AcDbTrace>(id, QelCode::AcDbTraceObj, [](const AcDbTrace& t) -> int {
            return t.thickness() < kThick ? QelCode::AcDbTraceObj : QelCode::AcDbTraceObjExtruPatch;
        });
    if (isKind<AcDbPoint>(cls)) return point(id);
    if (isKind<AcDbPolyFaceMesh>(cls)) return reopened<AcDbPolyFaceMesh>(id, GoOn, polyFaceMesh);
    if (isKind<AcDbPolygonMesh>(cls)) return QelCode::TriMesh;
    if (isKind<AcDbSolid>(cls)) return QelCode::AcDbSolidObj;
    if (isKind<AcDb3dSolid>(cls)) return solid(id, tag);
    return GoOn;
}
