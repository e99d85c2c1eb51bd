// SPDX-License-Identifier: MIT
// The inner product of two records, and the product of two polynomials.
#include <algorithm>

#include "core/copy.h"
#include "elementwise/combine.h"
#include "elementwise/elementwise.h"
#include "kernels/sums/block_sums.h"

namespace sigpak {
namespace {

template <class T> constexpr double widened(T x) noexcept { return static_cast<double>(x); }
template <class T> constexpr point<double> widened(point<T> z) noexcept {
  return {widened(z.re), widened(z.im)};
}

// In blocks from zero, one product after the other; float operands are multiplied and summed in double.
template <class T, class B>
point<double> inner_product(complex_points<const T> a, B b, index points) noexcept {
  using table = kernels::lane_sum_table<T>;
  const auto [re, im] = blocked_sums(
      points,
      [=](index i) {
        const point<double> z = product(widened(a.get(i)), widened(b.get(i)));
        return sums<2>{z.re, z.im};
      },
      [=] {
        return lane_terms<T>{.kernel = B::width == 2 ? &table::point_products : &table::mixed_products,
                             .x = a.data,
                             .width = 2,
                             .y = b.data,
                             .y_width = B::width,
                             .blocks = 5,
                             .streaming = false};
      });
  return {re, im};
}

template <class T>
point<double> inner_product(real_points<const T> a, real_points<const T> b, index points) noexcept {
  const auto [total] = blocked_sums(
      points, [=](index i) { return sums<1>{widened(a.get(i)) * widened(b.get(i))}; },
      [=] {
        return lane_terms<T>{.kernel = &kernels::lane_sum_table<T>::products,
                             .x = a.data,
                             .y = b.data,
                             .y_width = 1,
                             .blocks = 3};
      });
  return as_point(total);
}

// Inlined: a short product would wait for the operands to come back through memory.
template <record V>
[[gnu::always_inline]] inline point<double> inner_product_of(const operands<V>& in) noexcept {
  const real_points a{in.a};
  const real_points b{in.b};
  const complex_points za{in.a};
  const complex_points zb{in.b};
  if (in.a_complex) return in.b_complex ? inner_product(za, zb, in.points) : inner_product(za, b, in.points);
  return in.b_complex ? inner_product(zb, a, in.points) : inner_product(a, b, in.points);
}

// out[i + j] += a[i] * b[j], i outside, so every coefficient is summed by rising index of a.
template <class A, class B, class Out>
void add_products(A a, index a_points, B b, index b_points, Out out) noexcept {
  isa::run([=] {
    for (index i = 0; i < a_points; ++i) {
      const auto factor = a.get(i);
      for (index j = 0; j < b_points; ++j) out.put(i + j, out.get(i + j) + product(factor, b.get(j)));
    }
  });
}

template <record V> status multiply_into(const V* a, const V* b, V* out) noexcept {
  const operands<V> in = operands_of(a, b);
  const index n = length(a);
  const index m = length(b);
  out->delta = mean_spacing(a, b);
  out->complex = in.a_complex || in.b_complex ? 1 : 0;
  out->points = n > 0 && m > 0 ? static_cast<std::uint32_t>(n + m - 1) : 0;
  if (allocate(out) != ok) return failed;
  std::fill_n(out->data, scalars(out), scalar<V>(0));
  const complex_points to{out->data};
  if (in.a_complex && in.b_complex) {
    add_products(complex_points{in.a}, n, complex_points{in.b}, m, to);
  } else if (in.a_complex) {
    add_products(complex_points{in.a}, n, real_points{in.b}, m, to);
  } else if (in.b_complex) {
    add_products(real_points{in.a}, n, complex_points{in.b}, m, to);
  } else {
    add_products(real_points{in.a}, n, real_points{in.b}, m, real_points{out->data});
  }
  return ok;
}

// The sums are complete before out is sized: it may be an operand.
template <record V> status dot(const V* a, const V* b, V* out) noexcept {
  if (a->points != b->points) return failed;
  const operands<V> in = operands_of(a, b);
  const point<double> total = inner_product_of(in);
  out->complex = in.a_complex || in.b_complex ? 1 : 0;
  out->points = 1;
  if (scalars(out) > out->alloc && allocate(out) != ok) return failed;
  out->data[0] = static_cast<scalar<V>>(total.re);
  if (is_complex(out)) out->data[1] = static_cast<scalar<V>>(total.im);
  return ok;
}

template <record V> status multiply_polynomials(const V* a, const V* b, V* out) noexcept {
  if (out->data != a->data && out->data != b->data) return multiply_into(a, b, out);
  temporary<V> storage;
  V* const result = &storage;
  return multiply_into(a, b, result) == ok ? copy<V>(out, result) : failed;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspbs_dot(const dsp_vec* a, const dsp_vec* b, dsp_vec* out) { return dot(a, b, out); }
int32_t dspfbs_dot(const dspf_vec* a, const dspf_vec* b, dspf_vec* out) { return dot(a, b, out); }

int32_t dspb_pmul(const dsp_vec* a, const dsp_vec* b, dsp_vec* out) {
  return multiply_polynomials(a, b, out);
}
int32_t dspfb_pmul(const dspf_vec* a, const dspf_vec* b, dspf_vec* out) {
  return multiply_polynomials(a, b, out);
}
