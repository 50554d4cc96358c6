// Meshes on the way out, in the host: the triangles of polygon grids and face records, and the
// generic mesh of a solid through the host's STL text, which must put the solid back where it
// lay whatever happens and leave no temporary file.
#include "export/generic_mesh.h"
#include "host_fixture.h"
#include "objectfile/param_read.h"
#include "writers/mesh_writers.h"

#include <arx/dbsol3d.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <map>

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
    // A block with a slot cut across it, no primitive, lying partly below zero in x and z. Boxes
    // are made about their centres: the block spans 4 by 2 by 2 around the origin, the slot
    // x 0 to 1, y across, z 0 to 1.
    AcDbObjectId slottedBlock(double& volume) {
        auto* block = new AcDb3dSolid();
        EXPECT_EQ(block->createBox(4.0, 2.0, 2.0), Acad::eOk);
        AcDb3dSolid slot;
        EXPECT_EQ(slot.createBox(1.0, 3.0, 1.0), Acad::eOk);
        slot.transformBy(AcGeMatrix3d::translation(AcGeVector3d(0.5, 0.0, 0.5)));
        EXPECT_EQ(block->booleanOper(AcDb::kBoolSubtract, &slot), Acad::eOk);
        block->transformBy(AcGeMatrix3d::translation(AcGeVector3d(-5.0, 10.0, -0.5)));
        volume = 16.0 - 1.0 * 2.0 * 1.0;
        AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
        AcDbBlockTable* table = nullptr;
        db->getBlockTable(table, AcDb::kForRead);
        AcDbBlockTableRecord* space = nullptr;
        table->getAt(ACDB_MODEL_SPACE, space, AcDb::kForWrite);
        table->close();
        AcDbObjectId id;
        EXPECT_EQ(space->appendAcDbEntity(id, block), Acad::eOk);
        block->close();
        space->close();
        return id;
    }
    static AcDbExtents extentsOf(const AcDbObjectId& id) {
        AcDbEntity* entity = nullptr;
        AcDbExtents extents;
        EXPECT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
        entity->getGeomExtents(extents);
        entity->close();
        return extents;
    }
    static std::vector<float> floats(QelObject* object, const char* name) {
        float* values = nullptr;
        unsigned count = 0;
        object->GetParam(name, 0)->GetValue(values, count, false);
        return std::vector<float>(values, values + count);
    }
    static std::vector<int> ints(QelObject* object, const char* name) {
        int* values = nullptr;
        unsigned count = 0;
        object->GetParam(name, 0)->GetValue(values, count, false);
        return std::vector<int>(values, values + count);
    }
    // QelTmp files of the folder.
    static int leftovers(const std::filesystem::path& folder) {
        int count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            count += entry.path().filename().string().rfind("QelTmp", 0) == 0;
        return count;
    }
    void useTempFolder(const std::filesystem::path& folder) {
        const char* old = std::getenv("TMPDIR");
        m_oldTemp = old ? old : "";
        m_hadTemp = old != nullptr;
        ::setenv("TMPDIR", folder.c_str(), 1);
    }
    void TearDown() override {
        if (m_hadTemp)
            ::setenv("TMPDIR", m_oldTemp.c_str(), 1);
        else
            ::unsetenv("TMPDIR");
        HostTest::TearDown();
    }
    std::string m_oldTemp;
    bool m_hadTemp = false;
};

// The slotted block below zero leaves as a closed mesh of its own volume, at its own place, its
// vertices merged (each used by several triangles); the solid lies where it lay, and the
// temporary file is gone. In millimetres every length is a thousandth.
TEST_F(GenericMesh, ASolidBelowZeroLeavesAsItsMeshAndStaysInPlace) {
    double volume = 0.0;
    const AcDbObjectId id = slottedBlock(volume);
    const AcDbExtents before = extentsOf(id);
    const std::filesystem::path temp = m_folder / "temp";
    std::filesystem::create_directories(temp);
    useTempFolder(temp);
    for (const int units : {0, 1}) {
        SCOPED_TRACE(units ? "millimetres" : "metres");
        QelDocData().exportUnitIndex = units;
        const double scale = units ? 1000.0 : 1.0;
        QelObjectRef mesh(QelObject::Create("TriMesh"));
        QelWriter writer;
        ASSERT_TRUE(writeGenericMesh(mesh.get(), writer, id, AcGeMatrix3d::kIdentity));
        const std::vector<float> v = floats(mesh.get(), "vertices");
        const std::vector<int> faces = ints(mesh.get(), "triStripIndices");
        int count = 0, faceCount = 0;
        mesh->GetParam("vertexCount", 0)->GetValue(count);
        mesh->GetParam("faceCount", 0)->GetValue(faceCount);
        ASSERT_EQ(v.size(), 3u * unsigned(count));
        ASSERT_EQ(faces.size(), 3u * unsigned(faceCount));
        EXPECT_LT(3 * count, 3 * faceCount) << "shared vertices are merged";
        // The divergence theorem over the triangles: the enclosed volume, outward normals
        // positive.
        double enclosed = 0.0;
        std::map<std::array<int, 2>, int> edges;
        for (std::size_t t = 0; t < faces.size(); t += 3) {
            AcGeVector3d corner[3];
            for (int k = 0; k < 3; ++k) {
                const std::size_t at = 3 * std::size_t(faces[t + k]);
                corner[k] = AcGeVector3d(v[at], v[at + 1], v[at + 2]) * scale;
                ++edges[{faces[t + k], faces[t + (k + 1) % 3]}];
            }
            enclosed += corner[0].dotProduct(corner[1].crossProduct(corner[2])) / 6.0;
        }
        EXPECT_NEAR(enclosed, volume, 1e-4 * volume);
        for (const auto& [edge, uses] : edges)
            EXPECT_EQ(edges.count({edge[1], edge[0]}), 1u) << "an edge without its twin";
        float low[3] = {1e9f, 1e9f, 1e9f};
        for (std::size_t i = 0; i < v.size(); ++i)
            low[i % 3] = std::min(low[i % 3], v[i]);
        EXPECT_NEAR(low[0] * scale, -7.0, 1e-5);
        EXPECT_NEAR(low[1] * scale, 9.0, 1e-5);
        EXPECT_NEAR(low[2] * scale, -1.5, 1e-5);
        const AcDbExtents after = extentsOf(id);
        EXPECT_TRUE(after.minPoint().isEqualTo(before.minPoint()));
        EXPECT_TRUE(after.maxPoint().isEqualTo(before.maxPoint()));
        EXPECT_EQ(leftovers(temp), 0);
    }
}

// A temporary folder that can't be written makes the STL write fail: false with its message,
// and the solid is back in its place.
TEST_F(GenericMesh, AFailedWriteLeavesTheSolidInPlace) {
    double volume = 0.0;
    const AcDbObjectId id = slottedBlock(volume);
    const AcDbExtents before = extentsOf(id);
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
    const AcDbExtents after = extentsOf(id);
    EXPECT_TRUE(after.minPoint().isEqualTo(before.minPoint()));
    EXPECT_TRUE(after.maxPoint().isEqualTo(before.maxPoint()));
}

} // namespace
