// SPDX-License-Identifier: MIT
// Operations held to a model of the record, in every form that a record can have.
#pragma once

#include <complex>

#include "support/signal.h"

namespace sigpak::test {

// What a record says: its points as complex numbers, its form and its spacing.
template <record V> struct contents {
  using T = scalar<V>;
  explicit contents(const V& v) : complex(is_complex(&v)), delta(v.delta) {
    for (index i = 0; i < length(&v); ++i) {
      points.emplace_back(v.data[i * width(&v)], complex ? v.data[2 * i + 1] : T(0));
    }
  }
  std::vector<std::complex<T>> points;
  bool complex;
  T delta;
};

template <record V> std::vector<std::complex<long double>> wide_points(const V& v) {
  const contents<V> c(v);
  return {c.points.begin(), c.points.end()};
}

template <record V> void expect_equal(const contents<V>& got, const contents<V>& wanted) {
  ASSERT_EQ(got.points, wanted.points);
  ASSERT_EQ(got.complex, wanted.complex);
  ASSERT_EQ(got.delta, wanted.delta);
}

// check(v) for records of noise: of every size, real and complex, of their own storage and lent.
template <record V, class Check> void for_each_form(const std::vector<index>& sizes, Check check) {
  for (const index n : sizes) {
    for (const bool complex : {false, true}) {
      for (const bool lent : {false, true}) {
        SCOPED_TRACE(testing::Message() << n << (complex ? " complex" : " real") << (lent ? ", lent" : ""));
        signal<V> v(noise<V>(complex ? 2 * n : n), complex);
        v.delta = scalar<V>(0.3);
        if (lent) v.lend();
        check(v);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

// run(v) in place leaves what model(c) makes of the contents before it, to the last bit.
template <record V, class Run, class Model>
void expect_in_place(Run run, Model model, const std::vector<index>& sizes = edge_sizes()) {
  for_each_form<V>(sizes, [&](signal<V>& v) {
    contents<V> wanted(v);
    ASSERT_EQ(run(&v), 0);
    model(wanted);
    expect_equal(contents<V>(v), wanted);
  });
}

// Records that hold nothing pass through, among them those whose count reads as negative.
template <record V> void expect_empty_untouched(const std::vector<std::int32_t (*)(V*)>& runs) {
  for (const auto run : runs) {
    for (const std::uint32_t points : {0U, 0x80000000U, 0xffffffffU}) {
      V v{.delta = 3, .data = nullptr, .alloc = 0, .points = points, .complex = 0, .reserved = 0};
      EXPECT_EQ(run(&v), 0);
      EXPECT_EQ(v.points, points);
      EXPECT_EQ(v.data, nullptr);
      EXPECT_EQ(v.delta, 3);
    }
  }
}

// A complex record is refused and stays as it was.
template <record V, class Run> void expect_complex_refused(Run run) {
  signal<V> v({0, 1, 2, -1}, true);
  v.delta = 3;
  const contents<V> before(v);
  EXPECT_EQ(run(&v), -1);
  expect_equal(contents<V>(v), before);
}

}  // namespace sigpak::test
