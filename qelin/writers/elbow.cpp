// Elbow: the bend read off the two round ends of the swept solid; the mitre count from the tag.
#include "records/member_record.h"
#include "writers/bend.h"
#include "writers/exploded.h"
#include "writers/pose.h"
#include "writers/solid_analysis.h"
#include "writers/solid_writers.h"

#include <arx/dbelipse.h>
#include <arx/dbregion.h>
#include <arx/dbsol3d.h>

#include <cmath>

namespace {

// The ends of a bent pipe: the first circle (or, for a mitred cut, ellipse) of each flat face,
// the normal turned into the solid.
struct ElbowEnds {
    int edges = 0;
    int regions = 0;
    int others = 0;
    AcGePoint3d centre[2];
    AcGeVector3d normal[2];
    double radius[2] = {0.0, 0.0};
};

void addEnd(ElbowEnds& ends, const AcDbEntity* edge) {
    if (ends.edges >= 2) return;
    const int i = ends.edges;
    if (const AcDbCircle* circle = AcDbCircle::cast(edge)) {
        ends.centre[i] = circle->center();
        ends.normal[i] = -circle->normal().normal();
        ends.radius[i] = circle->radius();
        ++ends.edges;
    } else if (const AcDbEllipse* ellipse = AcDbEllipse::cast(edge)) {
        ends.centre[i] = ellipse->center();
        ends.normal[i] = -ellipse->normal().normal();
        ends.radius[i] = ellipse->minorRadius();
        ++ends.edges;
    }
}

bool elbowEnds(const AcDb3dSolid& solid, ElbowEnds& ends) {
    const QelExploded pieces(solid);
    if (!pieces.ok()) return false;
    for (int i = 0; i < pieces.size(); ++i) {
        const AcDbRegion* region = AcDbRegion::cast(pieces[i]);
        if (!region) {
            ++ends.others;
            continue;
        }
        ++ends.regions;
        if (ends.edges >= 2) continue;
        const QelExploded edges(*region);
        if (!edges.ok() || edges.size() < 1 || edges.size() > 2) continue;
        for (int k = 0; k < edges.size(); ++k)
            addEnd(ends, edges[k]);
    }
    return true;
}

// The bend and the pipe radius of a swept elbow.
bool elbowFromSolid(const AcDbObjectId& id, QelBend& bend, double& minor) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    ElbowEnds ends;
    const AcDb3dSolid* solid = AcDb3dSolid::cast(entity);
    const bool exploded = solid && elbowEnds(*solid, ends);
    entity->close();
    if (!exploded || ends.others < 1 || ends.regions != 2 || ends.edges != 2) return false;
    if (std::fabs(ends.radius[0] - ends.radius[1]) > ends.radius[0] * 0.01) return false;
    // Both ends face into the solid; the pipe runs out of it at the far end.
    if (!QelBendThrough(ends.centre[0], ends.normal[0], ends.centre[1], -ends.normal[1], bend))
        return false;
    minor = ends.radius[0];
    return true;
}

} // namespace

bool QelBendThrough(const AcGePoint3d& c0, const AcGeVector3d& run0, const AcGePoint3d& c1,
                    const AcGeVector3d& run1, QelBend& bend) {
    const AcGeVector3d chord = (c1 - c0).normal();
    if (chord.isZeroLength() || run0.isParallelTo(chord)) return false;
    const AcGeVector3d plane = run0.crossProduct(chord).normal();
    if (run1.isParallelTo(run0)) {
        bend.centre = c0 + (c1 - c0) * 0.5;
    } else {
        const AcGeLine3d square0(c0, plane.crossProduct(run0));
        const AcGeLine3d square1(c1, plane.crossProduct(run1));
        if (!square0.intersectWith(square1, bend.centre)) return false;
    }
    bend.major = bend.centre.distanceTo(c0);
    bend.sweep = QelAngleBetween(run0, run1, plane);
    QelRotationFromAxes(bend.centre, plane, (c0 - bend.centre).normal(), bend.rotation);
    return true;
}

bool QelWriteElbow(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    QelMemberRecord tag;
    tag.Load(id);
    double major = tag.majorRadius, minor = tag.minorRadius;
    double sweep = 1.570796327;
    int miterCount = tag.miterCount;
    if (major == 0.0 || minor == 0.0) miterCount = 0;
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    const bool isSolid = AcDb3dSolid::cast(entity) != nullptr;
    entity->close();
    if (!isSolid) return false;
    QelBend bend;
    double measuredMinor = 0.0;
    // Geometry wins over the tag; without it the object has no pose.
    if (elbowFromSolid(id, bend, measuredMinor)) {
        major = bend.major;
        minor = measuredMinor;
        sweep = bend.sweep;
    }
    QelWritePose(target, bend.rotation, bend.centre);
    QelSetReal(target, "majorRadius", QelLengthOut(major));
    QelSetReal(target, "minorRadius", QelLengthOut(minor));
    target->AddOrReplaceParam(QelParam::Create("miterCount", short(miterCount)));
    QelSetReal(target, "endAngle", sweep);
    return true;
}
