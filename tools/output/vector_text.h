// SPDX-License-Identifier: MIT
// A record as a vector file in binary form.
#pragma once

#include <string>

#include "record.h"

namespace tool {

std::string vector_text(const record& v);

}  // namespace tool
