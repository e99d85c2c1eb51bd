// SPDX-License-Identifier: MIT
// Missing samples, which stand as NaN: refused, passed over between two pieces, or bridged by straight lines.
#include <algorithm>
#include <cmath>

#include "input/kinds.h"

namespace tool {
namespace {

constexpr std::size_t block = 4096;  // frames
constexpr std::size_t longest_bridge = std::size_t{1} << 20;

// Comparing alone, so that it is done on whole vectors.
bool has_missing(std::span<const double> scalars) {
  unsigned found = 0;
  for (const double x : scalars) found |= x == x ? 0U : 1U;
  return found != 0;
}

class refusing final : public reader {
 public:
  refusing(reader_pointer in, const subject& about) : in_(std::move(in)), about_(about) {}

  std::size_t read(std::span<double> frames) override {
    const std::size_t got = in_->read(frames);
    if (has_missing(frames.first(got))) refuse(frames.first(got));
    done_ += got;
    return got;
  }
  bool next_piece() override { return in_->next_piece(); }

 private:
  [[noreturn]] void refuse(std::span<const double> scalars) const {
    const auto missing = std::ranges::find_if(scalars, [](double x) { return std::isnan(x); });
    const auto at = static_cast<std::size_t>(missing - scalars.begin()) + done_;
    const std::size_t width = about_.scalars_per_frame();
    const std::size_t place = at % width / (about_.is_complex ? 2 : 1);
    const std::string of =
        about_.channels.size() > 1 ? " of channel " + about_.channels[place].name : std::string();
    throw data_error("sample " + std::to_string(at / width + 1) + of +
                     " is not a number; --gaps linear bridges it");
  }

  reader_pointer in_;
  const subject& about_;
  std::uint64_t done_ = 0;
};

class splitting final : public reader {
 public:
  splitting(reader_pointer in, subject& about) : in_(std::move(in)), about_(about) {}

  std::size_t read(std::span<double> frames) override {
    const std::size_t width = about_.scalars_per_frame();
    if (at_start_ && !skip_missing()) return 0;
    std::size_t done = 0;
    while (done + width <= frames.size() && fill()) {
      const auto left = std::span(held_).subspan(begin_);
      const std::size_t whole = whole_frames(left.first(std::min(left.size(), frames.size() - done)));
      if (whole == 0) break;
      std::copy_n(left.begin(), whole, frames.begin() + static_cast<std::ptrdiff_t>(done));
      begin_ += whole;
      done += whole;
    }
    return done;
  }

  bool next_piece() override {
    const bool gap = fill();
    if (gap && skip_missing()) {
      ++about_.gaps;
      return true;
    }
    at_start_ = true;
    return in_->next_piece();
  }

 private:
  bool fill() {
    if (begin_ < held_.size()) return true;
    held_.resize(block * about_.scalars_per_frame());
    held_.resize(in_->read(held_));
    begin_ = 0;
    return !held_.empty();
  }

  // How many scalars there are before the first frame with a missing one.
  std::size_t whole_frames(std::span<const double> scalars) const {
    const std::size_t width = about_.scalars_per_frame();
    scalars = scalars.first(scalars.size() / width * width);
    if (!has_missing(scalars)) return scalars.size();
    const auto missing = std::ranges::find_if(scalars, [](double x) { return std::isnan(x); });
    return static_cast<std::size_t>(missing - scalars.begin()) / width * width;
  }

  bool skip_missing() {
    at_start_ = false;
    const std::size_t width = about_.scalars_per_frame();
    while (fill()) {
      if (!has_missing(std::span(held_).subspan(begin_, width))) return true;
      begin_ += width;
    }
    return false;
  }

  reader_pointer in_;
  subject& about_;
  std::vector<double> held_;
  std::size_t begin_ = 0;
  bool at_start_ = true;
};

// What is missing at either end of the signal is left away.
class bridging final : public reader {
 public:
  bridging(reader_pointer in, subject& about) : in_(std::move(in)), about_(about) { reset(); }

  std::size_t read(std::span<double> frames) override {
    const std::size_t wanted = frames.size() / width_ * width_;
    std::size_t done = 0;
    while (done < wanted) {
      if (begin_ == ready_ && !fill()) break;
      const std::size_t count = std::min(wanted - done, ready_ - begin_);
      std::copy_n(held_.begin() + static_cast<std::ptrdiff_t>(begin_), count,
                  frames.begin() + static_cast<std::ptrdiff_t>(done));
      begin_ += count;
      done += count;
    }
    return done;
  }

