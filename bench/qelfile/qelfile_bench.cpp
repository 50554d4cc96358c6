// Object-file throughput: many small objects, and one very large array, written and read;
// memcpy of the same bytes is the reference measured in the same run.
//   build/bin/bench_qelfile [--benchmark_filter=...]
// Files go to $QEL_BENCH_DIR (default /tmp).
#include <qel/qel.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <numeric>
#include <string>
#include <vector>

namespace {

constexpr unsigned kSmallObjects = 1'000'000;
constexpr unsigned kLargeFloats = 50'000'000;

std::string benchFile(const char* name) {
    const char* dir = std::getenv("QEL_BENCH_DIR");
    return std::string(dir && *dir ? dir : "/tmp") + "/" + name;
}

// A pipe segment as the exporter writes it: two doubles and a nested pose of two arrays.
QelObject* smallObject(unsigned i) {
    QelObject* o = QelObject::Create("Cylinder");
    o->AddOrReplaceParam(QelParam::Create("radius", 0.1 + i * 1e-9));
    o->AddOrReplaceParam(QelParam::Create("height", 2.0));
    QelObject* pose = QelObject::Create("Transformation");
    const double t[3] = {double(i), 0.5, 1.0}, r[4] = {0, 0, 1, 0.25};
    pose->AddOrReplaceParam(QelParam::Create("translation", t, 3));
    pose->AddOrReplaceParam(QelParam::Create("rotation", r, 4));
    o->AddOrReplaceParam(QelParam::Create("pose", pose));
    pose->UnRef();
    return o;
}

void writeSmall(const std::string& path) {
    QelWriter writer(path.c_str());
    for (unsigned i = 0; i < kSmallObjects; ++i) {
        QelObject* o = smallObject(i);
        writer.WriteObject(o);
        o->UnRef();
    }
    writer.Close();
}

void BM_WriteSmallObjects(benchmark::State& state) {
    const std::string path = benchFile("bench-small.qel");
    for (auto _ : state)
        writeSmall(path);
    state.SetItemsProcessed(state.iterations() * kSmallObjects);
}

void BM_ReadSmallObjects(benchmark::State& state) {
    const std::string path = benchFile("bench-small.qel");
    writeSmall(path);
    double sum = 0;
    for (auto _ : state) {
        QelReader reader(path.c_str());
        for (unsigned id = 0; id < kSmallObjects; ++id) {
            QelObject* o = reader.ReadObject(id);
            double r;
            o->GetParam("radius", 0)->GetValue(r);
            sum += r;
            o->UnRef();
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * kSmallObjects);
}

std::vector<float> largeArray() {
    std::vector<float> values(kLargeFloats);
    std::iota(values.begin(), values.end(), 0.0f);
    return values;
}

void writeLarge(const std::string& path, const std::vector<float>& values) {
    QelObject* o = QelObject::Create("Pointset");
    o->AddOrReplaceParam(QelParam::Create("points", values.data(), kLargeFloats));
    QelWriter writer(path.c_str());
    writer.WriteObject(o);
    writer.Close();
    o->UnRef();
}

void BM_WriteLargeArray(benchmark::State& state) {
    const std::string path = benchFile("bench-large.qel");
    const std::vector<float> values = largeArray();
    for (auto _ : state)
        writeLarge(path, values);
    state.SetBytesProcessed(state.iterations() * int64_t(kLargeFloats) * 4);
}

// Open, read the object, and take the array in place: the whole cost of getting at the data.
void BM_ReadLargeArrayInPlace(benchmark::State& state) {
    const std::string path = benchFile("bench-large.qel");
    writeLarge(path, largeArray());
    float last = 0;
    for (auto _ : state) {
        QelReader reader(path.c_str());
        QelObject* o = reader.ReadObject(0u);
        float* points = nullptr;
        unsigned n = 0;
        o->GetParam("points", 0)->GetValue(points, n, false);
        last += points[n - 1];
        o->UnRef();
    }
    benchmark::DoNotOptimize(last);
    state.SetBytesProcessed(state.iterations() * int64_t(kLargeFloats) * 4);
}

// The reference: copying the same number of bytes.
void BM_MemcpyReference(benchmark::State& state) {
    const std::vector<float> source = largeArray();
    std::vector<float> target(kLargeFloats);
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), source.size() * 4);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * int64_t(kLargeFloats) * 4);
}

} // namespace

BENCHMARK(BM_WriteSmallObjects)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReadSmallObjects)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_WriteLargeArray)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReadLargeArrayInPlace)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_MemcpyReference)->Unit(benchmark::kMillisecond)->Iterations(5);

int main(int argc, char** argv) {
    QelInit(0, 0, QelInitWords);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::filesystem::remove(benchFile("bench-small.qel"));
    std::filesystem::remove(benchFile("bench-large.qel"));
    return 0;
}
