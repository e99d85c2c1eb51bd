// SPDX-License-Identifier: MIT
// Vector files in the library's own forms. The records of a stream are one signal, unless each is asked for.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "input/channels.h"
#include "input/kinds.h"
#include "input/numbers.h"
#include "input/packed.h"
#include "record.h"

namespace tool {
namespace {

// The magics of a binary vector; all but the first come without a word that tells the type.
constexpr std::uint32_t magic_typed = 0xEB0330BE;
constexpr std::uint32_t magic_double = 0xEB0110BE;
constexpr std::uint32_t magic_float = 0xEB0220BE;

bool is_magic(std::uint32_t word) {
  return word == magic_typed || word == magic_double || word == magic_float;
}

struct record_header {
  double delta = 1;
  std::uint64_t points = 0;
  bool pairs = false;
  number_form form;
};

// The rest of a stream as a file of the C library, for the reader of text vectors.
ssize_t read_rest(void* from, char* to, std::size_t count) {
  stream& in = *static_cast<stream*>(from);
  if (in.waiting().empty() && !in.more()) return 0;
  const std::size_t n = std::min(count, in.waiting().size());
  return static_cast<ssize_t>(in.read(to, n));
}

struct file_closer {
  void operator()(std::FILE* f) const noexcept { std::fclose(f); }
};

class vectors final : public reader {
 public:
  vectors(stream& in, const input_options& options, subject& about)
      : in_(in), given_rate_(options.rate), each_(options.each), about_(about) {
    if (!next_record()) throw data_error("the vector is malformed or cut short");
    take_form();
    about_.kind = about_.is_complex ? "complex vector" : "vector";
    choose_channels(options.channels, 1, about_);
  }

  std::size_t read(std::span<double> frames) override {
    std::size_t done = 0;
    while (done < frames.size()) {
      done += read_record(frames.subspan(done));
      if (done == frames.size() || each_ || !next_record()) break;
      check_form();
    }
    return done;
  }

  bool next_piece() override {
    if (!each_) return false;
    skip_record();
    if (!next_record()) return false;
    take_form();
    return true;
  }

 private:
  bool next_record() {
    if (about_.truncated || !(text_ != nullptr || in_.wait_for(4))) return false;
    const char* const bytes = in_.waiting().data();
    if (text_ == nullptr &&
        (is_magic(load<std::uint32_t>(bytes, false)) || is_magic(load<std::uint32_t>(bytes, true))))
      return take_header();
    return next_text_record();
  }

  bool take_header() {
    const bool big = is_magic(load<std::uint32_t>(in_.waiting().data(), true));
    const std::uint32_t magic = load<std::uint32_t>(in_.waiting().data(), big);
    const std::size_t type_size = magic == magic_typed ? 4 : 0;
    if (!in_.wait_for(12 + type_size)) throw data_error("the vector is malformed or cut short");
    const auto word = [&](std::size_t at) { return load<std::uint32_t>(in_.waiting().data() + at, big); };
    const std::uint32_t width = magic == magic_typed ? word(4) & 0xFF : magic == magic_float ? 4 : 8;
    if (width != 4 && width != 8) throw data_error("the vector is malformed or cut short");
    head_.form.size = width;
    head_.form.big_endian = big;
    head_.points = word(4 + type_size);
    head_.pairs = word(8 + type_size) != 0;
    const std::size_t size = 12 + type_size + head_.form.size;
    if (!in_.wait_for(size)) throw data_error("the vector is malformed or cut short");
    convert(head_.form, in_.waiting().data() + 12 + type_size, 0, 1, &head_.delta, 1);
    in_.take(size);
    left_ = head_.points * (head_.pairs ? 2 : 1);
    return true;
  }

  // White space is passed over first: behind a text vector its last line end still stands.
  bool next_text_record() {
    if (text_ == nullptr) {
      text_.reset(fopencookie(&in_, "r", {read_rest, nullptr, nullptr, nullptr}));
      if (text_ == nullptr) throw resource_error("not enough memory");
    }
    int c = 0;
    while ((c = std::getc(text_.get())) == ' ' || (c >= '\t' && c <= '\r')) {
    }
    if (c == EOF) return false;
    std::ungetc(c, text_.get());
    if (dspf_fread(&from_text_, text_.get()) != 1) throw data_error("the vector is malformed or cut short");
    head_ = {from_text_.delta, from_text_.points, from_text_.is_complex(), {}};
    left_ = from_text_.scalars().size();
    return true;
  }

  std::size_t read_record(std::span<double> out) {
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(out.size(), left_));
    const std::size_t got = text_ != nullptr ? copy_text(out.first(count)) : read_binary(out.first(count));
    left_ -= got;
    return got;
  }

  std::size_t copy_text(std::span<double> out) {
    const auto all = from_text_.scalars();
    std::copy_n(all.end() - static_cast<std::ptrdiff_t>(left_), out.size(), out.begin());
    return out.size();
  }

  std::size_t read_binary(std::span<double> out) {
    const std::size_t size = head_.form.size;
    std::size_t done = 0;
    while (done < out.size()) {
      const std::size_t wanted = std::min(out.size() - done, sizeof bytes_ / size);
      std::size_t got = in_.read(bytes_, wanted * size) / size;
      if (head_.pairs) got -= got % 2;
      convert(head_.form, bytes_, size, got, out.data() + done, 1);
      done += got;
      if (got == wanted) continue;
      const std::size_t parts = head_.pairs ? 2 : 1;
      note_truncation(about_, head_.points - (left_ - done) / parts, head_.points);
      left_ = done;
      break;
    }
    return done;
  }

  void skip_record() {
    double unused[512];
    while (left_ > 0 && read_record(unused) > 0) {
    }
  }

  void take_form() {
    about_.is_complex = head_.pairs;
    about_.rate = given_rate_;
    if (given_rate_ > 0) return;
    if (!(head_.delta > 0) || !std::isfinite(1 / head_.delta)) {
      throw data_error("the spacing of the samples is " + std::to_string(head_.delta) + "; give --rate");
    }
    about_.rate = 1 / head_.delta;
    delta_ = head_.delta;
  }

  void check_form() const {
    const bool same = head_.pairs == about_.is_complex && (given_rate_ > 0 || head_.delta == delta_);
    if (!same) throw data_error("the records differ in spacing or form; --each takes each by itself");
  }

  stream& in_;
  double given_rate_;
  bool each_;
  subject& about_;
  std::unique_ptr<std::FILE, file_closer> text_;
  record_header head_;
  record from_text_;
  double delta_ = 1;
  std::uint64_t left_ = 0;  // scalars of the record that were not yet delivered
  char bytes_[1 << 15];
};

}  // namespace

bool is_vector(std::string_view head) {
  if (head.size() >= 4 &&
      (is_magic(load<std::uint32_t>(head.data(), false)) || is_magic(load<std::uint32_t>(head.data(), true))))
    return true;
  const auto start = head.find_first_not_of(" \t\r\n\v\f");
  return start != std::string_view::npos && head.substr(start).starts_with("#DSP");
}

reader_pointer open_vectors(stream& in, const input_options& options, subject& about) {
  return std::make_unique<vectors>(in, options, about);
}

}  // namespace tool
