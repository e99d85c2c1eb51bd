// SPDX-License-Identifier: MIT
// The passes of transforms of products of short lengths. A pass is a loop over one butterfly that stays in
// registers, compiled for every radix: as all passes have their lengths and strides from the plan, any
// product of the radices is served. The inverse transform takes the points of every butterfly in the opposite
// order.
#pragma once

#include "fft/plans/product_plan.h"
#include "fft/wide/exact_scale.h"
#include "fft/wide/passes.h"
#include "fft/wide/product_primes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// R rows of C points of a column each, to C rows of R points, which end with the last repeated up to whole
// vectors.
template <class P, int R>
SIGPAK_INLINE void store_transposed(const P (&a)[R], typename P::scalar* out, index stride) {
  constexpr int C = P::width / 2;
  unroll<(R + C - 1) / C>([&](auto block) SIGPAK_LAMBDA {
    P square[C];
    unroll<C>([&](auto p) SIGPAK_LAMBDA {
      constexpr int row = C * block + p;
      square[p] = a[row < R ? row : R - 1];
    });
    transpose_points(square);
    unroll<C>([&](auto l) SIGPAK_LAMBDA { store(out + 2 * stride * l + P::width * block, square[l]); });
  });
}

// The twiddles of some neighbouring columns: those of the first, so many, times the steps from there.
template <class P>
[[gnu::noinline]] void join_twiddles(const typename P::scalar* first, index count,
                                     const typename P::scalar* steps, typename P::scalar* out) {
  for (index k = 0; k < count; ++k) {
    const P step = load<P>(steps + P::width * k);
    store(out + P::width * k,
          turned_forth_or_back<true>(step, splat<P>(first[2 * k]), splat<P>(first[2 * k + 1])));
  }
}

// The columns from this one to that, with their twiddles w: from the data to the rows of the scratch memory.
// Where they are no multiple of the lanes the last group overlaps the one before and repeats its results.
template <class P, int R, bool inverse>
void product_columns(const product_plan<typename P::scalar>& plan, index from, index to,
                     const typename P::scalar* w, const typename P::scalar* x, typename P::scalar* s) {
  constexpr int C = P::width / 2;
  const index columns = plan.rows;
  for (index group = from; group < to; group += C, w += P::width * (R - 1)) {
    const index n2 = group < columns - C ? group : columns - C;
    const auto* const first = x + 2 * n2;
    P a[R];
    unroll<R>([&](auto i) SIGPAK_LAMBDA { a[i] = load<P>(first + 2 * columns * result_at<R, inverse>(i)); });
    transform(a);
    unroll<R - 1>([&](auto k) SIGPAK_LAMBDA {
      const P t = load<P>(w + P::width * k);
      a[k + 1] = turned_forth_or_back<inverse>(a[k + 1], evens_twice(t), odds_twice(t));
    });
    store_transposed(a, s + 2 * plan.stride * n2, plan.stride);
  }
}

// One block of rows: in place, or from the data, where rows follow each other.
template <class P, int R, bool inverse, bool in_place>
void product_block(const product_plan<typename P::scalar>& plan, int pass, const typename P::scalar* from,
                   typename P::scalar* row) {
  const index count = plan.block[pass] / R;
  const index step = 2 * plan.stride * count;
  const index in_step = in_place ? step : 2 * plan.radix[0] * count;
  const auto* w = plan.turns[pass];
  for (index i = 0; i < count; ++i, w += 2 * (R - 1), row += 2 * plan.stride) {
    const auto* in = in_place ? row : from + 2 * plan.radix[0] * i;
    auto* s = row;
    for (const auto* const end = s + 2 * plan.radix[0]; s < end; in += P::width, s += P::width) {
      P a[R];
      unroll<R>([&](auto j) SIGPAK_LAMBDA {
        a[j] = load<P>((in_place ? s : in) + in_step * result_at<R, inverse>(j));
      });
      transform(a);
      store(s, a[0]);
      unroll<R - 1>([&](auto k) SIGPAK_LAMBDA {
        store(s + step * (k + 1),
              turned_forth_or_back<inverse>(a[k + 1], splat<P>(w[2 * k]), splat<P>(w[2 * k + 1])));
      });
    }
  }
}

