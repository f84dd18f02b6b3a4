#include "images/Absorption.h"

#include "images/AbsorptionInput.h"
#include "images/BoxRowSums.h"
#include "images/CrossSection.h"
#include "images/FrameLoad.h"
#include "images/TiffData.h"
#include "spectrum/Logarithms.h"
#include "spectrum/Spectrum.h"
#include "spectrum/VectorClones.h"
#include "spectrum/XafsSpectrum.h"

#include <QSemaphore>
#include <QThreadPool>

#include <algorithm>
#if defined(__GNUC__) && defined(__x86_64__)
#include <immintrin.h>
#endif
#include <climits>
#include <cmath>
#include <cstring>
#include <type_traits>
#include <vector>

namespace {

const QVector<TiffData *> &framesOf(const QVector<TiffData *> *frames)
{
    static const QVector<TiffData *> none;
    return frames ? *frames : none;
}

// imgW and imgH: the size of the first I1 frame, 0 x 0 without frames.
void imageSize(const QVector<TiffData *> &i1, qint64 &w, qint64 &h)
{
    w = i1.isEmpty() ? 0 : qint64(i1.first()->width);
    h = i1.isEmpty() ? 0 : qint64(i1.first()->height);
}

bool centreInside(const QVector<TiffData *> &i1, int x, int y)
{
    qint64 w;
    qint64 h;
    imageSize(i1, w, h);
    return x >= 0 && y >= 0 && x < w && y < h;
}

// Half the difference of two ints, rounded up. It fits an int except for the
// one extreme pair of corners, which is pinned.
int halfRoundedUp(int from, int to)
{
    const qint64 d = qint64(to) - qint64(from);
    const qint64 half = d >= 0 ? (d + 1) / 2 : d / 2;
    return int(qBound(qint64(INT_MIN), half, qint64(INT_MAX)));
}

// interpolatedBoxSum of one box over a stack at energy after energy, with the
// last two frame sums kept: I1 frames follow the energies of the I0 frames,
// so consecutive I1 frames share one I0 frame of their pairs, and each I0
// frame is summed once instead of twice. Same sums, same line: the values
// equal interpolatedBoxSum's to the bit.
class StackSums
{
public:
    StackSums(const QVector<TiffData *> &frames, int x, int y, int hw, int vw)
        : m_frames(frames), m_x(x), m_y(y), m_hw(hw), m_vw(vw)
    {
    }

    double at(double e)
    {
        const qsizetype n = m_frames.size();
        if (n == 0)
            return 1.0;
        if (n == 1)
            return sum(0);
        qsizetype a;
        qsizetype b;
        TiffData::interpolationPair(m_frames, e, a, b);
        const double sa = sum(a);
        const double sb = sum(b);
        return TiffData::interpolateSums(m_frames.at(a)->energy, sa, m_frames.at(b)->energy, sb, e);
    }

private:
    // Two slots, the one not used last is replaced.
    double sum(qsizetype i)
    {
        for (int k = 0; k < 2; ++k) {
            if (m_index[k] == i) {
                m_older = 1 - k;
                return m_sum[k];
            }
        }
        const int k = m_older;
        m_index[k] = i;
        m_sum[k] = m_frames.at(i)->boxSum(m_x, m_y, m_hw, m_vw);
        m_older = 1 - k;
        return m_sum[k];
    }

