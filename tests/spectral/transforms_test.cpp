// SPDX-License-Identifier: MIT
// Every transform against long double: of every length and form, with its spacing, its refusals, its
// failures.
#include "core/isa.h"
#include "spectral/reference.h"
#include "support/failing.h"
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class Transforms : public testing::Test {};
TYPED_TEST_SUITE(Transforms, records, record_names);

exact_signal forward(const exact_signal& x) { return exact_transform(x, false); }
exact_signal inverse(const exact_signal& x) { return exact_transform(x, true); }

exact_signal half_spectrum(const exact_signal& x) {
  exact_signal out = exact_transform(x, false);
  out.resize(x.size() / 2 + 1);
  return out;
}

// The real parts of the inverse of the spectrum whose lower half is given.
template <bool odd> exact_signal inverse_of_half(const exact_signal& half) {
  exact_signal whole = half;
  for (std::size_t k = half.size() - (odd ? 0 : 1); k > 1; --k) whole.push_back(std::conj(half[k - 1]));
  whole = exact_transform(whole, true);
  for (auto& z : whole) z = z.real();
  return whole;
}

// The mean of products with cosines, or the sum of cosines that gives back what it is the mean of.
template <bool inverse> exact_signal cosine_sums(const exact_signal& x) {
  const std::size_t n = x.size();
  exact_signal roots(4 * n);
  for (std::size_t k = 0; k < 4 * n; ++k) roots[k] = exact_root(k, 4 * n, 1).real();
  exact_signal out(n);
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t i = 0; i < n; ++i) {
      const exact root = roots[(2 * i + 1) * k % (4 * n)];
      if (inverse) out[i] += x[k] * root * (k > 0 ? 2.0L : 1.0L);
      if (!inverse) out[k] += x[i] * root / static_cast<long double>(n);
    }
  }
  return out;
}

// Every bin times the factor for its frequency's sign.
exact_signal filtered(const exact_signal& x, exact zero, exact positive, exact middle, exact negative) {
  const std::size_t n = x.size();
  exact_signal bins = exact_transform(x, false);
  for (std::size_t k = 0; k < n; ++k) {
    bins[k] = times(bins[k], k == 0 ? zero : 2 * k < n ? positive : 2 * k == n ? middle : negative);
  }
  return exact_transform(bins, true);
}
exact_signal turned(const exact_signal& x) { return filtered(x, 0, {0, -1}, 0, {0, 1}); }
exact_signal one_sided(const exact_signal& x) { return filtered(x, 1, 2, 1, 0); }

enum class after { real, complex, as_before };
enum class takes { all, real_only };
enum class lengths { all, powers, halves_of_powers };
enum class nan_spacing { stays, stays_at_powers, becomes_huge };

template <record V> struct transform {
  const char* name;
  std::int32_t (*run)(V*);
  exact_signal (*model)(const exact_signal&);
  double limit;  // of the error in units of u sqrt(log2 n)
  takes form;
  after result;
  lengths accepted;
  nan_spacing nan;
};

template <record V> std::vector<transform<V>> transforms() {
  using enum lengths;
  using enum nan_spacing;
  constexpr auto any = takes::all;
  constexpr auto real = takes::real_only;
  return {
      {"fft", [](V* v) { return TWIN(i_fft)(v, 0); }, forward, 1.5, any, after::complex, powers, stays},
      {"inverse fft", [](V* v) { return TWIN(i_fft)(v, -3); }, inverse, 1.5, any, after::complex, powers,
       stays},
      {"rfft", TWIN(i_rfft), half_spectrum, 1.5, real, after::complex, powers, becomes_huge},
      {"irfft", TWIN(i_irfft), inverse_of_half<false>, 1.5, any, after::real, halves_of_powers, stays},
      {"dft", [](V* v) { return TWIN(i_dft)(v, 0); }, forward, 4, any, after::complex, all, stays_at_powers},
      {"inverse dft", [](V* v) { return TWIN(i_dft)(v, -2); }, inverse, 4, any, after::complex, all,
       stays_at_powers},
      {"rdft", TWIN(i_rdft), half_spectrum, 4, real, after::complex, all, becomes_huge},
      {"irdft", [](V* v) { return TWIN(i_irdft)(v, 0); }, inverse_of_half<false>, 4, any, after::real, all,
       stays_at_powers},
      {"odd irdft", [](V* v) { return TWIN(i_irdft)(v, 5); }, inverse_of_half<true>, 4, any, after::real, all,
       stays_at_powers},
      {"dct", [](V* v) { return TWIN(i_dct)(v, 2); }, cosine_sums<false>, 4, real, after::real, all,
       becomes_huge},
      {"inverse dct", [](V* v) { return TWIN(i_dct)(v, 1); }, cosine_sums<true>, 4, real, after::real, all,
       becomes_huge},
      {"hilbert", TWIN(i_hilbert), turned, 8, any, after::as_before, all, stays_at_powers},
      {"analytic", TWIN(i_analytic), one_sided, 8, any, after::complex, all, stays_at_powers}};
}

