#include "spectrum/VictLine.h"

#include "spectrum/LinAlg.h"
#include "spectrum/PhysConst.h"
#include "spectrum/VectorClones.h"

#include <QDebug>

#include <algorithm>
#include <cmath>

VictLine::VictLine() = default;

bool VictLine::fit(const Spectrum &s, double e1_, double e2_, int lineType, bool rising)
{
    e1 = e1_;
    e2 = e2_;
    type = lineType;
    if (type == 0) {
        if (s.size() < 4) {
            fitOk = false;
            return false;
        }
        fitOk = fitVictoreen(s, fitSpan(s, rising));
    } else {
        if (s.size() < 3) {
            fitOk = false;
            return false;
        }
        fitOk = fitStraight(s, fitSpan(s, rising));
    }
    measureResidual(s, rising);
    return fitOk;
}

namespace {

// The first index in from..to-1 whose energy less shift is at or above
// bound, else to; for energies that never fall, where that test holds on a
// tail.
int firstAtOrAbove(const QPointF *p, int from, int to, double shift, double bound)
{
    while (from < to) {
        const int mid = from + (to - from) / 2;
        if (p[mid].x() - shift >= bound)
            to = mid;
        else
            from = mid + 1;
    }
    return from;
}

} // namespace

// Both fits take the points from the start of the list up to, not including,
// the first one at or above e2, and of those the ones at or above e1. On
// rising energies (the shift moves them all alike, so they never fall) the
// ones at or above e1 are the tail of that run.
VictLine::Span VictLine::fitSpan(const Spectrum &s, bool rising) const
{
    const double shift = s.activeShift();
    const QPointF *p = s.points.constData();
    const int n = int(s.points.size());
    if (rising) {
        const int to = firstAtOrAbove(p, 0, n, shift, e2);
        return {firstAtOrAbove(p, 0, to, shift, e1), to};
    }
    int to = 0;
    while (to < n && !(p[to].x() - shift >= e2))
        ++to;
    return {0, to};
}

bool VictLine::fitVictoreen(const Spectrum &s, Span span)
{
    double n = 0, s3 = 0, s4 = 0, s6 = 0, s7 = 0, s8 = 0, sy = 0, sy3 = 0, sy4 = 0;
    const double shift = s.activeShift();
    const QPointF *pts = s.points.constData();
    for (int i = span.from; i < span.to; ++i) {
        const QPointF &p = pts[i];
        const double e = p.x() - shift;
        if (!(e >= e1))
            continue;
        const double l = kHcEVAngstrom / e;
        const double l3 = l * l * l;
        const double l4 = l3 * l;
        const double y = p.y();
        n += 1;
        s3 += l3;
        s4 += l4;
        s6 += l3 * l3;
        s7 += l3 * l4;
        s8 += l4 * l4;
        sy += y;
        sy3 += y * l3;
        sy4 += y * l4;
    }
    const double m[3][3] = {{n, s3, s4}, {s3, s6, s7}, {s4, s7, s8}};
    const double *rows[3] = {m[0], m[1], m[2]};
    const double rhs[3] = {sy, sy3, sy4};
    double x[3];
    int perm[3];
    const bool ok = luSolve(3, rows, rhs, x, perm);
    intercept = x[perm[0]];
    c3 = x[perm[1]];
    c4 = x[perm[2]];
    return ok;
}

bool VictLine::fitStraight(const Spectrum &s, Span span)
{
    double n = 0, sx = 0, sxx = 0, sy = 0, sxy = 0;
    const double shift = s.activeShift();
    const QPointF *pts = s.points.constData();
    for (int i = span.from; i < span.to; ++i) {
        const QPointF &p = pts[i];
        const double e = p.x() - shift;
        if (!(e >= e1))
            continue;
        n += 1;
        sx += e;
        sxx += e * e;
        sy += p.y();
        sxy += e * p.y();
    }
    if (n < 2) {
        // One point fixes no slope: keep its level, or nothing at all.
        slope = 0.0;
        intercept = n >= 1 ? sy : 0.0;
        return false;
    }
    const double m[2][2] = {{sxx, sx}, {sx, n}};
    const double *rows[2] = {m[0], m[1]};
    const double rhs[2] = {sxy, sy};
    double x[2];
    int perm[2];
    const bool ok = luSolve(2, rows, rhs, x, perm);
    slope = x[perm[0]];
    intercept = x[perm[1]];
    return ok;
}

