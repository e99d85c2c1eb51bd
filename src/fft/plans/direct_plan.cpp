// SPDX-License-Identifier: MIT
// The plans of the transform by the definition.
#include "fft/plans/direct_plan.h"

#include <iterator>

#include "core/isa.h"
#include "fft/plans/product_tables.h"
#include "fft/plans/radices.h"
#include "fft/wide/kernels.h"
#include "vectors/levels.h"

namespace sigpak::kernels {
namespace {

constexpr int level_count = std::size(isa::levels);
template <class T> constinit published<std::byte, (most_direct_points + 1) * level_count> plans;

int key_of(index points) noexcept {
  return static_cast<int>(points) * level_count + static_cast<int>(isa::current());
}

template <class T> index lanes_of_level() noexcept { return at_level<chirp_kernels<T>>()->widest_lanes; }

template <class T> direct_plan<T> lay_out(index points) noexcept {
  direct_plan<T> plan = {};
  plan.length = static_cast<int>(long_factor(points));
  plan.columns = static_cast<int>(points) / plan.length;
  set_scale(plan, points);
  return plan;
}

template <class T> void carve(direct_plan<T>& plan, carver& memory) noexcept {
  const index terms = plan.length / 2;
  const index lanes = lanes_of_level<T>();
  plan.table = memory.take<T>(2 * terms * lanes * ceiling(terms, lanes));
}

// The roots of one half are those of the other, conjugate.
template <class T> void fill(direct_plan<T>& plan) noexcept {
  const index p = plan.length;
  const int lanes = static_cast<int>(lanes_of_level<T>());
  const roots w(p);
  T* out = plan.table;
  for (index first = 1; 2 * first < p; first += lanes) {
    for (index j = 1; 2 * j < p; ++j, out += 2 * lanes) {
      for (int lane = 0; lane < lanes; ++lane) {
        const index at = j * (first + point_at<T>(lane, lanes)) % p;
        put_root(out + lane, lanes, 2 * at < p ? w[at] : conjugate(w[p - at]));
      }
    }
  }
}

}  // namespace

bool has_direct_plan(index points) noexcept {
  const index p = long_factor(points);
  return p > 1 && p <= most_direct_prime && points <= most_direct_columns * p;
}

template <class T> const direct_plan<T>* find_direct_plan(index points) noexcept {
  return kept_plan<direct_plan<T>>(plans<T>.find(key_of(points)));
}

template <class T> const direct_plan<T>* make_direct_plan(index points) noexcept {
  return publish_plan(plans<T>, key_of(points), lay_out<T>(points), carve<T>, fill<T>);
}

template <class T> void release_direct_plans() noexcept { plans<T>.release(); }

template const direct_plan<double>* find_direct_plan(index) noexcept;
template const direct_plan<float>* find_direct_plan(index) noexcept;
template const direct_plan<double>* make_direct_plan(index) noexcept;
template const direct_plan<float>* make_direct_plan(index) noexcept;
template void release_direct_plans<double>() noexcept;
template void release_direct_plans<float>() noexcept;

}  // namespace sigpak::kernels
