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
#include "support/twins.h"

namespace {

using namespace sigpak;
using test::require;

constexpr std::int64_t most_bytes = std::int64_t{64} << 20;
constexpr std::size_t most_written = 1 << 18;

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

template <record V> struct holder : V {
  holder() { TWIN(_init)(this); }
  ~holder() { TWIN(_destroy)(this); }
  holder(const holder&) = delete;
  holder& operator=(const holder&) = delete;
};

// The block that a header asks for is always the same, and costs more than all the rest: it is used again.
template <record V> class kept_block {
 public:
  static void install() {
    TWIN(_lib_alloc)(take, nullptr);
    TWIN(_lib_free)(put_back, nullptr);
  }

 private:
  static constexpr std::size_t worth_keeping = 1 << 16;
  static inline void* block = nullptr;
  static inline std::size_t size = 0;

  static std::int32_t take(V* v) {
    if (v->alloc > 0) put_back(v);
    const std::size_t need = std::size_t{v->points} * (v->complex != 0 ? 2 : 1) * sizeof v->data[0];
    void* const got = need == size ? std::exchange(block, nullptr) : nullptr;
    v->data = static_cast<decltype(v->data)>(got != nullptr ? got : std::malloc(need));
    return 0;
  }
  static std::int32_t put_back(V* v) {
    const std::size_t bytes = static_cast<std::size_t>(v->alloc) * sizeof v->data[0];
    std::free(bytes < worth_keeping ? v->data : std::exchange(block, v->data));
    if (bytes >= worth_keeping) size = bytes;
    return 0;
  }
};

// As it stands, so that counts that read as negative are too many.
template <record V> std::size_t size_of(const V& v) {
  return std::size_t{v.points} * (v.complex != 0 ? 2 : 1);
}

template <record V> bool same(const V& a, const V& b) {
  return a.points == b.points && (a.complex != 0) == (b.complex != 0) &&
         std::memcmp(&a.delta, &b.delta, sizeof a.delta) == 0 &&
         (size_of(a) == 0 || std::memcmp(a.data, b.data, size_of(a) * sizeof a.data[0]) == 0);
}

// The points are there, each of them can be read, and no header has made the storage large.
template <record V> void require_sound(const V& v, std::size_t input) {
  require(size_of(v) <= static_cast<std::size_t>(std::max(v.alloc, 0)), "the points lie within the storage");
  require(size_of(v) <= input + 1, "no more points than bytes");
  require(std::int64_t{v.alloc} * std::int64_t{sizeof v.data[0]} <= most_bytes,
          "a header asks for no memory");
  for (std::size_t i = 0; i < size_of(v); ++i) {
    volatile auto touched = v.data[i];
    static_cast<void>(touched);
  }
}

// What was read, written in binary form, reads back bit for bit; and the text forms can be written, and read.
template <record V> void write_and_compare(const V& v, source& again, sink& out) {
  holder<V> back;
  out.clear();
  require(TWIN(f_fwrite)(&v, out.file()) == 0, "binary vectors can be written");
  require(TWIN(f_fread)(&back, again.over(out.data(), out.size(), out.size())) == 1 && same<V>(v, back),
          "what is written in binary form reads back");
  out.clear();
  require(TWIN(f_fwrite2)(&v, out.file(), DSP_WRITE_SUMMARY) == 0, "a summary can be written");
  out.clear();
  require(TWIN(f_fwrite_ascii)(&v, out.file()) == 0, "text can be written");
  require(TWIN(f_fread)(&back, again.over(out.data(), out.size(), 7)) == 1 && back.points == v.points &&
              (back.complex != 0) == (v.complex != 0),
          "what is written as text reads back");
}

// The records that a reading leaves are like any others.
template <record V> void work_with(V& v) {
  holder<V> copy;
  require(TWIN(_copy)(&copy, &v) == 0 && same<V>(copy, v), "what was read can be copied");
  require(TWIN(_append)(&copy, &v) == 0 && copy.points == 2 * v.points, "and appended");
}

// Reads to the end. What comes back tells the shapes of all vectors and the last status from others.
template <record V> std::uint64_t read_all(const std::uint8_t* data, std::size_t size, std::size_t piece) {
  static source in, again;
  static sink out;
  std::FILE* const f = in.over(data, size, piece);
  holder<V> h;
  V& v = h;
  std::uint64_t told = 0;
  std::int32_t status = 1;
  while (status == 1) {
    status = TWIN(f_fread)(&v, f);
    require(status >= -1 && status <= 1, "the status is one of three");
    require_sound<V>(v, size);
    if (status == 1) write_and_compare<V>(v, again, out);
    told = told * 0x9E3779B97F4A7C15U + size_of(v) * 8 + (v.complex != 0 ? 4 : 0) +
           static_cast<std::uint64_t>(status + 1);
  }
  work_with<V>(v);
  return told;
}

}  // namespace

// A number that underflows in single precision alone may begin a hexadecimal one there, as every zero may.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool once = (kept_block<dsp_vec>::install(), kept_block<dspf_vec>::install(), true);
  static_cast<void>(once);
  const bool swapped = size % 2 != 0;
  const bool alike =
      read_all<dsp_vec>(data, size, swapped ? 1 : size) == read_all<dspf_vec>(data, size, swapped ? size : 1);
  require(alike || std::memchr(data, 'x', size) != nullptr, "neither pieces nor precision matter");
  return 0;
}
