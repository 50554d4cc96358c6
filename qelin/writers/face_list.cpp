#include "writers/face_list.h"

#include "export/entity_dispatch.h"
#include "foundation/geometry_helpers.h"
#include "shell/doc_data.h"
#include "writers/pose.h"

#include <arx/aced.h>

#include <cmath>

namespace {

using Points = std::vector<AcGePoint3d>;

struct Polygon {
    double area = 0.0, perimeter = 0.0;
    AcGePoint3d centroid;
};

// Shoelace area in the frame's plane, the mean point and the length round.
Polygon measure(const Points& local) {
    Polygon polygon;
    const std::size_t n = local.size();
    AcGeVector3d sum;
    double twice = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const AcGePoint3d& a = local[i];
        const AcGePoint3d& b = local[(i + 1) % n];
        twice += a.x * b.y - b.x * a.y;
        polygon.perimeter += a.distanceTo(b);
        sum += a.asVector();
    }
    polygon.area = std::fabs(twice) / 2.0;
    if (n) polygon.centroid = AcGePoint3d::kOrigin + sum / static_cast<double>(n);
    return polygon;
}

bool parallelogram(const Points& local) {
    if (local.size() != 4) return false;
    double values[12];
    for (int i = 0; i < 4; ++i) {
        values[3 * i] = local[i].x;
        values[3 * i + 1] = local[i].y;
        values[3 * i + 2] = local[i].z;
    }
    return QelIsParallelogram(values, 4);
}

Points inFrame(const QelFrame& frame, const Points& world) {
    Points local;
    local.reserve(world.size());
    for (const AcGePoint3d& p : world)
        local.push_back(frame.toLocal(p));
    return local;
}

// Face f as the base of an extrusion of all the others.
bool tryBase(const std::vector<Points>& faces, std::size_t f, QelExtrusionFit& fit) {
    const Points& base = faces[f];
    QelFrame frame;
    if (!QelFrameFromThreePoints(base[1], base[2], base[0], frame)) {
        acutPrintf(L"\n Warning: skipping degenerate object");
        return false;
    }
    const Polygon own = measure(inFrame(frame, base));
    bool heightKnown = false;
    double height = 0.0;
    AcGeVector3d direction;
    for (std::size_t g = 0; g < faces.size(); ++g) {
        if (g == f) continue;
        const Points local = inFrame(frame, faces[g]);
        bool twin = true;
        for (const AcGePoint3d& p : local)
            if (std::fabs(p.z) < QelPointTol) twin = false;
        if (twin && local.size() == base.size()) {
            const Polygon other = measure(local);
            if (std::fabs(other.area - own.area) <= QelPointTol &&
                std::fabs(other.perimeter - own.perimeter) <= QelPointTol)
                direction = (other.centroid - own.centroid).normal();
            else
                twin = false;
        }
        if (!twin && !parallelogram(local)) return false;
        for (const AcGePoint3d& p : local) {
            const double z = std::fabs(p.z);
            if (z <= QelPointTol) continue;
            if (!heightKnown) {
                height = z;
                heightKnown = true;
            } else if (std::fabs(z - height) > QelPointTol) {
                return false;
            }
        }
    }
    fit.outline = base;
    fit.height = height;
    fit.direction = direction;
    fit.frame = frame;
    return true;
}

} // namespace

bool QelReadFaceList(const resbuf* list, std::vector<Points>& faces) {
    faces.clear();
    if (!list || list->restype != 90) return false;
    const long lastFace = list->resval.rlong;
    std::vector<long> lastIndex;
    Points run;
    for (const resbuf* rb = list->rbnext; rb; rb = rb->rbnext) {
        if (rb->restype == 90)
            lastIndex.push_back(rb->resval.rlong);
        else if (rb->restype == RT3DPOINT)
            run.emplace_back(rb->resval.rpoint[0], rb->resval.rpoint[1], rb->resval.rpoint[2]);
    }
    if (lastFace < 0 || static_cast<long>(lastIndex.size()) < lastFace + 1) return false;
    std::size_t next = 0;
    for (long f = 0; f <= lastFace; ++f) {
        const long count = lastIndex[static_cast<std::size_t>(f)] + 1;
        if (count < 0 || next + static_cast<std::size_t>(count) > run.size()) return false;
        faces.emplace_back(run.begin() + static_cast<long>(next),
                           run.begin() + static_cast<long>(next + count));
        next += static_cast<std::size_t>(count);
    }
    return true;
}

bool QelParseFaceList(const resbuf* list, QelExtrusionFit& fit) {
    std::vector<Points> faces;
    if (!QelReadFaceList(list, faces)) return false;
    const std::size_t lastFace = faces.size() - 1;
    bool found = false;
    for (std::size_t f = 0; f < faces.size() && !found; ++f) {
        // n corners make n sides and two caps.
        if (faces[f].size() + 1 != lastFace || faces[f].size() < 3) continue;
        found = tryBase(faces, f, fit);
    }
    if (!found) return false;
    if (fit.direction.z < 0.0) {
        // The base's outward normal points away from the extrusion: turn the frame over.
        fit.direction = AcGeVector3d(fit.direction.y, fit.direction.x, -fit.direction.z);
        if (!QelFrameFromThreePoints(fit.outline[1], fit.outline[0], fit.outline[2], fit.frame))
            return false;
    }
    return true;
}

bool QelRegionOutline(const resbuf* list, Points& points) {
    std::vector<Points> faces;
    if (!QelReadFaceList(list, faces)) return false;
    points.clear();
    for (const Points& face : faces)
        points.insert(points.end(), face.begin(), face.end());
    return !points.empty();
}

bool QelPolygonFrame(const Points& points, QelFrame& frame) {
    const std::size_t n = points.size();
    if (n < 3) return false;
    if (n == 3) return QelFrameFromThreePoints(points[0], points[1], points[2], frame);
    const std::size_t second = points[1].distanceTo(points[0]) < QelPointTol ? 2 : 1;
    // Walk back from the far end to a corner off the line of the first two.
    std::size_t third = n - 2;
    while (third > second &&
           !QelFrameFromThreePoints(points[0], points[second], points[third], frame))
        --third;
    return third > second &&
           QelFrameFromThreePoints(points[0], points[second], points[third], frame);
}

std::vector<int> QelWriteFacesAsPatches(const resbuf* list, QelWriter& writer) {
    std::vector<int> written;
    std::vector<Points> faces;
    if (!QelReadFaceList(list, faces)) return written;
    for (const Points& face : faces) {
        if (face.size() < 2) continue;
        QelFrame frame;
        if (!QelPolygonFrame(face, frame)) continue;
        QelObject* patch = QelObject::Create("PlanarPatch");
        QelWriteFramePose(patch, frame);
        QelWriteOutline(patch, frame, face);
        QelWriteCounted(writer, patch);
        patch->UnRef();
        written.push_back(QelDocData().lastObjectRef);
    }
    return written;
}
