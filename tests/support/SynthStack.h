#pragma once

#include "support/RefXafs.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

// A stack made in code: I1 frames and, if any, I0 frames whose pixels come
// from formulas. It writes them as 16-bit TIFFs for a run of the program and
// sums the boxes again for the expected values, independently of the program.
struct SynthStack {
    using Pixel = std::function<double(int x, int y, int k)>; // k: the frame

    int w = 0, h = 0;
    std::vector<double> i1E, i0E; // the frames' energies; no I0 energies: no I0 stack
    Pixel i1, i0;

    // Writes <dir>/i1_<energy>.tif (and i0_...), the energy as 08940.25, and
    // returns the batch lines that set the name patterns and load them.
    QStringList write(const QString &dir) const;

    // The sum over the box of half widths hw, vw around (cx, cy) of frame k;
    // pixels off the frame count 0.
    double box(const Pixel &px, int k, int cx, int cy, int hw, int vw) const;
    // The I0 box sum at energy e, on the line through the two I0 frames
    // around e, or through the end two outside them.
    double i0At(double e, int cx, int cy, int hw, int vw) const;
    // ln(I0 / I1) of the box for each I1 frame; without I0 frames ln(N / I1),
    // N the box's size; 1 where the logarithm has no value.
    std::vector<double> mu(int cx, int cy, int hw, int vw) const;
    RefXafs spectrum(int cx, int cy, int hw, int vw, const RefElm &elm = RefElm()) const;
};
