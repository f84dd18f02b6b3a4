#include "spectrum/XafsSpectrum.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <vector>

using Values = QVector<double>;

namespace {

constexpr double kHc = 12398.424360387684;

Spectrum curveOf(const Values &xs, const Values &ys)
{
    Spectrum s;
    for (int i = 0; i < xs.size(); ++i)
        s.addPoint(xs[i], ys[i]);
    return s;
}

// An absorption spectrum as a beamline records it around an edge at e0: a
// falling Victoreen-like background, an arctan step of height 1 that slowly
// loses height above the edge, and uniform noise from a fixed LCG.
Spectrum synthetic(double e0, double dx, int n, double noise)
{
    Spectrum s;
    quint32 seed = 20240611u;
    const double from = e0 - 0.4 * n * dx;
    for (int i = 0; i < n; ++i) {
        const double e = from + i * dx;
        const double l = kHc / e;
        const double step = 0.5 + std::atan((e - e0) / 2.0) / M_PI;
        seed = seed * 1664525u + 1013904223u;
        const double u = double(seed >> 8) / double(1u << 24) * 2.0 - 1.0;
        s.addPoint(e, 0.2 + 0.05 * l * l * l + step * (1 - 2e-4 * (e - e0)) + noise * u);
    }
    return s;
}

// Least-squares straight line of its own over [e1, e2), centred closed form.
struct Line
{
    double a = 0, b = 0, e1 = 0, e2 = 0, rms = 1;
    double at(double e) const { return b * e + a; }
};

Line fitOwn(const std::vector<double> &es, const std::vector<double> &ys, double e1, double e2)
{
    Line ln{0, 0, e1, e2, 1};
    double me = 0, my = 0, sxy = 0, sxx = 0, sum = 0;
    std::vector<size_t> in;
    for (size_t i = 0; i < es.size(); ++i) {
        if (es[i] >= e1 && es[i] < e2) {
            in.push_back(i);
            me += es[i];
            my += ys[i];
        }
    }
    me /= in.size();
    my /= in.size();
    for (size_t i : in) {
        sxy += (es[i] - me) * (ys[i] - my);
        sxx += (es[i] - me) * (es[i] - me);
    }
    ln.b = sxy / sxx;
    ln.a = my - ln.b * me;
    for (size_t i : in)
        sum += (ys[i] - ln.at(es[i])) * (ys[i] - ln.at(es[i]));
    ln.rms = in.empty() ? 1.0 : std::sqrt(sum / in.size());
    return ln;
}

// Straight lines bend toward each other between their ranges: the steeper
// one follows the other's line plus rb / (x + ra), which meets it at its own
// range end with its own value and slope.
double preValue(const Line &pre, const Line &post, double x)
{
    if (x <= pre.e2 || !(pre.b > post.b))
        return pre.at(x);
    const double dS = post.b - pre.b, dB = post.a - pre.a, g = dS * pre.e2 + dB;
    return post.b * x + post.a + (g * g / dS) / (x - (2 * dS * pre.e2 + dB) / dS);
}

double postValue(const Line &pre, const Line &post, double x)
{
    if (x >= post.e1 || !(post.b > pre.b))
        return post.at(x);
    const double dS = post.b - pre.b, dB = post.a - pre.a, g = dS * post.e1 + dB;
    return pre.b * x + pre.a + (-g * g / dS) / (x - (2 * dS * post.e1 + dB) / dS);
}

QString writeFile(const QTemporaryDir &dir, const QString &name, const QByteArray &bytes)
{
    const QString path = dir.filePath(name);
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
        return {};
    return path;
}

} // namespace

class TestXafsSpectrum : public QObject
{
    Q_OBJECT
private slots:
    void stepEdge_data();
    void stepEdge();
    void invertedGapWidens_data();
    void invertedGapWidens();
    void findMidxFewPoints_data();
    void findMidxFewPoints();
    void analyzeFewPoints_data();
    void analyzeFewPoints();
    void realistic_data();
    void realistic();
    void searchDE_data();
    void searchDE();
    void writtenReadsBack_data();
    void writtenReadsBack();
    void read9809_data();
    void read9809();
    void malformed_data();
    void malformed();
};

