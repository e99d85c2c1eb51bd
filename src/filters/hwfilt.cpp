// SPDX-License-Identifier: MIT
// Four equal recursive sections, a low-pass with gain 1 at zero frequency and 0 at the Nyquist frequency.
#include "core/storage.h"
#include "filters/stream.h"

namespace sigpak {
namespace {

constexpr index sections = 4;
constexpr index delays = 3;  // per section, the most recent first

// One section: H(z) = (1 + 1/z) (1 + 1/z + 1/z^2) / (4 (1 + 1/(2 z^2))). Computed in double; what leaves it
// and what it keeps is rounded to T.
template <class T> T section_output(T input, T* delayed) noexcept {
  const auto a = static_cast<double>(delayed[0]);
  const auto b = static_cast<double>(delayed[1]);
  const auto c = static_cast<double>(delayed[2]);
  const double d = static_cast<double>(input) - 0.5 * b;
  const double y = 0.25 * (c + d) + 0.5 * a + 0.5 * b;
  delayed[2] = delayed[1];
  delayed[1] = delayed[0];
  delayed[0] = static_cast<T>(d);
  return static_cast<T>(y);
}

// One of the signals that are interleaved with the given stride in both the samples and the state.
template <class T> void run_cascade(const T* x, T* out, index points, index stride, T* state) noexcept {
  T delayed[sections * delays];
  for (index i = 0; i < sections * delays; ++i) delayed[i] = state[i * stride];
  for (index n = 0; n < points; ++n) {
    T u = x[n * stride];
    for (index s = 0; s < sections; ++s) u = section_output(u, delayed + s * delays);
    out[n * stride] = u;
  }
  for (index i = 0; i < sections * delays; ++i) state[i * stride] = delayed[i];
}

template <record V> status smooth(const V* in, V* out, V* delayed) noexcept {
  if (fit_state(delayed, in, sections * delays) != ok) return failed;
  const bool shared = out->data == in->data;
  out->points = in->points;
  out->complex = in->complex;
  out->delta = in->delta;
  if (!shared && allocate(out) != ok) return failed;
  const index w = width(in);
  for (index part = 0; part < w; ++part) {
    run_cascade(in->data + part, out->data + part, length(in), w, delayed->data + part);
  }
  return ok;
}

template <record V> status smooth(const V* in, V* out, int reserved, V* state) noexcept {
  if (reserved != 0) return failed;
  if (state != nullptr) return smooth(in, out, state);
  const loan<kept_record<V>, 1> shared(shared_state<V>());
  return smooth(in, out, &shared->v);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspd_hwfilt(const dsp_vec* in, dsp_vec* out, int32_t reserved, dsp_vec* state) {
  return smooth(in, out, reserved, state);
}
int32_t dspfd_hwfilt(const dspf_vec* in, dspf_vec* out, int32_t reserved, dspf_vec* state) {
  return smooth(in, out, reserved, state);
}

int32_t dspi_hwfilt(dsp_vec* v, int32_t reserved) { return smooth<dsp_vec>(v, v, reserved, nullptr); }
int32_t dspfi_hwfilt(dspf_vec* v, int32_t reserved) { return smooth<dspf_vec>(v, v, reserved, nullptr); }
