// Included before every source that Debian 12's emscripten compiles: what its C++ library, of 2021, has not
// got yet.
#pragma once

#include <algorithm>
#include <bit>
#include <functional>
#include <iterator>

#if defined(_LIBCPP_VERSION) && _LIBCPP_VERSION < 14000
namespace std {

template <class To, class From> constexpr To bit_cast(const From& from) noexcept {
  static_assert(sizeof(To) == sizeof(From));
  return __builtin_bit_cast(To, from);
}

namespace ranges {

template <class R, class Test> constexpr bool any_of(R&& r, Test test) {
  return std::any_of(std::begin(r), std::end(r), test);
}

template <class A, class B, class Same = std::equal_to<>, class OfA, class OfB>
constexpr bool equal(A&& a, B&& b, Same same, OfA of_a, OfB of_b) {
  return std::equal(std::begin(a), std::end(a), std::begin(b), std::end(b),
                    [&](const auto& x, const auto& y) { return same(of_a(x), of_b(y)); });
}

template <class R, class T> constexpr auto find(R&& r, const T& x) {
  return std::find(std::begin(r), std::end(r), x);
}

template <class R, class Test> constexpr auto find_if(R&& r, Test test) {
  return std::find_if(std::begin(r), std::end(r), test);
}

template <class R, class T> constexpr void fill(R&& r, const T& x) {
  std::fill(std::begin(r), std::end(r), x);
}

template <class R, class Less> constexpr void sort(R&& r, Less less) {
  std::sort(std::begin(r), std::end(r), less);
}

template <class R, class Less, class Of> void stable_sort(R&& r, Less less, Of of) {
  std::stable_sort(std::begin(r), std::end(r), [&](const auto& a, const auto& b) {
    return less(std::invoke(of, a), std::invoke(of, b));
  });
}

template <class R, class Out, class F> constexpr void transform(R&& r, Out out, F f) {
  std::transform(std::begin(r), std::end(r), out, f);
}

}  // namespace ranges
}  // namespace std
#endif
