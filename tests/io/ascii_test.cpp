// SPDX-License-Identifier: MIT
// The ASCII form: texts and what they read as, numbers to the last bit, and texts that lie.
#include <cinttypes>

#include "io/streams.h"

namespace sigpak::test {
namespace {

template <class V> class Ascii : public testing::Test {};
TYPED_TEST_SUITE(Ascii, records, record_names);

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// Beginnings that are no number, alone and after one.
const std::string refused[] = {
    "1e",           "1e 2", "1e+",  "-",       "+-1",  ".",     ".e1",
    "1,5",          "x",    "infi", "infinit", "na",   "nan(1", std::string("\0 2", 3),
    "\xEF\xBB\xBF", "0X1A", "0x",   "0xg",     "0x 1", "0x-1",  "0x0x",
    "1x10"};

struct text_case {
  std::string text;
  std::int32_t status;
  std::vector<double> values;  // scalars
  double delta = 1;
  bool complex = false;
};

const std::string points_3 = "#DSP points = 3\n";
const std::string as_complex = "#DSP complex = 1\n";

const text_case cases[] = {
    // numbers and white space
    {"1 2.5\t-3e2\v+4\f.5\r\n5.\n", 1, {1, 2.5, -300, 4, 0.5, 5}},
    {"1E+2 1e-2-2", 1, {100, 0.01, -2}},
    {"1e400 -1e400 1e99999999999999999999", 1, {inf, -inf, inf}},
    {"1e-400 0e99999999999999999999 1e-99999999999999999999", 1, {0, 0, 0}},
    {"inf -INF +Infinity", 1, {inf, -inf, inf}},
    {"nan -NaN nan(0x1f_) -0 0 -0.0e3", 1, {nan, -nan, nan, -0.0, 0, -0.0}},
    // hexadecimal
    {"0x1A -0x1A 0xffffffff -0x10 +0x7", 1, {26, -26, -1, -16, 7}},
    {"0x80000000 -0x80000000 0x1ffffffff 0xFf", 1, {-2147483648.0, -2147483648.0, -1, 255}},
    {"0x1.8", 1, {1, 0.8}},
    {"0x0x1F 0.0x10 -0e5x10 0 0", 1, {31, 16, -16, 0, 0}},
    {"0", 1, {0}},
    // what comments declare
    {"#DSP delta = 0.5\n1 2", 1, {1, 2}, 0.5},
    {"1 #DSP delta = 4\n2", 1, {1, 2}, 4},
    {"  #DSP delta=7\n", 1, {}, 7},
    {"#DSP   delta  =\t-1e-3 and more\n", 1, {}, -1e-3},
    {"#DSPdelta=inf\n", 1, {}, inf},
    {"#DSP delta = 1e\n#DSP delta = x\n# DSP delta = 2\n#dsp delta = 2\n#DSP delta 2\n##DSP delta = 2\n",
     1,
     {}},
    {"#DSP delta = 25", 1, {}, 2},  // without a line end the last digit goes
    {points_3 + "1 2", -1, {1, 2}},
    {points_3, -1, {}},
    {"1 2 3 " + points_3, 1, {1, 2, 3}},
    {"1 2 " + points_3, -1, {1, 2}},
    {"#DSP points = -4\n", 1, {}},
    {"#DSP points = 0\n1", 1, {}},
    {"#DSP points = +2.9\n1 2", 1, {1, 2}},
    {"#DSP points = +-2\n1 2 3", 1, {1, 2, 3}},
    {"#DSP points = 99999999999999999999\n1", -1, {1}},
    {"#DSP points = 9223372036854775807\n" + as_complex + "1", -1, {1, 0}, 1, true},
    {"#DSP points = -99999999999999999999\n", 1, {}},
    {as_complex + "1 2 3", 1, {1, 2, 3, 0}, 1, true},
    {as_complex, 1, {}, 1, true},
    {"#DSP complex = -9\n#DSP points = 1\n1", 1, {1, 0}, 1, true},
    {as_complex + "#DSP complex = 0\n1 2", 1, {1, 2}},
    {as_complex + "1 2 x", -1, {1, 2}},
    {"#DSP points = 2\n" + as_complex + "1 2 3", 1, {1, 2, 3, 0}, 1, true},
    {"1# no, 2\n3", 1, {1, 3}},
    {std::string("#DSP delta = 5\0 6\n1", 19), 1, {1}, 5}};

TYPED_TEST(Ascii, TextsAndWhatTheyReadAs) {
  using V = TypeParam;
  const decimal_comma locale;
  for (const auto& c : cases) {
    signal<V> v{9, 9};
    v.complex = 1;
    v.delta = 3;
    EXPECT_EQ(TWIN(f_fread)(&v, reading(c.text).get()), c.status) << c.text;
    EXPECT_TRUE(same_bits(v.values(), samples<V>(c.values.begin(), c.values.end()))) << c.text;
    EXPECT_EQ(v.delta, static_cast<scalar<V>>(c.delta)) << c.text;
    EXPECT_EQ(v.complex != 0, c.complex) << c.text;
  }
  for (const auto& text : refused) {
    signal<V> v;
    const auto longer = "7 " + text;
    EXPECT_EQ(TWIN(f_fread)(&v, reading(text).get()), -1) << text;
    EXPECT_EQ(TWIN(f_fread)(&v, reading(longer).get()), -1) << text;
    EXPECT_EQ(v.data[0], 7);
  }
}

TYPED_TEST(Ascii, DeclaredCountsPartAStreamIntoVectors) {
  using V = TypeParam;
  using S = std::vector<samples<V>>;
  const signal<V> a{1, 2};
  const signal<V> b({3, 4}, true);
  const std::pair<std::string, S> streams[] = {
      {points_3 + "1 2 3 4 5", {{1, 2, 3}, {4, 5}}},
      {points_3 + "1 2 0 4", {{1, 2, 0}, {4}}},
      {points_3 + "1 2 0x4\n", {{1, 2, 4}, {}}},
      {points_3 + "1 2 3" + points_3 + "4 5 6\n#DSP points = 1\n7 ", {{1, 2, 3}, {4, 5, 6}, {7}, {}}},
      {"#DSP points = 0\n1 #DSP points = 2\n2 3", {{}, {1, 2}, {3}}},
      {written<V>(a, 0) + written<V>(b, 0) + written<V>(b, 1) + written<V>(a, 1),
       {{1, 2}, {3, 4}, {3, 4}, {1, 2}, {}}}};
  for (const auto& [text, vectors] : streams) EXPECT_EQ(all_vectors<V>(text), std::pair(vectors, 0)) << text;
  EXPECT_EQ(all_vectors<V>(points_3 + "1 2 3 x").second, -1);
}

TYPED_TEST(Ascii, LongCommentsLoseTheirTail) {
  using V = TypeParam;
  // The kept part has 255 characters and loses its last: the delta is cut inside its digits.
  const std::pair<std::size_t, double> tails[] = {{235, 2345}, {238, 234}, {239, 23},
                                                  {240, 2},    {241, 1},   {5000, 1}};
  for (const auto& [blanks, delta] : tails) {
    signal<V> v;
    const std::string text = "#DSP delta = " + std::string(blanks, ' ') + "2345\n6";
    ASSERT_EQ(TWIN(f_fread)(&v, reading(text).get()), 1);
    EXPECT_EQ(v.delta, static_cast<scalar<V>>(delta)) << blanks;
    EXPECT_EQ(v.values(), samples<V>{6});
  }
}

template <class T> T parsed(const std::string& token) {
  if constexpr (sizeof(T) == 8) {
    return std::strtod(token.c_str(), nullptr);
  } else {
    return std::strtof(token.c_str(), nullptr);
  }
}

TYPED_TEST(Ascii, NumbersReadToTheLastBit) {
  using V = TypeParam;
  using T = scalar<V>;
  std::vector<std::string> tokens = {
      std::string("0.").append(5000, '0') + "1e5001", std::string("1").append(5000, '0') + "e-5000",
      std::string(5000, '0') + "12.5", std::string(310, '9'),
      std::string("1").append(3000, '3') + std::string(".").append(3000, '3') + "e-2990"};
  std::mt19937_64 engine(5);
  char text[2000];
  const auto print = [&](const char* format, auto... numbers) {
    std::snprintf(text, sizeof text, format, numbers...);
    tokens.emplace_back(text);
  };
  for (int i = 0; i < 3000; ++i) {
    const auto bits = engine();
    print("%" PRIu64 ".%" PRIu64 "e%d", bits >> (bits % 64), engine(),
          static_cast<int>(engine() % 700) - 350);
  }
  // Midpoints between neighbours in full and a little more.
  for (int i = 0; i < 300; ++i) {
    const int least = std::numeric_limits<T>::min_exponent - std::numeric_limits<T>::digits;
    const auto mantissa = static_cast<long double>(engine() >> (65 - std::numeric_limits<T>::digits)) + 0.5L;
    const auto exponent = i < 100 ? least : least + static_cast<int>(engine() % 400);
    print("%.900Le", std::ldexp(mantissa, exponent));
    print("%.1100Lf", std::ldexp(mantissa, exponent));
    for (const std::size_t zeros : {0U, 1000U}) tokens.push_back(text + std::string(zeros, '0') + "10");
  }
  for (const auto& token : tokens) {
    EXPECT_TRUE(same_bits(all_vectors<V>(token + " 7").first.at(0), samples<V>{parsed<T>(token), 7}))
        << token;
  }
}

TYPED_TEST(Ascii, TheFormWritten) {
  using V = TypeParam;
  const decimal_comma locale;
  signal<V> v({1.0 / 3, -1e30, 0, 12345678}, true);
  v.delta = scalar<V>(0.1);
  const auto text = written<V>(v, 1);
  const std::string header = "#DSP ASCII data from sigpak package\n#DSP points = 2\n#DSP complex = 1\n";
  EXPECT_EQ(text, header + (is_double<V>
                                ? "#DSP type = 8\n#DSP delta = 0.1\n0.3333333333333333 -1e+30\n0 12345678\n"
                                : "#DSP type = 4\n#DSP delta = 0.1\n0.3333333 -1e+30\n0 1.234568e+07\n"));
  EXPECT_EQ(written([&v](std::FILE* f) { EXPECT_EQ(TWIN(f_fwrite_ascii)(&v, f), 0); }), text);
  EXPECT_EQ(written<V>(v, 0x201) + written<V>(v, 0x101), text);
  EXPECT_EQ(written<V>(v, 0x301), "");
  v.points = 0xfffffffe;
  v.complex = 7;
  EXPECT_EQ(written<V>(v, 1).substr(36, 34), "#DSP points = -2\n#DSP complex = 7\n");
}

TYPED_TEST(Ascii, NumbersAreWrittenAsPrintedAndReadBack) {
  using V = TypeParam;
  auto data = awkward<V>();
  for (const auto x : noise<V>(3000)) data.push_back(std::ldexp(x, static_cast<int>(data.size() % 180) - 90));
  samples<V> wanted;
  std::string lines = "#DSP delta = 1\n";
  for (const auto x : data) {
    char printed[64];
    std::snprintf(printed, sizeof printed, is_double<V> ? "%.16g" : "%.7g", static_cast<double>(x));
    lines.append(printed).append("\n");
    wanted.push_back(parsed<scalar<V>>(printed));
  }
  const auto text = written<V>(signal<V>(data), 1);
  EXPECT_TRUE(text.ends_with(lines));
  EXPECT_TRUE(same_bits(all_vectors<V>(text).first.at(0), wanted));
}

TYPED_TEST(Ascii, StorageGrowsInBlocks) {
  using V = TypeParam;
  for (const int count : {1023, 1024, 1025, 3072}) {
    for (const bool pairs : {false, true}) {
      std::string text = pairs ? as_complex : "";
      samples<V> wanted;
      for (int i = 0; i < count; ++i) {
        text += std::to_string(i) + "\n";
        wanted.push_back(static_cast<scalar<V>>(i));
      }
      if (pairs && count % 2 != 0) wanted.push_back(0);
      const auto refusals = failures_before_success<failing_records>([&] {
        V lent{.delta = 1, .data = wanted.data(), .alloc = 0, .points = 2, .complex = 0, .reserved = 0};
        const auto status = TWIN(f_fread)(&lent, piped(text).get());
        if (status == 1) {
          EXPECT_EQ(lent.alloc, (count / 1024 + 1) * 1024);
          EXPECT_EQ(samples<V>(lent.data, lent.data + scalars(&lent)), wanted);
        }
        EXPECT_EQ(lent.data == nullptr, status == -1);
        TWIN(_destroy)(&lent);
        return status;
      });
      EXPECT_EQ(refusals, count / 1024 + 1);
    }
  }
}

TYPED_TEST(Ascii, DamagedAndEndlessTextsDoNoHarm) {
  using V = TypeParam;
  expect_harmless<V>(
      "#DSP ASCII data from sigpak package\n#DSP points = 3\n#DSP complex = 1\n"
      "#DSP delta = 2.5e-1\n1.5 -2\n0x1f inf\n0 nan\n",
      1024);
  const failing_records watch(LONG_MAX);
  for (const char* start : {"", "0.", "1e", "0x", "#", "nan(", "-"}) {
    for (const char filler : {'0', '7', ' ', 'a'}) {
      for (const auto& values : all_vectors<V>(std::string(start).append(1'000'000, filler)).first) {
        EXPECT_LE(values.size(), 1U);
      }
    }
  }
  EXPECT_LE(watch.largest<V>(), 1024);
}

}  // namespace
}  // namespace sigpak::test
