// SPDX-License-Identifier: MIT
// What the transforms cost beside time, as Markdown tables: the error against long double beside FFTW's, the
// memory kept for a length, and the first call of a length.
//
// bench_fft_costs [--table error|memory|first-call] [--level baseline|avx2|avx512] [--least N] [--most N]
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include "fft_record.h"
#include "options.h"
#include "peers.h"
#include "references/exact_transform.h"
#include "rounds.h"
#include "sigpak.h"
#include "table.h"

namespace {

using bench::is_double;
using bench::record;
using bench::twin;
using sigpak::test::exact_signal;

// One direction of one class; the scalars are those of the half spectrum where the data are real.
struct transform {
  const char* name;
  bool real;
  bool inverse;

  std::size_t points_in(std::size_t n) const { return real && inverse ? n / 2 + 1 : n; }
  std::size_t points_out(std::size_t n) const { return real && !inverse ? n / 2 + 1 : n; }
  bool complex_in() const { return !real || inverse; }
  bool complex_out() const { return !real || !inverse; }
};

constexpr transform transforms[] = {
    {"forward", false, false},
    {"inverse", false, true},
    {"real forward", true, false},
    {"real inverse", true, true},
};

template <class T> void run_own(const transform& t, record<T>& r, std::size_t n) {
  auto* const v = r.shaped(t.points_in(n), t.complex_in());
  if (!t.real) {
    twin<T>(dspi_dft, dspfi_dft)(v, t.inverse ? 1 : 0);
  } else if (!t.inverse) {
    twin<T>(dspi_rdft, dspfi_rdft)(v);
  } else {
    twin<T>(dspi_irdft, dspfi_irdft)(v, static_cast<int32_t>(n % 2));
  }
}

std::vector<std::size_t> lengths(const bench::options& o) {
  std::vector<std::size_t> out = bench::powers_of_two(4, 22);
  out.insert(out.end(), bench::other_lengths.begin(), bench::other_lengths.end());
  std::erase_if(out, [&](std::size_t n) {
    const long size = static_cast<long>(n);
    return size < o.number("--least", 16) || size > o.number("--most", 1 << 22);
  });
  return out;
}

template <class T> sigpak::test::exact point(const T* x, std::size_t i, bool complex) {
  const auto part = [x](std::size_t k) { return static_cast<long double>(x[k]); };
  return complex ? sigpak::test::exact(part(2 * i), part(2 * i + 1)) : sigpak::test::exact(part(i));
}

// All points of the input in long double: a half spectrum continues with the conjugates.
template <class T> exact_signal all_points(const transform& t, const T* x, std::size_t n) {
  exact_signal z(n);
  for (std::size_t i = 0; i < t.points_in(n); ++i) {
    z[i] = point(x, i, t.complex_in());
    if (t.real && t.inverse && i > 0) z[n - i] = std::conj(z[i]);
  }
  return z;
}

// Squared distances and norms over the trials.
struct distance {
  long double difference = 0;
  long double total = 0;

