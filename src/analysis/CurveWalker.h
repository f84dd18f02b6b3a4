#pragma once

#include "spectrum/Spectrum.h"

#include <cmath>

// Reads a curve at a run of rising x with exactly the numbers of
// Spectrum::interpolateY, but walks on from the previous segment instead of
// bisecting for each x. On a strictly rising grid the segment with
// x[i] <= x < x[i + 1] is unique, so walking and bisecting meet in it; any
// other grid, and a NaN x, are handed to interpolateY itself.
class CurveWalker
{
public:
    void reset(const Spectrum &c)
    {
        curve_ = &c;
        pts_ = c.points.constData();
        n_ = c.points.size();
        seg_ = 0;
        rising_ = true;
        for (int i = 0; rising_ && i + 1 < n_; ++i)
            rising_ = pts_[i].x() < pts_[i + 1].x();
    }

    double at(double x)
    {
        if (n_ < 2 || !rising_ || std::isnan(x))
            return curve_->interpolateY(x);
        int i;
        if (x <= pts_[0].x()) {
            i = 0;
        } else if (x >= pts_[n_ - 1].x()) {
            i = n_ - 2;
        } else {
            // x lies strictly inside the grid, so the walk stops before n - 1.
            if (!(pts_[seg_].x() <= x))
                seg_ = 0;
            while (pts_[seg_ + 1].x() <= x)
                ++seg_;
            i = seg_;
        }
        const double x0 = pts_[i].x(), y0 = pts_[i].y();
        const double x1 = pts_[i + 1].x(), y1 = pts_[i + 1].y();
        return y0 + (x - x0) * (y1 - y0) / (x1 - x0);
    }

private:
    const Spectrum *curve_ = nullptr;
    const QPointF *pts_ = nullptr;
    int n_ = 0;
    int seg_ = 0;
    bool rising_ = true;
};
