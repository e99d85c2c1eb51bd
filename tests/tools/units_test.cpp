// SPDX-License-Identifier: MIT
// Quantities and their units, noise, and spectra as data.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <regex>
#include <sstream>

#include "tools/program.h"

using namespace program;

namespace {

constexpr double pi = std::numbers::pi;

// G. Heinzel, A. Ruediger, R. Schilling, "Spectrum and spectral density estimation by the discrete Fourier
// transform", 2002, section 12: two sines, rounded to steps of 1 mV.
std::string test_signal() {
  std::string text = "voltage_V\n";
  char row[32];
  for (int i = 0; i < 1'000'000; ++i) {
    const double t = i / 1e4;
    const double u = 2 * std::sqrt(2) * std::sin(2 * pi * 1234 * t) + std::sin(2 * pi * 2500.2157 * t);
    std::snprintf(row, sizeof row, "%.3f\n", std::floor(u / 1e-3 + 0.5) * 1e-3);
    text += row;
  }
  return write_file("signal.csv", text);
}

// A sine on a bin under noise of a density of its own, at 1 kHz.
std::string noisy_sine(double amplitude, double sigma, int count, unsigned seed = 1,
                       const char* name = "noisy") {
  std::mt19937 engine(seed);
  std::normal_distribution<double> noise(0, sigma);
  const auto x =
      samples([&](int i) { return amplitude * std::sin(2 * pi * 0.125 * i) + noise(engine); }, count);
  return write_vector(name, x, 1e-3, 0);
}

struct spectrum_data {
  std::string head;
  std::vector<double> frequencies;
  std::vector<double> values;
};

spectrum_data data_of(const std::string& csv) {
  spectrum_data out;
  std::istringstream in(csv);
  for (std::string row; std::getline(in, row);) {
    if (row.starts_with('#') || row.starts_with("frequency")) {
      out.head += row + '\n';
      continue;
    }
    out.frequencies.push_back(std::strtod(row.c_str(), nullptr));
    out.values.push_back(std::strtod(row.c_str() + row.find(',') + 1, nullptr));
  }
  return out;
}

}  // namespace

TEST(Units, TheTestSignalOfTheFlatTopReport) {
  const auto file = test_signal();
  const auto amplitudes = run("spectrum -r 10k -w flat-top -s 4096 --as rms --json " + file);
  const auto lines = lines_of(amplitudes.out);
  ASSERT_EQ(lines.size(), 2U) << amplitudes.out << amplitudes.err;
  EXPECT_NEAR(lines[0].frequency, 1234, 0.005);
  EXPECT_NEAR(lines[0].amplitude, 2, 0.002);
  EXPECT_NEAR(lines[1].frequency, 2500.2157, 0.005);
  EXPECT_NEAR(lines[1].amplitude, 0.70711, 0.00071);
  EXPECT_TRUE(says(amplitudes.out, "\"unit\":\"V rms\",\"level_unit\":\"dBV\""));
  const auto density = run("spectrum -r 10k -s 4096 --as asd --from 3200 --to 4900 --json " + file).out;
  EXPECT_NEAR(number_after(density, "\"noise_floor\":"), 4.08e-6, 0.03 * 4.08e-6) << density;
  EXPECT_TRUE(says(density, "\"noise_floor_unit\":\"V/sqrt(Hz)\",\"lines\":[]"));
}

