// SPDX-License-Identifier: MIT
// The running average of records.
#include "support/failing.h"
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class Average : public testing::Test {};
TYPED_TEST_SUITE(Average, records, record_names);

constexpr int exponential = 16;
constexpr int squared = 32;

template <record V>
status fold(const V& in, V* avg, V* scratch, int flags, int count, int every = 0, double weight = -1,
            double most = 0) {
  using T = scalar<V>;
  return TWIN(h_avg)(&in, avg, scratch, flags, count, every, static_cast<T>(weight), static_cast<T>(most));
}

TYPED_TEST(Average, EveryModeFoldsItsWay) {
  using V = TypeParam;
  const struct {
    const char* what;
    int flags, every;
    double weight, most;
    std::vector<double> records, wanted;
  } cases[] = {{"replaced", 0, 0, -1, 0, {2, 4, 6}, {2, 4, 6}},
               {"plain mean", 1, 0, -1, 0, {2, 4, 6}, {2, 3, 4}},
               {"mean, most without its flag", 1, 0, -1, 2, {2, 4, 6}, {2, 3, 4}},
               {"exponential mean", 1 | exponential, 0, -1, 2, {2, 4, 6, 8.5}, {2, 3, 4.5, 6.5}},
               {"exponential, most not above 0", 1 | exponential, 0, -1, 0, {2, 4, 6}, {2, 3, 4}},
               {"exponential, most a fraction", 1 | exponential, 0, -1, 0.5, {2, 4, 6}, {2, 6, 6}},
               {"given weight", 1 | exponential, 0, 0.25, 2, {4, 8, 1}, {4, 5, 4}},
               {"weight zero", 1, 0, 0, 0, {4, 8}, {4, 4}},
               {"peak hold", 2, 0, -1, 0, {2, 4, 3}, {2, 4, 4}},
               {"minimum hold", 3, 0, -1, 0, {3, 2, 4}, {3, 2, 2}},
               {"harmonic", 4, 0, -1, 0, {1, 0.5, 0.2}, {1, 2. / 3, 0.375}},
               {"geometric", 5, 0, -1, 0, {1, 4, 2}, {1, 2, 2}},
               {"every third", 6, 3, -1, 0, {1, 2, 3, 4, 5, 6, 7}, {1, 1, 1, 4, 4, 4, 7}},
               {"every one", 6, 1, -1, 0, {1, 2, 3}, {1, 2, 3}},
               {"never again", 6, 0, -1, 0, {1, 2, 3}, {1, 1, 1}},
               {"never, negative", 6, -3, -1, 0, {1, 2, 3, 4}, {1, 1, 1, 1}},
               {"weight not a number", 1, 0, std::nan(""), 0, {2, 4}, {2, std::nan("")}},
               {"no mode", 7, 1, -1, 0, {1, 2}, {1, 1}},
               {"no mode", 15, 1, -1, 0, {1, 2}, {1, 1}},
               {"mean of squares", 1 | squared, 0, -1, 0, {1, 3, -2}, {1, 5, 14. / 3}},
               {"harmonic of squares", 4 | squared, 0, -1, 0, {1, 2}, {1, 1.6}}};
  for (const auto& c : cases) {
    for (const bool scratch : {false, true}) {
      signal<V> avg;
      signal<V> work;
      for (std::size_t i = 0; i < c.records.size(); ++i) {
        const signal<V> in{c.records[i]};
        const int count = static_cast<int>(i) + 1;
        ASSERT_EQ(fold<V>(in, &avg, scratch ? &work : nullptr, c.flags, count, c.every, c.weight, c.most), 0);
        const double error = std::abs(static_cast<double>(avg.data[0]) - c.wanted[i]);
        EXPECT_TRUE(error <= 16 * unit_roundoff<V> * c.wanted[i] ||
                    (std::isnan(error) && std::isnan(c.wanted[i])))
            << c.what << " at " << i;
      }
    }
  }
}

TYPED_TEST(Average, FirstRecordIsCopiedWhateverTheMode) {
  using V = TypeParam;
  for_each_form<V>({0, 3}, [](signal<V>& in) {
    for (int mode = 0; mode < 16; ++mode) {
      for (const int count : {1, 0, -5}) {
        signal<V> avg{9};
        ASSERT_EQ(fold<V>(in, &avg, nullptr, mode, count), 0);
        expect_equal(contents<V>(avg), contents<V>(in));
      }
    }
  });
}

TYPED_TEST(Average, ScratchHoldsTheSquaresOrIsTheAverageItself) {
  using V = TypeParam;
  const signal<V> in({3, 4, 0, 2}, true);
  signal<V> avg;
  signal<V> scratch;
  ASSERT_EQ(fold<V>(in, &avg, &scratch, 1 | squared, 1), 0);
  EXPECT_EQ(avg.values(), (samples<V>{25, 4}));
  EXPECT_EQ(avg.complex, 0);
  EXPECT_EQ(scratch.values(), avg.values());
  signal<V> self{2};
  ASSERT_EQ(fold<V>(signal<V>{4}, &self, &self, 4, 2), 0);
  EXPECT_EQ(self.values(), (samples<V>{4})) << "turned once";
}

// Those of the harmonic mean after the later steps ran: the reciprocal of the reciprocal.
TYPED_TEST(Average, RecordsOfOtherLengthsAreRefused) {
  using V = TypeParam;
  for (const int mode : {1, 2, 3, 4}) {
    signal<V> avg{2, 4, 8};
    EXPECT_EQ(fold<V>(signal<V>{4, 5}, &avg, nullptr, mode, 2), -1);
    EXPECT_EQ(avg.values(), (samples<V>{2, 4, 8}));
  }
}

TYPED_TEST(Average, StepsWithoutStorageAreLeftOut) {
  using V = TypeParam;
  const signal<V> in(noise<V>(6), true);
  for (const int flags : {4, 5, 4 | squared, 5 | squared}) {
    for (int allowed = 0; allowed < 3; ++allowed) {
      for (const bool complex : {false, true}) {
        signal<V> avg(noise<V>(complex ? 6 : 3), complex);
        const bool grows = !complex && (flags & squared) == 0;
        {
          const failing_records records(allowed);
          EXPECT_EQ(fold<V>(in, &avg, nullptr, flags, 2), allowed < (grows ? 2 : 1) ? -1 : 0)
              << flags << ' ' << allowed;
        }
        if (avg.data == nullptr) avg.points = 0;
      }
    }
  }
  signal<V> self;
  const failing_records none(0);
  EXPECT_EQ(fold<V>(in, &self, nullptr, 7 | squared, 2), -1) << "the squares have no place";
}

}  // namespace
}  // namespace sigpak::test
