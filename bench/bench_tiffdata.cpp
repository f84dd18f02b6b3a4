// Frame access costs: the box sum behind every spectrum point, and reading a
// detector-sized TIFF (from the page cache after the first round).

#include "images/TiffData.h"
#include "images/TiffWriter.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

constexpr quint32 kSide = 2048;

// A 2048 x 2048 16-bit TIFF, written once per process.
const QString &frameFile()
{
    static QTemporaryDir dir;
    static const QString file = [] {
        const QString name = dir.filePath("frame.tif");
        std::vector<quint16> px(std::size_t(kSide) * kSide);
        for (std::size_t i = 0; i < px.size(); ++i)
            px[i] = quint16((i * 2654435761u) >> 16);
        return writeTiff16(name, kSide, kSide, px.data()) ? name : QString();
    }();
    return file;
}

// The frame a benchmark walks over: the TIFF itself for PixelTiffU16, else a
// frame of the same size made in code in the given type with the same values.
bool benchFrame(TiffData &frame, int type)
{
    if (frameFile().isEmpty() || !frame.read(frameFile()))
        return false;
    if (type == PixelTiffU16)
        return true;
    TiffData src;
    src.read(frameFile());
    if (!frame.allocate(kSide, kSide, type))
        return false;
    for (quint32 y = 0; y < kSide; ++y)
        for (quint32 x = 0; x < kSide; ++x)
            frame.setPixel(int(x), int(y), src.pixel(int(x), int(y)) / 2);
    return true;
}

void BM_BoxSum21x21(benchmark::State &state)
{
    TiffData frame;
    if (!benchFrame(frame, int(state.range(0)))) {
        state.SkipWithError("cannot make the test frame");
        return;
    }
    int x = 10;
    int y = 10;
    for (auto _ : state) {
        benchmark::DoNotOptimize(frame.boxSum(x, y, 10, 10));
        x = x < int(kSide) - 11 ? x + 7 : 10;
        y = y < int(kSide) - 11 ? y + 3 : 10;
    }
    state.SetItemsProcessed(state.iterations() * 21 * 21);
}

void BM_PixelLoop21x21(benchmark::State &state)
{
    // The same box through pixel(), as code without boxSum would do it.
    TiffData frame;
    if (!benchFrame(frame, int(state.range(0)))) {
        state.SkipWithError("cannot make the test frame");
        return;
    }
    int x = 10;
    int y = 10;
    for (auto _ : state) {
        double sum = 0.0;
        for (int yy = y - 10; yy <= y + 10; ++yy)
            for (int xx = x - 10; xx <= x + 10; ++xx)
                sum += frame.pixel(xx, yy);
        benchmark::DoNotOptimize(sum);
        x = x < int(kSide) - 11 ? x + 7 : 10;
        y = y < int(kSide) - 11 ? y + 3 : 10;
    }
    state.SetItemsProcessed(state.iterations() * 21 * 21);
}

// Argument: the pixel type.
BENCHMARK(BM_BoxSum21x21)->DenseRange(PixelTiffU16, PixelF32)->DenseRange(PixelU8, PixelF64);
BENCHMARK(BM_PixelLoop21x21)->DenseRange(PixelTiffU16, PixelF32)->DenseRange(PixelU8, PixelF64);

void BM_ReadTiff2048(benchmark::State &state)
{
    if (frameFile().isEmpty()) {
        state.SkipWithError("cannot make the test frame");
        return;
    }
    for (auto _ : state) {
        TiffData frame;
        if (!frame.read(frameFile())) {
            state.SkipWithError("read failed");
            return;
        }
        benchmark::DoNotOptimize(frame.max);
    }
    state.SetBytesProcessed(state.iterations() * qint64(kSide) * kSide * 2);
}
BENCHMARK(BM_ReadTiff2048)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
