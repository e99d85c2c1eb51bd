// SPDX-License-Identifier: MIT
// The cosine transform, by one real transform of the reordered samples.
//
// J. Makhoul, "A fast cosine transform in one and two dimensions", IEEE Trans. ASSP 28 (1980).
#include <numbers>

#include "core/frame.h"
#include "core/lending.h"
#include "core/memory.h"
#include "core/roots.h"
#include "core/storage.h"
#include "spectral/spacing.h"
#include "spectral/spectral.h"

namespace sigpak {
namespace {

constexpr int inverse_flag = 1;

template <record V> struct dct_tables {
  V reordered = {};
  scalar<V>* rotations = nullptr;  // cos and sin of pi k / 2N for 0 < k < N/2
  index length = 0;                // of the transform that the rotations are for

  status release() noexcept {
    free_table(rotations);
    rotations = nullptr;
    length = 0;
    return destroy(&reordered);
  }
};

template <record V> constinit lender<dct_tables<V>> tables;

template <record V> const scalar<V>* rotations(dct_tables<V>& t, index points) noexcept {
  using T = scalar<V>;
  if (t.length == points) return t.rotations;
  register_cache<V>(cache::dct, []() noexcept { return tables<V>.release(); });
  const index count = (points - 1) / 2;
  T* const table = resize_table(t.rotations, 2 * count);
  if (table == nullptr) return nullptr;
  for (index k = 1; k <= count; ++k) {
    const auto w = root_of_unity<wider<T>>(k, 4 * points);
    table[2 * k - 2] = static_cast<T>(w.cosine);
    table[2 * k - 1] = static_cast<T>(w.sine);
  }
  t.rotations = table;
  t.length = points;
  return table;
}

// Even samples in order, odd ones after them in reverse order.
template <class T> void separate(const T* x, T* out, index points) noexcept {
  for (index k = 0; 2 * k < points; ++k) out[k] = x[2 * k];
  for (index k = 0; 2 * k + 1 < points; ++k) out[points - 1 - k] = x[2 * k + 1];
}

template <class T> void interleave(const T* x, T* out, index points) noexcept {
  for (index k = 0; 2 * k < points; ++k) out[2 * k] = x[k];
  for (index k = 0; 2 * k + 1 < points; ++k) out[2 * k + 1] = x[points - 1 - k];
}

// With U the spectrum of the reordered samples and W[k] = U[k] exp(-i pi k / 2N): C[k] = Re W[k], and
// C[N-k] = -Im W[k]. U[N/2] is real and turned by an eighth.
template <class T> void rotate_out(const T* u, const T* w, T* out, index points) noexcept {
  out[0] = u[0];
  for (index k = 1; 2 * k < points; ++k, w += 2) {
    const T re = u[2 * k];
    const T im = u[2 * k + 1];
    out[k] = re * w[0] + im * w[1];
    out[points - k] = re * w[1] - im * w[0];
  }
  if (points % 2 == 0) out[points / 2] = u[points] * (std::numbers::sqrt2_v<T> / 2);
}

template <class T> void rotate_in(const T* x, const T* w, T* u, index points) noexcept {
  u[0] = x[0];
  u[1] = 0;
  for (index k = 1; 2 * k < points; ++k, w += 2) {
    const T low = x[k];
    const T high = x[points - k];
    u[2 * k] = low * w[0] + high * w[1];
    u[2 * k + 1] = low * w[1] - high * w[0];
  }
  if (points % 2 == 0) {
    u[points] = x[points / 2] * std::numbers::sqrt2_v<T>;
    u[points + 1] = 0;
  }
}

template <record V> V* sized(V* u, index points, bool complex) noexcept {
  u->delta = 1;
  u->points = static_cast<std::uint32_t>(points);
  u->complex = complex ? 1 : 0;
  return allocate(u) == ok ? u : nullptr;
}

template <record V> status forward(scalar<V>* x, index points, const scalar<V>* w, V* scratch) noexcept {
  V* const u = sized(scratch, points, false);
  if (u == nullptr) return failed;
  separate(x, u->data, points);
  if (real_dft(u) != ok) return failed;
  rotate_out(u->data, w, x, points);
  return ok;
}

template <record V> status inverse(scalar<V>* x, index points, const scalar<V>* w, V* scratch) noexcept {
  V* const u = sized(scratch, points / 2 + 1, true);
  if (u == nullptr) return failed;
  rotate_in(x, w, u->data, points);
  if (inverse_real_dft(u, points % 2 != 0) != ok) return failed;
  interleave(u->data, x, points);
  return ok;
}

template <record V> status cosine_transform(V* v, int flags) noexcept {
  if (is_complex(v)) return failed;
  const index points = length(v);
  if (points == 0) return ok;
  const loan<dct_tables<V>> t(tables<V>, 2 * points * index{sizeof(scalar<V>)});
  const scalar<V>* const w = rotations(*t, points);
  if (w == nullptr) return failed;
  V* const scratch = &t->reordered;
  const status done = (flags & inverse_flag) != 0 ? inverse(v->data, points, w, scratch)
                                                  : forward(v->data, points, w, scratch);
  if (done != ok) return failed;
  v->delta = transformed_spacing(v->delta, points);
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_dct(dsp_vec* v, int32_t flags) { return cosine_transform(v, flags); }
int32_t dspfi_dct(dspf_vec* v, int32_t flags) { return cosine_transform(v, flags); }
