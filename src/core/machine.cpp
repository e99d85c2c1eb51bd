// SPDX-License-Identifier: MIT
// The sizes of the caches, asked once.
#include "core/machine.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>

namespace sigpak::machine {
namespace {

constexpr index unknown = 0;
constinit std::atomic<index> first_bytes = unknown;
constinit std::atomic<index> first_ways = unknown;
constinit std::atomic<index> second_bytes = unknown;
constinit std::atomic<index> last_bytes = unknown;

#if defined(_SC_LEVEL1_DCACHE_SIZE) && defined(_SC_LEVEL2_CACHE_SIZE) && defined(_SC_LEVEL3_CACHE_SIZE)
// Nothing, a failure, or what cannot be gives the usual value.
index asked(int name, index least, index usual) noexcept {
  const long found = sysconf(name);
  return found >= least ? index{found} : usual;
}
index asked_bytes(int name, index usual) noexcept { return asked(name, way_bytes + 1, usual); }

// A virtual machine names the whole of a last cache that it shares with others, and a server that of all its
// cores: more than the usual size is not for one core to count on.
cache_sizes found() noexcept {
  const index last = asked_bytes(_SC_LEVEL3_CACHE_SIZE, usual_caches.last);
  return {.first = asked_bytes(_SC_LEVEL1_DCACHE_SIZE, usual_caches.first),
          .first_ways = asked(_SC_LEVEL1_DCACHE_ASSOC, 1, usual_caches.first_ways),
          .second = asked_bytes(_SC_LEVEL2_CACHE_SIZE, usual_caches.second),
          .last = std::min(last, usual_caches.last)};
}
#else
cache_sizes found() noexcept { return usual_caches; }
#endif

}  // namespace

// Stored last and looked at first, the last cache tells that all are known.
cache_sizes caches() noexcept {
  const index last = last_bytes.load(std::memory_order_acquire);
  if (last == unknown) [[unlikely]] {
    const cache_sizes asked_now = found();
    force(asked_now);
    return asked_now;
  }
  return {.first = first_bytes.load(std::memory_order_relaxed),
          .first_ways = first_ways.load(std::memory_order_relaxed),
          .second = second_bytes.load(std::memory_order_relaxed),
          .last = last};
}

void force(cache_sizes wanted) noexcept {
  first_bytes.store(wanted.first, std::memory_order_relaxed);
  first_ways.store(wanted.first_ways, std::memory_order_relaxed);
  second_bytes.store(wanted.second, std::memory_order_relaxed);
  last_bytes.store(wanted.last, std::memory_order_release);
}

}  // namespace sigpak::machine
