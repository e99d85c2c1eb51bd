// SPDX-License-Identifier: MIT
// Elementary functions against the C library, SLEEF's functions of 1 ulp and libmvec (for its speed: its
// errors reach some ulp) at the same vector width, 4096 scalars in cache, as one Markdown table: nanoseconds
// per point, and ratios of speed. All do one job, in place on a copy of the samples.
//
// bench_math [--only NAME] [--rounds N]
#include <immintrin.h>
#include <sleef.h>

#include <cmath>
#include <complex>
#include <cstdio>
#include <cstring>
#include <string>

#include "core/isa.h"
#include "options.h"
#include "rounds.h"
#include "sigpak.h"
#include "table.h"

#ifdef BENCH_MVEC
#define MVEC_ONE(name)                         \
  extern "C" __m512d _ZGVeN8v_##name(__m512d); \
  extern "C" __m512 _ZGVeN16v_##name##f(__m512);
MVEC_ONE(sin)
MVEC_ONE(cos)
MVEC_ONE(tan)
MVEC_ONE(exp)
MVEC_ONE(exp10)
MVEC_ONE(log)
MVEC_ONE(log10)
MVEC_ONE(atan)
MVEC_ONE(asin)
MVEC_ONE(acos)
MVEC_ONE(sinh)
MVEC_ONE(cosh)
MVEC_ONE(tanh)
extern "C" __m512d _ZGVeN8vv_hypot(__m512d, __m512d);
extern "C" __m512 _ZGVeN16vv_hypotf(__m512, __m512);
extern "C" __m512d _ZGVeN8vv_atan2(__m512d, __m512d);
extern "C" __m512 _ZGVeN16vv_atan2f(__m512, __m512);
#define MVEC(name) one<_ZGVeN8v_##name>, one<_ZGVeN16v_##name##f>
#define MVEC_PAIR(name) pair<_ZGVeN8vv_##name>, pair<_ZGVeN16vv_##name##f>
#else
#define MVEC(name) nullptr, nullptr
#define MVEC_PAIR(name) nullptr, nullptr
#endif
#define SLEEF(name)                                                                        \
  one<Sleef_##name##d4_u10avx2>, one<Sleef_##name##d8_u10>, one<Sleef_##name##f8_u10avx2>, \
      one<Sleef_##name##f16_u10>

