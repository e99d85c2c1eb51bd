// SPDX-License-Identifier: MIT
// The walks over memory: every place of the storage in a cache line, lengths around every vector, operands at
// the start of a wider result, and results too large for the cache. Only the room of the record changes.
#include "support/fence.h"

namespace sigpak::test {
namespace {

template <class V> class Walks : public testing::Test {};
TYPED_TEST_SUITE(Walks, records, record_names);

// An operation on a record, and another like it, into the record itself.
template <record V> struct walk {
  const char* name;
  bool complex;  // the operands
  index room;    // of the record, for every point
  status (*run)(V* v, const V* other);
};

template <record V> std::vector<walk<V>> walks() {
  return {{"mul", false, 1, [](V* v, const V* other) { return TWIN(b_mul)(v, other, v); }},
          {"rev", false, 1, [](V* v, const V*) { return TWIN(i_rev)(v); }},
          {"add", true, 2, [](V* v, const V* other) { return TWIN(b_add)(v, other, v); }},
          {"rtoc", false, 2, [](V* v, const V*) { return TWIN(i_rtoc)(v); }},
          {"timesi", false, 2, [](V* v, const V*) { return TWIN(i_timesi)(v); }},
          {"ritoc", false, 2, [](V* v, const V* other) { return TWIN(b_ritoc)(v, other, v); }},
          {"imag", true, 2, [](V* v, const V*) { return TWIN(i_imag)(v); }},
          {"magsq", true, 2, [](V* v, const V*) { return TWIN(i_magsq)(v); }}};
}

// A record that owns the place where it lies.
template <record V> V placed(scalar<V>* data, index points, bool complex, index room) {
  return {.delta = 1,
          .data = data,
          .alloc = static_cast<std::int32_t>(room),
          .points = static_cast<std::uint32_t>(points),
          .complex = complex ? 1 : 0,
          .reserved = 0};
}

TYPED_TEST(Walks, GiveTheSameAtEveryPlace) {
  using V = TypeParam;
  std::vector<index> lengths;
  for (index n = 0; n <= 36; ++n) lengths.push_back(n);
  lengths.insert(lengths.end(), {63, 64, 65, 71, 127, 128, 129, 145, 255, 257, 523});
  for (const auto& op : walks<V>()) {
    for (const index n : lengths) {
      const auto x = noise<V>(op.complex ? 2 * n : n, 1);
      const signal<V> other(noise<V>(op.complex ? 2 * n : n, 2), op.complex);
      signal<V> wanted(x, op.complex);
      ASSERT_EQ(op.run(&wanted, &other), 0);
      for (index offset = 0; offset < 16; ++offset) {
        SCOPED_TRACE(testing::Message() << op.name << ' ' << n << " points from scalar " << offset);
        auto got = run_fenced<V>(x, op.room * n, offset, [&](scalar<V>* data) {
          V v = placed<V>(data, n, op.complex, op.room * n);
          return op.run(&v, &other);
        });
        got.resize(wanted.values().size());
        ASSERT_TRUE(same_bits(got, wanted.values()));
      }
    }
  }
}

// Every pair of awkward parts, among ordinary points and beside others of its kind.
TYPED_TEST(Walks, GuardEveryPoint) {
  using V = TypeParam;
  using T = scalar<V>;
  const auto hard = awkward<V>();
  samples<V> parts = noise<V>(214);
  for (const T re : hard) {
    for (const T im : hard) parts.insert(parts.end(), {re, im});
  }
  const signal<V> z(parts, true);
  signal<V> squares;
  signal<V> inverses(parts, true);
  ASSERT_EQ(TWIN(u_magsq)(&z, &squares), 0);
  ASSERT_EQ(TWIN(i_recip)(&inverses), 0);
  samples<V> wanted_squares, wanted_inverses;
  const auto square = [](T x) { return std::abs(x) > huge<V> ? huge<V> : x * x; };
  for (std::size_t i = 0; i < parts.size(); i += 2) {
    wanted_squares.push_back(square(parts[i]) + square(parts[i + 1]));
    const double a = static_cast<double>(parts[i]);
    const double b = static_cast<double>(parts[i + 1]);
    const double h = static_cast<double>(huge<V>);
    const double s = a * a + b * b;
    const double inverse = std::abs(a) > h || std::abs(b) > h ? 1 / h : s == 0 ? h : 1 / s;
    wanted_inverses.insert(wanted_inverses.end(),
                           {static_cast<T>(inverse * a), static_cast<T>(-inverse * b)});
  }
  EXPECT_TRUE(same_numbers(squares.values(), wanted_squares));
  EXPECT_TRUE(same_numbers(inverses.values(), wanted_inverses));
}

// A result of 16 MiB and more is written past the cache where its storage allows.
TYPED_TEST(Walks, FillLargeResults) {
  using V = TypeParam;
  constexpr index n = (index{16} << 20) / static_cast<index>(sizeof(scalar<V>)) + 37;
  const signal<V> a(noise<V>(n, 1));
  const signal<V> b(noise<V>(n, 2));
  for (const index offset : {0, 1}) {
    const auto result_of = [&](auto run) {
      return run_fenced<V>({}, 2 * n, offset, [&](scalar<V>* data) {
        V out = placed<V>(data, 0, false, 2 * n);
        return run(&a, &b, &out);
      });
    };
    const auto difference = result_of(TWIN(b_sub));
    const auto both = result_of(TWIN(b_inter));
    for (index i = 0; i < n; ++i) {
      const auto k = static_cast<std::size_t>(i);
      ASSERT_EQ(difference[k], a.data[i] - b.data[i]) << offset << ' ' << i;
      ASSERT_TRUE(both[2 * k] == a.data[i] && both[2 * k + 1] == b.data[i]) << offset << ' ' << i;
    }
  }
}

}  // namespace
}  // namespace sigpak::test
