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

template <class T> bool read_items(T* items, index count, std::FILE* f) noexcept {
  const auto wanted = static_cast<std::size_t>(count);
  return wanted == 0 || std::fread(items, sizeof(T), wanted, f) == wanted;
}

template <class T> bool write_items(const T* items, index count, std::FILE* f) noexcept {
  const auto wanted = static_cast<std::size_t>(count);
  return wanted == 0 || std::fwrite(items, sizeof(T), wanted, f) == wanted;
}

template <class T> bool read_field(T* field, std::FILE* f, bool swapped) noexcept {
  T stored;
  if (!read_items(&stored, 1, f)) return false;
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

template <class Stored, class T> bool read_scalars(T* data, index n, std::FILE* f, bool swapped) noexcept {
  if constexpr (std::same_as<Stored, T>) {
    if (!read_items(data, n, f)) return false;
    if (swapped) std::transform(data, data + n, data, byte_reversed<T>);
  } else {
    Stored stored[piece];
    for (index done = 0; done < n; done += piece) {
      const index count = std::min(piece, n - done);
      if (!read_items(stored, count, f)) return false;
      std::transform(stored, stored + count, data + done,
                     [swapped](Stored x) { return static_cast<T>(swapped ? byte_reversed(x) : x); });
    }
  }
  return true;
}

// The room doubles with what has arrived, so that a header cannot make us touch more memory than about twice
// what its stream really holds; a pipe does not tell that beforehand.
template <class Stored, record V> status read_samples(V* v, std::FILE* f, bool swapped) noexcept {
  const std::uint32_t points = v->points;
  const index per_point = width(v);
  if (index{points} * per_point > std::numeric_limits<std::int32_t>::max()) return allocate(v);
  index have = 0;
  index room = std::max<index>({first_room, v->alloc}) / per_point;
  bool complete = true;
  do {
    v->points = static_cast<std::uint32_t>(std::min<index>(room, points));
    const index now = length(v);
    complete =
        (have == 0 ? allocate(v) : reallocate(v, static_cast<std::uint32_t>(have), v->complex)) == ok &&
        read_scalars<Stored>(v->data + have * per_point, (now - have) * per_point, f, swapped);
    have = now;
    room = 2 * now;
  } while (complete && have < points);
  v->points = points;
  return complete ? vector_read : failed;
}

template <class Stored, record V> status read_spaced(V* v, std::FILE* f, bool swapped) noexcept {
  Stored delta;
  if (!read_field(&delta, f, swapped)) return failed;
  v->delta = static_cast<scalar<V>>(delta);
  return read_samples<Stored>(v, f, swapped);
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
  if (found->magic == magic_typed && !read_field(&type, f, found->swapped)) return failed;
  if (!read_field(&v->points, f, found->swapped)) return failed;
  if (!read_field(&v->complex, f, found->swapped)) return failed;
  switch (stored_width(found->magic, type)) {
    case sizeof(double):
      return read_spaced<double>(v, f, found->swapped);
    case sizeof(float):
      return read_spaced<float>(v, f, found->swapped);
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
