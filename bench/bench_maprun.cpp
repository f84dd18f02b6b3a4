// The threaded run's work per point, in this process and without the
// program around it: the edge-position map by mid point over a band of a
// side x side stack of 300 I1 frames with an I0 stack, box 21 x 21, step 1,
// through MapRun with one thread and with two. Reports wall and processor
// time per point, so that a change of the inner loops can be judged on a
// machine that is not quiet. Then, on one thread, what each step of a point
// adds: the row moves of the box sums, reading the point's sums, its
// spectrum, its analysis.
//
//   bench_maprun [side [rows]]
#include "analysis/AnalyzeCond.h"
#include "analysis/MapRun.h"
#include "images/Absorption.h"
#include "images/AbsorptionInput.h"
#include "images/BoxRowSums.h"
#include "images/TiffData.h"
#include "spectrum/XafsSpectrum.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <cmath>
#include <cstdio>
#include <ctime>
#include <memory>
#include <vector>

namespace {

int side = 512, rows = 16;
const int Frames = 300;

double cpuSeconds()
{
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + 1e-9 * double(t.tv_nsec);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc > 1)
        side = atoi(argv[1]);
    if (argc > 2)
        rows = atoi(argv[2]);
    std::vector<std::unique_ptr<TiffData>> owned;
    QVector<TiffData *> i1, i0;
    for (int k = 0; k < Frames; ++k)
        for (int s = 0; s < 2; ++s) {
            auto f = std::make_unique<TiffData>();
            f->allocate(quint32(side), quint32(side), PixelU16);
            for (int y = 0; y < side; ++y) {
                auto *row = static_cast<quint16 *>(f->rows[y]);
                for (int x = 0; x < side; ++x) {
                    const double e0 = 8979 + 4.0 * x / side - 3.0 * y / side;
                    const double mu = 0.4 + 0.6 * (0.5 + std::atan((8830.0 + k - e0) / 2.0) / M_PI);
                    row[x] = s == 0 ? quint16(20000 * std::exp(-mu) + (x * 7 + y * 3 + k) % 11)
                                    : quint16(20000 + (x + 2 * y + k) % 17);
                }
            }
            f->energy = 8830.0 + k;
            (s == 0 ? i1 : i0) << f.get();
            owned.push_back(std::move(f));
        }
    AbsorptionInput in;
    in.i1Frames = &i1;
    in.i0Frames = &i0;
    in.useI0 = true;
    PointAnalyses job;
    job.hw = 10;
    job.vw = 10;
    job.dEdge = true;
    job.dEdgeIsMid = true;
    job.dEdgeMidRatio = 0.5;
    AnalyzeCond walk;
    walk.setUp(side, side, 0, 0, QRectF(0, side / 2, side, rows), -1, -1);
    const double points = double(side) * rows;
    for (const int threads : {1, 2}) {
        double sum = 0;
        QElapsedTimer t;
        const double c0 = cpuSeconds();
        t.start();
        MapRun run(in, job, walk, std::vector<double>(size_t(points), 0.0), threads);
        run.start();
        for (int r = 0; r < int(run.ys().size());) {
            if (const double *v = run.readyRow(r)) {
                for (size_t i = 0; i < run.xs().size(); ++i)
                    sum += v[i * size_t(run.job().width) + size_t(run.job().dEdgeAt)];
                run.releaseRow();
                ++r;
            } else {
                QThread::usleep(50);
            }
        }
        const double wall = double(t.nsecsElapsed()) / 1e9;
        const double cpu = cpuSeconds() - c0;
        std::printf("%d x %d points, %d thread(s): wall %.3f s (%.2f us/point), cpu %.3f s (%.2f us/point), "
                    "mean edge %.6f\n",
                    side, rows, threads, wall, 1e6 * wall / points, cpu, 1e6 * cpu / points, sum / points);
    }
    // The steps one by one, each run adding one more.
    Absorption::AbsorptionWalk spectra(in);
    const char *steps[] = {"row moves", "+ point sums", "+ spectrum", "+ analysis"};
    for (int step = 0; step < 4; ++step) {
        BoxRowSums b1, b0;
        b1.setUp(i1, job.hw, job.vw, 0, side - 1);
        b0.setUp(i0, job.hw, job.vw, 0, side - 1);
        XafsSpectrum point;
        double sum = 0;
        QElapsedTimer t;
        t.start();
        for (int y = side / 2; y < side / 2 + rows; ++y) {
            b1.moveTo(y);
            b0.moveTo(y);
            for (int x = 0; x < side && step > 0; ++x) {
                const double *s1 = b1.sums(x);
                const double *s0 = b0.sums(x);
                sum += s1[Frames / 2] - s0[Frames / 2];
                if (step < 2)
                    continue;
                spectra.spectrum(x, y, job.hw, job.vw, s1, s0, 0.0, point, false);
                if (step > 2)
                    point.renew(QStringLiteral("p"), job.lineType, 0.0, job.sElm, XafsSpectrum::Curves::None);
                sum += point.midx;
            }
        }
        std::printf("%-14s %.2f us/point (%g)\n", steps[step], 1e6 * double(t.nsecsElapsed()) / 1e9 / points, sum);
    }
    return 0;
}
