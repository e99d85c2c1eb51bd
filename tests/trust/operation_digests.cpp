// SPDX-License-Identifier: MIT
// Prints every operation with the digests of both precisions, at the level that SIGPAK_TEST_LEVEL names. What
// prints alike at every level, with every compiler and on every processor stands in the list of digests.
#include <cstdio>
#include <cstdlib>

#include "core/isa.h"
#include "trust/digests.h"

int main() {
  const char* const level = std::getenv("SIGPAK_TEST_LEVEL");
  if (level != nullptr && !sigpak::isa::force_named(level)) return 77;
  const auto singles = sigpak::test::digests<dspf_vec>();
  for (const auto& [name, digest] : sigpak::test::digests<dsp_vec>()) {
    std::printf("%s %s %s\n", name.c_str(), digest.c_str(), singles.at(name).c_str());
  }
}
