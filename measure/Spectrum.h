#pragma once

#include <complex>
#include <cstddef>
#include <span>

namespace TavMeasure {

// The discrete Fourier transform of a real block of one length, by FFTW.
// Each instance owns its plan and buffers, so that workers transform in
// parallel; only planning is serialised, as the library requires.
class Spectrum {
public:
    explicit Spectrum(std::size_t length);
    ~Spectrum();
    Spectrum(const Spectrum&) = delete;
    Spectrum& operator=(const Spectrum&) = delete;

    std::size_t length() const { return length_; }
    // Bins 0 … length/2 of `signal` (length values), unnormalised.
    std::span<const std::complex<double>> transform(std::span<const double> signal);

private:
    std::size_t length_;
    double* in_ = nullptr;
    std::complex<double>* out_ = nullptr;
    void* plan_ = nullptr;
};

// The RMS phasor of bin `bin` of a block of `length` real samples: its
// magnitude the RMS of that sinusoid, its angle the sinusoid's cosine phase at
// the block's first sample.
std::complex<double> rmsPhasor(std::complex<double> bin, std::size_t length);

} // namespace TavMeasure
