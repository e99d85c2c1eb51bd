// SPDX-License-Identifier: MIT
// Records for tests: owned by the library, or lent by the test.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/twins.h"

namespace sigpak::test {

template <record V> using samples = std::vector<scalar<V>>;

// A record that owns its storage, or that is lent a buffer of its own, and is destroyed with its scope.
template <record V> class signal : public V {
 public:
  signal() { TWIN(_init)(this); }
  signal(std::initializer_list<double> values, bool pairs = false) : signal(cast(values), pairs) {}
  // The imaginary part that an odd number of values leaves open is 0.
  explicit signal(samples<V> values, bool pairs = false) : signal() {
    if (pairs && values.size() % 2 != 0) values.push_back(0);
    this->complex = pairs ? 1 : 0;
    this->points = static_cast<std::uint32_t>(values.size() / (pairs ? 2 : 1));
    EXPECT_EQ(TWIN(_alloc)(this), 0);
    std::copy(values.begin(), values.end(), this->data);
  }
  ~signal() { TWIN(_destroy)(this); }
  signal(const signal&) = delete;
  signal& operator=(const signal&) = delete;

  // The same contents in a buffer that the library does not own.
  void lend() {
    buffer_ = values();
    const V shape = *this;
    TWIN(_destroy)(this);
    static_cast<V&>(*this) = shape;
    this->alloc = 0;
    this->data = buffer_.data();
  }
  const samples<V>& lent() const { return buffer_; }

  samples<V> values() const { return samples<V>(this->data, this->data + scalars<V>(this)); }

 private:
  static samples<V> cast(std::initializer_list<double> values) {
    samples<V> out;
    for (const double x : values) out.push_back(static_cast<scalar<V>>(x));
    return out;
  }
  samples<V> buffer_;
};

// Uniform in [-1, 1), the same run of numbers for the same seed.
template <record V> samples<V> noise(index count, unsigned seed = 1) {
  std::mt19937_64 engine(seed);
  samples<V> out(static_cast<std::size_t>(count));
  for (auto& x : out) {
    x = static_cast<scalar<V>>(static_cast<double>(engine() >> 11) * 0x1p-52 - 1.0);
  }
  return out;
}

// Bit patterns that an operation must survive.
template <record V> samples<V> awkward() {
  using T = scalar<V>;
  constexpr T inf = std::numeric_limits<T>::infinity();
  constexpr T nan = std::numeric_limits<T>::quiet_NaN();
  constexpr T h = huge<V>;
  constexpr T least = std::numeric_limits<T>::denorm_min();
  constexpr T tiny = std::numeric_limits<T>::min();
  constexpr T most = std::numeric_limits<T>::max();
  return {T(0), -T(0), T(1),  -T(1),  h,    -h,    2 * h, -2 * h, inf,
          -inf, nan,   least, -least, tiny, -tiny, most,  -most};
}

// The sizes around every vector width and block length, small enough to try them all.
inline std::vector<index> edge_sizes() {
  std::vector<index> sizes;
  for (index n = 0; n <= 70; n += watched() && n >= 18 ? 5 : 1) sizes.push_back(n);
  for (const index block : {128, 256, 512, 1024, 2048, 4096}) {
    for (index n = block - 1; n <= block + 1; ++n) sizes.push_back(n);
  }
  return sizes;
}

// Same bits, so that NaN and the signs of zeros count.
template <class T> bool same_bits(const std::vector<T>& a, const std::vector<T>& b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

// The same number: any NaN is every other, whatever its sign and payload, and the signs of zeros count.
template <class T> bool same_number(T a, T b) {
  return (a != a && b != b) || (a == b && std::signbit(a) == std::signbit(b));
}

// Of two lists the first numbers that are not the same are told.
template <class T> testing::AssertionResult same_numbers(const std::vector<T>& a, const std::vector<T>& b) {
  if (a.size() != b.size()) return testing::AssertionFailure() << a.size() << " and " << b.size();
  const auto [at, other] = std::ranges::mismatch(a, b, same_number<T>);
  if (at == a.end()) return testing::AssertionSuccess();
  return testing::AssertionFailure() << *at << " and " << *other << " at " << at - a.begin();
}

// Relative distance in the Euclidean norm; the reference is the second.
template <class A, class B> double relative_l2(const A& got, const B& wanted) {
  long double difference = 0;
  long double norm = 0;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    const auto d = static_cast<long double>(got[i]) - static_cast<long double>(wanted[i]);
    difference += d * d;
    norm += static_cast<long double>(wanted[i]) * static_cast<long double>(wanted[i]);
  }
  return static_cast<double>(std::sqrt(difference / norm));
}

}  // namespace sigpak::test
