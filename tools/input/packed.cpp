// SPDX-License-Identifier: MIT
// Numbers in binary one behind the other: what WAV, npy and raw files come to behind their headers.
#include "input/packed.h"

#include <algorithm>

#include "input/channels.h"

namespace tool {
namespace {

constexpr std::size_t block = 1 << 16;

class packed final : public reader {
 public:
  packed(stream& in, const packing& how, const input_options& options, subject& about)
      : in_(in), how_(how), about_(about), parts_(about.is_complex ? 2 : 1) {
    chosen_ = choose_channels(options.channels, how.channels, about);
    if (options.rate > 0) about.rate = options.rate;
    about.promised = how.endless ? 0 : how.frames;
    bytes_.resize(std::max(block / frame_size(), std::size_t{1}) * frame_size());
  }

  std::size_t read(std::span<double> frames) override {
    const std::size_t width = chosen_.size() * parts_;
    const std::size_t wanted = frames.size() / width;
    std::size_t done = 0;
    while (done < wanted && !ended_) {
      const std::size_t count = std::min(wanted - done, bytes_.size() / frame_size());
      done += read_block(left(count), frames.subspan(done * width));
    }
    return done * width;
  }

 private:
  std::size_t number_size() const { return how_.form.size * parts_; }
  std::size_t frame_size() const { return number_size() * how_.channels; }
  std::size_t left(std::size_t count) const {
    if (how_.endless) return count;
    return static_cast<std::size_t>(std::min<std::uint64_t>(count, how_.frames - read_));
  }

  std::size_t read_block(std::size_t wanted, std::span<double> out) {
    const std::size_t got = how_.planar ? read_planes(wanted, out) : read_frames(wanted, out);
    read_ += got;
    const bool whole = !how_.endless && read_ == how_.frames;
    ended_ = got < wanted || whole;
    if (ended_ && !whole && !how_.endless) note_truncation(about_, read_, how_.frames);
    return got;
  }

  void put(std::size_t nth, const char* from, std::size_t step, std::size_t count, std::span<double> out) {
    const std::size_t width = chosen_.size() * parts_;
    for (std::size_t part = 0; part < parts_; ++part) {
      convert(how_.form, from + part * how_.form.size, step, count, out.data() + nth * parts_ + part, width);
    }
  }

  std::size_t read_frames(std::size_t wanted, std::span<double> out) {
    const std::size_t bytes = in_.read(bytes_.data(), wanted * frame_size());
    const std::size_t count = bytes / frame_size();
    if (how_.endless && bytes % frame_size() != 0) {
      about_.truncated = true;
      about_.warnings.push_back("the last " + std::to_string(bytes % frame_size()) +
                                " bytes are no whole sample and were left away");
    }
    for (std::size_t i = 0; i < chosen_.size(); ++i) {
      put(i, bytes_.data() + chosen_[i] * number_size(), frame_size(), count, out);
    }
    return count;
  }

  std::size_t read_planes(std::size_t wanted, std::span<double> out) {
    std::size_t count = wanted;
    for (std::size_t i = 0; i < chosen_.size(); ++i) {
      const std::uint64_t at = how_.at + (chosen_[i] * how_.frames + read_) * number_size();
      count = std::min(count, in_.read_at(at, bytes_.data(), wanted * number_size()) / number_size());
      put(i, bytes_.data(), number_size(), count, out);
    }
    in_.note_position(how_.at + (read_ + count) * frame_size());
    return count;
  }

  stream& in_;
  packing how_;
  subject& about_;
  std::size_t parts_;
  std::vector<std::size_t> chosen_;
  std::vector<char> bytes_;
  std::uint64_t read_ = 0;
  bool ended_ = false;
};

}  // namespace

reader_pointer open_packed(stream& in, const packing& how, const input_options& options, subject& about) {
  if (how.planar && how.channels > 1) {
    packing planes = how;
    if (!in.is_seekable()) planes.at = 0;  // what is left of a pipe goes into a file of its own
    in.make_seekable();
    return std::make_unique<packed>(in, planes, options, about);
  }
  packing dense = how;
  dense.planar = false;
  return std::make_unique<packed>(in, dense, options, about);
}

void note_truncation(subject& about, std::uint64_t found, std::uint64_t promised) {
  about.truncated = true;
  about.warnings.push_back("cut short: " + std::to_string(found) + " of " + std::to_string(promised) +
                           " samples were found");
}

}  // namespace tool
