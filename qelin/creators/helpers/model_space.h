// Entities into model space or the current space, and regions made of curves. An entity comes
// in new, not yet in a database.
#pragma once

#include <arx/arx.h>
#include <arx/dbregion.h>
#include <qel/qel.h>

// Opens "*Model_Space"; "Could not get block table" and null on failure.
AcDbBlockTableRecord* OpenModelSpace(AcDb::OpenMode mode);
// Appends to model space and closes record and entity. On failure prints "\nError appending
// object to database.", deletes the entity and returns the status.
Acad::ErrorStatus AppendToModelSpace(AcDbEntity* entity);
// Appends to the current space of the working database and closes the record (the entity stays
// open); 3 when the record did not open.
Acad::ErrorStatus AddToCurrentSpace(AcDbEntity* entity);
// A reference to the block placed by translation, rotation and the import transform at scale 1,
// coloured and appended to model space (and closed); null after notFound when the block is not
// there, or after notAppended.
AcDbBlockReference* QelInsertBlock(QelObject* object, AcDbObjectId block,
                                   const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation,
                                   const wchar_t* notFound, const wchar_t* notAppended);
// The first region made of the curves, appended to the record (open for write) and left open;
// null after the region message, counted as an error.
AcDbRegion* CreateRegion(const AcDbVoidPtrArray& curves, AcDbBlockTableRecord* blockRecord);
// The region of one curve (downgraded, then closed).
AcDbRegion* RegionFromCurve(AcDbCurve* curve, AcDbBlockTableRecord* blockRecord);
