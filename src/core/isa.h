// SPDX-License-Identifier: MIT
// Instruction-set levels: which one the processor offers, and plain loops compiled for each.
#pragma once

#if !defined(SIGPAK_WIDE_LEVELS)
#error "the build says whether there are wide levels: SIGPAK_WIDE_LEVELS is 1 or 0"
#endif

#include <atomic>
#include <cstdint>

namespace sigpak::isa {

// avx2 has FMA too; avx512 is F, DQ, BW, VL and VBMI2, the last to leave out the processors that slow down
// under 512-bit work.
enum class level : int { baseline, avx2, avx512 };

inline constexpr level levels[] = {level::baseline, level::avx2, level::avx512};  // from the narrowest on
constexpr const char* name_of(level l) noexcept {
  constexpr const char* names[] = {"baseline", "avx2", "avx512"};
  return names[static_cast<int>(l)];
}

// The widest level that can run here.
level widest() noexcept;

namespace detail {

inline constexpr int unknown = -1;
extern constinit std::atomic<int> chosen;
level choose() noexcept;

}  // namespace detail

// The widest level of the processor and the operating system, or the one forced.
inline level current() noexcept {
  const int found = detail::chosen.load(std::memory_order_relaxed);
  return found != detail::unknown ? static_cast<level>(found) : detail::choose();
}

// Makes `current` answer `wanted`, limited to the widest; for tests and measurements.
void force(level wanted) noexcept;

// The same by its name; whether that level runs now.
bool force_named(const char* name) noexcept;

// Sanitizers see in a loop of any level what they see in that of the baseline, and take their time for each.
#if SIGPAK_WIDE_LEVELS && !defined(SIGPAK_LOOPS_ONCE)

namespace detail {

template <class Loop> [[gnu::noinline]] auto run_baseline(Loop& loop) { return loop(); }

// The lambda is inlined into the runner and vectorised for its level. Features are named one by one and FMA
// is left out, so every level gives the same bits.
template <class Loop> [[gnu::target("avx2"), gnu::flatten, gnu::noinline]] auto run_avx2(Loop& loop) {
  return loop();
}

#if defined(__clang__)
template <class Loop>
[[gnu::target("avx512f,avx512dq,avx512bw,avx512vl"), gnu::flatten, gnu::noinline]] auto run_avx512(
    Loop& loop) {
  return loop();
}
#else
template <class Loop>
[[gnu::target("avx512f,avx512dq,avx512bw,avx512vl,prefer-vector-width=512"), gnu::flatten,
  gnu::noinline]] auto
run_avx512(Loop& loop) {
  return loop();
}
#endif

}  // namespace detail

// By value, so that a loop that runs inlined instead is not put together in memory.
template <class Loop> [[gnu::always_inline]] inline auto run_at(level wanted, Loop loop) {
  switch (wanted) {
    case level::avx512:
      return detail::run_avx512(loop);
    case level::avx2:
      return detail::run_avx2(loop);
    default:
      return detail::run_baseline(loop);
  }
}

#else

template <class Loop> auto run_at(level, Loop loop) { return loop(); }

#endif

// Runs a plain loop at the current level. One call per operation, around the whole of its loop.
template <class Loop> [[gnu::always_inline]] inline auto run(Loop loop) { return run_at(current(), loop); }

// The same for a loop of so many turns: a short one is inlined and saves the call.
inline constexpr std::int64_t short_run = 24;
template <class Loop> [[gnu::always_inline]] inline auto run(std::int64_t turns, Loop loop) {
  return turns <= short_run ? loop() : run_at(current(), loop);
}

}  // namespace sigpak::isa
