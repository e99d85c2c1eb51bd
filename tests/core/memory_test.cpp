// Raw tables, the lists that keep them, and the sizes of the caches.
#include "core/machine.h"
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
    list.release();
  }
  EXPECT_EQ(allocate_table<double>(PTRDIFF_MAX), nullptr);
  EXPECT_EQ(allocate_table<double>(-1), nullptr);
}

TEST(Machine, CachesAreAskedOnceOrForced) {
  const machine::cache_sizes asked = machine::caches();
  EXPECT_GE(asked.first, index{machine::page_bytes});
  EXPECT_TRUE(asked.last > 0 && asked.last <= machine::usual_caches.last);
  machine::force({.first = 5000, .last = 6000});
  EXPECT_TRUE(machine::caches().first == 5000 && machine::caches().last == 6000);
  machine::force(asked);
}

}  // namespace
}  // namespace sigpak::test
