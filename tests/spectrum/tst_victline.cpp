#include "spectrum/VictLine.h"

#include <QtTest>

#include <cmath>

using Points = QVector<QPointF>;

namespace {

const double kHc = 12398.424360387684;

Spectrum curveOf(const Points &pts)
{
    Spectrum s;
    for (const QPointF &p : pts)
        s.addPoint(p.x(), p.y());
    return s;
}

// y = slope x + intercept at x = from, from + 1, ..., to.
Points straight(double slope, double intercept, int from, int to)
{
    Points pts;
    for (int x = from; x <= to; ++x)
        pts.append(QPointF(x, slope * x + intercept));
    return pts;
}

double victoreen(double a, double b, double c, double e)
{
    const double l = kHc / e;
    return a + b * l * l * l + c * l * l * l * l;
}

// A straight line with the given fields, as if fitted.
VictLine lineWith(double slope, double intercept, double e1, double e2, int form = 2)
{
    VictLine v;
    v.slope = slope;
    v.intercept = intercept;
    v.e1 = e1;
    v.e2 = e2;
    v.correctedForm = form;
    return v;
}

bool near(double a, double b, double tol)
{
    return std::fabs(a - b) <= tol;
}

} // namespace

class TestVictLine : public QObject
{
    Q_OBJECT
private slots:
    void lineFit_data();
    void lineFit();
    void victoreenFit_data();
    void victoreenFit();
    void rationalValues_data();
    void rationalValues();
    void rationalJoinsSmoothly_data();
    void rationalJoinsSmoothly();
    void cubic_data();
    void cubic();
    void cubicSingularIsLogged();
    void bezier_data();
    void bezier();
};

void TestVictLine::lineFit_data()
{
    QTest::addColumn<Points>("pts");
    QTest::addColumn<double>("shift"); // applied as xShift when non-zero
    QTest::addColumn<double>("e1");
    QTest::addColumn<double>("e2");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<double>("slope");
    QTest::addColumn<double>("intercept");
    QTest::addColumn<int>("nFit");
    QTest::addColumn<double>("rms");

    // y = 2x + 1; [2, 6) takes x = 2..5
    QTest::newRow("exact line") << straight(2, 1, 0, 9) << 0.0 << 2.0 << 6.0 << true << 2.0 << 1.0 << 4 << 0.0;
    // only x = 3 in range: level 7, no slope
    QTest::newRow("one point") << straight(2, 1, 0, 9) << 0.0 << 3.0 << 3.5 << false << 0.0 << 7.0 << 1 << 0.0;
    QTest::newRow("empty range") << straight(2, 1, 0, 9) << 0.0 << 20.0 << 30.0 << false << 0.0 << 0.0 << 0 << 1.0;
    // x̄ 1.5, ȳ 0.5, Sxy 1, Sxx 5: slope 0.2, intercept 0.2;
    // residuals -0.2 0.6 -0.6 0.2: rms sqrt(0.8 / 4)
    QTest::newRow("least squares") << Points{{0, 0}, {1, 1}, {2, 0}, {3, 1}} << 0.0 << 0.0 << 10.0 << true
                                   << 0.2 << 0.2 << 4 << std::sqrt(0.2);
    // The fit stops at x = 9, the first point at or above e2; the residual
    // pass reads every point: residuals 0 0 0 93 91 over 5 points.
    QTest::newRow("walk stops, residual does not")
        << Points{{0, 1}, {1, 3}, {2, 5}, {9, 0}, {3, 100}, {4, 100}} << 0.0 << 0.0 << 5.0 << true << 2.0 << 1.0
        << 5 << std::sqrt((93.0 * 93 + 91.0 * 91) / 5);
    // the point at e2 is neither fitted nor counted for a straight line
    QTest::newRow("open at e2") << Points{{0, 1}, {1, 3}, {2, 5}, {3, 7}, {4, 20}} << 0.0 << 0.0 << 4.0 << true
                                << 2.0 << 1.0 << 4 << 0.0;
    // raw x 10..19 read as energies 0..9
    QTest::newRow("shifted energies") << straight(2, -19, 10, 19) << 10.0 << 0.0 << 5.0 << true << 2.0 << 1.0
                                      << 5 << 0.0;
}

