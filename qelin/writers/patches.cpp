// PlanarPatch from flat entities: polyface meshes, 3-D faces and regions; thick polylines as
// one patch per segment; 2-D solids as a patch or, with thickness, an extrusion.
#include "writers/face_list.h"
#include "writers/opened_entity.h"
#include "writers/patch_writers.h"
#include "writers/pose.h"

#include "export/appearance.h"
#include "export/entity_dispatch.h"
#include "shell/doc_data.h"

#include <arx/aced.h>
#include <arx/dbmesh.h>
#include <arx/dbpl.h>
#include <arx/dbpoly.h>
#include <arx/dbregion.h>
#include <win/win.h>

#include <cmath>
#include <vector>

namespace {

using Points = std::vector<AcGePoint3d>;

void addUnlessRepeated(Points& points, const AcGePoint3d& point) {
    if (points.empty() || !points.back().isEqualTo(point)) points.push_back(point);
}

void polyfaceVertices(const AcDbPolyFaceMesh& mesh, Points& points) {
    AcDbObjectIterator* it = mesh.vertexIterator();
    for (it->start(); !it->done(); it->step()) {
        AcDbEntity* item = it->entity();
        if (AcDbFaceRecord::cast(item)) continue;
        auto* vertex = AcDbPolyFaceMeshVertex::cast(item);
        if (!vertex) {
            acutPrintf(L"\n Error getting PlanerPatch vertices");
            continue;
        }
        addUnlessRepeated(points, vertex->position());
    }
    delete it;
}

// A patch of the points in the frame, written at once with the entity's colour.
int writeChild(QelOutObject& out, QelWriter& writer, const AcDbObjectId& id, const char* className,
               const QelFrame& frame, const Points& corners, double height) {
    QelObject* child = QelObject::Create(className);
    writeAppearance(out, child, id);
    QelWriteFramePose(child, frame);
    QelWriteOutline(child, frame, corners);
    if (height > 0.0) QelSetReal(child, "height", QelLengthOut(height));
    QelWriteCounted(writer, child);
    child->UnRef();
    return QelDocData().lastObjectRef;
}

// The segments of a thick polyline as start and end points, in world coordinates.
bool segmentsOf(AcDbEntity* entity, std::vector<std::pair<AcGePoint3d, AcGePoint3d>>& segments,
                AcGeVector3d& normal, double& thickness) {
    Points points;
    bool closed = false;
    if (auto* light = AcDbPolyline::cast(entity)) {
        for (unsigned i = 0; i < light->numVerts(); ++i) {
            AcGePoint3d point;
            light->getPointAt(i, point);
            points.push_back(point);
        }
        closed = light->isClosed();
        normal = light->normal();
        thickness = light->thickness();
    } else if (auto* heavy = AcDb2dPolyline::cast(entity)) {
        AcDbObjectIterator* it = heavy->vertexIterator();
        for (it->start(); !it->done(); it->step()) {
            auto* vertex = AcDb2dVertex::cast(it->entity());
            if (!vertex || vertex->vertexType() == AcDb::k2dSplineCtlVertex) continue;
            points.push_back(heavy->vertexPosition(*vertex));
        }
        delete it;
        closed = heavy->isClosed();
        normal = heavy->normal();
        thickness = heavy->thickness();
    } else {
        return false;
    }
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        segments.emplace_back(points[i], points[i + 1]);
    if (closed && points.size() > 2) segments.emplace_back(points.back(), points.front());
    if (normal.length() > 0.0) normal.normalize();
    return true;
}

} // namespace

bool QelWritePlanarPatch(const AcGeMatrix3d&, QelObject* target, QelWriter&,
                         const AcDbObjectId& id) {
    return QelWritePlanarPatchFrom(target, id, nullptr);
}

