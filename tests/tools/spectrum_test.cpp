// SPDX-License-Identifier: MIT
// The lines that the program finds: in every form of file, under every window, at every frequency.
#include <gtest/gtest.h>
#include <sigpak.h>
#include <sndfile.h>

#include <cmath>
#include <numbers>
#include <random>

#include "tools/program.h"

using namespace program;

namespace {

constexpr double pi = std::numbers::pi;

waveform sine(double amplitude, double frequency, double rate, double phase = 0.3, double offset = 0) {
  return [=](int i) { return offset + amplitude * std::sin(2 * pi * frequency / rate * i + phase); };
}

// One line, where the sine is and as high.
void expect_sine(const result& r, double frequency, double amplitude, double resolution, double tolerance) {
  ASSERT_EQ(r.status, 0) << r.err;
  const auto lines = lines_of(r.out);
  ASSERT_EQ(lines.size(), 1U) << r.out;
  EXPECT_NEAR(lines[0].frequency, frequency, 0.01 * resolution) << r.out;
  EXPECT_NEAR(lines[0].amplitude, amplitude, tolerance * amplitude) << r.out;
  EXPECT_NEAR(lines[0].level, 20 * std::log10(amplitude), 8.7 * tolerance + 0.006);
}

// The powers of Welch's method at a quarter of the resolution `1 / length`, without the factor for
// amplitudes.
std::vector<double> welch(const std::vector<double>& x, std::uint32_t length, int window) {
  std::vector<double> power(2 * length + 1);
  dsp_vec v;
  dsp_init(&v);
  for (std::size_t start = 0; start + length <= x.size(); start += length / 2) {
    v.complex = 0, v.points = length;
    EXPECT_EQ(dsp_alloc(&v), 0);
    std::copy_n(x.begin() + static_cast<std::ptrdiff_t>(start), length, v.data);
    EXPECT_EQ(dspi_window(&v, window, DSP_WINDOW_FLAG_NO_ROTATE), 0);
    EXPECT_EQ(dspi_zpad(&v, static_cast<std::int32_t>(4 * length)), 0);
    EXPECT_EQ(dspi_rfft(&v), 0);
    EXPECT_EQ(dspi_magsq(&v), 0);
    for (std::size_t i = 0; i < power.size(); ++i) power[i] += v.data[i];
  }
  dsp_destroy(&v);
  return power;
}

bool is_maximum(const std::vector<double>& power, std::ptrdiff_t at) {
  const auto value = [&power](std::ptrdiff_t i) {
    return i < 0 || i >= std::ssize(power) ? 0 : power[static_cast<std::size_t>(i)];
  };
  return value(at) > value(at - 1) && value(at) >= value(at + 1);
}

// A vector file of so many samples.
std::string recorded(const waveform& x, int count, double rate) {
  return write_vector("signal", samples(x, count), 1 / rate, 0);
}

}  // namespace

