#include "analysis/FeatureValueLists.h"

void FeatureValueStats::add(double v)
{
    values.append(v);
    if (v < min)
        min = v;
    if (v > max)
        max = v;
    sum += v;
    sumSq += v * v;
}

void FeatureValueStats::clear()
{
    values.clear();
    min = 1.7976931348623157e308;
    max = -1.7976931348623157e308;
    sum = 0;
    sumSq = 0;
}

void FeatureValueLists::record(const FeatureValue &fv)
{
    dM.add(fv.dM);
    dE12.add(fv.e2 - fv.e1);
}

void FeatureValueLists::clear()
{
    dM.clear();
    dE12.clear();
}
