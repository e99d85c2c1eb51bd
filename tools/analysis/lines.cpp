// SPDX-License-Identifier: MIT
// The lines of a spectrum that stand above its noise, placed between its points.
#include "analysis/lines.h"

#include <algorithm>
#include <cmath>

#include "analysis/noise.h"

namespace tool {
namespace {

// What is weaker than this part of the strongest line's power is rounding.
constexpr double range = 1e-12;

// And so is an amplitude below this part of the mean that was taken out.
constexpr double mean_rounding = 1e-14;

// How often a spectrum of noise alone may show a line: in 1 of 1000. A tenth of that is asked for, as
// averages of few segments that overlap reach further than the chi-square of their variance, by up to nine
// times in simulations.
constexpr double chance_of_a_line = 1e-4;

// Lines outside the band that are looked at for what they leak into it.
constexpr std::size_t most_outside = 1000;

// How many times the leakage of a stronger line the power of another has to be: several leak together.
constexpr double margin = 10;

// How many times less a spectrum has to be somewhere close to a line, on both sides: on the top of a
// resonance and at the edge of a band it is not, between lines a few resolutions apart it is.
constexpr double least_fall = 1.25;

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

// A spectrum in which the outer bins of a real signal count as the flanks of lines beside them, and what its
// lines leak.
struct landscape {
  explicit landscape(const spectrum& of) : s(of), leakage(leakage_of(of.segment, of.window)) {
    require(dsp_copy(&power, &of.power));
    if (at_edge(0)) power.data[0] *= 2;
    if (at_edge(power.points - 1)) power.data[power.points - 1] *= 2;
  }

  bool at_edge(std::size_t i) const {
    const std::size_t place = s.offset() + i;
    return !s.two_sided && (place == 0 || place + 1 == s.whole());
  }

  // What the line at one point leaves at another, as a part of its power. A real line has its image at the
  // negative frequency.
  double leaked(std::size_t from, std::size_t to) const {
    const auto table = leakage.scalars();
    const auto at = [&table](std::size_t distance) { return table[std::min(distance, table.size() - 1)]; };
    const std::size_t apart = from < to ? to - from : from - to;
    if (s.two_sided) return at(std::min(apart, s.whole() - apart));
    const std::size_t sum = from + to + 2 * s.offset();
    return std::max(at(apart), at(std::min(sum, 2 * (s.whole() - 1) - sum)));
  }

  const spectrum& s;
  record power;
  record leakage;
};

struct extreme {
  double power;
  double place;
};

// The parabola through the logarithms at a point and its neighbours.
extreme parabola(std::span<const double> power, std::size_t at) {
  constexpr double least = 1e-300;
  if (at == 0 || at + 1 == power.size()) return {power[at], static_cast<double>(at)};
  record levels(3);
  for (std::size_t i = 0; i < 3; ++i) levels.data[i] = std::log(std::max(power[at - 1 + i], least));
  record peak;
  require(dsps_peak(&levels, &peak, DSP_PEAK_PARABOLA | DSP_PEAK_AT_INDEX, 1));
  return {std::exp(peak.data[0]), static_cast<double>(at - 1) + peak.data[1]};
}

constexpr std::size_t half_a_resolution = padding / 2;

// Half a step of the resolution off its middle a flat-top window has hardly fallen.
bool has_flat_top(const record& leakage) {
  constexpr double flat = 0.97;
  return leakage.scalars()[half_a_resolution] > flat;
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
std::optional<double> middle_of_flanks(const landscape& l, std::size_t at) {
  const auto leakage = l.leakage.scalars();
  const auto flank = std::ranges::find_if(leakage, [](double part) { return part < 0.5; }) - leakage.begin();
  const std::size_t reach = static_cast<std::size_t>(flank) + half_a_resolution;
  const auto left = half_power_place(l.power.scalars(), at, -1, reach);
  const auto right = half_power_place(l.power.scalars(), at, 1, reach);
  if (!left || !right) return std::nullopt;
  const double middle = (*left + *right) / 2;
  const double off = std::abs(middle - static_cast<double>(at));
  return off <= static_cast<double>(half_a_resolution) ? std::optional(middle) : std::nullopt;
}

line interpolated(const landscape& l, std::size_t at, double noise) {
  auto [power, place] = parabola(l.power.scalars(), at);
  if (l.at_edge(at)) power /= 4;  // line and image are one there, and their amplitudes add up
  if (has_flat_top(l.leakage)) place = middle_of_flanks(l, at).value_or(place);
  return {l.s.frequency(place), power, 10 * std::log10(power / std::max(noise, 1e-300))};
}

// How far from a line its main lobe has fallen to a hundredth.
std::size_t width_of_lobe(const record& leakage) {
  const auto part = leakage.scalars();
  return static_cast<std::size_t>(std::ranges::find_if(part, [](double p) { return p < 0.01; }) -
                                  part.begin());
}

// The least power so many points beside another, on the side where it is higher; 0 where the spectrum ends
// before.
double foot_beside(std::span<const double> power, std::size_t at, std::size_t reach) {
  const double left = at < reach ? 0 : std::ranges::min(power.subspan(at - reach, reach));
  const double right = at + reach >= power.size() ? 0 : std::ranges::min(power.subspan(at + 1, reach));
  return std::max(left, right);
}

}  // namespace

double line_threshold(const spectrum& s) { return noise_threshold(s, chance_of_a_line); }

std::vector<line> strongest_lines(const spectrum& s, const line_options& options) {
  const landscape l(s);
  const noise_level noise(s);
  const auto power = l.power.scalars();
  const double ratio = options.least_snr ? std::pow(10, *options.least_snr / 10) : line_threshold(s);
  const std::size_t lobe = width_of_lobe(l.leakage);
  const double least = mean_rounding * s.mean * (mean_rounding * s.mean);
  std::vector<std::size_t> chosen;  // stronger lines outside the band too: they leak into it
  std::vector<line> lines;
  for (const std::size_t i : maxima(power)) {
    const bool inside = s.frequency(static_cast<double>(i) + 1) >= options.from &&
                        s.frequency(static_cast<double>(i) - 1) <= options.to;
    if (!inside && chosen.size() >= most_outside) continue;
    if (lines.size() == options.count || power[i] < least) break;
    if (!chosen.empty() && power[i] < range * power[chosen.front()]) break;
    if (power[i] < ratio * noise.at(i) || power[i] < ratio * noise_beside(s, i, lobe)) continue;
    if (power[i] < std::min(ratio, least_fall) * foot_beside(power, i, lobe + padding)) continue;
    const bool leakage = std::ranges::any_of(
        chosen, [&](std::size_t j) { return power[i] < margin * power[j] * l.leaked(j, i); });
    if (leakage) continue;
    chosen.push_back(i);
    const line found = interpolated(l, i, noise.at(i));
    if (found.frequency >= options.from && found.frequency <= options.to) lines.push_back(found);
  }
  std::ranges::stable_sort(lines, std::greater<>(), &line::power);
  return lines;
}

}  // namespace tool
