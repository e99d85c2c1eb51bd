// The wide transform of any length by a convolution, where this processor has it.
#pragma once

#include "core/record.h"

namespace sigpak::kernels {

template <class T> bool has_wide_chirp() noexcept;

// In place on interleaved complex data. Forward with exponent -, times 1/points; inverse with exponent +,
// unscaled. The tables of the last length are kept; a failure leaves the data untouched. The scratch memory
// is that of wide_fft.
template <class T> status wide_chirp(T* data, index points, bool inverse) noexcept;

template <class T> void release_wide_chirp() noexcept;

}  // namespace sigpak::kernels
