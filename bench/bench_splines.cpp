// SPDX-License-Identifier: MIT
// Splines beside GSL: making them, and evaluating them at rising and at random targets.
#include <gsl/gsl_interp2d.h>
#include <gsl/gsl_spline.h>

#include <algorithm>
#include <cstdio>
#include <random>

#include "options.h"
#include "rounds.h"
#include "sigpak.h"
#include "table.h"

namespace {

using numbers = std::vector<double>;
using contenders = std::vector<bench::contender>;

dsp_vec lent(numbers& of, bool complex = false) {
  const auto points = static_cast<std::uint32_t>(of.size() / (complex ? 2 : 1));
  return {1, of.data(), static_cast<std::int32_t>(of.size()), points, complex ? 1 : 0, 0};
}

numbers uniform(std::size_t n, double low, double high, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> draw(low, high);
  numbers out(n);
  for (double& x : out) x = draw(engine);
  return out;
}

void add(contenders& to, const char* name, std::function<void()> run) {
  to.push_back({name, [] {}, std::move(run)});
}

// ours, ours, ..., theirs: the nanoseconds of each per item, and the speed of ours relative to theirs.
void print(const char* what, std::size_t n, const contenders& all, double items) {
  const auto times = bench::compare(all, 9, 0.01);
  std::printf("| %s | %zu |", what, n);
  for (const auto& t : times) std::printf(" %.2f |", t.seconds / items * 1e9);
  for (std::size_t i = 0; i + 1 < times.size(); ++i)
    std::printf(" %.1f |", times[i].ratio / times.back().ratio);
  std::printf("\n");
  std::fflush(stdout);
}

void print_curves(std::size_t n) {
  numbers y = uniform(n, -1, 1, 1);
  numbers even(n);
  for (std::size_t i = 0; i < n; ++i) even[i] = static_cast<double>(i);
  numbers x = uniform(n, -0.4, 0.4, 2);
  for (std::size_t i = 0; i < n; ++i) x[i] += even[i];
  numbers pairs(2 * n);
  numbers other_pairs(2 * n);
  const std::size_t count = std::max<std::size_t>(n, 100'000);
  numbers random = uniform(count, x.front() + 1, x.back() - 1, 3);
  numbers rising = random;
  std::sort(rising.begin(), rising.end());
  numbers out(count);
  numbers other_out(count);
  const dsp_vec knots = lent(x);
  const dsp_vec values = lent(y);
  dsp_vec spline = lent(pairs, true);
  dsp_vec other = lent(other_pairs, true);
  gsl_spline* const theirs = gsl_spline_alloc(gsl_interp_cspline, n);
  gsl_interp_accel* const lookup = gsl_interp_accel_alloc();

  contenders build;
  add(build, "regular", [&] { dsp_cspline(nullptr, &values, &spline, DSP_SPLINE_NATURAL, 0, 0); });
  add(build, "any", [&] { dsp_cspline(&knots, &values, &other, DSP_SPLINE_NATURAL, 0, 0); });
  add(build, "GSL", [&] { gsl_spline_init(theirs, x.data(), y.data(), n); });
  print("build", n, build, static_cast<double>(n));

  for (numbers* const targets : {&rising, &random}) {
    const dsp_vec at = lent(*targets);
    dsp_vec result = lent(out);
    dsp_vec other_result = lent(other_out);
    contenders evaluate;
    add(evaluate, "regular", [&] { dsp_interp(nullptr, &spline, &at, &result, 0); });
    add(evaluate, "any", [&] { dsp_interp(&knots, &other, &at, &other_result, 0); });
    add(evaluate, "GSL", [&] {
      for (std::size_t i = 0; i < count; ++i) out[i] = gsl_spline_eval(theirs, (*targets)[i], lookup);
    });
    print(targets == &rising ? "rising targets" : "random targets", n, evaluate, static_cast<double>(count));
  }
  gsl_spline_free(theirs);
  gsl_interp_accel_free(lookup);
}

}  // namespace

int main(int argc, char** argv) {
  const bench::options o(argc, argv, {"--level"});
  std::printf("level %s\n", o.level());
  bench::print_head(
      {"job", "knots", "regular, ns", "any knots, ns", "GSL, ns", "regular to GSL", "any to GSL"});
  for (const std::size_t n : {1'000, 100'000}) print_curves(n);
}
