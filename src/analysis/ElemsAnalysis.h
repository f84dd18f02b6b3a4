#pragma once

#include "spectrum/XafsSpectrum.h"

#include <QMetaType>
#include <QVector>

// One element panel as the element analysis and the correlation read it,
// copied on the main thread. Defaults are the panel's default texts.
struct ElemCond
{
    double e0 = 0;       // Eng: the expected edge, eV
    double dE = 20;      // PrePostDE: means over E0 +- (dE .. 2 dE), eV
    double roiS = 7000;  // ROIs, eV
    double roiE = 7005;  // ROIe, eV
    double thDMut = 0.1; // ThDMut: a jump not above it gives the background values
    bool noNeg = false;  // NoNeg: a negative ROI gives the background value
    // For the correlation only:
    bool use = false;    // Use
    double ratioV = 0;   // the jump relative to the target's, last single analysis
    double stdRatio = 1; // the standard ratio
};

// The background values of the element analysis. There is no separate value
// for N.ROI: it takes the ROI's, as the window always has.
struct ElemsBg
{
    double dMut = 0; // BGVDMut, also for Mut+ and Mut-
    double dE = 0;   // BGVDE
    double roi = -1; // BGVROI, also for N.ROI
};

// One entry per element in every list. Keep one outcome and pass it in
// again: the lists are cleared, not replaced, and keep their room.
struct ElemsOutcome
{
    QVector<double> res0;        // the raw jump, whatever the threshold
    QVector<double> elemDMut;
    QVector<double> elemNDMut;   // elemDMut over the target's (1 when that is 0)
    QVector<double> elemMutPlus;
    QVector<double> elemMutMinus;
    QVector<double> elemDE;      // edge position relative to E0, eV
    QVector<double> elemROI;
    QVector<double> elemNROI;    // ROI / jump
};

// Measures each element's jump, side means, edge position and ROI on s.
// mainT is the index of the target element; one outside the list counts as 0.
void analyzeElems(const XafsSpectrum &s, const QVector<ElemCond> &conds, const ElemsBg &bg,
                  int mainT, ElemsOutcome &out);

Q_DECLARE_METATYPE(ElemCond)
Q_DECLARE_METATYPE(ElemsBg)
Q_DECLARE_METATYPE(ElemsOutcome)
