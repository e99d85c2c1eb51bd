// SPDX-License-Identifier: MIT
// The sample rate changed by a ratio of whole numbers.
#include <algorithm>
#include <limits>
#include <optional>

#include "core/copy.h"
#include "filters/filters.h"
#include "filters/kept.h"
#include "filters/stream.h"
#include "kernels/resample.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

constexpr index most_scalars = std::numeric_limits<std::int32_t>::max();

// The sums of eight outputs side by side, each over its own samples.
template <class T>
void sum_plainly(const kernels::phase_rows<T>& rows, const kernels::rate_run<T>& run, T* out, T*) {
  constexpr index side = 8;
  for (index k = 0; k < run.outputs * run.parts; k += side) {
    const T* taps[side];
    const T* x[side];
    index sizes[side];
    for (index p = 0; p < side; ++p) {
      const index at = std::min(k + p, run.outputs * run.parts - 1);
      const index place = run.phase + at / run.parts * rows.down;
      const index phase = place % rows.up;
      sizes[p] = rows.size(phase);
      taps[p] = rows.row(phase);
      x[p] = run.newest + (place / rows.up - (sizes[p] - 1)) * run.parts + at % run.parts;
    }
    const index all = *std::min_element(sizes, sizes + side);
    T sums[side] = {};
    for (index i = 0; i < all; ++i) {
      for (index p = 0; p < side; ++p) sums[p] += taps[p][i] * x[p][i * run.parts];
    }
    for (index p = 0; p < side && k + p < run.outputs * run.parts; ++p) {
      out[k + p] = sizes[p] > all ? sums[p] + taps[p][all] * x[p][all * run.parts] : sums[p];
    }
  }
}

template <class T> kernels::resample_sum<T> current_sum() noexcept {
  const auto* const wide = at_level<kernels::resample_table<T>>();
  return wide != nullptr ? wide->sum : sum_plainly<T>;
}

// Times are counted in 1 / up samples, from the end of the samples that have come: exact for ever.
struct rate_head {
  static constexpr std::uint64_t own_mark = 0x7369672e72736d70;
  std::uint64_t mark;
  std::int64_t place;  // of the next output
  std::int32_t up;
  std::int32_t down;
  std::int32_t taps;
  std::int32_t parts;
  double delta;  // of the input
};

template <class T> index samples_at_once(const rate_head& h) noexcept {
  const index longest = (index{h.taps} + h.up - 1) / h.up;
  const index fills_the_lanes = std::max(16 * index{h.down}, 8 * longest * h.down / h.up);
  return std::clamp<index>(fills_the_lanes, 1024, 32768);
}

// A state taken apart.
template <class T> struct rate_stream {
  rate_head* head;
  kernels::phase_rows<T> rows;
  T* old;  // the last samples that an output to come may see, and room for new ones behind them
  index at_once;
  T* room;

  index before() const noexcept { return rows.longest() - 1; }
  index centre() const noexcept { return (rows.count - 1) / 2; }
};

template <record V> rate_stream<scalar<V>> opened(V* state, rate_head* head, index at_once) noexcept {
  using T = scalar<V>;
  T* const taps = state->data + head_scalars<rate_head, T>;
  rate_stream<T> s = {head, {taps, head->taps, head->up, head->down}, taps + head->taps, at_once, nullptr};
  s.room = next_line(s.old + (s.before() + at_once) * head->parts);
  return s;
}

// Scalars that last, and all that a call needs.
template <class T> index kept_scalars(const rate_head& h) noexcept {
  const index longest = (index{h.taps} + h.up - 1) / h.up;
  return head_scalars<rate_head, T> + h.taps + (longest - 1) * h.parts;
}
template <class T> index all_scalars(const rate_head& h, index at_once) noexcept {
  const kernels::phase_rows<T> rows = {nullptr, h.taps, h.up, h.down};
  return kept_scalars<T>(h) + at_once * h.parts + most_padding +
         kernels::resample_room(rows, at_once, h.parts);
}

