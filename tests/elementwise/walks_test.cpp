// SPDX-License-Identifier: MIT
// The walks over memory: every place of the storage in a cache line, lengths around every vector, operands at
// the start of a wider result, and results too large for the cache. Only the values asked for change.
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Walks : public testing::Test {};
TYPED_TEST_SUITE(Walks, records, record_names);

// A record that owns a place inside a larger block of noise.
template <record V> class placed : public V {
 public:
  placed(index offset, index n, bool pairs, index room, unsigned seed)
      : block_(noise<V>(offset + room + margin, seed)), before_(block_), offset_(offset), room_(room) {
    *static_cast<V*>(this) = V{.delta = 1,
                               .data = block_.data() + offset,
                               .alloc = static_cast<std::int32_t>(room),
                               .points = static_cast<std::uint32_t>(n),
                               .complex = pairs ? 1 : 0,
                               .reserved = 0};
  }
  placed(const placed&) = delete;
  placed& operator=(const placed&) = delete;

  scalar<V> old(index i) const { return before_[static_cast<std::size_t>(offset_ + i)]; }

  // Holds wanted(i) in its scalars, and around its room what there was before.
  template <class Wanted> void expect(index scalars, Wanted wanted) const {
    index i = 0;
    while (i < scalars && this->data[i] == wanted(i)) ++i;
    ASSERT_EQ(i, scalars) << "scalar " << i;
    const auto begin = before_.begin() + offset_;
    ASSERT_TRUE(std::equal(before_.begin(), begin, block_.begin()));
    ASSERT_TRUE(std::equal(begin + room_, before_.end(), block_.begin() + offset_ + room_));
  }

 private:
  static constexpr index margin = 20;
  samples<V> block_;
  samples<V> before_;
  index offset_;
  index room_;
};

std::vector<index> lengths() {
  std::vector<index> sizes;
  for (index n = 0; n <= 36; ++n) sizes.push_back(n);
  for (const index n : {63, 64, 65, 71, 127, 128, 129, 145, 255, 257, 523}) sizes.push_back(n);
  return sizes;
}

template <class Check> void for_each_place(Check check) {
  for (index offset = 0; offset < 16; ++offset) {
    for (const index n : lengths()) {
      SCOPED_TRACE(testing::Message() << n << " points from scalar " << offset);
      check(offset, n);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

TYPED_TEST(Walks, ReachEveryPlace) {
  using V = TypeParam;
  for_each_place([](index offset, index n) {
    placed<V> a(offset, n, false, n, 1);
    placed<V> b(3, n, false, n, 2);
    ASSERT_EQ(TWIN(b_mul)(&a, &b, &a), 0);
    a.expect(n, [&](index i) { return a.old(i) * b.old(i); });
    ASSERT_EQ(TWIN(i_rev)(&b), 0);
    b.expect(n, [&](index i) { return b.old(n - 1 - i); });

    placed<V> z(offset, n, true, 2 * n, 3);
    placed<V> w(5, n, true, 2 * n, 4);
    ASSERT_EQ(TWIN(b_add)(&z, &w, &z), 0);
    z.expect(2 * n, [&](index i) { return z.old(i) + w.old(i); });
  });
}

TYPED_TEST(Walks, SpreadAndPackInPlace) {
  using V = TypeParam;
  using T = scalar<V>;
  for_each_place([](index offset, index n) {
    placed<V> x(offset, n, false, 2 * n, 1);
    ASSERT_EQ(TWIN(i_rtoc)(&x), 0);
    x.expect(2 * n, [&](index i) { return i % 2 == 0 ? x.old(i / 2) : T(0); });

    placed<V> y(offset, n, false, 2 * n, 2);
    ASSERT_EQ(TWIN(i_timesi)(&y), 0);
    y.expect(2 * n, [&](index i) { return i % 2 == 0 ? T(0) : y.old(i / 2); });

    placed<V> re(offset, n, false, 2 * n, 3);
    placed<V> im(4, n, false, n, 4);
    ASSERT_EQ(TWIN(b_ritoc)(&re, &im, &re), 0);
    re.expect(2 * n, [&](index i) { return i % 2 == 0 ? re.old(i / 2) : im.old(i / 2); });

    placed<V> z(offset, n, true, 2 * n, 5);
    ASSERT_EQ(TWIN(i_imag)(&z), 0);
    z.expect(n, [&](index i) { return z.old(2 * i + 1); });

    placed<V> p(offset, n, true, 2 * n, 6);
    ASSERT_EQ(TWIN(i_magsq)(&p), 0);
    p.expect(n, [&](index i) { return p.old(2 * i) * p.old(2 * i) + p.old(2 * i + 1) * p.old(2 * i + 1); });
  });
}

template <class T> void expect_same_or_nan(T got, T wanted, index i) {
  if (std::isnan(wanted)) {
    ASSERT_TRUE(std::isnan(got)) << i;
  } else {
    ASSERT_EQ(got, wanted) << i;
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
  const auto square = [](T x) { return std::abs(x) > huge<V> ? huge<V> : x * x; };
  for (index i = 0; i < static_cast<index>(z.points); ++i) {
    const T re = z.data[2 * i];
    const T im = z.data[2 * i + 1];
    expect_same_or_nan(squares.data[i], square(re) + square(im), i);
    const double a = static_cast<double>(re);
    const double b = static_cast<double>(im);
    const double h = static_cast<double>(huge<V>);
    const double s = a * a + b * b;
    const double inverse = std::abs(a) > h || std::abs(b) > h ? 1 / h : s == 0 ? h : 1 / s;
    expect_same_or_nan(inverses.data[2 * i], static_cast<T>(inverse * a), i);
    expect_same_or_nan(inverses.data[2 * i + 1], static_cast<T>(-inverse * b), i);
  }
}

// A result of 16 MiB and more is written past the cache where its storage allows.
TYPED_TEST(Walks, FillLargeResults) {
  using V = TypeParam;
  constexpr index n = (index{16} << 20) / static_cast<index>(sizeof(scalar<V>)) + 37;
  for (const index offset : {0, 1}) {
    SCOPED_TRACE(offset);
    placed<V> a(0, n, false, n, 1);
    placed<V> b(2, n, false, n, 2);
    placed<V> out(offset, 0, false, 2 * n, 3);
    ASSERT_EQ(TWIN(b_sub)(&a, &b, &out), 0);
    out.expect(n, [&](index i) { return a.old(i) - b.old(i); });
    ASSERT_EQ(TWIN(b_inter)(&a, &b, &out), 0);
    out.expect(2 * n, [&](index i) { return i % 2 == 0 ? a.old(i / 2) : b.old(i / 2); });
  }
}

}  // namespace
}  // namespace sigpak::test
