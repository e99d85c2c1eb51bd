// Vector files in the library's own forms; the first vector of the file.
#include <algorithm>
#include <cmath>

#include "input/source.h"
#include "record.h"

namespace tool {
namespace {

class vector final : public source {
 public:
  vector(file f, const source_options& options) : rate_(options.rate) {
    if (options.channel != 1) throw data_error("a vector file has no channels");
    if (dspf_fread(&samples_, f.get()) != 1) throw data_error("the vector is malformed or cut short");
    if (rate_ <= 0) {
      if (!(samples_.delta > 0) || !std::isfinite(1 / samples_.delta)) {
        throw data_error("the spacing of the samples is " + std::to_string(samples_.delta) + "; give --rate");
      }
      rate_ = 1 / samples_.delta;
    }
  }

  std::size_t read(std::span<double> samples) override {
    const auto left = samples_.scalars().subspan(done_);
    const std::size_t count = std::min(left.size(), samples.size());
    std::copy_n(left.begin(), count, samples.begin());
    done_ += count;
    return count;
  }

  double rate() const override { return rate_; }
  bool is_complex() const override { return samples_.is_complex(); }
  double progress() const override {
    return static_cast<double>(done_) /
           static_cast<double>(std::max<std::size_t>(samples_.scalars().size(), 1));
  }
  std::string description() const override { return is_complex() ? "complex vector" : "vector"; }

 private:
  record samples_;
  std::size_t done_ = 0;
  double rate_;
};

}  // namespace

std::unique_ptr<source> open_vector(file f, const source_options& options) {
  return std::make_unique<vector>(std::move(f), options);
}

}  // namespace tool
