// Meshes on the way out, in the host: the triangles of polygon grids and face records, and the
// generic mesh of a solid through the host's STL text, which must put the solid back where it
// lay whatever happens and leave no temporary file.
#include "export/generic_mesh.h"
#include "host_fixture.h"
#include "objectfile/param_read.h"
#include "writers/mesh_writers.h"

#include <arx/dbmesh.h>
#include <arx/dbsol3d.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace {

std::vector<AcGePoint3d> grid(int m, int n) {
    std::vector<AcGePoint3d> points;
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j)
            points.emplace_back(j, i, 0.25 * i * j);
    return points;
}

TEST(MeshTriangles, GridsWrapWhereClosedAndDropDegenerateQuads) {
    // Open 3 by 4: 2 by 3 quads, two triangles each, corners as the grid numbers them.
    const std::vector<int> open = QelGridTriangles(grid(3, 4), 3, 4, false, false);
    ASSERT_EQ(open.size(), 2u * 2 * 3 * 3);
    EXPECT_EQ(std::vector<int>(open.begin(), open.begin() + 6),
              (std::vector<int>{0, 1, 4, 4, 1, 5}));
    // Closed in N adds the quads from the last column back to the first; in M, from the last
    // row back to the first; both, the corner quad too.
    EXPECT_EQ(QelGridTriangles(grid(3, 4), 3, 4, false, true).size(), 2u * 3 * 2 * 4);
    const std::vector<int> both = QelGridTriangles(grid(3, 4), 3, 4, true, true);
    ASSERT_EQ(both.size(), 2u * 3 * 3 * 4);
    EXPECT_EQ(std::vector<int>(both.end() - 6, both.end()), (std::vector<int>{11, 8, 3, 3, 8, 0}));

    // A quad with two corners on one point leaves one triangle; a quad collapsed to a line none.
    std::vector<AcGePoint3d> pinched = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 1, 0}};
    EXPECT_EQ(QelGridTriangles(pinched, 2, 2, false, false), (std::vector<int>{0, 1, 2}));
    std::vector<AcGePoint3d> line = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}};
    EXPECT_TRUE(QelGridTriangles(line, 2, 2, false, false).empty());
}

// A polygon mesh of the drawing closed in M (a band whose last row joins its first) leaves with
// the wrapping faces, its vertices in metres as the grid numbers them; a smoothed one by its
// control grid, the only vertices the host hands out.
using PolygonMesh = qelintest::HostTest;
TEST_F(PolygonMesh, AClosedMeshLeavesWithItsWrappingFaces) {
    for (const AcDb::PolyMeshType type : {AcDb::kSimpleMesh, AcDb::kCubicSurfaceMesh}) {
        AcGePoint3dArray points;
        for (const AcGePoint3d& point : grid(3, 4))
            points.append(point);
        auto* mesh = new AcDbPolygonMesh(type, 3, 4, points, true, false);
        AcDbBlockTableRecord* space = nullptr;
        acdbOpenObject(space, acdbHostApplicationServices()->workingDatabase()->modelSpaceId(),
                       AcDb::kForWrite);
        AcDbObjectId id;
        ASSERT_EQ(space->appendAcDbEntity(id, mesh), Acad::eOk);
        mesh->close();
        space->close();
        QelObjectRef target(QelObject::Create("TriMesh"));
        QelWriter writer;
        ASSERT_TRUE(QelWriteTriMesh(AcGeMatrix3d::kIdentity, target.get(), writer, id));
        int vertices = 0, faces = 0;
        target->GetParam("vertexCount", 0)->GetValue(vertices);
        target->GetParam("faceCount", 0)->GetValue(faces);
        EXPECT_EQ(vertices, 12);
        EXPECT_EQ(faces, 2 * 3 * 3);
        int* indices = nullptr;
        unsigned count = 0;
        target->GetParam("triStripIndices", 0)->GetValue(indices, count, false);
        ASSERT_EQ(count, 3u * unsigned(faces));
        EXPECT_EQ(std::vector<int>(indices + count - 3, indices + count),
                  (std::vector<int>{2, 11, 3}))
            << "the last quad joins row 2 to row 0";
    }
}

TEST(MeshTriangles, FaceRecordsGiveTrianglesFromZero) {
    auto triangles = [](short a, short b, short c, short d) {
        const short record[4] = {a, b, c, d};
        return QelFaceRecordTriangles(record);
    };
    EXPECT_EQ(triangles(1, 2, 3, 0), (std::vector<int>{0, 1, 2})) << "fourth index 0";
    EXPECT_EQ(triangles(1, 2, 3, 1), (std::vector<int>{0, 1, 2})) << "fourth repeats the first";
    EXPECT_EQ(triangles(1, 2, 3, 4), (std::vector<int>{0, 1, 2, 2, 3, 0}));
    EXPECT_EQ(triangles(-1, 2, -3, -4), (std::vector<int>{0, 1, 2, 2, 3, 0})) << "hidden edges";
    EXPECT_TRUE(triangles(1, 2, 0, 0).empty()) << "fewer than three corners make no face";
}

