// Building the plan of a wide transform.
#pragma once

#include "core/record.h"
#include "fft/plans/pass_plan.h"

namespace sigpak::kernels {

// From where on complex data have their output collected, in points where the lanes are more than the ways of
// the first cache, else in bytes, and in bytes from where on it is streamed past the caches, of which the
// third then does not hold data, scratch memory and tables. Variables so that a test can reach both with
// short data, before the first plan of its length; 2^11 points is the least.
struct fft_sizes {
  index crowded, collected, streamed;
};
extern constinit fft_sizes long_sizes;

// What a plan is for.
enum class data : int { complex, real };

// The plan of N = points, both powers of two, N at least lanes^2 and twice that for real data; kept until the
// release. Null on failure.
template <class T> const fft_plan<T>* find_plan(index points, int lanes, data kind) noexcept;
template <class T> void release_plans() noexcept;

// The same for lengths whose prime factors are 13 at most, with `widest` lanes or half of them: whether there
// is a plan, the one that is there already, a new one. Null where there is none yet, and on failure. All but
// the largest take 64 MiB at most: those of the lengths used last stay, and each until the next is made.
template <class T> bool has_mixed_plan(index points, int widest) noexcept;
template <class T> const mixed_plan<T>* find_mixed_plan(index points, int widest) noexcept;
template <class T> const mixed_plan<T>* make_mixed_plan(index points, int widest) noexcept;
template <class T> void release_mixed_plans() noexcept;

}  // namespace sigpak::kernels
