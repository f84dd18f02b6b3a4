// Rendering a detector-sized frame through the colour scale: what every
// loaded frame costs on its loader thread, and what a drag of the colour bar
// costs per step for the frame on display.

#include "app/Globals.h"
#include "images/FrameLoad.h"
#include "images/TiffData.h"
#include "view/ColorMaps.h"
#include "view/ColorScale.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace {

constexpr quint32 kSide = 2048;

// A 2048 x 2048 16-bit frame with values spread over the whole range.
std::unique_ptr<TiffData> makeFrame(quint32 w, quint32 h, int pixelType)
{
    auto f = std::make_unique<TiffData>();
    f->width = w;
    f->height = h;
    f->pixelType = pixelType;
    f->min = 65535;
    f->max = 0;
    for (quint32 y = 0; y < h; ++y) {
        if (pixelType == PixelF32) {
            auto *row = new float[w];
            for (quint32 x = 0; x < w; ++x)
                row[x] = float(((y * w + x) * 2654435761u) >> 16);
            f->rows.append(row);
        } else {
            auto *row = new quint16[w];
            for (quint32 x = 0; x < w; ++x)
                row[x] = quint16(((y * w + x) * 2654435761u) >> 16);
            f->rows.append(row);
        }
    }
    for (quint32 y = 0; y < h; ++y)
        for (quint32 x = 0; x < w; ++x) {
            f->min = std::min(f->min, f->pixel(int(x), int(y)));
            f->max = std::max(f->max, f->pixel(int(x), int(y)));
        }
    return f;
}

void renderBench(benchmark::State &state, int format, int pixelType, quint32 side)
{
    auto f = makeFrame(side, side, pixelType);
    f->imgFormat = format;
    ColorScale scale;
    scale.setEnds(0.1, 0.9);
    gColorBar = &scale;
    for (auto _ : state) {
        f->render();
        benchmark::DoNotOptimize(f->imageBytes.constData());
    }
    gColorBar = nullptr;
    state.SetItemsProcessed(state.iterations() * qint64(side) * side);
}

void BM_RenderGray2048(benchmark::State &state)
{
    renderBench(state, ColorMaps::FormatGray, PixelU16, kSide);
}
BENCHMARK(BM_RenderGray2048)->Unit(benchmark::kMillisecond);

void BM_RenderRgb2048(benchmark::State &state)
{
    renderBench(state, ColorMaps::FormatRgb, PixelU16, kSide);
}
BENCHMARK(BM_RenderRgb2048)->Unit(benchmark::kMillisecond);

// Float frames (text images) have no table: every pixel is computed.
void BM_RenderGrayFloat2048(benchmark::State &state)
{
    renderBench(state, ColorMaps::FormatGray, PixelF32, kSide);
}
BENCHMARK(BM_RenderGrayFloat2048)->Unit(benchmark::kMillisecond);

// A frame smaller than the table: the direct road.
void BM_RenderGray200(benchmark::State &state)
{
    renderBench(state, ColorMaps::FormatGray, PixelU16, 200);
}
BENCHMARK(BM_RenderGray200)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
