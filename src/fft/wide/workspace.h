// The memory that the wide transforms work in.
#pragma once

#include "core/memory.h"

namespace sigpak::kernels {

// Scratch memory of the longest transform so far.
//
// A load that shares its place within a page with a store still under way waits for it, and lines that share
// it compete for one set of the first cache. What a transform stores in scratch memory is therefore kept at a
// distance, within the page, from the data that it reads at the time.
template <class T> class scratch_memory {
 public:
  T* at_least(index count, const T* data) noexcept {
    if (count > count_ && !grow(count)) return nullptr;
    if (bytes(count) < worth_distance) return reinterpret_cast<T*>(start_);
    const auto lead = (reinterpret_cast<std::uintptr_t>(data) + distance) % page / line * line;
    return reinterpret_cast<T*>(start_ + lead);
  }
  void release() noexcept {
    free_table(block_);
    block_ = nullptr;
    count_ = 0;
  }

 private:
  static constexpr std::uintptr_t line = 64;
  static constexpr std::uintptr_t page = 4096;
  static constexpr std::uintptr_t distance = 1024;
  static constexpr index worth_distance = 32 * 1024;

  static constexpr index bytes(index count) noexcept { return count * static_cast<index>(sizeof(T)); }

  bool grow(index count) noexcept {
    const std::uintptr_t boundary = bytes(count) < worth_distance ? line : page;
    void* const grown = allocate_table<std::byte>(bytes(count) + 2 * static_cast<index>(boundary));
    if (grown == nullptr) return false;
    release();
    block_ = grown;
    start_ = (reinterpret_cast<std::uintptr_t>(grown) + boundary - 1) / boundary * boundary;
    count_ = count;
    return true;
  }

  void* block_ = nullptr;
  std::uintptr_t start_ = 0;
  index count_ = 0;
};

// One for all transforms of a precision.
template <class T> inline constinit scratch_memory<T> workspace;

}  // namespace sigpak::kernels