    const QVector<TiffData *> &m_frames;
    const int m_x;
    const int m_y;
    const int m_hw;
    const int m_vw;
    qsizetype m_index[2] = {-1, -1};
    double m_sum[2] = {0.0, 0.0};
    int m_older = 0;
};

const Spectrum *totalCurve(const AbsorptionInput &in)
{
    return (in.totalI0ofI1 && !in.totalI0ofI1->points.isEmpty()) ? &in.totalI0ofI1->i0Curve : nullptr;
}

void growDarkLists(const AbsorptionInput &in)
{
    if (in.useI1DarkArea && in.i1DarkList)
        Absorption::updateDarkList(framesOf(in.i1Frames), in.dark, in.i1DarkRect, *in.i1DarkList);
    if (in.useI0DarkArea && in.i0DarkList)
        Absorption::updateDarkList(framesOf(in.i0Frames), in.dark, in.i0DarkRect, *in.i0DarkList);
}

// The dark frame's box sum brought to each stack: counts per ms of the dark
// at each stack's exposure; 0 without a dark frame.
void darkLevels(const AbsorptionInput &in, double darkSum, double &darkI1, double &darkI0)
{
    darkI1 = 0.0;
    darkI0 = 0.0;
    if (!in.dark)
        return;
    const double rate = darkSum / in.darkExpTime;
    darkI1 = rate * in.i1ExpTime;
    darkI0 = rate * in.i0ExpTime;
}

// The formula of absorptionSpectrum once the box's sums can be had: i1Sum(i)
// is I1 frame i's, i0At(i, e) the I0 stack's at the energy e of I1 frame i,
// darkSum the dark frame's. The dark lists must have been grown.
template <typename I1Sum, typename I0At>
void fillSpectrum(const AbsorptionInput &in, int hw, int vw, double darkSum, I1Sum &&i1Sum, I0At &&i0At,
                  Spectrum &out)
{
    const QVector<TiffData *> &i1 = framesOf(in.i1Frames);
    // In double: widths near INT_MAX must not overflow. Signs as given.
    const double n = (2.0 * hw + 1.0) * (2.0 * vw + 1.0);

    double darkI1;
    double darkI0;
    darkLevels(in, darkSum, darkI1, darkI0);

    const bool i1Area = in.useI1DarkArea && in.i1DarkList;
    const bool i0Area = in.useI0DarkArea && in.i0DarkList;
    const Spectrum *total = totalCurve(in);

    // Written in place and scanned for its extremes once: appending point by
    // point was a good part of a map point's cost.
    out.points.resize(i1.size());
    QPointF *points = out.points.data();
    for (qsizetype i = 0; i < i1.size(); ++i) {
        const TiffData *frame = i1.at(i);
        // The I1 list is at least as long as the stack after the update; a
        // list of another stack's length may not be, and adds nothing then.
        double d1 = darkI1;
        if (i1Area && i < in.i1DarkList->size())
            d1 = in.i1DarkList->at(i) * n + darkI1;
        double d0 = darkI0;
        if (i0Area && i < in.i0DarkList->size())
            d0 = in.i0DarkList->at(i) * n + darkI0;

        // The total I0 wins over both others; the stack is then not read.
        double a = n;
        if (total)
            a = i < total->points.size() ? total->points.at(i).y() : 0.0;
        else if (in.useI0)
            a = i0At(i, frame->energy) - d0;
        const double b = i1Sum(i) - d1;
        points[i] = QPointF(frame->energy, Absorption::muOf(a, b, in.fluoType));
    }
    out.scanRange();
}

} // namespace