// Noise of the deviation 1 over 500 Hz, a line at 125 Hz and one at 500 Hz, where the outer point is.
TEST(Units, TheRmsOfABand) {
  std::mt19937 engine(3);
  std::normal_distribution<double> noise;
  const auto x = samples(
      [&](int i) { return 2 * std::sin(0.25 * pi * i) + (i % 2 == 0 ? 3 : -3) + noise(engine); }, 200000);
  const auto file = write_vector("band", x, 1e-3, 0);
  const auto pairs = samples([&](int) { return noise(engine); }, 200000);
  const auto complex = write_vector("pairs", pairs, 1e-3, 0, true);
  struct {
    std::string arguments;
    double from, to, square;
  } const cases[] = {{"--from 100 --to 150 " + file, 100, 150, 2 + 0.1},
                     {"--from 0.1 --to 99.9 --as psd --db " + file, 0.1, 99.9, 0.1996},
                     {"--to 450 " + file, 0, 450, 2 + 0.9},
                     {"--from 450 -w flattop " + file, 450, 500, 9 + 0.1},
                     {"--from 0 " + file, 0, 500, 2 + 9 + 1},
                     {"--from 250.1 --to 250.6 -s 1000 " + file, 250.1, 250.6, 1e-3},
                     {"--from -400 --to -300 " + complex, -400, -300, 2 * 0.1},
                     {"--to 600 " + complex, -500, 500, 2}};
  for (const auto& c : cases) {
    const auto out = run("spectrum --json " + c.arguments).out;
    const auto band = out.substr(std::min(out.find("\"band\""), out.size()));
    const double rms = number_after(band, "\"rms\":");
    EXPECT_NEAR(rms * rms / c.square, 1, 0.05) << c.arguments << '\n' << band.substr(0, 100);
    EXPECT_NEAR(number_after(band, "\"from\":"), c.from, 0.05) << c.arguments;
    EXPECT_NEAR(number_after(band, "\"to\":"), c.to, 0.05) << c.arguments;
  }
  EXPECT_TRUE(says(run("spectrum --from 100 --to 150 " + file).out, "\nband 100 to 150 Hz: rms 1.4"));
  for (const std::string without : {"spectrum ", "spectrum --average maximum --to 100 "})
    EXPECT_EQ(run(without + file).out.find("\nband"), std::string::npos) << without;
}

// A = 2 at 1 kHz, Hann under 1000 samples: ENBW 1.5 Hz, where it lies on a bin.
TEST(Units, OfALineInEveryQuantity) {
  constexpr double enbw = 1.5;
  const auto vector = noisy_sine(2, 1e-9, 20000);
  const auto sound = write_sound("full.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 1000, 20000,
                                 {[](int i) { return 2 * std::sin(2 * pi * 0.125 * i); }});
  std::vector<double> pairs;
  for (int i = 0; i < 20000; ++i)
    pairs.insert(pairs.end(), {2 * std::cos(0.25 * pi * i), 2 * std::sin(0.25 * pi * i)});
  const auto complex = write_vector("pairs", pairs, 1e-3, 0, true);
  std::string yearly = "t_yr level_m\n";
  for (int i = 0; i < 2000; ++i)
    yearly += std::to_string(1900 + i / 1000.0) + ' ' + std::to_string(2 * std::sin(0.25 * pi * i)) + '\n';
  const auto years = write_file("yearly", yearly);
  struct {
    std::string arguments;
    double value;
    const char* unit;
    const char* level_unit;
    double level;
  } const cases[] = {
      {vector, 2, "", "dB re 1", 6.0206},
      {"--unit V --as peak " + vector, 2, "V", "dB re 1 V", 6.0206},
      {"--unit V --as rms " + vector, std::sqrt(2), "V rms", "dBV", 3.0103},
      {"--unit V --as power " + vector, 2, "V^2", "dB re 1 V^2", 3.0103},
      {"--unit V --as psd " + vector, 2 / enbw, "V^2/Hz", "dB re 1 V^2/Hz", 1.2494},
      {"--unit V --as asd " + vector, std::sqrt(2 / enbw), "V/sqrt(Hz)", "dB re 1 V/sqrt(Hz)", 1.2494},
      {"--unit m/s^2 --as psd " + vector, 2 / enbw, "(m/s^2)^2/Hz", "dB re 1 (m/s^2)^2/Hz", 1.2494},
      {"--unit Pa --gain -20 --as rms " + vector, 20 * std::sqrt(2), "Pa rms", "dB re 1 Pa rms", 29.0309},
      {"--as asd " + vector, std::sqrt(2 / enbw), "1/sqrt(Hz)", "dB re 1/sqrt(Hz)", 1.2494},
      {sound, 2, "FS", "dBFS", 6.0206},
      {"--as rms " + sound, std::sqrt(2), "FS rms", "dBFS", 6.0206},
      {"--as psd " + sound, 2 / enbw, "FS^2/Hz", "dBFS/Hz", 4.2597},
      {"--unit Pa --as rms " + sound, std::sqrt(2), "Pa rms", "dB re 1 Pa rms", 3.0103},
      {complex, 2, "", "dB re 1", 6.0206},
      {"--as power " + complex, 4, "", "dB re 1", 6.0206},
      {"--as psd " + years, 2 / enbw, "m^2 yr", "dB re 1 m^2 yr", 1.2494},
  };
  for (const auto& c : cases) {
    const auto r = run("spectrum --json -s 1000 " + c.arguments);
    const auto lines = lines_of(r.out);
    ASSERT_EQ(lines.size(), 1U) << c.arguments << ": " << r.out << r.err;
    EXPECT_NEAR(lines[0].amplitude, c.value, 1e-4 * c.value) << c.arguments;
    EXPECT_NEAR(lines[0].level, c.level, 1e-3) << c.arguments;
    EXPECT_TRUE(
        says(r.out, std::string("\"unit\":\"") + c.unit + "\",\"level_unit\":\"" + c.level_unit + '"'))
        << c.arguments;
  }
}

