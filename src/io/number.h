// SPDX-License-Identifier: MIT
// Numbers read from characters, in the C locale whatever the program has set: decimal, exact in their
// rounding, "inf" and "nan". A token is the longest beginning of a number that the characters offer, as for
// scanf; when that is not a whole number ("1e", "-", "infi") nothing is read.
#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

namespace sigpak {

constexpr bool is_space(int c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool is_digit(int c) noexcept { return c >= '0' && c <= '9'; }
constexpr int lower(int c) noexcept { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c; }
constexpr bool is_hex_digit(int c) noexcept { return is_digit(c) || (lower(c) >= 'a' && lower(c) <= 'f'); }

// Characters of a stream. One can be given back.
class stream_source {
 public:
  explicit stream_source(std::FILE* f) noexcept : f_(f) {}
  int next() noexcept { return std::getc(f_); }
  void give_back(int c) noexcept {
    if (c != EOF) std::ungetc(c, f_);
  }

 private:
  std::FILE* f_;
};

// Characters of a text.
class text_source {
 public:
  explicit text_source(std::string_view text) noexcept : text_(text) {}
  int next() noexcept {
    if (text_.empty()) return EOF;
    const auto c = static_cast<unsigned char>(text_.front());
    text_.remove_prefix(1);
    return c;
  }
  void give_back(int c) noexcept {
    if (c != EOF) text_ = {text_.data() - 1, text_.size() + 1};
  }

 private:
  std::string_view text_;
};

// A decimal number taken digit by digit. However long it is, the digits kept decide its rounding: 767 can be
// needed to tell a double from the midpoint to its neighbour, and one more stands for whatever follows.
template <class T> class decimal {
 public:
  void append(int c, bool fraction) noexcept {
    any_ = true;
    const bool leading_zero = count_ == 0 && c == '0';
    if (!leading_zero && count_ < kept) {
      digits_[count_++] = static_cast<char>(c);
    } else if (!leading_zero) {
      inexact_ = inexact_ || c != '0';
      if (!fraction) ++exponent_;
      return;
    }
    if (fraction) --exponent_;
  }
  bool empty() const noexcept { return !any_; }
  void scale(std::int64_t power) noexcept { exponent_ += power; }

  T value() noexcept {
    if (count_ == 0) return 0;
    int length = count_;
    std::int64_t exponent = exponent_;
    if (inexact_) {
      digits_[length++] = '1';
      --exponent;
    }
    const bool large = exponent + length > 0;
    exponent = std::clamp<std::int64_t>(exponent, -most_exponent, most_exponent);
    digits_[length++] = 'e';
    char* const end = std::to_chars(digits_ + length, std::end(digits_), exponent).ptr;
    T x = 0;
    const auto result = std::from_chars(digits_, end, x);
    if (result.ec == std::errc::result_out_of_range) x = large ? std::numeric_limits<T>::infinity() : T(0);
    return x;
  }

 private:
  static constexpr int kept = 780;
  static constexpr std::int64_t most_exponent = 100'000;  // far beyond any finite value of `kept` digits
  char digits_[kept + 16];
  int count_ = 0;
  bool any_ = false;
  bool inexact_ = false;
  std::int64_t exponent_ = 0;  // of the last digit kept
};

// In the functions below c is the next character, already taken from the source.

template <class Source> bool take_word(Source& in, int& c, std::string_view word) noexcept {
  for (const char letter : word) {
    if (lower(c) != letter) return false;
    c = in.next();
  }
  return true;
}

// inf, infinity
template <class T, class Source> std::optional<T> scan_infinity(Source& in, int& c) noexcept {
  if (!take_word(in, c, "inf") || (lower(c) == 'i' && !take_word(in, c, "inity"))) return std::nullopt;
  return std::numeric_limits<T>::infinity();
}

// nan, nan(letters_and_digits)
template <class T, class Source> std::optional<T> scan_nan(Source& in, int& c) noexcept {
  if (!take_word(in, c, "nan")) return std::nullopt;
  if (c == '(') {
    do c = in.next();
    while (is_digit(c) || (lower(c) >= 'a' && lower(c) <= 'z') || c == '_');
    if (!take_word(in, c, ")")) return std::nullopt;
  }
  return std::numeric_limits<T>::quiet_NaN();
}

// The sign and digits after an e; they saturate far beyond every exponent that matters.
template <class Source> std::optional<std::int64_t> scan_exponent(Source& in, int& c) noexcept {
  constexpr std::int64_t most = std::int64_t{1} << 60;
  c = in.next();
  const bool negative = c == '-';
  if (c == '-' || c == '+') c = in.next();
  if (!is_digit(c)) return std::nullopt;
  std::int64_t power = 0;
  for (; is_digit(c); c = in.next()) power = std::min(most, std::min(most / 10, power) * 10 + (c - '0'));
  return negative ? -power : power;
}

template <class T, class Source> std::optional<T> scan_decimal(Source& in, int& c) noexcept {
  decimal<T> number;
  for (; is_digit(c); c = in.next()) number.append(c, false);
  if (c == '.') {
    for (c = in.next(); is_digit(c); c = in.next()) number.append(c, true);
  }
  if (number.empty()) return std::nullopt;
  if (lower(c) == 'e') {
    const auto power = scan_exponent(in, c);
    if (!power) return std::nullopt;
    number.scale(*power);
  }
  return number.value();
}

// The number at the front of the source; the character that ended it stays there.
template <class T, class Source> std::optional<T> scan_number(Source& in) noexcept {
  int c = in.next();
  const bool negative = c == '-';
  if (c == '-' || c == '+') c = in.next();
  const auto magnitude = lower(c) == 'i'   ? scan_infinity<T>(in, c)
                         : lower(c) == 'n' ? scan_nan<T>(in, c)
                                           : scan_decimal<T>(in, c);
  in.give_back(c);
  if (!magnitude) return std::nullopt;
  return negative ? -*magnitude : *magnitude;
}

// Hexadecimal digits, with a prefix 0x of their own or without; the low 32 bits of their value.
template <class Source> std::optional<std::uint32_t> scan_hexadecimal(Source& in) noexcept {
  int c = in.next();
  bool any = false;
  if (c == '0') {
    c = in.next();
    any = lower(c) != 'x';
    if (!any) c = in.next();
  }
  std::uint32_t value = 0;
  for (; is_hex_digit(c); c = in.next()) {
    value = value << 4 | static_cast<std::uint32_t>(is_digit(c) ? c - '0' : lower(c) - 'a' + 10);
    any = true;
  }
  in.give_back(c);
  return any ? std::optional(value) : std::nullopt;
}

}  // namespace sigpak
