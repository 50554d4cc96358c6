// Reducer: a polygon mesh of 37 by 2 vertices between a circle of radius0 at the origin and one
// of radius1 around the far centre, open at both ends. The far centre lies at height along
// "direction"; both circles stay parallel to the local XY plane, so a direction other than Z
// makes an eccentric reducer. Its axis is drawn as a centre line in the reducer's group.
#include "creators/elbows.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "creators/last_entity.h"
#include "foundation/error_report.h"
#include "foundation/state_guards.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"
#include "records/xrecords.h"

#include <arx/aced.h>
#include <arx/dbmesh.h>

#include <cmath>

namespace {

// 36 points on each circle, ten degrees apart as single precision has it.
constexpr int kCirclePoints = 36;
constexpr double kCircleStep = 0.1745329350233078;

struct ReducerSizes {
    double radius0 = 0.0;
    double radius1 = 0.0;
    double height = 0.0;
};

// A size missing or not above 1e-5: the message, and what the creator returns for it.
struct SizeRule {
    const char* name;
    double ReducerSizes::*field;
    const wchar_t* missing;
    const wchar_t* tooSmall;
    QelCreated tooSmallResult;
};

// The results of sizes too small differ from size to size; so they have always been.
const SizeRule kSizes[] = {
    {"radius0", &ReducerSizes::radius0, L"\nError getting radius0 of Reducer.",
     L"\nError, radius0 of reducer less than zero", QelCreated::FailedReported},
    {"radius1", &ReducerSizes::radius1, L"\nError getting radius1 of Reducer.",
     L"\nError, radius1 of reducer less than zero", QelCreated::Failed},
    {"height", &ReducerSizes::height, L"\nError getting height of Reducer.",
     L"\nError, height of reducer less than zero", QelCreated::FailedReported},
};

// The far centre: height along the direction, through a UCS whose Z axis is the direction.
AcGePoint3d farCentre(const double direction[3], double height) {
    const ads_point origin = {0.0, 0.0, 0.0};
    QelUcsZAxis(origin, direction);
    const ads_point up = {0.0, 0.0, height};
    ads_point centre;
    QelUcsToWorld(up, centre);
    QelUcsWorld();
    return AcGePoint3d(centre[0], centre[1], centre[2]);
}

// The 74 vertices: near and far point in turn around the circles, the first pair again at the
// end. The far circle is taken through a UCS moved to the far centre without turning, which
// stays current until the next object.
AcGePoint3dArray meshPoints(const ReducerSizes& s, const AcGePoint3d& far) {
    AcGePoint3d near[kCirclePoints], farRing[kCirclePoints];
    double b = 0.0;
    for (int i = 0; i < kCirclePoints; ++i, b += kCircleStep)
        near[i].set(std::sin(b) * s.radius0, std::cos(b) * s.radius0, 0.0);
    const ads_point farOrigin = {far.x, far.y, far.z};
    QelUcsOrigin(farOrigin);
    b = 0.0;
    for (int i = 0; i < kCirclePoints; ++i, b += kCircleStep) {
        const ads_point local = {std::sin(b) * s.radius1, std::cos(b) * s.radius1, 0.0};
        ads_point world;
        QelUcsToWorld(local, world);
        farRing[i].set(world[0], world[1], world[2]);
    }
    AcGePoint3dArray points;
    for (int i = 0; i <= kCirclePoints; ++i) {
        points.append(near[i % kCirclePoints]);
        points.append(farRing[i % kCirclePoints]);
    }
    return points;
}

} // namespace

QelCreated CreateReducer(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                         const CString* filePath) {
    ReducerSizes s;
    for (const SizeRule& rule : kSizes)
        if (!QelRequireLength(object, rule.name, s.*rule.field, rule.missing))
            return QelCreated::Failed;
    for (const SizeRule& rule : kSizes)
        if (!(s.*rule.field > 1e-5)) {
            QelReportError(rule.tooSmall);
            return rule.tooSmallResult;
        }
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    double direction[3] = {0.0, 0.0, 1.0};
    QelReadDouble3(object, "direction", direction);

    const AcGePoint3d far = farCentre(direction, s.height);
    const AcGePoint3dArray points = meshPoints(s, far);
    auto* mesh = new AcDbPolygonMesh;
    mesh->setDatabaseDefaults();
    mesh->setMSize(kCirclePoints + 1);
    mesh->setNSize(2);
    if (AddToCurrentSpace(mesh) != Acad::eOk) {
        delete mesh;
        return QelCreated::Failed;
    }
    for (const AcGePoint3d& point : points) {
        auto* vertex = new AcDbPolygonMeshVertex;
        vertex->setPosition(point);
        vertex->setPropertiesFrom(mesh, true);
        if (mesh->appendVertex(vertex) == Acad::eOk)
            vertex->close();
        else
            delete vertex;
    }
    mesh->transformBy(translation);
    mesh->transformBy(rotation);
    ApplyImportTransform(mesh);
    ApplyColour(object, mesh);
    mesh->close();

    const QelClassRow& kind = QelClassOf(QelCode::Reducer);
    QelMemberRecord record;
    record.memberType = kind.code;
    record.length = s.height;
    record.radius0 = s.radius0;
    record.radius1 = s.radius1;
    record.centroid = 0.0;
    for (int i = 0; i < 3; ++i)
        record.direction[i] = direction[i];
    AcDbGroup* group =
        QelGroupAndTag(mesh, kind.groupName, kind.groupKey, record, objIndex, filePath, kind.xdata);
    AddCenterLine(object, AcGePoint3d::kOrigin, far, translation, rotation, objIndex, filePath);
    ads_name line;
    AcDbObjectId lineId;
    if (QelLastEntity(line) && acdbGetObjectId(lineId, line) == Acad::eOk)
        QelGroupAppend(group, lineId);
    ImportAnnotations(object, translation, rotation, group);
    QelCloseGroup(group);
    return QelCreated::Done;
}
