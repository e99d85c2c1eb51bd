// SPDX-License-Identifier: MIT
// Transforms against other libraries, as one Markdown table: GFLOP/s of FFTW (5 N log2 N, half of it for real
// data) and ratios of speed to FFTW_MEASURE. Speeds include natural order, and the 1/N of the forward
// transform here.
//
// bench_fft [--level baseline|avx2|avx512] [--class pair|real|real-pair|any] [--precision double|single]
//           [--least N] [--most N] [--rounds N] [--offset BYTES]
#include <bit>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string_view>

#include "fft_record.h"
#include "options.h"
#include "peers.h"
#include "rounds.h"
#include "sigpak.h"
#include "table.h"

namespace {

using bench::contender;
using bench::is_double;
using bench::job;
using bench::options;
using bench::record;
using bench::twin;

template <class T> std::function<void()> own(job kind, std::shared_ptr<record<T>> r, std::size_t n) {
  const auto fft = std::has_single_bit(n) ? twin<T>(dspi_fft, dspfi_fft) : twin<T>(dspi_dft, dspfi_dft);
  const auto forward = twin<T>(dspi_rfft, dspfi_rfft);
  const auto backward = twin<T>(dspi_irfft, dspfi_irfft);
  switch (kind) {
    case job::pair:
      return [=] {
        auto* const v = r->shaped(n, true);
        fft(v, 0);
        fft(v, 1);
      };
    case job::real:
      return [=] { forward(r->shaped(n, false)); };
    default:
      return [=] {
        auto* const v = r->shaped(n, false);
        forward(v);
        backward(v);
      };
  }
}

// Repeats that keep unscaled pairs, which grow N times, and scaled forward transforms of real data, which
// shrink sqrt(N) times, inside the range of numbers.
template <class T> int repeats(std::size_t n) {
  constexpr double decades = is_double<T> ? 500 : 50;
  return static_cast<int>(std::clamp(decades / std::log10(static_cast<double>(n)), 1.0, 1000.0));
}

template <class T> std::vector<contender> contenders(job kind, std::size_t n) {
  constexpr T low = is_double<T> ? T(1e-250) : T(1e-25F);
  auto r = std::make_shared<record<T>>(n);
  std::vector<contender> out;
  for (const bench::peer& p : bench::peers<T>(kind, r->data(), n)) {
    out.push_back({p.name, [=] { r->refill(low); }, p.run, repeats<T>(n)});
  }
  const T start = kind == job::real ? T(1) / low : T(1);
  out.insert(out.begin() + 1, {"sigpak", [=] { r->refill(start); }, own<T>(kind, r, n), repeats<T>(n)});
  return out;
}

template <class T> void print_row(const char* name, job kind, std::size_t n, const options& o) {
  const bool large = n >= std::size_t{1} << 18;
  const int rounds = static_cast<int>(o.number("--rounds", large ? 9 : 25));
  const auto all = contenders<T>(kind, n);
  const auto timings = bench::compare(all, rounds, large ? 0 : 3e-4);
  const double size = static_cast<double>(n);
  const double flops = 5 * size * std::log2(size) * (kind == job::pair ? 2 : kind == job::real ? 0.5 : 1);
  std::printf("| %s | %s | %zu | %.1f |", name, is_double<T> ? "double" : "single", n,
              flops / timings[0].seconds * 1e-9);
  for (std::size_t i = 1; i < all.size(); ++i) {
    !all[i].once ? std::printf(" - |") : std::printf(" %.2f |", timings[i].ratio);
  }
  std::printf("\n");
  std::fflush(stdout);
}

struct table_row {
  const char* name;
  job kind;
  std::vector<std::size_t> sizes;
};

template <class T> void print_rows(const options& o) {
  const table_row rows[] = {{"pair", job::pair, bench::powers_of_two(4, 22)},
                            {"real", job::real, bench::powers_of_two(4, 22)},
                            {"real-pair", job::real_pair, bench::powers_of_two(4, 22)},
                            {"any", job::pair, bench::other_lengths}};
  const std::string_view kind = o.text("--class");
  for (const table_row& row : rows) {
    if (!kind.empty() && kind != row.name) continue;
    for (const std::size_t n : row.sizes) {
      const long size = static_cast<long>(n);
      if (size >= o.number("--least", 16) && size <= o.number("--most", 1 << 22))
        print_row<T>(row.name, row.kind, n, o);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const options o(argc, argv,
                  {"--level", "--class", "--precision", "--least", "--most", "--rounds", "--offset"});
  bench::lent_offset = static_cast<std::size_t>(o.number("--offset", 0));
  std::printf("level %s\n", o.level());
  std::vector<std::string> columns = {"transform", "precision", "N", "FFTW GFLOP/s", "sigpak"};
  double room[8] = {};
  for (const bench::peer& p : bench::peers<double>(job::pair, room, 2)) {
    if (p.name != "FFTW") columns.push_back(p.name);
  }
  bench::print_head(columns);
  if (o.wants("--precision", "double")) print_rows<double>(o);
  if (o.wants("--precision", "single")) print_rows<float>(o);
}
