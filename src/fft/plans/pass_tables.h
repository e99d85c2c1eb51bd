// SPDX-License-Identifier: MIT
// The parts that the plans of all wide transforms are made of.
#pragma once

#include <algorithm>
#include <limits>
#include <memory>

#include "core/power_of_two.h"
#include "core/published.h"
#include "fft/plans/pass_costs.h"
#include "fft/plans/roots_of_unity.h"
#include "fft/plans/sines.h"

namespace sigpak::kernels {

inline constexpr index alignment = 64;
constexpr index aligned(index bytes) noexcept { return (bytes + alignment - 1) / alignment * alignment; }

// Hands out the parts of one block of memory; without a block it only adds up what is needed.
class carver {
 public:
  explicit carver(std::byte* block) noexcept : block_(block) {}
  template <class E> E* take(index count) noexcept {
    std::byte* const at = block_ == nullptr ? nullptr : block_ + taken_;
    taken_ += aligned(count * static_cast<index>(sizeof(E)));
    return reinterpret_cast<E*>(at);
  }
  index taken() const noexcept { return taken_; }

 private:
  std::byte* block_;
  index taken_ = 0;
};

inline std::byte* align(std::byte* block) noexcept {
  return reinterpret_cast<std::byte*>(aligned(reinterpret_cast<index>(block)));
}

// Carves the plan and its tables out of one block of memory, which `append` gives by its bytes, and fills
// them. Null on failure.
template <class Plan, class Carve, class Fill, class Append>
const Plan* keep_plan(Plan plan, Carve carve, Fill fill, Append append) noexcept {
  carver needed(nullptr);
  needed.take<Plan>(1);
  carve(plan, needed);
  std::byte* const block = append(needed.taken() + alignment);
  if (block == nullptr) return nullptr;
  carver memory(align(block));
  auto* const kept = memory.take<Plan>(1);
  carve(plan, memory);
  fill(plan);
  return std::construct_at(kept, plan);
}

template <class Plan> const Plan* kept_plan(std::byte* block) noexcept {
  return block != nullptr ? reinterpret_cast<const Plan*>(align(block)) : nullptr;
}

// The same, published under a key for all threads.
template <int keys, class Plan, class Carve, class Fill>
const Plan* publish_plan(published<std::byte, keys>& plans, int key, Plan plan, Carve carve,
                         Fill fill) noexcept {
  std::byte* block = nullptr;
  keep_plan(plan, carve, fill, [&block](index bytes) { return block = allocate_table<std::byte>(bytes); });
  return block != nullptr ? kept_plan<Plan>(plans.keep(key, block)) : nullptr;
}

// Of powers of two below 2^31 and numbers of lanes.
inline constexpr int lane_numbers = std::bit_width(static_cast<unsigned>(most_lanes));
inline constexpr int plan_keys = 31 * lane_numbers;
constexpr int plan_key(index points, int lanes) noexcept {
  return address_bits(points) * lane_numbers + address_bits(lanes);
}

// The blocks of the passes, whose radices are chosen.
template <class T> void lay_out_blocks(pass_plan<T>& plan) noexcept {
  index block = plan.vectors;
  for (int pass = 0; pass < plan.passes; ++pass) {
    plan.block[pass] = block;
    block /= plan.radix[pass];
  }
  plan.resident = costs_of<T>(plan.lanes).resident();
}

// The same with these radices. Blocks that would crowd into a few sets of the first cache are put apart by a
// vector.
template <class T> void lay_out_blocks(pass_plan<T>& plan, const radix_list& list) noexcept {
  plan.passes = list.passes;
  std::copy_n(list.radix, list.passes, plan.radix);
  lay_out_blocks(plan);
  const index block = plan.vectors / plan.radix[0];
  plan.stride = block + (costs_of<T>(plan.lanes).is_crowded(plan.radix[0], block) ? 1 : 0);
}

template <class T> index place(const pass_plan<T>& plan, index kb) noexcept {
  index at = kb % plan.radix[0] * plan.stride;
  kb /= plan.radix[0];
  for (int pass = 1; pass < plan.passes; ++pass) {
    at += kb % plan.radix[pass] * (plan.block[pass] / plan.radix[pass]);
    kb /= plan.radix[pass];
  }
  return at;
}

template <class T> index broadcasts(const pass_plan<T>& plan, int pass) noexcept {
  return plan.block[pass] / plan.radix[pass] * (plan.radix[pass] - 1);
}

// The passes with broadcast twiddles: all but the last, whose would be 1, and of a single one those.
template <class T> int turning_passes(const pass_plan<T>& plan) noexcept {
  return plan.passes > 1 ? plan.passes - 1 : 1;
}

template <class T> void put_root(T* to, index distance, root r) noexcept {
  to[0] = static_cast<T>(rounded(r.cosine));
  to[distance] = static_cast<T>(rounded(r.sine));
}

// What twiddles are to be longer, so that results lack nothing as forward and inverse transforms do on
// average. Errors of sums cancel, but that of a constant is the same at every point: that of the scale, and
// of the sine of a third of a turn, of which a transform of 3 points takes on a third. Rounding keeps the
// length on average, as it meets every twiddle differently; so little that 1 stays 1.
template <class T> double missing_length(index points, long double scale) noexcept {
  constexpr long double sine = sine_of(1, 3);
  constexpr auto lacking_sine = static_cast<double>(1 - static_cast<long double>(T(sine)) / sine);
  constexpr double most = 0.4 * double{std::numeric_limits<T>::epsilon()};
  auto missing = static_cast<double>(1 - scale * static_cast<long double>(points)) / 2;
  for (; points % 3 == 0; points /= 3) missing += lacking_sine / 3;
  return std::clamp(missing, -most / 2, most);
}

template <class T> void carve_passes(pass_plan<T>& plan, carver& memory) noexcept {
  for (int pass = 0; pass < turning_passes(plan); ++pass) {
    plan.twiddles[pass] = memory.take<T>(2 * broadcasts(plan, pass));
  }
}

// w_L^(i j), i the butterfly and j its output, L the block, out of the roots of unity of this order.
template <class T> void fill_passes(pass_plan<T>& plan, index order, const roots& w) noexcept {
  for (int pass = 0; pass < turning_passes(plan); ++pass) {
    T* out = plan.twiddles[pass];
    const index step = order / plan.block[pass];
    const index count = plan.block[pass] / plan.radix[pass];
    for (index i = 0; i < count; ++i) {
      for (index j = 1; j < plan.radix[pass]; ++j, out += 2) put_root(out, 1, w[i * j * step]);
    }
  }
}

// The output at a place, with no padding counted: the inverse of `place`.
template <class T> index output(const pass_plan<T>& plan, index at) noexcept {
  index out = 0;
  index weight = 1;
  for (int pass = 0; pass < plan.passes; ++pass) {
    const index block = plan.block[pass] / plan.radix[pass];
    out += at / block * weight;
    at %= block;
    weight *= plan.radix[pass];
  }
  return out;
}

// Groups of outputs: the distances in a group, and where each of them starts.
template <class Plan> void fill_places(Plan& plan, int group) noexcept {
  for (index p = 0; p < group; ++p) plan.offset[p] = place(plan, p);
  for (index kb = 0; kb < plan.vectors; kb += group) {
    plan.start[kb / group] = static_cast<std::uint32_t>(place(plan, kb));
  }
}

template <class T> void fill_results(std::uint32_t* out, const pass_plan<T>& plan) noexcept {
  for (index at = 0; at < plan.vectors; at += plan.radix[plan.passes - 1]) {
    *out++ = static_cast<std::uint32_t>(output(plan, at));
  }
}

}  // namespace sigpak::kernels
