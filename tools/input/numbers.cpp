// SPDX-License-Identifier: MIT
// Numbers as files hold them in binary: forms, and their values.
#include "input/numbers.h"

#include <cmath>

namespace tool {
namespace {

struct run {
  const char* in;
  std::size_t step;
  std::size_t count;
  double* out;
  std::size_t out_step;
};

// The order of the bytes is a constant in the loop, and so is the step between neighbours.
template <class T, bool Big, bool Dense> void convert_ordered(const run& r, double scale, double offset) {
  const std::size_t step = Dense ? sizeof(T) : r.step;
  const std::size_t out_step = Dense ? 1 : r.out_step;
  for (std::size_t i = 0; i < r.count; ++i) {
    r.out[i * out_step] = scale * static_cast<double>(load<T>(r.in + i * step, Big)) + offset;
  }
}

template <class T> void convert_run(const run& r, const number_form& form) {
  const bool dense = r.step == sizeof(T) && r.out_step == 1;
  if (form.big_endian) return convert_ordered<T, true, false>(r, form.scale, form.offset);
  if (dense) return convert_ordered<T, false, true>(r, form.scale, form.offset);
  convert_ordered<T, false, false>(r, form.scale, form.offset);
}

// Three bytes in the upper part of four, so that the sign is where it should be.
void convert_24(const run& r, const number_form& form) {
  const double shift = form.type == number_form::kind::integer ? 0 : 0x1p24;
  for (std::size_t i = 0; i < r.count; ++i) {
    char four[4] = {};
    std::memcpy(four + (form.big_endian ? 0 : 1), r.in + i * r.step, 3);
    const double whole = load<std::int32_t>(four, form.big_endian) / 256;
    r.out[i * r.out_step] = form.scale * (whole < 0 ? whole + shift : whole) + form.offset;
  }
}

}  // namespace

number_form full_scale(number_form form) {
  if (form.type == number_form::kind::real) return form;
  form.scale = std::ldexp(1, 1 - 8 * static_cast<int>(form.size));
  form.offset = form.type == number_form::kind::natural ? -1 : 0;
  return form;
}

void convert(const number_form& form, const char* in, std::size_t step, std::size_t count, double* out,
             std::size_t out_step) {
  const run r{in, step, count, out, out_step};
  if (form.type == number_form::kind::real) {
    return form.size == 4 ? convert_run<float>(r, form) : convert_run<double>(r, form);
  }
  const bool sign = form.type == number_form::kind::integer;
  switch (form.size) {
    case 1:
      return sign ? convert_run<std::int8_t>(r, form) : convert_run<std::uint8_t>(r, form);
    case 2:
      return sign ? convert_run<std::int16_t>(r, form) : convert_run<std::uint16_t>(r, form);
    case 3:
      return convert_24(r, form);
    case 4:
      return sign ? convert_run<std::int32_t>(r, form) : convert_run<std::uint32_t>(r, form);
    default:
      return sign ? convert_run<std::int64_t>(r, form) : convert_run<std::uint64_t>(r, form);
  }
}

}  // namespace tool
