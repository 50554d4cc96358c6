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

constexpr double kQuarterTurn = 1.5707963705062866;

struct TeeSizes {
    double radius = 0.0;
    double height = 0.0;
    double branchRadius = 0.0;
    double branchHeight = 0.0;
};

const QelSizeRow<TeeSizes> kTeeSizes[] = {
    {"radius", &TeeSizes::radius, L"Error getting radius of piping tee."},
    {"height", &TeeSizes::height, L"Error getting height of piping tee."},
    {"branchradius", &TeeSizes::branchRadius, L"Error getting branch radius of piping tee."},
    {"branchheight", &TeeSizes::branchHeight, L"Error getting branch height of piping tee."},
};

// A branch may be wider than the run, or the run shorter than the branch's width, or the branch
// shorter than the run's radius, only by the factor 1.001.
bool sizesFit(const TeeSizes& t) {
    return t.radius > 0.0 && t.height > 0.0 && t.branchRadius > 0.0 &&
           !(t.radius * 1.001 < t.branchRadius) && !(t.height * 1.001 * 0.5 < t.branchRadius) &&
           !(t.branchHeight < t.radius / 1.001);
}

} // namespace

QelCreated CreateTee(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                     const CString* filePath) {
    TeeSizes t;
    if (!QelReadSizes(object, kTeeSizes, t)) return QelCreated::Failed;
    if (!sizesFit(t)) {
        QelReportError(L"Invalid tee parameter values.");
        return QelCreated::Failed;
    }
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);

    const wchar_t* notMade = L"\n  Error creating cylinder for pipe tee. ";
    const wchar_t* notAppended = L"Could not append pipe tee to ACAD Database.";
    bool failed = false;
    AcDbEntity* run = QelRoundPart(object, t.height, t.radius, t.radius, AcGeMatrix3d::kIdentity,
                                   translation, rotation, notMade, notAppended, failed);
    AddCenterLine(object, AcGePoint3d(0, 0, -t.height / 2), AcGePoint3d(0, 0, t.height / 2),
                  translation, rotation, objIndex, filePath);
    // Along +X from the run's axis.
    const AcGeMatrix3d branchPlace =
        AcGeMatrix3d::translation(AcGeVector3d(t.branchHeight / 2, 0, 0)) *
        AcGeMatrix3d::rotation(kQuarterTurn, AcGeVector3d::kYAxis, AcGePoint3d::kOrigin);
    AcDbEntity* branch =
        QelRoundPart(object, t.branchHeight, t.branchRadius, t.branchRadius, branchPlace,
                     translation, rotation, notMade, notAppended, failed);
    AddCenterLine(object, AcGePoint3d(0, 0, 0), AcGePoint3d(t.branchHeight, 0, 0), translation,
                  rotation, objIndex, filePath);

    const QelClassRow& kind = QelClassOf(QelCode::PipeTee);
    CString groupName;
    AcDbGroup* group = QelMakeObjectGroup(kind.groupName, kind.groupKey, groupName);
    QelMemberRecord record;
    record.memberType = kind.code;
    QelFillRecordOrigin(record, objIndex, filePath, groupName);
    QelTagPart(group, record, run, 0, t.radius, t.height);
    QelTagPart(group, record, branch, 1, t.branchRadius, t.branchHeight);
    ImportAnnotations(object, translation, rotation, group);
    for (AcDbEntity* part : {run, branch})
        if (part) QelAddXDataById(part->objectId(), kind.xdata);
    QelCloseGroup(group);
    return failed ? QelCreated::Failed : QelCreated::Done;
}
