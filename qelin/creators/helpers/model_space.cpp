#include "creators/helpers/model_space.h"

#include "creators/helpers/placement.h"
#include "foundation/error_report.h"
#include "foundation/log_file.h"

#include <arx/aced.h>

namespace {

AcDbDatabase* workingDatabase() {
    return acdbHostApplicationServices()->workingDatabase();
}

} // namespace

AcDbBlockTableRecord* OpenModelSpace(AcDb::OpenMode mode) {
    AcDbDatabase* db = workingDatabase();
    AcDbBlockTable* table = nullptr;
    AcDbBlockTableRecord* record = nullptr;
    if (db && db->getBlockTable(table, AcDb::kForRead) == Acad::eOk) {
        if (table->getAt(ACDB_MODEL_SPACE, record, mode) != Acad::eOk) record = nullptr;
        table->close();
    }
    if (!record) acedAlert(L"Could not get block table");
    return record;
}

Acad::ErrorStatus AppendToModelSpace(AcDbEntity* entity) {
    AcDbBlockTableRecord* space = OpenModelSpace(AcDb::kForWrite);
    const Acad::ErrorStatus status =
        space ? space->appendAcDbEntity(entity) : Acad::eNullObjectPointer;
    if (space) space->close();
    if (status != Acad::eOk) {
        acutPrintf(L"\nError appending object to database.");
        delete entity;
        return status;
    }
    entity->close();
    return Acad::eOk;
}

Acad::ErrorStatus AddToCurrentSpace(AcDbEntity* entity) {
    AcDbBlockTableRecord* space = nullptr;
    if (acdbOpenObject(space, workingDatabase()->currentSpaceId(), AcDb::kForWrite) != Acad::eOk)
        return Acad::ErrorStatus(3);
    const Acad::ErrorStatus status = space->appendAcDbEntity(entity);
    if (status != Acad::eOk) acutPrintf(L"\nERROR: could not add entity to current space.");
    space->close();
    return status;
}

AcDbBlockReference* QelInsertBlock(QelObject* object, AcDbObjectId block,
                                   const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation,
                                   const wchar_t* notFound, const wchar_t* notAppended) {
    auto* reference = new AcDbBlockReference;
    if (reference->setBlockTableRecord(block) != Acad::eOk) {
        delete reference;
        QelReportError(notFound);
        return nullptr;
    }
    reference->transformBy(translation);
    reference->transformBy(rotation);
    ApplyImportTransform(reference);
    reference->setScaleFactors(AcGeScale3d(1.0, 1.0, 1.0));
    ApplyColour(object, reference);
    if (AppendToModelSpace(reference) != Acad::eOk) {
        QelReportError(notAppended);
        return nullptr;
    }
    return reference;
}

AcDbRegion* CreateRegion(const AcDbVoidPtrArray& curves, AcDbBlockTableRecord* blockRecord) {
    AcDbVoidPtrArray regions;
    if (AcDbRegion::createFromCurves(curves, regions) != Acad::eOk || regions.isEmpty()) {
        const wchar_t* text = L"\n Couldn't create Region - check for self-intersecting shapes.";
        acutPrintf(text);
        QelLogAppend(text);
        QelCountError();
        return nullptr;
    }
    auto* region = static_cast<AcDbRegion*>(regions[0]);
    for (int i = 1; i < regions.length(); ++i)
        delete static_cast<AcDbRegion*>(regions[i]);
    if (blockRecord->appendAcDbEntity(region) != Acad::eOk) {
        acutPrintf(L"\nCreateRegion:error appending pRegion to block");
        delete region;
        return nullptr;
    }
    return region;
}

AcDbRegion* RegionFromCurve(AcDbCurve* curve, AcDbBlockTableRecord* blockRecord) {
    curve->downgradeOpen();
    AcDbVoidPtrArray curves;
    curves.append(curve);
    AcDbRegion* region = CreateRegion(curves, blockRecord);
    curve->close();
    return region;
}
