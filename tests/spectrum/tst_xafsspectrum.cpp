#include "spectrum/XafsSpectrum.h"
#include "support/RefXafs.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <limits>
#include <vector>

using Values = QVector<double>;

namespace {

constexpr double kHc = 12398.424360387684;

// Items "a,b,c" separated by blanks, each split into its numbers.
QVector<Values> tuples(const char *text)
{
    QVector<Values> out;
    for (const QString &item : QString(text).split(' ', Qt::SkipEmptyParts)) {
        Values v;
        for (const QString &n : item.split(','))
            v << n.toDouble();
        out << v;
    }
    return out;
}

XafsSpectrum analysed(const Spectrum &src, const SuggestElm &elm = SuggestElm())
{
    return XafsSpectrum(src, "t", 1, 0, elm);
}

// An absorption spectrum around an edge at e0: a falling Victoreen-like
// background, an arctan step of height 1 that slowly loses height above the
// edge, and uniform noise from a fixed LCG.
Spectrum synthetic(double e0, double dx, int n, double noise, double shift = 0)
{
    Spectrum s;
    quint32 seed = 20240611u;
    for (int i = 0; i < n; ++i) {
        const double e = e0 - 0.4 * n * dx + i * dx, l = kHc / e;
        seed = seed * 1664525u + 1013904223u;
        const double u = double(seed >> 8) / double(1u << 24) * 2.0 - 1.0;
        const double step = 0.5 + std::atan((e - e0) / 2.0) / M_PI;
        s.addPoint(e + shift, 0.2 + 0.05 * l * l * l + step * (1 - 2e-4 * (e - e0)) + noise * u);
    }
    return s;
}

// The independent analysis of a curve, with the element's checks.
RefXafs reference(const Spectrum &src, const SuggestElm &elm)
{
    std::vector<double> es, ys;
    for (const QPointF &p : src.points)
        es.push_back(p.x()), ys.push_back(p.y());
    return RefXafs(es, ys, RefElm{elm.use, elm.edgeEV, elm.preEnd, elm.postStart, elm.thJumpSigma});
}

} // namespace

class TestXafsSpectrum : public QObject
{
    Q_OBJECT
private slots:
    void stepEdge_data();
    void stepEdge();
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
    void read_data();
    void read();
};

void TestXafsSpectrum::stepEdge_data()
{
    QTest::addColumn<double>("dx");
    QTest::addColumn<double>("slope");
    QTest::addColumn<double>("jump");
    // Smoothing over 5 points turns the step at X into a ramp 0.2 .. 0.8 of
    // the height at X-2dx .. X+dx, so a, b, c = X-2dx, X-dx, X with d = 0.3,
    // 0.1, -0.1 of the height: m1 = m3 = X-0.5dx, m2 = X-1.5dx; mean X-2.5/3 dx.
    QTest::newRow("flat, 2 eV, small") << 2.0 << 0.0 << 0.01;
    QTest::newRow("falling background") << 1.0 << -1e-3 << 0.7;
    QTest::newRow("rising background") << 1.0 << 2e-3 << 1.5;
    // A falling jump is widened: each line moves 0.55 of the gap away.
    QTest::newRow("inverted jump") << 1.0 << -0.01 << -0.2;
}

