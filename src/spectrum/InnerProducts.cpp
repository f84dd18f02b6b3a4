#include "spectrum/InnerProducts.h"

#include "spectrum/Spectrum.h"

#include <algorithm>
#include <cmath>
#include <limits>

#if defined(__GNUC__) && defined(__x86_64__)
#include <immintrin.h>
#define TESSARELLE_VECTOR_PRODUCTS 1
#endif

#ifdef TESSARELLE_VECTOR_PRODUCTS

static_assert(sizeof(QPointF) == 2 * sizeof(double), "points are read as pairs of doubles");

namespace {

// The bin of x, exactly as the lanes compute it: the same operations in the
// same order, clamped (NaN to 0) to the table.
double binPosition(double x, double origin, double scale, double lastBin)
{
    const double v = (x - origin) * scale;
    const double low = v > 0.0 ? v : 0.0;  // _mm256_max_pd(v, 0)
    return low < lastBin ? low : lastBin; // _mm256_min_pd(low, lastBin)
}

// The lanes whose bin holds several points (bits of crowded) find their
// segment by bisection, as byte offsets like the bins give.
void searchCrowded(const QPointF *sp, int ns, const double *t, int lanes, unsigned crowded, qint64 *segs)
{
    for (int k = 0; k < lanes; ++k) {
        if (crowded >> k & 1)
            segs[k] = qint64(Spectrum::segmentFor(sp, ns, t[k])) * qint64(sizeof(QPointF));
    }
}

// AVX2 alone, without FMA: every product and sum rounds by itself, as in the
// one-candidate loop.
//
// A block of energies at a time, in two passes: the first finds every lane's
// segment from its bin, the second reads the standard there and adds to the
// sums. Apart, each pass has short chains of dependent steps, and the
// processor overlaps many energies of a pass.
__attribute__((target("avx2"))) void fourLanes(const QPointF *x, int n, const QPointF *yNorm, int nNorm,
                                                const InnerProductStandard &standard, const double dE[4],
                                                double c[4])
{
    constexpr int Block = 64;
    const double *px = reinterpret_cast<const double *>(x);
    const QPointF *sp = standard.curve.points.constData();
    const int ns = int(standard.curve.points.size());
    const char *bytes = reinterpret_cast<const char *>(sp);
    const double *bins = reinterpret_cast<const double *>(standard.bins.constData());
    const __m256d d = _mm256_loadu_pd(dE);
    const __m256d shift = _mm256_set1_pd(standard.shift);
    __m256d sumYS = _mm256_setzero_pd();
    __m256d sumSS = _mm256_setzero_pd();
    __m256d sumYY = _mm256_setzero_pd();
    // Each lane's segment as the byte offset of its first point.
    alignas(32) qint64 segs[Block][4];
    for (int from = 0; from < n; from += Block) {
        const int to = std::min(n, from + Block);
        {
            const __m256d origin = _mm256_set1_pd(standard.binOrigin);
            const __m256d scale = _mm256_set1_pd(standard.binScale);
            const __m256d lastBin = _mm256_set1_pd(double(standard.bins.size() - 1));
            const __m256i pointBytes = _mm256_set1_epi64x(qint64(sizeof(QPointF)));
            for (int i = from; i < to; ++i) {
                const __m256d t = _mm256_add_pd(_mm256_sub_pd(_mm256_set1_pd(px[2 * i]), d), shift);
                const __m256d bin = _mm256_min_pd(
                    _mm256_max_pd(_mm256_mul_pd(_mm256_sub_pd(t, origin), scale), _mm256_setzero_pd()), lastBin);
                alignas(16) int b[4];
                _mm_store_si128(reinterpret_cast<__m128i *>(b), _mm256_cvttpd_epi32(bin));
                const __m256d b02 = _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_load_pd(bins + 2 * b[0])),
                                                         _mm_load_pd(bins + 2 * b[2]), 1);
                const __m256d b13 = _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_load_pd(bins + 2 * b[1])),
                                                         _mm_load_pd(bins + 2 * b[3]), 1);
                const __m256d split = _mm256_unpacklo_pd(b02, b13);
                const __m256i first = _mm256_castpd_si256(_mm256_unpackhi_pd(b02, b13));
                const __m256i at = _mm256_add_epi64(
                    first, _mm256_and_si256(_mm256_castpd_si256(_mm256_cmp_pd(split, t, _CMP_LE_OQ)), pointBytes));
                _mm256_store_si256(reinterpret_cast<__m256i *>(segs[i - from]), at);
                // A bin with several points: those lanes search.
                const int crowded = _mm256_movemask_pd(_mm256_castsi256_pd(at));
                if (crowded) {
                    alignas(32) double tl[4];
                    _mm256_store_pd(tl, t);
                    searchCrowded(sp, ns, tl, 4, unsigned(crowded), segs[i - from]);
                }
            }
        }
        const __m256d lo = _mm256_set1_pd(standard.xMin);
        const __m256d hi = _mm256_set1_pd(standard.xMax);
        for (int i = from; i < to; ++i) {
            const __m256d e = _mm256_sub_pd(_mm256_set1_pd(px[2 * i]), d);
            const __m256d in =
                _mm256_and_pd(_mm256_cmp_pd(lo, e, _CMP_LE_OQ), _mm256_cmp_pd(e, hi, _CMP_LE_OQ));
            if (_mm256_testz_pd(in, in))
                continue;
            const __m256d t = _mm256_add_pd(e, shift);
            // Each lane's pair of points, x0 y0 x1 y1, turned into four
            // columns.
            const qint64 *s = segs[i - from];
            const __m256d r0 = _mm256_loadu_pd(reinterpret_cast<const double *>(bytes + s[0]));
            const __m256d r1 = _mm256_loadu_pd(reinterpret_cast<const double *>(bytes + s[1]));
            const __m256d r2 = _mm256_loadu_pd(reinterpret_cast<const double *>(bytes + s[2]));
            const __m256d r3 = _mm256_loadu_pd(reinterpret_cast<const double *>(bytes + s[3]));
            const __m256d xs01 = _mm256_unpacklo_pd(r0, r1);
            const __m256d ys01 = _mm256_unpackhi_pd(r0, r1);
            const __m256d xs23 = _mm256_unpacklo_pd(r2, r3);
            const __m256d ys23 = _mm256_unpackhi_pd(r2, r3);
            const __m256d x0 = _mm256_permute2f128_pd(xs01, xs23, 0x20);
            const __m256d x1 = _mm256_permute2f128_pd(xs01, xs23, 0x31);
            const __m256d y0 = _mm256_permute2f128_pd(ys01, ys23, 0x20);
            const __m256d y1 = _mm256_permute2f128_pd(ys01, ys23, 0x31);
            // y0 + (t - x0) (y1 - y0) / (x1 - x0). The standard's x rise
            // strictly, so no segment has the coincident ends that the
            // one-candidate line replaces by their mean.
            const __m256d line = _mm256_add_pd(
                y0, _mm256_div_pd(_mm256_mul_pd(_mm256_sub_pd(t, x0), _mm256_sub_pd(y1, y0)), _mm256_sub_pd(x1, x0)));
            // Lanes out of range add +0 to their sums, which leaves them as
            // they are: a sum starts at +0 and never becomes -0.
            const __m256d sIn = _mm256_and_pd(line, in);
            const __m256d y = _mm256_and_pd(_mm256_set1_pd(i < nNorm ? yNorm[i].y() : 0.0), in);
            sumYS = _mm256_add_pd(sumYS, _mm256_mul_pd(y, sIn));
            sumSS = _mm256_add_pd(sumSS, _mm256_mul_pd(sIn, sIn));
            sumYY = _mm256_add_pd(sumYY, _mm256_mul_pd(y, y));
        }
    }
    alignas(32) double ys[4], ss[4], yy[4];
    _mm256_store_pd(ys, sumYS);
    _mm256_store_pd(ss, sumSS);
    _mm256_store_pd(yy, sumYY);
    for (int k = 0; k < 4; ++k)
        c[k] = yy[k] > 0 && ss[k] > 0 ? ys[k] / std::sqrt(ss[k] * yy[k]) : 0.0;
}

