// SPDX-License-Identifier: MIT
// Signals as files: vectors and CSV; and which form is wanted.
#include "output/signal_writer.h"

#include <algorithm>

#include "output/number.h"
#include "output/vector_text.h"

namespace tool {
namespace {

constexpr std::size_t block_points = std::size_t{1} << 16;

// A stream of records, each a block of the signal.
class vector_writer final : public signal_writer {
 public:
  vector_writer(writer& out, const subject& about) : out_(out), block_(block_points, about.is_complex) {
    if (about.channels.size() != 1)
      throw data_error(
          "a vector holds one channel; --channel chooses it, --format wav, npy and csv hold all");
    block_.delta = about.rate > 0 ? 1 / about.rate : 1;
  }

  void write(std::span<const double> frames) override {
    while (!frames.empty()) {
      const auto room = block_.scalars().subspan(filled_);
      const auto part = frames.first(std::min(frames.size(), room.size()));
      std::ranges::copy(part, room.begin());
      filled_ += part.size();
      frames = frames.subspan(part.size());
      if (part.size() == room.size()) put();
    }
  }

  void finish() override {
    if (filled_ > 0 || !any_) put();
  }

 private:
  void put() {
    block_.points = static_cast<std::uint32_t>(filled_ / (block_.is_complex() ? 2 : 1));
    out_.write(vector_text(block_));
    block_.points = block_points;
    filled_ = 0;
    any_ = true;
  }

  writer& out_;
  record block_;
  std::size_t filled_ = 0;
  bool any_ = false;
};

// A cell that the names of others cannot be taken for.
std::string quoted(const std::string& cell) {
  if (cell.find_first_of(",\"\n\r#") == std::string::npos) return cell;
  std::string out = "\"";
  for (const char c : cell) out += c == '"' ? '\'' : c == '\n' || c == '\r' ? ' ' : c;
  return out + '"';
}

// The time first where there is one, then the channels.
class csv_writer final : public signal_writer {
 public:
  csv_writer(writer& out, const subject& about)
      : out_(out), rate_(about.rate), width_(about.scalars_per_frame()) {
    std::string heading = rate_ > 0 ? "time_" + about.time_unit + "," : "";
    for (const auto& c : about.channels) {
      const bool numbered = c.name.find_first_not_of("0123456789") == std::string::npos;
      const std::string name = numbered ? "ch" + c.name : c.name;
      heading += about.is_complex ? quoted(name + "_re") + "," + quoted(name + "_im") : quoted(name);
      heading += ',';
    }
    heading.back() = '\n';
    out_.write(heading);
  }

  void write(std::span<const double> frames) override {
    for (std::size_t i = 0; i < frames.size(); i += width_) {
      std::string line = rate_ > 0 ? exact_text(static_cast<double>(frame_++) / rate_) + "," : "";
      for (std::size_t k = 0; k < width_; ++k) line += exact_text(frames[i + k]) + ",";
      line.back() = '\n';
      out_.write(line);
    }
  }
  void finish() override {}

 private:
  writer& out_;
  double rate_;
  std::size_t width_;
  std::uint64_t frame_ = 0;
};

}  // namespace

std::string format_of_name(const std::string& name) {
  const std::string last = name.substr(name.rfind('/') + 1);
  const auto dot = last.rfind('.');
  std::string end = dot == std::string::npos ? "" : last.substr(dot + 1);
  std::ranges::transform(end, end.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (end == "txt") return "csv";
  if (end == "aif") return "aiff";
  for (const char* const known : {"npy", "wav", "flac", "aiff", "csv"}) {
    if (end == known) return known;
  }
  for (const char* const known : {"", "vec", "dat", "bin"}) {
    if (end == known) return "vector";
  }
  throw usage_error("-o " + name + ": no form is known by ." + end + "; --format tells one");
}

std::unique_ptr<signal_writer> open_signal_writer(writer& out, const signal_format& format,
                                                  const subject& about) {
  if (format.name == "npy") return open_numpy_writer(out, format.bits, about);
  const bool plain = format.name == "csv" || format.name == "vector";
  if (!plain) return open_sound_writer(out, format, about);
  if (format.bits != 0) throw usage_error("--bits is for npy and sound");
  if (format.name == "csv") return std::make_unique<csv_writer>(out, about);
  if (out.is_terminal())
    throw usage_error("a vector is not for a terminal; -o FILE, a pipe, or --format csv");
  return std::make_unique<vector_writer>(out, about);
}

}  // namespace tool
