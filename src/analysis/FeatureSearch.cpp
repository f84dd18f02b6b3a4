#include "analysis/FeatureSearch.h"

#include "analysis/EnergyIndex.h"

FeatureValue analyzeFV(const XafsSpectrum &s, const SuggestElm &se, double elimReg)
{
    FeatureValue fv;
    const int n = s.points.size();
    // Smoothed values exist for every point of an analysed spectrum; where
    // they do not, a test that needs one fails instead of reading past the end.
    const int nm = qMin(n, int(s.smoothY.size()));
    const double *m = s.smoothY.constData();
    const double h = s.activeShift();
    const double e = se.edgeEV;
    const int a = energyIndex(s, e - 10.0);
    const int b = energyIndex(s, e + 50.0);

    int start = 0;
    for (int i = a; i < b; ++i) {
        if (!(2 <= i && i < n - 2) || i + 2 >= nm)
            continue;
        const double xe = s.points[i].x() - h;
        if (m[i + 1] > m[i + 2] && m[i] > m[i + 1] && m[i] > s.post.valueAt(xe)) {
            fv.dM = m[i] - s.pre.valueAt(xe);
            fv.e1 = s.points[i].x();
            start = i;
            break;
        }
    }

    // A start at or past b, or b == 0, searches nothing: the result stands.
    const double limit = fv.e1 + elimReg;
    for (int i = start; i < b; ++i) {
        // Near the end of the list the second value after i is missing: the
        // rise cannot be confirmed there.
        if (i + 2 >= nm)
            break;
        if (s.points[i].x() > limit && m[i + 1] > m[i] && m[i + 2] > m[i + 1]) {
            fv.e2 = s.points[i].x();
            break;
        }
    }
    return fv;
}
