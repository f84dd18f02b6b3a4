#include "spectrum/Spectrum.h"

#include <QtTest>

using Points = QVector<QPointF>;
using Values = QVector<double>;

namespace {

Spectrum curveOf(const Points &pts)
{
    Spectrum s;
    for (const QPointF &p : pts)
        s.addPoint(p.x(), p.y());
    return s;
}

// Points at x = 0, 1, 2, ... with the given y.
Spectrum curveOfYs(const Values &ys)
{
    Spectrum s;
    for (int i = 0; i < ys.size(); ++i)
        s.addPoint(i, ys[i]);
    return s;
}

} // namespace

class TestSpectrum : public QObject
{
    Q_OBJECT
private slots:
    void interpolateY_data();
    void interpolateY();
    void smooth_data();
    void smooth();
    void interpolateSmoothY_data();
    void interpolateSmoothY();
    void extremes_data();
    void extremes();
    void resetRestoresEverything();
};

void TestSpectrum::interpolateY_data()
{
    QTest::addColumn<Points>("pts");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("expected");

    QTest::newRow("empty") << Points{} << 3.0 << 0.0;
    QTest::newRow("single, below") << Points{{2, 5}} << -100.0 << 5.0;
    QTest::newRow("single, on") << Points{{2, 5}} << 2.0 << 5.0;
    QTest::newRow("single, above") << Points{{2, 5}} << 100.0 << 5.0;
    // line y = 2x through (0,0), (2,4)
    QTest::newRow("two, middle") << Points{{0, 0}, {2, 4}} << 1.0 << 2.0;
    QTest::newRow("two, below extrapolates") << Points{{0, 0}, {2, 4}} << -1.0 << -2.0;
    QTest::newRow("two, above extrapolates") << Points{{0, 0}, {2, 4}} << 3.0 << 6.0;
    QTest::newRow("two, on first") << Points{{0, 0}, {2, 4}} << 0.0 << 0.0;
    QTest::newRow("two, on last") << Points{{0, 0}, {2, 4}} << 2.0 << 4.0;
    // equal x: the mean of the two y, wherever x lies
    QTest::newRow("equal x, on") << Points{{1, 2}, {1, 6}} << 1.0 << 4.0;
    QTest::newRow("equal x, below") << Points{{1, 2}, {1, 6}} << 0.0 << 4.0;
    QTest::newRow("equal x, above") << Points{{1, 2}, {1, 6}} << 5.0 << 4.0;

    const Points zigzag{{0, 0}, {1, 10}, {2, 0}, {3, 10}, {4, 0}};
    QTest::newRow("zigzag, first segment") << zigzag << 0.25 << 2.5;
    QTest::newRow("zigzag, knot") << zigzag << 1.0 << 10.0;
    // between (2,0) and (3,10)
    QTest::newRow("zigzag, third segment") << zigzag << 2.5 << 5.0;
    QTest::newRow("zigzag, last segment") << zigzag << 3.75 << 2.5;
    // first segment slope 10 continued to x = -1
    QTest::newRow("zigzag, below") << zigzag << -1.0 << -10.0;
    // last segment slope -10 continued: 10 + 2 * (-10)
    QTest::newRow("zigzag, above") << zigzag << 5.0 << -10.0;

    // A repeated x inside: the bisection keeps E[i] <= x, so x = 1 lands on
    // the later of the equal points, segment (1,4)-(2,6).
    const Points step{{0, 0}, {1, 2}, {1, 4}, {2, 6}};
    QTest::newRow("repeated x, on it") << step << 1.0 << 4.0;
    QTest::newRow("repeated x, before") << step << 0.5 << 1.0;
    QTest::newRow("repeated x, after") << step << 1.5 << 5.0;
}

void TestSpectrum::interpolateY()
{
    QFETCH(Points, pts);
    QFETCH(double, x);
    QFETCH(double, expected);
    QCOMPARE(curveOf(pts).interpolateY(x), expected);
}

void TestSpectrum::smooth_data()
{
    QTest::addColumn<Values>("ys");
    QTest::addColumn<int>("halfWidth");
    QTest::addColumn<Values>("expected");

    QTest::newRow("empty") << Values{} << 2 << Values{};
    QTest::newRow("single") << Values{7} << 2 << Values{7};
    // ends average two points, the middle three
    QTest::newRow("ramp, w 1") << Values{1, 2, 3, 4, 5} << 1 << Values{1.5, 2, 3, 4, 4.5};
    // spike of 10 seen by windows of 3, 4, 5, 4, 3 points
    QTest::newRow("spike, w 2") << Values{0, 0, 10, 0, 0} << 2
                                << Values{10.0 / 3, 2.5, 2, 2.5, 10.0 / 3};
    QTest::newRow("w 0 keeps y") << Values{3, -1, 4} << 0 << Values{3, -1, 4};
    QTest::newRow("negative w keeps y") << Values{3, -1, 4} << -2 << Values{3, -1, 4};
    QTest::newRow("window wider than list") << Values{1, 2, 3} << 5 << Values{2, 2, 2};
}

