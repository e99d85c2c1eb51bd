// SPDX-License-Identifier: MIT
// Running spectra: the segments of a stream, windowed and transformed, and the running average of their
// spectra or powers. P. D. Welch, "The use of fast Fourier transform for the estimation of power spectra",
// IEEE Trans. Audio Electroacoust. 15 (1967).
#include <cmath>
#include <limits>

#include "core/copy.h"
#include "core/power_of_two.h"
#include "core/room.h"
#include "fft/transform.h"
#include "spectral/folds.h"
#include "spectral/segments.h"
#include "spectral/spacing.h"
#include "spectral/spectral.h"
#include "stats/stats.h"

namespace sigpak {
namespace {

constexpr std::int32_t mode_bits = 15;
constexpr std::int32_t padding_bits = DSP_SPECTRUM_PAD8;
constexpr std::int32_t known_flags = mode_bits | DSP_SPECTRUM_EXPONENTIAL | DSP_SPECTRUM_SQUARE |
                                     DSP_SPECTRUM_CENTRE | DSP_SPECTRUM_DENSITY | padding_bits;
enum mode { replace, mean, maximum, minimum, harmonic, geometric };

constexpr std::int32_t most_segments = std::numeric_limits<std::int32_t>::max();

// What the arguments ask for.
template <record V> struct request {
  using T = scalar<V>;
  int mode;
  bool exponential;
  bool squared;
  bool centred;
  bool density;
  bool cross;
  int width;  // scalars of a sample of a
  weights<T> window;
  index padded;  // P
  index hop;
  spectrum_bins bins;
  double gain;  // S is gain times what the transform, which has the factor 1/P, leaves
  T most;       // maxcount

  index bins_of_avg() const noexcept { return cross ? 3 * bins.count : bins.count; }
  bool complex_avg() const noexcept { return cross || !squared; }
  int stream_width() const noexcept { return cross ? 2 : width; }
  bool in_place() const noexcept { return is_power_of_two(padded) && padded >= 4; }
};

// The sums that normalise the window; false where they cannot.
template <record V> bool normalise(request<V>* r, scalar<V> delta) noexcept {
  const auto n = static_cast<double>(r->window.n);
  double squares = n;
  r->window.sum = n;
  if (r->window.w != nullptr) {
    isa::run([r, &squares] {
      const weights<scalar<V>> ones = {nullptr, r->window.n, 0};
      r->window.sum = weighted_sum(ones, r->window.w, 1);
      squares = weighted_sum(r->window, r->window.w, 1);
    });
  }
  const double inverse_mean = n / r->window.sum;
  const double inverse_rms = std::sqrt(n / squares);
  const auto points = static_cast<double>(r->padded);
  r->gain = r->density ? points * std::sqrt(static_cast<double>(delta) / squares) : points / r->window.sum;
  return std::isfinite(r->density ? inverse_rms : inverse_mean) &&
         (!r->centred || std::isfinite(inverse_mean));
}

template <record V>
status read_request(const V* a, const V* b, const V* window, std::int32_t flags, std::int32_t hop,
                    scalar<V> most, request<V>* r) noexcept {
  r->mode = flags & mode_bits;
  if ((flags & ~known_flags) != 0 || r->mode > geometric) return failed;
  r->exponential = (flags & DSP_SPECTRUM_EXPONENTIAL) != 0;
  r->cross = b != nullptr;
  r->squared = r->cross || (flags & DSP_SPECTRUM_SQUARE) != 0;
  r->centred = (flags & DSP_SPECTRUM_CENTRE) != 0;
  r->density = (flags & DSP_SPECTRUM_DENSITY) != 0;
  r->most = most;
  r->width = is_complex(a) ? 2 : 1;
  if (r->cross && (is_complex(a) || is_complex(b) || length(a) != length(b) || r->mode > mean)) return failed;
  if (r->density && !(a->delta >= 0)) return failed;
  if (window != nullptr && (is_complex(window) || length(window) == 0)) return failed;
  const index n = window != nullptr ? length(window) : length(a);
  r->window = {window != nullptr ? window->data : nullptr, n, 0};
  r->padded = n << ((flags & padding_bits) / DSP_SPECTRUM_PAD2);
  if (window != nullptr && (hop < 0 || hop > n)) return failed;
  r->hop = window == nullptr ? n : hop == 0 ? (n + 1) / 2 : hop;
  const bool real = r->width == 1;
  r->bins = {real ? r->padded / 2 + 1 : r->padded, real && r->squared ? (r->padded - 1) / 2 : 0};
  return r->padded <= std::numeric_limits<std::int32_t>::max() / 2 ? ok : failed;
}

// The samples on their way: those that wait, the block, and where segments are transformed.
template <record V> struct stream {
  using T = scalar<V>;
  V* history;
  const V* a;
  const V* b;
  T* work[2];
  temporary<V> own[2];  // of lengths that are not transformed in place
  temporary<V> scratch;

  index waiting() const noexcept { return length(history); }
  index available() const noexcept { return waiting() + length(a); }
  channel<T> channel_of(int c, int stream_width, int width) const noexcept {
    return {history->data + (c == 1 ? 1 : 0), stream_width, waiting(), (c == 1 ? b : a)->data, width};
  }
};

// Work areas behind the samples that may wait, so that a stream needs no memory of its own call by call.
template <record V> status prepare(const request<V>& r, stream<V>* s) noexcept {
  using T = scalar<V>;
  const int channels = r.cross ? 2 : 1;
  const index waiting = std::max(s->waiting(), r.window.n - 1) * r.stream_width();
  const index area = r.in_place() ? r.padded * r.width + 2 + line_scalars<T> : 0;
  if (make_room(s->history, waiting + channels * area + line_scalars<T>) != ok) return failed;
  T* at = next_line(s->history->data + waiting);
  for (int c = 0; c < channels; ++c) {
    s->work[c] = at;
    at = next_line(at + r.padded * r.width + 2);
    if (!r.in_place() && reshape<V>(&s->own[c], 2 * r.padded, false) != ok) return failed;
  }
  return ok;
}

// The transform of the segment that begins with sample `begin` of those available; null on failure.
template <record V>
scalar<V>* transform_segment(const request<V>& r, stream<V>* s, int c, index begin) noexcept {
  const auto x = s->channel_of(c, r.stream_width(), r.width);
  if (r.in_place()) {
    scalar<V>* const work = s->work[c];
    load_segment(x, begin, r.window, r.centred, r.padded, work);
    const status done = r.width == 2 ? transform(work, r.padded, false) : forward_real(work, r.padded);
    return done == ok ? work : nullptr;
  }
  V* const own = &s->own[c];
  own->points = static_cast<std::uint32_t>(r.padded);
  own->complex = r.width == 2 ? 1 : 0;
  if (allocate(own) != ok) return nullptr;
  load_segment(x, begin, r.window, r.centred, r.padded, own->data);
  const status done = r.width == 2 ? dft(own, 0) : real_dft(own);
  // Transforms of one point leave them real.
  return done == ok && to_complex(own) == ok ? own->data : nullptr;
}

// The spectrum as it stands, or its powers, by the rules of the running average of records.
template <record V>
status fold_record(const request<V>& r, stream<V>* s, scalar<V>* z, std::int32_t count, V* avg) noexcept {
  using T = scalar<V>;
  const index bins = r.bins.count;
  if (r.squared) {
    take_powers(z, r.bins, static_cast<T>(r.gain * r.gain), z);
  } else {
    isa::run([z, bins, gain = static_cast<T>(r.gain)] {
      for (index i = 0; i < 2 * bins; ++i) z[i] *= gain;
    });
  }
  V spectrum = {};
  spectrum.delta = avg->delta;
  spectrum.data = z;
  spectrum.points = static_cast<std::uint32_t>(bins);
  spectrum.complex = r.squared ? 0 : 1;
  const int flags = r.mode | (r.exponential ? DSP_SPECTRUM_EXPONENTIAL : 0);
  return average<V>(&spectrum, avg, &s->scratch, flags, count, 0, T(-1), r.most);
}

// Folds the segment from `begin` on into avg; count tells how many there are with it.
template <record V>
status fold_segment(const request<V>& r, stream<V>* s, index begin, std::int32_t count, V* avg) noexcept {
  using T = scalar<V>;
  T* const a = transform_segment(r, s, 0, begin);
  if (a == nullptr) return failed;
  const int flags = r.exponential ? DSP_SPECTRUM_EXPONENTIAL : 0;
  const running_mean<T> to = {count <= 1 || r.mode == replace, average_weight(flags, count, r.most)};
  const auto factor = static_cast<T>(r.gain * r.gain);
  if (r.cross) {
    const T* const b = transform_segment(r, s, 1, begin);
    if (b == nullptr) return failed;
    average_cross_powers(a, b, r.bins, factor, to, avg->data);
    return ok;
  }
  if (r.mode > mean || !r.squared) return fold_record(r, s, a, count, avg);
  average_powers(a, r.bins, factor, to, avg->data);
  return ok;
}

// What the next segment needs of the samples from `begin` on stays behind.
template <record V> void keep_rest(const request<V>& r, const stream<V>& s, index begin) noexcept {
  using T = scalar<V>;
  const int w = r.stream_width();
  V* const history = s.history;
  const index waiting = s.waiting();
  const index old = std::max<index>(waiting - begin, 0);
  T* const data = history->data;
  if (begin > 0) std::copy(data + (waiting - old) * w, data + waiting * w, data);
  const index first = std::max<index>(begin - waiting, 0);
  const index fresh = length(s.a) - first;
  if (r.cross) {
    for (index i = 0; i < fresh; ++i) {
      data[2 * (old + i)] = s.a->data[first + i];
      data[2 * (old + i) + 1] = s.b->data[first + i];
    }
  } else {
    std::copy_n(s.a->data + first * w, fresh * w, data + old * w);
  }
  history->points = static_cast<std::uint32_t>(old + fresh);
  history->complex = w == 2 ? 1 : 0;
  history->delta = s.a->delta;
}

template <record V>
status fold_segments(const request<V>& r, stream<V>* s, index segments, std::int32_t count, V* avg) noexcept {
  avg->delta = transformed_spacing(s->a->delta, r.padded);
  for (index j = r.mode == replace ? segments - 1 : 0; j < segments; ++j) {
    const auto number = static_cast<std::int32_t>(std::min<index>(count + j + 1, most_segments));
    if (fold_segment(r, s, j * r.hop, number, avg) != ok) return failed;
  }
  return ok;
}

template <record V> bool continues(const V* avg, const request<V>& r) noexcept {
  return length(avg) == r.bins_of_avg() && is_complex(avg) == r.complex_avg();
}

template <record V>
status run(request<V>& r, const V* a, const V* b, V* avg, V* history, std::int32_t* count) noexcept {
  temporary<V> none;
  const bool streams = history != nullptr && r.window.w != nullptr;
  stream<V> s = {streams ? history : &none, a, b, {}, {}, {}};
  if (s.history->data == nullptr) s.history->points = 0;
  if (s.waiting() > 0 && is_complex(s.history) != (r.stream_width() == 2)) return failed;
  const std::int32_t before = count != nullptr ? std::max(*count, 0) : 0;
  if (before > 0 && !continues(avg, r)) return failed;
  const index available = s.available();
  const index segments = available >= r.window.n ? (available - r.window.n) / r.hop + 1 : 0;
  if ((segments > 0 || s.waiting() == 0) && !normalise(&r, a->delta)) return failed;
  if (prepare(r, &s) != ok) return failed;
  if (segments > 0) {
    if (before == 0) {
      avg->points = static_cast<std::uint32_t>(r.bins_of_avg());
      avg->complex = r.complex_avg() ? 1 : 0;
      if (allocate(avg) != ok) return failed;
    }
    if (fold_segments(r, &s, segments, before, avg) != ok) return failed;
    if (count != nullptr)
      *count = static_cast<std::int32_t>(std::min<index>(before + segments, most_segments));
  }
  if (streams) keep_rest(r, s, segments * r.hop);
  return ok;
}

// A copy of an operand that shares its storage with the result.
template <record V> const V* apart(const V* v, const V* from, V* own, bool* copied) noexcept {
  if (v == nullptr || v->data != from->data || from->data == nullptr) return v;
  *copied = copy(own, v) == ok && *copied;
  return own;
}

template <record V>
status average_spectra(const V* a, const V* b, V* avg, V* history, const V* window, std::int32_t flags,
                       std::int32_t hop, std::int32_t* count, scalar<V> most, bool powers_of_two) noexcept {
  if (history != nullptr && (history == a || history == b || history == avg || history == window))
    return failed;
  request<V> r = {};
  if (read_request(a, b, window, flags, hop, most, &r) != ok) return failed;
  if (length(a) == 0) return ok;
  if (powers_of_two && !is_power_of_two(r.padded)) return failed;
  temporary<V> own[3];
  bool copied = true;
  a = apart<V>(a, avg, &own[0], &copied);
  b = apart<V>(b, avg, &own[1], &copied);
  window = apart<V>(window, avg, &own[2], &copied);
  if (!copied) return failed;
  if (window != nullptr) r.window.w = window->data;
  return run(r, a, b, avg, history, count);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsph_fft(const dsp_vec* a, const dsp_vec* b, dsp_vec* avg, dsp_vec* history, const dsp_vec* window,
                 int32_t flags, int32_t hop, int32_t* count, double maxcount) {
  return average_spectra(a, b, avg, history, window, flags, hop, count, maxcount, true);
}
int32_t dspfh_fft(const dspf_vec* a, const dspf_vec* b, dspf_vec* avg, dspf_vec* history,
                  const dspf_vec* window, int32_t flags, int32_t hop, int32_t* count, float maxcount) {
  return average_spectra(a, b, avg, history, window, flags, hop, count, maxcount, true);
}

int32_t dsph_dft(const dsp_vec* a, const dsp_vec* b, dsp_vec* avg, dsp_vec* history, const dsp_vec* window,
                 int32_t flags, int32_t hop, int32_t* count, double maxcount) {
  return average_spectra(a, b, avg, history, window, flags, hop, count, maxcount, false);
}
int32_t dspfh_dft(const dspf_vec* a, const dspf_vec* b, dspf_vec* avg, dspf_vec* history,
                  const dspf_vec* window, int32_t flags, int32_t hop, int32_t* count, float maxcount) {
  return average_spectra(a, b, avg, history, window, flags, hop, count, maxcount, false);
}
