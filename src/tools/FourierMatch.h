#pragma once

#include <vector>

// How strongly each Fourier component of the pixel spectra follows an
// image: over the points of an area, with a the image's value at a point and
// b_k the magnitude of component k of its spectrum, the sums of a a, b_k b_k
// and a b_k, and their normalised scalar product.
//
// All components are summed in one pass over the points, so each spectrum
// is transformed once rather than once per component.
class FourierMatch
{
public:
    explicit FourierMatch(int n);

    int size() const { return int(ab.size()); }
    // mags holds size() magnitudes.
    void add(double a, const double *mags);

    double sumAA() const { return aa; }
    double sumAB(int k) const { return ab[k]; }
    double sumBB(int k) const { return bb[k]; }
    // sum_ab / sqrt(sum_aa sum_bb), unguarded: a zero product gives what
    // the division gives, and that is what is reported.
    double ratio(int k) const;

private:
    double aa = 0;
    std::vector<double> ab;
    std::vector<double> bb;
};
