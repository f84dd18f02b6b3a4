#include "analysis/ElemNames.h"
#include "analysis/ElemsAnalysis.h"
#include "analysis/ElemsCorrelation.h"

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

} // namespace

class TestElemsAnalysis : public QObject
{
    Q_OBJECT
private slots:
    void elems_data();
    void elems();
    void names_data();
    void names();
    void correlation_data();
    void correlation();
};

void TestElemsAnalysis::elems_data()
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

void TestElemsAnalysis::elems()
{
    QFETCH(QString, conds);
    QFETCH(QString, bg);
    QFETCH(int, mainT);
    QFETCH(double, shift);
    QFETCH(QString, expected);
    Spectrum src;
    for (int e = 6900; e <= 9800 && shift >= 0; ++e)
        src.addPoint(e + shift, 1 + (e >= 7112) + 0.0625 * (e >= 8979) + (e > 9659 ? 0.5 : e == 9659 ? 0.25 : 0));
    src.xShiftOn = true;
    src.xShift = shift;
    const XafsSpectrum s(src, "elems", 1, 0, SuggestElm());
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

void TestElemsAnalysis::names_data()
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

void TestElemsAnalysis::names()
{
    QFETCH(QString, text);
    QFETCH(bool, sort);
    QFETCH(QString, expected);
    QStringList got;
    for (const ElemName &n : parseElemNames(text, sort))
        got << QString("%1:%2:%3").arg(n.title).arg(n.z).arg(n.edge);
    QCOMPARE(got.join(' '), expected);
}

void TestElemsAnalysis::correlation_data()
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

void TestElemsAnalysis::correlation()
{
    QFETCH(QString, elems);
    QFETCH(double, corTh);
    QFETCH(QString, single);
    QFETCH(QString, steps);
    QVector<ElemCond> es;
    Values v;
    for (const QString &e : elems.split(' ', Qt::SkipEmptyParts)) {
        const Values n = numbers(QString(e).replace(':', ' '));
        ElemCond c;
        c.use = n[0] != 0;
        c.ratioV = n[1];
        c.stdRatio = n[2];
        es << c;
        v << n[1];
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

QTEST_GUILESS_MAIN(TestElemsAnalysis)
#include "tst_elemsanalysis.moc"
