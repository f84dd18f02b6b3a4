#include "analysis/ElemsAnalysis.h"
#include "analysis/FeatureSearch.h"
#include "analysis/LcfFit.h"
#include "analysis/ResidualAbsorption.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

// An edge of shape k (white line, shifted step, ...) at 1 eV from 8830 over
// n points, or on a reference grid of 0.7 eV, with small noise.
Spectrum edge(int k, double from, double step, int n, unsigned seed)
{
    Spectrum s;
    for (int i = 0; i < n; ++i) {
        const double e = from + i * step;
        seed = seed * 1664525u + 1013904223u;
        const double u = double(seed >> 8) / double(1u << 24) - 0.5;
        const double at = 8980 + 2 * k;
        s.addPoint(e, 0.5 - 2e-4 * (e - 8980) + 0.5 * (1 + std::tanh((e - at) / 1.5))
                          + 0.1 * k * std::exp(-std::pow((e - at - 5) / 3, 2)) + 0.002 * u);
    }
    return s;
}

XafsSpectrum point()
{
    return XafsSpectrum(edge(1, 8830, 1.0, 300, 11u), "pt", 1, 0, SuggestElm());
}

QVector<LcfRefInput> references()
{
    QVector<LcfRefInput> refs;
    for (int k = 0; k < 4; ++k) {
        Spectrum src = edge(k, 8800, 0.7, 520, 100u + k);
        src.xShiftOn = true;
        LcfRefInput r;
        r.spectrum = XafsSpectrum(src, "ref", 1, 0, SuggestElm());
        r.inUse = true;
        r.ratio = 0.25;
        refs << r;
    }
    return refs;
}

// One point of an LCF map: the fit on an already limited spectrum.
void BM_lcf(benchmark::State &state)
{
    const XafsSpectrum s = limitedSpectrum(point(), 0, 30000);
    const QVector<LcfRefInput> refs = references();
    LcfOutcome out;
    for (auto _ : state) {
        analyzeLcf(s, refs, LcfForm(state.range(0)), 0, 30000, SuggestElm(), true, out);
        benchmark::DoNotOptimize(out.z);
    }
}
BENCHMARK(BM_lcf)->Arg(int(LcfForm::New))->Arg(int(LcfForm::Old))->Arg(int(LcfForm::Mlcf))
    ->Unit(benchmark::kMicrosecond);

// The same with the limited spectrum built and analysed per point, as the
// window does before each fit.
void BM_lcfWithLimited(benchmark::State &state)
{
    const XafsSpectrum p = point();
    const QVector<LcfRefInput> refs = references();
    LcfOutcome out;
    for (auto _ : state) {
        const XafsSpectrum s = limitedSpectrum(p, 0, 30000);
        analyzeLcf(s, refs, LcfForm(state.range(0)), 0, 30000, SuggestElm(), true, out);
        benchmark::DoNotOptimize(out.z);
    }
}
BENCHMARK(BM_lcfWithLimited)->Arg(int(LcfForm::New))->Arg(int(LcfForm::Mlcf))
    ->Unit(benchmark::kMicrosecond);

void BM_elems(benchmark::State &state)
{
    const XafsSpectrum s = point();
    QVector<ElemCond> conds;
    for (double e0 : {8900.0, 8980.0, 9060.0})
        conds.append({e0, 20, e0 + 5, e0 + 15, 0.1, true});
    ElemsOutcome out;
    for (auto _ : state) {
        analyzeElems(s, conds, ElemsBg(), 0, out);
        benchmark::DoNotOptimize(out.elemNDMut.constData());
    }
}
BENCHMARK(BM_elems)->Unit(benchmark::kMicrosecond);

void BM_residual(benchmark::State &state)
{
    const XafsSpectrum s = point();
    for (auto _ : state)
        benchmark::DoNotOptimize(analyzeRA(s, 1.0, 8950));
}
BENCHMARK(BM_residual)->Unit(benchmark::kNanosecond);

void BM_feature(benchmark::State &state)
{
    const XafsSpectrum s = point();
    SuggestElm se;
    se.edgeEV = 8980;
    for (auto _ : state)
        benchmark::DoNotOptimize(analyzeFV(s, se, 1.0));
}
BENCHMARK(BM_feature)->Unit(benchmark::kNanosecond);

} // namespace

BENCHMARK_MAIN();
