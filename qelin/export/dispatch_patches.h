// The dispatcher's cases of flat and extruded entities: each gets its own object (or several)
// and writes it. False when nothing was written and the driver is to put the UCS back.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>

class QelOutObject;

bool QelDispatchPatch(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id);
bool QelDispatchRegion(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id);
bool QelDispatchExtrusion(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id,
                          const AcGeMatrix3d& m);
bool QelDispatchBox(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id);
bool QelDispatchPolylinePatch(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id);
bool QelDispatchSolid2d(QelOutObject& out, QelWriter& writer, int type, AcDbObjectId id);
