// The creators of flat outlines: PlanarPatch, a region with its holes cut out or a face, and
// PlanarPolylineExtrusion, the outline swept into a solid and cut at its height.
#pragma once

#include "creators/creator.h"

QEL_CREATOR(CreatePlanarPatch);
QEL_CREATOR(CreatePlanarPolylineExtrusion);
