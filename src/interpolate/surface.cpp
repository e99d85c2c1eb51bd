// SPDX-License-Identifier: MIT
// The tensor product of splines along both axes of a table: values and slopes along x, and the slopes of both
// along y.
#include <limits>

#include "core/isa.h"
#include "core/memory.h"
#include "core/storage.h"
#include "interpolate/curve.h"
#include "interpolate/knots.h"
#include "interpolate/side_by_side.h"

namespace sigpak {
namespace {

constexpr std::int32_t pairs_flag = 256;
constexpr std::int32_t ends_bits = 3;

// A table of `rows` by `columns` knots, at least two along either axis. A row of `along` holds pairs of the
// value and its slope along x, a row of `across` the slopes of both along y.
struct surface {
  double* gx;
  double* gy;
  index columns;
  index rows;
  double* along;
  double* across;
  double* line;  // room for a line along either axis, and for one of pairs

  index row_length() const noexcept { return 2 * columns; }
};

// An axis of a single knot is one of two with the same values.
template <class T> void copy_knots(const T* from, index n, double* to) noexcept {
  for (index i = 0; i < n; ++i) to[i] = static_cast<double>(from[i]);
  if (n == 1) to[1] = to[0] + std::fmax(1, std::abs(to[0]));
}

template <class T>
void copy_values(const T* z, index rows, index columns, bool periodic, const surface& s) noexcept {
  const auto source = [periodic](index i, index n) {
    return periodic && i >= n - 1 ? 0 : std::min(i, n - 1);
  };
  for (index r = 0; r < s.rows; ++r) {
    const T* const from = z + source(r, rows) * columns;
    double* const to = s.along + r * s.row_length();
    for (index c = 0; c < s.columns; ++c) to[2 * c] = static_cast<double>(from[source(c, columns)]);
  }
}

status make_slopes(const surface& s, end_rule rule) noexcept {
  const index row = s.row_length();
  if (slopes_of_lines(s.gx, s.columns, {s.along, s.along + 1, 2, row, s.rows}, rule) != ok) return failed;
  return slopes_of_lines(s.gy, s.rows, {s.along, s.across, row, 1, row}, rule);
}

constexpr double between(double y0, double y1, double s0, double s1, double dt, double per_length) noexcept {
  return value_of(cubic_through(y0, y1, s0, s1, per_length), dt, dt * per_length);
}

curve<double> axis(const double* knots, const double* pairs, index n) noexcept {
  return {knots, 0, pairs, true, n};
}

// The pairs of a line along x at y: a row of curves in y, side by side.
void cut(const surface& s, double y, index k, double* pairs) noexcept {
  const double* const a0 = s.along + k * s.row_length();
  const double* const a1 = a0 + s.row_length();
  const double* const b0 = s.across + k * s.row_length();
  const double* const b1 = b0 + s.row_length();
  const double dt = y - s.gy[k];
  const double per_length = 1 / (s.gy[k + 1] - s.gy[k]);
  const bool at_end = y == s.gy[k + 1];
  isa::run([=, n = s.row_length()] {
    for (index i = 0; i < n; ++i) {
      pairs[i] = at_end ? a1[i] : between(a0[i], a1[i], b0[i], b1[i], dt, per_length);
    }
  });
}

// Targets among knots: the intervals they are in, how far in, and the reciprocals of the intervals' lengths.
struct places {
  double* dt;
  double* per_length;
  double* at_end;  // 1 on the second knot
  std::int32_t* interval;
};

// x becomes the targets inside.
void find_places(const curve<double>& c, outside rule, double* x, index count, const places& p) noexcept {
  isa::run([=] {
    double beyond[target_block];
    for (index begin = 0; begin < count; begin += target_block) {
      const index some = std::min(target_block, count - begin);
      bring_inside(c, rule, x + begin, beyond, some);
      find_intervals(c, x + begin, some, p.interval + begin);
    }
    for (index i = 0; i < count; ++i) {
      const double* const knot = c.x + p.interval[i];
      p.dt[i] = x[i] - knot[0];
      p.per_length[i] = 1 / (knot[1] - knot[0]);
      p.at_end[i] = x[i] == knot[1] ? 1 : 0;
    }
  });
}

template <class T> void answer_row(const double* pairs, const places& p, index count, T* out) noexcept {
  isa::run([=] {
#pragma GCC ivdep
    for (index i = 0; i < count; ++i) {
      const index k = 2 * index{p.interval[i]};
      const double y0 = pairs[k];
      const double s0 = pairs[k + 1];
      const double y1 = pairs[k + 2];
      const double s1 = pairs[k + 3];
      const double value = between(y0, y1, s0, s1, p.dt[i], p.per_length[i]);
      out[i] = static_cast<T>(p.at_end[i] != 0 ? y1 : value);
    }
  });
}

// Every y with every x, whose places are the same in every row.
template <class T>
void answer_grid(const surface& s, outside rule, double* x, index nx, double* y, index ny, T* out,
                 double* room) noexcept {
  const curve<double> rows = axis(s.gy, nullptr, s.rows);
  const places columns = {room, room + nx, room + 2 * nx, reinterpret_cast<std::int32_t*>(room + 3 * nx)};
  find_places(axis(s.gx, nullptr, s.columns), rule, x, nx, columns);
  for (index i = 0; i < ny; ++i) {
    double beyond = 0;
    std::int32_t k = 0;
    bring_inside(rows, rule, y + i, &beyond, 1);
    find_intervals(rows, y + i, 1, &k);
    cut(s, y[i], k, s.line);
    answer_row(s.line, columns, nx, out + i * nx);
  }
}

double value_at(const surface& s, double x, index c, double y, index r) noexcept {
  const double per_x = 1 / (s.gx[c + 1] - s.gx[c]);
  const double per_y = 1 / (s.gy[r + 1] - s.gy[r]);
  const double dx = x - s.gx[c];
  const double dy = y - s.gy[r];
  const bool at_end = y == s.gy[r + 1];
  double pairs[4];
  for (index i = 0; i < 4; ++i) {
    const index low = r * s.row_length() + 2 * c + i;
    const index high = low + s.row_length();
    pairs[i] = at_end ? s.along[high]
                      : between(s.along[low], s.along[high], s.across[low], s.across[high], dy, per_y);
  }
  return x == s.gx[c + 1] ? pairs[2] : between(pairs[0], pairs[2], pairs[1], pairs[3], dx, per_x);
}

template <class T>
void answer_pairs(const surface& s, outside rule, double* x, double* y, index count, T* out) noexcept {
  const curve<double> columns = axis(s.gx, nullptr, s.columns);
  const curve<double> rows = axis(s.gy, nullptr, s.rows);
  isa::run([=] {
    double beyond[target_block];
    std::int32_t c[target_block];
    std::int32_t r[target_block];
    for (index begin = 0; begin < count; begin += target_block) {
      const index some = std::min(target_block, count - begin);
      bring_inside(columns, rule, x + begin, beyond, some);
      bring_inside(rows, rule, y + begin, beyond, some);
      find_intervals(columns, x + begin, some, c);
      find_intervals(rows, y + begin, some, r);
      for (index i = 0; i < some; ++i) {
        out[begin + i] = static_cast<T>(value_at(s, x[begin + i], c[i], y[begin + i], r[i]));
      }
    }
  });
}

template <record V> struct targets {
  const V* x;
  const V* y;
  bool pairs;
  index points() const noexcept { return pairs ? length(x) : length(x) * length(y); }
};

template <record V>
status evaluate_surface(const targets<V>& at, V* out, const V* gx, const V* gy, const V* z, end_rule rule,
                        outside beyond) noexcept {
  const index nx = length(at.x);
  const index ny = length(at.y);
  const index columns = std::max<index>(length(gx), 2);
  const index rows = std::max<index>(length(gy), 2);
  const index line = 2 * columns + rows;
  double* const table = allocate_table<double>(4 * columns * rows + columns + rows + line + 5 * nx + ny);
  if (table == nullptr) return failed;
  surface s = {table, table + columns, columns, rows, table + columns + rows, nullptr, nullptr};
  s.across = s.along + 2 * columns * rows;
  s.line = s.across + 2 * columns * rows;
  double* const x = s.line + line;
  double* const y = x + nx;
  copy_knots(gx->data, length(gx), s.gx);
  copy_knots(gy->data, length(gy), s.gy);
  copy_values(z->data, length(gy), length(gx), rule.kind == spline_ends::periodic, s);
  std::copy_n(at.x->data, nx, x);
  std::copy_n(at.y->data, ny, y);
  status done = make_slopes(s, rule);
  if (done == ok) {
    out->delta = at.x->delta;
    out->complex = 0;
    out->points = static_cast<std::uint32_t>(at.points());
    done = allocate(out);
  }
  if (done == ok && at.pairs) answer_pairs(s, beyond, x, y, nx, out->data);
  if (done == ok && !at.pairs) answer_grid(s, beyond, x, nx, y, ny, out->data, y + ny);
  free_table(table);
  return done;
}

template <record V>
status interpolate_surface(const V* x, const V* y, V* out, const V* gx, const V* gy, const V* z,
                           std::int32_t flags) noexcept {
  constexpr std::int32_t rules = DSP_INTERP_HOLD | DSP_INTERP_WRAP;
  const std::int32_t ends = flags & ends_bits;
  const std::int32_t chosen = flags & rules;
  if ((flags & ~(ends_bits | rules | pairs_flag)) != 0 || chosen == rules || ends == DSP_SPLINE_CLAMPED)
    return failed;
  const targets<V> at = {x, y, (flags & pairs_flag) != 0};
  if (is_complex(x) || is_complex(y) || (at.pairs && length(x) != length(y))) return failed;
  if (length(gx) == 0 || !are_knots(gx, length(gx), gx->delta)) return failed;
  if (length(gy) == 0 || !are_knots(gy, length(gy), gy->delta)) return failed;
  if (is_complex(z) || length(z) != length(gx) * length(gy)) return failed;
  if (at.points() > std::numeric_limits<std::int32_t>::max()) return failed;
  const outside beyond = chosen == DSP_INTERP_HOLD   ? outside::holds
                         : chosen == DSP_INTERP_WRAP ? outside::wraps
                                                     : outside::goes_on;
  return evaluate_surface(at, out, gx, gy, z, {static_cast<spline_ends>(ends), 0, 0}, beyond);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspb_cspline_2d(const dsp_vec* x, const dsp_vec* y, dsp_vec* out, const dsp_vec* gx,
                        const dsp_vec* gy, const dsp_vec* z, int32_t flags) {
  return interpolate_surface(x, y, out, gx, gy, z, flags);
}
int32_t dspfb_cspline_2d(const dspf_vec* x, const dspf_vec* y, dspf_vec* out, const dspf_vec* gx,
                         const dspf_vec* gy, const dspf_vec* z, int32_t flags) {
  return interpolate_surface(x, y, out, gx, gy, z, flags);
}
