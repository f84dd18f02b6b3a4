#include "tools/FourierMatch.h"

#include <algorithm>
#include <cmath>

FourierMatch::FourierMatch(int n)
    : ab(std::size_t(std::max(n, 0)), 0.0)
    , bb(std::size_t(std::max(n, 0)), 0.0)
{
}

void FourierMatch::add(double a, const double *mags)
{
    aa += a * a;
    for (std::size_t k = 0; k < ab.size(); ++k) {
        ab[k] += a * mags[k];
        bb[k] += mags[k] * mags[k];
    }
}

double FourierMatch::ratio(int k) const
{
    return ab[k] / std::sqrt(aa * bb[k]);
}
