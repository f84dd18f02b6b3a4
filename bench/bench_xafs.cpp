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

XafsSpectrum movedTarget(const XafsSpectrum &standard)
{
    Spectrum moved;
    for (const QPointF &p : standard.points)
        moved.addPoint(p.x() + 0.7, p.y());
    return XafsSpectrum(moved, "target", 1, 0, suggested());
}

// Arg 0: one candidate at a time; 1: as many as the processor's lanes take,
// the standard read through bins as a threaded map run does.
void BM_searchDE(benchmark::State &state)
{
    const XafsSpectrum standard(pixelSpectrum(), "std", 1, 0, suggested());
    const XafsSpectrum target = movedTarget(standard);
    const InnerProductStandard reading = standard.asStandard();
    for (auto _ : state) {
        benchmark::DoNotOptimize(state.range(0) ? target.searchDE(standard, reading, 5, 0.5, 0.01)
                                                : target.searchDE(standard, 5, 0.5, 0.01));
    }
}
BENCHMARK(BM_searchDE)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

// Eighty-eight products, as in a calibration search, 1, 4 or 8 at a time.
void BM_innerProducts(benchmark::State &state)
{
    const XafsSpectrum standard(pixelSpectrum(), "std", 1, 0, suggested());
    const XafsSpectrum target = movedTarget(standard);
    const InnerProductStandard reading = standard.asStandard();
    constexpr int Count = 88;
    double dE[Count];
    double c[Count];
    for (int k = 0; k < Count; ++k)
        dE[k] = -5 + k * (10.0 / (Count - 1));
    for (auto _ : state) {
        innerProducts(target.points.constData(), target.points.size(), target.doubleNormPre.points.constData(),
                      target.doubleNormPre.points.size(), reading, dE, c, Count, int(state.range(0)));
        benchmark::DoNotOptimize(c[0]);
    }
}
BENCHMARK(BM_innerProducts)->Arg(1)->Arg(4)->Arg(8)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
