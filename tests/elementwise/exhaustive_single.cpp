// SPDX-License-Identifier: MIT
// Tries every single-precision argument of the real elementary functions and prints those whose result is not
// the correctly rounded one, as a Markdown table.
// usage: exhaustive_single [function|all [first last]]; first and last are bit patterns in hexadecimal.
// SIGPAK_TEST_LEVEL selects the instruction-set level as for the tests.
//
// The function of double precision at the widest level, good to 2^-52, decides where every value within 2^-48
// of its result rounds to the same float; exact arithmetic decides the rest, about one argument in 2^22.
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <vector>

#include "core/isa.h"
#include "elementwise/functions.h"

namespace sigpak::test {
namespace {

// A function, the interval where it follows its definition, and what stands for it outside.
struct single_function {
  const char* name;
  std::int32_t (*in_single)(dspf_vec*);
  std::int32_t (*in_double)(dsp_vec*);
  exact_function definition;
  float low, high;
  float (*outside)(float x);
};

constexpr float inf = std::numeric_limits<float>::infinity();
constexpr float h = guard<float>::huge;
constexpr float log_h = guard<float>::log_huge;
constexpr float tiny = guard<float>::tiny;

float zero(float) { return 0; }
float limit(float) { return h; }
float signed_limit(float x) { return std::copysign(h, x); }
float limit_or_itself(float x) { return x > 0 ? h : x; }
template <exact_function logarithm> float floor_of(float) {
  static const float value = [] {
    exact y(static_cast<double>(tiny));
    logarithm(y.get(), y.get(), MPFR_RNDN);
    return mpfr_get_flt(y.get(), MPFR_RNDN);
  }();
  return value;
}

int exact_reciprocal(mpfr_ptr y, mpfr_srcptr x, mpfr_rnd_t mode) {
  return mpfr_zero_p(x) != 0 ? mpfr_set_d(y, static_cast<double>(h), mode) : mpfr_ui_div(y, 1, x, mode);
}
int exact_power_decibels(mpfr_ptr y, mpfr_srcptr x, mpfr_rnd_t mode) {
  mpfr_log10(y, x, mode);
  return mpfr_mul_si(y, y, 10, mode);
}
std::int32_t power_decibels(dsp_vec* v) { return dspi_db(v, 10); }
std::int32_t power_decibels(dspf_vec* v) { return dspfi_db(v, 10); }

constexpr single_function functions[] = {
    {"sqrt", dspfi_sqrt, dspi_sqrt, mpfr_sqrt, 0, inf, zero},
    {"square", dspfi_square, dspi_square, mpfr_sqr, -h, h, limit},
    {"recip", dspfi_recip, dspi_recip, exact_reciprocal, -inf, inf, nullptr},
    {"exp", dspfi_exp, dspi_exp, mpfr_exp, -inf, log_h, limit},
    {"exp10", dspfi_exp10, dspi_exp10, mpfr_exp10, -h, guard<float>::log10_huge, limit_or_itself},
    {"log", dspfi_log, dspi_log, mpfr_log, tiny, inf, floor_of<mpfr_log>},
    {"log10", dspfi_log10, dspi_log10, mpfr_log10, tiny, inf, floor_of<mpfr_log10>},
    {"db10", power_decibels, power_decibels, exact_power_decibels, tiny, inf, floor_of<exact_power_decibels>},
    {"db20", decibels, decibels, exact_decibels, tiny, inf, floor_of<exact_decibels>},
    {"sin", dspfi_sin, dspi_sin, mpfr_sin, -inf, inf, nullptr},
    {"cos", dspfi_cos, dspi_cos, mpfr_cos, -inf, inf, nullptr},
    {"tan", dspfi_tan, dspi_tan, mpfr_tan, -inf, inf, nullptr},
    {"sinc", dspfi_sinc, dspi_sinc, exact_sinc, -inf, inf, nullptr},
    {"atan", dspfi_atan, dspi_atan, mpfr_atan, -inf, inf, nullptr},
    {"asin", dspfi_asin, dspi_asin, mpfr_asin, -1, 1, zero},
    {"acos", dspfi_acos, dspi_acos, mpfr_acos, -1, 1, zero},
    {"sinh", dspfi_sinh, dspi_sinh, mpfr_sinh, -log_h, log_h, signed_limit},
    {"cosh", dspfi_cosh, dspi_cosh, mpfr_cosh, -log_h, log_h, limit},
    {"tanh", dspfi_tanh, dspi_tanh, mpfr_tanh, -inf, inf, nullptr},
};

float correctly_rounded(const single_function& f, float x) {
  const exact argument(static_cast<double>(x));
  exact y;
  f.definition(y.get(), argument.get(), MPFR_RNDN);
  return mpfr_get_flt(y.get(), MPFR_RNDN);
}

struct outcome {
  std::uint64_t tested = 0;
  std::uint64_t in_doubt = 0;
  std::vector<float> misrounded = {};
};

constexpr double doubt = 0x1p-48;

// Whether every number within the doubt about `nearly` rounds to `got`.
constexpr bool is_decided(float got, double nearly) {
  const auto bits = std::bit_cast<std::uint32_t>(got);
  const auto below = std::bit_cast<std::uint32_t>(static_cast<float>(nearly * (1 - doubt)));
  const auto above = std::bit_cast<std::uint32_t>(static_cast<float>(nearly * (1 + doubt)));
  return (below == bits) & (above == bits);
}

bool are_decided(const float* got, const double* nearly, index n) {
  return isa::run_at(isa::widest(), [=] {
    std::uint32_t open = 0;
    for (index i = 0; i < n; ++i) open |= is_decided(got[i], nearly[i]) ? 0U : 1U;
    return open == 0;
  });
}

bool is_inside(const single_function& f, float x) { return x >= f.low && x <= f.high; }

void judge(const single_function& f, float x, float got, double nearly, outcome& seen) {
  if (is_inside(f, x)) {
    if (is_decided(got, nearly)) return;
    ++seen.in_doubt;
    if (!same_number(got, correctly_rounded(f, x))) seen.misrounded.push_back(x);
  } else if (!same_number(got, x != x ? x : f.outside(x))) {
    seen.misrounded.push_back(x);
  }
}

// The arguments whose patterns run from `start`, of one sign.
void try_block(const single_function& f, std::uint32_t start, signal<dspf_vec>& single,
               signal<dsp_vec>& reference, outcome& seen) {
  const isa::level tested = isa::current();
  const index count = single.points;
  const auto argument = [=](index i) { return std::bit_cast<float>(start + static_cast<std::uint32_t>(i)); };
  for (index i = 0; i < count; ++i) single.data[i] = argument(i);
  const bool first_inside = is_inside(f, argument(0));
  const bool last_inside = is_inside(f, argument(count - 1));
  if (first_inside || last_inside) {
    for (index i = 0; i < count; ++i) reference.data[i] = static_cast<double>(single.data[i]);
    isa::force(isa::widest());
    f.in_double(&reference);
    isa::force(tested);
  }
  f.in_single(&single);
  constexpr index step = 256;
  for (index from = 0; from < count; from += step) {
    const index n = std::min(step, count - from);
    if (first_inside && last_inside && are_decided(single.data + from, reference.data + from, n)) continue;
    for (index i = from; i < from + n; ++i) judge(f, argument(i), single.data[i], reference.data[i], seen);
  }
}

outcome try_all(const single_function& f, std::uint64_t first, std::uint64_t last) {
  constexpr std::uint64_t block = 1 << 13;
  outcome seen;
  const std::vector<float> blank(block);
  signal<dspf_vec> single(blank);
  signal<dsp_vec> reference(samples<dsp_vec>(blank.begin(), blank.end()));
  for (std::uint64_t start = first; start <= last; start = (start | (block - 1)) + 1) {
    const std::uint64_t end = std::min(start | (block - 1), last);  // blocks do not cross a change of sign
    single.points = reference.points = static_cast<std::uint32_t>(end - start + 1);
    try_block(f, static_cast<std::uint32_t>(start), single, reference, seen);
    seen.tested += end - start + 1;
  }
  return seen;
}

void print(const single_function& f, const outcome& seen) {
  constexpr std::size_t shown = 64;
  std::printf("| %s | %llu | %llu | %zu |", f.name, static_cast<unsigned long long>(seen.tested),
              static_cast<unsigned long long>(seen.in_doubt), seen.misrounded.size());
  for (std::size_t i = 0; i < std::min(shown, seen.misrounded.size()); ++i) {
    std::printf(" %a", static_cast<double>(seen.misrounded[i]));
  }
  std::printf("%s |\n", seen.misrounded.size() > shown ? " ..." : "");
  std::fflush(stdout);
}

}  // namespace
}  // namespace sigpak::test

int main(int argc, char** argv) {
  using namespace sigpak::test;
  if (const char* wanted = std::getenv("SIGPAK_TEST_LEVEL"); wanted != nullptr)
    sigpak::isa::force_named(wanted);
  const std::string_view only = argc > 1 ? argv[1] : "all";
  const std::uint64_t first = argc > 3 ? std::strtoull(argv[2], nullptr, 16) : 0;
  const std::uint64_t last = argc > 3 ? std::strtoull(argv[3], nullptr, 16) : 0xffffffff;
  std::printf("| function | arguments | decided exactly | misrounded | at |\n|---|---|---|---|---|\n");
  std::size_t misrounded = 0;
  for (const single_function& f : functions) {
    if (only != "all" && only != f.name) continue;
    const outcome seen = try_all(f, first, last);
    print(f, seen);
    misrounded += seen.misrounded.size();
  }
  return misrounded == 0 ? 0 : 1;
}
