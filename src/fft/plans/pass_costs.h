// SPDX-License-Identifier: MIT
// What the passes of a transform cost on this machine, by the cache that holds what they sweep.
//
// In cycles per vector of complex points; only their proportions count. Measured on a server core with 48 KiB
// and 2 MiB of the first two caches, whose sizes here are those that the system tells.
#pragma once

#include "core/machine.h"
#include "fft/plans/pass_plan.h"
#include "fft/wide/kernels.h"
#include "vectors/levels.h"

namespace sigpak::kernels {

struct bin_costs {
  double forward;
  double inverse;
};

class pass_costs {
 public:
  // For vectors of so many bytes, real and imaginary parts together.
  pass_costs(index vector_bytes, bool few_registers) noexcept
      : bytes_(vector_bytes), few_registers_(few_registers), caches_(machine::caches()) {}

  // Of a pass over what the first cache holds. With few registers large butterflies spill.
  double work(int radix) const noexcept {
    switch (radix) {
      case 2:
        return 4.5;
      case 4:
        return few_registers_ ? 4.75 : 5;
      case 8:
        return few_registers_ ? 6.75 : 6;
      case 16:
        return few_registers_ ? 8.5 : 7.3;
      default:
        return radix == 3 ? 5 : 1.25 * radix;
    }
  }

  // Of fetching `vectors` that the pass before has left.
  double sweep(index vectors) const noexcept {
    return width() * (near * missing(vectors, caches_.first) + far * missing(vectors, caches_.second));
  }

  // Of a pass from as many in one place to another, where a store fetches what it replaces; the twiddles of
  // the transform over the lanes are as many again.
  double passage(index vectors) const noexcept {
    return width() * (1.5 * near * missing(3 * vectors, caches_.first) +
                      2 * far * missing(2 * vectors, caches_.second));
  }

  // Of all passes over so many vectors, but for where the first fetches its own.
  template <class List> double passes(const List& list, index vectors) const noexcept {
    double cost = streams(list.radix[0], vectors) + work(list.radix[0]);
    for (int pass = 1; pass < list.passes; ++pass) {
      cost += work(list.radix[pass]) + sweep(vectors);
      vectors /= list.radix[pass - 1];
      cost += scatter(list.radix[pass], vectors);
    }
    return cost;
  }

  // Of the change of bins, less what the last transform of real data in the lanes costs beyond that of
  // complex ones. Eight lanes of many registers make that one cheap; backwards it is dear, but sixteen lanes
  // are slow with results that split lines.
  bin_costs bins(int lanes) const noexcept {
    return {!few_registers_ && lanes == 8 ? 4 : -0.5, lanes == 16 ? -0.5 : -3};
  }

  // The part of so many vectors that has left a cache, a quarter of which is for tables and the stack.
  double missing(index vectors, index cache) const noexcept {
    const double held = 0.75 * static_cast<double>(cache) / static_cast<double>(vectors * bytes_);
    return held < 1 ? 1 - held : 0;
  }

  // Vectors that the first cache holds.
  index resident() const noexcept { return caches_.first / 4 * 3 / bytes_; }

  // Whether so many streams to read and to write, this many vectors apart, meet in one set of it.
  bool is_crowded(int streams, index vectors) const noexcept {
    return 2 * streams > caches_.first_ways && in_one_set(vectors);
  }
  bool in_one_set(index vectors) const noexcept { return vectors * bytes_ % machine::way_bytes == 0; }

  // Vectors of so many bytes, relative to the widest.
  double width() const noexcept { return static_cast<double>(bytes_) / static_cast<double>(wide_bytes); }
  const machine::cache_sizes& caches() const noexcept { return caches_; }

 private:
  static constexpr index wide_bytes = 128;
  static constexpr double near = 2.5;  // a fetch of wide_bytes from the second cache
  static constexpr double far = 14;    // and from beyond

  // What the first pass costs on top: it reads streams a power of two apart. With few registers it waits for
  // its spills, during which what has left the first cache comes.
  double streams(int radix, index vectors) const noexcept {
    if (!few_registers_) return radix == 16 ? 1 : 0;
    if (radix < 8) return 0;
    return radix == 16 && missing(vectors, caches_.first) > 0 ? 0.5 : 1;
  }

  // What a later one over blocks of so many vectors costs on top, for the same reason.
  double scatter(int radix, index block) const noexcept {
    return radix == 16 ? 2.2 * missing(block, caches_.first) : 0;
  }

  index bytes_;
  bool few_registers_;
  machine::cache_sizes caches_;
};

// At the level that runs: 32 registers come with vectors of 512 bits.
template <class T> pass_costs costs_of(int lanes) noexcept {
  constexpr index scalar_bytes = index{sizeof(T)};
  const auto* const level = at_level<fft_kernels<T>>();
  const bool few_registers = level == nullptr || level->widest_lanes * scalar_bytes < 64;
  return {2 * lanes * scalar_bytes, few_registers};
}

// Of all products of sixteens, eights, fours and at most one two, which is not last, the one of the least
// cost(list).
template <class Cost> class radix_search {
 public:
  radix_search(const pass_costs& costs, const Cost& cost) noexcept : costs_(costs), cost_(cost) {}

  radix_list run(index vectors) noexcept {
    extend(vectors, 0, false);
    return best_;
  }

 private:
  void extend(index rest, double work, bool has_two) noexcept {
    if (rest == 1) return consider();
    if (begun_.passes == most_passes || work > least_) return;
    for (const int radix : {16, 8, 4, 2}) {
      if (rest < radix || (radix == 2 && (has_two || rest == 2))) continue;
      begun_.radix[begun_.passes++] = radix;
      extend(rest / radix, work + costs_.work(radix), has_two || radix == 2);
      --begun_.passes;
    }
  }

  // Of equal ones the last, which begins with the smallest radices.
  void consider() noexcept {
    const double cost = cost_(begun_);
    if (cost > least_) return;
    least_ = cost;
    best_ = begun_;
  }

  const pass_costs& costs_;
  const Cost& cost_;
  radix_list begun_ = {};
  radix_list best_ = {};
  double least_ = 1e9;
};

}  // namespace sigpak::kernels
