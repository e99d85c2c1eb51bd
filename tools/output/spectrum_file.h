// SPDX-License-Identifier: MIT
// Spectra as text that other programs read, and that `plot` and `merge` take back: CSV whose lines with #
// tell what the numbers are.
#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "analysis/quantity.h"
#include "analysis/spectrum.h"
#include "output/writer.h"

namespace tool {

void write_csv(writer& out, const spectrum& s, const measure& told);

// A spectrum as it was told.
struct told_spectrum {
  spectrum s;
  quantity what;
  bool as_level;
  std::uint64_t points = 0;  // that its text promises
  measure told() const { return measure(what, as_level, s); }
};

// The spectra of a file, or a stream, one after the other.
class spectrum_reader {
 public:
  explicit spectrum_reader(const std::string& name);  // "-" is standard input
  ~spectrum_reader();
  spectrum_reader(const spectrum_reader&) = delete;
  spectrum_reader& operator=(const spectrum_reader&) = delete;

  std::optional<told_spectrum> next();
  const std::string& name() const { return name_; }

 private:
  bool read_line();
  std::string place() const;
  void read_head(told_spectrum& t);
  void read_values(told_spectrum& t);

  std::string name_;
  std::FILE* file_;
  std::string line_;  // read, and not yet used
  bool waiting_ = false;
  std::uint64_t number_ = 0;
};

// Every spectrum of the files, in their order.
std::vector<told_spectrum> read_spectra(const std::vector<std::string>& names);

}  // namespace tool
