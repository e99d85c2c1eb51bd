// The commands: each adds its options and returns what is to be done once they are read.
#pragma once

#include <functional>

#include "commands/options.h"

namespace tool {

using work = std::function<void()>;

work add_spectrum(options& o);

}  // namespace tool