// Taps by phase, the last of a phase first.
template <class T> void sort_taps(const T* taps, const rate_head& h, T* rows) noexcept {
  for (index phase = 0; phase < std::min(h.up, h.taps); ++phase) {
    const index size = (h.taps - phase + h.up - 1) / h.up;
    for (index i = size - 1; i >= 0; --i) *rows++ = taps[phase + i * h.up];
  }
}

template <record V> status start(V* state, const V* taps, rate_head& head, index at_once) noexcept {
  using T = scalar<V>;
  state->points = 0;
  const index kept = kept_scalars<T>(head);
  if (hold(state, kept, all_scalars<T>(head, at_once)) != ok) return failed;
  T* const rows = state->data + head_scalars<rate_head, T>;
  sort_taps(taps->data, head, rows);
  std::fill(rows + head.taps, state->data + kept, T(0));
  write_head(head, state);
  return ok;
}

constexpr std::int64_t floor_quotient(std::int64_t a, std::int64_t b) noexcept {
  return a / b - (a % b < 0 ? 1 : 0);
}

// Outputs whose samples are there once `samples` more have come; b > 0.
constexpr index due(const rate_head& h, index samples) noexcept {
  const std::int64_t late = samples * h.up - (h.place + (h.taps - 1) / 2);
  return late > 0 ? (late + h.down - 1) / h.down : 0;
}
// Outputs that lie before the end of the samples when so many more have come.
constexpr index outstanding(const rate_head& h, index samples) noexcept {
  const std::int64_t late = samples * h.up - h.place;
  return late > 0 ? (late + h.down - 1) / h.down : 0;
}

// Sends samples through, zeros when x is null, and gives at most `wanted` outputs, which begin at out.
template <class T> index feed(rate_stream<T>& s, const T* x, index samples, index wanted, T* out) noexcept {
  const kernels::resample_sum<T> sum = current_sum<T>();
  rate_head& h = *s.head;
  const index parts = h.parts;
  T* const fresh = s.old + s.before() * parts;
  index given = 0;
  for (index begin = 0; begin < samples; begin += s.at_once) {
    const index count = std::min(s.at_once, samples - begin);
    if (x != nullptr) {
      std::copy_n(x + begin * parts, count * parts, fresh);
    } else {
      std::fill_n(fresh, count * parts, T(0));
    }
    const index outputs = std::min(due(h, count), wanted - given);
    h.place -= count * h.up;
    const std::int64_t newest = h.place + s.centre();
    const std::int64_t sample = floor_quotient(newest, h.up);
    if (outputs > 0) {
      sum(s.rows, {fresh + (count + sample) * parts, newest - sample * h.up, outputs, parts},
          out + given * parts, s.room);
    }
    h.place += outputs * h.down;
    given += outputs;
    std::copy_n(s.old + count * parts, s.before() * parts, s.old);
  }
  return given;
}

// The outputs that still lie before the end of the samples, as if zeros followed.
template <class T> void drain(rate_stream<T>& s, index wanted, T* out) noexcept {
  if (wanted == 0) return;
  const rate_head& h = *s.head;
  const std::int64_t last = h.place + (wanted - 1) * h.down + s.centre();
  feed(s, static_cast<const T*>(nullptr), floor_quotient(last, h.up) + 1, wanted, out);
}

constexpr bool is_rate(std::int32_t factor) noexcept { return factor >= 1 && factor <= most_rate_factor; }

template <record V> status size_output(V* out, index points, const rate_head& h) noexcept {
  out->points = static_cast<std::uint32_t>(points);
  out->complex = h.parts == 2 ? 1 : 0;
  out->delta = static_cast<scalar<V>>(h.delta * h.down / h.up);
  return allocate(out);
}

