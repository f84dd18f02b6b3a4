#include "spectrum/VictLine.h"

#include <QtTest>

#include <cmath>
#include <cstring>

using Points = QVector<QPointF>;
using Values = QVector<double>;

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

// A straight line {slope, intercept, e1, e2} as if fitted.
VictLine lineWith(const Values &d, int form = 2)
{
    VictLine v;
    v.slope = d[0];
    v.intercept = d[1];
    v.e1 = d[2];
    v.e2 = d[3];
    v.correctedForm = form;
    return v;
}

bool near(double a, double b, double tol)
{
    return std::fabs(a - b) <= tol;
}

// Bit for bit, NaN included.
bool sameFit(const VictLine &a, const VictLine &b)
{
    const double x[] = {a.slope, a.intercept, a.c3, a.c4, a.rms};
    const double y[] = {b.slope, b.intercept, b.c3, b.c4, b.rms};
    return std::memcmp(x, y, sizeof x) == 0 && a.nFit == b.nFit && a.fitOk == b.fitOk;
}

// The fit told that the energies rise (the bisected run) against the scan.
bool risingAgrees(const Spectrum &s, double e1, double e2, int lineType)
{
    VictLine scanned, walked;
    scanned.fit(s, e1, e2, lineType);
    walked.fit(s, e1, e2, lineType, true);
    return sameFit(scanned, walked);
}

// valuesAt over energies from..to in steps of 0.5 (the ends of the range
// among them) against valueAt one by one, bit for bit.
bool runAgrees(const VictLine &v, double from, double to)
{
    Values x, got;
    for (double e = from; e <= to; e += 0.5)
        x.append(e);
    got.resize(x.size());
    v.valuesAt(x.constData(), int(x.size()), got.data());
    for (qsizetype i = 0; i < x.size(); ++i) {
        const double want = v.valueAt(x[i]);
        if (std::memcmp(&want, &got[i], sizeof want) != 0)
            return false;
    }
    return true;
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
    void corrected_data();
    void corrected();
    void rationalJoinsSmoothly_data();
    void rationalJoinsSmoothly();
    void cubicSingularIsLogged();
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
    const Points line = straight(2, 1, 0, 9);
    // Only x = 3 in range: level 7, no slope.
    QTest::newRow("one point") << line << 0.0 << 3.0 << 3.5 << false << 0.0 << 7.0 << 1 << 0.0;
    QTest::newRow("empty range") << line << 0.0 << 20.0 << 30.0 << false << 0.0 << 0.0 << 0 << 1.0;
    // Fewer than 3 points: refused before anything is touched.
    QTest::newRow("two points") << Points{{1, 1}, {2, 2}} << 0.0 << 0.0 << 5.0 << false << 0.0 << 0.0
                                << 0 << 0.0;
    // Mean x 1.5, y 0.5, Sxy 1, Sxx 5; residuals -0.2 0.6 -0.6 0.2.
    QTest::newRow("least squares") << Points{{0, 0}, {1, 1}, {2, 0}, {3, 1}} << 0.0 << 0.0 << 10.0
                                   << true << 0.2 << 0.2 << 4 << std::sqrt(0.2);
    // The fit stops at x = 9, the first point at or above e2; the residual
    // pass reads every point: residuals 0 0 0 93 91 over 5 points.
    QTest::newRow("walk stops, residual does not")
        << Points{{0, 1}, {1, 3}, {2, 5}, {9, 0}, {3, 100}, {4, 100}} << 0.0 << 0.0 << 5.0 << true
        << 2.0 << 1.0 << 5 << std::sqrt((93.0 * 93 + 91.0 * 91) / 5);
    QTest::newRow("open at e2") << Points{{0, 1}, {1, 3}, {2, 5}, {3, 7}, {4, 20}} << 0.0 << 0.0
                                << 4.0 << true << 2.0 << 1.0 << 4 << 0.0;
    // Raw x 10..19 read as energies 0..9.
    QTest::newRow("shifted energies") << straight(2, -19, 10, 19) << 10.0 << 0.0 << 5.0 << true
                                      << 2.0 << 1.0 << 5 << 0.0;
    QTest::newRow("range past both ends") << line << 0.0 << -5.0 << 100.0 << true << 2.0 << 1.0 << 10 << 0.0;
    QTest::newRow("range between points, shifted")
        << straight(2, -19, 10, 19) << 10.0 << 2.5 << 7.5 << true << 2.0 << 1.0 << 5 << 0.0;
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
    s.xShiftOn = shift != 0;
    s.xShift = shift;
    VictLine v;
    QTEST(v.fit(s, e1, e2, 1), "ok");
    QTEST(v.fitOk, "ok");
    QTEST(v.nFit, "nFit");
    QVERIFY(near(v.slope, slope, 1e-12) && near(v.intercept, intercept, 1e-12));
    QVERIFY(near(v.rms, rms, 1e-12));
    QVERIFY(near(v.valueAt(100), slope * 100 + intercept, 1e-9));
    if (s.xRising())
        QVERIFY(risingAgrees(s, e1, e2, 1));
}

