// SPDX-License-Identifier: MIT
// Running the program on files made for it.
#include "tools/program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sigpak.h>
#include <sndfile.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace program {
namespace {

// Removed when the tests end.
struct directory {
  std::filesystem::path name =
      std::filesystem::temp_directory_path() / ("sigpak_tools_test." + std::to_string(getpid()));
  directory() { std::filesystem::create_directories(name); }
  ~directory() {
    std::error_code ignored;
    std::filesystem::remove_all(name, ignored);
  }
};

// A small container may lack pseudo-terminals.
bool has_terminals() {
  const int master = posix_openpt(O_RDWR | O_NOCTTY);
  if (master < 0) return false;
  const char* const name = grantpt(master) == 0 && unlockpt(master) == 0 ? ptsname(master) : nullptr;
  const int slave = name != nullptr ? open(name, O_RDWR | O_NOCTTY) : -1;
  if (slave >= 0) close(slave);
  close(master);
  return slave >= 0;
}

result execute(const std::string& command) {
  const std::string out = path("stdout");
  const std::string err = path("stderr");
  const int status = std::system((command + " >" + quoted(out) + " 2>" + quoted(err)).c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read_file(out), read_file(err)};
}

}  // namespace

std::string path(const std::string& name) {
  static const directory own;
  return (own.name / name).string();
}

std::string quoted(const std::string& word) {
  std::string out = "'";
  for (const char c : word) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return out + "'";
}

result run(const std::string& arguments) { return execute(quoted(SIGPAK_PROGRAM) + " " + arguments); }

result run_shell(const std::string& text) {
  setenv("SIGPAK", SIGPAK_PROGRAM, 1);
  return execute("bash -c " +
                 quoted("sigpak() { \"$SIGPAK\" \"$@\"; }; cd " + quoted(path("")) + "; " + text));
}

result run_in_terminal(const std::string& arguments, int columns, int rows, const std::string& locale) {
  if (!has_terminals()) return {127, "", ""};
  const std::string size = "stty cols " + std::to_string(columns) + " rows " + std::to_string(rows) + "; ";
  const std::string command =
      size + "env -u NO_COLOR TERM=xterm LC_ALL=" + locale + ' ' + quoted(SIGPAK_PROGRAM) + " " + arguments;
  return execute("script -qec " + quoted(command) + " /dev/null </dev/null");
}

std::vector<line> lines_of(const std::string& report) {
  std::vector<line> lines;
  for (std::size_t at = 0; (at = report.find("{\"frequency\":", at)) != std::string::npos; ++at) {
    const std::string row = report.substr(at, report.find('}', at) - at);
    lines.push_back({number_after(row, "\"frequency\":"), number_after(row, "\"amplitude\":"),
                     number_after(row, "\"level_db\":"), number_after(row, "\"snr_db\":")});
  }
  return lines;
}

testing::AssertionResult says(const std::string& text, const std::string& words) {
  if (text.find(words) != std::string::npos) return testing::AssertionSuccess();
  return testing::AssertionFailure() << words << " is not in " << text;
}

double number_after(const std::string& report, const std::string& word) {
  const auto at = report.find(word);
  EXPECT_TRUE(says(report, word));
  return at == std::string::npos ? 0 : std::strtod(report.c_str() + at + word.size(), nullptr);
}

std::string write_file(const std::string& name, const std::string& contents) {
  std::ofstream(path(name), std::ios::binary) << contents;
  return path(name);
}

std::string read_file(const std::string& name) {
  std::ostringstream out;
  out << std::ifstream(name, std::ios::binary).rdbuf();
  return out.str();
}

std::vector<double> samples(const waveform& x, int count) {
  std::vector<double> out;
  for (int i = 0; i < count; ++i) out.push_back(x(i));
  return out;
}

std::string column(const std::vector<double>& x) {
  std::ostringstream out;
  out.precision(12);
  for (const double value : x) out << value << '\n';
  return out.str();
}

std::string write_sound(const std::string& name, int format, int rate, int count,
                        const std::vector<waveform>& channels) {
  SF_INFO info{};
  info.samplerate = rate;
  info.channels = static_cast<int>(channels.size());
  info.format = format;
  SNDFILE* const out = sf_open(path(name).c_str(), SFM_WRITE, &info);
  EXPECT_NE(out, nullptr) << sf_strerror(nullptr);
  std::vector<double> frame(channels.size());
  for (int i = 0; i < count; ++i) {
    for (std::size_t c = 0; c < channels.size(); ++c) frame[c] = channels[c](i);
    sf_writef_double(out, frame.data(), 1);
  }
  sf_close(out);
  return path(name);
}

std::string write_vector(const std::string& name, const std::vector<double>& x, double delta, int form,
                         bool complex, bool narrow) {
  FILE* const out = dspf_fopen(path(name).c_str(), "wb");
  const auto points = static_cast<std::uint32_t>(x.size() / (complex ? 2 : 1));
  if (narrow) {
    std::vector<float> floats;
    for (const double value : x) floats.push_back(static_cast<float>(value));
    dspf_vec v{static_cast<float>(delta), floats.data(), 0, points, complex ? 1 : 0, 0};
    EXPECT_EQ(dspff_fwrite2(&v, out, form), 0);
  } else {
    std::vector<double> lent = x;
    dsp_vec v{delta, lent.data(), 0, points, complex ? 1 : 0, 0};
    EXPECT_EQ(dspf_fwrite2(&v, out, form), 0);
  }
  EXPECT_EQ(dspf_fclose(out), 0);
  return path(name);
}

}  // namespace program
