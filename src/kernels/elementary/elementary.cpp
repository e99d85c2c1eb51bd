// The tables of the level that runs.
#include "kernels/elementary/elementary.h"

namespace sigpak::kernels {
namespace {

template <class Table> const Table* choose(const Table* avx2, const Table* avx512) noexcept {
  switch (isa::current()) {
    case isa::level::avx512:
      return avx512;
    case isa::level::avx2:
      return avx2;
    default:
      return nullptr;
  }
}

}  // namespace

#if SIGPAK_WIDE_LEVELS
template <> const circular_functions<double>* circular() noexcept {
  return choose(&avx2::circular_double, &avx512::circular_double);
}
template <> const circular_functions<float>* circular() noexcept {
  return choose(&avx2::circular_float, &avx512::circular_float);
}
template <> const exponential_functions<double>* exponential() noexcept {
  return choose(&avx2::exponential_double, &avx512::exponential_double);
}
template <> const exponential_functions<float>* exponential() noexcept {
  return choose(&avx2::exponential_float, &avx512::exponential_float);
}
template <> const inverse_functions<double>* inverse() noexcept {
  return choose(&avx2::inverse_double, &avx512::inverse_double);
}
template <> const inverse_functions<float>* inverse() noexcept {
  return choose(&avx2::inverse_float, &avx512::inverse_float);
}
template <> const logarithm_functions<double>* logarithm() noexcept {
  return choose(&avx2::logarithm_double, &avx512::logarithm_double);
}
template <> const logarithm_functions<float>* logarithm() noexcept {
  return choose(&avx2::logarithm_float, &avx512::logarithm_float);
}
template <> const root_function<double>* square_root_points() noexcept {
  return choose(&avx2::root_double, &avx512::root_double);
}
template <> const root_function<float>* square_root_points() noexcept {
  return choose(&avx2::root_float, &avx512::root_float);
}
#else
template <> const circular_functions<double>* circular() noexcept { return nullptr; }
template <> const circular_functions<float>* circular() noexcept { return nullptr; }
template <> const exponential_functions<double>* exponential() noexcept { return nullptr; }
template <> const exponential_functions<float>* exponential() noexcept { return nullptr; }
template <> const inverse_functions<double>* inverse() noexcept { return nullptr; }
template <> const inverse_functions<float>* inverse() noexcept { return nullptr; }
template <> const logarithm_functions<double>* logarithm() noexcept { return nullptr; }
template <> const logarithm_functions<float>* logarithm() noexcept { return nullptr; }
template <> const root_function<double>* square_root_points() noexcept { return nullptr; }
template <> const root_function<float>* square_root_points() noexcept { return nullptr; }
#endif

}  // namespace sigpak::kernels
