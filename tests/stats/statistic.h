// SPDX-License-Identifier: MIT
// What a statistic leaves in its result record.
#pragma once

#include "core/guard.h"
#include "support/failing.h"
#include "support/forms.h"

namespace sigpak::test {

// The values, one for a real result and two for a complex one; the spacing of the result stays.
template <record V, class Run> samples<V> result_of(Run run, const V& v) {
  signal<V> out({9, 9, 9, 9}, true);
  out.delta = 3;
  EXPECT_EQ(run(&v, &out), 0);
  EXPECT_EQ(out.delta, 3);
  return out.values();
}

using pair = std::complex<double>;

// The definition, transcribed: blocks of 2048 points from zero, each then added to the total.
template <class Points, class Term> pair plain_blocks(const Points& points, Term term) {
  pair total = 0;
  for (std::size_t begin = 0; begin < points.size(); begin += 2048) {
    pair block = 0;
    for (std::size_t i = begin; i < std::min(points.size(), begin + 2048); ++i)
      block += term(pair(points[i]));
    total += block;
  }
  return total;
}

// Within a relative tolerance, and the roundoff of the stored value on top; NaN equal NaN.
template <record V>
void expect_values(const samples<V>& got, const std::vector<double>& wanted, double relative,
                   const char* name) {
  ASSERT_EQ(got.size(), wanted.size()) << name;
  for (std::size_t i = 0; i < got.size(); ++i) {
    const double bound = (relative + unit_roundoff<V>)*std::abs(wanted[i]);
    const bool both_nan = std::isnan(wanted[i]) && std::isnan(got[i]);
    EXPECT_TRUE(both_nan || std::abs(wide(got[i]) - wanted[i]) <= bound)
        << name << ' ' << i << ": " << got[i] << " for " << wanted[i];
  }
}

}  // namespace sigpak::test
