#pragma once

#include "spectrum/Spectrum.h"

#include <QVector>

#include <cmath>

// The calibration by inner products compares a pixel's normalised curve with
// a standard's at some eighty candidate shifts, each reading the standard at
// every energy of the curve: most of the time of a calibration point. Here
// four or eight candidates are carried through one pass along the curve,
// each in a lane of its own, doing exactly what one candidate alone does: the same
// segment of the standard, the same straight line through it, the same sums
// in the same order, so every product is the one-candidate result to the bit.

// The standard as the products read it: its normalised curve, whose x must
// rise strictly, the range of energies within which it is read, and bins that
// give the segment of an energy without a walk. A plain value, built once for
// a run and shared by its threads; the bins only where the lanes run.
class InnerProductStandard
{
public:
    InnerProductStandard() = default;
    InnerProductStandard(const Spectrum &curve, double xMin, double xMax, double shift);

    Spectrum curve;     // shares the points of the curve it was made from
    double xMin = 0.0;  // energies x - dE outside [xMin, xMax] are skipped
    double xMax = 0.0;
    double shift = 0.0; // added to x - dE before the standard is read; finite

    // The segment of x, as a walk along the curve finds it, is the number
    // of points 1 to n - 2 at or below x. Bins of equal width from the first
    // x on say, for the energies that fall in them, how many of those points
    // lie in earlier bins (as the byte offset of the segment's first point),
    // and the x of the one point in the bin (NaN when none): x's segment
    // is then that one, or the next when x reaches the point. The bin of an
    // energy and of each point are worked out by the same arithmetic, so
    // this is exact. A bin holding several points says -1: its energies
    // search.
    struct Bin
    {
        double split;
        qint64 segment;
    };
    QVector<Bin> bins;
    double binOrigin = 0.0;
    double binScale = 0.0; // bins per unit of x
};

// The normalised inner product for the shift dE: sum(y s) / sqrt(sum(s s)
// sum(y y)) over the points i of the curve whose x[i] - dE lies in
// [xMin, xMax], y being yNorm[i] (0 past nNorm) and s the standard's straight
// line at x[i] - dE + shift, read by walking along the standard; 0 when
// either sum of squares is not positive. x and the standard's x must rise.
// The sums behind it, the standard read at x[i] - dE by read(x[i] - dE)
// (walking or searching): both readings give the same sums in the same order.
template <typename Read>
double innerProductWith(const QPointF *x, int n, const QPointF *yNorm, int nNorm, double xMin, double xMax,
                        double dE, Read read)
{
    double sumYS = 0.0;
    double sumSS = 0.0;
    double sumYY = 0.0;
    for (int i = 0; i < n; ++i) {
        const double e = x[i].x() - dE;
        if (!(xMin <= e && e <= xMax))
            continue;
        const double y = i < nNorm ? yNorm[i].y() : 0.0;
        const double s = read(e);
        sumYS += y * s;
        sumSS += s * s;
        sumYY += y * y;
    }
    if (!(sumYY > 0 && sumSS > 0))
        return 0.0;
    return sumYS / std::sqrt(sumSS * sumYY);
}

double innerProductAlong(const QPointF *x, int n, const QPointF *yNorm, int nNorm, const Spectrum &standard,
                         double xMin, double xMax, double shift, double dE);

// How many candidates one pass along the curve carries on this processor:
// 8 with AVX-512, 4 with AVX2, else 1.
int innerProductLanes();

// c[k] = innerProductAlong(..., standard.curve, standard.xMin, standard.xMax,
// standard.shift, dE[k]) to the bit for k < count, the candidates taken up
// to lanes at a time (0: as many as innerProductLanes()).
void innerProducts(const QPointF *x, int n, const QPointF *yNorm, int nNorm, const InnerProductStandard &standard,
                   const double *dE, double *c, int count, int lanes = 0);
