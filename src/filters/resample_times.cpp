// SPDX-License-Identifier: MIT
// Samples at any times: regular ones of any ratio, or a list.
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "core/copy.h"
#include "core/rounding.h"
#include "filters/kept.h"
#include "filters/spline_filter.h"
#include "filters/stream.h"

namespace sigpak {
namespace {

constexpr index most_scalars = std::numeric_limits<std::int32_t>::max();
constexpr double unit_part = 0x1p64;
constexpr double most_phases = 1 << 24;
constexpr double no_time = 0;

// The spacing of taps is rounded in the precision of the record.
template <class T>
constexpr double spacing_tolerance = std::max(rounding_tolerance, double{std::numeric_limits<T>::epsilon()});

// To the 2^-64th part of a sample; times beyond 2^61 samples are that far away.
sample_time time_of(double samples) noexcept {
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
  index old() const noexcept { return taps() + filter.taps() + line_scalars + filter.scalars(); }
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

// Rows for the stretch that the head asks for; of the old samples the last ones are kept, missing ones are
// zeros.
template <record V>
status make_rows(V* state, times_head& head, const times_layout<scalar<V>>& before, index at_once) noexcept {
  using T = scalar<V>;
  const times_layout<T> after = layout_of<T>(head);
  const index had = length(state) > 0 ? before.memory : 0;
  const index has = after.memory;
  temporary<V> old;
  old.points = static_cast<std::uint32_t>(has * head.parts);
  if (allocate<V>(&old) != ok) return failed;
  for (index part = 0; part < head.parts; ++part) {
    const index common = std::min(had, has);
    T* const to = old.data + part * has;
    std::fill_n(to, has - common, T(0));
    if (common > 0)
      std::copy_n(state->data + before.old() + part * had + had - common, common, to + has - common);
  }
  if (hold(state, after.kept(), after.all(at_once)) != ok) return failed;
  T* const rows = state->data + after.taps() + head.taps;
  head.padding = static_cast<std::int32_t>(on_a_line(rows) - rows);
  std::copy_n(old.data, has * head.parts, state->data + after.old());
  if (build_rows(after.filter, state->data + after.taps(), rows + head.padding) == ok) return ok;
  state->points = 0;
  return failed;
}

// The sample before which all lie that a target needs.
index end_of(const spline_filter& f, sample_time t) noexcept {
  return t.whole + f.last(place_in(f, t.part).phase) + 1;
}
index begin_of(const spline_filter& f, sample_time t) noexcept {
  return t.whole + f.first(place_in(f, t.part).phase);
}

sample_time target(const wanted_times& w, index k, sample_time next) noexcept {
  return w.list != nullptr ? time_of(w.list[k] / w.spacing) : next;
}

// The k-th regular time behind `next`; one beyond all samples is that far away.
sample_time regular_time(sample_time next, sample_time step, index k) noexcept {
  __extension__ using wide = __int128;
  constexpr wide most = std::int64_t{1} << 62;
  const wide parts = static_cast<wide>(step.part) * k + next.part;
  const wide whole = static_cast<wide>(step.whole) * k + next.whole + (parts >> 64);
  return {static_cast<std::int64_t>(std::min(whole, most)), static_cast<std::uint64_t>(parts)};
}

// A regular time so little before the end of the samples that their number may be rounded is beyond it.
bool lies_before(sample_time t, std::int64_t samples) noexcept {
  const double left = static_cast<double>(samples - t.whole) - static_cast<double>(t.part) / unit_part;
  return left > rounding_tolerance * static_cast<double>(samples);
}

// How many of the wanted times can be served with so many samples, at the end of a stream without waiting.
// The last regular one is found by halving; more than can be counted are as good as one more than that.
index servable(const times_head& h, const spline_filter& f, const wanted_times& w, std::int64_t samples,
               bool ending) noexcept {
  if (ending && w.list != nullptr) return w.count;
  const auto there = [&](sample_time t) {
    return ending ? lies_before(t, samples) : end_of(f, t) <= samples;
  };
  index served = 0;
  if (w.list != nullptr) {
    while (served < w.count && there(target(w, served, h.next))) ++served;
    return served;
  }
  index beyond = most_scalars / h.parts + 1;
  while (served < beyond) {
    const index k = served + (beyond - served) / 2;
    if (there(regular_time(h.next, w.step, k))) {
      served = k + 1;
    } else {
      beyond = k;
    }
  }
  return served;
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

constexpr index nothing = -1;

// Serves the wanted times from `served` on, `limit` at most, that the samples at hand suffice for.
template <class T>
index serve(times_stream<T>& s, const wanted_times& w, index served, index limit, T* out) noexcept {
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
      begin[count] = seen ? first - base : nothing;
      targets[count] = {nullptr, static_cast<T>(place.v), static_cast<std::int32_t>(place.phase)};
      if (w.list == nullptr) h.next = h.next + w.step;
    }
    if (count == 0) break;
    for (index part = 0; part < h.parts; ++part) {
      T* const to = out + served * h.parts + part;
      for (index k = 0; k < count; ++k) targets[k].oldest = s.plane(part) + std::max<index>(begin[k], 0);
      filter_targets(s.filter, s.rows, targets, count, to, h.parts);
      if (!s.complete) continue;
      for (index k = 0; k < count; ++k) to[k * h.parts] = begin[k] == nothing ? T(0) : to[k * h.parts];
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

template <record V> bool is_spline_filter(const V* taps) noexcept {
  const double phases = std::round(1 / static_cast<double>(taps->delta));
  const index n = length(taps);
  return !is_complex(taps) && n >= 3 && n % 2 == 1 && phases >= 1 && phases <= most_phases &&
         std::abs(1 / static_cast<double>(taps->delta) - phases) <= spacing_tolerance<scalar<V>> * phases;
}

template <record V> times_head fresh_head(const V* in, const V* taps) noexcept {
  times_head h = {};
  h.mark = times_head::own_mark;
  h.last = -std::numeric_limits<double>::infinity();
  h.phases = static_cast<std::int64_t>(std::round(1 / static_cast<double>(taps->delta)));
  h.taps = static_cast<std::int32_t>(length(taps));
  h.parts = static_cast<std::int32_t>(width(in));
  return h;
}

// Whether the rows and the old samples of a filter stretched so far can be counted.
bool countable(const times_head& h, double stretch, index at_once) noexcept {
  if (stretch * h.taps > most_scalars) return false;
  const spline_filter filter = {h.taps, h.phases, stretch};
  const times_layout<float> l = {filter, h.parts, 0, std::max<index>(h.memory, filter.longest())};
  return l.all(at_once) <= most_scalars;
}

template <record V> status start(V* state, const V* taps, times_head& head, index at_once) noexcept {
  const times_layout<scalar<V>> l = layout_of<scalar<V>>(head);
  state->points = 0;
  if (hold(state, l.kept(), l.all(at_once)) != ok) return failed;
  std::copy_n(taps->data, head.taps, state->data + l.taps());
  state->points = 0;  // no samples yet, but the taps are in place
  return make_rows(state, head, l, at_once);
}

bool are_times(const wanted_times& w) noexcept {
  for (index k = 0; k < w.count; ++k) {
    if (!std::isfinite(w.list[k] / w.spacing)) return false;
  }
  return true;
}

// The times of a stream do not fall, and their samples have not left it.
bool continue_stream(const times_head& h, const wanted_times& w) noexcept {
  const spline_filter f = {h.taps, h.phases, h.stretch};
  double last = h.last;
  for (index k = 0; k < w.count; ++k) {
    if (w.list[k] < last || begin_of(f, time_of(w.list[k] / w.spacing)) < h.samples - h.memory) return false;
    last = w.list[k];
  }
  return true;
}

// One call of a stream whose rows stand, or a whole signal. What can fail comes first.
template <record V>
status send(V* state, times_head& head, const V* in, V* out, wanted_times w, double spacing, index at_once,
            bool whole) noexcept {
  const index samples = in != nullptr ? length(in) : 0;
  const bool ending = whole || in == nullptr;
  times_stream<scalar<V>> s = opened(state, &head, at_once);
  const index count = servable(head, s.filter, w, head.samples + samples, ending);
  if (count * head.parts > most_scalars) return failed;
  const V* source = in;
  std::optional<loan<kept_record<V>>> apart;
  if (in != nullptr && in->data != nullptr && out->data == in->data) {
    apart.emplace(substitutes<V>(), length(in) * index{sizeof(scalar<V>)});
    if (copy(&(*apart)->v, in) != ok) return failed;
    source = &(*apart)->v;
  }
  temporary<dsp_vec> times;
  if (w.list != nullptr && static_cast<const void*>(out->data) == w.list) {
    times.points = static_cast<std::uint32_t>(w.count);
    if (allocate<dsp_vec>(&times) != ok) return failed;
    std::copy_n(w.list, w.count, times.data);
    w.list = times.data;
  }
  out->points = static_cast<std::uint32_t>(count);
  out->complex = head.parts == 2 ? 1 : 0;
  out->delta = static_cast<scalar<V>>(spacing);
  if (allocate(out) != ok) return failed;
  feed(s, source != nullptr ? source->data : nullptr, samples, w, count, whole, ending, out->data);
  if (w.list != nullptr && count > 0) head.last = w.list[count - 1];
  return ok;
}

template <record V>
status resample_at(const V* in, V* out, const V* taps, const dsp_vec* at, double step, V* state) noexcept {
  using T = scalar<V>;
  if (!(step > 0 && std::isfinite(step)) || (at != nullptr && is_complex(at))) return failed;
  const bool whole = state == nullptr;
  temporary<V> own;
  V* const stream = whole ? &own : state;
  const bool fresh = length(stream) == 0;
  if (in == nullptr && whole) return failed;
  if (in == nullptr && fresh) return out->points = 0, ok;
  if (fresh ? !is_spline_filter(taps) : !holds_head<times_head>(stream)) return failed;
  times_head head = fresh ? fresh_head(in, taps) : read_head<times_head>(stream);
  const times_layout<T> before = layout_of<T>(head);
  if (!fresh && length(stream) != before.kept()) return failed;
  if (in != nullptr && width(in) != head.parts) return failed;
  if (in != nullptr) head.delta = static_cast<double>(in->delta);
  const double stretch = std::fmax(step, 1);
  wanted_times w = {nullptr, 0, head.delta, time_of(step)};
  if (at != nullptr) {
    w.list = at->data;
    w.count = length(at);
    if (w.count == 0) w.list = &no_time;
  }
  const double spacing = at != nullptr ? at->delta : step * head.delta;
  if (!countable(head, stretch, 0)) return failed;
  const bool same = !fresh && head.stretch == stretch;
  head.stretch = stretch;
  const spline_filter filter = {head.taps, head.phases, stretch};
  head.memory = std::max<index>(head.memory, filter.longest());
  const index at_once = whole ? length(in) + head.memory : samples_at_once(head.memory);
  if (!countable(head, stretch, at_once)) return failed;
  if (!are_times(w) || (!whole && !continue_stream(head, w))) return failed;
  const times_layout<T> now = layout_of<T>(head);
  const status ready = same    ? hold(stream, now.kept(), now.all(at_once))
                       : fresh ? start<V>(stream, taps, head, at_once)
                               : make_rows(stream, head, before, at_once);
  if (ready != ok) return failed;
  write_head(head, stream);
  const status sent = send<V>(stream, head, in, out, w, spacing, at_once, whole);
  if (sent == ok && in != nullptr) write_head(head, stream);
  const bool over = in == nullptr ? sent == ok : fresh && sent != ok;
  if (over) stream->points = 0;
  return sent;
}

}  // namespace
}  // namespace sigpak

int32_t dspd_rsmp2(const dsp_vec* in, dsp_vec* out, const dsp_vec* taps, const dsp_vec* at, double step,
                   dsp_vec* state) {
  return sigpak::resample_at(in, out, taps, at, step, state);
}
int32_t dspfd_rsmp2(const dspf_vec* in, dspf_vec* out, const dspf_vec* taps, const dsp_vec* at, double step,
                    dspf_vec* state) {
  return sigpak::resample_at(in, out, taps, at, step, state);
}
