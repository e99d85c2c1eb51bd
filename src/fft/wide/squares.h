// SPDX-License-Identifier: MIT
// The passes of transforms in place of lengths with a square factor, and the squares at their end.
#pragma once

#include "fft/plans/square_plan.h"
#include "fft/wide/products.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::square_plan;

// The factor of the sines of twiddles.
template <class P> SIGPAK_INLINE P sine_sign(bool inverse) {
  using T = typename P::scalar;
  return splat<P>(inverse ? T(-1) : T(1));
}

// The columns in place, with their twiddles: those of the first of some columns times the steps from there.
template <class P, int R, bool inverse>
void square_columns(const square_plan<typename P::scalar>& plan, typename P::scalar* x) {
  constexpr index numbers = kernels::columns_of_step;
  const index columns = 2 * (plan.points / R);
  for (index vector = 0; vector * P::width < columns; ++vector, x += P::width) {
    const auto* const first = plan.firsts + 2 * (R - 1) * (vector / numbers);
    const auto* const step = plan.steps + 2 * P::width * (R - 1) * (vector % numbers);
    P a[R];
    unroll<R>([&](auto i) SIGPAK_LAMBDA { a[i] = load<P>(x + columns * result_at<R, inverse>(i)); });
    transform(a);
    store(x, a[0]);
    unroll<R - 1>([&](auto k) SIGPAK_LAMBDA {
      const cplx<P> t =
          joined(cplx<P>{splat<P>(first[2 * k]), splat<P>(first[2 * k + 1])}, load_pair<P>(step, k));
      store(x + columns * (k + 1), turned_forth_or_back<inverse>(a[k + 1], t.re, t.im));
    });
  }
}

// The square of R rows of R points at x, so many scalars apart, to `out`: what was a row becomes a column.
// Its points have the twiddles w before.
template <class P, int R, int pitch>
SIGPAK_INLINE void transpose_square(const typename P::scalar* x, index distance, const typename P::scalar* w,
                                    P sign, typename P::scalar* out) {
  constexpr int C = P::width / 2;
  for (index l = 0; l < R; l += C) {
    const P t = load<P>(w + 2 * l);
    const P c = evens_twice(t);
    const P s = odds_twice(t) * sign;
    for (index row = 0; row < R; row += C) {
      P square[C];
      unroll<C>([&](auto i)
                    SIGPAK_LAMBDA { square[i] = turned(load<P>(x + distance * (row + i) + 2 * l), c, s); });
      transpose_points(square);
      unroll<C>([&](auto i) SIGPAK_LAMBDA { store(out + pitch * (l + i) + 2 * row, square[i]); });
    }
  }
}

// The last transforms, square by square.
template <class P, int R>
void all_squares(const square_plan<typename P::scalar>& plan, typename P::scalar* x, bool inverse) {
  using T = typename P::scalar;
  constexpr int C = P::width / 2;
  constexpr int pitch = 2 * R;
  const index distance = 2 * (plan.points / R);
  const index in_step = inverse ? -pitch : pitch;
  const exact_scale<P> scale(plan, inverse);
  const P sign = sine_sign<P>(inverse);
  const T* w = plan.turns;
  alignas(machine::line_bytes) T turned_over[pitch * R];
  for (index kb = 0; kb < plan.block.rows; ++kb, x += 2 * R, w += 2 * R) {
    transpose_square<P, R, pitch>(x, distance, w, sign, turned_over);
    for (index k1 = 0; k1 < 2 * R; k1 += 2 * C) {
      const T* const in = turned_over + k1;
      const T* const others = inverse ? in + pitch * R : in;
      P a[R];
      a[0] = load<P>(in);
      unroll<R - 1>([&](auto i) SIGPAK_LAMBDA { a[i + 1] = load<P>(others + (i + 1) * in_step); });
      if constexpr (is_single<T>) {
        transform(a);
        unroll<R>([&](auto k) SIGPAK_LAMBDA { a[k] = scale(a[k]); });
      } else {
        transform(a, scale.nearest);
      }
      unroll<R>([&](auto k) SIGPAK_LAMBDA { store(x + k1 + distance * k, a[k]); });
    }
  }
}

// By radix; null where a number is none.
template <class P> struct square_passes {
  using T = typename P::scalar;
  void (*columns[2])(const square_plan<T>& plan, T* x);  // forward, inverse
  void (*squares)(const square_plan<T>& plan, T* x, bool inverse);
  void (*rows[2])(const product_plan<T>& plan, int pass, const T* from, T* row);
};
template <class P> struct square_table {
  square_passes<P> by_radix[kernels::most_radix + 1] = {};
  constexpr square_table() {
    add_squares<8, 10, 12, 14, 16, 20>();
    add_rows<2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 20, 21, 25>();
  }

 private:
  template <int... radices> constexpr void add_squares() {
    (
        [this] {
          if constexpr (radices % (P::width / 2) == 0) {
            by_radix[radices].columns[false] = square_columns<P, radices, false>;
            by_radix[radices].columns[true] = square_columns<P, radices, true>;
            by_radix[radices].squares = all_squares<P, radices>;
          }
        }(),
        ...);
  }
  template <int... radices> constexpr void add_rows() {
    ((by_radix[radices].rows[false] = product_block<P, radices, false, false>,
      by_radix[radices].rows[true] = product_block<P, radices, true, false>),
     ...);
  }
};
template <class P> constinit const square_table<P> squares{};

template <class P>
void run_square(const square_plan<typename P::scalar>& plan, typename P::scalar* x,
                typename P::scalar* scratch, bool inverse) {
  const auto& over = plan.block;
  const auto& passes = squares<P>.by_radix[over.radix[0]];
  const auto first_pass = squares<P>.by_radix[over.radix[1]].rows[inverse];
  const auto results = passes_over<P>(over.radix[over.passes - 1]).results;
  passes.columns[inverse](plan, x);
  for (int k1 = 0; k1 < over.radix[0]; ++k1) {
    auto* const block = x + 2 * over.points * k1;
    first_pass(over, 1, block, scratch);
    product_rows<P>(over, 2, 0, over.rows, scratch, inverse,
                    [&](index row, index rows) { results(over, row, rows, scratch, block, inverse); });
  }
  passes.squares(plan, x, inverse);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