void TestXafsSpectrum::stepEdge_data()
{
    QTest::addColumn<double>("dx");
    QTest::addColumn<double>("slope");
    QTest::addColumn<double>("height");
    // A sharp step of the given height at x = 9000 on a line, 1 eV grid
    // unless dx says otherwise. Smoothing over 5 points turns the step into
    // the ramp 0.2, 0.4, 0.6, 0.8 of the height at X-2dx .. X+dx; the level
    // half way between the lines is crossed between X-2dx and X with the
    // strongest rise at X-dx, so a = X-2dx, b = X-dx, c = X and
    // d = 0.3, 0.1, -0.1 of the height:
    //   m1 = a + 0.3/0.2 dx = X - 0.5dx, m2 = a + 0.1/0.2 dx = X - 1.5dx,
    //   m3 = a + 0.3 * 2/0.4 dx = X - 0.5dx; midx = X - 2.5/3 dx.
    QTest::newRow("flat, 1 eV") << 1.0 << 0.0 << 1.0;
    QTest::newRow("flat, 2 eV, small") << 2.0 << 0.0 << 0.01;
    QTest::newRow("falling background") << 1.0 << -1e-3 << 0.7;
    QTest::newRow("rising background") << 1.0 << 2e-3 << 1.5;
}

void TestXafsSpectrum::stepEdge()
{
    QFETCH(double, dx);
    QFETCH(double, slope);
    QFETCH(double, height);
    Spectrum src;
    for (int i = -60; i <= 60; ++i) {
        const double x = 9000 + i * dx;
        src.addPoint(x, slope * (x - 9000) + 3 + (i >= 0 ? height : 0.0));
    }
    const XafsSpectrum s(src, "step", 1, 0, SuggestElm());
    QVERIFY(std::abs(s.midx - (9000 - 2.5 / 3 * dx)) < 1e-6 * dx);
    QVERIFY(std::abs(s.dMut - height) < 1e-6 * height);
    QCOMPARE(s.midRatio, 0.5);
    QVERIFY(!s.midxOutOfRange && !s.midxNoisy);
    // Far from the edge the double-normalised curve is 0 below and 1 above.
    QVERIFY(std::abs(s.doubleNormPre.points.first().y()) < 1e-6);
    QVERIFY(std::abs(s.doubleNormPre.points.last().y() - 1) < 1e-6);
    QVERIFY(std::abs(s.normPostPlus1.points.last().y() - 1) < 1e-6);
}

void TestXafsSpectrum::invertedGapWidens_data()
{
    QTest::addColumn<double>("before");
    QTest::addColumn<double>("after");
    QTest::addColumn<double>("slope");
    // fitLines(9000): pre fits 8950..8989, post 9010..9050, both exact.
    // gap = after - before at 9000. If negative, pre moves up by 0.55 |gap|
    // and post down by as much; otherwise nothing moves.
    QTest::newRow("falling by 1") << 1.0 << 0.0 << 0.0;
    QTest::newRow("falling by 0.2 on a slope") << 2.0 << 1.8 << -0.01;
    QTest::newRow("rising is kept") << 0.0 << 1.0 << 0.0;
    QTest::newRow("rising on a slope is kept") << 0.5 << 0.75 << 0.003;
}

void TestXafsSpectrum::invertedGapWidens()
{
    QFETCH(double, before);
    QFETCH(double, after);
    QFETCH(double, slope);
    XafsSpectrum s;
    for (int x = 8950; x <= 9050; ++x)
        s.addPoint(x, slope * x + (x < 9000 ? before : after));
    QVERIFY(s.fitLines(9000, 1));
    const double gap = after - before;
    const double move = gap < 0 ? -0.55 * gap : 0.0;
    QVERIFY(std::abs(s.pre.intercept - (before + move)) < 1e-6);
    QVERIFY(std::abs(s.post.intercept - (after - move)) < 1e-6);
    QVERIFY(std::abs(s.pre.slope - slope) < 1e-9);
    QVERIFY(std::abs(s.post.slope - slope) < 1e-9);
    if (gap < 0) // the gap keeps its sign and grows to 2.1 times
        QVERIFY(std::abs(s.post.lineValueAt(9000) - s.pre.lineValueAt(9000) - 2.1 * gap) < 1e-6);
}

