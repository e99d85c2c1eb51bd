// SPDX-License-Identifier: MIT
// Windows applied to records, and the ring that keeps them.
#include "support/failing.h"
#include "windows/ring.h"
#include "windows/windowed.h"

namespace sigpak::test {
namespace {

constexpr int stays = DSP_WINDOW_FLAG_NO_ROTATE;

template <class V> class Windowing : public testing::Test {
 protected:
  void TearDown() override { TWIN(_free_internal)(); }
};
TYPED_TEST_SUITE(Windowing, records, record_names);

// The middle of every window but the uniform one turns to the first point unless that is asked for.
TYPED_TEST(Windowing, EveryPointIsMultipliedAndThePeakTurnsToTheFirst) {
  using V = TypeParam;
  struct {
    int window;
    int flags;
    double parameter;
    bool turns;
  } const cases[] = {{DSP_WINDOW_UNIFORM, 0, 0, false},
                     {DSP_WINDOW_UNIFORM, DSP_WINDOW_FLAG_ROTATE | symmetric, 0, true},
                     {DSP_WINDOW_UNIFORM, DSP_WINDOW_FLAG_ROTATE | by_width, 4, true},
                     {DSP_WINDOW_UNIFORM, by_width, 4, false},
                     {DSP_WINDOW_TRIANGULAR, by_peak, 0, true},
                     {DSP_WINDOW_TRIANGULAR, by_peak | stays, 0, false},
                     {DSP_WINDOW_HANN, by_rms | DSP_WINDOW_FLAG_ROTATE, 0, true},
                     {DSP_WINDOW_HANN, by_width, 2.5, true},
                     {kaiser, by_peak, 0.75, true},
                     {kaiser, stays, 0.75, false},
                     {gaussian, by_peak | DSP_WINDOW_FLAG_ROTATE, 0.75, true},
                     {gaussian, stays | symmetric, 0.75, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.window << " flags " << c.flags);
    const auto model = [&c](contents<V>& v) {
      const auto w =
          window_of<V>(std::ssize(v.points), c.window, c.flags & ~DSP_WINDOW_FLAG_ROTATE, c.parameter);
      for (std::size_t i = 0; i < w.size(); ++i) v.points[i] *= w[i];
      if (c.turns) std::rotate(v.points.begin(), v.points.begin() + std::ssize(v.points) / 2, v.points.end());
    };
    expect_in_place<V>([&c](V* v) { return apply<V>(v, c.window, c.flags, c.parameter); }, model,
                       {0, 1, 2, 3, 4, 9, 64});
  }
  expect_empty_untouched<V>({[](V* v) { return apply<V>(v, DSP_WINDOW_HANN, 0); },
                             [](V* v) { return apply<V>(v, DSP_WINDOW_UNIFORM, DSP_WINDOW_FLAG_ROTATE); },
                             [](V* v) { return apply<V>(v, kaiser, 0, 1); },
                             [](V* v) { return apply<V>(v, gaussian, 0, 1); },
                             [](V* v) { return -1 - apply<V>(v, 24, 0); }});
}

TYPED_TEST(Windowing, RefusalsLeaveTheRecordAsItWas) {
  using V = TypeParam;
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  struct {
    std::vector<int> windows;
    int flags;
    double parameter;
  } const refusals[] = {
      {{DSP_WINDOW_UNIFORM, DSP_WINDOW_HANN, kaiser, gaussian}, 3, 1},
      {{DSP_WINDOW_HANN}, 3 | by_width, 4},
      {{DSP_WINDOW_TRIANGULAR, DSP_WINDOW_HANN, DSP_WINDOW_P601, DSP_WINDOW_RIEMANN}, symmetric, 0},
      {{DSP_WINDOW_UNIFORM, DSP_WINDOW_HANN}, symmetric | by_width, 4},
      {{DSP_WINDOW_TRIANGULAR, DSP_WINDOW_KAISER70, DSP_WINDOW_KAISER120, DSP_WINDOW_GAUSS60,
        DSP_WINDOW_GAUSS80, 24, -1, kaiser, gaussian},
       by_width,
       4},
      {{DSP_WINDOW_UNIFORM, DSP_WINDOW_HANN}, by_width, nan},
      {{gaussian}, 0, nan},
      {{-1, 24, std::numeric_limits<int>::min()}, 0, 0}};
  for (const auto& r : refusals) {
    for (const int window : r.windows) {
      for (const char* time : {"once", "again"}) {
        signal<V> v{1, 2, 3, 4};
        EXPECT_EQ(apply<V>(&v, window, r.flags, r.parameter), -1) << window << ' ' << r.flags << time;
        EXPECT_EQ(v.values(), (samples<V>{1, 2, 3, 4}));
      }
    }
  }
  signal<V> v{1, 2, 3, 4};
  EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_HANN, by_width), -1);
  EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_UNIFORM, by_width), -1);
  EXPECT_EQ(v.values(), (samples<V>{1, 2, 3, 4}));
}

