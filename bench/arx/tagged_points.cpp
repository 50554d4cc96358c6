// Tagged points, the way a point set comes into a drawing: each point appended to model space,
// with an extension dictionary holding the 29-item member record, extended data under the
// module's application, and membership of one group. Time and memory per point, beside a
// reference measured in the same run: filling a vector of plain structs with the same values.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <memory>
#include <vector>

#include "arx/arx.h"

namespace {

constexpr int kPoints = 2'000'000;

size_t heapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// The module's member record: two texts, seven ints, ten reals, two handles, eight reals.
resbuf* memberRecord() {
    resbuf* chain = acutBuildList(1, L"/data/models/cloud.qel", 1, L"*A1", 90, 20, 90, 7, 90, 0, 90,
                                  0, 90, 0, 90, 0, 90, 0, 0);
    resbuf* tail = chain;
    while (tail->rbnext)
        tail = tail->rbnext;
    for (int i = 0; i < 10; ++i)
        tail = tail->rbnext = acutBuildList(40, 0.0, 0);
    tail = tail->rbnext = acutBuildList(1, L"0", 1, L"0", 0);
    tail = tail->rbnext;
    for (int i = 0; i < 8; ++i)
        tail = tail->rbnext = acutBuildList(40, 0.0, 0);
    return chain;
}

void BM_TaggedPoints(benchmark::State& state) {
    resbuf* record = memberRecord();
    resbuf* xdata = acutBuildList(1001, L"Tovi_Technologies", 1000, L"ToviQelPoint", 0);
    double bytes = 0;
    for (auto _ : state) {
        const size_t before = heapInUse();
        auto db = std::make_unique<AcDbDatabase>();
        acdbHostApplicationServices()->setWorkingDatabase(db.get());
        acdbRegApp(L"Tovi_Technologies");
        AcDbBlockTableRecord* space = nullptr;
        acdbOpenObject(space, db->currentSpaceId(), AcDb::kForWrite);
        auto* group = new AcDbGroup(L"Pointset", true);
        AcDbDictionary* groups = nullptr;
        db->getGroupDictionary(groups, AcDb::kForWrite);
        AcDbObjectId groupId;
        groups->setAt(L"POINT_GROUP", group, groupId);
        groups->close();
        group->setAnonymous();
        AcDbObjectIdArray ids(kPoints);
        for (int i = 0; i < kPoints; ++i) {
            auto* point = new AcDbPoint(AcGePoint3d(i * 0.001, i * 0.002, 1.0));
            AcDbObjectId id;
            space->appendAcDbEntity(id, point);
            point->createExtensionDictionary();
            AcDbDictionary* dict = nullptr;
            acdbOpenObject(dict, point->extensionDictionary(), AcDb::kForWrite);
            auto* xrecord = new AcDbXrecord;
            AcDbObjectId xrecordId;
            dict->setAt(L"MemberRec", xrecord, xrecordId);
            dict->close();
            xrecord->setFromRbChain(*record);
            xrecord->close();
            point->setXData(xdata);
            point->close();
            ids.append(id);
        }
        group->append(ids);
        group->close();
        space->close();
        state.PauseTiming();
        bytes = double(heapInUse() - before) / kPoints;
        acdbHostApplicationServices()->setWorkingDatabase(nullptr);
        db.reset();
        state.ResumeTiming();
    }
    acutRelRb(record);
    acutRelRb(xdata);
    state.counters["points_per_second"] = benchmark::Counter(
        double(kPoints) * double(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["bytes_per_point"] = bytes;
}
BENCHMARK(BM_TaggedPoints)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();

// The same values in plain structs: position, the record's numbers and its texts inline.
struct PlainPoint {
    double position[3];
    int ints[7];
    double reals[18];
    char texts[4][24];
};

void BM_PlainStructReference(benchmark::State& state) {
    double bytes = 0;
    for (auto _ : state) {
        const size_t before = heapInUse();
        std::vector<PlainPoint> points;
        points.reserve(kPoints);
        for (int i = 0; i < kPoints; ++i) {
            PlainPoint p{};
            p.position[0] = i * 0.001;
            p.position[1] = i * 0.002;
            p.position[2] = 1.0;
            p.ints[0] = 20;
            p.ints[1] = 7;
            points.push_back(p);
        }
        benchmark::DoNotOptimize(points.data());
        bytes = double(heapInUse() - before) / kPoints;
    }
    state.counters["points_per_second"] = benchmark::Counter(
        double(kPoints) * double(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["bytes_per_point"] = bytes;
}
BENCHMARK(BM_PlainStructReference)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
