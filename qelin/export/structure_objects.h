// The objects that hold an export's file together, written after the entities: the groups, one
// Layer per drawing layer with the numbers of its objects, the LayerMgr, the named UCSs as a
// CoordSysMgr, the ModelSpaceView with the layers' overrides, and the Header. Under process
// method 1 the structure objects of the file last imported are read and changed, so that params
// the module doesn't know survive.
#pragma once

#include "foundation/growing_array.h"

#include <arx/arx.h>
#include <qel/qel.h>
#include <win/win.h>

class QelOutObject;

// The GeometricGroup of one group number, if any of its members was written; the last record of
// groupRecs is this group's.
void writeGroup(QelOutObject& out, QelWriter& writer, const unsigned& groupNumber);
// The group's annotation texts (its members that left no object) as its "annotations".
void writeGroupAnnotations(QelOutObject& out, QelObject* object, const unsigned& groupNumber);

// False only when the layer table can't be walked.
bool writeLayers(QelOutObject& out, QelWriter& writer);
bool buildLayerObject(QelOutObject& out, QelObject* layer, QelWriter& writer, LPCWSTR name,
                      AcDbLayerTableRecord* record);
// The number of the Layer of that name (without case) in the file last imported.
bool findReferenceLayer(QelOutObject& out, LPCWSTR name, unsigned& number);

bool writeViews(QelOutObject& out, QelWriter& writer);
// One value per layer written, in the same order: bit 0 off or frozen (with bit 3), bit 1 the
// layer's entities follow its colour.
void layerOverrideFlags(QelOutObject& out, QelArray<unsigned>& flags);
bool layerUsesLayerColour(QelOutObject& out, LPCWSTR name);

void writeHeader(QelOutObject& out, QelWriter& writer);

// The file last imported ("LastOpenDir") into out.referenceFile; true when it exists and the
// export is to read from it.
bool QelUseReferenceFile(QelOutObject& out);
// The first object of the class in the reference file, or null; a damaged file is told.
QelObject* QelReadReferenceObject(QelOutObject& out, const char* className);
// The object of that number in the reference file, or null.
QelObject* QelReadReferenceObject(QelOutObject& out, unsigned number);
