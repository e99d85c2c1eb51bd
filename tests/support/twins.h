// SPDX-License-Identifier: MIT
// One typed suite for both records: the list of types, and the twin of a function that fits one of them.
#pragma once

#include <gtest/gtest.h>

#include <type_traits>

#include "core/guard.h"
#include "core/record.h"

// Of the sanitizers, where they are linked.
extern "C" [[gnu::weak]] void __sanitizer_set_death_callback(void (*callback)());

namespace sigpak::test {

// Whether sanitizers watch the library. They see with few values what they see with many, and tests that go
// through many, or compute to many digits what these should be, may spare them that: the suite around the
// library as it ships does not.
inline bool watched() { return __sanitizer_set_death_callback != nullptr; }

using records = testing::Types<dsp_vec, dspf_vec>;

struct record_names {
  template <class V> static std::string GetName(int) {
    return std::is_same_v<V, dsp_vec> ? "Double" : "Float";
  }
};

template <record V> inline constexpr bool is_double = std::is_same_v<V, dsp_vec>;

template <record V, class D, class F> constexpr auto twin(D of_double, F of_float) {
  if constexpr (is_double<V>) {
    return of_double;
  } else {
    return of_float;
  }
}

// Unit roundoff of the record's scalars.
template <record V> inline constexpr double unit_roundoff = is_double<V> ? 0x1p-53 : 0x1p-24;

// H as this precision stores it.
template <record V> inline constexpr scalar<V> huge = guard<scalar<V>>::huge;

}  // namespace sigpak::test

// The exported twin for the record type V in scope: TWIN(b_mul)(&a, &b, &out).
#define TWIN(operation) (sigpak::test::twin<V>(dsp##operation, dspf##operation))
