// A solid read as a rectangular box from its faces alone: six flat faces of four straight edges
// each, every edge along one of three axes and as long as the box is in that direction.
#pragma once

#include <arx/arx.h>

class AcDb3dSolid;

struct QelBoxReading {
    double lengths[3] = {0.0, 0.0, 0.0}; // along axes[0], axes[1], axes[2], drawing units
    AcGePoint3d centre;
    AcGeVector3d axes[3]; // unit vectors, right-handed; axes[0] along the first face's first edge
};

// True when the solid is such a box; box then holds its lengths, centre and axes. On false the
// reading holds what was found before the check failed.
bool QelReadBoxFromRegions(const AcDb3dSolid& solid, QelBoxReading& box);
// The same for an entity by id; false when it doesn't open as a 3-D solid.
bool QelReadBoxFromRegions(const AcDbObjectId& id, QelBoxReading& box);
