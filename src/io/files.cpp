// SPDX-License-Identifier: MIT
// Opening and closing, and the choice of the form to read or write.
#include <string_view>

#include "io/io.h"

namespace sigpak {
namespace {

constexpr std::string_view standard_stream = "-";
constexpr int native_mark = 0xBE;   // the first byte of a binary vector, in this byte order
constexpr int swapped_mark = 0xEB;  // and in the other

constexpr std::int32_t form_bits = 0xff;

// There is no translation of line ends to switch off: binary and text streams are the same here.
std::FILE* open(const char* name, const char* mode) noexcept {
  if (name != standard_stream) return std::fopen(name, mode);
  return mode[0] == 'r' ? stdin : mode[0] == 'w' ? stdout : nullptr;
}

std::int32_t close(std::FILE* f) noexcept { return f == stdin || f == stdout ? ok : std::fclose(f); }

template <record V> status read(V* v, std::FILE* f) noexcept {
  v->points = 0;
  const int first = std::getc(f);
  if (first == EOF) return std::feof(f) != 0 ? end_of_vectors : failed;
  if (std::ungetc(first, f) == EOF) return failed;
  return first == native_mark || first == swapped_mark ? read_binary(v, f) : read_ascii(v, f);
}

template <record V> status write(const V* v, std::FILE* f, std::int32_t flags) noexcept {
  const parts wanted{.header = (flags & DSP_WRITE_NO_HEADER) == 0,
                     .body = (flags & DSP_WRITE_HEADER_ONLY) == 0};
  switch (static_cast<form>(flags & form_bits)) {
    case form::binary:
      return write_binary(v, f, wanted);
    case form::ascii:
      return write_ascii(v, f, wanted), ok;
    case form::summary:
      return write_summary(v, f, wanted), ok;
  }
  return failed;
}

template <record V> status write(const V* v, std::FILE* f, form whole) noexcept {
  return write(v, f, static_cast<std::int32_t>(whole));
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

FILE* dspf_fopen(const char* name, const char* mode) { return open(name, mode); }
FILE* dspff_fopen(const char* name, const char* mode) { return open(name, mode); }

int32_t dspf_fclose(FILE* f) { return close(f); }
int32_t dspff_fclose(FILE* f) { return close(f); }

int32_t dspf_fread(dsp_vec* v, FILE* f) { return read(v, f); }
int32_t dspff_fread(dspf_vec* v, FILE* f) { return read(v, f); }

int32_t dspf_fwrite(const dsp_vec* v, FILE* f) { return write(v, f, form::binary); }
int32_t dspff_fwrite(const dspf_vec* v, FILE* f) { return write(v, f, form::binary); }

int32_t dspf_fwrite_ascii(const dsp_vec* v, FILE* f) { return write(v, f, form::ascii); }
int32_t dspff_fwrite_ascii(const dspf_vec* v, FILE* f) { return write(v, f, form::ascii); }

int32_t dspf_fwrite2(const dsp_vec* v, FILE* f, int32_t flags) { return write(v, f, flags); }
int32_t dspff_fwrite2(const dspf_vec* v, FILE* f, int32_t flags) { return write(v, f, flags); }
