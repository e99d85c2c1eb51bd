// SPDX-License-Identifier: MIT
// Changes of the sample rate, as one Markdown table: nanoseconds per output, the part of the machine's peak
// of multiply-adds that the products make up, and how many times as fast as libsamplerate and libsoxr in the
// same rounds.
//
// bench_resample [--level baseline|avx2|avx512] [--points N] [--only TEXT]
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#ifdef BENCH_SAMPLERATE
#include <samplerate.h>
#endif
#ifdef BENCH_SOXR
#include <soxr.h>
#endif

#include "buffer.h"
#include "native.h"
#include "options.h"
#include "rounds.h"
#include "sigpak.h"
#include "table.h"

namespace {

struct job {
  const char* name;
  int up;  // 0: at any times, by the step
  int down;
  double passband;
  double attenuation;
  int phases;
};

constexpr job jobs[] = {
    {"160/147, (0.93, 150 dB)", 160, 147, 0.93, 150, 0},
    {"160/147, (0.913, 126 dB)", 160, 147, 0.913, 126, 0},
    {"160/147, (0.913, 150 dB)", 160, 147, 0.913, 150, 0},
    {"160/147, (0.9, 120 dB)", 160, 147, 0.9, 120, 0},
    {"147/160, (0.913, 126 dB)", 147, 160, 0.913, 126, 0},
    {"x2, (0.913, 126 dB)", 2, 1, 0.913, 126, 0},
    {"1/4, (0.913, 126 dB)", 1, 4, 0.913, 126, 0},
    {"any times, (0.93, 150 dB)", 0, 0, 0.93, 150, 64},
    {"any times, (0.913, 120 dB)", 0, 0, 0.913, 120, 32},
};
constexpr double any_step = 0.918710293847561;

double ratio_of(const job& j) { return j.up > 0 ? static_cast<double>(j.up) / j.down : 1 / any_step; }

template <class V, class T> V lent(T* x, std::ptrdiff_t n) {
  V v{};
  v.delta = 1;
  v.data = x;
  v.points = static_cast<std::uint32_t>(n);
  return v;
}

using contenders = std::vector<bench::contender>;
void add(contenders& to, const char* name, std::function<void()> run) {
  to.push_back({name, [] {}, std::move(run)});
}

void add_samplerate([[maybe_unused]] contenders& to, [[maybe_unused]] const job& j,
                    [[maybe_unused]] const float* x, [[maybe_unused]] std::ptrdiff_t n,
                    [[maybe_unused]] std::vector<float>& y) {
#ifdef BENCH_SAMPLERATE
  add(to, "samplerate best", [&, x, n] {
    SRC_DATA d{};
    d.data_in = x;
    d.data_out = y.data();
    d.input_frames = n;
    d.output_frames = static_cast<long>(y.size());
    d.src_ratio = ratio_of(j);
    src_simple(&d, SRC_SINC_BEST_QUALITY, 1);
  });
#endif
}

#ifdef BENCH_SOXR
template <class T>
void add_soxr_recipe(contenders& to, const char* name, const job& j, unsigned long recipe,
                     unsigned long flags, const T* x, std::ptrdiff_t n, std::vector<T>& y) {
  const soxr_quality_spec_t quality = soxr_quality_spec(recipe, flags);
  const soxr_datatype_t type = sizeof(T) == 8 ? SOXR_FLOAT64_I : SOXR_FLOAT32_I;
  const soxr_io_spec_t io = soxr_io_spec(type, type);
  const double in_rate = j.up > 0 ? j.down : any_step;
  const double out_rate = j.up > 0 ? j.up : 1;
  add(to, name, [=, &y] {
    std::size_t done = 0;
    soxr_oneshot(in_rate, out_rate, 1, x, static_cast<std::size_t>(n), nullptr, y.data(), y.size(), &done,
                 &io, &quality, nullptr);
  });
}
#endif

template <class T>
void add_soxr([[maybe_unused]] contenders& to, [[maybe_unused]] const job& j, [[maybe_unused]] const T* x,
              [[maybe_unused]] std::ptrdiff_t n, [[maybe_unused]] std::vector<T>& y) {
#ifdef BENCH_SOXR
  const unsigned long clock = j.up > 0 ? 0 : SOXR_HI_PREC_CLOCK;
  if (sizeof(T) == 8) {
    add_soxr_recipe(to, "soxr HQ", j, SOXR_HQ, clock | SOXR_DOUBLE_PRECISION, x, n, y);
    add_soxr_recipe(to, "soxr VHQ", j, SOXR_VHQ, clock, x, n, y);
  } else {
    add_soxr_recipe(to, "soxr HQ single", j, SOXR_HQ, clock, x, n, y);
  }
#endif
}

void print_row(const job& j, std::ptrdiff_t n) {
  bench::buffer<double> x(n, 1);
  bench::buffer<float> x_single(n, 1);
  const auto outputs = static_cast<std::size_t>(std::ceil(static_cast<double>(n) * ratio_of(j)));
  std::vector<double> y(outputs + 64);
  std::vector<float> y_single(outputs + 64);
  const dsp_vec in = lent<dsp_vec>(x.data(), n);
  const dspf_vec in_single = lent<dspf_vec>(x_single.data(), n);
  dsp_vec taps{};
  dspf_vec taps_single{};
  dsp_vec out{};
  dspf_vec out_single{};
  dspc_rsmp(&taps, j.up > 0 ? j.up : j.phases, j.up > 0 ? j.down : 1, j.passband, j.attenuation);
  dspfc_rsmp(&taps_single, j.up > 0 ? j.up : j.phases, j.up > 0 ? j.down : 1, static_cast<float>(j.passband),
             static_cast<float>(j.attenuation));
  constexpr std::ptrdiff_t turns = 1 << 16;
  contenders all;
  if (j.up > 0) {
    add(all, "double", [&] { dspd_rsmp(&in, &out, &taps, j.up, j.down, nullptr); });
    add(all, "single", [&] { dspfd_rsmp(&in_single, &out_single, &taps_single, j.up, j.down, nullptr); });
  } else {
    add(all, "double", [&] { dspd_rsmp2(&in, &out, &taps, nullptr, any_step, nullptr); });
    add(all, "single",
        [&] { dspfd_rsmp2(&in_single, &out_single, &taps_single, nullptr, any_step, nullptr); });
  }
  add(all, "peak", [] { bench::multiply_add(turns); });
  add_samplerate(all, j, x_single.data(), n, y_single);
  add_soxr(all, j, x.data(), n, y);
  add_soxr(all, j, x_single.data(), n, y_single);
  const auto times = bench::compare(all, 7, 0.0);
  const auto seconds = [&](std::string_view name) {
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (all[i].name == name) return times[i].seconds;
    }
    return 0.0;
  };
  const double products = static_cast<double>(taps.points) / (j.up > 0 ? j.up : j.phases / 4.0);
  const double peak = bench::multiply_add(turns) / seconds("peak");
  const double count = static_cast<double>(outputs);
  std::printf("| %s | %.0f | %.2f | %.2f | %.2f |", j.name, products, seconds("double") / count * 1e9,
              seconds("single") / count * 1e9, products * count / seconds("double") / peak);
  for (const auto& [ours, theirs] : {std::pair{"single", "samplerate best"},
                                     {"double", "samplerate best"},
                                     {"double", "soxr HQ"},
                                     {"double", "soxr VHQ"},
                                     {"single", "soxr HQ single"}}) {
    seconds(theirs) > 0 ? std::printf(" %.2f |", seconds(theirs) / seconds(ours)) : std::printf(" - |");
  }
  std::printf("\n");
  std::fflush(stdout);
  dsp_destroy(&taps);
  dspf_destroy(&taps_single);
  dsp_destroy(&out);
  dspf_destroy(&out_single);
}

}  // namespace

int main(int argc, char** argv) {
  const bench::options o(argc, argv, {"--level", "--points", "--only"});
  std::printf("level %s\n", o.level());
  bench::print_head({"job", "products", "double, ns / output", "single, ns", "of peak",
                     "single to samplerate best", "double to samplerate best", "double to soxr HQ",
                     "double to soxr VHQ", "single to soxr HQ"});
  for (const job& j : jobs) {
    if (o.wants("--only", j.name)) print_row(j, o.number("--points", 200'000));
  }
}
