// SPDX-License-Identifier: MIT
// The library's operations in place, by their names in C without the prefix.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "record.h"

namespace tool {

struct in_place_operation {
  const char* name;
  std::vector<const char*> arguments;  // what stands for each in the help
  std::function<std::int32_t(record&, std::span<const std::string>)> apply;  // the library's status
};

const std::vector<in_place_operation>& in_place_operations();

}  // namespace tool
