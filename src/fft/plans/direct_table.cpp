// SPDX-License-Identifier: MIT
// The tables of the transform by the definition.
#include <iterator>

#include "core/isa.h"
#include "fft/plans/chirp_plan.h"
#include "fft/plans/pass_tables.h"
#include "fft/wide/kernels.h"
#include "vectors/levels.h"

namespace sigpak::kernels {
namespace {

constexpr int level_count = std::size(isa::levels);
constexpr int most_tables = most_direct_points<double> / 2 * level_count;
template <class T> constinit published<std::byte, most_tables> tables;  // by length and level

template <class T> void fill(T* out, index points, index lanes) noexcept {
  const roots w(points);
  T cosine[most_direct_points<T>];
  T sine[most_direct_points<T>];
  for (index k = 0; k < points; ++k) {
    const root r = w[k];
    cosine[k] = static_cast<T>(rounded(r.cosine));
    sine[k] = static_cast<T>(rounded(r.sine));
  }
  for (index first = 1; 2 * first < points; first += lanes) {
    for (index j = 1; 2 * j < points; ++j, out += 2 * lanes) {
      for (index p = 0, at = j * first % points; p < lanes; ++p) {
        out[p] = cosine[at];
        out[lanes + p] = sine[at];
        at += j;
        if (at >= points) at -= points;
      }
    }
  }
}

int key_of(index points) noexcept {
  return static_cast<int>(points / 2 - 1) * level_count + static_cast<int>(isa::current());
}

template <class T> const T* values_of(std::byte* block) noexcept {
  return block != nullptr ? reinterpret_cast<const T*>(align(block)) : nullptr;
}

}  // namespace

template <class T> const T* find_direct_table(index points) noexcept {
  return values_of<T>(tables<T>.find(key_of(points)));
}

template <class T> const T* make_direct_table(index points) noexcept {
  const index lanes = at_level<chirp_kernels<T>>()->widest_lanes;
  const index terms = points / 2;
  const index count = 2 * terms * ((terms + lanes - 1) / lanes * lanes);
  auto* const block = allocate_table<std::byte>(count * index{sizeof(T)} + alignment);
  if (block == nullptr) return nullptr;
  fill(reinterpret_cast<T*>(align(block)), points, lanes);
  return values_of<T>(tables<T>.keep(key_of(points), block));
}

template <class T> void release_direct_tables() noexcept { tables<T>.release(); }

template const double* find_direct_table(index) noexcept;
template const float* find_direct_table(index) noexcept;
template const double* make_direct_table(index) noexcept;
template const float* make_direct_table(index) noexcept;
template void release_direct_tables<double>() noexcept;
template void release_direct_tables<float>() noexcept;

}  // namespace sigpak::kernels
