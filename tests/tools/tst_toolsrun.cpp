#include "support/E2eRun.h"
#include "support/SynthStack.h"

#include <QImage>
#include <QRegularExpression>
#include <QtTest>

#include <cmath>
#include <vector>

// The image tools through the whole program: a run makes the edge and the
// feature-value maps of generated stacks; the feature-value view writes its
// two pictures, and the statistics words fill, re-bin and hide the
// statistics window. The pictures are compared pixel by pixel, and the
// statistics number by number, with what is worked out here from the
// generated pixels.
class TestToolsRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void tools_data();
    void tools();
};

namespace {
const int W = 12, H = 9, NE = 80;
const double EdgeEV = 8977;

// An edge that moves with the pixel, and a white line above it whose height
// changes too, so that the feature values spread.
SynthStack stack()
{
    SynthStack s;
    s.w = W, s.h = H, s.i0E = {8935.0, 8975.0, 9025.0};
    for (int k = 0; k < NE; ++k)
        s.i1E.push_back(8940.0 + k);
    s.i1 = [](int x, int y, int k) {
        const double e = 8940.0 + k, e0 = 8975 + 0.5 * x - 0.3 * y;
        const double wl = (0.2 + 0.04 * x + 0.03 * y) * std::exp(-std::pow((e - e0 - 7) / 3.0, 2));
        const double mu = 0.3 + 0.0004 * (9000 - e) + 0.9 * (0.5 + std::atan((e - e0) / 1.5) / M_PI) + wl;
        return std::round(30000 * std::exp(-mu));
    };
    s.i0 = [](int x, int y, int j) { return 20000 + 40 * x + 30 * y + 600 * j; };
    return s;
}

// The feature search on the smoothed curve: a double fall above the
// post-edge line within -10 .. +50 eV of the edge, then a double rise more
// than elimReg beyond it.
QPointF featureValue(const RefXafs &s, double elimReg)
{
    const int n = int(s.es.size());
    auto index = [&](double e) {
        for (int i = 0; i + 1 < n; ++i)
            if ((s.es[i] + s.es[i + 1]) / 2 > e)
                return i;
        return n - 1;
    };
    const int a = index(EdgeEV - 10), b = index(EdgeEV + 50);
    const std::vector<double> &m = s.sm;
    double dM = 0, e1 = 0, e2 = 0;
    int i = a;
    for (; i < b; ++i)
        if (i >= 2 && i < n - 2 && m[i] > m[i + 1] && m[i + 1] > m[i + 2] && m[i] > s.qv(s.es[i])) {
            dM = m[i] - s.pv(s.es[i]), e1 = s.es[i];
            break;
        }
    for (i = i < b ? i : 0; i < b && i + 2 < n; ++i)
        if (s.es[i] > e1 + elimReg && m[i + 1] > m[i] && m[i + 2] > m[i + 1]) {
            e2 = s.es[i];
            break;
        }
    return QPointF(dM, e2 - e1);
}

// The numbers of the first debug line that matches re.
QList<double> numbersOf(const QString &debug, const QString &re)
{
    QList<double> out;
    const QRegularExpressionMatch m = QRegularExpression(re, QRegularExpression::MultilineOption).match(debug);
    for (int i = 1; i <= m.lastCapturedIndex(); ++i)
        for (const QString &t : m.captured(i).split(' ', Qt::SkipEmptyParts))
            out << t.toDouble();
    return out;
}
} // namespace

void TestToolsRun::initTestCase()
{
    E2E_REQUIRE_EXECUTABLE();
}

void TestToolsRun::tools_data()
{
    QTest::addColumn<QList<int>>("box"); // view half width, height; analysis half width, height
    QTest::addColumn<int>("bins");
    QTest::newRow("every pixel, 7 bins") << QList<int>{1, 1, 0, 0} << 7;
    QTest::newRow("blocks of 3 x 3, 1 bin") << QList<int>{1, 2, 1, 1} << 1;
}

