#include "tools/EdgeAlign.h"

#include "images/TiffData.h"
#include "view/ColorScale.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace {
// Beyond this a picture is not made: 512 MB of doubles.
constexpr long long MaxPixels = 1LL << 26;

struct Sums {
    double rb = 0, rr = 0, bb = 0;
};

// The three sums over the overlap of ref and bin shifted by (sx, sy): x runs
// where both x and x - sx lie in [0, w), y likewise.
Sums overlapSums(const ProcImage &ref, const ProcImage &bin, int sx, int sy)
{
    Sums s;
    const int x0 = std::max(0, sx), x1 = std::min(ref.w, ref.w + sx);
    const int y0 = std::max(0, sy), y1 = std::min(ref.h, ref.h + sy);
    for (int y = y0; y < y1; ++y) {
        const double *r = ref.v.data() + std::size_t(y) * ref.w;
        const double *b = bin.v.data() + std::size_t(y - sy) * bin.w;
        for (int x = x0; x < x1; ++x) {
            const double bv = b[x - sx];
            s.rb += r[x] * bv;
            s.rr += r[x] * r[x];
            s.bb += bv * bv;
        }
    }
    return s;
}
} // namespace

namespace EdgeAlign {

bool edgeDetect(const TiffData &f, int w, int h, ProcImage &out)
{
    if (w <= 0 || h <= 0 || (long long)w * h > MaxPixels)
        return false;
    out.w = w;
    out.h = h;
    out.v.assign(std::size_t(w) * h, 0.0);
    double mn = DBL_MAX, mx = -DBL_MAX;
    double *d = out.v.data();
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const double pmm = f.pixel(x - 1, y - 1), p0m = f.pixel(x, y - 1), ppm = f.pixel(x + 1, y - 1);
            const double pm0 = f.pixel(x - 1, y), pp0 = f.pixel(x + 1, y);
            const double pmp = f.pixel(x - 1, y + 1), p0p = f.pixel(x, y + 1), ppp = f.pixel(x + 1, y + 1);
            const double gx = std::fabs(pp0 - pm0 + ppp - pmm + ppm - pmp);
            const double gy = std::fabs(ppp - pmm - ppm + pmp + p0p - p0m);
            const double v = std::max(gx, gy);
            *d++ = v;
            if (v < mn)
                mn = v;
            if (v > mx)
                mx = v;
        }
    }
    out.min = mn;
    out.max = mx;
    return true;
}

void binarize(const ProcImage &edge, double threshold, ProcImage &out)
{
    out.w = edge.w;
    out.h = edge.h;
    out.v.resize(edge.v.size());
    bool any1 = false, any0 = false;
    for (std::size_t i = 0; i < edge.v.size(); ++i) {
        const bool on = threshold < edge.v[i];
        out.v[i] = on ? 1.0 : 0.0;
        (on ? any1 : any0) = true;
    }
    out.min = any0 ? 0.0 : 1.0;
    out.max = any1 ? 1.0 : 0.0;
}

double normScalarProduct(const ProcImage &ref, const ProcImage &bin, int sx, int sy)
{
    if (!ref.sameSize(bin))
        return 0.0;
    const Sums s = overlapSums(ref, bin, sx, sy);
    const double q = s.rr * s.bb;
    return q > 0 ? s.rb / std::sqrt(q) : 0.0;
}

int climb(const ProcImage &ref, const ProcImage &bin, int &sx, int &sy, double &best)
{
    static const int steps[8][2] = {{1, 1}, {1, 0}, {1, -1}, {0, -1}, {-1, -1}, {-1, 0}, {-1, 1}, {0, 1}};
    int computed = 0;
    for (;;) {
        const int x0 = sx, y0 = sy;
        bool found = false;
        for (const auto &st : steps) {
            const double p = normScalarProduct(ref, bin, x0 + st[0], y0 + st[1]);
            ++computed;
            if (p > best) {
                best = p;
                sx = x0 + st[0];
                sy = y0 + st[1];
                found = true;
            }
        }
        if (!found)
            return computed;
    }
}

QImage render(const ProcImage &img, const ColorScale &scale)
{
    QImage out(img.w, img.h, QImage::Format_RGB888);
    if (out.isNull())
        return out;
    const double k = 1.0 / (img.max - img.min);
    for (int y = 0; y < img.h; ++y) {
        uchar *line = out.scanLine(y);
        for (int x = 0; x < img.w; ++x) {
            const QColor c = scale.colorOfValue((img.at(x, y) - img.min) * k);
            *line++ = uchar(c.red());
            *line++ = uchar(c.green());
            *line++ = uchar(c.blue());
        }
    }
    return out;
}

QImage compare(const ProcImage &ref, const ProcImage &bin, int sx, int sy)
{
    QImage out(ref.w, ref.h, QImage::Format_RGB888);
    if (out.isNull() || !ref.sameSize(bin))
        return QImage();
    for (int y = 0; y < ref.h; ++y) {
        uchar *line = out.scanLine(y);
        const int by = y - sy;
        for (int x = 0; x < ref.w; ++x) {
            const int bx = x - sx;
            if (bx < 0 || by < 0 || bx >= bin.w || by >= bin.h) {
                *line++ = 0;
                *line++ = 0;
                *line++ = 255;
                continue;
            }
            const uchar r = uchar(ref.at(x, y) * 255);
            const uchar b = uchar(bin.at(bx, by) * 255);
            *line++ = r;
            *line++ = b;
            *line++ = b;
        }
    }
    return out;
}

} // namespace EdgeAlign
