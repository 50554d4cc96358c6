// Builders of the solids kernel beside the raw modelling-kernel calls they wrap, and the memory
// a cylinder solid holds. Run: build/bin/bench_solids (see docs/performance/solids.md).
#include <arxsolids/solid.h>

#include <BRepAlgoAPI_Cut.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepOffsetAPI_MakePipeShell.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepPrimAPI_MakeRevol.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <GC_MakeArcOfCircle.hxx>
#include <TopoDS.hxx>
#include <gp_Circ.hxx>

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cmath>
#include <vector>

namespace {

using namespace arxsolids;

const gp_Ax2 kBase(gp_Pnt(0, 0, -1.0), gp::DZ());

// ---- Primitives -------------------------------------------------------------------------------

void Cylinder_Kernel(benchmark::State& state) {
    for (auto _ : state) {
        Solid s;
        benchmark::DoNotOptimize(s.createFrustum(2.0, 0.5, 0.5, 0.5));
    }
}
void Cylinder_Raw(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(BRepPrimAPI_MakeCylinder(kBase, 0.5, 2.0).Shape());
}
void Cone_Kernel(benchmark::State& state) {
    for (auto _ : state) {
        Solid s;
        benchmark::DoNotOptimize(s.createFrustum(2.0, 0.5, 0.5, 0.2));
    }
}
void Cone_Raw(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(BRepPrimAPI_MakeCone(kBase, 0.5, 0.2, 2.0).Shape());
}
void Box_Kernel(benchmark::State& state) {
    for (auto _ : state) {
        Solid s;
        benchmark::DoNotOptimize(s.createBox(1.0, 2.0, 3.0));
    }
}
void Box_Raw(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(
            BRepPrimAPI_MakeBox(gp_Pnt(-0.5, -1, -1.5), 1.0, 2.0, 3.0).Shape());
}
void Sphere_Kernel(benchmark::State& state) {
    for (auto _ : state) {
        Solid s;
        benchmark::DoNotOptimize(s.createSphere(1.0));
    }
}
void Sphere_Raw(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(BRepPrimAPI_MakeSphere(1.0).Shape());
}
void Torus_Kernel(benchmark::State& state) {
    for (auto _ : state) {
        Solid s;
        benchmark::DoNotOptimize(s.createTorus(3.0, 1.0));
    }
}
void Torus_Raw(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(BRepPrimAPI_MakeTorus(3.0, 1.0).Shape());
}

// ---- Sweeps: the raw side starts from the same region face the kernel holds ---------------------

TopoDS_Face rawRectangle() {
    BRepBuilderAPI_MakePolygon polygon(gp_Pnt(0, 0, 0), gp_Pnt(2, 0, 0), gp_Pnt(2, 3, 0),
                                       gp_Pnt(0, 3, 0), true);
    return BRepBuilderAPI_MakeFace(polygon.Wire(), true);
}
Region kernelRectangle() {
    PolylineCurve outline;
    outline.vertices = {{0, 0, 0}, {2, 0, 0}, {2, 3, 0}, {0, 3, 0}};
    outline.closed = true;
    std::vector<Region> regions;
    Region::createFromCurves({outline}, regions);
    return regions.at(0);
}
TopoDS_Wire rawSection() {
    return BRepBuilderAPI_MakeWire(
        BRepBuilderAPI_MakeEdge(gp_Circ(gp_Ax2(gp_Pnt(3, 0, 0), gp::DY()), 0.5)));
}
Region kernelSection() {
    std::vector<Region> regions;
    Region::createFromCurves({CircleCurve{{3, 0, 0}, {0, 1, 0}, 0.5}}, regions);
    return regions.at(0);
}

void Extrude_Kernel(benchmark::State& state) {
    const Region region = kernelRectangle();
    for (auto _ : state) {
        Solid s;
        benchmark::DoNotOptimize(s.extrude(region, 4.0, 0.0));
    }
}
void Extrude_Raw(benchmark::State& state) {
    const TopoDS_Face face = rawRectangle();
    for (auto _ : state)
        benchmark::DoNotOptimize(BRepPrimAPI_MakePrism(face, gp_Vec(0, 0, 4.0)).Shape());
}
void Revolve_Kernel(benchmark::State& state) {
    const Region region = kernelRectangle();
    for (auto _ : state) {
        Solid s;
        benchmark::DoNotOptimize(s.revolve(region, {-1, 0, 0}, {0, 1, 0}, 2 * M_PI));
    }
}
void Revolve_Raw(benchmark::State& state) {
    const TopoDS_Face face = rawRectangle();
    for (auto _ : state)
        benchmark::DoNotOptimize(
            BRepPrimAPI_MakeRevol(face, gp_Ax1(gp_Pnt(-1, 0, 0), gp::DY()), 2 * M_PI).Shape());
}
// The sweep the kernel runs for a planar path: binormal fixed to the path's plane, mitred corners.
TopoDS_Shape rawPipe(const TopoDS_Wire& spine, const TopoDS_Wire& section) {
    BRepOffsetAPI_MakePipeShell pipe(spine);
    pipe.SetMode(gp::DZ());
    pipe.SetTransitionMode(BRepBuilderAPI_RightCorner);
    pipe.Add(section, false, false);
    pipe.Build();
    pipe.MakeSolid();
    return pipe.Shape();
}

void ElbowArc_Kernel(benchmark::State& state) {
    const Region region = kernelSection();
    const Curve path = ArcCurve{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 3.0, 0.0, M_PI / 2};
    for (auto _ : state) {
        Solid s;
        benchmark::DoNotOptimize(s.extrudeAlongPath(region, path, 0.0));
    }
}
void ElbowArc_Raw(benchmark::State& state) {
    const TopoDS_Wire section = rawSection();
    GC_MakeArcOfCircle arc(gp_Circ(gp::XOY(), 3.0), 0.0, M_PI / 2, true);
    const TopoDS_Wire spine = BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(arc.Value()));
    for (auto _ : state)
        benchmark::DoNotOptimize(rawPipe(spine, section));
}
void ElbowMitred_Kernel(benchmark::State& state) {
    const Region region = kernelSection();
    PolylineCurve path;
    path.vertices = {{3, 0, 0}, {3, 3, 0}, {0, 3, 0}};
    for (auto _ : state) {
        Solid s;
        benchmark::DoNotOptimize(s.extrudeAlongPath(region, path, 0.0));
    }
}
void ElbowMitred_Raw(benchmark::State& state) {
    const TopoDS_Wire section = rawSection();
    BRepBuilderAPI_MakePolygon polygon(gp_Pnt(3, 0, 0), gp_Pnt(3, 3, 0), gp_Pnt(0, 3, 0));
    const TopoDS_Wire spine = polygon.Wire();
    for (auto _ : state)
        benchmark::DoNotOptimize(rawPipe(spine, section));
}
void Subtract_Kernel(benchmark::State& state) {
    Solid outer, inner;
    outer.createFrustum(2.0, 1.0, 1.0, 1.0);
    inner.createFrustum(3.0, 0.6, 0.6, 0.6);
    for (auto _ : state) {
        Solid a = outer, b = inner;
        benchmark::DoNotOptimize(a.booleanOper(BoolOperType::kBoolSubtract, b));
    }
}
void Subtract_Raw(benchmark::State& state) {
    const TopoDS_Shape outer = BRepPrimAPI_MakeCylinder(kBase, 1.0, 2.0).Shape();
    const TopoDS_Shape inner =
        BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(0, 0, -1.5), gp::DZ()), 0.6, 3.0).Shape();
    for (auto _ : state)
        benchmark::DoNotOptimize(BRepAlgoAPI_Cut(outer, inner).Shape());
}

