// Windows applied to records, and the ring that keeps them.
#include <gtest/gtest.h>

#include "support/failing.h"
#include "windows/ring.h"
#include "windows/windowed.h"

namespace sigpak::test {
namespace {

constexpr int in_place = DSP_WINDOW_FLAG_PEAK | DSP_WINDOW_FLAG_NO_ROTATE;

template <class V> class Windowing : public testing::Test {
 protected:
  void TearDown() override { TWIN(_free_internal)(); }
};
TYPED_TEST_SUITE(Windowing, records, record_names);

TYPED_TEST(Windowing, TheUniformWindowMultipliesNothing) {
  using V = TypeParam;
  signal<V> v{1, 2, 3, 4, 5};
  EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_UNIFORM, 0), 0);
  EXPECT_EQ(v.values(), (samples<V>{1, 2, 3, 4, 5}));
  EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_UNIFORM, DSP_WINDOW_FLAG_ROTATE | DSP_WINDOW_FLAG_SYMMETRIC), 0);
  EXPECT_EQ(v.values(), (samples<V>{3, 4, 5, 1, 2}));
  EXPECT_EQ(TWIN(i_window2)(&v, DSP_WINDOW_UNIFORM, DSP_WINDOW_FLAG_WIDTH | DSP_WINDOW_FLAG_ROTATE, 4), 0);
  EXPECT_EQ(v.values(), (samples<V>{5, 1, 0, 3, 4}));
}

TYPED_TEST(Windowing, ThePeakTurnsToTheFirstPointUnlessAsked) {
  using V = TypeParam;
  signal<V> v{8, 8, 8, 8};
  EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_TRIANGULAR, DSP_WINDOW_FLAG_PEAK), 0);
  EXPECT_EQ(v.values(), (samples<V>{8, 4, 0, 4}));
  signal<V> stays{1, 2, 3, 4};
  EXPECT_EQ(TWIN(i_window)(&stays, DSP_WINDOW_TRIANGULAR, in_place), 0);
  EXPECT_EQ(stays.values(), (samples<V>{0, 1, 3, 2}));
  signal<V> odd{4, 4, 4};
  EXPECT_EQ(TWIN(i_window)(&odd, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_PEAK | DSP_WINDOW_FLAG_ROTATE), 0);
  EXPECT_EQ(odd.data[0], 4);
}

TYPED_TEST(Windowing, ComplexPointsAreWindowedAsAWhole) {
  using V = TypeParam;
  signal<V> v({4, -4, 8, -8, 16, -16, 32, -32}, true);
  v.delta = 0.25;
  EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_TRIANGULAR, DSP_WINDOW_FLAG_PEAK), 0);
  EXPECT_EQ(v.values(), (samples<V>{16, -16, 16, -16, 0, 0, 4, -4}));
  EXPECT_EQ(v.delta, 0.25);
  EXPECT_EQ(v.complex, 1);
}

TYPED_TEST(Windowing, ALentRecordMovesAndItsBufferStays) {
  using V = TypeParam;
  signal<V> v{1, 2, 3, 4};
  v.lend();
  EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_TRIANGULAR, in_place), 0);
  EXPECT_EQ(v.values(), (samples<V>{0, 1, 3, 2}));
  EXPECT_EQ(v.lent(), (samples<V>{1, 2, 3, 4}));
}

TYPED_TEST(Windowing, EmptyRecordsStayEmpty) {
  using V = TypeParam;
  for (const std::uint32_t points : {0U, 0x80000000U, 0xFFFFFFFFU}) {
    V v;
    TWIN(_init)(&v);
    v.points = points;
    EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_HANN, 0), 0);
    EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_UNIFORM, DSP_WINDOW_FLAG_ROTATE), 0);
    EXPECT_EQ(TWIN(i_window)(&v, 24, 0), -1);
    EXPECT_EQ(v.points, points);
    EXPECT_EQ(v.data, nullptr);
  }
}

TYPED_TEST(Windowing, RefusalsLeaveTheRecordAsItWas) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr int symmetric = DSP_WINDOW_FLAG_SYMMETRIC;
  constexpr int width = DSP_WINDOW_FLAG_WIDTH;
  const T nan = std::numeric_limits<T>::quiet_NaN();
  struct refusal {
    int window;
    int flags;
    T width;
  };
  const refusal refusals[] = {
      {DSP_WINDOW_UNIFORM, 3, 0},
      {DSP_WINDOW_HANN, 3, 0},
      {DSP_WINDOW_HANN, 3 | width, 4},
      {DSP_WINDOW_HANN, symmetric, 0},
      {DSP_WINDOW_HANN, symmetric | width, 4},
      {DSP_WINDOW_UNIFORM, symmetric | width, 4},
      {DSP_WINDOW_TRIANGULAR, symmetric, 0},
      {DSP_WINDOW_TRIANGULAR, width, 4},
      {DSP_WINDOW_HANN, width, nan},
      {DSP_WINDOW_UNIFORM, width, nan},
      {-1, 0, 0},
      {24, 0, 0},
      {24, width, 4},
      {std::numeric_limits<int>::min(), 0, 0},
  };
  for (const auto& r : refusals) {
    signal<V> v{1, 2, 3, 4};
    EXPECT_EQ(TWIN(i_window2)(&v, r.window, r.flags, r.width), -1) << r.window << " flags " << r.flags;
    EXPECT_EQ(TWIN(i_window2)(&v, r.window, r.flags, r.width), -1) << "the second time";
    EXPECT_EQ(v.values(), (samples<V>{1, 2, 3, 4}));
  }
  signal<V> v{1, 2, 3, 4};
  EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_HANN, width), -1);
  EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_UNIFORM, width), -1);
  EXPECT_EQ(v.values(), (samples<V>{1, 2, 3, 4}));
}

