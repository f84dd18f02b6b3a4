#pragma once

#include "spectrum/Spectrum.h"

// Index of the first point whose midpoint with the next lies above e, in raw
// x; the last index when there is none (-1 for an empty curve), so that an
// energy beyond the curve reads its last point instead of failing. A linear
// walk: it must give the first such point even where x is not sorted.
inline int energyIndex(const Spectrum &s, double e)
{
    const int n = s.points.size();
    for (int i = 0; i + 1 < n; ++i) {
        if ((s.points[i].x() + s.points[i + 1].x()) / 2 > e)
            return i;
    }
    return n - 1;
}
