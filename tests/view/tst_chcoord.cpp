#include "view/ChCoord.h"
#include "view/MouseC.h"

#include <QtTest>

#include <cmath>
#include <limits>

// Coordinate conversion, tick spacing and mouse modes: the plain logic under
// every drawing surface.
class TestChCoord : public QObject
{
    Q_OBJECT
private slots:
    void conversions_data();
    void conversions();
    void limited_data();
    void limited();
    void margins_data();
    void margins();
    void nextStep_data();
    void nextStep();
    void niceRange_data();
    void niceRange();
    void mode_data();
    void mode();
};

using Quad = QVector<double>; // x0, y0, x1, y1

static void setUp(ChCoord &c, const Quad &plot, const Quad &real)
{
    c.setPlotRegion(plot[0], plot[1], plot[2], plot[3]);
    c.setRealRange(real[0], real[1], real[2], real[3]);
}

void TestChCoord::conversions_data()
{
    QTest::addColumn<Quad>("plot");
    QTest::addColumn<Quad>("real");
    QTest::addColumn<double>("rx");
    QTest::addColumn<double>("ry");
    QTest::addColumn<double>("sx"); // screen position of rx
    QTest::addColumn<double>("sy");
    QTest::addColumn<double>("sdx"); // screen length of rx taken as a distance
    QTest::addColumn<double>("sdy");

    // 2 pixels per unit both ways: 50 -> 100, 30 -> 60.
    QTest::newRow("image, y down") << Quad{0, 0, 400, 300} << Quad{0, 0, 200, 150} << 50.0 << 30.0 << 100.0 << 60.0
                                   << 100.0 << 60.0;
    // x: 340 px over 200 eV: 40 + 1.7 * 50 = 125, distance 1.7 * 7050.
    // y runs up from 270 to 15: 270 + (-127.5) * 0.5 = 206.25, distance -63.75.
    QTest::newRow("graph, y up") << Quad{40, 270, 380, 15} << Quad{7000, 0, 7200, 2} << 7050.0 << 0.5 << 125.0
                                 << 206.25 << 11985.0 << -63.75;
    // Real x from 10 down to 0 over 100 px: -10 px per unit, 2.5 -> 75.
    // Real y from 4 to -4 over 0..80 (y down): -10 px per unit, -1 -> 50.
    QTest::newRow("reversed real ranges") << Quad{0, 0, 100, 80} << Quad{10, 4, 0, -4} << 2.5 << -1.0 << 75.0 << 50.0
                                          << -25.0 << 10.0;
}

void TestChCoord::conversions()
{
    QFETCH(Quad, plot);
    QFETCH(Quad, real);
    QFETCH(double, rx);
    QFETCH(double, ry);
    QFETCH(double, sx);
    QFETCH(double, sy);
    QFETCH(double, sdx);
    QFETCH(double, sdy);
    ChCoord c;
    setUp(c, plot, real);
    QCOMPARE(c.r2sx(rx), sx);
    QCOMPARE(c.r2sy(ry), sy);
    QCOMPARE(c.r2sdx(rx), sdx);
    QCOMPARE(c.r2sdy(ry), sdy);
    QCOMPARE(c.s2rx(sx), rx);
    QCOMPARE(c.s2ry(sy), ry);
    QCOMPARE(c.s2rdx(sdx), rx);
    QCOMPARE(c.s2rdy(sdy), ry);
}

