// SPDX-License-Identifier: MIT
// Wrong usage, help, and errors with their exit status.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "tools/program.h"

using namespace program;

namespace {

std::string tone(int count = 3000) {
  return column(samples([](int i) { return std::sin(0.7 * i); }, count));
}

}  // namespace

TEST(Usage, WrongUsageIsStatus2AndTellsWhatIsRight) {
  write_file("x", tone());
  struct {
    const char* arguments;
    const char* reason;
  } const cases[] = {{"", "subcommand"},
                     {"spectre x", "there is no command spectre; there are spectrum, plot"},
                     {"spectrum --nothing x", "--nothing"},
                     {"spectrum -w Hanningg x", "there are Uniform, Bartlett, Hann"},
                     {"spectrum -l x y", "whole number"},
                     {"spectrum -s 15 x", "from 16"},
                     {"spectrum -s -1 x", "from 16"},
                     {"spectrum -r 0 x", "from 1e-09"},
                     {"spectrum -r nan x", "nan is no number"},
                     {"spectrum -r 48q x", "48q is no number"},
                     {"spectrum --overlap 1 x", "0% to 95%"},
                     {"spectrum --duration 0 x", "--duration: 0 is no number from 1e-12"},
                     {"spectrum --as volts x", "none of peak, rms, power, asd, psd"},
                     {"spectrum --axis polar x", "none of linear, log"},
                     {"spectrum --average median x", "none of mean"},
                     {"spectrum --svg", "--svg"},
                     {"filter x", "one of --low-pass"},
                     {"filter --low-pass 1 --high-pass 2 x", "one of --low-pass"},
                     {"filter --low-pass .1 --taps 128 x", "--taps is odd"},
                     {"filter --band-pass 3 x", "300,3k is one"},
                     {"filter --low-pass .1 x x", "one FILE at a time"},
                     {"gen cos -o y.mp3", "no form is known by .mp3"},
                     {"convert x --bits 24 -o y.npy", "sigpak: --bits of npy"},
                     {"stats --low 1 x", "--low X --high Y"},
                     {"window Hannn", "no window Hannn"},
                     {"window Hann 7", "from 8"},
                     {"apply", "which operation"},
                     {"apply nothing x", "apply --list"},
                     {"apply scale", "scale NUMBER [FILE] is what it takes"},
                     {"apply scale two x", "two is no number"}};
  for (const auto& c : cases) {
    const auto r = run_shell(std::string("sigpak ") + c.arguments);
    EXPECT_EQ(r.status, 2) << c.arguments << ": " << r.err;
    EXPECT_EQ(r.out, "") << c.arguments;
    EXPECT_TRUE(r.err.starts_with("sigpak: ")) << c.arguments << ": " << r.err;
    EXPECT_TRUE(says(r.err, c.reason)) << c.arguments;
  }
}

TEST(Usage, HelpIsAScreenWithTwoExamples) {
  for (const std::string command :
       {"spectrum", "plot", "stats", "info", "convert", "gen", "filter", "window", "merge", "apply"}) {
    const auto r = run(command + " --help");
    EXPECT_EQ(r.status, 0) << command;
    EXPECT_EQ(r.err, "") << command;
    EXPECT_LE(std::ranges::count(r.out, '\n'), 25) << command;
    EXPECT_EQ(r.out.find("INT"), std::string::npos) << command;
    std::istringstream in(r.out);
    int examples = 0;
    for (std::string row; std::getline(in, row);) {
      EXPECT_LE(row.size(), 110U) << row;
      examples += row.starts_with("  ") && row.find("sigpak " + command) != std::string::npos;
    }
    EXPECT_GE(examples, 2) << command;
  }
  EXPECT_EQ(run("spectrum --help").out.find("--resample"), std::string::npos);
  EXPECT_TRUE(says(run("spectrum --help-all").out, "--resample"));
  EXPECT_EQ(run("--help").status, 0);
  EXPECT_TRUE(run("--version").out.starts_with("sigpak "));
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
    EXPECT_TRUE(says(r.err, c.reason));
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
