#include "support/E2eRun.h"
#include "support/SynthStack.h"

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
// The I0 frames bracket the middle I1 frames and leave the first and last
// to extrapolation.
SynthStack stack()
{
    SynthStack s;
    s.w = 12, s.h = 10, s.i1E = {8960.0, 8975.0, 8990.0, 9005.0, 9030.0}, s.i0E = {8965.0, 8990.0, 9020.0};
    s.i1 = [](int x, int y, int k) { return 1000 + 37 * x + 11 * y + 60 * k + ((x * 7 + y * 3 + k) % 5) * 17; };
    s.i0 = [](int x, int y, int j) { return 5000 + 13 * x + 29 * y + 400 * j; };
    return s;
}
} // namespace

void TestSpectrumRun::initTestCase()
{
    E2E_REQUIRE_EXECUTABLE();
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
    // The plot's own switches change what it shows, not what it saves.
    QTest::newRow("plot normalised, energies corrected")
        << QStringList{"xafs_view_normalize 1", "xafs_view_enerugy_correction 1"} << 5 << 4 << 1 << 1 << 0;
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
    const SynthStack st = stack();
    QStringList batch = st.write(dir);
    batch << QStringLiteral("set_view_w %1").arg(hw) << QStringLiteral("set_view_h %1").arg(vw);
    batch << settings << QStringLiteral("move_position %1 %2").arg(x).arg(y) << "save_spectra " + dir + "/sp.dat"
          << "quit";
    const E2eResult r = run.runBatch({":end"}, batch, 30000);
    E2E_VERIFY_RUN(r, true);
    QFile f(QStringLiteral("%1/sp%2-%3-%4x%5T.dat").arg(dir).arg(x).arg(y).arg(hw).arg(vw));
    // Every word has its action: none is reported as a word without one.
    const QStringList saved{"xafs view : save data " + dir + "/sp.dat " + f.fileName()};
    E2E_VERIFY_LINES(r.debug, saved, QStringList{"cmd "});
    QVERIFY2(f.open(QIODevice::ReadOnly | QIODevice::Text), qPrintable(f.fileName() + "\n" + r.debug));
    QList<QStringList> rows;
    for (const QByteArray &line : f.readAll().split('\n')) {
        if (!line.isEmpty() && !line.startsWith('#'))
            rows << QString::fromLatin1(line).split('\t');
    }
    QCOMPARE(rows.size(), 5);

    const double n = (2 * hw + 1) * (2 * vw + 1);
    for (int k = 0; k < 5; ++k) {
        const double e = st.i1E[size_t(k)];
        const double b = st.box(st.i1, k, x, y, hw, vw), a0 = st.i0At(e, x, y, hw, vw);
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
