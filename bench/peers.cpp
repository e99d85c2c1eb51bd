// SPDX-License-Identifier: MIT
// FFTW, and where they are installed KissFFT and GSL, each at its best setting.
#include "peers.h"

#include <fftw3.h>

#include <complex>
#include <memory>

#if BENCH_KISSFFT
#include <kissfft/kiss_fft.h>
#include <kissfft/kiss_fftr.h>
#include <kissfft/kissfft.hh>
#endif
#if BENCH_GSL
#include <gsl/gsl_fft_complex.h>
#include <gsl/gsl_fft_complex_float.h>
#include <gsl/gsl_fft_halfcomplex.h>
#include <gsl/gsl_fft_halfcomplex_float.h>
#include <gsl/gsl_fft_real.h>
#include <gsl/gsl_fft_real_float.h>
#endif

namespace bench {
namespace {

struct fftw_double {
  using plan = fftw_plan;
  using pairs = fftw_complex;
  static constexpr auto complex = fftw_plan_dft_1d;
  static constexpr auto forward = fftw_plan_dft_r2c_1d;
  static constexpr auto backward = fftw_plan_dft_c2r_1d;
  static constexpr auto execute = fftw_execute;
  static constexpr auto destroy = fftw_destroy_plan;
};
struct fftw_single {
  using plan = fftwf_plan;
  using pairs = fftwf_complex;
  static constexpr auto complex = fftwf_plan_dft_1d;
  static constexpr auto forward = fftwf_plan_dft_r2c_1d;
  static constexpr auto backward = fftwf_plan_dft_c2r_1d;
  static constexpr auto execute = fftwf_execute;
  static constexpr auto destroy = fftwf_destroy_plan;
};
template <class T> using fftw = std::conditional_t<sizeof(T) == sizeof(double), fftw_double, fftw_single>;

template <class T> std::function<void()> fftw_plan_of(bool real, bool inverse, T* x, std::size_t n) {
  using F = fftw<T>;
  auto* const z = reinterpret_cast<typename F::pairs*>(x);
  const int size = static_cast<int>(n);
  const auto made = !real     ? F::complex(size, z, z, inverse ? FFTW_BACKWARD : FFTW_FORWARD, FFTW_MEASURE)
                    : inverse ? F::backward(size, z, x, FFTW_MEASURE)
                              : F::forward(size, x, z, FFTW_MEASURE);
  const std::shared_ptr<std::remove_pointer_t<typename F::plan>> plan(made, F::destroy);
  return [plan] { F::execute(plan.get()); };
}

template <class T> peer fftw_peer(job kind, T* x, std::size_t n) {
  const bool real = kind != job::pair;
  const auto there = fftw_plan_of(real, false, x, n);
  if (kind == job::real) return {"FFTW", there};
  const auto back = fftw_plan_of(real, true, x, n);
  return {"FFTW", [=] {
            there();
            back();
          }};
}

#if BENCH_KISSFFT

peer kiss_peer(job kind, float* x, std::size_t n) {
  const int size = static_cast<int>(n);
  auto out = std::make_shared<std::vector<kiss_fft_cpx>>(n + 1);
  auto* const pairs = reinterpret_cast<kiss_fft_cpx*>(x);
  if (kind == job::pair) {
    const std::shared_ptr<kiss_fft_state> there(kiss_fft_alloc(size, 0, nullptr, nullptr), kiss_fft_free);
    const std::shared_ptr<kiss_fft_state> back(kiss_fft_alloc(size, 1, nullptr, nullptr), kiss_fft_free);
    return {"KissFFT", [=] {
              kiss_fft(there.get(), pairs, out->data());
              kiss_fft(back.get(), out->data(), pairs);
            }};
  }
  if (n % 2 != 0) return {"KissFFT", {}};
  const std::shared_ptr<kiss_fftr_state> there(kiss_fftr_alloc(size, 0, nullptr, nullptr), kiss_fft_free);
  const std::shared_ptr<kiss_fftr_state> back(kiss_fftr_alloc(size, 1, nullptr, nullptr), kiss_fft_free);
  if (kind == job::real) return {"KissFFT", [=] { kiss_fftr(there.get(), x, out->data()); }};
  return {"KissFFT", [=] {
            kiss_fftr(there.get(), x, out->data());
            kiss_fftri(back.get(), out->data(), x);
          }};
}

peer kiss_peer(job kind, double* x, std::size_t n) {
  if (kind == job::real_pair || (n % 2 != 0 && kind == job::real)) return {"KissFFT", {}};
  if (kind == job::real) {
    auto plan = std::make_shared<kissfft<double>>(n / 2, false);
    auto out = std::make_shared<std::vector<std::complex<double>>>(n / 2 + 1);
    return {"KissFFT", [=] { plan->transform_real(x, out->data()); }};
  }
  auto there = std::make_shared<kissfft<double>>(n, false);
  auto back = std::make_shared<kissfft<double>>(n, true);
  auto out = std::make_shared<std::vector<std::complex<double>>>(n);
  auto* const pairs = reinterpret_cast<std::complex<double>*>(x);
  return {"KissFFT", [=] {
            there->transform(pairs, out->data());
            back->transform(out->data(), pairs);
          }};
}

#endif

#if BENCH_GSL

// GSL keeps real spectra in an order of its own; the move to pairs is part of the job.
template <class T> void to_pairs(T* x, std::size_t n) {
  for (std::size_t i = n; i-- > 1;) x[i + 1] = x[i];
  x[1] = 0;
  if (n % 2 == 0) x[n + 1] = 0;
}
template <class T> void from_pairs(T* x, std::size_t n) {
  for (std::size_t i = 1; i < n; ++i) x[i] = x[i + 1];
}

template <class E> std::shared_ptr<E> kept(E* made, void (*release)(E*)) { return {made, release}; }

peer gsl_peer(job kind, double* x, std::size_t n) {
  if (kind == job::pair) {
    auto table = kept(gsl_fft_complex_wavetable_alloc(n), gsl_fft_complex_wavetable_free);
    auto space = kept(gsl_fft_complex_workspace_alloc(n), gsl_fft_complex_workspace_free);
    return {"GSL", [=] {
              gsl_fft_complex_forward(x, 1, n, table.get(), space.get());
              gsl_fft_complex_backward(x, 1, n, table.get(), space.get());
            }};
  }
  auto table = kept(gsl_fft_real_wavetable_alloc(n), gsl_fft_real_wavetable_free);
  auto half = kept(gsl_fft_halfcomplex_wavetable_alloc(n), gsl_fft_halfcomplex_wavetable_free);
  auto space = kept(gsl_fft_real_workspace_alloc(n), gsl_fft_real_workspace_free);
  return {"GSL", [=] {
            gsl_fft_real_transform(x, 1, n, table.get(), space.get());
            to_pairs(x, n);
            if (kind == job::real) return;
            from_pairs(x, n);
            gsl_fft_halfcomplex_transform(x, 1, n, half.get(), space.get());
          }};
}

peer gsl_peer(job kind, float* x, std::size_t n) {
  if (kind == job::pair) {
    auto table = kept(gsl_fft_complex_wavetable_float_alloc(n), gsl_fft_complex_wavetable_float_free);
    auto space = kept(gsl_fft_complex_workspace_float_alloc(n), gsl_fft_complex_workspace_float_free);
    return {"GSL", [=] {
              gsl_fft_complex_float_forward(x, 1, n, table.get(), space.get());
              gsl_fft_complex_float_backward(x, 1, n, table.get(), space.get());
            }};
  }
  auto table = kept(gsl_fft_real_wavetable_float_alloc(n), gsl_fft_real_wavetable_float_free);
  auto half = kept(gsl_fft_halfcomplex_wavetable_float_alloc(n), gsl_fft_halfcomplex_wavetable_float_free);
  auto space = kept(gsl_fft_real_workspace_float_alloc(n), gsl_fft_real_workspace_float_free);
  return {"GSL", [=] {
            gsl_fft_real_float_transform(x, 1, n, table.get(), space.get());
            to_pairs(x, n);
            if (kind == job::real) return;
            from_pairs(x, n);
            gsl_fft_halfcomplex_float_transform(x, 1, n, half.get(), space.get());
          }};
}

#endif

// Without a factor method for large primes a transform costs N^2: not worth the wait.
bool is_smooth(std::size_t n) {
  for (std::size_t p = 2; p <= 13; ++p) {
    while (n % p == 0) n /= p;
  }
  return n == 1;
}

}  // namespace

template <class T> std::vector<peer> peers(job kind, T* data, std::size_t n) {
  std::vector<peer> out;
  out.push_back(fftw_peer(kind, data, n));
#if BENCH_KISSFFT
  out.push_back(is_smooth(n) ? kiss_peer(kind, data, n) : peer{"KissFFT", {}});
#endif
#if BENCH_GSL
  out.push_back(is_smooth(n) ? gsl_peer(kind, data, n) : peer{"GSL", {}});
#endif
  return out;
}

template std::vector<peer> peers(job, double*, std::size_t);
template std::vector<peer> peers(job, float*, std::size_t);

template <class T> peer fftw_transform(bool real, bool inverse, T* data, std::size_t n) {
  return {"FFTW", fftw_plan_of(real, inverse, data, n)};
}
template peer fftw_transform(bool, bool, double*, std::size_t);
template peer fftw_transform(bool, bool, float*, std::size_t);

}  // namespace bench
