// Raw tables and the lists that keep them.
#include "support/failing.h"

namespace sigpak::test {
namespace {

TEST(KeyedList, KeepsWhatWasAppendedUntilReleasedThroughFailures) {
  keyed_list<double> list;
  for (const int round : {1, 2}) {
    EXPECT_EQ(list.find(3), nullptr) << round;
    double* const first = list.append(3, 10);
    ASSERT_NE(first, nullptr);
    const int failures = failures_before_success<failing_tables>([&] {
      double* const second = list.append(4, 20);
      EXPECT_EQ(list.find(4), second);
      EXPECT_EQ(list.find(3), first);
      return second != nullptr ? ok : failed;
    });
    EXPECT_EQ(failures, 2);
    EXPECT_EQ(list.release(), 0);
  }
  EXPECT_EQ(allocate_table<double>(PTRDIFF_MAX), nullptr);
  EXPECT_EQ(allocate_table<double>(-1), nullptr);
}

}  // namespace
}  // namespace sigpak::test
