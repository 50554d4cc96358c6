// Cylinder: a solid, or in block mode a reference to a block holding one circle of the
// cylinder's radius and thickness, one block per size. Either way with its caps, its axis and
// its group.
#include "creators/caps.h"
#include "creators/creation_helpers.h"
#include "creators/fitting_parts.h"
#include "creators/primitives.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "records/import_annotations.h"
#include "records/xrecords.h"
#include "shell/doc_data.h"

#include <arx/aced.h>

#include <algorithm>

namespace {

// Subtype 1 is a flange of flat caps on both ends; no row of the dispatcher passes it. The solid
// form tags it as one.
int memberTypeOf(int subtype) {
    return subtype == 1 ? 11 : 9;
}
const wchar_t* xdataOf(int subtype) {
    return subtype == 1 ? L"Flange" : L"Cylinder";
}

bool readSize(QelObject* object, double& radius, double& height) {
    return QelRequireLength(object, "radius", radius, L"\nError getting radius of object.") &&
           QelRequireLength(object, "height", height, L"\nError getting height of object.");
}

int solidCylinder(QelObject* object, int subtype, unsigned objIndex, const CString* filePath) {
    double radius = 0.0, height = 0.0;
    if (!readSize(object, radius, height)) return 1;
    radius = std::max(radius, 1e-5);
    height = std::max(height, 1e-6);
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    Acad::ErrorStatus status = Acad::eOk;
    AcDb3dSolid* solid = QelBuildSolid(
        [&](AcDb3dSolid& s) { return status = s.createFrustum(height, radius, radius, radius); },
        L"\nCaught arx exception");
    if (!solid) {
        if (status == Acad::eOk) return 1; // an exception, already told
        QelLogAppend(L"\n  Error creating cylinder. ");
        QelCountError();
        return 0;
    }
    const AcGeMatrix3d lift = AcGeMatrix3d::translation(AcGeVector3d(0.0, 0.0, height / 2.0));
    if (QelPlacePart(object, solid, lift, translation, rotation,
                     {L"\nError opening BlockTableRecord for write",
                      L"\nCould not append object to ACAD Database."})
            .isNull())
        return 1;
    CString name;
    AcDbGroup* group = QelMakeObjectGroup(L"CylinderGroup", L"CYLINDER_GROUP", name);
    QelGroupAppend(group, solid->objectId());
    DrawCaps(object, radius, height, translation, rotation, subtype, objIndex, filePath, group,
             true);
    QelMemberRecord record;
    record.memberType = memberTypeOf(subtype);
    record.length = height;
    record.radius0 = radius;
    QelFillRecordOrigin(record, objIndex, filePath, name);
    record.Store(solid);
    AddAxisCenterLine(object, height, translation, rotation, objIndex, filePath);
    AddXData(solid, xdataOf(subtype));
    const CString size =
        QelFormatDouble(radius) + L" (Radius) x " + QelFormatDouble(height) + L" (lg)";
    AddXData(solid, size);
    ImportAnnotations(object, translation, rotation, group);
    QelCloseGroup(group);
    return 0;
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
    record.memberType = 9;
    record.length = height;
    record.objectIndex = int(objIndex);
    record.context = QelDocData().importContext;
    record.Store(circle);
    AddXData(circle, L"Cylinder");
    AddXData(circle, name);
    return id;
}

int blockCylinder(QelObject* object, int subtype, unsigned objIndex, const CString* filePath) {
    if (!acdbHostApplicationServices()->workingDatabase()) {
        QelReportError(L"\nError inserting Cylinder block");
        return 0;
    }
    double radius = 0.0, height = 0.0;
    if (!readSize(object, radius, height)) return 1;
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    const CString name =
        L"Cylinder_" + QelFormatDouble(radius) + L"(Rad)x" + QelFormatDouble(height) + L"(lg)";
    const AcDbObjectId block = cylinderBlock(object, name, radius, height, objIndex);
    if (block.isNull()) {
        QelReportError(L"\nError creating Cylinder block");
        return 0;
    }
    auto* reference = new AcDbBlockReference;
    if (reference->setBlockTableRecord(block) != Acad::eOk) {
        delete reference;
        QelReportError(L"\nError finding Cylinder block in block table record.");
        return 1;
    }
    reference->transformBy(translation);
    reference->transformBy(rotation);
    ApplyImportTransform(reference);
    reference->setScaleFactors(AcGeScale3d(1.0, 1.0, 1.0));
    ApplyColour(object, reference);
    if (AppendToModelSpace(reference) != Acad::eOk) {
        QelReportError(L"\nError adding Cylinder block to database.");
        return 1;
    }
    // The block form tags a plain cylinder whatever the subtype; only its caps follow it.
    QelMemberRecord record;
    record.memberType = 9;
    record.length = height;
    record.radius0 = radius;
    AcDbGroup* group = QelGroupAndTag(reference, L"CylinderGroup", L"CYLINDER_GROUP", record,
                                      objIndex, filePath, nullptr);
    AddAxisCenterLine(object, height, translation, rotation, objIndex, filePath);
    ImportAnnotations(object, translation, rotation, group);
    DrawCaps(object, radius, height, translation, rotation, subtype, objIndex, filePath, group,
             false);
    QelCloseGroup(group);
    AddXData(reference, L"Cylinder");
    AddXData(reference, name);
    return 0;
}

} // namespace

int CreateCylinder(QelObject* object, void*, int subtype, unsigned char acisMode, unsigned objIndex,
                   const CString* filePath) {
    return acisMode ? solidCylinder(object, subtype, objIndex, filePath)
                    : blockCylinder(object, subtype, objIndex, filePath);
}
