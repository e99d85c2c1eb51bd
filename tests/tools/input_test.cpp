// SPDX-License-Identifier: MIT
// What the program understands of tables, arrays, sound, raw numbers and pipes, and what it writes of them.
#include <gtest/gtest.h>
#include <sigpak.h>
#include <sndfile.h>

#include <cmath>
#include <cstring>
#include <regex>

#include "tools/program.h"

using namespace program;

namespace {

std::string monthly() {
  std::string text = "date,co2\n";
  for (int i = 0; i < 48; ++i) {
    const int month = i % 12 + 1;
    text += std::to_string(1960 + i / 12) + (month < 10 ? "-0" : "-") + std::to_string(month) + "-01,315." +
            std::to_string(i) + "\n";
  }
  return text;
}

std::string utf16(const std::string& latin, bool big_endian) {
  std::string out = big_endian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : latin) out += big_endian ? std::string{'\0', c} : std::string{c, '\0'};
  return out;
}

// What was understood and how long it is, as "understood | samples"; or the message.
std::string told_by(const result& r) {
  if (r.status != 0) return r.err.substr(r.err.find(':') + 2, r.err.size() - r.err.find(':') - 3);
  std::smatch parts;
  std::string out;
  for (const char* const row :
       {"understood  (.*)", "samples     (.*)", "gaps        (.*)", "warning     (.*)"}) {
    if (std::regex_search(r.out, parts, std::regex(row))) out += (out.empty() ? "" : " | ") + parts[1].str();
  }
  return out;
}

std::string told(const std::string& arguments) { return told_by(run("info " + arguments)); }

// The same of the file through a pipe.
std::string told_piped(const std::string& file, const std::string& options = "") {
  return told_by(run_shell("cat " + quoted(file) + " | $SIGPAK info - " + options));
}

template <class T> std::string bytes_of(const std::vector<T>& x) {
  return {reinterpret_cast<const char*>(x.data()), x.size() * sizeof(T)};
}

std::string csv_of(const std::string& arguments) {
  const auto r = run("convert --format csv " + arguments);
  return r.status == 0 ? r.out : r.err;
}

}  // namespace