namespace Absorption {

void updateDarkList(const QVector<TiffData *> &frames, const TiffData *dark, const QRectF &rect,
                    QVector<double> &list)
{
    if (list.size() >= frames.size())
        return;
    const double darkMean = dark ? dark->rectMean(rect) : 0.0;
    list.reserve(frames.size());
    for (qsizetype i = list.size(); i < frames.size(); ++i)
        list.append(frames.at(i)->rectMean(rect) - darkMean);
}

void absorptionSpectrum(const AbsorptionInput &in, int x, int y, int hw, int vw, Spectrum &out, Spectrum *raw,
                        KeptSums *kept)
{
    out.reset();
    if (raw)
        raw->reset();
    const QVector<TiffData *> &i1 = framesOf(in.i1Frames);
    const QVector<TiffData *> &i0 = framesOf(in.i0Frames);
    if (i1.isEmpty() || !centreInside(i1, x, y))
        return;
    growDarkLists(in);
    const double darkSum = in.dark ? in.dark->boxSum(x, y, hw, vw) : 0.0;
    if (raw)
        raw->reserve(int(i1.size()));
    const auto i1Sum = [&](qsizetype i, double s) {
        if (raw)
            raw->addPoint(i1.at(i)->energy, s);
        return s;
    };

    // A large box over long stacks (the pointer over a full detector) is
    // memory-bound: the I0 stack is summed on a pool thread while this one
    // sums the I1 stack. The same sums, so the same numbers; when no pool
    // thread is free the sums are taken here, one stack after the other.
    const double boxPixels = (2.0 * std::abs(double(hw)) + 1) * (2.0 * std::abs(double(vw)) + 1);
    const bool readsI0 = in.useI0 && !totalCurve(in);
    const bool split = readsI0 && i0.size() >= 2 && i0.size() <= 2 * i1.size()
                       && boxPixels * double(i1.size() + i0.size()) >= 200000.0;
    if (!kept && !split) {
        StackSums i0Sums(i0, x, y, hw, vw);
        fillSpectrum(
            in, hw, vw, darkSum, [&](qsizetype i) { return i1Sum(i, i1.at(i)->boxSum(x, y, hw, vw)); },
            [&](qsizetype, double e) { return i0Sums.at(e); }, out);
        return;
    }

    // Every frame's sum first, then the formula.
    KeptSums once;
    KeptSums &k = kept ? *kept : once;
    k.i1All.resize(size_t(i1.size()));
    k.i0All.resize(size_t(readsI0 ? i0.size() : 0));
    const auto sumI0 = [&] {
        if (readsI0)
            k.i0.sums(i0, x, y, hw, vw, k.i0All.data());
    };
    QSemaphore done;
    const bool apart = split && QThreadPool::globalInstance()->tryStart([&] {
        sumI0();
        done.release();
    });
    k.i1.sums(i1, x, y, hw, vw, k.i1All.data());
    if (apart)
        done.acquire();
    else
        sumI0();
    fillSpectrum(
        in, hw, vw, darkSum, [&](qsizetype i) { return i1Sum(i, k.i1All[size_t(i)]); },
        [&](qsizetype, double e) {
            // As StackSums::at, from sums already taken.
            const qsizetype n = i0.size();
            if (n == 0)
                return 1.0;
            if (n == 1)
                return k.i0All[0];
            qsizetype a;
            qsizetype b;
            TiffData::interpolationPair(i0, e, a, b);
            return TiffData::interpolateSums(i0.at(a)->energy, k.i0All[size_t(a)], i0.at(b)->energy,
                                             k.i0All[size_t(b)], e);
        },
        out);
}

namespace {

// mu's quotient a / b and whether b * a > 0 (the logarithm is taken where it
// is), or in fluorescence mu = b / a itself, for m frames with a = i0At less
// darkI0 and b = i1Sums less darkI1: muOf's operations in their order, in
// one loop that runs several frames at once.
TESSARELLE_VECTOR_CLONES
void muQuotients(const double *i0At, const double *i1Sums, double darkI1, double darkI0, bool fluo, int m,
                 double *q, unsigned char *ok)
{
    if (fluo) {
        for (int j = 0; j < m; ++j)
            q[j] = (i1Sums[j] - darkI1) / (i0At[j] - darkI0);
        return;
    }
    for (int j = 0; j < m; ++j) {
        const double a = i0At[j] - darkI0;
        const double b = i1Sums[j] - darkI1;
        q[j] = a / b;
        ok[j] = b * a > 0;
    }
}

// As TiffData::interpolateSums; at the first I0 frame's own energy without
// the division (see PairAtA).
inline double i0Between(double sa, double sb, double de, double dd, char how)
{
    if (how == AbsorptionWalk::PairAverage)
        return (sa + sb) / 2.0;
    if (how == AbsorptionWalk::PairAtA)
        return sa + (sb - sa) * dd;
    return sa + de * (sb - sa) / dd;
}

#if defined(__GNUC__) && defined(__x86_64__)
// i0Between four frames at a time: each frame's three forms are worked out
// and the one its pair calls for kept, every one by the same operations as
// on its own (AVX2 without fused multiply-adds).
__attribute__((target("avx2"))) void i0FourAtATime(const qsizetype *pa, const qsizetype *pb, const double *de,
                                                   const double *dd, const char *how, const double *i0Sums, int m,
                                                   double *i0At)
{
    static_assert(sizeof(qsizetype) == 8, "64-bit frame indices");
    const __m256d two = _mm256_set1_pd(2.0);
    const __m256i average = _mm256_set1_epi64x(AbsorptionWalk::PairAverage);
    const __m256i atA = _mm256_set1_epi64x(AbsorptionWalk::PairAtA);
    int j = 0;
    for (; j + 4 <= m; j += 4) {
        const __m256d sa = _mm256_i64gather_pd(i0Sums, _mm256_loadu_si256(reinterpret_cast<const __m256i *>(pa + j)), 8);
        const __m256d sb = _mm256_i64gather_pd(i0Sums, _mm256_loadu_si256(reinterpret_cast<const __m256i *>(pb + j)), 8);
        const __m256d d = _mm256_sub_pd(sb, sa);
        const __m256d byAverage = _mm256_div_pd(_mm256_add_pd(sa, sb), two);
        const __m256d byAtA = _mm256_add_pd(sa, _mm256_mul_pd(d, _mm256_loadu_pd(dd + j)));
        const __m256d general =
            _mm256_add_pd(sa, _mm256_div_pd(_mm256_mul_pd(_mm256_loadu_pd(de + j), d), _mm256_loadu_pd(dd + j)));
        int four;
        std::memcpy(&four, how + j, sizeof four);
        const __m256i h = _mm256_cvtepi8_epi64(_mm_cvtsi32_si128(four));
        __m256d v = _mm256_blendv_pd(general, byAtA, _mm256_castsi256_pd(_mm256_cmpeq_epi64(h, atA)));
        v = _mm256_blendv_pd(v, byAverage, _mm256_castsi256_pd(_mm256_cmpeq_epi64(h, average)));
        _mm256_storeu_pd(i0At + j, v);
    }
    for (; j < m; ++j)
        i0At[j] = i0Between(i0Sums[pa[j]], i0Sums[pb[j]], de[j], dd[j], how[j]);
}
#endif

} // namespace

AbsorptionWalk::AbsorptionWalk(const AbsorptionInput &input)
    : in(input)
{
    growDarkLists(in);
    const auto own = [](auto *list, auto &copy) {
        if (list)
            copy = *list;
        return list ? &copy : nullptr;
    };
    in.i1Frames = own(input.i1Frames, i1Frames);
    in.i0Frames = own(input.i0Frames, i0Frames);
    in.i1DarkList = own(input.i1DarkList, i1DarkList);
    in.i0DarkList = own(input.i0DarkList, i0DarkList);
    const QVector<TiffData *> &i1 = framesOf(in.i1Frames);
    const QVector<TiffData *> &i0 = framesOf(in.i0Frames);
    i1Energy.resize(size_t(i1.size()));
    for (qsizetype i = 0; i < i1.size(); ++i)
        i1Energy[size_t(i)] = i1.at(i)->energy;
    if (i0.size() < 2)
        return;
    pairA.resize(i1.size());
    pairB.resize(i1.size());
    pairDE.resize(size_t(i1.size()));
    pairDD.resize(size_t(i1.size()));
    pairHow.resize(size_t(i1.size()));
    for (qsizetype i = 0; i < i1.size(); ++i) {
        const size_t k = size_t(i);
        TiffData::interpolationPair(i0, i1.at(i)->energy, pairA[i], pairB[i]);
        const double ea = i0.at(pairA[i])->energy;
        const double eb = i0.at(pairB[i])->energy;
        pairDE[k] = i1Energy[k] - ea;
        pairDD[k] = eb - ea;
        pairHow[k] = ea == eb ? PairAverage : PairGeneral;
        if (ea != eb && pairDE[k] == 0.0) {
            // (de * q) / dd is then q times de / dd: a zero signed as the
            // three signs give it, or NaN where dd is; the same bits.
            pairHow[k] = PairAtA;
            pairDD[k] = pairDE[k] / pairDD[k];
        }
    }
}

void AbsorptionWalk::i0Stretch(qsizetype from, int m, const double *i0Sums, double *i0At) const
{
    const qsizetype *pa = pairA.constData() + from;
    const qsizetype *pb = pairB.constData() + from;
    const double *de = pairDE.data() + from;
    const double *dd = pairDD.data() + from;
    const char *how = pairHow.data() + from;
#if defined(__GNUC__) && defined(__x86_64__)
    static const bool avx2 = __builtin_cpu_supports("avx2");
    if (avx2) {
        i0FourAtATime(pa, pb, de, dd, how, i0Sums, m, i0At);
        return;
    }
#endif
    for (int j = 0; j < m; ++j)
        i0At[j] = i0Between(i0Sums[pa[j]], i0Sums[pb[j]], de[j], dd[j], how[j]);
}

bool AbsorptionWalk::needsI0() const
{
    return in.useI0 && !totalCurve(in);
}

void AbsorptionWalk::spectrum(int x, int y, int hw, int vw, const double *i1Sums, const double *i0Sums,
                              double darkSum, Spectrum &out, bool extremes) const
{
    const QVector<TiffData *> &i1 = framesOf(in.i1Frames);
    const QVector<TiffData *> &i0 = framesOf(in.i0Frames);
    if (i1.isEmpty() || !centreInside(i1, x, y)) {
        out.reset();
        return;
    }
    const bool darkAreas = (in.useI1DarkArea && in.i1DarkList) || (in.useI0DarkArea && in.i0DarkList);
    if (in.useI0 && !totalCurve(in) && i0.size() >= 2 && !darkAreas) {
        // The map's usual case, the formula of fillSpectrum written out with
        // the energies read from plain lists: the same operations, so the
        // same numbers.
        double darkI1;
        double darkI0;
        darkLevels(in, darkSum, darkI1, darkI0);
        const qsizetype n = i1.size();
        out.resetToFill(n);
        QPointF *points = out.points.data();
        const bool fluo = in.fluoType;
        // The quotients for a stretch of frames at a time, in one loop that
        // runs several frames at once; then their logarithms, a run at once.
        constexpr qsizetype Stretch = 512;
        double i0At[Stretch];
        double q[Stretch];
        double mu[Stretch];
        unsigned char ok[Stretch];
        for (qsizetype from = 0; from < n; from += Stretch) {
            const int m = int(std::min(Stretch, n - from));
            i0Stretch(from, m, i0Sums, i0At);
            muQuotients(i0At, i1Sums + from, darkI1, darkI0, fluo, m, q, ok);
            const double *e1 = i1Energy.data() + from;
            QPointF *to = points + from;
            if (fluo) {
                for (int j = 0; j < m; ++j)
                    to[j] = QPointF(e1[j], q[j]);
            } else {
                logarithms(q, mu, m);
                for (int j = 0; j < m; ++j)
                    to[j] = QPointF(e1[j], ok[j] ? mu[j] : 1.0);
            }
        }
        if (extremes)
            out.scanRange();
        return;
    }
    out.reset();
    fillSpectrum(
        in, hw, vw, darkSum, [&](qsizetype i) { return i1Sums[i]; },
        [&](qsizetype i, double e) {
            // As StackSums::at, from sums already taken.
            const qsizetype n = i0.size();
            if (n == 0)
                return 1.0;
            if (n == 1)
                return i0Sums[0];
            const qsizetype a = pairA[i];
            const qsizetype b = pairB[i];
            return TiffData::interpolateSums(i0.at(a)->energy, i0Sums[a], i0.at(b)->energy, i0Sums[b], e);
        },
        out);
}

void absorptionSpectrumByCorners(const AbsorptionInput &in, int x0, int y0, int x1, int y1, Spectrum &out)
{
    const int x = int((qint64(x0) + qint64(x1)) / 2);
    const int y = int((qint64(y0) + qint64(y1)) / 2);
    absorptionSpectrum(in, x, y, halfRoundedUp(x0, x1), halfRoundedUp(y0, y1), out);
}

void rawSpectrum(const AbsorptionInput &in, int x, int y, int hw, int vw, Spectrum &out)
{
    out.reset();
    const QVector<TiffData *> &i1 = framesOf(in.i1Frames);
    if (i1.isEmpty() || !centreInside(i1, x, y))
        return;
    out.reserve(int(i1.size()));
    for (const TiffData *frame : i1)
        out.addPoint(frame->energy, frame->boxSum(x, y, hw, vw));
}

void horizontalSection(const AbsorptionInput &in, int index, bool inI0Stack, int y, int hw, int vw,
                       bool asAbsorption, Spectrum &out)
{
    CrossSection(true).take(in, index, inI0Stack, y, hw, vw, asAbsorption, out);
}

void verticalSection(const AbsorptionInput &in, int index, bool inI0Stack, int x, int hw, int vw,
                     bool asAbsorption, Spectrum &out)
{
    CrossSection(false).take(in, index, inI0Stack, x, hw, vw, asAbsorption, out);
}

} // namespace Absorption
