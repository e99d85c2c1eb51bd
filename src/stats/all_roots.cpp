// SPDX-License-Identifier: MIT
// All roots of a real polynomial.
#include <algorithm>

#include "core/kept_errno.h"
#include "core/memory.h"
#include "shape/shape.h"
#include "stats/factors.h"
#include "stats/result.h"

namespace sigpak {
namespace {

// Whether the value at z is no more than the rounding of the terms that it is the sum of. Summed in double,
// which errs by less than 4 n epsilons of double, with a unit near the size of z, so that terms stay in
// range.
template <class T> bool is_root_of(const T* a, index count, complex_number z) noexcept {
  const double size = magnitude(z);
  const double most = 12 * static_cast<double>(count) * limits_of<T>().epsilon;
  if (size == 0) return a[0] == 0;
  if (!std::isfinite(size)) return false;
  const index unit = std::ilogb(size * 1.4142135623730951);
  index top = std::numeric_limits<index>::min();
  for (index k = 0; k < count; ++k) {
    if (a[k] != 0) top = std::max(top, std::ilogb(a[k]) + k * unit);
  }
  const complex_number w{std::scalbn(z.re, static_cast<int>(-unit)),
                         std::scalbn(z.im, static_cast<int>(-unit))};
  const double r = magnitude(w);
  complex_number value{0, 0};
  double terms = 0;
  for (index k = count - 1; k >= 0; --k) {
    const double b = scaled(precise(a[k]), k * unit - top).hi;
    value = w * value + complex_number{b, 0};
    terms = r * terms + std::abs(b);
  }
  return terms >= wide_guard<double>::tiny && magnitude(value) <= most * terms;
}

// The list as stored against the polynomial as given.
template <class T> bool all_are_roots(const T* a, index count, const T* list) noexcept {
  for (index i = 0; i < count - 1; ++i) {
    const complex_number z{wide(list[2 * i]), wide(list[2 * i + 1])};
    if (z.im <= 0 && !is_root_of(a, count, z)) return false;  // its conjugate is another
    if (std::isnan(z.im)) return false;
  }
  return true;
}

struct workspace {
  double_double* coefficients;
  double_double* spare;
  complex_number* roots;

  explicit workspace(index count) noexcept
      : coefficients(allocate_table<double_double>(count)),
        spare(allocate_table<double_double>(count)),
        roots(allocate_table<complex_number>(count)) {}
  ~workspace() {
    free_table(coefficients);
    free_table(spare);
    free_table(roots);
  }
  workspace(const workspace&) = delete;
  workspace& operator=(const workspace&) = delete;

  bool complete() const noexcept { return coefficients != nullptr && spare != nullptr && roots != nullptr; }
};

// Every root 0 is a constant term of 0 and needs no search.
template <class T>
bool try_roots(const T* a, index count, search_start start, const workspace& work, T* list) noexcept {
  index zeros = 0;
  while (a[zeros] == 0) work.roots[zeros++] = {0, 0};
  std::transform(a + zeros, a + count, work.coefficients, [](T x) { return precise(x); });
  if (!find_all_roots(work.coefficients, count - zeros, start, work.spare, work.roots + zeros)) return false;
  for (index i = 0; i < count - 1; ++i) {
    list[2 * i] = static_cast<T>(work.roots[i].re);
    list[2 * i + 1] = static_cast<T>(work.roots[i].im);
  }
  return all_are_roots(a, count, list);
}

template <class T> status list_roots(const T* a, index count, T* list) noexcept {
  const workspace work(count);
  if (!work.complete() || !std::all_of(a, a + count, [](T x) { return std::isfinite(x); })) return failed;
  const bool found = try_roots(a, count, search_start::zero, work, list) ||
                     try_roots(a, count, search_start::spread, work, list);
  return found ? ok : failed;
}

template <record V> status replace_by_roots(V* v) noexcept {
  using T = scalar<V>;
  const kept_errno kept;
  if (is_complex(v)) return failed;
  index count = length(v);
  while (count > 0 && v->data[count - 1] == 0) --count;
  if (count < 2) {
    v->points = 0;
    return ok;
  }
  temporary<V> list;
  if (prepare_result<V>(&list, count - 1, true) != ok) return failed;
  if (list_roots<T>(v->data, count, list.data) != ok || sort<V>(&list) != ok) return failed;
  return copy<V>(v, &list);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_proots(dsp_vec* v) { return replace_by_roots(v); }
int32_t dspfi_proots(dspf_vec* v) { return replace_by_roots(v); }
