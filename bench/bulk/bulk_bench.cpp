// Point clouds and triangle meshes coming into a drawing, each beside the host doing the same
// work by itself in the same run:
//  - a Pointset of 2 000 000 points (6 000 000 floats, every 6th point taken) against the same
//    333 334 points made bare: new, appended to model space, closed;
//  - a TriMesh of 1 000 000 triangles in strips against building the same host meshes straight
//    from arrays of their vertices and faces.
// Memory is the growth of the C heap in use over one import, per entity made.
#include <benchmark/benchmark.h>

#include "bulk/bulk_creators.h"
#include "bulk/mesh_strips.h"
#include "creators/points.h"
#include "shell/doc_data.h"
#include "shell/settings_store.h"

#include <arx/dbmesh.h>
#include <arx/edhost.h>

#include <malloc.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

namespace {

constexpr unsigned kCloudFloats = 6'000'000;
constexpr int kStripColumns = 1001; // 2000 triangles a strip
constexpr int kStrips = 500;        // 1 000 000 triangles

size_t heapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// A host document of the benchmark's own, with a registry file of its own that keeps error
// boxes silent.
struct Host {
    Host() {
        const auto registry = std::filesystem::temp_directory_path() / "qel-bulk-bench-reg.json";
        std::filesystem::remove(registry);
        ::setenv("QELCAD_REGISTRY", registry.c_str(), 1);
        CreateString(QEL_SETTINGS_KEY, L"", L"");
        WriteNumber(QEL_SETTINGS_KEY, L"SurpressErrorMessages", 1);
    }
};

struct Document {
    Document() : document(qelhost::newDocument()) {
        QelDocData().importPoints = 1;
        QelDocData().objectsLeft = 1;
    }
    ~Document() { qelhost::closeDocument(document); }
    AcApDocument* document;
};

QelObject* makeCloud() {
    static Host host;
    std::vector<float> floats(kCloudFloats);
    for (unsigned i = 0; i < kCloudFloats; ++i)
        floats[i] = float(i % 3000) * 0.01f;
    std::vector<short> intensities(kCloudFloats / 3);
    for (std::size_t i = 0; i < intensities.size(); ++i)
        intensities[i] = short(int(i % 65536) - 32768);
    QelObject* object = QelObject::Create("Pointset");
    object->AddOrReplaceParam(QelParam::Create("points", floats.data(), kCloudFloats));
    object->AddOrReplaceParam(
        QelParam::Create("intensities", intensities.data(), unsigned(intensities.size())));
    return object;
}

QelObject* makeMesh() {
    static Host host;
    const int rows = kStrips + 1;
    std::vector<float> vertices;
    vertices.reserve(std::size_t(3) * kStripColumns * rows);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < kStripColumns; ++c) {
            vertices.push_back(float(c) * 0.1f);
            vertices.push_back(float(r) * 0.1f);
            vertices.push_back(float((r * 7 + c * 3) % 11) * 0.01f);
        }
    // Each strip zig-zags between two rows: (r, c), (r+1, c), (r, c+1), (r+1, c+1), ...
    std::vector<int> indices, lens;
    for (int r = 0; r < kStrips; ++r) {
        for (int c = 0; c < kStripColumns; ++c) {
            indices.push_back(r * kStripColumns + c);
            indices.push_back((r + 1) * kStripColumns + c);
        }
        lens.push_back(2 * kStripColumns);
    }
    QelObject* object = QelObject::Create("TriMesh");
    object->AddOrReplaceParam(
        QelParam::Create("vertices", vertices.data(), unsigned(vertices.size())));
    object->AddOrReplaceParam(QelParam::Create("faceCount", kStrips * 2 * (kStripColumns - 1)));
    object->AddOrReplaceParam(
        QelParam::Create("triStripIndices", indices.data(), unsigned(indices.size())));
    object->AddOrReplaceParam(QelParam::Create("triStripLens", lens.data(), unsigned(lens.size())));
    return object;
}

template <typename Kind>
int countInModelSpace() {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTableRecord* space = nullptr;
    acdbOpenObject(space, db->modelSpaceId(), AcDb::kForRead);
    AcDbBlockTableRecordIterator* it = nullptr;
    space->newIterator(it);
    int count = 0;
    for (; !it->done(); it->step()) {
        AcDbEntity* entity = nullptr;
        if (it->getEntity(entity) != Acad::eOk) continue;
        count += Kind::cast(entity) != nullptr;
        entity->close();
    }
    delete it;
    space->close();
    return count;
}

