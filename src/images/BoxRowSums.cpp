#include "images/BoxRowSums.h"

#include "images/RunningSums.h"
#include "images/TiffData.h"
#include "spectrum/VectorClones.h"

#include <algorithm>
#if defined(__GNUC__) && defined(__x86_64__)
#include <immintrin.h>
#endif
#include <cstdlib>
#include <limits>
#include <type_traits>

namespace {

// Column sums of 8- and 16-bit pixels add up in 32-bit unsigned arithmetic,
// which wraps exactly; wider integers in 64 bits.
template <typename T, typename S>
void addRow(const TiffData &frame, qint64 y, qint64 c0, qint64 n, int sign, S *col)
{
    const T *row = static_cast<const T *>(frame.rows[y]) + c0;
    if (sign > 0) {
        for (qint64 i = 0; i < n; ++i)
            col[i] += S(row[i]);
    } else {
        for (qint64 i = 0; i < n; ++i)
            col[i] -= S(row[i]);
    }
}

// One row down: adds row `add`, takes off row `sub`. Several columns at a time.
template <typename T, typename S>
TESSARELLE_VECTOR_CLONES void slideRow(const T *add, const T *sub, qint64 n, S *col)
{
    for (qint64 i = 0; i < n; ++i)
        col[i] = col[i] + S(add[i]) - S(sub[i]);
}

// A box's sum, the difference of two running sums. In 32 bits the
// difference is taken modulo 2^32 and read as signed: exact, since every
// box of these frames sums to less than 2^31 in magnitude.
inline double boxValue(quint32 right, quint32 left)
{
    return double(qint32(right - left));
}

inline double boxValue(qint64 right, qint64 left)
{
    return double(right - left);
}

template <typename S>
TESSARELLE_VECTOR_CLONES void boxDifferences(const S *left, const S *right, qint64 n, double *row)
{
    for (qint64 c = 0; c < n; ++c)
        row[c] = boxValue(right[c], left[c]);
}

template <typename S>
void addRows(const TiffData &frame, qint64 y0, qint64 y1, qint64 c0, qint64 n, int sign, S *col)
{
    withPixelType(frame.pixelType, 0, [&](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (std::is_integral_v<T>) {
            for (qint64 y = y0; y <= y1; ++y)
                addRow<T>(frame, y, c0, n, sign, col);
        }
        return 0;
    });
}

// to[c * stride + j] = from[j * centres + c] for `frames` rows j of `centres`
// sums: the rows of a block of frames laid centre by centre. Only copies, so
// four by four through AVX registers where the processor has them.
void layPlain(const double *from, size_t centres, size_t c0, size_t frames, double *to, size_t stride)
{
    for (size_t c = c0; c < centres; ++c)
        for (size_t j = 0; j < frames; ++j)
            to[c * stride + j] = from[j * centres + c];
}

#if defined(__GNUC__) && defined(__x86_64__)
__attribute__((target("avx"))) void layFourByFour(const double *from, size_t centres, size_t frames, double *to,
                                                  size_t stride)
{
    const size_t fours = frames / 4 * 4;
    size_t c = 0;
    for (; c + 4 <= centres; c += 4) {
        for (size_t j = 0; j < fours; j += 4) {
            const double *r = from + j * centres + c;
            const __m256d a = _mm256_loadu_pd(r);
            const __m256d b = _mm256_loadu_pd(r + centres);
            const __m256d d = _mm256_loadu_pd(r + 2 * centres);
            const __m256d e = _mm256_loadu_pd(r + 3 * centres);
            const __m256d ab0 = _mm256_unpacklo_pd(a, b);
            const __m256d ab1 = _mm256_unpackhi_pd(a, b);
            const __m256d de0 = _mm256_unpacklo_pd(d, e);
            const __m256d de1 = _mm256_unpackhi_pd(d, e);
            double *o = to + c * stride + j;
            _mm256_storeu_pd(o, _mm256_permute2f128_pd(ab0, de0, 0x20));
            _mm256_storeu_pd(o + stride, _mm256_permute2f128_pd(ab1, de1, 0x20));
            _mm256_storeu_pd(o + 2 * stride, _mm256_permute2f128_pd(ab0, de0, 0x31));
            _mm256_storeu_pd(o + 3 * stride, _mm256_permute2f128_pd(ab1, de1, 0x31));
        }
        for (size_t j = fours; j < frames; ++j)
            for (size_t i = 0; i < 4; ++i)
                to[(c + i) * stride + j] = from[j * centres + c + i];
    }
    layPlain(from, centres, c, frames, to, stride);
}
#endif

void layByCentre(const double *from, size_t centres, size_t frames, double *to, size_t stride)
{
#if defined(__GNUC__) && defined(__x86_64__)
    static const bool avx = __builtin_cpu_supports("avx");
    if (avx) {
        layFourByFour(from, centres, frames, to, stride);
        return;
    }
#endif
    layPlain(from, centres, 0, frames, to, stride);
}

bool summedDirectly(const TiffData &f)
{
    return f.pixelType == PixelF32 || f.pixelType == PixelF64;
}

// Whether every box of `pixels` pixels of the frame sums to less than 2^31
// in magnitude, so its column sums may be kept in 32 bits.
bool narrowSums(const TiffData &f, qint64 pixels)
{
    const qint64 largest = withPixelType(f.pixelType, qint64(0), [](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (std::is_integral_v<T> && sizeof(T) <= 2)
            return std::max(qint64(std::numeric_limits<T>::max()), -qint64(std::numeric_limits<T>::min()));
        return qint64(0);
    });
    return largest > 0 && pixels <= std::numeric_limits<qint32>::max() / largest;
}

} // namespace

