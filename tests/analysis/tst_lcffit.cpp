#include "analysis/CurveWalker.h"
#include "analysis/LcfFit.h"
#include "spectrum/LinAlg.h"

#include <QtTest>

#include <cmath>
#include <cstring>
#include <vector>

using Values = QVector<double>;

namespace {

// Edge shapes of equal height over one falling background: f1 with a white
// line at 9004 eV, f2 without one and 4 eV higher, f3 unrelated, 10 eV lower.
// The steps saturate within a few eV, so all lines fit the same background
// and the normalised mixture is the mixture of the normalised shapes.
double shape(int k, double e)
{
    const double at = k == 1 ? 9000 : k == 2 ? 9004 : 8990;
    return 0.5 - 2e-4 * (e - 9000) + 0.5 * (1 + std::tanh((e - at) / 1.5))
           + (k == 1 ? 0.5 * std::exp(-std::pow((e - 9004) / 2, 2)) : 0.0);
}

// Equal to 1e-9, or both NaN.
bool same(double a, double b)
{
    return std::isnan(a) ? std::isnan(b) : std::fabs(a - b) <= 1e-9 * (1 + std::fabs(b));
}

// "f1 f2@2 !f3": shapes on the reference grid, "@dE" the panel's shift
// (the shape then lies dE higher in raw x), "!" a panel not in use.
QVector<LcfRefInput> references(const QString &text, double step)
{
    QVector<LcfRefInput> refs;
    for (QString item : text.split(' ', Qt::SkipEmptyParts)) {
        const bool use = !item.startsWith('!');
        const double dE = item.remove('!').section('@', 1).toDouble();
        Spectrum src;
        for (double x = 8850; x <= 9150; x += step)
            src.addPoint(x, shape(item.mid(1, 1).toInt(), x - dE));
        src.xShiftOn = true;
        src.xShift = dE;
        refs << LcfRefInput{XafsSpectrum(src, "ref", 1, dE, SuggestElm()), use, 0.5};
    }
    return refs;
}

struct Fit
{
    Values coefs, amps, used;
    double z = 0;
    Spectrum curve;
};

// The fit worked out again: normal equations summed point by point, solved
// by the library solver, then the coefficients, the curve and the residual.
// References are read by bisection here, by walking in the fit.
Fit expected(const XafsSpectrum &s, const QVector<LcfRefInput> &refs, bool mlcf, double lo, double hi, bool cont)
{
    Fit f;
    QVector<LcfRefInput> u;
    for (int k = 0; k < refs.size(); ++k)
        refs[k].inUse ? (u << refs[k], f.used << k) : f.used;
    const int nr = u.size(), off = mlcf ? 2 : 0, m = nr + off;
    double wlo = 0, whi = 1e300;
    for (const LcfRefInput &r : u) {
        lo = std::max(lo, r.spectrum.xMin - r.spectrum.xShift), hi = std::min(hi, r.spectrum.xMax - r.spectrum.xShift);
        wlo = std::max(wlo, r.spectrum.xMin - r.spectrum.xShift), whi = std::min(whi, r.spectrum.xMax - r.spectrum.xShift);
    }
    std::vector<double> a(m * m + 1), b(m + 1), v(m);
    std::vector<double *> rows(m + 1);
    for (int i = 0; i < s.size(); ++i) {
        const double e = s.points[i].x() - s.eOffset;
        for (int j = 0; j < nr; ++j)
            v[off + j] = (off ? u[j].spectrum.doubleNormPost : u[j].spectrum.doubleNormPre).interpolateY(u[j].spectrum.xShift + e);
        if (off)
            v[0] = 1, v[1] = e;
        const double y = off ? s.points[i].y() : s.doubleNormPre.points[i].y();
        for (int j = 0; j < m * m && e >= lo && e <= hi; ++j)
            a[j] += v[j / m] * v[j % m], b[j / m] += j % m ? 0 : v[j / m] * y;
    }
    for (int j = 0; j < m; ++j)
        rows[j] = a.data() + j * m;
    solveInPlace(m, rows.data(), b.data());
    double sum = 0;
    for (int j = 0; j < nr; ++j) {
        sum += b[off + j];
        f.coefs << (off ? std::max(b[off + j], 0.0) : b[j]);
        f.amps << (off ? f.coefs[j] : b[j] * std::max(0.0, s.dMut));
    }
    for (double &c : f.coefs)
        c /= off ? std::max(0.0, sum) : 1.0;
    for (int i = 0; i < s.size(); ++i) {
        const double e = s.points[i].x() - s.eOffset;
        double y = 0;
        for (int j = 0; j < nr; ++j)
            y += (cont ? u[j].ratio : f.coefs[j]) * u[j].spectrum.doubleNormPre.interpolateY(u[j].spectrum.xShift + e);
        if (e >= wlo && e <= whi)
            f.curve.addPoint(e, y);
    }
    int c = 0;
    for (int i = 1; i + 1 < s.doubleNormPre.size(); ++i) {
        const QPointF p = s.doubleNormPre.points[i];
        const double r = p.y() == 0 ? 1.0 : (f.curve.interpolateY(p.x()) - p.y()) / p.y();
        if (p.x() >= lo && p.x() <= hi)
            f.z += r * r, ++c;
    }
    f.z = (c ? f.z / c : 0.0) / s.size();
    return f;
}

} // namespace