  bool next_piece() override {
    const bool more = in_->next_piece();
    if (more) reset();
    return more;
  }

 private:
  struct known {
    bool any = false;
    std::ptrdiff_t frame = 0;  // the last that is known, counted from the first held
    double value = 0;
  };

  void reset() {
    width_ = about_.scalars_per_frame();
    held_.clear();
    begin_ = ready_ = 0;
    run_ = 0;
    last_.assign(width_, {});
  }

  // Reads on until frames are ready, all of whose scalars are known.
  bool fill() {
    drop_delivered();
    while (begin_ == ready_) {
      const std::size_t before = held_.size();
      if (before > longest_bridge * width_) {
        throw data_error("a gap of more than " + std::to_string(longest_bridge) +
                         " samples is too long for a bridge; --gaps split goes on behind it");
      }
      held_.resize(before + block * width_);
      held_.resize(before + in_->read(std::span(held_).subspan(before)));
      if (held_.size() == before) return false;
      take_in(before / width_);
    }
    return true;
  }

  void drop_delivered() {
    const auto gone = static_cast<std::ptrdiff_t>(begin_ / width_);
    held_.erase(held_.begin(), held_.begin() + static_cast<std::ptrdiff_t>(begin_));
    ready_ -= begin_;
    begin_ = 0;
    for (auto& k : last_) k.frame -= gone;
  }

  void take_in(std::size_t first) {
    const std::size_t frames = held_.size() / width_;
    const auto last_frame = static_cast<std::ptrdiff_t>(frames) - 1;
    if (run_ == 0 && ready_ == first * width_ && !has_missing(std::span(held_).subspan(ready_))) {
      ready_ = held_.size();
      for (std::size_t k = 0; k < width_; ++k) last_[k] = {true, last_frame, held_[ready_ - width_ + k]};
      return;
    }
    for (std::size_t i = first; i < frames; ++i) take_frame(i);
  }

  void take_frame(std::size_t i) {
    bool whole = true;
    bool all = true;
    auto oldest = static_cast<std::ptrdiff_t>(i);
    for (std::size_t k = 0; k < width_; ++k) {
      const double x = held_[i * width_ + k];
      known& last = last_[k];
      if (!std::isnan(x)) {
        if (last.any) line(k, last, static_cast<std::ptrdiff_t>(i), x);
        last = {true, static_cast<std::ptrdiff_t>(i), x};
      } else {
        whole = false;
      }
      all = all && last.any;
      oldest = std::min(oldest, last.frame);
    }
    count(whole, all);
    if (!all) {
      begin_ = ready_ = (i + 1) * width_;
    } else if (oldest >= 0) {
      ready_ = std::max(ready_, static_cast<std::size_t>(oldest + 1) * width_);
    }
  }

  void line(std::size_t k, const known& last, std::ptrdiff_t i, double x) {
    for (std::ptrdiff_t j = std::max<std::ptrdiff_t>(last.frame + 1, 0); j < i; ++j) {
      const double part = static_cast<double>(j - last.frame) / static_cast<double>(i - last.frame);
      held_[static_cast<std::size_t>(j) * width_ + k] = last.value + part * (x - last.value);
    }
  }

  void count(bool whole, bool begun) {
    if (!whole) {
      run_ += begun ? 1 : 0;
      return;
    }
    about_.gaps += run_ > 0 ? 1 : 0;
    about_.filled += run_;
    run_ = 0;
  }

  reader_pointer in_;
  subject& about_;
  std::size_t width_ = 1;
  std::vector<double> held_;
  std::size_t begin_ = 0;  // scalars: delivered up to here
  std::size_t ready_ = 0;  // and complete up to there
  std::uint64_t run_ = 0;  // frames of the gap at hand
  std::vector<known> last_;
};

}  // namespace

reader_pointer bridge_gaps(reader_pointer in, const input_options& options, subject& about) {
  if (options.gaps == gap_rule::split) return std::make_unique<splitting>(std::move(in), about);
  if (options.gaps == gap_rule::linear) return std::make_unique<bridging>(std::move(in), about);
  return std::make_unique<refusing>(std::move(in), about);
}

}  // namespace tool
