// SPDX-License-Identifier: MIT
// The plans of the wide chirp transform.
#include "fft/plans/chirp_plan.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "core/isa.h"
#include "core/recent_list.h"
#include "core/scratch.h"
#include "fft/plans/chirp_rows.h"
#include "fft/plans/circle.h"
#include "fft/plans/pass_tables.h"
#include "fft/plans/radices.h"
#include "fft/plans/sines.h"
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

// Points of the circle.
template <class T> index all_points(const chirp_plan<T>& plan) noexcept {
  return 2 * plan.rounds * plan.circle;
}

// w^(r n) for the even and the odd lanes of a round.
template <class T> void fill_slants(const chirp_plan<T>& plan, int round, const roots& w) noexcept {
  const index count = plan.vectors / plan.radix[0];
  T* out = plan.slants[round];
  for (int j = 0; j < plan.radix[0]; ++j, out += 2 * plan.lanes) {
    for (int lane = 0; lane < plan.lanes; ++lane) {
      const index n = plan.lanes / 2 * j * count + lane / 2;
      put_root(out + lane, plan.lanes, w[n * (round + plan.rounds * (lane % 2))]);
    }
  }
}

template <class T> void fill_entries(const chirp_plan<T>& plan) noexcept {
  const roots w(all_points(plan));
  for (int round = 0; round < plan.rounds; ++round) {
    T* out = plan.entries[round];
    for (index i = 0; i < plan.vectors / plan.radix[0]; ++i) {
      for (int k = 0; k < plan.radix[0]; ++k, out += 4) {
        for (const int odd : {0, 1}) {
          put_root(out + odd, 2, w[plan.lanes / 2 * i * (4 * k + round + plan.rounds * odd)]);
        }
      }
    }
    fill_slants(plan, round, w);
  }
}

template <class T> index chirp_scalars(const chirp_plan<T>& plan) noexcept {
  return 2 / plan.rounds * ((2 * plan.points + plan.lanes - 1) / plan.lanes * plan.lanes);
}
template <class T> index entry_scalars(const chirp_plan<T>& plan) noexcept { return 4 * plan.vectors; }
template <class T> index slant_scalars(const chirp_plan<T>& plan) noexcept {
  return 2 * plan.lanes * plan.radix[0];
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
  for (int round = 0; round < plan.rounds; ++round) {
    plan.filter[round] = memory.take<T>(filter_scalars(plan));
    if (plan.rounds == 1) continue;
    plan.entries[round] = memory.take<T>(entry_scalars(plan));
    plan.slants[round] = memory.take<T>(slant_scalars(plan));
  }
}

template <class T>
void put_chirp(const chirp_plan<T>& plan, index n, const root_row (&row)[2], index count) noexcept {
  if (plan.rounds == 2) {
    for (index i = 0; i < count; ++i) {
      T* const at = plan.chirp + 2 * (n + i);
      at[0] = static_cast<T>(rounded(row[0].cosine[i]));
      at[1] = static_cast<T>(-rounded(row[0].sine[i]));
    }
    return;
  }
  for (index i = 0; i < count; ++i) {
    T* const at = lane_at(plan.chirp, plan.lanes, 2 * (n + i));
    for (const int part : {0, 1}) {
      at[part] = static_cast<T>(rounded(row[part].cosine[i]));
      at[plan.lanes + part] = static_cast<T>(-rounded(row[part].sine[i]));
    }
  }
}

inline void put_sums(double* out, int lanes, const root_row (&sum)[2], factor scale, index count) noexcept {
  for (index i = 0; i < count; ++i) {
    double* const at = lane_at(out, lanes, 2 * i);
    for (const int part : {0, 1}) {
      at[part] = scale * sum[part].cosine[i];
      at[lanes + part] = scale * sum[part].sine[i];
    }
  }
}

// The power of two near the root of the points of the circle. Times it and their inverse the spectrum of g is
// about 1, so that the products with it are of the size of the sums on both sides.
double balance(index all_points) noexcept {
  const auto bits = static_cast<int>(std::bit_width(static_cast<std::uint64_t>(all_points)));
  return std::ldexp(1.0, bits / 2);
}

