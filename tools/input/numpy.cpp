// SPDX-License-Identifier: MIT
// Arrays of NumPy (NEP 1, "A Simple File Format for NumPy Arrays").
#include <algorithm>
#include <charconv>

#include "input/packed.h"

namespace tool {
namespace {

constexpr std::size_t longest_header = 1 << 16;
constexpr std::uint64_t most_channels = 4096;

[[noreturn]] void refuse(const std::string& what) { throw data_error("npy: " + what); }

// What stands behind 'key': in the dictionary of the header.
std::string_view value_of(std::string_view dictionary, std::string_view key) {
  auto at = dictionary.find(key);
  if (at != std::string_view::npos) at = dictionary.find(':', at);
  if (at == std::string_view::npos) refuse("the header has no " + std::string(key));
  const auto start = dictionary.find_first_not_of(": ", at);
  return start == std::string_view::npos ? std::string_view() : dictionary.substr(start);
}

void parse_type(std::string_view dictionary, number_form& form, bool& pairs) {
  std::string_view text = value_of(dictionary, "'descr'");
  const std::string shown(text.substr(0, text.find(',')));
  if (text.size() < 5 || text[0] != '\'') refuse("the type " + shown + " is no plain number");
  form.big_endian = text[1] == '>';
  const char kind = text[2];
  text = text.substr(3, text.find('\'', 3) - 3);
  form.size = 0;
  std::from_chars(text.data(), text.data() + text.size(), form.size);
  pairs = kind == 'c';
  if (pairs) form.size /= 2;
  using type = number_form::kind;
  form.type = kind == 'f' || pairs ? type::real : kind == 'i' ? type::integer : type::natural;
  const bool whole = (kind == 'i' || kind == 'u') && (form.size == 1 || form.size == 2);
  const bool known =
      (std::string_view("fciu").find(kind) != std::string_view::npos) && (form.size == 4 || form.size == 8);
  if (!known && !whole && !(kind == 'b' && form.size == 1)) refuse("the type " + shown + " cannot be read");
}

std::vector<std::uint64_t> parse_shape(std::string_view dictionary) {
  std::string_view text = value_of(dictionary, "'shape'");
  text = text.substr(0, text.find(')'));
  std::vector<std::uint64_t> shape;
  while (true) {
    const auto start = text.find_first_of("0123456789");
    if (start == std::string_view::npos) return shape;
    text.remove_prefix(start);
    std::uint64_t size = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), size);
    if (error != std::errc() || size > std::uint64_t{1} << 48) refuse("the shape is beyond reason");
    shape.push_back(size);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  }
}

std::string take_dictionary(stream& in) {
  if (!in.wait_for(12)) refuse("the header is cut short");
  const char* const bytes = in.waiting().data();
  const bool first_version = bytes[6] == 1;
  const std::size_t start = first_version ? 10 : 12;
  const std::size_t size =
      first_version ? load<std::uint16_t>(bytes + 8, false) : load<std::uint32_t>(bytes + 8, false);
  if (size > longest_header || !in.wait_for(start + size)) refuse("the header is cut short");
  const std::string dictionary(in.waiting().substr(start, size));
  in.take(start + size);
  return dictionary;
}

}  // namespace

bool is_numpy(std::string_view head) { return head.starts_with("\x93NUMPY"); }

// The longer axis is time; where it is the second in memory order, a channel stands as a whole.
reader_pointer open_numpy(stream& in, const input_options& options, subject& about) {
  const std::string dictionary = take_dictionary(in);
  packing how;
  parse_type(dictionary, how.form, about.is_complex);
  auto shape = parse_shape(dictionary);
  if (shape.empty() || shape.size() > 2) refuse("an array of one or two axes is needed");
  shape.resize(2, 1);
  bool planar = value_of(dictionary, "'fortran_order'").starts_with("True");
  if (shape[0] < shape[1]) {
    std::swap(shape[0], shape[1]);
    planar = !planar;
  }
  if (shape[1] < 1 || shape[1] > most_channels) refuse("no axis of the array can be channels");
  how.frames = shape[0];
  how.channels = static_cast<std::size_t>(shape[1]);
  how.endless = false;
  how.at = in.position();
  how.planar = planar && how.channels > 1;
  about.kind = about.is_complex ? "complex array" : "array";
  return open_packed(in, how, options, about);
}

}  // namespace tool
