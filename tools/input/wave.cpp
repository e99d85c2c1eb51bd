// SPDX-License-Identifier: MIT
// WAV files of plain numbers, from pipes too (Microsoft, "Multiple Channel Audio Data and WAVE Files", 2007;
// files beyond 4 GB: EBU Tech 3306).
#include <optional>

#include "input/packed.h"

namespace tool {
namespace {

constexpr std::size_t longest_header = 1 << 22;

// Sizes that writers to pipes put where they cannot know better.
constexpr std::uint32_t unknown_from = 0x7FFFF000;

constexpr std::uint32_t pcm = 1;
constexpr std::uint32_t ieee_float = 3;
constexpr std::uint32_t extensible = 0xFFFE;

struct wave_format {
  std::uint32_t tag = 0;
  std::uint32_t channels = 0;
  std::uint32_t rate = 0;
  std::uint32_t bytes = 0;  // of a number
};

class header {
 public:
  explicit header(stream& in) : in_(in) {}

  // Stands behind the header of the samples when there is a format before them that is known.
  bool read() {
    big_ = in_.waiting().starts_with("RIFX");
    std::size_t at = 12;
    while (in_.wait_for(at + 8)) {
      const std::string_view name = in_.waiting().substr(at, 4);
      const std::uint32_t size = word(at + 4);
      if (name == "data") return take_data(at + 8, size);
      const std::size_t next = at + 8 + size + size % 2;
      if (next > longest_header || !in_.wait_for(next)) return false;
      if (in_.waiting().substr(at, 4) == "fmt " && size >= 16) take_format(at + 8, size);
      if (in_.waiting().substr(at, 4) == "ds64" && size >= 16) {
        long_size_ = load<std::uint64_t>(in_.waiting().data() + at + 16, big_);
      }
      at = next;
    }
    return false;
  }

  const wave_format& format() const { return format_; }
  bool is_big_endian() const { return big_; }
  std::optional<std::uint64_t> data_size() const { return data_size_; }

 private:
  std::uint32_t word(std::size_t at) const { return load<std::uint32_t>(in_.waiting().data() + at, big_); }
  std::uint32_t half(std::size_t at) const { return load<std::uint16_t>(in_.waiting().data() + at, big_); }

  void take_format(std::size_t at, std::uint32_t size) {
    format_.tag = half(at);
    if (format_.tag == extensible && size >= 26) format_.tag = half(at + 24);
    format_.channels = half(at + 2);
    format_.rate = word(at + 4);
    format_.bytes = (half(at + 14) + 7) / 8;
    const bool integers = format_.tag == pcm && format_.bytes >= 1 && format_.bytes <= 4;
    const bool floats = format_.tag == ieee_float && (format_.bytes == 4 || format_.bytes == 8);
    known_ =
        (integers || floats) && format_.channels > 0 && half(at + 12) == format_.channels * format_.bytes;
  }

  bool take_data(std::size_t at, std::uint32_t size) {
    if (!known_) return false;
    in_.take(at);
    if (size == 0xFFFFFFFF && long_size_) {
      data_size_ = long_size_;
    } else if (size != 0 || !in_.wait_for(1)) {
      const bool too_much = in_.size() == 0 || size > in_.size() - at;
      if (size < unknown_from || !too_much) data_size_ = size;
    }
    return true;
  }

  stream& in_;
  bool big_ = false;
  bool known_ = false;
  wave_format format_;
  std::optional<std::uint64_t> long_size_;
  std::optional<std::uint64_t> data_size_;
};

}  // namespace

bool is_wave(std::string_view head) {
  const bool riff = head.starts_with("RIFF") || head.starts_with("RIFX") || head.starts_with("RF64");
  return riff && head.substr(0, 12).ends_with("WAVE");
}

reader_pointer open_wave(stream& in, const input_options& options, subject& about) {
  header h(in);
  if (!h.read()) return nullptr;
  const wave_format& f = h.format();
  packing how;
  how.form.size = f.bytes;
  how.form.big_endian = h.is_big_endian();
  if (f.tag == pcm) {
    how.form.type = f.bytes == 1 ? number_form::kind::natural : number_form::kind::integer;
  }
  how.form = full_scale(how.form);
  how.channels = f.channels;
  if (const auto size = h.data_size()) {
    how.endless = false;
    how.frames = *size / (std::uint64_t{f.channels} * f.bytes);
  }
  about.kind = "WAV, " + std::to_string(8 * f.bytes) + (f.tag == pcm ? " bit" : " bit float");
  about.rate = f.rate;
  about.is_full_scale = true;
  return open_packed(in, how, options, about);
}

}  // namespace tool
