// Frames per second on screen: 2048 x 2048 16-bit TIFFs read and rendered
// through the colour bar by the stack loader on its own thread, each frame
// then drawn by the image area on the main thread as the main window shows
// the newest during a load. Against the drawing alone, and the re-rendering
// that "Set All" does for every frame of a stack.

#include "BenchFrames.h"
#include "images/LoadTiff.h"
#include "view/ImgDispA.h"

#include <QApplication>
#include <QEventLoop>
#include <QImage>
#include <QTemporaryDir>
#include <QThread>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr quint32 kSide = 2048;
constexpr int kFiles = 20;
constexpr int kAreaSide = 800; // a typical image area on screen

const QStringList &frameFiles()
{
    static const QStringList files = benchFrameFiles(kSide, kFiles);
    return files;
}

// Draws the area into an image as a repaint on screen would.
void paintArea(ImgDispA &area, QImage &target)
{
    area.render(&target);
}

void BM_LoadAndShow(benchmark::State &state)
{
    if (frameFiles().isEmpty()) {
        state.SkipWithError("cannot write the frames");
        return;
    }
    QThread thread;
    auto *loader = new LoadTiff;
    loader->moveToThread(&thread);
    thread.start();

    ImgDispA area;
    area.resize(kAreaSide, kAreaSide);
    QImage target(kAreaSide, kAreaSide, QImage::Format_RGB32);
    TiffData *shown = nullptr;
    int frames = 0;
    QObject::connect(loader, &LoadTiff::loaded, &area, [&](TiffData *f, int, int) {
        area.setData(f);
        paintArea(area, target);
        delete shown;
        shown = f;
        ++frames;
    });
    for (auto _ : state) {
        QEventLoop loop;
        const auto c = QObject::connect(loader, &LoadTiff::finishLoadFiles, &loop, &QEventLoop::quit);
        QMetaObject::invokeMethod(loader, [loader] { loader->loadTiffs(frameFiles(), false, 1, 0, 0, nullptr, LOAD_I1_FILES); },
                                  Qt::QueuedConnection);
        loop.exec();
        QObject::disconnect(c);
    }
    area.setData(nullptr);
    delete shown;
    thread.quit();
    thread.wait();
    delete loader;
    if (frames != int(state.iterations()) * kFiles)
        state.SkipWithError("frames missing");
    state.SetItemsProcessed(frames);
}
BENCHMARK(BM_LoadAndShow)->Unit(benchmark::kMillisecond)->UseRealTime();

// One repaint of the area with a 2048 x 2048 frame: the scaling draw.
void BM_DrawFrame(benchmark::State &state)
{
    if (frameFiles().isEmpty()) {
        state.SkipWithError("cannot write the frames");
        return;
    }
    TiffData frame;
    frame.read(frameFiles().first());
    ImgDispA area;
    area.resize(kAreaSide, kAreaSide);
    area.setData(&frame);
    QImage target(kAreaSide, kAreaSide, QImage::Format_RGB32);
    for (auto _ : state)
        paintArea(area, target);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DrawFrame)->Unit(benchmark::kMillisecond)->UseRealTime();

// What "Set All" costs per frame: rendering again through the bar.
void BM_RerenderFrame(benchmark::State &state)
{
    if (frameFiles().isEmpty()) {
        state.SkipWithError("cannot write the frames");
        return;
    }
    TiffData frame;
    frame.read(frameFiles().first());
    for (auto _ : state)
        frame.render();
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RerenderFrame)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