TEST(Input, TablesAreUnderstoodOrRefused) {
  const std::string twice = "; --delimiter , or --decimal , tells which";
  const std::string both =
      "; --delimiter , takes every comma for the end of a column, and decimal commas need columns parted by "
      "something else";
  struct {
    std::string text;
    std::string options;
    std::string expected;
  } const cases[] = {
      // what parts the cells, and decimal signs
      {"t,v\n0,1.5\n0.001,2.5\n0.002,3.5\n", "",
       "column 2 'v' of 2, time 1 't' in s, 1 kHz | 3 samples at 1000 Hz, 0.003 s"},
      {"t;v\n0;1,5\n0,5;2,5\n1;3,5\n", "",
       "column 2 'v' of 2, time 1 't' in s, 2 Hz | 3 samples at 2 Hz, 1.5 s"},
      {"0.0;1,5\n0.5;2,5\n1.0;3,5\n", "", "column 2 of 2, time 1 in s, 2 Hz | 3 samples at 2 Hz, 1.5 s"},
      {"0\t1,5\n0,5\t2,5\n1\t3,5\n", "", "column 2 of 2, time 1 in s, 2 Hz | 3 samples at 2 Hz, 1.5 s"},
      {"0,0  1,5\n0,1  2,5\n0,2  3,5\n", "", "column 2 of 2, time 1 in s, 10 Hz | 3 samples at 10 Hz, 0.3 s"},
      {"20,37\n20,05\n19,98\n20,11\n", "", "column of numbers | 4 samples, no rate"},
      {"U\n20,37\n20,41\n", "", "column 1 'U' | 2 samples, no rate"},
      {"20,37\n20,41\n19,98\n", "", "TABLE: \"19,98\" can be 19 and 98, or 19.98" + twice},
      {"20,37\n20,41\n19,98\n", "--decimal ,", "column of numbers | 3 samples, no rate"},
      {"0,1,5\n1,0,208\n2,0,041\n", "", "TABLE: \"0,041\" can be two numbers or one" + both},
      {"0,1,5\n1,-0,208\n2,1,41\n", "", "TABLE: \"-0,208\" can be two numbers or one" + both},
      {"time,u\n0,1,5\n1,3,208\n2,0,041\n", "", "TABLE: \"0,041\" can be two numbers or one" + both},
      {"0,1,5\n1,0,208\n2,0,041\n", "--delimiter ,",
       "columns 2, 3 of 3, time 1 in s, 1 Hz | 3 samples at 1 Hz, 3 s"},
      {"t,u,v\n0,1,5\n1,0,208\n2,0,041\n", "",
       "columns 2 'u', 3 'v' of 3, time 1 't' in s, 1 Hz | 3 samples at 1 Hz, 3 s"},
      {"0,512,498\n1,513,480\n2,0,499\n", "",
       "columns 2, 3 of 3, time 1 in s, 1 Hz | 3 samples at 1 Hz, 3 s"},
      {"0,1,05\n1,0.5,208\n2,0,041\n", "", "columns 2, 3 of 3, time 1 in s, 1 Hz | 3 samples at 1 Hz, 3 s"},
      {"1,37\n2,41\n3,98\n", "--delimiter ,", "column 2 of 2, time 1 in s, 1 Hz | 3 samples at 1 Hz, 3 s"},
      {"1700000000000,1\n1700000000010,2\n1700000000020,1\n", "",
       "column 2 of 2, time 1 in ms, 100 Hz | 3 samples at 100 Hz, 0.03 s"},
      {"\"time, s\",\"U, V\"\n\"0.0\",\"1.5\"\n\"0.5\",\"2.5\"\n", "",
       "column 2 'U, V' of 2, time 1 'time, s' in s, 2 Hz | 2 samples at 2 Hz, 1 s"},
      {" 0.0D+00  1.0D+00\n 1.0D-03 -2.0d+00\n 2.0D-03  3.0D+00\n", "",
       "column 2 of 2, time 1 in s, 1 kHz | 3 samples at 1000 Hz, 0.003 s"},
      {"\"time in s\";\"value, in V\"\n5; 0,5;\n5,001; 0,6;\n5,002; 0,4;\n", "",
       "column 2 'value, in V' of 3, time 1 'time in s' in s, 1 kHz | 3 samples at 1000 Hz, 0.003 s"},
      // line ends and encodings
      {"1\r2\r3\r4\r", "", "column of numbers | 4 samples, no rate"},
      {"\xEF\xBB\xBFtime_ms,U_V,I_mA\r\n0,1,2\r\n1,2,3\r\n2,3,4\r\n", "-c I_mA",
       "column 3 'I_mA' of 3, time 1 'time_ms' in ms, 1 kHz | 3 samples at 1000 Hz, 0.003 s"},
      {utf16("Zeit [ms];U [V]\r\n0;1,5\r\n10;2,5\r\n20;1,5\r\n", false), "-c U",
       "column 2 'U [V]' of 2, time 1 'Zeit [ms]' in ms, 100 Hz | 3 samples at 100 Hz, 0.03 s"},
      {utf16("1\n2\n3\n", true) + "\xDA\x59", "",
       "column of numbers | 3 samples, no rate | line 4 is cut short and was left away"},
      {"Zeit [min];T [\xB0"
       "C]\n0;20,5\n1;20,7\n2;20,9\n",
       "",
       "column 2 'T [\xC2\xB0"
       "C]' of 2, time 1 'Zeit [min]' in min, 0.0166667 Hz | 3 samples at 0.0166666667 Hz, 180 s"},
      // headings and preambles
      {"Record Length,2500,,-0.002,0.04,\nSample "
       "Interval,1e-03,,-0.001,0.08,\n,,,0.000,0.16,\n,,,0.001,0.12,\n,,,0.002,0.1,\n",
       "", "column 5 of 6, time 4 in s, 1 kHz | 5 samples at 1000 Hz, 0.005 s"},
      {"Time,Channel A,Channel B\n(ms),(V),(mV)\n\n0.0,1.5,10\n0.1,2.5,20\n0.2,3.5,30\n", "-c 2",
       "column 3 'Channel B' of 3, time 1 'Time' in ms, 10 kHz | 3 samples at 10000 Hz, 0.0003 s"},
      {"X,CH1,Start,Increment\nSequence,Volt,-6e-3,1e-3\n0,1.5\n1,2.5\n2,3.5\n3,4.5\n", "",
       "column 2 of 2, index 1 passed over, 1 kHz by the lines above | 4 samples at 1000 Hz, 0.004 s"},
      {"# Sampling rate: 48 kHz\n1\n2\n3\n", "",
       "column of numbers, 48 kHz by the lines above | 3 samples at 48000 Hz, 6.25e-05 s"},
      {"# made on 3.4.2020, by x\n# t v\n% more\n0 1 # a\n1 2\n// b\n2 3\n", "",
       "column 2 'v' of 2, time 1 't' in s, 1 Hz | 3 samples at 1 Hz, 3 s"},
      {"# t a b\nt a b\n\n0\t7  1.5 # x\r\n0.5\t7  2.5 # x\r\n1\t7  3.5 # x\r\n", "-c 2",
       "column 3 'b' of 3, time 1 't' in s, 2 Hz | 3 samples at 2 Hz, 1.5 s"},
      {"# t [ms]  U [V]\n0 1\n1 2\n2 3\n", "-c U",
       "column 2 'U [V]' of 2, time 1 't [ms]' in ms, 1 kHz | 3 samples at 1000 Hz, 0.003 s"},
      {"x-axis,1\nsecond,Volt\n-0.5,1\n0.0,2\n0.5,3\n", "",
       "column 2 '1' of 2, time 1 'x-axis' in s, 2 Hz | 3 samples at 2 Hz, 1.5 s"},
      {"time,status,v\n0,OK,1\n1,OK,2\n2,BAD,3\n", "",
       "column 3 'v' of 3, time 1 'time' in s, 1 Hz | 3 samples at 1 Hz, 3 s"},
      {"n,t_ms,x\n1,0,5\n2,20,6\n3,40,5\n", "",
       "column 3 'x' of 3, index 1 'n' passed over, time 2 't_ms' in ms, 50 Hz | 3 samples at 50 Hz, 0.06 s"},
      {"0 0.00 5\n1 0.02 6\n2 0.04 5\n3 0.06 7\n", "",
       "column 3 of 3, index 1 passed over, time 2 in s, 50 Hz | 4 samples at 50 Hz, 0.08 s"},
      {"\"a\" \"b\"\n\"1\" 1.5 2.5\n\"2\" 3.5 4.5\n\"3\" 5.5 6.5\n", "-c b",
       "column 3 'b' of 3, index 1 passed over | 3 samples, no rate"},
      // times
      {"2024-03-01T00:00:00Z,1\n2024-03-01T01:00:00.5+01:00,2\n2024-03-01T00:00:01Z,3\n", "",
       "column 2 of 2, time 1, 2 Hz | 3 samples at 2 Hz, 1.5 s"},
      {"2024-02-29 23:59:59 1\n2024-03-01 00:00:00 2\n2024-03-01 00:00:01 3\n", "",
       "column 3 of 3, time 1, 1 Hz | 3 samples at 1 Hz, 3 s"},
      {"23:59:59;1,5\n00:00:00;1,5\n00:00:01;2,5\n", "",
       "column 2 of 2, time 1, 1 Hz | 3 samples at 1 Hz, 3 s"},
      {monthly(), "", "column 2 'co2' of 2, time 1 'date', 12 per yr | 48 samples at 12 per yr, 4 yr"},
      {"1700.5; 5.0\n1701.5; 11.0\n1702.5; 16.0\n", "--time-unit yr",
       "column 2 of 2, time 1 in yr, 1 per yr | 3 samples at 1 per yr, 3 yr"},
      {"0.00 1\n0.03 2\n0.07 3\n0.10 4\n0.13 5\n0.17 6\n0.20 7\n", "",
       "column 2 of 2, time 1 in s, 30 Hz | 7 samples at 30 Hz, 0.233333 s"},
      {"0 1\n1 2\n2 3\n", "-r 48k",
       "column 2 of 2, time 1 passed over, 48 kHz | 3 samples at 48000 Hz, 6.25e-05 s"},
      {"5,1.5\n3,2.5\n4,3.5\n", "",
       "TABLE: column 1 does not increase, so it is no time; -t none takes every column for samples"},
      {"5,1.5\n3,2.5\n4,3.5\n", "-t none", "columns 1, 2 of 2 | 3 samples, no rate"},
      {"t,v\n0,1\n1,2\n2.3,3\n3,4\n4.4,5\n5,6\n6,6\n", "",
       "TABLE:6: the times are not evenly spaced: this one is off by 40 % of a step; --resample takes their "
       "mean rate"},
      {"t,v\n0,1\n1,2\n2,3\n1,4\n", "", "TABLE:5: the time does not increase"},
      // what is missing
      {"t,v\n0,1\n1,\n2,3\n3,NA\n5,6\n", "",
       "column 2 'v' of 2, time 1 't' in s, 1 Hz | 3 samples at 1 Hz, 3 s | 2"},
      {"t,v\n0,1\n1,2\n5,6\n", "--gaps linear",
       "column 2 'v' of 2, time 1 't' in s, 1 Hz | 6 samples at 1 Hz, 6 s | 1, 3 samples filled"},
      {"t,v\n0,1.5\n1,2.5\n2,3.5\n3", "",
       "column 2 'v' of 2, time 1 't' in s, 1 Hz | 3 samples at 1 Hz, 3 s | line 5 is cut short and was left "
       "away"},
      {"1,2,3\n2,3,4\n3,4\n4,5,6\n", "", "TABLE:3: 2 columns, but 3 before"},
      {"1.234,5;2\n2.345,6;3\n", "", "TABLE: column 1: \"1.234,5\" is no number with one decimal sign"},
      {"0;1,5\n1;1.234,5\n2;1.111,25\n", "",
       "TABLE: column 2: \"1.234,5\" is no number with one decimal sign"},
      {"0;1,5\n1;1.234,5\n2;1,25\n", "", "TABLE:2: not a number in \"1.234,5\""},
      {"0.0,0x2b\n0.1,0x17\n0.2,0xff\n", "",
       "TABLE: column 2: \"0x2b\" is no number, and column 1 looks like the time; -t none takes it for "
       "samples"},
      {"t,word\n0,2b\n1,1f\n5,ff\n", "",
       "TABLE: column 2: \"2b\" is no number, and column 1 looks like the time; -t none takes it for "
       "samples"},
      {"t,word\n0,2b\n1,1f\n5,ff\n", "-t none", "column 1 't' of 2 | 3 samples, no rate"},
      {"U,test\n1,a1\n2,a2\n4,a3\n", "", "column 1 'U' of 2 | 3 samples, no rate"},
      {"03/04/2024,1\n03/05/2024,2\n", "",
       "TABLE: column 1: \"03/04/2024\" can be two dates; 2024-12-31 is understood"},
      {"1\n2\noops\n4\n", "", "TABLE:3: not a number in \"oops\""},
      {"t,v\n0,1\n1,2\n2,3\n", "-c w", "TABLE: there is no channel 'w' among v"},
      {"There are no numbers.\nNot one.\n", "",
       "TABLE: no line of numbers in it; it begins \"There are no numbers.\""},
      {std::string("\x1F\x8B\x08\x00zipped", 10), "",
       "TABLE: compressed by gzip; zcat it into \"sigpak ... -\""},
      {std::string("\x01\x02\x03\x00garbage", 11), "",
       "TABLE: not a vector, not text, no sound that is known; --raw reads numbers without a header"},
  };
  for (const auto& c : cases) {
    const auto name = write_file("table", c.text);
    const auto expected = std::regex_replace(c.expected, std::regex("TABLE"), name);
    EXPECT_EQ(told(name + " " + c.options), expected) << c.text;
    if (c.expected.starts_with("TABLE")) continue;
    EXPECT_EQ(told_piped(name, c.options), expected) << c.text;
  }
}

