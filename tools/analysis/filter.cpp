// SPDX-License-Identifier: MIT
// Filters with linear phase over a signal in blocks.
#include "analysis/filter.h"

#include <algorithm>

#include "errors.h"

namespace tool {
namespace {

double sum_of(const record& v) {
  record sum;
  require(dsps_sum(&v, &sum));
  return sum.data[0];
}

// The taps of a low-pass, before its window.
record plain_taps(const filter_design& d) {
  record v(d.taps);
  const bool band = d.kind == DSP_FIR_BAND_PASS || d.kind == DSP_FIR_BAND_STOP;
  const double first = band ? (d.low + d.high) / 2 : d.low;
  if (dspc_fir(&v, d.kind, first, band ? d.high - d.low : 0) != 0)
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

record taps_of(const filter_design& d) {
  record v = plain_taps(d);
  apply_window(v, d);
  if (d.kind == DSP_FIR_LOW_PASS) require(dspi_scale(&v, 1 / sum_of(v)));
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

const record& filter::finish() {
  if (factor_ > 1) {
    out_.points = 0;
    if (state_.points > 0)
      require(dspd_rsmp(nullptr, &out_, &taps_, 1, static_cast<std::int32_t>(factor_), &state_));
    return out_;
  }
  record zeros((taps_.points - 1) / 2, state_.is_complex());
  require(dspi_zero(&zeros));
  return process(zeros);
}

}  // namespace tool
