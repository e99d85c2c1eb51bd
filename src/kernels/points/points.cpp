// The table of the level that runs.
#include "kernels/points/points.h"

#include "core/isa.h"

namespace sigpak::kernels {
namespace {

template <class Table> [[maybe_unused]] const Table* choose(const Table& avx2, const Table& avx512) noexcept {
  switch (isa::current()) {
    case isa::level::avx512:
      return &avx512;
    case isa::level::avx2:
      return &avx2;
    default:
      return nullptr;
  }
}

}  // namespace

#if SIGPAK_WIDE_LEVELS
template <> const point_functions<double>* points() noexcept {
  return choose(avx2::points_double, avx512::points_double);
}
template <> const point_functions<float>* points() noexcept {
  return choose(avx2::points_float, avx512::points_float);
}
#else
template <> const point_functions<double>* points() noexcept { return nullptr; }
template <> const point_functions<float>* points() noexcept { return nullptr; }
#endif

}  // namespace sigpak::kernels
