// SPDX-License-Identifier: MIT
// The bytes of a file or a pipe, from where it stands, a block at a time.
#include "input/stream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "errors.h"
#include "input/utf16.h"
#include "spool.h"

namespace tool {
namespace {

constexpr std::size_t block = 1 << 18;

[[noreturn]] void throw_errno() { throw data_error(std::strerror(errno)); }

void write_all(int descriptor, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t n = write(descriptor, bytes, count);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) fail_spool(errno);
    bytes += n;
    count -= static_cast<std::size_t>(n);
  }
}

}  // namespace

stream::stream(const std::string& name)
    : descriptor_(name == "-" ? STDIN_FILENO : open(name.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (descriptor_ < 0) throw_errno();
  buffer_.resize(block);
  measure();
}

stream::~stream() {
  if (descriptor_ > STDIN_FILENO) close(descriptor_);
}

void stream::measure() {
  struct stat about {};
  const off_t start = lseek(descriptor_, 0, SEEK_CUR);
  seekable_ = start >= 0 && fstat(descriptor_, &about) == 0 && S_ISREG(about.st_mode);
  if (!seekable_) return;
  start_ = static_cast<std::uint64_t>(start);
  size_ = static_cast<std::uint64_t>(std::max<off_t>(about.st_size - start, 0));
}

std::size_t stream::read_raw(char* to, std::size_t count) const {
  while (true) {
    const ssize_t n = ::read(descriptor_, to, count);
    if (n >= 0) return static_cast<std::size_t>(n);
    if (errno != EINTR) throw_errno();
  }
}

bool stream::more() {
  if (begin_ > 0) {
    std::copy(buffer_.data() + begin_, buffer_.data() + end_, buffer_.data());
    end_ -= begin_;
    begin_ = 0;
  }
  if (buffer_.size() - end_ < block / 2) buffer_.resize(buffer_.size() + block);
  if (text_ != text::plain) {
    const std::size_t before = undecoded_.size();
    undecoded_.resize(before + block / 4);
    const std::size_t n = read_raw(undecoded_.data() + before, block / 4);
    undecoded_.resize(before + n);
    if (n == 0 && before == 0) return false;
    if (n == 0) undecoded_ = text_ == text::utf16_big ? "\xFF\xFD" : "\xFD\xFF";  // half a character
    end_ += decode(end_);
    return true;
  }
  const std::size_t n = read_raw(buffer_.data() + end_, buffer_.size() - end_);
  end_ += n;
  return n > 0;
}

// The text behind `from` in the buffer, which has room for it: a unit of two bytes takes three at most.
std::size_t stream::decode(std::size_t from) {
  const std::string decoded = utf8_of(undecoded_, text_ == text::utf16_big);
  if (buffer_.size() < from + decoded.size()) buffer_.resize(from + decoded.size());
  std::copy(decoded.begin(), decoded.end(), buffer_.data() + from);
  return decoded.size();
}

void stream::decode_utf16(bool big_endian) {
  text_ = big_endian ? text::utf16_big : text::utf16_little;
  undecoded_ = std::string(waiting());
  begin_ = end_ = 0;
  end_ = decode(0);
  if (waiting().starts_with("\xEF\xBB\xBF")) take(3);
}

bool stream::wait_for(std::size_t count) {
  while (end_ - begin_ < count) {
    if (!more()) return false;
  }
  return true;
}

std::size_t stream::read(void* to, std::size_t count) {
  char* const bytes = static_cast<char*>(to);
  std::size_t done = std::min(count, end_ - begin_);
  std::copy_n(buffer_.data() + begin_, done, bytes);
  begin_ += done;
  while (done < count) {
    const std::size_t n = read_raw(bytes + done, count - done);
    if (n == 0) break;
    done += n;
  }
  taken_ += done;
  return done;
}

void stream::make_seekable() {
  if (seekable_) return rewind();
  const int copy = open_spool();
  write_all(copy, buffer_.data() + begin_, end_ - begin_);
  while (const std::size_t n = read_raw(buffer_.data(), buffer_.size())) write_all(copy, buffer_.data(), n);
  if (descriptor_ != STDIN_FILENO) close(descriptor_);
  descriptor_ = copy;
  lseek(descriptor_, 0, SEEK_SET);
  measure();
  begin_ = end_ = 0;
  taken_ = 0;
}

void stream::rewind() {
  if (lseek(descriptor_, static_cast<off_t>(start_), SEEK_SET) < 0) throw_errno();
  begin_ = end_ = 0;
  taken_ = 0;
}

std::size_t stream::read_at(std::uint64_t at, void* to, std::size_t count) const {
  std::size_t done = 0;
  while (done < count) {
    const auto place = static_cast<off_t>(start_ + at + done);
    const ssize_t n = pread(descriptor_, static_cast<char*>(to) + done, count - done, place);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) throw_errno();
    if (n == 0) break;
    done += static_cast<std::size_t>(n);
  }
  return done;
}

double stream::progress() const {
  if (size_ == 0) return -1;
  return std::min(1.0, static_cast<double>(taken_) / static_cast<double>(size_));
}

}  // namespace tool
