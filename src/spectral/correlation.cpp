// SPDX-License-Identifier: MIT
// Correlation of two streams, section by section: a section of b with those samples of a that its lags reach,
// as direct sums where the lags are few, otherwise as the product of two spectra, added up before a single
// transform back. C. M. Rader, "An improved algorithm for high speed autocorrelation with applications to
// spectral estimation", IEEE Trans. Audio Electroacoust. 18 (1970).
#include <bit>
#include <cmath>
#include <limits>

#include "core/copy.h"
#include "core/frame.h"
#include "core/lending.h"
#include "core/power_of_two.h"
#include "core/room.h"
#include "fft/transform.h"
#include "spectral/lag_products.h"
#include "spectral/right_angle.h"
#include "spectral/spectral.h"

namespace sigpak {
namespace {

constexpr std::int32_t scale_bits = DSP_CORR_COEFFICIENT;
constexpr index most_direct_lags = 64;
constexpr index direct_section = 4096;
constexpr index least_transform = 1024;
constexpr index usual_transform = 8192;

index power_of_two(index n) noexcept {
  return static_cast<index>(std::bit_ceil(static_cast<std::uint64_t>(std::max<index>(n, 4))));
}

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
  const index wanted = std::clamp(power_of_two(8 * lags), least_transform, usual_transform);
  const index transform = std::max(wanted, power_of_two(4 * lags));
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

constexpr double digit = 0x1p24;

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

struct scaling {
  std::int32_t flags;
  double samples;
  double energy_a;
  double energy_b;

