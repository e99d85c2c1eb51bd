// SPDX-License-Identifier: MIT
// What the numbers of a spectrum are told in: quantities, their units, levels and the reference of these.
#include "analysis/quantity.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tool {
namespace {

constexpr const char* names[] = {"peak", "rms", "power", "asd", "psd"};

// The floor of logarithms: the level of no power at all.
constexpr double least_power = 1e-308;

// m/s^2 becomes (m/s^2)^2.
std::string squared(const std::string& unit) {
  if (unit.empty()) return {};
  return unit.find_first_of("/^ *") == std::string::npos ? unit + "^2" : '(' + unit + ")^2";
}

// A mean square per Hz is V^2/Hz; per 1/yr, V^2 yr.
std::string per_frequency(const std::string& base, const std::string& time_unit, bool root) {
  const auto rooted = [root](const std::string& unit) { return root ? "sqrt(" + unit + ')' : unit; };
  if (time_unit == "s") return (base.empty() ? "1" : base) + '/' + rooted("Hz");
  return (base.empty() ? "" : base + ' ') + rooted(time_unit.empty() ? "sample" : time_unit);
}

}  // namespace

const char* quantity_name(quantity q) { return names[static_cast<std::size_t>(q)]; }

quantity quantity_named(const std::string& name) {
  const auto found = std::ranges::find(names, name);
  if (found == std::end(names)) throw data_error("there is no quantity \"" + name + '"');
  return static_cast<quantity>(found - names);
}

measure::measure(quantity q, bool as_level, const spectrum& s)
    : what_(q),
      as_level_(as_level),
      bandwidth_(s.enbw()),
      peak_factor_(s.two_sided ? 1 : 2),
      full_scale_(s.full_scale),
      sample_unit_(s.full_scale && s.unit.empty() ? "FS" : s.unit),
      time_unit_(s.time_unit) {
  name_units();
}

void measure::name_units() {
  const std::string base = is_root() ? sample_unit_ : squared(sample_unit_);
  unit_ = base;
  if (what_ == quantity::rms) unit_ += base.empty() ? "rms" : " rms";
  if (is_density()) unit_ = per_frequency(base, time_unit_, is_root());
  if (full_scale_) {
    level_unit_ = is_density() ? per_frequency("dBFS", time_unit_, false) : "dBFS";
  } else if (what_ == quantity::rms && sample_unit_ == "V") {
    level_unit_ = "dBV";
  } else {
    level_unit_ = unit_.starts_with("1/") ? "dB re " + unit_ : "dB re 1 " + unit_;
    if (unit_.empty()) level_unit_ = "dB re 1";
  }
}

// 0 dBFS is a sine of the largest amplitude there can be, whatever the quantity.
double measure::reference() const {
  const double power = full_scale_ || what_ == quantity::peak ? 1 / peak_factor_ : 1;
  return is_density() ? power * bandwidth_ : power;
}

double measure::value(double power) const {
  if (what_ == quantity::peak) return std::sqrt(peak_factor_ * power);
  const double x = is_density() ? power / bandwidth_ : power;
  return is_root() ? std::sqrt(x) : x;
}

double measure::level(double power) const {
  return 10 * std::log10(std::max(power / reference(), least_power));
}

double measure::power(double shown) const {
  if (as_level_) return std::pow(10, shown / 10) * reference();
  if (what_ == quantity::peak) return shown * shown / peak_factor_;
  const double x = is_root() ? shown * shown : shown;
  return is_density() ? x * bandwidth_ : x;
}

measure measure::density() const {
  measure d = *this;
  d.what_ = is_root() ? quantity::asd : quantity::psd;
  d.name_units();
  return d;
}

std::string frequency_unit(const spectrum& s) {
  if (s.time_unit == "s") return "Hz";
  return s.time_unit.empty() ? "1/sample" : "1/" + s.time_unit;
}

}  // namespace tool
