// SPDX-License-Identifier: MIT
// stats, filter, window and apply, and commands in pipelines.
#include <gtest/gtest.h>
#include <sigpak.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <numbers>
#include <random>
#include <sstream>

#include "tools/program.h"

using namespace program;

namespace {

constexpr double pi = std::numbers::pi;

// Every sample of a stream of vectors.
std::vector<double> samples_of(const std::string& bytes, double* delta = nullptr) {
  FILE* const in = std::fopen(write_file("stream", bytes).c_str(), "rb");
  std::vector<double> out;
  dsp_vec v;
  dsp_init(&v);
  while (dspf_fread(&v, in) == 1) {
    out.insert(out.end(), v.data, v.data + std::size_t{v.points} * (v.complex != 0 ? 2 : 1));
    if (delta != nullptr) *delta = v.delta;
  }
  dsp_destroy(&v);
  std::fclose(in);
  return out;
}

std::vector<double> noise(int count) {
  std::mt19937 engine(11);
  std::normal_distribution<double> normal(3, 2);
  return samples([&](int) { return normal(engine); }, count);
}

double amplitude_at(const std::vector<double>& x, double frequency) {
  double re = 0, im = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double t = 2 * pi * frequency * static_cast<double>(i);
    re += x[i] * std::cos(t), im += x[i] * std::sin(t);
  }
  return 2 * std::hypot(re, im) / static_cast<double>(x.size());
}

}  // namespace

