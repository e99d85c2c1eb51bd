// Sums of eight blocks side by side: vectors of consecutive samples from every block are transposed, and each
// row then holds the next sample of all blocks.
#include "core/machine.h"
#include "kernels/sums/lane_sums.h"

#include "kernels/sums/terms.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

constexpr int width = row::width;
constexpr int vectors = kernels::sum_lanes / width;

// Consecutive samples of `width` lanes from x[lane] + at on, one row for each of the `steps` next.
#if SIGPAK_VECTOR_BYTES == 64
constexpr int steps_of_double = 4;
SIGPAK_INLINE row load_two(const double* low, const double* high) {
  return {
      _mm512_mask_broadcast_f64x4(_mm512_castpd256_pd512(_mm256_loadu_pd(low)), 0xf0, _mm256_loadu_pd(high))};
}
SIGPAK_INLINE void read_rows(row* r, const double* const* x, index at) {
  const row a = load_two(x[0] + at, x[2] + at);
  const row b = load_two(x[1] + at, x[3] + at);
  const row c = load_two(x[4] + at, x[6] + at);
  const row d = load_two(x[5] + at, x[7] + at);
  const row ab_even = low_parts(a, b);
  const row ab_odd = high_parts(a, b);
  const row cd_even = low_parts(c, d);
  const row cd_odd = high_parts(c, d);
  r[0] = {_mm512_shuffle_f64x2(ab_even.v, cd_even.v, 0x88)};
  r[1] = {_mm512_shuffle_f64x2(ab_odd.v, cd_odd.v, 0x88)};
  r[2] = {_mm512_shuffle_f64x2(ab_even.v, cd_even.v, 0xdd)};
  r[3] = {_mm512_shuffle_f64x2(ab_odd.v, cd_odd.v, 0xdd)};
}
SIGPAK_INLINE f8 load_lanes(const float* const* x, int lane, index at) {
  return {_mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(x[lane] + at)),
                               _mm_loadu_ps(x[lane + 4] + at), 1)};
}
#else
constexpr int steps_of_double = 2;
SIGPAK_INLINE row load_two(const double* low, const double* high) {
  return {_mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(low)), _mm_loadu_pd(high), 1)};
}
SIGPAK_INLINE void read_rows(row* r, const double* const* x, index at) {
  const row a = load_two(x[0] + at, x[2] + at);
  const row b = load_two(x[1] + at, x[3] + at);
  r[0] = low_parts(a, b);
  r[1] = high_parts(a, b);
}
SIGPAK_INLINE f4 load_lanes(const float* const* x, int lane, index at) {
  return {_mm_loadu_ps(x[lane] + at)};
}
#endif

template <class T> constexpr int steps = sizeof(T) == 8 ? steps_of_double : 4;

template <class P> SIGPAK_INLINE row widened(P a) { return {__builtin_convertvector(a.v, row::vector)}; }

// Floats are transposed as they are: half the work.
SIGPAK_INLINE void read_rows(row* r, const float* const* x, index at) {
  const auto a = load_lanes(x, 0, at);
  const auto b = load_lanes(x, 1, at);
  const auto c = load_lanes(x, 2, at);
  const auto d = load_lanes(x, 3, at);
  const auto ab_first = low_parts(a, b);
  const auto ab_last = high_parts(a, b);
  const auto cd_first = low_parts(c, d);
  const auto cd_last = high_parts(c, d);
  r[0] = widened(choose<0x44>(ab_first, cd_first));
  r[1] = widened(choose<0xee>(ab_first, cd_first));
  r[2] = widened(choose<0x44>(ab_last, cd_last));
  r[3] = widened(choose<0xee>(ab_last, cd_last));
}

template <int rows, class T> SIGPAK_INLINE void read_points(row* r, const T* const* x, index at) {
  unroll<rows>([&](auto k) __attribute__((always_inline)) {
    read_rows(r + k * steps<T>, x, at * rows + k * steps<T>);
  });
}

// The share of so many points of a stretch in what the next stretch reads, line after line.
template <int rows, class T> SIGPAK_INLINE void fetch(const T* x, index at, index points) {
  constexpr index line = machine::line_bytes / sizeof(T);
  const T* const next = x + (kernels::lane_points + at) * rows * kernels::sum_lanes;
  for (index i = 0; i < points * rows * kernels::sum_lanes; i += line) {
    _mm_prefetch(reinterpret_cast<const char*>(next + i), _MM_HINT_T1);
  }
}

