#include "analysis/ElemNames.h"
#include "analysis/ElemsAnalysis.h"
#include "analysis/ElemsCorrelation.h"
#include "analysis/FeatureSearch.h"
#include "analysis/FeatureValueLists.h"
#include "analysis/ResidualAbsorption.h"

#include <QtTest>

#include <cmath>

using Values = QVector<double>;

namespace {

Values numbers(const QString &text)
{
    Values v;
    for (const QString &n : text.split(' ', Qt::SkipEmptyParts))
        v << n.toDouble();
    return v;
}

bool same(const Values &a, const Values &b)
{
    bool ok = a.size() == b.size();
    for (int i = 0; ok && i < a.size(); ++i)
        ok = (std::isnan(a[i]) && std::isnan(b[i])) || std::fabs(a[i] - b[i]) <= 1e-12 * (1 + std::fabs(b[i]));
    return ok;
}

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

} // namespace

class TestPointAnalyses : public QObject
{
    Q_OBJECT
private slots:
    void elems_data();
    void elems();
    void names_data();
    void names();
    void correlation_data();
    void correlation();
    void feature_data();
    void feature();
    void lists();
};

void TestPointAnalyses::elems_data()
{
    QTest::addColumn<QString>("conds"); // e0/dE/roiS/roiE/th/noNeg per element
    QTest::addColumn<QString>("bg");    // dMut dE roi
    QTest::addColumn<int>("mainT");
    QTest::addColumn<double>("shift"); // -1: an empty spectrum
    // res0 | dMut | NDMut | Mut+ | Mut- | dE | ROI | NROI
    QTest::addColumn<QString>("expected");

    // Steps on a 1 eV grid: 1, then +1 at 7112 (Fe), +0.0625 at 8979 (Cu),
    // +0.5 at 9660 (Zn) with 9659 exactly at its mid level, which counts as
    // crossed; all levels are exact binary fractions. With dE 20 the
    // means cover E0 - 40 .. E0 - 20 and E0 + 20 .. E0 + 40, flat on each side.
    // The crossing lies between E0 - 1 and E0: de = -0.5. Fe's ROI sits above
    // its edge (2 - 1 = 1); Zn's lies below (1 - 2.0625 = -1.0625).
    const QString fe = "7112/20/7120/7130/0.1/0", cu = "8979/20/7000/7010/0.1/0";
    QTest::newRow("Cu below threshold, NoNeg")
        << fe + " " + cu + " 9659/20/7000/7010/0.1/1" << "0 0 -1" << 0 << 0.0
        << "1 0.0625 0.5 | 1 0 0.5 | 1 0 0.5 | 2 0 2.5625 | 1 0 2.0625 | -0.5 0 -0.5 | 1 -1 -1 | 1 -1 -1";
    // Energies read 3 eV below raw x; Zn is the unit; NROI = -1.0625 / 0.5.
    QTest::newRow("shifted, Zn target, background values")
        << fe + " " + cu + " 9659/20/7000/7010/0.1/0" << "0.2 7 -3" << 2 << 3.0
        << "1 0.0625 0.5 | 1 0.2 0.5 | 2 0.4 1 | 2 0.2 2.5625 | 1 0.2 2.0625 | -0.5 7 -0.5 | 1 -3 -1.0625 | 1 -3 -2.125";
    // mainT past the list reads Cu, whose background 0 means a unit of 1.
    QTest::newRow("target past list and 0")
        << cu + " 9659/20/7000/7010/0.1/0" << "0 0 -1" << 9 << 0.0
        << "0.0625 0.5 | 0 0.5 | 0 0.5 | 0 2.5625 | 0 2.0625 | 0 -0.5 | -1 -1.0625 | -1 -2.125";
    // Fe at 7142: its step falls inside the lower mean (10 ones, 11 twos over
    // 7102 .. 7122: 32/21), no crossing near E0 gives de 0; ROI 7100 .. 7104
    // is 1 - 32/21 = -11/21 over a jump of 10/21. Zn's jump equals its
    // threshold: background.
    QTest::newRow("no crossing, jump at threshold")
        << "7142/20/7100/7105/0.1/0 9659/20/7000/7010/0.5/0" << "0 0 -1" << 0 << 0.0
        << "0.476190476190476 0.5 | 0.476190476190476 0 | 1 0 | 2 0 | 1.52380952380952 0"
           " | 0 0 | -0.523809523809524 -1 | -1.1 -1";
    QTest::newRow("no elements") << "" << "0 0 -1" << 0 << 0.0 << "| | | | | | |";
    // Every index is -1: nothing to read, a jump of 0, the background values.
    QTest::newRow("empty spectrum") << fe << "0.5 1 2" << 0 << -1.0 << "0 | 0.5 | 1 | 0.5 | 0.5 | 1 | 2 | 2";
}

