// Timing of the energy-shift calibration and of the energy map file.
//
// Part one, in this process: the work of one calibration point (box sums,
// the point's analysis, the shift by edges or by inner products, the
// recording), and the writing and reading of a 2048 x 2048 .emp file.
// Part two runs the real program headless: a calibration of every pixel of a
// 256 x 16 band of a 256 x 256 stack of 200 frames with both methods, one
// point at a time and threaded (threaded also over the whole stack), timed
// between its own log lines, and the load of the 2048 x 2048 file by the
// batch command.
//
//   bench_calib [path of the tessarelle executable]
#include "BenchProgram.h"
#include "analysis/Analyzed2DRes.h"
#include "calibration/EmpFile.h"
#include "images/Absorption.h"
#include "images/AbsorptionInput.h"
#include "images/TiffData.h"
#include "images/TiffWriter.h"
#include "spectrum/XafsSpectrum.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <cmath>
#include <cstdlib>
#include <cstdio>
#include <memory>

namespace {

constexpr int N = 256, Frames = 200, Hw = 10, Big = 2048;

double energy(int k)
{
    return 8880.0 + k;
}

double mu(double e, double e0)
{
    return 0.4 + 0.6 * (0.5 + std::atan((e - e0) / 2.0) / M_PI);
}

quint16 i1Value(int x, int y, int k)
{
    return quint16(20000 * std::exp(-mu(energy(k), 8979 + 4.0 * x / N - 3.0 * y / N)) + (x * 7 + y * 3 + k) % 11);
}

quint16 i0Value(int x, int y, int k)
{
    return quint16(20000 + (x + 2 * y + k) % 17);
}

double seconds(const QElapsedTimer &t)
{
    return double(t.nsecsElapsed()) / 1e9;
}

void writeStandard(const QString &path)
{
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    for (double e = 8860; e <= 9100; e += 0.5)
        f.write(QStringLiteral("%1 %2\n").arg(e).arg(mu(e, 8979), 0, 'g', 12).toLatin1());
}

void components(const QString &dir)
{
    std::vector<std::unique_ptr<TiffData>> owned;
    QVector<TiffData *> i1, i0;
    for (int k = 0; k < Frames; ++k)
        for (int s = 0; s < 2; ++s) {
            auto f = std::make_unique<TiffData>();
            f->allocate(N, N, PixelU16);
            for (int y = 0; y < N; ++y) {
                auto *row = static_cast<quint16 *>(f->rows[y]);
                for (int x = 0; x < N; ++x)
                    row[x] = s == 0 ? i1Value(x, y, k) : i0Value(x, y, k);
            }
            f->energy = energy(k);
            (s == 0 ? i1 : i0) << f.get();
            owned.push_back(std::move(f));
        }
    AbsorptionInput in;
    in.i1Frames = &i1;
    in.i0Frames = &i0;
    writeStandard(dir + "/std.dat");
    XafsSpectrum standard;
    standard.read(dir + "/std.dat");
    standard.analyze(1);

    Analyzed2DRes map;
    AnalyzeCond c;
    c.setUp(N, N, Hw, Hw, QRectF(0, 0, N, N), -1, -1);
    map.setUp(c);
    Spectrum sp;
    for (int method = 0; method < 2; ++method) {
        c.restart();
        int n = 0;
        QElapsedTimer t;
        t.start();
        do {
            Absorption::absorptionSpectrum(in, c.ix, c.iy, Hw, Hw, sp);
            const XafsSpectrum x(sp, "Body-Calib", 1, 0, SuggestElm());
            const double dE = method == 0 ? x.midx - standard.midx : x.searchDE(standard, 20, 1, 0.1);
            map.setData(c.ix, c.iy, Hw, Hw, dE);
            ++n;
        } while (c.next());
        std::printf("in process, %s, %d frames, box 21 x 21: %d points, %8.0f points/s\n",
                    method == 0 ? "dMidx   " : "inner P.", Frames, n, n / seconds(t));
    }

    // A 2048 x 2048 map of smooth shifts, written and read back.
    Analyzed2DRes big;
    c.setUp(Big, Big, 0, 0, QRectF(0, 0, Big, Big), -1, -1);
    big.setUp(c);
    for (int y = 0; y < Big; ++y)
        for (int x = 0; x < Big; ++x)
            big.setData(x, y, 0, 0, 1e-3 * x - 2e-3 * y + 1e-7 * x * y);
    QFile out(dir + "/big.emp");
    out.open(QIODevice::WriteOnly | QIODevice::Text);
    QElapsedTimer t;
    t.start();
    EmpFile::write(out, {"24/03/01 00:00:00.000", 8979.0, 3.1355316, 0, 0, "std.dat"}, big, Big, Big);
    out.close();
    std::printf("write 2048 x 2048 .emp (%lld MB):            %6.2f s\n", QFileInfo(out).size() >> 20, seconds(t));
    QFile f(dir + "/big.emp");
    f.open(QIODevice::ReadOnly | QIODevice::Text);
    t.start();
    const EMPHeader h = EmpFile::readHeader(f);
    Analyzed2DRes back;
    if (h.valid && EmpFile::bodyFits(h, f.size() - f.pos()))
        EmpFile::readBody(f, h, h.stdEdgeE, back);
    const double tRead = seconds(t);
    back.genImg();
    std::printf("read 2048 x 2048 .emp, header and body:        %6.2f s (with the image %.2f s)\n", tRead, seconds(t));}

// Runs the program with the batch and returns the seconds between the first
// log line containing `from` and the first containing `to` after it, or -1.
// The program is stopped once `to` has come.
double timedRun(const QString &exe, const QString &dir, const QStringList &batch, const char *from, const char *to)
{
    return timedProgramRun(exe, dir, batch, from, to, true);
}

void wholeRuns(const QString &exe, const QString &dir)
{
    std::vector<quint16> px(std::size_t(N) * N);
    for (int k = 0; k < Frames; ++k)
        for (int s = 0; s < 2; ++s) {
            for (int y = 0; y < N; ++y)
                for (int x = 0; x < N; ++x)
                    px[std::size_t(y) * N + x] = s == 0 ? i1Value(x, y, k) : i0Value(x, y, k);
            writeTiff16(QStringLiteral("%1/%2_%3.tif").arg(dir, s == 0 ? "i1" : "i0").arg(energy(k), 0, 'f', 2), N,
                        N, px.data());
        }
    const QStringList load{"set_i1_energy_pattern \\d\\d\\d\\d\\.\\d\\d", "set_i0_energy_pattern \\d\\d\\d\\d\\.\\d\\d",
                           "load_I1_files_of_pattern new " + dir + "/ i1_*.tif",
                           "load_I0_files_of_pattern new " + dir + "/ i0_*.tif", "set_view_w 10", "set_view_h 10",
                           "calib_load_std " + dir + "/std.dat", "set_analyze_w 0", "set_analyze_h 0",
                           "select_region 0 0 256 16"};
    // The threaded run also over the whole image, where its points weigh
    // more against the setup of the run.
    for (int method = 0; method < 2; ++method) {
        for (const int rows : {-16, 16, N}) {
            const bool serial = rows < 0;
            const int points = N * std::abs(rows);
            QStringList batch(load);
            batch.last() = QStringLiteral("select_region 0 0 %1 %2").arg(N).arg(std::abs(rows));
            batch << QStringLiteral("calib_type %1").arg(method) << "calib_exec";
            const double s = timedProgramRun(exe, dir, batch, "Start Calibration", "End Calibration", true, serial);
            std::printf("program, %s, %s, %6d points in %6.2f s: %8.0f points/s\n",
                        method == 0 ? "dMidx   " : "inner P.", serial ? "one at a time" : "threaded     ", points, s,
                        points / s);
        }
    }
    const double s = timedRun(exe, dir, {":echo load-start", "calib_load_map " + dir + "/big.emp", ":echo load-end"},
                              "load-start", "load-end");
    std::printf("program, calib_load_map of the 2048 x 2048 file: %6.2f s\n", s);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir tmp(QDir::tempPath() + "/tessarelle-bench-calib-XXXXXX");
    components(tmp.path());
    const QString exe = argc > 1 ? QString::fromLocal8Bit(argv[1])
                                 : QCoreApplication::applicationDirPath() + "/../bin/tessarelle";
    if (QFileInfo(exe).isExecutable())
        wholeRuns(exe, tmp.path());
    else
        std::printf("no executable at %s: program runs skipped\n", qPrintable(exe));
    return 0;
}
