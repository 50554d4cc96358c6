// Cone: a frustum or a full cone measured from its solid, the pose at the base.
#include "writers/pose.h"
#include "writers/solid_analysis.h"
#include "writers/solid_writers.h"

bool QelWriteCone(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    QelConeFit fit;
    if (!coneFromSolid(id, fit)) return false;
    double rotation[4];
    QelRotationFromAxes(fit.base, fit.axis, fit.xAxis, rotation);
    QelWritePose(target, rotation, fit.base);
    const double radius0 = QelLengthOut(fit.radius0), height = QelLengthOut(fit.height);
    // A negative top radius is written as it stands; the file's readers have always had it so.
    QelSetReal(target, "radius0", radius0 < 0.0 ? 1e-5 : radius0);
    QelSetReal(target, "radius1", QelLengthOut(fit.radius1));
    QelSetReal(target, "height", height <= 0.0 ? 1e-5 : height);
    return true;
}