void TestChCoord::limited_data()
{
    QTest::addColumn<Quad>("plot");
    QTest::addColumn<Quad>("real");
    QTest::addColumn<double>("sx");
    QTest::addColumn<double>("sy");
    QTest::addColumn<double>("rx");
    QTest::addColumn<double>("ry");

    // 1 unit per pixel from (0,0) to (100,100).
    QTest::newRow("left and above") << Quad{0, 0, 100, 100} << Quad{0, 0, 100, 100} << -20.0 << -5.0 << 0.0 << 0.0;
    // Real ends given high first: -20 px maps to 120 (x) and 105 (y), both
    // clamped to the larger end; 130 px maps to -30 and -5, clamped to 0.
    QTest::newRow("reversed, low side") << Quad{0, 0, 100, 100} << Quad{100, 100, 0, 0} << 130.0 << 105.0 << 0.0
                                        << 0.0;
    QTest::newRow("reversed, high side") << Quad{0, 0, 100, 100} << Quad{100, 100, 0, 0} << -20.0 << -5.0 << 100.0
                                         << 100.0;
    // Screen y running up (image of a graph): 300 px at the bottom is y = 0.
    QTest::newRow("y up, below the plot") << Quad{0, 300, 100, 0} << Quad{0, 0, 10, 3} << 50.0 << 350.0 << 5.0
                                          << 0.0;
}

void TestChCoord::limited()
{
    QFETCH(Quad, plot);
    QFETCH(Quad, real);
    QFETCH(double, sx);
    QFETCH(double, sy);
    QFETCH(double, rx);
    QFETCH(double, ry);
    ChCoord c;
    setUp(c, plot, real);
    QCOMPARE(c.s2rxLimited(sx), rx);
    QCOMPARE(c.s2ryLimited(sy), ry);
}

void TestChCoord::margins_data()
{
    QTest::addColumn<Quad>("window");
    QTest::addColumn<Quad>("plot");

    // Margins L 0.1, R 0.05, T 0.05, B 0.1 of 400 x 300: 40, 20, 15, 30.
    QTest::newRow("y down") << Quad{0, 0, 400, 300} << Quad{40, 15, 380, 270};
    // y up: h = -300, sY0 = 300 + trunc(-15) = 285, sY1 = 0 - trunc(-30) = 30.
    QTest::newRow("y up") << Quad{0, 300, 400, 0} << Quad{40, 285, 380, 30};
    // 333: 33.3 -> 33, 16.65 -> 16 (truncated toward zero both ways).
    QTest::newRow("odd size, y up") << Quad{0, 333, 333, 0} << Quad{33, 317, 317, 33};
}

void TestChCoord::margins()
{
    QFETCH(Quad, window);
    QFETCH(Quad, plot);
    ChCoord c;
    c.setWindow(window[0], window[1], window[2], window[3]);
    c.applyMargins();
    QCOMPARE(Quad({c.sX0, c.sY0, c.sX1, c.sY1}), plot);
    QCOMPARE(Quad({c.winX0, c.winY0, c.winX1, c.winY1}), window);
}

void TestChCoord::nextStep_data()
{
    QTest::addColumn<double>("realSpan"); // over 100 screen pixels
    QTest::addColumn<double>("base");
    QTest::addColumn<int>("minPixels");
    QTest::addColumn<double>("step");

    // 0.125 px per unit: more than 25 px needs a step above 200; 200 gives
    // exactly 25 and is passed over.
    QTest::newRow("strictly more") << 800.0 << 1.0 << 25 << 500.0;
    // 10 px per unit: above 2.5 units; 0.1 x {1,2,5,10,20} fall short, 0.1 x 50.
    QTest::newRow("fractional base") << 10.0 << 0.1 << 25 << 5.0;
    // 1e-10 px per unit: nothing up to 5e7 reaches 20 px.
    QTest::newRow("beyond the table") << 1e12 << 1.0 << 20 << 1e8;
    // A reversed axis counts the spacing as a length.
    QTest::newRow("reversed axis") << -800.0 << 1.0 << 25 << 500.0;
}

void TestChCoord::nextStep()
{
    QFETCH(double, realSpan);
    QFETCH(double, base);
    QFETCH(int, minPixels);
    QFETCH(double, step);
    ChCoord c;
    c.setPlotRegion(0, 0, 100, 100);
    c.setRealRange(0, 0, realSpan, 1);
    QCOMPARE(c.nextStep(base, minPixels), step);
}

