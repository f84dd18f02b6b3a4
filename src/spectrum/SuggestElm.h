#pragma once

#include <QMetaType>

// The element and edge that an analysis of a spectrum should look at, and the
// window around that edge. Filled from the element panel of the main window
// and handed by value to every analysis, across threads, so it stays a plain
// record. The defaults describe the Cu K edge with a +-20 eV window.
struct SuggestElm
{
    bool use = false;            // false: analyses search the whole spectrum
    int z = 29;                  // atomic number
    int edge = 0;                // 0 K, 1 LI, 2 LII, 3 LIII
    double edgeEV = 8984.36029;  // eV
    double preEnd = -20;         // eV relative to edgeEV
    double postStart = 20;       // eV relative to edgeEV
    double thJumpSigma = 1;      // jump threshold in units of line noise (rms)
};

Q_DECLARE_METATYPE(SuggestElm)