void TestXafsSpectrum::findMidxFewPoints_data()
{
    QTest::addColumn<Values>("xs");
    QTest::addColumn<Values>("smoothed");
    QTest::addColumn<double>("postSlope");
    QTest::addColumn<double>("postIntercept");
    QTest::addColumn<double>("expected");
    // pre = 0 throughout; smoothed values set by hand.
    // 3 points, post = 4: the crossing at i = 1 gives a, b, c = 1, 2, 3 and
    // d = 2, 0, -2: m1 = 1 + 2*1/2 = 2, m2 = 1 + 0 = 1 (starts at a),
    // m3 = 1 + 2*2/4 = 2; mean 5/3.
    QTest::newRow("3 points") << Values{1, 2, 3} << Values{0, 2, 4} << 0.0 << 4.0 << 5.0 / 3;
    // 2 points: no crossing can be tested, best = 0, so a = 0, b = 1, c = 3.
    // post = x, S = 2: d(E) = E/2 - 2 = -2, -1.5, -0.5.
    // m1 = -2*1/-0.5 = 4, m2 = -1.5*2/-1 = 3, m3 = -2*3/-1.5 = 4; mean 11/3.
    QTest::newRow("2 points") << Values{1, 3} << Values{2, 2} << 1.0 << 0.0 << 11.0 / 3;
    // 3 points without a crossing fall back to best = 0 in the same way.
    QTest::newRow("3 points, none rises") << Values{1, 3, 5} << Values{2, 2, 2} << 1.0 << 0.0
                                          << (4.0 + 3.0 + 4.0) / 3;
}

void TestXafsSpectrum::findMidxFewPoints()
{
    QFETCH(Values, xs);
    QFETCH(Values, smoothed);
    QFETCH(double, postSlope);
    QFETCH(double, postIntercept);
    QFETCH(double, expected);
    XafsSpectrum s;
    for (int i = 0; i < xs.size(); ++i)
        s.addPoint(xs[i], smoothed[i]);
    s.smoothY = smoothed;
    s.smoothValid = true;
    s.post.slope = postSlope;
    s.post.intercept = postIntercept;
    QVERIFY(std::abs(s.findMidx(0.5) - expected) < 1e-12);
}

void TestXafsSpectrum::analyzeFewPoints_data()
{
    QTest::addColumn<Values>("ys");
    QTest::addColumn<bool>("use");
    const Values rising{1, 2, 4};
    for (int n = 0; n <= 3; ++n) {
        QTest::addRow("%d", n) << rising.mid(0, n) << false;
        QTest::addRow("%d, suggested", n) << rising.mid(0, n) << true;
    }
    QTest::newRow("3 falling") << Values{4, 2, 1} << false;
}

// Short spectra must go through every step without reading past a list;
// the sanitizer build checks the reads.
void TestXafsSpectrum::analyzeFewPoints()
{
    QFETCH(Values, ys);
    QFETCH(bool, use);
    Values xs;
    for (int i = 0; i < ys.size(); ++i)
        xs << 8980 + i;
    SuggestElm elm;
    elm.use = use;
    elm.edgeEV = 8981;
    const XafsSpectrum s(curveOf(xs, ys), "short", 1, 0, elm);
    QCOMPARE(s.doubleNormPre.size(), ys.size());
    QCOMPARE(s.normPost.size(), ys.size());
    if (ys.isEmpty()) {
        QCOMPARE(s.midx, 0.0);
        QCOMPARE(s.dMut, 0.0);
        QCOMPARE(s.midRatio, 0.0);
    } else {
        QCOMPARE(s.midRatio, 0.5);
        // With at most 3 points every smoothing window holds all of them:
        // nothing rises, the rough edge is the first point, and the pre
        // range ends 10 eV (or the suggested 20 eV) below it.
        QCOMPARE(s.pre.e2, xs[0] + (use ? -20 : -10));
    }
    // With a suggested element a failed point reports the suggested edge.
    if (use && (s.midxOutOfRange || s.midxNoisy))
        QCOMPARE(s.midx, 8981.0);
    const XafsSpectrum copy = s;
    // The searches must end, whatever they find: a minimum step of 0 lets
    // the step shrink to nothing, a zero step never advances, a vast range
    // has more candidates than any form would ask for.
    s.searchDE(copy, 1, 0.5, 0.01);
    s.searchDE(copy, 1, 0.5, 0);
    s.searchDE(copy, 1, 0, 0);
    s.searchDE(copy, 1e300, 1, 0.5);
    s.innerProduct(0.3, copy);
}

