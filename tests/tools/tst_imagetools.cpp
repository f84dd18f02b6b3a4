#include "analysis/Analyzed2DRes.h"
#include "images/TiffData.h"
#include "tools/EdgeAlign.h"
#include "tools/FVMaps.h"
#include "tools/MapHistogram.h"

#include <QtTest>

#include <cmath>

// The numerics of the image tools, without windows: edges and the climb of
// the alignment, the histogram of the statistics window, the two pictures of
// the feature-value view. Expected values come from direct computations here
// (a 3 x 3 convolution, sums over distances) or are worked out on the row.
class TestImageTools : public QObject
{
    Q_OBJECT
private slots:
    // The feature-value view leaves its pictures in the working folder.
    void initTestCase() { QVERIFY(m_cwd.isValid() && QDir::setCurrent(m_cwd.path())); }
    void edges_data();
    void edges();
    void climb_data();
    void climb();
    void histogram_data();
    void histogram();
    void fvMaps_data();
    void fvMaps();

private:
    QTemporaryDir m_cwd;
};

namespace {
const int FW = 40, FH = 32;

// Three rectangles on a zero background, displaced by (dx, dy).
double pattern(int x, int y, int dx, int dy)
{
    x -= dx, y -= dy;
    double v = 0;
    if (x >= 5 && x < 15 && y >= 6 && y < 12)
        v += 1000;
    if (x >= 20 && x < 28 && y >= 15 && y < 26)
        v += 600;
    if (x >= 9 && x < 13 && y >= 20 && y < 24)
        v += 1500;
    return v;
}

void fill(TiffData &f, const std::function<double(int, int)> &px)
{
    QVERIFY(f.allocate(FW, FH, PixelU16));
    for (int y = 0; y < FH; ++y)
        for (int x = 0; x < FW; ++x)
            f.setPixel(x, y, px(x, y));
}
} // namespace

void TestImageTools::edges_data()
{
    QTest::addColumn<int>("shiftX");
    QTest::addColumn<int>("shiftY");
    QTest::addColumn<int>("w"); // picture size, beyond the frame as well
    QTest::addColumn<int>("h");
    QTest::newRow("plain") << 0 << 0 << FW << FH;
    QTest::newRow("shifted frame") << 3 << -2 << FW << FH;
    QTest::newRow("picture larger than the frame") << -1 << 1 << FW + 3 << FH + 2;
}

void TestImageTools::edges()
{
    QFETCH(int, shiftX);
    QFETCH(int, shiftY);
    QFETCH(int, w);
    QFETCH(int, h);
    TiffData f;
    fill(f, [](int x, int y) { return (x * 7919 + y * 104729 + x * y * 31) % 4001; });
    f.shiftX = shiftX;
    f.shiftY = shiftY;
    ProcImage e;
    QVERIFY(EdgeAlign::edgeDetect(f, w, h, e));
    QCOMPARE(e.w, w);

    // Prewitt kernels over the raw pixels, reading 0 off the frame.
    auto raw = [&](int x, int y) {
        x -= shiftX, y -= shiftY;
        return x < 0 || y < 0 || x >= FW || y >= FH ? 0.0 : double((x * 7919 + y * 104729 + x * y * 31) % 4001);
    };
    double mn = 1e300, mx = -1e300;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            double gx = 0, gy = 0;
            for (int j = -1; j <= 1; ++j)
                for (int i = -1; i <= 1; ++i)
                    gx += i * raw(x + i, y + j), gy += j * raw(x + i, y + j);
            const double want = std::max(std::fabs(gx), std::fabs(gy));
            QCOMPARE(e.at(x, y), want);
            mn = std::min(mn, want), mx = std::max(mx, want);
        }
    QCOMPARE(e.min, mn);
    QCOMPARE(e.max, mx);
    QVERIFY(!EdgeAlign::edgeDetect(f, 0, h, e));
}