class GenericMesh : public qelintest::HostTest {
protected:
    // A block with a slot cut across it, no primitive, lying partly below zero: boxes are made
    // about their centres, so the block spans x -7 to -3, y 9 to 11, z -1.5 to 0.5.
    AcDbObjectId slottedBlock() {
        auto* block = new AcDb3dSolid();
        EXPECT_EQ(block->createBox(4.0, 2.0, 2.0), Acad::eOk);
        AcDb3dSolid slot;
        EXPECT_EQ(slot.createBox(1.0, 3.0, 1.0), Acad::eOk);
        slot.transformBy(AcGeMatrix3d::translation(AcGeVector3d(0.5, 0.0, 0.5)));
        EXPECT_EQ(block->booleanOper(AcDb::kBoolSubtract, &slot), Acad::eOk);
        block->transformBy(AcGeMatrix3d::translation(AcGeVector3d(-5.0, 10.0, -0.5)));
        AcDbBlockTableRecord* space = nullptr;
        acdbOpenObject(space, acdbHostApplicationServices()->workingDatabase()->modelSpaceId(),
                       AcDb::kForWrite);
        AcDbObjectId id;
        EXPECT_EQ(space->appendAcDbEntity(id, block), Acad::eOk);
        block->close();
        space->close();
        return id;
    }
    static AcGePoint3d lowestCorner(const AcDbObjectId& id) {
        AcDbEntity* entity = nullptr;
        AcDbExtents extents;
        EXPECT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
        entity->getGeomExtents(extents);
        entity->close();
        return extents.minPoint();
    }
    void useTempFolder(const std::filesystem::path& folder) {
        const char* old = std::getenv("TMPDIR");
        m_oldTemp = old ? std::optional<std::string>(old) : std::nullopt;
        ::setenv("TMPDIR", folder.c_str(), 1);
    }
    void TearDown() override {
        m_oldTemp ? ::setenv("TMPDIR", m_oldTemp->c_str(), 1) : ::unsetenv("TMPDIR");
        HostTest::TearDown();
    }
    std::optional<std::string> m_oldTemp;
};

// The slotted block below zero leaves as its mesh at its own place, in the export's units, its
// vertices merged; the solid lies where it lay and the temporary file is gone. (Its volume is
// checked from the user's side.)
TEST_F(GenericMesh, ASolidBelowZeroLeavesAsItsMeshAndStaysInPlace) {
    const AcDbObjectId id = slottedBlock();
    const std::filesystem::path temp = m_folder / "temp";
    std::filesystem::create_directories(temp);
    useTempFolder(temp);
    QelDocData().exportUnitIndex = 1; // drawing millimetres to the file's metres
    QelObjectRef mesh(QelObject::Create("TriMesh"));
    QelWriter writer;
    ASSERT_TRUE(writeGenericMesh(mesh.get(), writer, id, AcGeMatrix3d::kIdentity));
    float* v = nullptr;
    unsigned floats = 0;
    mesh->GetParam("vertices", 0)->GetValue(v, floats, false);
    int vertexCount = 0, faceCount = 0;
    mesh->GetParam("vertexCount", 0)->GetValue(vertexCount);
    mesh->GetParam("faceCount", 0)->GetValue(faceCount);
    EXPECT_EQ(mesh->GetParam("triStripIndices", 0)->GetArraySize(), 3u * unsigned(faceCount));
    ASSERT_EQ(floats, 3u * unsigned(vertexCount));
    EXPECT_LT(vertexCount, faceCount) << "corners shared by triangles are one vertex";
    float low[3] = {1e9f, 1e9f, 1e9f};
    for (unsigned i = 0; i < floats; ++i)
        low[i % 3] = std::min(low[i % 3], v[i]);
    EXPECT_NEAR(low[0], -0.007, 1e-9);
    EXPECT_NEAR(low[1], 0.009, 1e-9);
    EXPECT_NEAR(low[2], -0.0015, 1e-9);
    EXPECT_TRUE(lowestCorner(id).isEqualTo(AcGePoint3d(-7.0, 9.0, -1.5)));
    EXPECT_TRUE(std::filesystem::is_empty(temp));
}

// A temporary folder that can't be written makes the STL write fail: false with its message,
// and the solid is back in its place.
TEST_F(GenericMesh, AFailedWriteLeavesTheSolidInPlace) {
    const AcDbObjectId id = slottedBlock();
    useTempFolder(m_folder / "no such folder");
    const std::size_t mark = win::Transcript::instance().size();
    QelObjectRef mesh(QelObject::Create("TriMesh"));
    QelWriter writer;
    EXPECT_FALSE(writeGenericMesh(mesh.get(), writer, id, AcGeMatrix3d::kIdentity));
    EXPECT_EQ(mesh->GetParam("vertices", 0), nullptr);
    std::wstring printed;
    for (const auto& event : win::Transcript::instance().events(mark))
        printed += event.text;
    EXPECT_NE(printed.find(L"error converting to mesh (skipping)"), std::wstring::npos) << printed;
    EXPECT_TRUE(lowestCorner(id).isEqualTo(AcGePoint3d(-7.0, 9.0, -1.5)));
}

} // namespace
