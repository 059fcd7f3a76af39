#include "measure/Spectrum.h"

#include <fftw3.h>

#include <algorithm>
#include <cmath>
#include <mutex>
#include <new>

namespace TavMeasure {

namespace {

// FFTW's planner keeps global state; executing a plan is safe from any thread.
std::mutex& plannerMutex() {
    static std::mutex mutex;
    return mutex;
}

} // namespace

Spectrum::Spectrum(std::size_t length) : length_(length) {
    std::lock_guard<std::mutex> lock(plannerMutex());
    in_ = fftw_alloc_real(length);
    out_ = reinterpret_cast<std::complex<double>*>(fftw_alloc_complex(length / 2 + 1));
    if (in_ == nullptr || out_ == nullptr) {
        fftw_free(in_);
        fftw_free(out_);
        throw std::bad_alloc();
    }
    plan_ = fftw_plan_dft_r2c_1d(static_cast<int>(length), in_,
                                 reinterpret_cast<fftw_complex*>(out_), FFTW_ESTIMATE);
}

Spectrum::~Spectrum() {
    std::lock_guard<std::mutex> lock(plannerMutex());
    fftw_destroy_plan(static_cast<fftw_plan>(plan_));
    fftw_free(in_);
    fftw_free(out_);
}

std::span<const std::complex<double>> Spectrum::transform(std::span<const double> signal) {
    std::fill(in_, in_ + length_, 0.0);
    std::copy_n(signal.begin(), std::min(signal.size(), length_), in_);
    fftw_execute(static_cast<fftw_plan>(plan_));
    return {out_, length_ / 2 + 1};
}

std::complex<double> rmsPhasor(std::complex<double> bin, std::size_t length) {
    return bin * (std::sqrt(2.0) / static_cast<double>(length));
}

} // namespace TavMeasure
