#include "spectrum/LinAlg.h"
#include "spectrum/QuadSurf.h"

#include <QtTest>

#include <cmath>
#include <limits>
#include <vector>

using Values = QVector<double>;
using Ints = QVector<int>;

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

// An n x n matrix in row pointers, filled from a row-major list.
class Mat
{
public:
    explicit Mat(int n, const Values &flat = {}) : n_(n), data_(std::size_t(n) * n), rows_(n)
    {
        for (int i = 0; i < n; ++i)
            rows_[i] = data_.data() + std::size_t(i) * n;
        for (int i = 0; i < flat.size() && i < int(data_.size()); ++i)
            data_[i] = flat[i];
    }
    double **rows() { return rows_.data(); }
    Values flat() const { return Values(data_.begin(), data_.end()); }
    int n() const { return n_; }

private:
    int n_;
    std::vector<double> data_;
    std::vector<double *> rows_;
};

bool near(double a, double b, double tol = 1e-12)
{
    return std::fabs(a - b) <= tol * (1.0 + std::fabs(b));
}

bool isPermutation(const int *perm, int n)
{
    std::vector<bool> seen(n, false);
    for (int i = 0; i < n; ++i) {
        if (perm[i] < 0 || perm[i] >= n || seen[perm[i]])
            return false;
        seen[perm[i]] = true;
    }
    return true;
}

QString captured(FILE *f)
{
    std::fflush(f);
    std::rewind(f);
    QByteArray text;
    char buf[256];
    size_t got;
    while ((got = std::fread(buf, 1, sizeof buf, f)) > 0)
        text.append(buf, int(got));
    return QString::fromLatin1(text);
}

} // namespace

class TestLinAlg : public QObject
{
    Q_OBJECT
private slots:
    void luSolve_data();
    void luSolve();
    void luDecomposePivots_data();
    void luDecomposePivots();
    void triangularSolves_data();
    void triangularSolves();
    void invert_data();
    void invert();
    void products_data();
    void products();
    void prints();
    void quadSurfRecovers_data();
    void quadSurfRecovers();
    void quadSurfTooFewSamples_data();
    void quadSurfTooFewSamples();
};

void TestLinAlg::luSolve_data()
{
    QTest::addColumn<int>("n");
    QTest::addColumn<Values>("a");
    QTest::addColumn<Values>("b");
    QTest::addColumn<Values>("x"); // checked only when ok
    QTest::addColumn<bool>("ok");

    QTest::newRow("empty system") << 0 << Values{} << Values{} << Values{} << true;
    QTest::newRow("1x1") << 1 << Values{4} << Values{2} << Values{0.5} << true;
    // 3x + y = 9, x + 2y = 8  ->  x = 2, y = 3
    QTest::newRow("2x2 no swap") << 2 << Values{3, 1, 1, 2} << Values{9, 8} << Values{2, 3} << true;
    // a zero in the corner needs the row swap: y = 2, x = 3
    QTest::newRow("2x2 swap") << 2 << Values{0, 1, 1, 0} << Values{2, 3} << Values{3, 2} << true;
    // b is the row sums, so x = (1, 1, 1); both columns need a swap
    QTest::newRow("3x3 two swaps") << 3 << Values{1, 2, 3, 4, 5, 6, 7, 8, 10} << Values{6, 15, 25}
                                   << Values{1, 1, 1} << true;
    QTest::newRow("singular rows") << 2 << Values{1, 2, 2, 4} << Values{3, 6} << Values{} << false;
    QTest::newRow("zero column") << 3 << Values{1, 0, 2, 3, 0, 1, 5, 0, 4} << Values{1, 2, 3} << Values{}
                                 << false;
}

void TestLinAlg::luSolve()
{
    QFETCH(int, n);
    QFETCH(Values, a);
    QFETCH(Values, b);
    QFETCH(Values, x);
    QFETCH(bool, ok);

    Mat m(n, a);
    const Values original = m.flat();
    std::vector<double> sol(std::max(n, 1), -7.0);
    std::vector<int> perm(std::max(n, 1), -1);
    QCOMPARE(::luSolve(n, m.rows(), b.data(), sol.data(), perm.data()), ok);
    QCOMPARE(m.flat(), original); // the matrix is left intact
    QVERIFY(isPermutation(perm.data(), n));
    if (ok) {
        for (int k = 0; k < n; ++k)
            QVERIFY2(near(sol[perm[k]], x[k]), qPrintable(QString::number(k)));
    }

    Values inPlace = b;
    QCOMPARE(::solveInPlace(n, m.rows(), inPlace.data()), ok);
    if (ok) {
        for (int k = 0; k < n; ++k)
            QVERIFY2(near(inPlace[k], x[k]), qPrintable(QString::number(k)));
    }
}

