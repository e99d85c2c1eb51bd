// SPDX-License-Identifier: MIT
// Hooks, the cache registry, and the version.
#include "core/frame.h"

#include <atomic>
#include <utility>

namespace sigpak {
namespace {

using releaser = status (*)() noexcept;

constinit hooks<dsp_vec> double_hooks;
constinit hooks<dspf_vec> float_hooks;
constinit std::atomic<releaser> double_caches[cache_count] = {};
constinit std::atomic<releaser> float_caches[cache_count] = {};

template <record V> std::atomic<releaser>* caches() noexcept {
  if constexpr (std::same_as<V, dsp_vec>) {
    return double_caches;
  } else {
    return float_caches;
  }
}

template <class Hook> status install(Hook& slot, Hook hook, Hook* previous) noexcept {
  const Hook old = std::exchange(slot, hook);
  if (previous != nullptr) *previous = old;
  return ok;
}

}  // namespace

template <> hooks<dsp_vec>& current_hooks<dsp_vec>() noexcept { return double_hooks; }
template <> hooks<dspf_vec>& current_hooks<dspf_vec>() noexcept { return float_hooks; }

template <record V> void register_cache(cache slot, status (*release)() noexcept) noexcept {
  std::atomic<releaser>& entry = caches<V>()[static_cast<int>(slot)];
  if (entry.load(std::memory_order_relaxed) != release) entry.store(release, std::memory_order_relaxed);
}

template <record V> status release_caches() noexcept {
  for (int slot = 0; slot < cache_count; ++slot) {
    const releaser release = caches<V>()[slot].load(std::memory_order_relaxed);
    if (release != nullptr && release() != ok) return failed;
  }
  return ok;
}

template void register_cache<dsp_vec>(cache, status (*)() noexcept) noexcept;
template void register_cache<dspf_vec>(cache, status (*)() noexcept) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dsp_lib_alloc(dsp_alloc_hook hook, dsp_alloc_hook* previous) {
  return install(double_hooks.allocate, hook, previous);
}
int32_t dspf_lib_alloc(dspf_alloc_hook hook, dspf_alloc_hook* previous) {
  return install(float_hooks.allocate, hook, previous);
}
int32_t dsp_lib_realloc(dsp_realloc_hook hook, dsp_realloc_hook* previous) {
  return install(double_hooks.reallocate, hook, previous);
}
int32_t dspf_lib_realloc(dspf_realloc_hook hook, dspf_realloc_hook* previous) {
  return install(float_hooks.reallocate, hook, previous);
}
int32_t dsp_lib_free(dsp_free_hook hook, dsp_free_hook* previous) {
  return install(double_hooks.release, hook, previous);
}
int32_t dspf_lib_free(dspf_free_hook hook, dspf_free_hook* previous) {
  return install(float_hooks.release, hook, previous);
}

int32_t dsp_lib_init(void) { return ok; }
int32_t dspf_lib_init(void) { return ok; }

int32_t dsp_version(void) { return DSP_VERSION; }
int32_t dspf_version(void) { return DSP_VERSION; }

int32_t dsp_free_internal(void) { return release_caches<dsp_vec>(); }
int32_t dspf_free_internal(void) { return release_caches<dspf_vec>(); }
