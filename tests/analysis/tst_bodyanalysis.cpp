#include "analysis/AnalyzeProc.h"
#include "analysis/Analyzer.h"
#include "analysis/EdgeAnalysis.h"
#include "app/Body.h"
#include "app/Globals.h"
#include "images/TiffData.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>

// The run inside the main window: a stop in mid-run and a new start, the
// toggle that releases a stalled run, and the processing of captured maps.
class TestBodyAnalysis : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void stopAndRestart();
    void stalledRunIsReleased();
    void processMaps_data();
    void processMaps();

private:
    void loadFrames(Body &b);
};

namespace {
const int W = 20, H = 16, NF = 40;

void set(Body &b, const char *name, const QString &text)
{
    b.findChild<QLineEdit *>(name)->setText(text);
}

void click(QObject *parent, const char *name, bool on = true)
{
    auto *button = parent->findChild<QAbstractButton *>(name);
    QVERIFY(button);
    button->setChecked(on);
}
} // namespace

void TestBodyAnalysis::initTestCase()
{
    InitGlobals();
}

void TestBodyAnalysis::loadFrames(Body &b)
{
    for (int k = 0; k < NF; ++k) {
        auto *f = new TiffData;
        f->allocate(W, H, PixelU16);
        for (int y = 0; y < H; ++y)
            for (int x = 0; x < W; ++x)
                f->setPixel(x, y, 30000 * std::exp(-(k > 18 + x / 5 ? 1.0 : 0.3)) + (x * y + k) % 9);
        b.loadedI1(f, k, NF);
    }
    b.finishedLoadI1Files();
}

void TestBodyAnalysis::stopAndRestart()
{
    Body b;
    loadFrames(b);
    auto *a = b.findChild<Analyzer *>();
    set(b, "aHWidth_", "1");
    set(b, "aVWidth_", "1");
    QSignalSpy finished(&b, &Body::finishBatchExec);
    // Point by point: the threaded run is stopped in tst_runpaths.
    qputenv("TESSARELLE_SERIAL_RUN", "1");

    // Stopped as the third point ends: the fourth is then in flight.
    int ends = 0;
    const auto stopper = connect(a, &Analyzer::finished, &b, [&] {
        if (++ends == 3)
            b.stop2DAnalysis();
    });
    b.start2DAnalysis();
    QTRY_COMPARE(ends, 4);
    disconnect(stopper);
    QVERIFY(!a->contAccess && !a->analyzeProc()->contAccess);
    QVERIFY(a->dEdgeMap.valueAt(7, 1) != 0.0 && a->dEdgeMap.valueAt(10, 1) == 0.0);
    const std::vector<double> atStop = a->dEdgeMap.data;
    QTest::qWait(100);
    QCOMPARE(a->dEdgeMap.data, atStop); // the point in flight records nothing
    QCOMPARE(finished.count(), 0);

    // A new start begins from the first point with cleared maps and runs to
    // the end; every point holds the edge of its own box.
    b.start2DAnalysis();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
    QCOMPARE(finished.first().first().toInt(), 116);
    for (int y = 1; y < H; y += 3)
        for (int x = 1; x < W; x += 3) {
            const XafsSpectrum s(b.absorptionSpectrum(x, y, 10, 10), "t", 1, 0.0, b.suggestElm());
            QCOMPARE(a->dEdgeMap.valueAt(x, y), edgePosition(s, b.suggestElm(), true, 0.5, XafsSpectrum(), 10, 1, 0.1));
            QCOMPARE(a->dEdgeMap.valueAt(x - 1, y + 1), a->dEdgeMap.valueAt(x, y)); // the block is filled
        }
    QVERIFY(a->dEdgeMap.imgValid);
    qunsetenv("TESSARELLE_SERIAL_RUN");
}

void TestBodyAnalysis::stalledRunIsReleased()
{
    Body b;
    loadFrames(b);
    auto *a = b.findChild<Analyzer *>();
    QSignalSpy finished(&b, &Body::finishBatchExec);
    // Nothing checked: the first point is never answered.
    click(a, "Sel2DADEdgeA", false);
    b.start2DAnalysis();
    QTest::qWait(200);
    QVERIFY(a->contAccess);
    QCOMPARE(finished.count(), 0);
    b.start2DAnalysis(); // pressing "Analyze" again stops it
    QVERIFY(!a->contAccess);
    click(a, "Sel2DADEdgeA", true);
    b.start2DAnalysis();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
}

void TestBodyAnalysis::processMaps_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("kind"); // 0 a - b, 1 a / b (1 where b = 0), 2 a where b > 0
    QTest::newRow("sub") << "ProcTypeSub" << 0;
    QTest::newRow("div") << "ProcTypeDiv" << 1;
    QTest::newRow("mask") << "ProcTypeMask" << 2;
}

void TestBodyAnalysis::processMaps()
{
    QFETCH(QString, mode);
    QFETCH(int, kind);
    Body b;
    loadFrames(b);
    auto *a = b.findChild<Analyzer *>();
    // Map1 and Map2: two maps of different sizes, filled by hand.
    AnalyzeCond c1, c2;
    c1.setUp(W, H, 0, 0, QRectF(0, 0, W, H), -1, -1);
    c2.setUp(W / 2, H, 0, 0, QRectF(0, 0, W / 2, H), -1, -1);
    a->map1.setUp(c1);
    a->map2.setUp(c2);
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) {
            a->map1.setData(x, y, 0, 0, 1 + x);
            a->map2.setData(x, y, 0, 0, (x + y) % 3 - 1.0);
        }
    a->map1.genImg();
    a->map2.genImg();
    click(a, mode.toLatin1());
    set(b, "aHWidth_", "1");
    set(b, "aVWidth_", "0");
    a->processMaps();
    const Analyzed2DRes &p = a->processedMap;
    for (int y = 0; y < H; ++y)
        for (int x = 1; x < W; x += 3) {
            const double s1 = a->map1.sumInBlock(x, y, 1, 0), s2 = a->map2.sumInBlock(x, y, 1, 0);
            const double want = kind == 0 ? s1 - s2 : kind == 1 ? (s2 == 0 ? 1.0 : s1 / s2) : (s2 > 0 ? s1 : 0.0);
            QCOMPARE(p.valueAt(x, y), want);
        }
    QVERIFY(p.imgValid);
}

QTEST_MAIN(TestBodyAnalysis)
#include "tst_bodyanalysis.moc"
