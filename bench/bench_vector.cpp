// SPDX-License-Identifier: MIT
// Arithmetic, movement, sums, sorting and small calls against the plain loop, the peers that are installed,
// and the limit of the machine: Markdown tables of ratios. bench_vector [--level baseline|avx2|avx512]
// [--table stream|order|small] [--only NAME] [--points N] [--rounds N]
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numbers>
#include <random>
#include <string_view>
#include <type_traits>

#ifdef BENCH_GSL
#include <gsl/gsl_sort.h>
#include <gsl/gsl_sort_float.h>
#endif
#ifdef BENCH_HWY
#include <hwy/contrib/sort/vqsort.h>
#include <hwy/targets.h>
#endif

#include "buffer.h"
#include "limits.h"
#include "options.h"
#include "plain.h"
#include "rounds.h"
#include "sigpak.h"
#include "table.h"

namespace {

using bench::contender;
using bench::options;
using bench::plain::index;
namespace plain = bench::plain;

constexpr index most_scalars = index{64} << 17;  // 64 MiB
constexpr index scalar_bytes = sizeof(double);
constexpr index block = 2048;  // points of a sum that are added in turn

constexpr double turn = 2 * std::numbers::pi;

int rounds_of(const options& o) { return static_cast<int>(o.number("--rounds", 15)); }

struct arena {
  using storage = bench::buffer<double>;
  storage a{most_scalars, 1}, b{most_scalars, 2}, c{most_scalars, 3}, d{most_scalars, 4},
      turns{most_scalars, 5};
  double sink = 0;
  dsp_vec va{}, vb{}, vt{}, vc{}, result{};

  // Records of so many points over the buffers; made before the clock runs.
  void prepare(index points, bool complex) {
    const auto over = [&](const storage& from) {
      dsp_vec v{};
      v.delta = 1;
      v.data = from.data();
      v.alloc = static_cast<std::int32_t>(most_scalars);
      v.points = static_cast<std::uint32_t>(points);
      v.complex = complex ? 1 : 0;
      return v;
    };
    va = over(a);
    vb = over(b);
    vt = over(turns);
    vc = over(c);
    result = over(c);
  }

