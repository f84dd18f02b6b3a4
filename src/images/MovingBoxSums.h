#pragma once

#include "images/FrameStamp.h"

#include <QVector>

#include <vector>

class TiffData;

// The box sums of every frame of a stack for a box that moves a little at a
// time, as the pointer's does. The last sums are kept; where the box has
// moved by less than its size over the same integer frames (same version,
// same shift), the strips that entered it are added and those that left it
// taken off. Integers add up exactly, so every sum equals
// TiffData::boxSum's to the bit; float frames are summed box by box.
// One object serves one thread.
class MovingBoxSums
{
public:
    // out[k] = frames[k]->boxSum(x, y, hw, vw) for every frame.
    void sums(const QVector<TiffData *> &frames, int x, int y, int hw, int vw, double *out);

private:
    struct Kept
    {
        FrameStamp stamp;
        bool exact = false;
        qint64 sum = 0;
    };
    std::vector<Kept> m_kept;
    qint64 m_x = 0;
    qint64 m_y = 0;
    qint64 m_h = -1; // the magnitudes of the last widths; -1 before the first call
    qint64 m_v = -1;
};
