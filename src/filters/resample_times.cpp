// SPDX-License-Identifier: MIT
// Samples at any times: regular ones of any ratio, or a list.
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "core/copy.h"
#include "core/rounding.h"
#include "filters/stream.h"
#include "filters/times_stream.h"

namespace sigpak {
namespace {

constexpr double most_phases = 1 << 24;
constexpr double no_time = 0;

// The spacing of taps is rounded in the precision of the record.
template <class T>
constexpr double spacing_tolerance = std::max(rounding_tolerance, double{std::numeric_limits<T>::epsilon()});

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
  head.padding = static_cast<std::int32_t>(next_line(rows) - rows);
  std::copy_n(old.data, has * head.parts, state->data + after.old());
  if (build_rows(after.filter, state->data + after.taps(), rows + head.padding) == ok) return ok;
  state->points = 0;
  return failed;
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
