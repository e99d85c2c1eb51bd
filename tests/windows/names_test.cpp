// SPDX-License-Identifier: MIT
// The names of the windows, both ways.
#include <cctype>
#include <sstream>

#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class WindowNames : public testing::Test {};
TYPED_TEST_SUITE(WindowNames, records, record_names);

// The names of each window in the order of their numbers, the one that stands for it first.
const std::string published =
    "Uniform/Rectangular/None/P000 Bartlett/Triangular Hann/P110 Hamming/P100 Blackman Blackman_Harris3/P200 "
    "Blackman_Harris4/P310/Lowleak Gausstop/P400 Flat4/P301 Flattop/Flat5/P401 Flat6/P511 Flat7/P611 P501 "
    "P601 Kaiser70 Kaiser80 Kaiser90 Kaiser100 Kaiser110 Kaiser120 Gauss60 Gauss70 Gauss80 Riemann/Sinc_Lobe";

std::vector<std::string> split(const std::string& text, char at) {
  std::vector<std::string> out;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, at);) out.push_back(part);
  return out;
}

const std::vector<std::string> catalogue = split(published, ' ');

std::string cased(std::string text, int (*change)(int)) {
  std::ranges::transform(text, text.begin(), [change](char c) { return static_cast<char>(change(c)); });
  return text;
}

TYPED_TEST(WindowNames, EveryNameInEveryCaseMeansItsWindow) {
  using V = TypeParam;
  int window = 0;
  for (const auto& names : catalogue) {
    for (const std::string& name : split(names, '/')) {
      for (const std::string& text : {name, cased(name, std::tolower),
                                      "DSP_WINDOW_" + cased(name, std::toupper), "dsp_Window_" + name}) {
        std::int32_t found = -5;
        EXPECT_EQ(TWIN(_window_from_str)(text.c_str(), &found), 0) << text;
        EXPECT_EQ(found, window) << text;
      }
    }
    ++window;
  }
  for (const char* text : {"", "Hanning", "Han", "Hannn", "Hann ", " Hann", "DSP_WINDOW_", "DSP_WINDOW",
                           "WINDOW_HANN", "DSP_WINDOW_DSP_WINDOW_HANN", "2"}) {
    std::int32_t found = -5;
    EXPECT_EQ(TWIN(_window_from_str)(text, &found), -1) << text;
    EXPECT_EQ(found, 0) << text;
  }
  std::int32_t found = -5;
  EXPECT_EQ(TWIN(_window_from_str)(nullptr, &found), -1);
  EXPECT_EQ(found, -5);
  EXPECT_EQ(TWIN(_window_from_str)("Hann", nullptr), -1);
}

TYPED_TEST(WindowNames, TheFirstNameStandsForAWindowCutToItsBuffer) {
  using V = TypeParam;
  for (int window = -1; window <= std::ssize(catalogue); ++window) {
    const bool known = window >= 0 && window < std::ssize(catalogue);
    const std::string whole = known ? split(catalogue[static_cast<std::size_t>(window)], '/')[0] : "";
    for (std::int32_t size = -1; size <= 20; ++size) {
      std::string text(21, '#');
      EXPECT_EQ(TWIN(_window_to_str)(window, text.data(), size), known && size > 0 ? 0 : -1);
      const auto room = static_cast<std::size_t>(std::max(size, 0));
      EXPECT_TRUE(text.ends_with(std::string(21 - room, '#')));
      if (room == 0) continue;
      EXPECT_EQ(text.c_str(), whole.substr(0, room - 1));
      EXPECT_TRUE(!known || text[room - 1] == '\0');
    }
  }
  EXPECT_EQ(TWIN(_window_to_str)(DSP_WINDOW_HANN, nullptr, 8), -1);
}

}  // namespace
}  // namespace sigpak::test
