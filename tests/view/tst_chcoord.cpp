#include "view/ChCoord.h"
#include "view/MouseC.h"

#include <QtTest>

// Coordinate conversion, tick spacing and mouse modes under every drawing surface.
class TestChCoord : public QObject
{
    Q_OBJECT
private slots:
    void conversions_data();
    void conversions();
    void margins_data();
    void margins();
    void ticks_data();
    void ticks();
    void mode_data();
    void mode();
};

using Q = QVector<double>; // x0, y0, x1, y1
using P = QPointF;

void TestChCoord::conversions_data()
{
    QTest::addColumn<Q>("plot");
    QTest::addColumn<Q>("real");
    QTest::addColumn<QPointF>("r");
    QTest::addColumn<QPointF>("s"); // screen position of r
    QTest::addColumn<QPointF>("sd"); // r as a distance on screen; NaN: s is off the plot
    const QPointF off(qQNaN(), qQNaN());

    // 2 pixels per unit both ways: 50 -> 100, 30 -> 60.
    QTest::newRow("image, y down") << Q{0, 0, 400, 300} << Q{0, 0, 200, 150} << P(50, 30) << P(100, 60) << P(100, 60);
    // x: 340 px over 200 eV: 40 + 1.7 * 50 = 125, distance 1.7 * 7050.
    // y runs up from 270 to 15: 270 + (-127.5) * 0.5 = 206.25, distance -63.75.
    QTest::newRow("graph, y up") << Q{40, 270, 380, 15} << Q{7000, 0, 7200, 2} << P(7050, 0.5) << P(125, 206.25)
                                 << P(11985, -63.75);
    // x: -10 px per unit from 10, 2.5 -> 75; y: -10 px per unit from 4, -1 -> 50.
    QTest::newRow("reversed real ranges") << Q{0, 0, 100, 80} << Q{10, 4, 0, -4} << P(2.5, -1) << P(75, 50)
                                          << P(-25, 10);

    // Off the plot, the real value is clamped to the real range.
    QTest::newRow("left and above") << Q{0, 0, 100, 100} << Q{0, 0, 100, 100} << P(0, 0) << P(-20, -5) << off;
    // Real ends high first: (130, 105) px map to (-30, -5), (-20, -5) to (120, 105).
    QTest::newRow("reversed, low side") << Q{0, 0, 100, 100} << Q{100, 100, 0, 0} << P(0, 0) << P(130, 105) << off;
    QTest::newRow("reversed, high side") << Q{0, 0, 100, 100} << Q{100, 100, 0, 0} << P(100, 100) << P(-20, -5) << off;
    // Screen y running up: 300 px at the bottom is y = 0.
    QTest::newRow("y up, below the plot") << Q{0, 300, 100, 0} << Q{0, 0, 10, 3} << P(5, 0) << P(50, 350) << off;
}

void TestChCoord::conversions()
{
    QFETCH(Q, plot);
    QFETCH(Q, real);
    QFETCH(QPointF, r);
    QFETCH(QPointF, s);
    QFETCH(QPointF, sd);
    ChCoord c;
    c.setPlotRegion(plot[0], plot[1], plot[2], plot[3]);
    c.setRealRange(real[0], real[1], real[2], real[3]);
    QCOMPARE(QPointF(c.s2rxLimited(s.x()), c.s2ryLimited(s.y())), r);
    if (qIsNaN(sd.x()))
        return;
    QCOMPARE(QPointF(c.r2sx(r.x()), c.r2sy(r.y())), s);
    QCOMPARE(QPointF(c.r2sdx(r.x()), c.r2sdy(r.y())), sd);
    QCOMPARE(QPointF(c.s2rx(s.x()), c.s2ry(s.y())), r);
    QCOMPARE(QPointF(c.s2rdx(sd.x()), c.s2rdy(sd.y())), r);
}

