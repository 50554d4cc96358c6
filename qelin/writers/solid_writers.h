// The writers of solids and pipe work: each fills its object from the entity's geometry (and,
// for fittings, its tag), lengths in metres. A writer that cannot read the geometry leaves the
// object's sizes as they were and returns false.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>

#define QEL_SOLID_WRITER(name)                                                                     \
    bool name(const AcGeMatrix3d& m, QelObject* target, QelWriter& writer, const AcDbObjectId& id)

QEL_SOLID_WRITER(QelWriteCylinder); // also a Flange of flat caps
QEL_SOLID_WRITER(QelWritePipe);     // a circle with thickness
QEL_SOLID_WRITER(QelWriteCone);
QEL_SOLID_WRITER(QelWriteSphere);
QEL_SOLID_WRITER(QelWriteTorus);
QEL_SOLID_WRITER(QelWriteElbow);
QEL_SOLID_WRITER(QelWriteReducingElbow);
QEL_SOLID_WRITER(QelWriteReducer);
QEL_SOLID_WRITER(QelWriteValve);
QEL_SOLID_WRITER(QelWritePipeTee);
QEL_SOLID_WRITER(QelWritePipeFlange);

#undef QEL_SOLID_WRITER

