// The ASCII form: texts and what they read as, numbers to the last bit, and texts that lie.
#include <cinttypes>
#include <clocale>

#include "io/streams.h"

namespace sigpak::test {
namespace {

template <class V> class Ascii : public testing::Test {};
TYPED_TEST_SUITE(Ascii, records, record_names);

constexpr double inf = std::numeric_limits<double>::infinity();

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
    {" \n\t ", 1, {}},
    {"1", 1, {1}},
    {"1E+2 1e-2", 1, {100, 0.01}},
    {"1-2", 1, {1, -2}},
    {"1e400 -1e400 1e99999999999999999999", 1, {inf, -inf, inf}},
    {"1e-400 0e99999999999999999999 1e-99999999999999999999", 1, {0, 0, 0}},
    {"inf -INF +Infinity", 1, {inf, -inf, inf}},
    // what is no number
    {"1e", -1, {}},
    {"1e 2", -1, {}},
    {"1 1e+", -1, {1}},
    {"-", -1, {}},
    {"1 -", -1, {1}},
    {"+-1", -1, {}},
    {".", -1, {}},
    {".e1", -1, {}},
    {"1,5", -1, {1}},
    {"1 x", -1, {1}},
    {"infi", -1, {}},
    {"infinit", -1, {}},
    {"na", -1, {}},
    {"nan(1", -1, {}},
    {std::string("1\0 2", 4), -1, {1}},
    {"\xEF\xBB\xBF"
     "1",
     -1,
     {}},
    // hexadecimal
    {"0x1A -0x1A 0xffffffff -0x10 +0x7", 1, {26, -26, -1, -16, 7}},
    {"0x80000000 -0x80000000 0x1ffffffff 0xFf", 1, {-2147483648.0, -2147483648.0, -1, 255}},
    {"0X1A", -1, {0}},
    {"0x", -1, {}},
    {"0xg", -1, {}},
    {"0x 1", -1, {}},
    {"0x-1", -1, {}},
    {"0x1.8", 1, {1, 0.8}},
    {"0x0x1F", 1, {31}},
    {"0x0x", -1, {}},
    {"0.0x10 -0e5x10", 1, {16, -16}},
    {"1x10", -1, {1}},
    {"0 0", 1, {0, 0}},
    {"0", 1, {0}},
    // what comments declare
    {"#DSP delta = 0.5\n1 2", 1, {1, 2}, 0.5},
    {"1 #DSP delta = 4\n2", 1, {1, 2}, 4},
    {"  #DSP delta=7\n", 1, {}, 7},
    {"#DSP   delta  =\t-1e-3 and more\n", 1, {}, -1e-3},
    {"#DSPdelta=inf\n", 1, {}, inf},
    {"#DSP delta = 1e\n", 1, {}},
    {"#DSP delta = x\n", 1, {}},
    {"# DSP delta = 2\n#dsp delta = 2\n#DSP delta 2\n##DSP delta = 2\n", 1, {}},
    {"#DSP delta = 25", 1, {}, 2},  // without a line end the last digit goes
    {points_3 + "1 2 3", 1, {1, 2, 3}},
    {points_3 + "1 2", -1, {1, 2}},
    {points_3, -1, {}},
    {"1 2 3 " + points_3, 1, {1, 2, 3}},
    {"1 2 " + points_3, -1, {1, 2}},
    {"#DSP points = -4\n", 1, {}},
    {"#DSP points = 0\n1", 1, {}},
    {"#DSP points = +2\n1 2", 1, {1, 2}},
    {"#DSP points = +-2\n1 2 3", 1, {1, 2, 3}},
    {"#DSP points = 2.9\n1 2", 1, {1, 2}},
    {"#DSP points = 99999999999999999999\n1", -1, {1}},
    {"#DSP points = 9223372036854775807\n" + as_complex + "1", -1, {1, 0}, 1, true},
    {"#DSP points = -99999999999999999999\n", 1, {}},
    {as_complex + "1 2 3 4", 1, {1, 2, 3, 4}, 1, true},
    {as_complex + "1 2 3", 1, {1, 2, 3, 0}, 1, true},
    {as_complex, 1, {}, 1, true},
    {"#DSP complex = -9\n#DSP points = 1\n1", 1, {1, 0}, 1, true},
    {as_complex + "#DSP complex = 0\n1 2", 1, {1, 2}},
    {as_complex + "1 2 x", -1, {1, 2}},
    {"#DSP points = 2\n" + as_complex + "1 2 3", 1, {1, 2, 3, 0}, 1, true},
    {"1\n2\n# a remark, 3\n4", 1, {1, 2, 4}},
    {"1# no, 2\n3", 1, {1, 3}},
    {std::string("#DSP delta = 5\0 6\n1", 19), 1, {1}, 5},
};

TYPED_TEST(Ascii, TextsAndWhatTheyReadAs) {
  using V = TypeParam;
  for (const auto& c : cases) {
    signal<V> v{9, 9};
    v.complex = 1;
    v.delta = 3;
    EXPECT_EQ(TWIN(f_fread)(&v, reading(c.text).get()), c.status) << c.text;
    samples<V> wanted;
    for (const double x : c.values) wanted.push_back(static_cast<scalar<V>>(x));
    EXPECT_EQ(v.values(), wanted) << c.text;
    EXPECT_EQ(v.delta, static_cast<scalar<V>>(c.delta)) << c.text;
    EXPECT_EQ(v.complex != 0, c.complex) << c.text;
  }
}

TYPED_TEST(Ascii, NotANumberIsANumber) {
  using V = TypeParam;
  signal<V> v;
  const std::string text = "nan -NaN nan(0x1f_) 1";
  ASSERT_EQ(TWIN(f_fread)(&v, reading(text).get()), 1);
  ASSERT_EQ(v.points, 4U);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(std::isnan(v.data[i]));
  EXPECT_TRUE(std::signbit(v.data[1]));
}

TYPED_TEST(Ascii, NegativeZeroKeepsItsSign) {
  using V = TypeParam;
  signal<V> v;
  const std::string text = "-0 0 -0.0e3";
  ASSERT_EQ(TWIN(f_fread)(&v, reading(text).get()), 1);
  EXPECT_TRUE(same_bits(v.values(), samples<V>{-scalar<V>(0), 0, -scalar<V>(0)}));
}

// Every vector of the stream and the status that ended it.
template <record V> std::pair<std::vector<samples<V>>, std::int32_t> all_vectors(const std::string& text) {
  const auto f = reading(text);
  std::vector<samples<V>> out;
  signal<V> v;
  std::int32_t status = 1;
  while ((status = TWIN(f_fread)(&v, f.get())) == 1) out.push_back(v.values());
  return {out, status};
}

TYPED_TEST(Ascii, DeclaredCountsPartAStreamIntoVectors) {
  using V = TypeParam;
  using S = std::vector<samples<V>>;
  EXPECT_EQ(all_vectors<V>(points_3 + "1 2 3 4 5"), std::pair(S{{1, 2, 3}, {4, 5}}, 0));
  EXPECT_EQ(all_vectors<V>(points_3 + "1 2 0 4"), std::pair(S{{1, 2, 0}, {4}}, 0));
  EXPECT_EQ(all_vectors<V>(points_3 + "1 2 0x4\n"), std::pair(S{{1, 2, 4}, {}}, 0));
  EXPECT_EQ(all_vectors<V>(points_3 + "1 2 3" + points_3 + "4 5 6\n#DSP points = 1\n7 "),
            std::pair(S{{1, 2, 3}, {4, 5, 6}, {7}, {}}, 0));
  EXPECT_EQ(all_vectors<V>("#DSP points = 0\n1 #DSP points = 2\n2 3"), std::pair(S{{}, {1, 2}, {3}}, 0));
  EXPECT_EQ(all_vectors<V>(points_3 + "1 2 3 x").second, -1);
}

TYPED_TEST(Ascii, VectorsOfBothFormsInOneStream) {
  using V = TypeParam;
  const signal<V> a{1, 2};
  const signal<V> b({3, 4}, true);
  const auto text = written([&](std::FILE* f) {
    TWIN(f_fwrite)(&a, f);
    TWIN(f_fwrite)(&b, f);
    TWIN(f_fwrite_ascii)(&b, f);
    TWIN(f_fwrite_ascii)(&a, f);
  });
  EXPECT_EQ(all_vectors<V>(text), std::pair(std::vector<samples<V>>{{1, 2}, {3, 4}, {3, 4}, {1, 2}, {}}, 0));
}

TYPED_TEST(Ascii, LongCommentsLoseTheirTail) {
  using V = TypeParam;
  // The kept part has 255 characters and loses its last: the delta is cut inside its digits.
  const std::string key = "#DSP delta = ";
  for (const std::size_t blanks : {235U, 238U, 239U, 240U, 241U, 300U, 5000U}) {
    const std::string line = key + std::string(blanks, ' ') + "1234";
    const std::size_t kept = line.size() + 1 <= 255 ? line.size() : 254;
    const double wanted = kept <= key.size() + blanks
                              ? 1
                              : std::stod(line.substr(key.size() + blanks, kept - key.size() - blanks));
    signal<V> v;
    const std::string text = line + "\n6";
    ASSERT_EQ(TWIN(f_fread)(&v, reading(text).get()), 1);
    EXPECT_EQ(v.delta, static_cast<scalar<V>>(wanted)) << blanks;
    EXPECT_EQ(v.values(), samples<V>{6});
  }
}

TYPED_TEST(Ascii, NumbersReadToTheLastBit) {
  using V = TypeParam;
  using T = scalar<V>;
  const auto check = [](const std::string& token) {
    T wanted;
    if constexpr (is_double<V>) {
      wanted = std::strtod(token.c_str(), nullptr);
    } else {
      wanted = std::strtof(token.c_str(), nullptr);
    }
    signal<V> v;
    const auto text = token + " 7";
    ASSERT_EQ(TWIN(f_fread)(&v, reading(text).get()), 1) << token;
    ASSERT_EQ(v.points, 2U) << token;
    EXPECT_TRUE(same_bits(samples<V>{v.data[0]}, samples<V>{wanted})) << token;
  };
  std::mt19937_64 engine(5);
  char text[2000];
  for (int i = 0; i < 3000; ++i) {
    const auto bits = engine();
    std::snprintf(text, sizeof text, "%" PRIu64 ".%" PRIu64 "e%d", bits >> (bits % 64), engine(),
                  static_cast<int>(engine() % 700) - 350);
    check(text);
  }
  // Midpoints between neighbours in full, a little more, and a little less.
  for (int i = 0; i < 300; ++i) {
    const int least = std::numeric_limits<T>::min_exponent - std::numeric_limits<T>::digits;
    const auto mantissa = static_cast<long double>(engine() >> (65 - std::numeric_limits<T>::digits)) + 0.5L;
    const auto exponent = i < 100 ? least : least + static_cast<int>(engine() % 400);
    std::snprintf(text, sizeof text, "%.1100Lf", std::ldexp(mantissa, exponent));
    check(text);
    check(std::string(text) + "1");
    check(std::string(text) + std::string(1000, '0') + "1");
    std::snprintf(text, sizeof text, "%.900Le", std::ldexp(mantissa, exponent));
    check(text);
  }
  check(std::string("0.").append(5000, '0') + "1e5001");
  check(std::string("1").append(5000, '0') + "e-5000");
  check(std::string(5000, '0') + "12.5");
  check(std::string(310, '9'));
  check(std::string("1").append(3000, '3') + std::string(".").append(3000, '3') + "e-2990");
}

TYPED_TEST(Ascii, TheFormWritten) {
  using V = TypeParam;
  signal<V> v({1.0 / 3, -1e30, 0, 12345678}, true);
  v.delta = scalar<V>(0.1);
  const auto text = written([&v](std::FILE* f) { EXPECT_EQ(TWIN(f_fwrite_ascii)(&v, f), 0); });
  const std::string header = "#DSP ASCII data from sigpak package\n#DSP points = 2\n#DSP complex = 1\n";
  EXPECT_EQ(text, header + (is_double<V>
                                ? "#DSP type = 8\n#DSP delta = 0.1\n0.3333333333333333 -1e+30\n0 12345678\n"
                                : "#DSP type = 4\n#DSP delta = 0.1\n0.3333333 -1e+30\n0 1.234568e+07\n"));
  const auto part = [&v](std::int32_t flags) {
    return written([&](std::FILE* f) { EXPECT_EQ(TWIN(f_fwrite2)(&v, f, flags), 0); });
  };
  EXPECT_EQ(part(1), text);
  EXPECT_EQ(part(0x201) + part(0x101), text);
  EXPECT_EQ(part(0x301), "");
  v.points = 0xfffffffe;
  v.complex = 7;
  EXPECT_EQ(part(1).substr(36, 34), "#DSP points = -2\n#DSP complex = 7\n");
}

TYPED_TEST(Ascii, WhatIsWrittenReadsBackAsPrinted) {
  using V = TypeParam;
  auto data = awkward<V>();
  std::mt19937_64 engine(2);
  while (data.size() < 3000) {
    data.push_back(static_cast<scalar<V>>(
        std::ldexp(static_cast<double>(engine()), static_cast<int>(engine() % 180) - 150)));
  }
  signal<V> v(data);
  v.delta = scalar<V>(1) / 3;
  const auto text = written([&v](std::FILE* f) { TWIN(f_fwrite_ascii)(&v, f); });
  signal<V> back;
  ASSERT_EQ(TWIN(f_fread)(&back, reading(text).get()), 1);
  samples<V> wanted;
  for (const auto x : data) {
    char printed[64];
    std::snprintf(printed, sizeof printed, is_double<V> ? "%.16g" : "%.7g", static_cast<double>(x));
    EXPECT_NE(text.find(std::string("\n") + printed + "\n"), std::string::npos) << printed;
    wanted.push_back(is_double<V> ? static_cast<scalar<V>>(std::strtod(printed, nullptr))
                                  : static_cast<scalar<V>>(std::strtof(printed, nullptr)));
  }
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    if (std::isnan(wanted[i])) {
      EXPECT_TRUE(std::isnan(back.data[i]));
    } else {
      ASSERT_TRUE(same_bits(samples<V>{back.data[i]}, samples<V>{wanted[i]})) << i;
    }
  }
}

