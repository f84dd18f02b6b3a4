#include "images/Absorption.h"
#include "images/AbsorptionInput.h"
#include "images/TiffData.h"
#include "spectrum/XafsSpectrum.h"

#include <QFile>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace {

constexpr int kFrames = 500;
constexpr int kWidth = 2048;

// Two stacks of 500 16-bit frames 2048 wide take 8 GiB at full height. The
// cost of a box sum does not depend on the frame height (rows are separate
// allocations either way), so on a machine without that much free memory the
// frames are 512 rows high. TESSARELLE_BENCH_FRAME_HEIGHT overrides.
int frameHeight()
{
    if (const char *env = std::getenv("TESSARELLE_BENCH_FRAME_HEIGHT"))
        return std::max(64, std::atoi(env));
    QFile info(QStringLiteral("/proc/meminfo"));
    qint64 availableKiB = 0;
    // /proc files report no size, so atEnd() cannot be trusted: read it all.
    if (info.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : info.readAll().split('\n')) {
            if (line.startsWith("MemAvailable:"))
                availableKiB = line.mid(13).trimmed().split(' ').first().toLongLong();
        }
    }
    return availableKiB >= (qint64(12) << 20) ? 2048 : 512;
}

// A Cu K edge over 500 eV at 1 eV steps, as a pair of stacks records it:
// I0 about 20000 counts a pixel, I1 = I0 exp(-mu(E)) with an arctan step at
// 8981 eV, and a fixed pattern across each row.
struct Stacks
{
    int height = 0;
    std::vector<std::unique_ptr<TiffData>> owned;
    QVector<TiffData *> i1;
    QVector<TiffData *> i0;

    Stacks()
    {
        height = frameHeight();
        std::fprintf(stderr, "frames: 2 x %d of %d x %d, 16-bit\n", kFrames, kWidth, height);
        std::vector<quint16> row(kWidth);
        for (int i = 0; i < kFrames; ++i) {
            const double e = 8781 + i;
            const double l = 12398.424360387684 / e;
            const double mu = 0.2 + 0.05 * l * l * l + 0.5 + std::atan((e - 8981) / 2.0) / M_PI;
            for (int stack = 0; stack < 2; ++stack) {
                auto f = std::make_unique<TiffData>();
                if (!f->allocate(kWidth, quint32(height), PixelU16)) {
                    std::fprintf(stderr, "out of memory at frame %d\n", i);
                    std::abort();
                }
                const double level = stack == 0 ? 20000.0 * std::exp(-mu) : 20000.0;
                for (int x = 0; x < kWidth; ++x)
                    row[x] = quint16(level + (x * 7 + i) % 13);
                for (void *r : f->rows)
                    std::memcpy(r, row.data(), sizeof(quint16) * kWidth);
                f->energy = e;
                (stack == 0 ? i1 : i0) << f.get();
                owned.push_back(std::move(f));
            }
        }
    }
};

const Stacks &stacks()
{
    static const Stacks s;
    return s;
}

AbsorptionInput inputFor(const Stacks &s, bool useI0)
{
    AbsorptionInput in;
    in.i1Frames = &s.i1;
    in.i0Frames = &s.i0;
    in.useI0 = useI0;
    return in;
}

// The box spectrum under a still cursor: 21 x 21 pixels, 500 I1 frames, each
// against the I0 stack interpolated at its energy (1500 box sums).
void BM_absorption(benchmark::State &state)
{
    const Stacks &s = stacks();
    const AbsorptionInput in = inputFor(s, state.range(0) != 0);
    Spectrum out;
    for (auto _ : state) {
        Absorption::absorptionSpectrum(in, 1024, s.height / 2, 10, 10, out);
        benchmark::DoNotOptimize(out.points.constData());
    }
    state.SetLabel(state.range(0) ? "UseI0" : "no I0");
}
BENCHMARK(BM_absorption)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

// What a mouse move costs: the spectrum and the XafsSpectrum made from it
// (default element, straight lines), which fits its lines and finds midx.
void BM_absorptionAndXafs(benchmark::State &state)
{
    const Stacks &s = stacks();
    const AbsorptionInput in = inputFor(s, true);
    const SuggestElm elm;
    Spectrum out;
    for (auto _ : state) {
        Absorption::absorptionSpectrum(in, 1024, s.height / 2, 10, 10, out);
        const XafsSpectrum x(out, "Body-AaP", 1, 0, elm);
        benchmark::DoNotOptimize(x.midx);
    }
}
BENCHMARK(BM_absorptionAndXafs)->Unit(benchmark::kMillisecond);

// The analysis of the same spectrum alone.
void BM_xafsOnly(benchmark::State &state)
{
    const Stacks &s = stacks();
    Spectrum out;
    Absorption::absorptionSpectrum(inputFor(s, true), 1024, s.height / 2, 10, 10, out);
    const SuggestElm elm;
    for (auto _ : state) {
        const XafsSpectrum x(out, "Body-AaP", 1, 0, elm);
        benchmark::DoNotOptimize(x.midx);
    }
}
BENCHMARK(BM_xafsOnly)->Unit(benchmark::kMillisecond);

// A 2-D run: the box steps one pixel along a row, so most rows it reads were
// read a step before.
void BM_absorptionWalk(benchmark::State &state)
{
    const Stacks &s = stacks();
    const AbsorptionInput in = inputFor(s, true);
    Spectrum out;
    int x = 10;
    for (auto _ : state) {
        Absorption::absorptionSpectrum(in, x, s.height / 2, 10, 10, out);
        benchmark::DoNotOptimize(out.points.constData());
        x = x + 1 < kWidth - 10 ? x + 1 : 10;
    }
}
BENCHMARK(BM_absorptionWalk)->Unit(benchmark::kMillisecond);

// The cursor jumping across the image: every box is read from memory that
// no recent box touched.
void BM_absorptionJump(benchmark::State &state)
{
    const Stacks &s = stacks();
    const AbsorptionInput in = inputFor(s, true);
    Spectrum out;
    int x = 10;
    int y = 10;
    for (auto _ : state) {
        Absorption::absorptionSpectrum(in, x, y, 10, 10, out);
        benchmark::DoNotOptimize(out.points.constData());
        x = 10 + (x + 397) % (kWidth - 20);
        y = 10 + (y + 211) % (s.height - 20);
    }
}
BENCHMARK(BM_absorptionJump)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