void VictLine::measureResidual(const Spectrum &s, bool rising)
{
    // The range is closed at e2 for a Victoreen line and open for a straight
    // one. The difference is intended: noise figures that callers compare
    // against have always been measured this way.
    const bool closedTop = type == 0;
    const double shift = s.activeShift();
    const QPointF *p = s.points.constData();
    const int n = int(s.points.size());
    const auto inRange = [&](double e) { return e >= e1 && (closedTop ? e <= e2 : e < e2); };
    int from = 0;
    int to = n;
    if (rising) {
        // One run of the list: from its first point in range to the first
        // one past it.
        from = firstAtOrAbove(p, 0, n, shift, e1);
        to = from;
        if (!closedTop)
            to = firstAtOrAbove(p, from, n, shift, e2);
        while (to < n && inRange(p[to].x() - shift))
            ++to;
    }
    double sum = 0.0;
    nFit = 0;
    if (rising && type != 0) {
        // Every point of the run is in range; the straight line spelled out.
        for (int i = from; i < to; ++i) {
            const double d = p[i].y() - (slope * (p[i].x() - shift) + intercept);
            sum += d * d;
        }
        nFit = to - from;
    } else {
        for (int i = from; i < to; ++i) {
            const double e = p[i].x() - shift;
            if (!inRange(e))
                continue;
            const double d = p[i].y() - lineValueAt(e);
            sum += d * d;
            ++nFit;
        }
    }
    rms = nFit > 0 ? std::sqrt(sum / nFit) : 1.0;
}

double VictLine::victoreenAt(double x) const
{
    const double l = kHcEVAngstrom / x;
    return (l * c4 + c3) * l * l * l + intercept;
}

TESSARELLE_VECTOR_CLONES
void VictLine::valuesAt(const double *x, int n, double *v) const
{
    if (correctedOn && correctedForm != 2) {
        for (int i = 0; i < n; ++i)
            v[i] = valueAt(x[i]);
        return;
    }
    // The corrected part is a tail of the run above e2 or a head below e1.
    int plainFrom = 0;
    int plainTo = n;
    if (correctedOn) {
        // Bisection: the test holds on a head of the rising run.
        const double *split = correctedAbove ? std::partition_point(x, x + n, [this](double e) { return !(e > e2); })
                                             : std::partition_point(x, x + n, [this](double e) { return e < e1; });
        const int k = int(split - x);
        (correctedAbove ? plainTo : plainFrom) = k;
        const int from = correctedAbove ? plainTo : 0;
        const int to = correctedAbove ? n : plainFrom;
        for (int i = from; i < to; ++i)
            v[i] = p0 * x[i] + p1 + rb / (x[i] + ra);
    }
    if (type != 0) {
        for (int i = plainFrom; i < plainTo; ++i)
            v[i] = slope * x[i] + intercept;
    } else {
        for (int i = plainFrom; i < plainTo; ++i) {
            const double l = kHcEVAngstrom / x[i];
            v[i] = (l * c4 + c3) * l * l * l + intercept;
        }
    }
}

double VictLine::otherCorrectedValueAt(double x) const
{
    if (correctedForm == 1)
        return interpolateY(x);
    return ((p0 * x + p1) * x + p2) * x + p3;
}

