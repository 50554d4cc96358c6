// Cylinder: a solid, or in block mode a reference to a block holding one circle of the
// cylinder's radius and thickness, one block per size. Either way with its caps, its axis and
// its group.
#include "creators/caps.h"
#include "creators/helpers/format_double.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "creators/helpers/solid_parts.h"
#include "creators/primitives.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"
#include "records/xrecords.h"
#include "shell/doc_data.h"

#include <arx/aced.h>

#include <algorithm>

namespace {

const QelClassRow& kCylinder = QelClassOf(QelCode::Cylinder);

// Subtype 1 is a flange of flat caps on both ends; no row of the dispatcher passes it. The solid
// form tags it as one.
const QelClassRow& kindOf(int subtype) {
    return subtype == 1 ? QelClassOf(QelCode::Flange) : kCylinder;
}

bool readSize(QelObject* object, double& radius, double& height) {
    return QelRequireLength(object, "radius", radius, L"\nError getting radius of object.") &&
           QelRequireLength(object, "height", height, L"\nError getting height of object.");
}

QelCreated solidCylinder(QelObject* object, int subtype, unsigned objIndex,
                         const CString* filePath) {
    const QelClassRow& kind = kindOf(subtype);
    double radius = 0.0, height = 0.0;
    if (!readSize(object, radius, height)) return QelCreated::Failed;
    radius = std::max(radius, 1e-5);
    height = std::max(height, 1e-6);
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    Acad::ErrorStatus status = Acad::eOk;
    AcDb3dSolid* solid = QelBuildSolid(
        [&](AcDb3dSolid& s) { return status = s.createFrustum(height, radius, radius, radius); },
        L"\nCaught arx exception");
    if (!solid) {
        if (status == Acad::eOk) return QelCreated::Failed; // an exception, already told
        QelLogAppend(L"\n  Error creating cylinder. ");
        QelCountError();
        return QelCreated::FailedReported;
    }
    const AcGeMatrix3d lift = AcGeMatrix3d::translation(AcGeVector3d(0.0, 0.0, height / 2.0));
    if (QelPlacePart(object, solid, lift, translation, rotation,
                     {L"\nError opening BlockTableRecord for write",
                      L"\nCould not append object to ACAD Database."})
            .isNull())
        return QelCreated::Failed;
    CString name;
    AcDbGroup* group = QelMakeObjectGroup(kind.groupName, kind.groupKey, name);
    QelGroupAppend(group, solid->objectId());
    DrawCaps(object, radius, height, translation, rotation, subtype, objIndex, filePath, group,
             true);
    QelMemberRecord record;
    record.memberType = kind.code;
    record.length = height;
    record.radius0 = radius;
    QelFillRecordOrigin(record, objIndex, filePath, name);
    record.Store(solid);
    AddAxisCenterLine(object, height, translation, rotation, objIndex, filePath);
    AddXData(solid, kind.xdata);
    const CString size =
        QelFormatDouble(radius) + L" (Radius) x " + QelFormatDouble(height) + L" (lg)";
    AddXData(solid, size);
    ImportAnnotations(object, translation, rotation, group);
    QelCloseGroup(group);
    return QelCreated::Done;
}

// The block of a size: found by its name, or defined with its one circle, coloured and tagged
// like the first cylinder of that size. Null id when it could not be defined.
AcDbObjectId cylinderBlock(QelObject* object, const CString& name, double radius, double height,
                           unsigned objIndex) {
    AcDbBlockTable* table = nullptr;
    if (acdbHostApplicationServices()->workingDatabase()->getBlockTable(table, AcDb::kForWrite) !=
        Acad::eOk) {
        QelReportError(L"Error getting block table record");
        return AcDbObjectId::kNull;
    }
    AcDbObjectId id;
    if (table->getAt(name, id) == Acad::eOk) {
        table->close();
        return id;
    }
    auto* block = new AcDbBlockTableRecord;
    if (block->setName(name) != Acad::eOk || table->add(id, block) != Acad::eOk) {
        delete block;
        table->close();
        return AcDbObjectId::kNull;
    }
    table->close();
    auto* circle = new AcDbCircle(AcGePoint3d::kOrigin, AcGeVector3d::kZAxis, radius);
    circle->setThickness(height);
    ApplyColour(object, circle);
    const Acad::ErrorStatus status = block->appendAcDbEntity(circle);
    block->close();
    if (status != Acad::eOk) {
        delete circle;
        return AcDbObjectId::kNull;
    }
    circle->close();
    // The circle's record says what and which object, not where the file is.
    QelMemberRecord record;
    record.memberType = kCylinder.code;
    record.length = height;
    record.objectIndex = int(objIndex);
    record.context = QelDocData().importContext;
    record.Store(circle);
    AddXData(circle, kCylinder.xdata);
    AddXData(circle, name);
    return id;
}

QelCreated blockCylinder(QelObject* object, int subtype, unsigned objIndex,
                         const CString* filePath) {
    if (!acdbHostApplicationServices()->workingDatabase()) {
        QelReportError(L"\nError inserting Cylinder block");
        return QelCreated::FailedReported;
    }
    double radius = 0.0, height = 0.0;
    if (!readSize(object, radius, height)) return QelCreated::Failed;
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    const CString name =
        L"Cylinder_" + QelFormatDouble(radius) + L"(Rad)x" + QelFormatDouble(height) + L"(lg)";
    const AcDbObjectId block = cylinderBlock(object, name, radius, height, objIndex);
    if (block.isNull()) {
        QelReportError(L"\nError creating Cylinder block");
        return QelCreated::FailedReported;
    }
    AcDbBlockReference* reference =
        QelInsertBlock(object, block, translation, rotation,
                       L"\nError finding Cylinder block in block table record.",
                       L"\nError adding Cylinder block to database.");
    if (!reference) return QelCreated::Failed;
    // The block form tags a plain cylinder whatever the subtype; only its caps follow it.
    QelMemberRecord record;
    record.memberType = kCylinder.code;
    record.length = height;
    record.radius0 = radius;
    AcDbGroup* group = QelGroupAndTag(reference, kCylinder.groupName, kCylinder.groupKey, record,
                                      objIndex, filePath, nullptr);
    AddAxisCenterLine(object, height, translation, rotation, objIndex, filePath);
    ImportAnnotations(object, translation, rotation, group);
    DrawCaps(object, radius, height, translation, rotation, subtype, objIndex, filePath, group,
             false);
    QelCloseGroup(group);
    AddXData(reference, kCylinder.xdata);
    AddXData(reference, name);
    return QelCreated::Done;
}

} // namespace

QelCreated CreateCylinder(QelObject* object, void*, int subtype, unsigned char acisMode,
                          unsigned objIndex, const CString* filePath) {
    return acisMode ? solidCylinder(object, subtype, objIndex, filePath)
                    : blockCylinder(object, subtype, objIndex, filePath);
}
