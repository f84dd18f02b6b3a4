#pragma once

#include <QObject>

// Conversion between screen pixels and real units for one drawing.
//
// The window is the whole drawing surface, the plot region the part of it
// the real range is mapped onto. Either axis may run either way: a graph sets
// its window with y running up (winY0 = height, winY1 = 0), an image with y
// running down, and a reversed real range simply mirrors the mapping.
//
// The conversions divide by the spans as they stand: a zero-width range gives
// infinities or NaN, which the callers either never produce or draw nothing
// with.
class ChCoord : public QObject
{
    Q_OBJECT
public:
    explicit ChCoord(QObject *parent = nullptr);

    // Sets the window and the plot region alike.
    void setWindow(double x0, double y0, double x1, double y1);
    void setPlotRegion(double x0, double y0, double x1, double y1);
    void setRealRange(double x0, double y0, double x1, double y1);
    void setRealX(double x0, double x1);
    void setRealY(double y0, double y1);
    // The plot region from the window and the four margins; the margins are
    // truncated to whole pixels. For y the "top" margin is applied at winY0,
    // so a window with y running up takes marginT at its bottom edge.
    void applyMargins();

    double r2sx(double v) const { return (sX1 - sX0) / (rX1 - rX0) * (v - rX0) + sX0; }
    double r2sy(double v) const { return (sY1 - sY0) / (rY1 - rY0) * (v - rY0) + sY0; }
    double r2sdx(double v) const { return (sX1 - sX0) / (rX1 - rX0) * v; }
    double r2sdy(double v) const { return (sY1 - sY0) / (rY1 - rY0) * v; }
    double s2rx(double v) const { return (rX1 - rX0) / (sX1 - sX0) * (v - sX0) + rX0; }
    double s2ry(double v) const { return (rY1 - rY0) / (sY1 - sY0) * (v - sY0) + rY0; }
    double s2rdx(double v) const { return (rX1 - rX0) / (sX1 - sX0) * v; }
    double s2rdy(double v) const { return (rY1 - rY0) / (sY1 - sY0) * v; }
    // As s2rx/s2ry, clamped into the real range whichever way round its ends
    // are: a pointer outside the plot still names a point inside it.
    double s2rxLimited(double v) const;
    double s2ryLimited(double v) const;

    // Whether a screen coordinate lies within edgeRatio of the plot region's
    // span from one of its ends (ends included).
    bool nearXEdge(double v) const;
    bool nearYEdge(double v) const;
    // The same test on x against the whole window.
    bool nearLeftOrRightInWindow(double v) const;

    // The first of base x {1, 2, 5, 10, 20, 50, ..., 5e7} whose spacing on
    // the x axis is more than minPixels screen pixels, else base x 1e8.
    double nextStep(double base, int minPixels) const;

    // Tick spacing for the range min..max: step = u x T[k] with u the power
    // of ten below the span d and k = trunc(d / u) - 1, T = {0.2, 0.2, 0.5,
    // 0.5, 1, 1, 1, 2, 2} (1 for any other k); first and last are the
    // multiples of step just inside the range. False, and the outputs
    // untouched, when max - min is not a positive finite number: a caller
    // stepping from first to last would otherwise never arrive.
    static bool niceRange(double min, double max, double *step, double *first, double *last);

    double winX0 = 0, winX1 = 1, winY0 = 0, winY1 = 1;
    double sX0 = 0, sX1 = 1, sY0 = 0, sY1 = 1;
    double rX0 = 0, rX1 = 1, rY0 = 0, rY1 = 1;
    double edgeRatioX = 0.1, edgeRatioY = 0.1;
    double marginL = 0.1, marginR = 0.05, marginT = 0.05, marginB = 0.1;
    int tickMinX = 20, tickMinY = 25;
    double textScale = 0.85;
    bool flag = true;
};
