#pragma once

#include "spectrum/XafsSpectrum.h"

// The jump of a point's edge lines at one energy, split into the scaled jump
// of the element of interest and what remains of the absorption below it.
struct RaResult
{
    double raDMut = 0;   // post(e) - pre(e)
    double raScaled = 0; // raDMut x factor
    double raRest = 0;   // pre(e) - raScaled
};

// e is atEV less twice the spectrum's shift: the shift has always been taken
// off twice here, and run spectra carry none, so maps are not affected.
RaResult analyzeRA(const XafsSpectrum &s, double raFactor, double atEV);
