#include "writers/frame.h"

#include "foundation/geometry_helpers.h"
#include "writers/pose.h"

#include <arx/arx.h>
#include <qel/qel.h>

AcGePoint3d QelFrame::toLocal(const AcGePoint3d& point) const {
    const AcGeVector3d d = point - origin;
    return AcGePoint3d(d.dotProduct(x), d.dotProduct(y), d.dotProduct(z));
}

AcGeVector3d QelFrame::toLocal(const AcGeVector3d& v) const {
    return AcGeVector3d(v.dotProduct(x), v.dotProduct(y), v.dotProduct(z));
}

AcGePoint3d QelFrame::toWorld(const AcGePoint3d& local) const {
    return origin + x * local.x + y * local.y + z * local.z;
}

void QelFrame::rotation(double out[4]) const {
    double translation[3];
    QelPoseFromFrame(origin, x, y, translation, out);
}

bool QelFrameFromThreePoints(const AcGePoint3d& origin, const AcGePoint3d& onX,
                             const AcGePoint3d& onY, QelFrame& frame) {
    AcGeVector3d toX = onX - origin, toY = onY - origin;
    if (toX.length() < QelPointTol || toY.length() < QelPointTol) return false;
    toX.normalize();
    toY.normalize();
    AcGeVector3d z = toX.crossProduct(toY);
    if (z.length() < QelPointTol) return false;
    z.normalize();
    frame.origin = origin;
    frame.x = toX;
    frame.z = z;
    frame.y = z.crossProduct(toX).normal();
    return true;
}

void QelWriteFramePose(QelObject* object, const QelFrame& frame) {
    double rotation[4];
    frame.rotation(rotation);
    QelWriteWholePose(object, rotation, frame.origin);
}

void QelWriteOutline(QelObject* object, const QelFrame& frame,
                     const std::vector<AcGePoint3d>& points) {
    std::vector<double> values;
    for (const AcGePoint3d& p : points) {
        const AcGePoint3d local = frame.toLocal(p);
        values.push_back(QelLengthOut(local.x));
        values.push_back(QelLengthOut(local.y));
    }
    values.push_back(values[0]);
    values.push_back(values[1]);
    object->AddOrReplaceParam(
        QelParam::Create("vertices", values.data(), static_cast<unsigned>(values.size())));
}