template <record V> bool is_inverse_half(const transform<V>& op) {
  return op.model == inverse_of_half<false> || op.model == inverse_of_half<true>;
}

template <record V> std::vector<index> sizes(const transform<V>& op) {
  std::vector<index> out{1,  2,  3,  4,  5,  6,  7,  8,   9,   10,  11,  12,  15,  16,  17,
                         18, 31, 33, 60, 63, 64, 65, 100, 127, 129, 255, 257, 480, 720, 1025};
  if (op.accepted == lengths::all) return out;
  out = {1};
  for (index n = 2; n <= 8192; n *= 2) out.push_back(op.accepted == lengths::powers ? n : n / 2 + 1);
  return out;
}

TYPED_TEST(Transforms, FollowTheirDefinitions) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const auto& op : transforms<V>()) {
    SCOPED_TRACE(op.name);
    for_each_form<V>(sizes(op), [&op](signal<V>& v) {
      const bool complex = v.complex != 0;
      const auto lent = v.lent();
      const index points = v.points;
      if (complex && op.form == takes::real_only) return;
      const auto wanted = op.model(exact_points<V>(v));
      const index n = is_inverse_half(op) ? std::ssize(wanted) : points;
      const T delta = v.delta;
      ASSERT_EQ(op.run(&v), 0);
      ASSERT_EQ(v.points, wanted.size());
      EXPECT_EQ(v.complex != 0, op.result == after::complex ? n > 1 || complex || op.model == one_sided
                                                            : op.result == after::as_before && complex);
      EXPECT_LT(transform_error<V>(v, wanted, n), op.limit);
      const T there = 1 / (static_cast<T>(n) * delta);
      const T back = 1 / (static_cast<T>(n) * there);
      EXPECT_EQ(v.delta, op.model == turned || op.model == one_sided ? back : there);
      if (op.accepted == lengths::all || points <= 2 || lent.empty())
        return;  // the others take several steps
      const bool in_place = complex && op.result == after::complex;
      EXPECT_EQ(v.data == v.lent().data(), in_place);
      EXPECT_TRUE(in_place || v.lent() == lent);
    });
  }
}

TYPED_TEST(Transforms, FindTheLevelAtTheFirstCall) {
  using V = TypeParam;
  const isa::level level = isa::current();
  for (const auto& op : transforms<V>()) {
    const index n = op.accepted == lengths::halves_of_powers ? 5 : 8;
    const bool complex = op.form == takes::all;
    signal<V> v(noise<V>(complex ? 2 * n : n), complex);
    const auto wanted = op.model(exact_points<V>(v));
    isa::detail::chosen = isa::detail::unknown;
    ASSERT_EQ(op.run(&v), 0);
    EXPECT_LT(transform_error<V>(v, wanted, n), op.limit) << op.name;
  }
  isa::force(level);
}

TYPED_TEST(Transforms, StayAccurateWhenLong) {
  using V = TypeParam;
  for (const auto& op : transforms<V>()) {
    if (op.model != forward) continue;
    const index n = op.accepted == lengths::powers ? index{1} << 18 : 10007;
    signal<V> v(noise<V>(2 * n), true);
    const auto wanted = forward(exact_points<V>(v));
    ASSERT_EQ(op.run(&v), 0);
    EXPECT_LT(transform_error<V>(v, wanted, n), op.limit) << op.name;
  }
}

