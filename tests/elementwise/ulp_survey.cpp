// SPDX-License-Identifier: MIT
// Prints the worst error of every elementary function, with the argument that attains it, as a Markdown
// table. usage: ulp_survey [points [function]]; functions of complex points take a tenth as many.
// SIGPAK_TEST_LEVEL selects the instruction-set level as for the tests.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "core/isa.h"
#include "elementwise/functions.h"

namespace sigpak::test {
namespace {

struct worst_case {
  double error = 0;
  double argument = 0;
  double beyond_half = 0;  // the fraction of results with an error above 0.501
};

// Exact arithmetic is for the errors that matter: those that a value good to some 2^-9 ulp leaves near the
// worst so far, or near the count of those beyond 0.501.
constexpr double doubt = 0x1p-9;

template <class T> double near_error(T got, long double wanted) {
  using limits = std::numeric_limits<T>;
  if (!(std::abs(wanted) <= static_cast<long double>(limits::max())) || got - got != 0) return 1e300;
  const int exponent =
      std::max(wanted == 0 ? limits::min_exponent : std::ilogb(wanted) + 1, limits::min_exponent);
  const long double difference = std::abs(static_cast<long double>(got) - wanted);
  return static_cast<double>(std::ldexp(difference, limits::digits - exponent));
}

template <record V> worst_case survey(const unary_function& f, index points) {
  constexpr index chunk = 65536;
  constexpr double counted = is_double<V> ? 1 : 0.501;
  worst_case worst;
  index seen = 0;
  index beyond = 0;
  for (unsigned seed = 1; seen < points; ++seed) {
    const samples<V> x = arguments<V>(f, std::min(chunk, points - seen), seed);
    signal<V> v(x);
    call(f, static_cast<V*>(&v));
    for (std::size_t i = 0; i < x.size(); ++i) {
      const double least_wanted = std::min(worst.error, counted) - doubt;
      if (near_error(v.data[i], f.nearly(static_cast<long double>(x[i]))) < least_wanted) continue;
      const exact argument(static_cast<double>(x[i]));
      exact wanted(bits_of_results);
      f.definition(wanted.get(), argument.get(), MPFR_RNDN);
      const double error = ulps(v.data[i], wanted);
      if (error > worst.error) worst = {error, static_cast<double>(x[i]), 0};
      if (error > 0.501) ++beyond;
    }
    seen += std::ssize(x);
  }
  worst.beyond_half = static_cast<double>(beyond) / static_cast<double>(seen);
  return worst;
}

// Both components of a complex function; the argument is left out of its table.
template <record V> std::pair<double, double> survey(const complex_function& f, index count) {
  constexpr index chunk = 65536;
  std::pair<double, double> worst = {0, 0};
  index seen = 0;
  for (unsigned seed = 1; seen < count; ++seed, seen += chunk) {
    const samples<V> z = points<V>(std::min(chunk, count - seen), seed);
    signal<V> v(z, true);
    call(f, static_cast<V*>(&v));
    for (std::size_t i = 0; i < z.size(); i += 2) {
      if (std::abs(static_cast<double>(z[i])) > f.largest) continue;
      const exact a(static_cast<double>(z[i]));
      const exact b(static_cast<double>(z[i + 1]));
      exact re(bits_of_results);
      exact im(bits_of_results);
      definition<V>(f).re(re, a, b);
      definition<V>(f).im(im, a, b);
      worst.first = std::max(worst.first, ulps(v.data[i], re));
      worst.second = std::max(worst.second, ulps(v.data[i + 1], im));
    }
  }
  return worst;
}

void print_real(index points, std::string_view only) {
  std::printf(
      "| function | double: worst ulp | at | single: worst ulp | at | above 0.501 "
      "|\n|---|---|---|---|---|---|\n");
  for (const unary_function& f : unary_functions()) {
    if (!only.empty() && only != f.name) continue;
    const worst_case d = survey<dsp_vec>(f, points);
    const worst_case s = survey<dspf_vec>(f, points);
    std::printf("| %s | %.4f | %a | %.6f | %a | %.1e |\n", f.name, d.error, d.argument, s.error, s.argument,
                s.beyond_half);
    std::fflush(stdout);
  }
}

void print_complex(index points, std::string_view only) {
  std::printf("\n| function of points | double: re | im | single: re | im |\n|---|---|---|---|---|\n");
  for (const complex_function& f : complex_functions()) {
    if (!only.empty() && only != f.name) continue;
    const auto d = survey<dsp_vec>(f, points);
    const auto s = survey<dspf_vec>(f, points);
    std::printf("| %s | %.4f | %.4f | %.6f | %.6f |\n", f.name, d.first, d.second, s.first, s.second);
    std::fflush(stdout);
  }
}

}  // namespace
}  // namespace sigpak::test

int main(int argc, char** argv) {
  if (const char* wanted = std::getenv("SIGPAK_TEST_LEVEL"); wanted != nullptr)
    sigpak::isa::force_named(wanted);
  const std::ptrdiff_t points = argc > 1 ? std::atol(argv[1]) : 100000;
  const char* const only = argc > 2 ? argv[2] : "";
  sigpak::test::print_real(points, only);
  sigpak::test::print_complex(points / 10, only);
}
