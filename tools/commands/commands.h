// SPDX-License-Identifier: MIT
// The commands: each adds its options and returns what is to be done once they are read.
#pragma once

#include <functional>

#include "commands/options.h"

namespace tool {

using work = std::function<void()>;

work add_spectrum(options& o);
work add_plot(options& o);
work add_stats(options& o);
work add_info(options& o);
work add_convert(options& o);
work add_gen(options& o);
work add_filter(options& o);
work add_window(options& o);
work add_merge(options& o);
work add_apply(options& o);

}  // namespace tool
