// Plane frames of the patch, extrusion and steel writers: a frame through three points, points
// taken into it, and the pose that places it.
#pragma once

#include <arx/gevec.h>

#include <vector>

class QelObject;

// Lengths below this are none: equal points, collinear corners, flat faces.
inline constexpr double QelPointTol = 1e-5;

struct QelFrame {
    AcGePoint3d origin;
    AcGeVector3d x = AcGeVector3d::kXAxis, y = AcGeVector3d::kYAxis, z = AcGeVector3d::kZAxis;

    AcGePoint3d toLocal(const AcGePoint3d& point) const;
    AcGeVector3d toLocal(const AcGeVector3d& vector) const;
    AcGePoint3d toWorld(const AcGePoint3d& local) const;
    // The four numbers of the rotation that turns the world's axes into the frame's.
    void rotation(double out[4]) const;
};

// The frame at origin whose X axis points to onX and whose XY plane holds onY on its positive
// side. False when either point lies on the origin or the three are collinear.
bool QelFrameFromThreePoints(const AcGePoint3d& origin, const AcGePoint3d& onX,
                             const AcGePoint3d& onY, QelFrame& frame);

// "vertices" of a patch or extrusion: the points as x y pairs in the frame, in metres, closed on
// the first. Points must not be empty.
void QelWriteOutline(QelObject* object, const QelFrame& frame,
                     const std::vector<AcGePoint3d>& points);

// "pose" with both its params, as the writers that place a plane by hand write it: the rotation
// of the frame, and its origin in metres.
void QelWriteFramePose(QelObject* object, const QelFrame& frame);
