#include "spectrum/LinAlg.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

// Scratch storage for the solvers. The systems are small, so up to kInline
// elements live on the stack and a call allocates nothing; larger systems
// fall back to the heap.
template <typename T, int kInline>
class Scratch
{
public:
    explicit Scratch(int count)
    {
        if (count > kInline) {
            heap_.resize(count);
            data_ = heap_.data();
        }
    }
    Scratch(const Scratch &) = delete;
    Scratch &operator=(const Scratch &) = delete;
    T *data() { return data_; }

private:
    std::array<T, kInline> inline_; // written before it is read
    std::vector<T> heap_;
    T *data_ = inline_.data();
};

constexpr int kInlineRows = 12;

// An n x n matrix of row pointers into one scratch block.
class ScratchMat
{
public:
    explicit ScratchMat(int n) : data_(n * n), rows_(n)
    {
        for (int i = 0; i < n; ++i)
            rows_.data()[i] = data_.data() + i * n;
    }
    double **rows() { return rows_.data(); }

private:
    Scratch<double, kInlineRows * kInlineRows> data_;
    Scratch<double *, kInlineRows> rows_;
};

using ScratchVec = Scratch<double, kInlineRows>;
using ScratchIntVec = Scratch<int, kInlineRows>;

} // namespace

double **allocMat(int n)
{
    if (n < 1)
        return nullptr;
    double **m = new double *[n];
    m[0] = new double[std::size_t(n) * std::size_t(n)]();
    for (int i = 1; i < n; ++i)
        m[i] = m[0] + std::size_t(i) * std::size_t(n);
    return m;
}

void freeMat(int n, double **m)
{
    if (!m)
        return;
    if (n >= 1)
        delete[] m[0];
    delete[] m;
}

double *allocVec(int n)
{
    return n < 1 ? nullptr : new double[n]();
}

void freeVec(double *v)
{
    delete[] v;
}

int *allocIntVec(int n)
{
    return n < 1 ? nullptr : new int[n]();
}

void freeIntVec(int *v)
{
    delete[] v;
}

void zeroMat(int n, double **m)
{
    for (int i = 0; i < n; ++i)
        std::fill(m[i], m[i] + n, 0.0);
}

void unitMat(int n, double **m)
{
    zeroMat(n, m);
    for (int i = 0; i < n; ++i)
        m[i][i] = 1.0;
}

void zeroVec(int n, double *v)
{
    if (n > 0)
        std::fill(v, v + n, 0.0);
}

void copyMat(int n, const double *const *a, double **b)
{
    for (int i = 0; i < n; ++i)
        copyVec(n, a[i], b[i]);
}

void copyVec(int n, const double *a, double *b)
{
    if (n > 0 && a != b)
        std::copy(a, a + n, b);
}

bool matHasNaN(int n, const double *const *m)
{
    for (int i = 0; i < n; ++i) {
        if (vecHasNaN(n, m[i]))
            return true;
    }
    return false;
}

bool vecHasNaN(int n, const double *v)
{
    for (int i = 0; i < n; ++i) {
        if (std::isnan(v[i]))
            return true;
    }
    return false;
}

void matMul(int n, const double *const *a, const double *const *b, double **c)
{
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            double sum = 0.0;
            for (int k = 0; k < n; ++k)
                sum += a[i][k] * b[k][j];
            c[i][j] = sum;
        }
    }
}

void matVec(int n, const double *const *a, const double *x, double *y)
{
    for (int i = 0; i < n; ++i) {
        double sum = 0.0;
        for (int k = 0; k < n; ++k)
            sum += a[i][k] * x[k];
        y[i] = sum;
    }
}

bool luDecompose(int n, const double *const *a, double **l, double **u, int *perm)
{
    bool ok = true;
    for (int i = 0; i < n; ++i)
        perm[i] = i;
    copyMat(n, a, l);

    for (int k = 0; k < n; ++k) {
        // Strict comparison from 0: the first of equal candidates wins, and an
        // all-zero column keeps the pivot in place.
        double best = 0.0;
        int pivot = k;
        for (int i = k; i < n; ++i) {
            const double v = std::fabs(l[perm[i]][k]);
            if (v > best) {
                best = v;
                pivot = i;
            }
        }
        std::swap(perm[k], perm[pivot]);

        const double *pivotRow = l[perm[k]];
        const double p = pivotRow[k];
        if (p == 0.0) {
            ok = false;
            continue;
        }
        for (int i = k + 1; i < n; ++i) {
            double *row = l[perm[i]];
            const double f = row[k] / p;
            row[k] = f;
            for (int j = k + 1; j < n; ++j)
                row[j] -= f * pivotRow[j];
        }
    }

    for (int k = 0; k < n; ++k) {
        const int r = perm[k];
        for (int j = 0; j < n; ++j) {
            if (j >= k) {
                u[r][j] = l[r][j];
                l[r][j] = 0.0;
            } else {
                u[r][j] = 0.0;
            }
        }
        l[r][k] = 1.0;
    }
    return ok;
}

