// SPDX-License-Identifier: MIT
// Surfaces as splines of splines, each along one axis.
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class Surfaces : public testing::Test {};
TYPED_TEST_SUITE(Surfaces, records, record_names);

constexpr int pairs = 256;

template <record V> void make_knots(V* g, unsigned seed) {
  const auto r = noise<V>(length(g), seed);
  scalar<V> at = -1;
  for (index i = 0; i < length(g); ++i) {
    g->data[i] = at;
    at += scalar<V>(1) + r[static_cast<std::size_t>(i)] / 2;
  }
}

// The spline through the values along one axis, at one place.
double along(const std::vector<double>& knots, const std::vector<double>& values, double t, int flags) {
  using V = dsp_vec;
  const signal<V> x(knots);
  const signal<V> y(values);
  const signal<V> at{t};
  signal<V> spline;
  signal<V> out;
  EXPECT_EQ(dsp_cspline(&x, &y, &spline, flags & 3, 0, 0), 0);
  EXPECT_EQ(dsp_interp(&x, &spline, &at, &out, flags & 48), 0);
  return out.data[0];
}

TYPED_TEST(Surfaces, AreSplinesAlongBothAxes) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index columns : {1, 2, 3, 7, 35}) {
    for (const index rows : {1, 2, 5}) {
      signal<V> gx(samples<V>(static_cast<std::size_t>(columns)));
      signal<V> gy(samples<V>(static_cast<std::size_t>(rows)));
      make_knots<V>(&gx, 1);
      make_knots<V>(&gy, 2);
      const signal<V> z(noise<V>(columns * rows, 3));
      signal<V> x(noise<V>(8, 4));
      signal<V> y(noise<V>(8, 5));
      for (index i = 0; i < 8; ++i) {
        x.data[i] = static_cast<T>(columns) * (T(0.5) + T(0.6) * x.data[i]) - 1;
        y.data[i] = static_cast<T>(rows) * (T(0.5) + T(0.6) * y.data[i]) - 1;
      }
      x.data[0] = gx.data[columns - 1];
      y.data[0] = gy.data[rows - 1];
      const std::vector<double> x_knots(gx.data, gx.data + columns);
      const std::vector<double> y_knots(gy.data, gy.data + rows);
      for (const int flags : {0, 1, 3, 17, 16, 35}) {
        signal<V> grid;
        signal<V> scattered;
        ASSERT_EQ(TWIN(b_cspline_2d)(&x, &y, &grid, &gx, &gy, &z, flags), 0);
        ASSERT_EQ(TWIN(b_cspline_2d)(&x, &y, &scattered, &gx, &gy, &z, flags | pairs), 0);
        ASSERT_EQ(grid.points, 64U);
        ASSERT_EQ(scattered.points, 8U);
        for (index i = 0; i < 8; ++i) {
          const double same = static_cast<double>(grid.data[9 * i]);
          EXPECT_NEAR(static_cast<double>(scattered.data[i]), same,
                      256 * unit_roundoff<V> * (1 + std::abs(same)));
          for (index j = 0; j < 8; ++j) {
            std::vector<double> down;
            for (index r = 0; r < rows; ++r) {
              const std::vector<double> row(z.data + r * columns, z.data + (r + 1) * columns);
              down.push_back(along(x_knots, row, static_cast<double>(x.data[j]), flags));
            }
            const double wanted = along(y_knots, down, static_cast<double>(y.data[i]), flags);
            ASSERT_NEAR(static_cast<double>(grid.data[8 * i + j]), wanted,
                        256 * unit_roundoff<V> * (1 + std::abs(wanted)))
                << columns << " by " << rows << ", flags " << flags;
          }
        }
      }
      signal<V> table;
      ASSERT_EQ(TWIN(b_cspline_2d)(&gx, &gy, &table, &gx, &gy, &z, 0), 0);
      EXPECT_EQ(table.values(), z.values()) << "exact at the knots";
    }
  }
}

TYPED_TEST(Surfaces, RefuseAndSurvive) {
  using V = TypeParam;
  const signal<V> g{0, 1, 3};
  const signal<V> falling{0, 2, 1};
  const signal<V> z(noise<V>(9));
  const signal<V> complex({0, 1, 2, 3}, true);
  const signal<V> none;
  signal<V> out{5};
  const auto run = [&](const V& x, const V& y, const V& gx, const V& gy, const V& table, int flags) {
    return TWIN(b_cspline_2d)(&x, &y, &out, &gx, &gy, &table, flags);
  };
  for (const int flags : {-1, 2, 4, 48, 64, 512}) EXPECT_EQ(run(g, g, g, g, z, flags), -1);
  EXPECT_EQ(run(g, z, g, g, z, pairs), -1);
  EXPECT_EQ(run(complex, g, g, g, z, 0), -1);
  EXPECT_EQ(run(g, g, falling, g, z, 0), -1);
  EXPECT_EQ(run(g, g, g, falling, z, 0), -1);
  EXPECT_EQ(run(g, g, g, none, none, 0), -1);
  EXPECT_EQ(run(g, g, g, g, g, 0), -1);
  EXPECT_EQ(out.values(), (samples<V>{5}));
  EXPECT_EQ(run(none, g, g, g, z, 0), 0);
  EXPECT_EQ(out.points, 0U);
  signal<V> over(z.values());
  EXPECT_EQ(TWIN(b_cspline_2d)(&g, &g, &over, &g, &g, &over, 0), 0);
  EXPECT_EQ(over.values(), z.values());
}

}  // namespace
}  // namespace sigpak::test
