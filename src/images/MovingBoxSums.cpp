#include "images/MovingBoxSums.h"

#include "images/TiffData.h"

#include <algorithm>
#include <cstdlib>

namespace {

// A rectangle in image coordinates, ends included; empty when x0 > x1 or
// y0 > y1.
struct Rect
{
    qint64 x0, y0, x1, y1;
};

qint64 area(const Rect &r)
{
    return r.x0 > r.x1 || r.y0 > r.y1 ? 0 : (r.x1 - r.x0 + 1) * (r.y1 - r.y0 + 1);
}

// The part of box `to` outside box `from`, for boxes of one size that
// overlap: the columns outside `from` over all of `to`'s rows, then the rows
// outside `from` over the shared columns.
void difference(const Rect &to, const Rect &from, Rect parts[2])
{
    const qint64 c0 = std::max(to.x0, from.x0);
    const qint64 c1 = std::min(to.x1, from.x1);
    if (to.x0 < from.x0)
        parts[0] = {to.x0, to.y0, from.x0 - 1, to.y1};
    else
        parts[0] = {from.x1 + 1, to.y0, to.x1, to.y1};
    if (to.y0 < from.y0)
        parts[1] = {c0, to.y0, c1, from.y0 - 1};
    else
        parts[1] = {c0, from.y1 + 1, c1, to.y1};
}

} // namespace

void MovingBoxSums::sums(const QVector<TiffData *> &frames, int x, int y, int hw, int vw, double *out)
{
    const qint64 h = std::abs(qint64(hw));
    const qint64 v = std::abs(qint64(vw));
    const Rect box{qint64(x) - h, qint64(y) - v, qint64(x) + h, qint64(y) + v};
    const Rect last{m_x - h, m_y - v, m_x + h, m_y + v};
    Rect entered[2];
    Rect left[2];
    bool slide = h == m_h && v == m_v && h < (qint64(1) << 30) && v < (qint64(1) << 30)
                 && std::abs(qint64(x) - m_x) <= 2 * h && std::abs(qint64(y) - m_y) <= 2 * v;
    if (slide) {
        difference(box, last, entered);
        difference(last, box, left);
        // The strips are read a pixel per row where the box moved sideways,
        // so they pay only while they are clearly smaller than the box.
        const qint64 strips = area(entered[0]) + area(entered[1]) + area(left[0]) + area(left[1]);
        slide = 2 * strips < area(box);
    }

    m_kept.resize(size_t(frames.size()));
    for (qsizetype k = 0; k < frames.size(); ++k) {
        const TiffData *f = frames.at(k);
        Kept &kept = m_kept[size_t(k)];
        const FrameStamp stamp = FrameStamp::of(f);
        const bool same = kept.exact && kept.stamp == stamp;
        if (slide && same) {
            qint64 part;
            for (const Rect &r : entered) {
                f->exactRectSum(r.x0, r.y0, r.x1, r.y1, part);
                kept.sum += part;
            }
            for (const Rect &r : left) {
                f->exactRectSum(r.x0, r.y0, r.x1, r.y1, part);
                kept.sum -= part;
            }
        } else {
            kept.stamp = stamp;
            kept.exact = f->exactRectSum(box.x0, box.y0, box.x1, box.y1, kept.sum);
        }
        out[k] = kept.exact ? double(kept.sum) : f->boxSum(x, y, hw, vw);
    }
    m_x = x;
    m_y = y;
    m_h = h;
    m_v = v;
}
