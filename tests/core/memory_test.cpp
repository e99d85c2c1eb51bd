// SPDX-License-Identifier: MIT
// Tables and states that are kept, and the sizes of the caches.
#include "core/lending.h"
#include "core/machine.h"
#include "core/published.h"
#include "support/failing.h"

namespace sigpak::test {
namespace {

TEST(Published, TheFirstTableStaysUntilTheRelease) {
  published<double, 4> tables;
  for (const int round : {1, 2}) {
    EXPECT_EQ(tables.find(3), nullptr) << round;
    double* const first = allocate_table<double>(10);
    EXPECT_EQ(tables.keep(3, first), first);
    EXPECT_EQ(tables.keep(3, allocate_table<double>(10)), first) << "and the later one is freed";
    EXPECT_EQ(tables.find(3), first);
    EXPECT_EQ(tables.find(2), nullptr);
    tables.release();
  }
  EXPECT_EQ(allocate_table<double>(PTRDIFF_MAX), nullptr);
  EXPECT_EQ(allocate_table<double>(-1), nullptr);
}

struct counted_state {
  int value = 0;
  status release() { return value < 0 ? failed : (value = 0, ok); }
};

TEST(Lender, EveryCallHasAStateForItselfAndLaterOnesFindItAgain) {
  static constinit lender<counted_state, 2> states;
  for (const index bytes : {index{0}, large_state}) {
    const loan first(states, bytes);
    const loan second(states, bytes);
    first->value = second->value = 7;
    const loan own(states, bytes);
    EXPECT_EQ(own->value, 0) << "all are taken";
    EXPECT_NE(&*first, &*second);
  }
  EXPECT_EQ(loan(states)->value, 7);
  EXPECT_EQ(states.release(), ok);
  EXPECT_EQ(loan(states)->value, 0);
  loan(states)->value = -1;
  EXPECT_EQ(states.release(), failed);
}

TEST(Machine, CachesAreAskedOnceOrForced) {
  const machine::cache_sizes asked = machine::caches();
  EXPECT_GE(asked.first, index{machine::page_bytes});
  EXPECT_GT(asked.first_ways, 0);
  EXPECT_GE(asked.second, asked.first);
  EXPECT_TRUE(asked.last > 0 && asked.last <= machine::usual_caches.last);
  machine::force({.first = 5000, .first_ways = 3, .second = 6000, .last = 7000});
  const machine::cache_sizes forced = machine::caches();
  EXPECT_EQ((std::vector{forced.first, forced.first_ways, forced.second, forced.last}),
            (std::vector<index>{5000, 3, 6000, 7000}));
  machine::force(asked);
}

}  // namespace
}  // namespace sigpak::test
