// SPDX-License-Identifier: MIT
// The averaged spectrum of a signal: its powers, and all that gives them a meaning.
#pragma once

#include <cstddef>
#include <string>

#include "input/source.h"
#include "record.h"

namespace tool {

// Points of the transform for one of the segment, as DSP_SPECTRUM_PAD4 has them. Between such close points a
// parabola through the logarithms meets the peak of every window's main lobe.
constexpr std::size_t padding = 4;

constexpr std::size_t longest_segment = std::size_t{1} << 22;

enum class averaging { mean, exponential, maximum, minimum };

const char* averaging_name(averaging a);
averaging averaging_named(const std::string& name);  // a data_error for another name

// Mean squares on a grid of frequencies: a sine of amplitude A shows as A^2 / 2 where it lies, white noise of
// the density D as D times enbw(). Real signals show every frequency once; their outer bins, at 0 and at half
// the rate, stand for one frequency where the others stand for two.
struct spectrum {
  std::string name;           // of the file
  std::string channel;        // name of the channel, or its number
  bool among_others = false;  // whether others of the same file are told too
  std::string kind;
  std::string understood;
  std::string unit;       // of the samples
  std::string time_unit;  // frequencies are in Hz for "s", in 1/yr for "yr", in 1/sample when empty
  bool two_sided = false;
  bool full_scale = false;  // 1 is the largest sample there can be
  bool truncated = false;
  std::uint64_t gaps = 0;
  double rate = 1;  // samples per time_unit

  record power;
  std::int64_t start = 0;  // the first point is at start * step(), the next at (start + 1) * step() ...
  int window = DSP_WINDOW_HANN;
  std::size_t segment = 0;  // samples under a window
  std::size_t overlap = 0;  // samples that it shares with the next
  averaging average = averaging::mean;
  std::uint64_t segments = 0;
  double degrees = 2;  // of freedom that the powers of noise have
  std::uint64_t samples = 0;
  std::uint64_t unused = 0;  // samples at the ends that filled no segment
  double mean = 0;           // of the samples; taken out of a real signal under every window
  double rms = 0;

  double step() const { return rate / static_cast<double>(padding * segment); }
  double frequency(double point) const {
    return (static_cast<double>(start) + point) * rate / static_cast<double>(padding * segment);
  }
  double first() const { return frequency(0); }
  double last() const { return frequency(static_cast<double>(power.points) - 1); }
  double resolution() const { return rate / static_cast<double>(segment); }
  double enbw() const;  // equivalent noise bandwidth of the window, in units of frequency
  std::string window_name() const;

  // Points of the whole spectrum, and the place of the first one here among them.
  std::size_t whole() const { return two_sided ? padding * segment : padding * segment / 2 + 1; }
  std::size_t offset() const { return static_cast<std::size_t>(start) + (two_sided ? whole() / 2 : 0); }
};

// The mean square of what lies in a band, windows and averages taken off. Bands that adjoin add up: a point
// stands for half a step on either side, and what a band cuts off counts in parts.
double power_in(const spectrum& s, double from, double to);

// The part of the spectrum in a band, both ends included; a data_error when nothing lies there.
void crop(spectrum& s, double from, double to);

// The points of a window of the mean 1.
record window_points(std::size_t length, int window);

// What a unit line leaves at a distance of so many points or more, at most: powers, one for each distance.
record leakage_of(std::size_t segment, int window);

}  // namespace tool
