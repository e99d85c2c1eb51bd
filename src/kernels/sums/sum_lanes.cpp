// SPDX-License-Identifier: MIT
// Sums of eight blocks side by side: vectors of consecutive samples from every block are transposed, and each
// row then holds the next sample of all blocks.
#include "core/machine.h"
#include "kernels/sums/lane_sums.h"

#include "kernels/sums/terms.h"
#include "vectors/levels.h"
#include "vectors/rows.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Two vectors of 128 bits, whose sums fit into sixteen registers.
constexpr int width = lane_count;
constexpr int side_by_side = width == 2 ? 4 : kernels::most_lanes;
constexpr int vectors = side_by_side / width;

// Consecutive samples of `width` lanes from x[lane] + at on, one row for each of the `steps` next.
template <int W>
requires(W == 8) SIGPAK_INLINE void read_rows(pack<double, W>* r, const double* const* x, index at) {
  using half = pack<double, W / 2>;
  const auto load_two = [=](int low, int high) SIGPAK_LAMBDA {
    return joined(load<half>(x[low] + at), load<half>(x[high] + at));
  };
  const auto a = load_two(0, 2);
  const auto b = load_two(1, 3);
  const auto c = load_two(4, 6);
  const auto d = load_two(5, 7);
  const auto ab_even = low_parts(a, b);
  const auto ab_odd = high_parts(a, b);
  const auto cd_even = low_parts(c, d);
  const auto cd_odd = high_parts(c, d);
  r[0] = even_blocks(ab_even, cd_even);
  r[1] = even_blocks(ab_odd, cd_odd);
  r[2] = odd_blocks(ab_even, cd_even);
  r[3] = odd_blocks(ab_odd, cd_odd);
}
template <int W>
requires(W == 4) SIGPAK_INLINE void read_rows(pack<double, W>* r, const double* const* x, index at) {
  using half = pack<double, W / 2>;
  const auto a = joined(load<half>(x[0] + at), load<half>(x[2] + at));
  const auto b = joined(load<half>(x[1] + at), load<half>(x[3] + at));
  r[0] = low_parts(a, b);
  r[1] = high_parts(a, b);
}

template <int W, class T>
requires(W == 2) SIGPAK_INLINE void read_rows(pack<double, W>* r, const T* const* x, index at) {
  const auto a = read(x[0] + at);
  const auto b = read(x[1] + at);
  r[0] = low_parts(a, b);
  r[1] = high_parts(a, b);
}

// Four floats of a lane, beside them those of the fourth lane from it where there are eight.
template <int W> SIGPAK_INLINE pack<float, W> load_lanes(const float* const* x, int lane, index at) {
  if constexpr (W == 8) {
    using half = pack<float, W / 2>;
    return joined(load<half>(x[lane] + at), load<half>(x[lane + 4] + at));
  } else {
    return load<f4>(x[lane] + at);
  }
}

template <class T> constexpr int steps = width == 2 ? 2 : is_single<T> ? 4 : width / 2;

// Floats are transposed as they are: half the work.
template <int W>
requires(W > 2) SIGPAK_INLINE void read_rows(pack<double, W>* r, const float* const* x, index at) {
  const auto a = load_lanes<W>(x, 0, at);
  const auto b = load_lanes<W>(x, 1, at);
  const auto c = load_lanes<W>(x, 2, at);
  const auto d = load_lanes<W>(x, 3, at);
  const auto ab_first = low_parts(a, b);
  const auto ab_last = high_parts(a, b);
  const auto cd_first = low_parts(c, d);
  const auto cd_last = high_parts(c, d);
  r[0] = widened(low_pairs(ab_first, cd_first));
  r[1] = widened(high_pairs(ab_first, cd_first));
  r[2] = widened(low_pairs(ab_last, cd_last));
  r[3] = widened(high_pairs(ab_last, cd_last));
}

template <int rows, class T> SIGPAK_INLINE void read_points(real* r, const T* const* x, index at) {
  unroll<rows>([&](auto k) SIGPAK_LAMBDA { read_rows(r + k * steps<T>, x, at * rows + k * steps<T>); });
}

// Before every eighth point, calls for what one of these lanes reads a while later in as many points as all
// of them read until its turn comes again: several lines in a row. Behind the end of its block a lane goes on
// in its next one.
template <int rows, int lanes, class T>
SIGPAK_INLINE void fetch(const kernels::lane_points_of<T>& from, const T* const* x, index i) {
  constexpr index line = machine::line_bytes / sizeof(T);
  constexpr index turn = 8;
  constexpr index ahead = 256;
  const index done = i - from.begin;
  if (done % turn != 0) return;
  const index lane = done / turn % lanes;
  index at = i - lane * turn + ahead;
  if (at >= kernels::lane_points) at += from.to_next - kernels::lane_points;
  const T* const first = x[lane] + at * rows;
  for (index j = 0; j < turn * lanes * rows; j += line) __builtin_prefetch(first + j);
}

template <class Term> constexpr int state_rows = Term::sums + (requires { Term::counts; } ? 1 : 0);

