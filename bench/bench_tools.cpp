// The image tools on detector-sized data: the edge picture of a frame (each
// frame change with the image processor open), one scalar product (eight per
// step of the climb), a climb over a few pixels, and the feature-value
// density picture after a run of many points.

#include "images/FrameLoad.h"
#include "images/TiffData.h"
#include "tools/EdgeAlign.h"
#include "tools/FVMaps.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

void makeFrame(TiffData &f, int side, int dx, int dy)
{
    f.allocate(side, side, PixelU16);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const int u = x - dx, v = y - dy;
            f.setPixel(x, y, ((u / 64 + v / 48) % 3) * 900 + (x * 7 + y * 3) % 40);
        }
}

void BM_EdgeDetect(benchmark::State &state)
{
    const int side = int(state.range(0));
    TiffData f;
    makeFrame(f, side, 0, 0);
    ProcImage e;
    for (auto _ : state)
        benchmark::DoNotOptimize(EdgeAlign::edgeDetect(f, side, side, e));
    state.SetItemsProcessed(state.iterations() * side * side);
}
BENCHMARK(BM_EdgeDetect)->Arg(512)->Arg(2048)->Unit(benchmark::kMillisecond);

struct Pair {
    ProcImage ref, bin;
    Pair(int side, int dx, int dy)
    {
        TiffData a, b;
        makeFrame(a, side, 0, 0);
        makeFrame(b, side, dx, dy);
        ProcImage ea, eb;
        EdgeAlign::edgeDetect(a, side, side, ea);
        EdgeAlign::edgeDetect(b, side, side, eb);
        EdgeAlign::binarize(ea, ea.max * 0.3, ref);
        EdgeAlign::binarize(eb, ea.max * 0.3, bin);
    }
};

void BM_ScalarProduct(benchmark::State &state)
{
    const Pair p(int(state.range(0)), 3, -2);
    for (auto _ : state)
        benchmark::DoNotOptimize(EdgeAlign::normScalarProduct(p.ref, p.bin, -2, 1));
}
BENCHMARK(BM_ScalarProduct)->Arg(512)->Arg(2048)->Unit(benchmark::kMillisecond);

void BM_Climb(benchmark::State &state)
{
    const Pair p(int(state.range(0)), 3, -2);
    int products = 0;
    for (auto _ : state) {
        int sx = 0, sy = 0;
        double best = 0;
        products = EdgeAlign::climb(p.ref, p.bin, sx, sy, best);
    }
    state.counters["products"] = products;
}
BENCHMARK(BM_Climb)->Arg(512)->Arg(2048)->Unit(benchmark::kMillisecond);

void BM_Density(benchmark::State &state)
{
    QVector<double> xs, ys;
    for (int i = 0; i < state.range(0); ++i)
        xs << std::sin(i * 0.37), ys << std::cos(i * 0.11) * (i % 5);
    const FVMaps::Points pts{&xs, &ys, -1, 1, -4, 4};
    for (auto _ : state)
        benchmark::DoNotOptimize(FVMaps::density(pts, 300, 10, 0.01, 0.002));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Density)->Arg(1000)->Arg(40000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
