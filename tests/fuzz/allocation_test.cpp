// SPDX-License-Identifier: MIT
// Every operation of the header with each of its allocations refused in turn, alone and with all that follow:
// it fails or gives what it gives with memory, harms no record, and goes on as in a fresh process once there
// is memory again.
#include <map>
#include <set>

#include "fuzz/calls.h"
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

// One call with its records, which can be had as often as it takes.
template <record V> class scene {
 public:
  virtual ~scene() = default;
  virtual outcome run() = 0;
  virtual std::string name() const = 0;
};

// The calls that random bytes make.
template <record V> class chosen_call : public scene<V> {
 public:
  chosen_call(const exported& op, unsigned seed) : op_(op) {
    std::mt19937 engine(seed);
    std::vector<std::uint8_t> bytes(100);
    for (auto& b : bytes) b = static_cast<std::uint8_t>(engine() >> 24);
    choices from(bytes.data(), bytes.size());
    for (recipe& r : recipes_) {
      r = chosen_recipe(from);
      if (r.kind == recipe::storage::odd) r.kind = recipe::storage::exact;
      r.fill = static_cast<std::uint8_t>(r.fill % 6);
    }
    arguments_ = chosen_arguments(op, from);
    for (argument& a : arguments_) a.missing = a.missing && seed % 4 == 0;
  }
  std::string name() const override { return op_.name; }

  outcome run() override {
    std::srand(1);
    for (std::size_t i = 0; i < std::size(recipes_); ++i) place_.make(i, recipes_[i]);
    if (!prepare(op_, arguments_, place_)) return {};
    outcome left{op_.call(place_, arguments_), {}};
    const char* const fault = place_.settle();
    EXPECT_EQ(fault, nullptr) << op_.name;
    for (std::size_t i = 0; i < std::size(recipes_); ++i) describe(place_.at(i), left.records);
    return left;
  }

 private:
  const exported& op_;
  recipe recipes_[place<V>::count];
  arguments arguments_;
  place<V> place_;
};

// The calls that fill every cache, with records that were there before.
template <record V> class cached_call : public scene<V> {
 public:
  explicit cached_call(const operation<V>& op) : op_(op) {}
  std::string name() const override { return op_.name; }
  outcome run() override {
    outcome left{op_.call(work_), {}};
    if (left.returned == ok) {
      describe(&work_.a, left.records);
      describe(&work_.out, left.records);
      describe(&work_.state, left.records);
    }
    return left;
  }

 private:
  const operation<V> op_;
  workplace<V> work_;
};

// How many allocations were refused before all were granted.
template <record V> long sweep(scene<V>& s, bool one, bool repeats) {
  rationed_memory memory(most_bytes);
  release_all();
  const outcome wanted = s.run();
  if (wanted.returned != ok) return -1;
  for (long allowed = 0;; ++allowed) {
    SCOPED_TRACE(testing::Message() << s.name() << ", allocation " << allowed
                                    << (one ? " alone" : " and on"));
    release_all();
    const long before = rationed_memory::refused();
    memory.refuse(allowed, one);
    const outcome without = s.run();
    memory.refuse_none();
    EXPECT_TRUE(without.returned == failed || without == wanted || !repeats) << "a success with other bits";
    EXPECT_TRUE(s.run() == wanted || !repeats) << "with memory again";
    if (rationed_memory::refused() == before || testing::Test::HasFailure()) return allowed;
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
    for (unsigned seed = 0; seed < 400 && successes < 6; ++seed) {
      chosen_call<V> call(op, seed);
      const bool goes_on = op.is("dspc_rand") || op.is("dspd_hwfilt") || op.is("dspi_hwfilt");
      const long refused = sweep(call, seed % 2 != 0, !goes_on);
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
  for (const auto& op : operations<V>()) {
    for (const bool one : {false, true}) {
      cached_call<V> call(op);
      EXPECT_GE(sweep(call, one, op.keeps != kept::one_stream), 0) << op.name;
    }
  }
  release_all();
}

}  // namespace
}  // namespace sigpak::test
