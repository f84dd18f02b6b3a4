#pragma once

#include "analysis/ElemsAnalysis.h"

#include <QVector>

// Running sums of the correlation between measured ratios v and standard
// ratios q over the elements taken so far.
struct CorrelationSums
{
    double sqq = 0;
    double svv = 0;
    double svq = 0;

    void add(double v, double q)
    {
        sqq += q * q;
        svv += v * v;
        svq += v * q;
    }
    // svq / sqrt(svv sqq) when both square sums are positive, else 0.
    double value() const;
};

// The correlation of the last single analysis over the elements with use
// set, ratioV against stdRatio. False, and cor untouched, when no element is
// in use or a square sum is not positive: the old value then stays.
bool calcCorrelation(const QVector<ElemCond> &elems, double &cor);

// The two map values written after one element.
struct CorStep
{
    double cor;   // with the sums so far
    double corTh; // cor, or 0 when cor < corTh
};

// The correlation maps at one point, rebuilt from the elements' ratio maps:
// v[i] is element i's ratio at the point (0 outside its map; a short v reads
// as 0). One step per element in use, in list order, each with the sums so
// far; the map keeps the last step, while every step reaches its extremes.
void pointCorrelation(const QVector<double> &v, const QVector<ElemCond> &elems, double corTh,
                      QVector<CorStep> &steps);
