#pragma once

#include "images/AbsorptionInput.h"
#include "images/MovingBoxSums.h"

#include <QRectF>
#include <QVector>

#include <cmath>
#include <vector>

class Spectrum;
class TiffData;

// The absorption formula and the other per-box curves of the image stacks,
// free of any widget: the main window gathers its state into an
// AbsorptionInput and calls these.
//
// Every function fills a caller-owned Spectrum: it is reset, then refilled,
// so a Spectrum kept between calls (and not shared with a copy still alive)
// allocates nothing once it has been filled once. Extremes and their indices
// are those that Spectrum::addPoint tracks.
//
// Boxes have centre (x, y) and half widths hw, vw; a box sums pixels from
// x-|hw| to x+|hw| and y-|vw| to y+|vw|, and pixels outside a frame count 0.
namespace Absorption {

// mu from a reference a and a signal b. In transmission a zero or negative
// product gives 1.0 rather than a skipped point or a NaN; in fluorescence the
// quotient stands as it comes.
inline double muOf(double a, double b, bool fluoType)
{
    if (fluoType)
        return b / a;
    return b * a > 0 ? std::log(a / b) : 1.0;
}

// (energy, mu) for each I1 frame in load order. Empty without I1 frames or
// for a centre outside the first I1 frame (x or y negative, x >= width,
// y >= height).
//
// N = (2 hw + 1) * (2 vw + 1) is the nominal I0 without an I0 stack; it is
// taken with the signs of the widths as given, so negative widths make it
// negative although the sums use their magnitudes. N stays the full box where
// the box leaves the frame: the signal falls, the reference does not.
//
// Per frame i: d1 = D1 (+ i1DarkList[i] * N with the I1 dark area),
// d0 likewise, b = boxSum - d1, and
//   a = N, or with useI0 the I0 stack interpolated at the frame's energy
//   minus d0 (1.0 - d0 for an empty stack), or, overriding both, row i of the
//   total I0's i0Curve (0 beyond its end), which takes no dark correction.
// mu = b / a with fluoType, unguarded; otherwise ln(a / b), or 1.0 where
// b * a <= 0 so that the spectrum keeps all its points.
// An I0 dark list shorter than the I1 stack adds nothing beyond its end.
//
// Grows the dark lists that are in use (see updateDarkList).
// With raw, also fills it as rawSpectrum would, from the same I1 sums.
// With kept, the box sums come from those of the last call with the same
// kept sums (see MovingBoxSums): the same numbers, fewer pixels read when
// the box moved a little.
struct KeptSums;
void absorptionSpectrum(const AbsorptionInput &in, int x, int y, int hw, int vw, Spectrum &out,
                        Spectrum *raw = nullptr, KeptSums *kept = nullptr);

// The box sums of both stacks kept between spectra of a moving box.
struct KeptSums
{
    MovingBoxSums i1;
    MovingBoxSums i0;
    std::vector<double> i1All;
    std::vector<double> i0All;
};

// absorptionSpectrum for walks over many boxes whose sums are taken in bulk
// (BoxRowSums). Made once, on the thread that owns the dark lists (it grows
// those in use, as each single box does), then read by any thread. It keeps
// its own copies of the frame and dark lists, so frames the loader appends
// meanwhile don't move them under the readers; the frames themselves and the
// dark frame must outlive the walk.
struct AbsorptionWalk
{
    explicit AbsorptionWalk(const AbsorptionInput &in);
    // `in` points into this walk's own lists.
    AbsorptionWalk(const AbsorptionWalk &) = delete;
    AbsorptionWalk &operator=(const AbsorptionWalk &) = delete;
    // Whether the spectra read the I0 stack's sums at all.
    bool needsI0() const;
    // absorptionSpectrum(in, x, y, hw, vw, out) to the bit, given the box
    // sums at (x, y): one per I1 frame, one per I0 frame, and the dark
    // frame's (unread without a dark frame). Without extremes the curve's
    // extremes keep their reset values, for a walk whose analyses read none
    // of them: the map's analyses don't.
    void spectrum(int x, int y, int hw, int vw, const double *i1Sums, const double *i0Sums, double darkSum,
                  Spectrum &out, bool extremes = true) const;

    // The I0 stack at the energies of I1 frames from .. from + m - 1, from
    // the I0 sums; with two I0 frames or more.
    void i0Stretch(qsizetype from, int m, const double *i0Sums, double *i0At) const;

    AbsorptionInput in;
    QVector<TiffData *> i1Frames;
    QVector<TiffData *> i0Frames;
    QVector<double> i1DarkList;
    QVector<double> i0DarkList;
    // The two I0 frames read for each I1 frame, with two I0 frames or more;
    // the I1 frame's energy less the first one's (de) and the second's less
    // the first's (dd), and how the two sums combine: their mean for equal
    // energies, the general interpolation, or at the first's own energy
    // (de zero) sa + (sb - sa) * (de / dd), dd then holding de / dd: the
    // same zero of the same sign, or NaN, that the general term gives.
    enum PairHow : char { PairGeneral, PairAverage, PairAtA };
    QVector<qsizetype> pairA;
    QVector<qsizetype> pairB;
    std::vector<double> pairDE;
    std::vector<double> pairDD;
    std::vector<char> pairHow;
    std::vector<double> i1Energy;
};

// The same for the rectangle with corners (x0, y0) and (x1, y1): centre at
// the truncated mean of the corners, half widths half the differences
// rounded up.
void absorptionSpectrumByCorners(const AbsorptionInput &in, int x0, int y0, int x1, int y1, Spectrum &out);

// (energy, boxSum) for each I1 frame, with the bounds test of
// absorptionSpectrum and neither dark nor I0.
void rawSpectrum(const AbsorptionInput &in, int x, int y, int hw, int vw, Spectrum &out);

// A section along row y (horizontal) or column x (vertical) of frame `index`
// of the I0 stack (inI0Stack) or the I1 stack; with asAbsorption always of
// the I1 stack, each box sum s then turned into s / i0 (fluoType) or
// ln(i0 / s) (1.0 where s * i0 <= 0), i0 being the I0 stack interpolated at
// the frame's energy. No dark, no total I0, whatever useI0 says.
// Horizontal points are (x, value) for x = 0 .. imgW - 1; vertical points are
// (imgH - y, value) for y = 0 .. imgH - 1, so their abscissa runs from imgH
// down to 1. imgW and imgH come from the first I1 frame; a row or column
// outside it, or an index outside the stack, gives nothing.
void horizontalSection(const AbsorptionInput &in, int index, bool inI0Stack, int y, int hw, int vw,
                       bool asAbsorption, Spectrum &out);
void verticalSection(const AbsorptionInput &in, int index, bool inI0Stack, int x, int hw, int vw,
                     bool asAbsorption, Spectrum &out);

// Appends, for each frame from list.size() on, the mean over rect of that
// frame less the mean over rect of the dark frame (when there is one). The
// list grows with the stack, so keeping it current during loading is cheap
// and rectMean stays out of the per-box loop.
void updateDarkList(const QVector<TiffData *> &frames, const TiffData *dark, const QRectF &rect,
                    QVector<double> &list);

} // namespace Absorption
