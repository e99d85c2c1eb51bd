// SPDX-License-Identifier: MIT
// What some hundred drawn calls of every operation give, as a number for each: the same bits, the same
// number.
#pragma once

#include <map>
#include <sstream>
#include <string>

#include "trust/drawn.h"

namespace sigpak::test {

// FNV-1a of 64 bits over the bytes of its values.
class digest {
 public:
  template <class T> void take(T value) {
    unsigned char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    for (const unsigned char b : bytes) hash_ = (hash_ ^ b) * 0x100000001b3U;
  }
  std::string text() const {
    std::ostringstream out;
    out << std::hex << hash_;
    return out.str();
  }

 private:
  std::uint64_t hash_ = 0xcbf29ce484222325U;
};

// Short records mostly, where every tail of a vector is met.
inline index short_lengths(draws& d) {
  return d.one_in(40) ? d.below(1200) : d.below(d.of<index>({4, 20, 70, 200}));
}

template <record V> std::map<std::string, std::string> digests() {
  constexpr int calls = 300;
  const small_machine limited;
  std::map<std::string, std::string> all;
  each_operation<V>([&](const char* name, auto operation) {
    EXPECT_EQ(TWIN(_free_internal)(), 0);
    drawn_call<V> call(1, short_lengths);
    digest one;
    for (int i = 0; i < calls; ++i) {
      call.run(operation);
      call.leaves([&](auto value) { one.take(value); });
    }
    all[name] = one.text();
  });
  return all;
}

}  // namespace sigpak::test
