// The kinds of files that are known, for a file that stands at its start.
#pragma once

#include <cstdio>

#include "input/source.h"

namespace tool {

struct file_closer {
  void operator()(std::FILE* f) const noexcept {
    if (f != stdin) std::fclose(f);
  }
};
using file = std::unique_ptr<std::FILE, file_closer>;

std::unique_ptr<source> open_sound(file f, const std::string& name, const input_options& options);
std::unique_ptr<source> open_vector(file f, const std::string& name, const input_options& options);
std::unique_ptr<source> open_table(file f, const std::string& name, const input_options& options);

}  // namespace tool
