// The full-resolution edge map against a vectorised numpy program on the same
// stack: side x side pixels, `frames` I1 frames with an I0 stack, box 21 x 21,
// step 1. The stack is written once as TIFF files for the program and as raw
// files for numpy_edgemap.py; the program runs headless and is timed between
// the batch's own lines around analyzer_exec_2da; numpy times its own
// computation with the stacks in memory. The maps are compared point by point.
//
//   bench_edgemap [side [frames [tessarelle [numpy_edgemap.py, or - for none]]]]
//
// TESSARELLE_BENCH_DIR names a folder to keep the stack in between runs
// (written when its raw files are missing or of another size).
#include "BenchProgram.h"
#include "images/TiffWriter.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace {

int side = 1024, frames = 300;
const double E0 = 8830.0, DE = 1.0;

quint16 i1Value(int x, int y, int k)
{
    const double e0 = 8979 + 4.0 * x / side - 3.0 * y / side;
    const double mu = 0.4 + 0.6 * (0.5 + std::atan((E0 + DE * k - e0) / 2.0) / M_PI);
    return quint16(20000 * std::exp(-mu) + (x * 7 + y * 3 + k) % 11);
}

quint16 i0Value(int x, int y, int k)
{
    return quint16(20000 + (x + 2 * y + k) % 17);
}

// Seconds between the lines "run-start" and "run-end" of the program's debug
// stream, or -1.
double timedRun(const QString &exe, const QString &dir, const QStringList &run, bool serial)
{
    QStringList batch{"set_i1_energy_pattern \\d\\d\\d\\d\\.\\d\\d", "set_i0_energy_pattern \\d\\d\\d\\d\\.\\d\\d",
                      "load_I1_files_of_pattern new " + dir + "/ i1_*.tif",
                      "load_I0_files_of_pattern new " + dir + "/ i0_*.tif",
                      "set_view_w 10", "set_view_h 10", "saveDataCfg_save_as_text", "saveDataCfg_text_as_ssv",
                      "saveDataCfg_text_as_vals"};
    batch << run << "quit";
    return timedProgramRun(exe, dir, batch, "run-start", "run-end", false, serial);
}

