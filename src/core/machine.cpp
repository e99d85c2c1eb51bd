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
constinit std::atomic<index> last_bytes = unknown;

#if defined(_SC_LEVEL1_DCACHE_SIZE) && defined(_SC_LEVEL3_CACHE_SIZE)
// Nothing, a failure, or what is no cache gives the usual size.
index asked(int name, index usual) noexcept {
  const long bytes = sysconf(name);
  return bytes > way_bytes ? index{bytes} : usual;
}

// A virtual machine names the whole of a last cache that it shares with others, and a server that of all its
// cores: more than the usual size is not for one core to count on.
cache_sizes found() noexcept {
  return {.first = asked(_SC_LEVEL1_DCACHE_SIZE, usual_caches.first),
          .last = std::min(asked(_SC_LEVEL3_CACHE_SIZE, usual_caches.last), usual_caches.last)};
}
#else
cache_sizes found() noexcept { return usual_caches; }
#endif

}  // namespace

cache_sizes caches() noexcept {
  const cache_sizes known{.first = first_bytes.load(std::memory_order_relaxed),
                          .last = last_bytes.load(std::memory_order_relaxed)};
  if (known.first != unknown && known.last != unknown) [[likely]]
    return known;
  const cache_sizes asked_now = found();
  force(asked_now);
  return asked_now;
}

void force(cache_sizes wanted) noexcept {
  first_bytes.store(wanted.first, std::memory_order_relaxed);
  last_bytes.store(wanted.last, std::memory_order_relaxed);
}

}  // namespace sigpak::machine