// The last pass, whose blocks are one butterfly long: so many rows of the scratch memory to the data.
template <class P, int R>
void product_results(const product_plan<typename P::scalar>& plan, index row, index rows,
                     const typename P::scalar* s, typename P::scalar* x, bool inverse) {
  using T = typename P::scalar;
  constexpr int C = P::width / 2;
  const index a_points = plan.radix[0];
  const index out_step = 2 * a_points * (plan.rows / R);
  const index in_step = inverse ? -2 * plan.stride : 2 * plan.stride;
  const exact_scale<P> scale(plan, inverse);
  const std::uint32_t* order = plan.order + row / R;
  s += 2 * plan.stride * row;
  for (const T* const end = s + 2 * plan.stride * rows; s != end; s += 2 * plan.stride * R) {
    const T* const others = inverse ? s + 2 * plan.stride * R : s;
    T* const out = x + 2 * a_points * static_cast<index>(*order++);
    for (index group = 0; group < a_points; group += C) {
      const index k1 = group < a_points - C ? group : a_points - C;
      P a[R];
      a[0] = load<P>(s + 2 * k1);
      unroll<R - 1>([&](auto i) SIGPAK_LAMBDA { a[i + 1] = load<P>(others + 2 * k1 + (i + 1) * in_step); });
      if constexpr (is_single<T>) {
        transform(a);
        unroll<R>([&](auto k) SIGPAK_LAMBDA { a[k] = scale(a[k]); });
      } else {
        transform(a, scale.nearest);
      }
      unroll<R>([&](auto k) SIGPAK_LAMBDA { store(out + 2 * k1 + k * out_step, a[k]); });
    }
  }
}

// By radix; null where a number is none.
template <class P> struct product_passes {
  using T = typename P::scalar;
  // Forward, inverse.
  void (*columns[2])(const product_plan<T>& plan, index from, index to, const T* w, const T* x, T* s);
  void (*block[2])(const product_plan<T>& plan, int pass, const T* from, T* row);
  void (*results)(const product_plan<T>& plan, index row, index rows, const T* s, T* x, bool inverse);
};
template <class P> struct product_table {
  product_passes<P> by_radix[kernels::most_radix + 1] = {};
  constexpr product_table() {
    add<2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 20, 21, 25>();
    for (const int p : {17, 19, 23}) by_radix[p] = of_prime;
  }
  static constexpr product_passes<P> of_prime = {{prime_columns<P, false>, prime_columns<P, true>},
                                                 {prime_block<P, false>, prime_block<P, true>},
                                                 prime_results<P>};

 private:
  template <int... radices> constexpr void add() {
    ((by_radix[radices] = {{product_columns<P, radices, false>, product_columns<P, radices, true>},
                           {product_block<P, radices, false, true>, product_block<P, radices, true, true>},
                           product_results<P, radices>}),
     ...);
  }
};
template <class P> constinit const product_table<P> products{};
template <class P> SIGPAK_INLINE const product_passes<P>& passes_over(int radix) {
  return radix > kernels::most_radix ? product_table<P>::of_prime : products<P>.by_radix[radix];
}

// All passes from this one on over so many rows, whole blocks of it: as many at a time as the first cache
// holds. The last pass is last(row, rows).
template <class P, class Last>
void product_rows(const product_plan<typename P::scalar>& plan, int pass, index row, index rows,
                  typename P::scalar* s, bool inverse, const Last& last) {
  if (pass == plan.passes - 1) return last(row, rows);
  const auto& passes = passes_over<P>(plan.radix[pass]);
  const index block = plan.block[pass];
  const index held = plan.resident >= rows   ? rows
                     : plan.resident > block ? plan.resident / block * block
                                             : block;
  for (const index end = row + rows; row < end; row += held) {
    const index count = end - row < held ? end - row : held;
    for (index i = 0; i < count; i += block) {
      auto* const at = s + 2 * plan.stride * (row + i);
      passes.block[inverse](plan, pass, at, at);
    }
    product_rows<P>(plan, pass + 1, row, count, s, inverse, last);
  }
}

// All columns, group by group where the twiddles are joined.
template <class P>
void all_product_columns(const product_plan<typename P::scalar>& plan, const typename P::scalar* x,
                         typename P::scalar* s, bool inverse) {
  constexpr int C = P::width / 2;
  const auto pass = passes_over<P>(plan.radix[0]).columns[inverse];
  if (!plan.is_stepped) return pass(plan, 0, plan.rows, plan.twiddles, x, s);
  alignas(machine::line_bytes) typename P::scalar joined[P::width * (kernels::most_prime - 1)];
  const index turned = plan.radix[0] - 1;
  for (index group = 0; group < plan.rows; group += C) {
    join_twiddles<P>(plan.firsts + 2 * turned * (group / C), turned, plan.twiddles, joined);
    pass(plan, group, group + C, joined, x, s);
  }
}

template <class P>
void run_product(const product_plan<typename P::scalar>& plan, typename P::scalar* x,
                 typename P::scalar* scratch, bool inverse) {
  const auto results = passes_over<P>(plan.radix[plan.passes - 1]).results;
  all_product_columns<P>(plan, x, scratch, inverse);
  if (plan.passes == 2) return results(plan, 0, plan.rows, scratch, x, inverse);
  product_rows<P>(plan, 1, 0, plan.rows, scratch, inverse,
                  [&](index row, index rows) { results(plan, row, rows, scratch, x, inverse); });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
