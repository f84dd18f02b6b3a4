// Loading a 300 x 1024 x 1024 16-bit stack through the stack loader on its
// own thread, as frames per second: from one HDF5 file (contiguous, chunked
// a frame a chunk, chunked deeper than a slice, and gzip chunks) against the
// same frames as 300 TIFF files. The data are written once into
// /tmp/tessarelle-h5bench (about 2.5 GB) and read from the page cache.

#include "images/H5Stack.h"
#include "images/LoadTiff.h"
#include "images/TiffWriter.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QThread>

#include <benchmark/benchmark.h>
#include <hdf5.h>

#include <functional>
#include <vector>

namespace {

constexpr int kFrames = 300;
constexpr hsize_t kSide = 1024;
const QString kDir = QStringLiteral("/tmp/tessarelle-h5bench");

quint16 value(int k, std::size_t i)
{
    return quint16(((i + std::size_t(k) * 7919) * 2654435761u) >> 16);
}

// One dataset "/data" of kFrames x kSide x kSide, written slice by slice.
bool writeStack(const QString &file, const std::vector<hsize_t> &chunk, int gzip)
{
    if (QFile::exists(file))
        return true;
    const QString part = file + ".part";
    const hid_t f = H5Fcreate(QFile::encodeName(part).constData(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    const hsize_t dims[3] = {kFrames, kSide, kSide};
    const hid_t space = H5Screate_simple(3, dims, nullptr);
    const hid_t create = H5Pcreate(H5P_DATASET_CREATE);
    if (!chunk.empty())
        H5Pset_chunk(create, 3, chunk.data());
    if (gzip > 0)
        H5Pset_deflate(create, unsigned(gzip));
    const hid_t set = H5Dcreate2(f, "/data", H5T_STD_U16LE, space, H5P_DEFAULT, create, H5P_DEFAULT);
    const hsize_t one[2] = {kSide, kSide};
    const hid_t mem = H5Screate_simple(2, one, nullptr);
    std::vector<quint16> px(kSide * kSide);
    bool ok = set >= 0;
    for (int k = 0; ok && k < kFrames; ++k) {
        for (std::size_t i = 0; i < px.size(); ++i)
            px[i] = value(k, i);
        const hsize_t start[3] = {hsize_t(k), 0, 0}, count[3] = {1, kSide, kSide};
        ok = H5Sselect_hyperslab(space, H5S_SELECT_SET, start, nullptr, count, nullptr) >= 0
          && H5Dwrite(set, H5T_NATIVE_UINT16, mem, space, H5P_DEFAULT, px.data()) >= 0;
    }
    H5Sclose(mem);
    H5Dclose(set);
    H5Pclose(create);
    H5Sclose(space);
    H5Fclose(f);
    return ok && QFile::rename(part, file);
}

QStringList tiffFiles()
{
    QStringList names;
    std::vector<quint16> px(kSide * kSide);
    for (int k = 0; k < kFrames; ++k) {
        const QString name = kDir + QStringLiteral("/frame%1.tif").arg(k, 3, 10, QLatin1Char('0'));
        if (!QFile::exists(name)) {
            for (std::size_t i = 0; i < px.size(); ++i)
                px[i] = value(k, i);
            if (!writeTiff16(name, kSide, kSide, px.data()))
                return {};
        }
        names << name;
    }
    return names;
}

// Runs one load on a loader thread and waits for its finish; false when
// frames are missing.
bool loadOnce(LoadTiff *loader, const std::function<void()> &start)
{
    QEventLoop loop;
    int frames = 0;
    const auto c1 = QObject::connect(loader, &LoadTiff::loaded, &loop, [&](TiffData *f, int, int) {
        delete f;
        ++frames;
    });
    const auto c2 = QObject::connect(loader, &LoadTiff::finishLoadFiles, &loop, [&] { loop.quit(); });
    start();
    loop.exec();
    QObject::disconnect(c1);
    QObject::disconnect(c2);
    return frames == kFrames;
}

void runLoad(benchmark::State &state, const std::function<void(LoadTiff *)> &start)
{
    QThread thread;
    auto *loader = new LoadTiff;
    loader->moveToThread(&thread);
    thread.start();
    for (auto _ : state) {
        if (!loadOnce(loader, [&] { start(loader); })) {
            state.SkipWithError("frames missing");
            break;
        }
    }
    thread.quit();
    thread.wait();
    delete loader;
    state.SetItemsProcessed(state.iterations() * kFrames);
    state.SetBytesProcessed(state.iterations() * kFrames * qint64(kSide * kSide * 2));
}

void BM_Hdf5(benchmark::State &state, const char *name, std::vector<hsize_t> chunk, int gzip)
{
    const QString file = kDir + "/" + name + ".h5";
    H5Stack stack;
    if (!writeStack(file, chunk, gzip) || !H5Stack::find(file, "/data", QString(), stack)) {
        state.SkipWithError("cannot write the stack");
        return;
    }
    runLoad(state, [&](LoadTiff *l) {
        QMetaObject::invokeMethod(l, [l, stack] { l->loadStack(stack, 1, 0, 0, nullptr, LOAD_I1_FILES); },
                                  Qt::QueuedConnection);
    });
}
BENCHMARK_CAPTURE(BM_Hdf5, contiguous, "contiguous", std::vector<hsize_t>{}, 0)
    ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK_CAPTURE(BM_Hdf5, chunked_frame, "chunked", std::vector<hsize_t>{1, kSide, kSide}, 0)
    ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK_CAPTURE(BM_Hdf5, chunked_8x128x128, "deep", std::vector<hsize_t>{8, 128, 128}, 0)
    ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK_CAPTURE(BM_Hdf5, gzip1_8x128x128, "gzip", std::vector<hsize_t>{8, 128, 128}, 1)
    ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void BM_Tiff(benchmark::State &state)
{
    const QStringList files = tiffFiles();
    if (files.isEmpty()) {
        state.SkipWithError("cannot write the frames");
        return;
    }
    runLoad(state, [&](LoadTiff *l) {
        QMetaObject::invokeMethod(l, [l, files] { l->loadTiffs(files, false, 1, 0, 0, nullptr, LOAD_I1_FILES); },
                                  Qt::QueuedConnection);
    });
}
BENCHMARK(BM_Tiff)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QDir().mkpath(kDir);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
