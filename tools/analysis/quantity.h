// SPDX-License-Identifier: MIT
// What the numbers of a spectrum are told in: quantities, their units, levels and the reference of these.
#pragma once

#include <string>

#include "analysis/spectrum.h"

namespace tool {

enum class quantity {
  peak,   // amplitude of a sine
  rms,    // its root mean square
  power,  // its mean square
  asd,    // root of the density
  psd     // mean square per unit of frequency
};

const char* quantity_name(quantity q);
quantity quantity_named(const std::string& name);  // a data_error for another name

// Turns mean squares into a quantity, as a value in its unit or as a level in dB.
class measure {
 public:
  measure(quantity q, bool as_level, const spectrum& s);

  double value(double power) const;  // in the unit
  double level(double power) const;  // in dB
  double shown(double power) const { return as_level_ ? level(power) : value(power); }
  double power(double shown) const;  // the inverse of `shown`

  const std::string& unit() const { return unit_; }              // "V rms", "V/sqrt(Hz)"
  const std::string& level_unit() const { return level_unit_; }  // "dBV", "dB re 1 V^2/Hz", "dBFS"
  const std::string& shown_unit() const { return as_level_ ? level_unit_ : unit_; }
  bool as_level() const { return as_level_; }
  quantity what() const { return what_; }

  // The density that tells the noise beside this quantity.
  measure density() const;

 private:
  bool is_density() const { return what_ == quantity::asd || what_ == quantity::psd; }
  bool is_root() const { return what_ != quantity::power && what_ != quantity::psd; }
  double reference() const;  // the power of the level 0
  void name_units();

  quantity what_;
  bool as_level_;
  double bandwidth_;    // what a density is divided by
  double peak_factor_;  // A^2 over the mean square of a line of amplitude A: 2, for complex samples 1
  bool full_scale_;
  std::string sample_unit_;
  std::string time_unit_;
  std::string unit_;
  std::string level_unit_;
};

// Hz, 1/yr, 1/sample
std::string frequency_unit(const spectrum& s);

}  // namespace tool