TEST(Spectrum, EveryFormOfFile) {
  constexpr double rate = 8000;
  const auto x = samples(sine(0.5, 1234.5, rate), 30000);
  const auto pair = [&x](bool swap) {
    const waveform wanted = [&x](int i) { return x[static_cast<std::size_t>(i)]; };
    const waveform other = sine(0.3, 100, rate);
    return swap ? std::vector{other, wanted} : std::vector{wanted, other};
  };
  struct {
    std::string name;
    std::string options;
  } const files[] = {
      {write_vector("binary", x, 1 / rate, 0), ""},
      {write_vector("floats", x, 1 / rate, 0, false, true), ""},
      {write_vector("ascii", x, 1 / rate, 1), ""},
      {write_file("column", column(x)), "--rate 8000"},
      {write_sound("mono.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8000, 30000, {pair(false)[0]}), ""},
      {write_sound("float.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 8000, 30000, pair(true)), "--channel 2"},
      {write_sound("stereo.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 8000, 30000, pair(false)), ""}};
  for (const auto& f : files) {
    SCOPED_TRACE(f.name);
    const std::string common = " --json -l 1 " + f.options;
    expect_sine(run("spectrum " + f.name + common), 1234.5, 0.5, rate / 8192, 5e-4);
    expect_sine(run("spectrum - " + common + " <" + f.name), 1234.5, 0.5, rate / 8192, 5e-4);
    expect_sine(run("spectrum - " + common + " -s 4096 -w lowleak <" + f.name), 1234.5, 0.5, rate / 4096,
                5e-4);
  }
}

TEST(Spectrum, EveryWindowAtAnyFrequency) {
  std::mt19937 engine(3);
  for (int window = DSP_WINDOW_UNIFORM; window <= DSP_WINDOW_RIEMANN; ++window) {
    char name[32];
    ASSERT_EQ(dsp_window_to_str(window, name, sizeof name), 0);
    for (int i = 0; i < 3; ++i) {
      const double frequency = 100 + 300 * static_cast<double>(engine()) / 4294967296.0;
      const double amplitude = 0.01 + static_cast<double>(engine()) / 4294967296.0;
      SCOPED_TRACE(std::string(name) + " at " + std::to_string(frequency));
      const auto file = recorded(sine(amplitude, frequency, 1000), 5000, 1000);
      expect_sine(run("spectrum --json -s 1024 -l 1 " + file + " -w " + name), frequency, amplitude,
                  1000.0 / 1024, 2e-3);
    }
  }
}

TEST(Spectrum, TheMeanIsNoLineAndLeakageNeither) {
  const waveform two = [](int i) { return sine(2, 130.3, 1000, 1, -7)(i) + sine(0.5, 317.77, 1000)(i); };
  const auto file = recorded(two, 20000, 1000);
  for (const char* window : {"Hann", "Uniform", "Bartlett", "DSP_WINDOW_FLATTOP", "p310"}) {
    const auto r = run("spectrum --json -l 50 " + file + " -w " + window);
    const auto lines = lines_of(r.out);
    ASSERT_EQ(lines.size(), 2U) << r.out;
    EXPECT_NEAR(lines[0].frequency, 130.3, 2e-3);
    EXPECT_NEAR(lines[0].amplitude, 2, 0.01);
    EXPECT_NEAR(lines[1].frequency, 317.77, 2e-3);
    EXPECT_NEAR(lines[1].amplitude, 0.5, 0.01);
    EXPECT_NEAR(number_after(r.out, "\"mean\":"), -7, 2e-3);
  }
  const waveform faint = [&two](int i) { return 1e-7 * (two(i) + 7); };
  EXPECT_EQ(lines_of(run("spectrum --json -l 50 " + recorded(faint, 20000, 1000)).out).size(), 2U);
  const auto constant = run("spectrum " + write_file("constant", column(std::vector<double>(1000, 0.1))));
  EXPECT_EQ(constant.status, 0);
  EXPECT_TRUE(says(constant.out, "no line above the noise"));
  EXPECT_NEAR(number_after(constant.out, "\nmean "), 0.1, 1e-9);
}

TEST(Spectrum, ShortSignalsAreTakenWholeAndSegmentsOverlap) {
  struct {
    int count;
    std::string options;
    int segments;
    int segment;
    int unused;
  } const cases[] = {{64, "", 1, 64, 0},
                     {127, "", 1, 127, 0},
                     {8191, "", 1, 8191, 0},
                     {12287, "-s 8192", 1, 8192, 4095},
                     {12288, "-s 8192", 2, 8192, 0},
                     {16384, "-s 8192", 3, 8192, 0},
                     {16384, "-s 8192 --overlap 0", 2, 8192, 0},
                     {16384, "-s 8192 --overlap 75%", 5, 8192, 0},
                     {100, "-s 33", 4, 33, 16},
                     {101, "-s 33", 5, 33, 0}};
  for (const auto& c : cases) {
    const auto r = run("spectrum --json -l 1 " + recorded(sine(1, 20.2, 64), c.count, 64) + " " + c.options);
    EXPECT_EQ(number_after(r.out, "\"samples\":"), c.count);
    EXPECT_EQ(number_after(r.out, "\"segments\":"), c.segments) << c.count << c.options;
    EXPECT_EQ(number_after(r.out, "\"segment\":"), c.segment);
    EXPECT_EQ(number_after(r.out, "\"unused\":"), c.unused) << c.count << c.options;
    expect_sine(r, 20.2, 1, 64.0 / c.segment, 2e-3);
  }
}

// A line that lifts averaged noise by 1 dB at its place: flanks at half the power are nowhere to be seen.
TEST(Spectrum, LinesOfNoiseStandAtItsMaxima) {
  constexpr std::uint32_t length = 256;
  std::mt19937 engine(2);
  std::normal_distribution<double> noise;
  const double amplitude = 2 * std::sqrt(0.26 * 1.5 / length);
  const waveform line = sine(amplitude, 0.2, 1);
  const auto x = samples([&](int i) { return noise(engine) + line(i); }, 100'000);
  const auto file = write_vector("faint", x, 1, 0);
  for (int window = DSP_WINDOW_UNIFORM; window <= DSP_WINDOW_RIEMANN; ++window) {
    char name[32];
    ASSERT_EQ(dsp_window_to_str(window, name, sizeof name), 0);
    const auto power = welch(x, length, window);
    const auto lines = lines_of(run("spectrum --json --min-snr -3 -l 30 -s 256 " + file + " -w " + name).out);
    EXPECT_GE(lines.size(), 5U) << name;
    for (const auto& l : lines) {
      const double place = 4 * length * l.frequency;
      bool found = false;
      for (int i = 0; i < 4; ++i) found = found || is_maximum(power, std::lround(std::ceil(place - 2)) + i);
      EXPECT_TRUE(found) << name << ": no maximum within half a resolution of " << l.frequency;
    }
  }
}

// Noise that a filter of the second order colours: y[n] = a y[n-1] + b y[n-2] + x[n] - c x[n-1].
TEST(Spectrum, ColouredNoiseHasNoLines) {
  struct {
    const char* name;
    double a, b, c;
  } const colours[] = {{"drift", 1, 0, 0},
                       {"flicker and drift", 1.2, -0.2, 0.9},
                       {"resonance of Q = 5", 2 * std::cos(0.3 * pi) * 0.91, -0.91 * 0.91, 0},
                       {"violet", 0, 0, 1}};
  std::mt19937 engine(4);
  std::normal_distribution<double> noise;
  for (const auto& c : colours) {
    std::size_t false_lines = 0;
    for (int trial = 0; trial < 6; ++trial) {
      std::vector<double> y(200'000);
      double last = 0;
      for (std::size_t i = 0; i < y.size(); ++i) {
        const double x = noise(engine);
        y[i] = x - c.c * last + (i > 0 ? c.a * y[i - 1] : 0) + (i > 1 ? c.b * y[i - 2] : 0);
        last = x;
      }
      const auto r = run("spectrum --json -s 512 " + write_vector("coloured", y, 1, 0));
      false_lines += lines_of(r.out).size();
    }
    EXPECT_LE(false_lines, 2U) << c.name;
  }
}

// A comb of them four resolutions apart, from the second one on.
TEST(Spectrum, LinesCloseToOthersAreFound) {
  std::mt19937 engine(6);
  std::normal_distribution<double> noise;
  const waveform comb = [&](int i) {
    double sum = 1e-4 * noise(engine);
    for (int k = 0; k < 6; ++k) sum += sine(1, 2.3 + 4.2 * k, 1024)(i);
    return sum;
  };
  const auto file = recorded(comb, 20'000, 1024);
  for (const char* window : {"Hann", "DSP_WINDOW_BLACKMAN"})
    EXPECT_EQ(lines_of(run("spectrum --json -s 1024 " + file + " -w " + window).out).size(), 6U) << window;
}

TEST(Spectrum, LinesAtHalfTheRateBelowZeroAndWithoutARate) {
  const waveform alternating = [](int i) { return i % 2 == 0 ? 0.75 : -0.75; };
  expect_sine(run("spectrum --json -l 1 " + recorded(alternating, 9000, 2)), 1, 0.75, 1e-3, 1e-4);
  for (const double frequency : {-0.1234, -0.49991, -0.5}) {  // at the ends leakage goes around
    std::vector<double> pairs;
    for (int i = 0; i < 9000; ++i) {
      const double a = 2 * pi * frequency * i;
      pairs.insert(pairs.end(), {3 * std::cos(a), 3 * std::sin(a)});
    }
    expect_sine(run("spectrum --json -l 50 " + write_vector("complex", pairs, 1, 1, true)), frequency, 3,
                1.0 / 8192, 5e-4);
  }
  const auto r = run("spectrum --json -l 1 " + write_file("plain", column(samples(sine(1, 0.125, 1), 1000))));
  EXPECT_TRUE(says(r.out, "\"unit\":\"\""));
  EXPECT_EQ(r.out.find("Hz"), std::string::npos) << r.out;
  expect_sine(r, 0.125, 1, 1e-3, 1e-3);
}
