// Counts the floats at which a circular function of single precision is not the float nearest to the exact
// value: all of them, of both signs. usage: exhaustive_circular [sin | cos | tan | sinc]... SIGPAK_TEST_LEVEL
// selects the instruction-set level as for the tests; a checksum of all the results compares levels.
#include <sigpak.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "core/isa.h"
#include "elementwise/exact.h"
#include "elementwise/functions.h"

namespace sigpak::test {
namespace {

constexpr std::uint32_t first_infinite = 0x7f800000;
constexpr std::uint32_t block = 1U << 16;

// The bits of 2 / pi behind a word of zeros.
const std::uint64_t* bits_per_quarter() {
  static const std::vector<std::uint64_t> words = [] {
    exact rest(mpfr_prec_t(1024));
    mpfr_const_pi(rest.get(), MPFR_RNDN);
    mpfr_ui_div(rest.get(), 2, rest.get(), MPFR_RNDN);
    std::vector<std::uint64_t> w(8);
    for (std::size_t i = 1; i < w.size(); ++i) {
      mpfr_mul_2ui(rest.get(), rest.get(), 64, MPFR_RNDN);
      w[i] = mpfr_get_uj(rest.get(), MPFR_RNDZ);
      mpfr_frac(rest.get(), rest.get(), MPFR_RNDN);
    }
    return w;
  }();
  return words.data();
}

struct turned {
  unsigned quarter;
  double rest;
};

// x = (4 k + quarter) pi / 2 + rest within 2^-51 of the rest: the product with 128 bits of 2 / pi, from the
// first that does not give whole turns. All of it in integers, apart from what the library does.
turned reduce_exactly(float x) {
  constexpr double quarter = 1.5707963267948966;
  if (x < 0.75F) return {0, static_cast<double>(x)};
  const std::uint32_t bits = std::bit_cast<std::uint32_t>(x);
  const std::uint32_t significand = (bits & 0x7fffff) | 0x800000;
  const unsigned skipped = (bits >> 23) + (64 - 150 - 2);
  const std::uint64_t* w = bits_per_quarter() + skipped / 64;
  const unsigned shift = skipped % 64;
  const auto word = [&](int i) { return w[i] << shift | (w[i + 1] >> 1) >> (63 - shift); };
  using wide = unsigned __int128;
  const wide p = (wide(word(0)) << 64 | word(1)) * significand;
  const auto fraction = static_cast<__int128>(p << 2);
  const unsigned quarters = static_cast<unsigned>(p >> 126) + (fraction < 0 ? 1U : 0U);
  return {quarters & 3, static_cast<double>(fraction) * (0x1p-128 * quarter)};
}

double sine(turned a) {
  const double y = (a.quarter & 1) != 0 ? std::cos(a.rest) : std::sin(a.rest);
  return (a.quarter & 2) != 0 ? -y : y;
}

struct circular_function {
  const char* name;
  std::int32_t (*run)(dspf_vec*);
  double (*nearly)(float);  // for x >= 0, within 2^-49
  exact_function definition;
  bool odd;
};

const circular_function functions[] = {
    {"sin", dspfi_sin, [](float x) { return sine(reduce_exactly(x)); }, mpfr_sin, true},
    {"cos", dspfi_cos,
     [](float x) {
       const turned a = reduce_exactly(x);
       return sine({a.quarter + 1, a.rest});
     },
     mpfr_cos, false},
    {"tan", dspfi_tan,
     [](float x) {
       const turned a = reduce_exactly(x);
       const double y = std::tan(a.rest);
       return (a.quarter & 1) != 0 ? -1 / y : y;
     },
     mpfr_tan, true},
    {"sinc", dspfi_sinc,
     [](float x) { return x == 0 ? 1 : sine(reduce_exactly(x)) / static_cast<double>(x); }, exact_sinc,
     false},
};

float nearest(const circular_function& f, float x) {
  const exact argument(static_cast<double>(x));
  exact y(bits_of_squares);
  f.definition(y.get(), argument.get(), MPFR_RNDN);
  return mpfr_get_flt(y.get(), MPFR_RNDN);
}

// The values within 2^-47 of y do not all convert to one float.
bool is_undecided(double y) {
  return static_cast<float>(y * (1 - 0x1p-47)) != static_cast<float>(y * (1 + 0x1p-47));
}

struct tally {
  std::int64_t tested = 0;
  std::int64_t misrounded = 0;
  std::int64_t asked = 0;
  std::uint64_t checksum = 0;
};

bool same(float a, float b) { return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b); }

void check(const circular_function& f, float x, float got, float got_of_negative, tally& t) {
  const double near = f.nearly(x);
  float wanted = static_cast<float>(near);
  if (is_undecided(near) || !same(got, wanted)) {
    wanted = nearest(f, x);
    ++t.asked;
  }
  const float wanted_of_negative = f.odd ? -wanted : wanted;
  for (const bool negative : {false, true}) {
    if (negative ? same(got_of_negative, wanted_of_negative) : same(got, wanted)) continue;
    if (++t.misrounded <= 100)
      std::printf("  %s(%a), not %a\n", f.name, double(negative ? -x : x), double(wanted));
  }
}

tally check_all(const circular_function& f) {
  tally t;
  std::vector<float> x(2 * block);
  for (std::uint32_t first = 0; first < first_infinite; first += block) {
    for (std::uint32_t i = 0; i < block; ++i) {
      x[i] = std::bit_cast<float>(first + i);
      x[block + i] = -x[i];
    }
    signal<dspf_vec> v(x);
    f.run(&v);
    for (std::uint32_t i = 0; i < block; ++i) {
      check(f, x[i], v.data[i], v.data[block + i], t);
      const auto pair = std::uint64_t(std::bit_cast<std::uint32_t>(v.data[i])) << 32 |
                        std::bit_cast<std::uint32_t>(v.data[block + i]);
      t.checksum = (t.checksum ^ pair) * 0x9e3779b97f4a7c15;
    }
    t.tested += 2 * block;
  }
  return t;
}

}  // namespace
}  // namespace sigpak::test

int main(int argc, char** argv) {
  using namespace sigpak;
  if (const char* wanted = std::getenv("SIGPAK_TEST_LEVEL"); wanted != nullptr) {
    const std::string_view name = wanted;
    isa::force(name == "baseline" ? isa::level::baseline
               : name == "avx2"   ? isa::level::avx2
                                  : isa::level::avx512);
  }
  bool right = true;
  for (const test::circular_function& f : test::functions) {
    if (argc > 1 &&
        std::none_of(argv + 1, argv + argc, [&](std::string_view name) { return name == f.name; }))
      continue;
    const test::tally t = test::check_all(f);
    std::printf("%s: %lld tested, %lld decided by MPFR, %lld misrounded, checksum %016llx\n", f.name,
                static_cast<long long>(t.tested), static_cast<long long>(t.asked),
                static_cast<long long>(t.misrounded), static_cast<unsigned long long>(t.checksum));
    std::fflush(stdout);
    right = right && t.misrounded == 0;
  }
  return right ? 0 : 1;
}
