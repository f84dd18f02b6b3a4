#include "support/SynthStack.h"

#include "images/TiffWriter.h"

#include <cmath>

namespace {
QStringList writeFrames(const QString &dir, const char *stack, int w, int h, const std::vector<double> &energies,
                        const SynthStack::Pixel &px)
{
    QStringList files;
    std::vector<quint16> v(size_t(w) * size_t(h));
    for (size_t k = 0; k < energies.size(); ++k) {
        for (int p = 0; p < w * h; ++p)
            v[size_t(p)] = quint16(px(p % w, p / w, int(k)));
        files << QStringLiteral("%1/%2_%3.tif").arg(dir, stack).arg(energies[k], 8, 'f', 2, QLatin1Char('0'));
        if (!writeTiff16(files.last(), quint32(w), quint32(h), v.data()))
            qWarning("cannot write %s", qPrintable(files.last()));
    }
    return files;
}
} // namespace

QStringList SynthStack::write(const QString &dir) const
{
    QStringList lines{"set_i1_energy_pattern \\d\\d\\d\\d\\.\\d\\d",
                      "load_I1_files new " + writeFrames(dir, "i1", w, h, i1E, i1).join(' ')};
    if (!i0E.empty())
        lines << "set_i0_energy_pattern \\d\\d\\d\\d\\.\\d\\d"
              << "load_I0_files new " + writeFrames(dir, "i0", w, h, i0E, i0).join(' ');
    return lines;
}

double SynthStack::box(const Pixel &px, int k, int cx, int cy, int hw, int vw) const
{
    double s = 0;
    for (int y = std::max(cy - vw, 0); y <= std::min(cy + vw, h - 1); ++y)
        for (int x = std::max(cx - hw, 0); x <= std::min(cx + hw, w - 1); ++x)
            s += px(x, y, k);
    return s;
}

double SynthStack::i0At(double e, int cx, int cy, int hw, int vw) const
{
    const int n = int(i0E.size());
    if (n == 1)
        return box(i0, 0, cx, cy, hw, vw);
    int j = 0;
    while (j < n - 2 && e >= i0E[size_t(j) + 1])
        ++j;
    const double s0 = box(i0, j, cx, cy, hw, vw), s1 = box(i0, j + 1, cx, cy, hw, vw);
    return s0 + (e - i0E[size_t(j)]) * (s1 - s0) / (i0E[size_t(j) + 1] - i0E[size_t(j)]);
}

std::vector<double> SynthStack::mu(int cx, int cy, int hw, int vw) const
{
    std::vector<double> out;
    for (size_t k = 0; k < i1E.size(); ++k) {
        const double b = box(i1, int(k), cx, cy, hw, vw);
        const double a = i0E.empty() ? double(2 * hw + 1) * (2 * vw + 1) : i0At(i1E[k], cx, cy, hw, vw);
        out.push_back(a * b > 0 ? std::log(a / b) : 1.0);
    }
    return out;
}

RefXafs SynthStack::spectrum(int cx, int cy, int hw, int vw, const RefElm &elm) const
{
    return RefXafs(i1E, mu(cx, cy, hw, vw), elm);
}
