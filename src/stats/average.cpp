// SPDX-License-Identifier: MIT
// The running average of successive records.
#include "core/copy.h"
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "stats/stats.h"

namespace sigpak {
namespace {

constexpr int mode_bits = 15;

// A record that could not be sized has points, but nothing behind them.
template <record V> bool has_storage(const V* v) noexcept { return length(v) == 0 || v->data != nullptr; }

template <record V> status step(V* v, status (*operation)(V*) noexcept) noexcept {
  return has_storage(v) ? operation(v) : failed;
}

// The mean of transformed values, transformed back. A step that fails does not keep the later ones from
// running.
template <record V>
status transformed_mean(const V* in, V* avg, V* scratch, scalar<V> weight, status (*there)(V*) noexcept,
                        status (*back)(V*) noexcept) noexcept {
  bool done = copy(scratch, in) == ok;
  done = step(scratch, there) == ok && done;
  if (avg != scratch) done = step(avg, there) == ok && done;
  done = has_storage(scratch) && has_storage(avg) && add_weighted(scratch, avg, avg, weight) == ok && done;
  done = step(avg, back) == ok && done;
  return done ? ok : failed;
}

template <record V>
status fold(const V* in, V* avg, V* scratch, int mode, std::int32_t count, std::int32_t every,
            scalar<V> weight) noexcept {
  switch (mode) {
    case DSP_AVG_REPLACE:
      return copy(avg, in);
    case DSP_AVG_MEAN:
      return add_weighted(in, avg, avg, weight);
    case DSP_AVG_MAXIMUM:
      return take_maximum(in, avg, avg);
    case DSP_AVG_MINIMUM:
      return take_minimum(in, avg, avg);
    case DSP_AVG_HARMONIC:
      return transformed_mean<V>(in, avg, scratch, weight, reciprocate<V>, reciprocate<V>);
    case DSP_AVG_GEOMETRIC:
      return transformed_mean<V>(in, avg, scratch, weight, take_logarithm<V>, exponentiate<V>);
    case DSP_AVG_DECIMATE:
      return every == 1 || (every > 0 && count % every == 1) ? copy(avg, in) : ok;
    default:
      return ok;
  }
}

}  // namespace

template <class T> T average_weight(int flags, std::int32_t count, T most) noexcept {
  const T records = static_cast<T>(count);
  const bool settled = (flags & DSP_AVG_EXPONENTIAL) != 0 && most > 0 && records >= most;
  return T(1) / (settled ? most : records);
}

template <record V>
status average(const V* in, V* avg, V* scratch, int flags, std::int32_t count, std::int32_t every,
               scalar<V> weight, scalar<V> most) noexcept {
  temporary<V> own;
  if (scratch == nullptr) scratch = &own;
  if ((flags & DSP_AVG_SQUARED) != 0) {
    if (square_magnitude(in, scratch) != ok) return failed;
    in = scratch;
  }
  if (count <= 1) return copy(avg, in);
  if (weight < 0) weight = average_weight(flags, count, most);
  return fold(in, avg, scratch, flags & mode_bits, count, every, weight);
}

template double average_weight(int, std::int32_t, double) noexcept;
template float average_weight(int, std::int32_t, float) noexcept;
template status average(const dsp_vec*, dsp_vec*, dsp_vec*, int, std::int32_t, std::int32_t, double,
                        double) noexcept;
template status average(const dspf_vec*, dspf_vec*, dspf_vec*, int, std::int32_t, std::int32_t, float,
                        float) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dsph_avg(const dsp_vec* in, dsp_vec* avg, dsp_vec* scratch, int32_t flags, int32_t count,
                 int32_t every, double weight, double maxcount) {
  return average(in, avg, scratch, flags, count, every, weight, maxcount);
}
int32_t dspfh_avg(const dspf_vec* in, dspf_vec* avg, dspf_vec* scratch, int32_t flags, int32_t count,
                  int32_t every, float weight, float maxcount) {
  return average(in, avg, scratch, flags, count, every, weight, maxcount);
}
