// SPDX-License-Identifier: MIT
// Where the spectra of a command go: a table, JSON, CSV or vectors, and a picture of all of them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "commands/gallery.h"
#include "commands/spectrum_options.h"
#include "output/writer.h"

namespace tool {

struct result_options {
  std::string format = "table";
  bool csv = false;
  bool json = false;
  bool all = false;
  std::string file = "-";
  bool quiet = false;
  bool keep_going = false;

  std::string chosen_format() const { return csv ? "csv" : json ? "json" : format; }
};

void add_result_options(options& o, result_options& result, std::initializer_list<const char*> formats);

class results {
 public:
  results(const telling_options& telling, const picture_options& drawing, const result_options& result);

  void take(spectrum s, const measure& told);
  void finish();  // the picture, and the end of the file

 private:
  void write(const shown_spectrum& k);

  const telling_options& telling_;
  const picture_options& drawing_;
  const result_options& result_;
  std::string format_;
  writer out_;
  gallery drawn_;
  std::size_t count_ = 0;
  int rows_ = 0;  // of the terminal that the tables take
};

// The files to read: standard input where none is named, unless that is a terminal.
std::vector<std::string> inputs_of(const std::vector<std::string>& names);

// Does the work for each file. With `keep_going` one that cannot be used is told of and left out; their
// number is returned.
std::size_t for_each_file(const std::vector<std::string>& names, bool keep_going,
                          const std::function<void(const std::string&)>& act);

// The end of a command that left out files.
void tell_left_out(std::size_t count);

void warn(const std::vector<std::string>& warnings);

}  // namespace tool