void TestXafsSpectrum::stepEdge()
{
    QFETCH(double, dx);
    QFETCH(double, slope);
    QFETCH(double, jump);
    Spectrum src;
    for (int i = -60; i <= 60; ++i)
        src.addPoint(9000 + i * dx, slope * i * dx + 3 + (i >= 0 ? jump : 0.0));
    XafsSpectrum lines; // fresh: an analysis leaves corrected forms that shift the gap
    for (const QPointF &p : src.points)
        lines.addPoint(p.x(), p.y());
    QVERIFY(lines.fitLines(9000, 1));
    const double move = jump < 0 ? -0.55 * jump : 0.0, at0 = 3 - 9000 * slope;
    QVERIFY(std::abs(lines.pre.intercept - (at0 + move)) < 1e-6);
    QVERIFY(std::abs(lines.post.intercept - (at0 + jump - move)) < 1e-6);
    QVERIFY(std::abs(lines.pre.slope - slope) < 1e-9 && std::abs(lines.post.slope - slope) < 1e-9);
    if (jump < 0)
        return;
    const XafsSpectrum s = analysed(src);
    QVERIFY(std::abs(s.midx - (9000 - 2.5 / 3 * dx)) < 1e-6 * dx);
    QVERIFY(std::abs(s.dMut - jump) < 1e-6 * jump);
    QCOMPARE(s.midRatio, 0.5);
    QVERIFY(!s.midxOutOfRange && !s.midxNoisy);
    QVERIFY(std::abs(s.doubleNormPre.points.first().y()) < 1e-6);
    QVERIFY(std::abs(s.doubleNormPre.points.last().y() - 1) < 1e-6);
    QVERIFY(std::abs(s.normPostPlus1.points.last().y() - 1) < 1e-6);
}

void TestXafsSpectrum::findMidxFewPoints_data()
{
    QTest::addColumn<QByteArray>("points"); // x,smoothed; pre = 0
    QTest::addColumn<double>("postSlope");
    QTest::addColumn<double>("postIntercept");
    QTest::addColumn<double>("expected");
    // Crossing at i = 1: a, b, c = 1, 2, 3, d = 2, 0, -2: m1 = 2, m2 = 1 (from a), m3 = 2.
    QTest::newRow("3 points") << QByteArray("1,0 2,2 3,4") << 0.0 << 4.0 << 5.0 / 3;
    // No crossing: best = 0, a = 0 (no point), b = 1, c = 3; d = -2, -1.5, -0.5:
    // m1 = 4, m2 = 3, m3 = 4.
    QTest::newRow("2 points") << QByteArray("1,2 3,2") << 1.0 << 0.0 << 11.0 / 3;
    QTest::newRow("3 points, none rises") << QByteArray("1,2 3,2 5,2") << 1.0 << 0.0 << 11.0 / 3;
}

void TestXafsSpectrum::findMidxFewPoints()
{
    QFETCH(QByteArray, points);
    QFETCH(double, postSlope);
    QFETCH(double, postIntercept);
    QFETCH(double, expected);
    XafsSpectrum s;
    for (const Values &p : tuples(points)) {
        s.addPoint(p[0], p[1]);
        s.smoothY << p[1];
    }
    s.smoothValid = true;
    s.post.slope = postSlope;
    s.post.intercept = postIntercept;
    QVERIFY(std::abs(s.findMidx(0.5) - expected) < 1e-12);
}

void TestXafsSpectrum::analyzeFewPoints_data()
{
    QTest::addColumn<Values>("ys");
    QTest::addColumn<bool>("use");
    for (int n = 0; n <= 3; ++n)
        for (bool use : {false, true})
            QTest::addRow("%d%s", n, use ? ", suggested" : "") << Values{1, 2, 4}.mid(0, n) << use;
    QTest::newRow("3 falling") << Values{4, 2, 1} << false;
}

// Short spectra go through every step without reading past a list (the
// sanitizer build checks the reads) and every search ends.
void TestXafsSpectrum::analyzeFewPoints()
{
    QFETCH(Values, ys);
    QFETCH(bool, use);
    Spectrum src;
    for (int i = 0; i < ys.size(); ++i)
        src.addPoint(8980 + i, ys[i]);
    SuggestElm elm;
    elm.use = use;
    elm.edgeEV = 8981;
    const XafsSpectrum s = analysed(src, elm);
    QCOMPARE(s.doubleNormPre.size(), ys.size());
    QCOMPARE(s.normPost.size(), ys.size());
    QCOMPARE(s.midRatio, ys.isEmpty() ? 0.0 : 0.5);
    if (ys.isEmpty())
        QCOMPARE(s.midx, 0.0);
    else // every smoothing window holds all points: the rough edge is the first one
        QCOMPARE(s.pre.e2, 8980.0 + (use ? -20 : -10));
    if (use && (s.midxOutOfRange || s.midxNoisy))
        QCOMPARE(s.midx, 8981.0);
    const XafsSpectrum copy = s;
    // Minimum step 0, a step of 0, a vast range and an infinite step must
    // all end.
    s.searchDE(copy, 1, 0.5, 0);
    s.searchDE(copy, 1, 0, 0);
    s.searchDE(copy, 1e300, 1, 0.5);
    s.searchDE(copy, 1, std::numeric_limits<double>::infinity(), 0.5);
}

