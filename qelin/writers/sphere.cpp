// Sphere: the radius from the solid's area, the pose from its centroid and principal axes as
// the export matrix moves them.
#include "records/member_record.h"
#include "writers/pose.h"
#include "writers/solid_analysis.h"
#include "writers/solid_writers.h"

#include <arx/aced.h>

#include <cmath>

bool QelWriteSphere(const AcGeMatrix3d& m, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    QelSolidMeasure solid;
    if (!QelMeasureSolid(id, solid)) {
        acutPrintf(L"Error calculating quaternion");
        acutPrintf(L"\n Error getting Sphere Info");
        return false;
    }
    double radius = solid.hasArea ? std::sqrt(solid.area / QelFourPiSingle) : 0.0;
    if (radius == 0.0) {
        // Without an area the tag's radius stands in.
        QelMemberRecord tag;
        if (tag.Load(id)) radius = tag.length;
    }
    radius *= m.scale();
    const AcGePoint3d centre = m * solid.centroid;
    AcGeVector3d axes[3];
    for (int i = 0; i < 3; ++i)
        axes[i] = (m * solid.axes[i]).normal();
    double rotation[4];
    QelRotationFromAxes(centre, axes[2], axes[0], rotation);
    QelWriteWholePose(target, rotation, centre);
    QelSetReal(target, "radius", QelLengthOut(radius));
    return true;
}