// GCC 12's AVX-512 intrinsics fill the lanes they leave undefined from a
// variable initialised by itself, which the uninitialised-use warning takes
// for a fault in the code that calls them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"

// Lane k's x0 y0 x1 y1 and lane k + 4's side by side.
__attribute__((target("avx512f"), always_inline)) inline __m512d lanePairs(const char *bytes, const qint64 *s, int k)
{
    return _mm512_insertf64x4(_mm512_castpd256_pd512(_mm256_loadu_pd(reinterpret_cast<const double *>(bytes + s[k]))),
                              _mm256_loadu_pd(reinterpret_cast<const double *>(bytes + s[k + 4])), 1);
}

// The bins of lanes k, k + 2, k + 4 and k + 6, split and segment each.
__attribute__((target("avx512f"), always_inline)) inline __m512d binPairs(const double *bins, const int *b, int k)
{
    const __m256d low = _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_load_pd(bins + 2 * b[k])),
                                             _mm_load_pd(bins + 2 * b[k + 2]), 1);
    const __m256d high = _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_load_pd(bins + 2 * b[k + 4])),
                                              _mm_load_pd(bins + 2 * b[k + 6]), 1);
    return _mm512_insertf64x4(_mm512_castpd256_pd512(low), high, 1);
}

// AVX-512 the same way, eight candidates a lane each. Lanes out of range
// are masked out of the sums, exactly as the one-candidate loop skips them.
// The bins are gathered; the pairs of points loaded and shuffled as above.
__attribute__((target("avx512f,avx512dq"))) void eightLanes(const QPointF *x, int n, const QPointF *yNorm,
                                                            int nNorm, const InnerProductStandard &standard,
                                                            const double dE[8], double c[8])
{
    constexpr int Block = 64;
    const double *px = reinterpret_cast<const double *>(x);
    const QPointF *sp = standard.curve.points.constData();
    const int ns = int(standard.curve.points.size());
    const char *bytes = reinterpret_cast<const char *>(sp);
    const double *bins = reinterpret_cast<const double *>(standard.bins.constData());
    const __m512d d = _mm512_loadu_pd(dE);
    const __m512d shift = _mm512_set1_pd(standard.shift);
    __m512d sumYS = _mm512_setzero_pd();
    __m512d sumSS = _mm512_setzero_pd();
    __m512d sumYY = _mm512_setzero_pd();
    alignas(64) qint64 segs[Block][8];
    // Lane k's pair of points lies in elements k of the four rows put
    // together from the eight loads, after these two selections.
    const __m512i firstHalves = _mm512_set_epi64(13, 12, 5, 4, 9, 8, 1, 0);
    const __m512i secondHalves = _mm512_set_epi64(15, 14, 7, 6, 11, 10, 3, 2);
    for (int from = 0; from < n; from += Block) {
        const int to = std::min(n, from + Block);
        {
            const __m512d origin = _mm512_set1_pd(standard.binOrigin);
            const __m512d scale = _mm512_set1_pd(standard.binScale);
            const __m512d lastBin = _mm512_set1_pd(double(standard.bins.size() - 1));
            const __m512i pointBytes = _mm512_set1_epi64(qint64(sizeof(QPointF)));
            for (int i = from; i < to; ++i) {
                const __m512d t = _mm512_add_pd(_mm512_sub_pd(_mm512_set1_pd(px[2 * i]), d), shift);
                const __m512d bin = _mm512_min_pd(
                    _mm512_max_pd(_mm512_mul_pd(_mm512_sub_pd(t, origin), scale), _mm512_setzero_pd()), lastBin);
                alignas(32) int b[8];
                _mm256_store_si256(reinterpret_cast<__m256i *>(b), _mm512_cvttpd_epi32(bin));
                const __m512d even = binPairs(bins, b, 0);
                const __m512d odd = binPairs(bins, b, 1);
                const __m512d split = _mm512_unpacklo_pd(even, odd);
                const __m512i first = _mm512_castpd_si512(_mm512_unpackhi_pd(even, odd));
                const __m512i at =
                    _mm512_mask_add_epi64(first, _mm512_cmp_pd_mask(split, t, _CMP_LE_OQ), first, pointBytes);
                _mm512_store_si512(segs[i - from], at);
                const __mmask8 crowded = _mm512_movepi64_mask(at);
                if (crowded) {
                    alignas(64) double tl[8];
                    _mm512_store_pd(tl, t);
                    searchCrowded(sp, ns, tl, 8, unsigned(crowded), segs[i - from]);
                }
            }
        }
        const __m512d lo = _mm512_set1_pd(standard.xMin);
        const __m512d hi = _mm512_set1_pd(standard.xMax);
        for (int i = from; i < to; ++i) {
            const __m512d e = _mm512_sub_pd(_mm512_set1_pd(px[2 * i]), d);
            const __mmask8 in = _mm512_cmp_pd_mask(lo, e, _CMP_LE_OQ) & _mm512_cmp_pd_mask(e, hi, _CMP_LE_OQ);
            if (!in)
                continue;
            const __m512d t = _mm512_add_pd(e, shift);
            const qint64 *s = segs[i - from];
            const __m512d z0 = lanePairs(bytes, s, 0);
            const __m512d z1 = lanePairs(bytes, s, 1);
            const __m512d z2 = lanePairs(bytes, s, 2);
            const __m512d z3 = lanePairs(bytes, s, 3);
            const __m512d xs01 = _mm512_unpacklo_pd(z0, z1);
            const __m512d ys01 = _mm512_unpackhi_pd(z0, z1);
            const __m512d xs23 = _mm512_unpacklo_pd(z2, z3);
            const __m512d ys23 = _mm512_unpackhi_pd(z2, z3);
            const __m512d x0 = _mm512_permutex2var_pd(xs01, firstHalves, xs23);
            const __m512d x1 = _mm512_permutex2var_pd(xs01, secondHalves, xs23);
            const __m512d y0 = _mm512_permutex2var_pd(ys01, firstHalves, ys23);
            const __m512d y1 = _mm512_permutex2var_pd(ys01, secondHalves, ys23);
            const __m512d line = _mm512_add_pd(
                y0, _mm512_div_pd(_mm512_mul_pd(_mm512_sub_pd(t, x0), _mm512_sub_pd(y1, y0)), _mm512_sub_pd(x1, x0)));
            const __m512d y = _mm512_set1_pd(i < nNorm ? yNorm[i].y() : 0.0);
            sumYS = _mm512_mask_add_pd(sumYS, in, sumYS, _mm512_mul_pd(y, line));
            sumSS = _mm512_mask_add_pd(sumSS, in, sumSS, _mm512_mul_pd(line, line));
            sumYY = _mm512_mask_add_pd(sumYY, in, sumYY, _mm512_mul_pd(y, y));
        }
    }
    alignas(64) double ys[8], ss[8], yy[8];
    _mm512_store_pd(ys, sumYS);
    _mm512_store_pd(ss, sumSS);
    _mm512_store_pd(yy, sumYY);
    for (int k = 0; k < 8; ++k)
        c[k] = yy[k] > 0 && ss[k] > 0 ? ys[k] / std::sqrt(ss[k] * yy[k]) : 0.0;
}