void TestVictLine::lineFit()
{
    QFETCH(Points, pts);
    QFETCH(double, shift);
    QFETCH(double, e1);
    QFETCH(double, e2);
    QFETCH(double, slope);
    QFETCH(double, intercept);
    QFETCH(double, rms);

    Spectrum s = curveOf(pts);
    if (shift != 0) {
        s.xShiftOn = true;
        s.xShift = shift;
    }
    VictLine v;
    QTEST(v.fit(s, e1, e2, 1), "ok");
    QTEST(v.fitOk, "ok");
    QVERIFY(near(v.slope, slope, 1e-12));
    QVERIFY(near(v.intercept, intercept, 1e-12));
    QTEST(v.nFit, "nFit");
    QVERIFY(near(v.rms, rms, 1e-12));
    QVERIFY(near(v.valueAt(100), slope * 100 + intercept, 1e-9));
}

void TestVictLine::victoreenFit_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<double>("c");
    QTest::addColumn<double>("offsetAtE2"); // added to y of a point placed at e2

    QTest::newRow("falling") << 0.5 << 0.02 << -0.001 << 0.0;
    QTest::newRow("lambda^4 only") << 0.0 << 0.0 << 0.01 << 0.0;
    // A point exactly at e2 ends the fit but counts in the residual of a
    // Victoreen line: the 21 points give rms 3 / sqrt(21).
    QTest::newRow("closed at e2") << 0.5 << 0.02 << -0.001 << 3.0;
}

void TestVictLine::victoreenFit()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(double, c);
    QFETCH(double, offsetAtE2);

    // 20 points from 2000 to 11500 eV (lambda 6.2 .. 1.08), then one at e2
    Spectrum s;
    for (int i = 0; i < 20; ++i) {
        const double e = 2000 + 500 * i;
        s.addPoint(e, victoreen(a, b, c, e));
    }
    const double e2 = 12000;
    s.addPoint(e2, victoreen(a, b, c, e2) + offsetAtE2);

    VictLine v;
    v.slope = 42; // a Victoreen fit leaves it alone
    QVERIFY(v.fit(s, 0, e2, 0));
    QVERIFY(near(v.intercept, a, 1e-6));
    QVERIFY(near(v.c3, b, 1e-6));
    QVERIFY(near(v.c4, c, 1e-6));
    QCOMPARE(v.slope, 42.0);
    QCOMPARE(v.nFit, 21);
    QVERIFY(near(v.rms, offsetAtE2 / std::sqrt(21.0), 1e-6));
    QVERIFY(near(v.valueAt(5000), victoreen(a, b, c, 5000), 1e-6));

    // A Victoreen line is never corrected, not even past its range.
    v.correctedOn = true;
    v.genCorrected(lineWith(-1, 0, 0, 1));
    QVERIFY(!v.correctedOn);
    v.genCorrectedInPost(lineWith(-1, 0, 0, 1));
    QVERIFY(!v.correctedOn);
    QVERIFY(near(v.valueAt(20000), victoreen(a, b, c, 20000), 1e-6));

    // Too few points: false at once, nothing touched.
    VictLine few;
    few.intercept = 9;
    few.rms = 4;
    few.fitOk = true;
    QVERIFY(!few.fit(curveOf({{2000, 1}, {3000, 1}, {4000, 1}}), 0, 5000, 0));
    QVERIFY(!few.fitOk);
    QCOMPARE(few.intercept, 9.0);
    QCOMPARE(few.rms, 4.0);
    VictLine fewLine;
    fewLine.slope = 5;
    QVERIFY(!fewLine.fit(curveOf({{1, 1}, {2, 2}}), 0, 5, 1));
    QCOMPARE(fewLine.slope, 5.0);

    // An empty range leaves the normal equations singular.
    VictLine empty;
    QVERIFY(!empty.fit(s, 50000, 60000, 0));
    QCOMPARE(empty.nFit, 0);
    QCOMPARE(empty.rms, 1.0);
}