void TestChCoord::niceRange_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<double>("step");
    QTest::addColumn<double>("first");
    QTest::addColumn<double>("last");

    const double nan = std::numeric_limits<double>::quiet_NaN();
    // d = 1, u = 1, k = 0: 0.2.
    QTest::newRow("0..1") << 0.0 << 1.0 << true << 0.2 << 0.0 << 1.0;
    // d = 7, k = 6: 1.
    // d = 8.5, k = 7: 2; ticks 4 .. 10 inside 3.2 .. 11.7.
    QTest::newRow("3.2..11.7") << 3.2 << 11.7 << true << 2.0 << 4.0 << 10.0;
    // d = 600, u = 100, k = 5: 100.
    QTest::newRow("energies") << 7000.0 << 7600.0 << true << 100.0 << 7000.0 << 7600.0;
    // d = 95, u = 10, k = 8: 20.
    QTest::newRow("0..95") << 0.0 << 95.0 << true << 20.0 << 0.0 << 80.0;
    // d = 1000, u = 1000, k = 0: 200; ceil(-0.15) = 0.
    QTest::newRow("-30..970") << -30.0 << 970.0 << true << 200.0 << 0.0 << 800.0;
    // d = 0.3, u = 0.1, k = 2: 0.05.
    QTest::newRow("0.5..0.8") << 0.5 << 0.8 << true << 0.05 << 0.5 << 0.8;
    // Spans that give no ticks fail and leave the outputs alone.
    QTest::newRow("empty") << 5.0 << 5.0 << false << -1.0 << -1.0 << -1.0;
    QTest::newRow("reversed") << 5.0 << 1.0 << false << -1.0 << -1.0 << -1.0;
    QTest::newRow("NaN") << nan << 1.0 << false << -1.0 << -1.0 << -1.0;
}

void TestChCoord::niceRange()
{
    QFETCH(double, min);
    QFETCH(double, max);
    QFETCH(bool, ok);
    QFETCH(double, step);
    QFETCH(double, first);
    QFETCH(double, last);
    double s = -1, f = -1, l = -1;
    QCOMPARE(ChCoord::niceRange(min, max, &s, &f, &l), ok);
    QCOMPARE(s, step);
    QCOMPARE(f + 0.0, first + 0.0); // -0 and 0 alike
    QCOMPARE(l, last);
}

void TestChCoord::mode_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("mode");

    const int S = Qt::ShiftModifier, C = Qt::ControlModifier, A = Qt::AltModifier;
    const char *keyNames[] = {"none", "S", "C", "A", "SC", "SA", "CA", "SCA"};
    const int keys[] = {0, S, C, A, S | C, S | A, C | A, S | C | A};
    for (int i = 0; i < 8; ++i) {
        QTest::addRow("left %s", keyNames[i]) << int(Qt::LeftButton) << keys[i] << i;
        QTest::addRow("right %s", keyNames[i]) << int(Qt::RightButton) << keys[i] << 8 + i;
    }
    QTest::newRow("middle") << int(Qt::MiddleButton) << 0 << 16;
    QTest::newRow("middle with keys") << int(Qt::MiddleButton) << (S | C | A) << 16;
    QTest::newRow("left and right held") << int(Qt::LeftButton | Qt::RightButton) << 0 << 16;
    // Keys outside the three do not count.
    QTest::newRow("left keypad meta") << int(Qt::LeftButton) << int(Qt::KeypadModifier | Qt::MetaModifier) << 0;
    QTest::newRow("right control meta") << int(Qt::RightButton) << (C | int(Qt::MetaModifier)) << 10;
}

void TestChCoord::mode()
{
    QFETCH(int, button);
    QFETCH(int, modifiers);
    QFETCH(int, mode);
    QCOMPARE(MouseC::mode(button, modifiers), mode);
}

QTEST_GUILESS_MAIN(TestChCoord)
#include "tst_chcoord.moc"
