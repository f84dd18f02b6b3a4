#include "app/Body.h"
#include "app/Globals.h"
#include "images/TiffData.h"
#include "view/ImgDispA.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

// The pointer over the image of a main window holding two stacks of 500
// frames of 512 x 512 (I1 and I0; TESSARELLE_BENCH_SIDE=2048 for the full
// detector, 8 GB), a Cu K edge at 1 eV steps. Painting is not part of it:
// the window is never shown and no event loop runs.
namespace {

constexpr int kFrames = 500;
const int kSize = qEnvironmentVariableIntValue("TESSARELLE_BENCH_SIDE") > 0
                      ? qEnvironmentVariableIntValue("TESSARELLE_BENCH_SIDE")
                      : 512;

TiffData *makeFrame(int i, bool isI1)
{
    const double e = 8781 + i;
    const double l = 12398.424360387684 / e;
    const double mu = 0.2 + 0.05 * l * l * l + 0.5 + std::atan((e - 8981) / 2.0) / M_PI;
    auto *f = new TiffData;
    if (!f->allocate(kSize, kSize, PixelU16)) {
        std::fprintf(stderr, "out of memory at frame %d\n", i);
        std::abort();
    }
    std::vector<quint16> row(kSize);
    const double level = isI1 ? 20000.0 * std::exp(-mu) : 20000.0;
    for (int x = 0; x < kSize; ++x)
        row[x] = quint16(level + (x * 7 + i) % 13);
    for (void *r : f->rows)
        std::memcpy(r, row.data(), sizeof(quint16) * kSize);
    f->fileName = QStringLiteral("%1_%2.tif").arg(isI1 ? "i1" : "i0").arg(e, 8, 'f', 2, QLatin1Char('0'));
    f->min = 0;
    f->max = 20013;
    return f;
}

Body &body()
{
    static Body *b = [] {
        auto *w = new Body;
        w->resize(1100, 760);
        for (const char *cmd : {"set_i1_energy_pattern \\d\\d\\d\\d\\.\\d\\d", "set_i0_energy_pattern \\d\\d\\d\\d\\.\\d\\d",
                                "show_latest_i1 0"})
            w->execCmdSlot(CmdLine::parse(QString::fromLatin1(cmd)), false);
        for (int i = 0; i < kFrames; ++i) {
            w->loadedI1(makeFrame(i, true), i, kFrames);
            w->loadedI0(makeFrame(i, false), i, kFrames);
        }
        w->seekImage(kFrames / 2);
        return w;
    }();
    return *b;
}

// The spectrum of the 21 x 21 box at a point, analysed and handed to the
// plot with the raw sums (the default view box is 10 x 10 half widths).
void BM_showXafsSpectrum(benchmark::State &state)
{
    Body &b = body();
    for (auto _ : state)
        b.showXafsSpectrum(kSize / 2 + 0.5, kSize / 2 + 0.5);
}
BENCHMARK(BM_showXafsSpectrum)->Unit(benchmark::kMillisecond);

// A whole pointer move as the mouse makes it: the spectrum above plus the
// two cross sections of the frame on display and the value fields.
void BM_pointerMove(benchmark::State &state)
{
    Body &b = body();
    auto *a = b.findChild<ImgDispA *>(QStringLiteral("dispA"));
    a->resetImageViewWindow();
    a->setupCoords();
    int i = 0;
    for (auto _ : state) {
        a->setRealMousePos(200.5 + (i & 15), 300.5);
        ++i;
    }
}
BENCHMARK(BM_pointerMove)->Unit(benchmark::kMillisecond);

// The same, the pointer going down a diagonal a pixel at a time, so that
// both sections change at every step.
void BM_pointerMoveDiagonal(benchmark::State &state)
{
    Body &b = body();
    auto *a = b.findChild<ImgDispA *>(QStringLiteral("dispA"));
    a->resetImageViewWindow();
    a->setupCoords();
    int i = 0;
    for (auto _ : state) {
        const int step = i & 63;
        a->setRealMousePos(200.5 + step, 300.5 + step);
        ++i;
    }
}
BENCHMARK(BM_pointerMoveDiagonal)->Unit(benchmark::kMillisecond);

// The pointer jumping between far corners of the image, so that no box
// read before is still in the caches.
void BM_pointerJump(benchmark::State &state)
{
    Body &b = body();
    auto *a = b.findChild<ImgDispA *>(QStringLiteral("dispA"));
    a->resetImageViewWindow();
    a->setupCoords();
    const double far[4][2] = {{20.5, 20.5}, {kSize - 20.5, kSize - 20.5}, {kSize - 20.5, 20.5}, {20.5, kSize - 20.5}};
    int i = 0;
    for (auto _ : state) {
        // Moved by a few pixels each round so that no two jumps repeat.
        const double *p = far[i & 3];
        a->setRealMousePos(p[0] + (i >> 2) % 7, p[1]);
        ++i;
    }
}
BENCHMARK(BM_pointerJump)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    InitGlobals();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
