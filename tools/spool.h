// SPDX-License-Identifier: MIT
// A file without a name in TMPDIR, for what has to be gone through twice.
#pragma once

namespace tool {

// Its descriptor, for reading and writing. It goes with the program.
int open_spool();

// Says which directory is full, or what else went wrong with it.
[[noreturn]] void fail_spool(int error);

}  // namespace tool