void TestXafsSpectrum::realistic_data()
{
    QTest::addColumn<double>("noise");
    QTest::addColumn<bool>("use");
    QTest::addColumn<double>("edgeShift");   // edgeEV - e0
    QTest::addColumn<double>("thJumpSigma"); // < 0: between the two noise figures
    QTest::addColumn<bool>("failed");
    QTest::newRow("whole spectrum") << 0.002 << false << 0.0 << 1.0 << false;
    QTest::newRow("suggested, inside") << 0.002 << true << 5.36 << 1.0 << false;
    // The window starts above the steepest rise: the edge found lies below it.
    QTest::newRow("suggested, window cuts the edge") << 0.002 << true << 21.0 << 1.0 << true;
    QTest::newRow("suggested, beyond the window") << 0.002 << true << 40.0 << 1.0 << true;
    QTest::newRow("suggested, between noise figures") << 0.0 << true << 0.0 << -1.0 << false;
    QTest::newRow("suggested, noisy") << 0.002 << true << 0.0 << 1e6 << true;
}

// The whole analysis against the reference.
void TestXafsSpectrum::realistic()
{
    QFETCH(double, noise);
    QFETCH(bool, use);
    QFETCH(double, edgeShift);
    QFETCH(double, thJumpSigma);
    QFETCH(bool, failed);
    const double e0 = 8979;
    const Spectrum src = synthetic(e0, 1, 500, noise);
    SuggestElm elm;
    elm.use = use;
    elm.edgeEV = e0 + edgeShift;
    const RefXafs r = reference(src, elm);
    QVERIFY(r.post.at(r.rough) > r.pre.at(r.rough)); // no widening in these rows
    if (thJumpSigma < 0) { // one noise comparison holds, the other not
        QVERIFY(std::abs(r.pre.rms - r.post.rms) > 0.1 * r.pre.rms);
        thJumpSigma = r.rawDMut / std::sqrt(r.pre.rms * r.post.rms);
    }
    elm.thJumpSigma = thJumpSigma;
    const XafsSpectrum s = analysed(src, elm);
    QCOMPARE(s.pre.e2, r.pre.e2);
    QVERIFY(std::abs(s.pre.lineValueAt(r.rough) - r.pre.at(r.rough)) < 1e-7);
    QVERIFY(std::abs(s.post.lineValueAt(r.rough) - r.post.at(r.rough)) < 1e-7);
    QVERIFY(std::abs(s.pre.rms - r.pre.rms) < 1e-6 && std::abs(s.post.rms - r.post.rms) < 1e-6);
    const bool outOfRange =
        use && (r.rawMidx > elm.edgeEV + elm.postStart || r.rawMidx < elm.edgeEV + elm.preEnd);
    const bool noisy = use && r.rawDMut < thJumpSigma * r.pre.rms && r.rawDMut < thJumpSigma * r.post.rms;
    QCOMPARE(outOfRange || noisy, failed);
    QCOMPARE(s.midxOutOfRange, outOfRange);
    QCOMPARE(s.midxNoisy, noisy);
    QVERIFY(std::abs(s.midx - (failed ? elm.edgeEV : r.rawMidx)) < 1e-5);
    QVERIFY(std::abs(s.dMut - (failed ? 0.0 : r.rawDMut)) < 1e-5);
    if (!failed) // physically: edge near e0, jump near 1
        QVERIFY(std::abs(s.midx - e0) < 1.5 && std::abs(r.rawDMut - 1) < 0.1);
    for (int i = 0; i < src.size(); i += 37)
        QVERIFY(std::abs(s.doubleNormPre.points[i].y() - r.norm(i)) < 1e-4);
}