// Noise so small that the results are hardly normal numbers: what is lost on the way shows. Of the lengths
// each is another kernel's at the wide levels.
TYPED_TEST(Transforms, TinyDataKeepTheErrorBound) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr double tiny = std::numeric_limits<T>::min();
  for (const auto& op : transforms<V>()) {
    if (op.model != forward && op.model != inverse && op.model != half_spectrum) continue;
    for (const index n : {4, 8, 16, 32, 64, 128, 1024, 65536, 5, 10, 12, 37, 67, 480, 1000, 1003, 4099}) {
      if (op.accepted == lengths::powers && !std::has_single_bit(static_cast<unsigned>(n))) continue;
      const bool complex = op.form == takes::all;
      const double growth = std::sqrt(static_cast<double>(n));
      const double size = op.model == inverse ? tiny : 4 * tiny * growth;
      samples<V> x = noise<V>(complex ? 2 * n : n);
      for (T& value : x) value *= static_cast<T>(size);
      signal<V> v(x, complex);
      const auto wanted = op.model(exact_points<V>(v));
      ASSERT_EQ(op.run(&v), 0);
      EXPECT_LT(transform_error<V>(v, wanted, n), op.limit) << op.name << n;
    }
  }
}

TYPED_TEST(Transforms, ConstantsOfTheSmallestNormalNumberStayExact) {
  using V = TypeParam;
  constexpr auto least = std::numeric_limits<scalar<V>>::min();
  for (index n = 2; n <= 1 << 16; n *= 2) {
    for (const auto run : {+[](V* v) { return TWIN(i_fft)(v, 0); }, TWIN(i_rfft)}) {
      signal<V> v(samples<V>(static_cast<std::size_t>(n), least));
      ASSERT_EQ(run(&v), 0);
      samples<V> wanted(v.values().size());
      wanted[0] = least;
      EXPECT_EQ(v.values(), wanted) << n;
    }
  }
}

TYPED_TEST(Transforms, SpacingZeroAndNan) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T nan = std::numeric_limits<T>::quiet_NaN();
  for (const auto& op : transforms<V>()) {
    for (const index points : {1, 2, 3, 4, 5, 12, 17}) {
      if (op.accepted == lengths::powers && !std::has_single_bit(static_cast<unsigned>(points))) continue;
      for (const T delta : {T(0), nan}) {
        signal<V> v(noise<V>(points));
        v.delta = delta;
        if (op.run(&v) != 0) continue;
        const auto n = static_cast<unsigned>(is_inverse_half(op) ? v.points : points);
        const bool at_powers = n > 1 && std::has_single_bit(n);
        const bool stays =
            op.nan == nan_spacing::stays || (op.nan == nan_spacing::stays_at_powers && at_powers);
        const bool twice = op.model == turned || op.model == one_sided;
        const T wanted = delta != 0 && stays ? nan : twice ? 1 / (static_cast<T>(n) * huge<V>) : huge<V>;
        EXPECT_TRUE(v.delta == wanted || (v.delta != v.delta && wanted != wanted)) << op.name << ' ' << n;
      }
    }
  }
}

TYPED_TEST(Transforms, RefuseUntouchedWhatTheyDoNotTake) {
  using V = TypeParam;
  for (const auto& op : transforms<V>()) {
    SCOPED_TRACE(op.name);
    for_each_form<V>({0, 3, 4, 6, 12, 1023, 1025}, [&op](signal<V>& v) {
      const bool power = std::has_single_bit(v.points);
      const bool half = v.points > 1 && std::has_single_bit(v.points - 1);
      const bool length = op.accepted == lengths::all || (op.accepted == lengths::powers ? power : half);
      const bool refused = !length || (v.complex != 0 && op.form == takes::real_only);
      const contents<V> before(v);
      ASSERT_EQ(op.run(&v), refused ? -1 : 0);
      EXPECT_TRUE(!refused || v.delta == before.delta);
      if (refused && op.accepted != lengths::halves_of_powers) expect_equal(contents<V>(v), before);
      if (!refused && before.points.empty()) {
        EXPECT_EQ(v.points, 0U);
        EXPECT_EQ(v.complex != 0, before.complex && op.result != after::real);
        const bool like_one = op.model == forward || op.model == inverse;
        const bool stays = !like_one && op.model != half_spectrum && !is_inverse_half(op);
        EXPECT_TRUE(!like_one || v.delta == 1 / before.delta);
        EXPECT_TRUE(!stays || v.delta == before.delta);
      }
    });
    if (op.accepted != lengths::all) {
      V negative{.delta = 3, .data = nullptr, .alloc = 0, .points = 0x80000000U, .complex = 0, .reserved = 0};
      EXPECT_EQ(op.run(&negative), -1);
    }
  }
}