void TestXafsSpectrum::realistic_data()
{
    QTest::addColumn<double>("e0");
    QTest::addColumn<double>("dx");
    QTest::addColumn<double>("noise");
    QTest::addColumn<bool>("use");
    QTest::addColumn<double>("edgeShift");   // edgeEV - e0
    QTest::addColumn<double>("thJumpSigma"); // < 0: between the two noise figures
    QTest::addColumn<bool>("failed");         // expected flag: out of range or noisy

    QTest::newRow("Cu K, 1 eV") << 8979.0 << 1.0 << 0.002 << false << 0.0 << 1.0 << false;
    QTest::newRow("noisier") << 8981.0 << 1.0 << 0.01 << false << 0.0 << 1.0 << false;
    QTest::newRow("suggested, inside") << 8979.0 << 1.0 << 0.002 << true << 5.36 << 1.0
                                       << false;
    // The window 8980 .. 9020 starts on the rising flank, above the steepest
    // rise, which the search must not see; the edge found is below it.
    QTest::newRow("suggested, window cuts the edge") << 8979.0 << 1.0 << 0.002 << true
                                                     << 21.0 << 1.0 << true;
    QTest::newRow("suggested, between noise figures") << 8979.0 << 1.0 << 0.0 << true
                                                      << 0.0 << -1.0 << false;
    // The window 8999 .. 9039 holds no edge: midx falls outside it.
    QTest::newRow("suggested, out of range") << 8979.0 << 1.0 << 0.002 << true << 40.0 << 1.0
                                             << true;
    // A jump of 1 is far below a million times the line noise.
    QTest::newRow("suggested, noisy") << 8979.0 << 1.0 << 0.002 << true << 0.0 << 1e6 << true;
}

