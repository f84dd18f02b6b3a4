#include "images/CrossSection.h"

#include "images/Absorption.h"
#include "images/TiffData.h"

#include <cstring>
#include <utility>

bool CrossSection::FrameKey::operator==(const FrameKey &o) const
{
    // Energies compared bit for bit: a NaN energy must not force a new sum
    // every time, nor may -0 and 0 pass for one another.
    return stamp == o.stamp && std::memcmp(&energy, &o.energy, sizeof energy) == 0;
}

bool CrossSection::Key::operator==(const Key &o) const
{
    return frames == o.frames && hw == o.hw && vw == o.vw && along == o.along && across == o.across
           && asAbsorption == o.asAbsorption && fluoType == o.fluoType && i0Count == o.i0Count;
}

void CrossSection::take(const AbsorptionInput &in, int index, bool inI0Stack, int at, int hw, int vw,
                        bool asAbsorption, Spectrum &out)
{
    static const QVector<TiffData *> none;
    const QVector<TiffData *> &i1 = in.i1Frames ? *in.i1Frames : none;
    const QVector<TiffData *> &i0 = in.i0Frames ? *in.i0Frames : none;
    const QVector<TiffData *> &stack = (asAbsorption || !inI0Stack) ? i1 : i0;
    // imgW and imgH come from the first I1 frame.
    const qint64 w = i1.isEmpty() ? 0 : qint64(i1.first()->width);
    const qint64 h = i1.isEmpty() ? 0 : qint64(i1.first()->height);
    const qint64 across = m_horizontal ? h : w; // the extent `at` must lie in
    const qint64 along = m_horizontal ? w : h;
    if (index < 0 || index >= stack.size() || at < 0 || at >= across) {
        out.reset();
        m_have = false;
        return;
    }
    TiffData *frame = stack.at(index);
    // The frame, and the I0 frames its energy reads (the same pair all along).
    QVector<TiffData *> frames{frame};
    qsizetype a = 0;
    qsizetype b = 0;
    if (asAbsorption && i0.size() == 1) {
        frames << i0.at(0);
    } else if (asAbsorption && i0.size() > 1) {
        TiffData::interpolationPair(i0, frame->energy, a, b);
        frames << i0.at(a) << i0.at(b);
    }

    Key key;
    key.frames.reserve(size_t(frames.size()));
    for (const TiffData *f : std::as_const(frames))
        key.frames.push_back({FrameStamp::of(f), f->energy});
    key.hw = hw;
    key.vw = vw;
    key.along = along;
    key.across = across;
    key.asAbsorption = asAbsorption;
    key.fluoType = in.fluoType;
    key.i0Count = i0.size();
    const bool sameKey = m_set && key == m_key;
    if (sameKey && m_have && at == m_at) {
        out = m_last;
        return;
    }
    if (!sameKey) {
        if (m_horizontal)
            m_rowSums.setUp(frames, hw, vw, 0, int(along - 1));
        else
            m_colSums.setUp(frames, hw, vw);
        m_key = std::move(key);
        m_set = true;
    }
    // Along a row the boxes slide by one pixel through the row sums; moving
    // to another row or column slides the sums kept from the last one.
    if (m_horizontal)
        m_rowSums.moveTo(at);
    else
        m_colSums.moveTo(at);
    const auto sum = [&](int k, qint64 i) {
        return m_horizontal ? m_rowSums.sum(k, int(i)) : m_colSums.sum(k, int(i));
    };

    m_last.reset();
    m_last.reserve(int(along));
    for (qint64 i = 0; i < along; ++i) {
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
            value = Absorption::muOf(i0Sum, s, in.fluoType);
        }
        m_last.addPoint(m_horizontal ? double(i) : double(h - i), value);
    }
    m_at = at;
    m_have = true;
    out = m_last;
}
