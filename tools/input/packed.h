// SPDX-License-Identifier: MIT
// Numbers in binary one behind the other: what WAV, npy and raw files come to behind their headers.
#pragma once

#include <cstdint>

#include "input/kinds.h"
#include "input/numbers.h"

namespace tool {

struct packing {
  number_form form;
  std::size_t channels = 1;
  bool planar = false;       // a channel as a whole behind the other, so many frames each
  bool endless = true;       // up to the end of the file
  std::uint64_t frames = 0;  // otherwise
  std::uint64_t at = 0;      // where the numbers begin, for planar ones
};

// For a stream that stands at the numbers. The subject knows its kind, rate and form.
reader_pointer open_packed(stream& in, const packing& how, const input_options& options, subject& about);

// Warns of what a header promised, and was not found.
void note_truncation(subject& about, std::uint64_t found, std::uint64_t promised);

}  // namespace tool
