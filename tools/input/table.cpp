// Columns of numbers: samples alone, or time and values.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

#include "input/kinds.h"
#include "record.h"

namespace tool {
namespace {

constexpr std::size_t longest_line = 1 << 16;

// How far a time may lie from an even spacing, in steps: less than a missing sample, more than printed
// digits.
constexpr double unevenness = 0.25;

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n\v\f";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::optional<double> number(std::string_view field, bool decimal_comma) {
  std::string text(field);
  if (decimal_comma) std::replace(text.begin(), text.end(), ',', '.');
  const char* first = text.data();
  const char* const last = first + text.size();
  if (first != last && *first == '+') ++first;
  double x = 0;
  const auto result = std::from_chars(first, last, x);
  if (result.ec != std::errc() || result.ptr != last) return std::nullopt;
  return x;
}

// The fields of a line. A semicolon, where there is one, parts them and leaves the comma for decimals;
// otherwise a comma does, and otherwise blanks.
bool split(std::string_view line, std::vector<double>& fields) {
  const bool semicolons = line.find(';') != std::string_view::npos;
  const char separator = semicolons ? ';' : line.find(',') != std::string_view::npos ? ',' : ' ';
  fields.clear();
  while (!line.empty()) {
    const auto end = separator == ' ' ? line.find_first_of(" \t") : line.find(separator);
    const auto value = number(trimmed(line.substr(0, end)), semicolons);
    if (!value) return false;
    fields.push_back(*value);
    if (end == std::string_view::npos) break;
    line = trimmed(line.substr(end + 1));  // a separator at the end of the line is no field
  }
  return !fields.empty();
}

class table final : public source {
 public:
  table(file f, const std::string& name, const input_options& options)
      : file_(std::move(f)), rate_(options.rate) {
    std::fseek(file_.get(), 0, SEEK_END);
    size_ = static_cast<double>(std::ftell(file_.get()));
    std::rewind(file_.get());
    if (!next_row()) throw data_error("no line of numbers in it");
    columns_ = fields_.size();
    const std::size_t channels = std::max<std::size_t>(columns_ - 1, 1);
    if (!options.channels.empty()) channel_ = std::stoul(options.channels[0]);
    if (channel_ > channels) {
      throw data_error("has " + std::to_string(columns_) + (columns_ == 1 ? " column" : " columns") +
                       ", so there is no channel " + std::to_string(channel_));
    }
    about_.name = name;
    about_.kind = "table";
    about_.understood = columns_ == 1   ? "column of numbers"
                        : columns_ == 2 ? "columns of time and value"
                                        : "table, channel " + std::to_string(channel_) + " of " +
                                              std::to_string(columns_ - 1);
    about_.channels = {{std::to_string(channel_), ""}};
  }

  std::size_t read(std::span<double> samples) override {
    std::size_t done = 0;
    while (done < samples.size() && !fields_.empty()) {
      if (columns_ > 1) check_time(fields_[0]);
      samples[done++] = fields_[columns_ > 1 ? channel_ : 0];
      ++rows_;
      if (!next_row()) fields_.clear();
    }
    about_.samples += done;
    about_.rate = rate_ > 0                   ? rate_
                  : columns_ > 1 && rows_ > 1 ? static_cast<double>(rows_ - 1) / (last_ - first_)
                                              : 0;
    return done;
  }

  bool next_piece() override { return false; }
  const subject& about() const override { return about_; }
  double progress() const override {
    return size_ > 0 ? std::min(1.0, static_cast<double>(std::ftell(file_.get())) / size_) : 0;
  }
  std::uint64_t bytes() const override { return 0; }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw data_error("line " + std::to_string(line_number_) + ": " + what);
  }

  bool next_line() {
    line_.clear();
    ++line_number_;
    int c = 0;
    while ((c = std::getc(file_.get())) != EOF && c != '\n') {
      if (line_.size() == longest_line) fail("too long for a line of numbers");
      line_.push_back(static_cast<char>(c));
    }
    if (std::ferror(file_.get()) != 0) throw data_error("cannot be read to its end");
    return c != EOF || !line_.empty();
  }

  // Puts the next row into fields_. Words are headings before the first row, and an error after it.
  bool next_row() {
    while (next_line()) {
      std::string_view text = line_;
      if (line_number_ == 1 && text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
      text = trimmed(text.substr(0, text.find_first_of("#%")));
      if (text.empty() || text.starts_with("//")) continue;
      if (!split(text, fields_)) {
        if (columns_ == 0) continue;
        fail("not a number in \"" + std::string(text.substr(0, 40)) + '"');
      }
      if (columns_ != 0 && fields_.size() != columns_) {
        fail(std::to_string(fields_.size()) + " columns, but " + std::to_string(columns_) + " before");
      }
      return true;
    }
    return false;
  }

  // Every time must lie where the mean step so far puts it.
  void check_time(double time) {
    if (rows_ == 0) {
      first_ = time;
    } else if (!(time > last_)) {
      fail("the time does not increase");
    } else if (rows_ > 1) {
      const double step = (last_ - first_) / static_cast<double>(rows_ - 1);
      if (!(std::abs(time - last_ - step) <= unevenness * step) ||
          !(std::abs(time - first_ - static_cast<double>(rows_) * step) <= unevenness * step)) {
        fail("the times are not evenly spaced");
      }
    }
    last_ = time;
  }

  file file_;
  double rate_;
  std::size_t channel_ = 1;
  subject about_;
  double size_ = 0;
  std::string line_;
  std::vector<double> fields_;
  std::size_t columns_ = 0;
  std::int64_t line_number_ = 0;
  std::int64_t rows_ = 0;
  double first_ = 0;
  double last_ = 0;
};

}  // namespace

std::unique_ptr<source> open_table(file f, const std::string& name, const input_options& options) {
  return std::make_unique<table>(std::move(f), name, options);
}

}  // namespace tool
