// SPDX-License-Identifier: MIT
// States that are kept between calls and change: scratch memory, and what is replaced by what comes later.
#pragma once

#include <pthread.h>

#include <atomic>
#include <bit>
#include <cstdint>

#if __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#endif

#include "core/machine.h"
#include "core/storage.h"

namespace sigpak {

// Whether the process has one thread only; false where the system does not tell.
inline bool single_threaded() noexcept {
#if __has_include(<sys/single_threaded.h>)
  return __libc_single_threaded != 0;
#else
  return false;
#endif
}

// A few states of one kind. A call borrows one of them and has it for itself until it ends; when all are
// taken it works with one of its own. Nothing waits.
//
// A thread begins to look at a place of its own, so that threads that run at the same time do not pass the
// lines of the caches to and fro: places are two lines apart, as the processor fetches lines in pairs. Large
// states are sought from the first place on instead, so that there are no more of them than calls at a time.
template <class State, int places = 16> class lender {
 public:
  constexpr lender() noexcept = default;

  // Empties every state, up to the first failure; while none is borrowed.
  status release() noexcept {
    for (place& p : places_) {
      if (p.state.release() != ok) return failed;
    }
    return ok;
  }

 private:
  template <class, int> friend class loan;

  struct alignas(2 * machine::line_bytes) place {
    // An atomic exchange costs as much as a short operation; alone it is not needed.
    bool take(bool alone) noexcept {
      if (taken.load(std::memory_order_relaxed)) return false;
      if (!alone) return !taken.exchange(true, std::memory_order_acquire);
      taken.store(true, std::memory_order_relaxed);
      return true;
    }
    void give_back() noexcept { taken.store(false, std::memory_order_release); }

    std::atomic<bool> taken = false;
    State state;
  };

  static_assert((places & (places - 1)) == 0);

  // The system knows a thread by an address at its stack. Stacks are apart by so many pages and one to guard
  // them, an odd number, so that the page tells neighbours from each other.
  static unsigned own_place() noexcept {
    const auto self = std::bit_cast<std::uintptr_t>(pthread_self());
    return static_cast<unsigned>(self / machine::page_bytes % places);
  }

  place* take(bool large) noexcept {
    const bool alone = single_threaded();
    const unsigned first = large || alone ? 0 : own_place();
    return places_[first].take(alone) ? &places_[first] : take_another(first, alone);
  }

  [[gnu::noinline]] place* take_another(unsigned first, bool alone) noexcept {
    for (unsigned i = 1; i < places; ++i) {
      place& p = places_[(first + i) % places];
      if (p.take(alone)) return &p;
    }
    return nullptr;
  }

  place places_[places];
};

inline constexpr index large_state = index{1} << 20;  // bytes

template <class State, int places = 16> class loan {
 public:
  // For a use of so many bytes.
  explicit loan(lender<State, places>& from, index bytes = 0) noexcept
      : place_(from.take(bytes >= large_state)), state_(place_ != nullptr ? &place_->state : &own_) {}
  ~loan() {
    if (place_ != nullptr) {
      place_->give_back();
    } else {
      own_.release();
    }
  }
  loan(const loan&) = delete;
  loan& operator=(const loan&) = delete;

  State* operator->() const noexcept { return state_; }
  State& operator*() const noexcept { return *state_; }

 private:
  typename lender<State, places>::place* place_;
  State* state_;
  State own_;
};

// A record as a state.
template <record V> struct kept_record {
  V v = {1, nullptr, 0, 0, 0, 0};
  status release() noexcept { return destroy(&v); }
};

}  // namespace sigpak