void TestImageTools::climb_data()
{
    QTest::addColumn<int>("dx"); // displacement of the frame's content
    QTest::addColumn<int>("dy");
    QTest::addColumn<int>("startX");
    QTest::addColumn<int>("startY");
    QTest::addColumn<double>("th"); // threshold as a fraction of the edge maximum
    QTest::addColumn<double>("best"); // product the climb ends with
    QTest::addColumn<int>("computed"); // -1: more than one step
    QTest::addColumn<bool>("primed");  // best starts at the start's product, else at 0

    QTest::newRow("aligned, product known: no move") << 0 << 0 << 0 << 0 << 0.2 << 1.0 << 8 << true;
    // From 0 the first round moves off the answer and the climb comes back.
    QTest::newRow("aligned, product not yet computed") << 0 << 0 << 0 << 0 << 0.2 << 1.0 << 24 << false;
    QTest::newRow("right and up") << 2 << -1 << 0 << 0 << 0.2 << 1.0 << -1 << false;
    QTest::newRow("left and down") << -3 << 2 << 0 << 0 << 0.2 << 1.0 << -1 << true;
    QTest::newRow("start at the answer") << 2 << 2 << -2 << -2 << 0.2 << 1.0 << 8 << true;
    // Nothing above the threshold: all products 0, no neighbour beats 0.
    QTest::newRow("threshold at the maximum") << 2 << -1 << 0 << 0 << 1.0 << 0.0 << 8 << false;
}

void TestImageTools::climb()
{
    QFETCH(int, dx);
    QFETCH(int, dy);
    QFETCH(int, startX);
    QFETCH(int, startY);
    QFETCH(double, th);
    QFETCH(double, best);
    QFETCH(int, computed);
    QFETCH(bool, primed);

    TiffData a, b;
    fill(a, [](int x, int y) { return pattern(x, y, 0, 0); });
    fill(b, [&](int x, int y) { return pattern(x, y, dx, dy); });
    ProcImage ea, eb, ref, bin;
    QVERIFY(EdgeAlign::edgeDetect(a, FW, FH, ea) && EdgeAlign::edgeDetect(b, FW, FH, eb));
    EdgeAlign::binarize(ea, th * ea.max, ref);
    EdgeAlign::binarize(eb, th * ea.max, bin);

    int sx = startX, sy = startY;
    double got = primed ? EdgeAlign::normScalarProduct(ref, bin, sx, sy) : 0.0;
    const int n = EdgeAlign::climb(ref, bin, sx, sy, got);
    QCOMPARE(got, best);
    if (computed > 0)
        QCOMPARE(n, computed);
    if (best > 0) {
        QCOMPARE(QPoint(sx, sy), QPoint(-dx, -dy));
        // Recorded in the frame, the shift makes its edges the reference's.
        b.shiftX = sx, b.shiftY = sy;
        QVERIFY(EdgeAlign::edgeDetect(b, FW, FH, eb));
        QCOMPARE(eb.v, ea.v);
    } else {
        QCOMPARE(QPoint(sx, sy), QPoint(startX, startY));
    }
    // A picture of another size never compares.
    ProcImage small = bin;
    small.w -= 1;
    QCOMPARE(EdgeAlign::normScalarProduct(ref, small, 0, 0), 0.0);
    QVERIFY(EdgeAlign::compare(ref, small, 0, 0).isNull());
}

