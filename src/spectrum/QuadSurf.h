#pragma once

// A quadratic surface z = a x^2 + b y^2 + c x y + d x + e y + f fitted by
// least squares through scattered samples. add() accumulates the sums of the
// normal equations, solve() solves them; the samples themselves are not kept.
class QuadSurf
{
public:
    // Forgets all samples and coefficients.
    void clear();
    void add(double x, double y, double z);
    // Solves the 6x6 normal equations. With fewer than six samples in general
    // position they are singular and the result is false; the coefficients
    // then hold whatever the solver reached.
    bool solve();
    double value(double x, double y) const;

    double a = 0, b = 0, c = 0, d = 0, e = 0, f = 0;
    double sxxxx = 0, sxxxy = 0, sxxyy = 0, sxyyy = 0, syyyy = 0;
    double sxxx = 0, sxxy = 0, sxyy = 0, syyy = 0;
    double sxx = 0, sxy = 0, syy = 0, sx = 0, sy = 0, n = 0;
    double sxxz = 0, syyz = 0, sxyz = 0, sxz = 0, syz = 0, sz = 0;
};
