// SPDX-License-Identifier: MIT
// Every operation of the header with each of its allocations refused in turn, alone and with all that follow:
// it fails or gives what it gives with memory, harms no record, and goes on as in a fresh process once there
// is memory again.
#include <set>

#include "support/calls.h"
#include "support/failing.h"
#include "support/signal.h"
#include "threads/operations.h"

namespace sigpak::test {
namespace {

constexpr std::size_t most_bytes = std::size_t{1} << 22;

void release_all() {
  EXPECT_EQ(dsp_free_internal(), 0);
  EXPECT_EQ(dspf_free_internal(), 0);
}

// What a call leaves: its status, and all records bit for bit.
struct outcome {
  status returned = failed;
  std::string records;
  bool operator==(const outcome&) const = default;
};

template <record V> void describe(const V* v, std::string& to) {
  const auto put = [&to](const void* from, index bytes) {
    to.append(static_cast<const char*>(from), static_cast<std::size_t>(bytes));
  };
  put(&v->points, sizeof v->points);
  put(&v->complex, sizeof v->complex);
  put(&v->delta, sizeof v->delta);
  if (scalars(v) > 0) put(v->data, scalars(v) * index{sizeof v->data[0]});
}

template <record V> outcome outcome_of(const exported& op, const chosen_call& c, place<V>& at) {
  std::srand(1);
  if (!at.make(op, c)) return {};
  outcome left{op.call(at, c.given), {}};
  EXPECT_EQ(at.settle(), nullptr) << op.name;
  for (std::size_t i = 0; i < place<V>::count; ++i) describe(at.at(i), left.records);
  return left;
}

template <record V> outcome outcome_of(const operation<V>& op, workplace<V>& w) {
  outcome left{op.call(w), {}};
  if (left.returned == ok) {
    for (const V* const v : {&w.a, &w.out, &w.state}) describe(v, left.records);
  }
  return left;
}

// How many allocations of run() were refused before all were granted; alone, or with all that follow.
template <class Run> long sweep(const char* name, bool alone, bool repeats, Run run) {
  const refusal ample{.most_bytes = most_bytes};
  const failing_memory memory(ample);
  release_all();
  const outcome wanted = run();
  if (wanted.returned != ok) return -1;
  for (long allowed = 0;; ++allowed) {
    SCOPED_TRACE(testing::Message() << name << ", allocation " << allowed << (alone ? " alone" : " and on"));
    release_all();
    memory.refuse({.first = allowed, .last = alone ? allowed : LONG_MAX, .most_bytes = most_bytes});
    const outcome without = run();
    const bool all_granted = memory.refused() == 0;
    memory.refuse(ample);
    EXPECT_TRUE(without.returned == failed || without == wanted || !repeats) << "a success with other bits";
    EXPECT_TRUE(run() == wanted || !repeats) << "with memory again";
    if (all_granted || testing::Test::HasFailure()) return allowed;
  }
}

template <class V> class Allocation : public testing::Test {};
TYPED_TEST_SUITE(Allocation, records, record_names);

TYPED_TEST(Allocation, EachMayFailInEveryOperation) {
  using V = TypeParam;
  std::set<std::string> never;
  for (std::size_t i = 0; i < export_count(); ++i) {
    const exported& op = export_at(i);
    int successes = 0;
    place<V> at;
    for (unsigned seed = 0; seed < 400 && successes < 6; ++seed) {
      const chosen_call c = fitting_call(op, seed);
      const bool goes_on = op.is("dspc_rand") || op.is("dspd_hwfilt") || op.is("dspi_hwfilt");
      const long refused = sweep(op.name, seed % 2 != 0, !goes_on, [&] { return outcome_of(op, c, at); });
      successes += refused >= 0 ? refused > 0 ? 3 : 1 : 0;
      if (this->HasFailure()) return;
    }
    if (successes == 0) never.insert(op.name);
  }
  EXPECT_EQ(never, (std::set<std::string>{"dsp_version", "dspb_cspline_2d", "dspi_erf", "dspi_erfc",
                                          "dspi_gamma", "dspi_lgamma"}))
      << "those say no 0; a table over a grid is below";
  release_all();
}

TYPED_TEST(Allocation, EachMayFailWhereCachesFill) {
  using V = TypeParam;
  workplace<V> w;
  for (const auto& op : operations<V>()) {
    for (const bool alone : {false, true}) {
      EXPECT_GE(sweep(op.name, alone, op.keeps != kept::one_stream, [&] { return outcome_of(op, w); }), 0)
          << op.name;
    }
  }
  release_all();
}

}  // namespace
}  // namespace sigpak::test
