// The power-of-two transforms on plain memory: what the records' operations stand on.
#pragma once

#include "core/record.h"

namespace sigpak {

// In place on interleaved complex data, natural order in and out; points a power of two, at least 2.
// Forward with exponent -, times 1/points; inverse with exponent +, unscaled. Tables are fetched before the
// data are touched: a failure leaves them as they were.
template <class T> status transform(T* data, index points, bool inverse) noexcept;

}  // namespace sigpak
