// SPDX-License-Identifier: MIT
// Operations on different records at the same time: the bits of each are those of the operation alone.
#include <barrier>
#include <mutex>
#include <set>
#include <thread>

#include "core/lending.h"
#include "threads/operations.h"

namespace sigpak::test {
namespace {

constexpr int thread_count = 4;
constexpr std::size_t rounds = 3;

// Runs body(i) in as many threads, all from the same moment on.
template <class Body> void in_threads(Body body) {
  std::barrier together(thread_count);
  std::vector<std::thread> threads;
  for (int i = 0; i < thread_count; ++i) {
    threads.emplace_back([&, i] {
      together.arrive_and_wait();
      body(static_cast<std::size_t>(i));
    });
  }
  for (std::thread& t : threads) t.join();
}

// The operations of one precision and what each of them gives alone.
template <record V> class expectations {
 public:
  expectations() {
    workplace<V> w;
    for (const auto& op : operations_) {
      EXPECT_EQ(op.call(w), ok) << op.name;
      wanted_.push_back(w.results());
    }
  }
  std::size_t count() const { return operations_.size(); }

  // Whether it fails only where it may, and gives the bits that it should.
  std::string fault_of(std::size_t i, workplace<V>& w, bool may_fail) const {
    const auto& op = operations_[i % count()];
    if (op.call(w) != ok) return may_fail ? "" : op.name + std::string(" fails");
    const bool right = op.keeps == kept::one_stream || same_bits(w.results(), wanted_[i % count()]);
    return right ? "" : op.name + std::string(" gives other bits");
  }

 private:
  const std::vector<operation<V>> operations_ = operations<V>();
  std::vector<samples<V>> wanted_;
};

void release_all() {
  EXPECT_EQ(dsp_free_internal(), 0);
  EXPECT_EQ(dspf_free_internal(), 0);
}

class Threads : public testing::Test {
 protected:
  // Every thread runs all operations, each from another one on, or all from the first.
  void run_all(bool apart, bool may_fail) {
    std::mutex guard;
    std::set<std::string> faults;
    in_threads([&](std::size_t thread) {
      workplace<dsp_vec> d;
      workplace<dspf_vec> f;
      for (std::size_t i = 0; i < doubles_.count(); ++i) {
        const std::size_t at = apart ? i + thread * doubles_.count() / thread_count : i;
        for (const auto& fault : {doubles_.fault_of(at, d, may_fail), floats_.fault_of(at, f, may_fail)}) {
          const std::lock_guard lock(guard);
          if (!fault.empty()) faults.insert(fault);
        }
      }
    });
    EXPECT_EQ(faults, std::set<std::string>{});
  }
  ~Threads() override { release_all(); }

 private:
  expectations<dsp_vec> doubles_;
  expectations<dspf_vec> floats_;
};

TEST_F(Threads, GiveTheBitsOfOneWithColdAndWarmCaches) {
  for (std::size_t round = 0; round < rounds; ++round) {
    for (const bool apart : {false, true}) {
      SCOPED_TRACE(testing::Message() << round << (apart ? ", apart" : ", side by side"));
      release_all();
      run_all(apart, false);
      run_all(apart, false);
    }
  }
}

TEST_F(Threads, SurviveTheFailedAllocationsOfOthers) {
  for (const long each : {1, 2, 3, 7}) {
    SCOPED_TRACE(each);
    release_all();
    {
      const failing_memory scope({.each = each});
      run_all(true, true);
    }
    run_all(true, false);
  }
}

// Threads begin at places of their own, so that those of the operations seldom meet: here they have to. One
// loan is out from before they start.
TEST(Lender, GivesAStateToOneCallAtATime) {
  struct used {
    std::atomic<bool> now = false;
    int loans = 0;
    status release() noexcept { return ok; }
  };
  lender<used, 2> states;
  const loan<used, 2> before(states);
  before->now = true;
  {
    const loan<used, 2> second(states), beyond(states);
    EXPECT_EQ((std::set<used*>{&*before, &*second, &*beyond}).size(), 3u);
  }
  std::atomic<int> together = 0;
  in_threads([&](std::size_t) {
    for (int i = 0; i < 10000; ++i) {
      const loan<used, 2> one(states);
      together += one->now.exchange(true, std::memory_order_relaxed) ? 1 : 0;
      ++one->loans;
      one->now.store(false, std::memory_order_relaxed);
    }
  });
  EXPECT_EQ(together, 0);
}

template <class V> class Warm : public testing::Test {};
TYPED_TEST_SUITE(Warm, records, record_names);

TYPED_TEST(Warm, OperationsOnLargeEnoughRecordsAllocateNothing) {
  workplace<TypeParam> w;
  for (const auto& op : operations<TypeParam>()) {
    EXPECT_EQ(op.call(w), ok) << op.name;
    const failing_memory counted;
    EXPECT_EQ(op.call(w), ok) << op.name;
    EXPECT_TRUE(counted.calls() == 0 || op.keeps == kept::nothing) << op.name;
  }
  release_all();
}

}  // namespace
}  // namespace sigpak::test
