// The tables of the wide chirp transform of the last length, and which kernel runs.
#include "fft/wide_chirp.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "core/isa.h"
#include "core/memory.h"
#include "fft/plans/circle.h"
#include "fft/plans/pass_tables.h"
#include "fft/wide_fft.h"
#include "vectors/levels.h"

namespace sigpak::kernels {

namespace {

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

// Everything that the passes need, out of the roots of twice the points of the circle.
template <class T> void build_passes(fft_plan<T>& over, carver& memory, const roots* w) noexcept {
  fft_plan<T> among = over;
  among.points = 2 * over.points;
  for (int pass = 0; pass < turning_passes(over); ++pass) {
    T* const table = memory.take<T>(2 * broadcasts(over, pass));
    over.twiddles[pass] = table;
    if (w != nullptr) fill_pass(table, among, pass, *w);
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
        to[0] = static_cast<T>(rounded(r.cosine));
        to[1] = static_cast<T>(rounded(r.sine));
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

// The memory of all that roots alone make, filled when `w` is there.
template <class T> void build_transforms(chirp_plan<T>& plan, carver& memory, const roots* w) noexcept {
  build_passes(plan.over, memory, w);
  T* const turns = memory.take<T>((plan.over.lanes - 2) * plan.over.vectors);
  if (w != nullptr) fill_turns(turns, plan.over, *w);
  plan.turns = turns;
}

// Those that the squares make.
template <class T> struct chirp_tables {
  T* chirp;
  T* filter;
};

template <class T> chirp_tables<T> build(chirp_plan<T>& plan, carver& memory, const roots* w) noexcept {
  build_transforms(plan, memory, w);
  const chirp_tables<T> tables = {memory.take<T>(2 * chirp_lanes(plan)),
                                  memory.take<T>(2 * plan.over.lanes * plan.over.vectors)};
  plan.chirp = tables.chirp;
  plan.filter = tables.filter;
  return tables;
}

constexpr index together = 64;

// One part each of neighbouring numbers.
struct parted_row {
  double high[together];
  double low[together];

  [[gnu::always_inline]] void put(index i, parted x) noexcept {
    high[i] = x.high;
    low[i] = x.low;
  }
  parted operator[](index i) const noexcept { return {high[i], low[i]}; }
};

struct root_row {
  parted_row cosine;
  parted_row sine;

  [[gnu::always_inline]] void put(index i, root r) noexcept {
    cosine.put(i, r.cosine);
    sine.put(i, r.sine);
  }
  root operator[](index i) const noexcept { return {cosine[i], sine[i]}; }
};

// conj g[m] and its product with exp(-i pi m / K): the even and the odd bins of the circle, which lie side by
// side in the lanes.
class squares {
 public:
  squares(index points, const roots& of_circle) noexcept
      : period_(2 * points), of_data_(2 * points), of_circle_(of_circle) {}

  // From m = first on. There is nothing behind m = 2 N - 2. All loops but those over the table of coarse
  // roots run in vectors.
  [[gnu::always_inline]] void fill(root_row (&out)[2], index first, index count) const noexcept {
    const index there = std::clamp(period_ - 1 - first, index{0}, count);
    std::int32_t coarse[2][together];
    double fine[2][together];
    find_angles(coarse, fine, first, there);
    for (const int part : {0, 1}) {
      root_row& row = out[part];
      for (index i = 0; i < there; ++i) row.put(i, coarse_root(coarse[part][i]));
      for (index i = 0; i < there; ++i) row.put(i, turned_by(row[i], fine[part][i]));
      for (index i = there; i < count; ++i) row.put(i, {});
    }
  }

 private:
  [[gnu::always_inline]] void find_angles(std::int32_t (&coarse)[2][together], double (&fine)[2][together],
                                          index first, index count) const noexcept {
    const auto square = static_cast<double>(first * first % period_);
    const auto slope = static_cast<double>(2 * first);
    const auto start = static_cast<double>(first);
    const roots of_data = of_data_;
    const roots of_circle = of_circle_;
    for (index i = 0; i < count; ++i) {
      const double step = static_cast<std::int32_t>(i);
      const angle even = of_data.angle_of(square + step * (slope + step));
      const angle odd = even - of_circle.angle_of(start + step);
      coarse[0][i] = even.coarse;
      fine[0][i] = even.fine;
      coarse[1][i] = odd.coarse;
      fine[1][i] = odd.fine;
    }
  }

  index period_;
  roots of_data_;
  roots of_circle_;
};

template <class T> void put_chirp(T* out, int lanes, index n, const root_row (&of)[2], index count) noexcept {
  for (index i = 0; i < count; ++i) {
    T* const at = lane_at(out, lanes, 2 * (n + i));
    for (const int part : {0, 1}) {
      at[part] = static_cast<T>(rounded(of[part].cosine[i]));
      at[lanes + part] = static_cast<T>(-rounded(of[part].sine[i]));
    }
  }
}

inline void put_sums(double* out, int lanes, const root_row (&low)[2], const root_row (&high)[2],
                     factor scale, index count) noexcept {
  for (index i = 0; i < count; ++i) {
    double* const at = lane_at(out, lanes, 2 * i);
    for (const int part : {0, 1}) {
      at[part] = scale * (low[part].cosine[i] + high[part].cosine[i]);
      at[lanes + part] = scale * (low[part].sine[i] + high[part].sine[i]);
    }
  }
}

// The power of two near sqrt(2 K). Times it and 1 / (2 K) the spectrum of g is about 1, so that the products
// with it are of the size of the sums on both sides.
double balance(index circle) noexcept {
  const auto bits = static_cast<int>(std::bit_width(static_cast<std::uint64_t>(circle)));
  return std::ldexp(1.0, (bits + 1) / 2);
}

// The chirp, and conj g on the circle of 2 K points, whose two halves m and m + K are folded: in scratch
// memory, as the first pass leaves its results.
template <class T>
void fill_squares(T* chirp, const chirp_plan<T>& plan, double* scratch, const fft_plan<double>& over,
                  const roots& of_circle) noexcept {
  for (index i = 0; i < 2 * chirp_lanes(plan); ++i) chirp[i] = 0;
  const squares of(plan.points, of_circle);
  const factor scale(0.5L * balance(over.points) / static_cast<long double>(over.points));
  const index block = over.points / over.radix[0];
  isa::run([=, points = plan.points, lanes = plan.over.lanes, wide_lanes = over.lanes, all = over.points,
            step = 2 * over.stride * over.lanes] {
    double* out = scratch;
    root_row low[2];
    root_row high[2];
    for (index start = 0; start < all; start += block, out += step) {
      for (index i = 0; i < block; i += together) {
        const index m = start + i;
        const index count = std::min(together, block - i);
        of.fill(low, m, count);
        of.fill(high, m + all, count);
        put_sums(out + 4 * i, wide_lanes, low, high, scale, count);
        put_chirp(chirp, lanes, m, low, std::min(count, points - m));
      }
    }
  });
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

status fill(const chirp_plan<double>& plan, const chirp_tables<double>& tables, const roots& w,
            isa::level level) noexcept {
  double* const scratch = wide_scratch(scratch_of(plan.over), tables.chirp);
  if (scratch == nullptr) return failed;
  fill_squares(tables.chirp, plan, scratch, plan.over, w);
  at_level<chirp_kernels<double>>(level)->spectrum(plan, scratch, tables.filter);
  return ok;
}

// The filter by way of doubles, so that it is exact but for its own rounding.
status fill(const chirp_plan<float>& plan, const chirp_tables<float>& tables, const roots& w,
            isa::level level) noexcept {
  chirp_plan<double> wide = {};
  wide.points = plan.points;
  choose_passes(wide.over, plan.over.points, at_level<chirp_kernels<double>>(level)->widest_lanes);
  const fft_plan<double>& over = wide.over;
  double* scratch = nullptr;
  double* filter = nullptr;
  double* bins = nullptr;
  const auto build_all = [&](carver& memory, const roots* known) {
    build_transforms(wide, memory, known);
    scratch = memory.take<double>(scratch_of(over));
    filter = memory.take<double>(4 * over.points);
    bins = memory.take<double>(4 * over.points);
  };
  carver needed(nullptr);
  build_all(needed, nullptr);
  const passing_table<std::byte> block(needed.taken() + alignment);
  if (block.get() == nullptr) return failed;
  carver memory(align(block.get()));
  build_all(memory, &w);
  fill_squares(tables.chirp, plan, scratch, over, w);
  at_level<chirp_kernels<double>>(level)->spectrum(wide, scratch, filter);
  for_each_bin(over, [&](index lane, index bin) {
    const double* const at = lane_at(filter, over.lanes, lane);
    for (index part = 0; part < 2; ++part) {
      bins[4 * bin + part] = at[part];
      bins[4 * bin + 2 + part] = at[over.lanes + part];
    }
  });
  for_each_bin(plan.over, [&](index lane, index bin) {
    float* const at = lane_at(tables.filter, plan.over.lanes, lane);
    for (index part = 0; part < 2; ++part) {
      at[part] = static_cast<float>(bins[4 * bin + part]);
      at[plan.over.lanes + part] = static_cast<float>(bins[4 * bin + 2 + part]);
    }
  });
  return ok;
}

// The table of the last short odd length; small enough to stay.
template <class T> class direct_table {
 public:
  const T* of(index points, isa::level level) noexcept {
    if (points_ != points || level_ != level) fill(points, at_level<chirp_kernels<T>>(level)->widest_lanes);
    points_ = points;
    level_ = level;
    return values_;
  }

 private:
  void fill(index points, index lanes) noexcept {
    const roots w(points);
    T cosine[most_direct_points<T>];
    T sine[most_direct_points<T>];
    for (index k = 0; k < points; ++k) {
      const root r = w[k];
      cosine[k] = static_cast<T>(rounded(r.cosine));
      sine[k] = static_cast<T>(rounded(r.sine));
    }
    T* out = values_;
    for (index first = 1; 2 * first < points; first += lanes) {
      for (index j = 1; 2 * j < points; ++j, out += 2 * lanes) {
        for (index p = 0, at = j * first % points; p < lanes; ++p) {
          out[p] = cosine[at];
          out[lanes + p] = sine[at];
          at += j;
          if (at >= points) at -= points;
        }
      }
    }
  }

  static constexpr index most_terms = most_direct_points<T> / 2;
  static constexpr index most_in_lanes = (most_terms + most_lanes - 1) / most_lanes * most_lanes;
  T values_[2 * most_terms * most_in_lanes] = {};
  index points_ = 0;
  isa::level level_ = isa::level::baseline;
};
template <class T> constinit direct_table<T> direct;

template <class T> struct kept_plan {
  std::byte* block = nullptr;
  chirp_plan<T> plan = {};
  isa::level level = isa::level::baseline;
};
template <class T> constinit kept_plan<T> kept;

// Nothing is kept until all of it is there.
template <class T> status keep(index points, isa::level level) noexcept {
  release_wide_chirp<T>();
  const chirp_kernels<T>& kernels = *at_level<chirp_kernels<T>>(level);
  chirp_plan<T> plan = {};
  plan.points = points;
  choose_circle(plan.over, points, kernels.widest_lanes, kernels.narrowest_lanes);
  plan.scale[1] = static_cast<T>(1 / balance(plan.over.points));
  plan.scale[0] = plan.scale[1] / static_cast<T>(points);
  carver needed(nullptr);
  build(plan, needed, nullptr);
  std::byte* const block = allocate_table<std::byte>(needed.taken() + alignment);
  if (block == nullptr) return failed;
  carver memory(align(block));
  const roots w(2 * plan.over.points);
  const chirp_tables<T> tables = build(plan, memory, &w);
  if (fill(plan, tables, w, level) != ok) {
    free_table(block);
    return failed;
  }
  kept<T> = {block, plan, level};
  return ok;
}

}  // namespace

template <class T> bool has_wide_chirp() noexcept { return isa::current() != isa::level::baseline; }

template <class T> status wide_chirp(T* data, index points, bool inverse) noexcept {
  const isa::level level = isa::current();
  if (points <= most_direct_points<T> && points % 2 != 0) {
    at_level<chirp_kernels<T>>(level)->run_direct(direct<T>.of(points, level), points, data, inverse);
    return ok;
  }
  const kept_plan<T>& k = kept<T>;
  const bool known = k.block != nullptr && k.plan.points == points && k.level == level;
  if (!known && keep<T>(points, level) != ok) return failed;
  T* const scratch = wide_scratch<T>(scratch_of(k.plan.over), data);
  if (scratch == nullptr) return failed;
  at_level<chirp_kernels<T>>(level)->run(k.plan, data, scratch, inverse);
  return ok;
}

template <class T> void release_wide_chirp() noexcept {
  free_table(kept<T>.block);
  kept<T> = {};
}

template bool has_wide_chirp<double>() noexcept;
template bool has_wide_chirp<float>() noexcept;
template status wide_chirp(double*, index, bool) noexcept;
template status wide_chirp(float*, index, bool) noexcept;
template void release_wide_chirp<double>() noexcept;
template void release_wide_chirp<float>() noexcept;

}  // namespace sigpak::kernels
