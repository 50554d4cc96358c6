// The creators of the primitive solids and the curves, as the dispatcher calls them: the object,
// the parent (null), the row's subtype, 1 for solids or 0 for blocks, the object's reference
// number and the file's path. 0 for success, or after a failure whose message is already out.
#pragma once

#include <qel/qel.h>
#include <win/win.h>

#define QEL_CREATOR(name)                                                                          \
    int name(QelObject* object, void* parent, int subtype, unsigned char acisMode,                 \
             unsigned objIndex, const CString* filePath)

// Solids: a Cylinder in block mode is a reference to a block of its size.
QEL_CREATOR(CreateCylinder);
QEL_CREATOR(CreateCone);
QEL_CREATOR(CreateSphere);
QEL_CREATOR(CreateTorus);
QEL_CREATOR(CreateRectangularBox);

// Curves, the same in both modes.
QEL_CREATOR(CreateLine3d);
QEL_CREATOR(CreateCircularArc3d);
QEL_CREATOR(CreateEllipticArc3d);
QEL_CREATOR(CreatePolyline3d);
QEL_CREATOR(CreateBSplineCurve3d);

#undef QEL_CREATOR
