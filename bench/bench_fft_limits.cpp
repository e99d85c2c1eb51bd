// SPDX-License-Identifier: MIT
// Complex transforms against what the machine can do at most, as one Markdown table: GFLOP/s (5 N log2 N),
// their share of the peak of multiply-adds, and how many sweeps, each reading and writing the data once in
// place, take as long as one transform. In the caches the first counts; beyond the second cache the sweeps
// do, of which a transform needs two at least.
//
// bench_fft_limits [--level baseline|avx2|avx512] [--precision double|single] [--least N] [--most N]
// [--rounds N]
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "buffer.h"
#include "fft_record.h"
#include "limits.h"
#include "options.h"
#include "rounds.h"
#include "sigpak.h"
#include "table.h"

namespace {

using bench::is_double;
using bench::record;

constexpr long additions = 20000;             // to each register in one run of the peak
constexpr std::size_t many_points = 1 << 14;  // so many that reading the clock does not count

// A forward and an inverse transform, which leave the data as they were.
template <class T> void transform_twice(record<T>& r, std::size_t n) {
  auto* const v = r.shaped(n, true);
  const auto fft = bench::twin<T>(dspi_fft, dspfi_fft);
  fft(v, 0);
  fft(v, 1);
}

template <class T> void print_row(std::size_t n, int rounds) {
  record<T> r(n);
  r.refill(1);
  const auto scalars = static_cast<std::ptrdiff_t>(2 * n);
  const bench::buffer<T> swept(scalars, 1);
  const int repeats = static_cast<int>(many_points / n) + 1;
  const auto timings =
      bench::compare({{"transform", [] {}, [&] { transform_twice(r, n); }, repeats},
                      {"sweep", [] {}, [&] { bench::copy_scale(swept.aligned(), scalars, T(-1)); }, repeats},
                      {"peak", [] {}, [] { bench::add_in_registers<T>(additions); }}},
                     rounds, 3e-4);
  const double once = timings[0].seconds / 2;
  const double size = static_cast<double>(n);
  const double flops = 5 * size * std::log2(size) / once;
  // A multiply-add takes the place of an addition, and counts twice.
  const double peak = 2 * bench::registers_added<T>(additions) / timings[2].seconds;
  std::printf("| %s | %zu | %.3f | %.1f | %.2f | %.1f |\n", is_double<T> ? "double" : "single", n, once * 1e6,
              flops * 1e-9, flops / peak, once / timings[1].seconds);
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  const bench::options o(argc, argv, {"--level", "--precision", "--least", "--most", "--rounds"});
  std::printf("level %s\n", o.level());
  bench::print_head({"precision", "N", "us", "GFLOP/s", "of the peak", "sweeps"});
  for (const bool twice : {true, false}) {
    if (!o.wants("--precision", twice ? "double" : "single")) continue;
    for (const std::size_t n : bench::powers_of_two(5, 22)) {
      const long size = static_cast<long>(n);
      if (size < o.number("--least", 1) || size > o.number("--most", 1 << 22)) continue;
      const int rounds = static_cast<int>(o.number("--rounds", 25));
      twice ? print_row<double>(n, rounds) : print_row<float>(n, rounds);
    }
  }
}
