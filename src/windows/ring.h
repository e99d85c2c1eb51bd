// SPDX-License-Identifier: MIT
// The windows generated last, and the product of a record with one of them.
#pragma once

#include "core/rounding.h"
#include "windows/catalogue.h"

namespace sigpak {

// What tells windows apart, as words that compare at once: points, window with the flags that shape it, and
// its width where these have one.
class window_key {
 public:
  constexpr window_key(index points, int window, int flags, double width) noexcept
      : points_(points), shape_(index{window} * shapes + (flags & shape_mask)), width_(width) {}

  std::uint32_t points() const noexcept { return static_cast<std::uint32_t>(points_); }
  int window() const noexcept { return static_cast<int>((shape_ - flags()) / shapes); }
  int flags() const noexcept { return static_cast<int>(shape_) & shape_mask; }
  double width() const noexcept { return width_; }
  bool operator==(const window_key& other) const noexcept {
    return shape_ == other.shape_ && points_ == other.points_ &&
           (!has(flags(), DSP_WINDOW_FLAG_WIDTH) || tolerantly_equal(width_, other.width_));
  }

 private:
  static constexpr index shapes = shape_mask + 1;
  index points_;
  index shape_;
  double width_;
};

// Sixteen windows; the next takes the place of the one generated first.
template <record V> class window_ring {
 public:
  // The window out of the ring or generated into it; null when that fails. Valid until the next call.
  const V* find(const window_key& key) noexcept;
  status release() noexcept;

 private:
  struct slot {
    V samples;
    window_key key;
  };
  static constexpr int capacity = 16;

  bool open() noexcept;
  const V* replace_next(const window_key& key) noexcept;

  slot* slots_ = nullptr;
  int next_ = 0;
};

// v * w point by point, for the window w of as many points, one at least.
template <record V> status multiply_by_window(V* v, int window, int flags, double width) noexcept;

}  // namespace sigpak
