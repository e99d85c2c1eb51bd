// SPDX-License-Identifier: MIT
// Running the program on files made for it.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace program {

struct result {
  int status;
  std::string out;
  std::string err;
};

struct line {
  double frequency;
  double amplitude;
  double level;
  double snr;
};

// Runs the program with a shell's words as arguments.
result run(const std::string& arguments);

// The same in a terminal of this size, what it shows as output; status 127 where there is none to be had.
result run_in_terminal(const std::string& arguments, int columns = 80, int rows = 24,
                       const std::string& locale = "C");

// Runs a shell's text in the directory of this test, in which sigpak, and $SIGPAK, is the program.
result run_shell(const std::string& text);

// The lines of a report in JSON, and the number behind a word of any.
std::vector<line> lines_of(const std::string& report);
double number_after(const std::string& report, const std::string& word);

// Whether the words stand in a text, which is shown where they do not.
testing::AssertionResult says(const std::string& text, const std::string& words);

// A name in a directory of this test's own, and files there.
std::string path(const std::string& name);
std::string write_file(const std::string& name, const std::string& contents);
std::string read_file(const std::string& name);
std::string quoted(const std::string& word);

using waveform = std::function<double(int)>;
std::vector<double> samples(const waveform& x, int count);

// Text with a line for each sample.
std::string column(const std::vector<double>& x);

// A sound file of a format of libsndfile, a channel for each signal.
std::string write_sound(const std::string& name, int format, int rate, int count,
                        const std::vector<waveform>& channels);

// A vector file of the library.
std::string write_vector(const std::string& name, const std::vector<double>& x, double delta, int form,
                         bool complex = false, bool narrow = false);

}  // namespace program