// Blocks end inside of numbers and lines; long digits go another way than short ones.
TEST(Input, NumbersAreReadToTheLastBit) {
  std::string text = "time_s,x,y\n";
  std::string exact = "time_s,x,y\n";
  for (int i = 0; i < 40000; ++i) {
    const double x = std::sin(1e3 * i) * std::pow(10, i % 60 - 30);
    char line[128];
    std::snprintf(line, sizeof line, "%d,%.17g,%.*f\n", i, x, i % 12, x);
    text += line;
  }
  const auto file = write_file("long", text);
  const auto array = path("long.npy");
  ASSERT_EQ(run("convert " + file + " -o " + array).status, 0);
  const auto bytes = read_file(array).substr(128);
  ASSERT_EQ(bytes.size(), 40000U * 16);
  const char* at = text.c_str() + std::strlen("time_s,x,y\n");
  for (std::size_t i = 0; i < 40000; ++i) {
    double row[2];
    std::memcpy(row, bytes.data() + 16 * i, sizeof row);
    char* end = nullptr;
    std::strtod(at, &end);
    for (const double value : row) ASSERT_EQ(value, std::strtod(end + 1, &end)) << i;
    at = end;
  }
}

TEST(Input, GapsAreRefusedSplitOrBridged) {
  const auto file = write_file("gaps.csv", "t,a,b\n0,,1\n1,1,2\n2,2,\n3,,4\n4,4,5\n7,7,8\n8,8,9\n9,,\n");
  EXPECT_EQ(csv_of(file + " -c a"), "sigpak: " + file + ":2: column 2 is empty; --gaps linear bridges it\n");
  EXPECT_EQ(csv_of(file + " --gaps linear"),
            "time_s,a,b\n0,1,2\n1,2,3\n2,3,4\n3,4,5\n4,5,6\n5,6,7\n6,7,8\n7,8,9\n");
  EXPECT_EQ(told(file + " -c b --gaps split"),
            "column 3 'b' of 3, time 1 't' in s, 1 Hz | 6 samples at 1 Hz, 6 s | 2");
  EXPECT_TRUE(says(csv_of(file + " -c b --gaps split"), "a gap would close up"));
  const auto missing = write_file("missing.csv", "t,a\n0,1\n1,1\n4,1\n");
  EXPECT_EQ(csv_of(missing), "sigpak: " + missing +
                                 ":4: 2 samples are missing before this line; --gaps linear bridges "
                                 "them, --gaps split goes around\n");
  const double nan = std::nan("");
  const auto raw = write_file("raw", bytes_of<double>({1, nan, 3, nan, nan}));
  EXPECT_TRUE(says(csv_of(raw + " --raw f64"), "sample 2 is not a number; --gaps linear bridges it"));
  EXPECT_EQ(csv_of(raw + " --raw f64 --gaps linear"), "ch1\n1\n2\n3\n");
  std::string uneven = "t,v\n";
  for (const double t : {0.0, 1.0, 2.4, 3.0, 4.0})
    uneven += std::to_string(t) + "," + std::to_string(2 * t) + "\n";
  EXPECT_EQ(csv_of(write_file("uneven.csv", uneven) + " --resample"), "time_s,v\n0,0\n1,2\n2,4\n3,6\n4,8\n");
}

