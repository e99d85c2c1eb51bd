// SPDX-License-Identifier: MIT
// The transforms of one level without a plan.
#include "fft/wide/kernels.h"
#include "fft/wide/short.h"
#include "fft/wide/small.h"
#include "fft/wide/small_half.h"
#include "fft/wide/small_real.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using widest_d = widest<double>;
using widest_f = widest<float>;

// 32 points are eight rows of four where a vector holds four of them, the other way round where it holds two.
constexpr int rows_of_32 = widest_d::width;

template <class T> class small_table {
 public:
  constexpr small_table() {
    all_.complex[2] = {run_pair<T, false>, run_pair<T, true>};
    add_powers();
    add<1, 3>(), add<1, 5>(), add<1, 7>(), add<1, 9>(), add<1, 11>(), add<1, 13>();
    add<2, 3>(), add<2, 5>(), add<2, 7>(), add<2, 9>();
    add<3, 5>(), add<3, 7>(), add<4, 3>(), add<4, 5>();
    add<2, 11>(), add<2, 13>(), add<1, 25>(), add<1, 27>(), add<3, 11>(), add<3, 13>();
    add<8, 3>(), add<4, 7>(), add<6, 5>();
    if constexpr (!is_single<T>) add<4, 9>(), add<8, 5>();
    if constexpr (widest<T>::width == 4) add<16, 3>(), add<8, 7>(), add<12, 5>();
    add_real<4>(), add_real<8>(), add_real<16>(), add_real<32>();
  }
  constexpr const kernels::small_kernels<T>& all() const { return all_; }

 private:
  constexpr void add_powers() {
    if constexpr (is_single<T>) {
      add_points<4>(), add_rows<f4, 2, 4>(), add_rows<f8, 4, 4>(), add_rows<f8, 8, 4>();
      add_half<f8, 8, 4>(), add_half<widest_f, 8, 8>();
      add_half<widest_f, 16, 8>(), add_half<widest_f, 16, 16>();
    } else {
      add_points<4>(), add_points<8>(), add_points<16>(), add_rows<widest_d, rows_of_32, 32 / rows_of_32>();
      add_half<widest_d, rows_of_32, 32 / rows_of_32>(), add_half<widest_d, 8, 8>();
      add_half<widest_d, 8, 16>(), add_half<widest_d, 16, 16>();
    }
    add_rows<widest<T>, 8, 8>(), add_rows<widest<T>, 16, 8>(), add_rows<widest<T>, 16, 16>();
  }
  template <int A, int B> constexpr void add() {
    all_.complex[A * B] = {run_short<T, A, B, false>, run_short<T, A, B, true>};
  }
  template <int N> constexpr void add_points() {
    all_.complex[N] = {run_points<T, N, false>, run_points<T, N, true>};
  }
  template <class P, int A, int B> constexpr void add_rows() {
    all_.complex[A * B] = {run_small<P, A, B, false>, run_small<P, A, B, true>};
  }
  template <int N> constexpr void add_real() {
    all_.real[__builtin_ctz(N)] = {run_small_real<T, N>, run_small_real_inverse<T, N>};
  }
  template <class P, int A, int B> constexpr void add_half() {
    all_.real[__builtin_ctz(2 * A * B)] = {run_small_half<P, A, B>, run_small_half_inverse<P, A, B>};
  }
  kernels::small_kernels<T> all_ = {};
};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::small_kernels<double>) = SIGPAK_LEVEL::small_table<double>().all();
SIGPAK_LEVEL_TABLE(kernels::small_kernels<float>) = SIGPAK_LEVEL::small_table<float>().all();

}  // namespace sigpak
