// Prints the worst error of every elementary function, with the argument that attains it, as a Markdown
// table. usage: ulp_survey [points]; SIGPAK_TEST_LEVEL selects the instruction-set level as for the tests.
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

template <record V> worst_case survey(const unary_function& f, index points) {
  constexpr index chunk = 65536;
  worst_case worst;
  index seen = 0;
  index beyond = 0;
  for (unsigned seed = 1; seen < points; ++seed) {
    const samples<V> x = arguments<V>(f, std::min(chunk, points - seen), seed);
    signal<V> v(x);
    call(f, static_cast<V*>(&v));
    for (std::size_t i = 0; i < x.size(); ++i) {
      const exact argument(static_cast<double>(x[i]));
      exact wanted;
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

void print(index points, std::string_view only) {
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

}  // namespace
}  // namespace sigpak::test

int main(int argc, char** argv) {
  using sigpak::isa::level;
  if (const char* wanted = std::getenv("SIGPAK_TEST_LEVEL"); wanted != nullptr) {
    const std::string_view name = wanted;
    sigpak::isa::force(name == "baseline" ? level::baseline : name == "avx2" ? level::avx2 : level::avx512);
  }
  sigpak::test::print(argc > 1 ? std::atol(argv[1]) : 100000, argc > 2 ? argv[2] : "");
}