void TestXafsSpectrum::searchDE_data()
{
    QTest::addColumn<double>("shift");      // the copy lies this much higher
    QTest::addColumn<bool>("centreAtZero"); // midx of the copy forced to the standard's
    QTest::addColumn<double>("step");
    QTest::addColumn<double>("expected");
    QTest::addColumn<double>("tol");
    // Range 5: passes at steps 0.5, 0.05, 0.005 over +-5, +-0.5, +-0.05.
    QTest::newRow("natural centre") << -2.7 << false << 0.5 << -2.7 << 0.003;
    // Every pass scans around the fixed centre 0: +-0.5 never reaches 1.3,
    // so the first pass's 1.5 stays.
    QTest::newRow("finer passes stay at the centre") << 1.3 << true << 0.5 << 1.5 << 1e-9;
    QTest::newRow("third pass reaches") << -0.022 << true << 0.5 << -0.02 << 1e-6;
    QTest::newRow("step below minimum") << 1.3 << false << 0.001 << 0.0 << 0.0;
}

void TestXafsSpectrum::searchDE()
{
    QFETCH(double, shift);
    QFETCH(bool, centreAtZero);
    QFETCH(double, step);
    QFETCH(double, expected);
    QFETCH(double, tol);
    // On a 0.3 eV grid no fit range ends on a point: both fits take the same points.
    const XafsSpectrum standard = analysed(synthetic(8979, 0.3, 300, 0.001));
    XafsSpectrum target = analysed(synthetic(8979, 0.3, 300, 0.001, shift));
    if (centreAtZero)
        target.midx = standard.midx;
    const double found = target.searchDE(standard, 5, step, 0.005);
    QVERIFY2(std::abs(found - expected) <= tol, qPrintable(QString::number(found, 'g', 10)));
    QVERIFY(std::abs(target.innerProduct(shift, standard) - 1) < 1e-9);
    // Nothing overlaps an empty standard: the first candidate wins.
    if (step >= 0.005)
        QCOMPARE(target.searchDE(XafsSpectrum(), 5, step, 0.005), target.midx - 5);
}

void TestXafsSpectrum::writtenReadsBack_data()
{
    QTest::addColumn<bool>("subtract");
    QTest::newRow("raw") << false;
    QTest::newRow("offset subtracted") << true;
}

void TestXafsSpectrum::writtenReadsBack()
{
    QFETCH(bool, subtract);
    QTemporaryDir dir;
    const XafsSpectrum s(synthetic(8979, 1, 120, 0.002), "w", 1, 2.5, SuggestElm());
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
    QVERIFY(back.read(path) && back.isMuteFormat);
    QCOMPARE(back.size(), 120);
    for (int i = 0; i < 120; ++i) {
        const double x = s.points[i].x() - (subtract ? 2.5 : 0.0);
        const double y = s.doubleNormPre.points[i].y();
        QVERIFY(std::abs(back.points[i].x() - x) <= 1e-5 * std::abs(x));
        QVERIFY(std::abs(back.points[i].y() - y) <= 1e-5 * std::abs(y) + 1e-300);
    }
}