class TestLcfFit : public QObject
{
    Q_OBJECT
private slots:
    void fit_data();
    void fit();
    void walker_data();
    void walker();
};

void TestLcfFit::fit_data()
{
    QTest::addColumn<int>("form");
    QTest::addColumn<QString>("sample"); // mix, fall, mlcf, nan, step, none
    QTest::addColumn<double>("offset");  // the sample's energy offset
    QTest::addColumn<QString>("refs");
    QTest::addColumn<bool>("cont");
    QTest::addColumn<int>("action");
    QTest::addColumn<QString>("nominal"); // coefficients the mixture was made of, "-" unchecked

    const int n = int(LcfForm::New), o = int(LcfForm::Old), m = int(LcfForm::Mlcf);
    // Sample 0.3 f1 + 0.7 f2 on 1 eV, references on 0.7 eV: recovered up to
    // the interpolation and the per-spectrum normalisation.
    QTest::newRow("new, mixed") << n << "mix" << 0.0 << "f1 f2" << false << 2 << "0.3 0.7";
    QTest::newRow("old, dE 2 and 60, offset 3") << o << "mix" << 3.0 << "f1@2 f2@60" << false << 2 << "0.3 0.7";
    QTest::newRow("run keeps ratios") << n << "mix" << 0.0 << "f1 f2" << true << 2 << "0.3 0.7";
    // f1 lies above f2 everywhere: listed second it takes the first pivot.
    QTest::newRow("unused panel between") << n << "mix" << 0.0 << "f2 !f3 f1" << false << 2 << "0.7 0.3";
    QTest::newRow("new, falling") << n << "fall" << 0.0 << "f1 f2" << false << 1 << "0 0";
    QTest::newRow("old, falling") << o << "fall" << 0.0 << "f1 f2" << false << 2 << "-";
    // raw = line + 1.1 S1 - 0.1 S2 on the references' grid: the -0.1 enters
    // the sum (1.0) and is cut to 0.
    QTest::newRow("mlcf, negative cut") << m << "mlcf" << 0.0 << "f1 f2" << false << 2 << "1.1 0";
    QTest::newRow("mlcf, mixed") << m << "mix" << 0.0 << "f1@2 f2 f3" << false << 2 << "-";
    // Singular: the second pivot is exactly 0 and skipped, so the first
    // reference takes everything and the second stays 0.
    QTest::newRow("identical references") << n << "mix" << 0.0 << "f1 f1" << false << 2 << "- 0";
    // A flat pre-edge normalises to exactly 0 there: each such point counts 1.
    QTest::newRow("no panel in use") << n << "step" << 0.0 << "!f1 !f2" << false << 2 << "";
    QTest::newRow("one panel in use") << o << "mix" << 0.0 << "f1 !f2" << false << 2 << "-";
    QTest::newRow("no point in range") << n << "mix" << 0.0 << "f1@-1000 f2" << false << 2 << "0 0";
    QTest::newRow("NaN in sample") << n << "nan" << 0.0 << "f1 f2" << false << 2 << "-";
    QTest::newRow("one panel only") << n << "mix" << 0.0 << "f1" << false << 0 << "";
    QTest::newRow("empty sample") << m << "none" << 0.0 << "f1 f2" << false << 0 << "";
}

