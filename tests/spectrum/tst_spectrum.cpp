#include "spectrum/Spectrum.h"

#include <QtTest>

#include <cmath>
#include <cstring>

// "x,y x,y ...", or "y y ..." for points at x = 0, 1, 2, ...
static Spectrum curve(const QString &text)
{
    Spectrum s;
    const QStringList items = text.split(' ', Qt::SkipEmptyParts);
    for (int i = 0; i < items.size(); ++i) {
        const QStringList xy = items[i].split(',');
        xy.size() == 2 ? s.addPoint(xy[0].toDouble(), xy[1].toDouble()) : s.addPoint(i, xy[0].toDouble());
    }
    return s;
}

class TestSpectrum : public QObject
{
    Q_OBJECT
private slots:
    void interpolate_data();
    void interpolate();
    void interpolateOnward();
    void smooth_data();
    void smooth();
    void extremes_data();
    void extremes();
};

// w < 0 reads the points; otherwise the curve is smoothed with half width w
// first (w > 10: not smoothed at all) and the smoothed values are read.
void TestSpectrum::interpolate_data()
{
    QTest::addColumn<QString>("pts");
    QTest::addColumn<int>("w");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("expected");
    QTest::newRow("empty") << "" << -1 << 3.0 << 0.0;
    QTest::newRow("single") << "2,5" << -1 << -100.0 << 5.0;
    // line y = 2x through (0,0), (2,4)
    QTest::newRow("two, below extrapolates") << "0,0 2,4" << -1 << -1.0 << -2.0;
    QTest::newRow("two, above extrapolates") << "0,0 2,4" << -1 << 3.0 << 6.0;
    QTest::newRow("two, on first") << "0,0 2,4" << -1 << 0.0 << 0.0;
    QTest::newRow("two, on last") << "0,0 2,4" << -1 << 2.0 << 4.0;
    // equal x: the mean of the two y, wherever x lies
    QTest::newRow("equal x") << "1,2 1,6" << -1 << 0.0 << 4.0;
    const QString zigzag = "0 10 0 10 0";
    QTest::newRow("zigzag, knot") << zigzag << -1 << 1.0 << 10.0;
    QTest::newRow("zigzag, third segment") << zigzag << -1 << 2.5 << 5.0;
    // first segment slope 10 continued to x = -1
    QTest::newRow("zigzag, below") << zigzag << -1 << -1.0 << -10.0;
    // last segment slope -10 continued: 10 + 2 * (-10)
    QTest::newRow("zigzag, above") << zigzag << -1 << 5.0 << -10.0;
    // A repeated x inside: the bisection keeps E[i] <= x, so x = 1 lands on
    // the later of the equal points, segment (1,4)-(2,6).
    QTest::newRow("repeated x, on it") << "0,0 1,2 1,4 2,6" << -1 << 1.0 << 4.0;
    QTest::newRow("repeated x, after") << "0,0 1,2 1,4 2,6" << -1 << 1.5 << 5.0;
    // smoothed (w 2): 10/3, 2.5, 2, 2.5, 10/3 at x = 0..4
    QTest::newRow("smoothed, between 0 and 1") << "0 0 10 0 0" << 2 << 0.5 << (10.0 / 3 + 2.5) / 2;
    QTest::newRow("smoothed, on 2") << "0 0 10 0 0" << 2 << 2.0 << 2.0;
    // last segment (3, 2.5)-(4, 10/3) continued one step
    QTest::newRow("smoothed, above") << "0 0 10 0 0" << 2 << 5.0 << 10.0 / 3 + (10.0 / 3 - 2.5);
    QTest::newRow("not smoothed") << "0 0 10 0 0" << 99 << 2.0 << 0.0;
    QTest::newRow("smoothed single") << "7" << 2 << 30.0 << 7.0;
}

void TestSpectrum::interpolate()
{
    QFETCH(QString, pts);
    QFETCH(int, w);
    QFETCH(double, x);
    QFETCH(double, expected);
    Spectrum s = curve(pts);
    if (w >= 0 && w <= 10)
        s.smooth(w);
    const double got = w < 0 ? s.interpolateY(x) : s.interpolateSmoothY(x);
    QVERIFY2(qFuzzyCompare(1.0 + got, 1.0 + expected), qPrintable(QString::number(got, 'g', 17)));
}