void TestSpectrum::smooth()
{
    QFETCH(Values, ys);
    QFETCH(int, halfWidth);
    QFETCH(Values, expected);
    Spectrum s = curveOfYs(ys);
    QVERIFY(!s.smoothValid);
    s.smooth(halfWidth);
    QVERIFY(s.smoothValid);
    QCOMPARE(s.smoothY.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i)
        QVERIFY2(qFuzzyCompare(s.smoothY[i], expected[i]), qPrintable(QString::number(i)));
}

void TestSpectrum::interpolateSmoothY_data()
{
    QTest::addColumn<Values>("ys");
    QTest::addColumn<bool>("smoothFirst");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("expected");

    // smoothed (w 2): 10/3, 2.5, 2, 2.5, 10/3 at x = 0..4
    const Values spike{0, 0, 10, 0, 0};
    QTest::newRow("between 0 and 1") << spike << true << 0.5 << (10.0 / 3 + 2.5) / 2;
    QTest::newRow("on 2") << spike << true << 2.0 << 2.0;
    // last segment (3, 2.5)-(4, 10/3) continued one step
    QTest::newRow("above") << spike << true << 5.0 << 10.0 / 3 + (10.0 / 3 - 2.5);
    QTest::newRow("not smoothed") << spike << false << 2.0 << 0.0;
    QTest::newRow("single") << Values{7} << true << 30.0 << 7.0;
}

void TestSpectrum::interpolateSmoothY()
{
    QFETCH(Values, ys);
    QFETCH(bool, smoothFirst);
    QFETCH(double, x);
    QFETCH(double, expected);
    Spectrum s = curveOfYs(ys);
    if (smoothFirst)
        s.smooth(2);
    QVERIFY(qFuzzyCompare(1.0 + s.interpolateSmoothY(x), 1.0 + expected));
}

void TestSpectrum::extremes_data()
{
    QTest::addColumn<Points>("pts");
    QTest::addColumn<double>("xMin");
    QTest::addColumn<double>("xMax");
    QTest::addColumn<double>("yMin");
    QTest::addColumn<double>("yMax");
    QTest::addColumn<int>("iYMin");
    QTest::addColumn<int>("iYMax");

    QTest::newRow("empty") << Points{} << 1e300 << -1e300 << 1e300 << -1e300
                           << -1879048193 << 1879048193;
    QTest::newRow("single") << Points{{3, -2}} << 3.0 << 3.0 << -2.0 << -2.0 << 0 << 0;
    // ties keep the first point that reached the extreme
    QTest::newRow("ties") << Points{{5, 3}, {1, 1}, {2, 1}, {9, 5}, {4, 5}}
                          << 1.0 << 9.0 << 1.0 << 5.0 << 1 << 3;
    QTest::newRow("falling") << Points{{0, 4}, {1, 3}, {2, 2}} << 0.0 << 2.0 << 2.0 << 4.0 << 2 << 0;
}

void TestSpectrum::extremes()
{
    QFETCH(Points, pts);
    const Spectrum s = curveOf(pts);
    QTEST(s.xMin, "xMin");
    QTEST(s.xMax, "xMax");
    QTEST(s.yMin, "yMin");
    QTEST(s.yMax, "yMax");
    QTEST(s.iYMin, "iYMin");
    QTEST(s.iYMax, "iYMax");
}

void TestSpectrum::resetRestoresEverything()
{
    Spectrum s = curveOf({{1, 2}, {3, 4}});
    s.smooth(1);
    s.xShiftOn = true;
    s.xShift = 3.5;
    s.reset();
    QVERIFY(s.points.isEmpty() && s.smoothY.isEmpty() && !s.smoothValid && !s.xShiftOn);
    QCOMPARE(s.activeShift(), 0.0);
    // extremes start over: the first point after a reset sets all four
    s.addPoint(10, -20);
    QCOMPARE(s.xMin, 10.0);
    QCOMPARE(s.xMax, 10.0);
    QCOMPARE(s.yMin, -20.0);
    QCOMPARE(s.yMax, -20.0);
}

QTEST_APPLESS_MAIN(TestSpectrum)
#include "tst_spectrum.moc"
