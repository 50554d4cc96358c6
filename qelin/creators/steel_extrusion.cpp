// StdShapeExtrusion: a steel member, its section extruded along local Z by its length. As a
// solid it is built where it stands; in block mode each section and size is one block, defined
// at the origin by the first member of it and shared by the others. Either way the member has
// a visible centre line and a hidden bottom line in its group.
#include "creators/helpers/format_double.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "creators/helpers/solid_parts.h"
#include "creators/last_entity.h"
#include "creators/steel.h"
#include "creators/steel_members.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"
#include "records/xrecords.h"

#include <arx/aced.h>
#include <arx/dbsol3d.h>

namespace {

constexpr const wchar_t* kCaught = L"\nCaught arx exception error";

void printAndLog(const wchar_t* text) {
    acutPrintf(L"%s", text);
    QelLogAppend(text);
}

// The section's region in model space extruded by the member's length into a solid, placed,
// coloured and appended (closed); the region leaves the drawing again. Null when any step
// failed, after its message.
AcDb3dSolid* ExtrudeSection(CCreateStdShapeExtru3D& builder, QelSectionOutline outline,
                            AcDbBlockTableRecord* space, const AcGeMatrix3d& translation,
                            const AcGeMatrix3d& rotation, const wchar_t* builderName) {
    AcDbRegion* region = builder.MakeRegion(outline, space, false);
    if (!region) return nullptr;
    builder.lastFound = QelLastEntity(builder.last);
    if (!builder.lastFound) printAndLog(L"CreateMember:Error obtaining ent handle.");
    if (!GetDoubleParam(builder.object, "length", builder.length, true)) {
        QelReportError(L"GetObjectLength::Error getting Length of object.");
        builder.length = 0.0;
    }
    AcDb3dSolid* solid =
        QelBuildSolid([&](AcDb3dSolid& s) { return s.extrude(region, builder.length, 0.0); },
                      kCaught, L"\nExtrudeRegion: Could not extrude.");
    if (solid) {
        ApplyColour(builder.object, solid);
        if (space->appendAcDbEntity(solid) != Acad::eOk) {
            QelReportError(L"\nExtrudeRegion: Could not append solid.");
            delete solid;
            solid = nullptr;
        }
    }
    if (solid) {
        solid->transformBy(translation);
        solid->transformBy(rotation);
        ApplyImportTransform(solid);
        solid->close();
    }
    region->close();
    if (builder.lastFound) {
        const CString failed = CString(builderName) + L": Error removing Redundant entity";
        QelEraseEntity(builder.last, failed);
    }
    return solid;
}

// Takes the inner solid away from the outer one, both in the drawing and closed; the inner
// solid is erased.
bool SubtractSolids(QelObject* object, AcDb3dSolid* outer, AcDb3dSolid* inner) {
    AcDb3dSolid* opened = nullptr;
    AcDb3dSolid* tool = nullptr;
    if (acdbOpenObject(opened, outer->objectId(), AcDb::kForWrite) != Acad::eOk) {
        acutPrintf(L"\nError opening object for write");
        return false;
    }
    if (acdbOpenObject(tool, inner->objectId(), AcDb::kForWrite) != Acad::eOk) {
        acutPrintf(L"\nError opening entity for write");
        opened->close();
        return false;
    }
    const bool subtracted = opened->booleanOper(AcDb::kBoolSubtract, tool) == Acad::eOk;
    if (!subtracted) acutPrintf(L"\nError subtracting solid");
    tool->erase();
    tool->close();
    ApplyColour(object, opened);
    opened->close();
    return subtracted;
}

// A line just drawn (status 0) joins the member's group and its handle goes into the record;
// otherwise the texts say what went wrong.
void takeLine(int status, const wchar_t* notDrawn, const wchar_t* notFound, AcDbGroup* group,
              AcDbHandle& handle) {
    if (status != 0) {
        acutPrintf(L"ret value is:%d", status);
        QelReportError(notDrawn);
    }
    ads_name last;
    AcDbObjectId id;
    if (status != 0 || !QelLastEntity(last) || acdbGetObjectId(id, last) != Acad::eOk) {
        acutPrintf(L"%s", notFound);
        return;
    }
    QelLastEntityHandle(handle);
    QelGroupAppend(group, id);
}

// The member's group and lines, its record and annotations: the same in both forms. The
// entity is the solid or the block reference.
void finishMember(QelObject* object, AcDbEntity* member, const wchar_t* groupName,
                  const wchar_t* key, int index, const AcGeMatrix3d& translation,
                  const AcGeMatrix3d& rotation, unsigned objIndex, const CString* filePath,
                  QelMemberRecord& record) {
    CString name;
    AcDbGroup* group = QelMakeObjectGroup(groupName, key, name);
    QelGroupAppend(group, member->objectId());
    const QelMemberLines lines{object, translation, rotation, objIndex, filePath, name};
    takeLine(AddSectionCenterLine(lines), L"\nError: Drawing Center Line For StdShapeExtrusion",
             L"\nError obtaining ent handle for center line.", group, record.handle0);
    takeLine(AddBottomCenterLine(lines, index),
             L"\nError: Drawing Bottom Center Line For StdShapeExtrusion",
             L"\nError obtaining bottom flange ent handle for center line.", group, record.handle1);
    ImportAnnotations(object, translation, rotation, group);
    QelCloseGroup(group);
    QelFillRecordOrigin(record, objIndex, filePath, name);
    record.Store(member);
}

QelMemberRecord memberRecord(int index, double length, double width, double depth,
                             double flangeThickness, double webThickness) {
    QelMemberRecord record;
    record.memberType = QelCode::StdShapeExtrusion;
    record.length = length;
    record.width = width;
    record.depth = depth;
    record.flangeThickness = flangeThickness;
    record.webThickness = webThickness;
    record.partIndex = index;
    return record;
}

// " (W) x ... (lg)" of a member's extended data.
CString sizeText(double width, double depth, double length) {
    return QelFormatDouble(width) + L"(W) x " + QelFormatDouble(depth) + L"(D) x " +
           QelFormatDouble(length) + L"(lg)";
}

QelCreated solidMember(QelObject* object, const CString& sectionType, unsigned objIndex,
                       const CString* filePath) {
    AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite);
    if (!space) {
        printAndLog(L"Error opening pBlock for Write.");
        return QelCreated::Failed;
    }
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    const QelMemberSection* section = QelFindMemberSection(sectionType);
    if (!section) {
        space->close();
        QelReportError(L"\nError: Undefined StdShapeExtrusion");
        return QelCreated::Failed;
    }
    CCreateStdShapeExtru3D builder(object, sectionType);
    AcDb3dSolid* solid = ExtrudeSection(builder, section->outline, space, translation, rotation,
                                        section->builderName);
    if (!solid) {
        space->close();
        printAndLog(section->notMade);
        return QelCreated::Failed;
    }
    if (section->hollow) {
        AcDb3dSolid* inner = ExtrudeSection(builder, QelSectionOutline::TubeInner, space,
                                            translation, rotation, section->builderName);
        if (!inner)
            QelReportError(L"\nCreateSteelRectangular3d::inner region is invalid");
        else if (!SubtractSolids(object, solid, inner))
            QelReportError(L"\nCreateSteelRectangular3d::Error subtracting solids");
    }
    space->close();
    AddXData(solid, section->sectionType);
    QelMemberRecord record =
        memberRecord(section->index, builder.length, builder.width, builder.depth,
                     builder.flangeThickness, builder.webThickness);
    const QelClassRow& kind = QelClassOf(QelCode::StdShapeExtrusion);
    finishMember(object, solid, kind.groupName, kind.groupKey, section->index, translation,
                 rotation, objIndex, filePath, record);
    AddXData(solid, sizeText(builder.width, builder.depth, builder.length));
    return QelCreated::Done;
}

