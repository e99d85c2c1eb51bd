// SPDX-License-Identifier: MIT
// Streams over bytes in memory, and readers that see them through.
#pragma once

#include <unistd.h>

#include <bit>
#include <climits>
#include <clocale>
#include <memory>
#include <string>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {

using stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// The text must outlive the stream.
inline stream reading(const std::string& bytes) {
  return {fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb"), std::fclose};
}

// At most 64 KiB through a pipe, whose length nobody knows beforehand.
inline stream piped(const std::string& bytes) {
  int ends[2] = {};
  EXPECT_EQ(pipe(ends), 0);
  EXPECT_EQ(::write(ends[1], bytes.data(), bytes.size()), std::ssize(bytes));
  close(ends[1]);
  return {fdopen(ends[0], "rb"), std::fclose};
}

// What `write` puts into the stream that it is given.
template <class Write> std::string written(Write write) {
  char* text = nullptr;
  std::size_t size = 0;
  std::FILE* const f = open_memstream(&text, &size);
  write(f);
  std::fclose(f);
  const std::unique_ptr<char, void (*)(void*)> owner(text, std::free);
  return {text, size};
}

template <record V> std::string written(const V& v, std::int32_t flags) {
  return written([&](std::FILE* f) { EXPECT_EQ(TWIN(f_fwrite2)(&v, f, flags), 0) << flags; });
}

// Every vector of the stream and the status that ended it.
template <record V> std::pair<std::vector<samples<V>>, std::int32_t> all_vectors(const std::string& bytes) {
  const auto f = reading(bytes);
  std::vector<samples<V>> out;
  signal<V> v;
  std::int32_t status = 1;
  while ((status = TWIN(f_fread)(&v, f.get())) == 1) out.push_back(v.values());
  v.points = 0;
  return {out, status};
}

// Cut at every byte or with any byte changed to any other, a file reads as a few short vectors or fails, and
// makes no record ask for more than `most` scalars.
template <record V> void expect_harmless(const std::string& bytes, index most) {
  const failing_records watch(LONG_MAX);
  const auto check = [](const std::string& damaged) {
    const auto [vectors, status] = all_vectors<V>(damaged);
    EXPECT_TRUE(status == 0 || status == -1);
    EXPECT_LE(vectors.size(), 4U);
    for (const auto& values : vectors) EXPECT_LE(values.size(), 12U);
  };
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    check(bytes.substr(0, at));
    for (int value = 0; value < 256; ++value) {
      std::string damaged = bytes;
      damaged[at] = static_cast<char>(value);
      check(damaged);
    }
  }
  EXPECT_LE(watch.largest<V>(), most);
}

// A locale of the program with a decimal comma, where one is installed: it has no say in files.
struct decimal_comma {
  decimal_comma() {
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"}) std::setlocale(LC_ALL, name);
  }
  ~decimal_comma() { std::setlocale(LC_ALL, "C"); }
};

}  // namespace sigpak::test
