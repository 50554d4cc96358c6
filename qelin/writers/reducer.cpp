// Reducer: from a polygon mesh the sizes come from the tag and the pose from the mesh; from a
// solid everything is measured, and an axis off the normals of its ends makes it eccentric.
#include "export/group_members.h"
#include "records/member_record.h"
#include "writers/pose.h"
#include "writers/solid_analysis.h"
#include "writers/solid_writers.h"

#include <arx/aced.h>
#include <arx/dbmesh.h>
#include <arx/dbsol3d.h>

#include <cmath>
#include <memory>
#include <vector>

namespace {

constexpr int kSubtypeConcentric = 0;
constexpr int kSubtypeEccentric = 2;

void writeSizes(QelObject* target, double radius0, double radius1, double height,
                const AcGeVector3d& direction, int subtype) {
    QelSetReal(target, "radius0", QelLengthOut(radius0));
    QelSetReal(target, "radius1", QelLengthOut(radius1));
    QelSetReal(target, "height", QelLengthOut(std::fabs(height)));
    const double d[3] = {direction.x, direction.y, direction.z};
    target->AddOrReplaceParam(QelParam::Create("direction", d, 3));
    target->AddOrReplaceParam(QelParam::Create("subtype", static_cast<short>(subtype)));
}

// The mesh's vertices row by row, a closed direction repeating its first vertex.
bool meshVertices(const AcDbPolygonMesh& mesh, std::vector<AcGePoint3d>& points, int& m, int& n) {
    std::vector<AcGePoint3d> grid;
    std::unique_ptr<AcDbObjectIterator> it(mesh.vertexIterator());
    for (it->start(); !it->done(); it->step()) {
        const auto* vertex = AcDbPolygonMeshVertex::cast(it->entity());
        if (!vertex) {
            acutPrintf(L"\n Error getting reducer endpoints");
            return false;
        }
        grid.push_back(vertex->position());
    }
    m = mesh.mSize();
    n = mesh.nSize();
    if (mesh.polyMeshType() != AcDb::kSimpleMesh &&
        std::size_t(mesh.mSurfaceDensity()) * std::size_t(mesh.nSurfaceDensity()) == grid.size()) {
        m = mesh.mSurfaceDensity();
        n = mesh.nSurfaceDensity();
    }
    if (m < 2 || n < 1 || grid.size() < std::size_t(m) * std::size_t(n)) return false;
    const bool nClosed = mesh.isNClosed(), mClosed = mesh.isMClosed();
    const int rowLength = n + (nClosed ? 1 : 0);
    for (int row = 0; row < m + (mClosed ? 1 : 0); ++row)
        for (int col = 0; col < rowLength; ++col)
            points.push_back(grid[std::size_t((row % m) * n + col % n)]);
    n = rowLength;
    m += mClosed ? 1 : 0;
    return true;
}

// The ends of the axis drawn in the reducer's group.
bool axisLine(const AcDbObjectId& id, AcGePoint3d& from, AcGePoint3d& to) {
    AcDbObjectIdArray members;
    const int count = groupMembers(id, members);
    for (int i = 0; i < count; ++i) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenAcDbEntity(entity, members[i], AcDb::kForRead) != Acad::eOk) continue;
        const AcDbLine* line = AcDbLine::cast(entity);
        if (line) {
            from = line->startPoint();
            to = line->endPoint();
        }
        entity->close();
        if (line) return true;
    }
    return false;
}

