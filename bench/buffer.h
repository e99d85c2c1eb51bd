// SPDX-License-Identifier: MIT
// Storage for the benchmarks, 16 bytes off a cache line, as malloc gives large blocks.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <random>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace bench {

template <class T> class buffer {
 public:
  // Uniform in [low, high), with room behind.
  buffer(std::ptrdiff_t scalars, unsigned seed, double low = -1, double high = 1) {
    const std::size_t bytes = (static_cast<std::size_t>(scalars) * sizeof(T) / huge_page + 2) * huge_page;
    block_ = static_cast<T*>(std::aligned_alloc(huge_page, bytes));
    if (block_ == nullptr) std::abort();
#ifdef __linux__
    madvise(block_, bytes, MADV_HUGEPAGE);  // the places of small pages in the caches differ from run to run
#endif
    std::mt19937_64 engine(seed);
    std::uniform_real_distribution<double> uniform(low, high);
    for (std::ptrdiff_t i = 0; i < scalars + 64; ++i) block_[i] = static_cast<T>(uniform(engine));
  }
  ~buffer() { std::free(block_); }
  buffer(const buffer&) = delete;
  buffer& operator=(const buffer&) = delete;

  T* aligned() const { return block_; }
  T* data() const { return block_ + 16 / sizeof(T); }

 private:
  static constexpr std::size_t huge_page = std::size_t{1} << 21;
  T* block_;
};

}  // namespace bench
