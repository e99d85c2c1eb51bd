// SPDX-License-Identifier: MIT
// What is told about the samples of a channel.
#pragma once

#include <optional>
#include <string>

#include "analysis/statistics.h"
#include "input/source.h"

namespace tool {

struct figures {
  const subject& about;
  std::string channel;
  std::string unit;
  moments sums;
  std::optional<double> median;
  histogram bins;
};

std::string table_of(const figures& f);
std::string json_of(const figures& f);
std::string csv_of(const figures& f);  // the histogram

}  // namespace tool
