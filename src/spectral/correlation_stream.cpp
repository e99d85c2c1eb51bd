// SPDX-License-Identifier: MIT
// Correlation of a stream, whose state stands in a record of the caller.
#include "spectral/correlator.h"

namespace sigpak::correlation {
namespace {

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
  if (history == a || history == b || history == out) return failed;
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
}  // namespace sigpak::correlation

using namespace sigpak::correlation;

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
