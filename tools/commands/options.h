// SPDX-License-Identifier: MIT
// The options of a command, on top of the parser: that takes seconds to compile, so one file alone includes
// it.
#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tool {

// The group of options that few need.
constexpr const char* rare_options = "More options";

// Takes the text of an option; what it returns is what is wrong with it.
using taker = std::function<std::string(const std::string&)>;

class options {
 public:
  explicit options(CLI::App& app) : app_(app) {}

  // `names` as in "-w,--window"; a name without dashes is a place. `kind` stands for the value in the help.
  // An option that is given again is taken again.
  void add(const char* names, const char* kind, const char* help, taker take, const std::string& usual = {});
  void flag(const char* names, const char* help, bool& value);
  void text(const char* names, const char* kind, const char* help, std::string& value);
  void place(const char* name, const char* help, std::string& value);  // must be given
  void optional_place(const char* name, const char* help, taker take);
  void words(const char* name, const char* help, std::vector<std::string>& words);  // any number in its place
  void files(const char* help, std::vector<std::string>& names) { words("FILE", help, names); }
  void count(const char* names, const char* help, std::size_t& value, std::size_t low, std::size_t high);
  static taker count_taker(std::size_t& value, std::size_t low, std::size_t high);
  void number(const char* names, const char* kind, const char* help, double& value, double low, double high);
  void number(const char* names, const char* kind, const char* help, std::optional<double>& value, double low,
              double high);
  void choice(const char* names, const char* help, std::string& value,
              std::initializer_list<const char*> words);

  // The options that follow are told by --help-all alone.
  void rare();

  // These too; names of one option each.
  void rarely(std::initializer_list<const char*> names);

  // Stands below the options.
  void footer(const char* text);

 private:
  CLI::App& app_;
};

// A number with one of the suffixes k, M and G, or without.
bool parse_number(const std::string& text, double& value);

}  // namespace tool
