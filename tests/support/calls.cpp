// SPDX-License-Identifier: MIT
// Records and arguments out of bytes, and the table of the operations.
#include "support/calls.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

namespace sigpak::test {
namespace {

constexpr index lengths[] = {0,   1,   2,   3,   4,   5,   6,   7,   8,   9,   12,  15,  16,  17,  20,  30,
                             31,  32,  33,  37,  45,  61,  63,  64,  65,  67,  90,  97,  100, 112, 120, 127,
                             128, 129, 130, 200, 240, 241, 255, 256, 257, 300, 360, 500, 512, 513, 600, 1009};
constexpr double deltas[] = {1, 1, 1, 0.5, 0.25, 0.03125, 0.015625, 2, 0, -1, 1e15, NAN};
constexpr double numbers[] = {0,      1,     -1,     0.5,      0.25,  0.125,    0.75,     0.9375, 2,
                              3,      -0.0,  8.5,    20,       60,    100,      1e-3f,    1e-30f, 1e15,
                              1e16,   3e38f, -3e38f, INFINITY, NAN,   -0.5,     10,       120,    1.5,
                              0.0625, -2,    45,     1e4,      4e-45, 0.33333f, 2.71828f, 1024,   -INFINITY};
constexpr std::uint8_t of_states = place<dsp_vec>::count - 1;  // the record that states have for themselves
constexpr std::uint8_t rising = 3;                             // a way to fill
constexpr std::uint8_t exact_fills = 10;                       // those below ask no library of mathematics
constexpr const char* window_names[] = {"Hann", "DSP_WINDOW_KAISER80", "p310", "no such", "", "DSP_WINDOW_"};

std::uint32_t mixed(std::uint32_t x) {
  x = (x ^ x >> 16) * 0x7feb352dU;
  x = (x ^ x >> 15) * 0x846ca68bU;
  return x ^ x >> 16;
}

double noise(const recipe& r, index i) {
  return (static_cast<double>(mixed(static_cast<std::uint32_t>(i) * 256U + r.seed) >> 16) - 32768) * 0x1p-12;
}

const std::vector<double> cosines = [] {
  std::vector<double> all;
  for (int i = 0; i < 256; ++i)
    all.push_back(static_cast<double>(std::cos(0.024543693F * static_cast<float>(i))));
  return all;
}();

double special(const recipe& r, index i) {
  constexpr double values[] = {0,      -0.0,  1,        -1,        1e15, -1e15, 3e38f, -3e38f,
                               1e-38f, 4e-45, INFINITY, -INFINITY, NAN,  2,     1e16,  700};
  return values[mixed(static_cast<std::uint32_t>(i) + r.seed * 77U) % std::size(values)];
}

double sample(const recipe& r, index i) {
  switch (r.fill % 12) {
    case 0:
    case 1:
    case 2:
      return noise(r, i);
    case rising:
      return static_cast<double>(i) - (r.seed & 3) + (r.seed < 128 ? 0 : noise(r, i) / 32);
    case 4:
      return static_cast<double>(mixed(static_cast<std::uint32_t>(i) + r.seed) % 5);
    case 5:
      return r.seed % 4;
    case 6:
      return special(r, i);
    case 7:
      return i == r.seed % 40 ? special(r, i) : noise(r, i);
    case 8:
      return 1.0 / 64 / static_cast<double>(1 + std::abs(i - r.points / 2) * (r.seed % 4));
    case 9:
      return noise(r, i) * 0x1p70;
    default:
      return cosines[static_cast<std::size_t>(r.seed * i) % cosines.size()];
  }
}

// Small numbers, codes, flags of all the places where operations have them, lengths, and the ends of the
// range.
std::int32_t integer_of(std::uint8_t way, std::uint8_t low) {
  constexpr std::int32_t telling[] = {-1, INT32_MAX, INT32_MIN, 1 << 24, (1 << 24) + 1, 1 << 16, 1 << 30,
                                      -2, 4096,      100,       101};
  switch (way % 8) {
    case 0:
      return low % 4;
    case 1:
      return low % 64;
    case 2:
      return low;
    case 3:
      return low % 16 | 16 << way / 8 % 8;
    case 4:
      return low << 8 | way / 8;
    case 5:
      return telling[low % std::size(telling)];
    case 6:
      return static_cast<std::int32_t>(lengths[low % std::size(lengths)]);
    default:
      return low % 8 | (low & 0xf0) << 1 | way / 64 << 10;
  }
}

std::string_view bare(const char* parameter) {
  std::string_view name = parameter;
  if (name.ends_with('?')) name.remove_suffix(1);
  return name;
}

template <std::size_t N> bool is_one_of(std::string_view name, const std::string_view (&names)[N]) {
  return std::find(names, names + N, name) != names + N;
}

// What a parameter of each type takes of an argument.

template <record V> V* record_of(place<V>& p, const argument& a) {
  return a.missing ? nullptr : p.at(a.record);
}

template <record V> const dsp_vec* times_of(place<V>& p, const argument& a) {
  if (a.missing) return nullptr;
  if constexpr (is_double<V>) {
    return p.at(a.record);
  } else {
    const V* const from = p.at(a.record);
    std::free(p.times.data);
    p.times = {static_cast<double>(from->delta), nullptr, 0, from->points, from->complex, 0};
    p.times.data =
        static_cast<double*>(std::malloc(static_cast<std::size_t>(scalars(from) + 1) * sizeof(double)));
    std::copy_n(from->data, scalars(from), p.times.data);
    return &p.times;
  }
}

template <class P, record V> P passed(place<V>& p, const argument& a, std::size_t at) {
  if constexpr (std::same_as<P, V*> || std::same_as<P, const V*>) {
    return record_of(p, a);
  } else if constexpr (std::same_as<P, const dsp_vec*>) {
    return times_of(p, a);
  } else if constexpr (std::same_as<P, std::int32_t*>) {
    p.integers[at] = a.integer;
    return a.missing ? nullptr : &p.integers[at];
  } else if constexpr (std::same_as<P, scalar<V>*>) {
    return &p.numbers[at];
  } else if constexpr (std::same_as<P, char*>) {
    return a.missing ? nullptr : p.text;
  } else if constexpr (std::same_as<P, const char*>) {
    return a.missing ? nullptr
                     : window_names[static_cast<std::uint32_t>(a.integer) % std::size(window_names)];
  } else if constexpr (std::is_floating_point_v<P>) {
    return static_cast<P>(a.number);
  } else {
    return static_cast<P>(a.integer);
  }
}

template <record V, class... P, std::size_t... At>
status applied(status (*f)(P...), place<V>& p, const arguments& a, std::index_sequence<At...>) {
  return f(passed<P>(p, a[At], At)...);
}

template <record V, auto Function> status call(place<V>& p, [[maybe_unused]] const arguments& a) {
  return []<class... P>(status (*f)(P...), place<V>& q, const arguments& b) {
    return applied(f, q, b, std::index_sequence_for<P...>());
  }(Function, p, a);
}

const exported table[] = {
#include "support/calls_made.h"
};

}  // namespace

bool is_state(const char* parameter) { return bare(parameter) == "history" || bare(parameter) == "state"; }

recipe chosen_recipe(choices& from) {
  recipe r;
  const std::uint8_t form = from.byte();
  r.kind = form % 16 < 10   ? recipe::storage::exact
           : form % 16 < 12 ? recipe::storage::roomy
           : form % 16 < 15 ? recipe::storage::lent
                            : recipe::storage::odd;
  r.complex = form & 0x40;
  r.points = lengths[from.below(std::size(lengths))];
  r.delta = deltas[from.below(std::size(deltas))];
  r.fill = from.byte();
  r.seed = from.byte();
  return r;
}

template <record V> place<V>::place() {
  for (V& v : records_) TWIN(_init)(&v);
}

template <record V> place<V>::~place() {
  clear();
  std::free(times.data);
  for (auto* buffer : lent_) std::free(buffer);
}

template <record V> void place<V>::clear() {
  for (V& v : records_) TWIN(_destroy)(&v);
}

template <record V> void place<V>::make(std::size_t i, const recipe& r) {
  V& v = records_[i];
  TWIN(_destroy)(&v);
  const index room = r.points * (r.complex ? 2 : 1);
  if (r.kind == recipe::storage::lent && room <= lent_room) {
    if (lent_[i] == nullptr) lent_[i] = static_cast<scalar<V>*>(std::malloc(lent_room * sizeof(scalar<V>)));
    v.data = lent_[i] + (lent_room - room);  // its end is that of the buffer
    v.alloc = r.seed % 2 - 1;
  } else if (room != 0) {
    const index spare = r.kind == recipe::storage::roomy ? r.seed : 0;
    v.data = static_cast<scalar<V>*>(std::malloc(static_cast<std::size_t>(room + spare) * sizeof(scalar<V>)));
    v.alloc = static_cast<std::int32_t>(room + spare);
  }
  v.points =
      static_cast<std::uint32_t>(r.kind == recipe::storage::odd && r.seed % 2 != 0 ? -r.seed : r.points);
  v.complex = r.complex ? r.seed % 3 - 3 : 0;
  v.delta = static_cast<scalar<V>>(r.delta);
  for (index k = 0; k < room; ++k) v.data[k] = static_cast<scalar<V>>(sample(r, k));
}

template <record V> bool place<V>::make(const exported& op, const chosen_call& c) {
  for (std::size_t i = 0; i < count; ++i) make(i, c.records[i]);
  return prepare(op, c.given, *this);
}

template <record V> status place<V>::resize(std::size_t i, index points, bool complex, bool keeping) {
  V& v = records_[i];
  const auto old_points = static_cast<std::uint32_t>(length(&v));
  const std::int32_t old_complex = v.complex;
  v.points = static_cast<std::uint32_t>(points);
  v.complex = complex;
  return keeping ? TWIN(_realloc)(&v, old_points, old_complex) : TWIN(_alloc)(&v);
}

template <record V> bool place<V>::holds_its_points(std::size_t i) const {
  const V& v = records_[i];
  const bool is_lent = lent_[i] != nullptr && v.data >= lent_[i] && v.data <= lent_[i] + lent_room;
  return scalars(&v) <= (is_lent ? lent_[i] + lent_room - v.data : v.alloc);
}

template <record V> const char* place<V>::settle() {
  for (std::size_t i = 0; i < count; ++i) {
    V& v = records_[i];
    if (v.data == nullptr && v.alloc != 0) return "a record without storage has no capacity";
    if (v.data == nullptr) v.points = 0;
    if (!holds_its_points(i)) return "a record holds its points";
  }
  return nullptr;
}

template class place<dsp_vec>;
template class place<dspf_vec>;

std::size_t export_count() { return std::size(table); }
const exported& export_at(std::size_t i) { return table[i]; }

arguments chosen_arguments(const exported& op, choices& from) {
  arguments all;
  for (std::size_t i = 0; i < most_arguments && op.parameters[i] != nullptr; ++i) {
    argument& a = all[i];
    const std::uint8_t first = from.byte(), second = from.byte();
    const std::string_view name = bare(op.parameters[i]);
    a.record = is_state(op.parameters[i]) ? of_states : static_cast<std::uint8_t>(first % of_states);
    a.missing = name != op.parameters[i] && first >= 192;
    a.number = numbers[first % std::size(numbers)];
    if (second >= 128) a.number *= 0x1p-6 * (second - 128);
    a.number = static_cast<double>(static_cast<float>(a.number));
    a.integer = name == "size" ? std::min(integer_of(first, second), 64) : integer_of(first, second);
  }
  return all;
}

template <record V> bool prepare(const exported& op, const arguments& a, place<V>& p) {
  constexpr index most_coefficients = 40;
  constexpr index most_roots = 300;
  constexpr std::string_view sized_by_the_call[] = {"dspc_rsmp", "dspc_rsmp_cos", "dspc_rsmp_pcos",
                                                    "dspc_fir2"};
  constexpr std::string_view searches[] = {"dspi_proots", "dsps_proots", "dsps_psolve", "dsps_pcsolve"};
  const std::string_view name = op.name;
  V* const first = p.at(a[0].record);
  if (op.generates() && !is_one_of(name, sized_by_the_call)) {
    first->points =
        static_cast<std::uint32_t>(lengths[static_cast<std::uint32_t>(a[0].integer) % std::size(lengths)]);
  }
  return length(first) <= (is_one_of(name, searches) ? most_coefficients
                           : op.is("dspi_pztoc")     ? most_roots
                                                     : INT32_MAX);
}

chosen_call any_call(const exported& op, choices& from) {
  chosen_call c;
  for (recipe& r : c.records) r = chosen_recipe(from);
  c.given = chosen_arguments(op, from);
  return c;
}

chosen_call fitting_call(const exported& op, std::uint64_t seed) {
  std::mt19937_64 engine(seed);
  std::array<std::uint8_t, 80> bytes;
  for (auto& b : bytes) b = static_cast<std::uint8_t>(engine() >> 56);
  choices from(bytes.data(), bytes.size());
  chosen_call c = any_call(op, from);
  constexpr index limits[] = {4, 20, 70, 200};
  const auto drawn = static_cast<index>(engine() >> 32);
  const index points = drawn % (from.below(40) == 0 ? 1200 : limits[from.below(std::size(limits))]);
  const bool complex = from.below(2) == 0;
  const bool knots = from.below(3) == 0;
  for (recipe& r : c.records) {
    if (from.below(5) != 0) r.points = points;
    if (from.below(5) != 0) r.complex = complex;
    r.fill = knots && from.below(4) != 0 ? rising : static_cast<std::uint8_t>(r.fill % exact_fills);
  }
  if (from.below(4) != 0) c.records.back().points = 0;
  return c;
}

template bool prepare(const exported&, const arguments&, place<dsp_vec>&);
template bool prepare(const exported&, const arguments&, place<dspf_vec>&);

}  // namespace sigpak::test
