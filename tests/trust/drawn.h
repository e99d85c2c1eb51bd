// SPDX-License-Identifier: MIT
// Calls of any operation, their arguments drawn by type: the same ones for the same seed on every machine.
#pragma once

#include <array>
#include <cstdlib>
#include <tuple>

#include "core/memory.h"
#include "support/signal.h"

namespace sigpak::test {

// splitmix64 (G. Steele, D. Lea, C. Flood, OOPSLA 2014).
class draws {
 public:
  explicit draws(std::uint64_t seed) : state_(seed) {}
  std::uint64_t bits() {
    std::uint64_t z = state_ += 0x9e3779b97f4a7c15U;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
    return z ^ (z >> 31);
  }
  index below(index n) { return static_cast<index>(bits() % static_cast<std::uint64_t>(n)); }
  bool one_in(index n) { return below(n) == 0; }
  template <class T> T of(std::initializer_list<T> list) { return list.begin()[below(std::ssize(list))]; }
  double uniform() { return static_cast<double>(bits() >> 11) * 0x1p-52 - 1; }

 private:
  std::uint64_t state_;
};

// What a call is given: mostly records that fit together, of the call's own length and form, some of another,
// some rising, as knots are, some lent, some with values that few expect. A result may be the first operand.
template <record V> class drawn_call {
 public:
  // Lengths come from next_length(draws).
  using lengths = index (*)(draws&);
  drawn_call(std::uint64_t seed, lengths next_length) : draws_(seed), next_length_(next_length) {}
  ~drawn_call() { release(); }
  drawn_call(const drawn_call&) = delete;
  drawn_call& operator=(const drawn_call&) = delete;

  template <class... A> std::int32_t run(std::int32_t (*operation)(A...)) {
    return run(
        operation, [] {}, [] {});
  }
  // With what a caller does right before the call and right after it.
  template <class... A, class Before, class After>
  std::int32_t run(std::int32_t (*operation)(A...), Before before, After after) {
    release();
    length_ = next_length_(draws_);
    complex_ = draws_.one_in(2);
    rising_ = draws_.one_in(3);
    const std::tuple<A...> arguments{draw<A>()...};  // from the first on
    before();
    status_ = std::apply(operation, arguments);
    after();
    return status_;
  }

  // Calls visit(value) with the status and, where that is 0, with all that the call has left; any NaN is the
  // same.
  template <class Visit> void leaves(Visit visit) const {
    visit(status_);
    if (status_ != ok) return;  // then the records may hold what nobody wrote
    each_record<dsp_vec>([&](const auto& v) { record_leaves(v, visit); });
    each_record<dspf_vec>([&](const auto& v) { record_leaves(v, visit); });
    for (const auto n : numbers_) visit(n);
    for (const auto x : reals_) visit(x == x ? x : std::numeric_limits<scalar<V>>::quiet_NaN());
  }

 private:
  static constexpr std::size_t most = 8;
  template <record W> struct slot {
    W v = {};
    samples<W> lent;
    bool used = false;
  };
  draws draws_;
  lengths next_length_;
  index length_ = 0;
  bool complex_ = false;
  bool rising_ = false;
  std::int32_t status_ = 0;
  std::tuple<std::array<slot<dsp_vec>, most>, std::array<slot<dspf_vec>, most>> slots_ = {};
  const void* operand_ = nullptr;
  bool results_ = false;
  std::array<std::int32_t, 4> numbers_ = {};
  std::array<scalar<V>, 4> reals_ = {};
  std::size_t numbers_used_ = 0, reals_used_ = 0;

  template <record W> auto& slots() { return std::get<std::array<slot<W>, most>>(slots_); }
  template <record W, class Visit> void each_record(Visit visit) const {
    for (const auto& s : std::get<std::array<slot<W>, most>>(slots_)) {
      if (s.used) visit(s.v);
    }
  }

  void release() {
    for (auto& s : slots<dsp_vec>()) dsp_destroy(&s.v), s.used = false;
    for (auto& s : slots<dspf_vec>()) dspf_destroy(&s.v), s.used = false;
    operand_ = nullptr;
    results_ = false;
    numbers_used_ = reals_used_ = 0;
    numbers_ = {};
    reals_ = {};
  }

  template <class A> A draw() {
    if constexpr (std::is_pointer_v<A>) {
      return draw_pointer<std::remove_pointer_t<A>>();
    } else if constexpr (std::is_floating_point_v<A>) {
      return static_cast<A>(draws_.of({0.0, 1.0, -1.0, 0.5, 0.25, 0.125, 2.0, 3.75, 40.0, 100.0, 0.75}));
    } else {
      return static_cast<A>(draws_.of(
          {-1, 0, 1, 2, 3, 4, 5, 6, 8, 16, 23, 31, 32, 64, 100, 0x100, 0x201, 0x302, 0x1000, 0x3300}));
    }
  }
  template <class P> P* draw_pointer() {
    if constexpr (std::is_same_v<P, std::int32_t>) {
      return &numbers_.at(numbers_used_++);
    } else if constexpr (std::is_floating_point_v<P>) {
      return &reals_.at(reals_used_++);
    } else if constexpr (std::is_const_v<P>) {
      auto* const v = draw_record<std::remove_const_t<P>>(false);
      if (operand_ == nullptr) operand_ = v;
      return v;
    } else {
      const bool first = !results_;
      results_ = true;
      if (operand_ != nullptr && first && draws_.one_in(5))
        return const_cast<P*>(static_cast<const P*>(operand_));
      return draw_record<P>(draws_.below(4) < (first ? 1 : 3));  // what comes behind the result is a state
    }
  }

  template <record W> W* draw_record(bool empty) {
    auto& all = slots<W>();
    auto& s = *std::find_if(all.begin(), all.end(), [](const auto& one) { return !one.used; });
    s.used = true;
    const bool other = draws_.one_in(5);
    const index points = empty ? 0 : other ? next_length_(draws_) : length_;
    W& v = s.v;
    v.complex = !draws_.one_in(5) && complex_ ? 1 : 0;
    v.points = static_cast<std::uint32_t>(points);
    v.delta = static_cast<scalar<W>>(draws_.of({1.0, 0.5, 0.1, 2.0, 0.0}));
    fill(s);
    return &v;
  }

  template <record W> void fill(slot<W>& s) {
    W& v = s.v;
    const index count = scalars(&v);
    if (draws_.one_in(6) || count < index{v.points}) {  // a count that reads as negative needs no room
      s.lent.resize(static_cast<std::size_t>(count) + 1);
      v.data = s.lent.data();
      v.alloc = 0;
    } else {
      EXPECT_EQ(allocate(&v), 0);
    }
    const bool rising = rising_ && !draws_.one_in(4);
    const bool odd = draws_.one_in(8);
    static const samples<W> strange = awkward<W>();
    for (index i = 0; i < count; ++i) {
      const double x = draws_.uniform();
      v.data[i] = odd && draws_.one_in(4)
                      ? strange[static_cast<std::size_t>(draws_.below(std::ssize(strange)))]
                      : static_cast<scalar<W>>(rising ? static_cast<double>(i) + x / 4 : 2 * x);
    }
  }
  static std::int32_t allocate(dsp_vec* v) { return dsp_alloc(v); }
  static std::int32_t allocate(dspf_vec* v) { return dspf_alloc(v); }

  template <record W, class Visit> static void record_leaves(const W& v, Visit visit) {
    visit(v.points);
    visit(v.complex);
    visit(v.delta);
    const index count = v.data != nullptr && static_cast<std::int32_t>(v.points) > 0 ? scalars(&v) : 0;
    for (index i = 0; i < count; ++i) {
      visit(v.data[i] == v.data[i] ? v.data[i] : std::numeric_limits<scalar<W>>::quiet_NaN());
    }
  }
};

// A machine of little memory: what asks for more than a megabyte at once is refused, until the end of its
// scope.
class small_machine {
 public:
  small_machine() : previous_(resize_table_bytes) {
    resize_table_bytes = resize_block;
    install<dsp_vec>(size<dsp_vec>, resize<dsp_vec>);
    install<dspf_vec>(size<dspf_vec>, resize<dspf_vec>);
  }
  ~small_machine() {
    resize_table_bytes = previous_;
    install<dsp_vec>(nullptr, nullptr);
    install<dspf_vec>(nullptr, nullptr);
  }
  small_machine(const small_machine&) = delete;
  small_machine& operator=(const small_machine&) = delete;

