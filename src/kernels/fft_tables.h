// Building the plan of a wide transform.
#pragma once

#include "core/record.h"
#include "kernels/fft_plan.h"

namespace sigpak::kernels {

// What a plan is for.
enum class data : int { complex, real };

// The plan of N = points, both powers of two, N at least lanes^2 and twice that for real data; kept until the
// release. Null on failure.
template <class T> const fft_plan<T>* find_plan(index points, int lanes, data kind) noexcept;
template <class T> void release_plans() noexcept;

}  // namespace sigpak::kernels
