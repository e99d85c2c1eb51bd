// The power-of-two transforms on plain memory: what the records' operations stand on.
#pragma once

#include "core/record.h"

namespace sigpak {

// In place on interleaved complex data, natural order in and out; points a power of two, at least 2.
// Forward with exponent -, times 1/points; inverse with exponent +, unscaled. Tables are fetched before the
// data are touched: a failure leaves them as they were.
template <class T> status transform(T* data, index points, bool inverse) noexcept;

// In place: `points` reals to the points / 2 + 1 pairs of their half spectrum, and back from the pairs to the
// reals, which ignores the imaginary parts of the two outer bins. points a power of two, at least 4; data has
// room for points + 2 scalars. Scaling and failure as above.
template <class T> status forward_real(T* data, index points) noexcept;
template <class T> status inverse_real(T* data, index points) noexcept;

}  // namespace sigpak
