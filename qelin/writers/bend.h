// The bend through two ends of a pipe: the centre of curvature, the bend radius and the sweep,
// from the centres of the two ends and the directions the pipe runs there.
#pragma once

#include <arx/arx.h>

struct QelBend {
    AcGePoint3d centre;
    double major = 0.0;
    double sweep = 0.0;
    double rotation[4] = {0.0, 0.0, 0.0, 0.0}; // Z square to the bend, X towards the start
};

// run0 and run1 point the way the pipe runs at its start c0 and its end c1. False for a
// straight piece (run0 along the chord) or ends whose square lines don't meet.
bool QelBendThrough(const AcGePoint3d& c0, const AcGeVector3d& run0, const AcGePoint3d& c1,
                    const AcGeVector3d& run1, QelBend& bend);
