// SPDX-License-Identifier: MIT
// sigpak merge: the spectrum of many files from the spectra of each, weighted by their segments.
#include <cmath>
#include <memory>
#include <optional>

#include "commands/commands.h"
#include "commands/results.h"
#include "commands/spectrum_options.h"
#include "output/number.h"
#include "output/spectrum_file.h"

namespace tool {
namespace {

// Up to so many are added one after the other, in their order; sums of so many then by twos, fours, eights,
// so that the tree of additions depends on the number of spectra alone.
constexpr std::uint64_t leaf = 256;

struct merge_command {
  std::vector<std::string> names;
  telling_options telling;
  picture_options drawing;
  result_options result{.format = "csv"};
};

void refuse_unlike(const char* what, const std::string& a, const std::string& b) {
  if (a != b)
    throw data_error(std::string("its ") + what + " is " + (b.empty() ? "none" : b) +
                     ", that of the first is " + (a.empty() ? "none" : a));
}

void refuse_unlike(const spectrum& a, const spectrum& b) {
  refuse_unlike("average", averaging_name(a.average), averaging_name(b.average));
  refuse_unlike("rate", exact_text(a.rate), exact_text(b.rate));
  refuse_unlike("unit of time", a.time_unit, b.time_unit);
  refuse_unlike("window", a.window_name(), b.window_name());
  refuse_unlike("segment", std::to_string(a.segment), std::to_string(b.segment));
  refuse_unlike("unit", a.full_scale ? "full scale" : a.unit, b.full_scale ? "full scale" : b.unit);
  refuse_unlike("first frequency", exact_text(a.first()), exact_text(b.first()));
  refuse_unlike("number of points", std::to_string(a.power.points), std::to_string(b.power.points));
}

// Sums of powers by their segments, or the greatest or least, of the part of the spectra below a branch of
// the tree.
struct branch {
  record power;
  std::uint64_t spectra;
};

class merger {
 public:
  void add(told_spectrum t) {
    if (t.s.average == averaging::exponential)
      throw data_error("an exponential average cannot be merged; it has forgotten its segments");
    if (!whole_) {
      begin(std::move(t));
    } else {
      refuse_unlike(whole_->s, t.s);
      count(t.s);
      append(std::move(t.s));
    }
  }

  std::optional<told_spectrum> take() {
    if (!whole_) return std::nullopt;
    while (branches_.size() > 1) join();
    spectrum& s = whole_->s;
    s.power = std::move(branches_.front().power);
    if (is_mean()) require(dspi_scale(&s.power, 1 / static_cast<double>(s.segments)));
    const auto samples = static_cast<double>(s.samples);
    if (spectra_ > 1) s.degrees = squared_weight(s.segments) / variance_;
    if (s.samples > 0) s.mean /= samples, s.rms = std::sqrt(s.rms / samples);
    if (spectra_ > 1) s.name = std::to_string(spectra_) + " spectra, the first of " + s.name;
    return std::move(whole_);
  }

 private:
  static double squared_weight(std::uint64_t segments) {
    return static_cast<double>(segments) * static_cast<double>(segments);
  }

  bool is_mean() const { return whole_->s.average == averaging::mean; }

  // Means and mean squares become sums.
  void begin(told_spectrum t) {
    const auto samples = static_cast<double>(t.s.samples);
    t.s.mean *= samples;
    t.s.rms *= t.s.rms * samples;
    t.s.understood.clear();
    whole_ = std::move(t);
    spectrum first;
    first.power = std::move(whole_->s.power);
    first.segments = whole_->s.segments;
    variance_ = squared_weight(first.segments) / whole_->s.degrees;
    whole_->s.power.resize(first.power.points);
    spectra_ = 1;
    append(std::move(first));
  }

  void count(const spectrum& s) {
    spectrum& all = whole_->s;
    ++spectra_;
    all.segments += s.segments;
    variance_ += squared_weight(s.segments) / s.degrees;
    all.samples += s.samples;
    all.unused += s.unused;
    all.gaps += s.gaps;
    all.truncated = all.truncated || s.truncated;
    all.mean += s.mean * static_cast<double>(s.samples);
    all.rms += s.rms * s.rms * static_cast<double>(s.samples);
  }

  void append(spectrum s) {
    if (is_mean()) require(dspi_scale(&s.power, static_cast<double>(s.segments)));
    branch next{std::move(s.power), 1};
    if (!branches_.empty() && branches_.back().spectra < leaf) {
      combine(branches_.back(), next);
    } else {
      branches_.push_back(std::move(next));
    }
    while (branches_.size() > 1 && branches_.back().spectra >= leaf &&
           branches_.back().spectra == branches_[branches_.size() - 2].spectra)
      join();
  }

  void join() {
    branch last = std::move(branches_.back());
    branches_.pop_back();
    combine(branches_.back(), last);
  }

  void combine(branch& into, const branch& from) const {
    const averaging a = whole_->s.average;
    const auto with = a == averaging::maximum ? dspb_max : a == averaging::minimum ? dspb_min : dspb_add;
    require(with(&into.power, &from.power, &into.power));
    into.spectra += from.spectra;
  }

  std::optional<told_spectrum> whole_;  // without its power
  std::vector<branch> branches_;
  std::uint64_t spectra_ = 0;
  double variance_ = 0;  // half that of the sum, of noise with the power 1
};

void merge_file(const std::string& name, merger& all) {
  spectrum_reader in(name);
  while (auto t = in.next()) at_place(in.name() + ": " + t->s.name, [&] { all.add(std::move(*t)); });
}

void run(const merge_command& command) {
  merger all;
  const std::size_t left_out = for_each_file(inputs_of(command.names), command.result.keep_going,
                                             [&](const std::string& name) { merge_file(name, all); });
  auto merged = all.take();
  if (!merged) throw data_error("there is no spectrum to merge");
  results out(command.telling, command.drawing, command.result);
  const measure told = command.telling.measure_for(merged->s, merged->what, merged->as_level);
  out.take(std::move(merged->s), told);
  out.finish();
  tell_left_out(left_out);
}

constexpr const char* about =
    "The order of the files is that of the additions, so that the result does not depend on who made them "
    "when.\n\n"
    "  sigpak merge night/*.csv -o night.csv                                      weighted by segments\n"
    "  parallel -k sigpak spectrum --csv {} ::: *.wav | sigpak merge | sigpak plot   on all processors";

}  // namespace

work add_merge(options& o) {
  const auto command = std::make_shared<merge_command>();
  o.files("Spectra, from sigpak spectrum --csv; - is standard input", command->names);
  add_telling_options(o, command->telling);
  add_result_options(o, command->result, {"table", "csv", "json", "vector"});
  o.flag("--all", "In JSON the values of the spectrum too", command->result.all);
  add_picture_options(o, command->drawing);
  o.footer(about);
  return [command] { run(*command); };
}

}  // namespace tool
