// Sound files, one channel at a time.
#include <sndfile.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "input/kinds.h"
#include "record.h"

namespace tool {
namespace {

struct sound_closer {
  void operator()(SNDFILE* s) const noexcept { sf_close(s); }
};

std::string format_name(int format) {
  SF_FORMAT_INFO info{};
  info.format = format & SF_FORMAT_TYPEMASK;
  if (sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof info) != 0 || info.name == nullptr)
    return "sound";
  return info.name;
}

class sound final : public source {
 public:
  sound(file f, const std::string& name, const input_options& options) : file_(std::move(f)) {
    const int descriptor = fileno(file_.get());
    lseek(descriptor, 0, SEEK_SET);  // the stream has read ahead
    sound_.reset(sf_open_fd(descriptor, SFM_READ, &info_, 0));
    if (sound_ == nullptr)
      throw data_error(std::string("not a vector, not text, and: ") + sf_strerror(nullptr));
    const std::size_t wanted = options.channels.empty() ? 1 : std::stoul(options.channels[0]);
    if (wanted > static_cast<std::size_t>(info_.channels)) {
      throw data_error("has " + std::to_string(info_.channels) +
                       (info_.channels == 1 ? " channel" : " channels") + ", not " + std::to_string(wanted));
    }
    channel_ = static_cast<int>(wanted) - 1;
    about_.name = name;
    about_.kind = format_name(info_.format);
    about_.understood = about_.kind;
    if (info_.channels > 1) {
      about_.understood += ", channel " + std::to_string(wanted) + " of " + std::to_string(info_.channels);
    }
    about_.channels = {{std::to_string(wanted), ""}};
    about_.rate = options.rate > 0 ? options.rate : info_.samplerate;
    about_.is_full_scale = true;
  }

  std::size_t read(std::span<double> samples) override {
    const auto width = static_cast<std::size_t>(info_.channels);
    std::size_t done = 0;
    while (done < samples.size()) {
      const std::size_t wanted = std::min(samples.size() - done, most_frames);
      frames_.resize(wanted * width);
      const auto got = sf_readf_double(sound_.get(), frames_.data(), static_cast<sf_count_t>(wanted));
      if (sf_error(sound_.get()) != 0) throw data_error(sf_strerror(sound_.get()));
      if (got <= 0) break;
      for (std::size_t i = 0; i < static_cast<std::size_t>(got); ++i) {
        samples[done++] = frames_[i * width + static_cast<std::size_t>(channel_)];
      }
    }
    about_.samples += done;
    return done;
  }

  bool next_piece() override { return false; }
  const subject& about() const override { return about_; }
  double progress() const override {
    return info_.frames > 0
               ? std::min(1.0, static_cast<double>(about_.samples) / static_cast<double>(info_.frames))
               : 0;
  }
  std::uint64_t bytes() const override { return 0; }

 private:
  static constexpr std::size_t most_frames = 4096;
  file file_;
  SF_INFO info_{};
  std::unique_ptr<SNDFILE, sound_closer> sound_;
  std::vector<double> frames_;
  int channel_ = 0;
  subject about_;
};

}  // namespace

std::unique_ptr<source> open_sound(file f, const std::string& name, const input_options& options) {
  return std::make_unique<sound>(std::move(f), name, options);
}

}  // namespace tool
