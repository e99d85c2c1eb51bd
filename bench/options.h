// SPDX-License-Identifier: MIT
// Options of the benchmarks: a name and a value each.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "core/isa.h"

namespace bench {

class options {
 public:
  options(int argc, char** argv, std::initializer_list<std::string_view> known) {
    for (int i = 1; i < argc; i += 2) {
      if (i + 1 == argc || std::find(known.begin(), known.end(), argv[i]) == known.end()) {
        std::fprintf(stderr, "%s: unknown option, or without a value: %s\n", argv[0], argv[i]);
        std::exit(2);
      }
      pairs_.push_back({argv[i], argv[i + 1]});
    }
  }
  const char* text(std::string_view name) const {
    for (const pair& p : pairs_) {
      if (p.name == name) return p.value;
    }
    return "";
  }
  long number(std::string_view name, long otherwise) const {
    const char* const value = text(name);
    return *value != 0 ? std::atol(value) : otherwise;
  }
  // Whether the rows of this name are wanted: those that hold the text of the option.
  bool wants(std::string_view option, std::string_view name) const {
    return name.find(text(option)) != std::string_view::npos;
  }
  // Forces the level of "--level", and tells the level in force.
  const char* level() const {
    sigpak::isa::force_named(text("--level"));
    return sigpak::isa::name_of(sigpak::isa::current());
  }

 private:
  struct pair {
    std::string_view name;
    const char* value;
  };
  std::vector<pair> pairs_;
};

}  // namespace bench
