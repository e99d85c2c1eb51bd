// SPDX-License-Identifier: MIT
// The table of transforms of one level.
#include "fft/wide/by_blocks.h"
#include "fft/wide/columns.h"
#include "fft/wide/half.h"
#include "fft/wide/kernels.h"
#include "fft/wide/long.h"
#include "fft/wide/mixed.h"
#include "fft/wide/passes.h"
#include "fft/wide/real.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::course;

template <class P, bool inverse>
void run(const lane_plan<typename P::scalar>& plan, typename P::scalar* x, typename P::scalar* s) {
  const course chosen = course_of(plan, x);
  if (chosen == course::in_place) return run_in_place<P, inverse>(plan, x);
  if (chosen == course::by_blocks) return run_by_blocks<P, inverse>(plan, x, s);
  transform_lanes<P, inverse>(plan, x, s);
  chosen == course::collected ? collecting_last_pass<P, inverse>(plan, s, x)
                              : last_pass<P, inverse>(plan, s, x);
}

template <class P>
void run_either(const lane_plan<typename P::scalar>& plan, typename P::scalar* x, typename P::scalar* scratch,
                bool inverse) {
  inverse ? run<P, true>(plan, x, scratch) : run<P, false>(plan, x, scratch);
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

using widest_d = widest<double>;
using widest_f = widest<float>;

// Plans come with the widest lanes that their length allows.
template <class Wide, class Narrow, class T>
void run_lanes(const lane_plan<T>& plan, T* x, T* scratch, bool inverse) {
  if (plan.lanes == Wide::width) return run_either<Wide>(plan, x, scratch, inverse);
  run_either<Narrow>(plan, x, scratch, inverse);
}
template <class Wide, class Narrow, class T>
void run_real_lanes(const real_plan<T>& plan, const T* from, T* to, T* scratch) {
  if (plan.lanes == Wide::width) return run_real<Wide>(plan, from, to, scratch);
  run_real<Narrow>(plan, from, to, scratch);
}
template <class Wide, class Narrow, class T>
void run_real_lanes_inverse(const real_plan<T>& plan, T* from, T* to, T* scratch) {
  if (plan.lanes == Wide::width) return run_real_inverse<Wide>(plan, from, to, scratch);
  run_real_inverse<Narrow>(plan, from, to, scratch);
}

constexpr kernels::fft_kernels<double> double_fft = {widest_d::width,
                                                     run_lanes<widest_d, widest_d>,
                                                     run_real_lanes<widest_d, widest_d>,
                                                     run_real_lanes_inverse<widest_d, widest_d>,
                                                     change_bins_either<widest_d>,
                                                     run_either_mixed<widest_d>};
constexpr kernels::fft_kernels<float> float_fft = {widest_f::width,
                                                   run_lanes<widest_f, f8>,
                                                   run_real_lanes<widest_f, f8>,
                                                   run_real_lanes_inverse<widest_f, f8>,
                                                   change_bins_either<widest_f>,
                                                   run_either_mixed<widest_f>};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::fft_kernels<double>) = SIGPAK_LEVEL::double_fft;
SIGPAK_LEVEL_TABLE(kernels::fft_kernels<float>) = SIGPAK_LEVEL::float_fft;

}  // namespace sigpak