void TestLinAlg::luDecomposePivots_data()
{
    QTest::addColumn<int>("n");
    QTest::addColumn<Values>("a");
    QTest::addColumn<Ints>("perm");
    QTest::addColumn<bool>("ok");

    QTest::newRow("equal magnitudes keep the first") << 2 << Values{1, 2, -1, 3} << Ints{0, 1} << true;
    QTest::newRow("larger below swaps") << 2 << Values{1, 2, -3, 1} << Ints{1, 0} << true;
    // column 0 all zero: pivot stays, column skipped, then column 1 is fine
    QTest::newRow("zero column keeps the pivot") << 2 << Values{0, 1, 0, 2} << Ints{0, 1} << false;
    // col 0 picks row 1 (2); the rest becomes row 0 (0.5, -0.5) and
    // row 2 (2.5, 0.5), so col 1 picks row 2
    QTest::newRow("second column swaps too") << 3 << Values{1, 1, 0, 2, 1, 1, 1, 3, 1} << Ints{1, 2, 0}
                                             << true;
    QTest::newRow("NaN pivot is not zero") << 1 << Values{kNaN} << Ints{0} << true;
}

void TestLinAlg::luDecomposePivots()
{
    QFETCH(int, n);
    QFETCH(Values, a);
    QFETCH(Ints, perm);
    QFETCH(bool, ok);

    Mat m(n, a), l(n), u(n);
    std::vector<int> p(n, -1);
    QCOMPARE(::luDecompose(n, m.rows(), l.rows(), u.rows(), p.data()), ok);
    QCOMPARE(Ints(p.begin(), p.end()), perm);
    if (!ok || std::isnan(a[0]))
        return;
    // Row k of L times U, both read through perm, rebuilds row perm[k] of a;
    // L has a unit diagonal and U nothing below it.
    for (int k = 0; k < n; ++k) {
        QCOMPARE(l.rows()[p[k]][k], 1.0);
        for (int j = 0; j < n; ++j) {
            if (j < k)
                QCOMPARE(u.rows()[p[k]][j], 0.0);
            double sum = 0.0;
            for (int mm = 0; mm < n; ++mm)
                sum += l.rows()[p[k]][mm] * u.rows()[p[mm]][j];
            QVERIFY(near(sum, a[p[k] * n + j]));
        }
    }
}

void TestLinAlg::triangularSolves_data()
{
    QTest::addColumn<bool>("upper");
    QTest::addColumn<int>("n");
    QTest::addColumn<Values>("t");
    QTest::addColumn<Ints>("perm");
    QTest::addColumn<Values>("rhs");
    QTest::addColumn<Values>("expected"); // in storage order
    QTest::addColumn<bool>("ok");

    // n = 1: the forward pass only copies, whatever the diagonal
    QTest::newRow("forward 1x1 copies") << false << 1 << Values{5} << Ints{0} << Values{2} << Values{2} << true;
    QTest::newRow("back 1x1 divides") << true << 1 << Values{4} << Ints{0} << Values{2} << Values{0.5} << true;
    QTest::newRow("back 1x1 zero pivot") << true << 1 << Values{0} << Ints{0} << Values{2} << Values{2} << false;
    // rows swapped: row 1 plays row 0. L = [[1,0],[3,1]] in play order,
    // y0 = b[1] = 2, y1 = b[0] - 3 * 2 = 1
    QTest::newRow("forward through perm") << false << 2 << Values{3, 1, 1, 0} << Ints{1, 0} << Values{7, 2}
                                          << Values{1, 2} << true;
    // U = [[2,1],[0,4]] in play order (row 1 first): x1 = 8/4 = 2 in
    // storage row 0, x0 = (6 - 2)/2 = 2 in storage row 1
    QTest::newRow("back through perm") << true << 2 << Values{0, 4, 2, 1} << Ints{1, 0} << Values{8, 6}
                                       << Values{2, 2} << true;
    // a zero on the diagonal of L is reported and its step skipped
    QTest::newRow("forward zero diagonal") << false << 2 << Values{0, 0, 1, 1} << Ints{0, 1} << Values{4, 5}
                                           << Values{4, 5} << false;
}