// Walking along a rising curve finds the segments the search finds: queries
// below, on every knot, between knots, repeated, and past the end.
void TestSpectrum::interpolateOnward()
{
    for (const int n : {1, 2, 3, 40}) {
        Spectrum s;
        double x = 100;
        for (int i = 0; i < n; ++i, x += 0.3 + (i * 7 % 5) * 0.45)
            s.addPoint(x, std::sin(i * 0.7) * 3);
        QVector<double> qs{-1e300, 50, 99.999};
        for (const QPointF &p : std::as_const(s.points))
            qs << p.x() << p.x() << std::nextafter(p.x(), 1e300) << p.x() + 0.2;
        qs << x + 50 << 1e300;
        // Runs walked from the curve's start, and runs that bisect for
        // their first x, from every place in the list.
        for (int first = 0; first < qs.size(); ++first) {
            for (const int start : {0, -1}) {
                if (start == 0 && first > 0)
                    continue;
                int segment = start;
                for (int k = first; k < qs.size(); ++k) {
                    const double q = qs[k];
                    const double want = s.interpolateY(q);
                    const double got = s.interpolateYOnward(q, segment);
                    QVERIFY2(std::memcmp(&want, &got, sizeof want) == 0,
                             qPrintable(QStringLiteral("n %1, x %2, start %3").arg(n).arg(q, 0, 'g', 17).arg(start)));
                }
            }
        }
    }
}

void TestSpectrum::smooth_data()
{
    QTest::addColumn<QString>("ys");
    QTest::addColumn<int>("w");
    QTest::addColumn<QVector<double>>("expected");
    QTest::newRow("empty") << "" << 2 << QVector<double>{};
    QTest::newRow("single") << "7" << 2 << QVector<double>{7};
    // ends average two points, the middle three
    QTest::newRow("ramp, w 1") << "1 2 3 4 5" << 1 << QVector<double>{1.5, 2, 3, 4, 4.5};
    // spike of 10 seen by windows of 3, 4, 5, 4, 3 points
    QTest::newRow("spike, w 2") << "0 0 10 0 0" << 2 << QVector<double>{10.0 / 3, 2.5, 2, 2.5, 10.0 / 3};
    QTest::newRow("w 0 keeps y") << "3 -1 4" << 0 << QVector<double>{3, -1, 4};
    QTest::newRow("negative w keeps y") << "3 -1 4" << -2 << QVector<double>{3, -1, 4};
    QTest::newRow("window wider than list") << "1 2 3" << 5 << QVector<double>{2, 2, 2};
}

void TestSpectrum::smooth()
{
    QFETCH(QString, ys);
    QFETCH(int, w);
    QFETCH(QVector<double>, expected);
    Spectrum s = curve(ys);
    QVERIFY(!s.smoothValid);
    s.smooth(w);
    QVERIFY(s.smoothValid);
    QCOMPARE(s.smoothY.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i)
        QVERIFY2(qFuzzyCompare(s.smoothY[i], expected[i]), qPrintable(QString::number(i)));
}

// expected: "xMin xMax yMin yMax iYMin iYMax"
void TestSpectrum::extremes_data()
{
    QTest::addColumn<QString>("pts");
    QTest::addColumn<bool>("reset");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << "" << false << "1e+300 -1e+300 1e+300 -1e+300 -1879048193 1879048193";
    QTest::newRow("single") << "3,-2" << false << "3 3 -2 -2 0 0";
    // ties keep the first point that reached the extreme
    QTest::newRow("ties") << "5,3 1,1 2,1 9,5 4,5" << false << "1 9 1 5 1 3";
    QTest::newRow("falling") << "0,4 1,3 2,2" << false << "0 2 2 4 2 0";
    // after a reset the first point sets all four extremes
    QTest::newRow("reset, then one point") << "1,2 3,4 -5,-6" << true << "10 10 -20 -20 0 0";
}

void TestSpectrum::extremes()
{
    QFETCH(QString, pts);
    QFETCH(bool, reset);
    Spectrum s = curve(pts);
    if (reset) {
        s.smooth(1);
        s.xShiftOn = true;
        s.xShift = 3.5;
        s.reset();
        QVERIFY(s.points.isEmpty() && s.smoothY.isEmpty() && !s.smoothValid && !s.xShiftOn);
        QCOMPARE(s.activeShift(), 0.0);
        s.addPoint(10, -20);
    }
    const QString got = QStringList{ QString::number(s.xMin), QString::number(s.xMax), QString::number(s.yMin),
                                     QString::number(s.yMax), QString::number(s.iYMin), QString::number(s.iYMax) }
                            .join(' ');
    QTEST(got, "expected");
}

QTEST_APPLESS_MAIN(TestSpectrum)
#include "tst_spectrum.moc"