// White noise of variance s^2 at the rate f has the density 2 s^2 / f, whatever the window, the overlap and
// the average.
TEST(Units, TheNoiseFloorIsThatOfTheNoise) {
  const auto file = noisy_sine(30, 5, 200'000);
  const double density = 2 * 25 / 1000.0;
  struct {
    const char* options;
    double tolerance;
  } const cases[] = {{"-s 512", 0.01},
                     {"-s 512 -w flattop --overlap 75%", 0.02},
                     {"-s 4096 -w boxcar --overlap 0", 0.04},
                     {"-s 200000", 0.02},
                     {"-s 512 --average maximum", 0.05},
                     {"-s 512 --average minimum --overlap 0", 0.05},
                     {"-s 512 --average exponential --settled 40", 0.05}};
  for (const auto& c : cases) {
    const auto r = run("spectrum --json --as psd " + std::string(c.options) + " " + file);
    EXPECT_NEAR(number_after(r.out, "\"noise_floor\":"), density, c.tolerance * density) << c.options;
    const auto lines = lines_of(r.out);
    ASSERT_EQ(lines.size(), 1U) << c.options << r.out;
    EXPECT_NEAR(lines[0].frequency, 125, 0.2) << c.options;
  }
}

// A row is missing after every 5000: with so long segments no piece fills one, with shorter ones none
// straddles a gap.
TEST(Units, SegmentsStopAtGaps) {
  std::string table = "t v\n";
  for (int i = 0; i < 20'000; ++i) {
    if (i % 5000 != 4999) table += std::to_string(i) + ' ' + std::to_string(std::sin(0.25 * pi * i)) + '\n';
  }
  const auto file = write_file("gapped", table);
  const auto r = run("spectrum --json --gaps split -s 1000 --overlap 0 " + file);
  EXPECT_EQ(number_after(r.out, "\"segments\":"), 16) << r.err;
  EXPECT_EQ(number_after(r.out, "\"unused\":"), 4 * 999);
  EXPECT_EQ(number_after(r.out, "\"gaps\":"), 3);
  const auto lines = lines_of(r.out);
  ASSERT_EQ(lines.size(), 1U) << r.out;
  EXPECT_NEAR(lines[0].amplitude, 1, 1e-5);
  const auto none = run("spectrum --gaps split -s 6000 " + file);
  EXPECT_EQ(none.status, 1);
  EXPECT_TRUE(says(none.err, "no piece between the gaps is as long as a segment"));
}

// Records of noise, every one a spectrum of its own: fewer than one in a thousand shows a line.
TEST(Units, NoiseShowsNoLines) {
  std::mt19937 engine(5);
  std::normal_distribution<double> noise;
  std::string stream;
  for (int i = 0; i < 300; ++i)
    stream += read_file(write_vector("record", samples([&](int) { return noise(engine); }, 1536), 1, 0));
  const auto file = write_file("records", stream);
  for (const char* options :
       {"-s 1536", "-s 512", "-s 512 --overlap 75%", "-s 256 --average maximum", "-s 256 -w flattop"}) {
    const auto r = run("spectrum --each --json " + std::string(options) + " " + file);
    EXPECT_EQ(std::ranges::count(r.out, '\n'), 300) << r.err;
    EXPECT_LE(lines_of(r.out).size(), 1U) << options;
  }
  EXPECT_GE(lines_of(run("spectrum --json -l 50 --min-snr 0.5 " + file).out).size(), 1U);
}

TEST(Data, ASpectrumComesBackFromItsText) {
  const auto file = noisy_sine(2, 0.1, 30000);
  const auto direct = lines_of(run("spectrum --json --as rms -s 1024 " + file).out);
  const auto from = data_of(run("spectrum --csv --as power -s 1024 " + file).out);
  ASSERT_EQ(direct.size(), 1U);
  ASSERT_EQ(from.values.size(), 2049U);
  EXPECT_EQ(from.frequencies[1], 1000.0 / 4096);
  EXPECT_EQ(from.frequencies.back(), 500);
  for (const char* options : {"--as peak", "--as asd", "--as psd --db", "--as rms --db --unit V"}) {
    const auto csv = write_file("told.csv", run("spectrum --csv -s 1024 " + file + " " + options).out);
    const auto lines = lines_of(run("merge --json --as rms " + csv).out);
    ASSERT_EQ(lines.size(), 1U) << options;
    EXPECT_NEAR(lines[0].frequency, direct[0].frequency, 1e-9);
    EXPECT_NEAR(lines[0].amplitude, direct[0].amplitude, 1e-12);
    EXPECT_NEAR(lines[0].snr, direct[0].snr, 1e-9);
    const auto powers = data_of(run("merge --as power " + csv).out);
    for (std::size_t i = 0; i < powers.values.size(); ++i)
      ASSERT_NEAR(powers.values[i], from.values[i], 1e-11 * from.values[i] + 1e-300) << options << i;
  }
  const auto band = data_of(run("spectrum --csv -s 1024 --from 100 --to 150 " + file).out);
  EXPECT_GE(band.frequencies.front(), 100);
  EXPECT_LE(band.frequencies.back(), 150);
  EXPECT_NEAR(number_after(run_shell("sigpak spectrum --json --all -s 1024 --from 100 --to 150 " + file).out,
                           "\"first\":"),
              band.frequencies.front(), 1e-12);
  const auto object = run_shell("sigpak spectrum --json --all -s 64 " + file).out;
  const std::string schema = read_file(SIGPAK_TOP "/docs/spectrum.schema.json");
  const std::regex key("\"([a-z_]+)\":");
  for (std::sregex_iterator at(object.begin(), object.end(), key), end; at != end; ++at)
    EXPECT_TRUE(says(schema, "\"" + std::string((*at)[1]) + "\": {"));
  const auto vector =
      run_shell("sigpak spectrum --format vector -s 1024 --as power " + file + " | sigpak stats --json");
  EXPECT_EQ(number_after(vector.out, "\"count\":"), 2049);
}

TEST(Data, SpectraMergeByTheirSegmentsInTheirOrder) {
  const char* const names[] = {"a", "b", "c"};
  const int counts[] = {3000, 1024, 20000};
  std::string all;
  double segments = 0;
  double variance = 0;  // of the sum of all segments, as that of one is 2 / degrees
  std::vector<long double> sum(2049);
  for (int i = 0; i < 3; ++i) {
    const auto file = noisy_sine(1 + i, 0.1, counts[i], static_cast<unsigned>(i), names[i]);
    const auto csv = run("spectrum --csv --as power -s 1024 " + file).out;
    write_file(std::string(names[i]) + ".csv", csv);
    const double own = number_after(csv, "# segments: ");
    const auto values = data_of(csv).values;
    for (std::size_t k = 0; k < sum.size(); ++k) sum[k] += own * values[k];
    segments += own;
    variance += own * own * 2 / number_after(csv, "# degrees of freedom: ");
    all += csv;
  }
  const auto merged = run_shell("sigpak merge a.csv b.csv c.csv");
  const auto data = data_of(merged.out);
  EXPECT_EQ(number_after(merged.out, "# segments: "), segments);
  EXPECT_EQ(number_after(merged.out, "# samples: "), 24024);
  EXPECT_NEAR(number_after(merged.out, "# degrees of freedom: "), 2 * segments * segments / variance, 1e-9);
  ASSERT_EQ(data.values.size(), sum.size());
  for (std::size_t k = 0; k < sum.size(); ++k)
    ASSERT_NEAR(data.values[k], static_cast<double>(sum[k] / segments), 1e-14 * data.values[k] + 1e-300) << k;
  EXPECT_EQ(run_shell("cat a.csv b.csv c.csv | sigpak merge").out, merged.out);
  EXPECT_EQ(run_shell("cat b.csv c.csv >bc.csv; sigpak merge a.csv bc.csv").out, merged.out);

  std::string many;
  for (int i = 0; i < 300; ++i) many += all;  // beyond the leaves of the tree of additions
  write_file("many.csv", many);
  const auto averaged = data_of(run_shell("sigpak merge many.csv").out);
  for (std::size_t k = 0; k < sum.size(); ++k)
    ASSERT_NEAR(averaged.values[k], data.values[k], 1e-13 * data.values[k]) << k;
}

TEST(Data, ExtremesMergeAndUnlikeSpectraAreRefusedByName) {
  noisy_sine(1, 0.1, 9000, 1, "a"), noisy_sine(1, 0.1, 9000, 2, "b");
  const auto write = [](const char* name, const std::string& options) {
    EXPECT_EQ(run_shell("sigpak spectrum --csv --as power -s 512 " + options + " -o " + name).status, 0)
        << options;
  };
  for (const char* kind : {"mean", "maximum", "minimum"}) {
    write((std::string("a.") + kind).c_str(), std::string("a --average ") + kind);
    write((std::string("b.") + kind).c_str(), std::string("b --average ") + kind);
  }
  const auto value = [](const std::string& kind) {
    return data_of(run_shell("sigpak merge a." + kind + " b." + kind).out).values;
  };
  const auto mean = value("mean"), greatest = value("maximum"), least = value("minimum");
  const auto a = data_of(read_file(path("a.maximum"))).values,
             b = data_of(read_file(path("b.maximum"))).values;
  for (std::size_t k = 0; k < mean.size(); ++k) {
    ASSERT_TRUE(least[k] <= mean[k] && mean[k] <= greatest[k]) << k;
    ASSERT_EQ(greatest[k], std::max(a[k], b[k]));
  }
  struct {
    const char* options;
    const char* reason;
  } const unlike[] = {{"b --average exponential", "an exponential average cannot be merged"},
                      {"b -w flattop", "its window is Flattop, that of the first is Hann"},
                      {"b -r 2k", "its rate is 2000, that of the first is 1000"},
                      {"b --unit V", "its unit is V, that of the first is none"},
                      {"b -s 256", "its segment is 256"},
                      {"b --average maximum", "its average is maximum"},
                      {"b --to 100", "its number of points is"}};
  for (const auto& u : unlike) {
    write("other", u.options);
    const auto r = run_shell("sigpak merge a.mean other");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_TRUE(says(r.err, u.reason));
    EXPECT_TRUE(says(r.err, "other"));
  }
  const auto kept = run_shell("sigpak merge --keep-going a.mean other missing b.mean");
  EXPECT_EQ(kept.status, 1);
  EXPECT_EQ(data_of(kept.out).values, mean);
  EXPECT_TRUE(says(kept.err, "missing: No such file"));
  EXPECT_TRUE(says(kept.err, "2 files were left out"));
}

TEST(Data, BrokenSpectraAreRefusedWithTheirLine) {
  noisy_sine(1, 0.1, 600, 1, "short");
  const std::string good = run_shell("sigpak spectrum --csv -s 64 short").out;
  const auto with = [&good](const std::string& from, const std::string& to) {
    std::string text = good;
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
  };
  struct {
    std::string text;
    const char* reason;
  } const cases[] = {{"", "there is no spectrum"},
                     {"1,2\n", ":1: no spectrum begins here"},
                     {with("# rate: 1000\n", ""), "no line \"# rate: ...\""},
                     {with("# rate: 1000", "# rate: fast"), "\"fast\" is no number"},
                     {with("# rate: 1000", "# rate: 0"), "cannot be"},
                     {with("# segment: 64", "# segment: 4e15"), "cannot be"},
                     {with("# window: Hann", "# window: Hann2"), "no window Hann2"},
                     {with("# quantity: peak", "# quantity: size"), "no quantity"},
                     {with("# segment: 64", "# segment: 48"), "are not those of its rate"},
                     {with("\n0,", "\n100000,"), "are not those of its rate"},
                     {with("\n0,", "\n0,x"), "is no number"},
                     {with("\n0,", "\n0;"), "no comma"},
                     {good.substr(0, good.rfind("\n", good.size() - 2) + 1), "cut short: 128 points of 129"},
                     {good.substr(0, good.find("frequency [Hz]")), "no values"}};
  for (const auto& c : cases) {
    const auto r = run("merge " + write_file("broken.csv", c.text));
    EXPECT_EQ(r.status, 1) << c.reason;
    EXPECT_TRUE(says(r.err, c.reason));
  }
  for (std::size_t length = 0; length < good.size(); length += 1 + length / 7) {
    const auto r = run("plot " + write_file("cut.csv", good.substr(0, length)));
    EXPECT_TRUE(r.status == 0 || r.status == 1) << length;
  }
}
