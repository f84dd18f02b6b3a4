#include "support/E2eRun.h"
#include "support/SynthStack.h"

#include <QtTest>

#include <tiffio.h>

#include <cmath>
#include <vector>

// The edge-position map through the whole program: a batch loads generated
// I1 and I0 stacks whose edge moves across the image, runs the analysis and
// saves the map as text and as TIFF. Every value is checked against the
// absorption and edge worked out here from the generated pixels.
class TestEdgeMapRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void edgeMap_data();
    void edgeMap();
    void badInput_data();
    void badInput();
};

namespace {
const int W = 14, H = 10, NE = 72;

// The edge lies between 8971 and 8983 eV depending on the pixel.
SynthStack stack()
{
    SynthStack s;
    s.w = W, s.h = H, s.i0E = {8935.0, 8965.0, 8995.0, 9025.0};
    for (int k = 0; k < NE; ++k)
        s.i1E.push_back(8940.0 + k);
    s.i1 = [](int x, int y, int k) {
        const double e = 8940.0 + k, e0 = 8975 + 0.6 * x - 0.4 * y;
        const double mu = 0.3 + 0.0004 * (9000 - e) + (0.8 + 0.03 * y) * (0.5 + std::atan((e - e0) / 1.5) / M_PI);
        return std::round(30000 * std::exp(-mu)) + ((x * 7 + y * 13 + k * 5) % 7) - 3;
    };
    s.i0 = [](int x, int y, int j) { return 20000 + 50 * x + 30 * y + 700 * j; };
    return s;
}
} // namespace

void TestEdgeMapRun::initTestCase()
{
    E2E_REQUIRE_EXECUTABLE();
}

void TestEdgeMapRun::edgeMap_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QList<int>>("box");  // view half width, height; analysis half width, height
    QTest::addColumn<QList<int>>("walk"); // x0, x1, y0, y1 of the area
    QTest::addColumn<double>("ratio");    // 0: comparison with the step below
    QTest::addColumn<bool>("suggest");    // element window 8973 .. 8981 eV

    const QList<int> whole{0, W, 0, H};
    QTest::newRow("mid point") << QStringList() << QList<int>{1, 1, 2, 1} << whole << 0.5 << false;
    QTest::newRow("ratio 0.6") << QStringList{"analyzer_dEdge_mid_point_ratio 0.6"} << QList<int>{1, 1, 2, 1}
                               << whole << 0.6 << false;
    // Edges outside the window fall back to the suggested edge: dEdge 0.
    QTest::newRow("suggested element, some fall back")
        << QStringList{"Suggest_Elm 1", "Suggesting_Edge_eV 8977", "Suggesting_Pre_End_eV -4",
                       "Suggesting_Post_Start_eV 4"}
        << QList<int>{1, 2, 1, 1} << whole << 0.5 << true;
    // A region dragged backwards; boxes of 7 x 5 reach past the image edges,
    // while the points stand every 3 x 1 pixels.
    QTest::newRow("boxes past the edge, region backwards")
        << QStringList{"select_region 8 5 0 0"} << QList<int>{3, 2, 1, 0} << QList<int>{0, 8, 0, 5} << 0.5 << false;
    QTest::newRow("comparison with a step")
        << QStringList{"analyzer_dEdge_select_mode 1", "analyzer_dEdge_comp_target 1",
                       "analyzer_dEdge_comp_step_params 8978 100 0.5", "analyzer_dEdge_comp_params 8 1 0.1"}
        << QList<int>{2, 1, 2, 2} << whole << 0.0 << false;
}