// The whole analysis against a computation of its own: smoothing, rough
// edge, both line fits, the crossing and the curves.
void TestXafsSpectrum::realistic()
{
    QFETCH(double, e0);
    QFETCH(double, dx);
    QFETCH(double, noise);
    QFETCH(bool, use);
    QFETCH(double, edgeShift);
    QFETCH(double, thJumpSigma);
    QFETCH(bool, failed);
    const int n = 500;
    const Spectrum src = synthetic(e0, dx, n, noise);
    SuggestElm elm;
    elm.use = use;
    elm.edgeEV = e0 + edgeShift;
    elm.thJumpSigma = thJumpSigma;

    std::vector<double> es(n), ys(n), sm(n);
    for (int i = 0; i < n; ++i) {
        es[i] = src.points[i].x();
        ys[i] = src.points[i].y();
    }
    for (int i = 0; i < n; ++i) {
        double sum = 0;
        int cnt = 0;
        for (int j = std::max(0, i - 2); j <= std::min(n - 1, i + 2); ++j, ++cnt)
            sum += ys[j];
        sm[i] = sum / cnt;
    }
    int from = 0, to = n - 1;
    if (use) {
        from = to = n - 1;
        for (int i = n - 2; i >= 0; --i) { // last assignment is the first match
            const double mid = (es[i] + es[i + 1]) / 2;
            if (mid > elm.edgeEV + elm.preEnd)
                from = i;
            if (mid > elm.edgeEV + elm.postStart)
                to = i;
        }
    }
    int best = 0;
    double rise = 0;
    for (int i = from; i < to; ++i) {
        if (sm[i + 1] - sm[i] > rise) {
            rise = sm[i + 1] - sm[i];
            best = i;
        }
    }
    const double rough = es[best];
    const double preEnd = use ? elm.preEnd : -10, postStart = use ? elm.postStart : 10;
    const Line pre = fitOwn(es, ys, es[0], rough + preEnd);
    // The walk stops at the first point at or above the range end: the last
    // point itself never enters the post fit.
    const Line post = fitOwn(es, ys, rough + postStart, es[n - 1]);
    QVERIFY(post.at(rough) > pre.at(rough)); // no widening in these rows
    auto pv = [&](double e) { return preValue(pre, post, e); };
    auto qv = [&](double e) { return postValue(pre, post, e); };

    int bi = 0;
    double bestRise = 0;
    for (int i = 1; i + 1 < n; ++i) {
        const double level = 0.5 * (pv(es[i]) + qv(es[i]));
        if (sm[i - 1] < level && level < sm[i + 1] && sm[i + 1] - sm[i - 1] > bestRise) {
            bestRise = sm[i + 1] - sm[i - 1];
            bi = i;
        }
    }
    QVERIFY(bi > 0);
    const double a = es[bi - 1], b = es[bi], c = es[bi + 1];
    const double da = 0.5 * (pv(a) + qv(a)) - sm[bi - 1];
    const double db = 0.5 * (pv(b) + qv(b)) - sm[bi];
    const double dc = 0.5 * (pv(c) + qv(c)) - sm[bi + 1];
    const double midx = (a + da * (b - a) / (da - db) + a + db * (c - b) / (db - dc)
                         + a + da * (c - a) / (da - dc)) / 3;
    const double dMut = qv(midx) - pv(midx);

    if (thJumpSigma < 0) {
        // Between the jump in units of the two line noises: one comparison
        // holds, the other not, and only both together make a point noisy.
        QVERIFY(std::abs(pre.rms - post.rms) > 0.1 * pre.rms);
        elm.thJumpSigma = thJumpSigma = dMut / std::sqrt(pre.rms * post.rms);
    }
    const XafsSpectrum s(src, "real", 1, 0, elm);
    const double tol = 1e-7;
    QCOMPARE(s.pre.e2, rough + preEnd);
    QVERIFY(std::abs(s.pre.lineValueAt(rough) - pre.at(rough)) < tol);
    QVERIFY(std::abs(s.post.lineValueAt(rough) - post.at(rough)) < tol);
    QVERIFY(std::abs(s.pre.rms - pre.rms) < 1e-6 && std::abs(s.post.rms - post.rms) < 1e-6);
    const bool outOfRange =
        use && (midx > elm.edgeEV + elm.postStart || midx < elm.edgeEV + elm.preEnd);
    const bool noisy = use && dMut < thJumpSigma * pre.rms && dMut < thJumpSigma * post.rms;
    QCOMPARE(outOfRange || noisy, failed);
    QCOMPARE(s.midxOutOfRange, outOfRange);
    QCOMPARE(s.midxNoisy, noisy);
    if (failed) {
        QCOMPARE(s.midx, elm.edgeEV);
        QCOMPARE(s.dMut, 0.0);
    } else {
        // Physically the edge is near e0 and the jump near 1.
        QVERIFY(std::abs(s.midx - midx) < 1e-5);
        QVERIFY(std::abs(s.midx - e0) < 1.5);
        QVERIFY(std::abs(s.dMut - dMut) < 1e-5);
        QVERIFY(std::abs(dMut - 1) < 0.1);
    }
    QCOMPARE(s.doubleNormPre.size(), n);
    for (int i = 0; i < n; i += 37) {
        const double expected = (ys[i] - pv(es[i])) / (qv(es[i]) - pv(es[i]));
        QVERIFY2(std::abs(s.doubleNormPre.points[i].y() - expected) < 1e-4,
                 qPrintable(QString::number(i)));
    }
}

void TestXafsSpectrum::searchDE_data()
{
    QTest::addColumn<double>("shift");     // the copy lies this much higher
    QTest::addColumn<bool>("centreAtZero"); // midx of the copy forced to the standard's
    QTest::addColumn<double>("step");
    QTest::addColumn<double>("expected");
    QTest::addColumn<double>("tol");
    // Range 5: passes at steps 0.5, 0.05, 0.005 over +-5, +-0.5, +-0.05.
    QTest::newRow("natural centre") << 1.3 << false << 0.5 << 1.3 << 0.003;
    // Centre 0: the second pass covers only +-0.5, so 1.3 keeps the first
    // pass's nearest grid point 1.5 (1.0 is farther).
    QTest::newRow("finer passes stay at the centre") << 1.3 << true << 0.5 << 1.5 << 1e-9;
    QTest::newRow("second pass reaches") << 0.3 << true << 0.5 << 0.3 << 1e-6;
    QTest::newRow("third pass reaches") << -0.022 << true << 0.5 << -0.02 << 1e-6;
    QTest::newRow("falling shift") << -2.7 << false << 0.5 << -2.7 << 0.003;
    QTest::newRow("step below minimum") << 1.3 << false << 0.001 << 0.0 << 0.0;
}

