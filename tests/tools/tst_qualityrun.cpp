#include "analysis/Analyzed2DRes.h"
#include "analysis/Analyzer.h"
#include "app/Body.h"
#include "app/Globals.h"
#include "batch/CmdLine.h"
#include "images/LogCapture.h"
#include "images/TiffData.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <complex>

// The quality tools through the main window: a stack made in code goes in
// as the loader hands frames over, the tools run from their buttons, and
// the files they leave in the working folder and the Fourier log are
// compared with sums worked out here from the pixel formula.
class TestQualityRun : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void darkCheck_data();
    void darkCheck();
    void sumUpAndFourier();
    void noFrames();

private:
    QTemporaryDir tmp;
};

namespace {

constexpr int W = 5, H = 4, N = 4;
constexpr double T = 20000;

// Hot: (1, 1) always; (3, 2) but not in the last frame; (0, 3) always and
// above the histogram; (4, 3) always, but the last frame is one column
// narrower, so it drops out there. (4, 0) stands exactly at T: not hot.
// (2, 3) is negative in frame 0: left out of the histogram when its bin
// comes to -1 or less, in bin 0 when it truncates to 0.
double px(int x, int y, int k)
{
    if (x >= W - (k == N - 1 ? 1 : 0))
        return 0; // outside the narrow last frame
    if (x == 1 && y == 1)
        return 25000 + k;
    if (x == 3 && y == 2)
        return k == N - 1 ? 100 : 30000;
    if (x == 0 && y == 3)
        return 70000;
    if (x == 4 && y == 3)
        return 21000;
    if (x == 4 && y == 0)
        return T;
    if (x == 2 && y == 3 && k == 0)
        return -2000;
    return 1000 + 37 * x - 23 * y + 11 * k * (x + 1) + ((x * 7 + y * 3 + k) % 5) * 13;
}

double box(int k, int cx, int cy, int hw, int vw)
{
    double s = 0;
    for (int y = cy - vw; y <= cy + vw; ++y)
        for (int x = cx - hw; x <= cx + hw; ++x)
            if (x >= 0 && y >= 0 && x < W && y < H)
                s += px(x, y, k);
    return s;
}

void load(Body &b)
{
    for (int k = 0; k < N; ++k) {
        auto *f = new TiffData;
        QVERIFY(f->allocate(k == N - 1 ? W - 1 : W, H, PixelF64));
        for (int y = 0; y < H; ++y)
            for (int x = 0; x < int(f->width); ++x)
                f->setPixel(x, y, px(x, y, k));
        f->fileName = QStringLiteral("f%1").arg(k);
        f->energy = 8000 + 10 * k;
        f->energyFromFile = true;
        b.loadedI1(f, k, N);
    }
    b.finishedLoadI1Files();
}

void set(Body &b, const char *field, const QString &text)
{
    auto *e = b.findChild<QLineEdit *>(field);
    QVERIFY2(e, field);
    e->setText(text);
}

void click(Body &b, const char *button)
{
    auto *p = b.findChild<QPushButton *>(button);
    QVERIFY2(p, button);
    p->click();
}

QStringList linesOf(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        return {QStringLiteral("missing ") + path};
    return QString::fromLatin1(f.readAll()).split('\n', Qt::SkipEmptyParts);
}

} // namespace

void TestQualityRun::init()
{
    InitGlobals();
    gConfig = ConfigTable();
    // The mask holds one hot pixel and one that is not.
    gErrPoints = ErrPoints();
    gErrPoints.points = {QPoint(1, 1), QPoint(2, 2)};
    QVERIFY(tmp.isValid());
    QVERIFY(QDir::setCurrent(tmp.path()));
    for (const QString &f : QDir().entryList(QDir::Files))
        QFile::remove(f);
}

void TestQualityRun::darkCheck_data()
{
    QTest::addColumn<QString>("histMax");
    QTest::addColumn<QString>("bins");
    QTest::newRow("defaults") << "60000" << "100";
    QTest::newRow("coarse") << "40000" << "7";
    QTest::newRow("bins 0: one bin") << "60000" << "0";
    QTest::newRow("bins negative: no bin") << "60000" << "-3";
    QTest::newRow("top 0: positives in the last bin") << "0" << "10";
    QTest::newRow("not numbers read 0") << "x" << "y";
}

