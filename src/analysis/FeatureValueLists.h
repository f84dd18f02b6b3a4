#pragma once

#include "analysis/FeatureValue.h"

#include <QVector>

// One list of recorded values with its extremes and sums. The extremes start
// at the largest finite double (negated for the maximum) and move only on a
// strict comparison, so a NaN is listed and summed but never becomes an
// extreme.
struct FeatureValueStats
{
    QVector<double> values;
    double min = 1.7976931348623157e308;
    double max = -1.7976931348623157e308;
    double sum = 0;
    double sumSq = 0;

    void add(double v);
    // Empties the list, keeping its room, and restores the start values.
    void clear();
};

// The feature values of a run: dM, and e2 - e1, one entry per point.
struct FeatureValueLists
{
    FeatureValueStats dM;
    FeatureValueStats dE12;

    void record(const FeatureValue &fv);
    void clear();
};
