// The tables of the wide chirp transform of the last length, and which kernel runs.
#include "kernels/chirp.h"

#include "core/isa.h"
#include "core/memory.h"
#include "kernels/chirp_passes.h"
#include "kernels/fft.h"
#include "kernels/pass_tables.h"

namespace sigpak::kernels {

#if SIGPAK_WIDE_LEVELS

namespace {

template <class T> const chirp_kernels<T>& kernels_of(isa::level level) noexcept {
  if constexpr (sizeof(T) == sizeof(double)) {
    return level == isa::level::avx512 ? avx512::double_chirp : avx2::double_chirp;
  } else {
    return level == isa::level::avx512 ? avx512::float_chirp : avx2::float_chirp;
  }
}

root product(root a, root b) noexcept {
  return {a.cosine * b.cosine - a.sine * b.sine, a.sine * b.cosine + a.cosine * b.sine};
}
root conjugate(root a) noexcept { return {a.cosine, -a.sine}; }

// Memory for the making of tables, freed at the end of its scope.
template <class T> class passing_table {
 public:
  explicit passing_table(index count) noexcept : table_(allocate_table<T>(count)) {}
  ~passing_table() { free_table(table_); }
  passing_table(const passing_table&) = delete;
  passing_table& operator=(const passing_table&) = delete;
  T* get() const noexcept { return table_; }

 private:
  T* table_;
};

// In vectors of `lanes`, a power of two.
template <class T> T* lane_at(T* vectors, int lanes, index lane) noexcept {
  const index inside = lane & (lanes - 1);
  return vectors + 2 * (lane - inside) + inside;
}
template <class T> void put(T* vectors, int lanes, index lane, root value) noexcept {
  T* const at = lane_at(vectors, lanes, lane);
  at[0] = static_cast<T>(value.cosine);
  at[lanes] = static_cast<T>(value.sine);
}

// Everything that the passes need, out of the roots of twice the points of the circle.
template <class T>
void build_passes(fft_plan<T>& over, carver& memory, const roots* w, index points) noexcept {
  fft_plan<T> among = over;
  among.points = 2 * over.points;
  for (const int inverse : {0, 1}) {
    T* const first = memory.take<T>(1 + 2 * broadcasts(over, 0));
    over.first[inverse] = first;
    const long double scale = inverse != 0 ? 1 : 1 / static_cast<long double>(points);
    if (w != nullptr) fill_first(first, among, *w, scale);
  }
  for (int pass = 1; pass < over.passes - 1; ++pass) {
    T* const table = memory.take<T>(2 * broadcasts(over, pass));
    over.twiddles[pass] = table;
    if (w != nullptr) fill_pass(table, among, pass, *w, 1);
  }
}

template <class T> void fill_turns(T* out, const fft_plan<T>& over, const roots& w) noexcept {
  const index pairs = over.lanes / 2;
  for (index at = 0; at < over.vectors; at += pairs, out += 2 * pairs * (pairs - 1)) {
    for (index p = 0; p < pairs; ++p) {
      const index kb = output(over, at + p);
      for (index l = 1; l < pairs; ++l) {
        const root r = w[2 * l * kb];
        T* const to = out + 2 * (pairs * (l - 1) + p);
        to[0] = static_cast<T>(r.cosine);
        to[1] = static_cast<T>(r.sine);
      }
    }
  }
}

template <class T> index chirp_lanes(const chirp_plan<T>& plan) noexcept {
  return (2 * plan.points + plan.over.lanes - 1) / plan.over.lanes * plan.over.lanes;
}
template <class T> index scratch_of(const fft_plan<T>& over) noexcept {
  return 2 * over.lanes * over.stride * over.radix[0];
}

// Those that the squares make.
template <class T> struct chirp_tables {
  T* chirp;
  T* filter;
};

// Takes the memory of all tables, and fills those that roots alone make when `w` is there.
template <class T>
void build(chirp_plan<T>& plan, chirp_tables<T>& tables, carver& memory, const roots* w) noexcept {
  fft_plan<T>& over = plan.over;
  build_passes(over, memory, w, plan.points);
  T* const turns = memory.take<T>((over.lanes - 2) * over.vectors);
  if (w != nullptr) fill_turns(turns, over, *w);
  plan.turns = turns;
  plan.chirp = tables.chirp = memory.take<T>(2 * chirp_lanes(plan));
  plan.filter = tables.filter = memory.take<T>(2 * over.lanes * over.vectors);
}

// conj g[m] for m = 0 ... N; beyond, g[m] = g[2 N - m].
bool fill_squares(root* out, index points) noexcept {
  const roots w(2 * points);
  if (!w.good()) return false;
  for (index m = 0, square = 0; m <= points; ++m) {
    out[m] = w[square];
    square += 2 * m + 1;
    if (square >= 2 * points) square -= 2 * points;
  }
  return true;
}

template <class T>
void fill_chirp(T* out, const chirp_plan<T>& plan, const root* g, const roots& w) noexcept {
  const int lanes = plan.over.lanes;
  for (index i = 0; i < 2 * chirp_lanes(plan); ++i) out[i] = 0;
  for (index n = 0; n < plan.points; ++n) {
    const root back = conjugate(g[n]);  // a root is stored as that of the opposite angle
    put(out, lanes, 2 * n, back);
    put(out, lanes, 2 * n + 1, product(back, w[n]));
  }
}

// 1 / (2 K) times the transform of conj g on the circle, whose two halves m and m + K are folded.
template <class T>
void find_bins(const chirp_plan<T>& plan, const root* g, const roots& w, T* scratch, T* out,
               isa::level level) noexcept {
  const fft_plan<T>& over = plan.over;
  const int lanes = over.lanes;
  const index last = 2 * plan.points - 2;
  const auto conj_g = [&](index m) {
    return m > last ? root{0, 0} : m > plan.points ? g[2 * plan.points - m] : g[m];
  };
  const long double scale = 0.5L / static_cast<long double>(over.points);
  const index block = over.points / over.radix[0];
  for (index m = 0; m < over.points; ++m) {
    const root low = conj_g(m);
    const root high = conj_g(m + over.points);
    const root even = {(low.cosine + high.cosine) * scale, (low.sine + high.sine) * scale};
    const root odd = {(low.cosine - high.cosine) * scale, (low.sine - high.sine) * scale};
    const index at = m / block * over.stride * lanes + 2 * (m % block);
    put(scratch, lanes, at, even);
    put(scratch, lanes, at + 1, product(odd, conjugate(w[m])));
  }
  kernels_of<T>(level).spectrum(plan, scratch, out);
}

// Calls body(lane, bin) for every bin of the K-point transforms: its even one is in that lane of the filter's
// vectors, its odd one in the next.
template <class T, class Body> void for_each_bin(const fft_plan<T>& over, const Body& body) noexcept {
  const index pairs = over.lanes / 2;
  for (index vector = 0; vector < over.vectors; vector += pairs) {
    for (index p = 0; p < pairs; ++p) {
      const index kb = output(over, vector + p);
      for (index k = 0; k < pairs; ++k) body((vector + k) * over.lanes + 2 * p, kb + k * over.vectors);
    }
  }
}

status fill_filter(double* out, const chirp_plan<double>& plan, const root* g, const roots& w,
                   isa::level level) {
  double* const scratch = wide_scratch(scratch_of(plan.over), plan.chirp);
  if (scratch == nullptr) return failed;
  find_bins(plan, g, w, scratch, out, level);
  return ok;
}

// By way of doubles, so that it is exact but for its own rounding.
status fill_filter(float* out, const chirp_plan<float>& plan, const root* g, const roots& w,
                   isa::level level) {
  chirp_plan<double> wide = {};
  wide.points = plan.points;
  choose_passes(wide.over, plan.over.points, kernels_of<double>(level).widest_lanes);
  const fft_plan<double>& over = wide.over;
  chirp_tables<double> tables;
  carver needed(nullptr);
  build(wide, tables, needed, nullptr);
  needed.take<double>(scratch_of(over));
  needed.take<double>(4 * over.points);
  const passing_table<std::byte> block(needed.taken() + alignment);
  if (block.get() == nullptr) return failed;
  carver memory(align(block.get()));
  build(wide, tables, memory, &w);
  find_bins(wide, g, w, memory.take<double>(scratch_of(over)), tables.filter, level);
  auto* const bins = memory.take<double>(4 * over.points);
  for_each_bin(over, [&](index lane, index bin) {
    const double* const at = lane_at(tables.filter, over.lanes, lane);
    for (index part = 0; part < 2; ++part) {
      bins[4 * bin + part] = at[part];
      bins[4 * bin + 2 + part] = at[over.lanes + part];
    }
  });
  for_each_bin(plan.over, [&](index lane, index bin) {
    float* const at = lane_at(out, plan.over.lanes, lane);
    for (index part = 0; part < 2; ++part) {
      at[part] = static_cast<float>(bins[4 * bin + part]);
      at[plan.over.lanes + part] = static_cast<float>(bins[4 * bin + 2 + part]);
    }
  });
  return ok;
}

template <class T> status fill(chirp_plan<T>& plan, carver& memory, isa::level level) noexcept {
  const roots w(2 * plan.over.points);
  const passing_table<root> g(plan.points + 1);
  if (!w.good() || g.get() == nullptr || !fill_squares(g.get(), plan.points)) return failed;
  chirp_tables<T> tables;
  build(plan, tables, memory, &w);
  fill_chirp(tables.chirp, plan, g.get(), w);
  return fill_filter(tables.filter, plan, g.get(), w, level);
}

template <class T> struct kept_plan {
  std::byte* block = nullptr;
  chirp_plan<T> plan = {};
  isa::level level = isa::level::baseline;
};
template <class T> constinit kept_plan<T> kept;

// Nothing is kept until all of it is there.
template <class T> status keep(index points, isa::level level) noexcept {
  release_wide_chirp<T>();
  const chirp_kernels<T>& kernels = kernels_of<T>(level);
  chirp_plan<T> plan = {};
  plan.points = points;
  choose_circle(plan.over, points, kernels.widest_lanes, kernels.narrowest_lanes);
  chirp_tables<T> tables;
  carver needed(nullptr);
  build(plan, tables, needed, nullptr);
  std::byte* const block = allocate_table<std::byte>(needed.taken() + alignment);
  if (block == nullptr) return failed;
  carver memory(align(block));
  if (fill(plan, memory, level) != ok) {
    free_table(block);
    return failed;
  }
  kept<T> = {block, plan, level};
  return ok;
}

}  // namespace

template <class T> bool has_wide_chirp() noexcept { return isa::current() != isa::level::baseline; }

template <class T> status wide_chirp(T* data, index points, bool inverse) noexcept {
  const kept_plan<T>& k = kept<T>;
  const isa::level level = isa::current();
  const bool known = k.block != nullptr && k.plan.points == points && k.level == level;
  if (!known && keep<T>(points, level) != ok) return failed;
  T* const scratch = wide_scratch<T>(scratch_of(k.plan.over), data);
  if (scratch == nullptr) return failed;
  kernels_of<T>(level).run(k.plan, data, scratch, inverse);
  return ok;
}

template <class T> void release_wide_chirp() noexcept {
  free_table(kept<T>.block);
  kept<T> = {};
}

#else

template <class T> bool has_wide_chirp() noexcept { return false; }
template <class T> status wide_chirp(T*, index, bool) noexcept { return failed; }
template <class T> void release_wide_chirp() noexcept {}

#endif

template bool has_wide_chirp<double>() noexcept;
template bool has_wide_chirp<float>() noexcept;
template status wide_chirp(double*, index, bool) noexcept;
template status wide_chirp(float*, index, bool) noexcept;
template void release_wide_chirp<double>() noexcept;
template void release_wide_chirp<float>() noexcept;

}  // namespace sigpak::kernels
