// The operations that keep tables, scratch memory or a stream between calls, and some beside them that
// allocate.
#pragma once

#include <cstdlib>

#include "support/signal.h"

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

#define RUN [](workplace<V> & w) -> status
template <record V> std::vector<operation<V>> operations() {
  constexpr auto tables = kept::tables;
  constexpr auto forward = RUN { return TWIN(i_dft)(&w.a, 0); };
  constexpr auto inverse = RUN { return TWIN(i_dft)(&w.a, 1); };
  constexpr auto real = RUN { return TWIN(i_rdft)(&w.a); };
  constexpr auto real_inverse = RUN { return TWIN(i_irdft)(&w.a, 0); };
  constexpr auto cosine = RUN { return TWIN(i_dct)(&w.a, 0); };
  constexpr auto window = RUN { return TWIN(i_window)(&w.a, DSP_WINDOW_HANN, 0); };
  constexpr auto fir = RUN { return TWIN(d_fir)(&w.a, &w.out, &w.taps, &w.state); };
  constexpr auto fir_in_place = RUN { return TWIN(d_fir)(&w.a, &w.a, &w.taps, nullptr); };
  constexpr auto symmetric = RUN { return TWIN(d_sfir)(&w.a, &w.out, &w.taps, 1, 0, &w.state); };
  constexpr auto correlate = RUN { return TWIN(b_corr)(&w.a, &w.b, &w.out, -1, 0); };
  constexpr auto spectrum = RUN {
    return TWIN(h_dft)(&w.a, nullptr, &w.out, &w.state, &w.window, 1, 0, nullptr, 0);
  };
  return {{"dspi_fft of 64", tables, 64, true, 0, RUN{return TWIN(i_fft)(&w.a, 0);
}
}  // namespace sigpak::test
, {"dspi_fft of 512", tables, 512, true, 0, RUN{return TWIN(i_fft)(&w.a, 1);
}
}
, {"dspi_fft of 4096", tables, 4096, false, 0, RUN{return TWIN(i_fft)(&w.a, 0);
}
}
, {"dspi_rfft of 256", tables, 256, false, 0, RUN{return TWIN(i_rfft)(&w.a);
}
}
, {"dspi_rfft of 8192", tables, 8192, false, 0, RUN{return TWIN(i_rfft)(&w.a);
}
}
, {"dspi_irfft to 4096", tables, 2049, true, 0, RUN{return TWIN(i_irfft)(&w.a);
}
}
, {"dspi_dft of 37", tables, 37, true, 0, forward}, {"dspi_dft of 120", tables, 120, true, 0, forward},
    {"dspi_dft of 1000", tables, 1000, false, 0, inverse}, {"dspi_dft of 67", tables, 67, true, 0, inverse},
    {"dspi_dft of 1009", tables, 1009, true, 0, forward}, {"dspi_rdft of 1003", tables, 1003, false, 0, real},
    {"dspi_irdft to 480", tables, 241, true, 0, real_inverse},
    {"dspi_dct of 100", tables, 100, false, 0, cosine},
    {"dspi_dct of 1024", tables, 1024, false, 0, RUN{return TWIN(i_dct)(&w.a, 1);
}
}
, {"dspi_hilbert of 1000", tables, 1000, false, 0, RUN{return TWIN(i_hilbert)(&w.a);
}
}
, {"dspi_analytic of 512", tables, 512, false, 0, RUN{return TWIN(i_analytic)(&w.a);
}
}
, {"dspi_bitrev of 128", tables, 128, true, 0, RUN{return TWIN(i_bitrev)(&w.a);
}
}
, {"dspi_bitrev_scale of 64", tables, 64, false, 0, RUN{return TWIN(i_bitrev_scale)(&w.a);
}
}
, {"dspi_window of 64", tables, 64, false, 0, window},
    {"dspi_window of 10000", tables, 10000, false, 0, window},
    {"dspi_window of 20 lengths", kept::nothing, 90, false, 0, RUN{return apply_windows(w, 20);
}
}
, {"dspd_fir, 5 taps", tables, 300, true, 5, fir},
    {"dspd_fir, 30 taps in place", tables, 64, false, 30, fir_in_place},
    {"dspd_fir, 1500 taps, complex", tables, 2000, true, 1500, fir},
    {"dspd_fir, 130 taps", tables, 5000, false, 130, fir},
    {"dspd_fir, 150 taps in place", tables, 2000, false, 150, fir_in_place},
    {"dspd_sfir, 31 taps", tables, 200, false, 16, symmetric},
    {"dspd_sfir, 259 taps", tables, 2000, false, 130, symmetric},
    {"dspd_deci", tables, 500, true, 0, RUN{return TWIN(d_deci)(&w.a, &w.out, 3, &w.state);
}
}
, {"dspd_hwfilt", tables, 100, true, 0, RUN{return TWIN(d_hwfilt)(&w.a, &w.out, 0, &w.state);
}
}
, {"dspi_hwfilt", kept::one_stream, 100, false, 0, RUN{return TWIN(i_hwfilt)(&w.a, 0);
}
}
, {"dspd_rsmp", kept::nothing, 500, false, 61, RUN{return TWIN(d_rsmp)(&w.a, &w.out, &w.taps, 3, 2, nullptr);
}
}
, {"dspd_rsmp, a stream in place", tables, 500, false, 61,
   RUN{return TWIN(d_rsmp)(&w.a, &w.a, &w.taps, 2, 3, &w.state);
}
}
, {"dspd_rsmp2 in place", kept::nothing, 500, false, 61,
   RUN{return TWIN(d_rsmp2)(&w.a, &w.a, &w.taps, nullptr, 1.5, nullptr);
}
}
, {"dspb_corr of 300", tables, 300, false, 0, correlate},
    {"dspb_corr of 1000, complex", tables, 1000, true, 0, correlate},
    {"dspb_corr of 700, 20 lags", kept::nothing, 700, false, 0,
     RUN{return TWIN(b_corr)(&w.a, &w.b, &w.out, 20, 0);
}
}
, {"dspb_corr of 600, circular", kept::nothing, 600, false, 0,
   RUN{return TWIN(b_corr)(&w.a, &w.b, &w.out, -1, DSP_CORR_CIRCULAR);
}
}
, {"dsph_corr", tables, 800, false, 0, RUN{return TWIN(h_corr)(&w.a, &w.b, &w.out, &w.state, 70, 0);
}
}
, {"dsph_dft, segments of 256", tables, 1024, false, 0, spectrum},
    {"dsph_dft, segments of 250", kept::nothing, 1000, false, 0, spectrum},
    {"dspi_sort", kept::nothing, 1000, false, 0, RUN{return TWIN(i_sort)(&w.a);
}
}
, {"dsps_median", kept::nothing, 1000, false, 0, RUN{return TWIN(s_median)(&w.a, &w.out);
}
}
, {"dspc_rand", kept::one_stream, 100, false, 0, RUN{return TWIN(c_rand)(&w.a, DSP_RAND_NORMAL);
}
}
,
}
;
}
#undef RUN

}  // namespace sigpak::test