TEST(Input, NumbersAsMachinesHoldThem) {
  const auto array = [](const std::string& type, const std::string& order, const std::string& shape,
                        const std::string& bytes) {
    std::string header =
        "{'descr': '" + type + "', 'fortran_order': " + order + ", 'shape': (" + shape + "), }";
    header.resize(117, ' ');
    return std::string("\x93NUMPY\x01\x00\x76\x00", 10) + header + "\n" + bytes;
  };
  const std::string six = bytes_of<double>({1, 2, 3, 4, 5, 6});
  struct {
    std::string options;
    std::string bytes;
    std::string values;
  } const cases[] = {
      {"--raw u8", "\x80\xC0", "ch1\n0\n0.5\n"},
      {"--raw s8", "\xC0\x40", "ch1\n-0.5\n0.5\n"},
      {"--raw s16le", std::string("\x00\x40\x00\x80", 4), "ch1\n0.5\n-1\n"},
      {"--raw 2xs16be", std::string("\x40\x00\x80\x00", 4), "ch1,ch2\n0.5,-1\n"},
      {"--raw s24be", std::string("\x40\x00\x00\xC0\x00\x00", 6), "ch1\n0.5\n-0.5\n"},
      {"--raw u24le", std::string("\x00\x00\x80\x00\x00\xC0", 6), "ch1\n0\n0.5\n"},
      {"--raw s32le", std::string("\x00\x00\x00\x20", 4), "ch1\n0.25\n"},
      {"--raw f32be", std::string("\x40\x20\x00\x00", 4), "ch1\n2.5\n"},
      {"--raw cf32le", bytes_of<float>({1.5F, -2.0F}), "ch1_re,ch1_im\n1.5,-2\n"},
      {"--raw cu8", std::string("\x00\xFF", 2), "ch1_re,ch1_im\n-1,1\n"},
      {"", array("<f8", "False", "3, 2", six), "ch1,ch2\n1,2\n3,4\n5,6\n"},
      {"", array("<f8", "True", "3, 2", six), "ch1,ch2\n1,4\n2,5\n3,6\n"},
      {"", array("<f8", "False", "2, 3", six), "ch1,ch2\n1,4\n2,5\n3,6\n"},
      {"", array("<c16", "False", "3,", six), "ch1_re,ch1_im\n1,2\n3,4\n5,6\n"},
      {"", array("|i1", "False", "3, 1", "\x01\x02\xFF"), "ch1\n1\n2\n-1\n"},
      {"", array(">u2", "False", "2,", std::string("\x01\x00\x00\x02", 4)), "ch1\n256\n2\n"},
      {"", array("|O", "False", "3,", ""), "the type '|O' cannot be read"},
      {"", array("<f8", "False", "3, 2, 1", six), "one or two axes"},
      {"--raw s17le", "12", "s17le"},
  };
  for (const auto& c : cases) {
    const auto file = write_file("numbers", c.bytes);
    const auto piped = run_shell("cat " + file + " | $SIGPAK convert --format csv - " + c.options);
    for (const std::string& text : {csv_of(file + ' ' + c.options), piped.out + piped.err}) {
      const bool read = c.values.starts_with("ch1");
      EXPECT_TRUE(read ? text == c.values : text.starts_with("sigpak: ") && text.find(c.values) != text.npos)
          << c.options << ": " << text;
    }
  }
  const auto cut = write_file("cut", array("<f8", "False", "9,", six));
  EXPECT_TRUE(says(told(cut), "cut short: 6 of 9 samples were found"));
}

