// SPDX-License-Identifier: MIT
// The plans of the transforms of products of short lengths.
#include "fft/plans/product_plan.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "core/recent_list.h"
#include "fft/plans/butterfly_costs.h"
#include "fft/plans/pass_tables.h"
#include "fft/plans/radices.h"
#include "fft/wide/kernels.h"
#include "vectors/levels.h"

namespace sigpak::kernels {
namespace {

constexpr int level_count = std::size(isa::levels);
constexpr int short_keys = static_cast<int>(most_short_product + 1) * level_count;
template <class T> constinit published<std::byte, short_keys> short_plans;

// Beside the butterflies:
constexpr double loop_cost = 1.5;  // of the butterflies of one row
constexpr double crowd_cost = 2;   // of a vector of output among many in one set of the first cache

constexpr butterfly_table wide_costs(8, true);
constexpr bool is_radix(index n) noexcept { return n <= most_radix && wide_costs[n].row > 0; }

constexpr index largest_factor = 13;  // that is prime

constexpr index ceiling(index a, index b) noexcept { return (a + b - 1) / b; }

struct factors {
  int lanes = 0;
  int passes = 0;  // 0 where there are none
  int radix[most_factors] = {};
  double cost = 0;
};

// Of all products with first factor A and the others in rising order, the one of the least cost.
class factor_search {
 public:
  factor_search(index points, int lanes, index scalar_bytes) noexcept
      : points_(points),
        vector_points_(lanes / 2),
        costs_(lanes, scalar_bytes == index{sizeof(double)}),
        caches_(lanes * scalar_bytes, false) {
    begun_.lanes = lanes;
  }

  void run(factors& best) noexcept {
    const index vectors = points_ / vector_points_;
    const double passages = 2 * static_cast<double>(vectors) * caches_.passage(vectors);
    for (index a = vector_points_; a <= most_radix; ++a) {
      const index rows = points_ / a;
      if (!is_radix(a) || points_ % a != 0 || rows < vector_points_) continue;
      row_vectors_ = ceiling(a, vector_points_);
      const auto groups = static_cast<double>(ceiling(rows, vector_points_));
      begun_.radix[0] = static_cast<int>(a);
      begun_.passes = 1;
      extend(best, rows, rows, 2, groups * costs_[a].column + passages);
    }
  }

 private:
  // `swept` rows were left by the pass before.
  void extend(factors& best, index swept, index rest, int least, double cost) noexcept {
    if (begun_.passes == most_factors || (best.passes > 0 && best.cost <= cost)) return;
    const index rows = points_ / begun_.radix[0];
    const double sweep = caches_.sweep(swept * row_vectors_);
    for (int radix = least; radix <= most_radix && radix <= rest; ++radix) {
      if (!is_radix(radix) || rest % radix != 0) continue;
      const bool is_last = radix == rest;
      const double butterfly =
          radix * sweep + (is_last ? costs_[radix].result + crowding(radix) : costs_[radix].row);
      const double sum = cost + static_cast<double>(rows / radix) *
                                    (loop_cost + static_cast<double>(row_vectors_) * butterfly);
      begun_.radix[begun_.passes++] = radix;
      is_last ? consider(best, sum) : extend(best, rest, rest / radix, radix, sum);
      --begun_.passes;
    }
  }
  double crowding(int radix) const noexcept {
    const bool crowded =
        caches_.is_crowded(radix, points_ / radix / vector_points_) && points_ / radix % vector_points_ == 0;
    return crowded ? radix * crowd_cost : 0;
  }
  void consider(factors& best, double cost) noexcept {
    if (best.passes > 0 && best.cost <= cost) return;
    best = begun_;
    best.cost = cost;
  }

