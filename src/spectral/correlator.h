// SPDX-License-Identifier: MIT
// Correlation of two streams, section by section: a section of b with those samples of a that its lags reach,
// as direct sums where the lags are few, otherwise as the product of two spectra, added up before a single
// transform back. C. M. Rader, "An improved algorithm for high speed autocorrelation with applications to
// spectral estimation", IEEE Trans. Audio Electroacoust. 18 (1970).
#pragma once

#include <algorithm>

#include "core/power_of_two.h"
#include "core/room.h"
#include "fft/transform.h"
#include "spectral/correlation.h"
#include "spectral/lag_products.h"

namespace sigpak::correlation {

inline constexpr index most_direct_lags = 64;
inline constexpr index direct_section = 4096;
inline constexpr index least_transform = 1024;
inline constexpr index usual_transform = 8192;

// How a section is correlated, and where a state keeps what.
template <class T> struct layout {
  static constexpr index parts = std::is_same_v<T, double> ? 1 : 2;  // scalars of a sum
  static constexpr index header = 8;  // the samples in digits of 24 bits, the lags in two, the form
  static constexpr index energies = 4;

  index lags;
  bool complex;
  bool direct;
  index transform;  // points
  index section;    // S, samples of b

  index width() const noexcept { return complex ? 2 : 1; }
  index outputs() const noexcept { return 2 * lags + 1; }
  index spectrum() const noexcept { return complex ? 2 * transform : transform + 2; }
  index sums() const noexcept { return direct ? outputs() * width() : spectrum(); }
  index room_a() const noexcept { return (section + 3 * lags) * width(); }
  index room_b() const noexcept { return (section + lags) * width(); }
  index points() const noexcept { return header + energies + parts * sums() + room_a() + room_b(); }
  index work() const noexcept {
    return direct ? parts * sums() + outputs() * 2 + 2 * section + 2 * outputs() + 4 * line_scalars<T>
                  : (2 + parts) * spectrum() + 4 * line_scalars<T>;
  }
};

template <class T> layout<T> stream_layout(index lags, bool complex) noexcept {
  if (lags <= most_direct_lags) return {lags, complex, true, 0, direct_section};
  const index wanted = std::clamp(next_power_of_two(8 * lags), least_transform, usual_transform);
  const index transform = std::max(wanted, next_power_of_two(4 * lags));
  return {lags, complex, false, transform, transform - 2 * lags};
}

// The parts of a state in its record, and the work areas behind them.
template <class T> struct areas {
  T* header;
  T* energies;
  sums_in<T> sums;
  T* a;
  T* b;
  sums_in<T> copy;  // of the sums, at reading time
  T* work[2];
};

template <class T> areas<T> areas_in(T* data, const layout<T>& l) noexcept {
  const auto two = [&](T* at) { return sums_in<T>{at, l.parts == 2 ? at + l.sums() : nullptr}; };
  areas<T> s = {};
  s.header = data;
  s.energies = data + l.header;
  s.sums = two(s.energies + l.energies);
  s.a = s.sums.hi + l.parts * l.sums();
  s.b = s.a + l.room_a();
  s.copy = two(next_line(s.b + l.room_b()));
  s.work[0] = next_line(s.copy.hi + l.parts * l.sums());
  s.work[1] = next_line(s.work[0] + (l.direct ? 2 * l.outputs() : l.spectrum()));
  return s;
}

inline constexpr double digit = 0x1p24;

template <class T> void put_number(T* at, int digits, std::int64_t value) noexcept {
  for (int i = 0; i < digits; ++i, value >>= 24) at[i] = static_cast<T>(value & 0xffffff);
}
template <class T> std::int64_t number_in(const T* at, int digits) noexcept {
  double value = 0;
  for (int i = digits; i-- > 0;) value = value * digit + static_cast<double>(at[i]);
  return value >= 0 && value < 0x1p62 ? static_cast<std::int64_t>(value) : -1;
}

template <class T> void add_energy(T* at, double more) noexcept {
  const double sum = static_cast<double>(at[0]) + static_cast<double>(at[1]) + more;
  at[0] = static_cast<T>(sum);
  at[1] = static_cast<T>(sum - static_cast<double>(at[0]));
}
template <class T> double energy_in(const T* at) noexcept {
  return static_cast<double>(at[0]) + static_cast<double>(at[1]);
}

template <class T> status forward(T* x, const layout<T>& l) noexcept {
  return l.complex ? transform(x, l.transform, false) : forward_real(x, l.transform);
}
template <class T> status backward(T* x, const layout<T>& l) noexcept {
  return l.complex ? transform(x, l.transform, true) : inverse_real(x, l.transform);
}

// Adds what the first n samples of b contribute with those of a from `lead` before them on; a holds
// `a_points` of these, and zeros follow.
template <class T>
status add_section(const layout<T>& l, const areas<T>& s, const T* a, index a_points, const T* b, index n,
                   sums_in<T> sums) noexcept {
  const index w = l.width();
  if (l.direct) {
    sum_lags(a, b, n, l.complex, s.work[0], l.outputs(), s.work[1]);
    accumulate(sums, s.work[0], l.outputs() * w);
    return ok;
  }
  const auto load = [&](const T* from, index points, T* to) {
    std::copy_n(from, points * w, to);
    std::fill(to + points * w, to + l.transform * w, T(0));
  };
  load(a, std::min(a_points, l.transform), s.work[0]);
  if (forward(s.work[0], l) != ok) return failed;
  load(b, n, s.work[1]);
  if (forward(s.work[1], l) != ok) return failed;
  accumulate_products(sums, s.work[0], s.work[1], l.spectrum() / 2);
  return ok;
}

// `count` points of a signal from `begin` on, of w scalars each; zeros follow its end.
template <record V> void take(const V* v, index begin, index count, scalar<V>* to, index w) noexcept {
  using T = scalar<V>;
  const index some = std::clamp<index>(length(v) - begin, 0, count);
  const T* const x = v->data + begin * width(v);
  if (width(v) == w) {
    std::copy_n(x, some * w, to);
  } else {
    for (index i = 0; i < some; ++i) {
      to[2 * i] = x[i];
      to[2 * i + 1] = 0;
    }
  }
  std::fill(to + some * w, to + count * w, T(0));
}

// The stream of two signals: what is known of it between blocks.
template <class T> struct correlator {
  layout<T> l;
  areas<T> at;
  std::int64_t samples;
  index waiting;  // samples of b

  void start(T* data) noexcept {
    std::fill_n(data, l.points(), T(0));
    put_number(at.header + 3, 2, l.lags);
    at.header[5] = l.complex ? 1 : 0;
    samples = 0;
    waiting = 0;
  }

  status complete_section() noexcept {
    const index w = l.width();
    add_energy(at.energies, energy(at.a + l.lags * w, l.section * w));
    add_energy(at.energies + 2, energy(at.b, l.section * w));
    if (add_section(l, at, at.a, l.section + 2 * l.lags, at.b, l.section, at.sums) != ok) return failed;
    std::copy_n(at.a + l.section * w, 2 * l.lags * w, at.a);
    std::copy_n(at.b + l.section * w, l.lags * w, at.b);
    waiting -= l.section;
    return ok;
  }

  template <class V> status feed(const V* a, const V* b, index points) noexcept {
    const index w = l.width();
    const index full = l.section + l.lags;
    for (index done = 0; done < points;) {
      const index count = std::min(points - done, full - waiting);
      take(a, done, count, at.a + (l.lags + waiting) * w, w);
      take(b, done, count, at.b + waiting * w, w);
      waiting += count;
      done += count;
      if (waiting == full && complete_section() != ok) return failed;
    }
    samples += points;
    put_number(at.header, 3, samples);
    return ok;
  }

  // Leaves the sums of all samples in the copy, and the energies; the samples that wait stay.
  status read(double* energy_a, double* energy_b) noexcept {
    const index w = l.width();
    std::copy_n(at.sums.hi, l.parts * l.sums(), at.copy.hi);
    *energy_a = energy_in(at.energies) + energy(at.a + l.lags * w, waiting * w);
    *energy_b = energy_in(at.energies + 2) + energy(at.b, waiting * w);
    const index known = l.lags + waiting;
    std::fill(at.a + known * w, at.a + l.room_a(), T(0));
    for (index begin = 0; begin < waiting; begin += l.section) {
      const index n = std::min(l.section, waiting - begin);
      const index reach = std::min(known - begin, n + 2 * l.lags);
      if (add_section(l, at, at.a + begin * w, reach, at.b + begin * w, n, at.copy) != ok) return failed;
    }
    return l.direct ? ok : backward(at.copy.hi, l);
  }
};

template <record V>
status report_stream(correlator<scalar<V>>* c, V* out, const shape<V>& of, index lags,
                     std::int32_t flags) noexcept {
  scaling scale = {flags, static_cast<double>(c->samples), 0, 0};
  if (c->read(&scale.energy_a, &scale.energy_b) != ok) return failed;
  const double whole = c->l.direct ? 1 : static_cast<double>(c->l.transform);
  return report(out, of, lags, c->l.lags, whole, scale,
                [c](index lag) { return c->at.copy.hi + (lag + c->l.lags) * c->l.width(); });
}

}  // namespace sigpak::correlation
