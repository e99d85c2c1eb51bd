// SPDX-License-Identifier: MIT
// Runs a suite at the instruction-set level named by SIGPAK_TEST_LEVEL, the widest one without it.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "core/isa.h"

namespace {

constexpr int skipped = 77;

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (const char* wanted = std::getenv("SIGPAK_TEST_LEVEL");
      wanted != nullptr && !sigpak::isa::force_named(wanted)) {
    std::printf("this processor has no level %s\n", wanted);
    return skipped;
  }
  return RUN_ALL_TESTS();
}
