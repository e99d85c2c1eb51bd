// SPDX-License-Identifier: MIT
// The plans of the wide chirp transform.
#include "fft/plans/chirp_plan.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "core/isa.h"
#include "core/recent_list.h"
#include "core/scratch.h"
#include "fft/plans/circle.h"
#include "fft/plans/pass_tables.h"
#include "fft/wide/kernels.h"
#include "vectors/levels.h"

namespace sigpak::kernels {

namespace {

// Memory for the making of tables, freed at the end of its scope.
template <class T> class passing_table {
 public:
  explicit passing_table(index count) noexcept : table_(allocate_table<T>(count)) {}
  ~passing_table() { free_table(table_); }
  passing_table(const passing_table&) = delete;
  passing_table& operator=(const passing_table&) = delete;
  T* get() const noexcept { return table_; }

 private:
  T* table_;
};

// In vectors of `lanes`, a power of two.
template <class T> T* lane_at(T* vectors, int lanes, index lane) noexcept {
  const index inside = lane & (lanes - 1);
  return vectors + 2 * (lane - inside) + inside;
}

template <class T> void fill_turns(const chirp_plan<T>& plan, const roots& w) noexcept {
  const index pairs = plan.lanes / 2;
  T* out = plan.turns;
  for (index at = 0; at < plan.vectors; at += pairs, out += 2 * pairs * (pairs - 1)) {
    for (index p = 0; p < pairs; ++p) {
      const index kb = output(plan, at + p);
      for (index l = 1; l < pairs; ++l) put_root(out + 2 * (pairs * (l - 1) + p), 1, w[2 * l * kb]);
    }
  }
}

template <class T> index chirp_scalars(const chirp_plan<T>& plan) noexcept {
  return 2 * ((2 * plan.points + plan.lanes - 1) / plan.lanes * plan.lanes);
}
template <class T> index filter_scalars(const chirp_plan<T>& plan) noexcept {
  return 2 * plan.lanes * plan.vectors;
}

// The tables that roots alone make.
template <class T> void carve_transforms(chirp_plan<T>& plan, carver& memory) noexcept {
  carve_passes(plan, memory);
  plan.turns = memory.take<T>((plan.lanes - 2) * plan.vectors);
}
template <class T> void fill_transforms(chirp_plan<T>& plan) noexcept {
  const roots w(2 * plan.circle);
  fill_passes(plan, 2 * plan.circle, w);
  fill_turns(plan, w);
}

// All of them.
template <class T> void carve(chirp_plan<T>& plan, carver& memory) noexcept {
  carve_transforms(plan, memory);
  plan.chirp = memory.take<T>(chirp_scalars(plan));
  plan.filter = memory.take<T>(filter_scalars(plan));
}

constexpr index row_length = 64;

// One part each of neighbouring numbers.
struct parted_row {
  double high[row_length];
  double low[row_length];

  [[gnu::always_inline]] void put(index i, parted x) noexcept {
    high[i] = x.high;
    low[i] = x.low;
  }
  parted operator[](index i) const noexcept { return {high[i], low[i]}; }
};

struct root_row {
  parted_row cosine;
  parted_row sine;

  [[gnu::always_inline]] void put(index i, root r) noexcept {
    cosine.put(i, r.cosine);
    sine.put(i, r.sine);
  }
  root operator[](index i) const noexcept { return {cosine[i], sine[i]}; }
};

// conj g[m] and its product with exp(-i pi m / K): the even and the odd bins of the circle, which lie side by
// side in the lanes.
class squares {
 public:
  squares(index points, const roots& of_circle) noexcept
      : period_(2 * points), of_data_(2 * points), of_circle_(of_circle) {}

  // From m = first on; those behind m = 2 N - 2 are 0. All loops but those over the table of coarse roots run
  // in vectors.
  [[gnu::always_inline]] void fill(root_row (&out)[2], index first, index count) const noexcept {
    const index left = std::clamp(period_ - 1 - first, index{0}, count);
    std::int32_t coarse[2][row_length];
    double fine[2][row_length];
    find_angles(coarse, fine, first, left);
    for (const int part : {0, 1}) {
      root_row& row = out[part];
      for (index i = 0; i < left; ++i) row.put(i, coarse_root(coarse[part][i]));
      for (index i = 0; i < left; ++i) row.put(i, turned_by(row[i], fine[part][i]));
      for (index i = left; i < count; ++i) row.put(i, {});
    }
  }

