#include "images/Absorption.h"

#include "images/AbsorptionInput.h"
#include "images/BoxRowSums.h"
#include "images/FrameLoad.h"
#include "images/TiffData.h"
#include "spectrum/Spectrum.h"
#include "spectrum/XafsSpectrum.h"

#include <QSemaphore>
#include <QThreadPool>

#include <algorithm>
#include <climits>
#include <cmath>
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

// mu from a reference a and a signal b. In transmission a zero or negative
// product gives 1.0 rather than a skipped point or a NaN; in fluorescence the
// quotient stands as it comes.
double muOf(double a, double b, bool fluoType)
{
    if (fluoType)
        return b / a;
    return b * a > 0 ? std::log(a / b) : 1.0;
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

// The box sums of frame f centred on (x, 0), (x, 1), ... (x, count - 1), as
// boxSum gives them. Integer frames: the box's columns summed once per frame
// row, then a running sum down the column; integers add up exactly, so the
// sums are boxSum's to the bit. Float frames: box by box, as boxSum does.
void columnBoxSums(const TiffData &f, int x, int hw, int vw, qint64 count, std::vector<double> &sums)
{
    sums.assign(size_t(std::max<qint64>(count, 0)), 0.0);
    const bool direct = f.pixelType == PixelF32 || f.pixelType == PixelF64;
    if (direct) {
        for (qint64 y = 0; y < count; ++y)
            sums[size_t(y)] = f.boxSum(x, int(y), hw, vw);
        return;
    }
    if (f.pixelType == PixelNone || f.width == 0 || f.height == 0)
        return;
    const qint64 h = std::abs(qint64(hw));
    const qint64 v = std::abs(qint64(vw));
    const qint64 fx = qint64(x) - f.shiftX;
    const qint64 c0 = std::max<qint64>(fx - h, 0);
    const qint64 c1 = std::min<qint64>(fx + h, qint64(f.width) - 1);
    if (c0 > c1)
        return;
    const qint64 rows = qint64(f.height);
    std::vector<qint64> run(size_t(rows) + 1, 0); // run[r] = rows 0..r-1
    withPixelType(f.pixelType, 0, [&](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (std::is_integral_v<T>) {
            qint64 total = 0;
            for (qint64 r = 0; r < rows; ++r) {
                const T *row = static_cast<const T *>(f.rows[r]);
                for (qint64 c = c0; c <= c1; ++c)
                    total += qint64(row[c]);
                run[size_t(r) + 1] = total;
            }
        }
        return 0;
    });
    for (qint64 y = 0; y < count; ++y) {
        const qint64 fy = y - f.shiftY;
        const qint64 r0 = std::max<qint64>(fy - v, 0);
        const qint64 r1 = std::min<qint64>(fy + v, rows - 1);
        if (r0 <= r1)
            sums[size_t(y)] = double(run[size_t(r1) + 1] - run[size_t(r0)]);
    }
}

void section(const AbsorptionInput &in, int index, bool inI0Stack, bool horizontal, int at, int hw, int vw,
             bool asAbsorption, Spectrum &out)
{
    out.reset();
    const QVector<TiffData *> &i1 = framesOf(in.i1Frames);
    const QVector<TiffData *> &i0 = framesOf(in.i0Frames);
    const QVector<TiffData *> &stack = (asAbsorption || !inI0Stack) ? i1 : i0;
    if (index < 0 || index >= stack.size())
        return;
    qint64 w;
    qint64 h;
    imageSize(i1, w, h);
    const qint64 across = horizontal ? h : w; // the extent `at` must lie in
    const qint64 along = horizontal ? w : h;
    if (at < 0 || at >= across)
        return;
    TiffData *frame = stack.at(index);
    // The boxes along the section slide by one pixel: sliding sums give them
    // for the frame and for the I0 frames its energy reads (the same pair all
    // along), exact and so equal to boxSum's, without summing every box anew
    // (the sections cost more than the spectrum on wide frames).
    QVector<TiffData *> frames{frame};
    qsizetype a = 0;
    qsizetype b = 0;
    if (asAbsorption && i0.size() == 1) {
        frames << i0.at(0);
    } else if (asAbsorption && i0.size() > 1) {
        TiffData::interpolationPair(i0, frame->energy, a, b);
        frames << i0.at(a) << i0.at(b);
    }
    // Along a row, BoxRowSums; down a column, columnBoxSums.
    BoxRowSums rowSums;
    std::vector<double> colSums[3];
    if (horizontal) {
        rowSums.setUp(frames, hw, vw, 0, int(along - 1));
        rowSums.moveTo(at);
    } else {
        for (qsizetype k = 0; k < frames.size(); ++k)
            columnBoxSums(*frames.at(k), at, hw, vw, along, colSums[k]);
    }
    const auto sum = [&](int k, qint64 i) { return horizontal ? rowSums.sum(k, int(i)) : colSums[k][size_t(i)]; };
    out.reserve(int(along));
    for (qint64 i = 0; i < along; ++i) {
        const int x = horizontal ? int(i) : at;
        const int y = horizontal ? at : int(i);
        const double s = sum(0, i);
        double value = s;
        if (asAbsorption) {
            // As TiffData::interpolatedBoxSum over the I0 stack.
            double i0Sum = 1.0;
            if (i0.size() == 1)
                i0Sum = sum(1, i);
            else if (i0.size() > 1)
                i0Sum = TiffData::interpolateSums(i0.at(a)->energy, sum(1, i), i0.at(b)->energy, sum(2, i),
                                                  frame->energy);
            value = muOf(i0Sum, s, in.fluoType);
        }
        out.addPoint(horizontal ? double(x) : double(h - y), value);
    }
}

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

    double darkI1 = 0.0;
    double darkI0 = 0.0;
    if (in.dark) {
        // Counts per ms of the dark, brought to each stack's exposure.
        const double rate = darkSum / in.darkExpTime;
        darkI1 = rate * in.i1ExpTime;
        darkI0 = rate * in.i0ExpTime;
    }

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
        points[i] = QPointF(frame->energy, muOf(a, b, in.fluoType));
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

void absorptionSpectrum(const AbsorptionInput &in, int x, int y, int hw, int vw, Spectrum &out, Spectrum *raw)
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
    const bool split = in.useI0 && !totalCurve(in) && i0.size() >= 2 && i0.size() <= 2 * i1.size()
                       && boxPixels * double(i1.size() + i0.size()) >= 200000.0;
    if (split) {
        std::vector<double> i0All(size_t(i0.size()));
        QSemaphore done;
        const bool started = QThreadPool::globalInstance()->tryStart([&] {
            for (qsizetype k = 0; k < i0.size(); ++k)
                i0All[size_t(k)] = i0.at(k)->boxSum(x, y, hw, vw);
            done.release();
        });
        if (started) {
            std::vector<double> i1All(size_t(i1.size()));
            for (qsizetype k = 0; k < i1.size(); ++k)
                i1All[size_t(k)] = i1.at(k)->boxSum(x, y, hw, vw);
            done.acquire();
            fillSpectrum(
                in, hw, vw, darkSum, [&](qsizetype i) { return i1Sum(i, i1All[size_t(i)]); },
                [&](qsizetype, double e) {
                    // As StackSums::at with two frames or more.
                    qsizetype a;
                    qsizetype b;
                    TiffData::interpolationPair(i0, e, a, b);
                    return TiffData::interpolateSums(i0.at(a)->energy, i0All[size_t(a)], i0.at(b)->energy,
                                                     i0All[size_t(b)], e);
                },
                out);
            return;
        }
    }
    StackSums i0Sums(i0, x, y, hw, vw);
    fillSpectrum(
        in, hw, vw, darkSum, [&](qsizetype i) { return i1Sum(i, i1.at(i)->boxSum(x, y, hw, vw)); },
        [&](qsizetype, double e) { return i0Sums.at(e); }, out);
}

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
    if (i0.size() < 2)
        return;
    pairA.resize(i1.size());
    pairB.resize(i1.size());
    for (qsizetype i = 0; i < i1.size(); ++i)
        TiffData::interpolationPair(i0, i1.at(i)->energy, pairA[i], pairB[i]);
}

bool AbsorptionWalk::needsI0() const
{
    return in.useI0 && !totalCurve(in);
}

void AbsorptionWalk::spectrum(int x, int y, int hw, int vw, const double *i1Sums, const double *i0Sums,
                              double darkSum, Spectrum &out) const
{
    out.reset();
    const QVector<TiffData *> &i1 = framesOf(in.i1Frames);
    const QVector<TiffData *> &i0 = framesOf(in.i0Frames);
    if (i1.isEmpty() || !centreInside(i1, x, y))
        return;
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
    section(in, index, inI0Stack, true, y, hw, vw, asAbsorption, out);
}

void verticalSection(const AbsorptionInput &in, int index, bool inI0Stack, int x, int hw, int vw,
                     bool asAbsorption, Spectrum &out)
{
    section(in, index, inI0Stack, false, x, hw, vw, asAbsorption, out);
}

} // namespace Absorption
