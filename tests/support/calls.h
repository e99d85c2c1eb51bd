// SPDX-License-Identifier: MIT
// Any operation of the library, called with arguments that bytes choose: on a few records of one precision,
// or the same on those of the other.
#pragma once

#include <array>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "core/record.h"
#include "support/twins.h"

namespace sigpak::test {

// Bytes one after the other, and zeros behind them.
class choices {
 public:
  choices(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}
  bool any() const { return at_ != end_; }
  std::uint8_t byte() { return at_ != end_ ? *at_++ : std::uint8_t{0}; }
  std::size_t below(std::size_t n) { return byte() % n; }

 private:
  const std::uint8_t* at_;
  const std::uint8_t* end_;
};

// An argument as the bytes choose it; of this every parameter takes what its type wants.
struct argument {
  std::uint8_t record = 0;
  bool missing = false;  // a null pointer, where that is allowed
  double number = 0;     // a float holds it too
  std::int32_t integer = 0;
};
inline constexpr std::size_t most_arguments = 9;
using arguments = std::array<argument, most_arguments>;

// What a record is made of: the same for both precisions.
struct recipe {
  enum class storage { exact, roomy, lent, odd } kind = storage::exact;
  index points = 0;
  bool complex = false;
  double delta = 1;
  std::uint8_t fill = 0;
  std::uint8_t seed = 0;
};
recipe chosen_recipe(choices& from);

struct exported;

// A call: what its records are made of, the last of them a state, and its arguments.
struct chosen_call {
  static constexpr std::size_t record_count = 6;
  std::array<recipe, record_count> records;
  arguments given;
};
chosen_call any_call(const exported& op, choices& from);

// A call on records that mostly fit together: of one length and form, some rising, as knots are. The same for
// the same seed on every machine.
chosen_call fitting_call(const exported& op, std::uint64_t seed);

// The records of a caller.
template <record V> class place {
 public:
  static constexpr std::size_t count = chosen_call::record_count;

  place();
  ~place();
  place(const place&) = delete;
  place& operator=(const place&) = delete;

  void make(std::size_t i, const recipe& r);
  // All records of a call, with points preset for a generator. False where the call would take minutes.
  bool make(const exported& op, const chosen_call& c);
  status resize(std::size_t i, index points, bool complex, bool keeping);
  void clear();

  // Every record holds what it says, or has lost its storage, which is then made good; a fault is told.
  const char* settle();

  V* at(std::size_t i) { return &records_[i % count]; }

  // Calls visit(value) with all that a call leaves; any NaN is the same.
  template <class Visit> void leaves(Visit visit) const {
    const auto visit_number = [&](auto x) {
      visit(x == x ? x : std::numeric_limits<decltype(x)>::quiet_NaN());
    };
    for (const V& v : records_) {
      visit(v.points);
      visit(v.complex);
      visit_number(v.delta);
      for (index i = 0; v.data != nullptr && i < scalars(&v); ++i) visit_number(v.data[i]);
    }
    for (const auto n : integers) visit(n);
    for (const auto x : numbers) visit_number(x);
  }

  // What the parameters of a call point to beside the records.
  std::int32_t integers[most_arguments] = {};
  scalar<V> numbers[most_arguments] = {};
  char text[64] = {};
  dsp_vec times = {};  // of double precision in both

 private:
  static constexpr index lent_room = 1200;
  bool holds_its_points(std::size_t i) const;
  V records_[count] = {};
  scalar<V>* lent_[count] = {};
};

struct exported {
  const char* name;
  status (*on_doubles)(place<dsp_vec>&, const arguments&);
  status (*on_floats)(place<dspf_vec>&, const arguments&);
  const char* parameters[most_arguments];

  bool is(std::string_view other) const { return other == name; }
  bool generates() const { return std::string_view(name).starts_with("dspc_"); }
  template <record V> status call(place<V>& p, const arguments& a) const {
    if constexpr (is_double<V>) {
      return on_doubles(p, a);
    } else {
      return on_floats(p, a);
    }
  }
};

bool is_state(const char* parameter);  // what a stream keeps, in a form of its own

std::size_t export_count();
const exported& export_at(std::size_t i);

// Arguments within what the header allows: history and state are records of their own, and so on.
arguments chosen_arguments(const exported& op, choices& from);

template <record V> bool prepare(const exported& op, const arguments& a, place<V>& p);

// body(op, place, arguments) before so many fitting calls of every operation.
template <record V, class Body> void each_fitting_call(int count, std::uint64_t seed, Body body) {
  for (std::size_t k = 0; k < export_count(); ++k) {
    place<V> at;
    for (int i = 0; i < count; ++i) {
      const chosen_call c = fitting_call(export_at(k), seed * 10007 + static_cast<std::uint64_t>(i));
      if (at.make(export_at(k), c)) body(export_at(k), at, c.given);
    }
  }
}

}  // namespace sigpak::test
