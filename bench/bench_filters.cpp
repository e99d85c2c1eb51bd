// SPDX-License-Identifier: MIT
// FIR filtering, as one Markdown table: speeds, the part of the machine's peak of multiply-adds that the taps
// make up, and ratios to FFTW's overlap-save at its best block, to liquid-dsp's best way and to the plain
// sum.
//
// bench_filters [--level baseline|avx2|avx512] [--taps N] [--points N]
// --points is the most points, --taps the only count of taps.
#include <fftw3.h>

#ifdef BENCH_LIQUID
#include <complex>  // before its header, which then speaks C++

#include <liquid/liquid.h>
#endif

#include <bit>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "native.h"
#include "options.h"
#include "rounds.h"
#include "sigpak.h"
#include "table.h"

namespace {

using real_vector = std::vector<double>;

real_vector noise(std::size_t n) {
  std::mt19937_64 engine(n);
  std::uniform_real_distribution<double> uniform(-1, 1);
  real_vector x(n);
  for (double& value : x) value = uniform(engine);
  return x;
}

template <class V, class T> V lent(std::vector<T>& x, bool complex) {
  V v{};
  v.delta = 1;
  v.data = x.data();
  v.points = static_cast<std::uint32_t>(x.size() / (complex ? 2 : 1));
  v.complex = complex ? 1 : 0;
  return v;
}

// Sections of one length through plans made with FFTW_MEASURE; the input is preceded by zeros.
class overlap_save {
 public:
  overlap_save(const real_vector& taps, std::size_t transform)
      : before_(taps.size() - 1),
        step_(transform - before_),
        section_(fftw_alloc_real(transform)),
        spectrum_(fftw_alloc_complex(transform / 2 + 1)),
        filter_(fftw_alloc_complex(transform / 2 + 1)),
        transform_(transform) {
    const int n = static_cast<int>(transform);
    forward_ = fftw_plan_dft_r2c_1d(n, section_, spectrum_, FFTW_MEASURE);
    backward_ = fftw_plan_dft_c2r_1d(n, spectrum_, section_, FFTW_MEASURE);
    std::fill_n(section_, transform, 0.0);
    for (std::size_t k = 0; k < taps.size(); ++k) section_[k] = taps[k] / static_cast<double>(transform);
    fftw_execute(forward_);
    std::memcpy(filter_, spectrum_, (transform / 2 + 1) * sizeof(fftw_complex));
  }
  ~overlap_save() {
    fftw_destroy_plan(forward_);
    fftw_destroy_plan(backward_);
    fftw_free(section_);
    fftw_free(spectrum_);
    fftw_free(filter_);
  }
  overlap_save(const overlap_save&) = delete;
  overlap_save& operator=(const overlap_save&) = delete;

  void run(const real_vector& x, real_vector& y) {
    for (std::size_t begin = 0; begin < x.size(); begin += step_) {
      const std::size_t fresh = std::min(step_, x.size() - begin);
      const std::size_t missing = before_ > begin ? before_ - begin : 0;
      std::fill_n(section_, missing, 0.0);
      std::copy(x.data() + begin - (before_ - missing), x.data() + begin + fresh, section_ + missing);
      std::fill(section_ + before_ + fresh, section_ + transform_, 0.0);
      fftw_execute(forward_);
      for (std::size_t k = 0; k <= transform_ / 2; ++k) {
        const double re = spectrum_[k][0] * filter_[k][0] - spectrum_[k][1] * filter_[k][1];
        spectrum_[k][1] = spectrum_[k][0] * filter_[k][1] + spectrum_[k][1] * filter_[k][0];
        spectrum_[k][0] = re;
      }
      fftw_execute(backward_);
      std::copy_n(section_ + before_, fresh, y.data() + begin);
    }
  }

