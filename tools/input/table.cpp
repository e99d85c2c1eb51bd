// SPDX-License-Identifier: MIT
// Columns of numbers: samples alone, or time and values.
#include <algorithm>
#include <cmath>
#include <limits>

#include "input/clock.h"
#include "input/headings.h"
#include "input/kinds.h"
#include "input/rows.h"

namespace tool {
namespace {

constexpr std::size_t first_look = 1 << 14;
constexpr std::size_t longest_preamble = 1 << 20;

// Rows behind an uneven one among which the worst is looked for.
constexpr int most_looked_at = 1'000'000;

constexpr const char* advice = "; --resample takes their mean rate";

std::string shown(double x) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", x);
  return text;
}

std::string rate_text(double rate, const std::string& unit) {
  if (unit != "s") return shown(rate) + " per " + unit;
  if (rate >= 1e6) return shown(rate / 1e6) + " MHz";
  if (rate >= 1e3) return shown(rate / 1e3) + " kHz";
  return shown(rate) + " Hz";
}

// "column 2 'voltage_V' of 3, time 'time_ms' in ms, 1 kHz"
std::string understood(const table_layout& t, const subject& about) {
  const auto quoted = [&t](std::size_t c) {
    const bool named = !t.headings.empty() && !t.headings[c].name.empty();
    return std::to_string(c + 1) + (named ? " '" + t.headings[c].name + "'" : "");
  };
  const bool plain = t.columns.size() == 1 && t.headings.empty();
  std::string text = plain ? "column of numbers" : t.channels.size() == 1 ? "column " : "columns ";
  for (std::size_t i = 0; i < t.channels.size() && !plain; ++i)
    text += (i == 0 ? "" : ", ") + quoted(t.channels[i]);
  if (t.columns.size() > 1) text += " of " + std::to_string(t.columns.size());
  if (t.index) text += ", index " + quoted(*t.index) + " passed over";
  if (t.time) {
    const bool dates = t.columns[*t.time] == cell_kind::moment;
    text += ", time " + quoted(*t.time) +
            (!t.looks_at_time ? " passed over"
             : dates          ? ""
                              : " in " + t.time_sign);
  }
  if (about.rate > 0) text += ", " + rate_text(about.rate, about.time_unit);
  if (about.rate > 0 && about.rate == t.told_rate) text += " by the lines above";
  return text;
}

class table final : public reader {
 public:
  table(stream& in, table_layout t, const input_options& options, subject& about)
      : t_(std::move(t)),
        rule_(options.gaps),
        rows_(in, t_, rule_ != gap_rule::refuse, about),
        clock_(t_.step),
        about_(about) {
    if (!t_.looks_at_time) return;
    about_.time_unit = t_.time_unit;
    about_.rate = t_.step > 0 ? 1 / t_.step : 0;
    about_.understood = understood(t_, about_);
  }

  std::size_t read(std::span<double> frames) override {
    const std::size_t width = t_.channels.size();
    std::size_t done = 0;
    while (done + width <= frames.size() && (held_ || next_row())) {
      double* const out = frames.data() + done;
      held_ = missing_ > 0;
      if (held_) {
        std::fill_n(out, width, std::numeric_limits<double>::quiet_NaN());
        --missing_;
      } else {
        std::copy_n(rows_.values().data(), width, out);
      }
      done += width;
    }
    if (done + width <= frames.size()) finish();
    return done;
  }

 private:
  bool next_row() {
    if (!rows_.next()) return false;
    if (t_.looks_at_time) look_at_time();
    return true;
  }

  void look_at_time() {
    using enum clock_check::verdict;
    switch (clock_.take(rows_.time())) {
      case even:
        return;
      case gap:
        missing_ = clock_.missing();
        if (rule_ == gap_rule::refuse) refuse_gap();
        return;
      case backwards:
        rows_.fail("the time does not increase");
      case absurd:
        rows_.fail("a jump of more than 1e9 samples in time");
      case uneven:
        refuse_worst();
    }
  }

  [[noreturn]] void refuse_gap() const {
    const std::string count = std::to_string(missing_) + (missing_ == 1 ? " sample is" : " samples are");
    rows_.fail(count + " missing before this line; --gaps linear bridges " + (missing_ == 1 ? "it" : "them") +
               ", --gaps split goes around");
  }

