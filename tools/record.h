// SPDX-License-Identifier: MIT
// A record of the library that lives as long as its scope.
#pragma once

#include <sigpak.h>

#include <cstddef>
#include <span>
#include <string>
#include <utility>

#include "errors.h"

namespace tool {

class record : public dsp_vec {
 public:
  record() noexcept { dsp_init(this); }
  explicit record(std::size_t count, bool pairs = false) : record() { resize(count, pairs); }
  ~record() { dsp_destroy(this); }
  record(record&& other) noexcept : dsp_vec(other) { dsp_init(&other); }
  record& operator=(record&& other) noexcept {
    std::swap(static_cast<dsp_vec&>(*this), static_cast<dsp_vec&>(other));
    return *this;
  }

  // The old samples are not kept.
  void resize(std::size_t count, bool pairs = false) {
    points = static_cast<std::uint32_t>(count);
    complex = pairs ? 1 : 0;
    if (dsp_alloc(this) != 0)
      throw resource_error("not enough memory for " + std::to_string(count) + " points");
  }
  bool is_complex() const noexcept { return complex != 0; }
  std::span<double> scalars() noexcept { return {data, std::size_t{points} * (is_complex() ? 2 : 1)}; }
  std::span<const double> scalars() const noexcept {
    return {data, std::size_t{points} * (is_complex() ? 2 : 1)};
  }
};

// Turns the status of an operation that fails only for want of memory into an error.
inline void require(std::int32_t status) {
  if (status != 0) throw resource_error("not enough memory for the transform");
}

}  // namespace tool
