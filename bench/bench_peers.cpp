// SPDX-License-Identifier: MIT
// Operations on vectors beside other libraries and the limit of the machine, as one Markdown table:
// nanoseconds per point, the part of the limit that is reached, and the speed relative to each library that
// does the same job.
//
// bench_peers [--level baseline|avx2|avx512] [--only NAME] [--precision double|single] [--rounds N]
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <type_traits>

#include "buffer.h"
#include "limits.h"
#include "options.h"
#include "rounds.h"
#include "sigpak.h"
#include "table.h"
#include "vector_peers.h"

namespace {

using bench::index;

template <class T> constexpr bool is_double = sizeof(T) == sizeof(double);

template <class T> struct field {
  using V = std::conditional_t<is_double<T>, dsp_vec, dspf_vec>;

  field(const bench::arrays<T>& on, bool complex)
      : points(on.points),
        a(record(const_cast<T*>(on.a), complex)),
        b(record(const_cast<T*>(on.b), complex)),
        out(record(on.out, complex)) {}

  index points;
  V a, b, out;

 private:
  V record(T* data, bool complex) const {
    V v{};
    v.delta = 1;
    v.data = data;
    v.alloc = static_cast<int32_t>(2 * points);
    v.points = static_cast<uint32_t>(points);
    v.complex = complex ? 1 : 0;
    return v;
  }
};

template <class M> using scalar_of = std::remove_pointer_t<decltype(M::out.data)>;

// The shapes of the calls; D and F are the twins.
template <class M, auto D, auto F, class... Arguments> void call(Arguments... arguments) {
  if constexpr (is_double<scalar_of<M>>) {
    D(arguments...);
  } else {
    F(arguments...);
  }
}
template <auto D, auto F> constexpr auto combined = []<class M>(M& m) { call<M, D, F>(&m.a, &m.b, &m.out); };
template <auto D, auto F> constexpr auto taken = []<class M>(M& m) { call<M, D, F>(&m.a, &m.out); };
template <auto D, auto F>
constexpr auto copied = []<class M>(M& m) {  // the copy is part of the job
  std::memcpy(m.out.data, m.a.data, static_cast<std::size_t>(m.points) * sizeof(scalar_of<M>));
  call<M, D, F>(&m.out);
};
constexpr auto scaled = []<class M>(M& m) { call<M, dspi_scale, dspfi_scale>(&m.out, scalar_of<M>(-1)); };
constexpr auto dotted = []<class M>(M& m) { call<M, dspbs_dot, dspfbs_dot>(&m.a, &m.b, &m.out); };

// One body for both precisions.
struct operation {
  template <class Body> constexpr operation(Body body) : in_double(body), in_single(body) {}
  void run(field<double>& m) const { in_double(m); }
  void run(field<float>& m) const { in_single(m); }

