#pragma once

#include <QMetaType>
#include <QRectF>
#include <QString>

// The walk over an image area: row by row, each point standing for a block
// of (2 binX + 1) x (2 binY + 1) pixels around it. Analysis runs, the
// calibration and the exports all walk by it, and every result map keeps the
// walk that filled it.
//
// The first point lies binX, binY inside the area's corner and is always
// visited; the end test is on the block's centre, so the last block of a row
// may reach past xEnd, and an area no wider than binX still has one point.
//
// A plain record, copied freely and passed by value in signals.
struct AnalyzeCond
{
    int areaW = 0; // the image, pixels
    int areaH = 0;
    int binX = 0;  // half widths of a point's block
    int binY = 0;
    int xStart = 0;
    int xEnd = 0;
    int xStep = 1;
    int yStart = 0;
    int yEnd = 0;
    int yStep = 1;
    int ix = 0; // current point
    int iy = 0;
    bool newLine = true; // the current point is the first of its row

    // A negative step means 2 bin + 1, so that the blocks tile the area.
    // rect is (x, y, width, height); each end is truncated toward zero, and
    // an area dragged backwards is turned round. Ends at the first point.
    void setUp(int areaW, int areaH, int binX, int binY, const QRectF &rect, int xStep, int yStep);
    void restart();
    // Moves to the next point; false when the walk is over (the position
    // then stands at the start of a row below the area).
    bool next();

    // The form of the debug log.
    QString text() const;
};

Q_DECLARE_METATYPE(AnalyzeCond)