void TestPointAnalyses::elems()
{
    QFETCH(QString, conds);
    QFETCH(QString, bg);
    QFETCH(int, mainT);
    QFETCH(double, shift);
    QFETCH(QString, expected);
    const XafsSpectrum s = knotted("6900:1 7111:1 7112:2 8978:2 8979:2.0625 9658:2.0625 9659:2.3125 9660:2.5625 9800:2.5625",
                                   6900, shift < 0 ? 0 : 9800, shift);
    QVector<ElemCond> cs;
    for (const QString &c : conds.split(' ', Qt::SkipEmptyParts)) {
        const Values v = numbers(QString(c).replace('/', ' '));
        cs.append({v[0], v[1], v[2], v[3], v[4], v[5] != 0});
    }
    const Values b = numbers(bg);
    ElemsOutcome out;
    out.elemDE = {5, 6};
    analyzeElems(s, cs, {b[0], b[1], b[2]}, mainT, out);
    const QStringList lists = expected.split('|');
    const QVector<Values> got = {out.res0, out.elemDMut, out.elemNDMut, out.elemMutPlus,
                                 out.elemMutMinus, out.elemDE, out.elemROI, out.elemNROI};
    for (int k = 0; k < 8; ++k)
        QVERIFY2(same(got[k], numbers(lists[k])), qPrintable(QString("list %1: %2").arg(k).arg(got[k].value(0))));
}

void TestPointAnalyses::names_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("sort");
    QTest::addColumn<QString>("expected"); // title:z:edge
    QTest::newRow("commas and blanks") << "Fe, Cu-K,Zn" << false << "Fe-K:26:0 Cu-K:29:0 Zn-K:30:0";
    QTest::newRow("edges, sorted") << " Zn Pb-LIII,,Fe-l2 " << true << "Fe-l2:26:2 Zn-K:30:0 Pb-LIII:82:3";
    QTest::newRow("unknown symbols dropped") << "Xx, cu -K Fe" << true << "Fe-K:26:0";
    QTest::newRow("empty") << " , " << true << "";
    // The sort swaps: H trades places with the first Fe, which thereby falls
    // behind the second; equals keep the order they have at that moment.
    QTest::newRow("equal z after a swap") << "Fe-K Fe-L3 H" << true << "H-K:1:0 Fe-L3:26:3 Fe-K:26:0";
    QTest::newRow("unsorted keeps order") << "Zn Fe D" << false << "Zn-K:30:0 Fe-K:26:0 D-K:110:0";
}

void TestPointAnalyses::names()
{
    QFETCH(QString, text);
    QFETCH(bool, sort);
    QFETCH(QString, expected);
    QStringList got;
    for (const ElemName &n : parseElemNames(text, sort))
        got << QString("%1:%2:%3").arg(n.title).arg(n.z).arg(n.edge);
    QCOMPARE(got.join(' '), expected);
}

