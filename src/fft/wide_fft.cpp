// Which wide transform runs, and the memory it works in.
#include "fft/wide_fft.h"

#include <bit>

#include "core/isa.h"
#include "core/memory.h"
#include "fft/plans/lane_plan.h"
#include "fft/wide/kernels.h"
#include "vectors/levels.h"

namespace sigpak::kernels {

namespace {

constexpr index least_points = 4;
constexpr index least_mixed_points = 16;
constexpr std::uintptr_t alignment = 64;

// Scratch memory of the longest transform so far.
//
// A load that shares its place within a page with a store still under way waits for it, and lines that share
// it compete for one set of the first cache. What a transform stores in scratch memory is therefore kept at a
// distance, within the page, from the data that it reads at the time.
template <class T> class workspace {
 public:
  T* at_least(index count, const T* data) noexcept {
    if (count > count_ && !grow(count)) return nullptr;
    if (bytes(count) < worth_distance) return reinterpret_cast<T*>(start_);
    const auto lead = (reinterpret_cast<std::uintptr_t>(data) + distance) % page / alignment * alignment;
    return reinterpret_cast<T*>(start_ + lead);
  }
  void release() noexcept {
    free_table(block_);
    block_ = nullptr;
    count_ = 0;
  }

 private:
  static constexpr std::uintptr_t page = 4096;
  static constexpr std::uintptr_t distance = 1024;
  static constexpr index worth_distance = 32 * 1024;

  static constexpr index bytes(index count) noexcept { return count * static_cast<index>(sizeof(T)); }

  bool grow(index count) noexcept {
    const std::uintptr_t boundary = bytes(count) < worth_distance ? alignment : page;
    void* const grown = allocate_table<std::byte>(bytes(count) + 2 * static_cast<index>(boundary));
    if (grown == nullptr) return false;
    release();
    block_ = grown;
    start_ = (reinterpret_cast<std::uintptr_t>(grown) + boundary - 1) / boundary * boundary;
    count_ = count;
    return true;
  }

  void* block_ = nullptr;
  std::uintptr_t start_ = 0;
  index count_ = 0;
};

template <class T> constinit workspace<T> scratch;

// Fewer lanes where N < lanes^2.
int lanes_for(index points, int widest) noexcept {
  int lanes = widest;
  while (static_cast<index>(lanes) * lanes > points) lanes /= 2;
  return lanes;
}

}  // namespace

template <class T> bool small_wide_fft(T* x, index points, bool inverse) noexcept {
  const auto* const kernels = at_level<fft_kernels<T>>();
  if (points < least_points || points >= index{1} << small_sizes || kernels == nullptr) return false;
  kernels->small[std::countr_zero(static_cast<std::uint64_t>(points))].run[inverse](x);
  return true;
}

template <class T> bool small_wide_real_fft(T* x, index points, bool inverse) noexcept {
  const auto* const kernels = at_level<fft_kernels<T>>();
  if (points < least_points || points >= index{1} << small_real_sizes || kernels == nullptr) return false;
  kernels->small_real[std::countr_zero(static_cast<std::uint64_t>(points))].run[inverse](x);
  return true;
}

template <class T> bool has_wide_fft(index points) noexcept {
  return points >= least_points && isa::current() != isa::level::baseline;
}

template <class T> status wide_fft(T* x, index points, bool inverse) noexcept {
  const fft_kernels<T>& kernels = *at_level<fft_kernels<T>>();
  if (small_wide_fft(x, points, inverse)) return ok;
  const fft_plan<T>* const plan =
      find_plan<T>(points, lanes_for(points, kernels.widest_lanes), data::complex);
  if (plan == nullptr) return failed;
  T* const work = scratch<T>.at_least(2 * plan->lanes * plan->stride * plan->radix[0], x);
  if (work == nullptr) return failed;
  kernels.run(*plan, x, work, inverse);
  return ok;
}

template <class T> bool has_wide_real_fft(index points) noexcept {
  return points >= least_points && isa::current() != isa::level::baseline;
}

template <class T> status wide_real_fft(T* x, index points, bool inverse) noexcept {
  const fft_kernels<T>& kernels = *at_level<fft_kernels<T>>();
  if (small_wide_real_fft(x, points, inverse)) return ok;
  const int lanes = lanes_for(points / 2, kernels.widest_lanes);
  const fft_plan<T>* const plan = find_plan<T>(points, lanes, data::real);
  if (plan == nullptr) return failed;
  const index spectrum = inverse ? plan->vectors + 1 : 0;
  T* const work = scratch<T>.at_least(2 * lanes * (plan->stride * plan->radix[0] + spectrum), x);
  if (work == nullptr) return failed;
  kernels.run_real(*plan, x, work, inverse);
  return ok;
}

template <class T> bool has_wide_dft(index points) noexcept {
  const auto* const kernels = at_level<fft_kernels<T>>();
  if (points < least_mixed_points || kernels == nullptr) return false;
  const int widest = kernels->widest_lanes;
  return find_mixed_plan<T>(points, widest) != nullptr || has_mixed_plan<T>(points, widest);
}

template <class T> status wide_dft(T* x, index points, bool inverse) noexcept {
  const fft_kernels<T>& kernels = *at_level<fft_kernels<T>>();
  const mixed_plan<T>* plan = find_mixed_plan<T>(points, kernels.widest_lanes);
  if (plan == nullptr) plan = make_mixed_plan<T>(points, kernels.widest_lanes);
  if (plan == nullptr) return failed;
  const index a = plan->over_columns.vectors;
  const index b = plan->over_rows.vectors;
  const index row_groups = (a + plan->lanes - 1) / plan->lanes;
  T* const work = scratch<T>.at_least(2 * plan->lanes * (row_groups * b + (a > b ? a : b)), x);
  if (work == nullptr) return failed;
  kernels.run_mixed(*plan, x, work, inverse);
  return ok;
}

template <class T> T* wide_scratch(index count, const T* data) noexcept {
  return scratch<T>.at_least(count, data);
}

template <class T> void release_wide_fft() noexcept {
  release_plans<T>();
  release_mixed_plans<T>();
  scratch<T>.release();
}

template bool small_wide_fft(double*, index, bool) noexcept;
template bool small_wide_fft(float*, index, bool) noexcept;
template bool has_wide_fft<double>(index) noexcept;
template bool has_wide_fft<float>(index) noexcept;
template status wide_fft(double*, index, bool) noexcept;
template status wide_fft(float*, index, bool) noexcept;
template bool small_wide_real_fft(double*, index, bool) noexcept;
template bool small_wide_real_fft(float*, index, bool) noexcept;
template bool has_wide_real_fft<double>(index) noexcept;
template bool has_wide_real_fft<float>(index) noexcept;
template status wide_real_fft(double*, index, bool) noexcept;
template status wide_real_fft(float*, index, bool) noexcept;
template bool has_wide_dft<double>(index) noexcept;
template bool has_wide_dft<float>(index) noexcept;
template status wide_dft(double*, index, bool) noexcept;
template status wide_dft(float*, index, bool) noexcept;
template double* wide_scratch(index, const double*) noexcept;
template float* wide_scratch(index, const float*) noexcept;
template void release_wide_fft<double>() noexcept;
template void release_wide_fft<float>() noexcept;

}  // namespace sigpak::kernels
