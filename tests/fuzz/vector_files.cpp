// SPDX-License-Identifier: MIT
// Any bytes as a stream of vectors: read to the end in both precisions, written, and read back.
//   fuzz_vector_files -max_len=4096 -rss_limit_mb=256
#include <sigpak.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

struct twin_double {
  using record = dsp_vec;
  static constexpr auto init = dsp_init;
  static constexpr auto destroy = dsp_destroy;
  static constexpr auto read = dspf_fread;
  static constexpr auto write = dspf_fwrite2;
};
struct twin_float {
  using record = dspf_vec;
  static constexpr auto init = dspf_init;
  static constexpr auto destroy = dspf_destroy;
  static constexpr auto read = dspff_fread;
  static constexpr auto write = dspff_fwrite2;
};

void require(bool holds) {
  if (!holds) std::abort();
}

// What was read, written in binary form, reads back bit for bit; and the text forms can be written.
template <class Twin> void write_and_compare(const typename Twin::record& v) {
  char* bytes = nullptr;
  std::size_t size = 0;
  std::FILE* const out = open_memstream(&bytes, &size);
  require(Twin::write(&v, out, 0) == 0);
  std::fflush(out);
  const std::size_t binary = size;
  require(Twin::write(&v, out, 1) == 0 && Twin::write(&v, out, 2) == 0);
  std::fclose(out);
  std::FILE* const in = fmemopen(bytes, binary, "rb");
  typename Twin::record back;
  Twin::init(&back);
  require(Twin::read(&back, in) == 1 && back.points == v.points && back.complex == v.complex);
  const std::size_t scalars = std::size_t{v.points} * (v.complex != 0 ? 2 : 1);
  require(scalars == 0 || std::memcmp(back.data, v.data, scalars * sizeof v.data[0]) == 0);
  Twin::destroy(&back);
  std::fclose(in);
  std::free(bytes);
}

template <class Twin> void read_all(const std::uint8_t* data, std::size_t size) {
  std::FILE* const f = fmemopen(const_cast<std::uint8_t*>(data), size, "rb");
  typename Twin::record v;
  Twin::init(&v);
  while (Twin::read(&v, f) == 1) write_and_compare<Twin>(v);
  require(v.points <= static_cast<std::uint32_t>(v.alloc) / (v.complex != 0 ? 2U : 1U));
  Twin::destroy(&v);
  std::fclose(f);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  read_all<twin_double>(data, size);
  read_all<twin_float>(data, size);
  return 0;
}
