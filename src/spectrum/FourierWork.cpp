#include "spectrum/FourierWork.h"

#include "spectrum/Spectrum.h"

#include <cmath>
#include <cstddef>

FourierWork::~FourierWork()
{
    release();
}

void FourierWork::release()
{
    if (forward)
        fftw_destroy_plan(forward);
    if (backward)
        fftw_destroy_plan(backward);
    fftw_free(in);
    fftw_free(out);
    fftw_free(in2);
    fftw_free(out2);
    fftw_free(mag);
    forward = backward = nullptr;
    in = out = in2 = out2 = nullptr;
    mag = nullptr;
    n = 0;
}

void FourierWork::setSize(int newN)
{
    if (newN < 0)
        newN = 0;
    if (newN == n)
        return;
    release();
    if (newN == 0)
        return;
    const std::size_t bytes = sizeof(fftw_complex) * std::size_t(newN);
    in = static_cast<fftw_complex *>(fftw_malloc(bytes));
    out = static_cast<fftw_complex *>(fftw_malloc(bytes));
    in2 = static_cast<fftw_complex *>(fftw_malloc(bytes));
    out2 = static_cast<fftw_complex *>(fftw_malloc(bytes));
    mag = static_cast<double *>(fftw_malloc(sizeof(double) * std::size_t(newN)));
    if (!in || !out || !in2 || !out2 || !mag) {
        release();
        return;
    }
    // FFTW_ESTIMATE leaves the buffers alone while it plans, so nothing has
    // to be filled first.
    forward = fftw_plan_dft_1d(newN, in, out, FFTW_FORWARD, FFTW_ESTIMATE);
    backward = fftw_plan_dft_1d(newN, in2, out2, FFTW_BACKWARD, FFTW_ESTIMATE);
    if (!forward || !backward) {
        release();
        return;
    }
    n = newN;
}

void FourierWork::forwardOf(const Spectrum &s)
{
    if (n == 0)
        return;
    const int have = s.size();
    for (int i = 0; i < n; ++i) {
        in[i][0] = i < have ? s.points[i].y() : 0.0;
        in[i][1] = 0.0;
    }
    fftw_execute(forward);
}

const double *FourierWork::magnitudes()
{
    for (int i = 0; i < n; ++i)
        mag[i] = std::sqrt(out[i][0] * out[i][0] + out[i][1] * out[i][1]);
    return mag;
}