template <class Term, class T>
void sum_lanes(const kernels::lane_points_of<T>& from, const kernels::term_constants& given,
               kernels::lane_totals& sums) {
  const constants c = {all(given.centre), all(given.centre_im), all(given.huge), all(given.step)};
  real total[vectors][state_rows<Term>];
  for (int v = 0; v < vectors; ++v) {
    for (int k = 0; k < Term::sums; ++k) total[v][k] = load<real>(&sums[k][v * width]);
    if constexpr (state_rows < Term >> Term::sums) {
      double at[width];
      for (int l = 0; l < width; ++l) {
        at[l] = given.first + static_cast<double>((v * width + l) * kernels::lane_points + from.begin);
      }
      total[v][Term::sums] = load<real>(at);
    }
  }
  for (index i = from.begin; i < from.end; i += steps<T>) {
    if (from.fetch) {
      fetch<Term::x_rows, side_by_side>(from, from.x, i);
      if constexpr (Term::y_rows > 0) fetch<Term::y_rows, side_by_side>(from, from.y, i);
    }
    unroll<vectors>([&](auto v) SIGPAK_LAMBDA {
      real x[steps<T> * Term::x_rows];
      real y[steps<T> * Term::y_rows + 1];
      read_points<Term::x_rows>(x, from.x + v * width, i);
      if constexpr (Term::y_rows > 0) read_points<Term::y_rows>(y, from.y + v * width, i);
      unroll<steps<T>>(
          [&](auto p) SIGPAK_LAMBDA { Term::add(total[v], x + p * Term::x_rows, y + p * Term::y_rows, c); });
    });
  }
  for (int k = 0; k < Term::sums; ++k) {
    for (int v = 0; v < vectors; ++v) store(&sums[k][v * width], total[v][k]);
  }
}

// Products of doubles are transposed instead of the factors.
void sum_products(const kernels::lane_points_of<double>& from, const kernels::term_constants& given,
                  kernels::lane_totals& sums) {
  if constexpr (width == 2) return sum_lanes<product>(from, given, sums);
  unroll<vectors>([&](auto v) SIGPAK_LAMBDA {
    constexpr int first = v * width;
    real total = load<real>(&sums[0][first]);
    for (index i = from.begin; i < from.end; i += width) {
      if (from.fetch) {
        fetch<1, width>(from, from.x + first, i);
        fetch<1, width>(from, from.y + first, i);
      }
      real r[width];
      unroll<width>([&](auto l) SIGPAK_LAMBDA {
        r[l] = load<real>(from.x[first + l] + i) * load<real>(from.y[first + l] + i);
      });
      transpose(r);
      unroll<width>([&](auto p) SIGPAK_LAMBDA { total = total + r[p]; });
    }
    store(&sums[0][first], total);
  });
}
void sum_products(const kernels::lane_points_of<float>& from, const kernels::term_constants& given,
                  kernels::lane_totals& sums) {
  sum_lanes<product>(from, given, sums);
}

// Without limits first; once more with them where a sum of squares does not exclude that they matter.
template <template <bool> class Term, class T>
void sum_deviations(const kernels::lane_points_of<T>& from, const kernels::term_constants& given,
                    kernels::lane_totals& sums) {
  kernels::lane_totals before;
  __builtin_memcpy(&before, &sums, sizeof before);
  sum_lanes<Term<false>>(from, given, sums);
  bool within = true;
  for (const int k : Term<false>::of_squares) {
    for (const double s : sums[k]) within = within && s < given.huge * given.huge;
  }
  if (within) return;
  __builtin_memcpy(&sums, &before, sizeof before);
  sum_lanes<Term<true>>(from, given, sums);
}

// Two doubles side by side gain on one sum of one record no more than it costs to put them so, and neither do
// floats, which are converted for it, on their sums and products. A division is worth more.
constexpr bool wide = width > 2;
template <class T> constexpr bool wide_or_double = wide || !is_single<T>;
template <class T> constexpr kernels::lane_sums<T> where(bool worth, kernels::lane_sums<T> kernel) {
  return worth ? kernel : nullptr;
}

template <class T>
constexpr kernels::lane_sum_table<T> table = {
    .lanes = side_by_side,
    .least_blocks = wide ? 2 : 3,
    .samples = where<T>(wide, sum_lanes<sample, T>),
    .points = where<T>(wide_or_double<T>, sum_lanes<point, T>),
    .squares = where<T>(wide, sum_deviations<square, T>),
    .point_squares = where<T>(wide, sum_deviations<point_square, T>),
    .deviations = sum_deviations<deviation, T>,
    .point_deviations = sum_deviations<point_deviation, T>,
    .cubed_deviations = sum_deviations<cubed_deviation, T>,
    .fourth_deviations = sum_deviations<fourth_deviation, T>,
    .line = sum_deviations<line, T>,
    .point_line = sum_deviations<point_line, T>,
    .reciprocals = where<T>(wide || is_single<T>, sum_lanes<reciprocal, T>),
    .point_reciprocals = sum_deviations<point_reciprocal, T>,
    .products = where<T>(wide_or_double<T>, sum_products),
    .point_products = where<T>(wide_or_double<T>, sum_lanes<point_product, T>),
    .mixed_products = where<T>(wide_or_double<T>, sum_lanes<mixed_product, T>),
};

}  // namespace

}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::lane_sum_table<double>) = SIGPAK_LEVEL::table<double>;
SIGPAK_LEVEL_TABLE(kernels::lane_sum_table<float>) = SIGPAK_LEVEL::table<float>;

}  // namespace sigpak