 private:
  [[gnu::always_inline]] void find_angles(std::int32_t (&coarse)[2][row_length],
                                          double (&fine)[2][row_length], index first,
                                          index count) const noexcept {
    const auto square = static_cast<double>(first * first % period_);
    const auto slope = static_cast<double>(2 * first);
    const auto start = static_cast<double>(first);
    const roots of_data = of_data_;
    const roots of_circle = of_circle_;
    for (index i = 0; i < count; ++i) {
      const double step = static_cast<std::int32_t>(i);
      const angle even = of_data.angle_of(square + step * (slope + step));
      const angle odd = even - of_circle.angle_of(start + step);
      coarse[0][i] = even.coarse;
      fine[0][i] = even.fine;
      coarse[1][i] = odd.coarse;
      fine[1][i] = odd.fine;
    }
  }

  index period_;
  roots of_data_;
  roots of_circle_;
};

template <class T>
void put_chirp(T* out, int lanes, index n, const root_row (&row)[2], index count) noexcept {
  for (index i = 0; i < count; ++i) {
    T* const at = lane_at(out, lanes, 2 * (n + i));
    for (const int part : {0, 1}) {
      at[part] = static_cast<T>(rounded(row[part].cosine[i]));
      at[lanes + part] = static_cast<T>(-rounded(row[part].sine[i]));
    }
  }
}

inline void put_sums(double* out, int lanes, const root_row (&low)[2], const root_row (&high)[2],
                     factor scale, index count) noexcept {
  for (index i = 0; i < count; ++i) {
    double* const at = lane_at(out, lanes, 2 * i);
    for (const int part : {0, 1}) {
      at[part] = scale * (low[part].cosine[i] + high[part].cosine[i]);
      at[lanes + part] = scale * (low[part].sine[i] + high[part].sine[i]);
    }
  }
}

// The power of two near sqrt(2 K). Times it and 1 / (2 K) the spectrum of g is about 1, so that the products
// with it are of the size of the sums on both sides.
double balance(index circle) noexcept {
  const auto bits = static_cast<int>(std::bit_width(static_cast<std::uint64_t>(circle)));
  return std::ldexp(1.0, (bits + 1) / 2);
}

// The chirp of `plan`, and conj g on the circle of 2 K points, whose two halves m and m + K are folded: in
// scratch memory, as the first pass of `wide` leaves its results.
template <class T>
void fill_squares(const chirp_plan<T>& plan, const chirp_plan<double>& wide, double* scratch) noexcept {
  std::fill_n(plan.chirp, chirp_scalars(plan), T(0));
  const squares chirps(plan.points, roots(2 * plan.circle));
  const factor scale(0.5L * balance(plan.circle) / static_cast<long double>(plan.circle));
  const index block = plan.circle / wide.radix[0];
  isa::run([=, chirp = plan.chirp, points = plan.points, lanes = plan.lanes, wide_lanes = wide.lanes,
            all = plan.circle, step = 2 * wide.stride * wide.lanes] {
    double* out = scratch;
    root_row low[2];
    root_row high[2];
    for (index start = 0; start < all; start += block, out += step) {
      for (index i = 0; i < block; i += row_length) {
        const index m = start + i;
        const index count = std::min(row_length, block - i);
        chirps.fill(low, m, count);
        chirps.fill(high, m + all, count);
        put_sums(out + 4 * i, wide_lanes, low, high, scale, count);
        put_chirp(chirp, lanes, m, low, std::min(count, points - m));
      }
    }
  });
}

// Calls body(lane, bin) for every bin of the K-point transforms: its even one is in that lane of the filter's
// vectors, its odd one in the next.
template <class T, class Body> void for_each_bin(const chirp_plan<T>& plan, const Body& body) noexcept {
  const index pairs = plan.lanes / 2;
  for (index vector = 0; vector < plan.vectors; vector += pairs) {
    for (index p = 0; p < pairs; ++p) {
      const index kb = output(plan, vector + p);
      for (index k = 0; k < pairs; ++k) body((vector + k) * plan.lanes + 2 * p, kb + k * plan.vectors);
    }
  }
}

status fill(chirp_plan<double>& plan, scratch_memory<double>& memory) noexcept {
  fill_transforms(plan);
  double* const scratch = memory.at_least(scratch_of(plan), plan.chirp);
  if (scratch == nullptr) return failed;
  fill_squares(plan, plan, scratch);
  at_level<chirp_spectra>()->run(plan, scratch, plan.filter);
  return ok;
}

// The filter in double, on its way to single precision: exact but for its own rounding.
struct wide_filter {
  chirp_plan<double> plan = {};
  double* scratch = nullptr;
  double* bins = nullptr;  // in natural order

