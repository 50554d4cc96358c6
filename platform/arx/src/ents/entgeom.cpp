#include "entgeom.h"

#include <cmath>

namespace entgeom {

Acad::ErrorStatus setNormal(const AcDbObject* o, AcGeVector3d& field, const AcGeVector3d& normal) {
    if (!o->isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!validNormal(normal)) return Acad::eInvalidInput;
    field = normal.normal();
    return Acad::eOk;
}

Acad::ErrorStatus setPositive(const AcDbObject* o, double& field, double value) {
    if (!o->isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!(value > 0.0)) return Acad::eInvalidInput;
    field = value;
    return Acad::eOk;
}

void planeAxes(const AcGeVector3d& normal, AcGeVector3d& x, AcGeVector3d& y) {
    const AcGeVector3d z = normal.normal();
    x = z.perpVector().normal();
    y = z.crossProduct(x).normal();
}

AcGeVector3d transformNormal(const AcGeMatrix3d& m, const AcGeVector3d& normal) {
    AcGeVector3d x, y;
    planeAxes(normal, x, y);
    return (m * x).crossProduct(m * y).normal();
}

double transformThickness(const AcGeMatrix3d& m, const AcGeVector3d& normal, double thickness,
                          const AcGeVector3d& newNormal) {
    return (m * (normal.normal() * thickness)).dotProduct(newNormal);
}

bool uniformScale(const AcGeMatrix3d& m, double& scale) {
    if (!m.isUniScaledOrtho(AcGeTol())) return false;
    scale = (m * AcGeVector3d::kXAxis).length();
    return true;
}

void addArc(AcDbExtents& box, const AcGePoint3d& center, const AcGeVector3d& x,
            const AcGeVector3d& y, double start, double end) {
    const double span = end > start ? end - start : sweep(start, end);
    auto at = [&](double t) { return center + x * std::cos(t) + y * std::sin(t); };
    box.addPoint(at(start));
    box.addPoint(at(start + span));
    // Each coordinate is extreme where its derivative vanishes.
    for (unsigned i = 0; i < 3; ++i) {
        const double phi = std::atan2(y[i], x[i]);
        for (double t : {phi, phi + M_PI}) {
            const double offset = sweep(start, t);
            if (offset <= span) box.addPoint(at(start + offset));
        }
    }
}

void addThickness(AcDbExtents& box, const AcGeVector3d& normal, double thickness) {
    if (thickness != 0.0) box.expandBy(normal.normal() * thickness);
}

double angleInPlane(const AcGeVector3d& normal, const AcGePoint3d& center, const AcGePoint3d& p) {
    const AcGePoint3d local = toOcs(normal, p) - toOcs(normal, center).asVector();
    double a = std::atan2(local.y, local.x);
    return a < 0.0 ? a + 2.0 * M_PI : a;
}

double sweep(double start, double end) {
    double s = std::fmod(end - start, 2.0 * M_PI);
    return s < 0.0 ? s + 2.0 * M_PI : s;
}

} // namespace entgeom
