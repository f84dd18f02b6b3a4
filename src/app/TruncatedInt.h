#pragma once

#include <algorithm>
#include <climits>
#include <cmath>

// Truncation toward zero that is always defined: values beyond int land on
// its nearest end and NaN on 0. Positions far off an image, or from a view
// that has no size yet, and numbers read from files go through it, where a
// plain int() of such a double would be undefined.
inline int truncatedInt(double v)
{
    if (std::isnan(v))
        return 0;
    return int(std::clamp(v, double(INT_MIN), double(INT_MAX)));
}
