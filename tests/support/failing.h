// Allocations made to fail: the records' through the hooks, the raw tables' at their source.
#pragma once

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

// Lets `allowed` sizings of records through and refuses the rest until the end of its scope.
template <record V> class failing_records {
 public:
  explicit failing_records(int allowed) {
    remaining() = allowed;
    TWIN(_lib_alloc)(allocate, nullptr);
    TWIN(_lib_realloc)(reallocate, nullptr);
  }
  ~failing_records() {
    TWIN(_lib_alloc)(nullptr, nullptr);
    TWIN(_lib_realloc)(nullptr, nullptr);
  }
  failing_records(const failing_records&) = delete;
  failing_records& operator=(const failing_records&) = delete;

 private:
  static int& remaining() {
    static int count = 0;
    return count;
  }
  static std::int32_t allocate(V* v) {
    if (v->alloc > 0) std::free(v->data);
    v->data = nullptr;
    return reallocate(v, 0, 0);
  }
  static std::int32_t reallocate(V* v, std::uint32_t, std::int32_t) {
    const auto bytes =
        static_cast<std::size_t>(v->points) * static_cast<std::size_t>(width(v)) * sizeof(scalar<V>);
    if (remaining()-- > 0) {
      v->data = static_cast<scalar<V>*>(std::realloc(v->data, bytes));
    } else {
      std::free(v->data);
      v->data = nullptr;
    }
    return 0;
  }
};

}  // namespace sigpak::test
