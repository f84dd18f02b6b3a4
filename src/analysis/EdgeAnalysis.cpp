#include "analysis/EdgeAnalysis.h"

#include "spectrum/XafsSpectrum.h"

#include <QDebug>

double edgePosition(const XafsSpectrum &s, const SuggestElm &sElm, bool isMidPoint, double midRatio,
                    const XafsSpectrum &ref, double cwRangeEV, double cwInitDEeV, double cwMinDEeV,
                    const InnerProductStandard *refReading)
{
    if (isMidPoint) {
        // Written as a negated equality so that NaN on either side also
        // takes the search again.
        const double e = !(midRatio == s.midRatio) ? s.findMidx(midRatio) : s.midx;
        return e - s.eOffset - sElm.edgeEV;
    }
    const double e = refReading ? s.searchDE(ref, *refReading, cwRangeEV, cwInitDEeV, cwMinDEeV)
                                : s.searchDE(ref, cwRangeEV, cwInitDEeV, cwMinDEeV);
    return e - s.eOffset;
}

XafsSpectrum dEdgeStep(double at, double width, double spacing)
{
    Spectrum step;
    const double end = at + width * 0.5;
    double e = at - width * 0.5;
    int n = 0;
    while (e < end) {
        step.addPoint(e, e >= at ? 1.0 : 0.0);
        const double next = e + spacing;
        if (!(next > e) || ++n >= MaxStepPoints) {
            qDebug().noquote() << "DEdge Step: spacing" << spacing << "stops the step at" << step.size() << "points";
            break;
        }
        e = next;
    }
    return XafsSpectrum(step, QStringLiteral("DEdge Step"), 1, 0.0, SuggestElm());
}
