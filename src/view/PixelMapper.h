#pragma once

#include "view/ColorMaps.h"
#include "view/ColorScale.h"

#include <QtGlobal>

#include <cstring>
#include <type_traits>
#include <vector>

// Turns raw pixel values into display bytes: a value v of a source whose
// range is srcMin..srcMax becomes t = (v - srcMin) / (srcMax - srcMin), t
// goes through the colour scale's ends, and the result picks an entry of the
// map of the buffer's format (one grey byte, or r, g, b).
//
// The ends are a copy taken at construction, so a scale that is dragged on
// another thread does not change colours half way through an image.
//
// For integer pixels a table of the bytes of every value in a range can be
// built once per image, after which a pixel costs a lookup; values outside
// that range are mapped one by one with the same arithmetic, so the table
// never changes a result. A source with srcMax = srcMin gives NaN or
// infinities, which the scale's clamp turns into its first or last colour.
class PixelMapper
{
public:
    PixelMapper(double srcMin, double srcMax, ColorScale::Ends ends, int format);

    int format() const { return format_; }
    int bytesPerPixel() const { return bpp_; }

    // The map entry for one raw value.
    int indexOf(double v) const
    {
        const double t = (v - srcMin_) / (srcMax_ - srcMin_);
        const double s = ColorScale::scaled(t, ends_);
        return bpp_ == 3 ? ColorMaps::colorIndexRGB(s) : ColorMaps::colorIndexGray(s);
    }

    // Writes the bytes of one raw value at dst.
    void write(double v, uchar *dst) const
    {
        const int i = indexOf(v);
        if (bpp_ == 3) {
            const ColorMaps::Rgb &c = ColorMaps::rgbMap[i];
            dst[0] = c.r;
            dst[1] = c.g;
            dst[2] = c.b;
        } else {
            dst[0] = ColorMaps::grayMap[i];
        }
    }

    // Builds the table for the integer values lo..hi; nothing happens when
    // the range is empty or has more than MaxTable values.
    void buildTable(qint64 lo, qint64 hi);
    static constexpr qint64 MaxTable = qint64(1) << 22;

    // Maps n values into n pixels at dst.
    template <typename T>
    void mapRow(const T *src, qsizetype n, uchar *dst) const
    {
        if (bpp_ == 3)
            mapRowN<T, 3>(src, n, dst);
        else
            mapRowN<T, 1>(src, n, dst);
    }

    // Fills n pixels at dst with the colour of one value.
    void fill(double v, qsizetype n, uchar *dst) const;

private:
    template <typename T, int Bpp>
    void mapRowN(const T *src, qsizetype n, uchar *dst) const
    {
        if constexpr (std::is_integral_v<T>) {
            if (!table_.empty()) {
                const uchar *table = table_.data();
                const quint64 size = table_.size() / Bpp;
                for (qsizetype i = 0; i < n; ++i, dst += Bpp) {
                    const quint64 k = quint64(qint64(src[i]) - tableLo_);
                    if (k < size)
                        std::memcpy(dst, table + k * Bpp, Bpp);
                    else
                        write(double(src[i]), dst);
                }
                return;
            }
        }
        for (qsizetype i = 0; i < n; ++i, dst += Bpp)
            write(double(src[i]), dst);
    }

    double srcMin_;
    double srcMax_;
    ColorScale::Ends ends_;
    int format_;
    int bpp_;
    qint64 tableLo_ = 0;
    std::vector<uchar> table_; // bytes of tableLo_, tableLo_ + 1, ...
};