// The index of block mode: the six sections, then "Square", compared without regard to case;
// -1 for any other name.
int blockIndex(const CString& sectionType) {
    for (int index = 0; index < 6; ++index)
        if (sectionType.CompareNoCase(QelMemberSectionAt(index)->sectionType) == 0) return index;
    return sectionType.CompareNoCase(L"Square") == 0 ? 6 : -1;
}

struct MemberSizes {
    double width, depth, length, flangeThickness, webThickness;
};

// The block of one section and size: the section's region and the solid extruded from it at
// the origin, tagged like the first member of it. False after the message when the section is
// unknown or its solid could not be made; the block record, named, stays.
bool DefineSectionBlock(QelObject* object, const CString& name, const CString& sectionType,
                        int index, const MemberSizes& sizes, AcDbObjectId& blockId) {
    AcDbBlockTable* table = nullptr;
    if (acdbHostApplicationServices()->workingDatabase()->getBlockTable(table, AcDb::kForWrite) !=
        Acad::eOk) {
        QelReportError(L"Error getting block table record");
        return false;
    }
    auto* block = new AcDbBlockTableRecord;
    block->setName(name);
    const Acad::ErrorStatus added = table->add(blockId, block);
    table->close();
    if (added != Acad::eOk) {
        delete block;
        return false;
    }
    const QelMemberSection* section = QelMemberSectionAt(index);
    if (!section) {
        QelReportError(L"\nError: Undefined StdShapeExtrusion");
        block->close();
        return false;
    }
    CCreateStdShape builder(object, sectionType);
    auto extruded = [&](QelSectionOutline outline) -> AcDb3dSolid* {
        AcDbRegion* region = builder.MakeRegion(outline, block, true);
        if (!region) return nullptr;
        return QelBuildSolid([&](AcDb3dSolid& s) { return s.extrude(region, sizes.length, 0.0); },
                             kCaught, L"\nExtrudeRegion: Could not extrude.");
    };
    AcDb3dSolid* solid = extruded(section->outline);
    if (solid && section->hollow) {
        if (AcDb3dSolid* inner = extruded(QelSectionOutline::TubeInner)) {
            if (solid->booleanOper(AcDb::kBoolSubtract, inner) != Acad::eOk)
                QelLogAppend(L"\nError: subtracting inner solid from Rectangular tube.");
            delete inner;
        }
    }
    if (solid && block->appendAcDbEntity(solid) != Acad::eOk) {
        delete solid;
        solid = nullptr;
    }
    block->close();
    if (!solid) return false;
    ApplyColour(object, solid);
    solid->close();
    QelMemberRecord record = memberRecord(section->index, sizes.length, sizes.width, sizes.depth,
                                          sizes.flangeThickness, sizes.webThickness);
    record.Store(solid);
    AddXData(solid, section->sectionType);
    AddXData(solid, sizeText(sizes.width, sizes.depth, sizes.length));
    return true;
}

