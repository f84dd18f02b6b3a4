#include "spectrum/XafsSpectrum.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

// A Cu K edge as a map pixel records it: 500 points at 1 eV, a falling
// Victoreen-like background, an arctan step at 8981 eV and small noise.
Spectrum pixelSpectrum()
{
    Spectrum s;
    unsigned seed = 7u;
    for (int i = 0; i < 500; ++i) {
        const double e = 8781 + i;
        const double l = 12398.424360387684 / e;
        seed = seed * 1664525u + 1013904223u;
        const double u = double(seed >> 8) / double(1u << 24) - 0.5;
        s.addPoint(e, 0.2 + 0.05 * l * l * l + 0.5 + std::atan((e - 8981) / 2.0) / M_PI
                          + 0.004 * u);
    }
    return s;
}

SuggestElm suggested()
{
    SuggestElm elm;
    elm.use = true;
    elm.edgeEV = 8979;
    return elm;
}

// What every map point costs: a copy of the box spectrum analysed at once.
void BM_construct(benchmark::State &state)
{
    const Spectrum src = pixelSpectrum();
    const SuggestElm elm = suggested();
    for (auto _ : state) {
        XafsSpectrum s(src, "Body-AaP", int(state.range(0)), 0, elm);
        benchmark::DoNotOptimize(s.midx);
    }
}
BENCHMARK(BM_construct)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

// Analysis again on the same object: the lists keep their capacity.
void BM_analyze(benchmark::State &state)
{
    XafsSpectrum s(pixelSpectrum(), "again", 1, 0, suggested());
    for (auto _ : state) {
        s.analyze(int(state.range(0)));
        benchmark::DoNotOptimize(s.midx);
    }
}
BENCHMARK(BM_analyze)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

void BM_searchDE(benchmark::State &state)
{
    const XafsSpectrum standard(pixelSpectrum(), "std", 1, 0, suggested());
    Spectrum moved;
    for (const QPointF &p : standard.points)
        moved.addPoint(p.x() + 0.7, p.y());
    const XafsSpectrum target(moved, "target", 1, 0, suggested());
    for (auto _ : state)
        benchmark::DoNotOptimize(target.searchDE(standard, 5, 0.5, 0.01));
}
BENCHMARK(BM_searchDE)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
