// SPDX-License-Identifier: MIT
// FIR filtering of a block, with the samples before it kept in the caller's record.
#include <algorithm>

#include "core/copy.h"
#include "core/frame.h"
#include "core/machine.h"
#include "core/scratch.h"
#include "filters/convolution.h"
#include "filters/direct.h"
#include "filters/filters.h"
#include "filters/stream.h"
#include "kernels/fir.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

// Memory for the samples around the start of a block, where they are many.
template <class T> struct edge_memory {
  scratch_memory<T> scratch;
  status release() noexcept { return scratch.release(); }
};
template <class T> constinit lender<edge_memory<T>> edges;

// The first outputs reach back before the block, so they are formed from a copy of the history and the
// block's first samples; the others straight from the block.
template <record V>
status filter_start(const V* in, V* out, const V* taps, const V* history, index count) noexcept {
  using T = scalar<V>;
  const index w = width(in);
  const index before = length(taps) - 1;
  register_cache<V>(cache::filter_edge, []() noexcept { return edges<T>.release(); });
  return with_scratch(edges<T>, (before + count) * w, in->data, [=](T* edge) {
    if (history != nullptr) {
      std::copy_n(history->data, before * w, edge);
    } else {
      std::fill_n(edge, before * w, T(0));
    }
    std::copy_n(in->data, count * w, edge + before * w);
    sum_directly(taps, edge, w, out->data, count);
    return ok;
  });
}

template <record V> status filter_by_sums(const V* in, V* out, const V* taps, const V* history) noexcept {
  const index count = std::min(length(taps) - 1, length(in));
  if (count > 0 && filter_start(in, out, taps, history, count) != ok) return failed;
  sum_directly(taps, in->data, width(in), out->data + count * width(out), length(in) - count);
  return ok;
}

// What is not finite would spread over a whole transform, so a history that holds such samples reaches the
// outputs that see them through the sums alone.
template <record V> status filter_fast(const V* in, V* out, const V* taps, const V* history) noexcept {
  const index before = length(taps) - 1;
  const bool harmless = history == nullptr || all_finite(history->data, before);
  const index left = convolve_fast<V>(in, out, taps, harmless ? history : nullptr);
  if (left < 0) return failed;
  const index count = harmless ? left : before;
  return count > 0 ? filter_start(in, out, taps, history, count) : ok;
}

// The last samples before the next block: what of the history is still recent enough, then the block's.
template <record V> void update_history(V* history, const V* in) noexcept {
  const index w = width(in);
  const index kept = std::max<index>(length(history) - length(in), 0) * w;
  const index total = scalars(history);
  std::copy(history->data + total - kept, history->data + total, history->data);
  const index taken = total - kept;
  std::copy_n(in->data + scalars(in) - taken, taken, history->data + kept);
}

template <record V> status prepare_output(V* out, const V* in, const V* taps) noexcept {
  out->points = in->points;
  out->complex = is_complex(in) || is_complex(taps) ? 1 : 0;
  out->delta = in->delta;
  return allocate(out);
}

enum class method { fastest, direct };

template <record V> bool pays_to_transform(const V* in, const V* taps) noexcept {
  const index count = length(taps);
  const auto* const table = at_level<kernels::fir_table<scalar<V>>>();
  const bool beyond = 2 * length(in) * index{sizeof(scalar<V>)} > machine::caches().second;
  const index least = beyond ? table->transformed_beyond_cache_from : table->transformed_from;
  return !is_complex(in) && !is_complex(taps) && count >= least && length(in) >= count - 1;
}

// Into a record that neither the input nor the taps occupy.
template <record V>
status filter_apart(const V* in, V* out, const V* taps, V* history, method allowed) noexcept {
  if (prepare_output(out, in, taps) != ok) return failed;
  const bool fast = allowed == method::fastest && pays_to_transform(in, taps);
  if ((fast ? filter_fast(in, out, taps, history) : filter_by_sums(in, out, taps, history)) != ok) {
    return failed;
  }
  if (history != nullptr) update_history(history, in);
  return ok;
}

template <record V> status run(const V* in, V* out, const V* taps, V* history, method allowed) noexcept {
  const index count = length(taps);
  if (count == 0) return copy(out, in);
  if (history != nullptr && fit_state(history, in, count - 1) != ok) return failed;
  const bool shared = out->data == in->data || out->data == taps->data;
  if (!shared) return filter_apart(in, out, taps, history, allowed);
  const loan<kept_record<V>> result(substitutes<V>(), scalars(in) * index{sizeof(scalar<V>)});
  const status done = filter_apart(in, &result->v, taps, history, allowed);
  return done == ok ? copy<V>(out, &result->v) : failed;
}

}  // namespace

template <record V> status filter(const V* in, V* out, const V* taps, V* history) noexcept {
  return run(in, out, taps, history, method::fastest);
}

template <record V> status filter_directly(const V* in, V* out, const V* taps, V* history) noexcept {
  return run(in, out, taps, history, method::direct);
}

template status filter(const dsp_vec*, dsp_vec*, const dsp_vec*, dsp_vec*) noexcept;
template status filter(const dspf_vec*, dspf_vec*, const dspf_vec*, dspf_vec*) noexcept;
template status filter_directly(const dsp_vec*, dsp_vec*, const dsp_vec*, dsp_vec*) noexcept;
template status filter_directly(const dspf_vec*, dspf_vec*, const dspf_vec*, dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspd_fir(const dsp_vec* in, dsp_vec* out, const dsp_vec* taps, dsp_vec* history) {
  return filter(in, out, taps, history);
}
int32_t dspfd_fir(const dspf_vec* in, dspf_vec* out, const dspf_vec* taps, dspf_vec* history) {
  return filter(in, out, taps, history);
}
