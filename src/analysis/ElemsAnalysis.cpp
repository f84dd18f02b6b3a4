#include "analysis/ElemsAnalysis.h"

#include "analysis/EnergyIndex.h"

namespace {

double yAt(const XafsSpectrum &s, int k)
{
    return k >= 0 && k < s.points.size() ? s.points[k].y() : 0.0;
}

// Mean of y over i .. j, both included; 0 when the range is empty.
double mean(const XafsSpectrum &s, int i, int j)
{
    if (i > j)
        return 0.0;
    double sum = 0.0;
    for (int k = i; k <= j; ++k)
        sum += yAt(s, k);
    return sum / (j + 1 - i);
}

// Mean position of all upward crossings of level between the points a and b,
// each crossing at the middle of its pair, relative to e0; 0 with none.
double edgePosition(const XafsSpectrum &s, int a, int b, double level, double h, double e0)
{
    double sum = 0.0;
    int c = 0;
    for (int k = a; k < b; ++k) {
        if (yAt(s, k) < level && yAt(s, k + 1) >= level) {
            sum += (s.points[k].x() - h + s.points[k + 1].x() - h) * 0.5;
            ++c;
        }
    }
    return c > 0 ? sum / c - e0 : 0.0;
}

} // namespace

void analyzeElems(const XafsSpectrum &s, const QVector<ElemCond> &conds, const ElemsBg &bg,
                  int mainT, ElemsOutcome &out)
{
    QVector<double> *lists[] = {&out.res0,     &out.elemDMut,     &out.elemNDMut,
                                &out.elemMutPlus, &out.elemMutMinus, &out.elemDE,
                                &out.elemROI,  &out.elemNROI};
    for (QVector<double> *l : lists)
        l->clear();
    if (conds.isEmpty())
        return;

    const double h = s.activeShift();
    for (const ElemCond &c : conds) {
        const double plus = mean(s, energyIndex(s, c.e0 + c.dE + h), energyIndex(s, c.e0 + 2 * c.dE + h));
        const double minus = mean(s, energyIndex(s, c.e0 - 2 * c.dE + h), energyIndex(s, c.e0 - c.dE + h));
        const double dmut = plus - minus;
        double dm = bg.dMut, mp = bg.dMut, mm = bg.dMut, de = bg.dE, roi = bg.roi, nroi = bg.roi;
        // Strict on purpose: a jump equal to the threshold, or NaN, is background.
        if (dmut > c.thDMut) {
            dm = dmut;
            mp = plus;
            mm = minus;
            de = edgePosition(s, energyIndex(s, c.e0 - c.dE + h), energyIndex(s, c.e0 + c.dE + h),
                              (plus + minus) * 0.5, h, c.e0);
            // The ROI leaves its end point out, unlike the means above.
            const int k1 = energyIndex(s, c.roiS + h);
            const int k2 = energyIndex(s, c.roiE + h);
            roi = 0.0;
            if (k2 > k1) {
                for (int k = k1; k < k2; ++k)
                    roi += yAt(s, k) - minus;
                roi /= k2 - k1;
            }
            if (c.noNeg && roi < 0)
                roi = bg.roi;
            else
                nroi = roi / dmut;
        }
        out.res0.append(dmut);
        out.elemDMut.append(dm);
        out.elemMutPlus.append(mp);
        out.elemMutMinus.append(mm);
        out.elemDE.append(de);
        out.elemROI.append(roi);
        out.elemNROI.append(nroi);
    }

    const int target = mainT >= 0 && mainT < conds.size() ? mainT : 0;
    double t = out.elemDMut[target];
    if (t == 0)
        t = 1.0;
    for (double d : out.elemDMut)
        out.elemNDMut.append(d / t);
}
