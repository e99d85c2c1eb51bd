// Numbers as an unevaluated sum hi + lo of two doubles, without fused operations.
// Sources: Knuth, The Art of Computer Programming 2, 4.2.2; Dekker, Numer. Math. 18 (1971).
#pragma once

namespace sigpak {

struct parts {
  double hi;
  double lo;
};

constexpr double joined(parts x) noexcept { return x.hi + x.lo; }

// a + b exactly, when a is 0 or not the smaller in magnitude.
constexpr parts fast_sum(double a, double b) noexcept {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

// a + b exactly.
constexpr parts exact_sum(double a, double b) noexcept {
  const double sum = a + b;
  const double b_part = sum - a;
  return {sum, (a - (sum - b_part)) + (b - b_part)};
}

// The upper 26 bits of a, and the rest.
constexpr parts halves(double a) noexcept {
  const double c = (0x1p27 + 1) * a;
  const double hi = c - (c - a);
  return {hi, a - hi};
}

// a * b exactly, for magnitudes below 2^996 whose product does not underflow.
constexpr parts exact_product(double a, double b) noexcept {
  const double product = a * b;
  const parts x = halves(a);
  const parts y = halves(b);
  return {product, ((x.hi * y.hi - product) + x.hi * y.lo + x.lo * y.hi) + x.lo * y.lo};
}

constexpr parts product(parts a, parts b) noexcept {
  const parts top = exact_product(a.hi, b.hi);
  return fast_sum(top.hi, top.lo + (a.hi * b.lo + a.lo * b.hi));
}

// a / b, rounded once but for an error near 2^-100.
constexpr double quotient(parts a, parts b) noexcept {
  const double q = a.hi / b.hi;
  const parts back = exact_product(q, b.hi);
  return q + (((a.hi - back.hi) - back.lo) + a.lo - q * b.lo) / b.hi;
}

}  // namespace sigpak
