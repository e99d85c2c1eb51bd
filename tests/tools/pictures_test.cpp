// SPDX-License-Identifier: MIT
// Pictures: whatever the spectrum, nothing overlaps and nothing leaves its place; peaks stand where the axes
// say.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <numbers>
#include <random>
#include <regex>
#include <sstream>

#include "tools/program.h"

using namespace program;

namespace {

struct box {
  double left, top, right, bottom;
  std::string text;
  std::string kind;
};

constexpr double frame_left = 80, frame_top = 104, frame_right = 806, frame_bottom = 512;

bool overlap(const box& a, const box& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// Where texts stand, by the widths of DejaVu Sans: digits take 0.64 of the size, bold ones 0.7, others 0.6 on
// the average.
std::vector<box> texts_of(const std::string& svg) {
  std::vector<box> out;
  const std::regex text("<text class=\"([^\"]*)\" x=\"([-0-9.]+)\" y=\"([-0-9.]+)\">([^<]*)</text>");
  for (std::sregex_iterator at(svg.begin(), svg.end(), text), end; at != end; ++at) {
    const std::string kind = (*at)[1];
    const double size = kind == "title" ? 19 : kind == "number" ? 11 : kind.starts_with("axis") ? 13 : 12;
    const bool bold = kind == "title" || kind == "number" || kind == "head";
    const bool digits = kind == "value" || kind == "end" || kind == "middle";
    const std::string shown =
        std::regex_replace(std::string((*at)[4]), std::regex("&[a-z]+;|[\xC0-\xF7][\x80-\xBF]*"), "m");
    const double width = size * (bold ? 0.7 : digits ? 0.64 : 0.6) * static_cast<double>(shown.size());
    const bool centred = kind == "number" || kind.ends_with("middle");
    const double shift = centred ? width / 2 : kind == "value" || kind == "head" || kind == "end" ? width : 0;
    const double x = std::stod((*at)[2]) - shift;
    const double y = std::stod((*at)[3]);
    out.push_back({x, y - 0.75 * size, x + width, y + 0.2 * size, (*at)[4], kind});
  }
  return out;
}

// Tags that are closed in their order, quoted values without <, and no text outside.
bool is_well_formed(const std::string& xml) {
  std::vector<std::string> open;
  const std::regex tag(
      "<([/?]?)([A-Za-z]+)((?: [A-Za-z:0-9-]+=\"[^\"<]*\")*) ?([/?]?)>|&(amp|lt|gt|quot);|[^<>&]+");
  std::size_t covered = 0;
  for (std::sregex_iterator at(xml.begin(), xml.end(), tag), end; at != end; ++at) {
    covered += static_cast<std::size_t>(at->length());
    const std::string name = (*at)[2];
    if (name.empty() || (*at)[1] == "?" || (*at)[4] == "/") continue;
    if ((*at)[1] != "/") {
      open.push_back(name);
    } else if (open.empty() || open.back() != name) {
      return false;
    } else {
      open.pop_back();
    }
  }
  return covered == xml.size() && open.empty() &&
         std::ranges::none_of(xml, [](char c) { return static_cast<unsigned char>(c) < ' ' && c != '\n'; });
}

// What the two groups of a pattern match.
std::vector<std::pair<double, double>> points_of(const std::string& svg, const std::string& pattern) {
  std::vector<std::pair<double, double>> out;
  const std::regex point(pattern);
  for (std::sregex_iterator at(svg.begin(), svg.end(), point), end; at != end; ++at)
    out.emplace_back(std::stod((*at)[1]), std::stod((*at)[2]));
  return out;
}

void expect_tidy(const std::string& svg) {
  EXPECT_TRUE(is_well_formed(svg)) << svg.substr(0, 800);
  EXPECT_EQ(svg.find("nan"), std::string::npos);
  const auto texts = texts_of(svg);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const box& t = texts[i];
    EXPECT_TRUE(t.left >= 0 && t.top >= 0 && t.right <= 1080 && t.bottom <= 580) << "outside: " << t.text;
    if (t.kind == "number" && t.left < frame_right) {
      EXPECT_TRUE(t.left >= frame_left && t.right <= frame_right && t.top >= frame_top &&
                  t.bottom <= frame_bottom)
          << t.text;
    }
    for (std::size_t k = 0; k < i; ++k)
      EXPECT_FALSE(overlap(t, texts[k])) << t.text << " over " << texts[k].text;
  }
  auto marks = points_of(svg, "[ML]([-0-9.]+) ([-0-9.]+)");
  for (const auto& circle : points_of(svg, "cx=\"([-0-9.]+)\" cy=\"([-0-9.]+)\"")) marks.push_back(circle);
  for (const auto& [x, y] : marks) {
    EXPECT_TRUE(x >= frame_left && x <= frame_right && y >= frame_top && y <= frame_bottom) << x << ' ' << y;
  }
  // A labelled tick at every end of the axes.
  for (const auto& end :
       {std::pair(frame_left, frame_bottom + 20), std::pair(frame_right, frame_bottom + 20),
        std::pair(frame_left - 9, frame_top + 4), std::pair(frame_left - 9, frame_bottom + 4)}) {
    std::ostringstream place;
    place << std::fixed << std::setprecision(1) << "x=\"" << end.first << "\" y=\"" << end.second << "\">";
    EXPECT_TRUE(says(svg, place.str()));
  }
}

std::string sum_of_lines(const char* name, const std::vector<double>& frequencies, double amplitude,
                         double noise, int count = 20000) {
  std::mt19937 engine(7);
  std::normal_distribution<double> normal(0, noise);
  const auto x = samples(
      [&](int i) {
        double sum = noise > 0 ? normal(engine) : 0;
        for (const double f : frequencies)
          sum += amplitude * std::sin(2 * std::numbers::pi * f * i + 100 * f);
        return sum;
      },
      count);
  return write_vector(name, x, 1 / 44100.0, 0);
}

std::vector<double> evenly(double first, double step, int count) {
  std::vector<double> out;
  for (int i = 0; i < count; ++i) out.push_back(first + step * i);
  return out;
}

// A sine of amplitude 1 at an eighth of the rate, under noise.
std::string eighth() { return sum_of_lines("eighth", {0.125}, 1, 1e-5); }

}  // namespace

