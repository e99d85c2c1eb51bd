// SPDX-License-Identifier: MIT
// A record as a vector file in binary form.
#include "output/vector_text.h"

#include <cstdio>
#include <cstdlib>

namespace tool {

std::string vector_text(const record& v) {
  char* bytes = nullptr;
  std::size_t size = 0;
  std::FILE* const f = open_memstream(&bytes, &size);
  if (f == nullptr) throw resource_error("not enough memory for a vector");
  const bool written = dspf_fwrite(&v, f) == 0;
  const bool closed = std::fclose(f) == 0;
  std::string out(bytes, closed ? size : 0);
  std::free(bytes);
  if (!written || !closed) throw resource_error("not enough memory for a vector");
  return out;
}

}  // namespace tool
