// SPDX-License-Identifier: MIT
// Signals as files: vectors, arrays of NumPy, sound, CSV.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "input/source.h"
#include "output/writer.h"

namespace tool {

struct signal_format {
  std::string name;      // vector, npy, wav, flac, aiff, csv; empty goes by the name of the file
  std::size_t bits = 0;  // of a sample; 0 is what the form does best
};

class signal_writer {
 public:
  virtual ~signal_writer() = default;
  virtual void write(std::span<const double> frames) = 0;
  virtual void finish() = 0;

  // What people should know about what was written.
  const std::vector<std::string>& warnings() const { return warnings_; }

 protected:
  std::vector<std::string> warnings_;
};

// The form that a file of this name has: a vector where the name has no end, or that of raw numbers.
std::string format_of_name(const std::string& name);

// For frames as the subject tells them: channels, rate, form. The writer is committed by the caller.
std::unique_ptr<signal_writer> open_signal_writer(writer& out, const signal_format& format,
                                                  const subject& about);

std::unique_ptr<signal_writer> open_numpy_writer(writer& out, std::size_t bits, const subject& about);
std::unique_ptr<signal_writer> open_sound_writer(writer& out, const signal_format& format,
                                                 const subject& about);

}  // namespace tool
