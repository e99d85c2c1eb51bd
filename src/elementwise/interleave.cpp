// SPDX-License-Identifier: MIT
// Two records side by side: as the parts of one complex record, or point after point.
#include "elementwise/combine.h"
#include "elementwise/elementwise.h"

namespace sigpak {
namespace {

struct side_by_side {
  template <class T> constexpr point<T> operator()(T a, T b) const noexcept { return {a, b}; }
};

template <class T> struct two_points {
  point<T> first;
  point<T> second;
};

struct one_after_the_other {
  template <class A, class B> constexpr auto operator()(A a, B b) const noexcept {
    return two_points{as_point(a), as_point(b)};
  }
};

// Complex points written two at a time.
template <class T> struct double_points {
  static constexpr index width = 4;
  T* data;
  void put(index i, two_points<T> value) const noexcept {
    put_point(data, 2 * i, value.first);
    put_point(data, 2 * i + 1, value.second);
  }
};

template <class T> two_points(point<T>, point<T>) -> two_points<T>;
template <class T> double_points(T*) -> double_points<T>;

// Unlike the other operations this one grows out with its contents, an operand or not.
template <record V> status join_parts(const V* re, const V* im, V* out) noexcept {
  if (re->points != im->points || is_complex(re) || is_complex(im)) return failed;
  operands<V> in = operands_of(re, im);
  const bool owned_re = out->alloc > 0 && out->data == in.a;
  const bool owned_im = out->alloc > 0 && out->data == in.b;
  const auto old_points = static_cast<std::uint32_t>(length(out));
  const std::int32_t old_complex = out->complex;
  out->delta = mean_spacing(re, im);
  out->points = static_cast<std::uint32_t>(in.points);
  out->complex = 1;
  if (reallocate(out, old_points, old_complex) != ok) return failed;
  if (owned_re) in.a = out->data;
  if (owned_im) in.b = out->data;
  return combine_points(real_points{in.a}, real_points{in.b}, complex_points{out->data}, in.points,
                        side_by_side{});
}

template <record V> status interleave(const V* a, const V* b, V* out) noexcept {
  if (a->points != b->points) return failed;
  out->delta = (a->delta + b->delta) * scalar<V>(0.25);
  const bool complex = is_complex(a) || is_complex(b);
  return fill_result(a, b, out, 2 * length(a), complex, [out](const operands<V>& in) {
    const complex_points za{in.a};
    const complex_points zb{in.b};
    const real_points xa{in.a};
    const real_points xb{in.b};
    const double_points pairs{out->data};
    if (!in.a_complex && !in.b_complex) {
      return combine_points(xa, xb, complex_points{out->data}, in.points, side_by_side{});
    }
    if (!in.a_complex) return combine_points(xa, zb, pairs, in.points, one_after_the_other{});
    if (!in.b_complex) return combine_points(za, xb, pairs, in.points, one_after_the_other{});
    return combine_points(za, zb, pairs, in.points, one_after_the_other{});
  });
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspb_ritoc(const dsp_vec* re, const dsp_vec* im, dsp_vec* out) { return join_parts(re, im, out); }
int32_t dspfb_ritoc(const dspf_vec* re, const dspf_vec* im, dspf_vec* out) { return join_parts(re, im, out); }

int32_t dspb_inter(const dsp_vec* a, const dsp_vec* b, dsp_vec* out) { return interleave(a, b, out); }
int32_t dspfb_inter(const dspf_vec* a, const dspf_vec* b, dspf_vec* out) { return interleave(a, b, out); }
