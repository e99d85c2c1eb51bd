// Twiddle tables of the power-of-two transforms.
#include <cmath>
#include <numbers>

#include "core/frame.h"
#include "core/memory.h"
#include "spectral/tables.h"

namespace sigpak {
namespace {

template <class T> constinit keyed_list<T> tables;

// Values come from the next wider type and are rounded once, so that nearly every one is the nearest.
template <class T> using wider = std::conditional_t<std::is_same_v<T, float>, double, long double>;

template <class T> void store_triple(T* out, wider<T> c, wider<T> s) noexcept {
  out[0] = static_cast<T>(c);
  out[1] = static_cast<T>(-(c + s));
  out[2] = static_cast<T>(s - c);
}

// The first triples: angles below an eighth of a turn directly, those above by exchanging sine and cosine.
template <class T> void fill_first_triples(T* table, index points) noexcept {
  using W = wider<T>;
  const index quarter = points / 4;
  store_triple<T>(table, 1, 0);
  for (index k = 1; 2 * k < quarter; ++k) {
    const W angle = 2 * std::numbers::pi_v<W> * static_cast<W>(k) / static_cast<W>(points);
    const W c = std::cos(angle);
    const W s = std::sin(angle);
    store_triple<T>(table + group * k, c, s);
    store_triple<T>(table + group * (quarter - k), s, c);
  }
  if (quarter > 1) store_triple<T>(table + group * (quarter / 2), std::sqrt(W(0.5)), std::sqrt(W(0.5)));
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
  const index key = points / 4 * group;
  if (const T* known = tables<T>.find(key); known != nullptr) return known;
  register_cache<record_of<T>>(cache::twiddles, []() noexcept { return tables<T>.release(); });
  T* const table = tables<T>.append(key, key);
  if (table == nullptr) return nullptr;
  fill_first_triples(table, points);
  fill_second_triples(table, points);
  return table;
}

template const double* twiddles(index) noexcept;
template const float* twiddles(index) noexcept;

}  // namespace sigpak
