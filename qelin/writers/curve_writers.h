// The writers of curve-like entities: each fills its object from the entity, lengths in metres.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>

#include <vector>

class AcDbPolyline;

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

// The vertices of a lightweight polyline in drawing units, its arcs as points on them, a closed
// one ending on its first vertex again.
void QelLightweightVertices(const AcDbPolyline& polyline, std::vector<AcGePoint3d>& points);