  void add(sigpak::test::exact got, sigpak::test::exact wanted) {
    difference += std::norm(got - wanted);
    total += std::norm(wanted);
  }
  template <class T> void add(const transform& t, const T* y, const exact_signal& wanted, long double scale) {
    for (std::size_t i = 0; i < t.points_out(wanted.size()); ++i) {
      add(point(y, i, t.complex_out()), wanted[i] * scale);
    }
  }
  double relative() const { return static_cast<double>(std::sqrt(difference / total)); }
};

template <class T> std::string error_cell(const transform& t, std::size_t n) {
  record<T> r(n);
  T* const x = r.data();
  const bench::peer fftw = bench::fftw_transform(t.real, t.inverse, x, n);
  std::mt19937_64 engine(n);
  std::uniform_real_distribution<T> uniform(-1, 1);
  std::vector<T> in(2 * n);
  distance own;
  distance theirs;
  for (std::size_t trials = std::clamp<std::size_t>(16384 / n, 1, 256); trials > 0; --trials) {
    for (T& value : in) value = uniform(engine);
    if (t.real && t.inverse) {  // the ends of the spectrum of real data are real
      in[1] = 0;
      if (n % 2 == 0) in[n + 1] = 0;
    }
    const exact_signal wanted = sigpak::test::exact_transform(all_points(t, in.data(), n), t.inverse);
    std::copy(in.begin(), in.end(), x);
    run_own(t, r, n);
    own.add(t, x, wanted, 1);
    std::copy(in.begin(), in.end(), x);
    fftw.run();
    theirs.add(t, x, wanted, t.inverse ? 1 : static_cast<long double>(n));
  }
  char cell[64];
  std::snprintf(cell, sizeof cell, " %.2e, %.2f |", own.relative(), own.relative() / theirs.relative());
  return cell;
}

// The measure itself against the defining sum.
void check_reference() {
  for (const std::size_t n : {std::size_t{256}, std::size_t{331}}) {
    const transform& t = transforms[1];
    record<double> r(n);
    r.refill(1);
    const exact_signal x = all_points(t, r.data(), n);
    const exact_signal fast = sigpak::test::exact_transform(x, true);
    const exact_signal sum = sigpak::test::direct_transform(x, 1);
    distance d;
    for (std::size_t i = 0; i < n; ++i) d.add(fast[i], sum[i]);
    std::printf("%zu points: long double transform against direct sum %.1e\n", n, d.relative());
  }
}

void error_table(const bench::options& o) {
  std::printf("\nRelative L2 error against long double, and its ratio to FFTW's.\n");
  check_reference();
  std::vector<std::string> columns = {"N"};
  for (const char* precision : {"double", "single"}) {
    for (const transform& t : transforms) columns.push_back(std::string(t.name) + ", " + precision);
  }
  bench::print_head(columns);
  for (const std::size_t n : lengths(o)) {
    if (n > std::size_t{1} << 20) continue;  // the measure itself would take minutes
    std::printf("| %zu |", n);
    for (const transform& t : transforms) std::printf("%s", error_cell<double>(t, n).c_str());
    for (const transform& t : transforms) std::printf("%s", error_cell<float>(t, n).c_str());
    std::printf("\n");
    std::fflush(stdout);
  }
}

// Forward and inverse.
template <class T> void run_both(bool real, record<T>& r, std::size_t n) {
  for (const transform& t : transforms) {
    if (t.real == real) run_own(t, r, n);
  }
}

template <class T> void free_tables() { twin<T>(dsp_free_internal, dspf_free_internal)(); }

template <class Cell> void print_costs(const bench::options& o, Cell cell) {
  bench::print_head({"N", "complex, double", "real, double", "complex, single", "real, single"});
  for (const std::size_t n : lengths(o)) {
    std::printf("| %zu |", n);
    for (const bool real : {false, true}) std::printf(" %s |", cell(double(), real, n).c_str());
    for (const bool real : {false, true}) std::printf(" %s |", cell(float(), real, n).c_str());
    std::printf("\n");
    std::fflush(stdout);
  }
}

#if defined(__GLIBC__)

double bytes_in_use() {
  const auto info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

// Triples of the twiddles and the two bit-reversal lists of a power of two.
template <class T> double table_bytes(std::size_t n) {
  const double points = static_cast<double>(n);
  return 1.5 * points * sizeof(T) + 4 * (points + std::sqrt(2 * points));
}

template <class T> std::string memory_cell(bool real, std::size_t n) {
  record<T> r(n);
  r.refill(1);
  free_tables<T>();
  const double before = bytes_in_use();
  run_both(real, r, n);
  const double kept = bytes_in_use() - before;
  const double data = static_cast<double>(n * sizeof(T)) * (real ? 1 : 2);
  double tables = table_bytes<T>(n);
  if (!std::has_single_bit(n)) {
    const std::size_t convolution = std::bit_ceil(2 * n - 2);
    tables = table_bytes<T>(convolution) + static_cast<double>(2 * (n + convolution) * sizeof(T));
  }
  char cell[64];
  std::snprintf(cell, sizeof cell, "%.2f of %.2f", kept / data, tables / data + 2);
  return cell;
}

void memory_table(const bench::options& o) {
  std::printf(
      "\nMemory kept after both directions, in lengths of the data, of what is allowed: the tables of the\n"
      "plain method and two lengths.\n");
  print_costs(o,
              [](auto scalar, bool real, std::size_t n) { return memory_cell<decltype(scalar)>(real, n); });
}

#else

void memory_table(const bench::options&) {
  std::printf("\nMemory: not measured without the C library of GNU.\n");
}

#endif

template <class T> std::string first_call_cell(bool real, std::size_t n) {
  record<T> r(n);
  const int repeats = n > 100000 ? 3 : 15;
  const transform& t = transforms[real ? 2 : 0];
  const auto seconds = [&] {
    r.refill(1);
    const double start = bench::thread_seconds();
    run_own(t, r, n);
    return bench::thread_seconds() - start;
  };
  seconds();
  std::vector<double> first;
  std::vector<double> later;
  for (int i = 0; i < repeats; ++i) {
    free_tables<T>();
    first.push_back(seconds());
  }
  const bench::contender warm = {"", [&] { r.refill(1); }, [&] { run_own(t, r, n); }};
  const bench::contender many = {"", [&] { r.refill(1); }, [&] { run_own(t, r, n); }, 4};
  for (int i = 0; i < repeats; ++i) later.push_back(bench::measure(n > 4096 ? warm : many, 2e-4));
  char cell[64];
  std::snprintf(cell, sizeof cell, "%.1f", bench::median(first) / bench::median(later));
  return cell;
}

void first_call_table(const bench::options& o) {
  std::printf("\nThe first forward transform of a length, in later ones.\n");
  print_costs(
      o, [](auto scalar, bool real, std::size_t n) { return first_call_cell<decltype(scalar)>(real, n); });
}

}  // namespace

int main(int argc, char** argv) {
  const bench::options o(argc, argv, {"--table", "--level", "--least", "--most"});
  std::printf("level %s\n", o.level());
  if (o.wants("--table", "error")) error_table(o);
  if (o.wants("--table", "memory")) memory_table(o);
  if (o.wants("--table", "first-call")) first_call_table(o);
}
