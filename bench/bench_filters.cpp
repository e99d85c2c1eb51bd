// FIR filtering against FFTW's overlap-save at its best block, and against the plain sum, as one table of
// ratios.
#include <fftw3.h>

#include <bit>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "rounds.h"
#include "sigpak.h"

namespace {

using real_vector = std::vector<double>;

real_vector noise(std::size_t n) {
  std::mt19937_64 engine(n);
  std::uniform_real_distribution<double> uniform(-1, 1);
  real_vector x(n);
  for (double& value : x) value = uniform(engine);
  return x;
}

dsp_vec lent(real_vector& x, bool complex) {
  dsp_vec v;
  dsp_init(&v);
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

// The loop that a program writes by hand, vectorised by the compiler as it can.
void plain_sum(const real_vector& taps, const real_vector& x, real_vector& y) {
  for (std::size_t n = 0; n < x.size(); ++n) {
    double sum = 0;
    for (std::size_t k = 0; k < taps.size() && k <= n; ++k) sum += taps[k] * x[n - k];
    y[n] = sum;
  }
}

void print_row(std::size_t count, std::size_t points) {
  real_vector taps = noise(count);
  real_vector x = noise(points);
  real_vector z = noise(2 * points);
  real_vector y(points);
  const dsp_vec h = lent(taps, false);
  const dsp_vec in = lent(x, false);
  const dsp_vec pairs = lent(z, true);
  dsp_vec out;
  dsp_init(&out);
  const auto idle = [] {};

  std::vector<bench::contender> contenders;
  contenders.push_back({"sigpak", idle, [&] { dspd_fir(&in, &out, &h, nullptr); }});
  contenders.push_back({"complex", idle, [&] { dspd_fir(&pairs, &out, &h, nullptr); }});
  if (count * points <= 300'000'000) contenders.push_back({"plain", idle, [&] { plain_sum(taps, x, y); }});
  std::vector<std::unique_ptr<overlap_save>> sections;
  for (std::size_t transform = std::bit_ceil(4 * count); transform <= std::bit_ceil(32 * count);
       transform *= 2) {
    sections.push_back(std::make_unique<overlap_save>(taps, std::max<std::size_t>(transform, 256)));
    contenders.push_back({"FFTW", idle, [&x, &y, s = sections.back().get()] { s->run(x, y); }});
  }
  const auto times =
      bench::compare(contenders, points > 1'000'000 ? 5 : 15, points > 1'000'000 ? 0.0 : 0.002);

  double best_fftw = std::numeric_limits<double>::infinity();
  double plain = 0;
  for (std::size_t i = 0; i < contenders.size(); ++i) {
    if (contenders[i].name == "FFTW") best_fftw = std::min(best_fftw, 1 / times[i].ratio);
    if (contenders[i].name == "plain") plain = 1 / times[i].ratio;
  }
  std::printf("| %zu | %zu | %.2f | %.2f | %.2f | ", count, points,
              static_cast<double>(points) / times[0].seconds * 1e-6,
              static_cast<double>(points) / times[1].seconds * 1e-6, best_fftw);
  if (plain > 0) {
    std::printf("%.1f |\n", plain);
  } else {
    std::printf("- |\n");
  }
  std::fflush(stdout);
  dsp_destroy(&out);
}

}  // namespace

int main() {
  std::printf("FIR, double precision: million outputs a second, and speed relative to two other ways.\n\n");
  std::printf("| taps | points | real, M/s | complex, M/s | to FFTW overlap-save | to the plain sum |\n");
  std::printf("|---|---|---|---|---|---|\n");
  for (const std::size_t taps : {16, 45, 46, 256, 1024}) {
    for (const std::size_t points : {1'000, 10'000, 100'000, 1'000'000, 10'000'000}) {
      if (points >= taps) print_row(taps, points);
    }
  }
}