void VictLine::genCorrected(const VictLine &other)
{
    correctedOn = false;
    // A Victoreen line already bends on its own and is never corrected.
    if (type != 1)
        return;
    if (correctedForm == 2) {
        genRationalPre(other);
        return;
    }
    if (other.slope >= slope)
        return;
    if (correctedForm == 1)
        genBezierPre(other);
    else
        genCubicPre(other);
}

void VictLine::genCorrectedInPost(const VictLine &other)
{
    correctedOn = false;
    if (type != 1)
        return;
    if (correctedForm == 2) {
        genRationalPost(other);
        return;
    }
    if (other.slope >= slope)
        return;
    if (correctedForm == 1)
        genBezierPost(other);
    else
        genCubicPost(other);
}

// p0 x + p1 + rb / (x + ra) with the other line as asymptote. ra and rb are
// chosen so that the curve leaves this line at e2 with its value and slope:
// with G the gap between the lines at e2, e2 + ra = -G / dS and the pole term
// there is -G, its derivative -dS.
void VictLine::genRationalPre(const VictLine &other)
{
    ra = rb = 0.0;
    p0 = slope;
    p1 = intercept;
    if (slope > other.slope) {
        const double dS = other.slope - slope;
        const double dB = other.intercept - intercept;
        const double g = dS * e2 + dB;
        ra = -(2 * dS * e2 + dB) / dS;
        rb = g * g / dS;
        p0 = other.slope;
        p1 = other.intercept;
    }
    correctedOn = true;
    correctedAbove = true;
}

// The mirror image at e1: the curve joins this line at e1 and approaches the
// other line below it.
void VictLine::genRationalPost(const VictLine &other)
{
    ra = rb = 0.0;
    p0 = slope;
    p1 = intercept;
    if (slope > other.slope) {
        const double dS = slope - other.slope;
        const double dB = intercept - other.intercept;
        const double g = dS * e1 + dB;
        ra = -(2 * dS * e1 + dB) / dS;
        rb = -g * g / dS;
        p0 = other.slope;
        p1 = other.intercept;
    }
    correctedOn = true;
    correctedAbove = false;
}

bool VictLine::solveCubic(double a, double va, double sa, double b, double vb, double sb)
{
    const double m[4][4] = {
        {3 * a * a, 2 * a, 1, 0},
        {3 * b * b, 2 * b, 1, 0},
        {a * a * a, a * a, a, 1},
        {b * b * b, b * b, b, 1},
    };
    const double *rows[4] = {m[0], m[1], m[2], m[3]};
    const double rhs[4] = {sa, sb, va, vb};
    double l[4][4], u[4][4], y[4], x[4];
    double *lRows[4] = {l[0], l[1], l[2], l[3]};
    double *uRows[4] = {u[0], u[1], u[2], u[3]};
    int perm[4];
    // The messages name the post side on both sides; they are what the logs
    // have always said.
    bool ok = true;
    if (!luDecompose(4, rows, lRows, uRows, perm)) {
        qDebug().noquote() << "make  LU (2) false in VictLine genCorrectedInPost";
        ok = false;
    }
    if (!forwardSolve(4, lRows, rhs, y, perm)) {
        qDebug().noquote() << "solve LV (2) false in VictLine genCorrectedInPost";
        ok = false;
    }
    if (!backSolve(4, uRows, y, x, perm)) {
        qDebug().noquote() << "solve UV (2) false in VictLine genCorrectedInPost";
        ok = false;
    }
    if (!ok)
        return false;
    p0 = x[perm[0]];
    p1 = x[perm[1]];
    p2 = x[perm[2]];
    p3 = x[perm[3]];
    return true;
}