TYPED_TEST(Ascii, BlocksOfStorage) {
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
      signal<V> v{5, 5};
      v.lend();
      ASSERT_EQ(TWIN(f_fread)(&v, piped(text).get()), 1);
      EXPECT_EQ(v.values(), wanted);
      EXPECT_EQ(v.alloc, (count / 1024 + 1) * 1024);
      EXPECT_EQ(v.lent(), (samples<V>{5, 5}));
      for (int allowed = 0; allowed < count / 1024 + 1; ++allowed) {
        signal<V> small;
        const failing_records<V> most(allowed);
        EXPECT_EQ(TWIN(f_fread)(&small, reading(text).get()), -1);
        EXPECT_EQ(small.data, nullptr);
        small.points = 0;
      }
    }
  }
}

TYPED_TEST(Ascii, CutOrDamagedAnywhereItDoesNoHarm) {
  using V = TypeParam;
  const std::string text =
      "#DSP ASCII data from sigpak package\n#DSP points = 3\n#DSP complex = 1\n#DSP delta = 2.5e-1\n"
      "1.5 -2\n0x1f inf\n0 nan\n";
  const auto statuses = [](const std::string& damaged) {
    const auto f = reading(damaged);
    signal<V> v;
    std::int32_t status = 1;
    int vectors = 0;
    while ((status = TWIN(f_fread)(&v, f.get())) == 1) ++vectors;
    EXPECT_LE(vectors, 4) << damaged;
    return status;
  };
  const largest_request<V> watch;
  for (std::size_t length = 0; length <= text.size(); ++length) statuses(text.substr(0, length));
  for (std::size_t at = 0; at < text.size(); ++at) {
    for (int value = 0; value < 256; ++value) {
      std::string damaged = text;
      damaged[at] = static_cast<char>(value);
      statuses(damaged);
    }
  }
  EXPECT_LE(watch.scalars(), 1024);
}

