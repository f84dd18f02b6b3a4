#include "view/CurveLines.h"

#include "view/ChCoord.h"

#include <cmath>

void curvePolylines(const QPolygonF &real, const ChCoord &cc, double maxGap, QVector<QPolygonF> &out)
{
    int used = 0; // polygons of out filled so far; the last one may be open
    bool open = false;
    auto closeLine = [&]() {
        if (open && out[used - 1].size() < 2)
            --used; // a lone point: reuse its polygon for the next line
        open = false;
    };
    const int n = int(real.size());
    for (int i = 0; i < n; ++i) {
        const QPointF r = real.at(i);
        const double sx = cc.r2sx(r.x());
        const double sy = cc.r2sy(r.y());
        if (!std::isfinite(sx) || !std::isfinite(sy)) {
            closeLine();
            continue;
        }
        if (open && maxGap > 0 && std::fabs(r.x() - real.at(i - 1).x()) > maxGap)
            closeLine();
        if (!open) {
            if (used == out.size())
                out.append(QPolygonF());
            out[used].clear();
            ++used;
            open = true;
        }
        out[used - 1].append(QPointF(sx, sy));
    }
    closeLine();
    out.resize(used);
}
