// The strongest lines of a spectrum, placed between its points.
#include <algorithm>
#include <cmath>
#include <optional>

#include "analysis/analysis.h"

namespace tool {
namespace {

// What is weaker than this part of the strongest line's power is rounding.
constexpr double range = 1e-12;

// And so is an amplitude below this part of the mean that was taken out.
constexpr double mean_rounding = 1e-14;

// How many times the leakage of a stronger line the power of another has to be: several leak together.
constexpr double margin = 10;

std::vector<std::size_t> maxima(std::span<const double> power) {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < power.size(); ++i) {
    const bool rises = i == 0 || power[i] > power[i - 1];
    const bool falls = i + 1 == power.size() || power[i] >= power[i + 1];
    if (rises && falls && power[i] > 0) found.push_back(i);
  }
  std::ranges::sort(found, [power](std::size_t a, std::size_t b) { return power[a] > power[b]; });
  return found;
}

// What the line at one point leaves at another, as a part of its power. A real line has its image at the
// negative frequency.
double leaked(const spectrum& s, std::size_t from, std::size_t to) {
  const auto table = s.leakage.scalars();
  const auto at = [&table](std::size_t distance) { return table[std::min(distance, table.size() - 1)]; };
  const std::size_t apart = from < to ? to - from : from - to;
  const std::size_t count = s.power.points;
  if (s.two_sided) return at(std::min(apart, count - apart));
  const std::size_t sum = from + to;
  return std::max(at(apart), at(std::min(sum, 2 * (count - 1) - sum)));
}

struct extreme {
  double amplitude;
  double place;
};

// The parabola through the logarithms at a point and its neighbours.
extreme parabola(const spectrum& s, std::size_t at) {
  constexpr double least = 1e-300;
  const auto power = s.power.scalars();
  if (at == 0 || at + 1 == power.size()) return {std::sqrt(power[at]), static_cast<double>(at)};
  record levels(3);
  for (std::size_t i = 0; i < 3; ++i) levels.data[i] = std::log(std::max(power[at - 1 + i], least));
  record peak;
  require(dsps_peak(&levels, &peak, DSP_PEAK_PARABOLA | DSP_PEAK_AT_INDEX, 1));
  return {std::exp(peak.data[0] / 2), static_cast<double>(at - 1) + peak.data[1]};
}

std::size_t half_a_resolution(const spectrum& s) {
  return static_cast<std::size_t>(std::lround(s.resolution() / s.step / 2));
}

// Half a step of the resolution off its middle a flat-top window has hardly fallen.
bool has_flat_top(const spectrum& s) {
  constexpr double flat = 0.97;
  return s.leakage.scalars()[half_a_resolution(s)] > flat;
}

// Where the power has fallen to half on the way from `at` in one direction, at most `reach` points away.
std::optional<double> half_power_place(std::span<const double> power, std::size_t at, std::ptrdiff_t step,
                                       std::size_t reach) {
  const double half = power[at] / 2;
  const auto room = step < 0 ? at : power.size() - 1 - at;
  const auto value = [&](std::size_t k) { return power[step < 0 ? at - k : at + k]; };
  for (std::size_t k = 1; k <= std::min(reach, room); ++k) {
    if (value(k) > half) continue;
    const double part = std::log(value(k - 1) / half) / std::log(value(k - 1) / std::max(value(k), 1e-300));
    return static_cast<double>(at) + static_cast<double>(step) * (static_cast<double>(k - 1) + part);
  }
  return std::nullopt;
}

// A flat top has ripples, so its line lies in the middle between its flanks: where the window has them, and
// around the maximum. In noise, or at an end of the band, there may be no such flanks.
std::optional<double> middle_of_flanks(const spectrum& s, std::size_t at) {
  const auto leakage = s.leakage.scalars();
  const auto flank = std::ranges::find_if(leakage, [](double part) { return part < 0.5; }) - leakage.begin();
  const std::size_t reach = static_cast<std::size_t>(flank) + half_a_resolution(s);
  const auto left = half_power_place(s.power.scalars(), at, -1, reach);
  const auto right = half_power_place(s.power.scalars(), at, 1, reach);
  if (!left || !right) return std::nullopt;
  const double middle = (*left + *right) / 2;
  const double off = std::abs(middle - static_cast<double>(at));
  return off <= static_cast<double>(half_a_resolution(s)) ? std::optional(middle) : std::nullopt;
}

line interpolated(const spectrum& s, std::size_t at) {
  auto [amplitude, place] = parabola(s, at);
  if (!s.two_sided && at + 1 == s.power.points) amplitude /= 2;  // line and image are one at half the rate
  if (has_flat_top(s)) place = middle_of_flanks(s, at).value_or(place);
  return {s.frequency(place), amplitude};
}

}  // namespace

std::vector<line> strongest_lines(const spectrum& s, std::size_t count) {
  const auto power = s.power.scalars();
  const double least = mean_rounding * s.mean * (mean_rounding * s.mean);
  std::vector<std::size_t> chosen;
  for (const std::size_t i : maxima(power)) {
    if (chosen.size() == count || power[i] < least) break;
    if (!chosen.empty() && power[i] < range * power[chosen.front()]) break;
    const bool leakage = std::ranges::any_of(
        chosen, [&](std::size_t j) { return power[i] < margin * power[j] * leaked(s, j, i); });
    if (!leakage) chosen.push_back(i);
  }
  std::vector<line> lines;
  for (const std::size_t i : chosen) lines.push_back(interpolated(s, i));
  std::ranges::sort(lines, std::greater<>(), &line::amplitude);
  return lines;
}

}  // namespace tool
