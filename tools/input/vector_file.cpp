// Vector files in the library's own forms; the first vector of the file.
#include <algorithm>
#include <cmath>

#include "input/kinds.h"
#include "record.h"

namespace tool {
namespace {

class vector final : public source {
 public:
  vector(file f, const std::string& name, const input_options& options) {
    if (!options.channels.empty() && options.channels[0] != "1")
      throw data_error("a vector file has no channels");
    if (dspf_fread(&samples_, f.get()) != 1) throw data_error("the vector is malformed or cut short");
    about_.name = name;
    about_.rate = options.rate;
    if (about_.rate <= 0) {
      if (!(samples_.delta > 0) || !std::isfinite(1 / samples_.delta)) {
        throw data_error("the spacing of the samples is " + std::to_string(samples_.delta) + "; give --rate");
      }
      about_.rate = 1 / samples_.delta;
    }
    about_.is_complex = samples_.is_complex();
    about_.kind = about_.is_complex ? "complex vector" : "vector";
    about_.understood = about_.kind;
    about_.channels = {{"1", ""}};
  }

  std::size_t read(std::span<double> samples) override {
    const auto left = samples_.scalars().subspan(done_);
    const std::size_t count = std::min(left.size(), samples.size());
    std::copy_n(left.begin(), count, samples.begin());
    done_ += count;
    about_.samples = done_ / about_.scalars_per_frame();
    return count;
  }

  bool next_piece() override { return false; }
  const subject& about() const override { return about_; }
  double progress() const override {
    return static_cast<double>(done_) /
           static_cast<double>(std::max<std::size_t>(samples_.scalars().size(), 1));
  }
  std::uint64_t bytes() const override { return 0; }

 private:
  record samples_;
  std::size_t done_ = 0;
  subject about_;
};

}  // namespace

std::unique_ptr<source> open_vector(file f, const std::string& name, const input_options& options) {
  return std::make_unique<vector>(std::move(f), name, options);
}

}  // namespace tool
