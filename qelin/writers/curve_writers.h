// The writers of curve-like entities: each fills its object from the entity, lengths in metres.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>

bool QelWriteLine3d(const AcGeMatrix3d& m, QelObject* target, QelWriter& writer,
                    const AcDbObjectId& id);
bool QelWriteCircularArc3d(const AcGeMatrix3d& m, QelObject* target, QelWriter& writer,
                           const AcDbObjectId& id);
bool QelWriteEllipticArc3d(const AcGeMatrix3d& m, QelObject* target, QelWriter& writer,
                           const AcDbObjectId& id);
bool QelWritePolyline3d(const AcGeMatrix3d& m, QelObject* target, QelWriter& writer,
                        const AcDbObjectId& id);
bool QelWriteBSplineCurve3d(const AcGeMatrix3d& m, QelObject* target, QelWriter& writer,
                            const AcDbObjectId& id);