 private:
  static void* resize_block(void* block, std::size_t bytes) {
    return bytes <= 1 << 20 ? std::realloc(block, bytes != 0 ? bytes : 1) : nullptr;
  }
  template <record V> static std::int32_t size(V* v) {
    if (v->alloc > 0) std::free(v->data);
    v->data = nullptr;
    return resize(v, 0, 0);
  }
  template <record V> static std::int32_t resize(V* v, std::uint32_t, std::int32_t) {
    void* const grown = resize_block(
        v->data, static_cast<std::size_t>(v->points) * (v->complex != 0 ? 2 : 1) * sizeof *v->data);
    if (grown == nullptr) std::free(v->data);
    v->data = static_cast<scalar<V>*>(grown);
    return 0;
  }
  template <record V> static void install(std::int32_t (*a)(V*), decltype(&resize<V>) r) {
    TWIN(_lib_alloc)(a, nullptr);
    TWIN(_lib_realloc)(r, nullptr);
  }
  table_source previous_;
};

// visit(name, operation) for every operation on records that the header declares and that takes no file, no
// text and no hook.
template <record V, class Visit> void each_operation(Visit visit) {
#define SIGPAK_OPERATION(name) visit("dsp" #name, TWIN(name));
#include "operations.inc"
#undef SIGPAK_OPERATION
}

}  // namespace sigpak::test