void TestPointAnalyses::correlation_data()
{
    QTest::addColumn<QString>("elems"); // use:ratio:std per element
    QTest::addColumn<double>("corTh");
    QTest::addColumn<QString>("single"); // calcCorrelation, empty when it gives none
    QTest::addColumn<QString>("steps");  // cor:corTh after each used element
    // (1, 0) against (1, 1): 1 / sqrt(2) at the end; the first step sees one pair.
    QTest::newRow("partial sums") << "1:1:1 0:5:1 1:0:1" << 0.5 << "0.707106781186548" << "1:1 0.707106781186548:0.707106781186548";
    QTest::newRow("below threshold") << "1:1:1 0:5:1 1:0:1" << 0.9 << "0.707106781186548" << "1:1 0.707106781186548:0";
    // (1, 0.5) against (2, 1): proportional, 2.5 / sqrt(1.25 * 5).
    QTest::newRow("proportional, at threshold") << "1:1:2 1:0.5:1" << 1.0 << "1" << "1:1 1:1";
    QTest::newRow("none in use") << "0:1:1 0:2:2" << 0.5 << "" << "";
    QTest::newRow("zero ratios") << "1:0:1 1:0:2" << 0.5 << "" << "0:0 0:0";
    QTest::newRow("NaN ratio") << "1:1:1 1:nan:1" << 0.5 << "" << "1:1 0:0";
}

void TestPointAnalyses::correlation()
{
    QFETCH(QString, elems);
    QFETCH(double, corTh);
    QFETCH(QString, single);
    QFETCH(QString, steps);
    QVector<ElemCond> es;
    Values v;
    const Values n = numbers(QString(elems).replace(':', ' '));
    for (int i = 0; i + 2 < n.size(); i += 3) {
        es.append({0, 0, 0, 0, 0, false, n[i] != 0, n[i + 1], n[i + 2]});
        v << n[i + 1];
    }
    double cor = -7;
    QCOMPARE(calcCorrelation(es, cor), !single.isEmpty());
    QVERIFY(same({cor}, {single.isEmpty() ? -7 : single.toDouble()}));
    QVector<CorStep> got;
    pointCorrelation(v, es, corTh, got);
    Values flat;
    for (const CorStep &s : got)
        flat << s.cor << s.corTh;
    QVERIFY(same(flat, numbers(QString(steps).replace(':', ' '))));
}

