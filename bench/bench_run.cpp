// Timing of the analysis run over the image: a 512 x 512 stack of 300 I1
// frames with an I0 stack, box 21 x 21, the edge-position map.
//
// Part one times the links of the chain in this process, per point: the box
// sums of the absorption spectrum, the spectrum's analysis, the queued round
// trip to a worker thread and back, the edge analysis, and the recording.
// Part two runs the real program headless over the same stack (written as
// TIFF files into a temporary folder) at step 21 over the whole image and at
// step 1 over a band of rows, and times the run from the batch's own lines.
//
//   bench_run [path of the tessarelle executable]
#include "BenchProgram.h"
#include "analysis/AnalyzeProc.h"
#include "analysis/Analyzed2DRes.h"
#include "analysis/EdgeAnalysis.h"
#include "images/Absorption.h"
#include "images/AbsorptionInput.h"
#include "images/TiffData.h"
#include "images/TiffWriter.h"
#include "spectrum/XafsSpectrum.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

constexpr int N = 512, Frames = 300, Hw = 10;

double energy(int k)
{
    return 8830.0 + k;
}

quint16 i1Value(int x, int y, int k)
{
    const double e0 = 8979 + 4.0 * x / N - 3.0 * y / N;
    const double mu = 0.4 + 0.6 * (0.5 + std::atan((energy(k) - e0) / 2.0) / M_PI);
    return quint16(20000 * std::exp(-mu) + (x * 7 + y * 3 + k) % 11);
}

quint16 i0Value(int x, int y, int k)
{
    return quint16(20000 + (x + 2 * y + k) % 17);
}

struct Stacks {
    std::vector<std::unique_ptr<TiffData>> owned;
    QVector<TiffData *> i1, i0;
    Stacks()
    {
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
    }
};

template <typename F>
double perPoint(int n, F f)
{
    QElapsedTimer t;
    t.start();
    for (int i = 0; i < n; ++i)
        f(i);
    return double(t.nsecsElapsed()) / n / 1000.0; // us
}

void components()
{
    Stacks st;
    AbsorptionInput in;
    in.i1Frames = &st.i1;
    in.i0Frames = &st.i0;
    Spectrum sp;
    const int n = 400;
    // Points along a walk at step 21, as the run visits them.
    auto px = [](int i) { return 10 + (i * 21) % 504; };
    auto py = [](int i) { return 10 + ((i * 21) / 504) * 21 % 504; };
    const double tAbs = perPoint(n, [&](int i) { Absorption::absorptionSpectrum(in, px(i), py(i), Hw, Hw, sp); });
    SuggestElm elm;
    elm.edgeEV = 8979;
    const double tAna = perPoint(n, [&](int) { XafsSpectrum x(sp, "Body-AaP", 1, 0.0, elm); });
    const XafsSpectrum s(sp, "Body-AaP", 1, 0.0, elm);
    const XafsSpectrum ref;
    const double tEdge = perPoint(n, [&](int) { edgePosition(s, elm, true, 0.5, ref, 10, 1, 0.1); });

    // The queued round trip: the spectrum by value to a worker on its own
    // thread, its end signal back, one at a time.
    QThread thread;
    AnalyzeProc worker;
    worker.moveToThread(&thread);
    thread.start();
    QEventLoop loop;
    int left = n;
    QObject::connect(&worker, &AnalyzeProc::finished, &loop, [&] {
        if (--left == 0)
            loop.quit();
        else
            QMetaObject::invokeMethod(&worker, "analyzeSpectrumDEdge0", Qt::QueuedConnection,
                                      Q_ARG(XafsSpectrum, s), Q_ARG(SuggestElm, elm), Q_ARG(bool, true),
                                      Q_ARG(double, 0.5), Q_ARG(XafsSpectrum, ref), Q_ARG(double, 10.0),
                                      Q_ARG(double, 1.0), Q_ARG(double, 0.1));
    });
    QElapsedTimer t;
    t.start();
    QMetaObject::invokeMethod(&worker, "analyzeSpectrumDEdge0", Qt::QueuedConnection, Q_ARG(XafsSpectrum, s),
                              Q_ARG(SuggestElm, elm), Q_ARG(bool, true), Q_ARG(double, 0.5),
                              Q_ARG(XafsSpectrum, ref), Q_ARG(double, 10.0), Q_ARG(double, 1.0), Q_ARG(double, 0.1));
    loop.exec();
    const double tTrip = double(t.nsecsElapsed()) / n / 1000.0 - tEdge;
    thread.quit();
    thread.wait();

    Analyzed2DRes map;
    AnalyzeCond c;
    c.setUp(N, N, Hw, Hw, QRectF(0, 0, N, N), -1, -1);
    map.setUp(c);
    const double tRec21 = perPoint(n, [&](int i) { map.setData(px(i), py(i), Hw, Hw, 0.5); });
    const double tRec1 = perPoint(n, [&](int i) { map.setData(px(i), py(i), 0, 0, 0.5); });
    QElapsedTimer g;
    g.start();
    map.genImg();
    const double tImg = double(g.nsecsElapsed()) / 1e6;

    std::printf("per point, 300 frames, box 21 x 21 (us):\n");
    std::printf("  box sums (absorption spectrum, I1 and I0)  %8.1f\n", tAbs);
    std::printf("  spectrum analysis (lines, midx)            %8.1f\n", tAna);
    std::printf("  queued round trip to the worker            %8.1f\n", tTrip);
    std::printf("  edge position in the worker                %8.2f\n", tEdge);
    std::printf("  recording, block 21 x 21 / 1 x 1           %8.2f / %.2f\n", tRec21, tRec1);
    std::printf("  image of the map, once a row (ms)          %8.2f\n", tImg);
}

