#include "bulk/tv_mesh.h"

#include "bulk/bulk_creators.h"

#include "bulk/mesh_strips.h"
#include "creators/helpers/format_double.h"
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

#include <string>

namespace {

// The status bar meter of the whole mesh: one step each hundredth of the faces the file
// announces, never past 100.
class MeshMeter {
public:
    explicit MeshMeter(int faceCount) : m_interval(faceCount / 100 > 0 ? faceCount / 100 : 1) {
        acedSetStatusBarProgressMeter(L"Importing TriMesh object", 0, 100);
    }
    ~MeshMeter() { acedRestoreStatusBar(); }
    void Face() {
        if (++m_count < m_interval) return;
        m_count = 0;
        if (m_pos < 100) acedSetStatusBarProgressMeterPos(++m_pos);
    }

private:
    int m_interval;
    int m_count = 0;
    int m_pos = 0;
};

// The vertices and face records of a piece into its mesh (open, in the database). A face that
// the mesh refuses is told and left out.
void BuildPiece(AcDbPolyFaceMesh* mesh, const MeshPiece& piece) {
    for (const AcGePoint3d& point : piece.points) {
        auto* vertex = new AcDbPolyFaceMeshVertex();
        vertex->setPosition(point);
        if (mesh->appendVertex(vertex) == Acad::eOk)
            vertex->close();
        else
            delete vertex;
    }
    for (const MeshFace& face : piece.faces) {
        auto* record = new AcDbFaceRecord();
        for (Adesk::UInt16 place = 0; place < 3; ++place)
            record->setVertexAt(place, Adesk::Int16(face.local[place] + 1));
        record->setVertexAt(3, 0);
        const Acad::ErrorStatus status = mesh->appendFaceRecord(record);
        if (status != Acad::eOk) {
            acutPrintf(status == Acad::eInvalidMeshVertexIndex
                           ? L"\n eInvalidMeshVertexIndex"
                           : L"\n Could not append face record");
            acutPrintf(L"\n Error setting face record");
            delete record;
            continue;
        }
        if (face.colourIndex >= 0) record->setColorIndex(Adesk::UInt16(face.colourIndex));
        record->close();
    }
}

} // namespace

int TvMesh::Import(QelObject* object, unsigned objIndex, const CString* filePath) {
    MeshInput input;
    if (!input.Read(object, *this)) return 0;

    // A mesh without a single strip to read makes no group either.
    StripDecoder decoder(input);
    if (decoder.Done()) return 0;
    CString groupName;
    const QelClassRow& kind = QelClassOf(QelCode::TriMesh);
    AcDbGroup* group = QelMakeObjectGroup(kind.groupName, kind.groupKey, groupName);
    AcGeMatrix3d translation, rotation;
    PoseMatrices(object, translation, rotation);
    const AcGeMatrix3d placement = QelImportTransform() * rotation * translation;
    const int pieces = input.PieceCount();
    MeshMeter meter(input.faceCount);
    AcDbObjectIdArray ids;
    int result = 0, made = 0;
    MeshPiece piece;
    for (int p = 0; p < pieces && !decoder.Done(); ++p) {
        auto* mesh = new AcDbPolyFaceMesh();
        mesh->setDatabaseDefaults();
        if (AddToCurrentSpace(mesh) != Acad::eOk) {
            delete mesh;
            acutPrintf(L"\nCould not add PolyFaceMesh object to dwg space.");
            result = 1;
            break;
        }
        decoder.NextPiece(piece, [&meter] { meter.Face(); });
        BuildPiece(mesh, piece);
        // The pose and the import transform in one step, skipped when it moves nothing.
        if (!placement.isEqualTo(AcGeMatrix3d::kIdentity)) mesh->transformBy(placement);
        mesh->close();
        ids.append(mesh->objectId());
        ++made;

        QelMemberRecord record;
        record.memberType = kind.code;
        QelFillRecordOrigin(record, objIndex, filePath, groupName);
        record.Store(mesh);
        if (made == 1) {
            const AcGePoint3d at = piece.points.size() > 1 ? piece.points[1]
                                   : piece.points.empty()  ? AcGePoint3d::kOrigin
                                                           : piece.points[0];
            ImportAnnotations(object, translation * AcGeMatrix3d::translation(at.asVector()),
                              rotation, group);
        }
        AddXData(mesh, kind.xdata);
    }
    if (made > 1)
        QelReportError((L"\n  The TriMesh was split into " + std::to_wstring(made) +
                        L" different\n  mesh objects, as a mesh object in AutoCAD is limited "
                        L"to 32k\n")
                           .c_str());
    if (group) {
        if (!ids.isEmpty()) group->append(ids);
        group->close();
    }
    return result;
}

QelCreated CreateTriMesh(QelObject* object, void*, int, unsigned char, unsigned objIndex,
                         const CString* filePath) {
    TvMesh mesh;
    return mesh.Import(object, objIndex, filePath) == 0 ? QelCreated::Done : QelCreated::Failed;
}
