// SPDX-License-Identifier: MIT
// Values, derivatives and integrals of piecewise cubics at any targets.
#include "core/copy.h"
#include "core/double_double.h"
#include "core/isa.h"
#include "core/memory.h"
#include "core/storage.h"
#include "interpolate/curve.h"
#include "interpolate/knots.h"

namespace sigpak {
namespace {

enum class quantity { value, slope, curvature, integral };

// A block of targets: where they lie, what lies around them, and what comes of it.
struct block {
  double t[target_block];
  double beyond[target_block];  // the distance from the end that holds, or the periods taken off
  std::int32_t interval[target_block];
  double out[target_block];
};

// What is asked of a curve.
template <class T> struct question {
  curve<T> of;
  quantity wanted;
  outside rule;
  const double* integrals;  // up to every knot
};

// body(i, dt, v, per_length, cubic, y1, at_end) for every target; at_end: it is the second knot.
template <bool regular, bool pairs, class T, class Body>
[[gnu::always_inline]] inline void for_targets(const curve<T>& c, const block& b, index count,
                                               Body body) noexcept {
  const T* const x = c.x;
  const T* const y = c.y;
  const double spacing = c.spacing;
  const double per_spacing = 1 / spacing;
#pragma GCC ivdep
  for (index i = 0; i < count; ++i) {
    const index k = b.interval[i];
    double x0;
    double x1;
    double per_length;
    if constexpr (regular) {
      const auto place = static_cast<double>(b.interval[i]);
      x0 = static_cast<double>(static_cast<T>(place * spacing));
      x1 = static_cast<double>(static_cast<T>((place + 1) * spacing));
      per_length = per_spacing;
    } else {
      x0 = static_cast<double>(x[k]);
      x1 = static_cast<double>(x[k + 1]);
      per_length = 1 / (x1 - x0);
    }
    const auto y0 = static_cast<double>(y[pairs ? 2 * k : k]);
    const auto y1 = static_cast<double>(y[pairs ? 2 * k + 2 : k + 1]);
    const double chord = (y1 - y0) * per_length;
    const double s0 = pairs ? static_cast<double>(y[2 * k + 1]) : chord;
    const double s1 = pairs ? static_cast<double>(y[2 * k + 3]) : chord;
    const double dt = b.t[i] - x0;
    const double v = dt * per_length;
    body(i, dt, v, per_length, cubic_through(y0, y1, s0, s1, per_length), y1, b.t[i] == x1);
  }
}

template <bool regular, bool pairs, class T>
void answer(const question<T>& q, block& b, index count) noexcept {
  double* const out = b.out;
  switch (q.wanted) {
    case quantity::value:
      return for_targets<regular, pairs>(
          q.of, b, count, [=](index i, double dt, double v, double, cubic p, double y1, bool at_end) {
            out[i] = at_end ? y1 : value_of(p, dt, v);
          });
    case quantity::slope:
      return for_targets<regular, pairs>(
          q.of, b, count,
          [=](index i, double, double v, double, cubic p, double, bool) { out[i] = slope_of(p, v); });
    case quantity::curvature:
      return for_targets<regular, pairs>(
          q.of, b, count, [=](index i, double, double v, double per_length, cubic p, double, bool) {
            out[i] = curvature_of(p, v, per_length);
          });
    case quantity::integral:
      const double* const integrals = q.integrals;
      const std::int32_t* const interval = b.interval;
      return for_targets<regular, pairs>(q.of, b, count,
                                         [=](index i, double dt, double v, double, cubic p, double, bool) {
                                           out[i] = integrals[interval[i]] + integral_of(p, dt, v);
                                         });
  }
}

template <class T> void account_for_outside(const question<T>& q, block& b, index count) noexcept {
  const bool integral = q.wanted == quantity::integral;
  if (q.rule == outside::wraps && integral) {
    const double total = q.integrals[q.of.n - 1];
    for (index i = 0; i < count; ++i) b.out[i] += b.beyond[i] * total;
  } else if (q.rule == outside::holds && integral) {
    const double first = q.of.value(0);
    const double last = q.of.value(q.of.n - 1);
    for (index i = 0; i < count; ++i) b.out[i] += b.beyond[i] * (b.beyond[i] < 0 ? first : last);
  } else if (q.rule == outside::holds && q.wanted != quantity::value) {
    for (index i = 0; i < count; ++i) b.out[i] = b.beyond[i] < 0 || b.beyond[i] > 0 ? 0 : b.out[i];
  }
}

template <class T> void answer_block(const question<T>& q, block& b, index count) noexcept {
  bring_inside(q.of, q.rule, b.t, b.beyond, count);
  find_intervals(q.of, b.t, count, b.interval);
  if (q.of.x == nullptr) {
    q.of.pairs ? answer<true, true>(q, b, count) : answer<true, false>(q, b, count);
  } else {
    q.of.pairs ? answer<false, true>(q, b, count) : answer<false, false>(q, b, count);
  }
  account_for_outside(q, b, count);
}

template <class T> void answer_all(const question<T>& q, const T* at, index count, T* out) noexcept {
  isa::run([=] {
    block b;
    for (index begin = 0; begin < count; begin += target_block) {
      const index some = std::min(target_block, count - begin);
      for (index i = 0; i < some; ++i) b.t[i] = static_cast<double>(at[begin + i]);
      answer_block(q, b, some);
      for (index i = 0; i < some; ++i) out[begin + i] = static_cast<T>(b.out[i]);
    }
  });
}

// A single knot is a constant.
template <class T>
void answer_constant(double x0, double y0, quantity wanted, const T* at, index count, T* out) noexcept {
  for (index i = 0; i < count; ++i) {
    const auto t = static_cast<double>(at[i]);
    const double nothing = t - t == 0 || std::isinf(t) ? 0 : t;  // NaN stays
    const double answer = wanted == quantity::value ? y0 : wanted == quantity::integral ? y0 * (t - x0) : 0;
    out[i] = static_cast<T>(answer + nothing);
  }
}

// The integrals up to every knot, their sum carried in twice the precision.
template <class T> void integrate(const curve<T>& c, double* integrals) noexcept {
  double_double sum;
  for (index k = 0; k < c.n; ++k) {
    integrals[k] = rounded(sum);
    if (k + 1 == c.n) return;
    const double h = c.knot(k + 1) - c.knot(k);
    const double slopes =
        c.pairs ? static_cast<double>(c.y[2 * k + 1]) - static_cast<double>(c.y[2 * k + 3]) : 0.0;
    const double_double next = exact_sum(sum.hi, h * ((c.value(k) + c.value(k + 1)) / 2 + h * slopes / 12));
    sum = fast_sum(next.hi, next.lo + sum.lo);
  }
}

template <record V>
status evaluate(const V* x, const V* y, const V* at, V* out, quantity wanted, outside rule) noexcept {
  using T = scalar<V>;
  const index n = length(y);
  const index count = length(at);
  const curve<T> c = {x != nullptr ? x->data : nullptr, static_cast<double>(y->delta), y->data, is_complex(y),
                      n};
  double* integrals = nullptr;
  if (wanted == quantity::integral) {
    integrals = allocate_table<double>(n);
    if (integrals == nullptr) return failed;
    integrate(c, integrals);
  }
  const T* const targets = at->data;
  out->delta = at->delta;
  out->complex = 0;
  out->points = at->points;
  const status sized = allocate(out);
  if (sized == ok && n == 1) answer_constant(c.knot(0), c.value(0), wanted, targets, count, out->data);
  if (sized == ok && n > 1) answer_all(question<T>{c, wanted, rule, integrals}, targets, count, out->data);
  free_table(integrals);
  return sized;
}

template <record V>
status interpolate(const V* x, const V* y, const V* at, V* out, std::int32_t flags) noexcept {
  constexpr std::int32_t kinds = 3;
  constexpr std::int32_t rules = DSP_INTERP_HOLD | DSP_INTERP_WRAP;
  const std::int32_t chosen = flags & rules;
  if ((flags & ~(kinds | rules)) != 0 || chosen == rules || is_complex(at)) return failed;
  if (length(y) == 0 || !are_knots(x, length(y), y->delta)) return failed;
  const auto wanted = static_cast<quantity>(flags & kinds);
  const outside rule = chosen == DSP_INTERP_HOLD   ? outside::holds
                       : chosen == DSP_INTERP_WRAP ? outside::wraps
                                                   : outside::goes_on;
  const bool shared = out->data == y->data || (x != nullptr && out->data == x->data);
  if (!shared) return evaluate(x, y, at, out, wanted, rule);
  temporary<V> result;
  return evaluate<V>(x, y, at, &result, wanted, rule) == ok ? copy<V>(out, &result) : failed;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsp_interp(const dsp_vec* x, const dsp_vec* y, const dsp_vec* at, dsp_vec* out, int32_t flags) {
  return interpolate(x, y, at, out, flags);
}
int32_t dspf_interp(const dspf_vec* x, const dspf_vec* y, const dspf_vec* at, dspf_vec* out, int32_t flags) {
  return interpolate(x, y, at, out, flags);
}