// Runs the program on the stack in `dir` and returns the seconds between the
// ":echo" lines around the run, or -1.
double timedRun(const QString &exe, const QString &dir, const QStringList &settings, int *points, bool serial = false)
{
    QStringList batch{"set_i1_energy_pattern \\d\\d\\d\\d\\.\\d\\d", "set_i0_energy_pattern \\d\\d\\d\\d\\.\\d\\d",
                      "load_I1_files_of_pattern new " + dir + "/ i1_*.tif",
                      "load_I0_files_of_pattern new " + dir + "/ i0_*.tif", "set_view_w 10", "set_view_h 10"};
    batch << settings << ":echo run-start" << "analyzer_exec_2da" << ":echo run-end" << "quit";
    const QStringList area = settings.filter("select_region");
    int w = N, h = N;
    if (!area.isEmpty()) {
        const QStringList v = area.first().split(' ');
        w = v[3].toInt() - v[1].toInt();
        h = v[4].toInt() - v[2].toInt();
    }
    const int step = settings.contains("set_analyze_w 0") ? 1 : 21;
    *points = ((w - (step / 2) + step - 1) / step) * ((h - (step / 2) + step - 1) / step);
    return timedProgramRun(exe, dir, batch, "run-start", "run-end", false, serial);
}

void wholeRuns(const QString &exe)
{
    QTemporaryDir tmp(QDir::tempPath() + "/tessarelle-bench-run-XXXXXX");
    std::vector<quint16> px(std::size_t(N) * N);
    for (int k = 0; k < Frames; ++k) {
        for (int s = 0; s < 2; ++s) {
            for (int y = 0; y < N; ++y)
                for (int x = 0; x < N; ++x)
                    px[std::size_t(y) * N + x] = s == 0 ? i1Value(x, y, k) : i0Value(x, y, k);
            const QString name = QStringLiteral("%1/%2_%3.tif")
                                     .arg(tmp.path(), s == 0 ? "i1" : "i0")
                                     .arg(energy(k), 8, 'f', 2, QLatin1Char('0'));
            writeTiff16(name, N, N, px.data());
        }
    }
    const struct {
        const char *what;
        QStringList settings;
    } runs[] = {
        {"step 21, whole image", {"set_analyze_w 10", "set_analyze_h 10"}},
        {"step 1, rows 0..8", {"set_analyze_w 0", "set_analyze_h 0", "select_region 0 0 512 8"}},
    };
    for (const auto &r : runs) {
        int points = 0;
        const double s = timedRun(exe, tmp.path(), r.settings, &points);
        std::printf("run %-22s %6d points in %7.2f s: %8.0f points/s\n", r.what, points, s, points / s);
    }

    // Each analysis alone on the same band, one spectrum at a time against
    // the threaded path. The fits take two references: edges 2 eV apart.
    for (int r = 0; r < 2; ++r) {
        QFile f(QStringLiteral("%1/ref%2.dat").arg(tmp.path()).arg(r));
        f.open(QIODevice::WriteOnly | QIODevice::Text);
        for (int k = 0; k < Frames; ++k) {
            const double mu = 0.4 + 0.6 * (0.5 + std::atan((energy(k) - 8978 - 2 * r) / 2.0) / M_PI);
            f.write(QStringLiteral("%1 %2\n").arg(energy(k), 0, 'g', 17).arg(mu, 0, 'g', 17).toLatin1());
        }
    }
    const QStringList band{"set_analyze_w 0", "set_analyze_h 0", "select_region 0 0 512 8"};
    const QStringList lcf{"analyzer_set_LCF_range 8950 9030",
                          "analyzer_set_LCF_std 0 1 0 " + tmp.path() + "/ref0.dat 0",
                          "analyzer_set_LCF_std 1 1 2 " + tmp.path() + "/ref1.dat 0"};
    const struct {
        const char *what;
        QStringList settings;
    } analyses[] = {
        {"edge position", {"analyzer_sub_mode 0 1 0 0 0 0"}},
        {"LCF", QStringList{"analyzer_sub_mode 0 0 1 0 0 0"} + lcf},
        {"MLCF", QStringList{"analyzer_sub_mode 0 0 1 0 0 0", "analyzer_set_MLCF 1"} + lcf},
        {"elements", {"analyzer_sub_mode 0 0 0 1 0 0", "analyzer_target_elements \"Cu, Ni\"",
                      "analyzer_elems_set_use Cu-K 1", "analyzer_elems_set_use Ni-K 1"}},
        {"residual absorption", {"analyzer_sub_mode 0 0 0 0 1 0", "analyzer_set_ra_energy 8985"}},
        {"feature value", {"analyzer_sub_mode 0 0 0 0 0 1"}},
    };
    // A run begins by setting up its maps (a dozen for the fits and the
    // elements), which on a fresh virtual machine can cost a tenth of a
    // second in first touches of memory, as much as the threaded run of the
    // 8 rows: the threaded run also over 200 rows, where the points weigh
    // about as much against the setup as in the one-at-a-time run of 8.
    std::printf("each analysis, step 1, points/s: one at a time rows 0..8 / threaded rows 0..8, rows 0..200\n");
    QStringList longBand = band;
    longBand.last() = QStringLiteral("select_region 0 0 512 200");
    for (const auto &a : analyses) {
        int points = 0, longPoints = 0;
        const double one = timedRun(exe, tmp.path(), band + a.settings, &points, true);
        const double many = timedRun(exe, tmp.path(), band + a.settings, &points, false);
        const double manyLong = timedRun(exe, tmp.path(), longBand + a.settings, &longPoints, false);
        std::printf("  %-20s %8.0f / %8.0f (%4.1fx), %8.0f (%4.1fx)\n", a.what, points / one, points / many,
                    one / many, longPoints / manyLong, longPoints / manyLong / (points / one));
    }
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    qRegisterMetaType<XafsSpectrum>("XafsSpectrum");
    qRegisterMetaType<SuggestElm>("SuggestElm");
    components();
    const QString exe = argc > 1 ? QString::fromLocal8Bit(argv[1])
                                 : QCoreApplication::applicationDirPath() + "/../bin/tessarelle";
    if (QFileInfo(exe).isExecutable())
        wholeRuns(exe);
    else
        std::printf("no executable at %s: whole runs skipped\n", qPrintable(exe));
    return 0;
}