#pragma GCC diagnostic pop

int lanesAvailable()
{
    static const int lanes = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") ? 8
                             : __builtin_cpu_supports("avx2")                                          ? 4
                                                                                                       : 1;
    return lanes;
}

} // namespace

#endif

InnerProductStandard::InnerProductStandard(const Spectrum &c, double lo, double hi, double s)
    : curve(c), xMin(lo), xMax(hi), shift(s)
{
    const int n = int(curve.points.size());
    if (n < 2)
        return;
#ifdef TESSARELLE_VECTOR_PRODUCTS
    const QPointF *p = curve.points.constData();
    const double span = p[n - 1].x() - p[0].x();
    double gap = span;
    for (int i = 0; i + 1 < n; ++i)
        gap = std::min(gap, p[i + 1].x() - p[i].x());
    // Bins half as wide as the closest two points, within bounds: a grid of
    // a few points packed close among wide steps gets fewer, and its lanes
    // search more often.
    const double most = double(std::min<qint64>(16 * qint64(n), qint64(1) << 24));
    const double wanted = 2 * std::ceil(span / gap) + 1;
    const int count = int(wanted >= n && wanted <= most ? wanted : wanted < n ? n : most);
    binOrigin = p[0].x();
    binScale = count / span;
    if (!std::isfinite(binScale) || !(binScale > 0))
        binScale = 0.0;
    // An empty bin's split is NaN, which no energy reaches (not even an
    // infinite one).
    bins.fill(Bin{std::numeric_limits<double>::quiet_NaN(), 0}, count);
    // The points that decide a segment, 1 to n - 2, each counted in the bin
    // the lanes would put it in. Since that bin never falls as x rises, an
    // energy in bin b lies above every point of an earlier bin and below
    // every point of a later one.
    const double lastBin = double(count - 1);
    QVector<int> inBin(count, 0);
    for (int j = 1; j <= n - 2; ++j) {
        const int b = int(binPosition(p[j].x(), binOrigin, binScale, lastBin));
        if (inBin[b]++ == 0)
            bins[b].split = p[j].x();
    }
    qint64 before = 0;
    for (int b = 0; b < count; ++b) {
        if (inBin[b] > 1) {
            // NaN: the -1 must not be moved on to a real-looking offset.
            bins[b].split = std::numeric_limits<double>::quiet_NaN();
            bins[b].segment = -1;
        } else {
            bins[b].segment = before * qint64(sizeof(QPointF));
        }
        before += inBin[b];
    }
#endif
}

