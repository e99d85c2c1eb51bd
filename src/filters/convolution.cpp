// SPDX-License-Identifier: MIT
// Overlap-save convolution: a section of the input and the taps - 1 samples before it are transformed
// together, and the outputs that the circular wrap spoils are those before the section.
#include "filters/convolution.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/copy.h"
#include "core/frame.h"
#include "core/lending.h"
#include "core/machine.h"
#include "core/memory.h"
#include "core/power_of_two.h"
#include "core/record_order.h"
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "fft/transform.h"

namespace sigpak {
namespace {

// Taps closer than this, relative to the first, share a spectrum, in both precisions: ten roundings of a
// double.
constexpr double same_taps = 5 * std::numeric_limits<double>::epsilon();

// The taps of the last filter and their spectrum, and the section under way.
template <record V> struct kept_filter {
  V taps = {1, nullptr, 0, 0, 0, 0};
  scalar<V>* spectrum = nullptr;
  scalar<V>* section = nullptr;
  index room = 0;       // transform length that both tables have room for
  index transform = 0;  // that of the spectrum; 0 while there is none
  int order = 0;        // of its bins

  status release() noexcept {
    free_table(spectrum);
    free_table(section);
    spectrum = section = nullptr;
    room = transform = 0;
    return destroy(&taps);
  }
};
template <record V> constinit lender<kept_filter<V>> filters;

template <record V> status make_room(kept_filter<V>& k, index transform) noexcept {
  if (transform <= k.room) return ok;
  k.room = k.transform = 0;
  for (scalar<V>** const table : {&k.spectrum, &k.section}) {
    scalar<V>* const grown = resize_table(*table, circle_room(transform));
    if (grown == nullptr) return failed;
    *table = grown;
  }
  k.room = transform;
  return ok;
}

// A tap that is not finite makes a difference that is NaN, which passes for none.
template <record V> bool comparable(const V* taps) noexcept { return all_finite(taps->data, length(taps)); }

template <record V>
bool spectrum_fits(const kept_filter<V>& k, const V* taps, index transform, int order) noexcept {
  if (k.transform != transform || k.order != order) return false;
  const auto tolerance = static_cast<scalar<V>>(std::abs(static_cast<double>(taps->data[0])) * same_taps);
  std::int32_t difference = 0;
  return compare(taps, &k.taps, tolerance, &difference) == ok && difference == 0;
}

// The spectrum of the taps, scaled so that it makes up for the factor of the forward transform; null on
// failure.
template <record V> const scalar<V>* spectrum_of(kept_filter<V>& k, const V* taps, index transform) noexcept {
  using T = scalar<V>;
  register_cache<V>(cache::fir, []() noexcept { return filters<V>.release(); });
  const bool keeps = comparable(taps);
  const int order = circle_order<T>(transform);
  if (keeps && spectrum_fits(k, taps, transform, order)) return k.spectrum;
  k.transform = 0;
  if (make_room(k, transform) != ok || copy(&k.taps, taps) != ok) return nullptr;
  const index count = length(taps);
  const T factor = static_cast<T>(transform);
  for (index i = 0; i < count; ++i) k.spectrum[i] = factor * taps->data[i];
  std::fill(k.spectrum + count, k.spectrum + transform, T(0));
  k.order = order;
  const status made = order != 0 ? make_filter(k.spectrum, transform) : forward_real(k.spectrum, transform);
  if (made != ok) return nullptr;
  if (keeps) k.transform = transform;
  return k.spectrum;
}

// A transform length that keeps sections in the inner caches, for any length of the block: at least two ways
// of the first one, which leaves room there for the spectrum.
template <class T> constexpr index section_transform(index taps) noexcept {
  constexpr index least = 2 * machine::way_bytes / sizeof(T);
  return std::max(next_power_of_two(taps * 4), std::clamp<index>(next_power_of_two(taps * 8), least, 8192));
}

// What a block takes in sections of one length, in products of the sums that a transform saves: its passes,
// one of them more than its length tells from 8192 points on, and what comes to three more of them to fill
// and copy, and to three to multiply in a sweep of its own.
template <class T> index price_of(index transform, index points, index before) noexcept {
  const index step = transform - before;
  const index bits = address_bits(transform);
  const index others = bits > 12 ? 9 : circle_order<T>(transform) != 0 ? 3 : 6;
  return (points + step - 1) / step * transform * (bits + others);
}

// The cheapest transform for sections of a short block, up to one that takes it whole.
template <class T> index short_transform(index points, index before) noexcept {
  index cheapest = next_power_of_two(points + before);
  for (index other = cheapest / 2; other >= 2 * before; other /= 2) {
    if (price_of<T>(other, points, before) < price_of<T>(cheapest, points, before)) cheapest = other;
  }
  return cheapest;
}

// The samples of a section: `before` old ones, out of the history where the block does not reach back so far,
// and `fresh` new ones.
template <record V>
void fill_section(scalar<V>* x, const V* in, const V* history, index begin, index fresh,
                  index before) noexcept {
  const index missing = std::max<index>(before - begin, 0);
  if (history != nullptr) {
    std::copy_n(history->data + before - missing, missing, x);
  } else {
    std::fill_n(x, missing, scalar<V>(0));
  }
  std::copy(in->data + begin - (before - missing), in->data + begin + fresh, x + missing);
}

// The circle of a transform: `before` spoiled outputs and those of a section.
template <class V, class T = scalar<V>>
status convolve_circle(const kept_filter<V>& k, index transform, const T* from, T* to) noexcept {
  if (k.order != 0) return run_circle(static_cast<const T*>(k.spectrum), from, to, transform);
  if (forward_real_apart(from, k.section, transform) != ok) return failed;
  multiply_in_place(k.section, 2, k.spectrum, 2, transform / 2 + 1);
  return inverse_real_apart(k.section, to, transform);
}

// Whether sections of a block are better written to the output at once than copied there: where it stays in
// the caches, and they are so long that the copy costs more than stores into two lines.
template <class T> bool writes_straight(index points, index transform) noexcept {
  constexpr index least = 4 * machine::way_bytes / sizeof(T);
  return transform >= least && 2 * points * index{sizeof(T)} <= machine::caches().second;
}

// Cuts the block into sections, each transformed behind the `before` samples that precede it, which are read
// where they lie if the block has them all. Those that are written straight go from the last to the first,
// because the outputs that one spoils are those of the next.
template <record V>
status convolve_sections(const V* in, V* out, const V* taps, const V* history, index before,
                         index transform) noexcept {
  using T = scalar<V>;
  const loan<kept_filter<V>> kept(filters<V>, 2 * transform * index{sizeof(T)});
  if (spectrum_of(*kept, taps, transform) == nullptr) return failed;
  T* const x = kept->section;
  const index points = length(in);
  const index step = transform - before;
  const index sections = (points + step - 1) / step;
  const bool straight = writes_straight<T>(points, transform);
  for (index i = 0; i < sections; ++i) {
    const index begin = step * (straight ? sections - 1 - i : i);
    const index fresh = std::min(step, points - begin);
    const bool within = begin >= before && fresh == step;
    if (!within) {
      fill_section(x, in, history, begin, fresh, before);
      std::fill(x + before + fresh, x + transform, T(0));
    }
    T* const to = straight && within ? out->data + begin - before : x;
    if (convolve_circle(*kept, transform, within ? in->data + begin - before : x, to) != ok) return failed;
    if (to == x) std::copy_n(x + before, fresh, out->data + begin);
  }
  return ok;
}

}  // namespace

template <record V> index convolve_fast(const V* in, V* out, const V* taps, const V* history) noexcept {
  using T = scalar<V>;
  const index points = length(in);
  const index count = length(taps);
  const index before = count - 1;
  const index transform = section_transform<T>(count);
  constexpr index many = 16;
  if (points > many * (transform - before)) {
    return convolve_sections(in, out, taps, history, before, transform) == ok ? 0 : failed;
  }
  // A transform of the block alone wraps onto its first outputs, unless there is room for them anyhow.
  // Repairing them costs count^2 / 2 products.
  const index circle = next_power_of_two(points);
  const index shorter = short_transform<T>(points, before);
  const index repair = count * count / 2;
  if (circle < points + before &&
      price_of<T>(circle, points, 0) + repair < price_of<T>(shorter, points, before)) {
    return convolve_sections(in, out, taps, history, 0, circle) == ok ? before : failed;
  }
  return convolve_sections(in, out, taps, history, before, shorter) == ok ? 0 : failed;
}

template index convolve_fast(const dsp_vec*, dsp_vec*, const dsp_vec*, const dsp_vec*) noexcept;
template index convolve_fast(const dspf_vec*, dspf_vec*, const dspf_vec*, const dspf_vec*) noexcept;

}  // namespace sigpak
