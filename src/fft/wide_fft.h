// The wide power-of-two transforms on plain memory, where this processor has them.
#pragma once

#include "core/record.h"

namespace sigpak::kernels {

// The transform below, done at once where it needs no tables and this processor has it; false where not.
template <class T> bool small_wide_fft(T* data, index points, bool inverse) noexcept;

// True where `wide_fft` does the transform of this many points, a power of two.
template <class T> bool has_wide_fft(index points) noexcept;

// In place on interleaved complex data, natural order in and out. Forward with exponent -, times 1/points;
// inverse with exponent +, unscaled. The first call of a length builds its tables; a failure leaves the data
// untouched.
template <class T> status wide_fft(T* data, index points, bool inverse) noexcept;

// The same for real data: `points` reals to points / 2 + 1 pairs, and back from the pairs without a look at
// the imaginary parts of the two outer ones; data has room for points + 2 scalars.
template <class T> bool small_wide_real_fft(T* data, index points, bool inverse) noexcept;
template <class T> bool has_wide_real_fft(index points) noexcept;
template <class T> status wide_real_fft(T* data, index points, bool inverse) noexcept;

// The transform of other lengths, where their prime factors are small enough.
template <class T> bool has_wide_dft(index points) noexcept;
template <class T> status wide_dft(T* data, index points, bool inverse) noexcept;

// Scratch memory for so many scalars of a transform of these data, the same for all; null on failure.
template <class T> T* wide_scratch(index count, const T* data) noexcept;

// Frees the tables and the scratch memory of one precision.
template <class T> void release_wide_fft() noexcept;

}  // namespace sigpak::kernels
