// Building the plan of a wide transform.
#pragma once

#include "core/record.h"
#include "kernels/fft_plan.h"

namespace sigpak::kernels {

// The plan of N = points, N >= lanes^2, both powers of two; kept until the release. Null on failure.
template <class T> const fft_plan<T>* find_plan(index points, int lanes) noexcept;
template <class T> void release_plans() noexcept;

}  // namespace sigpak::kernels