void TestVictLine::rationalValues_data()
{
    QTest::addColumn<bool>("postSide");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("expected");

    // Pre line 2x on [0, 10], post level 30: dS -2, dB 30, G 10,
    // ra -5, rb -50, so above 10 the value is 30 - 50 / (x - 5).
    QTest::newRow("pre, below e2") << false << 5.0 << 10.0;
    QTest::newRow("pre, at e2 still the line") << false << 10.0 << 20.0;
    QTest::newRow("pre, above e2") << false << 15.0 << 25.0;
    // Post line 2x - 20 on [20, 100], pre level 0: dS 2, dB -20, G 20,
    // ra -30, rb -200, so below 20 the value is 200 / (30 - x).
    QTest::newRow("post, above e1") << true << 25.0 << 30.0;
    QTest::newRow("post, at e1 still the line") << true << 20.0 << 20.0;
    QTest::newRow("post, below e1") << true << 10.0 << 10.0;
}

void TestVictLine::rationalValues()
{
    QFETCH(bool, postSide);
    QFETCH(double, x);
    QFETCH(double, expected);

    VictLine pre = postSide ? lineWith(0, 0, 0, 10) : lineWith(2, 0, 0, 10);
    VictLine post = postSide ? lineWith(2, -20, 20, 100) : lineWith(0, 30, 20, 100);
    VictLine &line = postSide ? post : pre;
    if (postSide)
        post.genCorrectedInPost(pre);
    else
        pre.genCorrected(post);
    QVERIFY(line.correctedOn);
    QCOMPARE(line.correctedAbove, !postSide);
    QVERIFY(near(line.valueAt(x), expected, 1e-12));
}

void TestVictLine::rationalJoinsSmoothly_data()
{
    QTest::addColumn<double>("preSlope");
    QTest::addColumn<double>("preIntercept");
    QTest::addColumn<double>("postSlope");
    QTest::addColumn<double>("postIntercept");

    // pre line e2 = 8980, post line e1 = 9000 throughout
    QTest::newRow("rising pre, flat post") << 1e-4 << -0.5 << 0.0 << 1.0;
    QTest::newRow("steep pre, falling post") << 2e-3 << -17.0 << -1e-4 << 2.5;
    QTest::newRow("pre above post") << 5e-4 << 0.0 << -5e-4 << 8.0;
    // not steeper than the other line: the form is the line itself
    QTest::newRow("parallel") << 1e-4 << 0.0 << 1e-4 << 1.0;
    QTest::newRow("pre flatter") << -1e-4 << 0.0 << 1e-4 << 1.0;
}

