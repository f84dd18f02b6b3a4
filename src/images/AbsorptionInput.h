#pragma once

#include <QRectF>
#include <QVector>

class TiffData;
class XafsSpectrum;

// Everything the absorption of a box depends on, gathered by the main window
// from its stacks, its dark state and its controls at the moment of use. The
// pointers refer to the caller's own state and own nothing; a null frame list
// counts as an empty stack.
//
// Frame lists hold no null pointer. The I0 stack is taken to be in energy
// order (frames arrive in file order, and the acquisition writes them so).
struct AbsorptionInput
{
    // In load order; the first frame gives the image size (imgW, imgH).
    const QVector<TiffData *> *i1Frames = nullptr;
    const QVector<TiffData *> *i0Frames = nullptr;

    // The dark frame, or null. Its box sum is turned into a rate by
    // darkExpTime and back into counts by each stack's exposure, so every
    // stack is corrected with a dark of its own exposure. A darkExpTime of 0
    // gives an infinite or NaN dark, which is left to show in the spectrum.
    const TiffData *dark = nullptr;
    double darkExpTime = 0.0; // ms, DarkExpTime
    double i1ExpTime = 0.0;   // ms, ExpTime of the I1 panel
    double i0ExpTime = 0.0;   // ms, ExpTime of the I0 panel

    bool useI0 = true;     // UseI0: divide by the I0 stack
    bool fluoType = false; // FluoType: mu = I1 / I0 instead of ln(I0 / I1)

    // Dark areas: a rectangle of each frame taken as that frame's own
    // background. The lists hold one value per frame of their stack and are
    // grown here, lazily, as frames arrive; a null list disables the area.
    bool useI1DarkArea = false;
    QRectF i1DarkRect;
    QVector<double> *i1DarkList = nullptr;
    bool useI0DarkArea = false;
    QRectF i0DarkRect;
    QVector<double> *i0DarkList = nullptr;

    // "Total I0 of I1": when it has points, row i of its i0Curve is the I0 of
    // I1 frame i, in place of anything else.
    const XafsSpectrum *totalI0ofI1 = nullptr;
};
