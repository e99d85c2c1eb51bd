// SPDX-License-Identifier: MIT
// The plans of the transforms of products of short lengths.
#include "fft/plans/product_plan.h"

#include <algorithm>
#include <iterator>

#include "core/recent_list.h"
#include "fft/plans/product_tables.h"
#include "fft/plans/radices.h"
#include "fft/wide/kernels.h"
#include "vectors/levels.h"

namespace sigpak::kernels {
namespace {

constexpr int level_count = std::size(isa::levels);
constexpr int short_keys = static_cast<int>(most_short_product + 1) * level_count;
template <class T> constinit published<std::byte, short_keys> short_plans;

// The largest prime factor of a short length, which is not searched for: by a larger one the chirp is faster.
constexpr index most_prime_of_short = 97;

// Beyond the second cache data and scratch memory are swept too often.
template <class T> bool leaves_cache(index points) noexcept {
  return points > most_short_product && 4 * points * index{sizeof(T)} > machine::caches().second;
}

template <class T> bool suits_products(const product_kernels<T>* level, index points) noexcept {
  if (level == nullptr) return false;
  if (is_smooth(points, most_short_prime)) return !leaves_cache<T>(points);
  return is_smooth(points, points <= most_short_product ? most_prime_of_short : most_prime);
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
  for (index radix = std::min<index>(most_prime, rows); radix > 1; --radix) {
    for (; rows % radix == 0 && is_radix(radix); rows /= radix, --most) {
    }
  }
  return rows == 1 && most >= 0;
}

template <class T> product_plan<T> lay_out(index points) noexcept {
  auto plan = lay_out_product<T>(points, choose_factors<T>(points));
  constexpr index bytes = 2 * index{sizeof(T)};
  plan.is_stepped = 3 * bytes * points > machine::caches().second / 8 * 9;
  return plan;
}

template <class T> index column_groups(const product_plan<T>& plan) noexcept {
  return ceiling(plan.rows, plan.lanes / 2);
}

template <class T> void carve(product_plan<T>& plan, carver& memory) noexcept {
  const index turned = plan.radix[0] - 1;
  plan.twiddles = memory.take<T>(plan.lanes * turned * (plan.is_stepped ? 1 : column_groups(plan)));
  plan.firsts = plan.is_stepped ? memory.take<T>(2 * turned * column_groups(plan)) : nullptr;
  carve_rows(plan, memory);
}

template <class T> void fill_twiddles(const product_plan<T>& plan, const roots& w) noexcept {
  const index vector_points = plan.lanes / 2;
  const long double rest = sizeof(T) == sizeof(float) ? plan.scale_rest : 0;
  const double missing = missing_length<T>(plan.points, rest + static_cast<long double>(plan.scale));
  T* out = plan.twiddles;
  T* first = plan.firsts;
  for (index group = 0; group < column_groups(plan); ++group) {
    const index n2 = std::min(group * vector_points, plan.rows - vector_points);
    if (plan.is_stepped) {
      for (index k1 = 1; k1 < plan.radix[0]; ++k1, first += 2) put_root(first, 1, w[n2 * k1]);
      if (group > 0) continue;
    }
    for (index k1 = 1; k1 < plan.radix[0]; ++k1) {
      for (index p = 0; p < vector_points; ++p, out += 2) {
        put_root(out, 1, lengthened(w[(n2 + p) * k1], missing));
      }
    }
  }
}

template <class T> void fill(product_plan<T>& plan) noexcept {
  const roots w(plan.points);
  fill_twiddles(plan, w);
  fill_rows(plan, w);
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
  if (const index p = long_factor(points); p > 1) {
    return points / p >= least && has_radices(points / p, most_factors - 1);
  }
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
