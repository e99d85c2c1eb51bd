// The tables of the wide transforms, one set per length and number of lanes.
#include "fft/plans/lane_plan.h"

#include <bit>

#include "core/memory.h"
#include "fft/plans/pass_tables.h"

namespace sigpak::kernels {

constinit fft_sizes long_sizes = {index{1} << 13, index{1} << 22, index{1} << 24};

namespace {

template <class T> constinit keyed_list<std::byte> plans;

// M as a product of radices: eights, then fours.
template <class T> void choose_radices(fft_plan<T>& plan) noexcept {
  int bits = std::countr_zero(static_cast<std::uint64_t>(plan.vectors));
  plan.passes = 0;
  if (bits == 4) {
    plan.radix[plan.passes++] = 16;
    bits = 0;
  }
  for (; bits > 0; bits -= bits == 4 || bits == 2 ? 2 : 3) {
    plan.radix[plan.passes++] = bits == 4 || bits == 2 ? 4 : 8;
  }
  lay_out_blocks(plan);
}

// Groups of consecutive kb, with one vector of twiddles per lane but the first.
template <class T> void fill_by_group(T* out, const fft_plan<T>& plan, const roots& w) noexcept {
  const int lanes = plan.lanes;
  for (index kb = 0; kb < plan.vectors; kb += lanes) {
    for (index l = 1; l < lanes; ++l, out += 2 * lanes) {
      for (int p = 0; p < lanes; ++p) {
        const root r = w[l * (kb + point_at<T>(p, lanes))];
        out[p] = static_cast<T>(rounded(r.cosine));
        out[lanes + p] = static_cast<T>(rounded(r.sine));
      }
    }
  }
}

// One vector of twiddles for all lanes.
template <class T> T* fill_lanes(T* out, const fft_plan<T>& plan, index kb, const roots& w) noexcept {
  const int lanes = plan.lanes;
  for (int p = 0; p < lanes; ++p) {
    const root r = w[point_at<T>(p, lanes) * kb];
    out[p] = static_cast<T>(rounded(r.cosine));
    out[lanes + p] = static_cast<T>(rounded(r.sine));
  }
  return out + 2 * lanes;
}

// In the order of the places, from one to that so many behind.
template <class T> void fill_by_place(T* out, const fft_plan<T>& plan, index step, const roots& w) noexcept {
  for (index at = 0; at < plan.vectors; at += step) out = fill_lanes(out, plan, output(plan, at), w);
}

template <class T> void fill_steps(T* out, const fft_plan<T>& plan, const roots& w) noexcept {
  const int radix = plan.radix[plan.passes - 1];
  for (index k = 1; k < radix; ++k) out = fill_lanes(out, plan, k * (plan.vectors / radix), w);
}

template <class T> void fill_places(std::uint32_t* start, fft_plan<T>& plan) noexcept {
  for (index p = 0; p < plan.group; ++p) plan.offset[p] = place(plan, p);
  for (index kb = 0; kb < plan.vectors; kb += plan.group) {
    start[kb / plan.group] = static_cast<std::uint32_t>(place(plan, kb));
  }
}

template <class T> void fill_unpack(T* out, const fft_plan<T>& plan, const roots& w) noexcept {
  for (index k = 0; k < plan.vectors; ++k) {
    const root r = w[k * plan.lanes];
    *out++ = static_cast<T>(rounded(r.cosine));
    *out++ = static_cast<T>(rounded(r.sine));
  }
}

template <class T> struct plan_tables {
  T* unpack;
  std::uint32_t* result;
  T* passes[most_passes];
  T* last;
  T* steps;
  std::uint32_t* start;
};

// Places from one vector of twiddles of the last transform to the next.
template <class T> index last_step(const fft_plan<T>& plan) noexcept {
  constexpr index stepped_from = index{1} << 16;
  return plan.points >= stepped_from ? plan.radix[plan.passes - 1] : 1;
}

template <class T> plan_tables<T> carve(const fft_plan<T>& plan, data kind, carver& memory) noexcept {
  plan_tables<T> tables = {};
  for (int pass = 0; pass < turning_passes(plan); ++pass) {
    tables.passes[pass] = memory.take<T>(2 * broadcasts(plan, pass));
  }
  if (kind == data::real) {
    tables.last = memory.take<T>(2 * (plan.lanes - 1) * plan.vectors);
  } else {
    const index step = last_step(plan);
    tables.last = memory.take<T>(2 * plan.lanes * (plan.vectors / step));
    if (step > 1) tables.steps = memory.take<T>(2 * plan.lanes * (step - 1));
  }
  tables.start = memory.take<std::uint32_t>(plan.vectors / plan.group);
  if (kind == data::real) {
    tables.unpack = memory.take<T>(2 * plan.vectors);
    tables.result = memory.take<std::uint32_t>(plan.vectors / plan.radix[plan.passes - 1]);
  }
  return tables;
}

template <class T>
void fill(fft_plan<T>& plan, data kind, const plan_tables<T>& tables, const roots& w) noexcept {
  if (kind == data::real) {
    fill_by_group(tables.last, plan, w);
  } else {
    fill_by_place(tables.last, plan, last_step(plan), w);
    if (tables.steps != nullptr) fill_steps(tables.steps, plan, w);
  }
  for (int pass = 0; pass < turning_passes(plan); ++pass) fill_pass(tables.passes[pass], plan, pass, w);
  fill_places(tables.start, plan);
  if (kind == data::real) {
    fill_unpack(tables.unpack, plan, w);
    fill_results(tables.result, plan);
  }
  plan.unpack = tables.unpack;
  plan.result = tables.result;
  for (int pass = 0; pass < most_passes; ++pass) plan.twiddles[pass] = tables.passes[pass];
  plan.last = tables.last;
  plan.steps = tables.steps;
  plan.start = tables.start;
}

constexpr index padding_from = 4096;
constexpr int first_cache_ways = 8;

}  // namespace

template <class T> const fft_plan<T>* find_plan(index points, int lanes, data kind) noexcept {
  const index key = (points * most_lanes + lanes - 1) * 2 + static_cast<int>(kind);
  if (std::byte* const known = plans<T>.find(key); known != nullptr) {
    return reinterpret_cast<const fft_plan<T>*>(align(known));
  }
  fft_plan<T> plan = {};
  plan.points = points;
  plan.lanes = lanes;
  plan.vectors = kind == data::real ? points / lanes / 2 : points / lanes;
  plan.scale = (kind == data::real ? T(0.5) : T(1)) / static_cast<T>(points);
  choose_radices(plan);
  const index bytes = 2 * points * static_cast<index>(sizeof(T));
  plan.collected = kind == data::complex && (bytes >= long_sizes.collected ||
                                             (lanes > first_cache_ways && points >= long_sizes.crowded));
  plan.streamed = plan.collected && bytes >= long_sizes.streamed;
  plan.group = kind == data::real ? lanes : lanes / 2;
  plan.stride = plan.vectors / plan.radix[0] + (points >= padding_from ? 1 : 0);
  carver needed(nullptr);
  needed.take<fft_plan<T>>(1);
  carve(plan, kind, needed);
  const roots w(points);
  std::byte* const block = plans<T>.append(key, needed.taken() + alignment);
  if (block == nullptr) return nullptr;
  carver memory(align(block));
  auto* const kept = memory.take<fft_plan<T>>(1);
  fill(plan, kind, carve(plan, kind, memory), w);
  *kept = plan;
  return kept;
}

template <class T> void release_plans() noexcept { plans<T>.release(); }

template const fft_plan<double>* find_plan(index, int, data) noexcept;
template const fft_plan<float>* find_plan(index, int, data) noexcept;
template void release_plans<double>() noexcept;
template void release_plans<float>() noexcept;

}  // namespace sigpak::kernels
