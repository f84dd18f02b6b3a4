#pragma once

#include "view/ColorMaps.h"

#include <QColor>

#include <atomic>

// The colour scale of the main colour bar as the core sees it: which values
// take which colour. The bar on screen (ColorBar) derives from it; frames and
// maps render through gColorBar without knowing of widgets.
//
// lo and hi are the bar's two ends as fractions of its height. A ratio t
// (already normalised to 0..1 by the caller's own range) takes the colour of
// (t - lo) / (hi - lo), clamped to 0..1: everything below lo has the map's
// first colour, everything above hi its last. The ends may cross (the scale
// is then inverted); equal ends divide by zero and give the first or last
// colour, or the first for NaN.
//
// Threads: the ends are written on the main thread while a loader thread may
// be rendering a frame, so they are atomics; a renderer takes ends() once and
// works with that copy. Everything else is main-thread only.
class ColorScale
{
public:
    struct Ends {
        double lo = 0.0;
        double hi = 1.0;
    };

    ColorScale();
    virtual ~ColorScale();
    ColorScale(const ColorScale &) = delete;
    ColorScale &operator=(const ColorScale &) = delete;

    Ends ends() const { return {lo_.load(std::memory_order_relaxed), hi_.load(std::memory_order_relaxed)}; }
    double lo() const { return lo_.load(std::memory_order_relaxed); }
    double hi() const { return hi_.load(std::memory_order_relaxed); }
    // Both setters tell scaleChanged(), so that a bar on screen repaints.
    void setEnds(double lo, double hi);
    // The values written at the bar's bottom and top. They label the bar
    // only: what colour a pixel takes is decided by the renderer's own range
    // and the ends.
    void setValueRange(double min, double max);

    // The position in the map of `format` for a normalised ratio t.
    static double scaled(double t, Ends e)
    {
        const double s = (t - e.lo) / (e.hi - e.lo);
        if (!(s > 0.0))
            return 0.0; // NaN too
        return s > 1.0 ? 1.0 : s;
    }

    // The colour of an entry chosen by r in 0..1 (clamped) in this scale's
    // format; grey entries give equal red, green and blue.
    QColor colorOfRatio(double r) const;
    // The colour of a normalised ratio through the ends.
    QColor colorOfValue(double t) const { return colorOfRatio(scaled(t, ends())); }
    // Writes the bytes of a normalised ratio in this scale's format (one grey
    // byte, or r, g, b) at dst and advances dst past them.
    void bytesOfValue(double t, uchar *&dst) const;

    int format = ColorMaps::defaultFormat; // 24 grey or 13 RGB
    double vMin = 0.0;
    double vMax = 1.0;

protected:
    virtual void scaleChanged() {}

private:
    std::atomic<double> lo_{0.0};
    std::atomic<double> hi_{1.0};
};
