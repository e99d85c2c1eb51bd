// Axes and numbers as they are shown.
#pragma once

#include <string>
#include <vector>

#include "analysis/analysis.h"

namespace tool {

struct unit {
  const char* name;
  double size;  // in the base unit
};

// The level of an amplitude of 1 is 0 of these.
const char* level_unit(const spectrum& s);

// A frequency with the digits that the spectrum resolves.
std::string frequency_text(const spectrum& s, double frequency);

std::string level_text(double amplitude);

// %.<digits>g
std::string number_text(double x, int digits);

// Round values from `low` to `high`, about `count` of them.
std::vector<double> ticks(double low, double high, int count);
std::string tick_text(double value, double step);

// The frequency axis: where a frequency lies, from 0 to 1, and its labels. A logarithmic one begins above
// zero.
class frequency_axis {
 public:
  frequency_axis(const spectrum& s, bool logarithmic);
  double part(double frequency) const;
  double frequency(double part) const;
  const char* unit_name() const { return unit_.name; }

  struct label {
    double part;
    std::string text;
  };
  std::vector<label> labels(int count) const;

 private:
  bool logarithmic_;
  double low_;
  double high_;
  unit unit_;
};

// What is drawn: the level of the strongest point in each of `columns`, and the range that shows them.
struct outline {
  std::vector<double> levels;
  double low;
  double high;
};
outline outline_of(const spectrum& s, const frequency_axis& axis, std::size_t columns);

}  // namespace tool
