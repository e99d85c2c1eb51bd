// Which wide transform runs, and the memory it works in.
#include "kernels/fft.h"

#include <bit>

#include "core/isa.h"
#include "core/memory.h"
#include "kernels/fft_kernels.h"
#include "kernels/fft_tables.h"

namespace sigpak::kernels {

#if SIGPAK_WIDE_LEVELS

namespace {

constexpr index least_points = 4;
constexpr index least_real_points = 32;
constexpr index least_mixed_points = 16;
constexpr index alignment = 64;

template <class T> const fft_kernels<T>& kernels_of(isa::level level) noexcept {
  if constexpr (sizeof(T) == sizeof(double)) {
    return level == isa::level::avx512 ? avx512::double_fft : avx2::double_fft;
  } else {
    return level == isa::level::avx512 ? avx512::float_fft : avx2::float_fft;
  }
}

// Scratch memory of the longest transform so far.
template <class T> class workspace {
 public:
  T* at_least(index count) noexcept {
    if (count <= count_) return start_;
    void* const grown = allocate_table<std::byte>(count * static_cast<index>(sizeof(T)) + alignment);
    if (grown == nullptr) return nullptr;
    release();
    block_ = grown;
    const auto address = reinterpret_cast<std::uintptr_t>(grown);
    start_ = reinterpret_cast<T*>((address + alignment - 1) / alignment * alignment);
    count_ = count;
    return start_;
  }
  void release() noexcept {
    free_table(block_);
    block_ = nullptr;
    start_ = nullptr;
    count_ = 0;
  }

 private:
  void* block_ = nullptr;
  T* start_ = nullptr;
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
  const isa::level level = isa::current();
  if (points < least_points || points >= index{1} << small_sizes || level == isa::level::baseline)
    return false;
  kernels_of<T>(level).small[std::countr_zero(static_cast<std::uint64_t>(points))].run[inverse](x);
  return true;
}

template <class T> bool has_wide_fft(index points) noexcept {
  return points >= least_points && isa::current() != isa::level::baseline;
}

template <class T> status wide_fft(T* x, index points, bool inverse) noexcept {
  const fft_kernels<T>& kernels = kernels_of<T>(isa::current());
  if (small_wide_fft(x, points, inverse)) return ok;
  const fft_plan<T>* const plan =
      find_plan<T>(points, lanes_for(points, kernels.widest_lanes), data::complex);
  if (plan == nullptr) return failed;
  T* const work = scratch<T>.at_least(2 * plan->lanes * plan->stride * plan->radix[0]);
  if (work == nullptr) return failed;
  kernels.run(*plan, x, work, inverse);
  return ok;
}

template <class T> bool has_wide_real_fft(index points) noexcept {
  return points >= least_real_points && isa::current() != isa::level::baseline;
}

template <class T> status wide_real_fft(T* x, index points, bool inverse) noexcept {
  const fft_kernels<T>& kernels = kernels_of<T>(isa::current());
  const int lanes = lanes_for(points / 2, kernels.widest_lanes);
  const fft_plan<T>* const plan = find_plan<T>(points, lanes, data::real);
  if (plan == nullptr) return failed;
  const index spectrum = inverse ? plan->vectors + 1 : 0;
  T* const work = scratch<T>.at_least(2 * lanes * (plan->stride * plan->radix[0] + spectrum));
  if (work == nullptr) return failed;
  kernels.run_real(*plan, x, work, inverse);
  return ok;
}

template <class T> bool has_wide_dft(index points) noexcept {
  const isa::level level = isa::current();
  if (points < least_mixed_points || level == isa::level::baseline) return false;
  const int widest = kernels_of<T>(level).widest_lanes;
  return find_mixed_plan<T>(points, widest) != nullptr || has_mixed_plan<T>(points, widest);
}

template <class T> status wide_dft(T* x, index points, bool inverse) noexcept {
  const fft_kernels<T>& kernels = kernels_of<T>(isa::current());
  const mixed_plan<T>* plan = find_mixed_plan<T>(points, kernels.widest_lanes);
  if (plan == nullptr) plan = make_mixed_plan<T>(points, kernels.widest_lanes);
  if (plan == nullptr) return failed;
  const index a = plan->over_columns.vectors;
  const index b = plan->over_rows.vectors;
  const index row_groups = (a + plan->lanes - 1) / plan->lanes;
  T* const work = scratch<T>.at_least(2 * plan->lanes * (row_groups * b + (a > b ? a : b)));
  if (work == nullptr) return failed;
  kernels.run_mixed(*plan, x, work, inverse);
  return ok;
}

template <class T> status release_wide_fft() noexcept {
  release_plans<T>();
  release_mixed_plans<T>();
  scratch<T>.release();
  return ok;
}

#else

template <class T> bool small_wide_fft(T*, index, bool) noexcept { return false; }
template <class T> bool has_wide_fft(index) noexcept { return false; }
template <class T> status wide_fft(T*, index, bool) noexcept { return failed; }
template <class T> bool has_wide_real_fft(index) noexcept { return false; }
template <class T> status wide_real_fft(T*, index, bool) noexcept { return failed; }
template <class T> bool has_wide_dft(index) noexcept { return false; }
template <class T> status wide_dft(T*, index, bool) noexcept { return failed; }
template <class T> status release_wide_fft() noexcept { return ok; }

#endif

template bool small_wide_fft(double*, index, bool) noexcept;
template bool small_wide_fft(float*, index, bool) noexcept;
template bool has_wide_fft<double>(index) noexcept;
template bool has_wide_fft<float>(index) noexcept;
template status wide_fft(double*, index, bool) noexcept;
template status wide_fft(float*, index, bool) noexcept;
template bool has_wide_real_fft<double>(index) noexcept;
template bool has_wide_real_fft<float>(index) noexcept;
template status wide_real_fft(double*, index, bool) noexcept;
template status wide_real_fft(float*, index, bool) noexcept;
template bool has_wide_dft<double>(index) noexcept;
template bool has_wide_dft<float>(index) noexcept;
template status wide_dft(double*, index, bool) noexcept;
template status wide_dft(float*, index, bool) noexcept;
template status release_wide_fft<double>() noexcept;
template status release_wide_fft<float>() noexcept;

}  // namespace sigpak::kernels