void TestVictLine::rationalJoinsSmoothly()
{
    QFETCH(double, preSlope);
    QFETCH(double, preIntercept);
    QFETCH(double, postSlope);
    QFETCH(double, postIntercept);

    VictLine pre = lineWith(preSlope, preIntercept, 8000, 8980);
    VictLine post = lineWith(postSlope, postIntercept, 9000, 10000);
    pre.genCorrected(post);
    post.genCorrectedInPost(pre);
    QVERIFY(pre.correctedOn);
    QVERIFY(post.correctedOn);

    // Leaving the pre line just above e2 and the post line just below e1:
    // same value, and the same slope by finite differences.
    const double h = 1e-3;
    const double preEnd = preSlope * 8980 + preIntercept;
    QVERIFY(near(pre.valueAt(8980 + h), preEnd + preSlope * h, 1e-7));
    QVERIFY(near((pre.valueAt(8980 + 2 * h) - pre.valueAt(8980 + h)) / h, preSlope, 1e-6));
    const double postStart = postSlope * 9000 + postIntercept;
    QVERIFY(near(post.valueAt(9000 - h), postStart - postSlope * h, 1e-7));
    QVERIFY(near((post.valueAt(9000 - h) - post.valueAt(9000 - 2 * h)) / h, postSlope, 1e-6));

    // Far out a line that is steeper than the other runs along the other
    // one, and any other line along itself. Either side bends only when it
    // is the steeper one, so the two never bend together.
    const bool preBends = preSlope > postSlope;
    const bool postBends = postSlope > preSlope;
    const double farUp = 1e7;
    const double preTarget = preBends ? postSlope * farUp + postIntercept : preSlope * farUp + preIntercept;
    QVERIFY(near(pre.valueAt(farUp), preTarget, 1e-2));
    const double farDown = -1e7;
    const double postTarget = postBends ? preSlope * farDown + preIntercept : postSlope * farDown + postIntercept;
    QVERIFY(near(post.valueAt(farDown), postTarget, 1e-2));
}

void TestVictLine::cubic_data()
{
    QTest::addColumn<bool>("postSide");
    QTest::addColumn<double>("thisSlope");
    QTest::addColumn<double>("thisIntercept");
    QTest::addColumn<double>("otherSlope");
    QTest::addColumn<double>("otherIntercept");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("expected");
    QTest::addColumn<bool>("on");

    // Pre 2x ending at 10, post level 30 ending at 20: they meet at 15 < 20,
    // t 0.5, target 30 - 10 * 0.5 = 25 with slope 1. Hermite at the middle:
    // 0.5 * 20 + 0.125 * 10 * 2 + 0.5 * 25 - 0.125 * 10 * 1 = 23.75.
    QTest::newRow("pre, lines meet inside") << false << 2.0 << 0.0 << 0.0 << 30.0 << 15.0 << 23.75 << true;
    // Post level 40 ending at 12: meeting point 20 lies beyond 12, so the
    // target is (40 - 40 + 24 + 20) / 2 = 22 with slope 0; at 11:
    // 0.5 * 20 + 0.125 * 2 * 2 + 0.5 * 22 = 21.5.
    QTest::newRow("pre, lines meet beyond") << false << 2.0 << 0.0 << 0.0 << 40.0 << 11.0 << 21.5 << true;
    // Post x + 10 from 20, pre level 0 from 0: the lines meet at -10, not
    // past 0, so the curve runs from (0, 20) flat to (20, 30) with slope 1:
    // 0.025 x^2 + 20.
    QTest::newRow("post, lines meet outside") << true << 1.0 << 10.0 << 0.0 << 0.0 << 10.0 << 22.5 << true;
    QTest::newRow("post, at the far end") << true << 1.0 << 10.0 << 0.0 << 0.0 << 0.0 << 20.0 << true;
    // Post x - 10: they meet at 10 > 0, so the far end moves out to -20
    // with the pre value 0 and slope 0, near end (20, 10) slope 1. At -10
    // (t 0.25): 0.15625 * 10 - 0.046875 * 40 = -0.3125.
    QTest::newRow("post, far end moved out") << true << 1.0 << -10.0 << 0.0 << 0.0 << -10.0 << -0.3125 << true;
    // The other line at least as steep: nothing is generated.
    QTest::newRow("pre, other steeper") << false << 1.0 << 0.0 << 2.0 << 0.0 << 15.0 << 15.0 << false;
    QTest::newRow("post, other as steep") << true << 1.0 << 0.0 << 1.0 << 5.0 << 10.0 << 10.0 << false;
}

