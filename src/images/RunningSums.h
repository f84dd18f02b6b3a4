#pragma once

#include <cstddef>

// run[0] = 0 and run[i + 1] = v[0] + ... + v[i]: any run of v then sums in
// two reads. Integers, so the sums are exact (unsigned ones modulo their
// range, which a difference of two undoes).
template <typename S>
inline void runningSums(const S *v, std::size_t n, S *run)
{
    S s = 0;
    run[0] = 0;
    for (std::size_t i = 0; i < n; ++i) {
        s += v[i];
        run[i + 1] = s;
    }
}
