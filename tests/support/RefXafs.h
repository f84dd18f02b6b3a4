#pragma once

#include <vector>

// An independent re-computation of the analysis of one absorption spectrum,
// for the tests to compare the program with: written from the method's
// description with other arithmetic (centred closed-form line fits instead
// of normal equations), so agreement is to rounding, not to the bit.

struct RefElm {
    bool use = false;
    double edgeEV = 8984.36029;
    double preEnd = -20;
    double postStart = 20;
    double thJumpSigma = 1;
};

struct RefLine {
    double a = 0, b = 0, e1 = 0, e2 = 0, rms = 1;
    double at(double e) const { return b * e + a; }
};

struct RefXafs {
    RefXafs(const std::vector<double> &energies, const std::vector<double> &values, const RefElm &elm = RefElm());

    // The corrected lines: beyond its range end the steeper line bends
    // towards the other one.
    double pv(double e) const;
    double qv(double e) const;
    // The pre-base double-normalised value at point i.
    double norm(int i) const;
    // The edge at the level `ratio` between the lines, refined at half height.
    double midxAt(double ratio) const;
    double innerProduct(double dE, const RefXafs &standard) const;
    double searchDE(const RefXafs &standard, double range, double step, double minStep) const;

    std::vector<double> es, ys, sm;
    RefLine pre, post;
    double rough = 0;
    double rawMidx = 0; // before the suggested element's checks
    double rawDMut = 0;
    bool outOfRange = false;
    bool noisy = false;
    double midx = 0; // after them: the suggested edge and 0 when either fails
    double dMut = 0;
};

// Least squares line over the points with e1 <= e < e2.
RefLine refFit(const std::vector<double> &es, const std::vector<double> &ys, double e1, double e2);
