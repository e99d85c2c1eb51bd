// SPDX-License-Identifier: MIT
// The bytes of a file or a pipe, from where it stands, a block at a time.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

class stream {
 public:
  explicit stream(const std::string& name);  // "-" is standard input
  ~stream();
  stream(const stream&) = delete;
  stream& operator=(const stream&) = delete;

  // What was read and not yet taken.
  std::string_view waiting() const { return {buffer_.data() + begin_, end_ - begin_}; }

  // Reads on behind that, which may move; false at the end of the file.
  bool more();

  // Whether so many bytes wait, or could be had.
  bool wait_for(std::size_t count);

  void take(std::size_t count) {
    begin_ += count;
    taken_ += count;
  }

  // Takes `count` bytes; fewer only at the end.
  std::size_t read(void* to, std::size_t count);

  // Of UTF-16, from what waits on: takes the mark at its start, and everything comes as UTF-8.
  void decode_utf16(bool big_endian);

  // A pipe goes through a temporary file, so that it can be gone back in; at its start again.
  void make_seekable();
  bool is_seekable() const { return seekable_; }
  void rewind();

  // Of a file that can be gone back in, at a distance from its start. Takes nothing.
  std::size_t read_at(std::uint64_t at, void* to, std::size_t count) const;
  std::uint64_t size() const { return size_; }  // from the start; 0 when nobody knows

  // For people: how far the reading is.
  void note_position(std::uint64_t at) { taken_ = at; }
  std::uint64_t position() const { return taken_; }
  double progress() const;

 private:
  std::size_t read_raw(char* to, std::size_t count) const;
  std::size_t decode(std::size_t from);
  void measure();

  int descriptor_;
  bool seekable_ = false;
  std::uint64_t start_ = 0;
  std::uint64_t size_ = 0;
  std::uint64_t taken_ = 0;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  enum class text { plain, utf16_little, utf16_big } text_ = text::plain;
  std::string undecoded_;
};

}  // namespace tool
