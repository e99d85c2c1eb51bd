// SPDX-License-Identifier: MIT
// The program: the list of its commands.
#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "commands/commands.h"
#include "commands/options.h"
#include "errors.h"

namespace {

using namespace tool;

constexpr int usage_status = 2;
constexpr int resource_status = 3;

struct command {
  const char* name;
  const char* summary;
  work (*add)(options&);
};

constexpr command commands[] = {
    {"spectrum", "Lines and noise of signals; their spectra as data and pictures", add_spectrum},
    {"plot", "Spectra in one picture", add_plot},
    {"stats", "Mean, spread, extremes, median and histogram of signals", add_stats},
    {"info", "What was understood of a file: channels, units, rate, gaps", add_info},
    {"convert", "Any input as a vector, NumPy array, sound or CSV, at any rate", add_convert},
    {"gen", "Cosines, lines, noise, and the taps of filters", add_gen},
    {"filter", "Low-pass, high-pass, band-pass, band-stop, and a lower rate", add_filter},
    {"window", "The points of a window, and what it does to lines and noise", add_window},
    {"merge", "The spectrum of many files from the spectra of each", add_merge},
    {"apply", "Any operation of the library that works in place", add_apply},
};

// Help on a screen of 25 lines: without headings, and without the options that few need, which --help-all
// adds.
class screen_of_help : public CLI::Formatter {
 public:
  std::string make_group(std::string group, bool is_positional,
                         std::vector<const CLI::Option*> members) const override {
    if (tells_all) return Formatter::make_group(group, is_positional, members);
    if (group == rare_options) return "More options: --help-all\n";
    std::string out;
    for (const CLI::Option* const member : members) {
      if (!member->get_name().starts_with("--help")) out += make_option(member, is_positional);
    }
    return out;
  }
  std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override {
    tells_all = mode == CLI::AppFormatMode::All;
    return Formatter::make_help(app, name, mode);
  }

 private:
  mutable bool tells_all = false;
};

std::string usage_message(const CLI::App* app, const CLI::Error& e) {
  const auto given = app->get_subcommands();
  const std::string name = given.empty() ? "sigpak" : "sigpak " + given.front()->get_name();
  return std::string("sigpak: ") + e.what() + "\n" + name + " --help tells the options.\n";
}

// The parser would only ask for a command.
bool is_unknown(const std::string& name) {
  const auto is_named = [&name](const command& c) { return name == c.name; };
  return !name.starts_with('-') && std::ranges::none_of(commands, is_named);
}

int refuse_unknown(const std::string& name) {
  std::string all;
  for (const auto& c : commands) all += (all.empty() ? "" : ", ") + std::string(c.name);
  std::fprintf(stderr, "sigpak: there is no command %s; there are %s\n", name.c_str(), all.c_str());
  return usage_status;
}

void flush_output() {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return;
  if (errno == EPIPE) return;  // the reader has had enough
  throw resource_error(std::string("standard output: ") + std::strerror(errno));
}

int guarded(const work& todo) {
  try {
    todo();
    flush_output();
    return 0;
  } catch (const failure& e) {
    std::fprintf(stderr, "sigpak: %s\n", e.what());
    return e.status();
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "sigpak: not enough memory\n");
    return resource_status;
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && is_unknown(argv[1])) return refuse_unknown(argv[1]);
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is then an error like others, and told by what writes
  CLI::App app("Digital signal processing at the command line", "sigpak");
  app.set_version_flag("--version", "sigpak " SIGPAK_TOOL_VERSION);
  const auto help = std::make_shared<screen_of_help>();
  help->label("SUBCOMMAND", "COMMAND");
  app.formatter(help);
  app.footer("sigpak COMMAND --help tells the options of a command, man sigpak explains them.");
  app.set_help_all_flag("--help-all", "Print the options that few need, too");
  app.require_subcommand(1);
  app.failure_message(usage_message);
  work todo;
  for (const auto& c : commands) {
    CLI::App* const sub = app.add_subcommand(c.name, c.summary);
    sub->group("Commands");
    options o(*sub);
    sub->callback([&todo, does = c.add(o)] { todo = does; });
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? 0 : usage_status;
  }
  return guarded(todo);
}
