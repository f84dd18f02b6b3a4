#include "support/RefXafs.h"

#include <algorithm>
#include <cmath>

namespace {

// Beyond `end` the steeper line follows the other plus g^2/dS / (x - p),
// meeting itself at the end with equal value and slope.
double bent(const RefLine &me, const RefLine &other, double end, bool inside, double x)
{
    if (inside)
        return me.at(x);
    // A line no steeper than the other keeps a rational term of 0 / x: the
    // line itself, and NaN exactly at x = 0.
    if (!(me.b > other.b))
        return me.at(x) + 0.0 / x;
    const double dS = other.b - me.b, dB = other.a - me.a, g = dS * end + dB;
    return other.at(x) + (g * g / dS) / (x - (2 * dS * end + dB) / dS);
}

double interp(const std::vector<double> &x, const std::vector<double> &y, double at)
{
    const size_t n = x.size();
    if (n == 0)
        return 0;
    if (n == 1)
        return y[0];
    size_t i = 0;
    if (at <= x[0])
        i = 0;
    else if (at >= x[n - 1])
        i = n - 2;
    else
        while (!(x[i] <= at && at < x[i + 1]))
            ++i;
    if (x[i + 1] == x[i])
        return (y[i] + y[i + 1]) / 2;
    return y[i] + (at - x[i]) * (y[i + 1] - y[i]) / (x[i + 1] - x[i]);
}

} // namespace

RefLine refFit(const std::vector<double> &es, const std::vector<double> &ys, double e1, double e2)
{
    RefLine ln{0, 0, e1, e2, 1};
    double me = 0, my = 0, sxy = 0, sxx = 0, sum = 0;
    int n = 0;
    for (size_t i = 0; i < es.size(); ++i)
        if (es[i] >= e1 && es[i] < e2)
            me += es[i], my += ys[i], ++n;
    if (n == 0)
        return ln;
    me /= n, my /= n;
    for (size_t i = 0; i < es.size(); ++i)
        if (es[i] >= e1 && es[i] < e2)
            sxy += (es[i] - me) * (ys[i] - my), sxx += (es[i] - me) * (es[i] - me);
    ln.b = n > 1 ? sxy / sxx : 0;
    ln.a = my - ln.b * me;
    for (size_t i = 0; i < es.size(); ++i)
        if (es[i] >= e1 && es[i] < e2)
            sum += (ys[i] - ln.at(es[i])) * (ys[i] - ln.at(es[i]));
    ln.rms = std::sqrt(sum / n);
    return ln;
}

RefXafs::RefXafs(const std::vector<double> &energies, const std::vector<double> &values, const RefElm &elm)
    : es(energies)
    , ys(values)
    , sm(values.size(), 0.0)
{
    const int n = int(es.size());
    if (n == 0)
        return;
    for (int i = 0; i < n; ++i) {
        const int lo = std::max(0, i - 2), hi = std::min(n - 1, i + 2);
        for (int j = lo; j <= hi; ++j)
            sm[i] += ys[j];
        sm[i] /= hi - lo + 1;
    }
    int from = 0, to = n - 1, best = 0;
    if (elm.use) {
        from = to = n - 1;
        for (int i = n - 2; i >= 0; --i) { // the last assignment is the first match
            const double mid = (es[i] + es[i + 1]) / 2;
            from = mid > elm.edgeEV + elm.preEnd ? i : from;
            to = mid > elm.edgeEV + elm.postStart ? i : to;
        }
    }
    double rise = 0;
    for (int i = from; i < to; ++i)
        if (sm[i + 1] - sm[i] > rise)
            rise = sm[i + 1] - sm[i], best = i;
    rough = es[best];
    // The last point never enters the post fit: the walk stops at the range end.
    pre = refFit(es, ys, es[0], rough + (elm.use ? elm.preEnd : -10));
    post = refFit(es, ys, rough + (elm.use ? elm.postStart : 10), es[n - 1]);
    const double gap = post.at(rough) - pre.at(rough);
    if (gap < 0) { // an inverted jump is widened, not repaired
        pre.a += -0.55 * gap;
        post.a += 0.55 * gap;
    }
    rawMidx = midxAt(0.5);
    rawDMut = qv(rawMidx) - pv(rawMidx);
    midx = rawMidx;
    dMut = rawDMut;
    if (elm.use) {
        outOfRange = rawMidx > elm.edgeEV + elm.postStart || rawMidx < elm.edgeEV + elm.preEnd;
        noisy = rawDMut < elm.thJumpSigma * pre.rms && rawDMut < elm.thJumpSigma * post.rms;
        if (outOfRange || noisy) {
            midx = elm.edgeEV;
            dMut = 0;
        }
    }
}

double RefXafs::pv(double e) const
{
    return bent(pre, post, pre.e2, e <= pre.e2, e);
}

double RefXafs::qv(double e) const
{
    return bent(post, pre, post.e1, e >= post.e1, e);
}

double RefXafs::norm(int i) const
{
    return (ys[i] - pv(es[i])) / (qv(es[i]) - pv(es[i]));
}

double RefXafs::midxAt(double ratio) const
{
    const int n = int(es.size());
    double rise = 0;
    int bi = 0;
    for (int i = 1; i + 1 < n; ++i) {
        const double level = qv(es[i]) * ratio + pv(es[i]) * (1 - ratio);
        if (sm[i - 1] < level && level < sm[i + 1] && sm[i + 1] - sm[i - 1] > rise)
            rise = sm[i + 1] - sm[i - 1], bi = i;
    }
    auto e = [&](int i) { return i >= 0 && i < n ? es[i] : 0.0; };
    // The smoothed curve read at an energy, as the analysis reads it.
    auto d = [&](double x) { return 0.5 * (pv(x) + qv(x)) - interp(es, sm, x); };
    const double a = e(bi - 1), b = e(bi), c = e(bi + 1);
    const double da = d(a), db = d(b), dc = d(c);
    return (3 * a + da * (b - a) / (da - db) + db * (c - b) / (db - dc) + da * (c - a) / (da - dc)) / 3;
}

double RefXafs::innerProduct(double dE, const RefXafs &standard) const
{
    std::vector<double> sn(standard.es.size());
    for (size_t i = 0; i < sn.size(); ++i)
        sn[i] = standard.norm(int(i));
    const double lo = *std::min_element(standard.es.begin(), standard.es.end());
    const double hi = *std::max_element(standard.es.begin(), standard.es.end());
    double sys = 0, sss = 0, syy = 0;
    for (size_t i = 0; i < es.size(); ++i) {
        const double e = es[i] - dE;
        if (e < lo || e > hi)
            continue;
        const double y = norm(int(i)), s = interp(standard.es, sn, e);
        sys += y * s, sss += s * s, syy += y * y;
    }
    return syy > 0 && sss > 0 ? sys / std::sqrt(sss * syy) : 0;
}

double RefXafs::searchDE(const RefXafs &standard, double range, double step, double minStep) const
{
    if (step < minStep)
        return 0;
    const double centre = midx - standard.midx;
    double best = -1e300, bestDE = 0;
    for (; step >= minStep; range *= 0.1, step *= 0.1)
        for (double d = -range; d <= range; d += step) {
            const double c = innerProduct(centre + d, standard);
            if (c > best)
                best = c, bestDE = centre + d;
        }
    return bestDE;
}
