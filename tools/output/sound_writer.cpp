// SPDX-License-Identifier: MIT
// Signals as sound files, through libsndfile. A complex channel is written as two.
#include <sndfile.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>

#include "output/number.h"
#include "output/signal_writer.h"

namespace tool {
namespace {

struct sound_closer {
  void operator()(SNDFILE* s) const noexcept { sf_close(s); }
};

int encoding_of(std::size_t bits) {
  switch (bits) {
    case 16:
      return SF_FORMAT_PCM_16;
    case 24:
      return SF_FORMAT_PCM_24;
    case 32:
      return SF_FORMAT_FLOAT;
    case 64:
      return SF_FORMAT_DOUBLE;
    default:
      throw usage_error("--bits of sound is 16 or 24 for whole numbers, 32 or 64 for floating ones");
  }
}

class sound_writer final : public signal_writer {
 public:
  sound_writer(writer& out, const signal_format& format, const subject& about) : out_(out) {
    const bool flac = format.name == "flac";
    const std::size_t bits = format.bits != 0 ? format.bits : flac ? 24 : 32;
    whole_numbers_ = bits < 32;
    if (flac && !whole_numbers_) throw usage_error("--bits of flac is 16 or 24");
    SF_INFO info{};
    info.samplerate = whole_rate(about);
    info.channels = static_cast<int>(about.scalars_per_frame());
    info.format = encoding_of(bits) | (flac                    ? SF_FORMAT_FLAC
                                       : format.name == "aiff" ? SF_FORMAT_AIFF
                                                               : SF_FORMAT_WAV);
    sound_.reset(sf_open_fd(out.seekable_descriptor(), SFM_WRITE, &info, 0));
    if (sound_ == nullptr)
      throw data_error(std::string("cannot be written as ") + format.name + ": " + sf_strerror(nullptr));
    sf_command(sound_.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    sf_command(sound_.get(), SFC_RF64_AUTO_DOWNGRADE, nullptr, SF_TRUE);
    // It holds the time of day: the same samples would make another file a second later.
    sf_command(sound_.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  }

  void write(std::span<const double> frames) override {
    if (whole_numbers_) {
      for (const double x : frames) clipped_ += x > 1 || x < -1 ? 1U : 0U;
    }
    const auto count = static_cast<sf_count_t>(frames.size());
    errno = 0;
    if (sf_write_double(sound_.get(), frames.data(), count) != count) out_.fail(errno != 0 ? errno : EIO);
  }

  void finish() override {
    errno = 0;
    if (sf_close(sound_.release()) != 0) out_.fail(errno != 0 ? errno : EIO);
    if (clipped_ > 0) {
      warnings_.push_back(
          std::to_string(clipped_) +
          " samples lie beyond full scale and were clipped; --gain, or --bits 32, keeps them");
    }
  }

 private:
  int whole_rate(const subject& about) {
    if (about.time_unit != "s") throw data_error("sound has a rate in Hz");
    if (!(about.rate > 0)) throw data_error("sound needs a rate; give --rate");
    const double rate = std::round(about.rate);
    if (!(rate >= 1 && rate <= 655350))
      throw data_error("sound has whole rates from 1 to 655350 Hz, not " + number_text(about.rate, 9));
    if (std::abs(rate - about.rate) > 1e-6 * rate) {
      warnings_.push_back("sound has whole rates: " + number_text(rate, 9) + " Hz stands for " +
                          number_text(about.rate, 9));
    }
    return static_cast<int>(rate);
  }

  writer& out_;
  std::unique_ptr<SNDFILE, sound_closer> sound_;
  bool whole_numbers_ = false;
  std::uint64_t clipped_ = 0;
};

}  // namespace

std::unique_ptr<signal_writer> open_sound_writer(writer& out, const signal_format& format,
                                                 const subject& about) {
  return std::make_unique<sound_writer>(out, format, about);
}

}  // namespace tool
