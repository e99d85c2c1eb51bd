// SPDX-License-Identifier: MIT
// Allocations made to fail: the records' through the hooks, the raw tables' at their source.
#pragma once

#include <algorithm>
#include <cstdlib>

#include "core/memory.h"
#include "support/twins.h"

namespace sigpak::test {

// Lets `allowed` raw tables through and refuses the rest until the end of its scope.
class failing_tables {
 public:
  explicit failing_tables(int allowed) : previous_(resize_table_bytes) {
    remaining() = allowed;
    resize_table_bytes = [](void* block, std::size_t bytes) -> void* {
      return remaining()-- > 0 ? std::realloc(block, bytes != 0 ? bytes : 1) : nullptr;
    };
  }
  ~failing_tables() { resize_table_bytes = previous_; }
  failing_tables(const failing_tables&) = delete;
  failing_tables& operator=(const failing_tables&) = delete;

 private:
  static int& remaining() {
    static int count = 0;
    return count;
  }
  table_source previous_;
};

// Adds up the bytes of the raw tables until the end of its scope.
class counting_tables {
 public:
  counting_tables() : previous_(resize_table_bytes) {
    total() = 0;
    resize_table_bytes = [](void* block, std::size_t bytes) -> void* {
      total() += bytes;
      return std::realloc(block, bytes != 0 ? bytes : 1);
    };
  }
  ~counting_tables() { resize_table_bytes = previous_; }
  counting_tables(const counting_tables&) = delete;
  counting_tables& operator=(const counting_tables&) = delete;
  std::size_t bytes() const { return total(); }

 private:
  static std::size_t& total() {
    static std::size_t count = 0;
    return count;
  }
  table_source previous_;
};

// Lets `allowed` sizings of records through and refuses the rest until the end of its scope; knows the
// largest.
template <record V> class failing_records {
 public:
  explicit failing_records(int allowed) {
    remaining() = allowed;
    most() = 0;
    TWIN(_lib_alloc)(allocate, nullptr);
    TWIN(_lib_realloc)(reallocate, nullptr);
  }
  ~failing_records() {
    TWIN(_lib_alloc)(nullptr, nullptr);
    TWIN(_lib_realloc)(nullptr, nullptr);
  }
  failing_records(const failing_records&) = delete;
  failing_records& operator=(const failing_records&) = delete;
  index largest() const { return most(); }  // in scalars

 private:
  static int& remaining() {
    static int count = 0;
    return count;
  }
  static index& most() {
    static index scalars = 0;
    return scalars;
  }
  static std::int32_t allocate(V* v) {
    if (v->alloc > 0) std::free(v->data);
    v->data = nullptr;
    return reallocate(v, 0, 0);
  }
  static std::int32_t reallocate(V* v, std::uint32_t, std::int32_t) {
    const index need = index{v->points} * width(v);
    most() = std::max(most(), need);
    const bool granted = remaining()-- > 0;
    if (!granted) std::free(v->data);
    v->data = !granted ? nullptr
                       : static_cast<scalar<V>*>(
                             std::realloc(v->data, static_cast<std::size_t>(need) * sizeof(scalar<V>)));
    return 0;
  }
};

// Runs with ever more allocations let through until one run does not fail, and tells how many did.
template <class Failing, class Run> int failures_before_success(Run run) {
  for (int allowed = 0;; ++allowed) {
    const Failing rest(allowed);
    if (run() != failed || allowed > 1000) return allowed;
  }
}

}  // namespace sigpak::test