void TestXafsSpectrum::read_data()
{
    QTest::addColumn<QString>("where"); // empty: a file holding text
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<double>("d");          // 9809 lattice spacing; 0: two columns
    QTest::addColumn<QByteArray>("points"); // x,y or angle,i0,i1

    QByteArray binary(200000, 0); // no blanks, no line breaks
    for (int i = 0; i < binary.size(); ++i)
        binary[i] = char(0x80 + (i * 7919) % 0x7f);
    QByteArray huge;
    for (int i = 0; i < 1000001; ++i)
        huge.append("1 2\n");
    const QString f;
    QTest::newRow("empty") << f << QByteArray() << false << 0.0 << QByteArray();
    QTest::newRow("binary") << f << binary << false << 0.0 << QByteArray();
    QTest::newRow("one column") << f << QByteArray("1\n2\n3\n") << false << 0.0 << QByteArray();
    QTest::newRow("comments only") << f << QByteArray("# 1 2\n#x y\n") << false << 0.0 << QByteArray();
    QTest::newRow("non-numeric reads as 0") << f << QByteArray("abc 2\n3 x\n") << true << 0.0
                                            << QByteArray("0,2 3,0");
    QTest::newRow("extra columns, tabs, CRLF") << f << QByteArray(" 1\t2 9\r\n\r\n3  4\r\n") << true
                                               << 0.0 << QByteArray("1,2 3,4");
    // The cut remainder of an overlong line is dropped; the next line counts.
    QTest::newRow("overlong line") << f << QByteArray(10000, '7') + " 1\n3 4\n" << true << 0.0
                                   << QByteArray("3,4");
    QTest::newRow("too many points") << f << huge << false << 0.0 << QByteArray();
    QTest::newRow("missing") << "missing.dat" << QByteArray() << false << 0.0 << QByteArray();
    QTest::newRow("directory") << "/" << QByteArray() << false << 0.0 << QByteArray();
    QTest::newRow("endless device") << "/dev/zero" << QByteArray() << false << 0.0 << QByteArray();

    const QByteArray head = "  9809     AichiSR   BL5S1\nsample Cu foil\n";
    const QByteArray rows = "1 14.2 14.2 1000 400 9\n2 14.1 14.1 2000 500\n";
    const QByteArray two = "14.2,1000,400 14.1,2000,500";
    QTest::newRow("9809 default spacing") << f << head + "Offset 1 2 3\n" + rows << true << 3.13553 << two;
    QTest::newRow("9809 D= in the header")
        << f << head + "Mono : Si(111) D= 3.1356 A\nOffset 0\n" + rows << true << 3.1356 << two;
    QTest::newRow("9809 D= as last field is ignored") << f << head + "Mono D=\nOffset\n" + rows
                                                      << true << 3.13553 << two;
    // A dead or negative channel gives log 1 = flat 1.
    QTest::newRow("9809 short lines and a dead channel")
        << f << head + "Offset\n1 14.2 x 1000\n\n2 14.0 14.0 0 300\n3 13.9 13.9 -5 300\n" << true
        << 3.13553 << QByteArray("14.0,0,300 13.9,-5,300");
    QTest::newRow("9809 no Offset") << f << head + rows << true << 3.13553 << QByteArray();
}

void TestXafsSpectrum::read()
{
    QFETCH(QString, where);
    QFETCH(QByteArray, text);
    QFETCH(bool, ok);
    QFETCH(double, d);
    QFETCH(QByteArray, points);
    QTemporaryDir dir;
    QString path = where.startsWith('/') ? where : dir.filePath(where.isEmpty() ? "in" : where);
    if (where == "/")
        path = dir.path();
    if (where.isEmpty()) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    }
    XafsSpectrum s;
    s.addPoint(1, 1); // stale content must go
    QCOMPARE(s.load(path), ok);
    QCOMPARE(s.isMuteFormat, d == 0);
    const QVector<Values> expected = tuples(points);
    QCOMPARE(s.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        const Values &p = expected[i];
        if (d == 0) {
            QCOMPARE(s.points[i], QPointF(p[0], p[1]));
            continue;
        }
        QVERIFY(std::abs(s.points[i].x() - kHc / (2 * d * std::sin(p[0] * M_PI / 180))) < 1e-6);
        QVERIFY(std::abs(s.points[i].y() - (p[1] * p[2] > 0 ? std::log(p[1] / p[2]) : 1.0)) < 1e-12);
        QCOMPARE(s.i0Curve.points[i].y(), p[1]);
        QCOMPARE(s.i1Curve.points[i].y(), p[2]);
    }
}

QTEST_GUILESS_MAIN(TestXafsSpectrum)
#include "tst_xafsspectrum.moc"