// What rounded constants add to the length of the results of a butterfly: the mean of their errors in its
// matrix. Of eights that of the root of one half, which a quarter of all products take; other radices stand
// on the transform of their odd part.
constexpr long double lengthening(int radix) noexcept {
  if (radix == 8) {
    constexpr long double root = sine_of(1, 8);
    return (static_cast<long double>(static_cast<double>(root)) - root) / root / 4;
  }
  const int odd = radix / (radix & -radix);
  long double sum = 0;
  for (int k = 1; k < odd; ++k) {
    for (const long double x : {sine_of(k, odd), cosine_of(k, odd)}) {
      sum += x * (static_cast<long double>(static_cast<double>(x)) - x);
    }
  }
  return sum * static_cast<long double>(odd - 1) / static_cast<long double>(odd * odd);
}

// What results of forward and inverse transforms have too much on average, as those errors are the same at
// every point and add up: of three transforms, as the filter is the result of one, and of the scale. In
// single precision the filter makes nothing longer, and there is little to gain.
long double excess(const chirp_plan<double>& plan) noexcept {
  long double sum = 0;
  for (int pass = 0; pass < plan.passes; ++pass) sum += 3 * lengthening(plan.radix[pass]);
  const auto scale = static_cast<long double>(plan.scale[0] / plan.scale[1]);
  return sum + (scale * static_cast<long double>(plan.points) - 1) / 2;
}
long double excess(const chirp_plan<float>&) noexcept { return 0; }

// conj g of the points m + t K of the circle, folded; with the first round those that are points of the data
// go to the chirp.
template <class T>
[[gnu::always_inline]] inline void fold(const chirp_plan<T>& plan, int round, const squares& chirps, index m,
                                        index count, root_row (&sum)[2]) noexcept {
  root_row next[2];
  for (index at = m; at < all_points(plan); at += plan.circle) {
    root_row(&row)[2] = at == m ? sum : next;
    chirps.fill(row, at, count);
    if (round == 0 && at < plan.points) put_chirp(plan, at, row, std::min(count, plan.points - at));
    if (at == m) continue;
    for (const int part : {0, 1}) add_row(sum[part], next[part], count);
  }
}