double innerProductAlong(const QPointF *x, int n, const QPointF *yNorm, int nNorm, const Spectrum &standard,
                         double xMin, double xMax, double shift, double dE)
{
    // The first energy in range finds its segment by bisection, the rest walk
    // on from there.
    int segment = -1;
    return innerProductWith(x, n, yNorm, nNorm, xMin, xMax, dE,
                            [&](double e) { return standard.interpolateYOnward(e + shift, segment); });
}

int innerProductLanes()
{
#ifdef TESSARELLE_VECTOR_PRODUCTS
    return lanesAvailable();
#else
    return 1;
#endif
}

void innerProducts(const QPointF *x, int n, const QPointF *yNorm, int nNorm, const InnerProductStandard &standard,
                   const double *dE, double *c, int count, int lanes)
{
    const int most = innerProductLanes();
    lanes = lanes <= 0 || lanes > most ? most : lanes;
    // Fewer than two points: no segments to walk, the one-candidate reading
    // handles it.
    if (standard.curve.points.size() < 2 || standard.bins.isEmpty())
        lanes = 1;
    int k = 0;
#ifdef TESSARELLE_VECTOR_PRODUCTS
    const int width = lanes >= 8 ? 8 : lanes >= 4 ? 4 : 0;
    while (width && k < count) {
        // The last few candidates fill their lanes up with copies of the last.
        double shifts[8];
        double products[8];
        const int m = std::min(width, count - k);
        for (int j = 0; j < width; ++j)
            shifts[j] = dE[k + std::min(j, m - 1)];
        if (width == 8)
            eightLanes(x, n, yNorm, nNorm, standard, shifts, products);
        else
            fourLanes(x, n, yNorm, nNorm, standard, shifts, products);
        std::copy(products, products + m, c + k);
        k += m;
    }
#endif
    for (; k < count; ++k)
        c[k] = innerProductAlong(x, n, yNorm, nNorm, standard.curve, standard.xMin, standard.xMax, standard.shift,
                                 dE[k]);
}
