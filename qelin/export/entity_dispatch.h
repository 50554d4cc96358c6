// One entity into the file: its kind, the object for it (from its source file or new), the
// writer of its kind, and the bookkeeping from which groups, layers and model space are built.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>

class QelOutObject;

// The kind the entity leaves as (a code of the object-type table). True when type holds one;
// false with type -1 when the entity gives no object; false with type untouched when it can't
// be opened.
bool classifyEntity(QelOutObject& out, int& type, AcDbObjectId id);

// Writes the object of a classified entity. False when nothing was written and the driver is to
// put the UCS back.
bool dispatchEntity(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id,
                    const AcGeMatrix3d& m);

// The object for the entity: read back from its source file under process method 1 (all its
// params but "connPtList"), else new of the row's class; null when neither can be had.
QelObject* openFileObject(QelOutObject& out, AcDbObjectId id, int type, bool& fromReference);

// The number just written belongs to the entity: under model space unless it is grouped.
void recordWritten(QelOutObject& out, AcDbObjectId id);

// The next number, then the write: the counter stays in step with the library's.
void QelWriteCounted(QelWriter& writer, QelObject* object);

// The entity's own object: written counted, let go and recorded as the entity's; true. False,
// with nothing written or counted, when it lacks a param its class requires (said so).
bool writeAndRecord(QelOutObject& out, QelWriter& writer, QelObject* object, AcDbObjectId id);
