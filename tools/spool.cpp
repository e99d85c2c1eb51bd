// SPDX-License-Identifier: MIT
// A file without a name in TMPDIR, for what has to be gone through twice.
#include "spool.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "errors.h"

namespace tool {
namespace {

std::string directory() {
  const char* const given = std::getenv("TMPDIR");
  return given != nullptr && *given != '\0' ? given : "/tmp";
}

}  // namespace

void fail_spool(int error) {
  throw resource_error("temporary folder " + directory() + ": " + std::strerror(error) +
                       "; TMPDIR names another");
}

int open_spool() {
  const int nameless = open(directory().c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (nameless >= 0) return nameless;
  std::string name = directory() + "/sigpak.XXXXXX";
  const int named = mkostemp(name.data(), O_CLOEXEC);
  if (named < 0) fail_spool(errno);
  unlink(name.c_str());
  return named;
}

}  // namespace tool
