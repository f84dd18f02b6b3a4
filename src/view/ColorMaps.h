#pragma once

#include <QtGlobal>

#include <array>
#include <cmath>

// The colour maps every image is drawn with, and the layout of the display
// buffers they fill.
//
// A map is chosen by a QImage format: 24 (Format_Grayscale8) takes the grey
// map, one byte per pixel; 13 (Format_RGB888) the RGB map, three bytes per
// pixel in r, g, b order. Display buffers pad every row to a multiple of four
// bytes, as QImage expects of a buffer it is given.
namespace ColorMaps {

inline constexpr int FormatGray = 24; // QImage::Format_Grayscale8
inline constexpr int FormatRgb = 13;  // QImage::Format_RGB888

inline constexpr int GraySize = 256;
// Black through red (0..255), yellow (256..510) and white (511..765), and one
// more white at 766: the map has one entry more than its three runs.
inline constexpr int RgbSize = 767;

struct Rgb {
    quint8 r, g, b;
};

// The two maps, built before main() runs (constant-initialised tables), so
// that a frame rendered on a loader thread never sees them half made.
extern const std::array<quint8, GraySize> grayMap;
extern const std::array<Rgb, RgbSize> rgbMap;

// The format new colour bars and images take unless told otherwise.
extern int defaultFormat;

// Only these two formats have a map; anything else makes no image.
inline bool hasMap(int format)
{
    return format == FormatGray || format == FormatRgb;
}

inline int bytesPerPixel(int format)
{
    return format == FormatRgb ? 3 : 1;
}

// Bytes in one padded row of a display buffer.
inline qsizetype rowBytes(quint32 width, int format)
{
    const qsizetype raw = qsizetype(width) * bytesPerPixel(format);
    return (raw + 3) / 4 * 4;
}

// v in [0, 1] to an entry: trunc(v x 256) or trunc(v x 766), clamped to the
// map. NaN takes the first entry.
inline int colorIndexGray(double v)
{
    const double s = v * 256.0;
    if (!(s >= 0.0))
        return 0;
    if (s >= 255.0)
        return 255;
    return int(s);
}

inline int colorIndexRGB(double v)
{
    const double s = v * 766.0;
    if (!(s >= 0.0))
        return 0;
    if (s >= 766.0)
        return 766;
    return int(s);
}

} // namespace ColorMaps
