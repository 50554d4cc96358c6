// Point clouds and meshes at the sizes where their rules bite: the thinning boundaries, the
// split of a mesh at 32767 faces or vertices, and a cloud that survives a save and an open.
#include "../support/model_space.h"
#include "import_fixture.h"

#include "bulk/param_view.h"
#include "bulk/tv_mesh.h"
#include "creators/points.h"
#include "records/xrecords.h"
#include "shell/doc_data.h"

#include <arx/dbmesh.h>
#include <dxf/drawing.h>

#include <functional>
#include <limits>
#include <set>
#include <string>
#include <vector>

namespace {

using qelintest::FileLayout;

// A JSON array of count numbers made by value(i).
std::string numbers(std::size_t count, const std::function<long long(std::size_t)>& value) {
    std::string out = "[";
    for (std::size_t i = 0; i < count; ++i) {
        if (i) out += ',';
        out += std::to_string(value(i));
    }
    return out + "]";
}

std::string cloud(std::size_t floats, const std::string& intensities = "") {
    std::string params = R"([["points", "float[]", )" +
                         numbers(floats, [](std::size_t i) { return (long long)(i % 1000); }) + "]";
    if (!intensities.empty()) params += R"(, ["intensities", "short[]", )" + intensities + "]";
    return R"({"class": "Pointset", "params": )" + params + "]}";
}

std::string mesh(std::size_t vertices, const std::string& indices, const std::string& lens,
                 long long faceCount) {
    std::string params =
        R"([["vertices", "float[]", )" +
        numbers(3 * vertices, [](std::size_t i) { return (long long)(i / 3 % 97); }) + "]" +
        R"(, ["faceCount", "int", )" + std::to_string(faceCount) + "]" +
        R"(, ["triStripIndices", "int[]", )" + indices + "]";
    if (!lens.empty()) params += R"(, ["triStripLens", "int[]", )" + lens + "]";
    return R"({"class": "TriMesh", "params": )" + params + "]}";
}

// Entities of model space in order.
template <typename Kind>
std::vector<Kind*> modelSpace(AcDbDatabase* db) {
    std::vector<Kind*> out;
    for (const AcDbObjectId& id : modelSpaceIds(*db)) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenObject(entity, id, AcDb::kForRead) != Acad::eOk) continue;
        entity->close();
        if (auto* kind = Kind::cast(entity)) out.push_back(kind);
    }
    return out;
}

AcDbDatabase* working() {
    return acdbHostApplicationServices()->workingDatabase();
}

// Members of each group of the database, in dictionary order.
std::vector<unsigned> groupSizes(AcDbDatabase* db) {
    std::vector<unsigned> sizes;
    AcDbDictionary* groups = nullptr;
    db->getGroupDictionary(groups, AcDb::kForRead);
    AcDbDictionaryIterator* it = groups->newIterator();
    for (; !it->done(); it->next()) {
        AcDbGroup* group = nullptr;
        if (acdbOpenObject(group, it->objectId()) != Acad::eOk) continue;
        sizes.push_back(group->numEntities());
        group->close();
    }
    delete it;
    groups->close();
    return sizes;
}

class BulkImport : public qelintest::ImportTest {
protected:
    void import(const std::string& object) {
        FileLayout layout;
        layout.objects = {object};
        layout.layers = {{R"("Model")", "[0]", ""}};
        QelDocData().importPoints = 1;
        run(layout);
    }
    static std::vector<int> faceCounts() {
        std::vector<int> faces;
        for (AcDbPolyFaceMesh* m : modelSpace<AcDbPolyFaceMesh>(working()))
            faces.push_back(m->numFaces());
        return faces;
    }
};

