// All roots of a real polynomial, one after the other from the deflated rest.
#include <cmath>

#include "core/memory.h"
#include "shape/shape.h"
#include "stats/polynomial.h"
#include "stats/result.h"

namespace sigpak {
namespace {

// Divides by x^2 - 2 re x + |z|^2 in place, dropping the remainder: the quotient is in 0 .. count - 3.
void deflate_pair(double_double* a, index count, precise_complex z) noexcept {
  const double_double twice = z.re + z.re;
  const double_double negated_square = -(z.re * z.re + z.im * z.im);
  double_double one_up;
  double_double two_up;
  for (index k = count - 1; k >= 2; --k) {
    const double_double quotient = a[k] + twice * one_up + negated_square * two_up;
    two_up = one_up;
    one_up = quotient;
    a[k] = quotient;
  }
  for (index k = 0; k < count - 2; ++k) a[k] = a[k + 2];
}

// The root to twice the precision, by one more step of Newton's. At a multiple root, where that step is no
// small correction, it stays.
precise_complex corrected(polynomial<double_double> p, complex_number z,
                          const search_limits& limits) noexcept {
  const expansion<complex_number> at = expand(p, z);
  const complex_number step = quotient(at.value, at.slope, limits);
  const bool small = magnitude(step) <= 4 * limits.epsilon * magnitude(z);
  if (!small) return {precise(z.re), precise(z.im)};
  return {exact_sum(z.re, -step.re), exact_sum(z.im, -step.im)};
}

// The polynomial scaled by a power of two so that its leading coefficient is near 1: an exact stand-in for
// the monic one. Refuses what is not finite, or leaves the range.
template <class T> status copy_scaled(const T* a, index count, double_double* out) noexcept {
  const double lead = wide(a[count - 1]);
  if (!std::isfinite(lead)) return failed;
  const int exponent = -std::ilogb(lead);
  for (index k = 0; k < count; ++k) {
    out[k] = precise(std::scalbn(wide(a[k]), exponent));
    if (!std::isfinite(out[k].hi)) return failed;
  }
  return ok;
}

template <class T> T* put(T* list, double re, double im) noexcept {
  list[0] = static_cast<T>(re);
  list[1] = static_cast<T>(im);
  return list + 2;
}

// Fills the list with the roots of the `count` coefficients, which are used up. Every root is divided out in
// twice the precision, so that the next ones do not inherit its rounding. Single precision takes the limits
// of double for the same reason, and rounds only what it stores.
template <class T> status list_roots(double_double* a, index count, T* list) noexcept {
  constexpr search_limits limits = limits_of<double>();
  while (count > 1) {
    const polynomial<double_double> rest{a, count};
    const complex_search search = find_root(rest, complex_number{0, 0}, limits);
    if (!search.found) return failed;
    const bool pair = search.complex && search.root.im != 0;
    if (pair && count < 3) return failed;
    const complex_number start{search.root.re, pair ? search.root.im : 0.0};
    const precise_complex z = corrected(rest, start, limits);
    list = put(list, z.re.hi, z.im.hi);
    if (pair) {
      list = put(list, z.re.hi, -z.im.hi);
      deflate_pair(a, count, z);
    } else {
      deflate(a, count, z.re);
    }
    count -= pair ? 2 : 1;
  }
  return ok;
}

template <record V> status replace_by_roots(V* v) noexcept {
  using T = scalar<V>;
  if (is_complex(v)) return failed;
  index count = length(v);
  while (count > 0 && v->data[count - 1] == 0) --count;
  if (count < 2) {
    v->points = 0;
    return ok;
  }
  temporary<V> list;
  if (prepare_result<V>(&list, count - 1, true) != ok) return failed;
  double_double* const rest = allocate_table<double_double>(count);
  if (rest == nullptr) return failed;
  const bool found = copy_scaled(v->data, count, rest) == ok && list_roots<T>(rest, count, list.data) == ok;
  free_table(rest);
  if (!found || sort<V>(&list) != ok) return failed;
  return copy<V>(v, &list);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_proots(dsp_vec* v) { return replace_by_roots(v); }
int32_t dspfi_proots(dspf_vec* v) { return replace_by_roots(v); }