bool QelWritePlanarPatchFrom(QelObject* target, const AcDbObjectId& id, const resbuf* faceList) {
    Points points;
    bool region = false;
    {
        QelOpenedEntity opened(id);
        if (!opened.entity) return false;
        if (auto* mesh = AcDbPolyFaceMesh::cast(opened.entity)) {
            polyfaceVertices(*mesh, points);
        } else if (auto* face = AcDbFace::cast(opened.entity)) {
            for (Adesk::UInt16 i = 0; i < 4; ++i) {
                AcGePoint3d corner;
                face->getVertexAt(i, corner);
                addUnlessRepeated(points, corner);
            }
        } else if (AcDbRegion::cast(opened.entity)) {
            region = true;
            // A region tagged as a patch (one with holes) asks for its outline itself.
            resbuf* asked = nullptr;
            if (!faceList) {
                opened.entity->close();
                opened.entity = nullptr;
                asked = QelAskCompanion(L"getPolyPlanerExtru", id,
                                        L"\n Get PlanarPatch geometry failed!\n");
            }
            const bool outlined = QelRegionOutline(faceList ? faceList : asked, points);
            if (asked) acutRelRb(asked);
            if (!outlined) {
                acutPrintf(L"\nError::getting points for PlanarPatch");
                return false;
            }
        } else {
            return false;
        }
    }
    if (points.size() > 1 && points.back().isEqualTo(points.front())) points.pop_back();
    QelFrame frame;
    if (points.size() < 2 || !QelPolygonFrame(points, frame)) {
        // One point, two, or all on one line: no patch, and the user hears why it is missing.
        acutPrintf(L"\n Warning: skipping degenerate object");
        return false;
    }
    QelWriteFramePose(target, frame);
    QelWriteOutline(target, frame, points);
    if (region) {
        // The outline runs round the holes already: holes read back with the object would be
        // cut a second time.
        target->DeleteParam("holeVertices");
        target->DeleteParam("holeVertexEndIndices");
    }
    return true;
}

std::vector<int> QelWritePolylinePatches(QelOutObject& out, QelWriter& writer,
                                         const AcDbObjectId& id) {
    std::vector<int> written;
    std::vector<std::pair<AcGePoint3d, AcGePoint3d>> segments;
    AcGeVector3d normal;
    double thickness = 0.0;
    {
        QelOpenedEntity opened(id);
        if (!opened.entity) return written;
        if (!segmentsOf(opened.entity, segments, normal, thickness)) {
            acutPrintf(L"\n Error finding Polyline type");
            return written;
        }
    }
    const AcGeVector3d up = normal * thickness;
    for (const auto& [start, end] : segments) {
        const AcGePoint3d startTop = start + up, endTop = end + up;
        QelFrame frame;
        const bool framed = start.distanceTo(startTop) < QelPointTol
                                ? QelFrameFromThreePoints(end, start, endTop, frame)
                                : QelFrameFromThreePoints(start, startTop, end, frame);
        if (!framed) continue;
        written.push_back(
            writeChild(out, writer, id, "PlanarPatch", frame, {start, end, endTop, startTop}, 0.0));
    }
    return written;
}

bool QelWriteSolid2d(QelOutObject& out, QelWriter& writer, const AcDbObjectId& id) {
    AcGePoint3d p[4];
    double thickness = 0.0;
    AcGeVector3d normal;
    {
        QelOpenedEntity opened(id);
        auto* solid = AcDbSolid::cast(opened.entity);
        if (!solid) return false;
        for (Adesk::UInt16 i = 0; i < 4; ++i)
            solid->getPointAt(i, p[i]);
        thickness = solid->thickness();
        normal = solid->normal().normal();
    }
    QelFrame frame, collinearTest;
    if (!QelFrameFromThreePoints(p[0], p[1], p[0] + normal.crossProduct(p[1] - p[0]), frame) ||
        !QelFrameFromThreePoints(p[0], p[1], p[2], collinearTest))
        return false;
    // The host keeps the corners crosswise: 0, 1, 3, 2 run round the outline.
    const Points corners = p[2].distanceTo(p[3]) < QelPointTol ? Points{p[0], p[1], p[2]}
                                                               : Points{p[0], p[1], p[3], p[2]};
    const bool thick = thickness >= QelPointTol;
    writeChild(out, writer, id, thick ? "PlanarPolylineExtrusion" : "PlanarPatch", frame, corners,
               thick ? thickness : 0.0);
    return true;
}
