#include "view/ChCoord.h"

#include <algorithm>
#include <cmath>

ChCoord::ChCoord(QObject *parent)
    : QObject(parent)
{
}

void ChCoord::setWindow(double x0, double y0, double x1, double y1)
{
    winX0 = x0;
    winY0 = y0;
    winX1 = x1;
    winY1 = y1;
    setPlotRegion(x0, y0, x1, y1);
}

void ChCoord::setPlotRegion(double x0, double y0, double x1, double y1)
{
    sX0 = x0;
    sY0 = y0;
    sX1 = x1;
    sY1 = y1;
}

void ChCoord::setRealRange(double x0, double y0, double x1, double y1)
{
    setRealX(x0, x1);
    setRealY(y0, y1);
}

void ChCoord::setRealX(double x0, double x1)
{
    rX0 = x0;
    rX1 = x1;
}

void ChCoord::setRealY(double y0, double y1)
{
    rY0 = y0;
    rY1 = y1;
}

void ChCoord::applyMargins()
{
    const double w = winX1 - winX0;
    const double h = winY1 - winY0;
    sX0 = winX0 + std::trunc(w * marginL);
    sX1 = winX1 - std::trunc(w * marginR);
    sY0 = winY0 + std::trunc(h * marginT);
    sY1 = winY1 - std::trunc(h * marginB);
}

// NaN (a zero-width screen span) stays NaN: there is no point to clamp to.
static double clampBetween(double v, double a, double b)
{
    const double lo = std::min(a, b);
    const double hi = std::max(a, b);
    if (v < lo)
        return lo;
    if (v > hi)
        return hi;
    return v;
}

double ChCoord::s2rxLimited(double v) const
{
    return clampBetween(s2rx(v), rX0, rX1);
}

double ChCoord::s2ryLimited(double v) const
{
    return clampBetween(s2ry(v), rY0, rY1);
}

static bool nearEnd(double v, double a, double b, double ratio)
{
    const double reach = std::abs(b - a) * ratio;
    return std::abs(v - a) <= reach || std::abs(v - b) <= reach;
}

bool ChCoord::nearXEdge(double v) const
{
    return nearEnd(v, sX0, sX1, edgeRatioX);
}

bool ChCoord::nearYEdge(double v) const
{
    return nearEnd(v, sY0, sY1, edgeRatioY);
}

bool ChCoord::nearLeftOrRightInWindow(double v) const
{
    return nearEnd(v, winX0, winX1, edgeRatioX);
}

double ChCoord::nextStep(double base, int minPixels) const
{
    static const double factors[] = {1, 2, 5};
    double decade = 1.0;
    for (int i = 0; i < 8; ++i, decade *= 10.0) {
        for (double f : factors) {
            const double step = base * f * decade;
            if (std::abs(r2sdx(step)) > minPixels)
                return step;
        }
    }
    return base * 1e8;
}

bool ChCoord::niceRange(double min, double max, double *step, double *first, double *last)
{
    static const double table[] = {0.2, 0.2, 0.5, 0.5, 1, 1, 1, 2, 2};
    const double d = max - min;
    if (!(d > 0) || !std::isfinite(d))
        return false;
    const double u = std::pow(10.0, std::floor(std::log10(d)));
    const double k = std::trunc(d / u) - 1;
    const double s = (k >= 0 && k <= 8) ? u * table[int(k)] : u;
    *step = s;
    *first = std::ceil(min / s) * s;
    *last = std::floor(max / s) * s;
    return true;
}
