// Host side of the database: what the command layer and the tests check after a command.
// The module never includes this header.
#pragma once

#include "arx/dbdatabase.h"

// Objects of the database now open (each opening counts once).
Adesk::UInt64 acdbHostOpenObjectCount(const AcDbDatabase* database);
// The resident objects that are open, in handle order.
AcDbObjectIdArray acdbHostOpenObjects(const AcDbDatabase* database);