bool forwardSolve(int n, const double *const *l, const double *b, double *y, const int *perm)
{
    bool ok = true;
    copyVec(n, b, y);
    // The last row needs no step: it has no rows below to update, and its
    // diagonal is the unit of l.
    for (int k = 0; k < n - 1; ++k) {
        const int r = perm[k];
        const double d = l[r][k];
        if (d == 0.0) {
            ok = false;
            continue;
        }
        y[r] /= d;
        for (int i = k + 1; i < n; ++i)
            y[perm[i]] -= y[r] * l[perm[i]][k];
    }
    return ok;
}

bool backSolve(int n, const double *const *u, const double *y, double *x, const int *perm)
{
    bool ok = true;
    copyVec(n, y, x);
    for (int k = n - 1; k >= 0; --k) {
        const int r = perm[k];
        const double d = u[r][k];
        if (d == 0.0) {
            ok = false;
            continue;
        }
        x[r] /= d;
        for (int i = k - 1; i >= 0; --i)
            x[perm[i]] -= x[r] * u[perm[i]][k];
    }
    return ok;
}

bool luSolve(int n, const double *const *a, const double *b, double *x, int *perm)
{
    if (n < 1)
        return true;
    ScratchMat l(n);
    ScratchMat u(n);
    ScratchVec y(n);
    const bool okLu = luDecompose(n, a, l.rows(), u.rows(), perm);
    const bool okL = forwardSolve(n, l.rows(), b, y.data(), perm);
    const bool okU = backSolve(n, u.rows(), y.data(), x, perm);
    return okLu && okL && okU;
}

bool solveInPlace(int n, const double *const *a, double *b)
{
    if (n < 1)
        return true;
    ScratchVec x(n);
    ScratchIntVec perm(n);
    const bool ok = luSolve(n, a, b, x.data(), perm.data());
    for (int k = 0; k < n; ++k)
        b[k] = x.data()[perm.data()[k]];
    return ok;
}

int invert(int n, const double *const *a, double **b)
{
    copyMat(n, a, b);
    Scratch<char, kInlineRows> used(n); // char: std::vector<bool> has no data()
    std::fill(used.data(), used.data() + std::max(n, 0), char(0));

    int zeroPivots = 0;
    for (int round = 0; round < n; ++round) {
        // Magnitudes are never below -1e300, so the first unused entry always
        // qualifies unless it is NaN; the fallback covers an all-NaN diagonal.
        double best = -1e300;
        int k = -1;
        int firstUnused = -1;
        for (int i = 0; i < n; ++i) {
            if (used.data()[i])
                continue;
            if (firstUnused < 0)
                firstUnused = i;
            const double v = std::fabs(b[i][i]);
            if (v > best) {
                best = v;
                k = i;
            }
        }
        if (k < 0)
            k = firstUnused;
        used.data()[k] = 1;

        const double p = b[k][k];
        if (p == 0.0) {
            ++zeroPivots;
            continue;
        }
        // In-place Gauss-Jordan step: row k becomes the pivot row of the
        // inverse, column k of the other rows carries their multipliers.
        double *pivotRow = b[k];
        pivotRow[k] = 1.0;
        for (int j = 0; j < n; ++j)
            pivotRow[j] /= p;
        for (int i = 0; i < n; ++i) {
            if (i == k)
                continue;
            double *row = b[i];
            const double f = row[k];
            row[k] = 0.0;
            for (int j = 0; j < n; ++j)
                row[j] -= f * pivotRow[j];
        }
    }
    return zeroPivots;
}

namespace {

void printHeader(const char *name, FILE *out)
{
    std::fprintf(out, "# %s = \n# ", name);
}

} // namespace

void printMat(int n, const double *const *m, const char *name, FILE *out)
{
    printHeader(name, out);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j)
            std::fprintf(out, "%g ", m[i][j]);
        std::fputs("\n# ", out);
    }
    std::fputs("\n", out);
}

void printVec(int n, const double *v, const char *name, FILE *out)
{
    printHeader(name, out);
    for (int i = 0; i < n; ++i)
        std::fprintf(out, "%g ", v[i]);
    std::fputs("\n# \n", out);
}

void printIntMat(int n, const int *const *m, const char *name, FILE *out)
{
    printHeader(name, out);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j)
            std::fprintf(out, "%d ", m[i][j]);
        std::fputs("\n# ", out);
    }
    std::fputs("\n", out);
}

void printIntVec(int n, const int *v, const char *name, FILE *out)
{
    printHeader(name, out);
    for (int i = 0; i < n; ++i)
        std::fprintf(out, "%d ", v[i]);
    std::fputs("\n# \n", out);
}