 private:
  std::size_t before_;
  std::size_t step_;
  double* section_;
  fftw_complex* spectrum_;
  fftw_complex* filter_;
  std::size_t transform_;
  fftw_plan forward_;
  fftw_plan backward_;
};

using contenders = std::vector<bench::contender>;

void add(contenders& to, const char* name, std::function<void()> run) {
  to.push_back({name, [] {}, std::move(run)});
}

#ifdef BENCH_LIQUID

// The direct filter, and sections by its transform, which leaves out what does not fill the last one.
void add_liquid(contenders& to, std::vector<float>& taps, std::vector<float>& x, std::vector<float>& y) {
  const unsigned count = static_cast<unsigned>(taps.size());
  const std::shared_ptr<firfilt_rrrf_s> direct(firfilt_rrrf_create(taps.data(), count), firfilt_rrrf_destroy);
  add(to, "liquid", [=, &x, &y] {
    firfilt_rrrf_execute_block(direct.get(), x.data(), static_cast<unsigned>(x.size()), y.data());
  });
  for (unsigned section = 2 * std::bit_ceil(count);
       section <= 8 * std::bit_ceil(count) && section <= x.size(); section *= 2) {
    const std::shared_ptr<fftfilt_rrrf_s> fast(fftfilt_rrrf_create(taps.data(), count, section),
                                               fftfilt_rrrf_destroy);
    add(to, "liquid", [=, &x, &y] {
      for (std::size_t at = 0; at + section <= x.size(); at += section) {
        fftfilt_rrrf_execute(fast.get(), x.data() + at, y.data() + at);
      }
    });
  }
}

#else

void add_liquid(contenders&, std::vector<float>&, std::vector<float>&, std::vector<float>&) {}

#endif

void print_row(std::size_t count, std::size_t points) {
  real_vector taps = noise(count);
  real_vector x = noise(points);
  real_vector z = noise(2 * points);
  real_vector y(points);
  std::vector<float> taps_single(taps.begin(), taps.end());
  std::vector<float> x_single(x.begin(), x.end());
  std::vector<float> y_single(points);
  const dsp_vec h = lent<dsp_vec>(taps, false);
  const dsp_vec in = lent<dsp_vec>(x, false);
  const dsp_vec pairs = lent<dsp_vec>(z, true);
  const dspf_vec h_single = lent<dspf_vec>(taps_single, false);
  const dspf_vec in_single = lent<dspf_vec>(x_single, false);
  dsp_vec out{};
  dspf_vec out_single{};
  constexpr std::ptrdiff_t turns = 1 << 16;

  contenders all;
  add(all, "real", [&] { dspd_fir(&in, &out, &h, nullptr); });
  add(all, "complex", [&] { dspd_fir(&pairs, &out, &h, nullptr); });
  add(all, "single", [&] { dspfd_fir(&in_single, &out_single, &h_single, nullptr); });
  add(all, "peak", [] { bench::multiply_add(turns); });
  if (count * points <= 300'000'000) {
    add(all, "plain", [&] {
      bench::filter_loop(taps.data(), static_cast<std::ptrdiff_t>(count), x.data(), y.data(),
                         static_cast<std::ptrdiff_t>(points));
    });
  }
  add_liquid(all, taps_single, x_single, y_single);
  std::vector<std::unique_ptr<overlap_save>> sections;
  for (std::size_t transform = std::bit_ceil(4 * count); transform <= std::bit_ceil(32 * count);
       transform *= 2) {
    sections.push_back(std::make_unique<overlap_save>(taps, std::max<std::size_t>(transform, 256)));
    add(all, "FFTW", [&x, &y, s = sections.back().get()] { s->run(x, y); });
  }
  const auto times = bench::compare(all, points > 1'000'000 ? 5 : 15, points > 1'000'000 ? 0.0 : 0.002);
  // The fastest way of the name, or 0.
  const auto seconds = [&](std::string_view name) {
    double best = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (all[i].name == name && (best == 0 || times[i].seconds < best)) best = times[i].seconds;
    }
    return best;
  };
  const auto ratio = [](double theirs, double ours) {
    theirs > 0 ? std::printf(" %.2f |", theirs / ours) : std::printf(" - |");
  };
  const double outputs = static_cast<double>(points);
  const double peak = bench::multiply_add(turns) / seconds("peak");
  std::printf("| %zu | %zu | %.0f | %.2f | %.0f | %.0f |", count, points, outputs / seconds("real") * 1e-6,
              outputs * static_cast<double>(count) / seconds("real") / peak,
              outputs / seconds("complex") * 1e-6, outputs / seconds("single") * 1e-6);
  ratio(seconds("FFTW"), seconds("real"));
  ratio(seconds("liquid"), seconds("single"));
  ratio(seconds("plain"), seconds("real"));
  std::printf("\n");
  std::fflush(stdout);
  dsp_destroy(&out);
  dspf_destroy(&out_single);
}

}  // namespace

int main(int argc, char** argv) {
  constexpr std::size_t tap_counts[] = {16, 32, 63, 64, 71, 72, 96, 256, 1024};
  constexpr std::size_t lengths[] = {1'000, 10'000, 100'000, 1'000'000, 10'000'000};
  const bench::options o(argc, argv, {"--level", "--taps", "--points"});
  std::printf("level %s\n", o.level());
  bench::print_head({"taps", "points", "real, M outputs / s", "of peak", "complex, M / s", "single, M / s",
                     "real to FFTW overlap-save", "single to liquid", "real to the compiler's loop"});
  for (const std::size_t taps : tap_counts) {
    for (const std::size_t points : lengths) {
      if (points < taps ||
          (o.number("--taps", 0) != 0 && taps != static_cast<std::size_t>(o.number("--taps", 0)))) {
        continue;
      }
      if (points <= static_cast<std::size_t>(o.number("--points", 10'000'000))) print_row(taps, points);
    }
  }
}
