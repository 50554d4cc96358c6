// The kind of an entity by its tag and its class. Solids, block references, points, polyface
// meshes and texts have tests of their own that aren't in this build: they give no object.
#include "export/entity_dispatch.h"

#include "export/object_types.h"
#include "records/member_record.h"

#include <arx/dbregion.h>

#include <cmath>

namespace {

constexpr double kThick = 1e-5;

bool thick(double thickness) {
    return std::fabs(thickness) >= kThick;
}

// The code the entity's class gives, or -1.
int codeOfClass(AcDbEntity* entity) {
    if (AcDbSpline::cast(entity)) return QelCode::BSplineCurve3d;
    if (AcDbEllipse::cast(entity)) return QelCode::EllipticArc3d;
    if (auto* circle = AcDbCircle::cast(entity))
        return thick(circle->thickness()) ? QelCode::Pipe : QelCode::CircularArc3d;
    if (auto* arc = AcDbArc::cast(entity))
        return thick(arc->thickness()) ? QelCode::CircularArc3dPatch : QelCode::CircularArc3d;
    if (auto* line = AcDbLine::cast(entity))
        return thick(line->thickness()) ? QelCode::LinePatch : QelCode::Line3d;
    if (auto* polyline = AcDbPolyline::cast(entity))
        return thick(polyline->thickness()) ? QelCode::PolylinePatch : QelCode::Polyline3d;
    if (auto* polyline = AcDb2dPolyline::cast(entity))
        return thick(polyline->thickness()) ? QelCode::PolylinePatch : QelCode::Polyline3d;
    if (auto* polyline = AcDb3dPolyline::cast(entity))
        return polyline->polyType() != 0 ? QelCode::BSplineCurve3d : QelCode::Polyline3d;
    if (AcDbFace::cast(entity)) return QelCode::Poly3DFace;
    if (AcDbRegion::cast(entity)) return QelCode::Region;
    // A negative thickness counts as none for a trace.
    if (auto* trace = AcDbTrace::cast(entity))
        return trace->thickness() < kThick ? QelCode::AcDbTraceObj
                                           : QelCode::AcDbTraceObjExtruPatch;
    if (AcDbPolygonMesh::cast(entity)) return QelCode::TriMesh;
    if (AcDbSolid::cast(entity)) return QelCode::AcDbSolidObj;
    return QelCode::NoCode;
}

} // namespace

bool classifyEntity(QelOutObject&, int& type, AcDbObjectId id) {
    ads_name name;
    QelMemberRecord tag;
    if (acdbGetAdsName(name, id) == Acad::eOk && tag.Load(name) &&
        tag.memberType != QelCode::Pointset) {
        const QelObjectTypeRow* row = QelTypeRow(tag.memberType);
        if (row && row->tagRule == QelTagRule::TagDecides) {
            type = tag.memberType;
            return true;
        }
    }
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    type = codeOfClass(entity);
    entity->close();
    return type >= 0;
}