void TestImageTools::histogram_data()
{
    QTest::addColumn<QList<double>>("values"); // a 4 x 3 map, row by row
    QTest::addColumn<int>("areaW");            // walked width; beyond 4 reads 0
    QTest::addColumn<int>("bins");
    QTest::addColumn<QList<double>>("markers"); // before; empty: untouched
    QTest::addColumn<QList<int>>("counts");
    QTest::addColumn<QList<double>>("stats"); // n, mean, sigma, lo, hi after
    QTest::addColumn<QList<double>>("sel");   // selMean after fill, after the next two computations

    const QList<double> ramp{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    const double nan = std::nan("");
    // Width 11/4: bins from 1, 3.75, 6.5, 9.25 take three each. Mean 6.5,
    // variance 650/12 - 6.5^2. Lower edges of all bins: 61.5/12; with the
    // markers at 4 .. 9.5 (seen one computation late) the last two: 7.875.
    QTest::newRow("ramp, 4 bins") << ramp << 4 << 4 << QList<double>{} << QList<int>{3, 3, 3, 3}
                                  << QList<double>{12, 6.5, std::sqrt(650.0 / 12 - 42.25), 1, 12}
                                  << QList<double>{5.125, 5.125, 7.875};
    // Six zeros from off the map: min 0, width 3; 0,1,2 | 3,4,5 | 6,7,8 | 9..12.
    QTest::newRow("area past the map") << ramp << 6 << 4 << QList<double>{100, 200} << QList<int>{8, 3, 3, 4}
                                       << QList<double>{18, 78.0 / 18, std::sqrt(650.0 / 18 - std::pow(78.0 / 18, 2)),
                                                        0, 12}
                                       << QList<double>{(3 * 3 + 3 * 6 + 4 * 9) / 18.0,
                                                        (3 * 3 + 3 * 6 + 4 * 9) / 18.0, (3 * 6 + 4 * 9) / 7.0};
    // One value: width 0, every bin index is 0/0 and lands in bin 0.
    QTest::newRow("one value") << QList<double>(12, 5.0) << 4 << 4 << QList<double>{-5, 7}
                               << QList<int>{12, 0, 0, 0} << QList<double>{12, 5, 0, 5, 5}
                               << QList<double>{5, 5, 5};
    QTest::newRow("all NaN") << QList<double>(12, nan) << 4 << 3 << QList<double>{} << QList<int>{12, 0, 0}
                             << QList<double>{12, nan, nan, 1e300, 1e300} << QList<double>{1e300, 1e300, 0};
    QTest::newRow("bins 1") << ramp << 4 << 1 << QList<double>{} << QList<int>{12}
                            << QList<double>{12, 6.5, std::sqrt(650.0 / 12 - 42.25), 1, 12}
                            << QList<double>{1, 1, 0};
    QTest::newRow("bins 0") << ramp << 4 << 0 << QList<double>{} << QList<int>{}
                            << QList<double>{12, 6.5, std::sqrt(650.0 / 12 - 42.25), 1, 12}
                            << QList<double>{0, 0, 0};
    QTest::newRow("bins negative") << ramp << 4 << -3 << QList<double>{} << QList<int>{}
                                   << QList<double>{12, 6.5, std::sqrt(650.0 / 12 - 42.25), 1, 12}
                                   << QList<double>{0, 0, 0};
}

void TestImageTools::histogram()
{
    QFETCH(QList<double>, values);
    QFETCH(int, areaW);
    QFETCH(int, bins);
    QFETCH(QList<double>, markers);
    QFETCH(QList<int>, counts);
    QFETCH(QList<double>, stats);
    QFETCH(QList<double>, sel);

    AnalyzeCond c;
    c.setUp(4, 3, 0, 0, QRectF(0, 0, 4, 3), 1, 1);
    Analyzed2DRes map;
    map.setUp(c);
    for (int i = 0; i < values.size(); ++i)
        map.setData(i % 4, i / 4, 0, 0, values[i]);
    AnalyzeCond area;
    area.setUp(4, 3, 0, 0, QRectF(0, 0, areaW, 3), 1, 1);

    MapHistogram hst;
    if (!markers.isEmpty())
        hst.rangeLo = markers[0], hst.rangeHi = markers[1];
    hst.fill(map, area, bins);
    QCOMPARE(QList<int>(hst.counts.begin(), hst.counts.end()), counts);
    QCOMPARE(hst.count, int(stats[0]));
    QVERIFY(qFuzzyCompare(1 + hst.mean, 1 + stats[1]) || (std::isnan(hst.mean) && std::isnan(stats[1])));
    QVERIFY(qFuzzyCompare(1 + hst.sigma, 1 + stats[2]) || (std::isnan(hst.sigma) && std::isnan(stats[2])));
    QCOMPARE(hst.rangeLo, stats[3]);
    QCOMPARE(hst.rangeHi, stats[4]);
    QVERIFY2(qFuzzyCompare(1 + hst.selMean, 1 + sel[0]), qPrintable(QString::number(hst.selMean)));
    hst.rangeLo = 4, hst.rangeHi = 9.5;
    hst.selectionStats();
    QVERIFY(qFuzzyCompare(1 + hst.selMean, 1 + sel[1]));
    hst.selectionStats();
    QVERIFY2(qFuzzyCompare(1 + hst.selMean, 1 + sel[2]), qPrintable(QString::number(hst.selMean)));
}

void TestImageTools::fvMaps_data()
{
    QTest::addColumn<QVector<double>>("xs");
    QTest::addColumn<QVector<double>>("ys"); // may be shorter: 0 for the rest
    QTest::addColumn<int>("hw");
    QTest::addColumn<double>("b");
    QTest::addColumn<double>("cRange");

    QTest::newRow("three points") << QVector<double>{0.1, 0.5, 0.3} << QVector<double>{2, 4, 3.5} << 4 << 0.01 << 0.5;
    QTest::newRow("missing y, wide kernel") << QVector<double>{-1, 1, 0.2} << QVector<double>{0, 5} << 30 << 0.1 << 0.9;
    QTest::newRow("one point: a range of no width") << QVector<double>{2} << QVector<double>{7} << 3 << 0.2 << 1.0;
    QTest::newRow("hw 0: NaN kernel") << QVector<double>{0, 1} << QVector<double>{0, 1} << 0 << 0.01 << 0.002;
    QTest::newRow("border 0: NaN centre") << QVector<double>{0, 1} << QVector<double>{0, 1} << 5 << 0.0 << 0.002;
    QTest::newRow("no points") << QVector<double>{} << QVector<double>{} << 10 << 0.01 << 0.002;
}

void TestImageTools::fvMaps()
{
    QFETCH(QVector<double>, xs);
    QFETCH(QVector<double>, ys);
    QFETCH(int, hw);
    QFETCH(double, b);
    QFETCH(double, cRange);
    const int S = 23;

    FVMaps::Points pts{&xs, &ys, 1e300, -1e300, 1e300, -1e300};
    QVector<QPoint> px;
    for (int i = 0; i < xs.size(); ++i) {
        const double y = i < ys.size() ? ys[i] : 0.0;
        pts.x0 = std::min(pts.x0, xs[i]), pts.x1 = std::max(pts.x1, xs[i]);
        pts.y0 = std::min(pts.y0, y), pts.y1 = std::max(pts.y1, y);
    }
    for (int i = 0; i < xs.size(); ++i) {
        const double y = i < ys.size() ? ys[i] : 0.0;
        auto f = [](double v, double a, double e) { return e > a ? (v - a) / (e - a) : 0.5; };
        px << QPoint(int(std::lround(f(xs[i], pts.x0, pts.x1) * (S - 1))),
                     S - 1 - int(std::lround(f(y, pts.y0, pts.y1) * (S - 1))));
    }

    const QImage sc = FVMaps::scatter(pts, S);
    const QImage de = FVMaps::density(pts, S, hw, b, cRange);
    QCOMPARE(sc.size(), QSize(S, S));
    std::vector<double> t(S * S, 0.0);
    double m = 0;
    for (int y = 0; y < S; ++y)
        for (int x = 0; x < S; ++x) {
            for (const QPoint &p : px) {
                const int d2 = (x - p.x()) * (x - p.x()) + (y - p.y()) * (y - p.y());
                if (std::abs(x - p.x()) <= hw && std::abs(y - p.y()) <= hw)
                    t[y * S + x] += std::exp(d2 * std::log(b) / hw / hw);
            }
            m = std::max(m, t[y * S + x]); // a NaN never wins
            QCOMPARE(sc.pixel(x, y), px.contains(QPoint(x, y)) ? qRgb(0, 0, 255) : qRgb(255, 255, 255));
        }
    for (int y = 0; y < S; ++y)
        for (int x = 0; x < S; ++x) {
            const double g = std::trunc(t[y * S + x] / (m * cRange) * 255);
            const int want = std::isnan(g) ? 0 : int(std::min(255.0, g));
            const QRgb c = de.pixel(x, y);
            QVERIFY2(qRed(c) == 255 && qBlue(c) == 0 && std::abs(qGreen(c) - want) <= 1,
                     qPrintable(QStringLiteral("(%1, %2): %3 for %4").arg(x).arg(y).arg(qGreen(c)).arg(want)));
        }
}

QTEST_GUILESS_MAIN(TestImageTools)
#include "tst_imagetools.moc"
