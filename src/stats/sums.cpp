// Sum and mean.
#include "core/blocks.h"
#include "core/storage.h"
#include "stats/stats.h"

namespace sigpak {
namespace {

template <record V> status prepare_result(V* result, bool complex) noexcept {
  result->points = 1;
  result->complex = complex ? 1 : 0;
  return allocate(result);
}

// Every second value of a complex record, from its first or second on; float records accumulate in double.
template <class T> double strided_sum(const T* x, index points, index stride) noexcept {
  double total = 0;
  for_blocks(points, sum_block, [&](index begin, index count) {
    double block = 0;
    for (index i = begin; i < begin + count; ++i) block += static_cast<double>(x[i * stride]);
    total += block;
  });
  return total;
}

template <record V> status scaled_sum(const V* v, V* result, double factor) noexcept {
  const index points = length(v);
  const bool complex = is_complex(v);
  const scalar<V>* const x = v->data;
  const double re = strided_sum(x, points, width(v)) * factor;
  const double im = complex ? strided_sum(x + 1, points, 2) * factor : 0.0;
  if (prepare_result(result, complex) != ok) return failed;
  result->data[0] = static_cast<scalar<V>>(re);
  if (complex) result->data[1] = static_cast<scalar<V>>(im);
  return ok;
}

}  // namespace

template <record V> status sum(const V* v, V* result) noexcept { return scaled_sum(v, result, 1.0); }

template <record V> status mean(const V* v, V* result) noexcept {
  const index points = length(v);
  return scaled_sum(v, result, points > 0 ? 1.0 / static_cast<double>(points) : 1.0);
}

template status sum(const dsp_vec*, dsp_vec*) noexcept;
template status sum(const dspf_vec*, dspf_vec*) noexcept;
template status mean(const dsp_vec*, dsp_vec*) noexcept;
template status mean(const dspf_vec*, dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dsps_sum(const dsp_vec* v, dsp_vec* result) { return sum(v, result); }
int32_t dspfs_sum(const dspf_vec* v, dspf_vec* result) { return sum(v, result); }

int32_t dsps_mean(const dsp_vec* v, dsp_vec* result) { return mean(v, result); }
int32_t dspfs_mean(const dspf_vec* v, dspf_vec* result) { return mean(v, result); }
