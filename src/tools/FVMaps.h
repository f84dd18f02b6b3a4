#pragma once

#include <QImage>
#include <QVector>

#include <vector>

// The two pictures of the feature-value view, made from a list of points:
// x values, y values (a point whose y is missing takes 0) and the ranges
// that map onto the square picture, x to the right and y upwards.
namespace FVMaps {

struct Points {
    const QVector<double> *xs = nullptr;
    const QVector<double> *ys = nullptr;
    double x0 = 0, x1 = 1, y0 = 0, y1 = 1;
};

// The pixel of (x, y) in a square of `size`: the range's ends fall on the
// first and last pixel, rounded to the nearest. A range of no width puts
// every point in the middle. False for a point that is no number or lies
// outside the square.
bool toPixel(const Points &pts, int size, double x, double y, int &px, int &py);

// White, with one blue pixel per point.
QImage scatter(const Points &pts, int size);

// The Gaussian kernel of half width hw whose value at distance hw is b:
// K(i, j) = exp((i^2 + j^2) ln(b) / hw / hw) for i, j in -reach .. reach,
// row by row. reach is hw, cut to the picture's size (cells further out
// never land on it); a negative hw has no cells.
std::vector<double> kernel(int hw, int reach, double b);

// The density: each point adds the kernel around its pixel, m is the
// largest sum reached, and a cell of sum t is coloured (255, g, 0) with
// g = trunc(t / (m * cRange) * 255) up to 255 (0 where that is no number).
QImage density(const Points &pts, int size, int hw, double b, double cRange);

} // namespace FVMaps
