// SPDX-License-Identifier: MIT
// errno as the caller left it, to the end of a scope that calls the C library: its mathematics reports there
// what the definitions here give a value.
#pragma once

#include <cerrno>

namespace sigpak {

// To the compiler a function of mathematics touches no memory, so that its call could wait until errno is
// back: results have to be in memory of the caller by the end of the scope, or pass through `computed`.
class kept_errno {
 public:
  [[gnu::always_inline]] kept_errno() noexcept : before_(errno) {}
  [[gnu::always_inline]] ~kept_errno() {
    asm volatile("" : : : "memory");
    errno = before_;
  }
  kept_errno(const kept_errno&) = delete;
  kept_errno& operator=(const kept_errno&) = delete;

  [[gnu::always_inline]] static double computed(double x) noexcept {
    asm volatile("" : "+m"(x) : : "memory");
    return x;
  }

 private:
  int before_;
};

}  // namespace sigpak
