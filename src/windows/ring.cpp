// The ring of the windows generated last.
#include "windows/ring.h"

#include "core/frame.h"
#include "core/memory.h"
#include "core/rounding.h"
#include "core/storage.h"
#include "windows/catalogue.h"
#include "windows/windows.h"

namespace sigpak {
namespace {

constexpr int capacity = 16;
constexpr int vacant = -1;

template <record V> struct slot {
  V samples;
  int window;
  int flags;  // those that shape the window, or vacant
  double width;
};

template <record V> struct ring {
  slot<V>* slots = nullptr;
  int next = 0;  // the slot that the next new window takes
};

constinit ring<dsp_vec> double_ring;
constinit ring<dspf_vec> float_ring;

template <record V> ring<V>& windows() noexcept {
  if constexpr (std::same_as<V, dsp_vec>) {
    return double_ring;
  } else {
    return float_ring;
  }
}

template <record V> status release() noexcept {
  ring<V>& all = windows<V>();
  if (all.slots == nullptr) return ok;
  for (int i = 0; i < capacity; ++i) {
    if (destroy(&all.slots[i].samples) != ok) return failed;
    all.slots[i].flags = vacant;
  }
  free_table(all.slots);
  all = {};
  return ok;
}

template <record V> status open() noexcept {
  ring<V>& all = windows<V>();
  if (all.slots != nullptr) return ok;
  all.slots = allocate_table<slot<V>>(capacity);
  if (all.slots == nullptr) return failed;
  for (int i = 0; i < capacity; ++i) {
    initialise(&all.slots[i].samples);
    all.slots[i].flags = vacant;
  }
  all.next = 0;
  register_cache<V>(cache::windows, release<V>);
  return ok;
}

template <record V>
bool holds(const slot<V>& s, std::uint32_t points, int window, int flags, double width) noexcept {
  return s.flags == flags && s.window == window && s.samples.points == points &&
         (!has(flags, DSP_WINDOW_FLAG_WIDTH) || tolerantly_equal(s.width, width));
}

}  // namespace

template <record V>
const V* cached_window(std::uint32_t points, int window, int flags, double width) noexcept {
  if (open<V>() != ok) return nullptr;
  ring<V>& all = windows<V>();
  const int shape = flags & shape_mask;
  for (int i = 0; i < capacity; ++i) {
    if (holds(all.slots[i], points, window, shape, width)) return &all.slots[i].samples;
  }
  slot<V>& s = all.slots[all.next];
  s.flags = vacant;  // until the window is whole, so that a failure leaves nothing to be found
  s.samples.points = points;
  if (allocate(&s.samples) != ok || generate_window(&s.samples, window, shape, width) != ok) return nullptr;
  s.window = window;
  s.flags = shape;
  s.width = width;
  all.next = (all.next + 1) % capacity;
  return &s.samples;
}

template const dsp_vec* cached_window(std::uint32_t, int, int, double) noexcept;
template const dspf_vec* cached_window(std::uint32_t, int, int, double) noexcept;

}  // namespace sigpak