void TestLcfFit::fit()
{
    QFETCH(int, form);
    QFETCH(QString, sample);
    QFETCH(double, offset);
    QFETCH(QString, refs);
    QFETCH(bool, cont);
    QFETCH(int, action);
    QFETCH(QString, nominal);
    const QVector<LcfRefInput> r = references(refs, sample == "mlcf" ? 1.0 : 0.7); // "mlcf": the sample's grid
    Spectrum src;
    for (int x = 8900; x <= 9100 && sample != "none"; ++x) {
        const double e = x - offset, mix = 0.3 * shape(1, e) + 0.7 * shape(2, e);
        if (sample == "mlcf")
            src.addPoint(x, 0.2 + 1e-4 * (e - 9000) + 1.1 * r[0].spectrum.doubleNormPost.interpolateY(e)
                                - 0.1 * r[1].spectrum.doubleNormPost.interpolateY(e));
        else
            src.addPoint(x, sample == "fall" ? 2.5 - 0.2 * mix : sample == "step" ? 0.5 + (x >= 9002) : sample == "nan" && x == 9050 ? std::nan("") : mix);
    }
    // Only the points inside the range reach the fit, analysed afresh.
    const XafsSpectrum point(src, "pt", 1, offset, SuggestElm());
    const XafsSpectrum s = limitedSpectrum(point, 8890, 9095);
    QCOMPARE(s.size(), src.size() ? 196 : 0);
    QVERIFY(s.name == "limited-S" && s.eOffset == offset && s.sElm.edgeEV == SuggestElm().edgeEV);

    LcfOutcome out;
    out.lcfCoefs = {9};
    out.z = 123;
    out.fitted.name = "kept";
    analyzeLcf(s, r, LcfForm(form), 8890, 9095, SuggestElm(), cont, out);
    QCOMPARE(int(out.action), action);
    QCOMPARE(out.writePanels, action == 2 && !cont);
    if (action != 2) { // nothing, or zeros per panel: the last curve and z stay
        QVERIFY(out.z == 123 && out.fitted.name == "kept");
        QCOMPARE(out.lcfCoefs, action ? Values(r.size(), 0.0) : Values{9});
        return;
    }
    const Fit f = expected(s, r, form == int(LcfForm::Mlcf), 8890, 9095, cont);
    Values used;
    for (int k : out.usedPanels)
        used << k;
    QCOMPARE(used, f.used);
    QCOMPARE(out.lcfCoefs.size(), f.coefs.size());
    for (int j = 0; j < f.coefs.size(); ++j)
        QVERIFY2(same(out.lcfCoefs[j], f.coefs[j]) && same(out.lcfAmps[j], f.amps[j]), qPrintable(QString::number(out.lcfCoefs[j])));
    QVERIFY2(same(out.z, f.z), qPrintable(QString("z %1 against %2").arg(out.z).arg(f.z)));
    QCOMPARE(out.fitted.size(), f.curve.size());
    for (int i = 0; i < f.curve.size(); ++i)
        QVERIFY(out.fitted.points[i].x() == f.curve.points[i].x() && same(out.fitted.points[i].y(), f.curve.points[i].y()));
    QCOMPARE(out.fitted.name, form == int(LcfForm::Mlcf) ? "anal-MLCF" : "anal-LCF");
    const QStringList nom = nominal.split(' ', Qt::SkipEmptyParts);
    for (int j = 0; j < nom.size(); ++j)
        QVERIFY2(nom[j] == "-" || std::fabs(out.lcfCoefs[j] - nom[j].toDouble()) < 0.005,
                 qPrintable(QString("coefficient %1 is %2").arg(j).arg(out.lcfCoefs[j])));
}

void TestLcfFit::walker_data()
{
    QTest::addColumn<QString>("grid"); // x,y pairs
    QTest::newRow("rising") << "0,1 1,3 2,2.5 2.5,7 4,-1";
    QTest::newRow("uneven, shifted") << "-0.1,0.1 0.7,0.35 1.4,0.2 2.1,0.9 2.8,0.4";
    QTest::newRow("repeated x, also at the start") << "0,1 0,2 1,3 1,5 4,-1";
    QTest::newRow("falling x") << "4,1 2,3 0,5";
    QTest::newRow("one point") << "1,2";
    QTest::newRow("empty") << "";
}

// The walker must give the interpolation's numbers bit for bit, so that maps
// do not depend on how a reference was read. Queries go up, back and beyond.
void TestLcfFit::walker()
{
    QFETCH(QString, grid);
    Spectrum c;
    for (const QString &p : grid.split(' ', Qt::SkipEmptyParts))
        c.addPoint(p.section(',', 0, 0).toDouble(), p.section(',', 1).toDouble());
    CurveWalker w;
    w.reset(c);
    for (const double x : {-5.0, 0.0, 0.3, 1.0, 1.7, 2.5, 2.5, 9.0, 0.2, 3.99, 4.0, 77.0, std::nan(""), 1.5}) {
        const double a = w.at(x), b = c.interpolateY(x);
        QVERIFY2(std::memcmp(&a, &b, sizeof a) == 0 || (std::isnan(a) && std::isnan(b)), qPrintable(QString::number(x)));
    }
}

QTEST_GUILESS_MAIN(TestLcfFit)
#include "tst_lcffit.moc"
