// SPDX-License-Identifier: MIT
// Opening and closing, the summary, and the flags of the general writer.
#include <fcntl.h>

#include "io/streams.h"

namespace sigpak::test {
namespace {

template <class V> class Files : public testing::Test {};
TYPED_TEST_SUITE(Files, records, record_names);

TYPED_TEST(Files, TheDashNamesTheStandardStreams) {
  using V = TypeParam;
  for (const char* mode : {"r", "rb", "r+b", "rx"}) EXPECT_EQ(TWIN(f_fopen)("-", mode), stdin) << mode;
  for (const char* mode : {"w", "wb", "w+"}) EXPECT_EQ(TWIN(f_fopen)("-", mode), stdout) << mode;
  for (const char* mode : {"a", "", "x", "+r"}) EXPECT_EQ(TWIN(f_fopen)("-", mode), nullptr) << mode;
  EXPECT_EQ(TWIN(f_fclose)(stdin), 0);
  EXPECT_EQ(TWIN(f_fclose)(stdout), 0);
  for (const int standard : {0, 1}) EXPECT_GE(fcntl(standard, F_GETFD), 0) << "left open";
}

TYPED_TEST(Files, OtherNamesAreFiles) {
  using V = TypeParam;
  EXPECT_EQ(TWIN(f_fopen)("/nowhere/at/all", "rb"), nullptr);
  const std::string name = testing::TempDir() + "sigpak_files_test." + std::to_string(getpid());
  std::FILE* f = TWIN(f_fopen)(name.c_str(), "w+b");
  ASSERT_NE(f, nullptr);
  const signal<V> v{1, 2};
  EXPECT_EQ(TWIN(f_fwrite)(&v, f), 0);
  std::rewind(f);
  signal<V> back;
  EXPECT_EQ(TWIN(f_fread)(&back, f), 1);
  EXPECT_EQ(back.values(), v.values());
  EXPECT_EQ(TWIN(f_fread)(&back, f), 0);
  EXPECT_EQ(back.points, 0U);
  EXPECT_EQ(TWIN(f_fclose)(f), 0);
  std::remove(name.c_str());
  f = TWIN(f_fopen)("/", "rb");
  if (f == nullptr) GTEST_SKIP() << "directories do not open here";
  EXPECT_EQ(TWIN(f_fread)(&back, f), -1) << "what cannot be read is not at its end";
  EXPECT_EQ(TWIN(f_fclose)(f), 0);
}

TYPED_TEST(Files, TheSummary) {
  using V = TypeParam;
  const decimal_comma locale;
  samples<V> ramp;
  std::string wanted;
  for (int i = 0; i < 40; ++i) {
    ramp.push_back(static_cast<scalar<V>>(i));
    if (i < 32) wanted.append(" ").append(std::to_string(i));
  }
  signal<V> v(ramp);
  v.delta = scalar<V>(0.5);
  EXPECT_EQ(written<V>(v, 2), "[40/0.5]" + wanted + " ...\n");
  v.points = 32;
  EXPECT_EQ(written<V>(v, 2), "[32/0.5]" + wanted + "\n");
  EXPECT_EQ(written<V>(v, 0x202), "[32/0.5] ");
  EXPECT_EQ(written<V>(v, 0x102), wanted.substr(1) + "\n");
  EXPECT_EQ(written<V>(v, 0x302), "");
  v.complex = 1;
  v.points = 2;
  EXPECT_EQ(written<V>(v, 2), "[2/0.5] 0,1 2,3\n");
  v.points = 0;
  EXPECT_EQ(written<V>(v, 2), "[0/0.5]\n");
  v.points = 123456;
  v.delta = 20000;
  EXPECT_EQ(written<V>(v, 0x202), "[123456/20000] ");
  v.points = 0;
}

TYPED_TEST(Files, NumbersOfTheSummary) {
  using V = TypeParam;
  std::vector<std::pair<double, std::string>> numbers = {
      {12345.6, "12346"}, {-9999, "-9999"},     {0.000123, "0.000123"}, {9998.9, "9999"},
      {9998.0, "9998"},   {-12345.5, "-12346"}, {1e9, "1e+09"},         {1e8, "100000000"},
      {-0.0, "-0"},       {1e-5, "1e-05"},      {1234.56, "1235"},      {12344.5, "12344"},
      {HUGE_VAL, "inf"},  {-HUGE_VAL, "-inf"},  {3.14159, "3.142"}};
  if (is_double<V>) {
    numbers.insert(numbers.end(),
                   {{999999999, "999999999"}, {999999999.4, "1e+09"}, {9998.999999999, "9999"}});
  }
  for (const auto& [value, text] : numbers)
    EXPECT_EQ(written<V>(signal<V>{value}, 2), "[1/1] " + text + "\n");
}

TYPED_TEST(Files, UnknownFormsAreRefused) {
  using V = TypeParam;
  const signal<V> v{1};
  for (const std::int32_t flags : {3, 4, 0x7f, 0xff, 0x303, -1}) {
    EXPECT_EQ(written([&](std::FILE* f) { EXPECT_EQ(TWIN(f_fwrite2)(&v, f, flags), -1) << flags; }), "");
  }
}

}  // namespace
}  // namespace sigpak::test
