// SPDX-License-Identifier: MIT
// Sound files that are more than plain numbers, through libsndfile: FLAC, Ogg, MP3, AIFF and the rest.
#include <fcntl.h>
#include <sndfile.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "input/channels.h"
#include "input/kinds.h"
#include "input/packed.h"

namespace tool {
namespace {

constexpr std::size_t most_frames = 4096;

struct sound_closer {
  void operator()(SNDFILE* s) const noexcept { sf_close(s); }
};

// The decoders below libsndfile write notes of their own to standard error.
class silence {
 public:
  silence() : kept_(dup(STDERR_FILENO)), none_(open("/dev/null", O_WRONLY | O_CLOEXEC)) {
    if (kept_ >= 0 && none_ >= 0) dup2(none_, STDERR_FILENO);
  }
  ~silence() {
    if (kept_ >= 0) dup2(kept_, STDERR_FILENO), close(kept_);
    if (none_ >= 0) close(none_);
  }
  silence(const silence&) = delete;
  silence& operator=(const silence&) = delete;

 private:
  int kept_;
  int none_;
};

// The stream as a file of libsndfile, which begins where the stream began.
struct view {
  stream* in;
  sf_count_t at = 0;
};

sf_count_t length_of(void* user) { return static_cast<sf_count_t>(static_cast<view*>(user)->in->size()); }

sf_count_t go_to(sf_count_t offset, int from, void* user) {
  view& v = *static_cast<view*>(user);
  const sf_count_t base = from == SEEK_SET ? 0 : from == SEEK_CUR ? v.at : length_of(user);
  return v.at = std::max<sf_count_t>(base + offset, 0);
}

sf_count_t read_bytes(void* to, sf_count_t count, void* user) {
  view& v = *static_cast<view*>(user);
  const auto n = v.in->read_at(static_cast<std::uint64_t>(v.at), to, static_cast<std::size_t>(count));
  v.at += static_cast<sf_count_t>(n);
  v.in->note_position(static_cast<std::uint64_t>(v.at));
  return static_cast<sf_count_t>(n);
}

sf_count_t place(void* user) { return static_cast<view*>(user)->at; }

std::string format_name(int format) {
  SF_FORMAT_INFO info{};
  info.format = format & SF_FORMAT_TYPEMASK;
  const bool known =
      sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof info) == 0 && info.name != nullptr;
  return known ? info.name : "sound";
}

class sound final : public reader {
 public:
  sound(stream& in, const input_options& options, subject& about) : view_{&in}, about_(about) {
    const silence quiet;
    SF_VIRTUAL_IO access{length_of, go_to, read_bytes, nullptr, place};
    sound_.reset(sf_open_virtual(&access, SFM_READ, &info_, &view_));
    if (sound_ == nullptr) {
      // Of malformed MP3 libsndfile says that the file does not exist.
      const std::string reason = sf_strerror(nullptr);
      const bool malformed = reason.find("does not exist") != std::string::npos;
      throw data_error("sound that cannot be read: " + (malformed ? "its data are malformed" : reason));
    }
    about_.kind = format_name(info_.format);
    about_.rate = options.rate > 0 ? options.rate : info_.samplerate;
    about_.is_full_scale = true;
    // An ADPCM or MP3 file tells no length that one could rely on.
    about_.promised = info_.frames < SF_COUNT_MAX ? static_cast<std::uint64_t>(info_.frames) : 0;
    chosen_ = choose_channels(options.channels, static_cast<std::size_t>(info_.channels), about_);
    frames_.resize(most_frames * static_cast<std::size_t>(info_.channels));
  }

  std::size_t read(std::span<double> frames) override {
    const std::size_t wanted = frames.size() / chosen_.size();
    std::size_t done = 0;
    while (done < wanted) {
      const std::size_t got = read_block(std::min(wanted - done, most_frames));
      if (got == 0) break;
      pick(got, frames.data() + done * chosen_.size());
      done += got;
    }
    return done * chosen_.size();
  }

 private:
  std::size_t read_block(std::size_t wanted) {
    const silence quiet;
    const auto got = sf_readf_double(sound_.get(), frames_.data(), static_cast<sf_count_t>(wanted));
    if (got > 0) read_ += static_cast<std::uint64_t>(got);
    if (got > 0) return static_cast<std::size_t>(got);
    if (!ended_ && read_ < about_.promised) note_truncation(about_, read_, about_.promised);
    ended_ = true;
    return 0;
  }

  void pick(std::size_t count, double* out) const {
    const auto width = static_cast<std::size_t>(info_.channels);
    for (std::size_t i = 0; i < count; ++i) {
      for (const std::size_t c : chosen_) *out++ = frames_[i * width + c];
    }
  }

  view view_;
  subject& about_;
  SF_INFO info_{};
  std::unique_ptr<SNDFILE, sound_closer> sound_;
  std::vector<std::size_t> chosen_;
  std::vector<double> frames_;
  std::uint64_t read_ = 0;
  bool ended_ = false;
};

}  // namespace

bool is_sound(std::string_view head) {
  for (const char* const magic :
       {"RIFF", "RIFX", "RF64", "riff", "fLaC", "OggS", "FORM", ".snd", "dns.", "caff", "ID3",
        "Creative Voice File", "\x64\xA3\x01\x00", "NIST_1A", "SOUND SAMPLE DATA"}) {
    if (head.starts_with(magic)) return true;
  }
  const bool long_enough = head.size() >= 2 && head[0] == '\xFF';
  return long_enough && (static_cast<unsigned char>(head[1]) & 0xE6) == 0xE2;  // the sync word of MP3
}

reader_pointer open_sound(stream& in, const input_options& options, subject& about) {
  in.make_seekable();
  return std::make_unique<sound>(in, options, about);
}

}  // namespace tool
