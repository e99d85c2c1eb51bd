// The parts that the plans of all wide transforms are made of.
#pragma once

#include "core/record.h"
#include "fft/plans/pass_plan.h"
#include "fft/plans/roots_of_unity.h"

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

// The passes with the radices chosen so far, L = vectors.
template <class T> void lay_out_blocks(fft_plan<T>& plan) noexcept {
  index block = plan.vectors;
  for (int pass = 0; pass < plan.passes; ++pass) {
    plan.block[pass] = block;
    block /= plan.radix[pass];
  }
}

template <class T> index place(const fft_plan<T>& plan, index kb) noexcept {
  index at = kb % plan.radix[0] * plan.stride;
  kb /= plan.radix[0];
  for (int pass = 1; pass < plan.passes; ++pass) {
    at += kb % plan.radix[pass] * (plan.block[pass] / plan.radix[pass]);
    kb /= plan.radix[pass];
  }
  return at;
}

template <class T> index broadcasts(const fft_plan<T>& plan, int pass) noexcept {
  return plan.block[pass] / plan.radix[pass] * (plan.radix[pass] - 1);
}

// The passes with broadcast twiddles: all but the last, whose would be 1, and of a single one those.
template <class T> int turning_passes(const fft_plan<T>& plan) noexcept {
  return plan.passes > 1 ? plan.passes - 1 : 1;
}

// w_L^(i j), i the butterfly and j its output, as cosine and sine.
template <class T> void fill_pass(T* out, const fft_plan<T>& plan, int pass, const roots& w) noexcept {
  const index step = plan.points / plan.block[pass];
  const index count = plan.block[pass] / plan.radix[pass];
  for (index i = 0; i < count; ++i) {
    for (index j = 1; j < plan.radix[pass]; ++j) {
      const root r = w[i * j * step];
      *out++ = static_cast<T>(rounded(r.cosine));
      *out++ = static_cast<T>(rounded(r.sine));
    }
  }
}

// The place of an output before the blocks are put apart, backwards: the output at a place.
template <class T> index output(const fft_plan<T>& plan, index at) noexcept {
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

template <class T> void fill_results(std::uint32_t* out, const fft_plan<T>& plan) noexcept {
  for (index at = 0; at < plan.vectors; at += plan.radix[plan.passes - 1]) {
    *out++ = static_cast<std::uint32_t>(output(plan, at));
  }
}

}  // namespace sigpak::kernels