TEST(PointThinning, EachBoundaryOfTheTable) {
    struct Row {
        unsigned floats, step, stride, limit;
    };
    const Row rows[] = {
        {0, 3, 1, 0},
        {500000, 3, 1, 500000},
        {500001, 6, 2, 500001},
        {2000000, 6, 2, 2000000},
        {2000001, 12, 4, 2000001},
        {5000000, 12, 4, 5000000},
        {5000001, 18, 5, 5000001},
        {6500000, 18, 5, 6500000},
        {6500001, 24, 5, 6500000},
        {4000000000u, 24, 5, 6500000},
    };
    for (const Row& row : rows) {
        const QelThinning thin = QelThinningFor(row.floats);
        EXPECT_EQ(thin.step, row.step) << row.floats << " floats";
        EXPECT_EQ(thin.intensityStride, row.stride) << row.floats << " floats";
        EXPECT_EQ(thin.limit, row.limit) << row.floats << " floats";
    }
}

TEST_F(BulkImport, FiveHundredThousandFloatsKeepEveryPoint) {
    auto progressDialogs = [] {
        int n = 0;
        for (const auto& e : win::Transcript::instance().events(0))
            n += e.kind == win::EventKind::Dialog && e.what == L"created" && e.id == 1008;
        return n;
    };
    const int dialogsBefore = progressDialogs();
    import(cloud(500000));
    const auto points = modelSpace<AcDbPoint>(working());
    ASSERT_EQ(points.size(), 166666u); // the last float, a third of a point, is not read
    EXPECT_EQ(groupSizes(working()), std::vector<unsigned>{166666u});
    int marked = 0;
    for (AcDbPoint* p : points)
        marked += IsQelPointEntity(p);
    EXPECT_EQ(marked, 1);
    EXPECT_TRUE(IsQelPointEntity(points.front()));
    // The run's own dialog and the cloud's.
    EXPECT_EQ(progressDialogs() - dialogsBefore, 2);
}

TEST_F(BulkImport, CancelStopsTheCloudWithThePointsMadeSoFarGrouped) {
    // The cloud's dialog steps every 300 points; Cancel is pressed a few steps in.
    answer("progress cancel 5\n");
    import(cloud(3 * 30000));
    const auto points = modelSpace<AcDbPoint>(working());
    EXPECT_GT(points.size(), 0u);
    EXPECT_LT(points.size(), 3000u);
    EXPECT_EQ(points.size() % 300, 0u) << "the cloud stops at a step of its dialog";
    EXPECT_EQ(groupSizes(working()), std::vector<unsigned>{unsigned(points.size())});
    EXPECT_TRUE(IsQelPointEntity(points.front()));
}

TEST_F(BulkImport, OneFloatMoreTakesEverySecondPointAndEverySecondIntensity) {
    // Intensities alternate between the lowest and the highest: read two by two, every point
    // gets the lowest, red.
    const auto alternating = [](std::size_t i) { return i % 2 ? 32767LL : -32768LL; };
    import(cloud(500001, numbers(166667, alternating)));
    const auto points = modelSpace<AcDbPoint>(working());
    ASSERT_EQ(points.size(), 83334u);
    EXPECT_EQ(points[1]->position().x, 6.0);
    int red = 0;
    for (AcDbPoint* p : points)
        red += p->colorIndex() == 1;
    EXPECT_EQ(red, 83334);
}

// Past 65536 points the colours come from a table of every intensity; below, point by point.
// The two ways agree on every intensity.
TEST_F(BulkImport, AColourTableGivesEachIntensityItsComputedColour) {
    const auto scattered = [](std::size_t i) { return (long long)(i * 7919 % 65536) - 32768; };
    import(cloud(3 * 65535, numbers(65535, scattered)));
    import(cloud(3 * 65536, numbers(65536, scattered)));
    const auto points = modelSpace<AcDbPoint>(working());
    ASSERT_EQ(points.size(), 65535u + 65536u);
    std::set<Adesk::UInt16> colours;
    int differ = 0;
    for (std::size_t i = 0; i < 65535; ++i) {
        differ += points[i]->colorIndex() != points[65535 + i]->colorIndex();
        colours.insert(points[i]->colorIndex());
    }
    EXPECT_EQ(differ, 0);
    EXPECT_GT(colours.size(), 10u); // the ramp's steps, not one colour
}

