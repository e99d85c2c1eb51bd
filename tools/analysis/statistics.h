// SPDX-License-Identifier: MIT
// What the samples of a signal sum up to, in blocks.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>

#include "record.h"

namespace tool {

// Figures that two parts of a signal join to those of the whole.
struct moments {
  std::uint64_t count = 0;
  double mean = 0;
  double deviations = 0;  // sum of (x - mean)^2
  double least = std::numeric_limits<double>::infinity();
  double greatest = -std::numeric_limits<double>::infinity();

  double variance() const { return count > 1 ? deviations / static_cast<double>(count - 1) : 0; }
  double rms() const;
};

moments joined(const moments& a, const moments& b);

struct histogram {
  double low = 0;
  double high = 0;
  record counts;  // empty where none was asked for

  double edge(std::size_t i) const {
    return low + (high - low) * static_cast<double>(i) / static_cast<double>(counts.points);
  }
};

struct range {
  double low;
  double high;
};

// In constant memory, but for the samples that the median needs, and a histogram without a range of its own:
// those are kept while they are at most `most_kept`.
class statistics {
 public:
  statistics(std::size_t bins, std::optional<range> limits, std::uint64_t most_kept)
      : bins_(bins), limits_(limits), most_kept_(most_kept) {}

  void add(const record& block);  // real
  const moments& sums() const { return sums_; }
  std::optional<double> median() const;  // empty for too many samples
  histogram bins() const;                // a data_error for too many samples without a range

 private:
  std::size_t bins_;
  std::optional<range> limits_;
  std::uint64_t most_kept_;
  moments sums_;
  record counts_;
  record kept_;
  bool keeps_ = true;
};

}  // namespace tool
