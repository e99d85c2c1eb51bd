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
  EXPECT_EQ(fcntl(fileno(stdout), F_GETFD) >= 0, true) << "left open";
  EXPECT_EQ(std::fflush(stdout), 0);
}

TYPED_TEST(Files, OtherNamesAreFiles) {
  using V = TypeParam;
  EXPECT_EQ(TWIN(f_fopen)("/nowhere/at/all", "rb"), nullptr);
  const std::string name = testing::TempDir() + "sigpak_files_test." + std::to_string(getpid());
  std::FILE* f = TWIN(f_fopen)(name.c_str(), "wb");
  ASSERT_NE(f, nullptr);
  const signal<V> v{1, 2};
  EXPECT_EQ(TWIN(f_fwrite)(&v, f), 0);
  EXPECT_EQ(TWIN(f_fclose)(f), 0);
  f = TWIN(f_fopen)(name.c_str(), "rb");
  ASSERT_NE(f, nullptr);
  signal<V> back;
  EXPECT_EQ(TWIN(f_fread)(&back, f), 1);
  EXPECT_EQ(back.values(), v.values());
  EXPECT_EQ(TWIN(f_fread)(&back, f), 0);
  EXPECT_EQ(back.points, 0U);
  EXPECT_EQ(TWIN(f_fclose)(f), 0);
  std::remove(name.c_str());
}

TYPED_TEST(Files, AStreamThatCannotBeReadIsNotAtItsEnd) {
  using V = TypeParam;
  std::FILE* const f = TWIN(f_fopen)("/", "rb");
  if (f == nullptr) GTEST_SKIP() << "directories do not open here";
  signal<V> v;
  EXPECT_EQ(TWIN(f_fread)(&v, f), -1);
  EXPECT_EQ(TWIN(f_fclose)(f), 0);
}

template <record V> std::string summary(const V& v, std::int32_t parts = 0) {
  return written([&](std::FILE* f) { EXPECT_EQ(TWIN(f_fwrite2)(&v, f, 2 + parts), 0); });
}

TYPED_TEST(Files, TheSummaryOfManyPoints) {
  using V = TypeParam;
  samples<V> ramp;
  for (int i = 0; i < 40; ++i) ramp.push_back(static_cast<scalar<V>>(i));
  signal<V> v(ramp);
  v.delta = scalar<V>(0.5);
  std::string wanted = "[40/0.5] 0";
  for (int i = 1; i < 32; ++i) wanted.append(" ").append(std::to_string(i));
  EXPECT_EQ(summary<V>(v), wanted + " ...\n");
  v.points = 32;
  EXPECT_EQ(summary<V>(v), wanted.replace(1, 2, "32") + "\n");
  EXPECT_EQ(summary<V>(v, 0x200) + summary<V>(v, 0x100), summary<V>(v));
  EXPECT_EQ(summary<V>(v, 0x200), "[32/0.5] ");
  EXPECT_EQ(summary<V>(v, 0x300), "");
  v.complex = 1;
  v.points = 2;
  EXPECT_EQ(summary<V>(v), "[2/0.5] 0,1 2,3\n");
  v.points = 0;
  EXPECT_EQ(summary<V>(v), "[0/0.5]\n");
}

TYPED_TEST(Files, TheSummaryOfNumbers) {
  using V = TypeParam;
  struct {
    double value;
    const char* text;
  } const numbers[] = {{12345.6, "12346"}, {-9999, "-9999"},     {0.000123, "0.000123"}, {9998.9, "9999"},
                       {9998.0, "9998"},   {-12345.5, "-12346"}, {1e9, "1e+09"},         {1e8, "100000000"},
                       {-0.0, "-0"},       {1e-5, "1e-05"},      {1234.56, "1235"},      {12344.5, "12344"},
                       {HUGE_VAL, "inf"},  {-HUGE_VAL, "-inf"},  {3.14159, "3.142"}};
  for (const auto& n : numbers) {
    signal<V> v{n.value};
    EXPECT_EQ(summary<V>(v), std::string("[1/1] ") + n.text + "\n");
  }
  if constexpr (is_double<V>) {
    signal<V> v{999999999, 999999999.4, 9998.999999999};
    EXPECT_EQ(summary<V>(v), "[3/1] 999999999 1e+09 9999\n");
  }
  V many = signal<V>();
  many.points = 123456;
  many.delta = 20000;
  EXPECT_EQ(summary<V>(many, 0x200), "[123456/20000] ");
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
