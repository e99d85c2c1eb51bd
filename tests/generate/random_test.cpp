// SPDX-License-Identifier: MIT
// Random records: the sequences that follow from a seed, and their statistics.
#include <complex>
#include <cstdlib>
#include <numbers>
#include <random>

#include "generate/generate.h"
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

// The generators by their formulas, on the same sequence. Fractions have 60 bits, the first drawn least.
double uniform() {
  std::uint64_t word = 0;
  for (int shift = 0; shift < 60; shift += 15)
    word |= static_cast<std::uint64_t>(std::rand() & 0x7FFF) << shift;
  return static_cast<double>(word) * 0x1p-60;
}
double symmetric() { return 2 * uniform() - 1; }
double logarithm() { return std::log(std::max(least, uniform())); }

std::complex<double> disc() {
  const double x = symmetric();
  const double y = symmetric();
  return x * x + y * y < 1 ? std::complex(x, y) : disc();
}

std::complex<double> normal_pair() {
  const double radius = std::sqrt(-2 * logarithm());
  return std::polar(radius, 2 * std::numbers::pi * uniform());
}

double laplace() {
  std::rand();
  std::rand();
  const bool odd = std::rand() % 2 == 1;
  return odd ? logarithm() : -logarithm();
}

// The points of a record. Real normal values come in pairs, the imaginary part first.
template <record V> samples<V> oracle(int distribution, bool complex, index n) {
  std::vector<double> x;
  while (std::ssize(x) < n * (complex ? 2 : 1)) {
    if (complex || distribution == 1) {
      auto z = complex && distribution == 1 ? normal_pair() : disc();
      const double s = std::norm(z);
      if (!complex)
        z = {z.imag() * std::sqrt(-2 * std::log(s) / s), z.real() * std::sqrt(-2 * std::log(s) / s)};
      x.insert(x.end(), {z.real(), z.imag()});
    } else {
      x.push_back(distribution == 0 ? symmetric() : distribution == 2 ? -logarithm() : laplace());
    }
  }
  return samples<V>(x.begin(), x.end());
}

// A distribution with its mean, mean square and fourth moment in each part.
struct law {
  int code;
  bool complex;
  double mean;
  double square;
  double fourth;
};
constexpr law laws[] = {{0, false, 0, 1.0 / 3, 1.0 / 5},
                        {0, true, 0, 1.0 / 4, 1.0 / 8},
                        {1, false, 0, 1, 3},
                        {1, true, 0, 1, 3},
                        {2, false, 1, 2, 24},
                        {3, false, 0, 2, 24}};

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
  for (const law& l : laws) {
    for (const std::uint32_t n : {0U, 2U, 100U, 1002U}) {  // even: no spare value stays behind
      restart(n);
      const auto got = this->draw(l.code, n, l.complex);
      const std::size_t calls = generator().calls;
      restart(n);
      ASSERT_EQ(got, oracle<V>(l.code, l.complex, n)) << l.code << ' ' << l.complex << ' ' << n;
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
  using words = std::vector<int>;
  const auto most = static_cast<scalar<V>>(-std::log(least));
  const auto radius = static_cast<scalar<V>>(std::sqrt(-2 * std::log(least)));
  struct {
    int code;
    bool complex;
    words script;
    samples<V> wanted;
  } const cases[] = {{0, false, words(4, 0x7fff8000), {-1}},
                     {0, false, {0, 0, 0, 0x4000}, {0}},
                     {1, false, {0, 0, 0, 0x4000, 0, 0, 0, 0x4000}, {0, 0}},  // the centre of the disc
                     {2, false, words(4), {most}},
                     {3, false, {1, 1, 0, 0, 0, 0, 0}, {most}},
                     {3, false, {0, 0, 1, 0, 0, 0, 0}, {-most}},
                     {1, true, words(8), {radius, 0}}};
  for (const auto& c : cases) {
    restart(1, c.script);
    const auto points = static_cast<std::uint32_t>(c.wanted.size() / (c.complex ? 2 : 1));
    EXPECT_EQ(this->draw(c.code, points, c.complex), c.wanted) << c.code;
    EXPECT_EQ(generator().calls, c.script.size()) << c.code;
  }
  restart(1, {0, 0, 0, 0, 0, 0, 0, 0x4000, 0, 0, 0, 0x4000, 0, 0, 0, 0});  // on the circle: not inside
  this->draw(0, 1, true);
  EXPECT_GT(generator().calls, 16U);
  restart(1, {0x12345, 0x7ffffffd, 0x12345});
  EXPECT_EQ(random_integer(), (0x2345 << 16) | 0x8000 | 0x2345);
}

TYPED_TEST(Random, RefusalsComeAfterSizing) {
  using V = TypeParam;
  for (const int code : {2, 3, 4, -1}) {
    signal<V> v(samples<V>(2), true);
    v.points = 7;
    EXPECT_EQ(TWIN(c_rand)(&v, code), -1);
    EXPECT_EQ(v.alloc, 14);
    v.complex = 0;
    EXPECT_EQ(TWIN(c_rand)(&v, code), code == 2 || code == 3 ? 0 : -1);
  }
}

TYPED_TEST(Random, MomentsAreThoseOfTheDistributions) {
  constexpr double n = 200000;
  for (const law& l : laws) {
    restart(7);
    const auto x = this->draw(l.code, static_cast<std::uint32_t>(n), l.complex);
    const std::size_t width = l.complex ? 2 : 1;
    for (std::size_t part = 0; part < width; ++part) {
      double sum = 0;
      double squares = 0;
      for (std::size_t i = part; i < x.size(); i += width) {
        sum += static_cast<double>(x[i]);
        squares += static_cast<double>(x[i] * x[i]);
      }
      EXPECT_NEAR(sum / n, l.mean, 5 * std::sqrt((l.square - l.mean * l.mean) / n)) << l.code;
      EXPECT_NEAR(squares / n, l.square, 5 * std::sqrt((l.fourth - l.square * l.square) / n)) << l.code;
    }
  }
}

}  // namespace
}  // namespace sigpak::test