void TestEdgeMapRun::edgeMap()
{
    QFETCH(QStringList, settings);
    QFETCH(QList<int>, box);
    QFETCH(QList<int>, walk);
    QFETCH(double, ratio);
    QFETCH(bool, suggest);

    E2eRun run;
    QVERIFY(run.isValid());
    const QString dir = run.dir();
    QStringList batch = stack().write(dir);
    batch << QStringLiteral("set_view_w %1").arg(box[0]) << QStringLiteral("set_view_h %1").arg(box[1])
          << QStringLiteral("set_analyze_w %1").arg(box[2]) << QStringLiteral("set_analyze_h %1").arg(box[3])
          << "Suggesting_Edge_eV 8977" << settings << "analyzer_exec_2da"
          << "saveDataCfg_save_as_text" << "saveDataCfg_text_as_xyz" << "saveDataCfg_text_as_csv"
          << "save_data " + dir + "/map.dat" << "saveDataCfg_save_as_tiff" << "saveDataCfg_tiff_scale_min -3"
          << "saveDataCfg_tiff_scale_max 3" << "save_data " + dir + "/map.tif" << "quit";
    const E2eResult r = run.runBatch({":end"}, batch, 60000);
    E2E_VERIFY_RUN(r, true);

    RefElm elm;
    elm.use = suggest;
    elm.edgeEV = 8977;
    elm.preEnd = suggest ? -4 : -20;
    elm.postStart = suggest ? 4 : 20;
    // The step compared with: 0 below 8978, 1 from there, every 0.5 eV over 100 eV.
    std::vector<double> se, sy;
    for (double e = 8978 - 50.0; e < 8978 + 50.0; e += 0.5)
        se.push_back(e), sy.push_back(e >= 8978 ? 1.0 : 0.0);
    const RefXafs step(se, sy);

    QFile f(dir + "/map-0.dat");
    QVERIFY2(f.open(QIODevice::ReadOnly | QIODevice::Text), qPrintable(r.debug));
    const QStringList lines = QString::fromLatin1(f.readAll()).split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.mid(0, 2), (QStringList{"## 240301", "## Tessarelle Analyzed 2D Result"}));
    const int bx = box[2], by = box[3];
    QCOMPARE(lines.at(6), QStringLiteral("# X-NUM %1").arg((walk[1] - walk[0]) / (2 * bx + 1) + 1));
    QCOMPARE(lines.at(8), QStringLiteral("## End of Header ##"));

    std::vector<double> expected;
    int nx = 0, fellBack = 0, line = 9;
    for (int y = walk[2] + by; y < walk[3]; y += 2 * by + 1) {
        nx = 0;
        for (int x = walk[0] + bx; x < walk[1] || x == walk[0] + bx; x += 2 * bx + 1, ++nx) {
            const RefXafs s = stack().spectrum(x, y, box[0], box[1], elm);
            double want;
            if (ratio == 0)
                want = s.searchDE(step, 4, 1, 0.1);
            else
                want = (ratio == 0.5 ? s.midx : s.midxAt(ratio)) - elm.edgeEV;
            fellBack += suggest && (s.outOfRange || s.noisy);
            expected.push_back(want);
            QVERIFY(line < lines.size());
            const QStringList v = lines.at(line++).split(',');
            QCOMPARE(v.size(), 3);
            QCOMPARE(v[0].toInt(), x);
            QCOMPARE(v[1].toInt(), y);
            // The file holds six significant digits: the written text must be
            // the reference rounded so (to the last digit).
            QVERIFY2(std::fabs(v[2].toDouble() - want) <= 5.01e-6 * std::pow(10.0, std::floor(std::log10(std::fabs(want)))),
                     qPrintable(QStringLiteral("(%1, %2): %3, expected %4").arg(x).arg(y).arg(v[2]).arg(want, 0, 'g', 17)));
        }
    }
    QCOMPARE(line, lines.size());
    if (suggest) // the row means what it says: some points fall back, not all
        QVERIFY(fellBack > 0 && fellBack < int(expected.size()));

    // The TIFF: one pixel per point, the values scaled from -3..3 to 0..65535.
    TIFF *t = TIFFOpen(QFile::encodeName(dir + "/map-0.tif").constData(), "r");
    QVERIFY2(t, qPrintable(r.debug));
    quint32 tw = 0, th = 0;
    TIFFGetField(t, TIFFTAG_IMAGEWIDTH, &tw);
    TIFFGetField(t, TIFFTAG_IMAGELENGTH, &th);
    QCOMPARE(int(tw), nx);
    QCOMPARE(int(tw * th), int(expected.size()));
    std::vector<quint16> row(tw);
    for (quint32 y = 0; y < th; ++y) {
        QCOMPARE(TIFFReadScanline(t, row.data(), y), 1);
        for (quint32 x = 0; x < tw; ++x) {
            const double v = std::clamp(expected[y * tw + x], -3.0, 3.0);
            QVERIFY(std::abs(row[x] - (v + 3) / 6 * 65535.0) <= 1.0);
        }
    }
    TIFFClose(t);
}

void TestEdgeMapRun::badInput_data()
{
    QTest::addColumn<bool>("frames");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<bool>("finishes");
    QTest::addColumn<QString>("logged");
    // Without frames the run cannot begin and the batch waits for Stop.
    QTest::newRow("no frames") << false << QStringList() << false << QString();
    // Nothing checked: the first point is never answered; the run stalls.
    QTest::newRow("no analysis checked") << true << QStringList{"analyzer_select_sub_mode_dEdge 0"} << false
                                         << QString();
    // A spacing of 0 would sample the step for ever: it stops at once.
    QTest::newRow("step spacing 0")
        << true << QStringList{"analyzer_dEdge_comp_target 1", "analyzer_dEdge_select_mode 1",
                               "analyzer_dEdge_comp_step_params 8978 100 0"}
        << true << QStringLiteral("DEdge Step: spacing 0 stops the step at 1 points");
    QTest::newRow("one-pixel area") << true << QStringList{"select_region 3 3 4 4", "set_analyze_w 0",
                                                           "set_analyze_h 0"}
                                    << true << QString();
}

void TestEdgeMapRun::badInput()
{
    QFETCH(bool, frames);
    QFETCH(QStringList, settings);
    QFETCH(bool, finishes);
    QFETCH(QString, logged);
    E2eRun run;
    const QString dir = run.dir();
    QStringList batch = frames ? stack().write(dir) : QStringList();
    batch << settings << "analyzer_exec_2da" << "save_data " + dir + "/no/such/folder/m.tif"
          << "save_data " + dir + "/m.tif" << "quit";
    const E2eResult r = run.runBatch({":end"}, batch, finishes ? 60000 : 4000);
    E2E_VERIFY_RUN(r, finishes);
    if (!logged.isEmpty())
        QVERIFY2(r.debug.contains(logged), qPrintable(r.debug));
    if (finishes)
        QVERIFY(QFileInfo::exists(dir + "/m-0.tif") || QFileInfo::exists(dir + "/m-0.dat"));
}

QTEST_GUILESS_MAIN(TestEdgeMapRun)
#include "tst_edgemaprun.moc"