// The map text file: one line per row of values.
std::vector<double> readMatrix(const QString &path)
{
    std::vector<double> v;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        return v;
    while (!f.atEnd()) {
        const QByteArray line = f.readLine().trimmed();
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        for (const QByteArray &t : line.split(' '))
            if (!t.isEmpty())
                v.push_back(t.toDouble());
    }
    return v;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc > 1)
        side = atoi(argv[1]);
    if (argc > 2)
        frames = atoi(argv[2]);
    const QString exe = argc > 3 ? QString::fromLocal8Bit(argv[3]) : QCoreApplication::applicationDirPath() + "/../bin/tessarelle";
    const QString py = argc > 4 ? QString::fromLocal8Bit(argv[4]) : QString(SOURCE_DIR) + "/bench/numpy_edgemap.py";
    if (!QFileInfo(exe).isExecutable()) {
        std::printf("no executable at %s\n", qPrintable(exe));
        return 1;
    }
    QTemporaryDir tmp(QDir::tempPath() + "/tessarelle-bench-edgemap-XXXXXX");
    const QString kept = qEnvironmentVariable("TESSARELLE_BENCH_DIR");
    const QString dir = kept.isEmpty() ? tmp.path() : kept;
    QDir().mkpath(dir);
    const qint64 rawSize = qint64(side) * side * frames * 2;
    const bool written = !kept.isEmpty() && QFileInfo(dir + "/i1.raw").size() == rawSize
                         && QFileInfo(dir + "/i0.raw").size() == rawSize;
    std::vector<quint16> px(size_t(side) * side);
    for (int s = 0; s < 2 && !written; ++s) {
        QFile raw(dir + (s == 0 ? "/i1.raw" : "/i0.raw"));
        raw.open(QIODevice::WriteOnly);
        for (int k = 0; k < frames; ++k) {
            for (int y = 0; y < side; ++y)
                for (int x = 0; x < side; ++x)
                    px[size_t(y) * side + x] = s == 0 ? i1Value(x, y, k) : i0Value(x, y, k);
            const QString name = QStringLiteral("%1/%2_%3.tif").arg(dir, s == 0 ? "i1" : "i0").arg(E0 + DE * k, 7, 'f', 2);
            writeTiff16(name, side, side, px.data());
            raw.write(reinterpret_cast<const char *>(px.data()), qint64(px.size() * 2));
        }
    }
    std::printf("stack %d x %d x %d frames, I0, box 21 x 21, step 1 (%d points)\n", side, side, frames, side * side);

    const QStringList edge{"analyzer_select_sub_mode_dEdge 1", "set_analyze_w 0", "set_analyze_h 0",
                           ":echo run-start", "analyzer_exec_2da", ":echo run-end", "save_data " + dir + "/map.dat"};
    // Three runs, the median taken: on a shared machine one run can be slowed
    // by half by its neighbours.
    std::vector<double> runs;
    for (int r = 0; r < 3; ++r)
        runs.push_back(timedRun(exe, dir, edge, false));
    std::sort(runs.begin(), runs.end());
    const double tProg = runs[1];
    std::printf("program, threaded run:  %8.2f s  %10.0f points/s (median of %.2f, %.2f, %.2f s)\n", tProg,
                side * double(side) / tProg, runs[0], runs[1], runs[2]);

    if (py == "-") // the program alone
        return 0;
    QProcess p;
    p.start("/usr/bin/python3", {py, dir + "/i1.raw", dir + "/i0.raw", QString::number(side), QString::number(frames),
                                 QString::number(E0), QString::number(DE), "10", dir + "/np.raw"});
    p.waitForFinished(-1);
    const double tNp = p.readAllStandardOutput().trimmed().toDouble();
    std::printf("numpy:                  %8.2f s  %10.0f points/s\n", tNp, side * double(side) / tNp);
    std::printf("numpy / program:        %8.1f\n", tNp / tProg);

    const std::vector<double> mine = readMatrix(dir + "/map-0.dat");
    QFile npf(dir + "/np.raw");
    npf.open(QIODevice::ReadOnly);
    const QByteArray npb = npf.readAll();
    const auto *np = reinterpret_cast<const double *>(npb.constData());
    double worst = 0;
    size_t worstAt = 0;
    size_t differ = 0;
    const size_t n = std::min(mine.size(), size_t(npb.size() / 8));
    for (size_t i = 0; i < n; ++i) {
        // The map file holds 6 significant digits: numpy's value is rounded
        // the same way before the two are compared.
        const double rounded = QString::number(np[i], 'g', 6).toDouble();
        differ += !(rounded == mine[i] || (std::isnan(rounded) && std::isnan(mine[i])));
        const double d = std::fabs(mine[i] - np[i]) / std::max(1.0, std::fabs(np[i]));
        if (d > worst)
            worst = d, worstAt = i;
    }
    std::printf("maps compared at %zu of %d points, %zu differ in the file's 6 digits; largest relative difference %.2g",
                n, side * side, differ, worst);
    if (worst > 0)
        std::printf(" at x %zu, y %zu (program %.9g, numpy %.9g)", worstAt % size_t(side), worstAt / size_t(side),
                    mine[worstAt], np[worstAt]);
    std::printf("\n");

    // One-at-a-time rate on a band of 8 rows.
    const QStringList band{"analyzer_select_sub_mode_dEdge 1", "set_analyze_w 0", "set_analyze_h 0",
                           QStringLiteral("select_region 0 0 %1 8").arg(side), ":echo run-start", "analyzer_exec_2da",
                           ":echo run-end"};
    const double tSerial = timedRun(exe, dir, band, true);
    std::printf("program, one at a time: %8.2f s for %d points: %10.0f points/s\n", tSerial, side * 8,
                side * 8.0 / tSerial);
    return 0;
}