TYPED_TEST(Ascii, EndlessTokensNeedNoMemory) {
  using V = TypeParam;
  const largest_request<V> watch;
  for (const char* start : {"", "0.", "1e", "0x", "#", "nan(", "-"}) {
    for (const char filler : {'0', '7', ' ', 'a'}) {
      signal<V> v;
      const auto text = std::string(start).append(3'000'000, filler);
      const auto status = TWIN(f_fread)(&v, piped(text).get());
      EXPECT_TRUE(status == 1 || status == -1);
      EXPECT_LE(v.points, 1U);
    }
  }
  EXPECT_LE(watch.scalars(), 1024);
}

TYPED_TEST(Ascii, ThePointIsAPointInEveryLocale) {
  using V = TypeParam;
  const char* found = nullptr;
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "fr_FR"}) {
    if (found == nullptr) found = std::setlocale(LC_ALL, name);
  }
  if (found == nullptr) GTEST_SKIP() << "no locale with a decimal comma here";
  signal<V> v{1.5, 2.25};
  v.delta = scalar<V>(0.5);
  const auto text = written([&v](std::FILE* f) {
    TWIN(f_fwrite_ascii)(&v, f);
    TWIN(f_fwrite2)(&v, f, 2);
  });
  signal<V> back;
  const auto status = TWIN(f_fread)(&back, reading(text).get());
  std::setlocale(LC_ALL, "C");
  EXPECT_NE(text.find("delta = 0.5\n1.5\n2.25\n[2/0.5] 1.5 2.25\n"), std::string::npos) << text;
  EXPECT_EQ(status, 1);
  EXPECT_EQ(back.values(), v.values());
  EXPECT_EQ(back.delta, v.delta);
}

}  // namespace
}  // namespace sigpak::test