TEST(Stats, FiguresAndHistogramsAreThoseOfTheSamples) {
  auto x = noise(100'001);  // more than a block
  write_vector("x", x, 1, 0);
  long double sum = 0, squares = 0, deviations = 0;
  for (const double value : x) sum += value, squares += static_cast<long double>(value) * value;
  const auto mean = sum / static_cast<long double>(x.size());
  for (const double value : x) deviations += (value - mean) * (value - mean);
  const auto r = run_shell("sigpak stats --json --unit V --gain 2 --low -10 --high 20 --bins 6 x").out;
  EXPECT_NEAR(number_after(r, "\"mean\":"), static_cast<double>(2 * mean), 1e-13);
  EXPECT_NEAR(number_after(r, "\"rms\":"), 2 * std::sqrt(static_cast<double>(squares) / 100'001), 1e-12);
  EXPECT_NEAR(number_after(r, "\"variance\":"), static_cast<double>(4 * deviations / 100'000), 1e-11);
  std::vector<int> counts(6);
  for (const double value : x) {
    if (const double bin = std::floor((2 * value + 10) / 5); bin >= 0 && bin < 6)
      ++counts[static_cast<std::size_t>(bin)];
  }
  std::ostringstream expected;
  expected << "\"histogram\":{\"low\":-10,\"high\":20,\"counts\":[";
  for (std::size_t i = 0; i < 6; ++i) expected << (i == 0 ? "" : ",") << counts[i];
  EXPECT_TRUE(says(r, expected.str() + "]}"));
  std::ranges::sort(x);
  EXPECT_EQ(number_after(r, "\"median\":"), 2 * x[50'000]);
  EXPECT_EQ(number_after(r, "\"min\":"), 2 * x.front());
  EXPECT_EQ(number_after(r, "\"max\":"), 2 * x.back());
  EXPECT_TRUE(says(run_shell("sigpak stats x").out, "\nmean      "));
  const auto csv = run_shell("sigpak stats --csv x").out;
  EXPECT_EQ(std::ranges::count(csv, '\n'), 15) << "ten bins, a heading, and what they are of";
}

// Against the definition: taps by the window method, the signal in its place, zeros beyond its ends; of
// signals shorter than the filter too.
class Filtered : public ::testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Lengths, Filtered, ::testing::Values(70'000, 290, 256, 40, 1));

TEST_P(Filtered, IsTheConvolutionWithTheSignalInItsPlace) {
  const auto x = noise(GetParam());
  write_vector("x", x, 1e-3, 0);
  std::vector<double> taps;
  for (int n = -32; n <= 32; ++n) {
    const double t = 2 * pi * 0.1 * n;
    taps.push_back(0.2 * (n == 0 ? 1 : std::sin(t) / t) * (0.5 + 0.5 * std::cos(2 * pi * n / 65)));
  }
  double gain = 0;
  for (const double tap : taps) gain += tap;
  for (const int factor : {1, 3}) {
    double delta = 0;
    const auto y = samples_of(run_shell("sigpak filter --low-pass 100 --taps 65 -w hann --decimate " +
                                        std::to_string(factor) + " x")
                                  .out,
                              &delta);
    ASSERT_EQ(y.size(), (x.size() + static_cast<std::size_t>(factor) - 1) / static_cast<std::size_t>(factor));
    EXPECT_NEAR(delta, factor * 1e-3, 1e-15);
    for (std::size_t k = 0; k < y.size(); k += k < 100 || k + 1100 > y.size() ? 1 : 997) {
      long double sum = 0;
      for (int n = -32; n <= 32; ++n) {
        const auto at = static_cast<std::ptrdiff_t>(k) * factor - n;
        if (at >= 0 && at < std::ssize(x))
          sum += static_cast<long double>(taps[static_cast<std::size_t>(n + 32)]) *
                 x[static_cast<std::size_t>(at)];
      }
      ASSERT_NEAR(y[k], static_cast<double>(sum / gain), 2e-13) << factor << ' ' << k;
    }
  }
}

TEST(Filter, PassesItsBandAndStopsTheRest) {
  write_vector("x",
               samples(
                   [](int i) {
                     return std::sin(2 * pi * 0.05 * i) + std::sin(2 * pi * 0.2 * i) +
                            std::sin(2 * pi * 0.4 * i);
                   },
                   20000),
               1e-3, 0);
  struct {
    const char* options;
    double passed[3];
  } const cases[] = {{"--low-pass 100", {1, 0, 0}},
                     {"--high-pass 300", {0, 0, 1}},
                     {"--band-pass 120,280", {0, 1, 0}},
                     {"--band-stop 120,280", {1, 0, 1}},
                     {"--band-stop 0.12k,0.28k --attenuation 60", {1, 0, 1}},
                     {"--band-pass 190,210", {0, 1, 0}},
                     {"--band-pass 198,202 --taps 129", {0, 1, 0}},
                     {"--band-stop 395,405", {1, 1, 0}},
                     {"--low-pass 195 --transition 6", {1, 0, 0}},
                     {"--low-pass 250 -w flattop --taps 301", {1, 1, 0}}};
  for (const auto& c : cases) {
    auto y = samples_of(run_shell(std::string("sigpak filter ") + c.options + " x").out);
    ASSERT_EQ(y.size(), 20000U) << c.options;
    y = {y.begin() + 600, y.end() - 600};
    EXPECT_NEAR(amplitude_at(y, 0.05), c.passed[0], 2e-3) << c.options;
    EXPECT_NEAR(amplitude_at(y, 0.2), c.passed[1], 2e-3) << c.options;
    EXPECT_NEAR(amplitude_at(y, 0.4), c.passed[2], 2e-3) << c.options;
  }
  auto lower = samples_of(run_shell("sigpak filter --decimate 4 x").out);
  ASSERT_EQ(lower.size(), 5000U);
  lower = {lower.begin() + 200, lower.end() - 200};
  EXPECT_NEAR(amplitude_at(lower, 0.2), 1, 1e-4) << "0.05 of four times the rate";
  EXPECT_EQ(run_shell("sigpak filter --low-pass 200 --decimate 3 x").status, 1) << "aliases";
  EXPECT_EQ(run_shell("sigpak filter --low-pass 500 x").status, 1) << "half the rate";
  EXPECT_EQ(run_shell("sigpak filter --low-pass 50 --taps 9 --transition 5 x").status, 2);
  EXPECT_EQ(run_shell("sigpak filter --low-pass 50 --transition 1e-6 x").status, 1) << "1e6 taps and more";
  EXPECT_EQ(run_shell("sigpak filter --low-pass 50 x").err, "");
  EXPECT_NE(run_shell("sigpak filter --band-pass 198,202 --taps 129 x").err.find("129 taps"),
            std::string::npos);
}

TEST(Window, PointsAndFiguresAreThoseOfTheLibrary) {
  const auto csv = run_shell("sigpak window blackmanharris 64").out;
  std::istringstream in(csv.substr(csv.find("\n0,") + 1));
  dsp_vec v;
  dsp_init(&v);
  v.points = 64;
  ASSERT_EQ(dsp_alloc(&v), 0);
  std::fill_n(v.data, 64, 1.0);
  ASSERT_EQ(dspi_window(&v, DSP_WINDOW_BLACKMAN_HARRIS4, DSP_WINDOW_FLAG_NO_ROTATE), 0);
  std::string row;
  for (int i = 0; i < 64; ++i) {
    ASSERT_TRUE(std::getline(in, row));
    EXPECT_EQ(std::strtod(row.c_str() + row.find(',') + 1, nullptr), v.data[i]);
  }
  dsp_destroy(&v);
  // F. J. Harris, Proc. IEEE 66, 1978, table I; flat tops by Heinzel, Ruediger, Schilling.
  struct {
    const char* name;
    double gain, enbw, scallop, side_lobe;
  } const cases[] = {{"Uniform", 1, 1, 3.92, -13.3},
                     {"Hann", 0.5, 1.5, 1.42, -31.5},
                     {"Hamming", 0.54, 1.36, 1.75, -42.7},
                     {"boxcar", 1, 1, 3.92, -13.3}};
  for (const auto& c : cases) {
    const auto r = run_shell(std::string("sigpak window --format json ") + c.name).out;
    EXPECT_NEAR(number_after(r, "\"coherent_gain\":"), c.gain, 1e-12) << r.substr(0, 200);
    EXPECT_NEAR(number_after(r, "\"enbw_bins\":"), c.enbw, 0.005);
    EXPECT_NEAR(number_after(r, "\"scallop_db\":"), c.scallop, 0.006);
    EXPECT_NEAR(number_after(r, "\"side_lobe_db\":"), c.side_lobe, 0.1);
  }
  EXPECT_EQ(std::ranges::count(run_shell("sigpak window").out, '\n'), 25);
}

TEST(Apply, OffersWhatTheHeaderDeclares) {
  std::ifstream header(SIGPAK_TOP "/include/sigpak.h");
  std::vector<std::string> declared;
  for (std::string row; std::getline(header, row);) {
    const std::string start = "SIGPAK_API int32_t dspi_";
    if (row.starts_with(start))
      declared.push_back(row.substr(start.size(), row.find_first_of(" (", start.size()) - start.size()));
  }
  std::vector<std::string> offered;
  std::istringstream list(run_shell("sigpak apply --list").out);
  for (std::string row; std::getline(list, row);) offered.push_back(row.substr(0, row.find(' ')));
  EXPECT_EQ(offered, declared);
  EXPECT_GT(declared.size(), 60U);

  const auto x = noise(64);
  write_vector("x", x, 0.5, 0);
  const auto whole = [&](auto f) {
    auto y = x;
    std::ranges::transform(y, y.begin(), f);
    return y;
  };
  EXPECT_EQ(samples_of(run_shell("sigpak apply scale -2 x").out), whole([](double a) { return -2 * a; }));
  EXPECT_EQ(samples_of(run_shell("sigpak apply limit 0 -1 2.5 x").out),
            whole([](double a) { return std::clamp(a, -1.0, 2.5); }));
  EXPECT_EQ(samples_of(run_shell("sigpak apply addcos 0 0 1 0 x").out),
            whole([](double a) { return a + 1; }));
  EXPECT_EQ(samples_of(run_shell("sigpak apply window uniform 32 x | sigpak apply neg").out),
            whole([](double a) { return -a; }));
  const auto cosine = samples_of(run_shell("sigpak apply window_cos 1,0.5 34 x").out);
  EXPECT_NEAR(cosine[40], x[40] * (1 + 0.5 * std::cos(2 * pi * 8 / 64)), 1e-12);
  double delta = 0;
  EXPECT_EQ(samples_of(run_shell("sigpak apply rfft x").out, &delta).size(), 66U);
  EXPECT_EQ(delta, 1 / 32.0);
  const auto refused = run_shell("sigpak apply zpad 65 x | sigpak apply rfft");
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(says(refused.err, "rfft refuses 65 real points"));
}

TEST(Pipelines, RunAsTheManualHasThem) {
  const waveform tone = [](int i) { return 0.5 * std::sin(2 * pi * 0.125 * i); };
  write_sound("in.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 48000, 100'000, {tone});
  write_sound("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 48000, 30'000, {tone});
  write_sound("b.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 48000, 50'000, {tone, tone});
  const auto pressure = run_shell("cat a.wav | sigpak spectrum --unit Pa --gain 20 --as rms --db");
  EXPECT_TRUE(says(pressure.out, "dB re 1 Pa rms"));
  EXPECT_TRUE(says(pressure.out, "  16.99"));
  const auto objects = run_shell("sigpak spectrum --json -c all a.wav b.wav").out;
  EXPECT_EQ(std::ranges::count(objects, '\n'), 3);
  const auto channels = run_shell("sigpak spectrum -c all b.wav a.wav --svg both.svg").out;
  EXPECT_TRUE(says(channels, "b.wav, channel '2': WAV"));
  EXPECT_TRUE(says(channels, "\na.wav: WAV"));
  EXPECT_TRUE(says(read_file(path("both.svg")), ">b.wav, 2<"));
  EXPECT_TRUE(says(run_shell("sigpak spectrum -c all b.wav --svg -").out, ">2</text>"));
  const auto filtered = run_shell(
      "sigpak filter --low-pass 7k --decimate 3 in.flac | sigpak spectrum --csv | sigpak plot "
      "--svg -");
  EXPECT_TRUE(says(filtered.out, "</svg>"));
  EXPECT_TRUE(says(filtered.out, ">6.0000"));
  const auto merged = run_shell(
      "for f in a b; do sigpak spectrum --csv $f.wav; done | sigpak merge - | sigpak plot --axis log -");
  EXPECT_EQ(merged.status, 0) << merged.err;
  EXPECT_TRUE(says(merged.out, "dBFS over Hz"));
}

TEST(Manners, WhatCannotBeReadIsTold) {
  write_file("x", column(noise(5000)));
  EXPECT_EQ(run_shell("sigpak spectrum --csv x -o y.csv; sigpak spectrum --csv missing -o y.csv").status, 1);
  EXPECT_EQ(read_file(path("y.csv")), run_shell("sigpak spectrum --csv x").out) << "the old one stays";
  EXPECT_EQ(run_shell("sigpak spectrum --csv x >/dev/full").status, 3);
  const auto kept = run_shell("sigpak spectrum --json --keep-going missing x /dev/null");
  EXPECT_EQ(kept.status, 1);
  EXPECT_EQ(std::ranges::count(kept.out, '\n'), 1);
  EXPECT_TRUE(says(kept.err, "2 files were left out"));
  EXPECT_EQ(run_shell("sigpak spectrum --json missing x").out, "") << "nothing half-told";
  write_sound("two.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 48000, 3000,
              std::vector<waveform>(2, [](int i) { return std::sin(0.7 * i); }));
  EXPECT_EQ(std::ranges::count(run_shell("sigpak spectrum --json -c all x two.wav").out, '\n'), 3);
}
