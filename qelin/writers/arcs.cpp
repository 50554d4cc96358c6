// CircularArc3d and EllipticArc3d: sizes and sweep in the plane of a pose at the centre.
#include "writers/curve_writers.h"
#include "writers/opened_entity.h"
#include "writers/pose.h"

#include <arx/dbelipse.h>

#include <cmath>

namespace {

void poseInPlane(QelObject* target, const AcGePoint3d& centre, const AcGeVector3d& normal,
                 const AcGeVector3d& xAxis) {
    double rotation[4];
    QelRotationFromAxes(centre, normal.normal(), xAxis.normal(), rotation);
    QelWritePose(target, rotation, centre);
}

} // namespace

bool QelWriteCircularArc3d(const AcGeMatrix3d&, QelObject* target, QelWriter&,
                           const AcDbObjectId& id) {
    QelOpenedEntity curve(id);
    if (auto* ellipse = AcDbEllipse::cast(curve.entity)) {
        QelSetReal(target, "radius", QelLengthOut(ellipse->minorRadius()));
        QelSetReal(target, "endAngle", ellipse->endAngle());
        poseInPlane(target, ellipse->center(), ellipse->normal(), ellipse->majorAxis());
        return true;
    }
    if (auto* arc = AcDbArc::cast(curve.entity)) {
        QelSetReal(target, "radius", QelLengthOut(arc->radius()));
        QelSetReal(target, "endAngle", arc->endAngle() - arc->startAngle());
        // The sweep starts on the pose's X axis: the start point's direction in the arc's plane.
        const AcGeVector3d normal = arc->normal().normal();
        const AcGeVector3d planeX = QelPlaneXAxis(normal);
        const AcGeVector3d planeY = normal.crossProduct(planeX).normal();
        const AcGeVector3d start =
            planeX * std::cos(arc->startAngle()) + planeY * std::sin(arc->startAngle());
        poseInPlane(target, arc->center(), normal, start);
        return true;
    }
    if (auto* circle = AcDbCircle::cast(curve.entity)) {
        QelSetReal(target, "radius", QelLengthOut(circle->radius()));
        QelSetReal(target, "endAngle", QelTwoPiSingle);
        poseInPlane(target, circle->center(), circle->normal(),
                    QelPlaneXAxis(circle->normal().normal()));
        return true;
    }
    return false;
}

bool QelWriteEllipticArc3d(const AcGeMatrix3d&, QelObject* target, QelWriter&,
                           const AcDbObjectId& id) {
    QelOpenedEntity curve(id);
    if (auto* ellipse = AcDbEllipse::cast(curve.entity)) {
        // The file measures its angles from the minor axis: a quarter turn from the host's.
        QelSetReal(target, "radiusX", QelLengthOut(ellipse->minorRadius()));
        QelSetReal(target, "radiusY", QelLengthOut(ellipse->majorAxis().length()));
        QelSetReal(target, "startAngle", ellipse->startAngle() + QelHalfPiSingle);
        QelSetReal(target, "endAngle", ellipse->endAngle() + QelHalfPiSingle);
        // The file's Y axis lies along the major axis, its X along the minor one turned back.
        const AcGeVector3d normal = ellipse->normal().normal();
        const AcGeVector3d major = ellipse->majorAxis().normal();
        poseInPlane(target, ellipse->center(), normal, major.crossProduct(normal));
        return true;
    }
    if (auto* circle = AcDbCircle::cast(curve.entity)) {
        const double radius = QelLengthOut(circle->radius());
        QelSetReal(target, "radiusX", radius);
        QelSetReal(target, "radiusY", radius);
        QelSetReal(target, "startAngle", 0.0);
        QelSetReal(target, "endAngle", QelTwoPiSingle);
        poseInPlane(target, circle->center(), circle->normal(),
                    QelPlaneXAxis(circle->normal().normal()));
        return true;
    }
    return false;
}
