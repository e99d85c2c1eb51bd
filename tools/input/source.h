// Where samples come from: sound files, vector files, columns of numbers.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>

namespace tool {

struct source_options {
  std::size_t channel = 1;  // of a sound file; of the values beside the time in a table
  double rate = 0;          // samples per second in place of the file's; 0 takes the file's
};

class source {
 public:
  virtual ~source() = default;

  // Fills the front of `samples` and tells how many scalars; fewer than asked for at the end alone.
  virtual std::size_t read(std::span<double> samples) = 0;

  // Samples per second, 0 when the file does not tell. Known for sure once everything has been read.
  virtual double rate() const = 0;

  virtual bool is_complex() const { return false; }
  virtual bool is_full_scale() const { return false; }  // 1 is the largest sample there can be

  // How much has been read, from 0 to 1.
  virtual double progress() const = 0;

  // The kind of file, for people.
  virtual std::string description() const = 0;
};

struct file_closer {
  void operator()(std::FILE* f) const noexcept {
    if (f != stdin) std::fclose(f);
  }
};
using file = std::unique_ptr<std::FILE, file_closer>;

// Opens a file of any kind that is known; "-" is standard input. Every error is a data_error.
std::unique_ptr<source> open_source(const std::string& name, const source_options& options);

// The kinds, for a file that stands at its start.
std::unique_ptr<source> open_sound(file f, const source_options& options);
std::unique_ptr<source> open_vector(file f, const source_options& options);
std::unique_ptr<source> open_table(file f, const source_options& options);

}  // namespace tool
