// Cylinder (and a flange of flat caps) from a solid or the block of a thick circle; a pipe from a
// thick circle drawn by hand. The pose stands at the base, its Z axis along the cylinder.
#include "writers/pose.h"
#include "writers/solid_analysis.h"
#include "writers/solid_writers.h"

#include <arx/arx.h>

namespace {

// Floors of the written sizes; they differ on purpose.
constexpr double kLeastRadius = 0.0001;
constexpr double kLeastHeight = 1e-5;

void writeCylinder(QelObject* target, const AcGePoint3d& base, const AcGeVector3d& axis,
                   const AcGeVector3d& xAxis, double radius, double height) {
    double rotation[4];
    QelRotationFromAxes(base, axis, xAxis, rotation);
    QelWritePose(target, rotation, base);
    const double r = QelLengthOut(radius), h = QelLengthOut(height);
    QelSetReal(target, "radius", r < 1e-5 ? kLeastRadius : r);
    QelSetReal(target, "height", h < 0.0 ? kLeastHeight : h);
}

} // namespace

bool QelWriteCylinder(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    QelConeFit fit;
    if (!cylinderFromEntity(id, fit, 0.01)) return false;
    writeCylinder(target, fit.base, fit.axis, fit.xAxis, fit.radius0, fit.height);
    return true;
}

bool QelWritePipe(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    const AcDbCircle* circle = AcDbCircle::cast(entity);
    if (!circle) {
        entity->close();
        return false;
    }
    const AcGeVector3d normal = circle->normal().normal();
    const AcGePoint3d centre = circle->center();
    const double radius = circle->radius(), thickness = circle->thickness();
    entity->close();
    double rotation[4];
    QelRotationFromAxes(centre, normal, QelPlaneXAxis(normal), rotation);
    QelWritePose(target, rotation, centre);
    QelSetReal(target, "radius", QelLengthOut(radius));
    QelSetReal(target, "height", QelLengthOut(thickness));
    return true;
}
