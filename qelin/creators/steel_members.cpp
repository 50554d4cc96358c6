#include "creators/steel_members.h"

#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "objectfile/param_read.h"
#include "objectfile/type_codes.h"
#include "records/xrecords.h"

#include <arx/aced.h>

namespace {

// clang-format off
const QelMemberSection kSections[] = {
    {L"SteelWideFlange",      0, QelSectionOutline::WideFlange, false,
     L"Error creating steel (I-beam).",      L"CreateSteelWideFlange",  true,  0},
    {L"SteelTee",             1, QelSectionOutline::Tee,        false,
     L"Error creating steel (Tee).",         L"CreateSteelTee",         true,  0},
    {L"SteelChannel",         2, QelSectionOutline::Channel,    false,
     L"Error creating steel (Channel).",     L"CreateSteelChannel",     false, 2},
    {L"SteelRectangularTube", 3, QelSectionOutline::Rectangle,  true,
     L"Error creating steel (Rectangular).", L"CreateSteelRectangular", true,  3},
    {L"SteelAngle",           4, QelSectionOutline::Angle,      false,
     L"Error creating steel (Angle).",       L"CreateSteelAngle3d",     false, 4},
    {L"SteelBar",             5, QelSectionOutline::Rectangle,  false,
     L"Error creating steel (Bar).",         L"CreateSteelBar3d",       true,  3},
};
// clang-format on

// A line of the member: created in its local frame, coloured and appended, then placed by the
// pose and the import transform and tagged. 0, or the status of the failure.
int memberLine(const QelMemberLines& lines, const AcGePoint3d& from, const AcGePoint3d& to,
               bool visible, int memberType, int partIndex, const ACHAR* text) {
    const double width = GetWidth(lines.object);
    const double depth = GetDepth(lines.object);
    const double length = GetLength(lines.object);
    auto* line = new AcDbLine(AcGePoint3d(from.x * width, from.y * depth, from.z * length),
                              AcGePoint3d(to.x * width, to.y * depth, to.z * length));
    if (!visible) line->setVisibility(AcDb::kInvisible);
    ApplyColour(lines.object, line);
    if (const Acad::ErrorStatus status = AppendToModelSpace(line); status != Acad::eOk)
        return int(status);
    if (acdbOpenObject(line, line->objectId(), AcDb::kForRead) != Acad::eOk ||
        line->upgradeOpen() != Acad::eOk) {
        QelLogAppend(L"\nError positioning centerline for steel shape");
        return int(Acad::eNotOpenForWrite);
    }
    line->transformBy(lines.translation);
    line->transformBy(lines.rotation);
    ApplyImportTransform(line);
    line->close();
    QelMemberRecord record;
    record.memberType = memberType;
    record.partIndex = partIndex;
    record.length = length;
    record.width = width;
    record.depth = depth;
    QelFillRecordOrigin(record, lines.objIndex, lines.filePath, lines.groupName);
    QelTagEntity(line, record, text);
    return 0;
}

} // namespace

const QelMemberSection* QelFindMemberSection(const CString& sectionType) {
    for (const QelMemberSection& section : kSections)
        if (sectionType == section.sectionType) return &section;
    return nullptr;
}

const QelMemberSection* QelMemberSectionAt(int index) {
    for (const QelMemberSection& section : kSections)
        if (section.index == index) return &section;
    return nullptr;
}

// Points are fractions of width, depth and length.
int AddSectionCenterLine(const QelMemberLines& lines) {
    return memberLine(lines, AcGePoint3d(0.5, 0.5, 0.0), AcGePoint3d(0.5, 0.5, 1.0), true,
                      QelCode::CenterLine, 3, L"CenterLine");
}

int AddBottomCenterLine(const QelMemberLines& lines, int index) {
    const QelMemberSection* section = QelMemberSectionAt(index);
    if (!section) {
        QelReportError(L"\nError: Adding Bottom Center Line to Undefined StdShapeExtrusion");
        return 1;
    }
    const double x = section->bottomAtMiddle ? 0.5 : 0.0;
    return memberLine(lines, AcGePoint3d(x, 0.0, 0.0), AcGePoint3d(x, 0.0, 1.0), false,
                      QelCode::BottomCenterLine, section->bottomPart, L"BottomCenterLine");
}
