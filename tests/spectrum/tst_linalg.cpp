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

// Reference product of two row-major n x n matrices (b may be a vector: m = 1).
Values product(int n, const Values &a, const Values &b, int m)
{
    Values c(n * m, 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < m; ++j)
            for (int k = 0; k < n; ++k)
                c[i * m + j] += a[i * n + k] * b[k * m + j];
    return c;
}

} // namespace

class TestLinAlg : public QObject
{
    Q_OBJECT
private slots:
    void solveAndInvert_data();
    void solveAndInvert();
    void luDecomposePivots_data();
    void luDecomposePivots();
    void triangularSolves_data();
    void triangularSolves();
    void prints();
    void quadSurf_data();
    void quadSurf();
};

void TestLinAlg::solveAndInvert_data()
{
    QTest::addColumn<int>("n");
    QTest::addColumn<Values>("a");
    QTest::addColumn<bool>("solvable");
    QTest::addColumn<int>("zeroPivots"); // of the diagonal sweep of invert
    QTest::newRow("empty") << 0 << Values{} << true << 0;
    QTest::newRow("1x1") << 1 << Values{-4} << true << 0;
    // Both diagonal pivots zero: LU swaps rows, the sweep skips both rounds
    // and leaves the copy as it was.
    QTest::newRow("zero diagonal") << 2 << Values{0, 1, 1, 0} << true << 2;
    QTest::newRow("3x3 two swaps") << 3 << Values{1, 2, 3, 4, 5, 6, 7, 8, 10} << true << 0;
    // Sweeping in order 0, 1, 2 would meet a zero at (1,1); largest first does not.
    QTest::newRow("pivot order matters") << 3 << Values{1, 1, 0, 1, 1, 1, 0, 1, 3} << true << 0;
    // Sweep (1,1) = 4 first; (0,0) becomes 1 - 2 * 2/4 = 0.
    QTest::newRow("singular rows") << 2 << Values{1, 2, 2, 4} << false << 1;
    // Sweeps at 4, then 1 - 2 * 5/4; the zero column keeps (1,1) at 0.
    QTest::newRow("zero column") << 3 << Values{1, 0, 2, 3, 0, 1, 5, 0, 4} << false << 1;
}

// b = A (1, 2, .., n), so the solution is known; the inverse times A is the unit.
void TestLinAlg::solveAndInvert()
{
    QFETCH(int, n);
    QFETCH(Values, a);
    QFETCH(bool, solvable);
    QFETCH(int, zeroPivots);
    Values x(n), unit(n * n, 0.0);
    for (int k = 0; k < n; ++k)
        x[k] = k + 1, unit[k * n + k] = 1;
    const Values b = product(n, a, x, 1);
    Mat m(n, a), inv(n), ab(n);
    Values got(n);
    ::matVec(n, m.rows(), x.data(), got.data());
    QCOMPARE(got, b);

    std::vector<double> sol(std::max(n, 1), -7.0);
    std::vector<int> perm(std::max(n, 1), -1);
    QCOMPARE(::luSolve(n, m.rows(), b.data(), sol.data(), perm.data()), solvable);
    QCOMPARE(m.flat(), a); // the matrix is left intact
    QVERIFY(isPermutation(perm.data(), n));
    Values inPlace = b;
    QCOMPARE(::solveInPlace(n, m.rows(), inPlace.data()), solvable);
    for (int k = 0; solvable && k < n; ++k)
        QVERIFY(near(sol[perm[k]], x[k]) && near(inPlace[k], x[k]));

    QCOMPARE(::invert(n, m.rows(), inv.rows()), zeroPivots);
    QCOMPARE(m.flat(), a);
    if (zeroPivots == n)
        QCOMPARE(inv.flat(), a);
    if (zeroPivots == 0) {
        const Values id = product(n, a, inv.flat(), n);
        for (int i = 0; i < n * n; ++i)
            QVERIFY2(near(id[i] + 1, unit[i] + 1), qPrintable(QString::number(i)));
    }
    ::matMul(n, m.rows(), inv.rows(), ab.rows());
    QCOMPARE(ab.flat(), product(n, a, inv.flat(), n));
}