TEST(Input, SoundCutShortIsReadWithAWarning) {
  const waveform sine = [](int i) { return std::sin(0.1 * i); };
  const auto wave =
      read_file(write_sound("whole.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8000, 1000, {sine, sine}));
  const auto cut = write_file("cut.wav", wave.substr(0, 2044));
  for (const std::string& text : {told(cut), told_piped(cut)}) {
    EXPECT_EQ(text,
              "WAV, 16 bit, channels 1, 2 of 2 | 500 samples at 8000 Hz, 0.0625 s | "
              "cut short: 500 of 1000 samples were found");
  }
  EXPECT_TRUE(says(run("info --json " + cut).out, "\"truncated\":true,\"promised\":1000"));
  EXPECT_TRUE(says(run("spectrum " + cut).err, "cut short"));
  EXPECT_TRUE(says(run("stats " + write_file("s.csv", "Frequency (kHz),level\n0,1\n1,2\n2,3\n")).err,
                   "is a spectrum"));
  std::string endless = wave;
  for (const std::size_t at : {4U, 40U}) endless.replace(at, 4, "\xFF\xFF\xFF\xFF");
  EXPECT_EQ(told_piped(write_file("endless.wav", endless)),
            "WAV, 16 bit, channels 1, 2 of 2 | 1000 samples at 8000 Hz, 0.125 s")
      << "as writers to pipes leave it";
}

TEST(Input, ReadingBeginsWhereStandardInputStands) {
  const waveform half = [](int i) { return i == 0 ? 0.25 : 0.5; };
  const auto x = samples(half, 5);
  const auto flac = write_sound("mono.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 1000, 5, {half});
  for (const std::string& file :
       {flac, write_file("column", column(x)), write_vector("vector", x, 1, 0),
        write_vector("ascii", x, 1, 1),
        write_sound("mono.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1000, 5, {half})}) {
    const auto behind = write_file("behind", "garbage" + read_file(file));
    const auto last = [](const std::string& csv) { return csv.substr(csv.rfind('\n', csv.size() - 2)); };
    for (const std::string& text :
         {"(head -c 7 >/dev/null; $SIGPAK convert - --format csv) <" + behind,
          "(head -c 7 >/dev/null; cat) <" + behind + " | $SIGPAK convert - --format csv"}) {
      const auto r = run_shell(text);
      EXPECT_EQ(r.status, 0) << r.err;
      EXPECT_EQ(std::count(r.out.begin(), r.out.end(), '\n'), 6) << file << ": " << r.out;
      EXPECT_TRUE(last(r.out).ends_with("0.5\n")) << file << ": " << r.out;
    }
  }
}

TEST(Input, PartsChannelsAndRecords) {
  std::string text = "a_V,b_V\n";
  for (int i = 0; i < 10; ++i) text += std::to_string(i) + "," + std::to_string(10 - i) + "\n";
  const auto file = write_file("part.csv", text);
  EXPECT_EQ(csv_of(file + " -t none -r 2 --start 1 --duration 1.5 -c b_V -c 1"),
            "time_s,b_V,a_V\n0,8,2\n0.5,7,3\n1,6,4\n");
  EXPECT_EQ(csv_of(file + " -t none --start 20"), "a_V,b_V\n");
  const auto one = read_file(write_vector("one", {1, 2}, 0.5, 0));
  const auto other = read_file(write_vector("other", {3}, 0.5, 1));
  const auto both = write_file("both", one + one + other);
  EXPECT_EQ(csv_of(both), "time_s,ch1\n0,1\n0.5,2\n1,1\n1.5,2\n2,3\n") << "a stream is one signal";
  EXPECT_EQ(told(both + " --each"), "5 samples at 2 Hz, 2.5 s");
  const auto faster = read_file(write_vector("faster", {4}, 0.25, 0));
  EXPECT_TRUE(
      says(csv_of(write_file("mixed", one + faster)), "the records differ in spacing or form; --each"));
}

// What any form holds comes back from any other.
TEST(Convert, EveryFormGivesTheSamplesBack) {
  std::string text = "time_s,left,right\n";
  for (int i = 0; i < 500; ++i) {
    text += std::to_string(i) + "," + std::to_string((i * 37 % 100 - 50) / 64.0) + "," +
            std::to_string(i % 3 / 4.0) + "\n";
  }
  const auto file = write_file("signal.csv", text);
  const auto values = [](const std::string& csv) { return csv.substr(csv.find('\n')); };
  const auto wanted = values(csv_of(file + " -r 8000"));
  EXPECT_TRUE(says(wanted, "-0.78125,0\n"));
  struct {
    std::string end;
    std::string options;
  } const forms[] = {{"wav", ""}, {"wav", "--bits 16"}, {"flac", ""}, {"aiff", "--bits 24"},
                     {"npy", ""}, {"npy", "--bits 32"}, {"csv", ""}};
  for (const auto& form : forms) {
    SCOPED_TRACE(form.end + " " + form.options);
    const auto name = path("x." + form.end);
    const auto convert = "convert -r 8000 " + file + " " + form.options;
    EXPECT_EQ(run(convert + " -o " + name).err.ends_with("--rate 8000\n"), form.end == "npy")
        << "holds no rate";
    EXPECT_EQ(values(csv_of(name + " -r 8000")), wanted);
    EXPECT_EQ(read_file(name).find("PEAK"), std::string::npos) << "a chunk with the time of day";
    EXPECT_EQ(run(convert + " --format " + form.end).out, read_file(name)) << "to standard output";
  }
  EXPECT_EQ(values(csv_of("-c 1 " + file)),
            values(run_shell("$SIGPAK convert -c 1 " + file + " | $SIGPAK convert --format csv").out));
  EXPECT_EQ(run("convert " + file + " -o " + path("two.vec")).status, 1) << "a vector holds one channel";
  EXPECT_EQ(run("convert " + write_file("plain", "1\n2\n") + " -o " + path("no.wav")).status, 1) << "no rate";
  EXPECT_TRUE(
      says(run("convert -r 1 " + write_file("plain", "1\n2\n") + " --bits 16 -o " + path("loud.wav")).err,
           "1 samples lie beyond"));
}

TEST(Convert, AnotherRateKeepsTheSine) {
  for (const std::string rate : {"48k", "11025", "44099.7"}) {
    const auto r =
        run_shell("$SIGPAK gen cos -n 20000 -f 1000 -r 44100 | $SIGPAK convert --to-rate " + rate +
                  " --format csv | $SIGPAK convert -c 2 -t none --start 1000 --duration 2000 --format npy");
    ASSERT_EQ(r.status, 0) << r.err;
    const double to = rate == "48k" ? 48000 : std::stod(rate);
    for (std::size_t i = 0; i < 2000; ++i) {
      double x = 0;
      std::memcpy(&x, r.out.data() + 128 + 8 * i, sizeof x);
      ASSERT_NEAR(x, std::cos(2 * M_PI * 1000 / to * (1000.0 + static_cast<double>(i))), 3e-6)
          << rate << " at " << i;
    }
  }
}

TEST(Gen, MakesWhatTheLibraryMakes) {
  const auto values = [](const std::string& arguments) {
    return run("gen " + arguments + " --format csv").out;
  };
  EXPECT_EQ(values("line -n 3 --slope 2 --start -1 -r 4"), "time_s,line\n0,-1\n0.25,-0.5\n0.5,0\n");
  EXPECT_EQ(values("cexp -n 2 -f 0.5 --amplitude 3").substr(0, 38),
            "time_s,cexp_re,cexp_im\n0,3,0\n1,-3,3.67");
  EXPECT_EQ(values("rand -n 50 --seed 7"), values("rand -n 50 --seed 7"));
  EXPECT_NE(values("rand -n 50 --seed 7"), values("rand -n 50 --seed 8"));
  EXPECT_NE(values("rand -n 50 --seed 7"), values("rand -n 50 --seed 7 --distribution laplace"));
  const auto rows = [&values](const std::string& arguments) {
    const auto text = values(arguments);
    return std::count(text.begin(), text.end(), '\n') - 1;
  };
  EXPECT_EQ(rows("fir -n 31 --kind low-pass --param1 0.1"), 31);
  EXPECT_EQ(rows("fir2 --code 101"), 20);
  EXPECT_EQ(rows("rsmp_cos --up 4 --span 3"), 25);
  EXPECT_EQ(rows("rsmp_pcos --up 2 --span 8 --rolloff 0.5"), 33);
  EXPECT_GT(rows("rsmp --up 3 --down 2"), 300);
  for (const std::string arguments :
       {"tan", "cos --slope 1", "fir2 -n 9", "fir2 --code 7", "cos -n 0", "rand --seed -1", "fir --kind odd"})
    EXPECT_EQ(run("gen " + arguments + " -o " + path("refused")).status, 2) << arguments;
  EXPECT_EQ(run_in_terminal("gen cos").out.find("a vector is not for a terminal") == std::string::npos,
            run_in_terminal("gen cos").status == 127);
}

TEST(Writing, FilesAppearWhenTheyAreWhole) {
  const auto out = path("result.csv");
  write_file("result.csv", "old");
  const auto bad = write_file("bad.csv", "1\n2\nx\n");
  EXPECT_EQ(run("convert " + bad + " -o " + out).status, 1);
  EXPECT_EQ(read_file(out), "old") << "what was there stays until the new is whole";
  EXPECT_EQ(run_shell("ls " + path("") + " | grep -c result").out, "1\n");
  EXPECT_EQ(run("convert " + write_file("good.csv", "1\n2\n") + " -o " + out).status, 0);
  EXPECT_EQ(read_file(out), "ch1\n1\n2\n");
  for (const std::string command : {"-n 100000 >/dev/full", "-o /dev/full", "--format npy >/dev/full"})
    EXPECT_EQ(run_shell("$SIGPAK gen cos " + command).status, 3) << command;
  EXPECT_EQ(run_shell("$SIGPAK gen cos -n 1000000 | head -c 1 >/dev/null").err, "");
  const auto full = run_shell(
      "cat " +
      write_sound("m.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 8000, 100, {[](int) { return 0.5; }}) +
      " | TMPDIR=/nowhere $SIGPAK info -");
  EXPECT_EQ(full.status, 3);
  EXPECT_TRUE(says(full.err, "temporary folder /nowhere: No such file"));
}