template <record V> const scalar<V>* storage_of(index n, int window, int flags = 0, double width = 0) {
  const V* const w = cached_window<V>(static_cast<std::uint32_t>(n), window, flags, width);
  return w != nullptr ? w->data : nullptr;
}

TYPED_TEST(Windowing, AWindowIsFoundByPointsTypeShapeAndWidth) {
  using V = TypeParam;
  const auto* const hann = storage_of<V>(8, DSP_WINDOW_HANN);
  ASSERT_NE(hann, nullptr);
  EXPECT_EQ(storage_of<V>(8, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE | DSP_WINDOW_FLAG_ROTATE), hann);
  EXPECT_EQ(storage_of<V>(8, DSP_WINDOW_HANN, 0, 5), hann);
  EXPECT_NE(storage_of<V>(9, DSP_WINDOW_HANN), hann);
  EXPECT_NE(storage_of<V>(8, DSP_WINDOW_HAMMING), hann);
  EXPECT_NE(storage_of<V>(8, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_RMS), hann);
  const auto* const narrow = storage_of<V>(8, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_WIDTH, 5);
  EXPECT_NE(narrow, hann);
  EXPECT_EQ(storage_of<V>(8, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_WIDTH, 5 * (1 + 2e-15)), narrow);
  EXPECT_NE(storage_of<V>(8, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_WIDTH, 5 * (1 + 2e-14)), narrow);
}

// The ring turns: the window after the 16th takes the place of the first, and what is found is what was asked
// for.
TYPED_TEST(Windowing, TheSeventeenthWindowTakesThePlaceOfTheFirst) {
  using V = TypeParam;
  std::vector<const scalar<V>*> first;
  for (index n = 40; n > 24; --n) first.push_back(storage_of<V>(n, DSP_WINDOW_HANN));
  for (std::size_t i = 0; i < first.size(); ++i) {
    EXPECT_EQ(storage_of<V>(40 - static_cast<index>(i), DSP_WINDOW_HANN), first[i]);
  }
  EXPECT_EQ(storage_of<V>(10, DSP_WINDOW_HANN), first[0]);
  EXPECT_EQ(storage_of<V>(11, DSP_WINDOW_HANN), first[1]);
  EXPECT_EQ(storage_of<V>(38, DSP_WINDOW_HANN), first[2]);
  EXPECT_EQ(storage_of<V>(12, DSP_WINDOW_HANN), first[2]);
  EXPECT_EQ(storage_of<V>(25, DSP_WINDOW_HANN), first[15]);
}

TYPED_TEST(Windowing, WhateverTheHistoryTheWindowIsTheSame) {
  using V = TypeParam;
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 23; ++i) {
      const index n = 3 + (i * 7 + round * 5) % 40;
      const int window = DSP_WINDOW_HANN + i % 12;
      const samples<V> kept = window_of<V>(n, window, i % 3);
      const samples<V> again = window_of<V>(n, window, i % 3);
      EXPECT_EQ(kept, again);
      if (i % 5 == 0) {
        TWIN(_free_internal)();
        EXPECT_EQ(window_of<V>(n, window, i % 3), kept);
      }
    }
  }
}

TYPED_TEST(Windowing, AFailedWindowIsNotFoundLater) {
  using V = TypeParam;
  {
    const failing_tables scope(0);
    signal<V> v{1, 2, 3, 4};
    EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_TRIANGULAR, in_place), -1);
    EXPECT_EQ(v.values(), (samples<V>{1, 2, 3, 4}));
  }
  for (int used = 0; used <= 20; ++used) {
    TWIN(_free_internal)();
    for (int i = 0; i < used; ++i) storage_of<V>(8 + i, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_PEAK);
    signal<V> v(ones<V>(64));
    {
      const failing_records<V> scope(0);
      EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_HANN, in_place), -1);
      EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_HANN, in_place), -1);
      EXPECT_EQ(v.values(), ones<V>(64));
    }
    EXPECT_EQ(TWIN(i_window)(&v, 24, in_place), -1);
    EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_HANN, in_place), 0);
    const samples<V> got = v.values();
    TWIN(_free_internal)();
    EXPECT_EQ(got, window_of<V>(64, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_PEAK)) << "after " << used;
  }
}

TYPED_TEST(Windowing, ALentRecordThatCannotMoveFails) {
  using V = TypeParam;
  signal<V> v{1, 2, 3, 4};
  v.lend();
  const failing_records<V> scope(1);
  EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_TRIANGULAR, in_place), -1);
  EXPECT_EQ(v.lent(), (samples<V>{1, 2, 3, 4}));
}

}  // namespace
}  // namespace sigpak::test
