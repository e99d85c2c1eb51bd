// The table of transforms of one level.
#include "kernels/fft_kernels.h"
#include "kernels/fft_passes.h"
#include "kernels/fft_small.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

template <class P>
void run_plan(const fft_plan<typename P::scalar>& plan, typename P::scalar* x, typename P::scalar* scratch,
              bool inverse) {
  inverse ? run<P, true>(plan, x, scratch) : run<P, false>(plan, x, scratch);
}

#if SIGPAK_VECTOR_BYTES == 64
void run_double(const fft_plan<double>& plan, double* x, double* scratch, bool inverse) {
  run_plan<d8>(plan, x, scratch, inverse);
}
void run_float(const fft_plan<float>& plan, float* x, float* scratch, bool inverse) {
  plan.lanes == 8 ? run_plan<f8>(plan, x, scratch, inverse) : run_plan<f16>(plan, x, scratch, inverse);
}
using d64 = d8;
#else
void run_double(const fft_plan<double>& plan, double* x, double* scratch, bool inverse) {
  run_plan<d4>(plan, x, scratch, inverse);
}
void run_float(const fft_plan<float>& plan, float* x, float* scratch, bool inverse) {
  run_plan<f8>(plan, x, scratch, inverse);
}
using d64 = d4;
#endif

}  // namespace

const kernels::fft_kernels<double> double_fft = {
    SIGPAK_VECTOR_BYTES / 8,
    {{},
     {},
     {},
     {},
     {run_small<d4, 4, false>, run_small<d4, 4, true>},
     {run_small<d4, 8, false>, run_small<d4, 8, true>},
     {run_small<d64, 64 / d64::width, false>, run_small<d64, 64 / d64::width, true>}},
    run_double};

const kernels::fft_kernels<float> float_fft = {SIGPAK_VECTOR_BYTES / 4,
                                               {{},
                                                {},
                                                {},
                                                {},
                                                {run_small<f4, 4, false>, run_small<f4, 4, true>},
                                                {run_small<f4, 8, false>, run_small<f4, 8, true>},
                                                {run_small<f8, 8, false>, run_small<f8, 8, true>}},
                                               run_float};

}  // namespace sigpak::SIGPAK_LEVEL