template <class Term> constexpr int state_rows = Term::sums + (requires { Term::counts; } ? 1 : 0);

template <class Term, class T>
void sum_lanes(const kernels::lane_points_of<T>& from, const kernels::term_constants& given,
               kernels::lane_totals& sums) {
  const constants c = {splat<row>(given.centre), splat<row>(given.centre_im), splat<row>(given.huge),
                       splat<row>(given.step)};
  row total[vectors][state_rows<Term>];
  for (int v = 0; v < vectors; ++v) {
    for (int k = 0; k < Term::sums; ++k) total[v][k] = load<row>(&sums[k][v * width]);
    if constexpr (state_rows < Term >> Term::sums) {
      double at[width];
      for (int l = 0; l < width; ++l) {
        at[l] = given.first + static_cast<double>((v * width + l) * kernels::lane_points + from.begin);
      }
      total[v][Term::sums] = load<row>(at);
    }
  }
  for (index i = from.begin; i < from.end; i += steps<T>) {
    if (from.fetch_next) {
      fetch<Term::x_rows>(from.x[0], i, steps<T>);
      if constexpr (Term::y_rows > 0) fetch<Term::y_rows>(from.y[0], i, steps<T>);
    }
    unroll<vectors>([&](auto v) __attribute__((always_inline)) {
      row x[steps<T> * Term::x_rows];
      row y[steps<T> * Term::y_rows + 1];
      read_points<Term::x_rows>(x, from.x + v * width, i);
      if constexpr (Term::y_rows > 0) read_points<Term::y_rows>(y, from.y + v * width, i);
      unroll<steps<T>>([&](auto p) __attribute__((always_inline)) {
        Term::add(total[v], x + p * Term::x_rows, y + p * Term::y_rows, c);
      });
    });
  }
  for (int k = 0; k < Term::sums; ++k) {
    for (int v = 0; v < vectors; ++v) store(&sums[k][v * width], total[v][k]);
  }
}

// Products of doubles are transposed instead of the factors.
void sum_products(const kernels::lane_points_of<double>& from, const kernels::term_constants&,
                  kernels::lane_totals& sums) {
  unroll<vectors>([&](auto v) __attribute__((always_inline)) {
    constexpr int first = v * width;
    row total = load<row>(&sums[0][first]);
    for (index i = from.begin; i < from.end; i += width) {
      if (from.fetch_next) {
        fetch<1>(from.x[0], i, width);
        fetch<1>(from.y[0], i, width);
      }
      row r[width];
      unroll<width>([&](auto l) __attribute__((always_inline)) {
        r[l] = load<row>(from.x[first + l] + i) * load<row>(from.y[first + l] + i);
      });
      transpose(r);
      unroll<width>([&](auto p) __attribute__((always_inline)) { total = total + r[p]; });
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

template <class T>
constexpr kernels::lane_sum_table<T> table = {
    .samples = sum_lanes<sample, T>,
    .points = sum_lanes<point, T>,
    .squares = sum_deviations<square, T>,
    .point_squares = sum_deviations<point_square, T>,
    .deviations = sum_deviations<deviation, T>,
    .point_deviations = sum_deviations<point_deviation, T>,
    .cubed_deviations = sum_deviations<cubed_deviation, T>,
    .fourth_deviations = sum_deviations<fourth_deviation, T>,
    .line = sum_deviations<line, T>,
    .point_line = sum_deviations<point_line, T>,
    .reciprocals = sum_lanes<reciprocal, T>,
    .point_reciprocals = sum_deviations<point_reciprocal, T>,
    .products = sum_products,
    .point_products = sum_lanes<point_product, T>,
    .mixed_products = sum_lanes<mixed_product, T>,
};

}  // namespace

}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::lane_sum_table<double>) = SIGPAK_LEVEL::table<double>;
SIGPAK_LEVEL_TABLE(kernels::lane_sum_table<float>) = SIGPAK_LEVEL::table<float>;

}  // namespace sigpak
