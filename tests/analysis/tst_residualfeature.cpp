#include "analysis/FeatureSearch.h"
#include "analysis/FeatureValueLists.h"
#include "analysis/ResidualAbsorption.h"

#include <QtTest>

#include <cmath>

namespace {

// A curve on a 1 eV grid over [from, to], straight between the knots
// "e:y e:y ...", energies read shift below raw x.
XafsSpectrum knotted(const QString &knots, int from, int to, double shift)
{
    QVector<QPointF> k;
    for (const QString &p : knots.split(' '))
        k << QPointF(p.section(':', 0, 0).toDouble(), p.section(':', 1).toDouble());
    Spectrum src;
    for (int e = from; e <= to; ++e) {
        int i = 0;
        while (i + 2 < k.size() && k[i + 1].x() <= e)
            ++i;
        src.addPoint(e + shift, k[i].y() + (e - k[i].x()) * (k[i + 1].y() - k[i].y()) / (k[i + 1].x() - k[i].x()));
    }
    src.xShiftOn = true;
    src.xShift = shift;
    return XafsSpectrum(src, "fv", 1, 0, SuggestElm());
}

// Both searches written out again, with the missing values past the end of
// the list failing their test.
FeatureValue searched(const XafsSpectrum &s, double edge, double elim)
{
    const int n = s.size();
    auto x = [&](int i) { return s.points[i].x(); };
    auto m = [&](int i) { return i < n ? s.smoothY[i] : std::nan(""); };
    auto idx = [&](double e) {
        int i = 0;
        while (i + 1 < n && !((x(i) + x(i + 1)) / 2 > e))
            ++i;
        return n ? i : -1;
    };
    FeatureValue f;
    const int a = idx(edge - 10), b = idx(edge + 50);
    int start = 0;
    for (int i = std::max(a, 2); i < std::min(b, n - 2); ++i) {
        const double e = x(i) - s.xShift;
        if (m(i) > m(i + 1) && m(i + 1) > m(i + 2) && m(i) > s.post.valueAt(e)) {
            f = {m(i) - s.pre.valueAt(e), x(i), 0.0};
            start = i;
            break;
        }
    }
    for (int i = start; i < b && b > 0; ++i) {
        if (x(i) > f.e1 + elim && m(i + 1) > m(i) && m(i + 2) > m(i + 1)) {
            f.e2 = x(i);
            break;
        }
    }
    return f;
}

} // namespace

class TestResidualFeature : public QObject
{
    Q_OBJECT
private slots:
    void residual_data();
    void residual();
    void feature_data();
    void feature();
    void lists();
};

void TestResidualFeature::residual_data()
{
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("atEV");
    QTest::addColumn<double>("shift");
    QTest::addColumn<double>("rest"); // the jump is 2 everywhere
    // Background 0.5 + 0.001 (E - 9000) under a jump of 2 at 9000: the lines
    // are parallel, so neither bends toward the other.
    QTest::newRow("factor 1 at the edge") << 1.0 << 9000.0 << 0.0 << 0.5 - 2;
    QTest::newRow("factor 0: pre alone") << 0.0 << 9050.0 << 0.0 << 0.55;
    // The shift goes in twice: pre is read at 9000 - 6.
    QTest::newRow("half, shifted by 3") << 0.5 << 9000.0 << 3.0 << 0.494 - 1;
    QTest::newRow("below the spectrum") << 2.0 << 8000.0 << 0.0 << -0.5 - 4;
}

void TestResidualFeature::residual()
{
    QFETCH(double, factor);
    QFETCH(double, atEV);
    QFETCH(double, shift);
    QFETCH(double, rest);
    const XafsSpectrum s = knotted("8900:0.4 8999:0.499 9000:2.5 9100:2.6", 8900, 9100, shift);
    const RaResult r = analyzeRA(s, factor, atEV);
    QVERIFY2(std::fabs(r.raDMut - 2) < 1e-9 && std::fabs(r.raScaled - 2 * factor) < 1e-9, qPrintable(QString::number(r.raDMut)));
    QVERIFY2(std::fabs(r.raRest - rest) < 1e-9, qPrintable(QString::number(r.raRest, 'g', 17)));
}