void TestLinAlg::luDecomposePivots_data()
{
    QTest::addColumn<int>("n");
    QTest::addColumn<Values>("a");
    QTest::addColumn<Ints>("perm");
    QTest::addColumn<bool>("ok");
    QTest::newRow("equal magnitudes keep the first") << 2 << Values{1, 2, -1, 3} << Ints{0, 1} << true;
    QTest::newRow("larger below swaps") << 2 << Values{1, 2, -3, 1} << Ints{1, 0} << true;
    QTest::newRow("zero column keeps the pivot") << 2 << Values{0, 1, 0, 2} << Ints{0, 1} << false;
    // Column 0 picks row 1 (2); the rest becomes row 0 (0.5, -0.5) and row 2
    // (2.5, 0.5), so column 1 picks row 2.
    QTest::newRow("second column swaps too") << 3 << Values{1, 1, 0, 2, 1, 1, 1, 3, 1}
                                             << Ints{1, 2, 0} << true;
    QTest::newRow("NaN pivot is not zero") << 1 << Values{kNaN} << Ints{0} << true;
}

// L times U, both read through perm, rebuild a; L has a unit diagonal, U
// nothing below it.
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
    for (int k = 0; ok && !std::isnan(a[0]) && k < n; ++k) {
        QCOMPARE(l.rows()[p[k]][k], 1.0);
        for (int j = 0; j < n; ++j) {
            QVERIFY(j >= k || u.rows()[p[k]][j] == 0.0);
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
    // n = 1: the forward pass only copies, whatever the diagonal.
    QTest::newRow("forward 1x1 copies") << false << 1 << Values{5} << Ints{0} << Values{2} << Values{2} << true;
    QTest::newRow("back 1x1 zero pivot") << true << 1 << Values{0} << Ints{0} << Values{2} << Values{2} << false;
    // Row 1 plays row 0: y0 = b[1] = 2, y1 = b[0] - 3 * 2 = 1.
    QTest::newRow("forward through perm") << false << 2 << Values{3, 1, 1, 0} << Ints{1, 0} << Values{7, 2}
                                          << Values{1, 2} << true;
    // U = [[2,1],[0,4]] in play order: x1 = 8/4 in storage row 0, x0 = (6 - 2)/2.
    QTest::newRow("back through perm") << true << 2 << Values{0, 4, 2, 1} << Ints{1, 0} << Values{8, 6}
                                       << Values{2, 2} << true;
    // A zero on the diagonal of L is reported and its step skipped.
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
    Mat m(n, t);
    Values out(n, -9.0);
    QTEST(upper ? ::backSolve(n, m.rows(), rhs.data(), out.data(), perm.data())
                : ::forwardSolve(n, m.rows(), rhs.data(), out.data(), perm.data()),
          "ok");
    QTEST(out, "expected");
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

void TestLinAlg::quadSurf_data()
{
    QTest::addColumn<QByteArray>("xy");
    QTest::addColumn<Values>("coef"); // a b c d e f of a x^2 + b y^2 + c xy + d x + e y + f
    QTest::addColumn<bool>("ok");
    // Small integers keep the elimination exact: rank deficiency is an exact 0 pivot.
    const Values plane{0, 0, 0, 1, -1, 1};
    QTest::newRow("no samples") << QByteArray() << plane << false;
    QTest::newRow("five samples") << QByteArray("0,0 1,0 0,1 1,1 2,0") << plane << false;
    // The sixth point completes a triangular lattice, which fixes a quadratic.
    QTest::newRow("triangular lattice") << QByteArray("0,0 1,0 0,1 1,1 2,0 0,2") << plane << true;
    // A grid away from the origin, so that no basis term vanishes.
    QTest::newRow("all terms") << QByteArray("10,-5 13,-5 16,-5 19,-5 10,-3 13,-3 16,-3 19,-3 10,-1 13,-1 16,-1 19,-1")
                               << Values{0.5, -2, 0.75, 3, -1, 10} << true;
}

void TestLinAlg::quadSurf()
{
    QFETCH(QByteArray, xy);
    QFETCH(Values, coef);
    QFETCH(bool, ok);
    auto z = [&](double x, double y) {
        return coef[0] * x * x + coef[1] * y * y + coef[2] * x * y + coef[3] * x + coef[4] * y + coef[5];
    };
    QuadSurf q;
    for (const QByteArray &item : xy.split(' ')) {
        const QList<QByteArray> c = item.split(',');
        if (c.size() == 2)
            q.add(c[0].toDouble(), c[1].toDouble(), z(c[0].toDouble(), c[1].toDouble()));
    }
    QCOMPARE(q.solve(), ok);
    if (!ok)
        return;
    const Values got{q.a, q.b, q.c, q.d, q.e, q.f};
    for (int i = 0; i < 6; ++i)
        QVERIFY2(std::fabs(got[i] - coef[i]) < 1e-7, qPrintable(QString::number(i)));
    QVERIFY(std::fabs(q.value(1.5, -2.5) - z(1.5, -2.5)) < 1e-6);
}

QTEST_APPLESS_MAIN(TestLinAlg)
#include "tst_linalg.moc"
