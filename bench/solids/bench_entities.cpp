// The builders through the host's entities (new AcDb3dSolid, history switch, build, delete), to
// set beside the raw modelling-kernel calls of bench_solids.cpp in the same run.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cmath>
#include <memory>

#include "arx/solids.h"

namespace {

// A new solid per iteration, as the module makes one per object.
template <class Build>
void buildHost(benchmark::State& state, Build build) {
    for (auto _ : state) {
        auto solid = std::make_unique<AcDb3dSolid>();
        solid->setRecordHistory(true);
        benchmark::DoNotOptimize(build(*solid));
    }
}

std::unique_ptr<AcDbRegion> hostRegion(AcDbCurve* curve) {
    AcDbVoidPtrArray curves, regions;
    curves.append(curve);
    AcDbRegion::createFromCurves(curves, regions);
    delete curve;
    return std::unique_ptr<AcDbRegion>(static_cast<AcDbRegion*>(regions[0]));
}
std::unique_ptr<AcDbRegion> hostRectangle() {
    auto* outline = new AcDbPolyline(4);
    outline->addVertexAt(0, AcGePoint2d(0, 0));
    outline->addVertexAt(1, AcGePoint2d(2, 0));
    outline->addVertexAt(2, AcGePoint2d(2, 3));
    outline->addVertexAt(3, AcGePoint2d(0, 3));
    outline->setClosed(true);
    return hostRegion(outline);
}
std::unique_ptr<AcDbRegion> hostSection() {
    return hostRegion(new AcDbCircle({3, 0, 0}, {0, 1, 0}, 0.5));
}

void Cylinder_Host(benchmark::State& state) {
    buildHost(state, [](AcDb3dSolid& s) { return s.createFrustum(2.0, 0.5, 0.5, 0.5); });
}
void Cone_Host(benchmark::State& state) {
    buildHost(state, [](AcDb3dSolid& s) { return s.createFrustum(2.0, 0.5, 0.5, 0.2); });
}
void Box_Host(benchmark::State& state) {
    buildHost(state, [](AcDb3dSolid& s) { return s.createBox(1.0, 2.0, 3.0); });
}
void Sphere_Host(benchmark::State& state) {
    buildHost(state, [](AcDb3dSolid& s) { return s.createSphere(1.0); });
}
void Torus_Host(benchmark::State& state) {
    buildHost(state, [](AcDb3dSolid& s) { return s.createTorus(3.0, 1.0); });
}
void Extrude_Host(benchmark::State& state) {
    const auto region = hostRectangle();
    buildHost(state, [&](AcDb3dSolid& s) { return s.extrude(region.get(), 4.0, 0.0); });
}
void Revolve_Host(benchmark::State& state) {
    const auto region = hostRectangle();
    buildHost(state, [&](AcDb3dSolid& s) {
        return s.revolve(region.get(), {-1, 0, 0}, {0, 1, 0}, 2 * M_PI);
    });
}
void ElbowArc_Host(benchmark::State& state) {
    const auto region = hostSection();
    const AcDbArc path({0, 0, 0}, 3.0, 0.0, M_PI / 2);
    buildHost(state, [&](AcDb3dSolid& s) { return s.extrudeAlongPath(region.get(), &path, 0.0); });
}
void ElbowMitred_Host(benchmark::State& state) {
    const auto region = hostSection();
    AcDbPolyline path(3);
    path.addVertexAt(0, AcGePoint2d(3, 0));
    path.addVertexAt(1, AcGePoint2d(3, 3));
    path.addVertexAt(2, AcGePoint2d(0, 3));
    buildHost(state, [&](AcDb3dSolid& s) { return s.extrudeAlongPath(region.get(), &path, 0.0); });
}

// Heap held per cylinder as the importer leaves it: built, moved to its base, appended to model
// space of a drawing and closed. Counts the entity and the database's record of it.
void CylinderMemory_Host(benchmark::State& state) {
    constexpr int n = 2000;
    double bytes = 0.0;
    for (auto _ : state) {
        auto db = std::make_unique<AcDbDatabase>();
        AcDbBlockTableRecord* space = nullptr;
        acdbOpenObject(space, db->currentSpaceId(), AcDb::kForWrite);
        const std::size_t before = mallinfo2().uordblks;
        for (int i = 0; i < n; ++i) {
            auto* solid = new AcDb3dSolid;
            solid->setRecordHistory(true);
            solid->createFrustum(2.0, 0.5, 0.5, 0.5);
            solid->transformBy(AcGeMatrix3d::translation({0, 0, 1.0}));
            space->appendAcDbEntity(solid);
            solid->close();
        }
        bytes = static_cast<double>(mallinfo2().uordblks - before) / n;
        space->close();
    }
    state.counters["bytes_per_solid"] = bytes;
}

} // namespace

BENCHMARK(CylinderMemory_Host)->Iterations(3);
BENCHMARK(Cylinder_Host);
BENCHMARK(Cone_Host);
BENCHMARK(Box_Host);
BENCHMARK(Sphere_Host);
BENCHMARK(Torus_Host);
BENCHMARK(Extrude_Host);
BENCHMARK(Revolve_Host);
BENCHMARK(ElbowArc_Host);
BENCHMARK(ElbowMitred_Host);
