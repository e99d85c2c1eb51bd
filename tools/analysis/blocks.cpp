// SPDX-License-Identifier: MIT
// Samples in blocks of a channel.
#include "analysis/blocks.h"

#include <cmath>

namespace tool {
namespace {

// The library's stand-in for infinity; sums of squares of what is below it stay in range.
constexpr double largest_sample = 1e100;

}  // namespace

block_reader::block_reader(source& in, std::size_t points, double gain)
    : in_(in), gain_(gain), width_(in.about().is_complex ? 2 : 1), channels_(in.about().channels.size()) {
  lengthen(points);
}

void block_reader::lengthen(std::size_t points) {
  frames_.resize(points * width_ * channels_);
  channel_.resize(points, width_ == 2);
}

std::size_t block_reader::read() {
  const std::size_t scalars = in_.read(frames_);
  refuse_unusable(scalars);
  points_ = scalars / (width_ * channels_);
  before_ += points_;
  return points_;
}

void block_reader::refuse_unusable(std::size_t scalars) const {
  for (std::size_t i = 0; i < scalars; ++i) {
    if (std::abs(gain_ * frames_[i]) <= largest_sample) continue;
    throw data_error("sample " + std::to_string(before_ + i / (width_ * channels_) + 1) +
                     (std::isfinite(frames_[i]) ? " is beyond 1e100" : " is not a finite number"));
  }
}

const record& block_reader::channel(std::size_t index) {
  channel_.points = static_cast<std::uint32_t>(points_);
  const std::size_t stride = width_ * channels_;
  const double* in = frames_.data() + index * width_;
  double* out = channel_.data;
  for (std::size_t i = 0; i < points_; ++i, in += stride) {
    for (std::size_t part = 0; part < width_; ++part) *out++ = gain_ * in[part];
  }
  return channel_;
}

}  // namespace tool
