// SPDX-License-Identifier: MIT
// Absolute speeds of the main operations, for watching one build against another: small calls, where the way
// to the loop counts, and large ones.
#include <cstdio>
#include <memory>
#include <random>

#include "options.h"
#include "rounds.h"
#include "sigpak.h"
#include "table.h"

namespace {

// A record of noise that is released with its scope.
class signal {
 public:
  signal(std::uint32_t points, bool complex) {
    dsp_init(&v_);
    v_.points = points;
    v_.complex = complex ? 1 : 0;
    if (dsp_alloc(&v_) != 0) std::abort();
    std::mt19937_64 engine(points);
    std::uniform_real_distribution<double> uniform(-1, 1);
    noise_.resize(std::size_t{points} * (complex ? 2 : 1));
    for (double& x : noise_) x = uniform(engine);
    restore();
  }
  ~signal() { dsp_destroy(&v_); }
  signal(const signal&) = delete;
  signal& operator=(const signal&) = delete;
  operator dsp_vec*() { return &v_; }
  void restore() { std::copy(noise_.begin(), noise_.end(), v_.data); }

 private:
  dsp_vec v_{};
  std::vector<double> noise_;
};

using owned = std::shared_ptr<signal>;
owned real(std::uint32_t points) { return std::make_shared<signal>(points, false); }
owned complex(std::uint32_t points) { return std::make_shared<signal>(points, true); }

struct row {
  std::string name;
  std::uint32_t points;
  std::function<void()> once;
  owned changed = nullptr;  // by a job that does not give back what it was given
};

std::vector<row> transforms() {
  std::vector<row> rows;
  for (const std::uint32_t n : {16U, 32U, 64U, 128U, 1U << 10, 1U << 16, 1U << 20}) {
    rows.push_back({"fft, there and back", n, [v = complex(n)] { dspi_fft(*v, 0), dspi_fft(*v, 1); }});
    rows.push_back({"rfft, there and back", n, [v = real(n)] { dspi_rfft(*v), dspi_irfft(*v); }});
  }
  for (const std::uint32_t n : {1000U, 10007U, 100'000U})
    rows.push_back({"dft, there and back", n, [v = complex(n)] { dspi_dft(*v, 0), dspi_dft(*v, 1); }});
  return rows;
}

std::vector<row> others() {
  std::vector<row> rows;
  for (const std::uint32_t n : {64U, 1U << 10, 1U << 16}) {
    const owned v = real(n);
    rows.push_back({"window", n, [v] { dspi_window(*v, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_PEAK); }, v});
    rows.push_back({"sine", n, [v] { dspi_sin(*v); }, v});
    rows.push_back({"variance", n, [v = real(n), out = real(1)] { dsps_samp_var(*v, *out); }});
    rows.push_back({"median", n, [v = real(n), out = real(1)] { dsps_median(*v, *out); }});
  }
  for (const std::uint32_t taps : {16U, 71U, 72U, 256U, 1024U}) {
    for (const std::uint32_t n : {64U, 10'000U, 1'000'000U}) {
      rows.push_back({"fir of " + std::to_string(taps) + " taps, with history", n,
                      [in = real(n), out = real(n), h = real(taps), past = real(taps - 1)] {
                        dspd_fir(*in, *out, *h, *past);
                      }});
    }
  }
  return rows;
}

}  // namespace

int main(int argc, char** argv) {
  const bench::options o(argc, argv, {"--level", "--name"});
  std::printf("level %s\n", o.level());
  bench::print_head({"operation", "points", "ns a call", "M points / s"});
  for (const auto& rows : {transforms(), others()}) {
    for (const row& r : rows) {
      if (!o.wants("--name", r.name)) continue;
      const auto refill = [&r] {
        if (r.changed) r.changed->restore();
      };
      const double seconds = bench::compare({{r.name, refill, r.once, 16}}, 5, 0.01)[0].seconds;
      std::printf("| %s | %u | %.1f | %.1f |\n", r.name.c_str(), r.points, seconds * 1e9,
                  r.points / seconds * 1e-6);
    }
  }
}
