// Sums of eight blocks side by side: vectors of consecutive samples from every block are transposed, and each
// row then holds the next sample of all blocks. No product is fused: every lane rounds like the plain loop.
#include "kernels/lane_sums.h"

#include "kernels/lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

#if SIGPAK_VECTOR_BYTES == 64
using row = pack<double, 8>;
SIGPAK_INLINE row smaller(row a, row b) { return {_mm512_min_pd(a.v, b.v)}; }
SIGPAK_INLINE row larger(row a, row b) { return {_mm512_max_pd(a.v, b.v)}; }
#else
using row = pack<double, 4>;
SIGPAK_INLINE row smaller(row a, row b) { return {_mm256_min_pd(a.v, b.v)}; }
SIGPAK_INLINE row larger(row a, row b) { return {_mm256_max_pd(a.v, b.v)}; }
#endif

constexpr int width = row::width;
constexpr int vectors = kernels::sum_lanes / width;

struct constants {
  row centre;
  row centre_im;
  row huge;

  // The data stand second: the minimum and the maximum of the processor answer with the second operand where
  // one is NaN.
  SIGPAK_INLINE row limited(row x) const { return larger(-huge, smaller(huge, x)); }
};

// Terms: what is added to the sums for the next point, of which `inputs` rows are given.
struct sample {
  static constexpr int sums = 1, inputs = 1;
  SIGPAK_INLINE static void add(row* s, const row* x, const constants&) { s[0] = s[0] + x[0]; }
};

struct point {
  static constexpr int sums = 2, inputs = 2;
  SIGPAK_INLINE static void add(row* s, const row* z, const constants&) {
    s[0] = s[0] + z[0];
    s[1] = s[1] + z[1];
  }
};

struct limited_sample {
  static constexpr int sums = 1, inputs = 1;
  SIGPAK_INLINE static void add(row* s, const row* x, const constants& c) { s[0] = s[0] + c.limited(x[0]); }
};

struct square {
  static constexpr int sums = 1, inputs = 1;
  SIGPAK_INLINE static void add(row* s, const row* x, const constants& c) {
    const row y = c.limited(x[0]);
    s[0] = s[0] + y * y;
  }
};

struct point_square {
  static constexpr int sums = 1, inputs = 2;
  SIGPAK_INLINE static void add(row* s, const row* z, const constants& c) {
    const row re = c.limited(z[0]);
    const row im = c.limited(z[1]);
    s[0] = s[0] + (re * re + im * im);
  }
};

struct deviation {
  static constexpr int sums = 2, inputs = 1;
  SIGPAK_INLINE static void add(row* s, const row* x, const constants& c) {
    const row d = c.limited(x[0] - c.centre);
    s[0] = s[0] + d;
    s[1] = s[1] + d * d;
  }
};

struct point_deviation {
  static constexpr int sums = 4, inputs = 2;
  SIGPAK_INLINE static void add(row* s, const row* z, const constants& c) {
    const row re = c.limited(z[0] - c.centre);
    const row im = c.limited(z[1] - c.centre_im);
    s[0] = s[0] + re;
    s[1] = s[1] + re * re;
    s[2] = s[2] + im;
    s[3] = s[3] + im * im;
  }
};

struct cubed_deviation {
  static constexpr int sums = 3, inputs = 1;
  SIGPAK_INLINE static void add(row* s, const row* x, const constants& c) {
    const row d = c.limited(x[0] - c.centre);
    const row dd = d * d;
    s[0] = s[0] + d;
    s[1] = s[1] + dd;
    s[2] = s[2] + dd * d;
  }
};

struct fourth_deviation {
  static constexpr int sums = 2, inputs = 1;
  SIGPAK_INLINE static void add(row* s, const row* x, const constants& c) {
    const row d = c.limited(x[0] - c.centre);
    const row dd = d * d;
    s[0] = s[0] + dd;
    s[1] = s[1] + dd * dd;
  }
};

SIGPAK_INLINE row load_row(const double* x) { return load<row>(x); }
SIGPAK_INLINE row load_row(const float* x) {
  return {__builtin_convertvector(load<pack<float, width>>(x).v, row::vector)};
}

// Consecutive samples of one block, or their products with those of another record.
template <bool products, class T> SIGPAK_INLINE row read(const T* x, const T* y, index at) {
  if constexpr (products) return load_row(x + at) * load_row(y + at);
  return load_row(x + at);
}

template <class Term, bool products, class T>
void sum_lanes(const T* const* x, const T* const* y, index points, const kernels::term_constants& given,
               double (*sums)[kernels::sum_lanes]) {
  const constants c = {splat<row>(given.centre), splat<row>(given.centre_im), splat<row>(given.huge)};
  row total[vectors][Term::sums];
  for (auto& lanes : total) {
    for (row& s : lanes) s = splat<row>(0.0);
  }
  for (index i = 0; i < points * Term::inputs; i += width) {
    unroll<vectors>([&](auto v) __attribute__((always_inline)) {
      row r[width];
      unroll<width>([&](auto l) __attribute__((always_inline)) {
        constexpr int lane = v * width + l;
        r[l] = read<products>(x[lane], products ? y[lane] : nullptr, i);
      });
      transpose(r);
      unroll<width / Term::inputs>([&](auto p) __attribute__((always_inline)) {
        Term::add(total[v], r + p * Term::inputs, c);
      });
    });
  }
  for (int k = 0; k < Term::sums; ++k) {
    for (int v = 0; v < vectors; ++v) store(&sums[k][v * width], total[v][k]);
  }
}

template <class T>
constexpr kernels::lane_sum_table<T> table = {
    sum_lanes<sample, false, T>,           sum_lanes<point, false, T>,
    sum_lanes<limited_sample, false, T>,   sum_lanes<square, false, T>,
    sum_lanes<point_square, false, T>,     sum_lanes<deviation, false, T>,
    sum_lanes<point_deviation, false, T>,  sum_lanes<cubed_deviation, false, T>,
    sum_lanes<fourth_deviation, false, T>, sum_lanes<sample, true, T>,
};

}  // namespace

constexpr kernels::lane_sum_table<double> lane_sums_double = table<double>;
constexpr kernels::lane_sum_table<float> lane_sums_float = table<float>;

}  // namespace sigpak::SIGPAK_LEVEL
