#include "tools/MapHistogram.h"

#include "analysis/AnalyzeCond.h"
#include "analysis/Analyzed2DRes.h"

#include <algorithm>
#include <cmath>

namespace {
// Calls f(v) for the map's value at each point of the walk; the first point
// is always visited.
template <typename F>
void walk(const Analyzed2DRes &map, AnalyzeCond c, F f)
{
    c.restart();
    do
        f(map.valueAt(c.ix, c.iy));
    while (c.next());
}
} // namespace

void MapHistogram::fill(const Analyzed2DRes &map, const AnalyzeCond &area, int nBins)
{
    double sum = 0, sumSq = 0;
    int n = 0;
    double mn = 1e300, mx = -1e300;
    walk(map, area, [&](double v) {
        ++n;
        sum += v;
        sumSq += v * v;
        if (v < mn)
            mn = v;
        if (v > mx)
            mx = v;
    });
    count = n;
    min = mn;
    max = mx;
    mean = sum / n;
    variance = sumSq / n - mean * mean;
    if (variance < 0)
        variance = 0;
    sigma = std::sqrt(variance);

    bins = nBins;
    binWidth = (max - min) / bins;
    counts.fill(0, std::max(0, bins));

    if ((rangeLo < min && rangeHi < min) || (rangeLo > max && rangeHi > max)) {
        rangeLo = min;
        rangeHi = max;
    } else {
        rangeLo = std::clamp(rangeLo, min, std::max(min, max));
        rangeHi = std::clamp(rangeHi, min, std::max(min, max));
    }

    if (bins > 0)
        walk(map, area, [&](double v) { ++counts[binOf(v)]; });
    selectionStats();
}

int MapHistogram::binOf(double v) const
{
    if (bins < 1)
        return -1;
    const double b = std::floor((v - min) / binWidth);
    if (b >= bins - 1)
        return bins - 1;
    if (b > 0)
        return int(b);
    return 0; // below, or no number at all
}

void MapHistogram::selectionStats()
{
    double sum = 0, sum2 = 0;
    int n = 0;
    for (int i = 0; i < counts.size(); ++i) {
        const double c = min + i * binWidth;
        if (selLo <= c && c <= selHi) {
            sum += counts[i] * c;
            sum2 += counts[i] * c * c;
            n += counts[i];
        }
    }
    const double div = n < 2 ? 1.0 : double(n);
    selCount = n;
    selMean = sum / div;
    selVariance = sum2 / div - selMean * selMean;
    if (selVariance < 0)
        selVariance = 0;
    selSigma = std::sqrt(selVariance);
    selLo = rangeLo;
    selHi = rangeHi;
}

int MapHistogram::maxCount() const
{
    int m = 0;
    for (int c : counts)
        m = std::max(m, c);
    return m;
}
