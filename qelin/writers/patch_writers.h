// The writers of planar patches, polyline extrusions, boxes, steel and thick flat entities.
#pragma once

#include "writers/entity_writer.h"

#include <arx/arx.h>
#include <qel/qel.h>

#include <vector>

class QelOutObject;

// Sends a function of the companion module the entity's handle; prints and logs failureText and
// gives null when the call fails or the answer is empty. The caller frees the answer.
resbuf* QelAskCompanion(const wchar_t* function, const AcDbObjectId& id,
                        const wchar_t* failureText);

// PlanarPatch of a polyface mesh, a 3-D face or a region (a region's outline from the face list,
// asked for here when none is given). False when nothing could be placed.
QelEntityWriterFn QelWritePlanarPatch;
bool QelWritePlanarPatchFrom(QelObject* target, const AcDbObjectId& id, const resbuf* faceList);

// PlanarPolylineExtrusion from the face list of a solid; false when it is no extrusion.
bool QelWritePlanarPolylineExtrusion(QelObject* target, const AcDbObjectId& id,
                                     const resbuf* faceList);

// RectangularBox: sizes and pose from the face list.
bool QelWriteRectangularBox(QelObject* target, const AcDbObjectId& id, const resbuf* faceList);

// A thick line as a PlanarPatch of its four corners.
QelEntityWriterFn QelWriteLinePatch;
// A trace as a PlanarPatch, or with thickness a PlanarPolylineExtrusion; taken through m.
QelEntityWriterFn QelWriteTrace;

// A thick polyline: one "PlanarPatch" per segment, each written at once; the numbers written.
std::vector<int> QelWritePolylinePatches(QelOutObject& out, QelWriter& writer,
                                         const AcDbObjectId& id);
// A 2-D solid as a "PlanarPatch", or with thickness a "PlanarPolylineExtrusion", written at
// once; false when nothing was written.
bool QelWriteSolid2d(QelOutObject& out, QelWriter& writer, const AcDbObjectId& id);

// StdShape from a closed outline, StdShapeExtrusion from a member's tag and centre lines.
QelEntityWriterFn QelWriteStdShape;
QelEntityWriterFn QelWriteStdShapeExtrusion;
