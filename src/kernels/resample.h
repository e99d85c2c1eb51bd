// SPDX-License-Identifier: MIT
// Sums of taps and samples at a changed rate, at the wide levels.
#pragma once

#include <cstdint>

namespace sigpak::kernels {

// The taps of a filter for the rate `up`, sorted by phase: phase p holds the taps p, p + up, p + 2 up, ... of
// `count`, the last of them first, behind those of the phases before it.
template <class T> struct phase_rows {
  const T* taps;
  std::int64_t count;
  std::int64_t up;
  std::int64_t down;

  [[gnu::always_inline]] std::int64_t longest() const { return (count + up - 1) / up; }
  [[gnu::always_inline]] std::int64_t size(std::int64_t phase) const {
    return count / up + (phase < count % up ? 1 : 0);
  }
  [[gnu::always_inline]] const T* row(std::int64_t phase) const {
    return taps + phase * (count / up) + (phase < count % up ? phase : count % up);
  }
};

// A run of outputs: the first has the phase `phase`, and *newest is the last sample that it sees. Output k
// has the phase (phase + k * down) mod up, and sees (phase + k * down) / up samples further.
template <class T> struct rate_run {
  const T* newest;
  std::int64_t phase;
  std::int64_t outputs;
  std::int64_t parts;  // scalars of a sample and of an output: 1, or 2 for complex ones
};

// out[k] = sum of the taps of the phase of k times the samples up to its newest. Every output is one chain of
// products and additions, fused at the wide levels, from the oldest sample to the newest, whatever the run
// that it belongs to. `room` holds resample_room scalars.
template <class T>
using resample_sum = void (*)(const phase_rows<T>& rows, const rate_run<T>& run, T* out, T* room);

// For runs over at most so many new samples: they are laid out in 16 lanes or less, each led by the samples
// of a row.
template <class T>
constexpr std::int64_t resample_room(const phase_rows<T>& rows, std::int64_t samples, std::int64_t parts) {
  return samples * parts + ((rows.down < samples ? rows.down : samples) + rows.longest() + 2) * 16;
}

template <class T> struct resample_table { resample_sum<T> sum; };

}  // namespace sigpak::kernels
