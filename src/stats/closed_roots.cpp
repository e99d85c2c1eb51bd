// Roots in closed form up to the fourth degree, of the fifth with the help of one search.
#include <algorithm>
#include <cmath>

#include "shape/shape.h"
#include "stats/polynomial.h"
#include "stats/result.h"

namespace sigpak {
namespace {

constexpr index most_coefficients = 6;
constexpr double third = 0.3333333333333333;
constexpr double rounding = 1.7763568394002505e-15;  // 8 epsilons

struct root_list {
  complex_number z[most_coefficients - 1];
  index count;
  bool complex;
};

// c + b x + a x^2, the quotient q formed without cancellation.
root_list quadratic_roots(double c, double b, double a) noexcept {
  const double discriminant = b * b - c * a * 4.0;
  if (discriminant < 0) {
    const double t = 1 / (a + a);
    const double re = -(b * t);
    const double im = std::abs(t * std::sqrt(-discriminant));
    return {{{re, -im}, {re, im}}, 2, true};
  }
  const double s = std::sqrt(discriminant);
  const double q = ((b <= 0 ? s : -s) - b) * 0.5;
  const double first = q / a;
  const double second = q != 0 ? c / q : c;
  return {{{std::min(first, second), 0}, {std::max(first, second), 0}}, 2, false};
}

double cube_root(double x) noexcept { return x != 0 ? std::exp(std::log(x) / 3) : 0.0; }

// Cardano's method; with three real roots the trigonometric form, unsorted: the smallest, the middle one, the
// largest.
root_list cubic_roots(double a0, double a1, double a2, double a3) noexcept {
  const double k = 1 / a3;
  const double s = k * a2 * third;
  const double q = k * a1 * third - s * s;
  const double r = (k * a1 * 0.5 - s * s) * s - k * a0 * 0.5;
  const double cubed = q * q * q;
  const double discriminant = r * r + cubed;
  if (discriminant > 0) {
    const double root = std::sqrt(discriminant);
    const double a = r <= 0 ? -cube_root(root - r) : cube_root(root + r);
    const double b = -(q / a);
    const double re = (a + b) * -0.5 - s;
    const double im = 0.8660254037844386 * (r > 0 ? b - a : a - b);
    return {{{a + b - s, 0}, {re, im}, {re, -im}}, 3, true};
  }
  constexpr double sixty_degrees = 1.0471975511965976;
  const double ratio = cubed != 0 ? std::clamp(r / std::sqrt(-cubed), -1.0, 1.0) : 1.0;
  const double t = std::acos(ratio) * third;
  const double m = std::sqrt(-q) + std::sqrt(-q);
  return {{{-(std::cos(t - sixty_degrees) * m) - s, 0},
           {-(std::cos(t + sixty_degrees) * m) - s, 0},
           {std::cos(t) * m - s, 0}},
          3,
          false};
}

// A difference with the size of its terms, which its rounding errors are in proportion to.
struct sized {
  double value;
  double size;
};

// x^4 + b x^3 + c x^2 + d x + e = (x^2 + b/2 x + y/2)^2 - (m x + n)^2 with y a root of the resolvent cubic.
struct ferrari {
  double b, c, d, e;
  double y;
  double y_size;  // of the largest root of the resolvent: what the rounding of y is in proportion to

