#include "view/ChCoord.h"
#include "view/CurveLines.h"

#include <QtTest>

#include <limits>

// Where a curve's polyline is cut: at gaps in x wider than the limit and at
// points that land nowhere on the screen. The coordinates map real x to
// screen 10 x and real y to screen -y, so every expected point is read off
// by hand.
class TestCurveLines : public QObject
{
    Q_OBJECT
private slots:
    void cuts_data();
    void cuts();
    void reuse();
};

namespace {
const double NaN = std::numeric_limits<double>::quiet_NaN();

void setPlain(ChCoord &cc)
{
    cc.setWindow(0, 0, 100, -100);
    cc.setRealRange(0, 0, 10, 100);
}
} // namespace

void TestCurveLines::cuts_data()
{
    QTest::addColumn<QPolygonF>("real");
    QTest::addColumn<double>("maxGap");
    QTest::addColumn<QVector<QPolygonF>>("expected");

    const QPolygonF scan{{7100, 1}, {7110, 2}, {7120, 3}, {7200, 4}, {7201, 5}};
    auto s = [](double x, double y) { return QPointF(10 * x, -y); };

    // 7120 -> 7200 is 80 eV: one cut.
    QTest::newRow("gap of 80") << scan << 50.0
                               << QVector<QPolygonF>{{s(7100, 1), s(7110, 2), s(7120, 3)}, {s(7200, 4), s(7201, 5)}};
    // Exactly 50 apart is no gap; a step back in x counts by its size.
    QTest::newRow("50 is no gap, backwards 60 is")
        << QPolygonF{{0, 0}, {50, 1}, {-10, 2}, {-20, 3}} << 50.0
        << QVector<QPolygonF>{{s(0, 0), s(50, 1)}, {s(-10, 2), s(-20, 3)}};
    QTest::newRow("no limit") << scan << 0.0
                              << QVector<QPolygonF>{{s(7100, 1), s(7110, 2), s(7120, 3), s(7200, 4), s(7201, 5)}};
    // A point left alone between two gaps draws nothing and is dropped.
    QTest::newRow("lone point") << QPolygonF{{0, 0}, {1, 1}, {100, 2}, {200, 3}, {201, 4}} << 50.0
                                << QVector<QPolygonF>{{s(0, 0), s(1, 1)}, {s(200, 3), s(201, 4)}};
    QTest::newRow("NaN cuts") << QPolygonF{{0, 0}, {1, 1}, {2, NaN}, {3, 3}, {4, 4}} << 50.0
                              << QVector<QPolygonF>{{s(0, 0), s(1, 1)}, {s(3, 3), s(4, 4)}};
    QTest::newRow("empty") << QPolygonF{} << 50.0 << QVector<QPolygonF>{};
}

void TestCurveLines::cuts()
{
    QFETCH(QPolygonF, real);
    QFETCH(double, maxGap);
    QFETCH(QVector<QPolygonF>, expected);

    ChCoord cc;
    setPlain(cc);
    QVector<QPolygonF> out;
    curvePolylines(real, cc, maxGap, out);
    QCOMPARE(out, expected);
}

void TestCurveLines::reuse()
{
    // A second, shorter curve must not keep lines of the first.
    QVector<QPolygonF> out;
    ChCoord cc;
    setPlain(cc);
    curvePolylines(QPolygonF{{0, 0}, {1, 1}, {100, 2}, {101, 3}}, cc, 50, out);
    QCOMPARE(out.size(), 2);
    curvePolylines(QPolygonF{{0, 5}, {1, 6}}, cc, 50, out);
    QCOMPARE(out, (QVector<QPolygonF>{{QPointF(0, -5), QPointF(10, -6)}}));
}

QTEST_GUILESS_MAIN(TestCurveLines)
#include "tst_curvelines.moc"
