// SPDX-License-Identifier: MIT
// The binary form: a short header and the scalars as they stand in memory. Written in the native byte order;
// read in either, in all three generations of the header.
#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <optional>

#include "core/storage.h"
#include "io/io.h"

namespace sigpak {
namespace {

constexpr std::uint32_t magic_double = 0xEB0110BE;  // first generation: doubles, no type word
constexpr std::uint32_t magic_float = 0xEB0220BE;   // second: floats, no type word
constexpr std::uint32_t magic_typed = 0xEB0330BE;   // current: a type word tells the width
constexpr std::uint32_t type_base = 0x400;          // the low byte of the type word is the scalars' width
constexpr std::uint32_t type_width = 0xff;

constexpr index first_room = index{1} << 17;  // scalars sized for on the word of the header alone
constexpr index piece = 2048;                 // scalars converted at a time

template <class T> T byte_reversed(T x) noexcept {
  auto bytes = std::bit_cast<std::array<unsigned char, sizeof(T)>>(x);
  std::reverse(bytes.begin(), bytes.end());
  return std::bit_cast<T>(bytes);
}

// How many arrived.
template <class T> index read_items(T* items, index count, std::FILE* f) noexcept {
  return count == 0 ? 0
                    : static_cast<index>(std::fread(items, sizeof(T), static_cast<std::size_t>(count), f));
}

template <class T> bool write_items(const T* items, index count, std::FILE* f) noexcept {
  const auto wanted = static_cast<std::size_t>(count);
  return wanted == 0 || std::fwrite(items, sizeof(T), wanted, f) == wanted;
}

template <class T> bool read_field(T* field, std::FILE* f, bool swapped) noexcept {
  T stored;
  if (read_items(&stored, 1, f) != 1) return false;
  *field = swapped ? byte_reversed(stored) : stored;
  return true;
}

struct layout {
  std::uint32_t magic;  // as this machine would have written it
  bool swapped;
};

std::optional<layout> read_magic(std::FILE* f) noexcept {
  std::uint32_t magic = 0;
  if (!read_field(&magic, f, false)) return std::nullopt;
  for (const bool swapped : {false, true}) {
    const std::uint32_t native = swapped ? byte_reversed(magic) : magic;
    if (native == magic_double || native == magic_float || native == magic_typed) {
      return layout{native, swapped};
    }
  }
  return std::nullopt;
}

constexpr std::uint32_t stored_width(std::uint32_t magic, std::uint32_t type) noexcept {
  return magic == magic_double ? sizeof(double) : magic == magic_float ? sizeof(float) : type & type_width;
}

// How many of the n scalars arrived.
template <class Stored, class T> index read_scalars(T* data, index n, std::FILE* f, bool swapped) noexcept {
  if constexpr (std::same_as<Stored, T>) {
    const index arrived = read_items(data, n, f);
    if (swapped) std::transform(data, data + arrived, data, byte_reversed<T>);
    return arrived;
  } else {
    Stored stored[piece];
    index arrived = 0;
    for (index last = piece; arrived < n && last == piece; arrived += last) {
      last = read_items(stored, std::min(piece, n - arrived), f);
      std::transform(stored, stored + last, data + arrived,
                     [swapped](Stored x) { return static_cast<T>(swapped ? byte_reversed(x) : x); });
    }
    return arrived;
  }
}

// The room doubles with what has arrived, so that a header cannot make us touch more memory than about twice
// what its stream really holds; a pipe does not tell that beforehand. The record counts the points that
// arrived whole, however the reading ends.
template <class Stored, record V>
status read_samples(V* v, index wanted, std::FILE* f, bool swapped) noexcept {
  const index per_point = width(v);
  if (wanted > std::numeric_limits<std::int32_t>::max() / per_point) return failed;
  index room = std::max<index>({first_room, v->alloc}) / per_point;
  do {
    const index have = length(v);
    const index asked = std::min(room, wanted);
    v->points = static_cast<std::uint32_t>(asked);
    const bool sized =
        (have == 0 ? allocate(v) : reallocate(v, static_cast<std::uint32_t>(have), v->complex)) == ok;
    const index at = have * per_point;
    const index arrived =
        sized ? have + read_scalars<Stored>(v->data + at, asked * per_point - at, f, swapped) / per_point : 0;
    v->points = static_cast<std::uint32_t>(arrived);
    if (arrived < asked) return failed;
    room = 2 * asked;
  } while (length(v) < wanted);
  return vector_read;
}

template <class Stored, record V>
status read_spaced(V* v, std::uint32_t points, std::FILE* f, bool swapped) noexcept {
  Stored delta;
  if (!read_field(&delta, f, swapped)) return failed;
  v->delta = static_cast<scalar<V>>(delta);
  return read_samples<Stored>(v, points, f, swapped);
}

template <record V> bool write_header(const V* v, std::FILE* f) noexcept {
  const std::uint32_t words[] = {magic_typed, type_base | sizeof(scalar<V>), v->points,
                                 static_cast<std::uint32_t>(v->complex)};
  return write_items(words, std::ssize(words), f) && write_items(&v->delta, 1, f);
}

}  // namespace

template <record V> status read_binary(V* v, std::FILE* f) noexcept {
  const auto found = read_magic(f);
  if (!found) return failed;
  std::uint32_t type = 0;
  std::uint32_t points = 0;
  if (found->magic == magic_typed && !read_field(&type, f, found->swapped)) return failed;
  if (!read_field(&points, f, found->swapped)) return failed;
  if (!read_field(&v->complex, f, found->swapped)) return failed;
  switch (stored_width(found->magic, type)) {
    case sizeof(double):
      return read_spaced<double>(v, points, f, found->swapped);
    case sizeof(float):
      return read_spaced<float>(v, points, f, found->swapped);
    default:
      return failed;
  }
}

template <record V> status write_binary(const V* v, std::FILE* f, parts wanted) noexcept {
  if (wanted.header && !write_header(v, f)) return failed;
  return !wanted.body || write_items(v->data, scalars(v), f) ? ok : failed;
}

template status read_binary(dsp_vec*, std::FILE*) noexcept;
template status read_binary(dspf_vec*, std::FILE*) noexcept;
template status write_binary(const dsp_vec*, std::FILE*, parts) noexcept;
template status write_binary(const dspf_vec*, std::FILE*, parts) noexcept;

}  // namespace sigpak