TEST(ArrayView, TheFirstRealThatIsNotFiniteIsFoundWhereverItIs) {
    std::vector<float> floats(1000, 1e38f);
    EXPECT_EQ(QelFirstNotFinite(floats.data(), 1000u), 1000u);
    EXPECT_EQ(QelFirstNotFinite(floats.data(), 0u), 0u);
    for (unsigned at : {0u, 255u, 256u, 999u}) {
        std::vector<float> spoilt = floats;
        spoilt[at] = std::numeric_limits<float>::quiet_NaN();
        spoilt[999] = -std::numeric_limits<float>::infinity();
        EXPECT_EQ(QelFirstNotFinite(spoilt.data(), 1000u), at);
    }
    std::vector<double> reals = {std::numeric_limits<double>::max(),
                                 std::numeric_limits<double>::denorm_min(), -0.0,
                                 std::numeric_limits<double>::infinity()};
    EXPECT_EQ(QelFirstNotFinite(reals.data(), 4u), 3u);
    EXPECT_EQ(QelFirstNotFinite(reals.data(), 3u), 3u);
}

// Triangles that all use the first three vertices, in strips of 3.
std::string sameTriangles(std::size_t count) {
    return numbers(3 * count, [](std::size_t i) { return (long long)(i % 3); });
}

TEST_F(BulkImport, ExactlyTheFaceLimitSplitsAndRepeatsTheLastStrip) {
    // The last triangle reaches the limit, so the floor rule's second piece writes that strip
    // again.
    import(mesh(3, sameTriangles(32767), "", 32767));
    EXPECT_EQ(faceCounts(), (std::vector<int>{32767, 1}));
    EXPECT_NE(logText().find("split into 2 different"), std::string::npos);
}

TEST_F(BulkImport, OneFacePastTheLimitGoesOnInTheSecondPiece) {
    import(mesh(3, sameTriangles(32768), "", 32768));
    EXPECT_EQ(faceCounts(), (std::vector<int>{32767, 2}));
}

TEST_F(BulkImport, OneFaceBelowTheLimitStaysInOnePiece) {
    import(mesh(3, sameTriangles(32766), "", 32766));
    EXPECT_EQ(faceCounts(), std::vector<int>{32766});
    EXPECT_EQ(logText().find("split into"), std::string::npos);
}

TEST_F(BulkImport, AStripThatFillsAPieceComesRoundUntilThePiecesRunOut) {
    // One strip of 32770 distinct vertices: the vertex limit stops each piece at the same place.
    const std::size_t count = 32770;
    const auto each = [](std::size_t i) { return (long long)i; };
    import(mesh(count, numbers(count, each), "[" + std::to_string(count) + "]", 0));
    const std::vector<int> faces = faceCounts();
    ASSERT_EQ(faces.size(), 2u);
    EXPECT_EQ(faces[0], faces[1]);
    for (AcDbPolyFaceMesh* m : modelSpace<AcDbPolyFaceMesh>(working()))
        EXPECT_EQ(m->numVertices(), TvMesh::kMaxVerts);
}

TEST_F(BulkImport, ACloudSavesAndOpensAgain) {
    const auto spread = [](std::size_t i) { return (long long)i * 13 - 32768; };
    import(cloud(3 * 5000, numbers(5000, spread)));
    const auto points = modelSpace<AcDbPoint>(working());
    ASSERT_EQ(points.size(), 5000u);
    const std::string path = (m_folder / "cloud.dxf").string();
    std::string message;
    ASSERT_TRUE(dxf::saveDrawing(*working(), path, message)) << message;
    std::unique_ptr<AcDbDatabase> reopened = dxf::openDrawing(path, message);
    ASSERT_TRUE(reopened) << message;
    const auto again = modelSpace<AcDbPoint>(reopened.get());
    ASSERT_EQ(again.size(), 5000u);
    EXPECT_EQ(groupSizes(reopened.get()), std::vector<unsigned>{5000u});
    for (std::size_t i : {std::size_t(0), std::size_t(1234), std::size_t(4999)}) {
        EXPECT_EQ(again[i]->position(), points[i]->position());
        EXPECT_EQ(again[i]->colorIndex(), points[i]->colorIndex());
    }
    EXPECT_TRUE(IsQelPointEntity(again.front()));
    EXPECT_FALSE(IsQelPointEntity(again.back()));
}

} // namespace
