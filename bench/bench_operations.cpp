// Absolute speeds of the main operations, for watching one build against another.
#include <benchmark/benchmark.h>

#include "sigpak.h"

namespace {

// A record of noise that is released with its scope.
class signal {
 public:
  signal(std::int64_t points, bool complex) {
    dsp_init(&v_);
    v_.points = static_cast<std::uint32_t>(points);
    v_.complex = complex ? 1 : 0;
    dsp_alloc(&v_);
    for (std::int64_t i = 0; i < points * (complex ? 2 : 1); ++i)
      v_.data[i] = static_cast<double>(i * 7919 % 1021) - 510;
  }
  ~signal() { dsp_destroy(&v_); }
  signal(const signal&) = delete;
  signal& operator=(const signal&) = delete;
  dsp_vec* get() { return &v_; }

 private:
  dsp_vec v_;
};

void fft_pair(benchmark::State& state) {
  signal v(state.range(0), true);
  for (auto _ : state) {
    dspi_fft(v.get(), 0);
    dspi_fft(v.get(), 1);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0) * 2);
}
BENCHMARK(fft_pair)->RangeMultiplier(8)->Range(1 << 6, 1 << 21);

void dft_pair(benchmark::State& state) {
  signal v(state.range(0), true);
  for (auto _ : state) {
    dspi_dft(v.get(), 0);
    dspi_dft(v.get(), 1);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0) * 2);
}
BENCHMARK(dft_pair)->Arg(1000)->Arg(10007)->Arg(100000);

void windowed_power(benchmark::State& state) {
  signal source(state.range(0), false);
  signal v(state.range(0), false);
  for (auto _ : state) {
    dsp_copy(v.get(), source.get());
    dspi_window(v.get(), DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE);
    dspi_rfft(v.get());
    dspi_magsq(v.get());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(windowed_power)->Arg(1 << 10)->Arg(1 << 16)->Arg(1 << 20);

void fir(benchmark::State& state) {
  signal in(state.range(1), false);
  signal taps(state.range(0), false);
  signal out(state.range(1), false);
  for (auto _ : state) dspd_fir(in.get(), out.get(), taps.get(), nullptr);
  state.SetItemsProcessed(state.iterations() * state.range(1));
}
BENCHMARK(fir)->ArgsProduct({{16, 45, 46, 256, 1024}, {10'000, 1'000'000}});

void sine(benchmark::State& state) {
  signal source(state.range(0), false);
  signal v(state.range(0), false);
  for (auto _ : state) {
    dsp_copy(v.get(), source.get());
    dspi_sin(v.get());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(sine)->Arg(4096);

void variance(benchmark::State& state) {
  signal v(state.range(0), false);
  signal result(1, false);
  for (auto _ : state) dsps_samp_var(v.get(), result.get());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(variance)->Arg(1 << 14)->Arg(1 << 20);

void median(benchmark::State& state) {
  signal v(state.range(0), false);
  signal result(1, false);
  for (auto _ : state) dsps_median(v.get(), result.get());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(median)->Arg(1000)->Arg(1'000'000);

}  // namespace

BENCHMARK_MAIN();