void TestVictLine::victoreenFit_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<double>("c");
    QTest::addColumn<double>("offsetAtE2"); // added to y of a point placed at e2
    QTest::newRow("falling") << 0.5 << 0.02 << -0.001 << 0.0;
    // A point at e2 ends the fit but counts in the residual of a Victoreen
    // line: 21 points give rms 3 / sqrt(21).
    QTest::newRow("closed at e2") << 0.0 << 0.0 << 0.01 << 3.0;
}

void TestVictLine::victoreenFit()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(double, c);
    QFETCH(double, offsetAtE2);
    Spectrum s; // 2000 .. 11500 eV, then one at e2 = 12000
    for (int e = 2000; e <= 12000; e += 500)
        s.addPoint(e, victoreen(a, b, c, e) + (e == 12000 ? offsetAtE2 : 0.0));
    VictLine v;
    v.slope = 42; // a Victoreen fit leaves it alone
    QVERIFY(v.fit(s, 0, 12000, 0));
    QVERIFY(near(v.intercept, a, 1e-6) && near(v.c3, b, 1e-6) && near(v.c4, c, 1e-6));
    QCOMPARE(v.slope, 42.0);
    QCOMPARE(v.nFit, 21);
    QVERIFY(near(v.rms, offsetAtE2 / std::sqrt(21.0), 1e-6));
    QVERIFY(risingAgrees(s, 0, 12000, 0));
    QVERIFY(risingAgrees(s, 2000, 11500, 0));
    // Never corrected, not even past its range.
    v.genCorrected(lineWith({-1, 0, 0, 1}));
    QVERIFY(!v.correctedOn);
    v.genCorrectedInPost(lineWith({-1, 0, 0, 1}));
    QVERIFY(!v.correctedOn);
    QVERIFY(near(v.valueAt(20000), victoreen(a, b, c, 20000), 1e-6));
    QVERIFY(runAgrees(v, 5000, 6000));
    // Too few points: false at once, nothing touched; an empty range is singular.
    VictLine few = v;
    QVERIFY(!few.fit(curveOf({{2000, 1}, {3000, 1}, {4000, 1}}), 0, 5000, 0));
    QVERIFY(!few.fitOk && few.intercept == v.intercept && few.rms == v.rms);
    QVERIFY(!v.fit(s, 50000, 60000, 0));
    QCOMPARE(v.nFit, 0);
    QCOMPARE(v.rms, 1.0);
}

