// Streams over bytes in memory, and a watch on what records ask for.
#pragma once

#include <unistd.h>

#include <bit>
#include <cstring>
#include <memory>
#include <string>
#include <thread>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {

struct closer {
  void operator()(std::FILE* f) const { std::fclose(f); }
};
using stream = std::unique_ptr<std::FILE, closer>;

// The text must outlive the stream.
inline stream reading(const std::string& bytes) {
  return stream(fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb"));
}

// The bytes through a pipe, whose length nobody knows beforehand.
class piped {
 public:
  explicit piped(std::string bytes) : bytes_(std::move(bytes)) {
    EXPECT_EQ(pipe(ends_), 0);
    out_.reset(fdopen(ends_[0], "rb"));
    writer_ = std::thread([this] {
      std::size_t done = 0;
      while (done < bytes_.size()) {
        const auto n = ::write(ends_[1], bytes_.data() + done, bytes_.size() - done);
        if (n <= 0) break;
        done += static_cast<std::size_t>(n);
      }
      close(ends_[1]);
    });
  }
  ~piped() {
    while (std::getc(out_.get()) != EOF) continue;
    writer_.join();
  }
  piped(const piped&) = delete;
  piped& operator=(const piped&) = delete;
  std::FILE* get() const { return out_.get(); }

 private:
  std::string bytes_;
  int ends_[2] = {};
  stream out_;
  std::thread writer_;
};

// What `write` puts into the stream that it is given.
template <class Write> std::string written(Write write) {
  char* text = nullptr;
  std::size_t size = 0;
  std::FILE* const f = open_memstream(&text, &size);
  write(f);
  std::fclose(f);
  std::string out(text, size);
  std::free(text);
  return out;
}

// The bytes of a number in either byte order.
template <class T> std::string number_bytes(T x, bool big_endian) {
  std::string out(sizeof x, '\0');
  std::memcpy(out.data(), &x, sizeof x);
  if (big_endian != (std::endian::native == std::endian::big)) std::reverse(out.begin(), out.end());
  return out;
}

// Same bits, so that NaN and the signs of zeros count.
template <class C> bool same_bits(const C& a, const C& b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0);
}

// Notes the largest need of any record sized in its scope.
template <record V> class largest_request {
 public:
  largest_request() {
    largest() = 0;
    TWIN(_lib_alloc)(allocate, nullptr);
    TWIN(_lib_realloc)(reallocate, nullptr);
  }
  ~largest_request() {
    TWIN(_lib_alloc)(nullptr, nullptr);
    TWIN(_lib_realloc)(nullptr, nullptr);
  }
  largest_request(const largest_request&) = delete;
  largest_request& operator=(const largest_request&) = delete;
  index scalars() const { return largest(); }

 private:
  static index& largest() {
    static index most = 0;
    return most;
  }
  static std::int32_t allocate(V* v) {
    if (v->alloc > 0) std::free(v->data);
    v->data = nullptr;
    return reallocate(v, 0, 0);
  }
  static std::int32_t reallocate(V* v, std::uint32_t, std::int32_t) {
    const index need = index{v->points} * width(v);
    largest() = std::max(largest(), need);
    v->data =
        static_cast<scalar<V>*>(std::realloc(v->data, static_cast<std::size_t>(need) * sizeof(scalar<V>)));
    return 0;
  }
};

}  // namespace sigpak::test
