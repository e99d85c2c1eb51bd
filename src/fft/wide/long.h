// SPDX-License-Identifier: MIT
// The last transform of long data.
//
// The W outputs of a butterfly of the last pass lie M points apart, a power of two: stored at once they meet
// in one set of every cache, which has fewer ways than there are outputs. So runs of each output are
// collected in the first cache and leave it one after the other, as whole cache lines at any alignment of the
// data.
#pragma once

#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

inline constexpr index line_bytes = index{machine::line_bytes};
inline constexpr index run_bytes = 1024;

// One run of every output, each behind the last line of the run before.
template <class P> class collected_runs {
 public:
  using T = typename P::scalar;
  static constexpr int W = P::width;
  static constexpr index run = run_bytes / static_cast<index>(sizeof(T));
  static constexpr index line = line_bytes / static_cast<index>(sizeof(T));
  static constexpr index pitch = run + 2 * line;

  explicit collected_runs(const T* x) noexcept
      : shift_(static_cast<index>(reinterpret_cast<std::uintptr_t>(x) % line_bytes / sizeof(T))) {}

  // Scalar i of the first run; the others are `pitch` apart.
  T* at(index i) noexcept { return rows_ + line + i; }

  // The run of output k to its place, less what shares a line with the next one.
  void flush(index k, T* out, bool first) noexcept {
    T* const row = rows_ + pitch * k;
    const T* const in = row + line - shift_;
    T* const to = out - shift_;
    index i = 0;
    if (first && shift_ != 0) {
      for (i = shift_; i < line; ++i) to[i] = in[i];
    }
    for (; i < run; i += W) {
      store(to + i, load<P>(in + i));
    }
    for (i = 0; i < line; i += W) store(row + i, load<P>(row + run + i));
  }

  // What is left of output k, in front of its end.
  void finish(index k, T* end) const noexcept {
    const T* const left = rows_ + pitch * k + line;
    for (index i = -shift_; i < 0; ++i) end[i] = left[i];
  }

 private:
  alignas(line_bytes) T rows_[pitch * W];
  index shift_;
};

// A group that comes next but a few, from scratch memory in no order that the processor foresees.
template <class P>
SIGPAK_INLINE void fetch_group(const lane_plan<typename P::scalar>& plan, const typename P::scalar* first) {
  constexpr index pair_bytes = 2 * P::width * static_cast<index>(sizeof(typename P::scalar));
  unroll<P::width / 2>([&](auto p) SIGPAK_LAMBDA {
    const auto* const at = reinterpret_cast<const char*>(first + 2 * P::width * plan.offset[p]);
    for (index byte = 0; byte < pair_bytes; byte += line_bytes) __builtin_prefetch(at + byte, 0, 2);
  });
}

template <class P, bool inverse>
void collecting_last_pass(const lane_plan<typename P::scalar>& plan, const typename P::scalar* s,
                          typename P::scalar* x) {
  using runs = collected_runs<P>;
  constexpr int W = P::width;
  constexpr index points = runs::run / 2;
  constexpr index groups = points / (W / 2);
  const lanes_transform<P, inverse> last(plan.scale);
  const index vectors = plan.vectors;
  const std::uint32_t* start = plan.start;
  runs collected(x);
  for (index kb = 0; kb < vectors; kb += points) {
    const bool more = kb + points < vectors;
    for (index g = 0; g < groups; ++g, ++start) {
      if (more) fetch_group<P>(plan, s + 2 * W * static_cast<index>(start[groups]));
      transform_group(last, plan, s + 2 * W * static_cast<index>(*start), collected.at(W * g),
                      runs::pitch / 2);
    }
    for (index k = 0; k < W; ++k) collected.flush(k, x + 2 * (kb + k * vectors), kb == 0);
  }
  for (index k = 0; k < W; ++k) collected.finish(k, x + 2 * (k + 1) * vectors);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
