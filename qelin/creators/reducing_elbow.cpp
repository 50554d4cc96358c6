// ReducingElbow: a bend whose pipe narrows from one radius to the other. One section does not
// sweep it, so it is a polyface mesh of rings of 24 vertices around the bend, the radius of a
// ring blending between the two ends, joined by triangles. The mesh is built where it stands.
#include "creators/elbows.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "foundation/error_report.h"
#include "import/class_table.h"
#include "objectfile/param_read.h"
#include "records/import_annotations.h"
#include "records/xrecords.h"

#include <arx/aced.h>
#include <arx/dbmesh.h>

#include <cmath>
#include <vector>

namespace {

constexpr double kQuarterTurn = 1.5707963705062866;
// A ring's vertices, and the turn between two of them, in single precision.
constexpr int kRingSize = 24;
constexpr float kRingStep = 0.2617994f;
// Without mitres the bend gets a ring every fifteen degrees.
constexpr double kRingAngle = 0.2617993950843811;
// A face record counts its vertices in 16 bits.
constexpr int kMostVertices = 32767;

struct Bend {
    double major = 0.0;
    double radius0 = 0.0;
    double radius1 = 0.0;
    double sweep = kQuarterTurn;
    short miterCount = 0;
};

// A length of the object; its absence reported by the param's name.
bool readLength(QelObject* object, const char* name, double& value) {
    if (GetDoubleParam(object, name, value, true)) return true;
    CString text;
    text.Format(L"Error getting %hs of %s.", name, L"ReducingElbow");
    QelReportError(text);
    return false;
}

// Segments of the bend: the mitre count, one per fifteen degrees without mitres, and two for a
// bevel cut, whose middle ring is the mitre. 0 for a sweep no mesh can follow.
int segmentsOf(const Bend& b) {
    if (b.miterCount > 0) return b.miterCount;
    if (b.miterCount < 0) return 2;
    const double steps = std::ceil(b.sweep / kRingAngle);
    return steps >= 1.0 && steps < kMostVertices ? int(steps) : 0;
}

AcGePoint3d single(const AcGePoint3d& p) {
    return AcGePoint3d(float(p.x), float(p.y), float(p.z));
}

// The rings' vertices in order, ring by ring, placed by the pose's axes O, X and Y.
std::vector<AcGePoint3d> ringVertices(const Bend& b, int segments, const AcGePoint3d& origin,
                                      const AcGeVector3d& xAxis, const AcGeVector3d& yAxis) {
    std::vector<AcGePoint3d> vertices;
    vertices.reserve(std::size_t(kRingSize * (segments + 1)));
    const bool bevel = b.miterCount < 0;
    double t = 0.0;
    for (int i = 0; i <= segments; ++i) {
        if (bevel) t = i < 2 ? 0.0 : b.sweep;
        const double s = t / b.sweep * 3.1415927410125732 * 0.5;
        const double q = std::sqrt(b.radius0 * b.radius0 * std::cos(s) * std::cos(s) +
                                   b.radius1 * b.radius1 * std::sin(s) * std::sin(s));
        const AcGeVector3d u = std::cos(t) * xAxis + std::sin(t) * yAxis;
        const AcGeVector3d w = std::cos(t) * yAxis - std::sin(t) * xAxis;
        const AcGeVector3d v = u.crossProduct(w);
        const AcGePoint3d centre = origin + b.major * u;
        float p = 0.0f;
        for (int k = 0; k < kRingSize; ++k, p += kRingStep) {
            const double sp = std::sin(p), cp = std::cos(p);
            if (bevel && i == 1) {
                // The mitre: a ring of the mean radius pushed along the bend onto the plane at
                // half the angle.
                const double mean = (b.radius1 - b.radius0) / 2.0 + b.radius0;
                const double push = (cp * b.radius0 + b.major) * std::tan(b.sweep / 2.0);
                vertices.push_back(single(centre + mean * (sp * v + cp * u)) + push * w);
            } else {
                vertices.push_back(single(centre + q * (sp * v + cp * u)));
            }
        }
        t += b.sweep / segments;
    }
    return vertices;
}

// One triangle, its vertices numbered from 1, coloured as the mesh.
bool AppendFaceRecord(AcDbPolyFaceMesh* mesh, int a, int b, int c, const AcCmColor& colour) {
    auto* face = new AcDbFaceRecord(Adesk::Int16(a), Adesk::Int16(b), Adesk::Int16(c), 0);
    const Acad::ErrorStatus status = mesh->appendFaceRecord(face);
    if (status != Acad::eOk) {
        acutPrintf(status == Acad::eInvalidMeshVertexIndex ? L"\n eInvalidMeshVertexIndex"
                                                           : L"\n Could not append face record");
        delete face;
        return false;
    }
    face->setColor(colour);
    face->close();
    return true;
}

// The mesh in the current space, tagged; false when it could not be made.
bool meshBend(QelObject* object, const Bend& b, const AcGeMatrix3d& translation,
              const AcGeMatrix3d& rotation, unsigned objIndex, const CString* filePath) {
    const int segments = segmentsOf(b);
    if (segments < 1 || kRingSize * (segments + 1) > kMostVertices || !(b.sweep > 0.0)) {
        QelReportError(L"\nCircular arc end angle out of range.");
        return false;
    }
    const AcGeMatrix3d pose = rotation * translation;
    const std::vector<AcGePoint3d> vertices =
        ringVertices(b, segments, pose * AcGePoint3d::kOrigin, pose * AcGeVector3d::kXAxis,
                     pose * AcGeVector3d::kYAxis);

    auto* mesh = new AcDbPolyFaceMesh;
    mesh->setDatabaseDefaults();
    if (AddToCurrentSpace(mesh) != Acad::eOk) {
        delete mesh;
        QelReportError(L"\nCould not add PolyFaceMesh object to dwg space.");
        return false;
    }
    ApplyColour(object, mesh);
    const AcCmColor colour = mesh->color();
    for (const AcGePoint3d& position : vertices) {
        auto* vertex = new AcDbPolyFaceMeshVertex;
        vertex->setPosition(position);
        if (mesh->appendVertex(vertex) == Acad::eOk)
            vertex->close();
        else
            delete vertex;
    }
    // Two triangles between neighbouring rings for each of the 24 columns, the last column
    // joining the first.
    for (int i = 0; i < segments; ++i)
        for (int j = 0; j < kRingSize; ++j) {
            const int here = kRingSize * i + 1, next = here + kRingSize;
            const int k = (j + 1) % kRingSize;
            if (!AppendFaceRecord(mesh, here + j, here + k, next + j, colour))
                acutPrintf(L"\n Error setting face record");
            if (!AppendFaceRecord(mesh, here + k, next + k, next + j, colour))
                acutPrintf(L"\n Error setting face record");
        }
    ApplyImportTransform(mesh);
    mesh->close();

    const QelClassRow& kind = QelClassOf(QelCode::ReducingElbow);
    QelMemberRecord record;
    record.memberType = kind.code;
    record.majorRadius = b.major;
    record.minorRadius = b.radius0;
    record.miterCount = b.miterCount;
    record.radius1 = b.radius1;
    record.centroid = b.sweep;
    AcDbGroup* group =
        QelGroupAndTag(mesh, kind.groupName, kind.groupKey, record, objIndex, filePath, nullptr);
    ImportAnnotations(object, translation, rotation, group);
    QelCloseGroup(group);
    AddXData(mesh, kind.xdata);
    return true;
}

} // namespace

QelCreated CreateReducingElbow(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                               const CString* filePath) {
    Bend b;
    if (!readLength(object, "majorRadius", b.major) ||
        !readLength(object, "minorRadius", b.radius0))
        return QelCreated::Failed;
    b.radius1 = b.radius0;
    GetDoubleParam(object, "minorRadius1", b.radius1, true);
    if (!(b.radius0 > 1e-5)) {
        QelReportError(L"\nError, Pipe radius is negative or zero");
        return QelCreated::Failed;
    }
    // A pipe may not reach the bend's axis.
    if (b.major <= b.radius0) b.radius0 = 0.99 * b.major;
    if (b.major <= b.radius1) b.radius1 = 0.99 * b.major;
    GetDoubleParam(object, "endAngle", b.sweep, false);
    QelReadShort(object, "miterCount", b.miterCount);
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    if (meshBend(object, b, translation, rotation, objIndex, filePath)) return QelCreated::Done;
    QelReportError(L"\nError creating Segmented ReducingElbow");
    return QelCreated::Failed;
}
