// SPDX-License-Identifier: MIT
// The kinds of files that are known, and the stages behind them.
#pragma once

#include <memory>
#include <string_view>

#include "input/source.h"
#include "input/stream.h"

namespace tool {

// Delivers the frames of the channels that were asked for, as source::read does, and keeps what it learns in
// the subject of the file. A sample that is missing is NaN.
class reader {
 public:
  virtual ~reader() = default;
  virtual std::size_t read(std::span<double> frames) = 0;
  virtual bool next_piece() { return false; }
};
using reader_pointer = std::unique_ptr<reader>;

// Each for a stream that stands at the start of its kind; what they keep of the arguments lives as long.
reader_pointer open_raw(stream& in, const input_options& options, subject& about);
reader_pointer open_numpy(stream& in, const input_options& options, subject& about);
reader_pointer open_vectors(stream& in, const input_options& options, subject& about);
reader_pointer open_table(stream& in, const input_options& options, subject& about);
reader_pointer open_sound(stream& in, const input_options& options, subject& about);

// Null, and nothing taken, for the compressed forms that are left to open_sound.
reader_pointer open_wave(stream& in, const input_options& options, subject& about);

bool is_vector(std::string_view head);
bool is_numpy(std::string_view head);
bool is_wave(std::string_view head);
bool is_sound(std::string_view head);

// Stages. The first reads a part of the time, the second looks for missing samples.
reader_pointer cut_part(reader_pointer in, const input_options& options, const subject& about);
reader_pointer bridge_gaps(reader_pointer in, const input_options& options, subject& about);

}  // namespace tool
