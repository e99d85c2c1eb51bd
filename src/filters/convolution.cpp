// Overlap-save convolution: a section of the input and the taps - 1 samples before it are transformed
// together, and the outputs that the circular wrap spoils are those before the section.
#include "filters/convolution.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "core/copy.h"
#include "core/frame.h"
#include "core/isa.h"
#include "core/record_order.h"
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "spectral/spectral.h"

namespace sigpak {
namespace {

// Taps closer than this, relative to the first, share a spectrum, in both precisions: ten roundings of a
// double.
constexpr double same_taps = 5 * std::numeric_limits<double>::epsilon();

template <record V> constinit V kept_taps = {1, nullptr, 0, 0, 0, 0};
template <record V> constinit V kept_spectrum = {1, nullptr, 0, 0, 0, 0};
template <record V> constinit V kept_section = {1, nullptr, 0, 0, 0, 0};
template <record V>
constinit index kept_length = 0;  // transform length of the spectrum; 0 while there is none

template <record V> status release() noexcept {
  kept_length<V> = 0;
  if (destroy(&kept_taps<V>) != ok || destroy(&kept_section<V>) != ok) return failed;
  return destroy(&kept_spectrum<V>);
}

// A tap that is not finite makes a difference that is NaN, which passes for none.
template <record V> bool comparable(const V* taps) noexcept { return all_finite(taps->data, length(taps)); }

template <record V> bool spectrum_fits(const V* taps, index transform) noexcept {
  if (kept_length<V> != transform) return false;
  const auto tolerance = static_cast<scalar<V>>(std::abs(static_cast<double>(taps->data[0])) * same_taps);
  std::int32_t order = 0;
  return compare(taps, &kept_taps<V>, tolerance, &order) == ok && order == 0;
}

// The spectrum of the taps, scaled so that it makes up for the factor of the forward transform; null on
// failure.
template <record V> const V* spectrum_of(const V* taps, index transform) noexcept {
  register_cache<V>(cache::fir, release<V>);
  const bool keeps = comparable(taps);
  if (keeps && spectrum_fits(taps, transform)) return &kept_spectrum<V>;
  V* const spectrum = &kept_spectrum<V>;
  kept_length<V> = 0;
  if (copy(&kept_taps<V>, taps) != ok || copy(spectrum, taps) != ok) return nullptr;
  scale(spectrum, static_cast<scalar<V>>(transform));
  if (pad(spectrum, transform) != ok || real_fft(spectrum) != ok) return nullptr;
  if (keeps) kept_length<V> = transform;
  return spectrum;
}

// A transform length that keeps sections in the inner caches, for any length of the block.
constexpr index section_transform(index taps) noexcept {
  const auto wanted = static_cast<std::uint64_t>(taps) * 8;
  const auto least = std::bit_ceil(static_cast<std::uint64_t>(taps) * 4);
  return static_cast<index>(std::max(least, std::clamp<std::uint64_t>(std::bit_ceil(wanted), 1024, 8192)));
}

// The samples of a section: `before` old ones, out of the history where the block does not reach back so far,
// and `fresh` new ones.
template <record V>
void fill_section(scalar<V>* x, const V* in, const V* history, index begin, index fresh,
                  index before) noexcept {
  const index missing = std::max<index>(before - begin, 0);
  if (history != nullptr) {
    std::copy_n(history->data + before - missing, missing, x);
  } else {
    std::fill_n(x, missing, scalar<V>(0));
  }
  std::copy(in->data + begin - (before - missing), in->data + begin + fresh, x + missing);
}

// Cuts the block into sections, each transformed behind the `before` samples that precede it.
template <record V>
status convolve_sections(const V* in, V* out, const V* taps, const V* history, index before,
                         index transform) noexcept {
  const V* const spectrum = spectrum_of(taps, transform);
  if (spectrum == nullptr) return failed;
  V* const section = &kept_section<V>;
  const index points = length(in);
  const index step = transform - before;
  for (index begin = 0; begin < points; begin += step) {
    const index fresh = std::min(step, points - begin);
    section->complex = 0;
    section->points = static_cast<std::uint32_t>(transform);
    if (allocate(section) != ok) return failed;
    fill_section(section->data, in, history, begin, fresh, before);
    std::fill(section->data + before + fresh, section->data + transform, scalar<V>(0));
    if (real_fft(section) != ok || multiply(section, spectrum, section) != ok ||
        inverse_real_fft(section) != ok) {
      return failed;
    }
    std::copy_n(section->data + before, fresh, out->data + begin);
  }
  return ok;
}

constexpr index power_of_two(index n) noexcept {
  return static_cast<index>(std::bit_ceil(static_cast<std::uint64_t>(n)));
}

}  // namespace

index least_fast_taps() noexcept { return isa::current() == isa::level::baseline ? 46 : 112; }

template <record V> index convolve_fast(const V* in, V* out, const V* taps, const V* history) noexcept {
  const index points = length(in);
  const index count = length(taps);
  const index before = count - 1;
  const index transform = section_transform(count);
  if (points > 2 * (transform - before)) {
    return convolve_sections(in, out, taps, history, before, transform) == ok ? 0 : failed;
  }
  // A transform of the block alone wraps onto its first outputs, unless there is room for them anyhow.
  // Repairing them costs count^2 products, which pays while that is below what a transform of twice the
  // length would add, about 9 n log2 n.
  const index circle = power_of_two(points);
  const index whole = power_of_two(points + before);
  if (circle < whole && count * count <= 9 * std::countr_zero(static_cast<std::uint64_t>(circle)) * points) {
    return convolve_sections(in, out, taps, history, 0, circle) == ok ? before : failed;
  }
  return convolve_sections(in, out, taps, history, before, whole) == ok ? 0 : failed;
}

template index convolve_fast(const dsp_vec*, dsp_vec*, const dsp_vec*, const dsp_vec*) noexcept;
template index convolve_fast(const dspf_vec*, dspf_vec*, const dspf_vec*, const dspf_vec*) noexcept;

}  // namespace sigpak
