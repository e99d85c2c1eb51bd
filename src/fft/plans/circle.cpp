// SPDX-License-Identifier: MIT
// Which circle is the cheapest, by what the passes over it cost.
#include "fft/plans/circle.h"

#include <algorithm>
#include <iterator>

#include "fft/plans/pass_tables.h"
#include "fft/plans/radices.h"

namespace sigpak::kernels {
namespace {

// Costs per vector, there and back, relative to each other; measured, and 0.8 on top where there is a factor
// of 3, whose rounding errors are the largest.
struct pass_cost {
  int radix;
  double cost;
};
constexpr pass_cost inner_costs[] = {{12, 7.1}, {10, 5.7}, {8, 5.2}, {7, 5.5},
                                     {6, 5.2},  {5, 4.3},  {4, 3.8}, {3, 4.1}};
constexpr pass_cost outer_costs[] = {{8, 5.6}, {5, 4.8}, {4, 3.9}, {3, 4.2}, {1, 2.9}};
constexpr pass_cost core_costs[] = {{4, 11.0}, {8, 11.0}, {16, 13.0}};

constexpr index largest_factor = 7;

struct path {
  double cost = 0;
  int passes = 0;
  int radix[most_passes] = {};
  void take(const pass_cost& pass) noexcept {
    radix[passes++] = pass.radix;
    cost += pass.cost;
  }
};

// Radices from large to small, so that no set of them is tried twice.
void search(path& best, const path& begun, index rest, int from) noexcept {
  if (best.passes > 0 && begun.cost >= best.cost) return;
  if (rest == 1) {
    best = begun;
    return;
  }
  if (begun.passes == most_passes - 1) return;
  for (int k = from; k < std::ssize(inner_costs); ++k) {
    if (rest % inner_costs[k].radix != 0) continue;
    path longer = begun;
    longer.take(inner_costs[k]);
    search(best, longer, rest / inner_costs[k].radix, k);
  }
}

// All passes before the core, which take this many vectors to one; none if the passes do not fit.
path passes_before_core(index vectors) noexcept {
  path best;
  if (!is_smooth(vectors, largest_factor)) return best;
  for (const pass_cost& outer : outer_costs) {
    if (vectors % outer.radix != 0) continue;
    path begun;
    begun.take(outer);
    search(best, begun, vectors / outer.radix, 0);
  }
  return best;
}

// A pass reads as many streams of vectors as its radix. Streams a multiple of this many bytes apart meet in
// one set of the first cache, which holds only so many of them.
constexpr index aliased_bytes = 4096;
constexpr int most_aliased = 8;

// Powers of two outside, so that the inner products, which are the strides, have fewer of them.
void order(path& passes) noexcept {
  const auto before = [](int a, int b) {
    const int twos_a = a & -a;
    const int twos_b = b & -b;
    return twos_a != twos_b ? twos_a > twos_b : a > b;
  };
  std::sort(passes.radix + 1, passes.radix + passes.passes, before);
}

double aliasing_cost(const path& passes, index vector_bytes) noexcept {
  double cost = 0;
  index stride = passes.radix[passes.passes - 1];
  for (int pass = passes.passes - 2; pass > 0; --pass) {
    const int radix = passes.radix[pass];
    for (const pass_cost& inner : inner_costs) {
      const bool aliased = radix > most_aliased && stride * vector_bytes % aliased_bytes == 0;
      if (inner.radix == radix && aliased) cost += inner.cost;
    }
    stride *= radix;
  }
  return cost;
}

struct circle {
  double cost = 0;  // 0 while there is none
  index points = 0;
  int lanes = 0;
  path passes;
};

template <class T> void consider(circle& best, index points, int lanes, const pass_cost& core) noexcept {
  const index vectors = 2 * points / lanes;
  path passes = passes_before_core(vectors / core.radix);
  if (passes.passes == 0) return;
  order(passes);
  passes.take(core);
  const index vector_bytes = 2 * lanes * static_cast<index>(sizeof(T));
  const double cost = (passes.cost + aliasing_cost(passes, vector_bytes)) * static_cast<double>(vectors);
  if (best.cost == 0 || cost < best.cost) best = {cost, points, lanes, passes};
}

// The core takes whole groups, each of as many vectors as there are pairs of lanes: one or two, of two pairs
// up to four.
bool has_core(int radix, int lanes) noexcept {
  return radix == lanes / 2 || radix == lanes || (lanes == 4 && radix == 8);
}

template <class T> void lay_out(chirp_plan<T>& plan, const circle& chosen) noexcept {
  plan.circle = chosen.points;
  plan.lanes = chosen.lanes;
  plan.vectors = 2 * chosen.points / chosen.lanes;
  plan.passes = chosen.passes.passes;
  for (int pass = 0; pass < plan.passes; ++pass) plan.radix[pass] = chosen.passes.radix[pass];
  lay_out_blocks(plan);
  plan.stride = plan.vectors / plan.radix[0] + 1;  // away from the strides of powers of two
}

template <class T> circle cheapest_circle(index points, int widest, int narrowest) noexcept {
  circle best;
  for (int lanes = widest; lanes >= narrowest; lanes /= 2) {
    for (const pass_cost& core : core_costs) {
      if (!has_core(core.radix, lanes)) continue;
      const index step = lanes / 2 * core.radix;
      const index least = (points + step - 1) / step;
      // Up to the next number with three leading bits, or to 3 from 2, which passes reach.
      for (index rest = least; 4 * rest <= 5 * least + 4; ++rest) consider<T>(best, step * rest, lanes, core);
    }
  }
  return best;
}

}  // namespace

template <class T> void choose_circle(chirp_plan<T>& plan, index points, int widest, int narrowest) noexcept {
  lay_out(plan, cheapest_circle<T>(points, widest, narrowest));
}

template <class T> double circle_cost(index points, int widest, int narrowest) noexcept {
  return cheapest_circle<T>(points, widest, narrowest).cost;
}

template <class T> void choose_passes(chirp_plan<T>& plan, index points, int lanes) noexcept {
  circle best;
  for (const pass_cost& core : core_costs) {
    if (has_core(core.radix, lanes) && points % (lanes / 2 * core.radix) == 0) {
      consider<T>(best, points, lanes, core);
    }
  }
  lay_out(plan, best);
}

template void choose_circle(chirp_plan<double>&, index, int, int) noexcept;
template void choose_circle(chirp_plan<float>&, index, int, int) noexcept;
template double circle_cost<double>(index, int, int) noexcept;
template double circle_cost<float>(index, int, int) noexcept;
template void choose_passes(chirp_plan<double>&, index, int) noexcept;
template void choose_passes(chirp_plan<float>&, index, int) noexcept;

}  // namespace sigpak::kernels