// conj g on the whole circle: in scratch memory, as the first pass of `wide` leaves its results. And the
// chirp of `plan` with the first round.
template <class T>
void fill_squares(const chirp_plan<T>& plan, int round, const chirp_plan<double>& wide,
                  double* scratch) noexcept {
  if (round == 0) std::fill_n(plan.chirp, chirp_scalars(plan), T(0));
  const index all = all_points(plan);
  const squares chirps(plan.points, all, round, plan.rounds);
  const factor scale(static_cast<long double>(balance(all)) / static_cast<long double>(all) *
                     (1 - excess(plan)));
  const index block = plan.circle / wide.radix[0];
  isa::run([=, &plan, wide_lanes = wide.lanes, step = 2 * wide.stride * wide.lanes] {
    double* out = scratch;
    root_row sum[2];
    for (index start = 0; start < plan.circle; start += block, out += step) {
      for (index i = 0; i < block; i += row_length) {
        const index count = std::min(row_length, block - i);
        fold(plan, round, chirps, start + i, count, sum);
        put_sums(out + 4 * i, wide_lanes, sum, scale, count);
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
  double* const scratch = memory.at_least(scratch_of(plan), plan.chirp);
  if (scratch == nullptr) return failed;
  for (int round = 0; round < plan.rounds; ++round) {
    fill_squares(plan, round, plan, scratch);
    at_level<chirp_spectra>()->run(plan, scratch, plan.filter[round]);
  }
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
    plan.filter[0] = memory.take<double>(filter_scalars(plan));
    bins = memory.take<double>(4 * plan.circle);
  }

  void collect() const noexcept {
    for_each_bin(plan, [this](index lane, index bin) {
      const double* const at = lane_at(plan.filter[0], plan.lanes, lane);
      for (index part = 0; part < 2; ++part) {
        bins[4 * bin + part] = at[part];
        bins[4 * bin + 2 + part] = at[plan.lanes + part];
      }
    });
  }
};

void fill_filter(const chirp_plan<float>& plan, int round, const wide_filter& wide) noexcept {
  fill_squares(plan, round, wide.plan, wide.scratch);
  at_level<chirp_spectra>()->run(wide.plan, wide.scratch, wide.plan.filter[0]);
  wide.collect();
  for_each_bin(plan, [&plan, &wide, round](index lane, index bin) {
    float* const at = lane_at(plan.filter[round], plan.lanes, lane);
    for (index part = 0; part < 2; ++part) {
      at[part] = static_cast<float>(wide.bins[4 * bin + part]);
      at[plan.lanes + part] = static_cast<float>(wide.bins[4 * bin + 2 + part]);
    }
  });
}

status fill(chirp_plan<float>& plan, scratch_memory<float>&) noexcept {
  wide_filter wide;
  choose_passes(wide.plan, plan.circle, at_level<chirp_kernels<double>>()->widest_lanes);
  carver needed(nullptr);
  wide.carve(needed);
  const passing_table<std::byte> block(needed.taken() + alignment);
  if (block.get() == nullptr) return failed;
  carver memory(align(block.get()));
  wide.carve(memory);
  fill_transforms(wide.plan);
  for (int round = 0; round < plan.rounds; ++round) fill_filter(plan, round, wide);
  return ok;
}

// Mixed lengths have positive keys in the same list.
index key_of(index points) noexcept { return -(points * 4 + static_cast<index>(isa::current())); }

// Two where scratch memory, chirp and filter of one, 2 N points each, leave the second cache.
template <class T> int rounds_of(index points) noexcept {
  return 3 * 4 * points * index{sizeof(T)} > machine::caches().second ? 2 : 1;
}

template <class T> int narrowest_lanes(int rounds) noexcept {
  const auto* const level = at_level<chirp_kernels<T>>();
  return rounds == 1 ? level->narrowest_lanes : level->widest_lanes;
}

template <class T> chirp_plan<T> lay_out(index points) noexcept {
  const int widest = at_level<chirp_kernels<T>>()->widest_lanes;
  chirp_plan<T> plan = {};
  plan.points = points;
  plan.rounds = rounds_of<T>(points);
  choose_circle(plan, ceiling(points, plan.rounds), widest, narrowest_lanes<T>(plan.rounds));
  plan.scale[1] = static_cast<T>(1 / balance(all_points(plan)));
  plan.scale[0] = plan.scale[1] / static_cast<T>(points);
  return plan;
}

// Cycles of one unit of the cost of circles, with vectors of 512 bits and of 256; and what two rounds, which
// leave the second cache, take longer.
template <class T> constexpr double wide_cycles = sizeof(T) == sizeof(double) ? 2.05 : 2.3;
template <class T> constexpr double narrow_cycles = sizeof(T) == sizeof(double) ? 1.5 : 1.8;
constexpr double round_cost = 1.4;

}  // namespace

template <class T> double chirp_cost(index points) noexcept {
  const int widest = at_level<chirp_kernels<T>>()->widest_lanes;
  const int rounds = rounds_of<T>(points);
  const double cycles = widest * index{sizeof(T)} < 64 ? narrow_cycles<T> : wide_cycles<T>;
  return cycles * (rounds == 1 ? 1 : rounds * round_cost) *
         circle_cost<T>(ceiling(points, rounds), widest, narrowest_lanes<T>(rounds));
}

template <class T> const chirp_plan<T>* find_chirp_plan(recent_list& plans, index points) noexcept {
  return kept_plan<chirp_plan<T>>(plans.find(key_of(points)));
}

template <class T>
const chirp_plan<T>* make_chirp_plan(recent_list& plans, scratch_memory<T>& scratch, index points) noexcept {
  status filled = failed;
  const auto* const plan = keep_plan(
      lay_out<T>(points), carve<T>,
      [&filled, &scratch](chirp_plan<T>& fresh) {
        fill_transforms(fresh);
        if (fresh.rounds > 1) fill_entries(fresh);
        filled = fill(fresh, scratch);
      },
      [&plans, key = key_of(points)](index bytes) { return plans.append(key, bytes); });
  if (plan != nullptr && filled != ok) return plans.drop_first(), nullptr;
  return plan;
}

template double chirp_cost<double>(index) noexcept;
template double chirp_cost<float>(index) noexcept;
template const chirp_plan<double>* find_chirp_plan(recent_list&, index) noexcept;
template const chirp_plan<float>* find_chirp_plan(recent_list&, index) noexcept;
template const chirp_plan<double>* make_chirp_plan(recent_list&, scratch_memory<double>&, index) noexcept;
template const chirp_plan<float>* make_chirp_plan(recent_list&, scratch_memory<float>&, index) noexcept;

}  // namespace sigpak::kernels
