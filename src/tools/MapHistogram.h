#pragma once

#include <QVector>

#include <cfloat>

class Analyzed2DRes;
struct AnalyzeCond;

// The statistics of a map over the points of a walk: count, extremes, mean
// and spread, a histogram, two markers bracketing a value range, and the
// statistics inside that range. A plain value; the statistics window shows
// one and moves its markers.
struct MapHistogram
{
    int bins = 0;
    double binWidth = 0;
    QVector<int> counts;
    int count = 0;
    double min = 1e300;
    double max = -1e300;
    double mean = 0;
    double variance = 0;
    double sigma = 0;
    // The markers start beyond any value, so that the first map brackets its
    // whole range.
    double rangeLo = -DBL_MAX;
    double rangeHi = DBL_MAX;
    // The range the selection numbers and the overlay use: the markers as
    // they stood at the end of the previous selection computation.
    double selLo = -DBL_MAX;
    double selHi = DBL_MAX;
    int selCount = 0;
    double selMean = 0;
    double selVariance = 0;
    double selSigma = 0;

    // Walks the area's points; each value is the map's at the point (0 off
    // the map). Fills the whole-area numbers and the histogram of `bins` bins
    // (none for bins < 1), brings the markers into the new range, and
    // computes the selection.
    void fill(const Analyzed2DRes &map, const AnalyzeCond &area, int bins);

    // The selection numbers from the histogram, each bin counted at its
    // lower edge when that lies within [selLo, selHi]; then the markers
    // become the new selection range (so what is shown lags one call behind
    // the markers, as the window has always behaved).
    void selectionStats();

    // The bin of a value, pinned to 0 .. bins - 1. A value that gives no
    // number (a flat map divides 0 by 0, a NaN pixel) falls in bin 0.
    // -1 without bins.
    int binOf(double v) const;

    int maxCount() const;
};