void TestPointAnalyses::feature_data()
{
    QTest::addColumn<QString>("knots");
    QTest::addColumn<int>("to");       // the grid runs from the first knot at 1 eV
    QTest::addColumn<double>("shift");
    QTest::addColumn<double>("p1");    // edge for the feature search, factor for the residual
    QTest::addColumn<double>("p2");    // elimReg, or atEV
    QTest::addColumn<QString>("known"); // dM e1 e2, or raDMut raScaled raRest; "-" unchecked

    // Residual: background 0.5 + 0.001 (E - 9000) under a jump of 2 at 9000;
    // the lines are parallel, so neither bends toward the other.
    const QString ra = "8900:0.4 8999:0.499 9000:2.5 9100:2.6";
    QTest::newRow("residual, factor 1 at the edge") << ra << 9100 << 0.0 << 1.0 << 9000.0 << "2 2 -1.5";
    QTest::newRow("residual, factor 0: pre alone") << ra << 9100 << 0.0 << 0.0 << 9050.0 << "2 0 0.55";
    // The shift goes in twice: pre is read at 9000 - 6.
    QTest::newRow("residual, half, shifted by 3") << ra << 9100 << 3.0 << 0.5 << 9000.0 << "2 1 -0.506";
    QTest::newRow("residual, below the spectrum") << ra << 9100 << 0.0 << 2.0 << 8000.0 << "2 4 -4.5";

    // Edge at 9000 over a pre line 1 + 0.001 (E - 9000), white line top 3 at
    // 9010, valley 2 at 9020, rise of 0.05 / eV to 9032, a second rise from
    // 9040. Smoothed over 5 points: 2.82, 2.84, 2.8, 2.7 at 9010 .. 9013, so
    // the first double fall starts at 9011, 2.84 - 1.011 above the pre line;
    // 2.09, 2.08, 2.1, 2.15 at 9020 .. 9023: the rise at 9021. The second
    // rise shows from 9038 on, inside the window that ends at 9050.
    const QString white = "8900:0.9 9000:1 9010:3 9020:2 9032:2.6 9040:2.6 9048:3 9100:3";
    QTest::newRow("white line") << white << 9100 << 0.0 << 9000.0 << 1.0 << "1.829 9011 9021";
    QTest::newRow("elimReg 0") << white << 9100 << 0.0 << 9000.0 << 0.0 << "1.829 9011 9021";
    QTest::newRow("elimReg 15") << white << 9100 << 0.0 << 9000.0 << 15.0 << "1.829 9011 9027";
    QTest::newRow("elimReg 25") << white << 9100 << 0.0 << 9000.0 << 25.0 << "1.829 9011 9038";
    // The fall search starts 10 eV below the edge: 9008.
    QTest::newRow("edge at 9018") << white << 9100 << 0.0 << 9018.0 << 1.0 << "1.829 9011 9021";
    // Positions are raw x; the window is placed on raw x too, the lines are
    // read at energies.
    QTest::newRow("shifted by 3") << white << 9100 << 3.0 << 9000.0 << 1.0 << "1.829 9014 9024";
    // No fall: e2 is the first double rise from the start, where the ramp
    // begins to show in the smoothed curve.
    QTest::newRow("ramp, no feature") << "8900:1 9000:1 9010:2 9100:2" << 9100 << 0.0 << 9000.0 << 1.0 << "0 0 8998";
    QTest::newRow("no rise after") << "8900:1 9000:1 9010:3 9020:2 9100:2" << 9100 << 0.0 << 9000.0 << 1.0 << "- 9011 0";
    // Cut at 9030 and searched beyond 9028.5: the smoothed end 2.4, 2.425,
    // 2.45 rises at 9029, but the value after the last point is missing and
    // fails the test.
    QTest::newRow("list ends in the rise") << white << 9030 << 0.0 << 9000.0 << 17.5 << "- 9011 0";
    // Smoothed 4, 3.5, 3, 2.5, 2: only index 2 may start a fall.
    QTest::newRow("5 points falling") << "9000:5 9004:1" << 9004 << 0.0 << 9000.0 << 0.0 << "- 9002 0";
    // Smoothed 2, 2.5, 2.5, 3, and 2, 2, 2: no double rise, none read past the end.
    QTest::newRow("4 points rising") << "9000:1 9004:5" << 9003 << 0.0 << 9000.0 << -9999.0 << "0 0 0";
    QTest::newRow("3 points") << "9000:1 9004:5" << 9002 << 0.0 << 9000.0 << -9999.0 << "0 0 0";
    QTest::newRow("1 point") << "9000:1 9004:5" << 9000 << 0.0 << 9000.0 << 0.0 << "0 0 0";
    QTest::newRow("empty") << "9000:1 9004:5" << 8999 << 0.0 << 9000.0 << 0.0 << "0 0 0";
}

void TestPointAnalyses::feature()
{
    QFETCH(QString, knots);
    QFETCH(int, to);
    QFETCH(double, shift);
    QFETCH(double, p1);
    QFETCH(double, p2);
    QFETCH(QString, known);
    const XafsSpectrum s = knotted(knots, knots.section(':', 0, 0).toInt(), to, shift);
    SuggestElm se;
    se.edgeEV = p1;
    const FeatureValue fv = analyzeFV(s, se, p2);
    const RaResult r = analyzeRA(s, p1, p2);
    const bool residual = QString(QTest::currentDataTag()).startsWith("residual");
    QStringList got;
    for (double v : residual ? Values{r.raDMut, r.raScaled, r.raRest} : Values{fv.dM, fv.e1, fv.e2})
        got << QString::number(v, 'g', 9);
    const QStringList want = known.split(' ');
    for (int k = 0; k < 3; ++k)
        got[k] = want[k] == "-" ? "-" : got[k];
    QCOMPARE(got, want);
}

void TestPointAnalyses::lists()
{
    FeatureValueLists l;
    for (int round = 0; round < 2; ++round) { // the second round after clear()
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

QTEST_GUILESS_MAIN(TestPointAnalyses)
#include "tst_pointanalyses.moc"
