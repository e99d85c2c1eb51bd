// SPDX-License-Identifier: MIT
// The plans of the transforms in place of lengths with a square factor.
#include "fft/plans/square_plan.h"

#include "core/recent_list.h"
#include "fft/plans/product_tables.h"
#include "fft/plans/radices.h"
#include "fft/wide/kernels.h"
#include "vectors/levels.h"

namespace sigpak::kernels {
namespace {

constexpr index least_points = 4096;

// Factors A of which the level has squares.
constexpr index outer_factors[] = {20, 16, 14, 12, 10, 8};

constexpr bool divides(index a, index points, index vector_points) noexcept {
  return a % vector_points == 0 && points % (a * a) == 0;
}

// Whether lines that hold several vectors are driven out from one to the next, by so many streams in one set
// of the first cache.
bool loses_lines(index a, index vectors, index vector_bytes, const pass_costs& caches) noexcept {
  return vector_bytes < index{machine::line_bytes} && a > caches.caches().first_ways &&
         caches.in_one_set(vectors / a);
}

// The columns and the squares in place beside what the blocks take, whose own columns stand for the squares.
double cost_of(const factors& block, index points, index scalar_bytes) noexcept {
  const butterfly_table costs(block.lanes, scalar_bytes == index{sizeof(double)});
  const pass_costs caches(block.lanes * scalar_bytes, false);
  const index a = block.radix[0];
  const index vectors = 2 * points / block.lanes;
  const auto all = static_cast<double>(vectors);
  const double crowding = loses_lines(a, vectors, block.lanes * scalar_bytes, caches) ? crowd_cost : 0;
  return static_cast<double>(a) * block.cost + all / static_cast<double>(a) * costs[a].row +
         2 * all * (caches.sweep(vectors) + crowding);
}

// Fewer lanes pay where the second cache does not hold the data alone.
template <class T> int narrowest(const product_kernels<T>& level, index points) noexcept {
  const bool leaves_cache = 2 * index{sizeof(T)} * points > machine::caches().second;
  return leaves_cache ? level.narrowest_lanes : level.widest_lanes;
}

// Of the blocks of the best square, with the cost of all.
template <class T> factors choose_blocks(index points) noexcept {
  factors best;
  const auto* const level = at_level<product_kernels<T>>();
  if (level == nullptr || points < least_points || !is_smooth(points, most_short_prime)) return best;
  for (int lanes = level->widest_lanes; lanes >= narrowest<T>(*level, points); lanes /= 2) {
    for (const index a : outer_factors) {
      if (!divides(a, points, lanes / 2)) continue;
      factors block;
      factor_search(points / a, lanes, index{sizeof(T)}).run(block, a);
      if (block.passes < 3) continue;
      block.cost = cost_of(block, points, index{sizeof(T)});
      if (best.passes == 0 || block.cost < best.cost) best = block;
    }
  }
  return best;
}

template <class T> square_plan<T> lay_out(index points) noexcept {
  const factors chosen = choose_blocks<T>(points);
  square_plan<T> plan = {};
  plan.points = points;
  plan.block = lay_out_product<T>(points / chosen.radix[0], chosen);
  plan.block.scale = 1;
  plan.block.scale_rest = T(0x1p-60);
  set_scale(plan, points);
  return plan;
}

// Vectors of columns.
template <class T> index column_vectors(const square_plan<T>& plan) noexcept {
  return 2 * plan.block.points / plan.block.lanes;
}

template <class T> void carve(square_plan<T>& plan, carver& memory) noexcept {
  const index turned = plan.block.radix[0] - 1;
  carve_rows(plan.block, memory);
  plan.firsts = memory.take<T>(2 * turned * ceiling(column_vectors(plan), columns_of_step));
  plan.steps = memory.take<T>(2 * plan.block.lanes * turned * columns_of_step);
  plan.turns = memory.take<T>(2 * plan.block.points);
}

template <class T> void fill_columns(const square_plan<T>& plan, const roots& w) noexcept {
  const index radix = plan.block.radix[0];
  const index vector_points = plan.block.lanes / 2;
  T* out = plan.firsts;
  for (index n = 0; n < plan.block.points; n += vector_points * columns_of_step) {
    for (index k1 = 1; k1 < radix; ++k1, out += 2) put_root(out, 1, w[n * k1]);
  }
  out = plan.steps;
  for (index n = 0; n < vector_points * columns_of_step; n += vector_points) {
    for (index k1 = 1; k1 < radix; ++k1) {
      for (index p = 0; p < vector_points; ++p, out += 2) {
        put_root(out, plan.block.lanes, w[(n + p) * k1]);
        put_root(out + 1, plan.block.lanes, w[(n + p) * k1]);
      }
      out += plan.block.lanes;
    }
  }
}

template <class T> void fill(square_plan<T>& plan) noexcept {
  const index radix = plan.block.radix[0];
  fill_columns(plan, roots(plan.points));
  const roots w(plan.block.points);
  fill_rows(plan.block, w);
  T* out = plan.turns;
  for (index kb = 0; kb < plan.block.rows; ++kb) {
    for (index l = 0; l < radix; ++l, out += 2) put_root(out, 1, w[l * kb]);
  }
}

// In the same list products have the level alone above the multiples of most_lanes, and mixed plans lanes
// - 1.
index key_of(index points) noexcept {
  return points * most_lanes + std::size(isa::levels) + static_cast<index>(isa::current());
}

}  // namespace

template <class T> bool has_square_plan(index points) noexcept { return choose_blocks<T>(points).passes > 0; }

template <class T> double square_cost(index points) noexcept { return choose_blocks<T>(points).cost; }

template <class T> const square_plan<T>* find_square_plan(recent_list& plans, index points) noexcept {
  return kept_plan<square_plan<T>>(plans.find(key_of(points)));
}

template <class T> const square_plan<T>* make_square_plan(recent_list& plans, index points) noexcept {
  return keep_plan(lay_out<T>(points), carve<T>, fill<T>,
                   [&plans, key = key_of(points)](index bytes) { return plans.append(key, bytes); });
}

template bool has_square_plan<double>(index) noexcept;
template bool has_square_plan<float>(index) noexcept;
template double square_cost<double>(index) noexcept;
template double square_cost<float>(index) noexcept;
template const square_plan<double>* find_square_plan(recent_list&, index) noexcept;
template const square_plan<float>* find_square_plan(recent_list&, index) noexcept;
template const square_plan<double>* make_square_plan(recent_list&, index) noexcept;
template const square_plan<float>* make_square_plan(recent_list&, index) noexcept;

}  // namespace sigpak::kernels
