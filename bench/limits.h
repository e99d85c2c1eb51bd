// What the machine can do at most: the loops that nothing else can beat at the same traffic.
#pragma once

#include <cstddef>

namespace bench {

// x[i] = c * x[i] with the widest vectors of the current level; x aligned to 64 bytes, n a multiple of 64.
void copy_scale(double* x, std::ptrdiff_t n, double c);

// Reads every value once, in many independent chains.
double read_all(const double* x, std::ptrdiff_t n);

// x[i] = 1 / x[i], nothing but the divider.
void divide_one(double* x, std::ptrdiff_t n);

// x[i] = sqrt(x[i]), nothing but the divider; x positive.
void root_one(double* x, std::ptrdiff_t n);

}  // namespace bench