void TestLinAlg::triangularSolves()
{
    QFETCH(bool, upper);
    QFETCH(int, n);
    QFETCH(Values, t);
    QFETCH(Ints, perm);
    QFETCH(Values, rhs);
    QFETCH(Values, expected);
    QFETCH(bool, ok);

    Mat m(n, t);
    Values out(n, -9.0);
    const bool got = upper ? ::backSolve(n, m.rows(), rhs.data(), out.data(), perm.data())
                           : ::forwardSolve(n, m.rows(), rhs.data(), out.data(), perm.data());
    QCOMPARE(got, ok);
    QCOMPARE(out, expected);
}

void TestLinAlg::invert_data()
{
    QTest::addColumn<int>("n");
    QTest::addColumn<Values>("a");
    QTest::addColumn<Values>("inverse"); // checked only when no zero pivot
    QTest::addColumn<int>("zeroPivots");

    QTest::newRow("empty") << 0 << Values{} << Values{} << 0;
    QTest::newRow("1x1") << 1 << Values{-4} << Values{-0.25} << 0;
    // det 1, adjugate [[1,-1],[-1,2]]
    QTest::newRow("2x2") << 2 << Values{2, 1, 1, 1} << Values{1, -1, -1, 2} << 0;
    // det 12, cofactors 5 -4 2 / -4 8 -4 / 2 -4 8
    QTest::newRow("symmetric 3x3") << 3 << Values{4, 2, 0, 2, 3, 1, 0, 1, 2}
                                   << Values{5. / 12, -4. / 12, 2. / 12, -4. / 12, 8. / 12, -4. / 12,
                                             2. / 12, -4. / 12, 8. / 12}
                                   << 0;
    // det -1. Sweeping the diagonal in order 0, 1, 2 would meet a zero at
    // (1,1); taking the largest first (3, then 1, then -1/3) does not.
    QTest::newRow("pivot order matters") << 3 << Values{1, 1, 0, 1, 1, 1, 0, 1, 3}
                                         << Values{-2, 3, -1, 3, -3, 1, -1, 1, 0} << 0;
    // sweep (1,1) = 4 first; (0,0) becomes 1 - 2 * 2/4 = 0
    QTest::newRow("singular") << 2 << Values{1, 2, 2, 4} << Values{} << 1;
    // invertible, but both diagonal pivots are zero: diagonal sweeping
    // skips both rounds and leaves the copy as it was
    QTest::newRow("zero diagonal") << 2 << Values{0, 1, 1, 0} << Values{0, 1, 1, 0} << 2;
}

void TestLinAlg::invert()
{
    QFETCH(int, n);
    QFETCH(Values, a);
    QFETCH(Values, inverse);
    QFETCH(int, zeroPivots);

    Mat m(n, a), b(n);
    QCOMPARE(::invert(n, m.rows(), b.rows()), zeroPivots);
    QCOMPARE(m.flat(), a);
    if (!inverse.isEmpty()) {
        const Values got = b.flat();
        for (int i = 0; i < n * n; ++i)
            QVERIFY2(near(got[i], inverse[i]), qPrintable(QString::number(i)));
    }
}

void TestLinAlg::products_data()
{
    QTest::addColumn<int>("n");
    QTest::addColumn<Values>("a");
    QTest::addColumn<Values>("b");
    QTest::addColumn<Values>("ab");
    QTest::addColumn<Values>("v");
    QTest::addColumn<Values>("av");

    // [1 2; 3 4][5 6; 7 8] = [19 22; 43 50]; [1 2; 3 4](1, -1) = (-1, -1)
    QTest::newRow("2x2") << 2 << Values{1, 2, 3, 4} << Values{5, 6, 7, 8} << Values{19, 22, 43, 50}
                         << Values{1, -1} << Values{-1, -1};
    // a matrix times its inverse is the unit matrix; a (1, 2, 3) = (3, 6, 11)
    QTest::newRow("inverse pair") << 3 << Values{1, 1, 0, 1, 1, 1, 0, 1, 3}
                                  << Values{-2, 3, -1, 3, -3, 1, -1, 1, 0}
                                  << Values{1, 0, 0, 0, 1, 0, 0, 0, 1} << Values{1, 2, 3} << Values{3, 6, 11};
}