void TestChCoord::margins_data()
{
    QTest::addColumn<Q>("window");
    QTest::addColumn<Q>("plot");

    // Margins L 0.1, R 0.05, T 0.05, B 0.1 of 400 x 300: 40, 20, 15, 30.
    QTest::newRow("y down") << Q{0, 0, 400, 300} << Q{40, 15, 380, 270};
    // y up: h = -300, sY0 = 300 + trunc(-15) = 285, sY1 = 0 - trunc(-30) = 30.
    QTest::newRow("y up") << Q{0, 300, 400, 0} << Q{40, 285, 380, 30};
    // 333: 33.3 -> 33, 16.65 -> 16 (truncated toward zero both ways).
    QTest::newRow("odd size, y up") << Q{0, 333, 333, 0} << Q{33, 317, 317, 33};
}

void TestChCoord::margins()
{
    QFETCH(Q, window);
    QFETCH(Q, plot);
    ChCoord c;
    c.setWindow(window[0], window[1], window[2], window[3]);
    c.applyMargins();
    QCOMPARE(Q({c.sX0, c.sY0, c.sX1, c.sY1}), plot);
    QCOMPARE(Q({c.winX0, c.winY0, c.winX1, c.winY1}), window);
}

void TestChCoord::ticks_data()
{
    // {min, max}: niceRange's step, first, last, or empty: fails, outputs untouched.
    // {span, base, minPixels}: nextStep on an axis whose 100 pixels span span.
    QTest::addColumn<Q>("in");
    QTest::addColumn<Q>("out");

    // d = 8.5, u = 1, k = 7: 2; ticks 4 .. 10 inside 3.2 .. 11.7.
    QTest::newRow("3.2..11.7") << Q{3.2, 11.7} << Q{2, 4, 10};
    // d = 600, u = 100, k = 5: 100.
    QTest::newRow("energies") << Q{7000, 7600} << Q{100, 7000, 7600};
    // d = 1000, u = 1000, k = 0: 200; ceil(-0.15) = 0.
    QTest::newRow("-30..970") << Q{-30, 970} << Q{200, 0, 800};
    // d = 95, u = 10, k = 8: the table's last cell, 20.
    QTest::newRow("0..95") << Q{0, 95} << Q{20, 0, 80};
    // d = 0.3, u = 0.1, k = 2: 0.05.
    QTest::newRow("0.5..0.8") << Q{0.5, 0.8} << Q{0.05, 0.5, 0.8};
    QTest::newRow("empty") << Q{5, 5} << Q{};
    QTest::newRow("reversed") << Q{5, 1} << Q{};
    QTest::newRow("NaN") << Q{qQNaN(), 1} << Q{};

    // 0.125 px per unit: more than 25 px needs a step above 200 (200 gives 25).
    QTest::newRow("step strictly more") << Q{800, 1, 25} << Q{500};
    // 10 px per unit: above 2.5 units; 0.1 x {1,2,5,10,20} fall short, 0.1 x 50.
    QTest::newRow("step fractional base") << Q{10, 0.1, 25} << Q{5};
    // 1e-10 px per unit: nothing up to 5e7 reaches 20 px.
    QTest::newRow("step beyond the table") << Q{1e12, 1, 20} << Q{1e8};
    // A reversed axis counts the spacing as a length.
    QTest::newRow("step reversed axis") << Q{-800, 1, 25} << Q{500};
}

void TestChCoord::ticks()
{
    QFETCH(Q, in);
    QFETCH(Q, out);
    if (in.size() == 3) {
        ChCoord c;
        c.setPlotRegion(0, 0, 100, 100);
        c.setRealRange(0, 0, in[0], 1);
        QCOMPARE(c.nextStep(in[1], int(in[2])), out[0]);
        return;
    }
    double s = -1, f = -1, l = -1;
    QCOMPARE(ChCoord::niceRange(in[0], in[1], &s, &f, &l), !out.isEmpty());
    const Q got{s, f + 0.0, l}; // -0 and 0 alike
    for (int i = 0; i < 3; ++i)
        QCOMPARE(got[i], out.value(i, -1.0));
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