void TestXafsSpectrum::searchDE()
{
    QFETCH(double, shift);
    QFETCH(bool, centreAtZero);
    QFETCH(double, step);
    QFETCH(double, expected);
    QFETCH(double, tol);
    // 0.3 eV: no fit range ends exactly on a grid point, so the copy's fits
    // take the same points as the standard's.
    const Spectrum src = synthetic(8979, 0.3, 300, 0.001);
    Spectrum moved;
    for (const QPointF &p : src.points)
        moved.addPoint(p.x() + shift, p.y());
    const XafsSpectrum standard(src, "std", 1, 0, SuggestElm());
    XafsSpectrum target(moved, "target", 1, 0, SuggestElm());
    if (centreAtZero)
        target.midx = standard.midx;
    const double found = target.searchDE(standard, 5, step, 0.005);
    QVERIFY2(std::abs(found - expected) <= tol, qPrintable(QString::number(found, 'g', 10)));
    // Aligned, the copy matches the standard exactly.
    QVERIFY(std::abs(target.innerProduct(shift, standard) - 1) < 1e-9);
    // Against an empty standard nothing overlaps, every product is 0 and the
    // first candidate of the first pass wins.
    if (step >= 0.005)
        QCOMPARE(target.searchDE(XafsSpectrum(), 5, step, 0.005), target.midx - 5);
}

void TestXafsSpectrum::writtenReadsBack_data()
{
    QTest::addColumn<bool>("subtract");
    QTest::addColumn<double>("offset");
    QTest::newRow("raw") << false << 2.5;
    QTest::newRow("offset subtracted") << true << 2.5;
    QTest::newRow("no offset") << true << 0.0;
}

void TestXafsSpectrum::writtenReadsBack()
{
    QFETCH(bool, subtract);
    QFETCH(double, offset);
    QTemporaryDir dir;
    const XafsSpectrum s(synthetic(8979, 1, 120, 0.002), "w", 1, offset, SuggestElm());
    const QString path = dir.filePath("w.dat");
    s.save(path, subtract);
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadOnly | QIODevice::Text));
    const QList<QByteArray> lines = f.readAll().split('\n');
    QCOMPARE(lines.size(), 7 + 120 + 1); // the last line break leaves an empty item
    QCOMPARE(lines[0], QByteArray("###Tessarelle::XafsSpectrum"));
    QCOMPARE(lines[1], "# midx    : " + QByteArray::number(s.midx, 'g', 6));
    QCOMPARE(lines[3], QString::asprintf("# pre   vic : %g %g %g %g", s.pre.intercept, s.pre.slope,
                                         s.pre.c3, s.pre.c4).toLatin1());
    QCOMPARE(lines[6], QByteArray("# x  double-normalized-pre-base y pre post"));
    QCOMPARE(lines[7].split('\t').size(), 5);

    XafsSpectrum back;
    back.setup("back", SuggestElm());
    QVERIFY(back.read(path));
    QVERIFY(back.isMuteFormat);
    QCOMPARE(back.size(), 120);
    for (int i = 0; i < 120; ++i) {
        const double x = s.points[i].x() - (subtract ? offset : 0.0);
        const double y = s.doubleNormPre.points[i].y();
        QVERIFY(std::abs(back.points[i].x() - x) <= 1e-5 * std::abs(x));
        QVERIFY(std::abs(back.points[i].y() - y) <= 1e-5 * std::abs(y) + 1e-300);
    }
}

void TestXafsSpectrum::read9809_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("d");          // lattice spacing the reader must use
    QTest::addColumn<Values>("angles");     // of the points expected, degrees
    QTest::addColumn<Values>("i0s");
    QTest::addColumn<Values>("i1s");

    const QByteArray head = "  9809     AichiSR   BL5S1\nsample Cu foil\n";
    const QByteArray rows = "1 14.2 14.2 1000 400 9\n2 14.1 14.1 2000 500\n";
    QTest::newRow("default spacing") << head + "Offset 1 2 3\n" + rows << 3.13553
                                     << Values{14.2, 14.1} << Values{1000, 2000}
                                     << Values{400, 500};
    QTest::newRow("D= in the header")
        << head + "Mono : Si(111) D= 3.1356 A\nOffset 0\n" + rows << 3.1356
        << Values{14.2, 14.1} << Values{1000, 2000} << Values{400, 500};
    QTest::newRow("D= as last field is ignored") << head + "Mono D=\nOffset\n" + rows << 3.13553
                                                 << Values{14.2, 14.1} << Values{1000, 2000}
                                                 << Values{400, 500};
    QTest::newRow("short lines and a dead channel")
        << head + "Offset\n1 14.2 x 1000\n\n2 14.0 14.0 0 300\n3 13.9 13.9 -5 300\n" << 3.13553
        << Values{14.0, 13.9} << Values{0, -5} << Values{300, 300};
    QTest::newRow("no Offset") << head + rows << 3.13553 << Values{} << Values{} << Values{};
    QTest::newRow("first line only") << QByteArray("9809") << 3.13553 << Values{} << Values{}
                                     << Values{};
}

