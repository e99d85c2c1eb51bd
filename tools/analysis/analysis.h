// The averaged spectrum of a signal, and its strongest lines.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "input/source.h"
#include "record.h"

namespace tool {

struct analysis_options {
  int window = DSP_WINDOW_HANN;
  std::size_t segment = 8192;  // points that are transformed at a time; a shorter signal is taken as a whole
};

// Powers of the amplitudes on a grid of frequencies: a sine of amplitude A shows as A^2 where it lies.
struct spectrum {
  record power;
  double first = 0;  // frequency of the first point, in cycles per second, or per sample without a rate
  double step = 0;   // between points
  bool two_sided = false;
  bool has_rate = false;
  bool full_scale = false;
  double rate = 1;
  double mean = 0;           // taken out of a real signal before the transform
  std::size_t samples = 0;   // of the signal
  std::size_t segments = 0;  // averaged, each overlapping its neighbours by half
  std::size_t segment = 0;   // their length
  record leakage;  // greatest power of a unit line that its window leaves so many points away and beyond

  double frequency(double point) const { return first + point * step; }
  double resolution() const { return rate / static_cast<double>(segment); }
};

struct line {
  double frequency;
  double amplitude;
};

double decibels(double amplitude);

// Reads the source to its end. `progress` is called now and then with a fraction of 1.
spectrum analyse(source& in, const analysis_options& options, const std::function<void(double)>& progress);

// At most `count` lines, the strongest first: maxima that do not come from the leakage of a stronger one.
std::vector<line> strongest_lines(const spectrum& s, std::size_t count);

}  // namespace tool