bool reducerFromMesh(const AcDbObjectId& id, const AcDbPolygonMesh& mesh, QelObject* target) {
    QelMemberRecord tag;
    if (!tag.Load(id) || tag.radius0 == 0.0) {
        acutPrintf(L"\nError getting Reducer Top Radius");
        return false;
    }
    if (tag.radius1 == 0.0) return false;
    if (tag.length == 0.0) {
        acutPrintf(L"Error getting Reducer Height");
        return false;
    }
    std::vector<AcGePoint3d> points;
    int m = 0, n = 0;
    const bool walked = meshVertices(mesh, points, m, n);
    AcGePoint3d c0, c1;
    if (!axisLine(id, c0, c1)) {
        if (!walked) return false;
        // The centres of the two rows, each vertex of a ring counted once.
        AcGeVector3d sum0, sum1;
        for (std::size_t i = 0; i < points.size(); i += std::size_t(n)) {
            sum0 += points[i].asVector();
            if (i + 1 < points.size()) sum1 += points[i + 1].asVector();
        }
        c0 = AcGePoint3d::kOrigin + sum0 / double(m - 1);
        c1 = AcGePoint3d::kOrigin + sum1 / double(m - 1);
    }
    AcGeVector3d direction(tag.direction[0], tag.direction[1], tag.direction[2]);
    const bool overEighteen = walked && points.size() > 18;
    if (direction.isZeroLength() && overEighteen) {
        // The far centre seen from a frame on the near ring.
        const AcGeVector3d x = (points[18] - c0).normal();
        const AcGeVector3d z = x.crossProduct(points[0] - c0).normal();
        const AcGeVector3d y = z.crossProduct(x);
        const AcGeVector3d far = c1 - c0;
        direction = AcGeVector3d(far.dotProduct(x), far.dotProduct(y), far.dotProduct(z)).normal();
    }
    if (overEighteen) {
        const AcGeVector3d b = (points[18] - c0).normal(), c = (points[0] - c0).normal();
        double rotation[4];
        QelRotationFromAxes(c0, b.crossProduct(c), b, rotation);
        QelWritePose(target, rotation, c0);
    }
    writeSizes(target, tag.radius0, tag.radius1, tag.length, direction, kSubtypeConcentric);
    return true;
}

// Two round flat ends of parallel normals and one curved face between them.
bool reducerFromSolid(const AcDbObjectId& id, QelObject* target) {
    QelSolidEdges edges;
    if (!solidEdgeInfo(id, edges) || edges.regions != 2 || edges.circles != 2 ||
        edges.others != 1 || !edges.circle[0].normal.isParallelTo(edges.circle[1].normal)) {
        acutPrintf(L"Error getting reducer geometry from 3dSolid!");
        return false;
    }
    const QelEdgeCircle &a = edges.circle[0], &b = edges.circle[1];
    const AcGeVector3d chord = (b.centre - a.centre).normal();
    AcGeVector3d n0 = a.normal.normal(), n1 = b.normal.normal();
    if (n1.dotProduct(chord) < 0.0) {
        n0 = -n0;
        n1 = -n1;
    }
    const double height = a.centre.distanceTo(b.centre);
    // The ends lie square to the pose's Z axis, as the reducer is built; the chord, seen in
    // that frame, is the direction of the far end.
    const AcGeVector3d axis = -n0, side = n1.perpVector().normal();
    double rotation[4];
    QelRotationFromAxes(a.centre, axis, side, rotation);
    QelWritePose(target, rotation, a.centre);
    const AcGeVector3d direction(chord.dotProduct(side), chord.dotProduct(axis.crossProduct(side)),
                                 chord.dotProduct(axis));
    const double along = height * n1.dotProduct(chord);
    const double offset = std::sqrt(std::fmax(0.0, height * height - along * along));
    const bool eccentric =
        !chord.isParallelTo(n0) && std::fabs(offset - (a.radius - b.radius)) >= 1e-10;
    writeSizes(target, a.radius, b.radius, height, direction,
               eccentric ? kSubtypeEccentric : kSubtypeConcentric);
    return true;
}

} // namespace

bool QelWriteReducer(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) {
        acutPrintf(L"Error getting reducer geometry!");
        return false;
    }
    if (const AcDbPolygonMesh* mesh = AcDbPolygonMesh::cast(entity)) {
        const bool done = reducerFromMesh(id, *mesh, target);
        entity->close();
        return done;
    }
    const bool solid = AcDb3dSolid::cast(entity) != nullptr;
    entity->close();
    return solid && reducerFromSolid(id, target);
}