  arena() {
    for (index i = 0; i < most_scalars; ++i) d.aligned()[i] = 1.5;
    for (index i = 0; i < most_scalars; ++i) {
      turns.data()[i] = std::copysign(i % 2 == 0 ? 0.6 : 0.8, turns.data()[i]);  // points on the unit circle
    }
    // Factors near 1, so that what is multiplied again and again stays in range.
    for (index i = 0; i < most_scalars; ++i) b.data()[i] = std::copysign(1 + 1e-3 * b.data()[i], b.data()[i]);
  }
};

// What the time goes to at least: the greater of moving the data, and of the arithmetic where it may take
// longer.
enum class moves { stream, write, two, widen, narrow, join, read };
enum class computes { nothing, quotients, roots, blocks };
struct bounds {
  moves data;
  computes with;
  constexpr bounds(moves d, computes c = computes::nothing) : data(d), with(c) {}
};
constexpr bounds quotients{moves::stream, computes::quotients};
constexpr bounds quotients_of_two{moves::two, computes::quotients};
constexpr bounds roots{moves::stream, computes::roots};
constexpr bounds sums{moves::read, computes::blocks};
constexpr bounds sum_of_quotients{moves::read, computes::quotients};

// One operation on `points` points that occupy `footprint` scalars each, and move `moved` scalars each.
struct operation {
  std::string_view name;
  bounds limit;
  bool complex;
  int footprint;
  int moved;
  void (*ours)(arena&, index points);
  void (*plain)(arena&, index points);
};

template <int32_t (*statistic)(const dsp_vec*, dsp_vec*)> void reduce(arena& m, index) {
  statistic(&m.va, &m.result);
}
template <int32_t (*verb)(dsp_vec*)> void change(arena& m, index) { verb(&m.va); }
template <int32_t (*verb)(dsp_vec*), int32_t complex> void change_form(arena& m, index) {
  m.va.complex = complex;
  verb(&m.va);
}
template <int32_t (*verb)(const dsp_vec*, const dsp_vec*, dsp_vec*)> void combine(arena& m, index) {
  verb(&m.va, &m.vb, &m.va);
}
template <int32_t (*verb)(const dsp_vec*, const dsp_vec*, dsp_vec*)> void combine_points(arena& m, index) {
  verb(&m.va, &m.vt, &m.va);
}

constexpr std::array operations = {
    operation{"scale", moves::stream, false, 1, 2, [](arena& m, index) { dspi_scale(&m.va, -1.0); },
              [](arena& m, index n) { plain::scale(m.a.data(), n, -1.0); }},
    operation{"offset", moves::stream, false, 1, 2, [](arena& m, index) { dspi_offset(&m.va, 1e-3); },
              [](arena& m, index n) { plain::offset(m.a.data(), n, -1e-3); }},
    operation{"limit", moves::stream, false, 1, 2,
              [](arena& m, index) {
                std::int32_t clipped = 0;
                dspi_limit(&m.va, 0, -0.99, 0.99, &clipped);
              },
              [](arena& m, index n) { m.sink += plain::limit(m.a.data(), n, -0.99, 0.99) ? 1 : 0; }},
    operation{"add", moves::two, false, 2, 3, combine<dspb_add>,
              [](arena& m, index n) { plain::add(m.a.data(), m.b.data(), n); }},
    operation{"multiply", moves::two, false, 2, 3, combine<dspb_mul>,
              [](arena& m, index n) { plain::multiply(m.a.data(), m.b.data(), n); }},
    operation{"minimum", moves::two, false, 2, 3, combine<dspb_min>,
              [](arena& m, index n) { plain::minimum(m.a.data(), m.b.data(), n); }},
    operation{"weighted mean", moves::two, false, 2, 3,
              [](arena& m, index) { dspb_avg_add(&m.va, &m.vb, &m.va, 0.75); },
              [](arena& m, index n) { plain::blend(m.a.data(), m.b.data(), n, 0.75); }},
    operation{"complex multiply", moves::two, true, 4, 6, combine_points<dspb_mul>,
              [](arena& m, index n) { plain::multiply_points(m.a.data(), m.turns.data(), n); }},
    operation{"divide", quotients_of_two, false, 2, 3, combine<dspb_div>,
              [](arena& m, index n) { plain::divide(m.a.data(), m.b.data(), n); }},
    operation{"complex divide", quotients_of_two, true, 4, 6, combine_points<dspb_div>,
              [](arena& m, index n) { plain::divide_points(m.a.data(), m.turns.data(), n); }},
    operation{"reciprocal", quotients, false, 1, 2, change<dspi_recip>,
              [](arena& m, index n) { plain::reciprocal(m.a.data(), n); }},
    operation{"square root", roots, false, 1, 2, change<dspi_sqrt>,
              [](arena& m, index n) { plain::square_root(m.a.data(), n); }},
    operation{"sum", sums, false, 1, 1, reduce<dsps_sum>,
              [](arena& m, index n) { m.sink += plain::sum(m.a.data(), n); }},
    operation{"sum of squares", sums, false, 1, 1, reduce<dsps_magsq_sum>,
              [](arena& m, index n) { m.sink += plain::sum_of_squares(m.a.data(), n); }},
    operation{"variance", sums, false, 1, 1, reduce<dsps_pop_var>,
              [](arena& m, index n) { m.sink += plain::variance(m.a.data(), n); }},
    operation{"skewness", sums, false, 1, 1, reduce<dsps_skew>,
              [](arena& m, index n) { m.sink += plain::skewness(m.a.data(), n); }},
    operation{"excess", sums, false, 1, 2, reduce<dsps_excess>,
              [](arena& m, index n) { m.sink += plain::excess(m.a.data(), n); }},
    operation{"harmonic mean", sum_of_quotients, false, 1, 1, reduce<dsps_hmean>,
              [](arena& m, index n) { m.sink += plain::harmonic_mean(m.a.data(), n); }},
    operation{"smallest", moves::read, false, 1, 1, reduce<dsps_min>,
              [](arena& m, index n) { m.sink += plain::smallest(m.a.data(), n); }},
    operation{"smallest complex", moves::read, true, 2, 2, reduce<dsps_min>,
              [](arena& m, index n) { m.sink += static_cast<double>(plain::smallest_point(m.a.data(), n)); }},
    operation{"dot product", sums, false, 2, 2, [](arena& m, index) { dspbs_dot(&m.va, &m.vb, &m.result); },
              [](arena& m, index n) { m.sink += plain::dot(m.a.data(), m.b.data(), n); }},
    operation{"reverse", moves::stream, false, 1, 2, change<dspi_rev>,
              [](arena& m, index n) { plain::reverse(m.a.data(), n); }},
    operation{"swap halves, even", moves::stream, false, 1, 2, change<dspi_swap_halves>,
              [](arena& m, index n) { plain::swap_halves(m.a.data(), n); }},
    operation{"swap halves, odd", moves::stream, false, 1, 2,
              [](arena& m, index n) {
                m.va.points = static_cast<std::uint32_t>(n - 1);
                dspi_swap_halves(&m.va);
              },
              [](arena& m, index n) { plain::swap_halves(m.a.data(), n - 1); }},
    operation{"real to complex", moves::widen, false, 2, 3, change_form<dspi_rtoc, 0>,
              [](arena& m, index n) { plain::to_complex(m.a.data(), n); }},
    operation{"real part", moves::narrow, true, 2, 3, change_form<dspi_real, 1>,
              [](arena& m, index n) { plain::keep_part(m.a.data(), n, 0); }},
    operation{"imaginary part", moves::narrow, true, 2, 3, change_form<dspi_imag, 1>,
              [](arena& m, index n) { plain::keep_part(m.a.data(), n, 1); }},
    operation{"squared magnitude", moves::narrow, true, 2, 3, change_form<dspi_magsq, 1>,
              [](arena& m, index n) { plain::square_magnitude(m.a.data(), n); }},
    operation{"parts to complex", moves::join, false, 4, 4,
              [](arena& m, index) { dspb_ritoc(&m.va, &m.vb, &m.vc); },
              [](arena& m, index n) { plain::interleave(m.a.data(), m.b.data(), m.c.data(), n); }},
    operation{"cosine", moves::write, false, 1, 1, [](arena& m, index) { dspc_cos(&m.va, 0.01, 0); },
              [](arena& m, index n) { plain::cosine(m.a.data(), n, turn / 100); }},
    operation{"complex exponential", moves::write, true, 2, 2,
              [](arena& m, index) { dspc_cexp(&m.va, 0.01, 0); },
              [](arena& m, index n) { plain::complex_exponential(m.a.data(), n, turn / 100); }},
};

void refresh(arena& m, const operation& o, index points) {
  m.prepare(points, o.complex);
  for (index i = 0; i < points * o.footprint; ++i) m.a.data()[i] = m.b.data()[i] * 0.5 + 1e-9;
}

// The same loads and stores at the same footprint, or as many scalars moved.
contender move_as(arena& m, const operation& o, index points) {
  const index n = points * o.footprint / 64 * 64;
  switch (o.limit.data) {
    case moves::stream:
      return {"limit", [] {}, [&m, n] { bench::copy_scale(m.c.aligned(), n, -1.0); }};
    case moves::write:
      return {"limit", [] {}, [&m, n] { bench::write_all(m.c.aligned(), n, 1.0); }};
    case moves::two:
      return {"limit", [] {}, [&m, n] { bench::add_to(m.c.aligned(), m.b.aligned(), n / 2); }};
    case moves::widen:
      return {"limit", [] {}, [&m, points] { bench::widen(m.c.aligned(), points); }};
    case moves::narrow:
      return {"limit", [] {}, [&m, points] { bench::narrow(m.c.aligned(), points); }};
    case moves::join:
      return {"limit", [] {},
              [&m, points] { bench::join(m.a.aligned(), m.b.aligned(), m.c.aligned(), points); }};
    default:
      return {"limit", [] {}, [&m, n] { m.sink += bench::read_all(m.c.aligned(), n); }};
  }
}

// A division or a root for every point, on data that stay in the cache; the additions of one block.
contender compute_as(arena& m, const operation& o, index points) {
  const auto in_pieces = [points](auto part) {
    return [points, part] {
      for (index i = 0; i < points; i += block) part(std::min(block, points - i));
    };
  };
  switch (o.limit.with) {
    case computes::quotients:
      return {"arithmetic", [] {}, in_pieces([&m](index n) { bench::divide_one(m.d.aligned(), n); })};
    case computes::roots:
      return {"arithmetic", [] {},
              in_pieces([&m](index n) { bench::root_one(m.d.aligned(), m.c.aligned(), n); })};
    case computes::blocks:
      return {"arithmetic", [] {},
              [&m, points] { m.sink += bench::add_in_turn<double>(std::min(points, block)); }};
    default:
      return {"arithmetic", [] {}, {}};
  }
}

// Passes over the data for each one of its limit.
double passes(const operation& o) {
  switch (o.limit.data) {
    case moves::stream:
      return o.moved / (2.0 * o.footprint);
    case moves::write:
    case moves::read:
      return o.moved / (1.0 * o.footprint);
    default:
      return 1;
  }
}

void stream_table(const options& o) {
  arena m;
  std::printf("\nThe part of the limit that is reached, and the speed relative to the plain loop.\n");
  bench::print_head({"operation", "16 KiB", "256 KiB", "4 MiB", "64 MiB"});
  for (const operation& op : operations) {
    if (!o.wants("--only", op.name)) continue;
    std::printf("| %.*s |", static_cast<int>(op.name.size()), op.name.data());
    for (const index bytes : {index{1} << 14, index{1} << 18, index{1} << 22, index{1} << 26}) {
      const index points = bytes / scalar_bytes / op.footprint;
      refresh(m, op, points);
      std::vector<contender> all = {{"sigpak", [] {}, [&] { op.ours(m, points); }},
                                    {"plain", [] {}, [&] { op.plain(m, points); }},
                                    move_as(m, op, points),
                                    compute_as(m, op, points)};
      if (bytes == 8 * most_scalars) {  // nobody finds what the one before left in the cache
        for (contender& c : all) c.refill = [&] { m.sink += bench::read_all(m.d.aligned(), most_scalars); };
      }
      for (contender& c : all) c.repeats = static_cast<int>(std::max<index>(1, (index{1} << 18) / bytes));
      const auto t = bench::compare(all, rounds_of(o), 1e-4);
      const double moving = passes(op) / t[2].ratio;
      const double computing = all[3].once ? passes(op) / t[3].ratio : 0;
      std::printf(" %.2f, %.1fx |", std::max(moving, computing), t[1].seconds / t[0].seconds);
      std::fflush(stdout);
    }
    std::printf("\n");
  }
}

template <class T> using record = std::conditional_t<sizeof(T) == 8, dsp_vec, dspf_vec>;
template <class T> record<T> record_over(T* data, index n) {
  record<T> v{};
  v.data = data;
  v.alloc = static_cast<std::int32_t>(n);
  v.points = static_cast<std::uint32_t>(n);
  return v;
}
void sort(dsp_vec& v) { dspi_sort(&v); }
void sort(dspf_vec& v) { dspfi_sort(&v); }
void median(const dsp_vec& v, dsp_vec& result) { dsps_median(&v, &result); }
void median(const dspf_vec& v, dspf_vec& result) { dspfs_median(&v, &result); }
#ifdef BENCH_GSL
void sort_by_gsl(double* x, std::size_t n) { gsl_sort(x, 1, n); }
void sort_by_gsl(float* x, std::size_t n) { gsl_sort_float(x, 1, n); }
#endif

// The value at a place of n, made of it or of a number drawn from [0, 1).
struct values {
  const char* name;
  double (*at)(double drawn, index place, index n);
};
template <int count> double one_of(double drawn, index, index) { return std::floor(count * drawn); }
constexpr values value_kinds[] = {
    {"random", [](double drawn, index, index) { return drawn - 0.5; }},
    {"2 values", one_of<2>},
    {"3 values", one_of<3>},
    {"16 values", one_of<16>},
    {"256 values", one_of<256>},
    {"constant", [](double, index, index) { return 1.0; }},
    {"ascending", [](double, index place, index) { return static_cast<double>(place); }},
    {"descending", [](double, index place, index) { return -static_cast<double>(place); }},
    {"organ pipe", [](double, index at, index n) { return static_cast<double>(std::min(at, n - 1 - at)); }},
};

// Runs of n numbers: repeated data flatter branches.
template <class T> std::vector<T> numbers_in(const values& kind, index n) {
  constexpr index enough = index{1} << 18;
  std::vector<T> x(static_cast<std::size_t>(std::max(n * 4, enough / n * n)));
  std::mt19937_64 engine(5);
  std::uniform_real_distribution<double> uniform;
  for (std::size_t i = 0; i < x.size(); ++i) {
    x[i] = static_cast<T>(kind.at(uniform(engine), static_cast<index>(i) % n, n));
  }
  return x;
}

// Sorting and the median of n numbers. The clock would take as long as a few of them: it runs over several.
template <class T> void order_rows(const options& o, const values& kind, index n) {
  const std::vector<T> source = numbers_in<T>(kind, n);
  const index at_once = std::clamp<index>(2048 / n, 1, 100);
  const index places = static_cast<index>(source.size()) / n / at_once;
  const auto size = static_cast<std::size_t>(n);
  std::vector<T> several(size * static_cast<std::size_t>(at_once));
  std::vector<T> copy(size);
  T result[2] = {};
  T* work = nullptr;
  index at = 0;
  const auto refill = [&] {
    at = (at + 1) % places;
    std::copy_n(source.begin() + at * n * at_once, n * at_once, several.begin());
    work = several.data() - n;
  };
  const auto sigpak_sort = [&] {
    auto v = record_over(work += n, n);
    sort(v);
  };
  const auto sigpak_median = [&] {
    const auto v = record_over(work += n, n);
    auto r = record_over(result, 2);
    median(v, r);
  };
  const auto std_median = [&] {
    std::copy_n(work += n, n, copy.begin());  // the median leaves its input alone
    std::nth_element(copy.begin(), copy.begin() + n / 2, copy.end());
    result[0] = copy[size / 2];
  };
  contender gsl_sorts{"GSL", refill, {}};
  contender gsl_medians{"GSL", refill, {}};
#ifdef BENCH_GSL
  gsl_sorts.once = [&] { sort_by_gsl(work += n, size); };
  gsl_medians.once = [&] {
    std::copy_n(work += n, n, copy.begin());
    sort_by_gsl(copy.data(), size);
    result[0] = copy[size / 2];
  };
#endif
  contender hwy_sorts{"Highway", refill, {}};
  contender hwy_medians{"Highway", refill, {}};
#ifdef BENCH_HWY
  hwy::Sorter sorter;
  hwy_sorts.once = [&] { sorter(work += n, size, hwy::SortAscending()); };
  hwy_medians.once = [&] {
    std::copy_n(work += n, n, copy.begin());
    sorter(copy.data(), size, hwy::SortAscending());
    result[0] = copy[size / 2];
  };
#endif
  const auto std_sort = [&] {
    work += n;
    std::sort(work, work + n);
  };
  std::vector<contender> sorts = {
      {"sigpak", refill, sigpak_sort}, {"std", refill, std_sort}, gsl_sorts, hwy_sorts};
  std::vector<contender> medians = {
      {"sigpak", refill, sigpak_median}, {"std", refill, std_median}, gsl_medians, hwy_medians};
  const int rounds = n > 500000 ? std::min(rounds_of(o), 7) : rounds_of(o);
  for (auto* list : {&sorts, &medians}) {
    for (contender& c : *list) c.repeats = static_cast<int>(at_once);
    const auto t = bench::compare(*list, rounds, n < 1000 ? 3e-4 : 1e-3);
    std::printf("| %s | %s | %s | %td | %.2f |", list == &sorts ? "sort" : "median",
                sizeof(T) == 8 ? "double" : "single", kind.name, n,
                t[0].seconds * 1e9 / static_cast<double>(n));
    for (std::size_t i = 1; i < list->size(); ++i) {
      if ((*list)[i].once) std::printf(" %.2f |", 1 / t[i].ratio);
      if (!(*list)[i].once) std::printf(" |");
    }
    std::printf("\n");
    std::fflush(stdout);
  }
}

// Highway chooses among the targets of the processor: none beyond the level that is measured, at the baseline
// its narrowest.
void hold_peers_to_level() {
#if defined(BENCH_HWY) && SIGPAK_WIDE_LEVELS
  using sigpak::isa::level;
  if (sigpak::isa::current() == level::avx2) hwy::SetSupportedTargetsForTest(HWY_AVX2 | HWY_SSE4 | HWY_SSSE3);
  if (sigpak::isa::current() == level::baseline) hwy::SetSupportedTargetsForTest(HWY_SSSE3);
#endif
}

void order_table(const options& o) {
  hold_peers_to_level();
  bench::print_head(
      {"operation", "precision", "values", "points", "ns / point", "to std", "to GSL", "to Highway"});
  for (const values& kind : value_kinds) {
    if (!o.wants("--only", kind.name)) continue;
    for (const index n : {10, 30, 100, 300, 1000, 10000, 100000, 1000000, 10000000}) {
      if (o.number("--points", n) != n) continue;
      order_rows<double>(o, kind, n);
      order_rows<float>(o, kind, n);
    }
  }
}

// Calls of a few points, a thousand at a time. A ratio above 1 is slower than the direct loop.
void small_table(const options& o) {
  arena m;
  bench::print_head({"operation, time relative to the direct loop", "1", "4", "16", "64"});
  for (const operation& op : operations) {
    if (!o.wants("--only", op.name)) continue;
    std::printf("| %.*s |", static_cast<int>(op.name.size()), op.name.data());
    for (const index points : {1, 4, 16, 64}) {
      refresh(m, op, points);
      const auto many = [&](auto call) {
        return [&m, call, points] {
          for (int i = 0; i < 1000; ++i) call(m, points);
        };
      };
      const std::vector<contender> all = {{"sigpak", [] {}, many(op.ours)}, {"plain", [] {}, many(op.plain)}};
      const auto t = bench::compare(all, rounds_of(o), 5e-5);
      std::printf(" %.2f (%.1f ns) |", t[1].ratio, t[0].seconds * 1e6);
    }
    std::printf("\n");
    std::fflush(stdout);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const options o(argc, argv, {"--level", "--table", "--only", "--points", "--rounds"});
  std::printf("level %s\n", o.level());
  if (o.wants("--table", "stream")) stream_table(o);
  if (o.wants("--table", "order")) order_table(o);
  if (o.wants("--table", "small")) small_table(o);
}
