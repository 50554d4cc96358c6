// An arc with thickness as a band of triangles: 25 points along the arc, each with its twin at
// the top, joined as a strip.
#include "writers/mesh_params.h"
#include "writers/mesh_writers.h"
#include "writers/pose.h"

#include <arx/dbents.h>

#include <cmath>

namespace {

constexpr int kSteps = 24;

} // namespace

bool QelWriteArcPatch(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    auto* arc = AcDbArc::cast(entity);
    if (!arc) {
        entity->close();
        return false;
    }
    double sweep = arc->endAngle() - arc->startAngle();
    if (sweep < 0.0) sweep += QelTwoPiSingle;
    const double step = sweep / kSteps;
    // Angles run in the arc's own plane, from the X axis the host gives that plane.
    const AcGeVector3d normal = arc->normal().normal();
    const AcGeVector3d planeX = QelPlaneXAxis(normal);
    const AcGeVector3d planeY = normal.crossProduct(planeX).normal();
    const AcGeVector3d up = normal * arc->thickness();
    std::vector<AcGePoint3d> vertices;
    vertices.reserve(2 * (kSteps + 1));
    for (int k = 0; k <= kSteps; ++k) {
        const double angle = arc->startAngle() + k * step;
        const AcGePoint3d point = arc->center() + planeX * (arc->radius() * std::cos(angle)) +
                                  planeY * (arc->radius() * std::sin(angle));
        vertices.push_back(point);
        vertices.push_back(point + up);
    }
    entity->close();
    std::vector<int> indices;
    const int faces = static_cast<int>(vertices.size()) - 2;
    for (int k = 0; k < faces; ++k)
        indices.insert(indices.end(), {k, k + 1, k + 2});
    QelWriteMeshParams(target, vertices, indices);
    return true;
}
