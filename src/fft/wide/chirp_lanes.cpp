// The chirp transforms of one level.
#include "fft/wide/chirp.h"
#include "fft/wide/definition.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

#if SIGPAK_VECTOR_BYTES == 64
using widest_d = d8;
using widest_f = f16;
#else
using widest_d = d4;
using widest_f = f8;
#endif

template <class P, class T> void run_either(const chirp_plan<T>& plan, T* x, T* scratch, bool inverse) {
  inverse ? run_chirp<P, true>(plan, x, scratch) : run_chirp<P, false>(plan, x, scratch);
}

template <class Wide, class Narrow, class T>
void run_lanes(const chirp_plan<T>& plan, T* x, T* scratch, bool inverse) {
  if (plan.over.lanes == Wide::width) return run_either<Wide>(plan, x, scratch, inverse);
  run_either<Narrow>(plan, x, scratch, inverse);
}

template <class Wide, class Narrow, class T>
void spectrum_lanes(const chirp_plan<T>& plan, T* scratch, T* out) {
  if (plan.over.lanes == Wide::width) return chirp_spectrum<Wide>(plan, scratch, out);
  chirp_spectrum<Narrow>(plan, scratch, out);
}

}  // namespace

const kernels::chirp_kernels<double> double_chirp = {
    widest_d::width, widest_d::width, run_lanes<widest_d, widest_d>, spectrum_lanes<widest_d, widest_d>,
    run_direct<widest_d>};
const kernels::chirp_kernels<float> float_chirp = {widest_f::width, f8::width, run_lanes<widest_f, f8>,
                                                   spectrum_lanes<widest_f, f8>, run_direct<widest_f>};

}  // namespace sigpak::SIGPAK_LEVEL
