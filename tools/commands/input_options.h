// SPDX-License-Identifier: MIT
// The options that every command that reads has in common.
#pragma once

#include "commands/options.h"
#include "input/source.h"

namespace tool {

void add_input_options(options& o, input_options& input);

}  // namespace tool
