// The creators of the primitive solids and the curves.
#pragma once

#include "creators/creator.h"

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
