// SPDX-License-Identifier: MIT
// Any bytes as a stream of vectors, in both precisions, the one whole and the other byte by byte: their
// statuses and shapes agree. What is read is written and read back; whatever the reader says, the record that
// it leaves can be worked with, and has not grown beyond what arrived.
#include <sigpak.h>
#include <stdio_ext.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "fuzz/target.h"

namespace {

using sigpak::test::require;

constexpr std::int64_t most_bytes = std::int64_t{64} << 20;
constexpr std::size_t most_written = 1 << 18;

struct twin_double {
  using record = dsp_vec;
  static constexpr auto init = dsp_init;
  static constexpr auto destroy = dsp_destroy;
  static constexpr auto read = dspf_fread;
  static constexpr auto write = dspf_fwrite;
  static constexpr auto write_ascii = dspf_fwrite_ascii;
  static constexpr auto write_as = dspf_fwrite2;
  static constexpr auto append = dsp_append;
  static constexpr auto copy = dsp_copy;
  static constexpr auto hook_alloc = dsp_lib_alloc;
  static constexpr auto hook_free = dsp_lib_free;
};
struct twin_float {
  using record = dspf_vec;
  static constexpr auto init = dspf_init;
  static constexpr auto destroy = dspf_destroy;
  static constexpr auto read = dspff_fread;
  static constexpr auto write = dspff_fwrite;
  static constexpr auto write_ascii = dspff_fwrite_ascii;
  static constexpr auto write_as = dspff_fwrite2;
  static constexpr auto append = dspf_append;
  static constexpr auto copy = dspf_copy;
  static constexpr auto hook_alloc = dspf_lib_alloc;
  static constexpr auto hook_free = dspf_lib_free;
};

// A stream over bytes in memory that serves any number of inputs, in pieces of a given length.
class source {
 public:
  source()
      : file_(fopencookie(this, "rb", {.read = read, .write = nullptr, .seek = nullptr, .close = nullptr})) {
    std::setvbuf(file_, buffer_, _IOFBF, sizeof buffer_);
    __fsetlocking(file_, FSETLOCKING_BYCALLER);
  }
  ~source() { std::fclose(file_); }
  source(const source&) = delete;
  source& operator=(const source&) = delete;

  std::FILE* over(const std::uint8_t* data, std::size_t size, std::size_t piece) {
    data_ = data;
    left_ = size;
    piece_ = piece;
    __fpurge(file_);
    std::clearerr(file_);
    return file_;
  }

 private:
  static ssize_t read(void* cookie, char* to, std::size_t room) {
    auto& s = *static_cast<source*>(cookie);
    const std::size_t count = std::min({room, s.left_, s.piece_});
    if (count != 0) std::memcpy(to, s.data_, count);
    s.data_ += count;
    s.left_ -= count;
    return static_cast<ssize_t>(count);
  }
  const std::uint8_t* data_ = nullptr;
  std::size_t left_ = 0;
  std::size_t piece_ = 1;
  char buffer_[256] = {};
  std::FILE* file_;
};

// A stream into memory, which can be emptied.
class sink {
 public:
  sink()
      : file_(fopencookie(this, "wb", {.read = nullptr, .write = write, .seek = nullptr, .close = nullptr})) {
    std::setvbuf(file_, nullptr, _IONBF, 0);
  }
  ~sink() { std::fclose(file_); }
  sink(const sink&) = delete;
  sink& operator=(const sink&) = delete;

  std::FILE* file() { return file_; }
  void clear() { size_ = 0; }
  const std::uint8_t* data() const { return bytes_; }
  std::size_t size() const { return size_; }

