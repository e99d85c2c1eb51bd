// The tables of the wide transforms of lengths without large prime factors.
#include <bit>
#include <initializer_list>

#include "core/recent_list.h"
#include "fft/plans/lane_plan.h"
#include "fft/plans/pass_tables.h"

namespace sigpak::kernels {
namespace {

// Lengths are many, unlike powers of two, so only the plans of the last ones are kept.
constexpr index kept_bytes = index{64} << 20;
template <class T> constinit recent_list plans(kept_bytes);

struct radix_cost {
  int radix;
  double cost;  // of a pass, per vector, relative to the others
};
constexpr radix_cost odd_radices[] = {{13, 3.2}, {11, 2.6}, {7, 1.7}, {5, 1.3}, {3, 1.0}};
constexpr double even_cost = 1.2;
constexpr double transposition_cost = 1.5;

// Odd factors first, then eights, fours and a two. Passes stay 0 where a larger prime is left; the cost comes
// back.
template <class T> double choose_radices(fft_plan<T>& plan) noexcept {
  index rest = plan.vectors;
  double cost = 0;
  int passes = 0;
  const auto take = [&](int radix, double price) {
    plan.radix[passes++] = radix;
    rest /= radix;
    cost += price;
  };
  plan.passes = 0;
  for (const radix_cost& odd : odd_radices) {
    while (rest % odd.radix == 0 && passes < most_passes) take(odd.radix, odd.cost);
  }
  int bits = std::countr_zero(static_cast<std::uint64_t>(rest));
  if (rest != index{1} << bits) return cost;
  while (bits > 0 && passes < most_passes) {
    const int step = bits == 1 ? 1 : bits == 2 || bits == 4 ? 2 : 3;
    take(1 << step, even_cost);
    bits -= step;
  }
  if (rest == 1) plan.passes = passes;
  return cost;
}

bool is_smooth(index points) noexcept {
  for (const index p : {2, 3, 5, 7, 11, 13}) {
    while (points % p == 0) points /= p;
  }
  return points == 1;
}

struct split {
  index columns = 0;  // A, the length of the transforms over the columns; 0 where there is no split
  int lanes = 0;
  double cost = 0;
};

template <class T> void consider(split& best, index points, index a, int lanes) noexcept {
  const index b = points / a;
  if (a < lanes || b < lanes) return;
  fft_plan<T> over_columns = {};
  fft_plan<T> over_rows = {};
  over_columns.vectors = a;
  over_rows.vectors = b;
  const auto column_vectors = static_cast<double>((b + lanes - 1) / lanes * a);
  const auto row_vectors = static_cast<double>((a + lanes - 1) / lanes * b);
  const double cost = column_vectors * (choose_radices(over_columns) + transposition_cost) +
                      row_vectors * choose_radices(over_rows);
  if (over_columns.passes == 0 || over_rows.passes == 0) return;
  if (best.columns == 0 || cost < best.cost) best = {a, lanes, cost};
}

template <class T> split choose_split(index points, int widest) noexcept {
  split best;
  for (const int lanes : {widest, widest / 2}) {
    for (index a = 2; a * a <= points; ++a) {
      if (points % a != 0) continue;
      consider<T>(best, points, a, lanes);
      consider<T>(best, points, points / a, lanes);
    }
  }
  return best;
}

template <class T> fft_plan<T> lane_plan(index points, index length, int lanes) noexcept {
  fft_plan<T> plan = {};
  plan.points = points;
  plan.scale = T(1) / static_cast<T>(points);
  plan.vectors = length;
  plan.lanes = lanes;
  choose_radices(plan);
  lay_out_blocks(plan);
  plan.stride = length / plan.radix[0];
  return plan;
}

// Without `w` only the memory is laid out.
template <class T> void build_lanes(fft_plan<T>& plan, carver& memory, const roots* w) noexcept {
  for (int pass = 0; pass < turning_passes(plan); ++pass) {
    T* const table = memory.take<T>(2 * broadcasts(plan, pass));
    plan.twiddles[pass] = table;
    if (w != nullptr) fill_pass(table, plan, pass, *w);
  }
  auto* const start = memory.take<std::uint32_t>(plan.vectors);
  auto* const result = memory.take<std::uint32_t>(plan.vectors / plan.radix[plan.passes - 1]);
  plan.start = start;
  plan.result = result;
  if (w == nullptr) return;
  for (index k = 0; k < plan.vectors; ++k) start[k] = static_cast<std::uint32_t>(place(plan, k));
  fill_results(result, plan);
}

// w_N^(n2 k1) for groups of n2, the last of which overlaps the one before.
template <class T> void fill_twiddles(T* out, const mixed_plan<T>& plan, const roots& w) noexcept {
  const int lanes = plan.lanes;
  const index columns = plan.over_rows.vectors;
  for (index group = 0; group * lanes < columns; ++group) {
    const index n2 = group * lanes < columns - lanes ? group * lanes : columns - lanes;
    for (index k1 = 0; k1 < plan.over_columns.vectors; ++k1, out += 2 * lanes) {
      for (int p = 0; p < lanes; ++p) {
        const root r = w[(n2 + point_at<T>(p, lanes)) * k1];
        out[p] = static_cast<T>(rounded(r.cosine));
        out[lanes + p] = static_cast<T>(rounded(r.sine));
      }
    }
  }
}

template <class T> void build(mixed_plan<T>& plan, carver& memory, const roots* w) noexcept {
  build_lanes(plan.over_columns, memory, w);
  build_lanes(plan.over_rows, memory, w);
  const index groups = (plan.over_rows.vectors + plan.lanes - 1) / plan.lanes;
  T* const twiddles = memory.take<T>(2 * plan.lanes * groups * plan.over_columns.vectors);
  plan.twiddles = twiddles;
  if (w != nullptr) fill_twiddles(twiddles, plan, *w);
}

}  // namespace

template <class T> bool has_mixed_plan(index points, int widest) noexcept {
  return is_smooth(points) && choose_split<T>(points, widest).columns != 0;
}

template <class T> const mixed_plan<T>* find_mixed_plan(index points, int widest) noexcept {
  const index key = points * most_lanes + widest - 1;
  std::byte* const known = plans<T>.find(key);
  return known != nullptr ? reinterpret_cast<const mixed_plan<T>*>(align(known)) : nullptr;
}

template <class T> const mixed_plan<T>* make_mixed_plan(index points, int widest) noexcept {
  const split chosen = choose_split<T>(points, widest);
  mixed_plan<T> plan = {};
  plan.points = points;
  plan.lanes = chosen.lanes;
  plan.over_columns = lane_plan<T>(points, chosen.columns, chosen.lanes);
  plan.over_rows = lane_plan<T>(points, points / chosen.columns, chosen.lanes);
  carver needed(nullptr);
  needed.take<mixed_plan<T>>(1);
  build(plan, needed, nullptr);
  const roots w(points);
  std::byte* const block = plans<T>.append(points * most_lanes + widest - 1, needed.taken() + alignment);
  if (block == nullptr) return nullptr;
  carver memory(align(block));
  auto* const kept = memory.take<mixed_plan<T>>(1);
  build(plan, memory, &w);
  *kept = plan;
  return kept;
}

template <class T> void release_mixed_plans() noexcept { plans<T>.release(); }

template bool has_mixed_plan<double>(index, int) noexcept;
template bool has_mixed_plan<float>(index, int) noexcept;
template const mixed_plan<double>* find_mixed_plan(index, int) noexcept;
template const mixed_plan<float>* find_mixed_plan(index, int) noexcept;
template const mixed_plan<double>* make_mixed_plan(index, int) noexcept;
template const mixed_plan<float>* make_mixed_plan(index, int) noexcept;
template void release_mixed_plans<double>() noexcept;
template void release_mixed_plans<float>() noexcept;

}  // namespace sigpak::kernels
