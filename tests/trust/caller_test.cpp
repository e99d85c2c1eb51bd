// SPDX-License-Identifier: MIT
// What a caller has set stays as it is: errno, and how the processor rounds, traps and treats the smallest
// numbers.
#include <dlfcn.h>

#include <cerrno>
#include <cfenv>
#include <set>
#include <vector>

#include "support/calls.h"
#include "support/failing.h"

namespace sigpak::test {
namespace {

// The control bits of the processor's arithmetic, without the flags of what has happened.
std::vector<unsigned long> control_state() {
  std::vector<unsigned long> state{static_cast<unsigned long>(std::fegetround())};
#if defined(__x86_64__)
  constexpr unsigned happened = 0x3f;
  unsigned short x87 = 0;
  asm volatile("fnstcw %0" : "=m"(x87));
  state.push_back(x87);
  state.push_back(__builtin_ia32_stmxcsr() & ~happened);
#elif defined(__aarch64__)
  unsigned long control = 0;
  asm volatile("mrs %0, fpcr" : "=r"(control));
  state.push_back(control);
#endif
  return state;
}

TEST(Caller, KeepsErrnoAndTheControlOfItsArithmetic) {
  const small_machine limited;
  const auto before = control_state();
  std::set<std::string> disturbers;
  const auto watch = [&](const exported& op, auto& at, const arguments& given) {
    errno = EXDEV;
    op.call(at, given);
    if (errno != EXDEV || control_state() != before) disturbers.insert(op.name);
  };
  each_fitting_call<dsp_vec>(100, 2, watch);
  each_fitting_call<dspf_vec>(100, 2, watch);
  EXPECT_EQ(disturbers, std::set<std::string>{});
}

TEST(Caller, KeepsThemWhenTheLibraryIsLoaded) {
  const auto before = control_state();
  void* const library = dlopen(SIGPAK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  EXPECT_EQ(control_state(), before);
  EXPECT_EQ(dlclose(library), 0);
  EXPECT_EQ(control_state(), before);
}

}  // namespace
}  // namespace sigpak::test