 private:
  static ssize_t write(void* cookie, const char* from, std::size_t count) {
    auto& s = *static_cast<sink*>(cookie);
    require(count <= most_written - s.size_, "what is written stays short");
    std::memcpy(s.bytes_ + s.size_, from, count);
    s.size_ += count;
    return static_cast<ssize_t>(count);
  }
  std::size_t size_ = 0;
  std::uint8_t bytes_[most_written] = {};
  std::FILE* file_;
};

template <class Twin> struct holder : Twin::record {
  holder() { Twin::init(this); }
  ~holder() { Twin::destroy(this); }
  holder(const holder&) = delete;
  holder& operator=(const holder&) = delete;
};

// The block that a header asks for is always the same, and costs more than all the rest: it is used again.
template <class Twin> class kept_block {
 public:
  using record = typename Twin::record;
  static void install() {
    Twin::hook_alloc(take, nullptr);
    Twin::hook_free(put_back, nullptr);
  }

 private:
  static constexpr std::size_t worth_keeping = 1 << 16;
  static inline void* block = nullptr;
  static inline std::size_t size = 0;

  static std::int32_t take(record* v) {
    if (v->alloc > 0) put_back(v);
    const std::size_t need = std::size_t{v->points} * (v->complex != 0 ? 2 : 1) * sizeof v->data[0];
    void* const got = need == size ? std::exchange(block, nullptr) : nullptr;
    v->data = static_cast<decltype(v->data)>(got != nullptr ? got : std::malloc(need));
    return 0;
  }
  static std::int32_t put_back(record* v) {
    const std::size_t bytes = static_cast<std::size_t>(v->alloc) * sizeof v->data[0];
    std::free(bytes < worth_keeping ? v->data : std::exchange(block, v->data));
    if (bytes >= worth_keeping) size = bytes;
    return 0;
  }
};

template <class Record> std::size_t scalars(const Record& v) {
  return std::size_t{v.points} * (v.complex != 0 ? 2 : 1);
}

template <class Record> bool same(const Record& a, const Record& b) {
  return a.points == b.points && (a.complex != 0) == (b.complex != 0) &&
         std::memcmp(&a.delta, &b.delta, sizeof a.delta) == 0 &&
         (scalars(a) == 0 || std::memcmp(a.data, b.data, scalars(a) * sizeof a.data[0]) == 0);
}

// The points are there, each of them can be read, and no header has made the storage large.
template <class Twin> void require_sound(const typename Twin::record& v, std::size_t input) {
  require(scalars(v) <= static_cast<std::size_t>(std::max(v.alloc, 0)), "the points lie within the storage");
  require(scalars(v) <= input + 1, "no more points than bytes");
  require(std::int64_t{v.alloc} * std::int64_t{sizeof v.data[0]} <= most_bytes,
          "a header asks for no memory");
  for (std::size_t i = 0; i < scalars(v); ++i) {
    volatile auto touched = v.data[i];
    static_cast<void>(touched);
  }
}

// What was read, written in binary form, reads back bit for bit; and the text forms can be written, and read.
template <class Twin> void write_and_compare(const typename Twin::record& v, source& again, sink& out) {
  holder<Twin> back;
  out.clear();
  require(Twin::write(&v, out.file()) == 0, "binary vectors can be written");
  require(Twin::read(&back, again.over(out.data(), out.size(), out.size())) == 1 &&
              same<typename Twin::record>(v, back),
          "what is written in binary form reads back");
  out.clear();
  require(Twin::write_as(&v, out.file(), DSP_WRITE_SUMMARY) == 0, "a summary can be written");
  out.clear();
  require(Twin::write_ascii(&v, out.file()) == 0, "text can be written");
  require(Twin::read(&back, again.over(out.data(), out.size(), 7)) == 1 && back.points == v.points &&
              (back.complex != 0) == (v.complex != 0),
          "what is written as text reads back");
}

// The records that a reading leaves are like any others.
template <class Twin> void work_with(typename Twin::record& v) {
  holder<Twin> copy;
  require(Twin::copy(&copy, &v) == 0 && same<typename Twin::record>(copy, v), "what was read can be copied");
  require(Twin::append(&copy, &v) == 0 && copy.points == 2 * v.points, "and appended");
}

// Reads to the end. What comes back tells the shapes of all vectors and the last status from others.
template <class Twin> std::uint64_t read_all(const std::uint8_t* data, std::size_t size, std::size_t piece) {
  static source in, again;
  static sink out;
  std::FILE* const f = in.over(data, size, piece);
  holder<Twin> v;
  std::uint64_t told = 0;
  std::int32_t status = 1;
  while (status == 1) {
    status = Twin::read(&v, f);
    require(status >= -1 && status <= 1, "the status is one of three");
    require_sound<Twin>(v, size);
    if (status == 1) write_and_compare<Twin>(v, again, out);
    told = told * 0x9E3779B97F4A7C15U + scalars(v) * 8 + (v.complex != 0 ? 4 : 0) +
           static_cast<std::uint64_t>(status + 1);
  }
  work_with<Twin>(v);
  return told;
}

}  // namespace

// A number that underflows in single precision alone may begin a hexadecimal one there, as every zero may.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool once = (kept_block<twin_double>::install(), kept_block<twin_float>::install(), true);
  static_cast<void>(once);
  const bool swapped = size % 2 != 0;
  const bool alike = read_all<twin_double>(data, size, swapped ? 1 : size) ==
                     read_all<twin_float>(data, size, swapped ? size : 1);
  require(alike || std::memchr(data, 'x', size) != nullptr, "neither pieces nor precision matter");
  return 0;
}
