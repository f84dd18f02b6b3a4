// The per-pixel work of an analysis: smoothing, interpolation, both line
// fits and small solves, on a spectrum of typical length.
#include "spectrum/LinAlg.h"
#include "spectrum/QuadSurf.h"
#include "spectrum/VictLine.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

Spectrum edgeSpectrum(int n)
{
    Spectrum s;
    for (int i = 0; i < n; ++i) {
        const double e = 8900 + 200.0 * i / n;
        s.addPoint(e, 0.1 + 1e-4 * (e - 8900) + 1.0 / (1.0 + std::exp(-(e - 8980) / 2)));
    }
    return s;
}

void BM_Smooth(benchmark::State &state)
{
    Spectrum s = edgeSpectrum(int(state.range(0)));
    for (auto _ : state) {
        s.smooth(2);
        benchmark::DoNotOptimize(s.smoothY.data());
    }
}
BENCHMARK(BM_Smooth)->Arg(200);

void BM_InterpolateY(benchmark::State &state)
{
    const Spectrum s = edgeSpectrum(int(state.range(0)));
    double x = 8900;
    for (auto _ : state) {
        benchmark::DoNotOptimize(s.interpolateY(x));
        x = x > 9100 ? 8900 : x + 0.37;
    }
}
BENCHMARK(BM_InterpolateY)->Arg(200);

void BM_LineFit(benchmark::State &state)
{
    const Spectrum s = edgeSpectrum(int(state.range(0)));
    VictLine v;
    for (auto _ : state)
        benchmark::DoNotOptimize(v.fit(s, 8900, 8960, int(state.range(1))));
}
BENCHMARK(BM_LineFit)->Args({200, 1})->Args({200, 0});

void BM_SolveInPlace6(benchmark::State &state)
{
    double m[6][6];
    for (int i = 0; i < 6; ++i) {
        for (int j = 0; j < 6; ++j)
            m[i][j] = 1.0 / (1 + i + j) + (i == j ? 1.0 : 0.0);
    }
    const double *rows[6] = {m[0], m[1], m[2], m[3], m[4], m[5]};
    for (auto _ : state) {
        double b[6] = {1, 2, 3, 4, 5, 6};
        benchmark::DoNotOptimize(solveInPlace(6, rows, b));
        benchmark::DoNotOptimize(b);
    }
}
BENCHMARK(BM_SolveInPlace6);

} // namespace

BENCHMARK_MAIN();