template <record V>
rate_head fresh_head(const V* in, const V* taps, std::int32_t up, std::int32_t down) noexcept {
  return {rate_head::own_mark,
          0,
          up,
          down,
          static_cast<std::int32_t>(length(taps)),
          static_cast<std::int32_t>(width(in)),
          static_cast<double>(in->delta)};
}

template <record V> bool is_filter(const V* taps) noexcept { return !is_complex(taps) && length(taps) > 0; }

// Sends `in` through a stream and with `ending` brings the rest. What can fail comes first: a stream that
// could not go on may be called again.
template <record V>
status send(V* state, rate_head& head, const V* in, V* out, index at_once, bool ending) noexcept {
  const index samples = in != nullptr ? length(in) : 0;
  const index now = due(head, samples);
  const index all = ending ? outstanding(head, samples) : now;
  if (all * head.parts > most_scalars) return failed;
  const V* source = in;
  std::optional<loan<kept_record<V>>> apart;
  if (in != nullptr && in->data != nullptr && out->data == in->data) {
    apart.emplace(substitutes<V>(), length(in) * index{sizeof(scalar<V>)});
    if (copy(&(*apart)->v, in) != ok) return failed;
    source = &(*apart)->v;
  }
  if (size_output(out, all, head) != ok) return failed;
  rate_stream<scalar<V>> s = opened(state, &head, at_once);
  const index given = feed(s, source != nullptr ? source->data : nullptr, samples, now, out->data);
  if (ending) drain(s, all - given, out->data + given * head.parts);
  return ok;
}

template <record V>
status resample_whole(const V* in, V* out, const V* taps, std::int32_t up, std::int32_t down) noexcept {
  using T = scalar<V>;
  if (in == nullptr || !is_filter(taps)) return failed;
  rate_head head = fresh_head(in, taps, up, down);
  if (outstanding(head, length(in)) * head.parts > most_scalars) return failed;
  temporary<V> state;
  const index at_once = std::min(samples_at_once<T>(head), length(in) + head.taps / head.up + 1);
  if (start<V>(&state, taps, head, at_once) != ok) return failed;
  return send<V>(&state, head, in, out, at_once, true);
}

template <record V>
status resample(const V* in, V* out, const V* taps, std::int32_t up, std::int32_t down, V* state) noexcept {
  using T = scalar<V>;
  if (!is_rate(up) || !is_rate(down)) return failed;
  if (state == nullptr) return resample_whole(in, out, taps, up, down);
  const bool fresh = length(state) == 0;
  if (fresh && in == nullptr) return out->points = 0, ok;
  if (fresh ? !is_filter(taps) : !holds_head<rate_head>(state)) return failed;
  rate_head head = fresh ? fresh_head(in, taps, up, down) : read_head<rate_head>(state);
  const index kept = kept_scalars<T>(head);
  const index at_once = samples_at_once<T>(head);
  if (!fresh) {
    if (head.up != up || head.down != down || length(state) != kept) return failed;
    if (in != nullptr && width(in) != head.parts) return failed;
    if (hold(state, kept, all_scalars<T>(head, at_once)) != ok) return failed;
  } else if (start(state, taps, head, at_once) != ok) {
    return failed;
  }
  if (in != nullptr) head.delta = static_cast<double>(in->delta);
  const status sent = send(state, head, in, out, at_once, in == nullptr);
  if (sent != ok && !fresh) return failed;
  if (in == nullptr || sent != ok) {
    state->points = 0;
  } else {
    write_head(head, state);
  }
  return sent;
}

}  // namespace
}  // namespace sigpak

int32_t dspd_rsmp(const dsp_vec* in, dsp_vec* out, const dsp_vec* taps, int32_t up, int32_t down,
                  dsp_vec* state) {
  return sigpak::resample(in, out, taps, up, down, state);
}
int32_t dspfd_rsmp(const dspf_vec* in, dspf_vec* out, const dspf_vec* taps, int32_t up, int32_t down,
                   dspf_vec* state) {
  return sigpak::resample(in, out, taps, up, down, state);
}
