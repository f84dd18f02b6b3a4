#include "tools/FVMaps.h"

#include <algorithm>
#include <cmath>

namespace {
double fraction(double v, double a, double b)
{
    const double span = b - a;
    if (!(span > 0) || !std::isfinite(span))
        return 0.5;
    return (v - a) / span;
}

template <typename F>
void forEachPixel(const FVMaps::Points &pts, int size, F f)
{
    if (!pts.xs)
        return;
    const QVector<double> &xs = *pts.xs;
    for (qsizetype i = 0; i < xs.size(); ++i) {
        const double y = pts.ys && i < pts.ys->size() ? pts.ys->at(i) : 0.0;
        int px, py;
        if (FVMaps::toPixel(pts, size, xs[i], y, px, py))
            f(px, py);
    }
}
} // namespace

namespace FVMaps {

bool toPixel(const Points &pts, int size, double x, double y, int &px, int &py)
{
    if (!std::isfinite(x) || !std::isfinite(y) || size < 1)
        return false;
    const double fx = std::round(fraction(x, pts.x0, pts.x1) * (size - 1));
    const double fy = std::round(fraction(y, pts.y0, pts.y1) * (size - 1));
    if (!(fx >= 0 && fx < size && fy >= 0 && fy < size))
        return false;
    px = int(fx);
    py = size - 1 - int(fy);
    return true;
}

QImage scatter(const Points &pts, int size)
{
    QImage img(size, size, QImage::Format_RGB32);
    if (img.isNull())
        return img;
    img.fill(Qt::white);
    const QRgb blue = qRgb(0, 0, 255);
    forEachPixel(pts, size, [&](int px, int py) { img.setPixel(px, py, blue); });
    return img;
}

std::vector<double> kernel(int hw, int reach, double b)
{
    std::vector<double> k;
    if (hw < 0 || reach < 0)
        return k;
    const int r = std::min(hw, reach);
    const double lnB = std::log(b);
    k.reserve(std::size_t(2 * r + 1) * (2 * r + 1));
    for (int j = -r; j <= r; ++j)
        for (int i = -r; i <= r; ++i)
            k.push_back(std::exp((i * i + j * j) * lnB / hw / hw));
    return k;
}

QImage density(const Points &pts, int size, int hw, double b, double cRange)
{
    QImage img(size, size, QImage::Format_RGB32);
    if (img.isNull())
        return img;
    img.fill(Qt::white);
    std::vector<double> table(std::size_t(size) * size, 0.0);
    const std::vector<double> k = kernel(hw, size - 1, b);
    const int r = k.empty() ? -1 : std::min(hw, size - 1);
    double m = 0;
    forEachPixel(pts, size, [&](int px, int py) {
        const double *kv = k.data();
        for (int j = -r; j <= r; ++j) {
            const int y = py + j;
            for (int i = -r; i <= r; ++i, ++kv) {
                const int x = px + i;
                if (x < 0 || y < 0 || x >= size || y >= size)
                    continue;
                double &t = table[std::size_t(y) * size + x];
                t += *kv;
                if (t > m)
                    m = t;
            }
        }
    });
    const double c = m * cRange;
    for (int y = 0; y < size; ++y) {
        QRgb *line = reinterpret_cast<QRgb *>(img.scanLine(y));
        for (int x = 0; x < size; ++x) {
            const double g = std::trunc(table[std::size_t(y) * size + x] / c * 255);
            const int gi = g >= 255 ? 255 : g > 0 ? int(g) : 0;
            line[x] = qRgb(255, gi, 0);
        }
    }
    return img;
}

} // namespace FVMaps
