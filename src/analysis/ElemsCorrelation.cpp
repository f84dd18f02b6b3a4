#include "analysis/ElemsCorrelation.h"

#include <cmath>

double CorrelationSums::value() const
{
    return sqq > 0 && svv > 0 ? svq / std::sqrt(svv * sqq) : 0.0;
}

bool calcCorrelation(const QVector<ElemCond> &elems, double &cor)
{
    CorrelationSums sums;
    for (const ElemCond &e : elems) {
        if (e.use)
            sums.add(e.ratioV, e.stdRatio);
    }
    if (!(sums.svv > 0 && sums.sqq > 0))
        return false;
    cor = sums.value();
    return true;
}

void pointCorrelation(const QVector<double> &v, const QVector<ElemCond> &elems, double corTh,
                      QVector<CorStep> &steps)
{
    steps.clear();
    CorrelationSums sums;
    for (int i = 0; i < elems.size(); ++i) {
        if (!elems[i].use)
            continue;
        sums.add(i < v.size() ? v[i] : 0.0, elems[i].stdRatio);
        const double c = sums.value();
        steps.append({c, c < corTh ? 0.0 : c});
    }
}
