#include "analysis/ResidualAbsorption.h"

RaResult analyzeRA(const XafsSpectrum &s, double raFactor, double atEV)
{
    const double h = s.activeShift();
    const double e = atEV - h - h;
    RaResult r;
    const double pre = s.pre.valueAt(e);
    r.raDMut = s.post.valueAt(e) - pre;
    r.raScaled = r.raDMut * raFactor;
    r.raRest = pre - r.raScaled;
    return r;
}
