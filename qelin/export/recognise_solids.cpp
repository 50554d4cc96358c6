#include "export/recognise_solids.h"

#include "export/invoke_on_entity.h"
#include "objectfile/type_codes.h"
#include "records/member_record.h"
#include "writers/exploded.h"
#include "writers/pose.h"
#include "writers/solid_analysis.h"

#include <arx/dbregion.h>
#include <arx/dbsol3d.h>
#include <arx/dbsurf.h>

#include <cmath>
#include <memory>

namespace {

// The single-precision value of 4 pi / 3, as the file's tools have it.
constexpr double kFourThirdsPi = 4.188790321350098;

constexpr double kParallelDot = 0.99999;
constexpr double kSmallestVolume = 0.001;
constexpr double kVolumeMatch = 0.001;
constexpr double kTorusAreaMatch = 1e-6;
constexpr double kRimMatch = 1e-5; // of a length, and of a radius relative to itself
constexpr double kEqualRadii = 0.01;

// The rim of a flat face that is a disc: its one edge, a circle.
bool discRim(const AcDbRegion& region, QelEdgeCircle& rim) {
    const QelExploded edges(region);
    if (!edges.ok() || edges.size() != 1) return false;
    const AcDbCircle* circle = AcDbCircle::cast(edges[0]);
    if (!circle) return false;
    rim = {circle->center(), circle->normal(), circle->radius()};
    return true;
}

// Two discs: a cylinder (a flange when short), a cone whose radii differ, or a reducer whose
// caps are offset sideways; an elbow when the discs are turned against each other.
int twoDiscs(const QelEdgeCircle& a, const QelEdgeCircle& b) {
    const bool equalRadii = std::fabs(a.radius - b.radius) <= kEqualRadii * a.radius;
    if (!a.normal.isParallelTo(b.normal)) return equalRadii ? QelCode::Elbow : -1;
    const AcGeVector3d along = (b.centre - a.centre).normal();
    if (!along.isParallelTo(a.normal) && std::fabs(along.dotProduct(a.normal)) < kParallelDot)
        return QelCode::Reducer;
    if (!equalRadii) return QelCode::Cone;
    return 0.5 * a.radius >= a.centre.distanceTo(b.centre) ? QelCode::Flange : QelCode::Cylinder;
}

// A whole ring has no flat face; a part of one (an elbow) keeps its two flat ends.
int ringOrPart(const AcDb3dSolid& solid) {
    const QelExploded faces(solid);
    if (!faces.ok()) return 0;
    for (int i = 0; i < faces.size(); ++i)
        if (AcDbRegion::cast(faces[i])) return 1;
    return 0;
}

// A cut square to one of the principal axes through the centroid shows the ring's outer rim.
bool outerRimOnAxis(const AcDb3dSolid& solid, const QelSolidMeasure& mass, double outer) {
    for (const AcGeVector3d& axis : mass.axes) {
        if (axis.isZeroLength()) continue;
        AcDbRegion* cut = nullptr;
        if (solid.getSection(AcGePlane(mass.centroid, axis), cut) != Acad::eOk || !cut) continue;
        const std::unique_ptr<AcDbRegion> owned(cut);
        const QelExploded edges(*cut);
        if (!edges.ok()) continue;
        for (int i = 0; i < edges.size(); ++i) {
            const AcDbCircle* circle = AcDbCircle::cast(edges[i]);
            if (circle && circle->center().distanceTo(mass.centroid) <= kRimMatch &&
                std::fabs(circle->radius() - outer) <= kRimMatch * circle->radius())
                return true;
        }
    }
    return false;
}

} // namespace

int recogniseRevolved(const AcDb3dSolid& solid, const QelMemberRecord* tag) {
    if (tag) {
        switch (tag->memberType) {
        case QelCode::Cylinder:
        case QelCode::Cone:
        case QelCode::Flange:
        case QelCode::Reducer:
            return tag->memberType;
        case QelCode::Valve:
            break;
        default:
            return -1;
        }
    }
    const QelExploded pieces(solid);
    if (!pieces.ok()) return -1;
    int surfaces = 0, regions = 0, others = 0, discs = 0;
    QelEdgeCircle rims[2];
    for (int i = 0; i < pieces.size(); ++i) {
        if (AcDbSurface::cast(pieces[i])) {
            ++surfaces;
        } else if (const AcDbRegion* region = AcDbRegion::cast(pieces[i])) {
            if (regions++ < 2 && discRim(*region, rims[discs])) ++discs;
        } else {
            ++others;
        }
    }
    if (others > 0 || surfaces != 1) return -1;
    if (regions == 1) return discs == 1 ? QelCode::Cone : -1;
    if (regions == 2 && discs == 2) return twoDiscs(rims[0], rims[1]);
    return -1;
}

bool recogniseSphere(const AcDb3dSolid& solid, const QelMemberRecord* tag) {
    QelSolidMeasure mass;
    if (!QelMeasureSolid(solid, mass) || mass.volume <= kSmallestVolume) return false;
    const double r = std::sqrt(mass.area / QelFourPiSingle);
    const double expected = r * r * r * kFourThirdsPi;
    if (std::fabs(expected - mass.volume) / mass.volume > kVolumeMatch) return false;
    return !tag || tag->memberType == QelCode::Sphere;
}

int recogniseTorus(const AcDb3dSolid& solid, const AcDbObjectId& id, const QelMemberRecord* tag,
                   bool flatEnds) {
    QelSolidMeasure mass;
    if (!QelMeasureSolid(solid, mass) || mass.volume <= kSmallestVolume) return 0;
    const double minor = 2.0 * mass.volume / mass.area;
    const double major = mass.area / (minor * QelFourPiSquaredSingle);
    if (std::fabs(major * QelFourPiSquaredSingle * minor - mass.area) > kTorusAreaMatch) return 0;
    if (tag && tag->memberType != QelCode::Valve) return 0;
    if (QelCompanionType(id) == 3) return (flatEnds ? 1 : ringOrPart(solid)) + 1;
    return outerRimOnAxis(solid, mass, major + minor) ? 1 : 0;
}