void TestToolsRun::tools()
{
    QFETCH(QList<int>, box);
    QFETCH(int, bins);
    E2eRun run;
    QVERIFY(run.isValid());
    const QString dir = run.dir();
    const QStringList batch = stack().write(dir)
        + QStringList{QStringLiteral("set_view_w %1").arg(box[0]), QStringLiteral("set_view_h %1").arg(box[1]),
                      QStringLiteral("set_analyze_w %1").arg(box[2]), QStringLiteral("set_analyze_h %1").arg(box[3]),
                      "Suggesting_Edge_eV 8977", "analyzer_sub_mode 0 1 0 0 0 1", "analyzer_exec_2da",
                      QStringLiteral("stats_bins %1").arg(bins), "stats_show_window", "stats_in_selected_region 1",
                      "stats_over_image 1", "stats_bins 0", "stats_show_window 0", "quit"};
    const E2eResult r = run.runBatch({":end"}, batch, 60000);
    E2E_VERIFY_RUN(r, true);

    RefElm elm;
    elm.edgeEV = EdgeEV;
    QVector<double> dM, dE, edges;
    for (int y = box[3]; y < H; y += 2 * box[3] + 1)
        for (int x = box[2]; x < W; x += 2 * box[2] + 1) {
            const RefXafs s = stack().spectrum(x, y, box[0], box[1], elm);
            const QPointF fv = featureValue(s, 1.0);
            dM << fv.x(), dE << fv.y(), edges << s.midx - EdgeEV;
        }

    // Statistics of the edge map over the area: count, mean, sigma, extremes.
    const double mn = *std::min_element(edges.begin(), edges.end());
    const double mx = *std::max_element(edges.begin(), edges.end());
    double sum = 0, sum2 = 0;
    QList<double> counts(bins, 0);
    for (double v : edges) {
        sum += v, sum2 += v * v;
        counts[std::min(bins - 1, int(std::floor((v - mn) / ((mx - mn) / bins))))] += 1;
    }
    const double mean = sum / edges.size();
    const QList<double> want{double(edges.size()), mean, std::sqrt(sum2 / edges.size() - mean * mean), mn, mx};
    const QList<double> got = numbersOf(
        r.debug, QStringLiteral("^stats a2d dEdge: n (\\S+) mean (\\S+) sigma (\\S+) min (\\S+) max (\\S+) bins %1$").arg(bins));
    QCOMPARE(got.size(), want.size());
    for (int i = 0; i < want.size(); ++i)
        QVERIFY2(std::fabs(got[i] - want[i]) <= 1e-5 * (std::fabs(want[i]) + 1e-3),
                 qPrintable(QStringLiteral("%1: %2 for %3").arg(i).arg(got[i]).arg(want[i])));
    QCOMPARE(numbersOf(r.debug, QStringLiteral("^stats counts: ([\\d ]+)$")), counts);
    // Bins 0: the numbers stay, the histogram is empty; the window hides.
    QVERIFY(r.debug.contains(QRegularExpression(QStringLiteral("^stats a2d dEdge: n %1 .* bins 0\\nstats counts: $")
                                                    .arg(edges.size()),
                                                QRegularExpression::MultilineOption)));

    // The pictures: dM across, E2 - E1 upwards, over the lists' ranges.
    const QImage sc(dir + "/fvMap.png"), de(dir + "/fvHMap.png");
    QCOMPARE(sc.size(), QSize(300, 300));
    QCOMPARE(de.size(), QSize(300, 300));
    const auto [x0, x1] = std::minmax_element(dM.begin(), dM.end());
    const auto [y0, y1] = std::minmax_element(dE.begin(), dE.end());
    QVERIFY2(*x1 > *x0 && *y1 > *y0, "the feature values do not spread");
    QList<QPair<int, int>> pts; // points on one pixel add up in the density
    for (int i = 0; i < dM.size(); ++i)
        pts.append({int(std::lround((dM[i] - *x0) / (*x1 - *x0) * 299)),
                    299 - int(std::lround((dE[i] - *y0) / (*y1 - *y0) * 299))});
    std::vector<double> t(300 * 300, 0.0);
    double m = 0;
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 300; ++x) {
            QCOMPARE(sc.pixel(x, y), pts.contains({x, y}) ? qRgb(0, 0, 255) : qRgb(255, 255, 255));
            for (const auto &p : pts) // kernel of half width 10, 0.01 at the half width
                if (std::abs(x - p.first) <= 10 && std::abs(y - p.second) <= 10)
                    t[y * 300 + x] += std::pow(0.01, ((x - p.first) * (x - p.first) + (y - p.second) * (y - p.second)) / 100.0);
            m = std::max(m, t[y * 300 + x]);
        }
    for (int i = 0; i < 300 * 300; ++i) {
        const int g = int(std::min(255.0, std::trunc(t[i] / (m * 0.002) * 255)));
        QVERIFY2(std::abs(qGreen(de.pixel(i % 300, i / 300)) - g) <= 1 && qRed(de.pixel(i % 300, i / 300)) == 255,
                 qPrintable(QStringLiteral("density at %1, %2").arg(i % 300).arg(i / 300)));
    }
}

QTEST_GUILESS_MAIN(TestToolsRun)
#include "tst_toolsrun.moc"
