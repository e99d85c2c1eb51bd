// Runs a suite at the instruction-set level named by SIGPAK_TEST_LEVEL, the widest one without it.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "core/isa.h"

namespace {

constexpr int skipped = 77;

bool select_level(std::string_view wanted) {
  using sigpak::isa::level;
  const level chosen = wanted == "baseline" ? level::baseline
                       : wanted == "avx2"   ? level::avx2
                                            : level::avx512;
  sigpak::isa::force(chosen);
  return sigpak::isa::current() == chosen;
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (const char* wanted = std::getenv("SIGPAK_TEST_LEVEL"); wanted != nullptr && !select_level(wanted)) {
    std::printf("this processor has no level %s\n", wanted);
    return skipped;
  }
  return RUN_ALL_TESTS();
}