namespace {

constexpr std::size_t scalars = 4096;

template <class T> struct data {
  alignas(64) static T x[scalars];
  alignas(64) static T y[scalars];
};
template <class T> alignas(64) T data<T>::x[scalars];
template <class T> alignas(64) T data<T>::y[scalars];

using loop = void (*)();

// The scalar of a vector, or the scalar itself.
[[maybe_unused]] double element(double x) { return x; }
[[maybe_unused]] float element(float x) { return x; }
[[maybe_unused]] double element(__m256d v) { return v[0]; }
[[maybe_unused]] double element(__m512d v) { return v[0]; }
[[maybe_unused]] float element(__m256 v) { return v[0]; }
[[maybe_unused]] float element(__m512 v) { return v[0]; }

template <class R, class W> W argument_of(R (*)(W));
template <class R, class W> W argument_of(R (*)(W, W));

template <class T> void copy_samples() { std::memcpy(data<T>::y, data<T>::x, sizeof data<T>::x); }

// A function of one argument over all scalars. The data are aligned for the widest vectors.
template <auto f> void one() {
  using W = decltype(argument_of(f));
  using T = decltype(element(W()));
  copy_samples<T>();
  for (std::size_t i = 0; i < scalars; i += sizeof(W) / sizeof(T)) {
    W& samples = *reinterpret_cast<W*>(data<T>::y + i);
    samples = f(samples);
  }
}
template <auto f> auto over_argument(decltype(argument_of(f)) x) { return f(x) / x; }
// One of two arguments, from the halves of the data: as many points as a complex record has.
template <auto f> void pair() {
  using W = decltype(argument_of(f));
  using T = decltype(element(W()));
  copy_samples<T>();
  for (std::size_t i = 0; i < scalars / 2; i += sizeof(W) / sizeof(T)) {
    W& a = *reinterpret_cast<W*>(data<T>::y + i);
    a = f(a, *reinterpret_cast<const W*>(data<T>::y + scalars / 2 + i));
  }
}
template <auto f, auto g> void two_pairs() {
  using W = decltype(argument_of(f));
  using T = decltype(element(W()));
  copy_samples<T>();
  for (std::size_t i = 0; i < scalars / 2; i += sizeof(W) / sizeof(T)) {
    W& a = *reinterpret_cast<W*>(data<T>::y + i);
    W& b = *reinterpret_cast<W*>(data<T>::y + scalars / 2 + i);
    const W first = f(a, b);
    b = g(a, b);
    a = first;
  }
}
// One of complex points.
template <class T, std::complex<T> (*f)(const std::complex<T>&)> void complex_one() {
  copy_samples<T>();
  auto* const y = reinterpret_cast<std::complex<T>*>(data<T>::y);
  for (std::size_t i = 0; i < scalars / 2; ++i) y[i] = f(y[i]);
}

struct function {
  const char* name;
  bool complex;
  double low, high;
  int32_t (*in_double)(dsp_vec*);
  int32_t (*in_single)(dspf_vec*);
  loop c_double, c_single;
  loop sleef4, sleef8, single_sleef8, sleef16;
  loop mvec8, mvec16;
};

int32_t decibels(dsp_vec* v) { return dspi_db(v, 20); }
int32_t decibels(dspf_vec* v) { return dspfi_db(v, 20); }

#define C(name) one<static_cast<double (*)(double)>(name)>, one<name##f>
#define C_PAIR(name) pair<static_cast<double (*)(double, double)>(name)>, pair<name##f>
#define C_COMPLEX(name) complex_one<double, std::name>, complex_one<float, std::name>

constexpr function functions[] = {
    {"sin", false, -30, 30, dspi_sin, dspfi_sin, C(sin), SLEEF(sin), MVEC(sin)},
    {"cos", false, -30, 30, dspi_cos, dspfi_cos, C(cos), SLEEF(cos), MVEC(cos)},
    {"tan", false, -30, 30, dspi_tan, dspfi_tan, C(tan), SLEEF(tan), MVEC(tan)},
    {"sinc", false, -30, 30, dspi_sinc, dspfi_sinc, one<over_argument<static_cast<double (*)(double)>(sin)>>,
     one<over_argument<sinf>>, one<over_argument<Sleef_sind4_u10avx2>>, one<over_argument<Sleef_sind8_u10>>,
     one<over_argument<Sleef_sinf8_u10avx2>>, one<over_argument<Sleef_sinf16_u10>>, nullptr, nullptr},
    {"exp", false, -30, 30, dspi_exp, dspfi_exp, C(exp), SLEEF(exp), MVEC(exp)},
    {"exp10", false, -10, 10, dspi_exp10, dspfi_exp10, C(exp10), SLEEF(exp10), MVEC(exp10)},
    {"log", false, 1e-3, 1e3, dspi_log, dspfi_log, C(log), SLEEF(log), MVEC(log)},
    {"log10", false, 1e-3, 1e3, dspi_log10, dspfi_log10, C(log10), SLEEF(log10), MVEC(log10)},
    {"db", false, 1e-3, 1e3, decibels, decibels, C(log10), SLEEF(log10), MVEC(log10)},
    {"atan", false, -5, 5, dspi_atan, dspfi_atan, C(atan), SLEEF(atan), MVEC(atan)},
    {"asin", false, -1, 1, dspi_asin, dspfi_asin, C(asin), SLEEF(asin), MVEC(asin)},
    {"acos", false, -1, 1, dspi_acos, dspfi_acos, C(acos), SLEEF(acos), MVEC(acos)},
    {"sinh", false, -10, 10, dspi_sinh, dspfi_sinh, C(sinh), SLEEF(sinh), MVEC(sinh)},
    {"cosh", false, -10, 10, dspi_cosh, dspfi_cosh, C(cosh), SLEEF(cosh), MVEC(cosh)},
    {"tanh", false, -3, 3, dspi_tanh, dspfi_tanh, C(tanh), SLEEF(tanh), MVEC(tanh)},
    {"magnitude", true, -5, 5, dspi_mag, dspfi_mag, C_PAIR(hypot), pair<Sleef_hypotd4_u05avx2>,
     pair<Sleef_hypotd8_u05>, pair<Sleef_hypotf8_u05avx2>, pair<Sleef_hypotf16_u05>, MVEC_PAIR(hypot)},
    {"phase", true, -5, 5, dspi_phase, dspfi_phase, C_PAIR(atan2), pair<Sleef_atan2d4_u10avx2>,
     pair<Sleef_atan2d8_u10>, pair<Sleef_atan2f8_u10avx2>, pair<Sleef_atan2f16_u10>, MVEC_PAIR(atan2)},
    {"polar", true, -5, 5, dspi_rtop, dspfi_rtop,
     two_pairs<static_cast<double (*)(double, double)>(hypot),
               static_cast<double (*)(double, double)>(atan2)>,
     two_pairs<hypotf, atan2f>, two_pairs<Sleef_hypotd4_u05avx2, Sleef_atan2d4_u10avx2>,
     two_pairs<Sleef_hypotd8_u05, Sleef_atan2d8_u10>, two_pairs<Sleef_hypotf8_u05avx2, Sleef_atan2f8_u10avx2>,
     two_pairs<Sleef_hypotf16_u05, Sleef_atan2f16_u10>, nullptr, nullptr},
    {"complex sqrt", true, -5, 5, dspi_sqrt, dspfi_sqrt, C_COMPLEX(sqrt), nullptr, nullptr, nullptr, nullptr,
     nullptr, nullptr},
    {"complex exp", true, -5, 5, dspi_exp, dspfi_exp, C_COMPLEX(exp), nullptr, nullptr, nullptr, nullptr,
     nullptr, nullptr},
    {"complex log", true, -5, 5, dspi_log, dspfi_log, C_COMPLEX(log), nullptr, nullptr, nullptr, nullptr,
     nullptr, nullptr},
};

// The level is part of the run, so that rounds may take turns.
template <class V, class T>
std::function<void()> ours(const function& f, int32_t (*run)(V*), sigpak::isa::level level, T) {
  return [=, &f] {
    sigpak::isa::force(level);
    copy_samples<T>();
    V v{};
    v.delta = 1;
    v.data = data<T>::y;
    v.points = f.complex ? scalars / 2 : scalars;
    v.complex = f.complex ? 1 : 0;
    run(&v);
  };
}

void print_row(const function& f, int rounds) {
  for (unsigned i = 0; i < scalars; ++i) {
    data<double>::x[i] = f.low + (f.high - f.low) * static_cast<double>(i * 2654435761U % 100003U) / 100003;
    data<float>::x[i] = static_cast<float>(data<double>::x[i]);
  }
  using enum sigpak::isa::level;
  enum {
    c,
    own0,
    sleef4,
    own4,
    sleef8,
    mvec8,
    own8,
    c_single,
    single0,
    single_sleef8,
    single8,
    sleef16,
    mvec16,
    own16
  };
  std::vector<bench::contender> contenders;
  const auto add = [&](std::function<void()> run) { contenders.push_back({"", [] {}, std::move(run), 4}); };
  add(f.c_double);
  add(ours(f, f.in_double, baseline, double()));
  add(f.sleef4);
  add(ours(f, f.in_double, avx2, double()));
  add(f.sleef8);
  add(f.mvec8);
  add(ours(f, f.in_double, avx512, double()));
  add(f.c_single);
  add(ours(f, f.in_single, baseline, float()));
  add(f.single_sleef8);
  add(ours(f, f.in_single, avx2, float()));
  add(f.sleef16);
  add(f.mvec16);
  add(ours(f, f.in_single, avx512, float()));
  const auto t = bench::compare(contenders, rounds, 2e-4);
  const double points = f.complex ? scalars / 2 : scalars;
  const auto ns = [&](int i) {
    std::printf(" %.2f |", t[static_cast<std::size_t>(i)].seconds / points * 1e9);
  };
  const auto faster = [&](int i, int than) {
    const double theirs = t[static_cast<std::size_t>(than)].seconds;
    theirs > 0 ? std::printf(" %.2f |", theirs / t[static_cast<std::size_t>(i)].seconds)
               : std::printf(" - |");
  };
  std::printf("| %s |", f.name);
  ns(c);
  faster(own0, c);
  ns(own4);
  faster(own4, sleef4);
  ns(own8);
  faster(own8, sleef8);
  faster(own8, mvec8);
  faster(own8, c);
  faster(single0, c_single);
  faster(single8, single_sleef8);
  ns(own16);
  faster(own16, sleef16);
  faster(own16, mvec16);
  faster(own16, c_single);
  std::printf("\n");
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  const bench::options o(argc, argv, {"--only", "--rounds"});
  if (sigpak::isa::widest() != sigpak::isa::level::avx512) {
    std::puts("bench_math needs a processor with AVX-512");
    return 77;
  }
  bench::print_head({"function", "C ns", "baseline / C", "avx2 ns", "/ SLEEF", "avx512 ns", "/ SLEEF",
                     "/ libmvec", "/ C", "single baseline / C", "avx2 / SLEEF", "avx512 ns", "/ SLEEF",
                     "/ libmvec", "/ C"});
  for (const function& f : functions) {
    if (o.wants("--only", f.name)) print_row(f, static_cast<int>(o.number("--rounds", 15)));
  }
}
