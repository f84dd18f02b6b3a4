#include "view/ColorScale.h"

ColorScale::ColorScale() = default;

ColorScale::~ColorScale() = default;

void ColorScale::setEnds(double lo, double hi)
{
    lo_.store(lo, std::memory_order_relaxed);
    hi_.store(hi, std::memory_order_relaxed);
    scaleChanged();
}

void ColorScale::setValueRange(double min, double max)
{
    vMin = min;
    vMax = max;
    scaleChanged();
}

QColor ColorScale::colorOfRatio(double r) const
{
    if (format == ColorMaps::FormatRgb) {
        const ColorMaps::Rgb c = ColorMaps::rgbMap[ColorMaps::colorIndexRGB(r)];
        return QColor(c.r, c.g, c.b);
    }
    const int g = ColorMaps::grayMap[ColorMaps::colorIndexGray(r)];
    return QColor(g, g, g);
}

void ColorScale::bytesOfValue(double t, uchar *&dst) const
{
    const double s = scaled(t, ends());
    if (format == ColorMaps::FormatRgb) {
        const ColorMaps::Rgb c = ColorMaps::rgbMap[ColorMaps::colorIndexRGB(s)];
        *dst++ = c.r;
        *dst++ = c.g;
        *dst++ = c.b;
    } else {
        *dst++ = ColorMaps::grayMap[ColorMaps::colorIndexGray(s)];
    }
}