  void (*in_double)(field<double>&);
  void (*in_single)(field<float>&);
};

enum class bound { none, stream, read, divider, root };

// `scalars` per point in all its arrays together, `moved` read or written.
struct row {
  const char* name;
  bound limit;
  bool complex;
  int scalars;
  int moved;
  double low, high;
  operation ours;
};

constexpr row rows[] = {
    {"scale", bound::stream, false, 1, 2, -1, 1, scaled},
    {"add", bound::stream, false, 3, 3, -1, 1, combined<dspb_add, dspfb_add>},
    {"multiply", bound::stream, false, 3, 3, -1, 1, combined<dspb_mul, dspfb_mul>},
    {"minimum", bound::stream, false, 3, 3, -1, 1, combined<dspb_min, dspfb_min>},
    {"divide", bound::divider, false, 3, 3, 1, 2, combined<dspb_div, dspfb_div>},
    {"complex multiply", bound::stream, true, 6, 6, -1, 1, combined<dspb_mul, dspfb_mul>},
    {"complex divide", bound::divider, true, 6, 6, 1, 2, combined<dspb_div, dspfb_div>},
    {"squared magnitude", bound::stream, true, 3, 3, -1, 1, taken<dspu_magsq, dspfu_magsq>},
    {"magnitude", bound::root, true, 3, 3, -1, 1, taken<dspu_mag, dspfu_mag>},
    {"parts to complex", bound::stream, false, 4, 4, -1, 1, combined<dspb_ritoc, dspfb_ritoc>},
    {"sum", bound::read, false, 1, 1, -1, 1, taken<dsps_sum, dspfs_sum>},
    {"mean", bound::read, false, 1, 1, -1, 1, taken<dsps_mean, dspfs_mean>},
    {"sum of squares", bound::read, false, 1, 1, -1, 1, taken<dsps_magsq_sum, dspfs_magsq_sum>},
    {"variance", bound::read, false, 1, 1, -1, 1, taken<dsps_pop_var, dspfs_pop_var>},
    {"skewness", bound::read, false, 1, 1, -1, 1, taken<dsps_skew, dspfs_skew>},
    {"excess", bound::read, false, 1, 2, -1, 1, taken<dsps_excess, dspfs_excess>},
    {"smallest", bound::read, false, 1, 1, -1, 1, taken<dsps_min, dspfs_min>},
    {"dot product", bound::read, false, 2, 2, -1, 1, dotted},
    {"square root", bound::root, false, 2, 2, 1, 2, copied<dspi_sqrt, dspfi_sqrt>},
    {"exp", bound::none, false, 2, 2, -30, 30, copied<dspi_exp, dspfi_exp>},
    {"log", bound::none, false, 2, 2, 1e-3, 1e3, copied<dspi_log, dspfi_log>},
    {"log10", bound::none, false, 2, 2, 1e-3, 1e3, copied<dspi_log10, dspfi_log10>},
    {"sin", bound::none, false, 2, 2, -30, 30, copied<dspi_sin, dspfi_sin>},
    {"cos", bound::none, false, 2, 2, -30, 30, copied<dspi_cos, dspfi_cos>},
    {"tan", bound::none, false, 2, 2, -30, 30, copied<dspi_tan, dspfi_tan>},
    {"atan", bound::none, false, 2, 2, -5, 5, copied<dspi_atan, dspfi_atan>},
    {"asin", bound::none, false, 2, 2, -1, 1, copied<dspi_asin, dspfi_asin>},
    {"acos", bound::none, false, 2, 2, -1, 1, copied<dspi_acos, dspfi_acos>},
    {"sinh", bound::none, false, 2, 2, -10, 10, copied<dspi_sinh, dspfi_sinh>},
    {"cosh", bound::none, false, 2, 2, -10, 10, copied<dspi_cosh, dspfi_cosh>},
    {"tanh", bound::none, false, 2, 2, -3, 3, copied<dspi_tanh, dspfi_tanh>},
};

// The loop that nothing can beat on the same bytes, and how much of its work the row does.
template <class T> struct limit {
  std::function<void()> run;
  double share;
};
template <class T> limit<T> limit_of(const row& r, T* x, index points) {
  const index n = points * r.scalars / 64 * 64;
  switch (r.limit) {
    case bound::stream:
      return {[=] { bench::copy_scale(x, n, T(-1)); }, r.moved / (2.0 * r.scalars)};
    case bound::read:
      return {[=] { x[0] = bench::read_all(x, n) * 0; }, r.moved / (1.0 * r.scalars)};
    case bound::divider:
      return {[=] { bench::divide_one(x, points); }, 1};
    case bound::root:
      return {[=, half = points / 2] {
                for (int i = 0; i < 2; ++i) bench::root_one(x, x + half, half);
              },
              1};
    default:
      return {{}, 0};
  }
}

constexpr const char* libraries[] = {"Eigen", "VOLK", "GSL", "liquid"};

template <class T>
std::vector<bench::vector_peer> peers_of(std::string_view job, const bench::arrays<T>& on) {
  std::vector<bench::vector_peer> out;
#ifdef BENCH_EIGEN
  bench::add_eigen(out, job, on);
#endif
#ifdef BENCH_GSL
  bench::add_gsl(out, job, on);
#endif
  if constexpr (!is_double<T>) {
#ifdef BENCH_VOLK
    bench::add_volk(out, job, on);
#endif
#ifdef BENCH_LIQUID
    bench::add_liquid(out, job, on);
#endif
  }
  return out;
}

template <class T> void print_row(const row& r, index bytes, int rounds) {
  const index points = bytes / static_cast<index>(sizeof(T)) / r.scalars / 64 * 64;
  const index scalars = points * (r.complex ? 2 : 1);
  const bench::buffer<T> a(scalars, 1, r.low, r.high);
  const bench::buffer<T> b(scalars, 2, r.low, r.high);
  const bench::buffer<T> out(2 * scalars, 3, r.low, r.high);
  const bench::buffer<T> still(points * r.scalars, 4, 1, 2);
  const bench::arrays<T> on = {a.data(), b.data(), out.data(), points};
  field<T> m(on, r.complex);
  const limit<T> most = limit_of(r, still.aligned(), points);
  const auto peers = peers_of(r.name, on);

  std::vector<bench::contender> all = {{"sigpak", [] {}, [&] { r.ours.run(m); }}, {"limit", [] {}, most.run}};
  for (const bench::vector_peer& p : peers) all.push_back({p.name, [] {}, p.run});
  for (bench::contender& c : all) c.repeats = static_cast<int>(std::max<index>(1, (index{1} << 17) / bytes));
  const auto t = bench::compare(all, rounds, 1e-4);

  std::printf("| %s | %s | %td KiB | %.3f |", r.name, is_double<T> ? "double" : "single", bytes / 1024,
              t[0].seconds / static_cast<double>(points) * 1e9);
  most.run ? std::printf(" %.2f |", most.share / t[1].ratio) : std::printf(" - |");
  for (const char* library : libraries) {
    double best = std::numeric_limits<double>::infinity();
    for (std::size_t i = 2; i < all.size(); ++i) {
      if (all[i].name == library) best = std::min(best, 1 / t[i].ratio);
    }
    best < std::numeric_limits<double>::infinity() ? std::printf(" %.2f |", best) : std::printf(" - |");
  }
  std::printf("\n");
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  const bench::options o(argc, argv, {"--level", "--only", "--precision", "--rounds"});
  std::printf("level %s\n", o.level());
  bench::print_head({"operation", "precision", "data", "ns / point", "of limit", "to Eigen", "to VOLK",
                     "to GSL", "to liquid"});
  const int rounds = static_cast<int>(o.number("--rounds", 9));
  for (const row& r : rows) {
    if (!o.wants("--only", r.name)) continue;
    for (const bench::index bytes : {bench::index{1} << 14, bench::index{1} << 22}) {
      if (o.wants("--precision", "double")) print_row<double>(r, bytes, rounds);
      if (o.wants("--precision", "single")) print_row<float>(r, bytes, rounds);
    }
  }
}
