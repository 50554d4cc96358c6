// Torus: both radii from the solid's area and volume, the pose from its centroid and principal
// axes, the ring's axis the third.
#include "writers/pose.h"
#include "writers/solid_analysis.h"
#include "writers/solid_writers.h"

bool QelWriteTorus(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    QelSolidMeasure solid;
    if (!QelMeasureSolid(id, solid) || !solid.hasArea || !solid.hasMass || !(solid.area > 0.0))
        return false;
    const double minor = solid.volume * 2.0 / solid.area;
    if (!(minor > 0.0)) return false;
    const double major = solid.area / (minor * QelFourPiSquaredSingle);
    // The axis of the ring is the third principal axis.
    double rotation[4];
    QelRotationFromAxes(solid.centroid, solid.axes[2].normal(), solid.axes[0].normal(), rotation);
    QelWriteWholePose(target, rotation, solid.centroid);
    QelSetReal(target, "minorRadius", QelLengthOut(minor));
    QelSetReal(target, "majorRadius", QelLengthOut(major));
    return true;
}
