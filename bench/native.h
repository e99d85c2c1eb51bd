// SPDX-License-Identifier: MIT
// Loops compiled for this machine, with every freedom that the compiler may be given.
#pragma once

#include <cstddef>

namespace bench {

// Fused multiply-adds on whole vectors in independent chains, the peak of the machine; gives their number.
double multiply_add(std::ptrdiff_t turns);

// y[n] = sum of taps[k] x[n - k], the sum vectorised by the compiler.
void filter_loop(const double* taps, std::ptrdiff_t count, const double* x, double* y, std::ptrdiff_t points);

}  // namespace bench
