// SPDX-License-Identifier: MIT
// Opening a file, telling its kind from its first bytes, and the stages that its samples go through.
#include <algorithm>

#include "input/channels.h"
#include "input/kinds.h"
#include "input/utf16.h"

namespace tool {
namespace {

constexpr std::size_t head_size = 4096;

bool is_text(std::string_view head) {
  return std::ranges::all_of(head, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= ' ' || (byte >= '\t' && byte <= '\r');
  });
}

reader_pointer open_text(stream& in, const input_options& options, subject& about) {
  if (options.delimiter != 0 && options.delimiter == options.decimal)
    throw usage_error("one sign cannot be delimiter and decimal");
  if (options.resample) in.make_seekable();
  in.wait_for(head_size);
  if (const auto big_endian = utf16_order(in.waiting().substr(0, head_size))) {
    in.decode_utf16(*big_endian);
  } else if (in.waiting().starts_with("\xEF\xBB\xBF")) {
    in.take(3);
  }
  return open_table(in, options, about);
}

reader_pointer open_kind(stream& in, const input_options& options, subject& about) {
  if (!options.raw.empty()) return open_raw(in, options, about);
  in.wait_for(head_size);
  const std::string_view head = in.waiting().substr(0, head_size);
  if (head.empty()) throw data_error("the file is empty");
  if (is_vector(head)) return open_vectors(in, options, about);
  if (is_numpy(head)) return open_numpy(in, options, about);
  if (is_wave(head)) {
    if (auto plain = open_wave(in, options, about)) return plain;
  }
  if (is_text(head) || utf16_order(head)) return open_text(in, options, about);
  if (is_sound(head)) return open_sound(in, options, about);
  if (head.starts_with("\x1F\x8B")) throw data_error("compressed by gzip; zcat it into \"sigpak ... -\"");
  throw data_error("not a vector, not text, no sound that is known; --raw reads numbers without a header");
}

class opened final : public source {
 public:
  opened(const std::string& name, const input_options& options) : in_(name) {
    about_.name = name == "-" ? "standard input" : name;
    reader_ = bridge_gaps(cut_part(open_kind(in_, options, about_), options, about_), options, about_);
  }

  std::size_t read(std::span<double> frames) override {
    const std::size_t got = at_place(about_.name, [&] { return reader_->read(frames); });
    about_.samples += got / about_.scalars_per_frame();
    return got;
  }
  bool next_piece() override {
    return at_place(about_.name, [&] { return reader_->next_piece(); });
  }
  const subject& about() const override { return about_; }
  double progress() const override { return in_.progress(); }
  std::uint64_t bytes() const override { return in_.position(); }

 private:
  stream in_;
  subject about_;
  reader_pointer reader_;
};

}  // namespace

std::unique_ptr<source> open_source(const std::string& name, const input_options& options) {
  const std::string shown = name == "-" ? "standard input" : name;
  return at_place(shown,
                  [&]() -> std::unique_ptr<source> { return std::make_unique<opened>(name, options); });
}

}  // namespace tool
