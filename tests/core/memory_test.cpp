// Raw tables and the lists that keep them.
#include <gtest/gtest.h>

#include "support/failing.h"

namespace sigpak::test {
namespace {

TEST(KeyedList, FindsWhatWasAppendedUntilReleased) {
  keyed_list<double> list;
  EXPECT_EQ(list.find(3), nullptr);
  double* const first = list.append(3, 10);
  double* const second = list.append(4, 20);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(list.find(3), first);
  EXPECT_EQ(list.find(4), second);
  EXPECT_EQ(list.release(), 0);
  EXPECT_EQ(list.find(3), nullptr);
  EXPECT_NE(list.append(3, 1), nullptr);
  EXPECT_EQ(list.release(), 0);
}

TEST(KeyedList, FailedAppendLeavesTheListAsItWas) {
  keyed_list<double> list;
  double* const first = list.append(1, 4);
  for (const int allowed : {0, 1}) {
    const failing_tables scope(allowed);
    EXPECT_EQ(list.append(2, 4), nullptr);
    EXPECT_EQ(list.find(2), nullptr);
    EXPECT_EQ(list.find(1), first);
  }
  EXPECT_NE(list.append(2, 4), nullptr);
  list.release();
}

TEST(Tables, UncountableSizesAreRefused) {
  EXPECT_EQ(allocate_table<double>(PTRDIFF_MAX), nullptr);
  EXPECT_EQ(allocate_table<double>(-1), nullptr);
}

}  // namespace
}  // namespace sigpak::test
