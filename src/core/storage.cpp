// SPDX-License-Identifier: MIT
// Sizing and growth of a record's storage, through the hooks where they are installed.
#include "core/storage.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <utility>

#include "core/each.h"
#include "core/frame.h"
#include "core/isa.h"
#include "core/memory.h"

namespace sigpak {
namespace {

constexpr index most_scalars = std::numeric_limits<std::int32_t>::max();

template <record V> index needed(const V* v) noexcept { return static_cast<index>(v->points) * width(v); }

template <record V> void release(V* v) noexcept {
  if (const auto hook = current_hooks<V>().release; hook != nullptr) {
    hook(v);
  } else {
    std::free(v->data);
  }
}

template <record V> status without_storage(V* v) noexcept {
  v->data = nullptr;
  v->alloc = 0;
  return failed;
}

// A need that no capacity can count ends as a failed allocation, with nothing leaked.
template <record V> status refuse(V* v) noexcept {
  if (v->alloc > 0) release(v);
  return without_storage(v);
}

template <class T> T* heap_block(T* old, index kept, index need) noexcept {
  const auto bytes = [](index count) { return static_cast<std::size_t>(count) * sizeof(T); };
  return static_cast<T*>(resize_on_lines(old, bytes(kept), bytes(need)));
}

template <record V> status owning(V* v, index need) noexcept {
  if (v->data == nullptr) return without_storage(v);
  v->alloc = static_cast<std::int32_t>(need);
  return ok;
}

}  // namespace

template <record V> void initialise(V* v) noexcept {
  *v = V{};
  v->delta = 1;
}

template <record V> status destroy(V* v) noexcept {
  if (v->alloc > 0) release(v);
  initialise(v);
  return ok;
}

template <record V> status replace_storage(V* v) noexcept {
  const index need = needed(v);
  if (need > most_scalars) return refuse(v);
  if (const auto hook = current_hooks<V>().allocate; hook != nullptr) {
    hook(v);
  } else {
    if (v->alloc > 0) std::free(v->data);
    v->data = heap_block<scalar<V>>(nullptr, 0, need);
  }
  return owning(v, need);
}

template <record V> status extend_storage(V* v, std::uint32_t old_points, std::int32_t old_complex) noexcept {
  const index need = needed(v);
  if (need > most_scalars) return refuse(v);
  const scalar<V>* lent = nullptr;
  if (v->alloc <= 0) lent = std::exchange(v->data, nullptr);
  if (const auto hook = current_hooks<V>().reallocate; hook != nullptr) {
    hook(v, old_points, old_complex);
  } else {
    scalar<V>* grown = heap_block(v->data, v->alloc, need);
    if (grown == nullptr) std::free(v->data);
    v->data = grown;
  }
  if (owning(v, need) != ok) return failed;
  if (lent != nullptr)
    std::copy_n(lent, std::min(index{old_points} * (old_complex != 0 ? 2 : 1), need), v->data);
  return ok;
}

template <record V> status reshape(V* v, index points, bool complex) noexcept {
  const auto old_points = static_cast<std::uint32_t>(length(v));
  const std::int32_t old_complex = v->complex;
  constexpr index most_points = std::numeric_limits<std::uint32_t>::max();
  v->points = static_cast<std::uint32_t>(std::min(points, most_points));
  v->complex = complex ? 1 : 0;
  return reallocate(v, old_points, old_complex);
}

template <record V> status pad(V* v, index n) noexcept {
  const index old = scalars(v);
  if (length(v) >= n) return ok;
  const auto points = static_cast<std::uint32_t>(length(v));
  v->points = static_cast<std::uint32_t>(n);
  if (reallocate(v, points, v->complex) != ok) return failed;
  std::fill(v->data + old, v->data + scalars(v), scalar<V>(0));
  return ok;
}

template <class T> void widen(T* data, index points) noexcept {
  isa::run(points, [=] {
    each_from_end<2>(data, points, [data](index i) {
      data[2 * i] = data[i];
      data[2 * i + 1] = 0;
    });
  });
}

template <class T> void narrow(T* data, index points) noexcept {
  isa::run(points, [=] { each(data, points, [data](index i) { data[i] = data[2 * i]; }); });
}

template <record V> status to_complex(V* v) noexcept {
  if (is_complex(v)) return ok;
  const auto points = v->points;
  v->complex = 1;
  if (reallocate(v, points, 0) != ok) return failed;
  widen(v->data, length(v));
  return ok;
}

template void initialise(dsp_vec*) noexcept;
template void initialise(dspf_vec*) noexcept;
template status destroy(dsp_vec*) noexcept;
template status destroy(dspf_vec*) noexcept;
template status replace_storage(dsp_vec*) noexcept;
template status replace_storage(dspf_vec*) noexcept;
template status extend_storage(dsp_vec*, std::uint32_t, std::int32_t) noexcept;
template status extend_storage(dspf_vec*, std::uint32_t, std::int32_t) noexcept;
template status reshape(dsp_vec*, index, bool) noexcept;
template status reshape(dspf_vec*, index, bool) noexcept;
template status pad(dsp_vec*, index) noexcept;
template status pad(dspf_vec*, index) noexcept;
template void widen(double*, index) noexcept;
template void widen(float*, index) noexcept;
template void narrow(double*, index) noexcept;
template void narrow(float*, index) noexcept;
template status to_complex(dsp_vec*) noexcept;
template status to_complex(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dsp_init(dsp_vec* v) { return initialise(v), ok; }
int32_t dspf_init(dspf_vec* v) { return initialise(v), ok; }

int32_t dsp_destroy(dsp_vec* v) { return destroy(v); }
int32_t dspf_destroy(dspf_vec* v) { return destroy(v); }

int32_t dsp_alloc(dsp_vec* v) { return allocate(v); }
int32_t dspf_alloc(dspf_vec* v) { return allocate(v); }

int32_t dsp_realloc(dsp_vec* v, uint32_t old_points, int32_t old_complex) {
  return reallocate(v, old_points, old_complex);
}
int32_t dspf_realloc(dspf_vec* v, uint32_t old_points, int32_t old_complex) {
  return reallocate(v, old_points, old_complex);
}
