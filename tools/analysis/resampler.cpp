// SPDX-License-Identifier: MIT
// Frames at another rate.
#include "analysis/resampler.h"

#include <cmath>

namespace tool {
namespace {

constexpr double attenuation = 120;
constexpr double passband = 0.9;
constexpr int phases = 64;  // of the taps that serve any step

// Of a ratio that is resampled exactly. Taps for any step grow with the step, 64 times as fast as those of a ratio with
// its terms, so that a much lower rate is worth large ones.
constexpr int largest_term = 2000;
constexpr int largest_term_down = 50'000;
constexpr double much_lower = 0.05;

// Neighbours in the continued fraction of a ratio, until one is it to the last digits.
bool find_ratio(double ratio, int& up, int& down) {
  double rest = ratio;
  double p[2] = {1, 0};
  double q[2] = {0, 1};
  const int largest = ratio < much_lower ? largest_term_down : largest_term;
  while (true) {
    const double whole = std::floor(rest);
    const double next_p = whole * p[0] + p[1];
    const double next_q = whole * q[0] + q[1];
    if (next_p > largest || next_q > largest) return false;
    p[1] = p[0], p[0] = next_p;
    q[1] = q[0], q[0] = next_q;
    if (p[0] > 0 && std::abs(p[0] / q[0] - ratio) <= 1e-12 * ratio) break;
    if (rest == whole) return false;
    rest = 1 / (rest - whole);
  }
  up = static_cast<int>(p[0]);
  down = static_cast<int>(q[0]);
  return true;
}

}  // namespace

resampler::resampler(double from, double to, std::size_t channels, bool pairs)
    : step_(from / to), parts_(pairs ? 2 : 1), channels_(channels) {
  const bool exact = find_ratio(to / from, up_, down_);
  if (!exact) up_ = 0;
  require(exact ? dspc_rsmp(&taps_, up_, down_, passband, attenuation)
                : dspc_rsmp(&taps_, phases, 1, passband, attenuation));
}

void resampler::run(channel& c, bool ends) {
  const record* const in = ends ? nullptr : &c.in;
  require(up_ > 0 ? dspd_rsmp(in, &c.out, &taps_, up_, down_, &c.state)
                  : dspd_rsmp2(in, &c.out, &taps_, nullptr, step_, &c.state));
}

void resampler::put(const taker& take) {
  const std::size_t width = channels_.size() * parts_;
  const std::size_t points = channels_[0].out.points;
  frames_.resize(points * width);
  for (std::size_t c = 0; c < channels_.size(); ++c) {
    const auto from = channels_[c].out.scalars();
    for (std::size_t i = 0; i < points; ++i) {
      for (std::size_t k = 0; k < parts_; ++k) frames_[i * width + c * parts_ + k] = from[i * parts_ + k];
    }
  }
  if (points > 0) take(frames_);
}

void resampler::process(std::span<const double> frames, const taker& take) {
  const std::size_t width = channels_.size() * parts_;
  const std::size_t points = frames.size() / width;
  if (points == 0) return;
  for (std::size_t c = 0; c < channels_.size(); ++c) {
    channels_[c].in.resize(points, parts_ == 2);
    const auto to = channels_[c].in.scalars();
    for (std::size_t i = 0; i < points; ++i) {
      for (std::size_t k = 0; k < parts_; ++k) to[i * parts_ + k] = frames[i * width + c * parts_ + k];
    }
    run(channels_[c], false);
  }
  put(take);
}

void resampler::finish(const taker& take) {
  for (auto& c : channels_) run(c, true);
  put(take);
}

}  // namespace tool