  void carve(carver& memory) noexcept {
    carve_transforms(plan, memory);
    scratch = memory.take<double>(scratch_of(plan));
    plan.filter = memory.take<double>(filter_scalars(plan));
    bins = memory.take<double>(4 * plan.circle);
  }

  void collect() const noexcept {
    for_each_bin(plan, [this](index lane, index bin) {
      const double* const at = lane_at(plan.filter, plan.lanes, lane);
      for (index part = 0; part < 2; ++part) {
        bins[4 * bin + part] = at[part];
        bins[4 * bin + 2 + part] = at[plan.lanes + part];
      }
    });
  }
};

status fill(chirp_plan<float>& plan, scratch_memory<float>&) noexcept {
  fill_transforms(plan);
  wide_filter wide;
  wide.plan.points = plan.points;
  choose_passes(wide.plan, plan.circle, at_level<chirp_kernels<double>>()->widest_lanes);
  carver needed(nullptr);
  wide.carve(needed);
  const passing_table<std::byte> block(needed.taken() + alignment);
  if (block.get() == nullptr) return failed;
  carver memory(align(block.get()));
  wide.carve(memory);
  fill_transforms(wide.plan);
  fill_squares(plan, wide.plan, wide.scratch);
  at_level<chirp_spectra>()->run(wide.plan, wide.scratch, wide.plan.filter);
  wide.collect();
  for_each_bin(plan, [&plan, &wide](index lane, index bin) {
    float* const at = lane_at(plan.filter, plan.lanes, lane);
    for (index part = 0; part < 2; ++part) {
      at[part] = static_cast<float>(wide.bins[4 * bin + part]);
      at[plan.lanes + part] = static_cast<float>(wide.bins[4 * bin + 2 + part]);
    }
  });
  return ok;
}

// Mixed lengths have positive keys in the same list.
index key_of(index points) noexcept { return -(points * 4 + static_cast<index>(isa::current())); }

template <class T> chirp_plan<T> lay_out(index points) noexcept {
  const auto* const level = at_level<chirp_kernels<T>>();
  chirp_plan<T> plan = {};
  plan.points = points;
  choose_circle(plan, points, level->widest_lanes, level->narrowest_lanes);
  plan.scale[1] = static_cast<T>(1 / balance(plan.circle));
  plan.scale[0] = plan.scale[1] / static_cast<T>(points);
  return plan;
}

}  // namespace

template <class T> const chirp_plan<T>* find_chirp_plan(recent_list& plans, index points) noexcept {
  return kept_plan<chirp_plan<T>>(plans.find(key_of(points)));
}

template <class T>
const chirp_plan<T>* make_chirp_plan(recent_list& plans, scratch_memory<T>& scratch, index points) noexcept {
  status filled = failed;
  const auto* const plan = keep_plan(
      lay_out<T>(points), carve<T>,
      [&filled, &scratch](chirp_plan<T>& fresh) { filled = fill(fresh, scratch); },
      [&plans, key = key_of(points)](index bytes) { return plans.append(key, bytes); });
  if (plan != nullptr && filled != ok) return plans.drop_first(), nullptr;
  return plan;
}

template const chirp_plan<double>* find_chirp_plan(recent_list&, index) noexcept;
template const chirp_plan<float>* find_chirp_plan(recent_list&, index) noexcept;
template const chirp_plan<double>* make_chirp_plan(recent_list&, scratch_memory<double>&, index) noexcept;
template const chirp_plan<float>* make_chirp_plan(recent_list&, scratch_memory<float>&, index) noexcept;

}  // namespace sigpak::kernels
