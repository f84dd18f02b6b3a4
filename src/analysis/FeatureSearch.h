#pragma once

#include "analysis/FeatureValue.h"
#include "spectrum/SuggestElm.h"
#include "spectrum/XafsSpectrum.h"

// Finds on s's smoothed curve, within 10 eV below to 50 eV above se.edgeEV,
// the first double fall above the post-edge line (e1, and dM over the
// pre-edge line there) and then the first double rise more than elimReg
// beyond e1 (e2). What is not found stays 0; without a fall the rise is
// searched from the first point with e1 = 0. s must have been analysed.
FeatureValue analyzeFV(const XafsSpectrum &s, const SuggestElm &se, double elimReg);
