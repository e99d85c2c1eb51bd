// SPDX-License-Identifier: MIT
// What some hundred drawn calls of every operation give, as a number for each: the same bits, the same
// number.
#pragma once

#include <cstring>
#include <map>
#include <sstream>
#include <string>

#include "support/calls.h"
#include "support/failing.h"

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

template <record V> std::map<std::string, std::string> digests() {
  const small_machine limited;
  std::map<std::string, digest> all;
  each_fitting_call<V>(300, 1, [&](const exported& op, place<V>& at, const arguments& given) {
    if (!all.contains(op.name)) TWIN(_free_internal)();
    digest& one = all[op.name];
    const status returned = op.call(at, given);
    one.take(returned);
    if (returned == ok) at.leaves([&](auto value) { one.take(value); });  // else they may hold anything
  });
  std::map<std::string, std::string> texts;
  for (const auto& [name, one] : all) texts[name] = one.text();
  return texts;
}

}  // namespace sigpak::test
