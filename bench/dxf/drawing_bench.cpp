// Saving and opening a drawing of 100 000 mixed entities, each tagged as the module tags what it
// imports (a 29-item member record in its extension dictionary, extended data, membership of a
// group of ten): MB/s both ways, beside ezdxf reading the same file in the same run.
#include <arx/arx.h>
#include <benchmark/benchmark.h>
#include <dxf/drawing.h>

#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

namespace {

// qelcad's host starts with the C allocator's fast bins off (qelhost::registerSolidClasses); the
// drawing is saved and opened here in a process set up the same way. QEL_BENCH_FASTBINS=1 keeps
// the allocator's default, to compare.
const bool kHostAllocator = [] {
    const char* keep = std::getenv("QEL_BENCH_FASTBINS");
    return keep != nullptr && *keep == '1' ? false : mallopt(M_MXFAST, 0) == 1;
}();

constexpr int kEntities = 100'000;
constexpr int kGroupSize = 10;

resbuf* memberRecord(int index) {
    resbuf* chain = acutBuildList(1, L"/data/models/plant.qel", 1, L"*A1", 90, 20, 90, index, 90, 0,
                                  90, 0, 90, 0, 90, 0, 90, 0, 0);
    resbuf* tail = chain;
    while (tail->rbnext)
        tail = tail->rbnext;
    for (int i = 0; i < 10; ++i)
        tail = tail->rbnext = acutBuildList(40, 0.125 * (i + index), 0);
    tail = tail->rbnext = acutBuildList(1, L"0", 1, L"0", 0);
    tail = tail->rbnext;
    for (int i = 0; i < 8; ++i)
        tail = tail->rbnext = acutBuildList(40, 1.0 / (i + 3), 0);
    return chain;
}

AcDbEntity* entity(int i) {
    const double x = i * 0.37, y = i * 0.11;
    switch (i % 6) {
    case 0:
        return new AcDbLine({x, y, 0}, {x + 1.5, y + 2.25, 3});
    case 1:
        return new AcDbCircle({x, y, 1}, AcGeVector3d::kZAxis, 0.75);
    case 2:
        return new AcDbArc({x, y, 0}, 2.5, 0.3, 2.1);
    case 3: {
        auto* p = new AcDbPolyline;
        for (unsigned k = 0; k < 4; ++k)
            p->addVertexAt(k, {x + k, y + (k % 2)}, k == 1 ? 0.5 : 0.0);
        return p;
    }
    case 4:
        return new AcDbText({x, y, 0}, L"Diameter: 0.273", AcDbObjectId::kNull, 0.25, 0.0);
    default:
        return new AcDbFace({x, y, 0}, {x + 1, y, 0}, {x + 1, y + 1, 1}, {x, y + 1, 1});
    }
}

std::unique_ptr<AcDbDatabase> tagged() {
    auto db = std::make_unique<AcDbDatabase>();
    acdbHostApplicationServices()->setWorkingDatabase(db.get());
    acdbRegApp(L"Tovi_Technologies");
    resbuf* xdata = acutBuildList(1001, L"Tovi_Technologies", 1000, L"Cylinder", 0);
    AcDbBlockTableRecord* space = nullptr;
    acdbOpenObject(space, db->currentSpaceId(), AcDb::kForWrite);
    AcDbDictionary* groups = nullptr;
    db->getGroupDictionary(groups, AcDb::kForWrite);
    AcDbGroup* group = nullptr;
    for (int i = 0; i < kEntities; ++i) {
        if (i % kGroupSize == 0) {
            if (group) group->close();
            group = new AcDbGroup(L"", false);
            AcDbObjectId groupId;
            groups->setAt(L"*", group, groupId);
            group->setAnonymous();
        }
        AcDbEntity* e = entity(i);
        AcDbObjectId id;
        space->appendAcDbEntity(id, e);
        e->createExtensionDictionary();
        AcDbDictionary* dict = nullptr;
        acdbOpenObject(dict, e->extensionDictionary(), AcDb::kForWrite);
        auto* record = new AcDbXrecord;
        AcDbObjectId recordId;
        dict->setAt(L"MemberRec", record, recordId);
        dict->close();
        resbuf* chain = memberRecord(i);
        record->setFromRbChain(*chain);
        acutRelRb(chain);
        record->close();
        e->setXData(xdata);
        e->close();
        group->append(id);
    }
    group->close();
    groups->close();
    space->close();
    acutRelRb(xdata);
    return db;
}

std::string& savedText() {
    static std::string text = [] {
        auto db = tagged();
        std::ostringstream out;
        dxf::writeDrawing(*db, out);
        return out.str();
    }();
    return text;
}

// Saving as the editor saves: a temporary file beside the target, renamed when complete.
void BM_SaveDrawing(benchmark::State& state) {
    auto db = tagged();
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / "qel-bench-saved.dxf";
    std::string message;
    dxf::saveDrawing(*db, path.string(), message); // the first save adds the standard tables
    size_t bytes = 0;
    for (auto _ : state) {
        if (!dxf::saveDrawing(*db, path.string(), message)) {
            state.SkipWithError(message.c_str());
            break;
        }
        bytes = std::filesystem::file_size(path);
    }
    std::filesystem::remove(path);
    state.SetBytesProcessed(std::int64_t(bytes) * state.iterations());
    state.counters["MB"] = double(bytes) / 1e6;
    state.counters["fast_bins_off"] = kHostAllocator;
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
}
BENCHMARK(BM_SaveDrawing)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

void BM_OpenDrawing(benchmark::State& state) {
    const std::string& text = savedText();
    for (auto _ : state) {
        auto db = dxf::readDrawing(text, "bench");
        benchmark::DoNotOptimize(db.get());
    }
    state.SetBytesProcessed(std::int64_t(text.size()) * state.iterations());
    state.counters["fast_bins_off"] = kHostAllocator;
}
BENCHMARK(BM_OpenDrawing)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

// ezdxf's readfile of the same text, timed inside Python (interpreter start-up excluded).
void BM_EzdxfReadReference(benchmark::State& state) {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / "qel-bench-drawing.dxf";
    std::ofstream(path, std::ios::binary) << savedText();
    const std::string command = "/usr/bin/python3 -c 'import sys, time, ezdxf; "
                                "t = time.perf_counter(); ezdxf.readfile(sys.argv[1]); "
                                "print(time.perf_counter() - t)' " +
                                path.string() + " 2>/dev/null";
    for (auto _ : state) {
        FILE* pipe = popen(command.c_str(), "r");
        double seconds = 0;
        const bool read = pipe && std::fscanf(pipe, "%lf", &seconds) == 1;
        if (pipe) pclose(pipe);
        if (!read) {
            state.SkipWithError("python3 with ezdxf is missing (Debian: python3-ezdxf)");
            break;
        }
        state.SetIterationTime(seconds);
    }
    state.SetBytesProcessed(std::int64_t(savedText().size()) * state.iterations());
    std::filesystem::remove(path);
}
BENCHMARK(BM_EzdxfReadReference)->Unit(benchmark::kMillisecond)->Iterations(1)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
