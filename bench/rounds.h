// SPDX-License-Identifier: MIT
// Interleaved timing: every contender runs in every round, and what counts is the median over the rounds.
#pragma once

#include <time.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

// One way to do the job, or none where `once` is empty. `refill` is not timed; it keeps repeated unscaled
// transforms inside the number range.
struct contender {
  std::string name;
  std::function<void()> refill;
  std::function<void()> once;
  int repeats = 1;  // between two refills
};

struct timing {
  double seconds = 0;  // of one run: the median
  double ratio = 0;    // speed relative to the first contender: the median of the rounds
};

inline double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// Seconds that this thread has run: what other programs take of a shared machine does not count.
inline double thread_seconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// What reading the clock adds to a batch.
inline double clock_seconds() {
  static const double least = [] {
    double seconds = 1;
    for (int i = 0; i < 1000; ++i) {
      const double start = thread_seconds();
      seconds = std::min(seconds, thread_seconds() - start);
    }
    return seconds;
  }();
  return least;
}

// Seconds of one run, from as many batches as fill `budget`.
inline double measure(const contender& c, double budget) {
  double spent = 0;
  double runs = 0;
  do {
    c.refill();
    const double start = thread_seconds();
    for (int i = 0; i < c.repeats; ++i) c.once();
    spent += thread_seconds() - start - clock_seconds();
    runs += c.repeats;
  } while (spent < budget);
  return spent / runs;
}

inline std::vector<timing> compare(const std::vector<contender>& contenders, int rounds, double budget) {
  std::vector<std::vector<double>> seconds(contenders.size());
  std::vector<std::vector<double>> ratios(contenders.size());
  for (const contender& c : contenders) {
    if (c.once) measure(c, budget);
  }
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < contenders.size(); ++i) {
      if (!contenders[i].once) continue;
      seconds[i].push_back(measure(contenders[i], budget));
      ratios[i].push_back(seconds[0].back() / seconds[i].back());
    }
  }
  std::vector<timing> out;
  for (std::size_t i = 0; i < contenders.size(); ++i) {
    out.push_back(seconds[i].empty() ? timing{} : timing{median(seconds[i]), median(ratios[i])});
  }
  return out;
}

}  // namespace bench
