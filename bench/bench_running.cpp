// SPDX-License-Identifier: MIT
// Running spectra beside a loop on FFTW, whose plan is measured: half-overlapped Hann segments, squared and
// averaged.
#include <fftw3.h>

#include <cstdio>
#include <memory>
#include <random>

#include "options.h"
#include "rounds.h"
#include "sigpak.h"
#include "table.h"

namespace {

using numbers = std::vector<double>;

numbers noise(std::size_t n, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> uniform(-1, 1);
  numbers out(n);
  for (double& x : out) x = uniform(engine);
  return out;
}

dsp_vec lent(numbers& of) { return {1, of.data(), 0, static_cast<std::uint32_t>(of.size()), 0, 0}; }

// What a program writes around the peer's transform.
class welch_loop {
 public:
  welch_loop(const numbers& window, std::size_t hop)
      : window_(window),
        hop_(hop),
        power_(window.size() / 2 + 1),
        x_(fftw_alloc_real(window.size())),
        z_(fftw_alloc_complex(power_.size())),
        plan_(fftw_plan_dft_r2c_1d(static_cast<int>(window.size()), x_, z_, FFTW_MEASURE)) {}
  ~welch_loop() {
    fftw_destroy_plan(plan_);
    fftw_free(x_);
    fftw_free(z_);
  }
  welch_loop(const welch_loop&) = delete;
  welch_loop& operator=(const welch_loop&) = delete;

  void operator()(const numbers& signal) {
    std::fill(power_.begin(), power_.end(), 0.0);
    const std::size_t n = window_.size();
    for (std::size_t at = 0; at + n <= signal.size(); at += hop_) {
      for (std::size_t i = 0; i < n; ++i) x_[i] = signal[at + i] * window_[i];
      fftw_execute(plan_);
      for (std::size_t k = 0; k < power_.size(); ++k) power_[k] += z_[k][0] * z_[k][0] + z_[k][1] * z_[k][1];
    }
  }

 private:
  numbers window_;
  std::size_t hop_;
  numbers power_;
  double* x_;
  fftw_complex* z_;
  fftw_plan plan_;
};

void print_row(std::size_t n, std::size_t points) {
  numbers x = noise(points, 1);
  numbers y = noise(points, 2);
  numbers w(n, 1);
  const dsp_vec a = lent(x);
  const dsp_vec b = lent(y);
  dsp_vec window = lent(w);
  dspi_window(&window, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE);
  dsp_vec avg{};
  dsp_vec cross{};
  dsp_vec history{};
  welch_loop loop(w, n / 2);
  const std::vector<bench::contender> all = {
      {"power", [] {},
       [&] {
         history.points = 0;
         int32_t count = 0;
         dsph_fft(&a, nullptr, &avg, &history, &window, 33, 0, &count, 0);
       }},
      {"centred", [] {},
       [&] {
         history.points = 0;
         int32_t count = 0;
         dsph_fft(&a, nullptr, &avg, &history, &window, 33 | DSP_SPECTRUM_CENTRE, 0, &count, 0);
       }},
      {"cross", [] {}, [&] { dsph_fft(&a, &b, &cross, nullptr, &window, 1, 0, nullptr, 0); }},
      {"FFTW", [] {}, [&] { loop(x); }}};
  const auto times = bench::compare(all, 9, 0.02);
  std::printf("| %zu |", n);
  for (const auto& t : times) std::printf(" %.2f |", t.seconds / static_cast<double>(points) * 1e9);
  std::printf(" %.2f |\n", 1 / times.back().ratio);
  std::fflush(stdout);
  dsp_destroy(&avg);
  dsp_destroy(&cross);
  dsp_destroy(&history);
}

}  // namespace

int main(int argc, char** argv) {
  const bench::options o(argc, argv, {"--level"});
  std::printf("level %s\n", o.level());
  bench::print_head({"segment", "power, ns per sample", "centred, ns", "two channels, ns", "FFTW loop, ns",
                     "power to FFTW"});
  for (const std::size_t n : {1024, 8192, 65536}) print_row(n, 1 << 20);
}
