// The one signature every entity writer has: it fills the target object from the entity, placed
// through m, lengths in metres. The dispatcher's table holds pointers to it.
#pragma once

#include <qel/qel.h>

class AcGeMatrix3d;
class AcDbObjectId;

using QelEntityWriterFn = bool(const AcGeMatrix3d& m, QelObject* target, QelWriter& writer,
                               const AcDbObjectId& id);
