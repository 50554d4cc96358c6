// The caps on the ends of a cylinder or a valve: flat (a circle), hemispheric and semi-elliptic
// (solids). End 0 is the base at local z = 0, end 1 the far end.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>
#include <win/win.h>

// The caps "cap0" and "cap1" of the object, or with subtype 1 flat caps on both ends. With
// solidCaps a flat cap is left out: the solid's end is already closed. Each cap is placed by a
// move to its end, translation, rotation and the import transform, coloured, appended to model
// space, appended to group and tagged. False when a cap could not be made.
bool DrawCaps(QelObject* object, double radius, double height, const AcGeMatrix3d& translation,
              const AcGeMatrix3d& rotation, int subtype, unsigned objIndex, const CString* filePath,
              AcDbGroup* group, bool solidCaps);
