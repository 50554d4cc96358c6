// Small geometry shared by the writers: the current UCS as a pose, and the parallelogram test.
#pragma once

#include <arx/gevec.h>

// The working database's current UCS as a file pose: origin as translation, axes through
// rotation_from_affine. False when there is no working database.
bool QelCurrentUcsPose(double translation[3], double rotation[4]);
// The pose of a frame given by its origin and X and Y axes: the origin as it stands, the
// rotation that turns the world's axes into the frame's.
void QelPoseFromFrame(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                      const AcGeVector3d& yAxis, double translation[3], double rotation[4]);

// Four points as twelve doubles: true when both pairs of opposite edges are parallel (the
// absolute dot product of the unit edges at least 0.99999) and none of the four edges has zero
// length. Any other point count gives false.
bool QelIsParallelogram(const double* points, int pointCount);
