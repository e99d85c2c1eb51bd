// SPDX-License-Identifier: MIT
// The transforms of products of short lengths of one level.
#include "fft/wide/kernels.h"
#include "fft/wide/products.h"
#include "fft/wide/squares.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using widest_d = widest<double>;
using widest_f = widest<float>;

template <class Wide, class Narrow, class T>
void run_lanes(const product_plan<T>& plan, T* x, T* scratch, bool inverse) {
  if (plan.lanes == Wide::width) return run_product<Wide>(plan, x, scratch, inverse);
  run_product<Narrow>(plan, x, scratch, inverse);
}
template <class Wide, class Narrow, class T>
void run_square_lanes(const square_plan<T>& plan, T* x, T* scratch, bool inverse) {
  if (plan.block.lanes == Wide::width) return run_square<Wide>(plan, x, scratch, inverse);
  run_square<Narrow>(plan, x, scratch, inverse);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::product_kernels<double>) = {
    SIGPAK_LEVEL::widest_d::width, SIGPAK_LEVEL::widest_d::width,
    SIGPAK_LEVEL::run_lanes<SIGPAK_LEVEL::widest_d, SIGPAK_LEVEL::widest_d>,
    SIGPAK_LEVEL::run_square_lanes<SIGPAK_LEVEL::widest_d, SIGPAK_LEVEL::widest_d>};
SIGPAK_LEVEL_TABLE(kernels::product_kernels<float>) = {
    SIGPAK_LEVEL::widest_f::width, SIGPAK_LEVEL::f8::width,
    SIGPAK_LEVEL::run_lanes<SIGPAK_LEVEL::widest_f, SIGPAK_LEVEL::f8>,
    SIGPAK_LEVEL::run_square_lanes<SIGPAK_LEVEL::widest_f, SIGPAK_LEVEL::f8>};

}  // namespace sigpak