void BoxRowSums::setUp(const QVector<TiffData *> &frames, int hw, int vw, int xFirst, int xLast)
{
    m_hw = hw;
    m_vw = vw;
    m_h = std::abs(qint64(hw));
    m_v = std::abs(qint64(vw));
    m_xFirst = xFirst;
    m_xLast = std::max(xLast, xFirst - 1);
    m_frames.resize(size_t(frames.size()));
    m_box.assign(size_t(m_xLast - m_xFirst + 1) * m_frames.size(), 0.0);
    qint64 widest = 0;
    for (qsizetype k = 0; k < frames.size(); ++k) {
        Frame &f = m_frames[size_t(k)];
        const TiffData *t = frames.at(k);
        f.frame = t;
        f.shiftX = t->shiftX;
        f.direct = summedDirectly(*t);
        f.narrow = narrowSums(*t, (2 * m_h + 1) * (2 * m_v + 1));
        f.r0 = 0;
        f.r1 = -1;
        const bool empty = t->pixelType == PixelNone || t->width == 0 || t->height == 0;
        f.c0 = std::max<qint64>(qint64(xFirst) - t->shiftX - m_h, 0);
        f.c1 = std::min<qint64>(qint64(xLast) - t->shiftX + m_h, qint64(t->width) - 1);
        f.col32.clear();
        f.col64.clear();
        if (empty || f.direct || f.c0 > f.c1) {
            f.c1 = f.c0 - 1;
            continue;
        }
        if (f.narrow)
            f.col32.assign(size_t(f.columns()), 0);
        else
            f.col64.assign(size_t(f.columns()), 0);
        widest = std::max(widest, f.columns());
    }
    m_run32.assign(size_t(widest + 1), 0);
    m_run64.assign(size_t(widest + 1), 0);
}

