#include "view/ColorMaps.h"

namespace ColorMaps {
namespace {

constexpr std::array<quint8, GraySize> makeGray()
{
    std::array<quint8, GraySize> m{};
    for (int i = 0; i < GraySize; ++i)
        m[i] = quint8(i);
    return m;
}

constexpr std::array<Rgb, RgbSize> makeRgb()
{
    std::array<Rgb, RgbSize> m{};
    for (int i = 0; i <= 255; ++i)
        m[i] = Rgb{quint8(i), 0, 0};
    for (int i = 256; i <= 510; ++i)
        m[i] = Rgb{255, quint8(i - 255), 0};
    for (int i = 511; i <= 765; ++i)
        m[i] = Rgb{255, 255, quint8(i - 510)};
    m[766] = Rgb{255, 255, 255};
    return m;
}

} // namespace

constexpr std::array<quint8, GraySize> grayMap = makeGray();
constexpr std::array<Rgb, RgbSize> rgbMap = makeRgb();
int defaultFormat = FormatGray;

} // namespace ColorMaps