// ---- Memory: heap held per cylinder solid, kernel and raw -------------------------------------

template <class Make>
double heapPerSolid(Make make) {
    constexpr int n = 2000;
    const std::size_t before = mallinfo2().uordblks;
    auto held = make(n);
    const std::size_t after = mallinfo2().uordblks;
    benchmark::DoNotOptimize(held.data());
    return static_cast<double>(after - before) / n;
}

void CylinderMemory_Kernel(benchmark::State& state) {
    double bytes = 0.0;
    for (auto _ : state)
        bytes = heapPerSolid([](int n) {
            std::vector<Solid> solids(n);
            for (Solid& s : solids)
                s.createFrustum(2.0, 0.5, 0.5, 0.5);
            return solids;
        });
    state.counters["bytes_per_solid"] = bytes;
}
// A cylinder as the importer leaves it: moved to its base, then by the pose and the import
// transform, five moves in all.
void PlacedCylinderMemory_Kernel(benchmark::State& state) {
    double bytes = 0.0;
    for (auto _ : state)
        bytes = heapPerSolid([](int n) {
            std::vector<Solid> solids(n);
            for (Solid& s : solids) {
                s.createFrustum(2.0, 0.5, 0.5, 0.5);
                s.transformBy(Matrix::translation({0, 0, 1.0}));
                s.transformBy(Matrix::translation({10, 20, 30}));
                s.transformBy(Matrix::rotation(0.3, {1, 2, 3}, {10, 20, 30}));
                s.transformBy(Matrix::translation({-5, -5, -5}));
                s.transformBy(Matrix::rotation(-0.1, {0, 0, 1}));
            }
            return solids;
        });
    state.counters["bytes_per_solid"] = bytes;
}
void CylinderMemory_Raw(benchmark::State& state) {
    double bytes = 0.0;
    for (auto _ : state)
        bytes = heapPerSolid([](int n) {
            std::vector<TopoDS_Shape> shapes(n);
            for (TopoDS_Shape& s : shapes)
                s = BRepPrimAPI_MakeCylinder(kBase, 0.5, 2.0).Shape();
            return shapes;
        });
    state.counters["bytes_per_solid"] = bytes;
}

} // namespace

BENCHMARK(Cylinder_Kernel);
BENCHMARK(Cylinder_Raw);
BENCHMARK(Cone_Kernel);
BENCHMARK(Cone_Raw);
BENCHMARK(Box_Kernel);
BENCHMARK(Box_Raw);
BENCHMARK(Sphere_Kernel);
BENCHMARK(Sphere_Raw);
BENCHMARK(Torus_Kernel);
BENCHMARK(Torus_Raw);
BENCHMARK(Extrude_Kernel);
BENCHMARK(Extrude_Raw);
BENCHMARK(Revolve_Kernel);
BENCHMARK(Revolve_Raw);
BENCHMARK(ElbowArc_Kernel);
BENCHMARK(ElbowArc_Raw);
BENCHMARK(ElbowMitred_Kernel);
BENCHMARK(ElbowMitred_Raw);
BENCHMARK(Subtract_Kernel);
BENCHMARK(Subtract_Raw);
BENCHMARK(CylinderMemory_Kernel)->Iterations(3);
BENCHMARK(CylinderMemory_Raw)->Iterations(3);
BENCHMARK(PlacedCylinderMemory_Kernel)->Iterations(3);

BENCHMARK_MAIN();
