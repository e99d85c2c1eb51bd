// Axes and numbers as they are shown.
#include "pictures/scale.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tool {
namespace {

constexpr double deepest = 140;    // dB shown at most
constexpr double shallowest = 30;  // and at least
constexpr double level_step = 10;
constexpr double headroom = 8;  // dB above the strongest line, for its number
constexpr double decades = 3;   // of a logarithmic axis

std::string fixed_text(double x, int decimals) {
  char text[400];
  std::snprintf(text, sizeof text, "%.*f", decimals, x);
  return text;
}

// 50, 2k, 1M
std::string short_text(double x) {
  if (x >= 1e6) return number_text(x / 1e6, 4) + "M";
  if (x >= 1e3) return number_text(x / 1e3, 4) + "k";
  return number_text(x, 4);
}

// Hz, kHz or MHz for frequencies up to `highest`; cycles per sample without a rate.
unit frequency_unit(const spectrum& s, double highest) {
  if (!s.has_rate) return {"cycles per sample", 1};
  if (highest >= 1e6) return {"MHz", 1e6};
  if (highest >= 1e3) return {"kHz", 1e3};
  return {"Hz", 1};
}

// The level at a place between the points of the spectrum.
double level_between(std::span<const double> power, double place) {
  const auto at = std::min(static_cast<std::size_t>(place), power.size() - 2);
  const double part = place - static_cast<double>(at);
  return (1 - part) * decibels(std::sqrt(power[at])) + part * decibels(std::sqrt(power[at + 1]));
}

}  // namespace

const char* level_unit(const spectrum& s) { return s.full_scale ? "dBFS" : "dB"; }

std::string frequency_text(const spectrum& s, double frequency) {
  constexpr double part_of_resolution = 1e3;
  const double digits = std::ceil(-std::log10(s.resolution() / part_of_resolution));
  const std::string text = fixed_text(frequency, static_cast<int>(std::clamp(digits, 0.0, 12.0)));
  return s.has_rate ? text + " Hz" : text;
}

std::string level_text(double amplitude) { return fixed_text(decibels(amplitude), 2); }

std::string number_text(double x, int digits) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*g", digits, x);
  return text;
}

std::vector<double> ticks(double low, double high, int count) {
  const double rough = (high - low) / count;
  const double decade = std::pow(10, std::floor(std::log10(rough)));
  double step = 10 * decade;
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * decade >= rough * (1 - 1e-9)) {
      step = factor * decade;
      break;
    }
  }
  std::vector<double> values;
  const double first = std::ceil(low / step - 1e-9);
  for (double i = first; i * step <= high + 1e-9 * step; ++i) values.push_back(i == 0 ? 0 : i * step);
  return values;
}

std::string tick_text(double value, double step) {
  const double decimals = std::ceil(-std::log10(step) - 1e-9);
  return fixed_text(value, static_cast<int>(std::clamp(decimals, 0.0, 12.0)));
}

frequency_axis::frequency_axis(const spectrum& s, bool logarithmic)
    : logarithmic_(logarithmic && !s.two_sided),
      low_(s.first),
      high_(s.frequency(static_cast<double>(s.power.points - 1))),
      unit_(frequency_unit(s, high_)) {
  if (!logarithmic_) return;
  if (s.has_rate) unit_ = {"Hz", 1};
  low_ = std::max(s.resolution(), high_ / std::pow(10, decades));
}

double frequency_axis::part(double frequency) const {
  if (!logarithmic_) return (frequency - low_) / (high_ - low_);
  return frequency > low_ ? std::log(frequency / low_) / std::log(high_ / low_) : 0;
}

double frequency_axis::frequency(double part) const {
  return logarithmic_ ? low_ * std::pow(high_ / low_, part) : low_ + part * (high_ - low_);
}

std::vector<frequency_axis::label> frequency_axis::labels(int count) const {
  std::vector<label> out;
  if (!logarithmic_) {
    const auto values = ticks(low_ / unit_.size, high_ / unit_.size, count);
    const double step = values.size() > 1 ? values[1] - values[0] : 1;
    for (const double value : values) out.push_back({part(value * unit_.size), tick_text(value, step)});
    return out;
  }
  for (double decade = std::pow(10, std::floor(std::log10(low_))); decade <= high_; decade *= 10) {
    for (const double factor : {1, 2, 5}) {
      const double value = factor * decade;
      if (value >= low_ && value <= high_) out.push_back({part(value), short_text(value)});
    }
  }
  return out;
}

outline outline_of(const spectrum& s, const frequency_axis& axis, std::size_t columns) {
  const auto power = s.power.scalars();
  outline out{std::vector<double>(columns), 0, 0};
  const auto place = [&](std::size_t edge) {
    const double frequency = axis.frequency(static_cast<double>(edge) / static_cast<double>(columns));
    return std::clamp((frequency - s.first) / s.step, 0.0, static_cast<double>(power.size() - 1));
  };
  for (std::size_t column = 0; column < columns; ++column) {
    const double begin = place(column);
    const double end = place(column + 1);
    double level = level_between(power, begin);
    for (auto i = static_cast<std::size_t>(std::ceil(begin)); static_cast<double>(i) <= end; ++i) {
      level = std::max(level, decibels(std::sqrt(power[i])));
    }
    out.levels[column] = level;
  }
  const double top = *std::ranges::max_element(out.levels);
  out.high = level_step * std::ceil((top + headroom) / level_step);
  const double least = *std::ranges::min_element(out.levels);
  const double low = level_step * std::floor(least / level_step);
  out.low = std::clamp(low, out.high - deepest, out.high - shallowest);
  return out;
}

}  // namespace tool
