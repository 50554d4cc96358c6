// Sphere and Torus: sizes from the solid's area and volume, the pose from its centroid and
// principal axes.
#include "records/member_record.h"
#include "writers/pose.h"
#include "writers/solid_analysis.h"
#include "writers/solid_writers.h"

#include <arx/aced.h>
#include <arx/dbsol3d.h>

#include <cmath>

namespace {

// Area, volume, centroid and principal axes of a solid.
struct Measure {
    bool hasArea = false;
    bool hasMass = false;
    double area = 0.0;
    double volume = 0.0;
    AcGePoint3d centroid;
    AcGeVector3d axes[3];
};

// False when the entity is no solid.
bool measure(const AcDbObjectId& id, Measure& out) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    const AcDb3dSolid* solid = AcDb3dSolid::cast(entity);
    if (solid) {
        out.hasArea = solid->getArea(out.area) == Acad::eOk;
        double moments[3], products[3], principal[3], gyration[3];
        AcDbExtents extents;
        out.hasMass = solid->getMassProp(out.volume, out.centroid, moments, products, principal,
                                         out.axes, gyration, extents) == Acad::eOk;
    }
    entity->close();
    return solid != nullptr;
}

constexpr double kFourPi = 12.566370964050293;
constexpr double kFourPiSquared = 39.47842025756836;

} // namespace

bool QelWriteSphere(const AcGeMatrix3d& m, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    Measure solid;
    if (!measure(id, solid)) {
        acutPrintf(L"Error calculating quaternion");
        acutPrintf(L"\n Error getting Sphere Info");
        return false;
    }
    double radius = solid.hasArea ? std::sqrt(solid.area / kFourPi) : 0.0;
    if (radius == 0.0) {
        // Without an area the tag's radius stands in.
        QelMemberRecord tag;
        if (QelTagOf(id, tag)) radius = tag.length;
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

bool QelWriteTorus(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    Measure solid;
    if (!measure(id, solid) || !solid.hasArea || !solid.hasMass || !(solid.area > 0.0))
        return false;
    const double minor = solid.volume * 2.0 / solid.area;
    if (!(minor > 0.0)) return false;
    const double major = solid.area / (minor * kFourPiSquared);
    // The axis of the ring is the third principal axis.
    double rotation[4];
    QelRotationFromAxes(solid.centroid, solid.axes[2].normal(), solid.axes[0].normal(), rotation);
    QelWriteWholePose(target, rotation, solid.centroid);
    QelSetReal(target, "minorRadius", QelLengthOut(minor));
    QelSetReal(target, "majorRadius", QelLengthOut(major));
    return true;
}
