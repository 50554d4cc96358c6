// ReducingElbow: the bend read off the first and last rings of its polyface mesh, the pipe
// radius at each end from its ring.
#include "objectfile/type_codes.h"
#include "records/member_record.h"
#include "writers/bend.h"
#include "writers/pose.h"
#include "writers/solid_analysis.h"
#include "writers/solid_writers.h"

#include <arx/dbmesh.h>

#include <memory>
#include <vector>

namespace {

struct Rings {
    std::vector<AcGePoint3d> vertices;
    int faces = 0;
};

bool readMesh(const AcDbObjectId& id, Rings& rings) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    const AcDbPolyFaceMesh* mesh = AcDbPolyFaceMesh::cast(entity);
    if (mesh) {
        std::unique_ptr<AcDbObjectIterator> it(mesh->vertexIterator());
        for (it->start(); !it->done(); it->step()) {
            AcDbEntity* item = it->entity();
            if (const auto* vertex = AcDbPolyFaceMeshVertex::cast(item))
                rings.vertices.push_back(vertex->position());
            else if (AcDbFaceRecord::cast(item))
                ++rings.faces;
        }
    }
    entity->close();
    return mesh != nullptr;
}

AcGePoint3d meanOf(const std::vector<AcGePoint3d>& points, int first, int count) {
    AcGeVector3d sum;
    for (int i = first; i < first + count; ++i)
        sum += points[std::size_t(i)].asVector();
    return AcGePoint3d::kOrigin + sum / double(count);
}

AcGeVector3d ringNormal(const std::vector<AcGePoint3d>& points, int first,
                        const AcGePoint3d& centre) {
    return (points[std::size_t(first)] - centre)
        .crossProduct(points[std::size_t(first + 1)] - centre)
        .normal();
}

} // namespace

bool QelWriteReducingElbow(const AcGeMatrix3d&, QelObject* target, QelWriter&,
                           const AcDbObjectId& id) {
    QelMemberRecord tag;
    const bool tagged = tag.Load(id);
    if (tagged && (tag.majorRadius == 0.0 || tag.minorRadius == 0.0 ||
                   tag.memberType != QelCode::ReducingElbow))
        return false;
    Rings rings;
    if (!readMesh(id, rings)) return false;
    // Rings of equal size joined by two triangles per vertex of a ring.
    const int n = int(rings.vertices.size()), m = rings.faces;
    if (n - m / 2 == 0) return false;
    const int count = n / (n - m / 2);
    if (count < 2) return false;
    const int size = n / count;
    const int last = (count - 1) * size;
    if (m != 2 * last || size < 2) return false;
    const AcGePoint3d c0 = meanOf(rings.vertices, 0, size);
    const AcGePoint3d c1 = meanOf(rings.vertices, last, size);
    // The rings wind so that their normals point back along the pipe; turned, they give the way
    // it runs, as the ends of a swept elbow do.
    const AcGeVector3d run0 = -ringNormal(rings.vertices, 0, c0);
    const AcGeVector3d run1 = -ringNormal(rings.vertices, last, c1);
    QelBend bend;
    if (!QelBendThrough(c0, run0, c1, run1, bend)) return false;
    const double minor0 = c0.distanceTo(rings.vertices[0]);
    const double minor1 = c1.distanceTo(rings.vertices[std::size_t(last)]);
    QelWritePose(target, bend.rotation, bend.centre);
    QelSetReal(target, "majorRadius", QelLengthOut(bend.major));
    const double minorOut = QelLengthOut(minor0);
    QelSetReal(target, "minorRadius", minorOut);
    target->AddOrReplaceParam(QelParam::Create("miterCount", short(tag.miterCount)));
    QelSetReal(target, "endAngle", bend.sweep);
    const double minor1Out = QelLengthOut(minor1);
    if (minor1Out != minorOut) QelSetReal(target, "minorRadius1", minor1Out);
    return true;
}