void TestXafsSpectrum::read9809()
{
    QFETCH(QByteArray, text);
    QFETCH(double, d);
    QFETCH(Values, angles);
    QFETCH(Values, i0s);
    QFETCH(Values, i1s);
    QTemporaryDir dir;
    const QString path = writeFile(dir, "scan.9809", text);
    XafsSpectrum s;
    s.addPoint(1, 1); // stale content must go
    QVERIFY(s.read(path));
    QVERIFY(!s.isMuteFormat);
    QCOMPARE(s.size(), angles.size());
    QCOMPARE(s.i0Curve.size(), angles.size());
    QCOMPARE(s.i1Curve.size(), angles.size());
    for (int i = 0; i < angles.size(); ++i) {
        const double e = kHc / (2 * d * std::sin(angles[i] * M_PI / 180));
        const double y = i0s[i] * i1s[i] > 0 ? std::log(i0s[i] / i1s[i]) : 1.0;
        QVERIFY(std::abs(s.points[i].x() - e) < 1e-6);
        QVERIFY(std::abs(s.points[i].y() - y) < 1e-12);
        QCOMPARE(s.i0Curve.points[i].y(), i0s[i]);
        QCOMPARE(s.i1Curve.points[i].y(), i1s[i]);
    }
}

void TestXafsSpectrum::malformed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<Values>("xs");
    QTest::addColumn<Values>("ys");

    QByteArray binary;
    for (int i = 0; i < 200000; ++i)
        binary.append(char(0x80 + (i * 7919) % 0x7f)); // no blanks, no line breaks
    QByteArray huge;
    huge.reserve(4 * 1000001);
    for (int i = 0; i < 1000001; ++i)
        huge.append("1 2\n");

    QTest::newRow("empty") << QByteArray() << false << Values{} << Values{};
    QTest::newRow("binary") << binary << false << Values{} << Values{};
    QTest::newRow("one column") << QByteArray("1\n2\n3\n") << false << Values{} << Values{};
    QTest::newRow("comments only") << QByteArray("# 1 2\n#x y\n") << false << Values{} << Values{};
    QTest::newRow("non-numeric reads as 0") << QByteArray("abc 2\n3 x\n") << true << Values{0, 3}
                                            << Values{2, 0};
    QTest::newRow("extra columns, tabs, CRLF") << QByteArray(" 1\t2 9\r\n\r\n3  4\r\n") << true
                                               << Values{1, 3} << Values{2, 4};
    // A line far too long is cut and its remainder dropped; the next line counts.
    QTest::newRow("overlong line") << QByteArray(10000, '7') + " 1\n3 4\n" << true << Values{3}
                                   << Values{4};
    QTest::newRow("too many points") << huge << false << Values{} << Values{};
}

void TestXafsSpectrum::malformed()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, ok);
    QFETCH(Values, xs);
    QFETCH(Values, ys);
    QTemporaryDir dir;
    const QString path = writeFile(dir, "in.dat", text);
    XafsSpectrum s;
    QCOMPARE(s.load(path), ok);
    QVERIFY(s.isMuteFormat);
    QCOMPARE(s.size(), xs.size());
    for (int i = 0; i < xs.size(); ++i) {
        QCOMPARE(s.points[i].x(), xs[i]);
        QCOMPARE(s.points[i].y(), ys[i]);
    }
    // Unreadable paths behave like empty files.
    XafsSpectrum t;
    QVERIFY(!t.load(dir.filePath("missing.dat")));
    QVERIFY(!t.load(dir.path()));
    if (QFile::exists("/dev/zero")) // endless: must be refused, not read
        QVERIFY(!t.load("/dev/zero"));
    QCOMPARE(t.size(), 0);
}

QTEST_GUILESS_MAIN(TestXafsSpectrum)
#include "tst_xafsspectrum.moc"