  double at(index lag) const noexcept {
    const double left = samples - static_cast<double>(lag < 0 ? -lag : lag);
    switch (flags & scale_bits) {
      case DSP_CORR_BIASED:
        return samples > 0 ? 1 / samples : 0;
      case DSP_CORR_UNBIASED:
        return left > 0 ? 1 / left : 0;
      case DSP_CORR_COEFFICIENT:
        return energy_a == 0 || energy_b == 0 ? 0 : 1 / (std::sqrt(energy_a) * std::sqrt(energy_b));
      default:
        return 1;
    }
  }
};

template <record V> struct shape {
  scalar<V> delta;
  bool complex;
};
template <record V> shape<V> shape_of(const V* a, const V* b) noexcept {
  return {static_cast<scalar<V>>(a->delta / 2 + b->delta / 2), is_complex(a) || is_complex(b)};
}

// For the lags -lags .. lags, of which those up to `known` follow; none where it is below 0.
template <record V> status size(V* out, const shape<V>& of, index lags, index known) noexcept {
  out->delta = of.delta;
  out->complex = of.complex ? 1 : 0;
  out->points = static_cast<std::uint32_t>(std::max<index>(2 * lags + 1, 0));
  if (2 * lags + 1 > std::numeric_limits<std::int32_t>::max()) return failed;
  if (allocate(out) != ok) return failed;
  const index zeros = known < 0 ? scalars(out) : (lags - known) * width(out);
  std::fill_n(out->data, zeros, scalar<V>(0));
  std::fill_n(out->data + scalars(out) - zeros, zeros, scalar<V>(0));
  return ok;
}

// Sums at the lags -known .. known, scaled, into the middle of out; at(lag) tells where one lies.
template <record V, class Place>
status report(V* out, const shape<V>& of, index lags, index known, double whole, const scaling& scale,
              Place at) noexcept {
  using T = scalar<V>;
  if (size(out, of, lags, known) != ok) return failed;
  const index w = width(out);
  for (index lag = -known; lag <= known; ++lag) {
    const double factor = whole * scale.at(lag);
    const T* const from = at(lag);
    T* const to = out->data + (lags + lag) * w;
    for (index part = 0; part < w; ++part)
      to[part] = static_cast<T>(static_cast<double>(from[part]) * factor);
  }
  return ok;
}

template <record V>
status report_stream(correlator<scalar<V>>* c, V* out, const shape<V>& of, index lags,
                     std::int32_t flags) noexcept {
  scaling scale = {flags, static_cast<double>(c->samples), 0, 0};
  if (c->read(&scale.energy_a, &scale.energy_b) != ok) return failed;
  const double whole = c->l.direct ? 1 : static_cast<double>(c->l.transform);
  return report(out, of, lags, c->l.lags, whole, scale,
                [c](index lag) { return c->at.copy.hi + (lag + c->l.lags) * c->l.width(); });
}

// A length of at least so many points whose transform is the fastest: a power of two, or a multiple of one by
// a small number where the caches hold the data.
template <class T> index fast_length(index least) noexcept {
  constexpr index most_composite = index{1} << 19;
  const index power = power_of_two(std::max<index>(least, 64));
  for (const index sixteenths : {9, 10, 11, 12, 13}) {
    const index points = power / 16 * sixteenths;
    if (points >= least && power <= most_composite && algorithm_for<T>(points) == algorithm::mixed)
      return points;
  }
  return power;
}

// The signals of a whole correlation, and how its sums are scaled.
template <record V> struct pair_of {
  const V* a;
  const V* b;
  index points;
  index known;
  bool same;
  scaling scale;
};

template <record V>
pair_of<V> pair_up(const V* a, const V* b, index points, index known, std::int32_t flags) noexcept {
  const bool same = a->data == b->data && length(a) == length(b) && is_complex(a) == is_complex(b);
  const bool normal = (flags & scale_bits) == DSP_CORR_COEFFICIENT;
  const auto energy_of = [normal](const V* v) { return normal ? energy(v->data, scalars(v)) : 0; };
  return {a, b, points, known, same, {flags, static_cast<double>(points), energy_of(a), energy_of(b)}};
}

// Room for the transforms of both signals, kept: fresh memory costs as much as a transform.
template <record V> constinit lender<kept_record<V>> work_records;

template <record V> class two_areas {
 public:
  using T = scalar<V>;
  two_areas(index count, bool same) noexcept
      : work_(work_records<V>, (same ? 1 : 2) * count * index{sizeof(T)}) {
    register_cache<V>(cache::correlation, []() noexcept { return work_records<V>.release(); });
    V* const v = &work_->v;
    if (make_room(v, (same ? 1 : 2) * count + 2 * line_scalars<T>) != ok) return;
    x = next_line(v->data);
    y = same ? x : next_line(x + count);
  }

  T* x = nullptr;  // null on failure
  T* y = nullptr;  // x, where the signals are the same

 private:
  loan<kept_record<V>> work_;
};

// Complex signals in one transform, around which the lags below 0 wrap.
template <record V>
status correlate_complex(const pair_of<V>& of, V* out, const shape<V>& form, index lags) noexcept {
  using T = scalar<V>;
  const index points = fast_length<T>(of.points + of.known);
  const two_areas<V> areas(2 * points, of.same);
  T* const x = areas.x;
  T* const y = areas.y;
  if (x == nullptr) return failed;
  take(of.a, 0, points, x, 2);
  if (transform(x, points, false) != ok) return failed;
  if (!of.same) {
    take(of.b, 0, points, y, 2);
    if (transform(y, points, false) != ok) return failed;
  }
  multiply_conjugate(x, y, points);
  if (transform(x, points, true) != ok) return failed;
  return report(out, form, lags, of.known, static_cast<double>(points), of.scale,
                [=](index lag) { return x + 2 * (lag < 0 ? lag + points : lag); });
}

template <record V>
status correlate_reals(const pair_of<V>& of, V* out, const shape<V>& form, index lags) noexcept {
  using T = scalar<V>;
  const index points = fast_length<T>((of.points + of.known + 1) / 2);
  const two_areas<V> areas(2 * points, of.same);
  T* const x = areas.x;
  T* const y = areas.y;
  if (x == nullptr) return failed;
  right_angle::fold(of.a->data, length(of.a), points, x);
  if (transform(x, points, false) != ok) return failed;
  if (!of.same) {
    right_angle::fold(of.b->data, length(of.b), points, y);
    if (transform(y, points, false) != ok) return failed;
  }
  multiply_conjugate(x, y, points);
  if (transform(x, points, true) != ok || size(out, form, lags, of.known) != ok) return failed;
  const auto whole = static_cast<double>(points);
  const bool fades = (of.scale.flags & scale_bits) == DSP_CORR_UNBIASED;
  right_angle::unfold(x, points, of.known, {fades ? whole : whole * of.scale.at(0), of.scale.samples, fades},
                      out->data + lags);
  return ok;
}

template <record V>
status correlate_whole(const V* a, const V* b, V* out, index lags, std::int32_t flags) noexcept {
  using T = scalar<V>;
  const index points = std::max(length(a), length(b));
  const shape<V> of = shape_of(a, b);
  if (lags < 0) lags = points - 1;
  if (points == 0) return size(out, of, lags, -1);
  const index known = std::min(lags, points - 1);
  correlator<T> c = {stream_layout<T>(known, of.complex), {}, 0, 0};
  if (!c.l.direct && points <= 2 * c.l.section) {
    const pair_of<V> pair = pair_up(a, b, points, known, flags);
    return of.complex ? correlate_complex(pair, out, of, lags) : correlate_reals(pair, out, of, lags);
  }
  if (c.l.direct) c.l.section = std::min(c.l.section, points);
  temporary<V> state;
  if (make_room<V>(&state, c.l.points() + c.l.work()) != ok) return failed;
  c.at = areas_in(state.data, c.l);
  c.start(state.data);
  if (c.feed(a, b, points) != ok) return failed;
  return report_stream(&c, out, of, lags, flags);
}

// By the transforms of all points; a and b have the same.
template <record V>
status correlate_circularly(const V* a, const V* b, V* out, index lags, std::int32_t flags) noexcept {
  const index points = length(a);
  if (length(b) != points) return failed;
  const shape<V> of = shape_of(a, b);
  if (lags < 0) lags = points / 2;
  if (points == 0) return size(out, of, lags, -1);
  temporary<V> x;
  temporary<V> y;
  if (copy<V>(&x, a) != ok || copy<V>(&y, b) != ok) return failed;
  const double energy_a = energy(x.data, scalars<V>(&x));
  const double energy_b = energy(y.data, scalars<V>(&y));
  if (of.complex) {
    if (dft<V>(&x, 0) != ok || dft<V>(&y, 0) != ok) return failed;
  } else if (real_dft<V>(&x) != ok || real_dft<V>(&y) != ok) {
    return failed;
  }
  if (to_complex<V>(&x) != ok || to_complex<V>(&y) != ok) return failed;
  multiply_conjugate(x.data, y.data, length<V>(&x));
  if ((of.complex ? dft<V>(&x, 1) : inverse_real_dft<V>(&x, points % 2 != 0)) != ok) return failed;
  const scaling scale = {flags, static_cast<double>(points), energy_a, energy_b};
  return report(out, of, lags, lags, static_cast<double>(points), scale, [&x, points, &of](index lag) {
    return x.data + (lag % points + points) % points * (of.complex ? 2 : 1);
  });
}

template <record V>
status correlate(const V* a, const V* b, V* out, std::int32_t lags, std::int32_t flags) noexcept {
  if (out == nullptr || (flags & ~(scale_bits | DSP_CORR_CIRCULAR)) != 0) return failed;
  if ((flags & DSP_CORR_CIRCULAR) != 0) return correlate_circularly(a, b, out, lags, flags);
  return correlate_whole(a, b, out, lags, flags);
}

// Whether the record is a stream of these lags and this form.
template <record V> bool resume(const V* history, correlator<scalar<V>>* c) noexcept {
  if (length(history) != c->l.points() || is_complex(history)) return false;
  c->samples = number_in(c->at.header, 3);
  if (number_in(c->at.header + 3, 2) != c->l.lags) return false;
  if ((c->at.header[5] != 0) != c->l.complex || c->samples < 0) return false;
  const std::int64_t sections = std::max<std::int64_t>(c->samples - c->l.lags, 0) / c->l.section;
  c->waiting = static_cast<index>(c->samples - sections * c->l.section);
  return true;
}

template <record V>
status correlate_stream(const V* a, const V* b, V* out, V* history, std::int32_t lags,
                        std::int32_t flags) noexcept {
  using T = scalar<V>;
  if ((flags & ~scale_bits) != 0 || lags < 0 || length(a) != length(b)) return failed;
  const shape<V> of = shape_of(a, b);
  if (history->data == nullptr) history->points = 0;
  const bool starts = length(history) == 0;
  if (starts && length(a) == 0) return out != nullptr ? size(out, of, lags, -1) : ok;
  correlator<T> c = {stream_layout<T>(lags, of.complex), {}, 0, 0};
  if (!starts) {
    c.at = areas_in(history->data, c.l);
    if (!resume(history, &c)) return failed;
  }
  if (make_room(history, c.l.points() + c.l.work()) != ok) return failed;
  c.at = areas_in(history->data, c.l);
  if (starts) {
    history->points = static_cast<std::uint32_t>(c.l.points());
    history->complex = 0;
    history->delta = of.delta;
    c.start(history->data);
  }
  const bool fed = c.feed(a, b, length(a)) == ok;
  if (fed && (out == nullptr || report_stream(&c, out, of, lags, flags) == ok)) return ok;
  if (!fed) history->points = 0;
  return failed;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspb_corr(const dsp_vec* a, const dsp_vec* b, dsp_vec* out, int32_t lags, int32_t flags) {
  return correlate(a, b, out, lags, flags);
}
int32_t dspfb_corr(const dspf_vec* a, const dspf_vec* b, dspf_vec* out, int32_t lags, int32_t flags) {
  return correlate(a, b, out, lags, flags);
}

int32_t dsph_corr(const dsp_vec* a, const dsp_vec* b, dsp_vec* out, dsp_vec* history, int32_t lags,
                  int32_t flags) {
  return history != nullptr ? correlate_stream(a, b, out, history, lags, flags)
                            : correlate(a, b, out, lags, flags);
}
int32_t dspfh_corr(const dspf_vec* a, const dspf_vec* b, dspf_vec* out, dspf_vec* history, int32_t lags,
                   int32_t flags) {
  return history != nullptr ? correlate_stream(a, b, out, history, lags, flags)
                            : correlate(a, b, out, lags, flags);
}