template <record V> class Ring : public testing::Test {
 protected:
  ~Ring() override { ring_.release(); }
  const scalar<V>* storage_of(index n, int window, int flags = 0, double width = 0) {
    const V* const w = ring_.find({n, window, flags, width});
    return w != nullptr ? w->data : nullptr;
  }

 private:
  window_ring<V> ring_;
};
TYPED_TEST_SUITE(Ring, records, record_names);

TYPED_TEST(Ring, AWindowIsFoundByPointsTypeShapeAndWidth) {
  const auto storage_of = [this](auto... of) { return this->storage_of(of...); };
  const auto* const hann = storage_of(8, DSP_WINDOW_HANN);
  ASSERT_NE(hann, nullptr);
  EXPECT_EQ(storage_of(8, DSP_WINDOW_HANN, stays | DSP_WINDOW_FLAG_ROTATE), hann);
  EXPECT_EQ(storage_of(8, DSP_WINDOW_HANN, 0, 5), hann);
  EXPECT_NE(storage_of(9, DSP_WINDOW_HANN), hann);
  EXPECT_NE(storage_of(8, DSP_WINDOW_HAMMING), hann);
  EXPECT_NE(storage_of(8, DSP_WINDOW_HANN, by_rms), hann);
  const auto* const narrow = storage_of(8, DSP_WINDOW_HANN, by_width, 5);
  EXPECT_NE(narrow, hann);
  EXPECT_EQ(storage_of(8, DSP_WINDOW_HANN, by_width, 5 * (1 + 2e-15)), narrow);
  EXPECT_NE(storage_of(8, DSP_WINDOW_HANN, by_width, 5 * (1 + 2e-14)), narrow);
}

// What is found is what was asked for.
TYPED_TEST(Ring, TheSeventeenthWindowTakesThePlaceOfTheFirst) {
  using V = TypeParam;
  const auto storage_of = [this](auto... of) { return this->storage_of(of...); };
  std::vector<const scalar<V>*> first;
  for (index n = 40; n > 24; --n) first.push_back(storage_of(n, DSP_WINDOW_HANN));
  const std::pair<index, std::size_t> found[] = {{40, 0}, {39, 1}, {25, 15}, {10, 0},
                                                 {11, 1}, {38, 2}, {12, 2},  {25, 15}};
  for (const auto& [n, place] : found) {
    EXPECT_EQ(storage_of(n, DSP_WINDOW_HANN), first[place]) << n;
    const auto kept = window_of<V>(n, DSP_WINDOW_HANN, 0);
    EXPECT_TRUE(std::equal(kept.begin(), kept.end(), first[place]));
  }
}

TYPED_TEST(Windowing, AFailedWindowIsNotFoundLater) {
  using V = TypeParam;
  const auto wanted = window_of<V>(64, DSP_WINDOW_HANN, by_peak);
  for (int used = 0; used <= 20; ++used) {
    TWIN(_free_internal)();
    for (int i = 0; i < used; ++i) window_of<V>(8 + i, DSP_WINDOW_HANN, by_peak);
    signal<V> v(ones<V>(64));
    for (int time = 0; time < 2; ++time) {
      const failing_records scope(0);
      EXPECT_EQ(apply<V>(&v, DSP_WINDOW_HANN, by_peak | stays), -1);
      EXPECT_EQ(v.values(), ones<V>(64));
    }
    EXPECT_EQ(apply<V>(&v, 24, by_peak | stays), -1);
    EXPECT_EQ(apply<V>(&v, DSP_WINDOW_HANN, by_peak | stays), 0);
    EXPECT_EQ(v.values(), wanted) << "after " << used;
  }
}

TYPED_TEST(Windowing, WithoutStorageNothingChanges) {
  using V = TypeParam;
  const signal<V> terms{1, 1};
  const std::pair<std::function<status(V*)>, int> cases[] = {
      {[](V* v) { return apply<V>(v, DSP_WINDOW_HANN, 0); }, 2},
      {[](V* v) { return apply<V>(v, kaiser, 0, 1); }, 3},
      {[](V* v) { return apply<V>(v, gaussian, 0, 1); }, 3},
      {[](V* v) { return TWIN(i_window_sinc)(v, 1, 1, 0); }, 3},
      {[&terms](V* v) { return TWIN(i_window_cos)(v, &terms, 0); }, 3},
      {[](V* v) { return TWIN(i_window_fir)(v, 60, 1); }, 2}};
  for (const auto& [run, allocations] : cases) {
    EXPECT_EQ(failures_before_success<failing_records>([&run = run] {
                TWIN(_free_internal)();
                V lent = signal<V>();
                auto buffer = samples<V>{1, 2, 3, 4};
                lent.points = 4;
                lent.data = buffer.data();
                const status s = run(&lent);
                EXPECT_EQ(buffer, (samples<V>{1, 2, 3, 4}));
                TWIN(_destroy)(&lent);
                return s;
              }),
              allocations);
  }
  TWIN(_free_internal)();
  const failing_tables none(0);
  signal<V> v{1, 2, 3, 4};
  EXPECT_EQ(apply<V>(&v, DSP_WINDOW_TRIANGULAR, 0), -1);
  EXPECT_EQ(v.values(), (samples<V>{1, 2, 3, 4}));
}

}  // namespace
}  // namespace sigpak::test
