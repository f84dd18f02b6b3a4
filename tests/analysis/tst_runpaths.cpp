#include "analysis/AnalyzeProc.h"
#include "analysis/Analyzer.h"
#include "analysis/ElemCtrl.h"
#include "analysis/LCFReference.h"
#include "calibration/CalibCtrl.h"
#include "app/Body.h"
#include "app/Globals.h"
#include "spectrum/ElmEdges.h"
#include "images/TiffData.h"
#include "images/TiffWriter.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <cstring>
#include <vector>

// The threaded run against the one-at-a-time run on the same walks: every
// map, its extremes and the feature lists must come out the same to the bit,
// with an I0 stack and an energy-shift map in play.
class TestRunPaths : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        InitGlobals();
        loadElmEdges();
        // The feature-value view leaves its pictures in the working folder.
        QVERIFY(m_cwd.isValid() && QDir::setCurrent(m_cwd.path()));
    }
    void samePaths_data();
    void samePaths();

private:
    void calibrateBothWays(Body &b, const QString &standard, bool innerP);
    QTemporaryDir m_cwd;
};

namespace {
const int W = 23, H = 17, NF = 48;

// I0 frames at their I1 frames' energies (0), every other one off it (1),
// or all off (2): each reads the I0 stack another way. With 1 the first two
// I0 frames share an energy, so the first I1 frame takes their mean.
int i0Off = 1;

double energy(int k, bool i0)
{
    if (i0 && i0Off == 1 && k == 1)
        k = 0;
    return 8940 + 1.5 * k + (i0 && (i0Off == 2 || (i0Off == 1 && k % 2)) ? 0.4 : 0.0);
}

// An edge that moves across the image, a white line, noise, and nine dead
// columns in the I1 frames (a box inside them sums nothing).
double i1Value(int x, int y, int k)
{
    const double e0 = 8975 + 0.4 * x - 0.3 * y;
    const double e = energy(k, false);
    const double mu = 0.3 + 0.8 * (0.5 + std::atan((e - e0) / 2) / M_PI) + 0.1 * std::exp(-std::pow((e - e0 - 6) / 3, 2));
    return x >= 4 && x <= 12 ? 0 : 30000 * std::exp(-mu) + (x * 7 + y * 3 + k * 5) % 13;
}

TiffData *frame(int k, int kind) // 0 I1, 1 I0
{
    auto *f = new TiffData;
    f->allocate(W, H, PixelU16);
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x)
            f->setPixel(x, y, kind == 0 ? i1Value(x, y, k) : 31000 + (x * 7 + y * 13 + k * k * 5) % 97);
    return f;
}

void set(QObject *o, const char *name, const QString &text)
{
    auto *e = o->findChild<QLineEdit *>(name);
    QVERIFY(e);
    e->setText(text);
}

QList<Analyzed2DRes *> allMaps(Analyzer *a)
{
    QList<Analyzed2DRes *> m{&a->zansaMap,  &a->dEdgeMap,    &a->raDMutMap,     &a->raRestMap,
                             &a->raRatioMap, &a->elemsCorMap, &a->elemsCorThMap};
    for (LCFReference *r : std::as_const(a->lcfrs))
        m << r->maps;
    for (ElemCtrl *e : std::as_const(a->elems))
        m << e->maps;
    return m;
}

// Everything a run leaves in one map, as bytes.
QByteArray state(const Analyzed2DRes *m)
{
    QByteArray b(reinterpret_cast<const char *>(m->data.data()), qsizetype(m->data.size() * sizeof(double)));
    for (double v : {m->dataMin, m->dataMax, double(m->minPosX), double(m->minPosY), double(m->maxPosX),
                     double(m->maxPosY)})
        b.append(reinterpret_cast<const char *>(&v), sizeof v);
    return b;
}

QString refFile(const QString &dir, const QString &name, double e0)
{
    QFile f(dir + "/" + name);
    f.open(QIODevice::WriteOnly | QIODevice::Text);
    for (double e = 8900; e <= 9050; e += 0.9)
        f.write(QByteArray::number(e, 'g', 17) + ' '
                + QByteArray::number(0.2 + 0.5 + std::atan((e - e0) / 2) / M_PI, 'g', 17) + '\n');
    return f.fileName();
}
} // namespace

void TestRunPaths::samePaths_data()
{
    QTest::addColumn<int>("half");  // the analysis box: 0 walks every pixel
    QTest::addColumn<int>("view");  // the half width of the summed box
    QTest::addColumn<QString>("what");
    QTest::addColumn<int>("off"); // i0Off
    QTest::newRow("edge, every pixel") << 0 << 3 << "edge" << 1;
    QTest::newRow("edge comparison, tiles") << 1 << 2 << "compare" << 0;
    QTest::newRow("LCF, elements, residual, feature") << 1 << 1 << "lcf" << 2;
    QTest::newRow("MLCF and edge, wide box past the frame") << 2 << 9 << "mlcf" << 1;
    QTest::newRow("calibration by edges, every pixel") << 0 << 2 << "calib0" << 0;
    QTest::newRow("calibration by inner products, tiles") << 1 << 3 << "calib1" << 2;
}

