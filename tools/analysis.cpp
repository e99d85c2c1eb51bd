// Welch's method: windowed, half-overlapped segments, their powers averaged (P. D. Welch, IEEE Trans. Audio
// Electroacoust. 15, 1967).
#include "analysis.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace tool {
namespace {

constexpr std::size_t fewest_samples = 8;

// Points of the transform for one of the segment. Between such close points a parabola through the logarithms
// meets the peak of every window's main lobe.
constexpr std::size_t padding = 4;

void apply_window(record& v, int window) {
  if (dspi_window(&v, window, DSP_WINDOW_FLAG_NO_ROTATE) != 0) {
    throw data_error("the window cannot be made for " + std::to_string(v.points) + " points");
  }
}

// From a windowed segment to the powers of the amplitudes of its lines: the transform has the factor
// 1 / (its length), and a real line has half its amplitude at the positive frequency.
void to_power(record& v, bool two_sided) {
  const std::size_t length = v.points;
  const std::size_t padded = padding * std::bit_ceil(length);
  require(dspi_zpad(&v, static_cast<std::int32_t>(padded)));
  if (two_sided) {
    require(dspi_fft(&v, 0));
    require(dspi_swap_halves(&v));
  } else {
    require(dspi_rfft(&v));
  }
  const double sides = two_sided ? 1 : 2;
  require(dspi_scale(&v, sides * static_cast<double>(padded) / static_cast<double>(length)));
  require(dspi_magsq(&v));
}

double mean_of(const record& v) {
  record mean;
  require(dsps_mean(&v, &mean));
  return mean.data[0];
}

record window_alone(std::size_t length, int window) {
  record v(length);
  std::ranges::fill(v.scalars(), 1.0);
  apply_window(v, window);
  return v;
}

// Segments of one length, one after the other, to their powers.
class segment_transform {
 public:
  segment_transform(std::size_t length, int window)
      : window_(window), window_mean_(mean_of(window_alone(length, window))) {}

  // The mean under the window goes out before the transform: that leaves nothing at frequency zero, and next
  // to nothing of a line far from it.
  void operator()(const record& segment) {
    require(dsp_copy(&power_, &segment));
    apply_window(power_, window_);
    if (!segment.is_complex()) {
      mean_ = mean_of(power_) / window_mean_;
      require(dsp_copy(&power_, &segment));
      for (double& x : power_.scalars()) x -= mean_;
      apply_window(power_, window_);
    }
    to_power(power_, segment.is_complex());
  }
  const record& power() const { return power_; }
  double mean() const { return mean_; }

 private:
  int window_;
  double window_mean_;
  record power_;
  double mean_ = 0;
};

// The running mean of a list of numbers or records.
class averager {
 public:
  void add(const record& power, double mean) {
    const double weight = 1 / static_cast<double>(++count_);
    if (count_ == 1) {
      require(dsp_copy(&power_, &power));
    } else {
      require(dspb_avg_add(&power, &power_, &power_, weight));
    }
    mean_ += weight * (mean - mean_);
  }
  std::size_t count() const { return count_; }
  double mean() const { return mean_; }
  record take_power() { return std::move(power_); }

 private:
  std::size_t count_ = 0;
  record power_;
  double mean_ = 0;
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
  to_power(v, false);
  const auto power = v.scalars();
  const double peak = power[0];
  double beyond = 0;
  for (std::size_t i = power.size(); i-- > 0;) {
    beyond = std::max(beyond, power[i] / peak);
    power[i] = beyond;
  }
  return v;
}

}  // namespace

double decibels(double amplitude) { return 20 * std::log10(std::max(amplitude, 1e-154)); }

spectrum analyse(source& in, const analysis_options& options, const std::function<void(double)>& progress) {
  const std::size_t width = in.is_complex() ? 2 : 1;
  record segment(options.segment, in.is_complex());
  const auto all = segment.scalars();
  spectrum s;
  s.samples = read_checked(in, all, 0) / width;
  s.segment = s.samples;
  if (s.segment < fewest_samples) {
    throw data_error("only " + std::to_string(s.segment) + (s.segment == 1 ? " sample" : " samples") +
                     "; a spectrum needs " + std::to_string(fewest_samples));
  }
  segment.points = static_cast<std::uint32_t>(s.segment);

  segment_transform transform(s.segment, options.window);
  averager average;
  const std::size_t hop = (options.segment + 1) / 2;
  for (bool complete = true; complete;) {
    transform(segment);
    average.add(transform.power(), transform.mean());
    progress(in.progress());
    if (s.segment < options.segment) break;
    std::copy(all.begin() + static_cast<std::ptrdiff_t>(hop * width), all.end(), all.begin());
    const std::size_t count = read_checked(in, all.last(hop * width), s.samples) / width;
    s.samples += count;
    complete = count == hop;
  }

  s.segments = average.count();
  s.mean = average.mean();
  s.two_sided = in.is_complex();
  s.full_scale = in.is_full_scale();
  s.has_rate = in.rate() > 0;
  s.rate = s.has_rate ? in.rate() : 1;
  s.step = s.rate / static_cast<double>(padding * std::bit_ceil(s.segment));
  s.first = s.two_sided ? -s.rate / 2 : 0;
  s.power = average.take_power();
  s.leakage = leakage_of(s.segment, options.window);
  return s;
}

}  // namespace tool
