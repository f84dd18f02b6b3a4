#pragma once

#include <QPointF>
#include <QVector>
#include <QtGlobal>

// A plain curve: ordered (x, y) points with their extremes, a smoothed copy
// of y and linear interpolation. It is a value type with no virtual
// functions; VictLine and XafsSpectrum derive from it and copy it freely.
//
// x is stored raw. When xShiftOn is set, every energy that the analyses read
// from the curve is x - xShift (energyAt); extremes and interpolation stay in
// raw x, so a caller that works in shifted energies adds activeShift() back
// before it interpolates.
class Spectrum
{
public:
    Spectrum();

    // Empties the curve and its smoothed copy and restores every field to its
    // reset value, the shift included.
    void reset();
    // reset() for a curve whose n points the caller writes next: one of the
    // same length keeps its points as they are rather than zeroing them.
    void resetToFill(qsizetype n);
    // Restores only the extremes and their indices.
    void resetRange();

    void addPoint(double x, double y);
    // Extremes and their indices over all points, exactly as addPoint would
    // have left them after adding the points one by one: for curves written
    // in bulk through points.data().
    void scanRange();
    // Makes room for n points. reset() keeps the room of an unshared curve,
    // so a curve refilled call after call stops allocating once warm.
    void reserve(int n) { points.reserve(n); }

    // Straight-line interpolation through the bracketing points, extrapolating
    // along the end segments. No points: 0; one point: its y.
    double interpolateY(double x) const;
    // Index i0 of the segment (i0, i0 + 1) that serves x among the first n
    // points p, n >= 2: the first segment at or below the first x, the last
    // at or above the last x, else the bisection's E[i0] <= x < E[i0 + 1].
    // Inline: the calibration's lanes fall back on it without a call that
    // would make the compiler save every vector register around it.
    static int segmentFor(const QPointF *p, int n, double x)
    {
        if (x <= p[0].x())
            return 0;
        if (x >= p[n - 1].x())
            return n - 2;
        int lo = 0;
        int hi = n - 1;
        while (lo < hi - 1) {
            const int mid = (lo + hi) / 2;
            if (p[mid].x() > x)
                hi = mid;
            else
                lo = mid;
        }
        return lo;
    }
    // interpolateY(x) to the bit for a run of x that never fall, on a curve
    // whose x rise (xRising()): segment carries the place found from one
    // call to the next (-1 before the first, which then bisects; 0 walks
    // from the start), so the run costs one walk along the curve instead of
    // a search per x. x must not be NaN. Inline: the calibration reads the
    // standard this way for every candidate shift.
    double interpolateYOnward(double x, int &segment) const
    {
        const int n = int(points.size());
        if (n < 2)
            return interpolateY(x);
        // The search's segment on a rising curve: 0 at or below the first
        // x, n - 2 at or above the last, else the i with x_i <= x < x_{i+1}.
        const QPointF *p = points.constData();
        int i = segment < 0 ? segmentFor(x, n) : qMin(segment, n - 2);
        while (i < n - 2 && p[i + 1].x() <= x)
            ++i;
        segment = i;
        return lineThrough(p[i].x(), p[i].y(), p[i + 1].x(), p[i + 1].y(), x);
    }
    // The same over smoothY at the same x. Only the points that have a
    // smoothed value take part; none gives 0.
    double interpolateSmoothY(double x) const;
    // True when every x is above the one before (none is NaN).
    bool xRising() const;
    // interpolateSmoothY(points[i].x()) to the bit, without the search, for
    // a curve whose x rise and that has been smoothed since its last point.
    // Inline: an edge search reads every point.
    double smoothYAtPoint(int i) const
    {
        if (i < int(points.size()) - 1) {
            // x = x0: the line's (x - x0) * (y1 - y0) is +0, -0 or NaN, and
            // dividing it by the rising step x1 - x0 > 0 leaves it as it is,
            // so the division is skipped without changing a bit.
            const double x = points.constData()[i].x();
            const double *sy = smoothY.constData();
            return sy[i] + (x - x) * (sy[i + 1] - sy[i]);
        }
        return smoothYAtLastPoint(i);
    }

    // Moving average over i - halfWidth .. i + halfWidth, clipped at the ends
    // of the list and divided by the true count there.
    void smooth(int halfWidth);

    // The shift that energies carry: xShift when xShiftOn, else 0.
    double activeShift() const { return xShiftOn ? xShift : 0.0; }
    // Energy of point i: raw x minus the active shift. i must be in range.
    double energyAt(int i) const { return points[i].x() - activeShift(); }
    int size() const { return points.size(); }

    int kind = 1;
    QVector<QPointF> points;
    double xMin = 1e300;
    double yMin = 1e300;
    double xMax = -1e300;
    double yMax = -1e300;
    // The reset values of the indices are deliberately absurd, so that an
    // index never set by addPoint cannot pass for a real one.
    int iYMin = -1879048193;
    int iYMax = 1879048193;
    QVector<double> smoothY;
    bool smoothValid = false;
    bool xShiftOn = false;
    double xShift = 0.0;
    quint64 tag = 0;

private:
    static double lineThrough(double x0, double y0, double x1, double y1, double x)
    {
        // Coincident energies have no slope: their mean stands for both.
        if (x1 == x0)
            return (y0 + y1) / 2;
        return y0 + (x - x0) * (y1 - y0) / (x1 - x0);
    }
    // smoothYAtPoint of the last point, or of the only one.
    double smoothYAtLastPoint(int i) const;
    // Takes point (x, y) at index into the extremes.
    void extendRange(double x, double y, int index);

    int segmentFor(double x, int n) const { return segmentFor(points.constData(), n, x); }
};