// The block of the name: found, or defined now. Null id after the message.
AcDbObjectId sectionBlock(QelObject* object, const CString& name, const CString& sectionType,
                          int index, const MemberSizes& sizes) {
    AcDbBlockTable* table = nullptr;
    if (acdbHostApplicationServices()->workingDatabase()->getBlockTable(table, AcDb::kForRead) !=
        Acad::eOk) {
        QelReportError(L"Error getting block table record");
        return AcDbObjectId::kNull;
    }
    AcDbObjectId id;
    const bool found = table->getAt(name, id) == Acad::eOk;
    table->close();
    if (found) return id;
    if (DefineSectionBlock(object, name, sectionType, index, sizes, id)) return id;
    QelReportError(L"\nError inserting StdShapeExtruBlock block.");
    return AcDbObjectId::kNull;
}

QelCreated blockMember(QelObject* object, const CString& sectionType, unsigned objIndex,
                       const CString* filePath) {
    const int index = blockIndex(sectionType);
    MemberSizes sizes;
    sizes.depth = GetDepth(object);
    sizes.width = GetWidth(object);
    sizes.length = GetLength(object);
    sizes.flangeThickness = GetFlangeThickness(object);
    sizes.webThickness = GetWebThickness(object);
    const CString suffix = QelFormatDouble(sizes.width) + L"(W)x" + QelFormatDouble(sizes.depth) +
                           L"(D)x" + QelFormatDouble(sizes.length) + L"(lg)";
    const AcDbObjectId block =
        sectionBlock(object, sectionType + suffix, sectionType, index, sizes);
    if (block.isNull()) return QelCreated::Failed;
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    AcDbBlockReference* reference =
        QelInsertBlock(object, block, translation, rotation,
                       L"\nError finding StdShapeExtruBlock in block table record.",
                       L"\nError adding StdShapeExtruBlock to database.");
    if (!reference) return QelCreated::Failed;
    QelMemberRecord record = memberRecord(index, sizes.length, sizes.width, sizes.depth,
                                          sizes.flangeThickness, sizes.webThickness);
    finishMember(object, reference, L"SteelBlkGroup", L"Steel_BlkGroup", index, translation,
                 rotation, objIndex, filePath, record);
    AddXData(reference, sectionType);
    AddXData(reference, suffix);
    return QelCreated::Done;
}

} // namespace

QelCreated CreateStdShapeExtrusion(QelObject* object, void*, int, unsigned char acisMode,
                                   unsigned objIndex, const CString* filePath) {
    CString sectionType;
    if (!QelReadString(object, "sectionType", sectionType)) {
        QelReportError(L"\nError getting object Type.");
        return QelCreated::FailedReported;
    }
    return acisMode ? solidMember(object, sectionType, objIndex, filePath)
                    : blockMember(object, sectionType, objIndex, filePath);
}
