// SPDX-License-Identifier: MIT
// The transforms of other libraries behind one shape: ready to run on `data`, in place, unscaled.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

enum class job { pair, real, real_pair };

struct peer {
  std::string name;
  std::function<void()> run;
};

// The first is FFTW with plans by FFTW_MEASURE, which overwrites the data. `data` has room for n + 2 scalars
// more than the job needs.
template <class T> std::vector<peer> peers(job kind, T* data, std::size_t n);

// One direction by FFTW alone, in place on `data`; the plan overwrites them.
template <class T> peer fftw_transform(bool real, bool inverse, T* data, std::size_t n);

}  // namespace bench
