// SPDX-License-Identifier: MIT
// What a target of the fuzzers is: a function of any bytes, which ends the process on a fault. libFuzzer
// calls it, and so does mutate.cpp, at several times the rate and without clang.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace sigpak::test {

inline void require(bool holds, const char* claim) {
  if (holds) return;
  std::fprintf(stderr, "not so: %s\n", claim);
  std::abort();
}

}  // namespace sigpak::test