void TestLinAlg::products()
{
    QFETCH(int, n);
    QFETCH(Values, a);
    QFETCH(Values, b);
    QFETCH(Values, ab);
    QFETCH(Values, v);
    QFETCH(Values, av);

    Mat ma(n, a), mb(n, b), mc(n);
    ::matMul(n, ma.rows(), mb.rows(), mc.rows());
    QCOMPARE(mc.flat(), ab);
    Values y(n);
    ::matVec(n, ma.rows(), v.data(), y.data());
    QCOMPARE(y, av);
}

void TestLinAlg::prints()
{
    FILE *f = std::tmpfile();
    QVERIFY(f);
    Mat m(2, {1, 2.5, -3, 1e-7});
    ::printMat(2, m.rows(), "A", f);
    const double v[3] = {0.125, 4, 100000000};
    ::printVec(3, v, "v", f);
    const int p[3] = {2, 0, 1};
    ::printIntVec(3, p, "perm", f);
    const int r0[2] = {1, -2}, r1[2] = {3, 4};
    const int *rows[2] = {r0, r1};
    ::printIntMat(2, rows, "M", f);
    const QString text = captured(f);
    std::fclose(f);
    QCOMPARE(text, QStringLiteral("# A = \n# 1 2.5 \n# -3 1e-07 \n# \n"
                                  "# v = \n# 0.125 4 1e+08 \n# \n"
                                  "# perm = \n# 2 0 1 \n# \n"
                                  "# M = \n# 1 -2 \n# 3 4 \n# \n"));
}

void TestLinAlg::quadSurfRecovers_data()
{
    QTest::addColumn<Values>("coef"); // a b c d e f
    QTest::newRow("all terms") << Values{0.5, -2, 0.75, 3, -1, 10};
    QTest::newRow("saddle offset") << Values{-1, 1, 4, 0, 0, -5};
}

void TestLinAlg::quadSurfRecovers()
{
    QFETCH(Values, coef);
    auto surface = [&](double x, double y) {
        return coef[0] * x * x + coef[1] * y * y + coef[2] * x * y + coef[3] * x + coef[4] * y + coef[5];
    };
    QuadSurf q;
    // a 4 x 3 grid away from the origin, so that no basis term vanishes
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 3; ++j)
            q.add(10 + 3 * i, -5 + 2 * j, surface(10 + 3 * i, -5 + 2 * j));
    }
    QVERIFY(q.solve());
    const Values got{q.a, q.b, q.c, q.d, q.e, q.f};
    for (int i = 0; i < 6; ++i)
        QVERIFY2(std::fabs(got[i] - coef[i]) < 1e-7, qPrintable(QString::number(i)));
    QVERIFY(std::fabs(q.value(1.5, -2.5) - surface(1.5, -2.5)) < 1e-6);
}

void TestLinAlg::quadSurfTooFewSamples_data()
{
    QTest::addColumn<int>("count");
    for (int c = 0; c < 6; ++c)
        QTest::newRow(qPrintable(QStringLiteral("%1 samples").arg(c))) << c;
}

void TestLinAlg::quadSurfTooFewSamples()
{
    QFETCH(int, count);
    // Small integer coordinates keep the elimination exact, so the rank
    // deficiency shows as an exactly zero pivot.
    const double xs[6] = {0, 1, 0, 1, 2, 0};
    const double ys[6] = {0, 0, 1, 1, 0, 2};
    QuadSurf q;
    for (int i = 0; i < count; ++i)
        q.add(xs[i], ys[i], 1 + xs[i] - ys[i]);
    QVERIFY(!q.solve());
    // the sixth point completes the triangular lattice, on which a quadratic
    // is determined: now the system is solvable
    if (count == 5) {
        q.add(xs[5], ys[5], 1 + xs[5] - ys[5]);
        QVERIFY(q.solve());
        QVERIFY(std::fabs(q.value(3, 4) - (1 + 3 - 4)) < 1e-9);
    }
}

QTEST_APPLESS_MAIN(TestLinAlg)
#include "tst_linalg.moc"
