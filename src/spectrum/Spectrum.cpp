#include "spectrum/Spectrum.h"

Spectrum::Spectrum()
{
    reset();
}

void Spectrum::reset()
{
    points.clear();
    resetToFill(0);
}

void Spectrum::resetToFill(qsizetype n)
{
    if (points.size() != n) {
        points.clear();
        points.resize(n);
    }
    kind = 1;
    smoothY.clear();
    smoothValid = false;
    xShiftOn = false;
    xShift = 0.0;
    tag = 0;
    resetRange();
}

void Spectrum::resetRange()
{
    xMin = 1e300;
    yMin = 1e300;
    xMax = -1e300;
    yMax = -1e300;
    iYMin = -1879048193;
    iYMax = 1879048193;
}

namespace {

// The extremes and their indices, in locals: the members could alias the
// points, and storing them on every point of a bulk scan cost as much as the
// rest of a map point's absorption.
struct Extremes
{
    double xMin, xMax, yMin, yMax;
    int iYMin, iYMax;
    explicit Extremes(const Spectrum &s)
        : xMin(s.xMin), xMax(s.xMax), yMin(s.yMin), yMax(s.yMax), iYMin(s.iYMin), iYMax(s.iYMax)
    {
    }
    void storeIn(Spectrum &s) const
    {
        s.xMin = xMin;
        s.xMax = xMax;
        s.yMin = yMin;
        s.yMax = yMax;
        s.iYMin = iYMin;
        s.iYMax = iYMax;
    }
    void take(double x, double y, int index)
    {
        xMin = x < xMin ? x : xMin;
        xMax = x > xMax ? x : xMax;
        if (y < yMin) {
            yMin = y;
            iYMin = index;
        }
        if (y > yMax) {
            yMax = y;
            iYMax = index;
        }
    }
};

} // namespace

void Spectrum::extendRange(double x, double y, int index)
{
    Extremes e(*this);
    e.take(x, y, index);
    e.storeIn(*this);
}

void Spectrum::addPoint(double x, double y)
{
    const int index = points.size();
    points.append(QPointF(x, y));
    extendRange(x, y, index);
}

void Spectrum::scanRange()
{
    resetRange();
    Extremes e(*this);
    const QPointF *p = points.constData();
    for (int i = 0, n = int(points.size()); i < n; ++i)
        e.take(p[i].x(), p[i].y(), i);
    e.storeIn(*this);
}

double Spectrum::interpolateY(double x) const
{
    const int n = points.size();
    if (n < 1)
        return 0.0;
    if (n == 1)
        return points[0].y();
    const int i = segmentFor(x, n);
    return lineThrough(points[i].x(), points[i].y(), points[i + 1].x(), points[i + 1].y(), x);
}

double Spectrum::interpolateSmoothY(double x) const
{
    // Points added after the last smooth() have no smoothed value yet; they
    // stay out rather than be read past the end of smoothY.
    const int n = qMin(points.size(), smoothY.size());
    if (n < 1)
        return 0.0;
    if (n == 1)
        return smoothY[0];
    const int i = segmentFor(x, n);
    return lineThrough(points[i].x(), smoothY[i], points[i + 1].x(), smoothY[i + 1], x);
}

bool Spectrum::xRising() const
{
    const QPointF *p = points.constData();
    for (qsizetype i = 0; i + 1 < points.size(); ++i) {
        if (!(p[i].x() < p[i + 1].x()))
            return false;
    }
    return true;
}

double Spectrum::smoothYAtLastPoint(int i) const
{
    const int n = points.size();
    if (n == 1)
        return smoothY[0];
    const QPointF *p = points.constData();
    return lineThrough(p[n - 2].x(), smoothY[n - 2], p[n - 1].x(), smoothY[n - 1], p[i].x());
}

void Spectrum::smooth(int halfWidth)
{
    // A negative width would leave an empty window; it averages nothing
    // beyond the point itself.
    const int w = qMax(halfWidth, 0);
    const int n = points.size();
    smoothY.resize(n);
    // Raw pointers: indexing the lists of a non-const object would check for
    // sharing at every read, and this runs once per spectrum of a map.
    const QPointF *p = points.constData();
    double *out = smoothY.data();
    // The analyses' width away from the ends, spelled out: the same
    // additions in the same order, without the loop around them.
    const bool five = w == 2 && n >= 5;
    for (int i = 0; i < n; ++i) {
        if (five && i == 2) {
            for (; i < n - 2; ++i) {
                double sum = 0.0;
                sum += p[i - 2].y();
                sum += p[i - 1].y();
                sum += p[i].y();
                sum += p[i + 1].y();
                sum += p[i + 2].y();
                out[i] = sum / 5;
            }
        }
        const int from = qMax(i - w, 0);
        const int to = qMin(i + w, n - 1);
        double sum = 0.0;
        for (int j = from; j <= to; ++j)
            sum += p[j].y();
        out[i] = sum / (to - from + 1);
    }
    smoothValid = true;
}
