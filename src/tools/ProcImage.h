#pragma once

#include <vector>

// A processed picture of a frame: w x h doubles in row order with their
// extremes. Plain value; the image tool keeps its edge, binary and reference
// pictures in this form.
struct ProcImage
{
    std::vector<double> v;
    int w = 0;
    int h = 0;
    double min = 0;
    double max = 0;

    double at(int x, int y) const { return v[std::size_t(y) * std::size_t(w) + std::size_t(x)]; }
    bool sameSize(const ProcImage &o) const { return w == o.w && h == o.h; }
};
