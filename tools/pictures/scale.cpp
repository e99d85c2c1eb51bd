// SPDX-License-Identifier: MIT
// Axes: where values lie on them, and the ticks that tell.
#include "pictures/scale.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

#include "analysis/noise.h"
#include "output/number.h"

namespace tool {
namespace {

constexpr double deepest = 140;    // dB shown at most
constexpr double shallowest = 30;  // and at least
constexpr double headroom = 8;     // dB above the strongest point, for numbers
constexpr double decades = 3;      // of a logarithmic axis

struct unit {
  const char* prefix;
  double size;
};

// The largest unit of which the axis has one.
unit unit_for(double highest) {
  constexpr unit units[] = {{"G", 1e9}, {"M", 1e6}, {"k", 1e3}, {"", 1}, {"m", 1e-3}, {"u", 1e-6}};
  for (const unit& u : units) {
    if (highest >= u.size) return u;
  }
  return {"", 1};
}

// 50, 2k, 1M
std::string short_text(double x) {
  for (const auto& [prefix, size] : {unit{"G", 1e9}, unit{"M", 1e6}, unit{"k", 1e3}}) {
    if (x >= size * (1 - 1e-9)) return number_text(x / size, 4) + prefix;
  }
  return number_text(x, 4);
}

// A spectrum with both halves goes to half the rate, one point beyond its last.
double upper_end(const spectrum& s) {
  const double nyquist = s.rate / 2;
  return s.last() + 1.5 * s.step() > nyquist ? nyquist : s.last();
}

double level_between(const curve& c, double place) {
  const auto power = c.s.power.scalars();
  const auto at = static_cast<std::size_t>(place);
  const double left = c.told.level(power[at]);
  const double part = place - static_cast<double>(at);
  return part == 0 ? left : std::lerp(left, c.told.level(power[at + 1]), part);
}

struct points_inside {
  std::size_t count = 0;
  double sum = 0;
  double highest = 0;
  std::size_t place = 0;  // of the highest
};

points_inside powers_between(std::span<const double> power, double begin, double end) {
  points_inside out;
  for (auto i = static_cast<std::size_t>(std::ceil(begin)); static_cast<double>(i) <= end; ++i, ++out.count) {
    out.sum += power[i];
    if (power[i] > out.highest) out.highest = power[i], out.place = i;
  }
  return out;
}

std::string tick_text(double value, double step) {
  const double decimals = std::ceil(-std::log10(step) - 1e-9);
  return fixed_text(value, static_cast<int>(std::clamp(decimals, 0.0, 12.0)));
}

}  // namespace

std::vector<double> round_values(double low, double high, int count) {
  const double rough = (high - low) / count;
  const double decade = std::pow(10, std::floor(std::log10(rough)));
  double step = 10 * decade;
  for (const double factor : {5.0, 2.0, 1.0}) {
    if (factor * decade >= rough * (1 - 1e-9)) step = factor * decade;
  }
  std::vector<double> values;
  for (double i = std::ceil(low / step - 1e-9); i * step <= high + 1e-9 * step; ++i)
    values.push_back(i * step + 0.0);
  return values;
}

frequency_axis::frequency_axis(const picture& p)
    : logarithmic_(p.logarithmic && !p.curves.front().s.two_sided),
      low_(std::numeric_limits<double>::infinity()),
      high_(-low_) {
  double resolution = low_;
  for (const curve& c : p.curves) {
    low_ = std::min(low_, c.s.first());
    high_ = std::max(high_, upper_end(c.s));
    resolution = std::min(resolution, c.s.resolution());
  }
  if (!(high_ > low_)) high_ = low_ + resolution;
  const std::string name = frequency_unit(p.curves.front().s);
  if (logarithmic_) low_ = std::min(std::max({low_, resolution, high_ / std::pow(10, decades)}), high_ / 2);
  const unit u =
      name == "Hz" && !logarithmic_ ? unit_for(std::max(std::abs(low_), std::abs(high_))) : unit{"", 1};
  unit_ = u.size;
  title_ = name == "1/sample" ? "cycles per sample" : u.prefix + name;
}

double frequency_axis::part(double frequency) const {
  if (!logarithmic_) return (frequency - low_) / (high_ - low_);
  return std::log(std::max(frequency, 1e-300) / low_) / std::log(high_ / low_);
}

double frequency_axis::frequency(double part) const {
  return logarithmic_ ? low_ * std::pow(high_ / low_, part) : low_ + part * (high_ - low_);
}

std::string frequency_axis::text(const spectrum& s, double frequency) const {
  constexpr double part_of_resolution = 1e3;
  const double digits = std::ceil(-std::log10(s.resolution() / unit_ / part_of_resolution));
  return fixed_text(frequency / unit_, static_cast<int>(std::clamp(digits, 0.0, 12.0)));
}

std::vector<tick> frequency_axis::linear_ticks(int count) const {
  const auto values = round_values(low_ / unit_, high_ / unit_, count);
  const double step = values.size() > 1 ? values[1] - values[0] : 1;
  const auto end_text = [&](double value) {
    const bool round = std::abs(value / step - std::round(value / step)) < 1e-9;
    return round ? tick_text(value, step) : number_text(value, 4);
  };
  std::vector<tick> out{{0, end_text(low_ / unit_)}, {1, end_text(high_ / unit_)}};
  for (const double value : values) add_inside(out, value * unit_, tick_text(value, step));
  return out;
}

std::vector<tick> frequency_axis::logarithmic_ticks() const {
  std::vector<tick> out{{0, short_text(low_)}, {1, short_text(high_)}};
  for (const int factor : {1, 5, 2, 3, 4, 6, 7, 8, 9}) {
    const bool labelled = factor == 1 || factor == 2 || factor == 5;
    for (double decade = std::pow(10, std::floor(std::log10(low_))); decade <= high_; decade *= 10)
      add_inside(out, factor * decade, labelled ? short_text(factor * decade) : "");
  }
  return out;
}

void frequency_axis::add_inside(std::vector<tick>& ticks, double frequency, std::string text) const {
  constexpr double edge = 1e-9;
  const double at = part(frequency);
  if (at > edge && at < 1 - edge) ticks.push_back({at, std::move(text)});
}

std::vector<tick> level_axis::ticks() const {
  std::vector<tick> out;
  for (double level = high; level > low - step / 2; level -= step)
    out.push_back({part(level), tick_text(level, step)});
  return out;
}

bool has_signal(const curve& c) {
  return std::ranges::any_of(c.s.power.scalars(), [](double power) { return power > 0; });
}

namespace {

// From the mean of a column to its highest point, over a decade of power above what noise reaches: what falls
// smoothly through that level does so in the picture. A line that is listed stands at its height.
double level_inside(const curve& c, const points_inside& inside, double first, double reach_of_noise) {
  const double mean = c.told.level(inside.sum / static_cast<double>(inside.count));
  const double highest = std::max(first, c.told.level(inside.highest));
  const bool is_listed = std::ranges::any_of(c.lines, [&](const line& l) {
    return std::abs((l.frequency - c.s.first()) / c.s.step() - static_cast<double>(inside.place)) < 1;
  });
  if (is_listed) return highest;
  if (!(inside.highest > reach_of_noise)) return mean;
  return std::lerp(mean, highest, std::min(std::log10(inside.highest / reach_of_noise), 1.0));
}

}  // namespace

std::vector<double> outline_of(const curve& c, const frequency_axis& axis, std::size_t columns) {
  const double last = static_cast<double>(c.s.power.points) - 1;
  const auto place = [&](std::size_t edge) {
    return (axis.frequency(static_cast<double>(edge) / static_cast<double>(columns)) - c.s.first()) /
           c.s.step();
  };
  const noise_level noise(c.s);
  const double threshold = line_threshold(c.s);
  const auto power = c.s.power.scalars();
  std::vector<double> levels(columns, std::numeric_limits<double>::quiet_NaN());
  for (std::size_t column = 0; column < columns; ++column) {
    const double begin = std::max(place(column), 0.0);
    const double end = std::min(place(column + 1), last);
    if (begin > end) continue;
    const double first = level_between(c, begin);
    const auto inside = powers_between(power, begin, end);
    levels[column] =
        inside.count == 0 ? first : level_inside(c, inside, first, threshold * noise.at(inside.place));
  }
  return levels;
}

level_axis level_axis_of(const std::vector<std::vector<double>>& outlines, int count) {
  constexpr double nothing = -3000;  // dB, below all that there is
  double top = nothing;
  double least = -nothing;
  for (const auto& levels : outlines) {
    for (const double level : levels) {
      if (!(level > nothing)) continue;
      top = std::max(top, level);
      least = std::min(least, level);
    }
  }
  if (top == nothing) return {-100, 0, 20};
  top += headroom;
  const double low = std::clamp(least, top - deepest, top - shallowest);
  const double step = (top - low) / count > 10 ? 20 : (top - low) / count > 5 ? 10 : 5;
  return {step * std::floor(low / step), step * std::ceil(top / step), step};
}

}  // namespace tool
