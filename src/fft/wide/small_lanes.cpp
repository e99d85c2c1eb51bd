// SPDX-License-Identifier: MIT
// The transforms of one level without a plan.
#include "fft/wide/broadcast.h"
#include "fft/wide/kernels.h"
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
    all_.complex[4] = {run_four<T, false>, run_four<T, true>};
    all_.complex[8] = {run_eight<T, false>, run_eight<T, true>};
    add_powers();
    add<1, 3>(), add<1, 5>(), add<1, 7>(), add<1, 9>(), add<1, 11>(), add<1, 13>(), add<1, 25>(),
        add<1, 27>();
    add<3, 5>(), add<3, 7>(), add<3, 11>(), add<3, 13>(), add<8, 3>();
    if constexpr (!is_single<T>) add<8, 5>();
    if constexpr (widest<T>::width == 4) add<16, 3>(), add<8, 7>();
    add_across<3>(), add_across<5>(), add_across<7>(), add_across<9>(), add_across<11>(), add_across<13>();
    add_across<15>(), add_across<21>(), add_across<25>(), add_across<27>();
    add_real<4>(), add_real<8>(), add_real<16>(), add_real<32>();
  }
  constexpr const kernels::small_kernels<T>& all() const { return all_; }

 private:
  constexpr void add_powers() {
    if constexpr (is_single<T>) {
      add_rows<f8, 4, 4>(), add_rows<f8, 8, 4>();
      add_half<f8, 8, 4>(), add_half<widest_f, 8, 8>();
      add_half<widest_f, 16, 8>(), add_half<widest_f, 16, 16>();
    } else {
      add_points<16>(), add_rows<widest_d, rows_of_32, 32 / rows_of_32>();
      add_half<widest_d, rows_of_32, 32 / rows_of_32>(), add_half<widest_d, 8, 8>();
      add_half<widest_d, 8, 16>(), add_half<widest_d, 16, 16>();
    }
    add_rows<widest<T>, 8, 8>(), add_rows<widest<T>, 16, 8>(), add_rows<widest<T>, 16, 16>();
  }
  template <int A, int B> constexpr void add() {
    all_.complex[A * B] = {run_short<T, A, B, false>, run_short<T, A, B, true>};
  }
  // Twice and four times an odd length.
  template <int M> constexpr void add_across() {
    using pair = pack<T, 4>;
    using four = pack<T, M == 3 || widest<T>::width == 4 ? 4 : 8>;
    all_.complex[2 * M] = {run_across<pair, 2, M, false>, run_across<pair, 2, M, true>};
    all_.complex[4 * M] = {run_across<four, 4, M, false>, run_across<four, 4, M, true>};
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
