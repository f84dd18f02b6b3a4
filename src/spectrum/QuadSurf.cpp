#include "spectrum/QuadSurf.h"

#include "spectrum/LinAlg.h"

void QuadSurf::clear()
{
    *this = QuadSurf();
}

void QuadSurf::add(double x, double y, double z)
{
    const double xx = x * x;
    const double yy = y * y;
    const double xy = x * y;
    sxxxx += xx * xx;
    sxxxy += xx * xy;
    sxxyy += xx * yy;
    sxyyy += xy * yy;
    syyyy += yy * yy;
    sxxx += xx * x;
    sxxy += xx * y;
    sxyy += x * yy;
    syyy += yy * y;
    sxx += xx;
    sxy += xy;
    syy += yy;
    sx += x;
    sy += y;
    n += 1;
    sxxz += xx * z;
    syyz += yy * z;
    sxyz += xy * z;
    sxz += x * z;
    syz += y * z;
    sz += z;
}

bool QuadSurf::solve()
{
    // Basis (x^2, y^2, xy, x, y, 1); row i is the basis function i times the
    // residual, summed over the samples.
    double m[6][6] = {
        {sxxxx, sxxyy, sxxxy, sxxx, sxxy, sxx},
        {sxxyy, syyyy, sxyyy, sxyy, syyy, syy},
        {sxxxy, sxyyy, sxxyy, sxxy, sxyy, sxy},
        {sxxx, sxyy, sxxy, sxx, sxy, sx},
        {sxxy, syyy, sxyy, sxy, syy, sy},
        {sxx, syy, sxy, sx, sy, n},
    };
    const double *rows[6] = {m[0], m[1], m[2], m[3], m[4], m[5]};
    double r[6] = {sxxz, syyz, sxyz, sxz, syz, sz};
    const bool ok = solveInPlace(6, rows, r);
    a = r[0];
    b = r[1];
    c = r[2];
    d = r[3];
    e = r[4];
    f = r[5];
    return ok;
}

double QuadSurf::value(double x, double y) const
{
    return a * x * x + b * y * y + c * x * y + d * x + e * y + f;
}
