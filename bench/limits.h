// What the machine can do at most: the loops that nothing else can beat at the same traffic.
#pragma once

#include <cstddef>

namespace bench {

// x[i] = c * x[i] with the widest vectors of the current level; x aligned to 64 bytes, n a multiple of 64.
template <class T> void copy_scale(T* x, std::ptrdiff_t n, T c);

// Reads every value once, in many independent chains.
template <class T> T read_all(const T* x, std::ptrdiff_t n);

// x[i] = 1 / x[i], nothing but the divider.
template <class T> void divide_one(T* x, std::ptrdiff_t n);

// x[i] = sqrt(x[i]), nothing but the divider; x positive.
template <class T> void root_one(T* x, std::ptrdiff_t n);

}  // namespace bench
