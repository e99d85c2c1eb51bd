// SPDX-License-Identifier: MIT
// Principal square roots of points.
#include "core/guard.h"
#include "kernels/elementary/arctangent.h"
#include "kernels/elementary/functions.h"
#include "kernels/elementary/walk.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// With r = |z|, half angles give re = sqrt((r + a) / 2) and im = b / (2 re) in the right half plane, the two
// exchanged in the left one. `major` is the larger, `minor` the other; both are rounded once.
struct root_parts {
  real major;
  real minor;
};

SIGPAK_INLINE root_parts half_angle_root(real a, real b) {
  const parts aa = square_parts(a);
  const parts bb = square_parts(b);
  const parts top = exact_sum(aa.hi, bb.hi);
  const parts s = fast_sum(top.hi, top.lo + (aa.lo + bb.lo));
  const real r = sqrt(s.hi);
  const real r_rest = (remainder(s.hi, r) + s.lo) * (all(0.5) * rough_inverse(r));
  const parts sum = fast_sum(r, a);
  const parts u = fast_sum(all(0.5) * sum.hi, all(0.5) * (sum.lo + r_rest));
  const real m = sqrt(u.hi);
  const real inverse = all(0.5) / m;
  const real m_rest = (remainder(u.hi, m) + u.lo) * inverse;
  const real q = b * inverse;  // b / (2 (m + m_rest))
  const real twice = all(2) * m;
  const real q_rest = (remainder(b, q, twice) - q * (all(2) * m_rest)) * inverse;
  return {m + m_rest, q + q_rest};
}

// Parts that are floats: nothing overflows, and a double has digits enough.
SIGPAK_INLINE root_parts half_angle_root_single(real a, real b) {
  const real r = sqrt(fma(a, a, b * b));
  const real m = sqrt(all(0.5) * (r + a));
  return {m, b / (all(2) * m)};
}

template <class T> struct root_of_point {
  void (*plain)(T* point);

  // Zero and subnormal parts count as wild only where they meet no part of ordinary size.
  SIGPAK_INLINE mask is_wild(real a, real b) const {
    return is_outside(absolute(a) + absolute(b), least_plain, wide_guard<T>::huge);
  }
  SIGPAK_INLINE void operator()(real& a, real& b) const {
    root_parts root;
    if constexpr (is_single<T>) {
      root = half_angle_root_single(absolute(a), absolute(b));
    } else {
      root = half_angle_root(absolute(a), absolute(b));
    }
    const mask left = a < all(0);
    a = choose(left, root.minor, root.major);
    b = take_sign(choose(left, root.major, root.minor), b);
  }
  SIGPAK_INLINE void careful(real& a, real& b) const {
    const real x = a;
    const real y = b;
    (*this)(a, b);
    except(a, b, is_wild(x, y), x, y, [this](double u, double v) {
      T w[2] = {static_cast<T>(u), static_cast<T>(v)};
      plain(w);
      return point{static_cast<double>(w[0]), static_cast<double>(w[1])};
    });
  }
};

template <class T> void root_points(const T* z, T* out, index points, void (*plain)(T* point)) {
  walk_points(z, out, points, root_of_point<T>{plain});
}

}  // namespace

}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::root_functions<double>) = {SIGPAK_LEVEL::root_points<double>};
SIGPAK_LEVEL_TABLE(kernels::root_functions<float>) = {SIGPAK_LEVEL::root_points<float>};

}  // namespace sigpak
