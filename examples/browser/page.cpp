// What the page calls: a recording goes in as numbers, its spectrum comes back as the JSON of `sigpak
// spectrum`, made by the program's own analysis.
#include <algorithm>
#include <limits>

#include "analysis/analysis.h"
#include "analysis/noise.h"
#include "output/json.h"
#include "output/report.h"

namespace {

using namespace tool;

// The channel of a recording that the page has read.
class recording final : public source {
 public:
  recording(std::span<const double> samples, subject about) : left_(samples), about_(std::move(about)) {
    about_.samples = samples.size();
  }

  std::size_t read(std::span<double> frames) override {
    const std::size_t n = std::min(frames.size(), left_.size());
    std::copy_n(left_.data(), n, frames.data());
    left_ = left_.subspan(n);
    return n;
  }
  bool next_piece() override { return false; }
  const subject& about() const override { return about_; }
  double progress() const override { return -1; }
  std::uint64_t bytes() const override { return 0; }

 private:
  std::span<const double> left_;
  subject about_;
};

std::vector<double> samples;
std::string answer;  // lives until the next call

std::string spectrum_json(const subject& about, const analysis_options& how, quantity what, bool as_level) {
  recording in(samples, about);
  const auto spectra = analyse(in, how, [] {});
  const spectrum& s = spectra.front();
  const measure told(what, as_level, s);
  constexpr double everywhere = std::numeric_limits<double>::infinity();
  const auto lines = strongest_lines(s, {10, {}, -everywhere, everywhere});
  const double floor = noise_floor(s);
  json shown;
  shown.value(told.shown(floor));
  return "{\"floor\":" + shown.text() + ",\"told\":" + json_of({s, told, lines, floor}, true) + '}';
}

}  // namespace

extern "C" {

// Where the page writes the samples; null where there is no memory for so many.
double* page_samples(std::size_t count) {
  try {
    samples.resize(count);
    return samples.data();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

// With an empty unit and the gain 1 the samples count in full scales.
const char* page_spectrum(const char* name, const char* kind, const char* channel, double rate, int window,
                          std::size_t segment, int what, int as_level, const char* unit, double gain) {
  subject about;
  about.name = name;
  about.kind = kind;
  about.channels = {{channel, ""}};
  about.rate = rate;
  about.is_full_scale = true;
  analysis_options how;
  how.window = window;
  how.segment = segment;
  how.gain = gain;
  if (unit[0] != '\0') how.unit = unit;
  try {
    answer = spectrum_json(about, how, static_cast<quantity>(what), as_level != 0);
  } catch (const failure& e) {
    json wrong;
    answer = wrong.open('{').member("error", e.what()).close().text();
  }
  return answer.c_str();
}

}  // extern "C"