void TestVictLine::cubic()
{
    QFETCH(bool, postSide);
    QFETCH(double, thisSlope);
    QFETCH(double, thisIntercept);
    QFETCH(double, otherSlope);
    QFETCH(double, otherIntercept);
    QFETCH(double, x);
    QFETCH(double, expected);
    QFETCH(bool, on);

    const int cubicForm = 0;
    VictLine line;
    if (postSide) {
        line = lineWith(thisSlope, thisIntercept, 20, 100, cubicForm);
        line.genCorrectedInPost(lineWith(otherSlope, otherIntercept, 0, 10));
    } else {
        const double otherEnd = otherIntercept == 40 ? 12 : 20;
        line = lineWith(thisSlope, thisIntercept, 0, 10, cubicForm);
        line.genCorrected(lineWith(otherSlope, otherIntercept, 15, otherEnd));
    }
    QCOMPARE(line.correctedOn, on);
    QVERIFY2(near(line.valueAt(x), expected, 1e-9), qPrintable(QString::number(line.valueAt(x), 'g', 17)));
}

void TestVictLine::cubicSingularIsLogged()
{
    // Both ends at the same energy: the 4x4 rows repeat, so the
    // decomposition and the back substitution fail.
    VictLine pre = lineWith(2, 0, 0, 10, 0);
    const VictLine post = lineWith(0, 30, 10, 10);
    QTest::ignoreMessage(QtDebugMsg, "make  LU (2) false in VictLine genCorrectedInPost");
    QTest::ignoreMessage(QtDebugMsg, "solve UV (2) false in VictLine genCorrectedInPost");
    pre.genCorrected(post);
    QVERIFY(!pre.correctedOn);
    QCOMPARE(pre.valueAt(15), 30.0); // the plain line
}

void TestVictLine::bezier_data()
{
    QTest::addColumn<bool>("postSide");
    QTest::addColumn<double>("otherIntercept");
    QTest::addColumn<bool>("on");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("expected");

    // Pre 2x ending at 10, post level 30 ending at 20: D 10, r 0.25, d 0.25,
    // v 28.75; control points (10,20) (10.25,20.5) (19.75,28.75) (20,28.75).
    // At t 0.5 the weights 1/8 3/8 3/8 1/8 give (15, 24.5625).
    QTest::newRow("pre") << false << 30.0 << true << 15.0 << 24.5625;
    QTest::newRow("pre, start") << false << 30.0 << true << 10.0 << 20.0;
    // level 300: r = 280 / 20 / 2 = 7 > 1, no room for a curve
    QTest::newRow("pre, too far") << false << 300.0 << false << 15.0 << 30.0;
    // Post 2x - 20 from 20, pre level 0 from 10: D -20, r 0.5, d 0.5,
    // v 5; control points (10,5) (10.5,5) (19.5,19) (20,20); at t 0.5
    // (15, 12.125).
    QTest::newRow("post") << true << 0.0 << true << 15.0 << 12.125;
    QTest::newRow("post, start") << true << 0.0 << true << 10.0 << 5.0;
}

void TestVictLine::bezier()
{
    QFETCH(bool, postSide);
    QFETCH(double, otherIntercept);
    QFETCH(bool, on);
    QFETCH(double, x);
    QFETCH(double, expected);

    const int bezierForm = 1;
    VictLine line;
    if (postSide) {
        line = lineWith(2, -20, 20, 100, bezierForm);
        line.genCorrectedInPost(lineWith(0, otherIntercept, 10, 15));
    } else {
        line = lineWith(2, 0, 0, 10, bezierForm);
        line.genCorrected(lineWith(0, otherIntercept, 15, 20));
    }
    QCOMPARE(line.correctedOn, on);
    QCOMPARE(line.size(), on ? 100 : 0);
    if (on)
        QCOMPARE(line.ctrlPts.size(), 4);
    QVERIFY2(near(line.valueAt(x), expected, 1e-9), qPrintable(QString::number(line.valueAt(x), 'g', 17)));
}

QTEST_APPLESS_MAIN(TestVictLine)
#include "tst_victline.moc"
