// SPDX-License-Identifier: MIT
// Filters with linear phase over a signal in blocks.
#include "analysis/filter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "errors.h"

namespace tool {
namespace {

// Without a width being asked for the length stays below this: a signal is filtered in blocks of that order.
constexpr std::size_t most_unasked = 65'537;

bool has_two_edges(const filter_design& d) {
  return d.kind == DSP_FIR_BAND_PASS || d.kind == DSP_FIR_BAND_STOP;
}

// Taps times the width of an edge in cycles per sample (J. F. Kaiser, Proc. IEEE ISCAS, 1974).
double taps_times_width(double attenuation) {
  return (std::max(attenuation, 21.0) - 7.95) / (2.285 * 2 * std::numbers::pi);
}

// Where the gain is to be 1.
double reference_of(const filter_design& d) {
  if (d.kind == DSP_FIR_HIGH_PASS) return 0.5;
  return d.kind == DSP_FIR_BAND_PASS ? (d.low + d.high) / 2 : 0;
}

double gain_at(const record& taps, double frequency) {
  const auto h = taps.scalars();
  const double middle = static_cast<double>(h.size() - 1) / 2;
  double sum = 0;
  for (std::size_t i = 0; i < h.size(); ++i)
    sum += h[i] * std::cos(2 * std::numbers::pi * frequency * (static_cast<double>(i) - middle));
  return sum;
}

// The taps before their window.
record plain_taps(const filter_design& d) {
  record v(length_of(d));
  const double first = has_two_edges(d) ? (d.low + d.high) / 2 : d.low;
  if (dspc_fir(&v, d.kind, first, has_two_edges(d) ? d.high - d.low : 0) != 0)
    throw usage_error("there is no such filter");
  return v;
}

void apply_window(record& v, const filter_design& d) {
  if (d.window) {
    require(dspi_window(&v, *d.window, DSP_WINDOW_FLAG_PEAK | DSP_WINDOW_FLAG_NO_ROTATE));
  } else {
    require(dspi_window_fir(&v, d.attenuation, 0));
  }
}

}  // namespace

double narrowest_band(const filter_design& d) {
  const double outer = std::min(d.low, 0.5 - std::max(d.low, d.high));
  return has_two_edges(d) ? std::min(outer, d.high - d.low) : outer;
}

double transition_of(const filter_design& d, std::size_t taps) {
  return taps_times_width(d.attenuation) / static_cast<double>(taps - 1);
}

std::size_t length_of(const filter_design& d) {
  if (d.taps > 0) return d.taps;
  const double width = d.transition > 0 ? d.transition : narrowest_band(d) / 2;
  const auto most = static_cast<double>(d.transition > 0 ? most_taps : most_unasked);
  const double half = std::ceil(std::min(taps_times_width(d.attenuation) / width, most - 1) / 2);
  return 2 * static_cast<std::size_t>(std::max(half, 1.0)) + 1;
}

record taps_of(const filter_design& d) {
  record v = plain_taps(d);
  apply_window(v, d);
  require(dspi_scale(&v, 1 / gain_at(v, reference_of(d))));
  return v;
}

record decimation_taps(std::size_t factor) {
  constexpr double passband = 0.9;
  constexpr double attenuation = 100;
  record v;
  require(dspc_rsmp(&v, 1, static_cast<std::int32_t>(factor), passband, attenuation));
  return v;
}

// A lower rate computes only what is kept; with the rate as it is the library may go through the transform.
const record& filter::process(const record& block) {
  if (factor_ > 1) {
    require(dspd_rsmp(&block, &out_, &taps_, 1, static_cast<std::int32_t>(factor_), &state_));
    return out_;
  }
  require(dspd_fir(&block, &out_, &taps_, &state_));
  const auto dropped = std::min(late_, std::size_t{out_.points});
  late_ -= dropped;
  require(dspi_shift(&out_, static_cast<std::uint32_t>(dropped)));
  return out_;
}

const record& filter::finish(const record& last) {
  if (factor_ > 1) {
    process(last);
    record tail;
    if (state_.points > 0)
      require(dspd_rsmp(nullptr, &tail, &taps_, 1, static_cast<std::int32_t>(factor_), &state_));
    require(dsp_append(&out_, &tail));
    return out_;
  }
  // Zeros behind it, so many that the library may go through the transform.
  const std::size_t half = (taps_.points - 1) / 2;
  const std::size_t told = last.points + half - late_;
  record block(std::max<std::size_t>(last.points + half, taps_.points - 1), last.is_complex());
  require(dspi_zero(&block));
  std::ranges::copy(last.scalars(), block.data);
  process(block);
  out_.points = static_cast<std::uint32_t>(told);
  return out_;
}

}  // namespace tool
