// SPDX-License-Identifier: MIT
// x = n pi / 2 + r for large x: n is the integer nearest to x * 2 / pi, of which only the last two bits
// matter, and so the bits of 2 / pi that give whole turns are left out of the product. Source: M. H. Payne,
// R. N. Hanek, Radian reduction for trigonometric functions, SIGNUM Newsletter 18 (1983).
#include "kernels/elementary/far_angle.h"

#include <bit>
#include <cmath>
#include <cstdint>

#include "core/double_double.h"

namespace sigpak::kernels {
namespace {

using word = std::uint64_t;
__extension__ typedef unsigned __int128 two_words;

constexpr int word_bits = 64;

// The bits of 2 / pi behind a word of zeros, from scripts/elementary-tables.
constexpr word quarters_per_radian[] = {0,
                                        0xa2f9836e4e441529,
                                        0xfc2757d1f534ddc0,
                                        0xdb6295993c439041,
                                        0xfe5163abdebbc561,
                                        0xb7246e3a424dd2e0,
                                        0x06492eea09d1921c,
                                        0xfe1deb1cb129a73e,
                                        0xe88235f52ebb4484,
                                        0xe99c7026b45f7e41,
                                        0x3991d639835339f4,
                                        0x9c845f8bbdf9283b,
                                        0x1ff897ffde05980f,
                                        0xef2f118b5a0a6d1f,
                                        0x6d367ecf27cb09b7,
                                        0x4f463f669e5fea2d,
                                        0x7527bac7ebe5f17b,
                                        0x3d0739f78a5292ea,
                                        0x6bfb5fb11f8d5d08,
                                        0x56033046fc7b6bab,
                                        0xf0cfbc209af4361d};

constexpr double_double half_pi = {0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54};

// Words of a binary fraction, the highest first.
struct fraction {
  word high;
  word middle;
  word low;
};

// 64 bits of 2 / pi from bit `position` of the table on.
word bits_from(int position) noexcept {
  const word* const at = quarters_per_radian + position / word_bits;
  const int shift = position % word_bits;
  return at[0] << shift | at[1] >> 1 >> (word_bits - 1 - shift);
}

// The product of an integer and a fraction, without its integer part.
fraction product(word a, fraction b) noexcept {
  const two_words low = two_words(a) * b.low;
  const two_words middle = two_words(a) * b.middle + static_cast<word>(low >> word_bits);
  return {a * b.high + static_cast<word>(middle >> word_bits), static_cast<word>(middle),
          static_cast<word>(low)};
}

fraction operator<<(fraction a, int shift) noexcept {
  const int rest = word_bits - 1 - shift;
  return {a.high << shift | a.middle >> 1 >> rest, a.middle << shift | a.low >> 1 >> rest, a.low << shift};
}

fraction operator-(fraction a) noexcept {
  const word low = -a.low;
  const word middle = ~a.middle + (low == 0 ? 1 : 0);
  return {~a.high + (low == 0 && middle == 0 ? 1 : 0), middle, low};
}

// The first 117 bits of a fraction that is not below 2^-64.
double_double number(fraction a) noexcept {
  const int zeros = std::countl_zero(a.high);
  const fraction b = a << zeros;
  const double scale = std::bit_cast<double>(static_cast<word>(1023 - zeros) << 52);
  const double top = static_cast<double>(b.high >> 11) * 0x1p-53;
  const double rest = static_cast<double>(b.high << 53 | b.middle >> 11) * 0x1p-117;
  return {top * scale, rest * scale};
}

}  // namespace

// No double is closer than 2^-61 to a multiple of pi / 2 (W. Kahan, Minimizing q * m - n, 1983): of the 190
// bits of the fraction at least 128 are left, and those the table cuts off are below 2^-137.
far_angle reduce_far(double x) noexcept {
  if (!std::isfinite(x)) return {0, x - x, 0};
  constexpr int explicit_bits = 52;
  constexpr int least_exponent = 1075;  // of the last bit of x, as it is stored
  const word bits = std::bit_cast<word>(x);
  const int exponent = static_cast<int>(bits >> explicit_bits & 0x7ff) - least_exponent;
  const word significand = (bits & ((word(1) << explicit_bits) - 1)) | word(1) << explicit_bits;
  const int position = exponent - 2 + word_bits;  // of the first bit worth less than a turn
  const fraction turns = product(significand, {bits_from(position), bits_from(position + word_bits),
                                               bits_from(position + 2 * word_bits)});
  const fraction quarters = turns << 2;
  const bool up = quarters.high >> (word_bits - 1) != 0;  // to the nearest quarter
  const double_double f = number(up ? -quarters : quarters);
  const double_double r = sigpak::product(f, half_pi);
  const int quarter = static_cast<int>(turns.high >> (word_bits - 2)) + (up ? 1 : 0);
  const bool negative = x < 0;
  const double sign = up != negative ? -1 : 1;
  return {(negative ? -quarter : quarter) & 3, sign * r.hi, sign * r.lo};
}

}  // namespace sigpak::kernels