void TestRunPaths::samePaths()
{
    QFETCH(int, half);
    QFETCH(int, view);
    QFETCH(QString, what);
    QFETCH(int, off);
    i0Off = off;
    QTemporaryDir dir;
    Body b;
    QList<TiffData *> frames;
    for (int k = 0; k < NF; ++k) {
        frames << frame(k, 0) << frame(k, 1);
        b.loadedI1(frames[2 * k], k, NF);
        b.loadedI0(frames[2 * k + 1], k, NF);
    }
    b.finishedLoadI1Files();
    b.finishedLoadI0Files();
    // Loading numbers the frames; the stacks' own energies come back here.
    for (int i = 0; i < frames.size(); ++i)
        frames[i]->energy = energy(i / 2, i % 2);
    auto *a = b.findChild<Analyzer *>();
    set(&b, "aHWidth_", QString::number(half));
    set(&b, "aVWidth_", QString::number(half));
    set(&b, "vHWidth_", QString::number(view));
    set(&b, "vVWidth_", QString::number(view + 1));

    // An energy-shift map that differs from pixel to pixel.
    Analyzed2DRes shifts;
    AnalyzeCond c;
    c.setUp(W, H, 0, 0, QRectF(0, 0, W, H), -1, -1);
    shifts.setUp(c);
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x)
            shifts.setData(x, y, 0, 0, 0.1 * ((x * 3 + y) % 7) - 0.3);
    b.saveEMap(dir.filePath("s.emp"), shifts);
    b.loadEMap(dir.filePath("s.emp"));

    if (what.startsWith("calib")) {
        calibrateBothWays(b, refFile(dir.path(), "std.dat", 8976), what.endsWith('1'));
        return;
    }

    a->setSelDEdge(what != "lcf");
    if (what == "compare") {
        // A dark frame, subtracted at its exposure from both stacks.
        std::vector<quint16> dark(size_t(W) * H);
        for (int i = 0; i < W * H; ++i)
            dark[size_t(i)] = quint16(300 + i % 7);
        QVERIFY(writeTiff16(dir.filePath("dark.tif"), W, H, dark.data()));
        b.selectedDark(dir.filePath("dark.tif"));
        a->setDEdgeMidPoint(false);
        a->setDEdgeCompWithStep(true);
        a->setDEdgeStepParams(8977, 80, 0.5);
    }
    if (what == "lcf" || what == "mlcf") {
        a->setSelLCF(true);
        a->setLCFRange(8945, 9005);
        a->setLCFStd(0, true, 0, refFile(dir.path(), "a.dat", 8974), "0");
        a->setLCFStd(1, true, 1.5, refFile(dir.path(), "b.dat", 8981), "0");
        a->setLCFMode(what == "mlcf" ? 1 : 0);
    }
    if (what == "lcf") {
        a->setSelElems(true);
        a->setTargetElements("Cu, Ni");
        a->setElemROI("Cu-K", 8985, 9000);
        a->setSelRA(true);
        a->setRaEnergy(8982);
        a->setSelFV(true);
    }

    QSignalSpy finished(&b, &Body::finishBatchExec);
    QList<QByteArray> serial;
    QVector<double> dM;
    for (const char *path : {"1", "0"}) {
        qputenv("TESSARELLE_SERIAL_RUN", path);
        b.start2DAnalysis();
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 60000);
        QCOMPARE(finished.takeFirst().first().toInt(), 116);
        const QList<Analyzed2DRes *> maps = allMaps(a);
        if (serial.isEmpty()) {
            for (const Analyzed2DRes *m : maps)
                serial << state(m);
            dM = a->fvLists.dM.values + a->fvLists.dE12.values;
            continue;
        }
        QCOMPARE(maps.size(), serial.size());
        for (int i = 0; i < maps.size(); ++i)
            QVERIFY2(state(maps[i]) == serial[i], qPrintable(maps[i]->name));
        const QVector<double> now = a->fvLists.dM.values + a->fvLists.dE12.values;
        // Bytes, not values, so that NaN matches NaN; empty lists have no bytes.
        QVERIFY(now.size() == dM.size()
                && (dM.isEmpty() || std::memcmp(now.data(), dM.data(), size_t(dM.size()) * sizeof(double)) == 0));
    }
    qunsetenv("TESSARELLE_SERIAL_RUN");
    // The runs had something to agree on.
    const Analyzed2DRes &m = what == "lcf" ? a->raRestMap : a->dEdgeMap;
    QVERIFY(m.dataMax > m.dataMin);
    QVERIFY(what != "lcf" || a->elems.at(0)->maps.at(0)->dataMax > 0);
}

// The calibration's shift map and statistics, both ways.
void TestRunPaths::calibrateBothWays(Body &b, const QString &standard, bool innerP)
{
    auto *ctrl = b.findChild<CalibCtrl *>();
    QVERIFY(ctrl);
    ctrl->loadStd(standard);
    ctrl->setCalibType(innerP);
    Analyzed2DRes *map = nullptr;
    for (Analyzed2DRes *m : b.findChildren<Analyzed2DRes *>())
        map = m->name == QLatin1String("E-Shift Map") ? m : map;
    QVERIFY(map);
    QSignalSpy progress(&b, &Body::calibProgress);
    QByteArray serial;
    QStringList serialStats;
    for (const char *path : {"1", "0"}) {
        qputenv("TESSARELLE_SERIAL_RUN", path);
        progress.clear();
        b.execCalibration();
        QTRY_VERIFY_WITH_TIMEOUT(!progress.isEmpty() && progress.last().first().toDouble() == 100.0, 60000);
        QStringList stats;
        for (const char *field : {"DEMin", "DEMax", "DEAvr", "DESigma"})
            stats << ctrl->findChild<QLineEdit *>(field)->text();
        if (serial.isEmpty()) {
            serial = state(map);
            serialStats = stats;
            continue;
        }
        QVERIFY(state(map) == serial);
        QCOMPARE(stats, serialStats);
    }
    qunsetenv("TESSARELLE_SERIAL_RUN");
    QVERIFY(map->dataMax > map->dataMin);
}

QTEST_MAIN(TestRunPaths)
#include "tst_runpaths.moc"