  index points_;
  index vector_points_;
  butterfly_table costs_;
  pass_costs caches_;
  index row_vectors_ = 0;
  factors begun_;
};

// Beyond the second cache data and scratch memory are swept too often.
template <class T> bool leaves_cache(index points) noexcept {
  return points > most_short_product && 4 * points * index{sizeof(T)} > machine::caches().second;
}

template <class T> bool suits_products(const product_kernels<T>* level, index points) noexcept {
  return level != nullptr && is_smooth(points, largest_factor) && !leaves_cache<T>(points);
}

template <class T> factors choose_factors(index points) noexcept {
  factors best;
  const auto* const level = at_level<product_kernels<T>>();
  if (!suits_products(level, points)) return best;
  for (int lanes = level->widest_lanes; lanes >= level->narrowest_lanes; lanes /= 2) {
    factor_search(points, lanes, index{sizeof(T)}).run(best);
  }
  return best;
}

// Whether the largest radices first, so many at most, make up the rows.
bool has_radices(index rows, int most) noexcept {
  for (int radix = most_radix; radix > 1; --radix) {
    for (; is_radix(radix) && rows % radix == 0; rows /= radix, --most) {
    }
  }
  return rows == 1 && most >= 0;
}

template <class T> product_plan<T> lay_out(index points) noexcept {
  const factors chosen = choose_factors<T>(points);
  product_plan<T> plan = {};
  plan.points = points;
  plan.lanes = chosen.lanes;
  plan.passes = chosen.passes;
  std::copy_n(chosen.radix, chosen.passes, plan.radix);
  plan.rows = points / plan.radix[0];
  index block = plan.rows;
  for (int pass = 1; pass < plan.passes; ++pass) {
    plan.block[pass] = block;
    block /= plan.radix[pass];
  }
  constexpr index scalar_bytes = index{sizeof(T)};
  const pass_costs costs = costs_of<T>(plan.lanes);
  const index row_vectors = ceiling(plan.radix[0], plan.lanes / 2);
  plan.stride = row_vectors * (plan.lanes / 2);
  plan.resident = 2 * costs.resident() / row_vectors;
  plan.is_stepped = 3 * scalar_bytes * 2 * points > costs.caches().second / 8 * 9;
  const long double scale = 1.0L / static_cast<long double>(points);
  plan.scale = T(1) / static_cast<T>(points);
  if (sizeof(T) == sizeof(float) && static_cast<long double>(plan.scale) > scale)
    plan.scale = std::nextafter(plan.scale, T(0));
  plan.scale_rest = static_cast<T>(scale - static_cast<long double>(plan.scale));
  return plan;
}

template <class T> index column_groups(const product_plan<T>& plan) noexcept {
  return ceiling(plan.rows, plan.lanes / 2);
}
template <class T> index last_blocks(const product_plan<T>& plan) noexcept {
  return plan.rows / plan.radix[plan.passes - 1];
}

template <class T> void carve(product_plan<T>& plan, carver& memory) noexcept {
  const index turned = plan.radix[0] - 1;
  plan.twiddles = memory.take<T>(plan.lanes * turned * (plan.is_stepped ? 1 : column_groups(plan)));
  plan.firsts = plan.is_stepped ? memory.take<T>(2 * turned * column_groups(plan)) : nullptr;
  for (int pass = 1; pass < plan.passes - 1; ++pass) {
    plan.turns[pass] = memory.take<T>(2 * plan.block[pass + 1] * (plan.radix[pass] - 1));
  }
  plan.order = memory.take<std::uint32_t>(last_blocks(plan));
}

template <class T> void fill_twiddles(const product_plan<T>& plan, const roots& w) noexcept {
  const index vector_points = plan.lanes / 2;
  T* out = plan.twiddles;
  T* first = plan.firsts;
  for (index group = 0; group < column_groups(plan); ++group) {
    const index n2 = std::min(group * vector_points, plan.rows - vector_points);
    if (plan.is_stepped) {
      for (index k1 = 1; k1 < plan.radix[0]; ++k1, first += 2) put_root(first, 1, w[n2 * k1]);
      if (group > 0) continue;
    }
    for (index k1 = 1; k1 < plan.radix[0]; ++k1) {
      for (index p = 0; p < vector_points; ++p, out += 2) put_root(out, 1, w[(n2 + p) * k1]);
    }
  }
}

template <class T> void fill_turns(const product_plan<T>& plan, const roots& w) noexcept {
  for (int pass = 1; pass < plan.passes - 1; ++pass) {
    T* out = plan.turns[pass];
    const index step = plan.points / plan.block[pass];
    for (index i = 0; i < plan.block[pass + 1]; ++i) {
      for (index j = 1; j < plan.radix[pass]; ++j, out += 2) put_root(out, 1, w[i * j * step]);
    }
  }
}

// The digits of k2 that the passes before the last have found, the first of the lowest weight.
template <class T> void fill_order(const product_plan<T>& plan) noexcept {
  for (index block = 0; block < last_blocks(plan); ++block) {
    index rest = block;
    index weight = last_blocks(plan);
    index k2 = 0;
    for (int pass = plan.passes - 2; pass > 0; --pass) {
      weight /= plan.radix[pass];
      k2 += rest % plan.radix[pass] * weight;
      rest /= plan.radix[pass];
    }
    plan.order[block] = static_cast<std::uint32_t>(k2);
  }
}

template <class T> void fill(product_plan<T>& plan) noexcept {
  const roots w(plan.points);
  fill_twiddles(plan, w);
  fill_turns(plan, w);
  fill_order(plan);
}

// Those of mixed plans in the same list are lanes - 1 above the multiples of most_lanes, four lanes at least.
index key_of(index points) noexcept { return points * most_lanes + static_cast<index>(isa::current()); }
int short_key(index points) noexcept {
  return static_cast<int>(points) * level_count + static_cast<int>(isa::current());
}

}  // namespace

// Without the search for the best one.
template <class T> bool has_product_plan(index points) noexcept {
  const auto* const level = at_level<product_kernels<T>>();
  if (!suits_products(level, points)) return false;
  const index least = level->narrowest_lanes / 2;
  for (index a = least; a <= most_radix && a * least <= points; ++a) {
    if (is_radix(a) && points % a == 0 && has_radices(points / a, most_factors - 1)) return true;
  }
  return false;
}

template <class T> double product_cost(index points) noexcept { return choose_factors<T>(points).cost; }

template <class T> const product_plan<T>* find_product_plan(recent_list& plans, index points) noexcept {
  return kept_plan<product_plan<T>>(plans.find(key_of(points)));
}

template <class T> const product_plan<T>* make_product_plan(recent_list& plans, index points) noexcept {
  return keep_plan(lay_out<T>(points), carve<T>, fill<T>,
                   [&plans, key = key_of(points)](index bytes) { return plans.append(key, bytes); });
}

template <class T> const product_plan<T>* find_short_product_plan(index points) noexcept {
  return kept_plan<product_plan<T>>(short_plans<T>.find(short_key(points)));
}

template <class T> const product_plan<T>* make_short_product_plan(index points) noexcept {
  return publish_plan(short_plans<T>, short_key(points), lay_out<T>(points), carve<T>, fill<T>);
}

template <class T> void release_short_product_plans() noexcept { short_plans<T>.release(); }

template bool has_product_plan<double>(index) noexcept;
template bool has_product_plan<float>(index) noexcept;
template double product_cost<double>(index) noexcept;
template double product_cost<float>(index) noexcept;
template const product_plan<double>* find_product_plan(recent_list&, index) noexcept;
template const product_plan<float>* find_product_plan(recent_list&, index) noexcept;
template const product_plan<double>* make_product_plan(recent_list&, index) noexcept;
template const product_plan<float>* make_product_plan(recent_list&, index) noexcept;
template const product_plan<double>* find_short_product_plan(index) noexcept;
template const product_plan<float>* find_short_product_plan(index) noexcept;
template const product_plan<double>* make_short_product_plan(index) noexcept;
template const product_plan<float>* make_short_product_plan(index) noexcept;
template void release_short_product_plans<double>() noexcept;
template void release_short_product_plans<float>() noexcept;

}  // namespace sigpak::kernels
