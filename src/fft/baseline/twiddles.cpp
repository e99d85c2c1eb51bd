// SPDX-License-Identifier: MIT
// Twiddle tables of the power-of-two transforms.
#include "fft/baseline/twiddles.h"

#include "core/frame.h"
#include "core/power_of_two.h"
#include "core/published.h"
#include "core/roots.h"

namespace sigpak {
namespace {

constexpr int most_bits = 31;
template <class T> constinit published<T, most_bits> tables;  // by log2 of the points

template <class T> void store_triple(T* out, unit_root<wider<T>> w) noexcept {
  out[0] = static_cast<T>(w.cosine);
  out[1] = static_cast<T>(-(w.cosine + w.sine));
  out[2] = static_cast<T>(w.sine - w.cosine);
}

// The first triples: angles to an eighth of a turn directly, those above by exchanging sine and cosine.
template <class T> void fill_first_triples(T* table, index points) noexcept {
  const index quarter = points / 4;
  store_triple<T>(table, {1, 0});
  for (index k = 1; 2 * k <= quarter; ++k) {
    const unit_root<wider<T>> w = root_of_unity<wider<T>>(k, points);
    store_triple<T>(table + group * k, w);
    store_triple<T>(table + group * (quarter - k), {w.sine, w.cosine});
  }
}

// The second triples, of three times the angle: half a turn less the angle gives (-cos, sin), half a turn
// more
// (-cos, -sin), and with them the triples of the first column with their entries negated and exchanged.
template <class T> void fill_second_triples(T* table, index points) noexcept {
  const index quarter = points / 4;
  for (index k = 0; k < quarter; ++k) {
    T* const out = table + group * k + triple;
    const index m = 3 * k;
    if (m < quarter) {
      const T* const from = table + group * m;
      for (index i = 0; i < triple; ++i) out[i] = from[i];
    } else {
      const bool before_half = m < 2 * quarter;
      const T* const from = table + group * (before_half ? 2 * quarter - m : m - 2 * quarter);
      out[0] = -from[0];
      out[1] = before_half ? -from[2] : -from[1];
      out[2] = before_half ? -from[1] : -from[2];
    }
  }
}

}  // namespace

template <class T> const T* twiddles(index points) noexcept {
  const int key = address_bits(points);
  if (const T* known = tables<T>.find(key); known != nullptr) return known;
  register_cache<record_of<T>>(cache::twiddles, []() noexcept {
    tables<T>.release();
    return ok;
  });
  T* const table = allocate_table<T>(points / 4 * group);
  if (table == nullptr) return nullptr;
  fill_first_triples(table, points);
  fill_second_triples(table, points);
  return tables<T>.keep(key, table);
}

template const double* twiddles(index) noexcept;
template const float* twiddles(index) noexcept;

}  // namespace sigpak
