// SPDX-License-Identifier: MIT
// Samples of a stream at any times: what a state holds between calls, and one call over its samples.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "filters/kept.h"
#include "filters/spline_filter.h"

namespace sigpak {

inline constexpr index most_scalars = std::numeric_limits<std::int32_t>::max();
inline constexpr double unit_part = 0x1p64;

// To the 2^-64th part of a sample; times beyond 2^61 samples are that far away.
inline sample_time time_of(double samples) noexcept {
  const double limited = std::clamp(samples, -0x1p61, 0x1p61);
  const double whole = std::floor(limited);
  const double part = limited - whole;
  if (part >= 1) return {static_cast<std::int64_t>(whole) + 1, 0};
  return {static_cast<std::int64_t>(whole), static_cast<std::uint64_t>(part * unit_part)};
}

constexpr sample_time operator+(sample_time a, sample_time b) noexcept {
  const std::uint64_t part = a.part + b.part;
  return {a.whole + b.whole + (part < a.part ? 1 : 0), part};
}

struct times_head {
  static constexpr std::uint64_t own_mark = 0x7369672e74696d65;
  std::uint64_t mark;
  std::int64_t samples;  // that have come
  sample_time next;      // regular output
  double last;           // time of a list that was served
  double delta;          // of the input
  double stretch;
  std::int64_t phases;
  std::int64_t memory;  // old samples kept: those of the filter stretched furthest so far, as outputs still
                        // wait for it
  std::int32_t taps;
  std::int32_t parts;
  std::int32_t padding;  // scalars before the rows, which begin on a cache line where they were made
  std::int32_t reserved;
};

// What a call wants: times of a list, or as many regular ones as there are.
struct wanted_times {
  const double* list;
  index count;
  double spacing;    // of the input, unit of the list
  sample_time step;  // without a list
};

template <class T> struct times_layout {
  spline_filter filter;
  index parts;
  index padding;
  index memory;

  index taps() const noexcept { return head_scalars<times_head, T>; }
  index rows() const noexcept { return taps() + filter.taps() + padding; }
  index old() const noexcept { return taps() + filter.taps() + most_padding + filter.scalars(); }
  index kept() const noexcept { return old() + memory * parts; }
  index all(index at_once) const noexcept { return kept() + (memory + at_once) * parts; }
};

template <class T> times_layout<T> layout_of(const times_head& h) noexcept {
  return {{h.taps, h.phases, h.stretch}, h.parts, h.padding, h.memory};
}

// A longer filter sees more at once: so many zeros end its stream.
constexpr index samples_at_once(index memory) noexcept { return std::max<index>(2048, memory); }

// A stream's samples during a call, real and imaginary parts apart.
template <class T> struct times_stream {
  times_head* head;
  spline_filter filter;
  const T* rows;
  T* old;      // of each part as many as a row is long
  T* samples;  // the old ones and those of this call that come at once
  index at_once;
  index fresh;    // samples behind the old ones
  bool complete;  // no sample is to come, and zeros stand behind the last: what lies outside sees nothing

  index kept() const noexcept { return head->memory; }
  T* plane(index part) const noexcept { return samples + part * (kept() + at_once); }
};

template <record V> times_stream<scalar<V>> opened(V* state, times_head* head, index at_once) noexcept {
  using T = scalar<V>;
  const times_layout<T> l = layout_of<T>(*head);
  T* const data = state->data;
  return {head, l.filter, data + l.rows(), data + l.old(), data + l.kept(), at_once, 0, false};
}

// The sample before which all lie that a target needs.
inline index end_of(const spline_filter& f, sample_time t) noexcept {
  return t.whole + f.last(place_in(f, t.part).phase) + 1;
}
inline index begin_of(const spline_filter& f, sample_time t) noexcept {
  return t.whole + f.first(place_in(f, t.part).phase);
}

inline sample_time target(const wanted_times& w, index k, sample_time next) noexcept {
  return w.list != nullptr ? time_of(w.list[k] / w.spacing) : next;
}

// Puts new samples, or zeros, behind those at hand.
template <class T> void take_samples(times_stream<T>& s, const T* x, index count) noexcept {
  const index parts = s.head->parts;
  for (index part = 0; part < parts; ++part) {
    T* const to = s.plane(part) + s.kept() + s.fresh;
    for (index i = 0; i < count; ++i) to[i] = x != nullptr ? x[i * parts + part] : T(0);
  }
  s.fresh += count;
  s.head->samples += count;
}
// The last samples become the old ones.
template <class T> void drop_samples(times_stream<T>& s) noexcept {
  for (index part = 0; part < s.head->parts; ++part) {
    T* const plane = s.plane(part);
    std::copy_n(plane + s.fresh, s.kept(), plane);
  }
  s.fresh = 0;
}

inline constexpr index unseen = -1;

// Serves the wanted times from `served` on, `limit` at most, that the samples at hand suffice for.
template <class T>
inline index serve(times_stream<T>& s, const wanted_times& w, index served, index limit, T* out) noexcept {
  times_head& h = *s.head;
  const std::int64_t base = h.samples - s.fresh - s.kept();
  spline_target<T> targets[targets_at_once];
  index begin[targets_at_once];
  for (index count = 0; served < limit; served += count) {
    for (count = 0; count < std::min(targets_at_once, limit - served); ++count) {
      const sample_time t = target(w, served + count, h.next);
      const phase_place place = place_in(s.filter, t.part);
      const std::int64_t first = t.whole + s.filter.first(place.phase);
      const bool seen = first >= base && t.whole + s.filter.last(place.phase) < h.samples;
      if (!seen && !s.complete) break;
      begin[count] = seen ? first - base : unseen;
      targets[count] = {nullptr, static_cast<T>(place.v), static_cast<std::int32_t>(place.phase)};
      if (w.list == nullptr) h.next = h.next + w.step;
    }
    if (count == 0) break;
    for (index part = 0; part < h.parts; ++part) {
      T* const to = out + served * h.parts + part;
      for (index k = 0; k < count; ++k) targets[k].oldest = s.plane(part) + std::max<index>(begin[k], 0);
      filter_targets(s.filter, s.rows, targets, count, to, h.parts);
      if (!s.complete) continue;
      for (index k = 0; k < count; ++k) to[k * h.parts] = begin[k] == unseen ? T(0) : to[k * h.parts];
    }
  }
  return served;
}

// Sends samples through and serves `limit` times; those of a whole signal stay at hand, as its times may come
// in any order.
template <class T>
void feed(times_stream<T>& s, const T* x, index samples, const wanted_times& w, index limit, bool whole,
          bool ending, T* out) noexcept {
  const index parts = s.head->parts;
  for (index part = 0; part < parts; ++part) std::copy_n(s.old + part * s.kept(), s.kept(), s.plane(part));
  index served = 0;
  for (index begin = 0; begin < samples; begin += s.at_once) {
    take_samples(s, x + begin * parts, std::min(s.at_once, samples - begin));
    if (whole) break;
    served = serve(s, w, served, limit, out);
    drop_samples(s);
  }
  if (ending) {
    take_samples<T>(s, nullptr, s.kept());
    s.complete = true;
    serve(s, w, served, limit, out);
  }
  for (index part = 0; part < parts; ++part) std::copy_n(s.plane(part), s.kept(), s.old + part * s.kept());
}

}  // namespace sigpak
