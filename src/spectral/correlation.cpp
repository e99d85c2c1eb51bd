// SPDX-License-Identifier: MIT
// Correlation of whole signals: by one transform of all samples where that is the least work, otherwise as a
// stream of one block; around the ends by the transforms of the signals as they are.
#include "spectral/correlation.h"

#include "core/copy.h"
#include "core/frame.h"
#include "core/lending.h"
#include "core/power_of_two.h"
#include "spectral/correlator.h"
#include "spectral/right_angle.h"

namespace sigpak::correlation {
namespace {

// A length of at least so many points whose transform is the fastest: a power of two, or a multiple of one by
// a small number where the caches hold the data.
template <class T> index fast_length(index least) noexcept {
  constexpr index most_composite = index{1} << 19;
  const index power = next_power_of_two(std::max<index>(least, 64));
  for (const index sixteenths : {9, 10, 11, 12, 13}) {
    const index points = power / 16 * sixteenths;
    if (points < least || power > most_composite) continue;
    if (has_short_factors<T>(points)) return points;
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

}  // namespace

template <record V>
status correlate(const V* a, const V* b, V* out, std::int32_t lags, std::int32_t flags) noexcept {
  if (out == nullptr || (flags & ~(scale_bits | DSP_CORR_CIRCULAR)) != 0) return failed;
  if ((flags & DSP_CORR_CIRCULAR) != 0) return correlate_circularly(a, b, out, lags, flags);
  return correlate_whole(a, b, out, lags, flags);
}

template status correlate(const dsp_vec*, const dsp_vec*, dsp_vec*, std::int32_t, std::int32_t) noexcept;
template status correlate(const dspf_vec*, const dspf_vec*, dspf_vec*, std::int32_t, std::int32_t) noexcept;

}  // namespace sigpak::correlation

using namespace sigpak::correlation;

int32_t dspb_corr(const dsp_vec* a, const dsp_vec* b, dsp_vec* out, int32_t lags, int32_t flags) {
  return correlate(a, b, out, lags, flags);
}
int32_t dspfb_corr(const dspf_vec* a, const dspf_vec* b, dspf_vec* out, int32_t lags, int32_t flags) {
  return correlate(a, b, out, lags, flags);
}
