// SPDX-License-Identifier: MIT
// Drawn calls of every operation for a given time: the memory in use stays what it is once all is there that
// is kept.
//   endurance [--seconds 10] [--seed 1]
#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/calls.h"
#include "support/failing.h"

namespace sigpak::test {
namespace {

using seconds = std::chrono::duration<double>;

std::size_t bytes_in_use() {
  const struct mallinfo2 now = mallinfo2();
  return now.uordblks + now.hblkhd;
}

long calls = 0;

// Every operation some times, in both precisions. The same seed gives the same calls.
void run_round(std::uint64_t seed) {
  const auto run = [](const exported& op, auto& at, const arguments& given) {
    if (op.is("dsp_free_internal")) return;  // that would hide what grows
    op.call(at, given);
    ++calls;
  };
  each_fitting_call<dsp_vec>(10, seed, run);
  each_fitting_call<dspf_vec>(10, seed, run);
}

struct usage {
  std::size_t early = 0, late = 0;  // the most in either half of the time
};

template <class Seed> usage run_for(seconds limit, Seed seed_of_round) {
  usage used;
  const auto start = std::chrono::steady_clock::now();
  for (std::uint64_t round = 0;; ++round) {
    const seconds elapsed = std::chrono::steady_clock::now() - start;
    if (elapsed >= limit && round >= 6) return used;
    run_round(seed_of_round(round));
    if (round < 3) continue;  // all is kept by now
    std::size_t& half = elapsed < limit / 2 || round < 5 ? used.early : used.late;
    half = std::max(half, bytes_in_use());
  }
}

// Plans of transforms, 64 MiB in either precision, and all else that is kept.
constexpr std::size_t most_kept = std::size_t{160} << 20;

int report(const char* what, const usage& used, std::size_t allowed) {
  std::printf("%s: %zu bytes in use in the first half, %zu in the second\n", what, used.early, used.late);
  return used.late > allowed ? 1 : 0;
}

}  // namespace
}  // namespace sigpak::test

int main(int argc, char** argv) {
  using namespace sigpak::test;
  double duration = 10;
  std::uint64_t seed = 1;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::string(argv[i]) == "--seconds") duration = std::atof(argv[i + 1]);
    if (std::string(argv[i]) == "--seed") seed = std::strtoull(argv[i + 1], nullptr, 10);
  }
  const small_machine limited;
  const std::size_t before = bytes_in_use();
  const usage same = run_for(seconds(duration / 2), [&](std::uint64_t) { return seed; });
  const usage anew = run_for(seconds(duration / 2), [&](std::uint64_t round) { return seed + round; });
  dsp_free_internal();
  dspf_free_internal();
  const std::size_t left = bytes_in_use() - before;
  int faults = report("the same lengths", same, same.early + (1 << 16));
  faults += report("other lengths", anew, most_kept);
  std::printf("%zu bytes left after the release of all that is kept\n%ld calls, %d faults\n", left, calls,
              faults);
  constexpr std::size_t at_hand = 1 << 18;  // small blocks that malloc has back but counts as in use
  return faults != 0 || left > at_hand;
}
