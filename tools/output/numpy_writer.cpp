// SPDX-License-Identifier: MIT
// Signals as arrays of NumPy (NEP 1): a row for each frame, a column for each channel.
#include <unistd.h>

#include <bit>
#include <cerrno>

#include "output/number.h"
#include "output/signal_writer.h"

namespace tool {
namespace {

constexpr std::size_t header_size = 128;

class numpy_writer final : public signal_writer {
 public:
  numpy_writer(writer& out, std::size_t bits, const subject& about)
      : out_(out),
        bytes_((bits == 0 ? 64 : bits) / 8),
        complex_(about.is_complex),
        channels_(about.channels.size()) {
    if (bytes_ != 4 && bytes_ != 8) throw usage_error("--bits of npy is 32 or 64");
    put(header());  // of no frames yet, but as long
    if (about.rate > 0)
      warnings_.push_back("an array holds no rate; read it with --rate " + exact_text(about.rate));
  }

  void write(std::span<const double> frames) override {
    scalars_ += frames.size();
    if (bytes_ == 8) return put({reinterpret_cast<const char*>(frames.data()), frames.size_bytes()});
    floats_.assign(frames.begin(), frames.end());
    put({reinterpret_cast<const char*>(floats_.data()), floats_.size() * sizeof(float)});
  }

  // The number of frames is known now.
  void finish() override {
    const std::string text = header();
    if (pwrite(out_.seekable_descriptor(), text.data(), text.size(), 0) < 0) out_.fail(errno);
  }

 private:
  std::string header() const {
    const std::uint64_t frames = scalars_ / channels_ / (complex_ ? 2 : 1);
    const char order = std::endian::native == std::endian::little ? '<' : '>';
    std::string shape = std::to_string(frames) + ",";
    if (channels_ > 1) shape += " " + std::to_string(channels_);
    std::string text = std::string("{'descr': '") + order + (complex_ ? 'c' : 'f') +
                       std::to_string(complex_ ? 2 * bytes_ : bytes_) +
                       "', 'fortran_order': False, 'shape': (" + shape + "), }";
    constexpr std::size_t before = 10;
    text.resize(header_size - before - 1, ' ');
    return std::string("\x93NUMPY\x01\x00", 8) + static_cast<char>(header_size - before) + '\0' + text + '\n';
  }

  void put(std::string_view bytes) const {
    const int to = out_.seekable_descriptor();
    while (!bytes.empty()) {
      const ssize_t n = ::write(to, bytes.data(), bytes.size());
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) out_.fail(errno);
      bytes.remove_prefix(static_cast<std::size_t>(n));
    }
  }

  writer& out_;
  std::size_t bytes_;
  bool complex_;
  std::size_t channels_;
  std::uint64_t scalars_ = 0;
  std::vector<float> floats_;
};

}  // namespace

std::unique_ptr<signal_writer> open_numpy_writer(writer& out, std::size_t bits, const subject& about) {
  return std::make_unique<numpy_writer>(out, bits, about);
}

}  // namespace tool
