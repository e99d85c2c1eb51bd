// SPDX-License-Identifier: MIT
// What the samples of a signal sum up to, in blocks.
#include "analysis/statistics.h"

#include <algorithm>
#include <cmath>

namespace tool {
namespace {

double number(std::int32_t (*statistic)(const dsp_vec*, dsp_vec*), const record& v) {
  record result;
  require(statistic(&v, &result));
  return result.data[0];
}

moments moments_of(const record& v) {
  const double variance = std::max(number(dsps_pop_var, v), 0.0);
  return {v.points, number(dsps_mean, v), variance * v.points, number(dsps_min, v), number(dsps_max, v)};
}

record counted(const record& v, range r, std::size_t bins) {
  record counts;
  const double width = (r.high - r.low) / static_cast<double>(bins);
  require(dsps_hist(&v, &counts, r.low, width, static_cast<std::int32_t>(bins)));
  return counts;
}

}  // namespace

double moments::rms() const {
  return count > 0 ? std::sqrt(deviations / static_cast<double>(count) + mean * mean) : 0;
}

// T. F. Chan, G. H. Golub, R. J. LeVeque, The American Statistician 37, 1983.
moments joined(const moments& a, const moments& b) {
  if (a.count == 0) return b;
  if (b.count == 0) return a;
  const auto na = static_cast<double>(a.count);
  const auto nb = static_cast<double>(b.count);
  const double apart = b.mean - a.mean;
  return {a.count + b.count, a.mean + apart * (nb / (na + nb)),
          a.deviations + b.deviations + apart * apart * (na * nb / (na + nb)), std::min(a.least, b.least),
          std::max(a.greatest, b.greatest)};
}

void statistics::add(const record& block) {
  if (block.points == 0) return;
  sums_ = joined(sums_, moments_of(block));
  if (bins_ > 0 && limits_) {
    const record counts = counted(block, *limits_, bins_);
    require(counts_.points == 0 ? dsp_copy(&counts_, &counts) : dspb_add(&counts_, &counts, &counts_));
  }
  keeps_ = keeps_ && sums_.count <= most_kept_;
  if (keeps_) {
    require(dsp_append(&kept_, &block));
  } else {
    kept_ = record();
  }
}

std::optional<double> statistics::median() const {
  if (!keeps_) return std::nullopt;
  return number(dsps_median, kept_);
}

histogram statistics::bins() const {
  histogram out;
  if (bins_ == 0) return out;
  if (!limits_ && !keeps_)
    throw data_error("too many samples to find their range; --low and --high give it, --all keeps them");
  const range r = limits_.value_or(range{sums_.least, sums_.greatest});
  out.low = r.low;
  out.high = r.high;
  if (limits_) {
    require(dsp_copy(&out.counts, &counts_));
  } else {
    out.counts = counted(kept_, r, bins_);
  }
  return out;
}

}  // namespace tool