// Runs make(floats, count) once per iteration in a fresh document, timing only make, and
// reports the points made and the heap grown per point.
template <typename Make>
void measurePoints(benchmark::State& state, Make make) {
    QelObject* object = makeCloud();
    float* floats = nullptr;
    unsigned count = 0;
    object->GetParam("points", 0)->GetValue(floats, count, false);
    double bytes = 0, points = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto document = std::make_unique<Document>();
        const size_t before = heapInUse();
        state.ResumeTiming();
        make(object, floats, count);
        state.PauseTiming();
        points = countInModelSpace<AcDbPoint>();
        bytes = double(heapInUse() - before) / points;
        document.reset();
        state.ResumeTiming();
    }
    object->UnRef();
    state.counters["points"] = points;
    state.counters["points_per_second"] =
        benchmark::Counter(points * double(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["bytes_per_point"] = bytes;
}

void BM_PointsetImport(benchmark::State& state) {
    const CString file(L"/data/models/cloud.qel");
    measurePoints(state, [&file](QelObject* object, const float*, unsigned) {
        CreatePointset(object, nullptr, 0, 1, 7, &file);
    });
}
BENCHMARK(BM_PointsetImport)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();

// The same points, as the thinning takes them, made by the host alone.
void BM_HostBarePoints(benchmark::State& state) {
    measurePoints(state, [](QelObject*, const float* floats, unsigned count) {
        const QelThinning thin = QelThinningFor(count);
        AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
        AcDbBlockTableRecord* space = nullptr;
        acdbOpenObject(space, db->modelSpaceId(), AcDb::kForWrite);
        for (unsigned i = 0; i + 2 < thin.limit && i + 2 < count; i += thin.step) {
            auto* point = new AcDbPoint(AcGePoint3d(floats[i], floats[i + 1], floats[i + 2]));
            space->appendAcDbEntity(point);
            point->close();
        }
        space->close();
    });
}
BENCHMARK(BM_HostBarePoints)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();

void BM_TriMeshImport(benchmark::State& state) {
    QelObject* object = makeMesh();
    const CString file(L"/data/models/mesh.qel");
    double meshes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto document = std::make_unique<Document>();
        state.ResumeTiming();
        CreateTriMesh(object, nullptr, 0, 1, 3, &file);
        state.PauseTiming();
        meshes = countInModelSpace<AcDbPolyFaceMesh>();
        document.reset();
        state.ResumeTiming();
    }
    object->UnRef();
    state.counters["meshes"] = meshes;
}
BENCHMARK(BM_TriMeshImport)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();

// The meshes the import makes, built by the host from their vertex and face arrays.
void BM_HostMeshesFromArrays(benchmark::State& state) {
    QelObject* object = makeMesh();
    std::vector<MeshPiece> pieces;
    {
        Document document;
        TvMesh ramp;
        MeshInput input;
        input.Read(object, ramp);
        StripDecoder decoder(input);
        for (int p = 0; p < input.PieceCount() && !decoder.Done(); ++p) {
            pieces.emplace_back();
            decoder.NextPiece(pieces.back(), [] {});
        }
    }
    for (auto _ : state) {
        state.PauseTiming();
        auto document = std::make_unique<Document>();
        state.ResumeTiming();
        AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
        for (const MeshPiece& piece : pieces) {
            AcDbBlockTableRecord* space = nullptr;
            acdbOpenObject(space, db->modelSpaceId(), AcDb::kForWrite);
            auto* mesh = new AcDbPolyFaceMesh();
            space->appendAcDbEntity(mesh);
            space->close();
            for (const AcGePoint3d& p : piece.points) {
                auto* vertex = new AcDbPolyFaceMeshVertex(p);
                mesh->appendVertex(vertex);
                vertex->close();
            }
            for (const MeshFace& f : piece.faces) {
                auto* face =
                    new AcDbFaceRecord(Adesk::Int16(f.local[0] + 1), Adesk::Int16(f.local[1] + 1),
                                       Adesk::Int16(f.local[2] + 1), 0);
                mesh->appendFaceRecord(face);
                face->close();
            }
            mesh->close();
        }
        state.PauseTiming();
        document.reset();
        state.ResumeTiming();
    }
    object->UnRef();
    state.counters["meshes"] = double(pieces.size());
}
BENCHMARK(BM_HostMeshesFromArrays)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