  sized m_squared() const noexcept { return {y + b * b / 4 - c, y_size + b * b / 4 + std::abs(c)}; }
  sized n_squared() const noexcept { return {y * y / 4 - e, y_size * y_size / 4 + std::abs(e)}; }
};

// The root of a square; 0 when it is nothing but rounding.
double root_of(sized square) noexcept {
  return square.value > rounding * square.size ? std::sqrt(square.value) : 0.0;
}

// Two numbers with the given half sum and half difference; the smaller from their product, which is the other
// way to it and does not cancel.
struct two {
  double plus, minus;
};
two from_halves(double half_sum, double half_difference, double product) noexcept {
  const double larger =
      half_sum >= 0 ? half_sum + std::abs(half_difference) : half_sum - std::abs(half_difference);
  const double smaller = larger != 0 ? product / larger : 0.0;
  const bool plus_is_larger = (half_sum >= 0) == (half_difference >= 0);
  return plus_is_larger ? two{larger, smaller} : two{smaller, larger};
}

// Newton's iteration against the digits that the closed form has lost, for as long as it gains some. Between
// two roots that nearly meet its steps are wild: it must not end in another root, `size` being that of the
// largest.
double sharpened(polynomial<double_double> p, double y, double size) noexcept {
  constexpr int most_steps = 64;       // a double root gains one bit a step
  constexpr double most_lost = 0.001;  // far above the cube root of the epsilon, which a triple root loses
  const double start = y;
  expansion<double> at = expand(p, y);
  for (int i = 0; i < most_steps; ++i) {
    const double next = y - at.value / at.slope;
    const expansion<double> there = expand(p, next);
    if (!(std::abs(there.value) < std::abs(at.value)) || std::abs(next - start) > most_lost * size) break;
    y = next;
    at = there;
  }
  return y;
}

// y^3 - c y^2 + (b d - 4 e) y + 4 c e - b^2 e - d^2: its terms cancel, and are summed in twice the precision.
void resolvent(double b, double c, double d, double e, double_double* cubic) noexcept {
  cubic[0] = 4 * fused_product(c, e) + -(e * fused_product(b, b)) + -fused_product(d, d);
  cubic[1] = fused_product(b, d) + precise(-4 * e);
  cubic[2] = precise(-c);
  cubic[3] = precise(1.0);
}

// The quadratics x^2 + p x + q that a quartic is the product of, and how far their product misses it,
// relative to the terms of each coefficient.
struct factors {
  two p, q;
  double misfit;
};

template <class... Terms> double miss(double wanted, Terms... terms) noexcept {
  const double size = std::abs(wanted) + (std::abs(terms) + ...);
  return size > 0 ? std::abs((terms + ...) - wanted) / size : 0.0;
}

factors judged(const ferrari& f, two p, two q) noexcept {
  return {p, q,
          miss(f.b, p.plus, p.minus) + miss(f.c, q.plus, q.minus, p.plus * p.minus) +
              miss(f.d, p.plus * q.minus, p.minus * q.plus) + miss(f.e, q.plus * q.minus)};
}

factors better(const factors& a, const factors& b) noexcept { return b.misfit < a.misfit ? b : a; }

// The linear factor m x + n comes from the square that has cancelled less and from the cross term 2 m n,
// since the square root of a rounding error is no small error.
factors split(const ferrari& f) noexcept {
  const sized mm = f.m_squared();
  const sized nn = f.n_squared();
  const double cross = f.y * f.b / 2 - f.d;
  double m = root_of(mm);
  double n = root_of(nn);
  if (cross < 0) n = -n;
  if (mm.value * nn.size >= nn.value * mm.size) {
    if (m != 0) n = cross / (2 * m);
  } else if (n != 0) {
    m = cross / (2 * n);
  }
  const two q = from_halves(f.y / 2, n, f.e);
  // Of two small p the product may be nothing but rounding.
  return better(judged(f, from_halves(f.b / 2, m, f.c - f.y), q), judged(f, {f.b / 2 + m, f.b / 2 - m}, q));
}

// Ferrari's method. Of three real roots of the resolvent the middle one is tried first, of a single one and a
// pair that one; but next to a double root rounding decides which of the two cases it is, and the first may
// not split the quartic into real quadratics. The largest of three always does: it is |z|^2 + |w|^2 when the
// quartic's roots are two conjugate pairs z and w, and any of the three will do when they are real.
root_list quartic_roots(double e, double d, double c, double b, double a) noexcept {
  constexpr double enough = 4 * rounding;
  b /= a, c /= a, d /= a, e /= a;
  double_double cubic[4];
  resolvent(b, c, d, e, cubic);
  const root_list y = cubic_roots(cubic[0].hi, cubic[1].hi, cubic[2].hi, cubic[3].hi);
  double y_size = 0;
  for (index i = 0; i < 3; ++i) y_size = std::max(y_size, magnitude(y.z[i]));
  const auto with = [&](index i) {
    return split({b, c, d, e, sharpened({cubic, 4}, y.z[i].re, y_size), y_size});
  };
  const index first = y.complex ? 0 : 1;
  factors f = with(first);
  if (!(f.misfit <= enough)) f = better(f, with(first + 1));
  if (!y.complex && !(f.misfit <= enough)) f = better(f, with(0));
  const root_list left = quadratic_roots(f.q.plus, f.p.plus, 1);
  const root_list right = quadratic_roots(f.q.minus, f.p.minus, 1);
  return {{left.z[0], left.z[1], right.z[0], right.z[1]}, 4, left.complex || right.complex};
}

// Where a real root joins four of which some are complex: before the first point, inside its real pair, or
// after.
void insert_real(root_list& list, double r) noexcept {
  index place = 2;
  if (list.z[0].im != 0 || r < list.z[0].re) {
    place = 0;
  } else if (r < list.z[1].re) {
    place = 1;
  }
  std::copy_backward(list.z + place, list.z + 4, list.z + 5);
  list.z[place] = {r, 0};
  list.count = 5;
}

// The quotient by (x - root) in a[0 .. 4]: by synthetic division from the top down to the largest term of
// p(root), and from the bottom up to it. Down to the end it would magnify the rounding of a root larger than
// the others. G. Peters, J. H. Wilkinson, "Practical problems arising in the solution of polynomial
// equations", J. Inst. Maths Applics 8 (1971).
void divide_out(double* a, double root) noexcept {
  constexpr index degree = most_coefficients - 1;
  const double size = std::abs(root);
  const auto term = [=](index k) {
    return std::abs(a[k]) * std::pow(size, static_cast<double>(size > 1 ? k - degree : k));
  };
  index meeting = 0;
  for (index k = 1; k <= degree; ++k) {
    if (term(k) > term(meeting)) meeting = k;
  }
  double quotient[degree];
  double carried = 0;
  for (index k = degree; k > meeting; --k) quotient[k - 1] = carried = a[k] + root * carried;
  carried = 0;
  for (index k = 0; k < meeting; ++k) quotient[k] = carried = (carried - a[k]) / root;
  std::copy_n(quotient, degree, a);
}

// One real root by search, the rest in closed form.
status quintic_roots(const double* a, const search_limits& limits, root_list& out) noexcept {
  const real_search search = find_real_root(polynomial<double>{a, most_coefficients}, 0.0, limits);
  if (!search.found) return failed;
  double rest[most_coefficients];
  std::copy_n(a, most_coefficients, rest);
  divide_out(rest, search.root);
  out = quartic_roots(rest[0], rest[1], rest[2], rest[3], rest[4]);
  if (out.complex) {
    insert_real(out, search.root);
  } else {
    out.z[4] = {search.root, 0};
    out.count = 5;
  }
  return ok;
}

template <record V> status store_list(const root_list& list, V* out) noexcept {
  if (prepare_result(out, list.count, list.complex) != ok) return failed;
  scalar<V>* to = out->data;
  for (index i = 0; i < list.count; ++i) {
    *to++ = static_cast<scalar<V>>(list.z[i].re);
    if (list.complex) *to++ = static_cast<scalar<V>>(list.z[i].im);
  }
  return ok;
}

// The roots of coefficients a[0 .. 5], of which those above the degree are 0.
status closed_roots(const double* a, const search_limits& limits, root_list& out) noexcept {
  index degree = most_coefficients - 1;
  while (degree > 0 && a[degree] == 0) --degree;
  switch (degree) {
    case 0:
      out = {{}, 0, false};
      return ok;
    case 1:
      out = {{{-a[0] / a[1], 0}}, 1, false};
      return ok;
    case 2:
      out = quadratic_roots(a[0], a[1], a[2]);
      return ok;
    case 3:
      out = cubic_roots(a[0], a[1], a[2], a[3]);
      return ok;
    case 4:
      out = quartic_roots(a[0], a[1], a[2], a[3], a[4]);
      return ok;
    default:
      return quintic_roots(a, limits, out);
  }
}

template <record V> status solve_closed(const V* v, V* result) noexcept {
  if (is_complex(v) || length(v) > most_coefficients) return failed;
  return run_apart(v, result, [](const V* in, V* out) {
    double a[most_coefficients] = {};
    std::transform(in->data, in->data + length(in), a, [](scalar<V> x) { return wide(x); });
    root_list list{};
    if (closed_roots(a, limits_of<scalar<V>>(), list) != ok || store_list(list, out) != ok) return failed;
    return list.count == 5 && !list.complex ? sort<V>(out) : ok;
  });
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_proots(const dsp_vec* p, dsp_vec* result) { return solve_closed(p, result); }
int32_t dspfs_proots(const dspf_vec* p, dspf_vec* result) { return solve_closed(p, result); }
