// SPDX-License-Identifier: MIT
// The options that commands about spectra have in common: how they are made, told and shown.
#pragma once

#include <limits>
#include <optional>
#include <string>

#include "analysis/analysis.h"
#include "analysis/lines.h"
#include "analysis/quantity.h"
#include "commands/options.h"
#include "output/screen.h"

namespace tool {

struct band {
  double from = -std::numeric_limits<double>::infinity();
  double to = std::numeric_limits<double>::infinity();
  bool is_whole() const { return !(from > -1e300) && !(to < 1e300); }
};

struct telling_options {
  std::optional<quantity> what;  // empty takes what a spectrum was told in, or peak
  bool as_level = false;
  std::size_t lines = 10;
  std::optional<double> least_snr;
  band limits;

  measure measure_for(const spectrum& s, quantity usual = quantity::peak, bool usual_level = false) const {
    return {what.value_or(usual), as_level || (usual_level && !what), s};
  }
};

struct picture_options {
  std::string svg;   // file; empty for none
  std::string axis;  // linear or log; empty for what suits the signal
  std::string title;
  std::string theme = "light";
  color_choice color = color_choice::automatic;
};

void add_sample_options(options& o, std::optional<std::string>& unit, double& gain);
void add_window_option(options& o, int& window);
void add_analysis_options(options& o, analysis_options& analysis);
void add_telling_options(options& o, telling_options& telling);
void add_picture_options(options& o, picture_options& drawing);

// A window by any name of the catalogue or of other programs, in any case, with or without hyphens; what is
// wrong with the name otherwise.
std::string find_window(const std::string& name, int& window);

}  // namespace tool