TEST(Picture, IsTidyWhateverTheSpectrum) {
  std::vector<double> pairs;
  for (int i = 0; i < 9000; ++i) pairs.insert(pairs.end(), {std::cos(0.3 * i), std::sin(0.3 * i)});
  const std::string long_name = std::string(90, 'n') + "<\xFF>&\"\xE2\x82\xAC.vec";
  const std::vector<std::string> spectra = {
      sum_of_lines("silence", {}, 0, 0),
      sum_of_lines("noise", {}, 0, 1e-3),
      sum_of_lines("low", evenly(0.0005, 0.0004, 24), 1, 1e-4),
      sum_of_lines("high", evenly(0.499, -0.0006, 24), 1e-3, 1e-6),
      sum_of_lines("comb", evenly(0.0123, 0.0123, 40), 0.2, 1e-3),
      sum_of_lines("huge", {0.2, 0.201}, 1e90, 1e80),
      sum_of_lines("tiny", {0.01}, 1e-90, 0),
      sum_of_lines("few", {0.2}, 1, 0.1, 16),
      write_file(long_name, read_file(sum_of_lines("x", {0.3}, 1, 0.1))),
      write_vector("complex", pairs, 1e-6, 0, true),
      write_file("plain", column(samples([](int i) { return std::sin(0.7 * i); }, 3000))),
      write_sound("pcm.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8000, 20000,
                  {[](int i) { return i % 40 == 0 ? 0.9 : 0.0; }})};
  for (const char* options :
       {"--axis linear -l 40", "--axis log --as asd --unit 'm/s^2' --theme dark --title 'A & <B>'",
        "--db --axis log -l 16 --min-snr 0"}) {
    for (const auto& name : spectra) {
      SCOPED_TRACE(name + " " + options);
      const auto r = run("spectrum " + quoted(name) + " --svg - " + options);
      ASSERT_EQ(r.status, 0) << r.err;
      expect_tidy(r.out);
      EXPECT_EQ(r.out.find(path("")), std::string::npos) << "the folder";
      EXPECT_EQ(r.out.find(">no signal<") != std::string::npos, name == spectra[0]);
    }
  }
}

