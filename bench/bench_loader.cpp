// Loading speed: 2048 x 2048 16-bit TIFFs from the page cache through the
// stack loader on its own thread, frames handed to the main thread as the
// main window takes them; against the bare read loop on one thread, and with
// the two loaders (I1 and I0) working at once.

#include "BenchFrames.h"
#include "images/LoadTiff.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QThread>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

constexpr quint32 kSide = 2048;
constexpr int kFiles = 50;
constexpr double kFrameBytes = double(kSide) * kSide * 2;

const QStringList &frameFiles()
{
    static const QStringList files = benchFrameFiles(kSide, kFiles);
    return files;
}

// A loader on a thread of its own, as the main window keeps one per stack.
struct LoaderOnThread {
    QThread thread;
    LoadTiff *loader = new LoadTiff;
    int frames = 0;

    explicit LoaderOnThread(QObject *ctx)
    {
        loader->moveToThread(&thread);
        QObject::connect(loader, &LoadTiff::loaded, ctx, [this](TiffData *f, int, int) {
            delete f;
            ++frames;
        });
        thread.start();
    }
    ~LoaderOnThread()
    {
        thread.quit();
        thread.wait();
        delete loader;
    }
    void start(const QStringList &files, EX_CMD_ID id)
    {
        QMetaObject::invokeMethod(loader, [l = loader, files, id] { l->loadTiffs(files, false, 1, 0, 0, nullptr, id); },
                                  Qt::QueuedConnection);
    }
};

void runLoaders(benchmark::State &state, int loaders)
{
    if (frameFiles().isEmpty()) {
        state.SkipWithError("cannot write the frames");
        return;
    }
    QObject ctx;
    std::vector<std::unique_ptr<LoaderOnThread>> ls;
    for (int i = 0; i < loaders; ++i)
        ls.push_back(std::make_unique<LoaderOnThread>(&ctx));
    for (auto _ : state) {
        QEventLoop loop;
        int finished = 0;
        std::vector<QMetaObject::Connection> cs;
        for (auto &l : ls)
            cs.push_back(QObject::connect(l->loader, &LoadTiff::finishLoadFiles, &loop, [&] {
                if (++finished == loaders)
                    loop.quit();
            }));
        for (int i = 0; i < loaders; ++i)
            ls[i]->start(frameFiles(), i == 0 ? LOAD_I1_FILES : LOAD_I0_FILES);
        loop.exec();
        for (const auto &c : cs)
            QObject::disconnect(c);
    }
    int frames = 0;
    for (auto &l : ls)
        frames += l->frames;
    if (frames != int(state.iterations()) * kFiles * loaders)
        state.SkipWithError("frames missing");
    state.SetItemsProcessed(frames);
    state.SetBytesProcessed(int64_t(frames * kFrameBytes));
}

void BM_LoaderThread(benchmark::State &state)
{
    runLoaders(state, 1);
}
BENCHMARK(BM_LoaderThread)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_TwoLoaders(benchmark::State &state)
{
    runLoaders(state, 2);
}
BENCHMARK(BM_TwoLoaders)->Unit(benchmark::kMillisecond)->UseRealTime();

// The same files read one after the other on this thread: what the loader's
// thread, queue and hand-over add.
void BM_PlainReadLoop(benchmark::State &state)
{
    if (frameFiles().isEmpty()) {
        state.SkipWithError("cannot write the frames");
        return;
    }
    int frames = 0;
    for (auto _ : state) {
        for (const QString &f : frameFiles()) {
            TiffData frame;
            frames += frame.read(f) ? 1 : 0;
        }
    }
    state.SetItemsProcessed(frames);
    state.SetBytesProcessed(int64_t(frames * kFrameBytes));
}
BENCHMARK(BM_PlainReadLoop)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