  [[noreturn]] void refuse_worst() {
    double worst = clock_.deviation();
    std::uint64_t line = rows_.line();
    const double step = clock_.step();
    double last = rows_.time();
    for (int i = 0; i < most_looked_at && rows_.next(); ++i) {
      const double off = std::abs((rows_.time() - last) / step - 1);
      if (off > worst) worst = off, line = rows_.line();
      last = rows_.time();
    }
    data_error e("the times are not evenly spaced: this one is off by " + shown(100 * worst) +
                 " % of a step" + advice + (t_.rises_alone ? ", -t none takes them for samples" : ""));
    e.name_place(about_.name + ":" + std::to_string(line));
    throw e;
  }

  void finish() {
    if (!t_.looks_at_time || !(clock_.mean_step() > 0)) return;
    about_.rate = 1 / clock_.mean_step();
    about_.understood = understood(t_, about_);
  }

  table_layout t_;
  gap_rule rule_;
  rows rows_;
  clock_check clock_;
  subject& about_;
  std::uint64_t missing_ = 0;
  bool held_ = false;  // the row is still to be delivered, behind what is missing
};

// Uneven times: the values on straight lines at their mean rate. The first pass finds that.
class evened final : public reader {
 public:
  evened(stream& in, table_layout t, subject& about) : in_(in), t_(std::move(t)), about_(about) {
    find_rate();
    in_.rewind();
    rows_ = std::make_unique<rows>(in_, t_, true, about_);
    next_row();
    before_ = here_;
  }

  std::size_t read(std::span<double> frames) override {
    const std::size_t width = t_.channels.size();
    std::size_t done = 0;
    for (; done + width <= frames.size() && frame_ < count_; done += width) {
      const double time = first_ + static_cast<double>(frame_++) * step_;
      while (here_.time < time) {
        std::swap(before_, here_);
        if (next_row()) continue;
        std::swap(before_, here_);  // rounding put the last time behind the last row
        break;
      }
      put(time, frames.data() + done);
    }
    return done;
  }

 private:
  struct point {
    double time = 0;
    std::vector<double> values;
  };

  // Rows without one of the values are bridged like other distances.
  bool next_row() {
    while (rows_->next()) {
      if (std::ranges::any_of(rows_->values(), [](double x) { return std::isnan(x); })) continue;
      here_ = {rows_->time(), rows_->values()};
      return true;
    }
    return false;
  }

  void find_rate() {
    rows_ = std::make_unique<rows>(in_, t_, true, about_);
    while (next_row()) {
      if (count_ == 0) first_ = here_.time;
      if (count_ > 0 && !(here_.time > last_)) rows_->fail("the time does not increase");
      last_ = here_.time;
      ++count_;
    }
    step_ = count_ > 1 ? (last_ - first_) / static_cast<double>(count_ - 1) : 1;
    about_.rate = 1 / step_;
    about_.time_unit = t_.time_unit;
    about_.understood = understood(t_, about_) + ", resampled along straight lines";
  }

  void put(double time, double* out) const {
    const double span = here_.time - before_.time;
    const double part = span > 0 ? std::clamp((time - before_.time) / span, 0.0, 1.0) : 1;
    for (std::size_t i = 0; i < here_.values.size(); ++i) {
      out[i] = part == 1 ? here_.values[i] : before_.values[i] + part * (here_.values[i] - before_.values[i]);
    }
  }

  stream& in_;
  table_layout t_;
  subject& about_;
  std::unique_ptr<rows> rows_;
  point before_;
  point here_;
  double first_ = 0;
  double last_ = 0;
  double step_ = 1;
  std::uint64_t count_ = 0;
  std::uint64_t frame_ = 0;
};

// Enough of the head for a row of numbers, which a long preamble may stand before.
table_layout looked_at(stream& in, const input_options& options) {
  for (std::size_t size = first_look;; size *= 4) {
    const bool is_whole = !in.wait_for(size);
    try {
      return understand_table(in.waiting(), is_whole, options);
    } catch (const data_error&) {
      if (is_whole || size >= longest_preamble) throw;
    }
  }
}

}  // namespace

reader_pointer open_table(stream& in, const input_options& options, subject& about) {
  table_layout t = looked_at(in, options);
  about.kind = "table";
  about.channels = t.names;
  about.rate = options.rate > 0 ? options.rate : t.told_rate;
  about.understood = understood(t, about);
  if (t.looks_at_time && !t.headings.empty() && is_frequency_heading(t.headings[*t.time]))
    about.warnings.push_back(
        "the frequency is taken for a time; if this is a spectrum, merge is what reads it");
  if (options.resample && t.looks_at_time) return std::make_unique<evened>(in, std::move(t), about);
  return std::make_unique<table>(in, std::move(t), options, about);
}

}  // namespace tool
