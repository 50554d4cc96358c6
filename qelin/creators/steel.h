// The creators of steel: StdShape (a section's closed outline) and StdShapeExtrusion (a member
// extruded from its section, as a solid or, in block mode, as a reference to a block shared by
// members of one section and size), with the member's centre lines.
#pragma once

#include "creators/creator.h"

QEL_CREATOR(CreateStdShape);
QEL_CREATOR(CreateStdShapeExtrusion);
