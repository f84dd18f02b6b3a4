#include "images/BoxColumnSums.h"

#include "images/RunningSums.h"
#include "images/TiffData.h"

#include <algorithm>
#include <cstdlib>
#include <type_traits>

namespace {

// Adds (sign 1) or takes off (sign -1) frame columns c0..c1 of every row.
void addColumns(const TiffData &frame, qint64 c0, qint64 c1, int sign, qint64 *row)
{
    withPixelType(frame.pixelType, 0, [&](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (std::is_integral_v<T>) {
            const qint64 rows = qint64(frame.height);
            for (qint64 r = 0; r < rows; ++r) {
                const T *p = static_cast<const T *>(frame.rows[r]);
                qint64 s = 0;
                for (qint64 c = c0; c <= c1; ++c)
                    s += qint64(p[c]);
                row[r] += sign > 0 ? s : -s;
            }
        }
        return 0;
    });
}

} // namespace

void BoxColumnSums::setUp(const QVector<TiffData *> &frames, int hw, int vw)
{
    m_hw = hw;
    m_vw = vw;
    m_h = std::abs(qint64(hw));
    m_v = std::abs(qint64(vw));
    m_frames.resize(size_t(frames.size()));
    for (qsizetype k = 0; k < frames.size(); ++k) {
        Frame &f = m_frames[size_t(k)];
        const TiffData *t = frames.at(k);
        f.frame = t;
        f.direct = t->pixelType == PixelF32 || t->pixelType == PixelF64;
        f.c0 = 0;
        f.c1 = -1;
        const bool empty = t->pixelType == PixelNone || t->width == 0 || t->height == 0;
        if (empty || f.direct) {
            f.row.clear();
            f.run.assign(1, 0);
            continue;
        }
        f.row.assign(size_t(t->height), 0);
        f.run.assign(size_t(t->height) + 1, 0);
    }
}

void BoxColumnSums::moveFrame(Frame &f, qint64 fx)
{
    const TiffData &t = *f.frame;
    const qint64 n0 = std::max<qint64>(fx - m_h, 0);
    const qint64 n1 = std::min<qint64>(fx + m_h, qint64(t.width) - 1);
    qint64 *row = f.row.data();
    const bool wasEmpty = f.c0 > f.c1;
    const bool nowEmpty = n0 > n1;
    // Sliding pays when it touches fewer columns than a fresh sum would.
    const bool slide = !wasEmpty && !nowEmpty && n0 <= f.c1 + 1 && f.c0 <= n1 + 1
                       && std::abs(n0 - f.c0) + std::abs(n1 - f.c1) < n1 - n0 + 1;
    if (slide) {
        if (n0 > f.c0)
            addColumns(t, f.c0, n0 - 1, -1, row);
        else if (n0 < f.c0)
            addColumns(t, n0, f.c0 - 1, 1, row);
        if (n1 > f.c1)
            addColumns(t, f.c1 + 1, n1, 1, row);
        else if (n1 < f.c1)
            addColumns(t, n1 + 1, f.c1, -1, row);
    } else {
        std::fill(f.row.begin(), f.row.end(), 0);
        if (!nowEmpty)
            addColumns(t, n0, n1, 1, row);
    }
    f.c0 = n0;
    f.c1 = n1;
    runningSums(row, f.row.size(), f.run.data());
}

void BoxColumnSums::moveTo(int x)
{
    m_x = x;
    for (Frame &f : m_frames) {
        if (f.direct || f.row.empty())
            continue;
        moveFrame(f, qint64(x) - f.frame->shiftX);
    }
}

double BoxColumnSums::sum(int k, int y) const
{
    const Frame &f = m_frames[size_t(k)];
    if (f.direct)
        return f.frame->boxSum(m_x, y, m_hw, m_vw);
    if (f.c0 > f.c1 || f.row.empty())
        return 0.0;
    const qint64 fy = qint64(y) - f.frame->shiftY;
    const qint64 r0 = std::max<qint64>(fy - m_v, 0);
    const qint64 r1 = std::min<qint64>(fy + m_v, qint64(f.row.size()) - 1);
    if (r0 > r1)
        return 0.0;
    return double(f.run[size_t(r1 + 1)] - f.run[size_t(r0)]);
}
