// SPDX-License-Identifier: MIT
// Scratch memory of the operations that need more than registers.
#pragma once

#include "core/lending.h"
#include "core/memory.h"

namespace sigpak {

// Memory of the largest use so far.
//
// A load that shares its place within a page with a store still under way waits for it, and lines that share
// it compete for one set of the first cache. What a transform stores in scratch memory is therefore kept at a
// distance, within the page, from the data that it reads at the time.
template <class T> class scratch_memory {
 public:
  // Null on failure; what was there is lost when it grows.
  T* at_least(index count, const T* data) noexcept {
    if (count > count_ && !grow(count)) return nullptr;
    if (bytes(count) < worth_distance) return reinterpret_cast<T*>(start_);
    const auto lead = (reinterpret_cast<std::uintptr_t>(data) + distance) % page / line * line;
    return reinterpret_cast<T*>(start_ + lead);
  }
  status release() noexcept {
    free_table(block_);
    block_ = nullptr;
    count_ = 0;
    return ok;
  }

 private:
  static constexpr std::uintptr_t line = machine::line_bytes;
  static constexpr std::uintptr_t page = machine::page_bytes;
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

// What is this short lies on the stack, which is no other thread's and costs nothing.
template <class T> inline constexpr index short_scratch = 8 * 1024 / sizeof(T);

template <class T, class Body> [[gnu::noinline]] status with_short_scratch(const Body& body) noexcept {
  alignas(machine::line_bytes) T scratch[short_scratch<T>];
  return body(scratch);
}

// Calls body(scratch) with memory for `count` scalars: on the stack, or that of a borrowed state, which keeps
// its distance from `data`. The body is not copied: reading at once what was just written word by word takes
// as long as all of a short operation's other steps.
template <class T, class State, class Body>
status with_scratch(lender<State>& states, index count, const T* data, const Body& body) noexcept {
  if (count <= short_scratch<T>) return with_short_scratch<T>(body);
  loan<State> state(states, count * index{sizeof(T)});
  T* const scratch = state->scratch.at_least(count, data);
  return scratch != nullptr ? body(scratch) : failed;
}

}  // namespace sigpak
