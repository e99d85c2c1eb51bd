// SPDX-License-Identifier: MIT
// The table of transforms of one level.
#include "fft/wide/by_blocks.h"
#include "fft/wide/columns.h"
#include "fft/wide/half.h"
#include "fft/wide/kernels.h"
#include "fft/wide/long.h"
#include "fft/wide/mixed.h"
#include "fft/wide/passes.h"
#include "fft/wide/real_circle.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::course;

template <class P, bool inverse>
void run(const lane_plan<typename P::scalar>& plan, const typename P::scalar* from, typename P::scalar* to,
         typename P::scalar* s) {
  const course chosen = course_of(plan, to);
  if (chosen == course::in_place) return run_in_place<P, inverse>(plan, from, to);
  if (chosen == course::by_blocks) return run_by_blocks<P, inverse>(plan, from, to, s);
  transform_lanes<P, inverse>(plan, from, s);
  chosen == course::collected ? collecting_last_pass<P, inverse>(plan, s, to)
                              : last_pass<P, inverse>(plan, s, to);
}

template <class P>
void run_either(const lane_plan<typename P::scalar>& plan, const typename P::scalar* from,
                typename P::scalar* to, typename P::scalar* scratch, bool inverse) {
  inverse ? run<P, true>(plan, from, to, scratch) : run<P, false>(plan, from, to, scratch);
}

template <class P>
void change_bins_either(const half_plan<typename P::scalar>& plan, typename P::scalar* x, bool inverse) {
  inverse ? change_bins<P, true>(plan, x) : change_bins<P, false>(plan, x);
}

template <class P>
void run_either_mixed(const mixed_plan<typename P::scalar>& plan, typename P::scalar* x,
                      typename P::scalar* scratch, bool inverse) {
  inverse ? run_mixed<P, true>(plan, x, scratch) : run_mixed<P, false>(plan, x, scratch);
}

template <class P>
constexpr kernels::fft_kernels<typename P::scalar> all_kernels = {
    P::width,      run_either<P>, run_real<P>,           run_real_inverse<P>,
    run_filter<P>, run_circle<P>, change_bins_either<P>, run_either_mixed<P>};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::fft_kernels<double>) = SIGPAK_LEVEL::all_kernels<SIGPAK_LEVEL::widest<double>>;
SIGPAK_LEVEL_TABLE(kernels::fft_kernels<float>) = SIGPAK_LEVEL::all_kernels<SIGPAK_LEVEL::widest<float>>;

}  // namespace sigpak
