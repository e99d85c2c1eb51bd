// SPDX-License-Identifier: MIT
// Copying, cutting and appending.
#include "core/copy.h"

#include <algorithm>
#include <cstring>

#include "core/each.h"
#include "core/isa.h"
#include "core/storage.h"

namespace sigpak {

template <record V> status copy_run(const V* in, V* out, std::int32_t start, std::int32_t count) noexcept {
  const index points = length(in);
  const index from = std::clamp<index>(start, 0, points);
  const index taken = std::clamp<index>(count, 0, points - from);
  const bool shared = in->data == out->data;
  out->delta = in->delta;
  out->complex = in->complex;
  out->points = static_cast<std::uint32_t>(taken);
  if (!shared && allocate(out) != ok) return failed;  // shared storage already holds every point
  if (taken == 0 || (shared && from == 0)) return ok;
  std::memmove(out->data, in->data + from * width(in),
               static_cast<std::size_t>(scalars(out)) * sizeof(scalar<V>));
  return ok;
}

template <record V> status copy_front(V* dst, const V* src, std::int32_t count) noexcept {
  const bool lent_by_src = dst != src && dst->alloc <= 0 && dst->data == src->data;
  if (lent_by_src) dst->data = nullptr;
  return copy_run(src, dst, 0, count);
}

template <record V> status copy(V* dst, const V* src) noexcept {
  return dst == src ? ok : copy_front(dst, src, static_cast<std::int32_t>(src->points));
}

template <record V> status append(V* dst, const V* src) noexcept {
  if (dst == src) return failed;
  if (is_complex(src) && to_complex(dst) != ok) return failed;
  const index position = length(dst);
  if (reshape(dst, position + length(src), is_complex(dst)) != ok) return failed;
  scalar<V>* const tail = dst->data + position * width(dst);
  if (width(dst) == width(src)) {
    std::copy_n(src->data, scalars(src), tail);
    return ok;
  }
  isa::run(length(src), [tail, x = src->data, points = length(src)] {
    each<2>(tail, points, [=](index i) {
      tail[2 * i] = x[i];
      tail[2 * i + 1] = 0;
    });
  });
  return ok;
}

template status copy_run(const dsp_vec*, dsp_vec*, std::int32_t, std::int32_t) noexcept;
template status copy_run(const dspf_vec*, dspf_vec*, std::int32_t, std::int32_t) noexcept;
template status copy_front(dsp_vec*, const dsp_vec*, std::int32_t) noexcept;
template status copy_front(dspf_vec*, const dspf_vec*, std::int32_t) noexcept;
template status copy(dsp_vec*, const dsp_vec*) noexcept;
template status copy(dspf_vec*, const dspf_vec*) noexcept;
template status append(dsp_vec*, const dsp_vec*) noexcept;
template status append(dspf_vec*, const dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dsp_append(dsp_vec* dst, const dsp_vec* src) { return append(dst, src); }
int32_t dspf_append(dspf_vec* dst, const dspf_vec* src) { return append(dst, src); }

int32_t dsp_copy(dsp_vec* dst, const dsp_vec* src) { return copy(dst, src); }
int32_t dspf_copy(dspf_vec* dst, const dspf_vec* src) { return copy(dst, src); }

int32_t dsp_copy_at_most(dsp_vec* dst, const dsp_vec* src, int32_t count) {
  return copy_front(dst, src, count);
}
int32_t dspf_copy_at_most(dspf_vec* dst, const dspf_vec* src, int32_t count) {
  return copy_front(dst, src, count);
}
