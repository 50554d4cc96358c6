#include "creators/caps.h"
#include "creators/fittings.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/placement.h"
#include "creators/helpers/solid_parts.h"
#include "foundation/error_report.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"

#include <arx/dbdict.h>

namespace {

constexpr double kHalfTurn = 3.1415927410125732;
constexpr double kQuarterTurn = 1.5707963705062866;

struct ValveSizes {
    double coneRadius = 0.0;         // c
    double length = 0.0;             // L
    double stemLength = 0.0;         // S
    double handwheelRadius = 0.0;    // H
    double handwheelOffset = 0.0;    // F
    double stemThickness = 0.0;      // T
    double handwheelThickness = 0.0; // W
};

// The sizes in drawing units, in the order they are asked for.
const QelSizeRow<ValveSizes> kValveSizes[] = {
    {"coneRadius", &ValveSizes::coneRadius, L"\nError getting coneRadius of valve."},
    {"valveLength", &ValveSizes::length, L"\nError getting Length of valve."},
    {"stemLength", &ValveSizes::stemLength, L"\nError getting stemLength of valve."},
    {"handwheelRadius", &ValveSizes::handwheelRadius, L"\nError getting handwheelRadius of valve."},
    {"handwheelOffset", &ValveSizes::handwheelOffset, L"\nError getting handwheelOffset of valve."},
    {"stemThickness", &ValveSizes::stemThickness, L"\nError getting stemThickness.",
     "velmoraParam"},
    {"handwheelThickness", &ValveSizes::handwheelThickness, L"\nError getting handwheelThickness.",
     "velmoraParam"},
};

AcGeMatrix3d move(double x, double y, double z) {
    return AcGeMatrix3d::translation(AcGeVector3d(x, y, z));
}
AcGeMatrix3d aboutX(double angle) {
    return AcGeMatrix3d::rotation(angle, AcGeVector3d::kXAxis, AcGePoint3d::kOrigin);
}

// One part: the solid, its local placement and the failure texts of its builder.
struct ValvePart {
    int index; // partIndex of the record
    AcDb3dSolid* solid;
    AcGeMatrix3d local;
    QelPartTexts texts;
};

const QelPartTexts kConeTexts = {L"\nError reading BlockTableRecord",
                                 L"\nCould not append Cone to ACAD Database."};
const QelPartTexts kStemTexts = {L"\nError reading BlockTableRecord.",
                                 L"\nCould not append Valve to ACAD Database."};
const QelPartTexts kWheelTexts = {L"\nError reading BlockTableRecord.",
                                  L"\nCould not append object to ACAD Database."};

// The cones meet point to point at the origin; their builder leaves the host's exceptions to
// the run.
AcDb3dSolid* cone(const ValveSizes& v) {
    auto* solid = new AcDb3dSolid;
    solid->setRecordHistory(true);
    if (solid->createFrustum(v.length * 0.5, v.coneRadius, v.coneRadius, 0.0) != Acad::eOk) {
        delete solid;
        QelReportError(L"\nError creating cone of valve.");
        return nullptr;
    }
    return solid;
}

} // namespace

QelCreated CreateValve(QelObject* object, void*, int subtype, unsigned char, unsigned objIndex,
                       const CString* filePath) {
    AcGePoint3d origin;
    if (!GetPoseTranslation(object, "pose", origin)) {
        QelReportError(L"\nError getting translation info.");
        return QelCreated::Failed;
    }
    ValveSizes v;
    if (!QelReadSizes(object, kValveSizes, v)) return QelCreated::Failed;
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);

    const double stemRadius = (v.stemThickness == 0.0 ? 0.0001 : v.stemThickness) * 0.5;
    const double L = v.length, S = v.stemLength;
    // In the order they are made: cone 1, cone 2, stem, hand wheel.
    ValvePart parts[4] = {
        {0, cone(v), move(0, 0, -0.25 * L), kConeTexts},
        {1, cone(v), move(0, 0, 0.25 * L) * aboutX(kHalfTurn), kConeTexts},
        {3, nullptr, move(0, S * 0.5, 0) * aboutX(kQuarterTurn), kStemTexts},
        {2, nullptr, move(0, S - v.handwheelOffset, 0) * aboutX(kQuarterTurn), kWheelTexts},
    };
    parts[2].solid = QelBuildSolid(
        [&](AcDb3dSolid& s) { return s.createFrustum(S, stemRadius, stemRadius, stemRadius); },
        L"\nCaught arx exception error.", L"\nError creating stem of valve.");
    parts[3].solid = QelBuildSolid(
        [&](AcDb3dSolid& s) {
            return s.createTorus(v.handwheelRadius, v.handwheelThickness * 0.5);
        },
        L"\nCaught arx exception error", L"\nError creating hand wheel of valve.");

    const QelClassRow& kind = QelClassOf(QelCode::Valve);
    CString groupName;
    AcDbGroup* group = QelMakeObjectGroup(kind.groupName, kind.groupKey, groupName);
    AcDbObjectId ids[4]; // by part index
    bool whole = true;
    for (const ValvePart& part : parts) {
        if (!part.solid) {
            whole = false;
            continue;
        }
        const AcDbObjectId id =
            QelPlacePart(object, part.solid, part.local, translation, rotation, part.texts);
        if (id.isNull()) {
            whole = false;
            continue;
        }
        ids[part.index] = id;
        QelGroupAppend(group, id);
        // The record starts afresh for each part.
        QelMemberRecord record;
        record.memberType = kind.code;
        record.length = v.length;
        record.radius0 = v.coneRadius;
        record.radius1 = 0.0;
        record.partIndex = part.index;
        if (part.index == 2) {
            record.handwheelOffset = v.handwheelOffset;
            record.handwheelRadius = v.handwheelRadius;
            record.handwheelThickness = v.handwheelThickness;
        } else if (part.index == 3) {
            record.stemLength = v.stemLength;
            record.stemThickness = v.stemThickness;
        }
        QelFillRecordOrigin(record, objIndex, filePath, groupName);
        QelTagEntity(part.solid, record, nullptr);
    }
    ImportAnnotations(object, translation, rotation, group);
    DrawCaps(object, v.coneRadius, v.length, translation, rotation, subtype, objIndex, filePath,
             group, true);
    QelCloseGroup(group);
    const wchar_t* xdata[4] = {kind.xdata, kind.xdata, L"Valve_Hand_Wheel", L"Valve_Stem"};
    for (int part : {0, 1, 3, 2})
        if (!ids[part].isNull()) QelAddXDataById(ids[part], xdata[part]);
    return whole ? QelCreated::Done : QelCreated::Failed;
}
