// The kind of an entity by its tag and its class. Solids, block references, points, polyface
// meshes and texts have tests of their own that aren't in this build: they give no object.
#include "export/entity_dispatch.h"

#include "export/object_types.h"
#include "records/member_record.h"

#include <arx/dbregion.h>

#include <cmath>

namespace {

constexpr int kPointsetCode = 20;
constexpr double kThick = 1e-5;

bool thick(double thickness) {
    return std::fabs(thickness) >= kThick;
}

// The code the entity's class gives, or -1.
int codeOfClass(AcDbEntity* entity) {
    if (AcDbSpline::cast(entity)) return 5;
    if (AcDbEllipse::cast(entity)) return 2;
    if (auto* circle = AcDbCircle::cast(entity)) return thick(circle->thickness()) ? 42 : 1;
    if (auto* arc = AcDbArc::cast(entity)) return thick(arc->thickness()) ? 47 : 1;
    if (auto* line = AcDbLine::cast(entity)) return thick(line->thickness()) ? 43 : 0;
    if (auto* polyline = AcDbPolyline::cast(entity)) return thick(polyline->thickness()) ? 44 : 3;
    if (auto* polyline = AcDb2dPolyline::cast(entity)) return thick(polyline->thickness()) ? 44 : 3;
    if (auto* polyline = AcDb3dPolyline::cast(entity)) return polyline->polyType() != 0 ? 5 : 3;
    if (AcDbFace::cast(entity)) return 40;
    if (AcDbRegion::cast(entity)) return 41;
    // A negative thickness counts as none for a trace.
    if (auto* trace = AcDbTrace::cast(entity)) return trace->thickness() < kThick ? 48 : 49;
    if (AcDbPolygonMesh::cast(entity)) return 36;
    if (AcDbSolid::cast(entity)) return 45;
    return -1;
}

} // namespace

bool classifyEntity(QelOutObject&, int& type, AcDbObjectId id) {
    ads_name name;
    QelMemberRecord tag;
    if (acdbGetAdsName(name, id) == Acad::eOk && tag.Load(name) &&
        tag.memberType != kPointsetCode) {
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