TEST(Picture, APeakStandsWhereTheAxesSay) {
  for (const std::string axis : {"linear", "log"}) {
    const auto svg = run("spectrum -r 8000 " + eighth() + " --svg - --axis " + axis).out;
    const auto texts = texts_of(svg);
    const auto middle = [&](const std::string& text, const char* kind) {
      const auto found =
          std::ranges::find_if(texts, [&](const box& b) { return b.text == text && b.kind == kind; });
      EXPECT_NE(found, texts.end()) << text;
      return found == texts.end() ? std::pair(0.0, 0.0)
                                  : std::pair((found->left + found->right) / 2, found->bottom);
    };
    const auto circles = points_of(svg, "cx=\"([0-9.]+)\" cy=\"([0-9.]+)\"");
    ASSERT_EQ(circles.size(), 1U);
    EXPECT_NEAR(circles[0].first, middle(axis == "log" ? "1k" : "1.0", "middle").first, 0.2);
    EXPECT_NEAR(circles[0].second, middle("0", "end").second - 4 - 0.2 * 12, 0.2);
    EXPECT_LT(middle(axis == "log" ? "500" : "0.5", "middle").first, circles[0].first);
    auto curve = points_of(svg.substr(svg.find("class=\"curve")), "[ML]([0-9.]+) ([0-9.]+)");
    const auto top = *std::ranges::min_element(curve, {}, &std::pair<double, double>::second);
    EXPECT_NEAR(top.first, circles[0].first, 1.1);
    EXPECT_NEAR(top.second, circles[0].second, 0.5);
    EXPECT_TRUE(says(svg, axis == "log" ? ">1000.0000<" : ">1.0000000<")) << "in the unit of the axis";
    const auto dashes =
        points_of(svg, "<line class=\"floor\" x1=\"80.0\" y1=\"([0-9.]+)\" x2=\"806.0\" y2=\"([0-9.]+)\"");
    ASSERT_EQ(dashes.size(), 1U);
    EXPECT_GT(dashes[0].first, 400) << "some 100 dB below the line";
    EXPECT_TRUE(says(svg, ">noise floor<"));
  }
}

// However many points of a spectrum share a column of the picture.
TEST(Picture, NoiseStandsAtItsFloor) {
  for (const char* options : {"-s 20000", "-s 512", "-s 4096 --axis log"}) {
    const auto svg = run("spectrum --svg - " + sum_of_lines("noise", {}, 0, 1) + ' ' + options).out;
    auto curve = points_of(svg.substr(svg.find("class=\"curve")), "[ML]([0-9.]+) ([0-9.]+)");
    const auto middle = curve.begin() + std::ssize(curve) / 2;
    std::ranges::nth_element(curve, middle, {}, &std::pair<double, double>::second);
    EXPECT_NEAR(middle->second, number_after(svg, "class=\"floor\" x1=\"80.0\" y1=\""), 8) << options;
  }
}

// Leakage that falls through what noise reaches: 4 dB lay between the two sides of that level.
TEST(Picture, SkirtsFallWithoutAStep) {
  const auto svg =
      run_shell("sigpak gen cos -n 16384 -f 1000.5 -r 8192 | sigpak spectrum -w Uniform --svg -").out;
  const auto circles = points_of(svg, "cx=\"([0-9.]+)\" cy=\"([0-9.]+)\"");
  ASSERT_EQ(circles.size(), 1U);
  const auto curve = points_of(svg.substr(svg.find("class=\"curve")), "[ML]([0-9.]+) ([0-9.]+)");
  for (std::size_t i = 1; i < curve.size(); ++i) {
    if (std::abs(curve[i].first - circles[0].first) < 15) continue;
    ASSERT_NEAR(curve[i].second, curve[i - 1].second, 6) << curve[i].first;
  }
}

TEST(Picture, OverlaidSpectraShareTheirAxes) {
  EXPECT_EQ(run_shell("sigpak spectrum --csv -o a.csv " + eighth() +
                      "; sigpak spectrum --csv --gain 0.1 -o b.csv eighth")
                .status,
            0);
  const auto r = run_shell("sigpak plot a.csv b.csv --svg -");
  expect_tidy(r.out);
  EXPECT_EQ(points_of(r.out, "class=\"curve c[01]\" d=\"M([0-9.]+) ([0-9.]+)").size(), 2U);
  EXPECT_TRUE(
      says(run_shell("sigpak spectrum --csv --unit V -o c.csv eighth; sigpak plot a.csv c.csv --svg -").err,
           "one picture cannot show both"));
}

// By colour, or where none is shown as a gap in what the first one fills; files of one name by what they
// hold.
TEST(Picture, CurvesOnATerminalAreToldApart) {
  const std::string two = "sigpak spectrum -w Uniform --csv -o a " + eighth() +
                          "; sigpak spectrum -w Hann --gain 0.1 --csv -o b eighth; ";
  const auto apart = run_shell(two + "LC_ALL=C.UTF-8 sigpak plot --color never a b").out;
  EXPECT_TRUE(apart.ends_with("       \u2588 Uniform  \u2500 Hann\n")) << apart;
  const auto first = run_shell("LC_ALL=C.UTF-8 sigpak plot --color never a").out;
  const std::regex gap("\u28FF\xE2[\xA2-\xA3][\x80-\xBE]\u28FF");  // between full characters
  EXPECT_TRUE(std::regex_search(apart, gap)) << apart;
  EXPECT_FALSE(std::regex_search(first, gap)) << first;
  const auto typed = run_shell("LC_ALL=C sigpak plot --color never a b").out;
  EXPECT_TRUE(typed.ends_with("       # Uniform  * Hann\n")) << typed;
  const auto svg = run_shell("sigpak plot a b --svg -").out;
  EXPECT_TRUE(says(svg, ">Uniform<") && says(svg, ">Hann<"));
}

