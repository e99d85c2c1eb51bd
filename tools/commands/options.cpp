// SPDX-License-Identifier: MIT
// The options of a command, on top of the parser.
#include "commands/options.h"

#include <CLI/CLI.hpp>

#include <charconv>

namespace tool {
namespace {

CLI::Option* add_taker(CLI::App& app, const char* names, const char* kind, const char* help, taker take) {
  const auto take_all = [take = std::move(take), names](const CLI::results_t& words) {
    for (const auto& word : words) {
      if (const std::string wrong = take(word); !wrong.empty()) throw CLI::ValidationError(names, wrong);
    }
    return true;
  };
  return app.add_option(names, take_all, help)->type_name(kind)->type_size(1)->expected(1)->take_all();
}

std::string shown(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.9g", value);
  return text;
}

template <class T> taker number_taker(T& value, double low, double high) {
  return [&value, low, high](const std::string& word) -> std::string {
    double x = 0;
    if (!parse_number(word, x) || !(x >= low && x <= high))
      return word + " is no number from " + shown(low) + " to " + shown(high);
    value = x;
    return {};
  };
}

}  // namespace

bool parse_number(const std::string& text, double& value) {
  std::string_view digits = text;
  double unit = 1;
  if (digits.ends_with('k')) unit = 1e3;
  if (digits.ends_with('M')) unit = 1e6;
  if (digits.ends_with('G')) unit = 1e9;
  if (unit != 1) digits.remove_suffix(1);
  if (digits.starts_with('+')) digits.remove_prefix(1);
  const char* const end = digits.data() + digits.size();
  double x = 0;
  const auto [parsed, error] = std::from_chars(digits.data(), end, x);
  if (error != std::errc() || parsed != end) return false;
  value = x * unit;
  return true;
}

void options::add(const char* names, const char* kind, const char* help, taker take,
                  const std::string& usual) {
  CLI::Option* const added = add_taker(app_, names, kind, help, std::move(take));
  if (!usual.empty()) added->default_str(usual);
}

void options::flag(const char* names, const char* help, bool& value) { app_.add_flag(names, value, help); }

void options::text(const char* names, const char* kind, const char* help, std::string& value) {
  const auto take = [&value](const std::string& word) {
    value = word;
    return std::string();
  };
  add(names, kind, help, take, value);
}

void options::place(const char* name, const char* help, std::string& value) {
  const auto take = [&value](const std::string& word) {
    value = word;
    return std::string();
  };
  add_taker(app_, name, "", help, take)->required();
}

void options::optional_place(const char* name, const char* help, taker take) {
  add_taker(app_, name, "", help, std::move(take));
}

void options::words(const char* name, const char* help, std::vector<std::string>& words) {
  const auto take = [&words](const std::string& word) {
    words.push_back(word);
    return std::string();
  };
  add_taker(app_, name, "", help, take)->expected(1, -1)->allow_extra_args();
}

taker options::count_taker(std::size_t& value, std::size_t low, std::size_t high) {
  return [&value, low, high](const std::string& word) -> std::string {
    std::size_t x = 0;
    const char* const end = word.data() + word.size();
    const auto [parsed, error] = std::from_chars(word.data(), end, x);
    if (error != std::errc() || parsed != end || x < low || x > high)
      return word + " is no whole number from " + std::to_string(low) + " to " + std::to_string(high);
    value = x;
    return {};
  };
}

void options::count(const char* names, const char* help, std::size_t& value, std::size_t low,
                    std::size_t high) {
  add(names, "N", help, count_taker(value, low, high), std::to_string(value));
}

void options::number(const char* names, const char* kind, const char* help, double& value, double low,
                     double high) {
  add(names, kind, help, number_taker(value, low, high));
}

void options::number(const char* names, const char* kind, const char* help, std::optional<double>& value,
                     double low, double high) {
  add(names, kind, help, number_taker(value, low, high));
}

void options::choice(const char* names, const char* help, std::string& value,
                     std::initializer_list<const char*> words) {
  std::string all;
  for (const char* const word : words) all += (all.empty() ? "" : ", ") + std::string(word);
  const auto take = [&value, all, known = std::vector<std::string>(words.begin(), words.end())](
                        const std::string& word) -> std::string {
    if (std::ranges::find(known, word) == known.end()) return word + " is none of " + all;
    value = word;
    return {};
  };
  add(names, "WORD", (help + (": " + all)).c_str(), take, value);
}

void options::rare() { app_.option_defaults()->group(rare_options); }

void options::rarely(std::initializer_list<const char*> names) {
  for (const char* const name : names) app_.get_option(name)->group(rare_options);
}

void options::footer(const char* text) { app_.footer(text); }

}  // namespace tool
