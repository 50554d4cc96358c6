// StdShape: a steel section's closed outline in the drawing, placed by the pose. A rectangular
// tube is two outlines, the inner one outside the group.
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "creators/section_outlines.h"
#include "creators/steel.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"
#include "records/xrecords.h"

#include <arx/aced.h>

namespace {

struct ShapeRow {
    const wchar_t* sectionType;
    QelSectionOutline outline;
    bool hollow; // the tube's inner outline too
    int partIndex;
};

// In order of lookup; names compare whole and case-sensitive.
const ShapeRow kShapes[] = {
    {L"Rectangle", QelSectionOutline::Rectangle, false, 3},
    {L"Square", QelSectionOutline::Rectangle, false, 6},
    {L"SteelWideFlange", QelSectionOutline::WideFlange, false, 0},
    {L"SteelTee", QelSectionOutline::Tee, false, 1},
    {L"SteelChannel", QelSectionOutline::Channel, false, 2},
    {L"SteelRectangularTube", QelSectionOutline::Rectangle, true, 7},
    {L"SteelAngle", QelSectionOutline::Angle, false, 4},
    {L"SteelBar", QelSectionOutline::Rectangle, false, 5},
};

const ShapeRow* shapeRow(const CString& sectionType) {
    for (const ShapeRow& row : kShapes)
        if (sectionType == row.sectionType) return &row;
    return nullptr;
}

void place(AcDbEntity* entity, const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation) {
    entity->transformBy(translation);
    entity->transformBy(rotation);
    ApplyImportTransform(entity);
    entity->close();
}

} // namespace

QelCreated CreateStdShape(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                          const CString* filePath) {
    CString sectionType;
    if (!QelReadString(object, "sectionType", sectionType)) {
        QelReportError(L"\nError getting object Type.");
        return QelCreated::FailedReported;
    }
    AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite);
    if (!space) {
        acutPrintf(L"CreateMember3D:Error opening pBlock for Write.");
        QelLogAppend(L"CreateMember3D:Error opening pBlock for Write.");
        return QelCreated::Failed;
    }
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    const ShapeRow* row = shapeRow(sectionType);
    if (!row) {
        space->close();
        QelReportError(L"\nError: Undefined StdShape");
        return QelCreated::Failed;
    }
    CCreateStdShape builder(object, sectionType);
    AcDbPolyline* outer = builder.MakePolyline(row->outline, space);
    AcDbPolyline* inner =
        row->hollow ? builder.MakePolyline(QelSectionOutline::TubeInner, space) : nullptr;
    space->close();
    for (AcDbPolyline* outline : {outer, inner})
        if (outline) place(outline, translation, rotation);
    if (!outer) return QelCreated::Failed;

    const QelClassRow& kind = QelClassOf(QelCode::StdShape);
    QelMemberRecord record;
    record.memberType = kind.code;
    record.partIndex = row->partIndex;
    QelGroupTagAnnotate(object, outer, kind.groupName, kind.groupKey, record, objIndex, filePath,
                        translation, rotation, kind.xdata);
    return QelCreated::Done;
}
