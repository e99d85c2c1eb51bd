// SPDX-License-Identifier: MIT
// Where a command's result goes: a file that appears when it is whole, or standard output.
#include "output/writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "errors.h"
#include "spool.h"

namespace tool {
namespace {

constexpr std::size_t block = 1 << 16;

std::string directory_of(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

// What is to be removed when a signal ends the program; one file is written at a time.
volatile std::sig_atomic_t half_written = 0;
char half_written_name[PATH_MAX];

void remove_and_die(int signal) {
  if (half_written != 0) unlink(half_written_name);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void guard_half_written(const std::string& name) {
  if (name.size() >= sizeof half_written_name) return;
  std::strcpy(half_written_name, name.c_str());
  half_written = 1;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, remove_and_die);
}

// The file that a link leads to, so that the link stays.
std::string resolved(const std::string& name) {
  char path[PATH_MAX];
  return realpath(name.c_str(), path) != nullptr ? std::string(path) : name;
}

}  // namespace

writer::writer(const std::string& name) : shown_(name) {
  if (name.empty() || name == "-") {
    shown_ = "standard output";
    descriptor_ = STDOUT_FILENO;
    return;
  }
  target_ = resolved(name);
  struct stat about {};
  const bool exists = stat(target_.c_str(), &about) == 0;
  if (exists && !S_ISREG(about.st_mode)) {
    open_in_place();
    return;
  }
  open_beside();
  if (exists) fchmod(descriptor_, about.st_mode & 07777);
}

writer::~writer() {
  if (spool_ >= 0) close(spool_);
  if (descriptor_ >= 0 && descriptor_ != STDOUT_FILENO) close(descriptor_);
  if (!temporary_.empty()) unlink(temporary_.c_str());
  half_written = 0;
}

void writer::fail(int error) const {
  const std::string reason = std::strerror(error);
  const bool no_room =
      error == ENOSPC || error == EDQUOT || error == EFBIG || error == EIO || error == ENOMEM;
  failure e = no_room ? failure(resource_error(reason)) : failure(data_error(reason));
  e.name_place(shown_);
  throw e;
}

void writer::open_in_place() {
  descriptor_ = open(target_.c_str(), O_WRONLY | O_CLOEXEC);
  if (descriptor_ < 0) fail(errno);
}

// A file without a name goes with the program; where the file system has none, it gets one beside the target.
void writer::open_beside() {
  descriptor_ = open(directory_of(target_).c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666);
  whole_at_once_ = true;
  if (descriptor_ >= 0) return;
  temporary_ = target_ + ".XXXXXX";
  descriptor_ = mkostemp(temporary_.data(), O_CLOEXEC);
  if (descriptor_ < 0) {
    const int error = errno;
    temporary_.clear();
    fail(error);
  }
  guard_half_written(temporary_);
  const mode_t mask = umask(0);
  umask(mask);
  fchmod(descriptor_, 0666 & ~mask);
}

bool writer::is_terminal() const { return isatty(descriptor_) == 1; }

void writer::put(const char* bytes, std::size_t count) const {
  while (count > 0) {
    const ssize_t n = ::write(descriptor_, bytes, count);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0 && errno == EPIPE) _exit(0);
    if (n < 0) fail(errno);
    bytes += n;
    count -= static_cast<std::size_t>(n);
  }
}

void writer::flush() {
  put(waiting_.data(), waiting_.size());
  waiting_.clear();
}

void writer::write(std::string_view bytes) {
  if (waiting_.size() + bytes.size() > block) flush();
  if (bytes.size() > block) return put(bytes.data(), bytes.size());
  waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
}

int writer::seekable_descriptor() {
  if (whole_at_once_) return descriptor_;
  if (spool_ < 0) spool_ = open_spool();
  return spool_;
}

void writer::copy_to_target() {
  std::vector<char> bytes(block);
  off_t at = 0;
  while (const ssize_t n = pread(spool_, bytes.data(), bytes.size(), at)) {
    if (n < 0) fail(errno);
    put(bytes.data(), static_cast<std::size_t>(n));
    at += n;
  }
}

void writer::link_under_name() {
  if (temporary_.empty()) {
    const std::string open_file = "/proc/self/fd/" + std::to_string(descriptor_);
    const std::string unique = target_ + "." + std::to_string(getpid());
    if (linkat(AT_FDCWD, open_file.c_str(), AT_FDCWD, unique.c_str(), AT_SYMLINK_FOLLOW) != 0) fail(errno);
    temporary_ = unique;
  }
  if (rename(temporary_.c_str(), target_.c_str()) != 0) fail(errno);
  temporary_.clear();
  half_written = 0;
}

void writer::commit() {
  flush();
  if (spool_ >= 0) copy_to_target();
  if (whole_at_once_) link_under_name();
  if (descriptor_ == STDOUT_FILENO) return;
  const int closing = descriptor_;
  descriptor_ = -1;
  if (close(closing) != 0) fail(errno);
}

}  // namespace tool
