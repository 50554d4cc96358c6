// Host side of the database: what the command layer and the tests check after a command.
// The module never includes this header.
#pragma once

#include "arx/dbdatabase.h"

// Objects of the database now open (each opening counts once).
Adesk::UInt64 acdbHostOpenObjectCount(const AcDbDatabase* database);
// The resident objects that are open, in handle order.
AcDbObjectIdArray acdbHostOpenObjects(const AcDbDatabase* database);

// Makes a new object resident under the given owner with the given handle, as a drawing
// reader needs (a null handle takes the next free one). eHandleInUse when the handle is taken;
// eAlreadyInDb for an object already resident. The object stays open for write.
Acad::ErrorStatus acdbHostAddObject(AcDbDatabase* database, AcDbObject* object,
                                    AcDbObjectId ownerId, const AcDbHandle& handle);
