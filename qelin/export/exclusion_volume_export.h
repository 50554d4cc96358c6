// An ExclusionVolume on the way out: its box from the solid, and under process method 1 the tree
// of objects it holds in the reference file, copied with new numbers.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>

class QelOutObject;

// Sets "pose" (centroid and the box's axes) and "thickness" (the box's lengths), both in metres,
// of the volume's object. From the reference, the tree it holds is copied and the object written
// after it (counted); without, "objectList" is empty and the caller writes the object. True when
// the object was written here.
bool writeExclusionVolume(const AcGeMatrix3d& m, QelObject* object, QelWriter& writer,
                          const AcDbObjectId& id, bool fromReference, QelOutObject& out);
