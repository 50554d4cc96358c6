// The writers of curve-like entities: each fills its object from the entity, lengths in metres.
#pragma once

#include "writers/entity_writer.h"

#include <arx/arx.h>
#include <qel/qel.h>

#include <vector>

class AcDbPolyline;

QelEntityWriterFn QelWriteLine3d;
QelEntityWriterFn QelWriteCircularArc3d;
QelEntityWriterFn QelWriteEllipticArc3d;
QelEntityWriterFn QelWritePolyline3d;
QelEntityWriterFn QelWriteBSplineCurve3d;

// The vertices of a lightweight polyline in drawing units, its arcs as points on them, a closed
// one ending on its first vertex again.
void QelLightweightVertices(const AcDbPolyline& polyline, std::vector<AcGePoint3d>& points);
