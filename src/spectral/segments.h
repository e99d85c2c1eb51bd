// SPDX-License-Identifier: MIT
// Segments of a stream whose oldest samples wait in a record and whose newest are a block.
#pragma once

#include <algorithm>

#include "core/isa.h"
#include "core/record.h"

namespace sigpak {

// A channel of samples, each of `width` scalars; in the record they are `stride` scalars apart.
template <class T> struct channel {
  const T* waiting;
  index stride;
  index waiting_points;
  const T* block;
  int width;
};

// body(from, stride, to, points) for what lies in the record and for what lies in the block.
template <class T, class Body>
[[gnu::always_inline]] inline void for_pieces(const channel<T>& x, index begin, index points,
                                              Body body) noexcept {
  const index old = std::clamp<index>(x.waiting_points - begin, 0, points);
  body(x.waiting + begin * x.stride, x.stride, index{0}, old);
  body(x.block + std::max<index>(begin - x.waiting_points, 0) * x.width, index{x.width}, old, points - old);
}

// A window of n points, or none.
template <class T> struct weights {
  const T* w;
  index n;
  double sum;
  T at(index i) const noexcept { return w != nullptr ? w[i] : T(1); }
};

// The sum of w[i] x[i * width], in double and always in the same order.
template <class T> double weighted_sum(const weights<T>& window, const T* x, index width) noexcept {
  constexpr index chains = 16;
  double sums[chains] = {};
  index i = 0;
  for (; i + chains <= window.n; i += chains) {
    for (index j = 0; j < chains; ++j) {
      sums[j] += static_cast<double>(window.at(i + j)) * static_cast<double>(x[(i + j) * width]);
    }
  }
  for (; i < window.n; ++i) {
    sums[i % chains] += static_cast<double>(window.at(i)) * static_cast<double>(x[i * width]);
  }
  for (index half = chains / 2; half > 0; half /= 2) {
    for (index j = 0; j < half; ++j) sums[j] += sums[j + half];
  }
  return sums[0];
}

// The samples from `begin` on under the window, less their mean under it where `centred`, with zeros behind
// them to `padded` points.
template <int width, class T>
void load_windowed(const channel<T>& x, index begin, const weights<T>& window, bool centred, index padded,
                   T* out) noexcept {
  const T* const w = window.w;
  for_pieces(x, begin, window.n, [=](const T* from, index stride, index at, index points) {
    const bool plain = centred || w == nullptr;
    for (int part = 0; part < width; ++part) {
      T* const to = out + at * width + part;
      if (plain) {
        for (index i = 0; i < points; ++i) to[i * width] = from[i * stride + part];
      } else if (stride == width) {
        for (index i = 0; i < points; ++i) to[i * width] = w[at + i] * from[i * width + part];
      } else {
        for (index i = 0; i < points; ++i) to[i * width] = w[at + i] * from[i * stride + part];
      }
    }
  });
  for (int part = 0; part < width && centred; ++part) {
    const auto mean = static_cast<T>(weighted_sum(window, out + part, width) / window.sum);
    for (index i = 0; i < window.n; ++i)
      out[i * width + part] = window.at(i) * (out[i * width + part] - mean);
  }
  std::fill(out + window.n * width, out + padded * width, T(0));
}

template <class T>
void load_segment(const channel<T>& x, index begin, const weights<T>& window, bool centred, index padded,
                  T* out) noexcept {
  isa::run([=] {
    x.width == 2 ? load_windowed<2>(x, begin, window, centred, padded, out)
                 : load_windowed<1>(x, begin, window, centred, padded, out);
  });
}

}  // namespace sigpak
