// SPDX-License-Identifier: MIT
// What can go wrong, with the program's exit status. The message names the file.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace tool {

class failure : public std::exception {
 public:
  failure(int status, std::string reason) : status_(status), reason_(std::move(reason)) {}
  int status() const noexcept { return status_; }
  const char* what() const noexcept override { return reason_.c_str(); }

  // Puts the file, or the line of it, in front; the first place that is named stands.
  void name_place(const std::string& place) {
    if (placed_) return;
    reason_ = place + ": " + reason_;
    placed_ = true;
  }

 private:
  int status_;
  std::string reason_;
  bool placed_ = false;
};

// What is wrong with the data.
struct data_error : failure {
  explicit data_error(std::string reason) : failure(1, std::move(reason)) {}
};

// What is wrong with the words of the command line.
struct usage_error : failure {
  explicit usage_error(std::string reason) : failure(2, std::move(reason)) {}
};

// Memory or disk is used up.
struct resource_error : failure {
  explicit resource_error(std::string reason) : failure(3, std::move(reason)) {}
};

// Does the work; what goes wrong in it is about the place, unless the words of the command line are wrong for
// any.
template <class F> decltype(auto) at_place(const std::string& place, F&& act) {
  try {
    return act();
  } catch (usage_error&) {
    throw;
  } catch (failure& e) {
    e.name_place(place);
    throw;
  }
}

}  // namespace tool