// What is kept is what the program draws: a picture that changes is looked at, and kept anew where it is
// better. The first is the README's.
TEST(Picture, LooksAsItDid) {
  const std::string tone =
      "sigpak gen rand -n 96000 -r 48k --distribution normal --seed 1 | sigpak apply scale 0.01 | sigpak "
      "apply "
      "addcos 0 440 0.5 0 -o tone; ";
  const std::string csv = "--unit V --as asd --csv ";
  const std::string comb =
      "spectrum --unit V --color never " + sum_of_lines("comb", evenly(0.0123, 0.0123, 9), 0.2, 1e-4);
  struct {
    std::string kept, shown;
  } pictures[] = {
      {SIGPAK_TOP "/docs/tone.svg",
       run_shell(tone + "sigpak spectrum --unit V --title '440 Hz in noise' --svg - tone").out},
      {SIGPAK_TOP "/tests/tools/pictures/two.svg",
       run_shell(tone + "sigpak spectrum " + csv +
                 "tone -o all; sigpak filter --low-pass 1k --decimate 2 tone -o low; " + "sigpak spectrum " +
                 csv + "low | sigpak plot all - --axis log --theme dark --svg -")
           .out},
      {SIGPAK_TOP "/tests/tools/pictures/typed.txt", run_in_terminal(comb).out},
      {SIGPAK_TOP "/tests/tools/pictures/dots.txt",
       run_in_terminal(comb + " --axis log", 100, 30, "C.UTF-8").out}};
  for (auto& [kept, shown] : pictures) {
    if (shown.empty() && kept.ends_with(".txt")) continue;  // no program that makes terminals
    std::erase(shown, '\r');
    if (shown.starts_with(path(""))) shown.erase(0, path("").size());
    if (shown == read_file(kept)) continue;
    const auto name = kept.substr(kept.rfind('/') + 1);
    std::ofstream(name) << shown;
    ADD_FAILURE() << "diff " << kept << ' ' << std::filesystem::current_path() / name;
  }
}

TEST(Terminal, ThePlotFillsTheWindowAndStandsOnItsAxis) {
  struct {
    int columns;
    int rows;
  } const sizes[] = {{80, 24}, {200, 50}, {40, 24}};
  for (const auto& size : sizes) {
    const auto r =
        run_in_terminal("spectrum -r 8000 --axis linear --color never " + eighth(), size.columns, size.rows);
    if (r.status == 127) GTEST_SKIP() << "no program that makes terminals";
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> rows;
    std::istringstream in(r.out);
    for (std::string row; std::getline(in, row);) rows.push_back(row.substr(0, row.find('\r')));
    EXPECT_LT(rows.size(), static_cast<std::size_t>(size.rows)) << "the line with the file stays in sight";
    EXPECT_GT(rows.size(), static_cast<std::size_t>(size.rows) - 4);
    const auto base =
        std::ranges::find_if(rows, [](const std::string& row) { return row.starts_with("      ++--"); });
    ASSERT_NE(base, rows.end()) << r.out;
    EXPECT_EQ(base->size(), static_cast<std::size_t>(size.columns) - 1);
    const auto width = base->size() - 7;
    EXPECT_EQ(base[0][7 + width / 2], '+') << r.out;
    EXPECT_EQ(base[1][7 + width / 2 - (size.columns > 100 ? 1 : 0)], '2') << r.out;
    const auto top = std::ranges::find_if(rows, [](const std::string& row) {
      return row.size() > 7 && row.find('.', 7) != std::string::npos && (row[6] == '|' || row[6] == '+');
    });
    EXPECT_NEAR(static_cast<double>(top->find('.', 7)), 7 + static_cast<double>(width) / 4, 1.1) << r.out;
    EXPECT_TRUE(r.out.find("dB re 1 over kHz") != std::string::npos &&
                r.out.find("    0 +") != std::string::npos)
        << r.out;
  }
  const auto colored = run_in_terminal("spectrum " + eighth());
  EXPECT_TRUE(says(colored.out, "\033[1;31m")) << "the peak";
  EXPECT_EQ(run_shell("NO_COLOR=1 sigpak spectrum eighth").out.find('\033'), std::string::npos);
}
