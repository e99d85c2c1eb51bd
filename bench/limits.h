// SPDX-License-Identifier: MIT
// What the machine can do at most: the loops that nothing else can beat at the same traffic.
#pragma once

#include <cstddef>

namespace bench {

// x[i] = c * x[i] with the widest vectors of the current level; x aligned to 64 bytes, n a multiple of 64.
template <class T> void copy_scale(T* x, std::ptrdiff_t n, T c);

// The loads and stores of in-place operations on two operands, of results twice and half as long as their
// source (n scalars of it, of the result), and of two operands joined in a third place; as above.
template <class T> void add_to(T* x, const T* y, std::ptrdiff_t n);
template <class T> void widen(T* x, std::ptrdiff_t n);
template <class T> void narrow(T* x, std::ptrdiff_t n);
template <class T> void join(const T* x, const T* y, T* z, std::ptrdiff_t n);

// Reads every value once, in many independent chains, and calls for those that come later.
template <class T> T read_all(const T* x, std::ptrdiff_t n);

// Writes every value once.
template <class T> void write_all(T* x, std::ptrdiff_t n, T c);

// So many additions of which each waits for the one before, as within a block of a sum.
template <class T> T add_in_turn(long times);

// x[i] = 1 / x[i], nothing but the divider.
template <class T> void divide_one(T* x, std::ptrdiff_t n);

// y[i] = sqrt(x[i]), nothing but the divider, which is faster on the ones that roots of roots become; x
// positive.
template <class T> void root_one(const T* x, T* y, std::ptrdiff_t n);

// Adds so often to each of a number of registers, nothing but the adders; the scalars that were added.
template <class T> T add_in_registers(long times);
template <class T> double registers_added(long times);

}  // namespace bench
