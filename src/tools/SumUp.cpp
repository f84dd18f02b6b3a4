#include "tools/SumUp.h"

#include "analysis/Analyzed2DRes.h"
#include "images/TiffData.h"

#include <QDebug>

#include <algorithm>

double SumUp::sumAt(const QVector<TiffData *> &frames, const QVector<Range> &ranges, int x, int y, int hw, int vw)
{
    const int n = int(frames.size());
    double t = 0;
    for (const Range &r : ranges) {
        // Only the indices that name a frame; a range of 0..1000 over ten
        // frames costs ten box sums, not a thousand tests.
        const int to = std::min(r.second, n);
        for (int i = std::max(r.first, 0); i < to; ++i)
            t += frames.at(i)->boxSum(x, y, hw, vw);
    }
    return t;
}

void SumUp::fillMap(const QVector<TiffData *> &frames, const QVector<Range> &ranges, AnalyzeCond ac,
                    Analyzed2DRes &map)
{
    do {
        if (ac.newLine)
            qDebug().noquote() << "Sum Up: row" << ac.iy << "scale" << map.effectiveMin() << map.effectiveMax();
        map.setData(ac.ix, ac.iy, ac.binX, ac.binY, sumAt(frames, ranges, ac.ix, ac.iy, ac.binX, ac.binY));
    } while (ac.next());
}
