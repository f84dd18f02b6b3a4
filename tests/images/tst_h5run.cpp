#include "H5Files.h"

#include "images/H5StackReader.h"
#include "images/TiffData.h"
#include "images/TiffWriter.h"
#include "support/E2eRun.h"

#include <QtTest>

#include <cmath>
#include <vector>

// HDF5 stacks through the whole program, against the same frames written as
// TIFF files: a batch loads I1 and I0 either way and saves the spectrum at
// several points, then runs an edge map over the view and saves it; the two
// runs must write the same files byte for byte.
// The HDF5 run also meets bad input after its loads: each such load logs,
// ends, keeps the stacks, and the script goes on.
class TestH5Run : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { E2E_REQUIRE_EXECUTABLE(); }
    void sameAsTiff_data();
    void sameAsTiff();
};

namespace {
const int W = 12, H = 10, N = 5;
const double I1E[] = {8960.0, 8975.0, 8990.0, 9005.0, 9030.0};
const double I0E[] = {8965.0, 8990.0, 9020.0};
const QPoint kPoints[] = {{5, 4}, {0, 9}, {11, 0}, {7, 2}};

// An absorption edge between the second and fourth frames whose height and
// place change from pixel to pixel, so that the edge map is not flat.
double i1Pixel(int x, int y, int k)
{
    const int drop = k < 2 ? 0 : k == 2 ? 300 + 40 * ((x + y) % 4) : 900 + 20 * x;
    return 3000 + 37 * x + 11 * y - drop + ((x * 7 + y * 3 + k) % 5) * 17;
}

double i0Pixel(int x, int y, int j)
{
    return 5000 + 13 * x + 29 * y + 400 * j;
}

template <typename F>
QVector<double> pixels(int frames, F px)
{
    QVector<double> v;
    for (int k = 0; k < frames; ++k)
        for (int p = 0; p < W * H; ++p)
            v << px(p % W, p / W, k);
    return v;
}

QString tiffName(const QString &dir, const char *stack, double e)
{
    return QStringLiteral("%1/%2_%3.tif").arg(dir, stack).arg(e, 8, 'f', 2, QLatin1Char('0'));
}
} // namespace

void TestH5Run::sameAsTiff_data()
{
    QTest::addColumn<bool>("energiesInFile"); // else both runs take I1's from the energy recipe
    QTest::addColumn<bool>("i0Beside");       // I0 as a second stack in the file, else one frame of another file
    QTest::addColumn<QVector<hsize_t>>("chunk");
    QTest::addColumn<QString>("i1Load"); // load_I1_files takes a lone HDF5 file as a stack too
    QTest::newRow("energies and I0 in the file, gzip chunks")
        << true << true << QVector<hsize_t>{2, 4, 5} << "load_I1_h5 NEW @/scan.h5";
    QTest::newRow("recipe energies, I0 frame from another file")
        << false << false << QVector<hsize_t>{} << "load_I1_files new @/scan.h5";
}

