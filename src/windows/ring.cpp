// SPDX-License-Identifier: MIT
// The windows generated last.
#include "windows/ring.h"

#include "core/frame.h"
#include "core/lending.h"
#include "core/published.h"
#include "elementwise/elementwise.h"
#include "windows/catalogue.h"
#include "windows/windows.h"

namespace sigpak {
namespace {

constexpr window_key vacant = {-1, 0, 0, 0};

template <record V> status generate(V* samples, const window_key& key) noexcept {
  samples->points = key.points();
  return allocate(samples) == ok ? generate_window(samples, key.window(), key.flags(), key.width()) : failed;
}

// The first short windows that are asked for while other threads run. To borrow a ring would cost as much as
// the product with them.
template <record V> struct shared_window {
  V samples;
  window_key key;
};
constexpr int most_shared = 16;
constexpr std::uint32_t most_shared_points = 4096;

template <record V> constinit published<shared_window<V>, most_shared> shared_windows;
template <record V> constinit lender<window_ring<V>> rings;

template <record V> status discard(shared_window<V>* w) noexcept {
  if (w == nullptr) return ok;
  const status destroyed = destroy(&w->samples);
  free_table(w);
  return destroyed;
}

template <record V> status release() noexcept {
  for (int i = 0; i < most_shared; ++i) {
    if (discard(shared_windows<V>.withdraw(i)) != ok) return failed;
  }
  return rings<V>.release();
}

template <record V> shared_window<V>* make_shared(const window_key& key) noexcept {
  register_cache<V>(cache::windows, release<V>);
  auto* const fresh = allocate_table<shared_window<V>>(1);
  if (fresh == nullptr) return nullptr;
  initialise(&fresh->samples);
  fresh->key = key;
  if (generate(&fresh->samples, key) == ok) return fresh;
  discard(fresh);
  return nullptr;
}

// Null where it is not there and there is no room for it, and on failure.
template <record V> const V* find_shared(const window_key& key) noexcept {
  shared_window<V>* fresh = nullptr;
  for (int i = 0; i < most_shared; ++i) {
    shared_window<V>* there = shared_windows<V>.find(i);
    if (there == nullptr) {
      if (fresh == nullptr) fresh = make_shared<V>(key);
      if (fresh == nullptr) return nullptr;
      there = shared_windows<V>.offer(i, fresh);
      if (there == fresh) return &there->samples;
    }
    if (!(there->key == key)) continue;
    discard(fresh);
    return &there->samples;
  }
  discard(fresh);
  return nullptr;
}

}  // namespace

template <record V> status window_ring<V>::release() noexcept {
  if (slots_ == nullptr) return ok;
  for (int i = 0; i < capacity; ++i) {
    if (destroy(&slots_[i].samples) != ok) return failed;
    slots_[i].key = vacant;
  }
  free_table(slots_);
  slots_ = nullptr;
  next_ = 0;
  return ok;
}

template <record V> bool window_ring<V>::open() noexcept {
  if (slots_ != nullptr) return true;
  register_cache<V>(cache::windows, sigpak::release<V>);
  slots_ = allocate_table<slot>(capacity);
  if (slots_ == nullptr) return false;
  for (int i = 0; i < capacity; ++i) {
    initialise(&slots_[i].samples);
    slots_[i].key = vacant;
  }
  return true;
}

template <record V> const V* window_ring<V>::find(const window_key& key) noexcept {
  for (int i = 0; i < capacity && slots_ != nullptr; ++i) {
    if (slots_[i].key == key) return &slots_[i].samples;
  }
  return replace_next(key);
}

template <record V> const V* window_ring<V>::replace_next(const window_key& key) noexcept {
  if (!open()) return nullptr;
  slot& s = slots_[next_];
  s.key = vacant;  // until the window is whole, so that a failure leaves nothing to be found
  if (generate(&s.samples, key) != ok) return nullptr;
  s.key = key;
  next_ = (next_ + 1) % capacity;
  return &s.samples;
}

template <record V> status multiply_by_window(V* v, int window, int flags, double width) noexcept {
  const window_key key(length(v), window, flags, width);
  if (key.points() <= most_shared_points && !single_threaded()) {
    const V* const w = find_shared<V>(key);
    if (w != nullptr) return multiply_by_reals(v, w->data);
  }
  const loan<window_ring<V>> ring(rings<V>, length(v) * index{sizeof(scalar<V>)});
  const V* const w = ring->find(key);
  return w != nullptr ? multiply_by_reals(v, w->data) : failed;
}

template class window_ring<dsp_vec>;
template class window_ring<dspf_vec>;
template status multiply_by_window(dsp_vec*, int, int, double) noexcept;
template status multiply_by_window(dspf_vec*, int, int, double) noexcept;

}  // namespace sigpak
