// SPDX-License-Identifier: MIT
// Where samples come from: sound files, vector files, arrays, raw samples, columns of numbers.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "errors.h"

namespace tool {

enum class gap_rule {
  refuse,  // an error that names the place
  split,   // a new piece begins behind the gap
  linear   // straight lines bridge it
};

// How to read, whatever the kind of file; each member is an option of every command that reads.
struct input_options {
  std::vector<std::string> channels;  // numbers from 1 on, names, or "all"; empty takes the first
  double rate = 0;                    // samples per unit of time in place of the file's; 0 takes the file's
  std::string time_column;            // number among all columns, name, or "none"; empty finds it
  std::string time_unit;              // s ms us ns min h d yr; empty takes the heading's, or seconds
  char delimiter = 0;                 // 0 finds it
  char decimal = 0;
  gap_rule gaps = gap_rule::refuse;
  bool resample = false;  // uneven times: straight lines at the mean rate
  std::string raw;        // samples without a header: s16le, 2xf32le, cu8 ...
  double start = 0;       // the part that is read, in units of time
  double duration = 0;    // 0 reads to the end
  bool each = false;      // every record of a vector file is a piece of its own
};

struct channel {
  std::string name;
  std::string unit;  // from the heading: voltage_V, Spannung [V]; empty when it tells none
};

// What was understood. The channels and the form are known from the start, the rate and the counts for sure
// once everything was read.
struct subject {
  std::string name;        // of the file, for people
  std::string kind;        // "table", "WAV (Microsoft)", "vector" ...
  std::string understood;  // "column 2 'voltage_V', time 'time_ms' in ms, 1 kHz"
  std::vector<channel> channels;
  double rate = 0;              // samples per time_unit; 0 when nothing tells
  std::string time_unit = "s";  // "s": frequencies in Hz; "yr": in 1/yr
  bool is_complex = false;
  bool is_full_scale = false;  // 1 is the largest sample there can be
  bool truncated = false;
  std::uint64_t samples = 0;   // frames that were read
  std::uint64_t promised = 0;  // frames by the file's header, 0 without one
  std::uint64_t gaps = 0;
  std::uint64_t filled = 0;  // frames that bridge gaps
  std::vector<std::string> warnings;

  std::size_t scalars_per_frame() const { return channels.size() * (is_complex ? 2 : 1); }
};

// Every error that a source throws names the file.
class source {
 public:
  virtual ~source() = default;

  // Fills the front of `frames` with whole frames, their channels interleaved, complex ones as pairs, and
  // tells how many scalars: fewer than the whole frames that fit only at the end of a piece.
  virtual std::size_t read(std::span<double> frames) = 0;

  // Goes on behind a gap, or to the next record; false at the end of the file. The first piece needs no call.
  virtual bool next_piece() = 0;

  virtual const subject& about() const = 0;

  // How much has been read, from 0 to 1; negative where nobody knows, on a pipe. And so far in bytes.
  virtual double progress() const = 0;
  virtual std::uint64_t bytes() const = 0;
};

// "-" is standard input, read from where it stands.
std::unique_ptr<source> open_source(const std::string& name, const input_options& options);

}  // namespace tool
