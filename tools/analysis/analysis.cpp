// SPDX-License-Identifier: MIT
// Welch's method: windowed, overlapping segments, their powers averaged (P. D. Welch, IEEE Trans. Audio
// Electroacoust. 15, 1967).
#include "analysis/analysis.h"

#include <algorithm>
#include <cmath>

#include "analysis/blocks.h"
#include "analysis/noise.h"

namespace tool {
namespace {

constexpr std::size_t fewest_samples = 8;

int mode_of(averaging a) {
  if (a == averaging::maximum) return DSP_AVG_MAXIMUM;
  if (a == averaging::minimum) return DSP_AVG_MINIMUM;
  return DSP_AVG_MEAN | (a == averaging::exponential ? DSP_SPECTRUM_EXPONENTIAL : 0);
}

// The running spectrum of a channel that comes in blocks, and what its samples sum up to.
class averager {
 public:
  averager(const record& window, std::size_t hop, bool pairs, const analysis_options& options)
      : window_(window), hop_(hop), options_(options) {
    flags_ = mode_of(options.average) | DSP_SPECTRUM_SQUARE | DSP_SPECTRUM_PAD4;
    if (!pairs) flags_ |= DSP_SPECTRUM_CENTRE;
  }

  // Nothing straddles what lies between two pieces.
  void begin_piece() {
    history_.points = 0;
    piece_start_ = samples_;
    piece_count_ = count_;
  }

  void add(const record& block) {
    record sum;
    require(dsps_sum(&block, &sum));
    sum_ += sum.data[0];
    require(dsps_magsq_sum(&block, &sum));
    squares_ += sum.data[0];
    samples_ += block.points;
    if (dsph_dft(&block, nullptr, &power_, &history_, &window_, flags_, static_cast<std::int32_t>(hop_),
                 &count_, static_cast<double>(options_.settled)) != 0)
      throw resource_error("not enough memory for segments of " + std::to_string(window_.points) +
                           " samples");
  }

  void end_piece() {
    const std::uint64_t segments = static_cast<std::uint64_t>(count_ - piece_count_);
    const std::uint64_t covered = segments == 0 ? 0 : (segments - 1) * hop_ + window_.points;
    unused_ += samples_ - piece_start_ - covered;
  }

  void finish(spectrum& s) {
    if (count_ == 0)
      throw data_error("no piece between the gaps is as long as a segment; a shorter one is --segment N");
    s.segments = static_cast<std::uint64_t>(count_);
    s.samples = samples_;
    s.unused = unused_;
    const auto n = static_cast<double>(samples_);
    s.mean = sum_ / n;
    s.rms = std::sqrt(squares_ / n);
    std::uint64_t averaged = s.segments;
    if (s.average == averaging::exponential)  // the sum of the squared weights settles at 1 / (2 n - 1)
      averaged = std::min<std::uint64_t>(averaged, 2 * options_.settled - 1);
    s.degrees = degrees_of_freedom(window_.scalars(), hop_, averaged);
    take_power(s);
  }

 private:
  // The library's spectra are of lines under a window of the mean 1; flat tops lie around 1 with that of
  // another mean.
  void take_power(spectrum& s) {
    record level;
    require(dsps_mean(&window_, &level));
    require(dspi_scale(&power_, level.data[0] * level.data[0]));
    if (s.two_sided) require(dspi_swap_halves(&power_));
    s.power = std::move(power_);
  }

  const record& window_;
  std::size_t hop_;
  const analysis_options& options_;
  int flags_ = 0;
  record power_;
  record history_;
  std::int32_t count_ = 0;
  std::int32_t piece_count_ = 0;
  std::uint64_t samples_ = 0;
  std::uint64_t piece_start_ = 0;
  std::uint64_t unused_ = 0;
  double sum_ = 0;
  double squares_ = 0;
};

void describe(spectrum& s, const subject& about, std::size_t channel, const analysis_options& options) {
  s.name = about.name;
  s.kind = about.kind;
  s.understood = about.understood;
  s.channel = about.channels[channel].name;
  if (s.channel.empty()) s.channel = std::to_string(channel + 1);
  s.among_others = about.channels.size() > 1;
  s.unit = options.unit.value_or(about.channels[channel].unit);
  s.full_scale = about.is_full_scale && !options.unit && options.gain == 1;
  s.two_sided = about.is_complex;
  s.truncated = about.truncated;
  s.gaps = about.gaps;
  s.time_unit = about.rate > 0 ? about.time_unit : "";
  s.rate = about.rate > 0 ? about.rate : 1;
  s.start = s.two_sided ? -static_cast<std::int64_t>(s.whole() / 2) : 0;
}

// A signal, however many pieces it is cut into. A first piece that fills no segment is the whole signal,
// unless others follow.
class run {
 public:
  run(source& in, const analysis_options& options, const std::function<void()>& progress)
      : in_(in), options_(options), progress_(progress), blocks_(in, options.segment, options.gain) {
    count_ = blocks_.read();
    followed_ = count_ < options.segment && !options.each && in.next_piece();
    length_ = followed_ ? options.segment : count_;
    if (length_ < fewest_samples)
      throw data_error("only " + std::to_string(length_) + (length_ == 1 ? " sample" : " samples") +
                       "; a spectrum needs " + std::to_string(fewest_samples));
    window_ = window_points(length_, options.window);
    const auto wanted = static_cast<std::size_t>(options.overlap * static_cast<double>(length_));
    hop_ = length_ - std::min(wanted, length_ - 1);
    for (std::size_t c = 0; c < in.about().channels.size(); ++c)
      averages_.emplace_back(window_, hop_, in.about().is_complex, options);
  }

  std::vector<spectrum> spectra() {
    read_pieces();
    std::vector<spectrum> out(averages_.size());
    for (std::size_t c = 0; c < out.size(); ++c) {
      out[c].window = options_.window;
      out[c].segment = length_;
      out[c].overlap = length_ - hop_;
      out[c].average = options_.average;
      describe(out[c], in_.about(), c, options_);
      averages_[c].finish(out[c]);
    }
    return out;
  }

 private:
  void read_pieces() {
    read_piece();
    while (!options_.each && (followed_ || in_.next_piece())) {
      followed_ = false;
      count_ = blocks_.read();
      read_piece();
    }
  }

  void read_piece() {
    for (auto& average : averages_) average.begin_piece();
    while (count_ > 0) {
      for (std::size_t c = 0; c < averages_.size(); ++c) averages_[c].add(blocks_.channel(c));
      progress_();
      count_ = count_ < options_.segment ? 0 : blocks_.read();
    }
    for (auto& average : averages_) average.end_piece();
  }

  source& in_;
  const analysis_options& options_;
  const std::function<void()>& progress_;
  block_reader blocks_;
  std::size_t count_ = 0;
  bool followed_ = false;
  std::size_t length_ = 0;
  std::size_t hop_ = 0;
  record window_;
  std::vector<averager> averages_;
};

}  // namespace

std::vector<spectrum> analyse(source& in, const analysis_options& options,
                              const std::function<void()>& progress) {
  return run(in, options, progress).spectra();
}

}  // namespace tool
