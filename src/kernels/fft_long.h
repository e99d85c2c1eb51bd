// Transforms of data that leave the second cache.
//
// The W outputs of a butterfly of the last pass lie M points apart, a power of two: stored at once they meet
// in one set of every cache, which has fewer ways than there are outputs. So runs of each output are
// collected in the first cache and leave it one after the other, as whole cache lines at any alignment of the
// data.
#pragma once

#include "kernels/fft_passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

inline constexpr index line_bytes = 64;
inline constexpr index run_bytes = 1024;

// One run of every output, each behind the last line of the run before.
template <class P, bool streamed> class collected_runs {
 public:
  using T = typename P::scalar;
  static constexpr int W = P::width;
  static constexpr index run = run_bytes / static_cast<index>(sizeof(T));

  explicit collected_runs(const T* x) noexcept
      : shift_(static_cast<index>(reinterpret_cast<std::uintptr_t>(x) % line_bytes / sizeof(T))) {}

  T* at(index k, index i) noexcept { return rows_ + pitch * k + line + i; }

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
      const P a = load<P>(in + i);
      if constexpr (streamed) {
        stream(to + i, a);
      } else {
        store(to + i, a);
      }
    }
    for (i = 0; i < line; i += W) store(row + i, load<P>(row + run + i));
  }

  // What is left of output k, in front of its end.
  void finish(index k, T* end) const noexcept {
    const T* const left = rows_ + pitch * k + line;
    for (index i = -shift_; i < 0; ++i) end[i] = left[i];
  }

 private:
  static constexpr index line = line_bytes / static_cast<index>(sizeof(T));
  static constexpr index pitch = run + 2 * line;
  alignas(line_bytes) T rows_[pitch * W];
  index shift_;
};

// The product of the twiddles a and b.
template <class P> SIGPAK_INLINE cplx<P> joined(cplx<P> a, cplx<P> b) {
  return {fms(a.re, b.re, a.im * b.im), fma(a.re, b.im, a.im * b.re)};
}

// Row l times w^l, of which the table holds w, w^2, w^4, ...
template <class P> SIGPAK_INLINE void turn_by_powers(cplx<P> (&y)[P::width], const typename P::scalar* w) {
  cplx<P> power[P::width];
  unroll<P::width - 1>([&](auto i) __attribute__((always_inline)) {
    constexpr int l = i + 1;
    constexpr int log = 31 - __builtin_clz(l);
    if constexpr (l == 1 << log) {
      power[l] = load_pair<P>(w, log);
    } else {
      power[l] = joined(power[l - (1 << log)], power[1 << log]);
    }
    y[l] = turned(y[l], power[l].re, power[l].im);
  });
}

// The group after next few will come from the scratch memory in no order that the processor foresees.
template <class P>
SIGPAK_INLINE void fetch_group(const fft_plan<typename P::scalar>& plan, const typename P::scalar* s,
                               index group) {
  unroll<P::width>([&](auto p) __attribute__((always_inline)) {
    const char* const at =
        reinterpret_cast<const char*>(s + 2 * P::width * (plan.start[group] + plan.offset[p]));
    constexpr index pair_bytes = 2 * P::width * static_cast<index>(sizeof(typename P::scalar));
    for (index byte = 0; byte < pair_bytes; byte += line_bytes) __builtin_prefetch(at + byte, 0, 2);
  });
}

template <class P, bool inverse, bool streamed>
void collecting_last_pass(const fft_plan<typename P::scalar>& plan, const typename P::scalar* s,
                          typename P::scalar* x) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  constexpr int powers = 31 - __builtin_clz(W);
  using runs = collected_runs<P, streamed>;
  constexpr index groups = runs::run / (2 * W);
  const index vectors = plan.vectors;
  const index all_groups = vectors / W;
  runs collected(x);
  const T* w = plan.last;
  for (index group = 0; group < all_groups; group += groups) {
    for (index g = 0; g < groups; ++g, w += 2 * W * powers) {
      const index ahead = group + g + groups;
      if (ahead < all_groups) fetch_group<P>(plan, s, ahead);
      const T* const from = s + 2 * W * static_cast<index>(plan.start[group + g]);
      cplx<P> y[W];
      unroll<W>([&](auto p) __attribute__((always_inline)) {
        y[p] = load_pair<P>(from, plan.offset[point_at<T>(p, W)]);
      });
      lanes_to_rows(y);
      turn_by_powers(y, w);
      transform(y);
      unroll<W>([&](auto k) __attribute__((always_inline)) {
        store_points<P, inverse>(collected.at(k, 2 * W * g), y[k]);
      });
    }
    for (index k = 0; k < W; ++k) collected.flush(k, x + 2 * (W * group + k * vectors), group == 0);
  }
  for (index k = 0; k < W; ++k) collected.finish(k, x + 2 * (k + 1) * vectors);
  if constexpr (streamed) finish_streams();
}

template <class P, bool inverse>
void run_long(const fft_plan<typename P::scalar>& plan, typename P::scalar* x, typename P::scalar* s) {
  first_pass<P, !inverse>(
      plan,
      [x](index i) __attribute__((always_inline)) { return load_points<P, inverse>(x + 2 * P::width * i); },
      s);
  all_middle_passes<P>(plan, s);
  plan.streamed ? collecting_last_pass<P, inverse, true>(plan, s, x)
                : collecting_last_pass<P, inverse, false>(plan, s, x);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