void TestVictLine::corrected_data()
{
    QTest::addColumn<int>("form"); // 2 rational, 1 Bezier, 0 cubic
    QTest::addColumn<bool>("postSide");
    QTest::addColumn<Values>("line");  // slope, intercept, e1, e2
    QTest::addColumn<Values>("other");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("expected");
    QTest::addColumn<bool>("on");
    const Values pre2x{2, 0, 0, 10}, post2x{2, -20, 20, 100}, level0{0, 0, 0, 10};
    // Pre 2x to 10, post level 30: dS -2, dB 30, G 10, ra -5, rb -50: 30 - 50 / (x - 5).
    QTest::newRow("rational pre, at e2") << 2 << false << pre2x << Values{0, 30, 20, 100} << 10.0 << 20.0 << true;
    QTest::newRow("rational pre, above") << 2 << false << pre2x << Values{0, 30, 20, 100} << 15.0 << 25.0 << true;
    // Post 2x - 20 from 20, pre level 0: G 20, ra -30, rb -200: 200 / (30 - x).
    QTest::newRow("rational post, at e1") << 2 << true << post2x << level0 << 20.0 << 20.0 << true;
    QTest::newRow("rational post, below") << 2 << true << post2x << level0 << 10.0 << 10.0 << true;
    // Meeting at 15 < 20: t 0.5, target 25 slope 1; Hermite at the middle:
    // 0.5 * 20 + 0.125 * 10 * 2 + 0.5 * 25 - 0.125 * 10 * 1 = 23.75.
    QTest::newRow("cubic pre, meet inside") << 0 << false << pre2x << Values{0, 30, 15, 20} << 15.0 << 23.75 << true;
    // Level 40 ending at 12: meeting at 20 beyond 12, target (24 + 20) / 2 = 22
    // slope 0; at 11: 0.5 * 20 + 0.125 * 2 * 2 + 0.5 * 22 = 21.5.
    QTest::newRow("cubic pre, meet beyond") << 0 << false << pre2x << Values{0, 40, 15, 12} << 11.0 << 21.5 << true;
    // Post x + 10, level 0 meet at -10, not past 0: (0, 20) flat to (20, 30)
    // slope 1, i.e. 0.025 x^2 + 20.
    QTest::newRow("cubic post, meet outside") << 0 << true << Values{1, 10, 20, 100} << level0 << 10.0 << 22.5 << true;
    QTest::newRow("cubic post, far end") << 0 << true << Values{1, 10, 20, 100} << level0 << 0.0 << 20.0 << true;
    // Post x - 10 meets at 10 > 0: far end moves to (-20, 0) flat, near end
    // (20, 10) slope 1; at t 0.25: 0.15625 * 10 - 0.046875 * 40.
    QTest::newRow("cubic post, far end moved") << 0 << true << Values{1, -10, 20, 100} << level0 << -10.0 << -0.3125 << true;
    QTest::newRow("cubic pre, other steeper") << 0 << false << Values{1, 0, 0, 10} << Values{2, 0, 15, 20} << 15.0 << 15.0 << false;
    QTest::newRow("cubic post, other as steep") << 0 << true << Values{1, 0, 20, 100} << Values{1, 5, 0, 10} << 10.0 << 10.0 << false;
    // D 10, r 0.25, d 0.25, v 28.75: control points (10,20) (10.25,20.5)
    // (19.75,28.75) (20,28.75); weights 1/8 3/8 3/8 1/8 at t 0.5.
    QTest::newRow("bezier pre") << 1 << false << pre2x << Values{0, 30, 15, 20} << 15.0 << 24.5625 << true;
    QTest::newRow("bezier pre, start") << 1 << false << pre2x << Values{0, 30, 15, 20} << 10.0 << 20.0 << true;
    // Level 61: r = 41 / 20 / 2 just above 1, no room for a curve.
    QTest::newRow("bezier pre, too far") << 1 << false << pre2x << Values{0, 61, 15, 20} << 15.0 << 30.0 << false;
    // D -20, r 0.5, d 0.5, v 5: (10,5) (10.5,5) (19.5,19) (20,20).
    QTest::newRow("bezier post") << 1 << true << post2x << Values{0, 0, 10, 15} << 15.0 << 12.125 << true;
}

