#include "writers/solid_analysis.h"
#include "writers/opened_entity.h"

#include "export/group_members.h"
#include "records/member_record.h"
#include "writers/exploded.h"
#include "writers/pose.h"
#include "writers/solid_writers.h"

#include <arx/dbblkref.h>
#include <arx/dbregion.h>
#include <arx/dbsol3d.h>
#include <arx/dbsurf.h>

#include <cmath>

namespace {

void addCircle(QelSolidEdges& edges, const AcDbEntity* piece) {
    const AcDbCircle* circle = AcDbCircle::cast(piece);
    if (!circle || edges.circles >= 2) return;
    edges.circle[edges.circles++] = {circle->center(), circle->normal(), circle->radius()};
}

// The rims of a curved face: its first edge, and its second when there are exactly two.
void surfaceCircles(QelSolidEdges& edges, const AcDbEntity& surface) {
    const QelExploded pieces(surface);
    if (!pieces.ok() || pieces.size() >= 3) return;
    if (pieces.size() >= 1) addCircle(edges, pieces[0]);
    if (pieces.size() == 2) addCircle(edges, pieces[1]);
}

// A block reference holding a circle with thickness: the cylinder of the block form.
bool cylinderInBlock(const AcDbObjectId& id, QelConeFit& fit) {
    QelOpenedEntity opened(id);
    if (!opened.entity || opened.entity->isA() != AcDbBlockReference::desc()) return false;
    const QelExploded pieces(*opened.entity);
    if (!pieces.ok() || pieces.size() < 1 || pieces[0]->isA() != AcDbCircle::desc()) return false;
    const AcDbCircle* circle = AcDbCircle::cast(pieces[0]);
    if (circle->thickness() == 0.0) return false;
    fit.radius0 = fit.radius1 = circle->radius();
    fit.height = circle->thickness();
    fit.base = circle->center();
    fit.axis = circle->normal().normal();
    fit.xAxis = QelPlaneXAxis(fit.axis);
    return true;
}

} // namespace

bool solidEdgeInfo(const AcDbObjectId& id, QelSolidEdges& edges) {
    edges = QelSolidEdges();
    QelOpenedEntity opened(id);
    if (!AcDb3dSolid::cast(opened.entity)) return false;
    const QelExploded pieces(*opened.entity);
    if (!pieces.ok()) return false;
    for (int i = 0; i < pieces.size(); ++i) {
        const AcDbEntity* piece = pieces[i];
        if (AcDbSurface::cast(piece)) {
            // Once both rims are known, further curved faces are not counted at all.
            if (edges.circles >= 2) continue;
            surfaceCircles(edges, *piece);
        }
        if (AcDbRegion::cast(piece))
            ++edges.regions;
        else
            ++edges.others;
    }
    return true;
}

bool coneFromSolid(const AcDbObjectId& id, QelConeFit& fit) {
    QelSolidEdges edges;
    if (!solidEdgeInfo(id, edges) || edges.others != 1) return false;
    if (edges.regions == 2 && edges.circles == 2) {
        const QelEdgeCircle& a = edges.circle[0];
        const QelEdgeCircle& b = edges.circle[1];
        const AcGeVector3d axis = (b.centre - a.centre).normal();
        if (!a.normal.isParallelTo(b.normal)) return false;
        if (!axis.isParallelTo(a.normal) && std::fabs(axis.dotProduct(a.normal)) < 0.99999)
            return false;
        fit.radius0 = a.radius;
        fit.radius1 = b.radius;
        fit.height = a.centre.distanceTo(b.centre);
        fit.base = a.centre;
        fit.axis = axis;
    } else if (edges.regions == 1 && edges.circles == 1) {
        // The point of a full cone has no rim: its height follows from the volume.
        QelSolidMeasure measure;
        if (!QelMeasureSolid(id, measure) || !measure.hasMass) return false;
        const QelEdgeCircle& rim = edges.circle[0];
        fit.radius0 = rim.radius;
        fit.radius1 = 0.0;
        fit.height = measure.volume * 3.0 / QelPiSingle / rim.radius / rim.radius;
        fit.base = rim.centre;
        fit.axis = -rim.normal.normal();
    } else {
        return false;
    }
    fit.xAxis = fit.axis.perpVector().normal();
    return true;
}

bool cylinderFromEntity(const AcDbObjectId& id, QelConeFit& fit, double equalWithin) {
    if (cylinderInBlock(id, fit)) return true;
    if (!coneFromSolid(id, fit)) return false;
    if (equalWithin > 0.0) {
        if (!(std::fabs(fit.radius0 - fit.radius1) < fit.radius0 * equalWithin)) return false;
        fit.radius1 = fit.radius0;
    }
    return true;
}

std::vector<QelFittingPart> QelFittingParts(const AcDbObjectId& id, int code) {
    std::vector<QelFittingPart> parts;
    AcDbObjectIdArray members;
    const int count = groupMembers(id, members);
    for (int i = 0; i < count; ++i) {
        QelMemberRecord tag;
        if (tag.Load(members[i]) && tag.memberType == code)
            parts.push_back({members[i], tag.partIndex});
    }
    return parts;
}

bool QelMeasureSolid(const AcDb3dSolid& solid, QelSolidMeasure& out) {
    out.hasArea = solid.getArea(out.area) == Acad::eOk;
    double moments[3], products[3], principal[3], gyration[3];
    AcDbExtents extents;
    out.hasMass = solid.getMassProp(out.volume, out.centroid, moments, products, principal,
                                    out.axes, gyration, extents) == Acad::eOk;
    return out.hasArea && out.hasMass;
}

bool QelMeasureSolid(const AcDbObjectId& id, QelSolidMeasure& out) {
    QelOpenedEntity opened(id);
    const AcDb3dSolid* solid = AcDb3dSolid::cast(opened.entity);
    if (solid) QelMeasureSolid(*solid, out);
    return solid != nullptr;
}
