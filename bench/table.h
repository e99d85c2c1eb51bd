// SPDX-License-Identifier: MIT
// The head of a Markdown table.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace bench {

inline void print_head(const std::vector<std::string>& columns) {
  std::printf("\n|");
  for (const std::string& name : columns) std::printf(" %s |", name.c_str());
  std::printf("\n|");
  for (std::size_t i = 0; i < columns.size(); ++i) std::printf("---|");
  std::printf("\n");
}

}  // namespace bench
