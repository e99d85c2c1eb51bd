// SPDX-License-Identifier: MIT
// What other libraries offer for the jobs of bench_peers, each found by the name of its row.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

using index = std::ptrdiff_t;

// Complex points are interleaved; a number as result goes to the front of `out`.
template <class T> struct arrays {
  const T* a;
  const T* b;
  T* out;
  index points;
};

struct vector_peer {
  std::string name;
  std::function<void()> run;
};

// Append the ways of one library to do the job; where there are several, the fastest counts.
template <class T> void add_eigen(std::vector<vector_peer>& to, std::string_view job, const arrays<T>& on);
template <class T> void add_gsl(std::vector<vector_peer>& to, std::string_view job, const arrays<T>& on);
void add_volk(std::vector<vector_peer>& to, std::string_view job, const arrays<float>& on);
void add_liquid(std::vector<vector_peer>& to, std::string_view job, const arrays<float>& on);

}  // namespace bench
