// Random records: the sequences that follow from a seed, and their statistics.
#include <gtest/gtest.h>

#include <cstdlib>
#include <numbers>
#include <random>

#include "generate/generate.h"
#include "support/failing.h"
#include "support/signal.h"

namespace {

// What the C library's rand() would give, under the control of the tests: a script first, then an engine.
struct source {
  std::mt19937 engine;
  std::vector<int> script;
  std::size_t calls = 0;
  int seedings = 0;
};
source& generator() {
  static source s;
  return s;
}

void restart(unsigned seed, std::vector<int> script = {}) {
  generator().engine.seed(seed);
  generator().script = std::move(script);
  generator().calls = 0;
}

}  // namespace

extern "C" int rand() noexcept {
  source& s = generator();
  const std::size_t call = s.calls++;
  return call < s.script.size() ? s.script[call] : static_cast<int>(s.engine() >> 1);
}

extern "C" void srand(unsigned) noexcept { ++generator().seedings; }

namespace sigpak::test {
namespace {

constexpr double least = 2.2250738585072014e-308;

// The generators by their formulas, on the C library's sequence.
class oracle {
 public:
  std::vector<double> draw(int distribution, bool complex) {
    if (complex) return distribution == 0 ? disc() : box_muller();
    if (distribution == 0) return {symmetric()};
    if (distribution == 1) return {polar()};
    if (distribution == 2) return {-logarithm(uniform())};
    return {laplace()};
  }

