// SPDX-License-Identifier: MIT
// A part of a recording: from a time on, and no longer than told.
#include <algorithm>
#include <cmath>
#include <limits>

#include "input/kinds.h"

namespace tool {
namespace {

class part final : public reader {
 public:
  part(reader_pointer in, const input_options& options, const subject& about)
      : in_(std::move(in)), start_(options.start), duration_(options.duration), about_(about) {}

  std::size_t read(std::span<double> frames) override {
    if (!begun_) begin();
    const std::size_t width = about_.scalars_per_frame();
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(frames.size() / width, left_));
    if (count == 0) return 0;
    const std::size_t got = in_->read(frames.first(count * width));
    left_ -= got / width;
    return got;
  }

  bool next_piece() override {
    begun_ = false;
    return in_->next_piece();
  }

 private:
  // Times count from the first sample of the piece, and without a rate they are samples.
  std::uint64_t frames_in(double time) const {
    return static_cast<std::uint64_t>(
        std::llround(std::min(time * (about_.rate > 0 ? about_.rate : 1), 9e18)));
  }

  void begin() {
    begun_ = true;
    left_ = duration_ > 0 ? frames_in(duration_) : std::numeric_limits<std::uint64_t>::max();
    const std::size_t width = about_.scalars_per_frame();
    std::vector<double> passed(4096 / width * width + width);
    for (std::uint64_t skip = frames_in(start_) * width; skip > 0;) {
      const std::size_t count = static_cast<std::size_t>(std::min<std::uint64_t>(skip, passed.size()));
      const std::size_t got = in_->read(std::span(passed).first(count));
      if (got < count) {
        left_ = 0;
        return;
      }
      skip -= got;
    }
  }

  reader_pointer in_;
  double start_;
  double duration_;
  const subject& about_;
  bool begun_ = false;
  std::uint64_t left_ = 0;
};

}  // namespace

reader_pointer cut_part(reader_pointer in, const input_options& options, const subject& about) {
  if (options.start <= 0 && options.duration <= 0) return in;
  return std::make_unique<part>(std::move(in), options, about);
}

}  // namespace tool
