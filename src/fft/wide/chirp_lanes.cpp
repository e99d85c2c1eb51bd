// SPDX-License-Identifier: MIT
// The chirp transforms of one level, and those by the definition.
#include "fft/wide/chirp_rounds.h"
#include "fft/wide/definition.h"
#include "fft/wide/kernels.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using widest_d = widest<double>;
using widest_f = widest<float>;

template <class P, class T> void run_either(const chirp_plan<T>& plan, T* x, T* scratch, bool inverse) {
  inverse ? run_chirp<P, true>(plan, x, scratch) : run_chirp<P, false>(plan, x, scratch);
}
template <class P, class T> void run_both_rounds(const chirp_plan<T>& plan, T* x, T* scratch, bool inverse) {
  inverse ? run_rounds<P, true>(plan, x, scratch) : run_rounds<P, false>(plan, x, scratch);
}

template <class Wide, class Narrow, class T>
void run_lanes(const chirp_plan<T>& plan, T* x, T* scratch, bool inverse) {
  if (plan.rounds == 2) return run_both_rounds<Wide>(plan, x, scratch, inverse);
  if (plan.lanes == Wide::width) return run_either<Wide>(plan, x, scratch, inverse);
  run_either<Narrow>(plan, x, scratch, inverse);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::chirp_kernels<double>) = {
    SIGPAK_LEVEL::widest_d::width, SIGPAK_LEVEL::widest_d::width,
    SIGPAK_LEVEL::run_lanes<SIGPAK_LEVEL::widest_d, SIGPAK_LEVEL::widest_d>,
    SIGPAK_LEVEL::run_direct_either<SIGPAK_LEVEL::widest_d>};
SIGPAK_LEVEL_TABLE(kernels::chirp_kernels<float>) = {
    SIGPAK_LEVEL::widest_f::width, SIGPAK_LEVEL::f8::width,
    SIGPAK_LEVEL::run_lanes<SIGPAK_LEVEL::widest_f, SIGPAK_LEVEL::f8>,
    SIGPAK_LEVEL::run_direct_either<SIGPAK_LEVEL::widest_f>};
SIGPAK_LEVEL_TABLE(kernels::chirp_spectra) = {SIGPAK_LEVEL::chirp_spectrum<SIGPAK_LEVEL::widest_d>};

}  // namespace sigpak
