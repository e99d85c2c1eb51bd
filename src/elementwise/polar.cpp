// Phases, polar form and back. Float records are computed in double and rounded once.
#include <cmath>
#include <numbers>

#include "elementwise/elementwise.h"
#include "elementwise/packing.h"
#include "kernels/elementary/functions.h"
#include "kernels/elementary/sine_parts.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

// The zero point has phase 0 whatever the signs of its zeros.
struct phase_of {
  template <class T> constexpr T operator()(T x) const noexcept {
    return x < 0 ? std::numbers::pi_v<T> : T(0);
  }
  template <class T> T operator()(point<T> z) const noexcept {
    if (z.re == 0 && z.im == 0) return 0;
    return static_cast<T>(std::atan2(static_cast<double>(z.im), static_cast<double>(z.re)));
  }
};

struct polar_of {
  template <class T> point<T> operator()(T x) const noexcept { return {std::abs(x), phase_of{}(x)}; }
  template <class T> point<T> operator()(point<T> z) const noexcept {
    return {std::hypot(z.re, z.im), phase_of{}(z)};
  }
};

struct rectangular_of {
  template <class T> point<T> operator()(point<T> polar) const noexcept {
    const double magnitude = static_cast<double>(polar.re);
    const sine_cosine y = sine_and_cosine_for<T>(static_cast<double>(polar.im));
    if constexpr (sizeof(T) < sizeof(double)) {
      return {static_cast<T>(magnitude * y.cosine.hi), static_cast<T>(magnitude * y.sine.hi)};
    } else {
      return {rounded_component({magnitude, 0}, y.cosine), rounded_component({magnitude, 0}, y.sine)};
    }
  }
};

template <record V> status take_phase(V* v) noexcept {
  const auto* wide = at_level<kernels::inverse_functions<scalar<V>>>();
  if (wide == nullptr || !is_complex(v)) return turn_real(v, phase_of{});
  wide->phase(v->data, v->data, length(v));
  v->complex = 0;
  return ok;
}

template <record V> status to_polar(V* v) noexcept {
  const auto* wide = at_level<kernels::inverse_functions<scalar<V>>>();
  if (wide == nullptr || !is_complex(v)) return turn_complex(v, polar_of{});
  wide->polar(v->data, length(v));
  return ok;
}

template <record V> status to_rectangular(V* v) noexcept {
  if (!is_complex(v)) return ok;
  if (const auto* wide = at_level<kernels::circular_functions<scalar<V>>>()) {
    wide->rectangular(v->data, length(v));
  } else {
    map_points(v->data, v->data, length(v), rectangular_of{});
  }
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_phase(dsp_vec* v) { return take_phase(v); }
int32_t dspfi_phase(dspf_vec* v) { return take_phase(v); }

int32_t dspi_rtop(dsp_vec* v) { return to_polar(v); }
int32_t dspfi_rtop(dspf_vec* v) { return to_polar(v); }

int32_t dspi_ptor(dsp_vec* v) { return to_rectangular(v); }
int32_t dspfi_ptor(dspf_vec* v) { return to_rectangular(v); }