void BoxRowSums::moveFrame(Frame &f, qint64 fy)
{
    const TiffData &t = *f.frame;
    const qint64 n0 = std::max<qint64>(fy - m_v, 0);
    const qint64 n1 = std::min<qint64>(fy + m_v, qint64(t.height) - 1);
    const qint64 n = f.columns();
    const bool wasEmpty = f.r0 > f.r1;
    const bool nowEmpty = n0 > n1;
    // Sliding pays when it touches fewer rows than a fresh sum would.
    const bool slide = !wasEmpty && !nowEmpty && n0 >= f.r0 && n1 >= f.r1 && n0 <= f.r1 + 1
                       && (n0 - f.r0) + (n1 - f.r1) < n1 - n0 + 1;
    auto update = [&](auto *col) {
        using S = std::remove_pointer_t<decltype(col)>;
        if (slide && n0 == f.r0 + 1 && n1 == f.r1 + 1) {
            // The walk's usual step, in one pass.
            withPixelType(t.pixelType, 0, [&](auto tag) {
                using T = typename decltype(tag)::type;
                if constexpr (std::is_integral_v<T>)
                    slideRow<T, S>(static_cast<const T *>(t.rows[n1]) + f.c0,
                                   static_cast<const T *>(t.rows[f.r0]) + f.c0, n, col);
                return 0;
            });
        } else if (slide) {
            if (n0 > f.r0)
                addRows(t, f.r0, n0 - 1, f.c0, n, -1, col);
            if (n1 > f.r1)
                addRows(t, f.r1 + 1, n1, f.c0, n, 1, col);
        } else {
            std::fill(col, col + n, S(0));
            if (!nowEmpty)
                addRows(t, n0, n1, f.c0, n, 1, col);
        }
    };
    if (f.narrow)
        update(f.col32.data());
    else
        update(f.col64.data());
    f.r0 = n0;
    f.r1 = n1;
}

void BoxRowSums::frameRow(const Frame &f, double *row)
{
    const qint64 centres = qint64(m_xLast) - m_xFirst + 1;
    if (f.direct) {
        for (qint64 c = 0; c < centres; ++c)
            row[c] = f.frame->boxSum(m_xFirst + int(c), m_y, m_hw, m_vw);
        return;
    }
    if (f.r0 > f.r1 || f.c0 > f.c1) {
        std::fill(row, row + centres, 0.0);
        return;
    }
    if (f.narrow)
        boxesAlong(f, f.col32.data(), m_run32.data(), row);
    else
        boxesAlong(f, f.col64.data(), m_run64.data(), row);
}

template <typename S>
void BoxRowSums::boxesAlong(const Frame &f, const S *col, S *run, double *row) const
{
    runningSums(col, size_t(f.columns()), run);
    // Centres whose boxes lie within the kept columns take the plain
    // difference; those near the ends are clipped to them.
    const qint64 centres = qint64(m_xLast) - m_xFirst + 1;
    const qint64 off = qint64(m_xFirst) - f.shiftX - m_h - f.c0; // run index of centre 0's left end
    const qint64 inFrom = std::clamp<qint64>(-off, 0, centres);
    const qint64 inTo = std::clamp<qint64>(f.columns() - 2 * m_h - off, inFrom, centres);
    for (qint64 c = 0; c < inFrom; ++c)
        row[c] = frameSum(f, run, m_xFirst + int(c));
    boxDifferences(run + off + inFrom, run + off + inFrom + 2 * m_h + 1, inTo - inFrom, row + inFrom);
    for (qint64 c = inTo; c < centres; ++c)
        row[c] = frameSum(f, run, m_xFirst + int(c));
}

void BoxRowSums::moveTo(int y)
{
    m_y = y;
    const size_t n = m_frames.size();
    const size_t centres = size_t(m_xLast - m_xFirst + 1);
    // A few frames at a time: each frame's row of sums is taken along the
    // row, then the block is laid centre by centre while it is at hand.
    constexpr size_t Block = 8;
    m_rows.resize(Block * centres);
    for (size_t k0 = 0; k0 < n; k0 += Block) {
        const size_t k1 = std::min(n, k0 + Block);
        for (size_t k = k0; k < k1; ++k) {
            Frame &f = m_frames[k];
            if (!f.direct && f.c0 <= f.c1)
                moveFrame(f, qint64(y) - f.frame->shiftY);
            frameRow(f, m_rows.data() + (k - k0) * centres);
        }
        layByCentre(m_rows.data(), centres, k1 - k0, m_box.data() + k0, n);
    }
}

template <typename S>
double BoxRowSums::frameSum(const Frame &f, const S *run, int x) const
{
    const qint64 fx = qint64(x) - f.shiftX;
    const qint64 lo = std::max<qint64>(fx - m_h, f.c0);
    const qint64 hi = std::min<qint64>(fx + m_h, f.c1);
    // A box past the kept columns.
    if (lo > hi)
        return 0.0;
    return boxValue(run[hi - f.c0 + 1], run[lo - f.c0]);
}