void TestH5Run::sameAsTiff()
{
    QFETCH(bool, energiesInFile);
    QFETCH(bool, i0Beside);
    QFETCH(QVector<hsize_t>, chunk);
    QFETCH(QString, i1Load);

    E2eRun tiffRun, h5Run;
    QVERIFY(tiffRun.isValid() && h5Run.isValid());
    const QString td = tiffRun.dir(), hd = h5Run.dir();
    const int nI0 = i0Beside ? 3 : 1;

    // The TIFF twin: one file a frame, energies in the names.
    QStringList i1Files, i0Files;
    std::vector<quint16> px(W * H);
    const auto writeTiffs = [&](const char *stack, const double *energies, int n, auto pixel, QStringList &files) {
        for (int k = 0; k < n; ++k) {
            for (int p = 0; p < W * H; ++p)
                px[p] = quint16(pixel(p % W, p / W, k));
            files << tiffName(td, stack, energies[k]);
            QVERIFY(writeTiff16(files.last(), W, H, px.data()));
        }
    };
    writeTiffs("i1", I1E, N, i1Pixel, i1Files);
    writeTiffs("i0", I0E, nI0, i0Pixel, i0Files);

    // The HDF5 stacks: names chosen so that the file's own choice finds I1
    // and its energies ("data" and "energy" come before "i0...").
    using H5Files::Dataset;
    const QString stackFile = hd + "/scan.h5", flatFile = hd + "/flat.h5";
    QVector<Dataset> sets{Dataset("/exchange/data", H5T_STD_U16LE, {N, H, W}, pixels(N, i1Pixel), chunk,
                                  chunk.isEmpty() ? 0 : 4)};
    if (energiesInFile)
        sets << Dataset("/exchange/energy", H5T_IEEE_F64LE, {N}, QVector<double>(std::begin(I1E), std::end(I1E)));
    if (i0Beside) {
        sets << Dataset("/exchange/i0", H5T_STD_U16LE, {3, H, W}, pixels(3, i0Pixel))
             << Dataset("/exchange/i0_energy", H5T_IEEE_F64LE, {3}, QVector<double>(std::begin(I0E), std::end(I0E)));
    } else {
        QVERIFY(H5Files::write(flatFile, {Dataset("/flat", H5T_STD_U16LE, {H, W}, pixels(1, i0Pixel))}));
    }
    QVERIFY(H5Files::write(stackFile, sets));
    h5Run.writeFile("notes.txt", "no stack here\n");

    // The frames themselves: every slice equals its TIFF twin, pixel for pixel.
    H5Stack found;
    H5StackReader reader;
    QVERIFY(H5Stack::find(stackFile, "/exchange/data", "", found) && reader.open(found));
    for (int k = 0; k < N * W * H; ++k) {
        TiffData slice, twin;
        QVERIFY(slice.readSlice(reader, k / (W * H)) && twin.read(i1Files[k / (W * H)]));
        QCOMPARE(slice.pixel(k % W, k / W % H), twin.pixel(k % W, k / W % H));
    }

    QStringList common{"set_view_w 2", "set_view_h 1"};
    if (!energiesInFile)
        common << "eng_by_calc_i1 1" << "eng_calc_even_in_eng_i1 1" << "eng_calc_disp_unit_i1 0"
               << "eng_calc_base_i1 8960" << "eng_calc_delta_i1 17.5";
    QStringList saves;
    for (const QPoint &p : kPoints)
        saves << QStringLiteral("move_position %1 %2").arg(p.x()).arg(p.y()) << "save_spectra @/sp.dat";
    saves << "set_analyze_w 0" << "set_analyze_h 0" << "Suggesting_Edge_eV 8990" << "analyzer_exec_2da" << "saveDataCfg_save_as_text"
          << "saveDataCfg_text_as_xyz" << "saveDataCfg_text_as_ssv" << "save_data @/map.dat" << "quit";

    QStringList tiffBatch{"set_i1_energy_pattern \\d\\d\\d\\d\\.\\d\\d", "set_i0_energy_pattern \\d\\d\\d\\d\\.\\d\\d"};
    tiffBatch << common << "load_I1_files new " + i1Files.join(' ') << "load_I0_files new " + i0Files.join(' ')
              << saves;
    QStringList h5Batch = common;
    h5Batch << i1Load
            << (i0Beside ? "load_I0_h5 new @/scan.h5 /exchange/i0 /exchange/i0_energy" : "load_I0_h5 new @/flat.h5")
            // Bad input: each logs, ends, and leaves both stacks as they are.
            << "load_I1_h5 NEW @/missing.h5" << "load_I1_h5 NEW @/scan.h5 /exchange/nothing"
            << "load_I1_h5 ADD @/notes.txt" << "load_I0_h5 NEW @/scan.h5 /exchange/data /exchange/none"
            << "load_I1_h5 new" << ":echo bad_input_done" << saves;
    tiffBatch.replaceInStrings("@", td);
    h5Batch.replaceInStrings("@", hd);

    const E2eResult rt = tiffRun.runBatch({":end"}, tiffBatch, 30000);
    E2E_VERIFY_RUN(rt, true);
    const E2eResult rh = h5Run.runBatch({":end"}, h5Batch, 30000);
    E2E_VERIFY_RUN(rh, true);
    const QStringList ends{"I1 load finished: 5 frames", QStringLiteral("I0 load finished: %1 frames").arg(nI0),
                           "echo bad_input_done"};
    E2E_VERIFY_LINES(rh.debug, ends, (QStringList{"I1 load finished: 0 frames", "I0 load finished: 0 frames"}));
    const QStringList badInput{"Not an HDF5 file " + hd + "/missing.h5", "Not an HDF5 file " + hd + "/notes.txt",
                               "HDF5 dataset not found /exchange/nothing", "HDF5 dataset not found /exchange/none"};
    for (const QString &line : badInput)
        QVERIFY2(rh.debug.contains(line), qPrintable(line + "\n" + rh.debug));

    for (const QPoint &p : kPoints) {
        const QString name = QStringLiteral("/sp%1-%2-2x1T.dat").arg(p.x()).arg(p.y());
        QFile a(td + name), b(hd + name);
        QVERIFY2(a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadOnly), qPrintable(name + "\n" + rh.debug));
        const QByteArray tiffBytes = a.readAll();
        int rows = 0; // one row a frame besides the header: equal files of nothing would prove nothing
        for (const QByteArray &line : tiffBytes.split('\n'))
            rows += !line.isEmpty() && !line.startsWith('#');
        QCOMPARE(rows, N);
        QCOMPARE(b.readAll(), tiffBytes);
    }

    QFile a(td + "/map-0.dat"), b(hd + "/map-0.dat"); // the edge row's map is numbered 0
    QVERIFY2(a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadOnly), qPrintable(rh.debug.right(1000)));
    const auto undated = [](QFile &f) { // the header's time of writing differs
        QByteArray all = f.readAll();
        return all.remove(all.indexOf("# Date"), all.indexOf('\n', all.indexOf("# Date")) - all.indexOf("# Date"));
    };
    const QByteArray tiffMap = undated(a);
    QSet<double> edges; // the edge positions found, which must not all be one
    for (const QByteArray &line : tiffMap.split('\n')) {
        const QList<QByteArray> v = line.split(' ');
        if (v.size() == 3 && !line.startsWith('#') && std::isfinite(v[2].toDouble()))
            edges << v[2].toDouble();
    }
    QVERIFY2(edges.size() > 1, tiffMap.constData());
    QCOMPARE(undated(b), tiffMap);
}

QTEST_GUILESS_MAIN(TestH5Run)
#include "tst_h5run.moc"