void TestVictLine::corrected()
{
    QFETCH(int, form);
    QFETCH(bool, postSide);
    QFETCH(Values, line);
    QFETCH(Values, other);
    QFETCH(double, x);
    QFETCH(double, expected);
    QFETCH(bool, on);
    VictLine v = lineWith(line, form);
    if (postSide)
        v.genCorrectedInPost(lineWith(other));
    else
        v.genCorrected(lineWith(other));
    QCOMPARE(v.correctedOn, on);
    QVERIFY(!on || v.correctedAbove == !postSide);
    if (form == 1)
        QCOMPARE(v.size(), on ? 100 : 0);
    QVERIFY2(near(v.valueAt(x), expected, 1e-9), qPrintable(QString::number(v.valueAt(x), 'g', 17)));
    QVERIFY(runAgrees(v, v.e1 - 5, v.e2 + 5));
}

void TestVictLine::rationalJoinsSmoothly_data()
{
    QTest::addColumn<double>("preSlope");
    QTest::addColumn<double>("preIntercept");
    QTest::addColumn<double>("postSlope");
    QTest::addColumn<double>("postIntercept");
    QTest::newRow("steep pre, falling post") << 2e-3 << -17.0 << -1e-4 << 2.5;
    QTest::newRow("parallel") << 1e-4 << 0.0 << 1e-4 << 1.0;
    QTest::newRow("pre flatter") << -1e-4 << 0.0 << 1e-4 << 1.0;
}

// Leaving the pre line at e2 = 8980 and the post line at e1 = 9000 keeps
// value and slope; far out the steeper line runs along the other one.
void TestVictLine::rationalJoinsSmoothly()
{
    QFETCH(double, preSlope);
    QFETCH(double, preIntercept);
    QFETCH(double, postSlope);
    QFETCH(double, postIntercept);
    VictLine pre = lineWith({preSlope, preIntercept, 8000, 8980});
    VictLine post = lineWith({postSlope, postIntercept, 9000, 10000});
    pre.genCorrected(post);
    post.genCorrectedInPost(pre);
    const double h = 1e-3, preEnd = preSlope * 8980 + preIntercept;
    QVERIFY(near(pre.valueAt(8980 + h), preEnd + preSlope * h, 1e-7));
    QVERIFY(near((pre.valueAt(8980 + 2 * h) - pre.valueAt(8980 + h)) / h, preSlope, 1e-6));
    const double postStart = postSlope * 9000 + postIntercept;
    QVERIFY(near(post.valueAt(9000 - h), postStart - postSlope * h, 1e-7));
    QVERIFY(near((post.valueAt(9000 - h) - post.valueAt(9000 - 2 * h)) / h, postSlope, 1e-6));
    const VictLine &up = preSlope > postSlope ? post : pre, &down = postSlope > preSlope ? pre : post;
    QVERIFY(near(pre.valueAt(1e7), up.slope * 1e7 + up.intercept, 1e-2));
    QVERIFY(near(post.valueAt(-1e7), down.slope * -1e7 + down.intercept, 1e-2));
    QVERIFY(runAgrees(pre, 8970, 8990) && runAgrees(post, 8990, 9010));
}

// Both ends at the same energy: the 4x4 rows repeat and the solve fails.
void TestVictLine::cubicSingularIsLogged()
{
    VictLine pre = lineWith({2, 0, 0, 10}, 0);
    QTest::ignoreMessage(QtDebugMsg, "make  LU (2) false in VictLine genCorrectedInPost");
    QTest::ignoreMessage(QtDebugMsg, "solve UV (2) false in VictLine genCorrectedInPost");
    pre.genCorrected(lineWith({0, 30, 10, 10}));
    QVERIFY(!pre.correctedOn);
    QCOMPARE(pre.valueAt(15), 30.0); // the plain line
}

QTEST_APPLESS_MAIN(TestVictLine)
#include "tst_victline.moc"
