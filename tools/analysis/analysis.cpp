// Welch's method: windowed, half-overlapped segments, their powers averaged (P. D. Welch, IEEE Trans. Audio
// Electroacoust. 15, 1967).
#include "analysis/analysis.h"

#include <algorithm>
#include <cmath>

namespace tool {
namespace {

constexpr std::size_t fewest_samples = 8;

// Points of the transform for one of the segment, as DSP_SPECTRUM_PAD4 has them. Between such close points a
// parabola through the logarithms meets the peak of every window's main lobe.
constexpr std::size_t padding = 4;

void apply_window(record& v, int window) {
  if (dspi_window(&v, window, DSP_WINDOW_FLAG_NO_ROTATE) != 0) {
    throw data_error("the window cannot be made for " + std::to_string(v.points) + " points");
  }
}

record window_alone(std::size_t length, int window) {
  record v(length);
  std::ranges::fill(v.scalars(), 1.0);
  apply_window(v, window);
  return v;
}

double mean_of(const record& v) {
  record mean;
  require(dsps_mean(&v, &mean));
  return mean.data[0];
}

// From averaged powers, rms as they come and of lines that lie on a bin, to those of amplitudes as the window
// is normalised: flat tops lie around 1. A real line has half its amplitude at the positive frequency; the
// outer bins too are read as the flanks of lines beside them.
void to_amplitudes(record& power, const record& window, bool two_sided) {
  const double level = mean_of(window);
  require(dspi_scale(&power, (two_sided ? 1 : 2) * level * level));
  if (two_sided) return require(dspi_swap_halves(&power));
  power.scalars().front() *= 2;
  power.scalars().back() *= 2;
}

// The running spectrum of a signal that comes in blocks.
class averager {
 public:
  averager(std::size_t length, int window, bool two_sided)
      : window_(window_alone(length, window)), two_sided_(two_sided) {}

  // The mean under the window goes out before the transform: that leaves nothing at frequency zero, and next
  // to nothing of a line far from it.
  void add(const record& block) {
    const int centre = two_sided_ ? 0 : DSP_SPECTRUM_CENTRE;
    constexpr int powers = 1 | DSP_SPECTRUM_SQUARE | DSP_SPECTRUM_PAD4;
    require(dsph_dft(&block, nullptr, &power_, &history_, &window_, powers | centre, 0, &count_, 0));
    if (two_sided_) return;
    require(dsph_dft(&block, nullptr, &spectrum_, &samples_, &window_, 1, 0, &spectra_, 0));
  }
  // What was taken out is the first bin of the mean spectrum.
  double mean() const { return two_sided_ ? 0 : spectrum_.data[0]; }
  std::size_t count() const { return static_cast<std::size_t>(count_); }
  record take_power() {
    to_amplitudes(power_, window_, two_sided_);
    return std::move(power_);
  }

 private:
  record window_;
  bool two_sided_;
  record power_;
  record history_;
  std::int32_t count_ = 0;
  record spectrum_;
  record samples_;
  std::int32_t spectra_ = 0;
};

// The library's stand-in for infinity; sums of squares of what is below it stay in range.
constexpr double largest_sample = 1e100;

std::size_t read_checked(source& in, std::span<double> samples, std::size_t before) {
  const std::size_t count = in.read(samples);
  for (std::size_t i = 0; i < count; ++i) {
    if (std::abs(samples[i]) <= largest_sample) continue;
    throw data_error("sample " + std::to_string(before + i + 1) +
                     (std::isfinite(samples[i]) ? " is beyond 1e100" : " is not a finite number"));
  }
  return count;
}

// What a line leaves at a distance: the power of the window alone, each point the greatest from there on.
record leakage_of(std::size_t length, int window) {
  record v = window_alone(length, window);
  record power;
  constexpr int powers = DSP_SPECTRUM_SQUARE | DSP_SPECTRUM_PAD4;
  require(dsph_dft(&v, nullptr, &power, nullptr, nullptr, powers, 0, nullptr, 0));
  to_amplitudes(power, v, false);
  const auto p = power.scalars();
  const double peak = p[0];
  double beyond = 0;
  for (std::size_t i = p.size(); i-- > 0;) {
    beyond = std::max(beyond, p[i] / peak);
    p[i] = beyond;
  }
  return power;
}

}  // namespace

double decibels(double amplitude) { return 20 * std::log10(std::max(amplitude, 1e-154)); }

spectrum analyse(source& in, const analysis_options& options, const std::function<void(double)>& progress) {
  const std::size_t width = in.about().is_complex ? 2 : 1;
  record segment(options.segment, in.about().is_complex);
  const auto all = segment.scalars();
  spectrum s;
  s.samples = read_checked(in, all, 0) / width;
  s.segment = s.samples;
  if (s.segment < fewest_samples) {
    throw data_error("only " + std::to_string(s.segment) + (s.segment == 1 ? " sample" : " samples") +
                     "; a spectrum needs " + std::to_string(fewest_samples));
  }
  segment.points = static_cast<std::uint32_t>(s.segment);

  averager average(s.segment, options.window, in.about().is_complex);
  for (std::size_t count = s.segment; count > 0;) {
    average.add(segment);
    progress(in.progress());
    if (s.samples < options.segment) break;
    count = read_checked(in, all, s.samples) / width;
    segment.points = static_cast<std::uint32_t>(count);
    s.samples += count;
  }

  s.segments = average.count();
  s.mean = average.mean();
  s.two_sided = in.about().is_complex;
  s.full_scale = in.about().is_full_scale;
  s.has_rate = in.about().rate > 0;
  s.rate = s.has_rate ? in.about().rate : 1;
  s.step = s.rate / static_cast<double>(padding * s.segment);
  s.first = s.two_sided ? -s.rate / 2 : 0;
  s.power = average.take_power();
  s.leakage = leakage_of(s.segment, options.window);
  return s;
}

}  // namespace tool
