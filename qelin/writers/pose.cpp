#include "writers/pose.h"

#include "foundation/document_units.h"
#include "foundation/geometry_helpers.h"

#include <arx/arx.h>
#include <qel/qel.h>

#include <algorithm>
#include <cmath>

double QelLengthOut(double drawing) {
    double metres = drawing;
    QelDrawingToMetres(drawing, &metres);
    return metres;
}

void QelPointOut(const AcGePoint3d& point, double out[3]) {
    out[0] = QelLengthOut(point.x);
    out[1] = QelLengthOut(point.y);
    out[2] = QelLengthOut(point.z);
}

void QelRotationFromAxes(const AcGePoint3d& origin, const AcGeVector3d& zAxis,
                         const AcGeVector3d& xAxis, double rotation[4]) {
    double translation[3];
    QelPoseFromFrame(origin, xAxis, zAxis.crossProduct(xAxis), translation, rotation);
}

AcGeVector3d QelPlaneXAxis(const AcGeVector3d& normal) {
    if (normal == AcGeVector3d::kZAxis) return AcGeVector3d::kXAxis;
    constexpr double kNearZ = 1.0 / 64.0;
    const bool nearZ = std::fabs(normal.x) < kNearZ && std::fabs(normal.y) < kNearZ;
    AcGeVector3d x = (nearZ ? AcGeVector3d::kYAxis : AcGeVector3d::kZAxis).crossProduct(normal);
    x.normalize();
    return x;
}

void QelWritePose(QelObject* object, const double rotation[4], const AcGePoint3d& translation) {
    const bool turns =
        (rotation[0] != 0.0 || rotation[1] != 0.0 || rotation[2] != 0.0) && rotation[3] != 0.0;
    const bool moves = !translation.isEqualTo(AcGePoint3d::kOrigin, AcGeContext::gTol);
    if (!turns && !moves) {
        object->DeleteParam("pose");
        return;
    }
    QelObject* pose = QelObject::Create("Transformation");
    if (turns) {
        double axis[4] = {rotation[0], rotation[1], rotation[2], rotation[3]};
        const double length = std::sqrt(axis[0] * axis[0] + axis[1] * axis[1] + axis[2] * axis[2]);
        if (length > 0.0)
            for (int i = 0; i < 3; ++i)
                axis[i] /= length;
        pose->AddOrReplaceParam(QelParam::Create("rotation", axis, 4));
    }
    // A pose without its translation is no pose to a reader: a turn at the origin keeps both.
    double metres[3];
    QelPointOut(translation, metres);
    pose->AddOrReplaceParam(QelParam::Create("translation", metres, 3));
    object->AddOrReplaceParam(QelParam::Create("pose", pose));
    pose->UnRef();
}

double QelAngleBetween(const AcGeVector3d& a, const AcGeVector3d& b, const AcGeVector3d& ref) {
    if (a.isZeroLength() || b.isZeroLength() || a.isEqualTo(b)) return 0.0;
    if (a.isEqualTo(-b)) return QelPiSingle;
    const double cosine = std::clamp(a.normal().dotProduct(b.normal()), -1.0, 1.0);
    const double angle = std::acos(cosine);
    return a.crossProduct(b).dotProduct(ref) < 0.0 ? QelTwoPiSingle - angle : angle;
}

void QelWriteWholePose(QelObject* target, const double rotation[4], const AcGePoint3d& origin) {
    QelObject* pose = QelObject::Create("Transformation");
    double translation[3];
    QelPointOut(origin, translation);
    pose->AddOrReplaceParam(QelParam::Create("rotation", rotation, 4));
    pose->AddOrReplaceParam(QelParam::Create("translation", translation, 3));
    target->AddOrReplaceParam(QelParam::Create("pose", pose));
    pose->UnRef();
}

void QelSetReal(QelObject* object, const char* name, double value) {
    object->AddOrReplaceParam(QelParam::Create(name, value));
}
