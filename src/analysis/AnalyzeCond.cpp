#include "analysis/AnalyzeCond.h"

#include "app/TruncatedInt.h"

#include <utility>

void AnalyzeCond::setUp(int aW, int aH, int bX, int bY, const QRectF &rect, int xS, int yS)
{
    areaW = aW;
    areaH = aH;
    binX = bX;
    binY = bY;
    xStep = xS < 0 ? 2 * binX + 1 : xS;
    yStep = yS < 0 ? 2 * binY + 1 : yS;
    // A negative half width from a batch would make the tiling step
    // negative and the walk endless; such a walk steps one pixel instead.
    if (xStep < 1 && xS < 0)
        xStep = 1;
    if (yStep < 1 && yS < 0)
        yStep = 1;
    xStart = truncatedInt(rect.x());
    xEnd = truncatedInt(rect.x() + rect.width());
    yStart = truncatedInt(rect.y());
    yEnd = truncatedInt(rect.y() + rect.height());
    if (xEnd < xStart)
        std::swap(xStart, xEnd);
    if (yEnd < yStart)
        std::swap(yStart, yEnd);
    restart();
}

void AnalyzeCond::restart()
{
    ix = xStart + binX;
    iy = yStart + binY;
    newLine = true;
}

bool AnalyzeCond::next()
{
    newLine = false;
    // A zero or negative step passed on purpose would never leave the row;
    // it ends the walk instead.
    if (xStep < 1 || yStep < 1) {
        newLine = true;
        return false;
    }
    // In 64 bits: a step near INT_MAX from a batch must end the walk, not
    // wrap back into it.
    const qint64 nx = qint64(ix) + xStep;
    if (nx < xEnd) {
        ix = int(nx);
        return true;
    }
    newLine = true;
    ix = binX + xStart;
    const qint64 ny = qint64(iy) + yStep;
    if (ny < yEnd) {
        iy = int(ny);
        return true;
    }
    iy = int(qMin<qint64>(ny, INT_MAX));
    return false;
}

QString AnalyzeCond::text() const
{
    return QStringLiteral("Area(%1,%2), Bin(%3,%4), x(%5,%6,%7), y(%8,%9,%10), idx(%11,%12)")
        .arg(areaW)
        .arg(areaH)
        .arg(binX)
        .arg(binY)
        .arg(xStart)
        .arg(xEnd)
        .arg(xStep)
        .arg(yStart)
        .arg(yEnd)
        .arg(yStep)
        .arg(ix)
        .arg(iy);
}
