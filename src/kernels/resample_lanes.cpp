// SPDX-License-Identifier: MIT
// Outputs at a changed rate. A run is cut into segments that begin at the same phase, one for each lane, so
// that a vector of samples, one of each segment, meets one tap: no shuffles in the sums, no load across a
// cache line, and one order for every output. Eight outputs go side by side, which share most of the samples
// that they see.
#include "kernels/resample.h"

#include "kernels/single.h"
#include "vectors/lanes.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

constexpr int side_by_side = 8;

template <class T> using rows_of = kernels::phase_rows<T>;
template <class T> using run_of = kernels::rate_run<T>;

constexpr index smaller(index a, index b) { return a < b ? a : b; }
constexpr index larger(index a, index b) { return a > b ? a : b; }
constexpr index quotient_up(index a, index b) { return (a + b - 1) / b; }

// For each of the outputs side by side the samples begin .. end - 1, counted from the oldest of the run, and
// the taps from where the tap of sample i is tap[i].
template <class T> struct tile {
  const T* tap[side_by_side];
  index begin[side_by_side];
  index end[side_by_side];
};

// The outputs from k on; when fewer than a tile are left, the last of them fills it up.
template <class T>
SIGPAK_INLINE tile<T> tile_at(const rows_of<T>& rows, index phase, index k, index outputs) {
  tile<T> t;
  const index place = phase + k * rows.down;
  index newest = place / rows.up + rows.longest() - 1;
  phase = place % rows.up;
  const index whole = rows.down / rows.up;
  const index part = rows.down % rows.up;
  for (int p = 0; p < side_by_side; ++p) {
    t.end[p] = newest + 1;
    t.begin[p] = t.end[p] - rows.size(phase);
    t.tap[p] = rows.row(phase) - t.begin[p];
    if (k + p + 1 >= outputs) continue;
    newest += whole + (phase + part >= rows.up ? 1 : 0);
    phase += part - (phase + part >= rows.up ? rows.up : 0);
  }
  return t;
}

template <class P, class T>
SIGPAK_INLINE void add_alone(P& sum, const T* tap, const T* x, index stride, index begin, index end) {
  for (index i = begin; i < end; ++i) sum = fma(splat<P>(tap[i]), load<P>(x + i * stride), sum);
}

// The samples that all outputs see are loaded once for all; those before and after are added output by
// output.
template <class P, class T>
SIGPAK_INLINE void sum_tile(const tile<T>& t, const T* x, index stride, P (&sums)[side_by_side]) {
  index first = t.begin[0];
  index last = t.end[0];
  for (int p = 1; p < side_by_side; ++p) {
    first = larger(first, t.begin[p]);
    last = smaller(last, t.end[p]);
  }
  unroll<side_by_side>([&](auto p) SIGPAK_LAMBDA {
    sums[p] = splat<P>(T(0));
    add_alone(sums[p], t.tap[p], x, stride, t.begin[p], smaller(first, t.end[p]));
  });
  for (index i = first; i < last; ++i) {
    const P sample = load<P>(x + i * stride);
    unroll<side_by_side>([&](auto p)
                             SIGPAK_LAMBDA { sums[p] = fma(splat<P>(t.tap[p][i]), sample, sums[p]); });
  }
  unroll<side_by_side>([&](auto p) SIGPAK_LAMBDA {
    add_alone(sums[p], t.tap[p], x, stride, larger(larger(first, last), t.begin[p]), t.end[p]);
  });
}

// One lane: the samples stay where they are.
template <class T> void sum_in_place(const rows_of<T>& rows, const run_of<T>& run, T* out) {
  const T* const oldest = run.newest - (rows.longest() - 1) * run.parts;
  for (index k = 0; k < run.outputs; k += side_by_side) {
    const tile<T> t = tile_at(rows, run.phase, k, run.outputs);
    for (index part = 0; part < run.parts; ++part) {
      single<T> sums[side_by_side];
      sum_tile(t, oldest + part, run.parts, sums);
      for (index p = 0; p < side_by_side && k + p < run.outputs; ++p)
        out[(k + p) * run.parts + part] = sums[p].v;
    }
  }
}

// How a run lies in the lanes: segment l begins with output l * outputs and sample l * samples.
struct layout {
  index parts;
  index outputs;  // of a segment
  index samples;
  index segments;
  index rows;      // samples that a segment sees
  index all_rows;  // samples that the run sees
};

