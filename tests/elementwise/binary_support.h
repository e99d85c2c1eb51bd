// The binary operations by name, and the pairings of form, alias and owner that each must survive.
#pragma once

#include <complex>
#include <vector>

#include "support/signal.h"

namespace sigpak::test {

template <record V> using operation = std::int32_t (*)(const V*, const V*, V*);

template <record V> struct named_operation {
  const char* name;
  operation<V> run;
};

inline constexpr double blend_weight = 0.375;

template <record V> std::int32_t blend(const V* a, const V* b, V* out) {
  return TWIN(b_avg_add)(a, b, out, static_cast<scalar<V>>(blend_weight));
}

template <record V> std::vector<named_operation<V>> binary_operations() {
  return {{"add", TWIN(b_add)},     {"sub", TWIN(b_sub)},     {"mul", TWIN(b_mul)},
          {"div", TWIN(b_div)},     {"min", TWIN(b_min)},     {"max", TWIN(b_max)},
          {"inter", TWIN(b_inter)}, {"pmul", TWIN(b_pmul)},   {"conj_mul", TWIN(b_conj_mul)},
          {"avg_add", blend<V>},    {"ritoc", TWIN(b_ritoc)}, {"dot", TWIN(bs_dot)}};
}

using wide = std::complex<long double>;

template <record V> wide value_at(const V& v, index i) {
  if (!is_complex(&v)) return {static_cast<long double>(v.data[i]), 0};
  return {static_cast<long double>(v.data[2 * i]), static_cast<long double>(v.data[2 * i + 1])};
}

template <record V> std::vector<wide> wide_values(const V& v) {
  std::vector<wide> out;
  for (index i = 0; i < length(&v); ++i) out.push_back(value_at(v, i));
  return out;
}

enum class alias { none, a, b, both };

struct pairing {
  bool a_complex;
  bool b_complex;
  alias out;
  bool lent;
};

inline std::vector<pairing> pairings() {
  std::vector<pairing> all;
  for (const bool a : {false, true}) {
    for (const bool b : {false, true}) {
      for (const alias out : {alias::none, alias::a, alias::b, alias::both}) {
        if (out == alias::both && a != b) continue;
        for (const bool lent : {false, true}) all.push_back({a, b, out, lent});
      }
    }
  }
  return all;
}

// Two operands and a result in one pairing, all of noise; a lent result must leave its buffer as it was.
template <record V> class scene {
 public:
  scene(const pairing& p, index a_points, index b_points)
      : a_(noise<V>(a_points * (p.a_complex ? 2 : 1), 1), p.a_complex),
        b_(noise<V>(b_points * (p.b_complex ? 2 : 1), 2), p.b_complex),
        free_{7, 8, 9, 10},
        first_(&a_),
        second_(p.out == alias::both ? &a_ : &b_),
        out_(p.out == alias::none ? &free_
             : p.out == alias::b  ? second_
                                  : first_) {
    a_.delta = 2;
    b_.delta = 5;
    if (p.lent) out_->lend();
    lent_ = out_->lent();
    a_values = wide_values<V>(*first_);
    b_values = wide_values<V>(*second_);
  }

  std::int32_t run(operation<V> operate) { return operate(first_, second_, out_); }
  const V& out() const { return *out_; }
  scalar<V> mean_delta() const { return second_ == &a_ ? scalar<V>(2) : scalar<V>(3.5); }
  bool lent_untouched() const { return out_->lent() == lent_; }

  std::vector<wide> a_values;
  std::vector<wide> b_values;

 private:
  signal<V> a_;
  signal<V> b_;
  signal<V> free_;
  signal<V>* first_;
  signal<V>* second_;
  signal<V>* out_;
  samples<V> lent_;
};

inline testing::Message described(const char* name, const pairing& p, index n) {
  return testing::Message() << name << " a_complex " << p.a_complex << " b_complex " << p.b_complex
                            << " alias " << static_cast<int>(p.out) << " lent " << p.lent << " n " << n;
}

}  // namespace sigpak::test
