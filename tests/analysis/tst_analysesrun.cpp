#include "spectrum/ElmEdges.h"
#include "support/E2eRun.h"
#include "support/SynthStack.h"

#include <QtTest>

#include <cmath>
#include <map>
#include <vector>

// The fits, the element analysis and the residual absorption through the
// whole program: a stack whose spectra mix two reference spectra in
// proportions that change across the image (and whose right edge falls
// instead of rising), references on an energy grid of their own, one run
// per row. Every saved map is checked against the fit, the means and the
// lines worked out here from the generated pixels.
class TestAnalysesRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void run_data();
    void run();
};

namespace {
using Vec = std::vector<double>;
const int W = 15, H = 12, NE = 70, HW = 1, VW = 1;
const double R1 = 8935, R2 = 9015; // the fitting range

double energy(int k)
{
    return 8930 + 1.3 * k;
}

double step(double e, double e0, double w)
{
    return 0.5 + std::atan((e - e0) / w) / M_PI;
}

// Reference A: a plain edge at 8979; B: an edge at 8983 with a white line.
double muA(double e)
{
    return 0.3 + 0.0002 * (9000 - e) + step(e, 8979, 1.5);
}

double muB(double e)
{
    return 0.25 + 1.1 * step(e, 8983, 2.0) + 0.4 * std::exp(-std::pow((e - 8989) / 3.0, 2));
}

// No I0 stack: each point's spectrum is ln(N / b) of its box.
SynthStack stack()
{
    SynthStack s;
    s.w = W, s.h = H;
    for (int k = 0; k < NE; ++k)
        s.i1E.push_back(energy(k));
    s.i1 = [](int x, int y, int k) {
        const double e = energy(k);
        const double f = double(x + 2 * y) / (W + 2 * H);
        // The three right columns rise and then fall further: the jump
        // between their lines comes out negative.
        const double mu = x >= W - 3 ? 0.5 + 0.6 * step(e, 8980, 2.0) - 0.9 * step(e, 8990, 1.0)
                                     : f * muA(e) + (1 - f) * muB(e - 2);
        return std::round(40000 * std::exp(-mu)) + (x * 3 + y * 5 + k) % 4;
    };
    return s;
}

Vec pointMu(int cx, int cy)
{
    return stack().mu(cx, cy, HW, VW);
}

Vec energies()
{
    return stack().i1E;
}

double interp(const Vec &x, const Vec &y, double at)
{
    size_t i = 0;
    const size_t n = x.size();
    if (at >= x[n - 1])
        i = n - 2;
    else if (at > x[0])
        while (!(x[i] <= at && at < x[i + 1]))
            ++i;
    return x[i + 1] == x[i] ? (y[i] + y[i + 1]) / 2 : y[i] + (at - x[i]) * (y[i + 1] - y[i]) / (x[i + 1] - x[i]);
}

// Gaussian elimination with partial pivoting; a zero pivot leaves 0.
Vec solve(std::vector<Vec> a, Vec b)
{
    const size_t n = b.size();
    for (size_t k = 0; k < n; ++k) {
        size_t p = k;
        for (size_t i = k + 1; i < n; ++i)
            if (std::fabs(a[i][k]) > std::fabs(a[p][k]))
                p = i;
        std::swap(a[k], a[p]);
        std::swap(b[k], b[p]);
        for (size_t i = k + 1; i < n && a[k][k] != 0; ++i) {
            const double f = a[i][k] / a[k][k];
            for (size_t j = k; j < n; ++j)
                a[i][j] -= f * a[k][j];
            b[i] -= f * b[k];
        }
    }
    Vec x(n, 0.0);
    for (size_t k = n; k-- > 0;) {
        double s = b[k];
        for (size_t j = k + 1; j < n; ++j)
            s -= a[k][j] * x[j];
        x[k] = a[k][k] != 0 ? s / a[k][k] : 0;
    }
    return x;
}

// A reference as a panel holds it after a batch set it: analysed when its
// file was loaded, before the shift came, and read at x + dE since.
struct Ref {
    Vec x, pre, post;
    double dE;
    Ref(const Vec &ex, const Vec &y, double shift)
        : x(ex)
        , dE(shift)
    {
        const RefXafs r(ex, y);
        for (size_t i = 0; i < ex.size(); ++i) {
            pre.push_back(r.norm(int(i)));
            const double p = r.pv(ex[i]), q = r.qv(ex[i]);
            post.push_back((y[i] - q) / (q - p));
        }
    }
    double R(double e) const { return interp(x, pre, e + dE); }
    double S(double e) const { return interp(x, post, e + dE); }
};

struct Fit {
    Vec coefs, amps;
    bool skipped = false; // new LCF on a jump <= 0
};

// The fit of the limited spectrum of point (cx, cy), form 0 LCF, 1 old LCF,
// 2 MLCF; z of the curve made from `ratios`.
Fit fitAt(int cx, int cy, int form, const std::vector<Ref> &refs, const Vec &ratios, double *z)
{
    const Vec es = energies(), mus = pointMu(cx, cy);
    Vec le, ly;
    for (size_t i = 0; i < es.size(); ++i)
        if (es[i] >= R1 && es[i] <= R2)
            le.push_back(es[i]), ly.push_back(mus[i]);
    const RefXafs lim(le, ly);
    double sE = R1, eE = R2, wS = 0, wE = 1e300;
    for (const Ref &r : refs) {
        sE = std::max(sE, r.x.front() - r.dE), eE = std::min(eE, r.x.back() - r.dE);
        wS = std::max(wS, r.x.front() - r.dE), wE = std::min(wE, r.x.back() - r.dE);
    }
    Fit f;
    const size_t n = refs.size(), m = form == 2 ? n + 2 : n;
    if (form == 0 && !(lim.dMut > 0)) {
        f.skipped = true;
        f.coefs = f.amps = Vec(4, 0.0); // one per panel
        return f;
    }
    std::vector<Vec> a(m, Vec(m, 0.0));
    Vec b(m, 0.0), v(m);
    for (size_t i = 0; i < le.size(); ++i) {
        if (le[i] < sE || le[i] > eE)
            continue;
        for (size_t j = 0; j < n; ++j)
            v[form == 2 ? j + 2 : j] = form == 2 ? refs[j].S(le[i]) : refs[j].R(le[i]);
        if (form == 2)
            v[0] = 1, v[1] = le[i];
        const double y = form == 2 ? ly[i] : lim.norm(int(i));
        for (size_t j = 0; j < m; ++j) {
            b[j] += v[j] * y;
            for (size_t k = 0; k < m; ++k)
                a[j][k] += v[j] * v[k];
        }
    }
    const Vec x = solve(a, b);
    if (form == 2) {
        double sum = 0;
        for (size_t j = 0; j < n; ++j) {
            sum += x[j + 2];
            f.coefs.push_back(x[j + 2] < 0 ? 0.0 : x[j + 2]); // cut after it entered the sum
        }
        f.amps = f.coefs;
        for (double &c : f.coefs)
            c /= std::max(0.0, sum);
    } else {
        f.coefs = x;
        for (double c : x)
            f.amps.push_back(c * std::max(0.0, lim.dMut));
    }
    // Zansa: the curve from the panels' ratios against the normalised
    // spectrum, both ends left out, over the count and the points.
    double sum = 0, c = 0;
    for (size_t i = 1; i + 1 < le.size(); ++i) {
        if (le[i] < sE || le[i] > eE)
            continue;
        double fit = 0;
        for (size_t j = 0; j < n && le[i] >= wS && le[i] <= wE; ++j)
            fit += ratios[j] * refs[j].R(le[i]);
        const double y = lim.norm(int(i));
        const double r = y == 0 ? 1.0 : (fit - y) / y;
        sum += r * r, c += 1;
    }
    *z = (c > 0 ? sum / c : 0) / le.size();
    return f;
}

double mean(const Vec &y, int i, int j)
{
    if (i > j)
        return 0;
    double s = 0;
    for (int k = i; k <= j; ++k)
        s += y[k];
    return s / (j + 1 - i);
}

int idx(const Vec &x, double e)
{
    for (size_t i = 0; i + 1 < x.size(); ++i)
        if ((x[i] + x[i + 1]) / 2 > e)
            return int(i);
    return int(x.size()) - 1;
}

// Cu's jump (kind 0) and ROI (kind 5) for ROI 8990..9010, dE 20, threshold
// 0.1; background values 0, 0, -1.
double cuValue(int cx, int cy, double e0, int kind)
{
    const Vec x = energies(), y = pointMu(cx, cy);
    const double dE = 20;
    const double mp = mean(y, idx(x, e0 + dE), idx(x, e0 + 2 * dE));
    const double mm = mean(y, idx(x, e0 - 2 * dE), idx(x, e0 - dE));
    const double dmut = mp - mm;
    if (!(dmut > 0.1))
        return kind == 0 ? 0.0 : -1.0;
    if (kind == 0)
        return dmut;
    const int k1 = idx(x, 8990), k2 = idx(x, 9010);
    double s = 0;
    for (int k = k1; k < k2; ++k)
        s += y[k] - mm;
    return k2 > k1 ? s / (k2 - k1) : 0;
}

// "x,y" of each point to its value, from an XYZ CSV map file.
std::map<QPair<int, int>, double> readMap(const QString &path)
{
    std::map<QPair<int, int>, double> m;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        return m;
    for (const QString &line : QString::fromLatin1(f.readAll()).split('\n')) {
        const QStringList v = line.split(',');
        if (v.size() == 3 && !line.startsWith('#'))
            m[{v[0].toInt(), v[1].toInt()}] = v[2].toDouble();
    }
    return m;
}

// Six significant digits, as the map files hold them.
bool close(double got, double want)
{
    if (std::isnan(want) || std::isnan(got))
        return std::isnan(want) && std::isnan(got);
    const double unit = want == 0 ? 1e-300 : std::pow(10.0, std::floor(std::log10(std::fabs(want))));
    return std::fabs(got - want) <= 5.01e-6 * unit + 1e-12;
}

QString refFile(const QString &dir, const char *name, double (*mu)(double))
{
    QFile f(dir + "/" + name);
    f.open(QIODevice::WriteOnly | QIODevice::Text);
    for (double e = 8900; e <= 9100; e += 0.7)
        f.write(QStringLiteral("%1 %2\n").arg(e, 0, 'g', 17).arg(mu(e), 0, 'g', 17).toLatin1());
    return f.fileName();
}
} // namespace

