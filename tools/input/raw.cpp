// SPDX-License-Identifier: MIT
// Samples without a header, as their form is told.
#include <charconv>
#include <cstdlib>

#include "input/packed.h"

namespace tool {
namespace {

constexpr const char* help =
    "; a form is s, u or f, bits, and le or be: s16le, u8, f32be; c in front for complex, 2x for two "
    "channels";

// Takes "2x" off the front.
std::size_t taken_count(std::string_view& text) {
  std::size_t count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc() || end == text.data() + text.size() || *end != 'x') return 1;
  text.remove_prefix(static_cast<std::size_t>(end + 1 - text.data()));
  return count;
}

bool taken(std::string_view& text, std::string_view word) {
  if (!text.starts_with(word)) return false;
  text.remove_prefix(word.size());
  return true;
}

bool parse_form(std::string_view text, number_form& form) {
  using kind = number_form::kind;
  if (taken(text, "f")) {
    form.type = kind::real;
  } else if (taken(text, "s") || taken(text, "i")) {
    form.type = kind::integer;
  } else if (taken(text, "u")) {
    form.type = kind::natural;
  } else {
    return false;
  }
  std::size_t bits = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bits);
  if (error != std::errc() || bits % 8 != 0) return false;
  form.size = bits / 8;
  form.big_endian = text.ends_with("be");
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  if (!text.empty() && text != "le" && text != "be") return false;
  if (form.type == kind::real) return bits == 32 || bits == 64;
  return bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

}  // namespace

reader_pointer open_raw(stream& in, const input_options& options, subject& about) {
  std::string_view text = options.raw;
  packing how;
  how.channels = taken_count(text);
  about.is_complex = taken(text, "c");
  if (how.channels < 1 || how.channels > 4096 || !parse_form(text, how.form))
    throw usage_error("--raw: " + options.raw + " is no form of numbers" + help);
  how.form = full_scale(how.form);
  about.is_full_scale = how.form.type != number_form::kind::real;
  // Receivers of eight bits know no zero: their bytes 0 to 255 are -1 to 1.
  if (about.is_complex && how.form.type == number_form::kind::natural) how.form.scale = 1 / 127.5;
  about.kind = "raw " + options.raw;
  return open_packed(in, how, options, about);
}

}  // namespace tool
