// SPDX-License-Identifier: MIT
// Operations that need neither a library of mathematics nor a fused product give the same bits everywhere.
#include "trust/digests.h"

#include <fstream>

namespace sigpak::test {
namespace {

// Lines of a name and the digests in double and single precision, - where it is not the same everywhere.
TEST(Digests, AreThoseOfEveryLevelCompilerAndProcessor) {
  const auto doubles = digests<dsp_vec>();
  const auto singles = digests<dspf_vec>();
  std::ifstream list(SIGPAK_DIGESTS);
  int compared = 0;
  for (std::string name, wide, narrow; list >> name >> wide >> narrow; ++compared) {
    EXPECT_TRUE(wide == "-" || doubles.at(name) == wide) << name << ' ' << doubles.at(name);
    EXPECT_TRUE(narrow == "-" || singles.at(name) == narrow)
        << name << ' ' << singles.at(name) << " of floats";
  }
  EXPECT_GT(compared, 90);
}

}  // namespace
}  // namespace sigpak::test
