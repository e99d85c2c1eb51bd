// SPDX-License-Identifier: MIT
// Filters with linear phase over a signal in blocks, with a lower rate behind them where it is wanted.
#pragma once

#include <cstddef>
#include <optional>

#include "record.h"

namespace tool {

struct filter_design {
  int kind = DSP_FIR_LOW_PASS;
  double low = 0;  // edges in cycles per sample; the only one is `low`
  double high = 0;
  std::size_t taps = 0;       // odd; 0 where the transition tells
  double transition = 0;      // width of an edge; 0 where half the narrowest band does
  double attenuation = 80;    // of the stop band in dB, by a Kaiser window
  std::optional<int> window;  // in its place
};

constexpr std::size_t most_taps = 1'000'001;

// The length that edges of the wanted width need.
std::size_t length_of(const filter_design& design);

// How wide that many taps leave an edge: where a band is narrower its middle is not passed whole.
double transition_of(const filter_design& design, std::size_t taps);
double narrowest_band(const filter_design& design);

// The taps, with the gain 1 in the middle of the band that is passed, where it touches 0 or half the rate
// there; a usage_error where there are none.
record taps_of(const filter_design& design);

// What suits a rate that falls to a part: nothing aliases below 0.9 of half the new one.
record decimation_taps(std::size_t factor);

// The signal comes out where it went in: the delay of the filter is taken off, and what its end leaves is
// added.
class filter {
 public:
  filter(const record& taps, std::size_t factor)
      : taps_(taps), factor_(factor), late_((taps.points - 1) / 2) {}

  // What can be told so far; until the next call.
  const record& process(const record& block);

  // With the last block, which may be short or empty.
  const record& finish(const record& last);

 private:
  const record& taps_;
  std::size_t factor_;
  std::size_t late_;  // outputs that are still to be dropped, without a change of the rate
  record state_;
  record out_;
};

}  // namespace tool