void TestResidualFeature::feature_data()
{
    QTest::addColumn<QString>("knots");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<double>("shift");
    QTest::addColumn<double>("edge");
    QTest::addColumn<double>("elimReg");
    QTest::addColumn<QString>("known"); // dM e1 e2 worked out by hand, or empty

    // Edge at 9000 over a pre line 1 + 0.001 (E - 9000), white line top 3 at
    // 9010, valley 2 at 9020, rise of 0.05 / eV to 9032, a second rise from
    // 9040. Smoothed over 5 points: 2.82, 2.84, 2.8, 2.7 at 9010 .. 9013, so
    // the first double fall starts at 9011, 2.84 - 1.011 above the pre line;
    // 2.09, 2.08, 2.1, 2.15 at 9020 .. 9023: the rise at 9021. The second
    // rise shows from 9038 on, inside the window that ends at 9050.
    const QString white = "8900:0.9 9000:1 9010:3 9020:2 9032:2.6 9040:2.6 9048:3 9100:3";
    QTest::newRow("white line") << white << 8900 << 9100 << 0.0 << 9000.0 << 1.0 << "1.829 9011 9021";
    QTest::newRow("elimReg 0") << white << 8900 << 9100 << 0.0 << 9000.0 << 0.0 << "1.829 9011 9021";
    QTest::newRow("elimReg 15") << white << 8900 << 9100 << 0.0 << 9000.0 << 15.0 << "1.829 9011 9027";
    QTest::newRow("elimReg 25") << white << 8900 << 9100 << 0.0 << 9000.0 << 25.0 << "1.829 9011 9038";
    // The fall search starts 10 eV below the edge: 9008.
    QTest::newRow("edge at 9018") << white << 8900 << 9100 << 0.0 << 9018.0 << 1.0 << "1.829 9011 9021";
    // Positions are raw x; the window is placed on raw x too, the lines are
    // read at energies.
    QTest::newRow("shifted by 3") << white << 8900 << 9100 << 3.0 << 9000.0 << 1.0 << "1.829 9014 9024";
    // No fall: e2 is the first double rise from the start, where the ramp
    // begins to show in the smoothed curve.
    QTest::newRow("ramp, no feature") << "8900:1 9000:1 9010:2 9100:2" << 8900 << 9100 << 0.0 << 9000.0 << 1.0 << "0 0 8998";
    QTest::newRow("no rise after") << "8900:1 9000:1 9010:3 9020:2 9100:2" << 8900 << 9100 << 0.0 << 9000.0 << 1.0 << "";
    QTest::newRow("list ends in the rise") << white << 8900 << 9022 << 0.0 << 9000.0 << 1.0 << "";
    QTest::newRow("5 points falling") << "9000:5 9004:1" << 9000 << 9004 << 0.0 << 9000.0 << 0.0 << "";
    QTest::newRow("4 points rising") << "9000:1 9004:5" << 9000 << 9003 << 0.0 << 9000.0 << -9999.0 << "";
    QTest::newRow("3 points") << "9000:1 9004:5" << 9000 << 9002 << 0.0 << 9000.0 << -9999.0 << "";
    QTest::newRow("1 point") << "9000:1 9004:5" << 9000 << 9000 << 0.0 << 9000.0 << 0.0 << "0 0 0";
    QTest::newRow("empty") << "9000:1 9004:5" << 9001 << 9000 << 0.0 << 9000.0 << 0.0 << "0 0 0";
}

void TestResidualFeature::feature()
{
    QFETCH(QString, knots);
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(double, shift);
    QFETCH(double, edge);
    QFETCH(double, elimReg);
    QFETCH(QString, known);
    const XafsSpectrum s = knotted(knots, from, to, shift);
    SuggestElm se;
    se.edgeEV = edge;
    const FeatureValue fv = analyzeFV(s, se, elimReg);
    const FeatureValue want = searched(s, edge, elimReg);
    const QString got = QString("%1 %2 %3").arg(fv.dM, 0, 'g', 12).arg(fv.e1, 0, 'g', 12).arg(fv.e2, 0, 'g', 12);
    QCOMPARE(got, QString("%1 %2 %3").arg(want.dM, 0, 'g', 12).arg(want.e1, 0, 'g', 12).arg(want.e2, 0, 'g', 12));
    if (!known.isEmpty())
        QCOMPARE(got, known);
}

void TestResidualFeature::lists()
{
    FeatureValueLists l;
    for (int round = 0; round < 2; ++round) {
        l.record({1, 9000, 9010});
        l.record({-2, 0, 5});
        l.record({std::nan(""), 1, 3}); // listed and summed, never an extreme
        QCOMPARE(l.dM.values.size(), 3);
        QVERIFY(l.dM.min == -2 && l.dM.max == 1 && std::isnan(l.dM.sum) && std::isnan(l.dM.sumSq));
        QCOMPARE(l.dE12.values, QVector<double>({10, 5, 2}));
        QVERIFY(l.dE12.min == 2 && l.dE12.max == 10 && l.dE12.sum == 17 && l.dE12.sumSq == 129);
        l.clear();
        QVERIFY(l.dM.values.isEmpty() && l.dE12.sum == 0 && l.dE12.sumSq == 0);
        QVERIFY(l.dM.min == 1.7976931348623157e308 && l.dE12.max == -1.7976931348623157e308);
    }
}

QTEST_GUILESS_MAIN(TestResidualFeature)
#include "tst_residualfeature.moc"