template <int W, class T> SIGPAK_INLINE layout layout_of(const rows_of<T>& rows, const run_of<T>& run) {
  const index turns = quotient_up(run.outputs, W / run.parts * rows.up);
  layout l;
  l.parts = run.parts;
  l.outputs = turns * rows.up;
  l.samples = turns * rows.down;
  l.segments = quotient_up(run.outputs, l.outputs);
  const index before = rows.longest();
  l.rows = (run.phase + (smaller(l.outputs, run.outputs) - 1) * rows.down) / rows.up + before;
  l.all_rows = (run.phase + (run.outputs - 1) * rows.down) / rows.up + before;
  return l;
}

// Row i of the lanes, where some segments may have ended already.
template <int W, class T> SIGPAK_INLINE void gather_row(const layout& l, const T* x, index i, T* to) {
  for (index s = 0; s < W / l.parts; ++s) {
    const bool seen = s < l.segments && s * l.samples + i < l.all_rows;
    for (index part = 0; part < l.parts; ++part) {
      to[s * l.parts + part] = seen ? x[(s * l.samples + i) * l.parts + part] : T(0);
    }
  }
}

// Squares of samples, transposed; a segment that does not exist is the first one once more.
template <class P, class T, int parts> SIGPAK_INLINE void gather(const layout& l, const T* x, T* to) {
  constexpr int W = P::width;
  constexpr int square = W / parts;
  index i = 0;
  for (; i + square <= smaller(l.rows, l.all_rows - (l.segments - 1) * l.samples); i += square) {
    P r[square];
    unroll<square>([&](auto s) SIGPAK_LAMBDA {
      r[s] = load<P>(x + ((s < l.segments ? s * l.samples : 0) + i) * parts);
    });
    if constexpr (parts == 1) {
      transpose(r);
    } else {
      transpose_points(r);
    }
    unroll<square>([&](auto s) SIGPAK_LAMBDA { store(to + (i + s) * W, r[s]); });
  }
  for (; i < l.rows; ++i) gather_row<W>(l, x, i, to + i * W);
}

// The outputs of a tile, from k on in every segment, `left` of them wanted in the whole run.
template <class P, class T, int parts>
SIGPAK_INLINE void scatter(const layout& l, const P (&sums)[side_by_side], index k, index outputs, T* out) {
  constexpr int square = P::width / parts;
  constexpr int rows = square < side_by_side ? square : side_by_side;
  unroll<side_by_side / rows>([&](auto block) SIGPAK_LAMBDA {
    P r[square];
    unroll<square>([&](auto i) SIGPAK_LAMBDA { r[i] = sums[block * rows + i % rows]; });
    if constexpr (parts == 1) {
      transpose(r);
    } else {
      transpose_points(r);
    }
    const index begin = k + block * rows;
    unroll<square>([&](auto s) SIGPAK_LAMBDA {
      const index wanted = smaller(smaller(l.outputs, outputs - s * l.outputs) - begin, rows);
      T* const to = out + (s * l.outputs + begin) * parts;
      if constexpr (rows == square) {
        if (wanted == rows) return store(to, r[s]);
      }
      T some[P::width];
      store(some, r[s]);
      if (wanted == rows) {
        __builtin_memcpy(to, some, rows * parts * sizeof(T));
      } else {
        for (index i = 0; i < wanted * parts; ++i) to[i] = some[i];
      }
    });
  });
}

template <class P, class T, int parts>
SIGPAK_INLINE void sum_lanes(const rows_of<T>& rows, const run_of<T>& run, const layout& l, T* out, T* room) {
  gather<P, T, parts>(l, run.newest - (rows.longest() - 1) * parts, room);
  for (index k = 0; k < l.outputs; k += side_by_side) {
    P sums[side_by_side];
    sum_tile(tile_at(rows, run.phase, k, l.outputs), static_cast<const T*>(room), P::width, sums);
    scatter<P, T, parts>(l, sums, k, run.outputs, out);
  }
}

template <class P, class T = typename P::scalar>
void sum(const rows_of<T>& rows, const run_of<T>& run, T* out, T* room) {
  if (run.outputs <= 0) return;
  const layout l = layout_of<P::width>(rows, run);
  if (l.segments == 1) {
    sum_in_place(rows, run, out);
  } else if (run.parts == 1) {
    sum_lanes<P, T, 1>(rows, run, l, out, room);
  } else {
    sum_lanes<P, T, 2>(rows, run, l, out, room);
  }
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::resample_table<double>) = {SIGPAK_LEVEL::sum<SIGPAK_LEVEL::widest<double>>};
SIGPAK_LEVEL_TABLE(kernels::resample_table<float>) = {SIGPAK_LEVEL::sum<SIGPAK_LEVEL::widest<float>>};

}  // namespace sigpak
