// Elementary functions against the C library and SLEEF's functions of 1 ulp at the same vector width, 4096
// samples in cache, as one Markdown table: nanoseconds per sample, and ratios of speed.
//
// bench_math [--rounds N]
#include <immintrin.h>
#include <sleef.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "core/isa.h"
#include "rounds.h"
#include "sigpak.h"

namespace {

constexpr int samples = 4096;

struct function {
  const char* name;
  double low, high;
  int32_t (*in_double)(dsp_vec*);
  int32_t (*in_single)(dspf_vec*);
  double (*scalar)(double);
  const __m256d (*sleef4)(__m256d);
  const __m512d (*sleef8)(__m512d);
  const __m512 (*sleef16)(__m512);
};

int32_t decibels(dsp_vec* v) { return dspi_db(v, 20); }
int32_t decibels(dspf_vec* v) { return dspfi_db(v, 20); }

constexpr function functions[] = {
    {"sin", -30, 30, dspi_sin, dspfi_sin, std::sin, Sleef_sind4_u10avx2, Sleef_sind8_u10, Sleef_sinf16_u10},
    {"cos", -30, 30, dspi_cos, dspfi_cos, std::cos, Sleef_cosd4_u10avx2, Sleef_cosd8_u10, Sleef_cosf16_u10},
    {"tan", -30, 30, dspi_tan, dspfi_tan, std::tan, Sleef_tand4_u10avx2, Sleef_tand8_u10, Sleef_tanf16_u10},
    {"sinc", -30, 30, dspi_sinc, dspfi_sinc, std::sin, Sleef_sind4_u10avx2, Sleef_sind8_u10,
     Sleef_sinf16_u10},
    {"exp", -30, 30, dspi_exp, dspfi_exp, std::exp, Sleef_expd4_u10avx2, Sleef_expd8_u10, Sleef_expf16_u10},
    {"exp10", -10, 10, dspi_exp10, dspfi_exp10, exp10, Sleef_exp10d4_u10avx2, Sleef_exp10d8_u10,
     Sleef_exp10f16_u10},
    {"log", 1e-3, 1e3, dspi_log, dspfi_log, std::log, Sleef_logd4_u10avx2, Sleef_logd8_u10, Sleef_logf16_u10},
    {"log10", 1e-3, 1e3, dspi_log10, dspfi_log10, std::log10, Sleef_log10d4_u10avx2, Sleef_log10d8_u10,
     Sleef_log10f16_u10},
    {"db", 1e-3, 1e3, decibels, decibels, std::log10, Sleef_log10d4_u10avx2, Sleef_log10d8_u10,
     Sleef_log10f16_u10},
    {"atan", -5, 5, dspi_atan, dspfi_atan, std::atan, Sleef_atand4_u10avx2, Sleef_atand8_u10,
     Sleef_atanf16_u10},
    {"asin", -1, 1, dspi_asin, dspfi_asin, std::asin, Sleef_asind4_u10avx2, Sleef_asind8_u10,
     Sleef_asinf16_u10},
    {"acos", -1, 1, dspi_acos, dspfi_acos, std::acos, Sleef_acosd4_u10avx2, Sleef_acosd8_u10,
     Sleef_acosf16_u10},
    {"sinh", -10, 10, dspi_sinh, dspfi_sinh, std::sinh, Sleef_sinhd4_u10avx2, Sleef_sinhd8_u10,
     Sleef_sinhf16_u10},
    {"cosh", -10, 10, dspi_cosh, dspfi_cosh, std::cosh, Sleef_coshd4_u10avx2, Sleef_coshd8_u10,
     Sleef_coshf16_u10},
    {"tanh", -3, 3, dspi_tanh, dspfi_tanh, std::tanh, Sleef_tanhd4_u10avx2, Sleef_tanhd8_u10,
     Sleef_tanhf16_u10},
};

alignas(64) double x[samples];
alignas(64) double y[samples];
alignas(64) float x_single[samples];
alignas(64) float y_single[samples];

// The level is part of the run, so that rounds may take turns; the copy of the samples counts as ours.
std::function<void()> ours(const function& f, sigpak::isa::level level) {
  return [&f, level] {
    sigpak::isa::force(level);
    std::memcpy(y, x, sizeof x);
    dsp_vec v = {1, y, 0, samples, 0, 0};
    f.in_double(&v);
  };
}

std::function<void()> ours_single(const function& f) {
  return [&f] {
    sigpak::isa::force(sigpak::isa::level::avx512);
    std::memcpy(y_single, x_single, sizeof x_single);
    dspf_vec v = {1, y_single, 0, samples, 0, 0};
    f.in_single(&v);
  };
}

void print_row(const function& f, int rounds) {
  for (int i = 0; i < samples; ++i) {
    x[i] = f.low + (f.high - f.low) * static_cast<double>(i * 2654435761U % 100003U) / 100003;
    x_single[i] = static_cast<float>(x[i]);
  }
  using enum sigpak::isa::level;
  const auto nothing = [] {};
  const std::vector<bench::contender> contenders = {
      {"C library", nothing,
       [&] {
         for (int i = 0; i < samples; ++i) y[i] = f.scalar(x[i]);
       },
       4},
      {"baseline", nothing, ours(f, baseline), 4},
      {"SLEEF, 4", nothing,
       [&] {
         for (int i = 0; i < samples; i += 4) _mm256_store_pd(y + i, f.sleef4(_mm256_load_pd(x + i)));
       },
       4},
      {"avx2", nothing, ours(f, avx2), 4},
      {"SLEEF, 8", nothing,
       [&] {
         for (int i = 0; i < samples; i += 8) _mm512_store_pd(y + i, f.sleef8(_mm512_load_pd(x + i)));
       },
       4},
      {"avx512", nothing, ours(f, avx512), 4},
      {"SLEEF, 16", nothing,
       [&] {
         for (int i = 0; i < samples; i += 16)
           _mm512_store_ps(y_single + i, f.sleef16(_mm512_load_ps(x_single + i)));
       },
       4},
      {"single", nothing, ours_single(f), 4},
  };
  const auto t = bench::compare(contenders, rounds, 2e-4);
  const auto ns = [&](std::size_t i) { return t[i].seconds / samples * 1e9; };
  std::printf("| %s | %.2f | %.2f | %.2f | %.2f | %.2f | %.2f | %.1f | %.2f | %.2f |\n", f.name, ns(0),
              t[1].ratio, ns(3), ns(2) / ns(3), ns(5), ns(4) / ns(5), t[5].ratio, ns(7), ns(6) / ns(7));
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc == 3 && std::string_view(argv[1]) == "--rounds" ? std::atoi(argv[2]) : 15;
  if (sigpak::isa::widest() != sigpak::isa::level::avx512) {
    std::puts("bench_math needs a processor with AVX-512");
    return 77;
  }
  std::puts(
      "| function | C library ns | baseline / C | avx2 ns | / SLEEF | avx512 ns | / SLEEF | / C | single ns "
      "| / SLEEF |");
  std::puts("|---|---|---|---|---|---|---|---|---|---|");
  for (const function& f : functions) print_row(f, rounds);
}
