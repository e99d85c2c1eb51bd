// SPDX-License-Identifier: MIT
// The level of the processor, found once.
#include "core/isa.h"

#include <algorithm>
#include <cstring>

namespace sigpak::isa {

constinit std::atomic<int> detail::chosen = detail::unknown;

level widest() noexcept {
#if SIGPAK_WIDE_LEVELS
  __builtin_cpu_init();
  const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  const bool avx512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
                      __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") &&
                      __builtin_cpu_supports("avx512vbmi2");
  return avx2 && avx512 ? level::avx512 : avx2 ? level::avx2 : level::baseline;
#else
  return level::baseline;
#endif
}

level detail::choose() noexcept {
  const level found = widest();
  chosen.store(static_cast<int>(found), std::memory_order_relaxed);
  return found;
}

void force(level wanted) noexcept {
  detail::chosen.store(std::min(static_cast<int>(wanted), static_cast<int>(widest())),
                       std::memory_order_relaxed);
}

bool force_named(const char* name) noexcept {
  for (const level l : levels) {
    if (std::strcmp(name, name_of(l)) != 0) continue;
    force(l);
    return current() == l;
  }
  return false;
}

}  // namespace sigpak::isa
