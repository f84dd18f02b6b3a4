#pragma once

#include <QtGlobal>

#include <cstddef>

// run[0] = 0 and run[i + 1] = v[0] + ... + v[i]: any run of v then sums in
// two reads. Integers, so the sums are exact.
inline void runningSums(const qint64 *v, std::size_t n, qint64 *run)
{
    qint64 s = 0;
    run[0] = 0;
    for (std::size_t i = 0; i < n; ++i) {
        s += v[i];
        run[i + 1] = s;
    }
}