// From this line's value and slope at its e2 to a target at the other line's
// e2. If the lines meet before that point (at xc), the target lies off the
// other line by the part of the gap left at the meeting point, with a slope
// blended between the two; otherwise it is an average of both.
void VictLine::genCubicPre(const VictLine &other)
{
    const double a = e2;
    const double b = other.e2;
    const double f = lineValueAt(a);
    const double d = other.lineValueAt(a) - f;
    const double xc = a - d / (other.slope - slope);
    double v;
    double s;
    if (b > xc) {
        const double t = (xc - a) / (b - a);
        v = other.lineValueAt(b) - d * t;
        s = other.slope * (1 - t) + t * slope;
    } else {
        v = (other.lineValueAt(b) - other.lineValueAt(a) + lineValueAt(b) + f) * 0.5;
        s = other.slope;
    }
    if (!solveCubic(a, f, slope, b, v, s))
        return;
    correctedOn = true;
    correctedAbove = true;
}

// From the other line's e1 (moved out when the lines meet inside the gap)
// up to this line's value and slope at its e1.
void VictLine::genCubicPost(const VictLine &other)
{
    double a = other.e1;
    const double b = e1;
    const double f = lineValueAt(b);
    const double g = other.lineValueAt(b);
    const double xc = b - (f - g) / (slope - other.slope);
    double v;
    if (xc > a) {
        a = 2 * a - b;
        v = other.lineValueAt(a);
    } else {
        v = (other.lineValueAt(a) - g + lineValueAt(a) + f) * 0.5;
    }
    if (!solveCubic(a, v, other.slope, b, f, slope))
        return;
    correctedOn = true;
    correctedAbove = false;
}

void VictLine::sampleBezier()
{
    const QPointF q0 = ctrlPts[0];
    const QPointF q1 = ctrlPts[1];
    const QPointF q2 = ctrlPts[2];
    const QPointF q3 = ctrlPts[3];
    points.reserve(points.size() + 100);
    // t is accumulated in steps of 0.01. The hundredth step lands just above
    // 1, so there are 100 samples and the end point b is not among them;
    // interpolation extrapolates the last short segment up to it.
    for (double t = 0; t < 1; t += 0.01) {
        const double s = 1 - t;
        const double w0 = s * s * s;
        const double w1 = 3 * s * s * t;
        const double w2 = 3 * s * t * t;
        const double w3 = t * t * t;
        addPoint(w0 * q0.x() + w1 * q1.x() + w2 * q2.x() + w3 * q3.x(),
                 w0 * q0.y() + w1 * q1.y() + w2 * q2.y() + w3 * q3.y());
    }
}

// r is half the position of the lines' meeting point within [a, b]; beyond
// b (r > 1) there is no room for a curve.
void VictLine::genBezierPre(const VictLine &other)
{
    const double a = e2;
    const double b = other.e2;
    const double f = lineValueAt(a);
    const double dGap = other.lineValueAt(a) - f;
    const double r = -dGap / ((other.slope - slope) * (b - a)) * 0.5;
    if (r > 1)
        return;
    const double d = (b - a) * (0.1 * r);
    const double v = other.lineValueAt(b) - 0.5 * dGap * r;
    ctrlPts = {QPointF(a, f), QPointF(a + d, f + slope * d), QPointF(b - d, v - other.slope * d),
               QPointF(b, v)};
    sampleBezier();
    correctedOn = true;
    correctedAbove = true;
}

// The mirror image around e1: the far end is the other line's e1, the gap is
// measured at this line's e1, and the control points run upward in x so that
// the sampled list stays ordered.
void VictLine::genBezierPost(const VictLine &other)
{
    const double a = other.e1;
    const double b = e1;
    const double f = lineValueAt(b);
    const double dGap = other.lineValueAt(b) - f;
    const double r = -dGap / ((slope - other.slope) * (b - a)) * 0.5;
    if (r > 1)
        return;
    const double d = (b - a) * (0.1 * r);
    const double v = other.lineValueAt(a) - 0.5 * dGap * r;
    ctrlPts = {QPointF(a, v), QPointF(a + d, v + other.slope * d), QPointF(b - d, f - slope * d),
               QPointF(b, f)};
    sampleBezier();
    correctedOn = true;
    correctedAbove = false;
}
