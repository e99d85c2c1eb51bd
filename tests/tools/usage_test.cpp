// Errors with their exit status, the picture, and the plot in a terminal.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <numbers>
#include <regex>
#include <sstream>

#include "tools/program.h"

using namespace program;

namespace {

// Tags that close in order, attributes in quotes, no stray < or &.
bool is_well_formed(const std::string& xml) {
  std::vector<std::string> open;
  bool any = false;
  for (std::size_t at = 0; at < xml.size();) {
    if (xml[at] == '&') {
      const auto end = xml.find(';', at);
      const auto entity = xml.substr(at, end - at);
      if (entity != "&amp" && entity != "&lt" && entity != "&gt" && entity != "&quot") return false;
    }
    if (xml[at] == '>' || (xml[at] >= 0 && xml[at] < ' ' && xml[at] != '\n')) return false;
    if (xml[at] != '<') {
      ++at;
      continue;
    }
    std::size_t end = at + 1;
    for (bool inside = false; end < xml.size() && (inside || xml[end] != '>'); ++end) {
      if (xml[end] == '"') inside = !inside;
      if (xml[end] == '<') return false;
    }
    if (end == xml.size()) return false;
    const std::string tag = xml.substr(at + 1, end - at - 1);
    const std::string name = tag.substr(0, tag.find_first_of(" \n"));
    if (tag.starts_with("/")) {
      if (open.empty() || open.back() != tag.substr(1)) return false;
      open.pop_back();
    } else if (!tag.starts_with("?") && !tag.ends_with("/")) {
      if (open.empty() && any) return false;
      open.push_back(name);
      any = true;
    }
    at = end + 1;
  }
  return any && open.empty();
}

std::string tone(int count = 3000) {
  return column(samples([](int i) { return std::sin(0.7 * i); }, count));
}

}  // namespace

TEST(Usage, WrongUsageIsStatus2) {
  const auto file = write_file("tone", tone());
  for (const std::string arguments :
       {"", "spectrum", "spectre x", "spectrum --nothing x", "spectrum a b", "spectrum -w Hanning x",
        "spectrum -n 0 x", "spectrum -n x y", "spectrum -s 15 x", "spectrum -s 5000000 x", "spectrum -s -1 x",
        "spectrum -c 0 x", "spectrum -r 0 x", "spectrum -r -5 x", "spectrum -r nan x", "spectrum -r 1e300 x",
        "spectrum -r 48q x", "spectrum --svg", "spectrum --axis polar x"}) {
    const auto r = run(arguments);
    EXPECT_EQ(r.status, 2) << arguments;
    EXPECT_EQ(r.out, "") << arguments;
    EXPECT_TRUE(r.err.starts_with("sigpak: ")) << arguments << ": " << r.err;
  }
}

TEST(Usage, HelpAndVersionAreStatus0) {
  for (const std::string arguments : {"--help", "spectrum --help", "--version"}) {
    const auto r = run(arguments);
    EXPECT_EQ(r.status, 0) << arguments;
    EXPECT_NE(r.out, "") << arguments;
    EXPECT_EQ(r.err, "") << arguments;
  }
}

