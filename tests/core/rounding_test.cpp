// SPDX-License-Identifier: MIT
// Rounding with a tolerance.
#include "core/rounding.h"

#include <gtest/gtest.h>

namespace sigpak {
namespace {

TEST(TolerantRounding, ForgivesTheLastBitsOnly) {
  constexpr double near = 1 + 3e-15;
  constexpr double far = 1 + 6e-15;
  struct {
    double x;
    int ceiling;
    int floor;
  } const cases[] = {{0, 0, 0},
                     {7, 7, 7},
                     {7 * near, 7, 7},
                     {7 * far, 8, 7},
                     {7 / near, 7, 7},
                     {7 / far, 7, 6},
                     {6.5, 7, 6},
                     {0.25, 1, 0},
                     {4e-15, 0, 0},
                     {5e-15, 1, 0},
                     {-0.5, 0, -1},
                     {-3, -3, -3},
                     {2147483646.5, 2147483647, 2147483646},
                     {2147483647.0, 2147483647, 2147483647},
                     {1e300, 2147483647, 2147483647}};
  for (const auto& c : cases) {
    EXPECT_EQ(tolerant_ceiling(c.x), c.ceiling) << c.x;
    EXPECT_EQ(tolerant_floor(c.x), c.floor) << c.x;
  }
  EXPECT_TRUE(tolerantly_equal(3, 3 * near));
  EXPECT_FALSE(tolerantly_equal(3, 3 * far));
  EXPECT_TRUE(tolerantly_equal(0, 0));
  EXPECT_FALSE(tolerantly_equal(0, 1e-300));
  for (const double x : {3.0, -3.0, -HUGE_VAL}) EXPECT_FALSE(tolerantly_equal(x, HUGE_VAL));
  EXPECT_TRUE(tolerantly_equal(HUGE_VAL, HUGE_VAL));
}

}  // namespace
}  // namespace sigpak
