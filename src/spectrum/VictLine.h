#pragma once

#include "spectrum/Spectrum.h"

#include <QPointF>
#include <QVector>

// One background line of an absorption spectrum, fitted by least squares over
// an energy range [e1, e2] either as a straight line (type 1) or as a
// Victoreen curve intercept + c3 lambda^3 + c4 lambda^4 (type 0).
//
// A straight line also carries a corrected form that replaces it beyond its
// fit range (above e2 on the pre-edge side, below e1 on the post-edge side)
// and bends it smoothly toward the other line, so that the two lines neither
// kink at the edge nor cross. The rational form is the one in use; the cubic
// and Bezier forms are selected only through correctedForm.
//
// The inherited point list is used only by the Bezier form, which stores its
// samples there.
class VictLine : public Spectrum
{
public:
    VictLine();

    // Fits over the energies of s in [e1, e2) (Victoreen for lineType 0,
    // straight line otherwise), then measures the residual. Returns and
    // stores in fitOk whether the fit succeeded. Too few points in s (fewer
    // than 4 for Victoreen, 3 for a line) return false at once and leave
    // every coefficient, rms and nFit as they were.
    // With rising, the caller vouches that the energies of s strictly rise:
    // the points in range are then one run of the list, found by bisection,
    // and summed in the same order as the scan would.
    bool fit(const Spectrum &s, double e1, double e2, int lineType, bool rising = false);

    // The corrected form where it is in force, else the plain line. Inline:
    // a map point reads the lines a few hundred times.
    double valueAt(double x) const
    {
        const bool beyond = correctedAbove ? x > e2 : x < e1;
        if (!correctedOn || !beyond)
            return lineValueAt(x);
        if (correctedForm == 2)
            return p0 * x + p1 + rb / (x + ra);
        return otherCorrectedValueAt(x);
    }
    // valueAt(x[i]) into v[i] for n energies that strictly rise: the same
    // numbers, each part of the run on one side of where the corrected form
    // takes over worked out by one formula in a loop the compiler can run
    // several energies at a time.
    void valuesAt(const double *x, int n, double *v) const;
    // The plain fitted line, never corrected.
    double lineValueAt(double x) const
    {
        if (type != 0)
            return slope * x + intercept;
        return victoreenAt(x);
    }

    // Pre-edge side: called on the pre line with the post line as other.
    void genCorrected(const VictLine &other);
    // Post-edge side: called on the post line with the pre line as other.
    void genCorrectedInPost(const VictLine &other);

    bool fitOk = false;
    int type = 1;
    double intercept = 0.0;
    double c3 = 0.0;
    double c4 = 0.0;
    double slope = 0.0; // a Victoreen fit leaves it untouched
    double rms = 0.0;
    int nFit = 0;
    double e1 = 0.0;
    double e2 = 0.0;
    int correctedForm = 2; // 2 rational, 1 Bezier, anything else cubic
    bool correctedOn = false;
    bool correctedAbove = false;
    // Cubic: p0 x^3 + p1 x^2 + p2 x + p3. Rational: p0 x + p1 is the asymptote.
    double p0 = 0.0;
    double p1 = 0.0;
    double p2 = 0.0;
    double p3 = 0.0;
    QVector<QPointF> ctrlPts; // Bezier control points, four once generated
    // Rational term rb / (x + ra).
    double ra = 0.0;
    double rb = 0.0;

private:
    // The points of s that the fits read: indices from..to-1, of which those
    // at or above e1.
    struct Span
    {
        int from = 0;
        int to = 0;
    };
    Span fitSpan(const Spectrum &s, bool rising) const;
    bool fitVictoreen(const Spectrum &s, Span span);
    bool fitStraight(const Spectrum &s, Span span);
    void measureResidual(const Spectrum &s, bool rising);
    double victoreenAt(double x) const;
    // The cubic and Bezier forms.
    double otherCorrectedValueAt(double x) const;

    void genRationalPre(const VictLine &other);
    void genRationalPost(const VictLine &other);
    void genCubicPre(const VictLine &other);
    void genCubicPost(const VictLine &other);
    void genBezierPre(const VictLine &other);
    void genBezierPost(const VictLine &other);
    // Cubic through (a, va) with slope sa and (b, vb) with slope sb into
    // p0..p3; false (logged) when the 4x4 system cannot be solved.
    bool solveCubic(double a, double va, double sa, double b, double vb, double sb);
    void sampleBezier();
};
