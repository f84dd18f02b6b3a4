#include "view/PixelMapper.h"

PixelMapper::PixelMapper(double srcMin, double srcMax, ColorScale::Ends ends, int format)
    : srcMin_(srcMin)
    , srcMax_(srcMax)
    , ends_(ends)
    , format_(format)
    , bpp_(ColorMaps::bytesPerPixel(format))
{
}

void PixelMapper::buildTable(qint64 lo, qint64 hi)
{
    if (hi < lo || hi - lo >= MaxTable)
        return;
    const qint64 n = hi - lo + 1;
    table_.resize(std::size_t(n) * std::size_t(bpp_));
    tableLo_ = lo;
    uchar *dst = table_.data();
    for (qint64 v = lo; v <= hi; ++v, dst += bpp_)
        write(double(v), dst);
}

void PixelMapper::fill(double v, qsizetype n, uchar *dst) const
{
    if (n <= 0)
        return;
    uchar one[3];
    write(v, one);
    if (bpp_ == 1) {
        std::memset(dst, one[0], std::size_t(n));
        return;
    }
    for (qsizetype i = 0; i < n; ++i, dst += 3)
        std::memcpy(dst, one, 3);
}
