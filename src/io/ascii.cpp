// SPDX-License-Identifier: MIT
// The ASCII form, read: numbers between white space, and comment lines that may declare what they mean.
#include <limits>

#include "core/storage.h"
#include "io/io.h"
#include "io/number.h"

namespace sigpak {
namespace {

constexpr index growth = 1024;       // values that the storage grows by
constexpr int comment_length = 255;  // characters of a comment line that are looked at

// What follows the key at the start of a line. A blank in the key stands for any white space, or none.
std::optional<std::string_view> after_key(std::string_view line, std::string_view key) noexcept {
  const auto skip_space = [&line] {
    while (!line.empty() && is_space(static_cast<unsigned char>(line.front()))) line.remove_prefix(1);
  };
  for (const char letter : key) {
    if (letter == ' ') {
      skip_space();
    } else if (line.empty() || line.front() != letter) {
      return std::nullopt;
    } else {
      line.remove_prefix(1);
    }
  }
  skip_space();
  return line;
}

// An integer at the front of the text, pinned to what its type can hold.
template <class Integer> std::optional<Integer> leading_integer(std::string_view text) noexcept {
  const bool negative = text.starts_with('-');
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  Integer value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    return negative ? std::numeric_limits<Integer>::min() : std::numeric_limits<Integer>::max();
  }
  return result.ec == std::errc() ? std::optional(value) : std::nullopt;
}

template <record V> class ascii_reader {
 public:
  ascii_reader(V* v, std::FILE* f) noexcept : v_(v), f_(f), in_(f) {}

  status read() noexcept {
    v_->delta = 1;
    v_->complex = 0;
    v_->points = 0;
    step next = grow();
    while (next == step::go_on) next = take(in_.next());
    return finish(next);
  }

 private:
  using T = scalar<V>;
  enum class step { go_on, end, fail };

  step grow() noexcept {
    const std::uint32_t old = v_->points;
    v_->points += growth;
    return reallocate(v_, old, 0) == ok ? step::go_on : step::fail;
  }

  step at_end() const noexcept { return std::feof(f_) != 0 ? step::end : step::fail; }

  step take(int c) noexcept {
    if (c == EOF) return at_end();
    if (is_space(c)) return step::go_on;
    if (c != '#' && complete()) return std::ungetc(c, f_) != EOF ? step::end : step::fail;
    if (std::ungetc(c, f_) == EOF) return step::fail;
    if (c != '#') return take_value(c == '-');
    take_comment();
    return step::go_on;
  }

  // All values that the header has declared are there.
  bool complete() const noexcept { return declared_ && count_ / (complex_ ? 2 : 1) >= *declared_; }

  step take_value(bool negative) noexcept {
    auto value = scan_number<T>(in_);
    if (!value) return step::fail;
    bool ended = false;
    if (*value == 0) {  // perhaps the 0 of 0x
      const int c = in_.next();
      ended = c == EOF;
      if (c == 'x') {
        value = hexadecimal(negative);
        if (!value) return step::fail;
      } else {
        in_.give_back(c);
      }
    }
    v_->data[count_++] = *value;
    if (ended) return at_end();
    if (complete()) return step::end;
    return count_ % growth == 0 ? grow() : step::go_on;
  }

  // 32 bits in two's complement: 0xffffffff is -1.
  std::optional<T> hexadecimal(bool negative) noexcept {
    const int c = in_.next();
    in_.give_back(c);
    if (!is_hex_digit(c)) return std::nullopt;
    const auto bits = scan_hexadecimal(in_);
    if (!bits) return std::nullopt;
    return static_cast<T>(static_cast<std::int32_t>(negative ? 0U - *bits : *bits));
  }

  // A line loses its last character, the line end normally. What does not fit is passed over.
  void take_comment() noexcept {
    char line[comment_length];
    std::size_t length = 0;
    int c = 0;
    while (length < comment_length && c != '\n' && (c = in_.next()) != EOF) {
      line[length++] = static_cast<char>(c);
    }
    while (c != '\n' && c != EOF) c = in_.next();
    declare({line, length - 1});
  }

  void declare(std::string_view line) noexcept {
    if (const auto text = after_key(line, "#DSP points = ")) {
      if (const auto points = leading_integer<std::int64_t>(*text))
        declared_ = std::max<std::int64_t>(*points, 0);
    } else if (const auto flag = after_key(line, "#DSP complex = ")) {
      if (const auto word = leading_integer<std::int32_t>(*flag)) complex_ = *word != 0;
    } else if (const auto spacing = after_key(line, "#DSP delta = ")) {
      text_source characters(*spacing);
      if (const auto delta = scan_number<T>(characters)) v_->delta = *delta;
    }
  }

  status finish(step last) noexcept {
    v_->points = v_->data != nullptr ? static_cast<std::uint32_t>(count_) : 0;
    if (last == step::fail) return failed;
    if (complex_) {
      v_->complex = 1;
      if (count_ % 2 != 0) v_->data[count_++] = 0;  // the block has room: its length is even
      v_->points = static_cast<std::uint32_t>(count_ / 2);
    }
    return declared_ && *declared_ != v_->points ? failed : vector_read;
  }

  V* v_;
  std::FILE* f_;
  stream_source in_;
  index count_ = 0;  // values read
  std::optional<std::int64_t> declared_;
  bool complex_ = false;
};

}  // namespace

template <record V> status read_ascii(V* v, std::FILE* f) noexcept { return ascii_reader<V>(v, f).read(); }

template status read_ascii(dsp_vec*, std::FILE*) noexcept;
template status read_ascii(dspf_vec*, std::FILE*) noexcept;

}  // namespace sigpak
