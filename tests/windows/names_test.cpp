// The names of the windows, both ways.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>
#include <vector>

#include "support/twins.h"

namespace sigpak::test {
namespace {

template <class V> class WindowNames : public testing::Test {};
TYPED_TEST_SUITE(WindowNames, records, record_names);

// Every name of each window, the one that stands for it first.
const std::vector<std::vector<const char*>> catalogue = {
    {"Uniform", "Rectangular", "None", "P000"},
    {"Bartlett", "Triangular"},
    {"Hann", "P110"},
    {"Hamming", "P100"},
    {"Blackman"},
    {"Blackman_Harris3", "P200"},
    {"Blackman_Harris4", "P310", "Lowleak"},
    {"Gausstop", "P400"},
    {"Flat4", "P301"},
    {"Flattop", "Flat5", "P401"},
    {"Flat6", "P511"},
    {"Flat7", "P611"},
    {"P501"},
    {"P601"},
    {"Kaiser70"},
    {"Kaiser80"},
    {"Kaiser90"},
    {"Kaiser100"},
    {"Kaiser110"},
    {"Kaiser120"},
    {"Gauss60"},
    {"Gauss70"},
    {"Gauss80"},
    {"Riemann", "Sinc_Lobe"},
};

std::string cased(std::string text, int (*change)(int)) {
  std::ranges::transform(text, text.begin(), [change](char c) { return static_cast<char>(change(c)); });
  return text;
}

TYPED_TEST(WindowNames, EveryNameInEveryCaseMeansItsWindow) {
  using V = TypeParam;
  int tried = 0;
  for (std::size_t window = 0; window < catalogue.size(); ++window) {
    for (const std::string name : catalogue[window]) {
      for (const std::string& text : {name, cased(name, std::tolower),
                                      "DSP_WINDOW_" + cased(name, std::toupper), "dsp_Window_" + name}) {
        std::int32_t found = -5;
        EXPECT_EQ(TWIN(_window_from_str)(text.c_str(), &found), 0) << text;
        EXPECT_EQ(found, static_cast<std::int32_t>(window)) << text;
        ++tried;
      }
    }
  }
  EXPECT_EQ(tried, 160);
}

TYPED_TEST(WindowNames, OtherTextsAreUnknown) {
  using V = TypeParam;
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

TYPED_TEST(WindowNames, TheFirstNameStandsForAWindow) {
  using V = TypeParam;
  for (std::size_t window = 0; window < catalogue.size(); ++window) {
    char text[32];
    EXPECT_EQ(TWIN(_window_to_str)(static_cast<std::int32_t>(window), text, sizeof text), 0);
    EXPECT_STREQ(text, catalogue[window][0]);
  }
  for (const int unknown : {-1, 24, 1000}) {
    char text[] = "left";
    EXPECT_EQ(TWIN(_window_to_str)(unknown, text, sizeof text), -1);
    EXPECT_STREQ(text, "");
  }
}

TYPED_TEST(WindowNames, ATextIsCutToItsBuffer) {
  using V = TypeParam;
  const std::string whole = "Blackman_Harris4";
  for (std::int32_t size = 1; size <= 20; ++size) {
    char text[21];
    std::memset(text, '#', sizeof text);
    EXPECT_EQ(TWIN(_window_to_str)(DSP_WINDOW_LOWLEAK, text, size), 0);
    EXPECT_EQ(text, whole.substr(0, static_cast<std::size_t>(size) - 1));
    EXPECT_EQ(text[size - 1], '\0');
    EXPECT_EQ(text[size], '#');
  }
  char text[] = "left";
  EXPECT_EQ(TWIN(_window_to_str)(DSP_WINDOW_HANN, text, 0), -1);
  EXPECT_EQ(TWIN(_window_to_str)(DSP_WINDOW_HANN, text, -3), -1);
  EXPECT_STREQ(text, "left");
  EXPECT_EQ(TWIN(_window_to_str)(DSP_WINDOW_HANN, nullptr, 8), -1);
}

}  // namespace
}  // namespace sigpak::test
