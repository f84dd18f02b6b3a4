#include "images/BoxRowSums.h"

#include "images/RunningSums.h"
#include "images/TiffData.h"

#include <algorithm>
#include <cstdlib>
#include <type_traits>

namespace {

// Adds (sign 1) or takes off (sign -1) frame row y over columns c0..c1.
template <typename T>
void addRow(const TiffData &frame, qint64 y, qint64 c0, qint64 c1, int sign, qint64 *col)
{
    const T *row = static_cast<const T *>(frame.rows[y]) + c0;
    const qint64 n = c1 - c0 + 1;
    if (sign > 0) {
        for (qint64 i = 0; i < n; ++i)
            col[i] += qint64(row[i]);
    } else {
        for (qint64 i = 0; i < n; ++i)
            col[i] -= qint64(row[i]);
    }
}

// One row down: adds row `in`, takes off row `out` and makes the running
// sums in the same pass over the columns.
template <typename T>
void slideRow(const TiffData &frame, qint64 in, qint64 out, qint64 c0, qint64 n, qint64 *col, qint64 *run)
{
    const T *add = static_cast<const T *>(frame.rows[in]) + c0;
    const T *sub = static_cast<const T *>(frame.rows[out]) + c0;
    qint64 s = 0;
    run[0] = 0;
    for (qint64 i = 0; i < n; ++i) {
        const qint64 c = col[i] + qint64(add[i]) - qint64(sub[i]);
        col[i] = c;
        s += c;
        run[i + 1] = s;
    }
}

void addRows(const TiffData &frame, qint64 y0, qint64 y1, qint64 c0, qint64 c1, int sign, qint64 *col)
{
    withPixelType(frame.pixelType, 0, [&](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (std::is_integral_v<T>) {
            for (qint64 y = y0; y <= y1; ++y)
                addRow<T>(frame, y, c0, c1, sign, col);
        }
        return 0;
    });
}

bool summedDirectly(const TiffData &f)
{
    return f.pixelType == PixelF32 || f.pixelType == PixelF64;
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
    for (qsizetype k = 0; k < frames.size(); ++k) {
        Frame &f = m_frames[size_t(k)];
        const TiffData *t = frames.at(k);
        f.frame = t;
        f.shiftX = t->shiftX;
        f.direct = summedDirectly(*t);
        f.r0 = 0;
        f.r1 = -1;
        const bool empty = t->pixelType == PixelNone || t->width == 0 || t->height == 0;
        f.c0 = std::max<qint64>(qint64(xFirst) - t->shiftX - m_h, 0);
        f.c1 = std::min<qint64>(qint64(xLast) - t->shiftX + m_h, qint64(t->width) - 1);
        if (empty || f.direct || f.c0 > f.c1) {
            f.c1 = f.c0 - 1;
            f.col.clear();
            f.run.assign(1, 0);
            continue;
        }
        f.col.assign(size_t(f.c1 - f.c0 + 1), 0);
        f.run.assign(f.col.size() + 1, 0);
    }
}

void BoxRowSums::moveFrame(Frame &f, qint64 fy)
{
    const TiffData &t = *f.frame;
    const qint64 n0 = std::max<qint64>(fy - m_v, 0);
    const qint64 n1 = std::min<qint64>(fy + m_v, qint64(t.height) - 1);
    qint64 *col = f.col.data();
    const bool wasEmpty = f.r0 > f.r1;
    const bool nowEmpty = n0 > n1;
    // Sliding pays when it touches fewer rows than a fresh sum would.
    const bool slide = !wasEmpty && !nowEmpty && n0 >= f.r0 && n1 >= f.r1 && n0 <= f.r1 + 1
                       && (n0 - f.r0) + (n1 - f.r1) < n1 - n0 + 1;
    if (slide && n0 == f.r0 + 1 && n1 == f.r1 + 1) {
        // The walk's usual step, in one pass.
        const qint64 in = n1;
        const qint64 out = f.r0;
        withPixelType(t.pixelType, 0, [&](auto tag) {
            using T = typename decltype(tag)::type;
            if constexpr (std::is_integral_v<T>)
                slideRow<T>(t, in, out, f.c0, qint64(f.col.size()), col, f.run.data());
            return 0;
        });
        f.r0 = n0;
        f.r1 = n1;
        return;
    }
    if (slide) {
        if (n0 > f.r0)
            addRows(t, f.r0, n0 - 1, f.c0, f.c1, -1, col);
        if (n1 > f.r1)
            addRows(t, f.r1 + 1, n1, f.c0, f.c1, 1, col);
    } else {
        std::fill(f.col.begin(), f.col.end(), 0);
        if (!nowEmpty)
            addRows(t, n0, n1, f.c0, f.c1, 1, col);
    }
    f.r0 = n0;
    f.r1 = n1;
    runningSums(col, f.col.size(), f.run.data());
}

void BoxRowSums::frameRow(const Frame &f, double *row) const
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
    // Centres whose boxes lie within the kept columns take the plain
    // difference; those near the ends are clipped to them.
    const qint64 off = qint64(m_xFirst) - f.shiftX - m_h - f.c0; // run index of centre 0's left end
    const qint64 inFrom = std::clamp<qint64>(-off, 0, centres);
    const qint64 inTo = std::clamp<qint64>(f.c1 - f.c0 + 1 - 2 * m_h - off, inFrom, centres);
    const qint64 *run = f.run.data();
    for (qint64 c = 0; c < inFrom; ++c)
        row[c] = frameSum(f, m_xFirst + int(c));
    const qint64 *left = run + off;
    const qint64 *right = run + off + 2 * m_h + 1;
    for (qint64 c = inFrom; c < inTo; ++c)
        row[c] = double(right[c] - left[c]);
    for (qint64 c = inTo; c < centres; ++c)
        row[c] = frameSum(f, m_xFirst + int(c));
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
            if (!f.direct && !f.col.empty())
                moveFrame(f, qint64(y) - f.frame->shiftY);
            frameRow(f, m_rows.data() + (k - k0) * centres);
        }
        const size_t b = k1 - k0;
        double *out = m_box.data() + k0;
        for (size_t c = 0; c < centres; ++c, out += n)
            for (size_t j = 0; j < b; ++j)
                out[j] = m_rows[j * centres + c];
    }
}

double BoxRowSums::frameSum(const Frame &f, int x) const
{
    if (f.direct)
        return f.frame->boxSum(x, m_y, m_hw, m_vw);
    const qint64 fx = qint64(x) - f.shiftX;
    const qint64 lo = std::max<qint64>(fx - m_h, f.c0);
    const qint64 hi = std::min<qint64>(fx + m_h, f.c1);
    // No rows summed yet, no columns kept, or a box past the kept columns.
    if (f.r0 > f.r1 || f.c0 > f.c1 || lo > hi)
        return 0.0;
    return double(f.run.data()[hi - f.c0 + 1] - f.run.data()[lo - f.c0]);
}
