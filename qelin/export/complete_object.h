// The last look at an entity's object before it is written: an object that lacks a param its
// class requires would stop the next import of the file, so it is left out and said so.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>

// True when the object, and each object it holds, has every param its class requires. Else the
// first missing one is told on the command line and in the log with the entity's handle, the
// error is counted, and the result is false: the caller writes nothing and counts nothing.
bool QelObjectComplete(QelObject* object, const AcDbObjectId& id);