 private:
  static int bits() { return std::rand() & 0x7FFF; }
  static double uniform() {
    const double r1 = bits();
    const double r2 = bits();
    const double r3 = bits();
    const double r4 = bits();
    constexpr double k = 3.0517578125e-05;
    return (r4 + (r3 + (r2 + r1 * k) * k) * k) * k;
  }
  static double symmetric() { return 2 * uniform() - 1; }
  static double logarithm(double u) { return std::log(u < least ? least : u); }
  static double laplace() {
    bits();
    bits();
    const bool odd = bits() % 2 == 1;
    const double l = logarithm(uniform());
    return odd ? l : -l;
  }
  static std::vector<double> disc() {
    double x = 1;
    double y = 1;
    while (x * x + y * y >= 1) {
      x = symmetric();
      y = symmetric();
    }
    return {x, y};
  }
  static std::vector<double> box_muller() {
    const double r = std::sqrt(-2 * logarithm(uniform()));
    const double angle = 2 * std::numbers::pi * uniform();
    return {r * std::cos(angle), r * std::sin(angle)};
  }
  double polar() {
    has_spare_ = !has_spare_;
    if (!has_spare_) return spare_;
    const auto z = disc();
    const double s = z[0] * z[0] + z[1] * z[1];
    const double m = std::sqrt(-2 * std::log(s) / s);
    spare_ = z[0] * m;
    return z[1] * m;
  }
  bool has_spare_ = false;
  double spare_ = 0;
};

template <class V> class Random : public testing::Test {
 protected:
  // Leaves no spare value behind from other tests.
  void SetUp() override {
    for (const std::size_t calls_without_spare : {0U, 1U}) {
      restart(1);
      draw(1, 1);
      if (generator().calls == calls_without_spare) return;
    }
  }
  samples<V> draw(int distribution, std::uint32_t points, bool complex = false) {
    signal<V> v;
    v.points = points;
    v.complex = complex ? 1 : 0;
    EXPECT_EQ(TWIN(c_rand)(&v, distribution), 0);
    return v.values();
  }
};
TYPED_TEST_SUITE(Random, records, record_names);

TYPED_TEST(Random, SequencesFollowFromTheSeed) {
  using V = TypeParam;
  struct {
    int distribution;
    bool complex;
  } const cases[] = {{0, false}, {0, true}, {1, false}, {1, true}, {2, false}, {3, false}};
  for (const auto& c : cases) {
    oracle expected;
    unsigned seed = 1;
    for (const std::uint32_t n : {0U, 1U, 3U, 100U, 1001U, 1U}) {  // even in sum: no spare value stays behind
      restart(++seed);
      const auto got = this->draw(c.distribution, n, c.complex);
      const std::size_t calls = generator().calls;
      restart(seed);
      samples<V> wanted;
      for (std::uint32_t i = 0; i < n; ++i) {
        for (const double x : expected.draw(c.distribution, c.complex)) {
          wanted.push_back(static_cast<scalar<V>>(x));
        }
      }
      ASSERT_EQ(got, wanted) << c.distribution << ' ' << c.complex << ' ' << n;
      ASSERT_EQ(calls, generator().calls);
    }
  }
  EXPECT_EQ(generator().seedings, 1) << "seeded by the first draw of the process alone";
}

TYPED_TEST(Random, TheSpareValueCrossesThePrecisions) {
  using V = TypeParam;
  using other = std::conditional_t<is_double<V>, dspf_vec, dsp_vec>;
  restart(5);
  const auto pair = this->draw(1, 2);
  restart(5);
  EXPECT_EQ(this->draw(1, 1)[0], pair[0]);
  signal<other> v;
  v.points = 1;
  twin<other>(dspc_rand, dspfc_rand)(&v, 1);
  EXPECT_EQ(static_cast<float>(v.data[0]), static_cast<float>(pair[1]));
}

// Fractions from scripted words: all bits 0, the middle of the range, all bits 1 beyond the 15 that count.
TYPED_TEST(Random, ExtremeDraws) {
  using V = TypeParam;
  using T = scalar<V>;
  using words = std::vector<int>;
  const auto then = [](words a, const words& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
  };
  const words nothing(4, 0);
  const words middle{0, 0, 0, 0x4000};
  const words beyond(4, 0x7fff8000);
  const auto most = static_cast<T>(-std::log(least));

  restart(1, beyond);
  EXPECT_EQ(this->draw(0, 1), samples<V>{-1});
  restart(1, middle);
  EXPECT_EQ(this->draw(0, 1), samples<V>{0});
  restart(1, then(middle, middle));
  EXPECT_EQ(this->draw(1, 2), (samples<V>{0, 0})) << "the centre of the disc";
  restart(1, nothing);
  EXPECT_EQ(this->draw(2, 1), samples<V>{most});
  restart(1, then({1, 1, 0}, nothing));
  EXPECT_EQ(this->draw(3, 1), samples<V>{most});
  restart(1, then({0, 0, 1}, nothing));
  EXPECT_EQ(this->draw(3, 1), samples<V>{-most});
  restart(1, then(nothing, nothing));
  EXPECT_EQ(this->draw(1, 1, true), (samples<V>{static_cast<T>(std::sqrt(-2 * std::log(least))), 0}));
  restart(1, then(then(nothing, middle), then(middle, nothing)));  // on the circle, twice: neither is inside
  this->draw(0, 1, true);
  EXPECT_GT(generator().calls, 16U);
  restart(1, {0x12345, 0x7fffffff, 0x12345});
  EXPECT_EQ(random_integer(), (0x2345 << 16) | 0x8000 | 0x2345);
}

TYPED_TEST(Random, RefusalsComeAfterSizing) {
  using V = TypeParam;
  struct {
    int distribution;
    bool complex;
  } const cases[] = {{2, true}, {3, true}, {4, false}, {-1, false}, {4, true}};
  for (const auto& c : cases) {
    for (const std::uint32_t n : {0U, 7U}) {
      signal<V> v;
      v.points = n;
      v.complex = c.complex ? 1 : 0;
      EXPECT_EQ(TWIN(c_rand)(&v, c.distribution), -1);
      EXPECT_EQ(v.alloc, c.complex ? 2 * n : n);
    }
  }
  const failing_records<V> none(0);
  signal<V> v;
  v.points = 3;
  EXPECT_EQ(TWIN(c_rand)(&v, 0), -1);
  EXPECT_EQ(v.data, nullptr);
}

TYPED_TEST(Random, MomentsAreThoseOfTheDistributions) {
  constexpr index n = 200000;
  struct {
    int distribution;
    bool complex;
    double mean;
    double mean_square;
    double fourth_moment;
  } const cases[] = {{0, false, 0, 1.0 / 3, 1.0 / 5},
                     {0, true, 0, 1.0 / 4, 1.0 / 8},
                     {1, false, 0, 1, 3},
                     {1, true, 0, 1, 3},
                     {2, false, 1, 2, 24},
                     {3, false, 0, 2, 24}};
  for (const auto& c : cases) {
    restart(7);
    const auto x = this->draw(c.distribution, n, c.complex);
    const index width = c.complex ? 2 : 1;
    for (index part = 0; part < width; ++part) {
      double sum = 0;
      double squares = 0;
      for (index i = part; i < n * width; i += width) {
        const auto value = static_cast<double>(x[static_cast<std::size_t>(i)]);
        sum += value;
        squares += value * value;
      }
      const double points = n;
      const double five_sigma = 5 * std::sqrt((c.mean_square - c.mean * c.mean) / points);
      EXPECT_NEAR(sum / points, c.mean, five_sigma) << c.distribution << ' ' << c.complex;
      const double five_sigma_square =
          5 * std::sqrt((c.fourth_moment - c.mean_square * c.mean_square) / points);
      EXPECT_NEAR(squares / points, c.mean_square, five_sigma_square) << c.distribution << ' ' << c.complex;
    }
  }
}

}  // namespace
}  // namespace sigpak::test
