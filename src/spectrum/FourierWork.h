#pragma once

#include <fftw3.h>

class Spectrum;

// The program's one wrapper of FFTW: buffers and plans of one size, kept
// between calls so that a curve transformed again at the same size costs no
// allocation and no planning.
//
// The buffers come from fftw_malloc and are freed with fftw_free; the plans
// are destroyed with them. An object owns both, so it is neither copied nor
// moved. Not thread-safe: FFTW's planner is global, and all transforms run on
// the main thread.
class FourierWork
{
public:
    FourierWork() = default;
    ~FourierWork();
    FourierWork(const FourierWork &) = delete;
    FourierWork &operator=(const FourierWork &) = delete;

    // Makes buffers and plans for n points when n differs from the size held;
    // n <= 0 frees everything. An allocation or planning that fails leaves
    // size 0.
    void setSize(int n);
    int size() const { return n; }

    // The y values of the first n points of s, zero beyond its end, go into
    // the real part of the input; the forward transform (sign -1) runs.
    // Nothing happens at size 0.
    void forwardOf(const Spectrum &s);
    // |out[i]| for i < size(), in a buffer owned here; null at size 0.
    const double *magnitudes();

    // The raw buffers, for the Fourier tool. The backward plan (sign +1,
    // in2 to out2) is kept ready; nothing in the program runs it yet.
    fftw_complex *input() { return in; }
    const fftw_complex *output() const { return out; }
    fftw_complex *input2() { return in2; }
    const fftw_complex *output2() const { return out2; }

private:
    void release();

    int n = 0; // 0: nothing allocated
    fftw_complex *in = nullptr;
    fftw_complex *out = nullptr;
    fftw_complex *in2 = nullptr;
    fftw_complex *out2 = nullptr;
    fftw_plan forward = nullptr;
    fftw_plan backward = nullptr;
    double *mag = nullptr;
};
