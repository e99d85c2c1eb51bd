// SPDX-License-Identifier: MIT
// The operations that keep tables, scratch memory or a stream between calls, and some beside them that
// allocate.
#pragma once

#include <cstdlib>

#include "support/failing.h"
#include "support/signal.h"
#include "support/split.h"

namespace sigpak::test {

// The records of one call, with storage for every result. They come from the heap without the library, so
// that they are there when its allocations fail.
template <record V> class workplace {
 public:
  V a = {}, b = {}, out = {}, taps = {}, state = {}, window = {};

  workplace() = default;
  ~workplace() {
    for (V* const v : {&a, &b, &out, &taps, &state, &window}) TWIN(_destroy)(v);
  }
  workplace(const workplace&) = delete;
  workplace& operator=(const workplace&) = delete;

  void prepare(index points, bool complex, index tap_count) {
    fill(&a, points, complex, 0);
    fill(&b, points, complex, 1000);
    fill(&taps, tap_count, false, 500);
    fill(&window, std::max<index>(points / 4, 1), false, 700);
    fill(&out, 0, false, 0);
    fill(&state, 0, false, 0);
    taps.delta = scalar<V>(0.25);
  }

  samples<V> results() const {
    samples<V> all(a.data, a.data + scalars(&a));
    all.insert(all.end(), out.data, out.data + scalars(&out));
    return all;
  }

 private:
  static constexpr index room = 1 << 15;

  static void fill(V* v, index points, bool complex, index from) {
    static const samples<V> source = noise<V>(room + 1000);
    if (v->data == nullptr || v->alloc < room) {
      if (v->alloc > 0) std::free(v->data);
      v->data = static_cast<scalar<V>*>(std::malloc(room * sizeof(scalar<V>)));
      v->alloc = room;
    }
    v->delta = 1;
    v->points = static_cast<std::uint32_t>(points);
    v->complex = complex ? 1 : 0;
    std::copy_n(source.begin() + from, scalars(v), v->data);
  }
};

enum class kept { nothing, tables, one_stream };

template <record V> struct operation {
  const char* name;
  kept keeps;  // tables, then a second call needs no memory; one stream of the process, then any result is
               // right
  index points;
  bool complex;
  index taps;
  status (*run)(workplace<V>& w);

  status call(workplace<V>& w) const {
    w.prepare(points, complex, taps);
    return run(w);
  }
};

// Windows of so many lengths, more than are kept.
template <record V> status apply_windows(workplace<V>& w, int count) {
  for (int i = 0; i < count; ++i) {
    w.a.points = static_cast<std::uint32_t>(64 + i);
    if (TWIN(i_window)(&w.a, DSP_WINDOW_HANN, 0) != ok) return failed;
  }
  return ok;
}

template <record V> std::vector<operation<V>> operations() {
  using W = workplace<V>;
  constexpr auto tables = kept::tables;
  constexpr auto fft = [](W& w) { return TWIN(i_fft)(&w.a, 0); };
  constexpr auto inverse_fft = [](W& w) { return TWIN(i_fft)(&w.a, 1); };
  constexpr auto rfft = [](W& w) { return TWIN(i_rfft)(&w.a); };
  constexpr auto irfft = [](W& w) { return TWIN(i_irfft)(&w.a); };
  constexpr auto dft = [](W& w) { return TWIN(i_dft)(&w.a, 0); };
  constexpr auto inverse_dft = [](W& w) { return TWIN(i_dft)(&w.a, 1); };
  constexpr auto irdft = [](W& w) { return TWIN(i_irdft)(&w.a, 0); };
  constexpr auto dct = [](W& w) { return TWIN(i_dct)(&w.a, 0); };
  constexpr auto inverse_dct = [](W& w) { return TWIN(i_dct)(&w.a, 1); };
  constexpr auto hilbert = [](W& w) { return TWIN(i_hilbert)(&w.a); };
  constexpr auto bitrev = [](W& w) { return TWIN(i_bitrev)(&w.a); };
  constexpr auto bitrev_scale = [](W& w) { return TWIN(i_bitrev_scale)(&w.a); };
  constexpr auto window = [](W& w) { return TWIN(i_window)(&w.a, DSP_WINDOW_HANN, 0); };
  constexpr auto windows = [](W& w) { return apply_windows(w, 20); };
  constexpr auto fir = [](W& w) { return TWIN(d_fir)(&w.a, &w.out, &w.taps, &w.state); };
  constexpr auto fir_in_place = [](W& w) { return TWIN(d_fir)(&w.a, &w.a, &w.taps, nullptr); };
  constexpr auto sfir = [](W& w) { return TWIN(d_sfir)(&w.a, &w.out, &w.taps, 1, 0, &w.state); };
  constexpr auto deci = [](W& w) { return TWIN(d_deci)(&w.a, &w.out, 3, &w.state); };
  constexpr auto hwfilt = [](W& w) { return TWIN(d_hwfilt)(&w.a, &w.out, 0, &w.state); };
  constexpr auto shared_hwfilt = [](W& w) { return TWIN(i_hwfilt)(&w.a, 0); };
  constexpr auto rsmp = [](W& w) { return TWIN(d_rsmp)(&w.a, &w.out, &w.taps, 3, 2, nullptr); };
  constexpr auto rsmp_in_place = [](W& w) { return TWIN(d_rsmp)(&w.a, &w.a, &w.taps, 2, 3, &w.state); };
  constexpr auto rsmp2 = [](W& w) { return TWIN(d_rsmp2)(&w.a, &w.a, &w.taps, nullptr, 1.5, nullptr); };
  constexpr auto rsmp2_stream = [](W& w) {
    if (TWIN(d_rsmp2)(&w.a, &w.out, &w.taps, nullptr, 0.7, &w.state) != ok) return failed;
    if (TWIN(d_rsmp2)(&w.b, &w.out, &w.taps, nullptr, 1.7, &w.state) != ok) return failed;
    return TWIN(d_rsmp2)(nullptr, &w.out, &w.taps, nullptr, 0.7, &w.state);
  };
  constexpr auto corr = [](W& w) { return TWIN(b_corr)(&w.a, &w.b, &w.out, -1, 0); };
  constexpr auto circular = [](W& w) { return TWIN(b_corr)(&w.a, &w.b, &w.out, -1, DSP_CORR_CIRCULAR); };
  constexpr auto corr_stream = [](W& w) { return TWIN(h_corr)(&w.a, &w.b, &w.out, &w.state, 70, 0); };
  constexpr auto spectra = [](W& w) {
    return TWIN(h_dft)(&w.a, nullptr, &w.out, &w.state, &w.window, 1, 0, nullptr, 0);
  };
  constexpr auto surface = [](W& w) {
    w.b.points = 32;
    TWIN(c_line)(&w.b, 1, 0);
    const V knots = part_of<V>(w.b, 0, 16);
    const V beyond = part_of<V>(w.b, 16, 16);
    return TWIN(b_cspline_2d)(&beyond, &beyond, &w.out, &knots, &knots, &w.a, 0);
  };
  constexpr auto sort = [](W& w) { return TWIN(i_sort)(&w.a); };
  constexpr auto rand = [](W& w) { return TWIN(c_rand)(&w.a, DSP_RAND_NORMAL); };
  return {{"dspi_fft of 64", tables, 64, true, 0, fft},
          {"dspi_fft of 512", tables, 512, true, 0, inverse_fft},
          {"dspi_fft of 4096", tables, 4096, false, 0, fft},
          {"dspi_rfft of 256", tables, 256, false, 0, rfft},
          {"dspi_rfft of 8192", tables, 8192, false, 0, rfft},
          {"dspi_irfft to 4096", tables, 2049, true, 0, irfft},
          {"dspi_dft of 37", tables, 37, true, 0, dft},
          {"dspi_dft of 120", tables, 120, true, 0, dft},
          {"dspi_dft of 1000", tables, 1000, false, 0, inverse_dft},
          {"dspi_dft of 67", tables, 67, true, 0, inverse_dft},
          {"dspi_dft of 1009", tables, 1009, true, 0, dft},
          {"dspi_irdft to 480", tables, 241, true, 0, irdft},
          {"dspi_dct of 100", tables, 100, false, 0, dct},
          {"dspi_dct of 1024", tables, 1024, false, 0, inverse_dct},
          {"dspi_hilbert of 1000", tables, 1000, false, 0, hilbert},
          {"dspi_bitrev of 128", tables, 128, true, 0, bitrev},
          {"dspi_bitrev_scale of 64", tables, 64, false, 0, bitrev_scale},
          {"dspi_window of 64", tables, 64, false, 0, window},
          {"dspi_window of 10000", tables, 10000, false, 0, window},
          {"dspi_window of 20 lengths", kept::nothing, 90, false, 0, windows},
          {"dspd_fir, 5 taps", tables, 300, true, 5, fir},
          {"dspd_fir, 30 taps in place", tables, 64, false, 30, fir_in_place},
          {"dspd_fir, 1500 taps, complex", tables, 2000, true, 1500, fir},
          {"dspd_fir, 130 taps", tables, 5000, false, 130, fir},
          {"dspd_fir, 150 taps in place", tables, 2000, false, 150, fir_in_place},
          {"dspd_sfir, 31 taps", tables, 200, false, 16, sfir},
          {"dspd_sfir, 259 taps", tables, 2000, false, 130, sfir},
          {"dspd_deci", tables, 500, true, 0, deci},
          {"dspd_hwfilt", tables, 100, true, 0, hwfilt},
          {"dspi_hwfilt", kept::one_stream, 100, false, 0, shared_hwfilt},
          {"dspd_rsmp", kept::nothing, 500, false, 61, rsmp},
          {"dspd_rsmp, a stream in place", tables, 500, false, 61, rsmp_in_place},
          {"dspd_rsmp2 in place", kept::nothing, 500, false, 61, rsmp2},
          {"dspd_rsmp2, a stream of two steps", kept::nothing, 500, false, 61, rsmp2_stream},
          {"dspb_corr of 1000", tables, 1000, false, 0, corr},
          {"dspb_corr of 900, complex", tables, 900, true, 0, corr},
          {"dspb_corr of 600, circular", kept::nothing, 600, false, 0, circular},
          {"dsph_corr, 70 lags", tables, 800, false, 0, corr_stream},
          {"dsph_dft, segments of 256", tables, 1024, false, 0, spectra},
          {"dsph_dft, segments of 250", kept::nothing, 1000, false, 0, spectra},
          {"dspb_cspline_2d, 16 by 16", kept::nothing, 256, false, 0, surface},
          {"dspi_sort", kept::nothing, 1000, false, 0, sort},
          {"dspc_rand", kept::one_stream, 100, false, 0, rand}};
}

}  // namespace sigpak::test
