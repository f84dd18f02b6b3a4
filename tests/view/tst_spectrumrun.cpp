#include "images/TiffWriter.h"
#include "support/E2eRun.h"

#include <QtTest>

#include <cmath>
#include <vector>

// The spectrum under the pointer, through the whole program: a batch loads
// an I1 and an I0 stack, puts the pointer on a pixel with move_position and
// saves the plotted spectrum. The saved energies and absorptions are checked
// against box sums worked out here from the generated pixels.
class TestSpectrumRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void spectrum_data();
    void spectrum();
};

namespace {
const int W = 12, H = 10;
// Energies in the file names. The I0 frames bracket the middle I1 frames and
// leave the first and last to extrapolation.
const double I1E[] = {8960.0, 8975.0, 8990.0, 9005.0, 9030.0};
const double I0E[] = {8965.0, 8990.0, 9020.0};

double i1Pixel(int x, int y, int k)
{
    return 1000 + 37 * x + 11 * y + 60 * k + ((x * 7 + y * 3 + k) % 5) * 17;
}

double i0Pixel(int x, int y, int j)
{
    return 5000 + 13 * x + 29 * y + 400 * j;
}

template <typename F>
double boxSum(F px, int cx, int cy, int hw, int vw)
{
    double s = 0;
    for (int y = cy - vw; y <= cy + vw; ++y)
        for (int x = cx - hw; x <= cx + hw; ++x)
            if (x >= 0 && y >= 0 && x < W && y < H)
                s += px(x, y);
    return s;
}

QString name(const char *stack, double e)
{
    return QStringLiteral("%1_%2.tif").arg(stack).arg(e, 8, 'f', 2, QLatin1Char('0'));
}
} // namespace

void TestSpectrumRun::initTestCase()
{
    const QString exe = E2eRun::executable();
    if (exe.isEmpty() || !QFileInfo(exe).isExecutable())
        QSKIP("TESSARELLE_EXE does not name the built program");
}

void TestSpectrumRun::spectrum_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("hw");
    QTest::addColumn<int>("vw");
    QTest::addColumn<int>("mode"); // 0 ln(I0 / I1), 1 without I0, 2 fluorescence

    QTest::newRow("transmission") << QStringList() << 5 << 4 << 2 << 1 << 0;
    // Half the box lies off the image: those pixels count 0 in both sums.
    QTest::newRow("box over the corner") << QStringList() << 0 << 9 << 2 << 3 << 0;
    QTest::newRow("without I0") << QStringList{"Use_I0 0"} << 7 << 2 << 1 << 2 << 1;
    QTest::newRow("fluorescence") << QStringList{"set_fluo_type 1"} << 3 << 6 << 3 << 0 << 2;
}

void TestSpectrumRun::spectrum()
{
    QFETCH(QStringList, settings);
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, hw);
    QFETCH(int, vw);
    QFETCH(int, mode);

    E2eRun run;
    QVERIFY(run.isValid());
    const QString dir = run.dir();
    std::vector<quint16> px(W * H);
    QStringList i1Files, i0Files;
    for (int k = 0; k < 5; ++k) {
        for (int p = 0; p < W * H; ++p)
            px[p] = quint16(i1Pixel(p % W, p / W, k));
        i1Files << dir + "/" + name("i1", I1E[k]);
        QVERIFY(writeTiff16(i1Files.last(), W, H, px.data()));
    }
    for (int j = 0; j < 3; ++j) {
        for (int p = 0; p < W * H; ++p)
            px[p] = quint16(i0Pixel(p % W, p / W, j));
        i0Files << dir + "/" + name("i0", I0E[j]);
        QVERIFY(writeTiff16(i0Files.last(), W, H, px.data()));
    }

    QStringList batch{"set_i1_energy_pattern \\d\\d\\d\\d\\.\\d\\d", "set_i0_energy_pattern \\d\\d\\d\\d\\.\\d\\d",
                      "load_I1_files new " + i1Files.join(' '), "load_I0_files new " + i0Files.join(' '),
                      QStringLiteral("set_view_w %1").arg(hw), QStringLiteral("set_view_h %1").arg(vw)};
    batch << settings << QStringLiteral("move_position %1 %2").arg(x).arg(y) << "save_spectra " + dir + "/sp.dat"
          << "quit";
    const E2eResult r = run.runBatch({":end"}, batch, 30000);
    QVERIFY(r.started);
    QVERIFY2(!r.crashed, qPrintable(r.debug));
    QVERIFY2(r.finished, qPrintable(r.debug));

    QFile f(QStringLiteral("%1/sp%2-%3-%4x%5T.dat").arg(dir).arg(x).arg(y).arg(hw).arg(vw));
    QVERIFY2(f.open(QIODevice::ReadOnly | QIODevice::Text), qPrintable(f.fileName() + "\n" + r.debug));
    QList<QStringList> rows;
    for (const QByteArray &line : f.readAll().split('\n')) {
        if (!line.isEmpty() && !line.startsWith('#'))
            rows << QString::fromLatin1(line).split('\t');
    }
    QCOMPARE(rows.size(), 5);

    const double n = (2 * hw + 1) * (2 * vw + 1);
    for (int k = 0; k < 5; ++k) {
        const double e = I1E[k];
        const double b = boxSum([k](int px, int py) { return i1Pixel(px, py, k); }, x, y, hw, vw);
        // The I0 box sum at e on the line through the bracketing I0 frames,
        // or through the two end frames outside them.
        const int j = e < I0E[1] ? 0 : 1;
        const double s0 = boxSum([j](int px, int py) { return i0Pixel(px, py, j); }, x, y, hw, vw);
        const double s1 = boxSum([j](int px, int py) { return i0Pixel(px, py, j + 1); }, x, y, hw, vw);
        const double a0 = s0 + (s1 - s0) * (e - I0E[j]) / (I0E[j + 1] - I0E[j]);
        const double mu = mode == 0 ? std::log(a0 / b) : mode == 1 ? std::log(n / b) : b / a0;

        QCOMPARE(rows.at(k).size(), 5);
        QCOMPARE(rows.at(k).at(0).toDouble(), e);
        const double got = rows.at(k).at(2).toDouble();
        QVERIFY2(std::fabs(got - mu) <= 1e-5 * std::fabs(mu),
                 qPrintable(QStringLiteral("row %1: %2, expected %3").arg(k).arg(got, 0, 'g', 10).arg(mu, 0, 'g', 10)));
    }
}

QTEST_GUILESS_MAIN(TestSpectrumRun)
#include "tst_spectrumrun.moc"