template <record V> samples<V> result_of(const transform<V>& op, index points) {
  signal<V> v(noise<V>(points));
  EXPECT_EQ(op.run(&v), 0) << op.name;
  return v.values();
}

// Lengths of the split-radix transform and, with the factor 17, of the chirp, short and long.
template <record V> std::vector<index> typical_sizes(const transform<V>& op) {
  if (op.accepted == lengths::powers) return {64, 128, 1024};
  return op.accepted == lengths::all ? std::vector<index>{64, 85, 1003} : std::vector<index>{33, 65, 1025};
}

// After any short length of the same transform and of its neighbours in the table, its own inverse among
// them.
TYPED_TEST(Transforms, DoNotDependOnTheCallBefore) {
  using V = TypeParam;
  const auto ops = transforms<V>();
  for (std::size_t k = 0; k < ops.size(); ++k) {
    for (const index n : sizes(ops[k])) {
      if (n > 130) continue;
      ASSERT_EQ(TWIN(_free_internal)(), 0);
      const auto wanted = result_of(ops[k], n);
      for (std::size_t other = k > 0 ? k - 1 : 0; other < std::min(k + 2, ops.size()); ++other) {
        for (const index before : sizes(ops[other])) {
          if (before > 130) continue;
          result_of(ops[other], before);
          ASSERT_EQ(result_of(ops[k], n), wanted)
              << ops[k].name << n << " after " << ops[other].name << before;
        }
      }
    }
  }
}

// Every allocation of one kind is refused in turn: the call fails, and the next ones are right all the same,
// of this length and of another, whichever comes first.
template <class Failing, record V> int refusals(const transform<V>& op, index n) {
  const index points[] = {n, typical_sizes(op)[1]};
  const samples<V> wanted[] = {result_of(op, points[0]), result_of(op, points[1])};
  for (int attempt = 0; attempt < 200; ++attempt) {
    EXPECT_EQ(TWIN(_free_internal)(), 0);
    EXPECT_EQ(result_of(op, points[1]), wanted[1]);
    signal<V> v(noise<V>(n));
    const contents<V> before(v);
    status outcome = ok;
    {
      const Failing rest(attempt / 2);
      outcome = op.run(&v);
    }
    if (outcome == ok) return v.values() == wanted[0] ? attempt / 2 : -1;
    if (v.data == nullptr) {
      v.points = 0;
    } else if (op.accepted != lengths::all || op.model == cosine_sums<false> ||
               op.model == cosine_sums<true>) {
      EXPECT_EQ(v.points, before.points.size());
    }
    EXPECT_TRUE(v.delta == before.delta || op.model == turned || op.model == one_sided);
    for (const int k : {attempt % 2, 1 - attempt % 2}) EXPECT_EQ(result_of(op, points[k]), wanted[k]);
  }
  return -1;
}

TYPED_TEST(Transforms, RecoverFromEveryFailedAllocation) {
  using V = TypeParam;
  for (const auto& op : transforms<V>()) {
    SCOPED_TRACE(op.name);
    for (const index n : {typical_sizes(op)[0], typical_sizes(op)[2]}) {
      EXPECT_GT(refusals<failing_tables>(op, n), n > 100 ? 0 : -1);
      EXPECT_GE(refusals<failing_records>(op, n), op.result == after::complex ? 1 : 0);
    }
  }
  ASSERT_EQ(TWIN(_free_internal)(), 0);
}

TYPED_TEST(Transforms, HilbertOfOneLentPointWritesNothingBeyond) {
  using V = TypeParam;
  scalar<V> buffer[] = {5, 7};
  V v{.delta = 1, .data = buffer, .alloc = 0, .points = 1, .complex = 0, .reserved = 0};
  ASSERT_EQ(TWIN(i_hilbert)(&v), 0);
  EXPECT_EQ(buffer[0], 0);
  EXPECT_EQ(buffer[1], 7);
}

}  // namespace
}  // namespace sigpak::test
