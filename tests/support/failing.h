// SPDX-License-Identifier: MIT
// Allocations made to fail: the raw tables' at their source, the records' through the hooks.
#pragma once

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdlib>

#include "core/memory.h"
#include "support/twins.h"

namespace sigpak::test {

// Which allocations are refused: from one on to another, counted from 0, every so manieth, and large ones.
struct refusal {
  long first = LONG_MAX, last = LONG_MAX;
  long each = LONG_MAX;
  std::size_t most_bytes = SIZE_MAX;
};

// Counts the allocations of either kind or of both until the end of its scope, in any number of threads, and
// refuses some.
class failing_memory {
 public:
  enum kinds : unsigned { tables = 1, records = 2, everything = 3 };

  explicit failing_memory(const refusal& which = {}, kinds of = everything)
      : of_(of), previous_(resize_table_bytes) {
    refuse(which);
    if ((of & tables) != 0) resize_table_bytes = resized;
    hook(true);
  }
  ~failing_memory() {
    resize_table_bytes = previous_;
    hook(false);
  }
  failing_memory(const failing_memory&) = delete;
  failing_memory& operator=(const failing_memory&) = delete;

  // Counts anew.
  static void refuse(const refusal& which) {
    rule = which;
    count = refusals = 0;
    total = largest_bytes = 0;
  }
  static long calls() { return count; }
  static long refused() { return refusals; }
  static std::size_t bytes() { return total; }
  template <record V> static index largest() {  // in scalars
    return static_cast<index>(largest_bytes / sizeof(scalar<V>));
  }

 private:
  static inline refusal rule;
  static inline std::atomic<long> count, refusals;
  static inline std::atomic<std::size_t> total, largest_bytes;

  static void* resized(void* block, std::size_t bytes) {
    const long call = count++;
    total += bytes;
    if (bytes > largest_bytes) largest_bytes = bytes;
    const bool granted =
        bytes <= rule.most_bytes && (call < rule.first || call > rule.last) && (call + 1) % rule.each != 0;
    if (!granted) ++refusals;
    return granted ? std::realloc(block, bytes != 0 ? bytes : 1) : nullptr;
  }
  template <record V> static std::int32_t allocate(V* v) {
    if (v->alloc > 0) std::free(v->data);
    v->data = nullptr;
    return reallocate(v, 0, 0);
  }
  template <record V> static std::int32_t reallocate(V* v, std::uint32_t, std::int32_t) {
    const std::size_t need = std::size_t{v->points} * static_cast<std::size_t>(width(v));
    void* const grown = resized(v->data, need * sizeof(scalar<V>));
    if (grown == nullptr) std::free(v->data);
    v->data = static_cast<scalar<V>*>(grown);
    return 0;
  }
  template <record V> static void hook_records(bool in) {
    TWIN(_lib_alloc)(in ? allocate<V> : nullptr, nullptr);
    TWIN(_lib_realloc)(in ? reallocate<V> : nullptr, nullptr);
  }
  void hook(bool in) const {
    if ((of_ & records) == 0) return;
    hook_records<dsp_vec>(in);
    hook_records<dspf_vec>(in);
  }
  kinds of_;
  table_source previous_;
};

// A machine of little memory, where no call takes long.
struct small_machine : failing_memory {
  small_machine() : failing_memory({.most_bytes = std::size_t{1} << 20}) {}
};

// Let `allowed` raw tables, or sizings of records, through and refuse the rest.
struct failing_tables : failing_memory {
  explicit failing_tables(long allowed) : failing_memory({.first = allowed}, tables) {}
};
struct failing_records : failing_memory {
  explicit failing_records(long allowed) : failing_memory({.first = allowed}, records) {}
};

// Runs with ever more allocations let through until one run does not fail, and tells how many did.
template <class Failing, class Run> int failures_before_success(Run run) {
  for (int allowed = 0;; ++allowed) {
    const Failing rest(allowed);
    if (run() != failed || allowed > 1000) return allowed;
  }
}

}  // namespace sigpak::test