void TestAnalysesRun::initTestCase()
{
    E2E_REQUIRE_EXECUTABLE();
    loadElmEdges();
}

void TestAnalysesRun::run_data()
{
    QTest::addColumn<int>("form");
    QTest::addColumn<QStringList>("settings");
    QTest::newRow("LCF, elements, residual")
        << 0
        << QStringList{"analyzer_select_sub_mode_elems 1", "analyzer_select_sub_mode_ra 1",
                       "analyzer_target_elements \"Cu, Ni\"", "analyzer_elems_roi Cu-K 8990 9010",
                       "analyzer_elems_set_use Cu-K 1", "analyzer_elems_set_use Ni-K 1",
                       "analyzer_set_ra_energy 8985", "analyzer_set_ra_factor 0.8"};
    QTest::newRow("old LCF") << 1 << QStringList{"analyzer_set_LCF_as_old 1"};
    QTest::newRow("MLCF") << 2 << QStringList{"analyzer_set_MLCF 1"};
}

void TestAnalysesRun::run()
{
    QFETCH(int, form);
    QFETCH(QStringList, settings);
    E2eRun run;
    const QString dir = run.dir();
    QStringList batch{"analyzer_select_sub_mode_dEdge 0", "analyzer_select_sub_mode_LCF 1",
                      "analyzer_set_LCF_range " + QString::number(R1) + " " + QString::number(R2),
                      "analyzer_set_LCF_std 0 1 0 " + refFile(dir, "a.dat", muA) + " 0",
                      "analyzer_set_LCF_std 1 1 2 " + refFile(dir, "b.dat", muB) + " 0",
                      "set_view_w 1", "set_view_h 1", "set_analyze_w 1", "set_analyze_h 1", "Use_I0 0"};
    batch << settings << stack().write(dir) << "analyzer_exec_2da" << "saveDataCfg_save_as_text" << "saveDataCfg_text_as_csv"
          << "saveDataCfg_text_as_xyz";
    // Panel maps: select the panel's button (the file takes its number),
    // image type 0 ratio, 1 amplitude.
    batch << "analyzer_select_image 0" << "analyzer_select_image_type 0" << "save_data " + dir + "/coef.dat"
          << "analyzer_select_image 1" << "analyzer_select_image_type 1" << "save_data " + dir + "/amp.dat"
          << "analyzer_select_image 5" << "save_data " + dir + "/zansa.dat";
    if (form == 0)
        batch << "analyzer_select_image 6" << "analyzer_elems_select_show Cu-K" << "analyzer_elems_select_disp_mode 0"
              << "save_data " + dir + "/cu.dat" << "analyzer_elems_select_disp_mode 7" << "save_data " + dir + "/roi.dat"
              << "analyzer_elems_set_corr_th 0.5" << "analyzer_elems_select_disp_mode 2"
              << "save_data " + dir + "/cor.dat" << "analyzer_select_image 7" << "save_data " + dir + "/dmut.dat"
              << "analyzer_select_image 8" << "save_data " + dir + "/rest.dat" << "analyzer_select_image 9"
              << "save_data " + dir + "/ratio.dat";
    batch << "quit";
    const E2eResult r = run.runBatch({":end"}, batch, 120000);
    E2E_VERIFY_RUN(r, true);

    Vec rx, ra, rb;
    for (double e = 8900; e <= 9100; e += 0.7)
        rx.push_back(e), ra.push_back(muA(e)), rb.push_back(muB(e));
    const std::vector<Ref> refs{Ref(rx, ra, 0), Ref(rx, rb, 2)};
    // The panels' ratios come from the single fit at the pointer, (0, 0),
    // when the stack had loaded; a run leaves them as they are.
    double z0 = 0;
    const Fit atPointer = fitAt(0, 0, form, refs, {0, 0}, &z0);
    const Vec ratios = atPointer.coefs;

    const auto coef = readMap(dir + "/coef-0.dat"), amp = readMap(dir + "/amp-1.dat"),
               zansa = readMap(dir + "/zansa-0.dat");
    QCOMPARE(int(coef.size()), 20);
    double lastZ = 0;
    int skipped = 0;
    for (int y = 1; y < H; y += 3) // in walk order: a z left unchanged is the previous point's
        for (int x = 1; x < W; x += 3) {
        const QPair<int, int> at(x, y);
        QVERIFY(coef.count(at) && amp.count(at) && zansa.count(at));
        double z = 0;
        const Fit f = fitAt(x, y, form, refs, ratios, &z);
        if (f.skipped)
            z = lastZ, ++skipped;
        lastZ = z;
        const QString where = QStringLiteral("(%1, %2)").arg(x).arg(y);
        QVERIFY2(close(coef.at(at), f.coefs[0]), qPrintable(where + QString(" coef %1 %2").arg(coef.at(at)).arg(f.coefs[0])));
        QVERIFY2(close(amp.at(at), f.amps[1]), qPrintable(where + QString(" amp %1 %2").arg(amp.at(at)).arg(f.amps[1])));
        QVERIFY2(close(zansa.at(at), z), qPrintable(where + QString(" z %1 %2").arg(zansa.at(at)).arg(z)));
    }
    QCOMPARE(skipped, form == 0 ? 4 : 0); // the falling columns: new LCF leaves them out

    if (form != 0)
        return;
    const double cuE0 = QString::number(elmEdges[29].edge[0] * 1000.0, 'g', 6).toDouble();
    const auto cu = readMap(dir + "/cu-0.dat"), roi = readMap(dir + "/roi-0.dat"), cor = readMap(dir + "/cor-0.dat");
    const auto dmut = readMap(dir + "/dmut-0.dat"), rest = readMap(dir + "/rest-0.dat"),
               ratio = readMap(dir + "/ratio-0.dat");
    QCOMPARE(int(cu.size()), 20);
    double minRest = 1e300;
    std::map<QPair<int, int>, QPair<double, double>> ra2;
    int below = 0;
    for (const auto &p : cu) {
        const int x = p.first.first, y = p.first.second;
        const double d = cuValue(x, y, cuE0, 0);
        below += d == 0;
        QVERIFY(close(p.second, d));
        QVERIFY(close(roi.at(p.first), cuValue(x, y, cuE0, 5)));
        // Cu's N.dMut is 1 and Ni's 0 (below its threshold, its edge far
        // off the stack): the correlation with standard ratios 1, 1.
        QVERIFY(close(cor.at(p.first), d == 0 ? 0.0 : 1 / std::sqrt(2.0)));
        const RefXafs s(energies(), pointMu(x, y));
        const double jump = s.qv(8985) - s.pv(8985), restV = s.pv(8985) - jump * 0.8;
        QVERIFY(close(dmut.at(p.first), jump));
        QVERIFY(close(rest.at(p.first), restV));
        ra2[p.first] = {jump, restV};
        minRest = std::min(minRest, restV);
    }
    QVERIFY(below > 0 && below < 20);
    // The blocks tile the image, so the smallest rest is a point's.
    for (const auto &p : ratio) {
        const double rr = ra2[p.first].second - minRest;
        // r = R - m cancels near the smallest rest: there only the
        // absolute error of the two rests counts.
        const double want = rr / (ra2[p.first].first + rr);
        QVERIFY(close(p.second, want) || std::fabs(p.second - want) < 1e-9);
    }
}

QTEST_GUILESS_MAIN(TestAnalysesRun)
#include "tst_analysesrun.moc"
