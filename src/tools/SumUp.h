#pragma once

#include "analysis/AnalyzeCond.h"

#include <QPair>
#include <QVector>

class Analyzed2DRes;
class TiffData;

// The sum-up map: at every point of a walk, the box sums of the frames of
// chosen index ranges, added up.
class SumUp
{
public:
    // Frames from <= i < to; an index off the stack is passed over, and
    // overlapping ranges count twice.
    using Range = QPair<int, int>;

    static double sumAt(const QVector<TiffData *> &frames, const QVector<Range> &ranges, int x, int y, int hw,
                        int vw);

    // Walks ac from where it stands, the box of a point being the walk's
    // block, and sets each point's block of map to its sum. The first point
    // of each row logs the row and the map's scale so far.
    static void fillMap(const QVector<TiffData *> &frames, const QVector<Range> &ranges, AnalyzeCond ac,
                        Analyzed2DRes &map);
};
