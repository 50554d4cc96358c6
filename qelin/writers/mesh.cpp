// Polygon and polyface meshes as triangle meshes.
#include "shell/doc_data.h"
#include "shell/settings_store.h"
#include "writers/mesh_params.h"
#include "writers/mesh_writers.h"

#include <arx/aced.h>
#include <arx/dbmesh.h>

#include <cstdlib>
#include <memory>

namespace {

bool degenerate(const AcGePoint3d& a, const AcGePoint3d& b, const AcGePoint3d& c) {
    const AcGeVector3d u = b - a, v = c - a;
    const AcGeTol& tol = AcGeContext::gTol;
    return u.isZeroLength(tol) || v.isZeroLength(tol) || u.isEqualTo(v, tol) ||
           u.isParallelTo(v, tol);
}

void addTriangle(const std::vector<AcGePoint3d>& grid, std::vector<int>& out, int a, int b, int c) {
    if (degenerate(grid[std::size_t(a)], grid[std::size_t(b)], grid[std::size_t(c)])) return;
    out.insert(out.end(), {a, b, c});
}

template <class Vertex>
std::vector<AcGePoint3d> positions(AcDbObjectIterator* iterator) {
    std::vector<AcGePoint3d> points;
    std::unique_ptr<AcDbObjectIterator> owned(iterator);
    if (!owned) return points;
    for (owned->start(); !owned->done(); owned->step())
        if (auto* vertex = Vertex::cast(owned->entity())) points.push_back(vertex->position());
    return points;
}

bool writePolygonMesh(AcDbPolygonMesh* mesh, QelObject* target) {
    const std::vector<AcGePoint3d> points =
        positions<AcDbPolygonMeshVertex>(mesh->vertexIterator());
    int m = mesh->mSize(), n = mesh->nSize();
    if (mesh->polyMeshType() != AcDb::kSimpleMesh) {
        // A smoothed mesh counts its rows by its densities, when its vertices are that grid.
        const int mDense = mesh->mSurfaceDensity(), nDense = mesh->nSurfaceDensity();
        if (std::size_t(mDense) * std::size_t(nDense) == points.size()) {
            m = mDense;
            n = nDense;
        }
    }
    if (m < 1 || n < 1 || points.size() < std::size_t(m) * std::size_t(n)) return false;
    const std::vector<int> indices =
        QelGridTriangles(points, m, n, mesh->isMClosed(), mesh->isNClosed());
    QelWriteMeshParams(target, points, indices);
    return true;
}

// The intensities only an export of a drawing without an original file, under process method
// 1, carries: all 0, over the range 0 to 1.
bool wantsIntensities() {
    DWORD method = 0;
    return ReadNumber(QEL_SETTINGS_KEY, L"ExportProcessMethod", method) && method == 1 &&
           QelDocData().hasOriginalFile == 0;
}

bool writePolyFaceMesh(AcDbPolyFaceMesh* mesh, QelObject* target) {
    std::vector<AcGePoint3d> points;
    std::vector<int> indices;
    std::unique_ptr<AcDbObjectIterator> iterator(mesh->vertexIterator());
    if (!iterator) return false;
    for (iterator->start(); !iterator->done(); iterator->step()) {
        AcDbEntity* entity = iterator->entity();
        if (auto* vertex = AcDbPolyFaceMeshVertex::cast(entity)) {
            points.push_back(vertex->position());
            continue;
        }
        auto* face = AcDbFaceRecord::cast(entity);
        if (!face) continue;
        short record[4] = {};
        if (face->getVertexAt(0, record[0]) != Acad::eOk) {
            acutPrintf(L"\n Error getting vertex");
            continue;
        }
        for (unsigned short k = 1; k < 4; ++k)
            face->getVertexAt(k, record[k]);
        const std::vector<int> triangles = QelFaceRecordTriangles(record);
        bool inside = true; // a face past the vertices is no face
        for (const int index : triangles)
            inside = inside && std::size_t(index) < points.size();
        if (!inside) continue;
        indices.insert(indices.end(), triangles.begin(), triangles.end());
    }
    QelWriteMeshParams(target, points, indices);
    if (wantsIntensities()) {
        const std::vector<short> zero(points.size(), 0);
        target->AddOrReplaceParam(
            QelParam::Create("intensities", zero.data(), static_cast<unsigned>(zero.size())));
        target->AddOrReplaceParam(QelParam::Create("minIntensity", 0.0f));
        target->AddOrReplaceParam(QelParam::Create("maxIntensity", 1.0f));
    }
    return true;
}

} // namespace

std::vector<int> QelGridTriangles(const std::vector<AcGePoint3d>& grid, int m, int n, bool mClosed,
                                  bool nClosed) {
    std::vector<int> out;
    const int rows = mClosed ? m : m - 1, columns = nClosed ? n : n - 1;
    for (int i = 0; i < rows; ++i)
        for (int j = 0; j < columns; ++j) {
            const int i1 = (i + 1) % m, j1 = (j + 1) % n;
            const int c00 = i * n + j, c10 = i1 * n + j, c01 = i * n + j1, c11 = i1 * n + j1;
            addTriangle(grid, out, c00, c01, c10);
            addTriangle(grid, out, c10, c01, c11);
        }
    return out;
}

std::vector<int> QelFaceRecordTriangles(const short record[4]) {
    std::vector<int> stored;
    for (int k = 0; k < 3; ++k)
        if (std::abs(record[k]) >= 1) stored.push_back(std::abs(record[k]) - 1);
    if (stored.size() < 3) return {};
    const int fourth = std::abs(record[3]);
    if (fourth == 0 || fourth == std::abs(record[0])) return stored;
    const int w = stored[0], x = stored[1], y = stored[2], z = fourth - 1;
    return {w, x, y, y, z, w};
}

bool QelWriteTriMesh(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return false;
    bool written = false;
    if (auto* grid = AcDbPolygonMesh::cast(entity))
        written = writePolygonMesh(grid, target);
    else if (auto* faces = AcDbPolyFaceMesh::cast(entity))
        written = writePolyFaceMesh(faces, target);
    entity->close();
    return written;
}
