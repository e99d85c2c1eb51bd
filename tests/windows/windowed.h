// Windows seen from outside: a record of ones with the window applied.
#pragma once

#include "support/signal.h"

namespace sigpak::test {

constexpr long double exact(double x) { return static_cast<long double>(x); }
constexpr long double exact(float x) { return static_cast<long double>(x); }

template <record V> samples<V> ones(index n) { return samples<V>(static_cast<std::size_t>(n), scalar<V>(1)); }

// The window of n points, its middle in place; empty when it is refused.
template <record V> samples<V> window_of(index n, int window, int flags) {
  signal<V> v(ones<V>(n));
  return TWIN(i_window)(&v, window, flags | DSP_WINDOW_FLAG_NO_ROTATE) == 0 ? v.values() : samples<V>{};
}

template <record V> samples<V> window_of(index n, int window, int flags, double width) {
  signal<V> v(ones<V>(n));
  flags |= DSP_WINDOW_FLAG_WIDTH | DSP_WINDOW_FLAG_NO_ROTATE;
  return TWIN(i_window2)(&v, window, flags, static_cast<scalar<V>>(width)) == 0 ? v.values() : samples<V>{};
}

}  // namespace sigpak::test