void TestQualityRun::darkCheck()
{
    QFETCH(QString, histMax);
    QFETCH(QString, bins);
    Body b;
    load(b);
    set(b, "HistgMax", histMax);
    set(b, "HistgBins", bins);
    click(b, "DarkCheck");

    const double m = histMax.toDouble();
    const int nb = bins.toInt();
    QVector<qint64> counts(std::max(nb + 1, 0), 0);
    for (int k = 0; k < N; ++k)
        for (int y = 0; y < H; ++y)
            for (int x = 0; x < W - (k == N - 1); ++x) {
                const double v = px(x, y, k);
                // Truncated toward zero, so a bin of -0.3 is bin 0; NaN fails.
                const double bin = std::trunc(nb * v / m);
                if (bin >= 0 && nb >= 0)
                    ++counts[int(std::min<double>(bin, nb))];
            }
    QStringList hg{QStringLiteral("# min, max = (0, %1)  bins = %2").arg(m).arg(nb + 1)};
    for (int i = 0; i < counts.size(); ++i)
        hg << QStringLiteral("%1\t%2\t%3").arg(i).arg(QString::number(i * m / nb, 'g', 6)).arg(counts[i]);
    QCOMPARE(linesOf("dark-hg-all.dat"), hg);

    // The hot pixels are the same whatever the histogram: worked out above.
    QCOMPARE(linesOf("dark-allDarkPoints.dat"),
             (QStringList{"# Size 5\t4", "1\t1\t100006", "0\t3\t280000"}));
    QCOMPARE(linesOf("dark-allDarkPointNums.dat"), (QStringList{"0\t4", "1\t4", "2\t4", "3\t2"}));
    QCOMPARE(linesOf("dark-allDarkPoints-onlyInPs1.dat"), QStringList{"0\t3"});
    QCOMPARE(linesOf("dark-allDarkPoints-onlyInErrPs.dat"), QStringList{"2\t2"});
}

void TestQualityRun::sumUpAndFourier()
{
    Body b;
    load(b);
    b.execCmdSlot(CmdLine::parse("set_analyze_w 1"), false);
    b.execCmdSlot(CmdLine::parse("set_analyze_h 0"), false);
    // 0..2, 1..end (past the stack), 3..1 (nothing), then 2..3, deleted from
    // the list but still counted.
    const int ranges[][2] = {{0, 2}, {1, 1000}, {3, 1}, {2, 3}};
    for (const auto &r : ranges) {
        set(b, "SumUpFrom", QString::number(r[0]));
        set(b, "SumUpTo", QString::number(r[1]));
        click(b, "AddSumUp");
    }
    click(b, "DelSumUp");
    QCOMPARE(b.findChild<QComboBox *>("SumUps")->count(), 3);
    const int counted[N] = {1, 2, 2, 1}; // how often each frame is summed
    LogCapture log;
    click(b, "AskSumUp");

    auto *a = b.findChild<Analyzer *>();
    QVERIFY(a);
    const Analyzed2DRes &map = a->sumUpMap;
    QCOMPARE(map.width(), W);
    // Points stand at x = 1, 4 of every row; each fills its block of 3 x 1.
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) {
            const int cx = x < 3 ? 1 : 4;
            double want = 0;
            for (int k = 0; k < N; ++k)
                want += counted[k] * box(k, cx, y, 1, 0);
            QCOMPARE(map.valueAt(x, y), want);
        }
    QCOMPARE(QImage("sumUpImg.png").size(), QSize(W, H));
    QCOMPARE(log.lines().filter("Sum Up: row").size(), H);

    // Fourier: a = the first frame's box sum, b_k = |DFT_k| of the box sums
    // over the stack, summed over the same eight points.
    log.lines().clear();
    click(b, "ExecFourierA");
    const QStringList res = log.lines().filter(QRegularExpression("^Res "));
    QCOMPARE(res.size(), N);
    for (int k = 0; k < N; ++k) {
        double aa = 0, bb = 0, ab = 0;
        for (int y = 0; y < H; ++y)
            for (int cx : {1, 4}) {
                std::complex<double> c;
                for (int j = 0; j < N; ++j)
                    c += box(j, cx, y, 1, 0) * std::polar(1.0, -2 * M_PI * j * k / N);
                const double av = box(0, cx, y, 1, 0), bv = std::abs(c);
                aa += av * av, bb += bv * bv, ab += av * bv;
            }
        const QStringList v = res[k].split(' ');
        QCOMPARE(v.size(), 6);
        QCOMPARE(v[1].toInt(), k);
        const double want[] = {aa, bb, ab, ab / std::sqrt(aa * bb)};
        for (int i = 0; i < 4; ++i)
            QVERIFY2(std::fabs(v[i + 2].toDouble() - want[i]) <= 1e-5 * std::fabs(want[i]) + 1e-9,
                     qPrintable(res[k] + QStringLiteral(" vs %1").arg(want[i])));
    }
}

void TestQualityRun::noFrames()
{
    Body b;
    LogCapture log;
    for (const char *button : {"DarkCheck", "AskSumUp", "ExecFourierA", "CollectQInfo"})
        click(b, button);
    QCOMPARE(QDir().entryList(QDir::Files), QStringList());
    for (const char *line : {"Dark Check: no I1 frames", "Sum Up: no I1 frames", "Fourier A.: no I1 frames"})
        QVERIFY2(log.lines().contains(line), line);
    QVERIFY(log.lines().filter("Res").isEmpty());
}

QTEST_MAIN(TestQualityRun)
#include "tst_qualityrun.moc"
