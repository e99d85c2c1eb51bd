// Principal square roots of points.
#include "core/guard.h"
#include "kernels/elementary_arctangent.h"
#include "kernels/elementary_tables.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// With r = |z|, half angles give re = sqrt((r + a) / 2) and im = b / (2 re) in the right half plane, the two
// exchanged in the left one. `major` is the larger, `minor` the other; both are rounded once.
struct root_parts {
  real major;
  real minor;
};

SIGPAK_INLINE root_parts half_angle_root(real a, real b) {
  const parts aa = exact_product(a, a);
  const parts bb = exact_product(b, b);
  const parts top = exact_sum(aa.hi, bb.hi);
  const parts s = fast_sum(top.hi, top.lo + (aa.lo + bb.lo));
  const real r = sqrt(s.hi);
  const real r_rest = (fnma(r, r, s.hi) + s.lo) * (all(0.5) / r);
  const parts sum = fast_sum(r, a);
  const parts u = fast_sum(all(0.5) * sum.hi, all(0.5) * (sum.lo + r_rest));
  const real m = sqrt(u.hi);
  const real inverse = all(0.5) / m;
  const real m_rest = (fnma(m, m, u.hi) + u.lo) * inverse;
  const real q = b * inverse;  // b / (2 (m + m_rest))
  const real twice = all(2) * m;
  const real q_rest = (fnma(q, twice, b) - q * (all(2) * m_rest)) * inverse;
  return {m + m_rest, q + q_rest};
}

// Parts that are floats: nothing overflows, and a double has digits enough.
SIGPAK_INLINE root_parts half_angle_root_single(real a, real b) {
  const real r = sqrt(fma(a, a, b * b));
  const real m = sqrt(all(0.5) * (r + a));
  return {m, b / (all(2) * m)};
}

// The lanes in `lanes` go to the scalar formula.
template <class T>
[[gnu::noinline]] void replace_roots(real& re, real& im, real a, real b, int lanes, void (*root)(T* point)) {
  double from[2][lane_count];
  double to[2][lane_count];
  store(from[0], a);
  store(from[1], b);
  store(to[0], re);
  store(to[1], im);
  for (int i = 0; i < lane_count; ++i) {
    if ((lanes >> i & 1) == 0) continue;
    T point[2] = {static_cast<T>(from[0][i]), static_cast<T>(from[1][i])};
    root(point);
    to[0][i] = static_cast<double>(point[0]);
    to[1][i] = static_cast<double>(point[1]);
  }
  re = load<real>(to[0]);
  im = load<real>(to[1]);
}

template <class T> void root_points(const T* z, T* out, index points, void (*root)(T* point)) {
  walk_points(
      z, out, points, [root](real & re, real & im) __attribute__((always_inline)) {
        const real x = re;
        const real y = im;
        const real a = absolute(x);
        const real b = absolute(y);
        root_parts root_of;
        mask usable;
        if constexpr (sizeof(T) == sizeof(float)) {
          root_of = half_angle_root_single(a, b);
          usable = both(a <= all(static_cast<double>(guard<T>::huge)),
                        b <= all(static_cast<double>(guard<T>::huge)));
        } else {
          static_assert(guard<T>::huge < most_plain);
          root_of = half_angle_root(a, b);
          usable =
              both(both(is_plain(a), is_plain(b)), both(a <= all(guard<T>::huge), b <= all(guard<T>::huge)));
        }
        const mask zero = both(a == all(0), b == all(0));
        const mask left = x < all(0);
        re = choose(zero, all(0), choose(left, root_of.minor, root_of.major));
        im = choose(zero, all(0), take_sign(choose(left, root_of.major, root_of.minor), y));
        const int lanes = lanes_of(opposite(usable));
        if (__builtin_expect(lanes != 0, 0)) replace_roots(re, im, x, y, lanes, root);
      });
}

}  // namespace

const kernels::root_function<double> root_double = root_points<double>;
const kernels::root_function<float> root_float = root_points<float>;

}  // namespace sigpak::SIGPAK_LEVEL