TEST(Usage, DataThatCannotBeUsedIsStatus1WithFileAndReason) {
  const auto good = write_file("good", tone());
  const std::string vector = "#DSP points = 20\n1 2 3\n";
  struct {
    std::string name;
    std::string options;
    std::string reason;
  } const cases[] = {
      {path("missing"), "", "No such file"},
      {path(""), "", "directory"},
      {write_file("empty", ""), "", "empty"},
      {write_file("prose", "There are no numbers here.\nNot one.\n"), "", "no line of numbers"},
      {write_file("word", "1\n2\n3\noops\n5\n"), "", ":4: not a number in \"oops\""},
      {write_file("ragged", "1 2\n2 3\n3 4 5\n"), "", ":3: 3 columns, but 2 before"},
      {write_file("uneven", "0 1\n1 1\n2 1\n4 1\n5 1\n6 1\n7 1\n8 1\n9 1\n"), "",
       ":4: 1 sample is missing before this line"},
      {write_file("drifting", "0 1\n1 1\n2.1 1\n3.3 1\n4.6 1\n6 1\n7.5 1\n9 1\n"), "", "not evenly"},
      {write_file("backwards", "0 1\n1 1\n0.5 1\n"), "", "column 1 does not increase"},
      {write_file("hole", tone(20) + "nan\n" + tone(20)), "",
       ":21: column 1 is nan; --gaps linear bridges it"},
      {write_file("huge", tone(20) + "inf\n"), "", "sample 21 is not a finite number"},
      {write_file("vast", tone(20) + "-1e308\n"), "", "sample 21 is beyond 1e100"},
      {write_file("few", "1\n2\n3\n"), "", "only 3 samples"},
      {write_file("one", "1"), "", "only 1 sample;"},
      {write_file("cut", vector), "", "malformed or cut short"},
      {write_file("binary_cut", std::string("\xBE\x30\x03\xEB\x08\x04\0\0\xff\xff\xff\x7f", 12)), "",
       "cut short"},
      {write_file("delta", "#DSP delta = -1\n1 2 3 4 5 6 7 8 9\n"), "", "spacing"},
      {write_file("garbage", std::string("\x01\x02\x03\x00garbage", 11)), "", "not a vector, not text"},
      {write_file("fake.wav", std::string("RIFF\x01\0\0\0WAVE", 12)), "", "sound that cannot be read"},
      {good, "-c 2", "has 1 channel"},
      {write_sound("mono", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8000, 100, {[](int) { return 0.5; }}), "-c 2",
       "has 1 channel"},
      {write_file("long", std::string(100'000, '1')), "", ":1: too long"}};
  for (const auto& c : cases) {
    const auto r = run("spectrum " + c.name + " " + c.options);
    EXPECT_EQ(r.status, 1) << c.name;
    EXPECT_TRUE(r.err.starts_with("sigpak: " + c.name + ":")) << r.err;
    EXPECT_NE(r.err.find(c.reason), std::string::npos) << r.err;
    EXPECT_EQ(r.out, "") << c.name;
  }
  const auto r = run("spectrum - </dev/null");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "sigpak: standard input: the file is empty\n");
  EXPECT_EQ(run("spectrum " + good + " --svg " + path("no/such/directory.svg")).status, 1);
  EXPECT_EQ(run("spectrum " + good + " --svg /dev/full").err, "sigpak: /dev/full: No space left on device\n");
}

TEST(Usage, AFileCutAnywhereIsNeverACrash) {
  const waveform sine = [](int i) { return std::sin(0.1 * i); };
  for (const auto& name : {write_sound("whole.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 8000, 2000, {sine}),
                           write_sound("whole.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8000, 500, {sine})}) {
    const std::string bytes = read_file(name);
    for (std::size_t length = 0; length < bytes.size(); length += 1 + length / 3) {
      const auto r = run("spectrum " + write_file("cut", bytes.substr(0, length)));
      EXPECT_TRUE(r.status == 0 || r.status == 1) << name << " at " << length << ": " << r.err;
    }
  }
}

TEST(Picture, IsWellFormedWhateverTheName) {
  const auto svg = path("out.svg");
  for (const std::string name : {"plain", "a<b>&\"c\"'d",
                                 "\xFF\xC0\x80"
                                 "broken \xE2\x82\xAC",
                                 "tab\tand\x01"}) {
    const auto file = write_file(name, tone());
    const auto r = run("spectrum --rate 48000 -n 40 " + quoted(file) + " --svg " + svg);
    ASSERT_EQ(r.status, 0) << r.err;
    const auto xml = read_file(svg);
    EXPECT_TRUE(is_well_formed(xml)) << xml.substr(0, 600);
    EXPECT_NE(xml.find("Frequency in kHz"), std::string::npos);
    EXPECT_NE(xml.find("Level in dB"), std::string::npos);
    EXPECT_NE(xml.find(">5347.6"), std::string::npos) << "0.7 / (2 pi) of 48 kHz";
    EXPECT_EQ(xml.find("nan"), std::string::npos);
    EXPECT_EQ(xml.find("inf"), std::string::npos);
  }
  EXPECT_FALSE(is_well_formed("<a><b></a></b>"));
  EXPECT_FALSE(is_well_formed("<a>x & y</a>"));
}

TEST(Picture, OfSilenceAndOnBothAxes) {
  const auto svg = path("silence.svg");
  const auto silence =
      write_sound("silence.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8000, 20000, {[](int) { return 0.0; }});
  for (const char* axis : {"linear", "log"}) {
    EXPECT_EQ(run("spectrum " + silence + " --axis " + axis + " --svg " + svg).status, 0);
    EXPECT_TRUE(is_well_formed(read_file(svg)));
  }
}

// Where the text, or the mark, that ends like this stands.
std::pair<double, double> place(const std::string& svg, const std::string& end) {
  std::smatch found;
  EXPECT_TRUE(std::regex_search(svg, found, std::regex("x=\"([0-9.]+)\" c?y=\"([0-9.]+)\"" + end))) << end;
  return found.empty() ? std::pair(0.0, 0.0) : std::pair(std::stod(found[1]), std::stod(found[2]));
}

// A sine of amplitude 1 at an eighth of the rate.
std::string eighth() {
  return write_file(
      "eighth", column(samples([](int i) { return std::sin(0.25 * std::numbers::pi * i + 0.3); }, 16384)));
}

TEST(Picture, APeakStandsWhereTheAxesSay) {
  const auto svg = path("peak.svg");
  for (const std::string axis : {"linear", "log"}) {
    ASSERT_EQ(run("spectrum -r 8000 -n 1 " + eighth() + " --axis " + axis + " --svg " + svg).status, 0);
    const auto picture = read_file(svg);
    const auto [x, y] = place(picture, " r=\"3\"");
    EXPECT_NEAR(x, place(picture, axis == "log" ? ">1k<" : ">1.0<").first, 0.2);
    EXPECT_NEAR(y, place(picture, ">0<").second - 4, 0.2) << "0 dB, half a line above the foot of its label";
    EXPECT_LT(place(picture, axis == "log" ? ">500<" : ">0.5<").first, x);
    EXPECT_GT(place(picture, ">-20<").second, y);
    const auto curve = picture.substr(picture.find("class=\"curve\""));
    std::pair<double, double> highest(1e9, 0);
    const std::regex point("[ML]([0-9.]+) ([0-9.]+)");
    for (std::sregex_iterator at(curve.begin(), curve.end(), point), end; at != end; ++at)
      highest = std::min(highest, std::pair(std::stod((*at)[2]), std::stod((*at)[1])));
    EXPECT_NEAR(highest.first, y, 0.5);
    EXPECT_NEAR(highest.second, x, 1);
  }
}

TEST(Terminal, ThePlotStandsOnItsAxis) {
  const auto r = run_in_terminal("spectrum -r 8000 -n 1 " + eighth());
  if (r.status == 127) GTEST_SKIP() << "no program that makes terminals";
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find(": 100 %\r\x1B[K"), std::string::npos) << "progress is wiped out";
  std::vector<std::string> rows;
  std::istringstream in(r.out);
  for (std::string row; std::getline(in, row);) rows.push_back(row);
  ASSERT_GT(rows.size(), 15U);
  rows.erase(rows.begin(), rows.end() - 14);
  const auto& labels = rows[12];
  const auto column = labels.find(" 1 ") + 1;
  EXPECT_TRUE(labels.find(" 0 ") < column && column < labels.find(" 2 ")) << labels;
  EXPECT_TRUE(rows[0].starts_with("     0 ") && rows[5].starts_with("   -50 ")) << r.out;
  for (int row = 0; row < 10; ++row) {
    EXPECT_EQ(rows[static_cast<std::size_t>(row)].find_first_of(".#"), column - 1) << r.out;
  }
  EXPECT_EQ(rows[11].find('#'), column - 1) << r.out;
  EXPECT_NE(rows[13].find("dB in kHz"), std::string::npos);
}
