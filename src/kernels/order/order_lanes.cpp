// SPDX-License-Identifier: MIT
// Quicksort by vectors: partitions down to what a network sorts in registers.
#include "kernels/order/order.h"

#include "kernels/order/few_values.h"
#include "kernels/order/middle.h"
#include "kernels/order/networks.h"
#include "kernels/order/partition.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// As many rows as registers hold.
constexpr int most_rows = 16;
template <class T> constexpr index most_in_registers = index{most_rows} * widest<T>::width;

// At least `least` vectors of numbers, in the smallest block that holds them. Squares of rows and lanes take
// turns with blocks of two squares.
template <class T, int W, int rows, int least> SIGPAK_INLINE void sort_in_block(T* x, index n) {
  if (n <= rows * W) return sort_block<pack<T, W>, rows, least>(x, n);
  if constexpr (rows < most_rows && (rows == W || W == widest<T>::width)) {
    return sort_in_block<T, W, 2 * rows, rows>(x, n);
  } else if constexpr (W < widest<T>::width) {
    return sort_in_block<T, 2 * W, rows, rows / 2>(x, n);
  }
}

// At most most_in_registers.
template <class T> void sort_few(T* x, index n) { sort_in_block<T, 4, 4, 0>(x, n); }

// Blocks as above; `half` of the smallest that will do is enough.
template <class T, int W, int rows>
SIGPAK_INLINE bool find_in_blocks(const T* x, index n, index rank, index half, T* found) {
  constexpr bool is_last = rows == most_rows && W == widest<T>::width;
  if (is_last || 2 * half <= rows * W) {
    return find_in_block<pack<T, W>, rows, most_in_registers<T>>(x, n, rank, found);
  }
  if constexpr (rows < most_rows && (rows == W || W == widest<T>::width)) {
    return find_in_blocks<T, W, 2 * rows>(x, n, rank, half, found);
  } else if constexpr (W < widest<T>::width) {
    return find_in_blocks<T, 2 * W, rows>(x, n, rank, half, found);
  }
}

template <class T> bool find_rank(const T* x, index n, index rank, T* found) {
  return find_in_blocks<T, 4, 4>(x, n, rank, rank > n - rank ? rank : n - rank, found);
}

template <class P> SIGPAK_INLINE P middle(P a, P b, P c) {
  return greater(lesser(a, b), lesser(greater(a, b), c));
}

// The middles, lane by lane, of vectors that are evenly spread, in order: of three, or where that pays of
// three times three (J. W. Tukey, The ninther, 1978).
template <class T> SIGPAK_INLINE pack<T, 4> sorted_middles(const T* x, index n) {
  using P = pack<T, 4>;
  constexpr index worth_nine = 512;
  const auto middle_of_three = [x](index from, index step) SIGPAK_LAMBDA {
    return middle(load<P>(x + from), load<P>(x + from + step), load<P>(x + from + 2 * step));
  };
  P a;
  if (n < worth_nine) {
    a = middle_of_three(0, (n - 4) / 2);
  } else {
    const index step = (n - 4) / 8;
    a = middle(middle_of_three(0, step), middle_of_three(3 * step, step), middle_of_three(6 * step, step));
  }
  return paired<1, 1>(paired<3, 2>(paired<1, 1>(a)));
}

template <class T> void sift(T* heap, index n, index at) {
  const T moved = heap[at];
  for (index child = 2 * at + 1; child < n; child = 2 * at + 1) {
    if (child + 1 < n && heap[child] < heap[child + 1]) ++child;
    if (!(moved < heap[child])) break;
    heap[at] = heap[child];
    at = child;
  }
  heap[at] = moved;
}

template <class T> void sort_as_heap(T* x, index n) {
  for (index i = n / 2; i > 0; --i) sift(x, n, i - 1);
  for (index i = n; i > 1; --i) {
    const T last = x[i - 1];
    x[i - 1] = x[0];
    x[0] = last;
    sift(x, i - 1, 0);
  }
}

constexpr index worth_counting = 512;

// Either side of the pivot has a number: the pivot itself goes to the left where there is none that is less.
// What repeats in the sample may be one of few values, which are sorted without a pivot.
template <class T> index split_at_pivot(T* x, index n) {
  using P = widest<T>;
  const pack<T, 4> sample = sorted_middles(x, n);
  const T pivot = sample.v[2];
  T least = sample.v[0];
  const bool repeats = least == sample.v[1] || sample.v[1] == pivot || pivot == sample.v[3];
  if (least == sample.v[3] || (repeats && n >= worth_counting)) {
    few_values<T> values;
    if (values.count_all(x, n)) {
      values.write(x);
      return n;
    }
    least = values.least() < least ? values.least() : least;
  }
  if (least == pivot) return partition(x, n, at_most_as<P>{splat<P>(pivot)});
  return partition(x, n, less_than<P>{splat<P>(pivot)});
}

// Exchanges the least number with the first, or the greatest with the last, of a vector or more.
template <bool last, class T> void put_at_end(T* x, index n) {
  using P = widest<T>;
  P found = load<P>(x + n - P::width);
  for (index i = 0; i + P::width < n; i += P::width) {
    const P a = load<P>(x + i);
    found = last ? greater(found, a) : lesser(found, a);
  }
  const T value = last ? greatest_of<1>(found) : least_of<1>(found);
  const P all = splat<P>(value);
  const auto alike = [&](index i) SIGPAK_LAMBDA {
    const P a = load<P>(x + i);
    return last ? lanes_at_most(all, a) : lanes_at_most(a, all);
  };
  index place = 0;
  while (place + P::width < n && alike(place) == 0) place += P::width;
  place = place + P::width < n ? place : n - P::width;
  place += __builtin_ctz(alike(place));
  T& end = x[last ? n - 1 : 0];
  x[place] = end;
  end = value;
}

// Two ranks beside each other may come to lie in different parts, each at an end of its own.
template <class T> void sort(T* x, index n, kernels::ranks wanted, int levels) {
  for (;;) {
    if (wanted.end - wanted.first == 1 && n > widest<T>::width) {
      if (wanted.first == 0) return put_at_end<false>(x, n);
      if (wanted.end == n) return put_at_end<true>(x, n);
    }
    if (n <= most_in_registers<T>) return sort_few(x, n);
    if (levels-- == 0) return sort_as_heap(x, n);
    const index split = split_at_pivot(x, n);
    if (split == n) return;
    if (wanted.first < split) sort(x, split, {wanted.first, wanted.end < split ? wanted.end : split}, levels);
    if (wanted.end <= split) return;
    wanted = {wanted.first > split ? wanted.first - split : 0, wanted.end - split};
    x += split;
    n -= split;
  }
}

template <class T> bool sort_few_values(T* x, index n) {
  few_values<T> values;
  if (!values.count_all(x, n)) return false;
  values.write(x);
  return true;
}

template <class T> bool find_among_few_values(const T* x, index n, kernels::ranks wanted, T* found) {
  few_values<T> values;
  if (!values.count_all(x, n)) return false;
  for (index rank = wanted.first; rank < wanted.end; ++rank) *found++ = values.of_rank(rank);
  return true;
}

template <class P> constexpr unsigned every_lane = static_cast<unsigned>((1ULL << P::width) - 1);

template <class P, int... lanes> SIGPAK_INLINE P next_lanes(P a, P b, sequence<lanes...>) {
  return {__builtin_shufflevector(a.v, b.v, (lanes + 1)...)};
}

// The numbers at the beginning that have the bits of the first, or some less.
template <class T> index skip_alike(const T* x, index n) {
  using P = widest<T>;
  constexpr int vectors = 8;
  constexpr index ahead = 24 * P::width;
  const P first = splat<P>(x[0]);
  index i = to_whole_vectors(x, n);
  if (lanes_alike(load_first(x, i, first), first) != every_lane<P>) return 1;
  for (; i + vectors * P::width <= n; i += vectors * P::width) {
    unsigned alike = every_lane<P>;
    unroll<vectors>([&](auto j) SIGPAK_LAMBDA {
      alike &= lanes_alike(load<P>(x + i + j * P::width), first);
      __builtin_prefetch(x + i + j * P::width + ahead);
    });
    if (alike != every_lane<P>) break;
  }
  return i > 0 ? i : 1;
}

// Each vector is loaded once: the one that begins a number later comes of two.
template <class T> bool is_ascending(const T* x, index n) {
  using P = widest<T>;
  if (n == 0 || x[0] != x[0]) return n == 0;
  index i = skip_alike(x, n) - 1;
  for (const index whole = i + to_whole_vectors(x + i, n - i); i < whole && i + 1 < n; ++i) {
    if (!(x[i] <= x[i + 1])) return false;
  }
  if (n - i >= P::width) {
    P here = load<P>(x + i);
    for (; i + 2 * P::width <= n; i += P::width) {
      const P next = load<P>(x + i + P::width);
      const P later = next_lanes(here, next, typename counting<P::width>::type{});
      if (lanes_at_most(here, later) != every_lane<P>) return false;
      here = next;
    }
  }
  for (; i + 1 < n; ++i) {
    if (!(x[i] <= x[i + 1])) return false;
  }
  return true;
}

// What a record has, as bits: a struct of them would be returned through memory, byte by byte.
enum : unsigned { negative_zeros = 1, descents = 2, nan = 4 };

// In one pass without a branch for each number. Not inline, so that the upper halves of its registers are
// cleared before narrower ones are used, after which g++ would leave them to slow down the caller.
template <class P, class T = typename P::scalar> [[gnu::noinline]] unsigned traits_of(const T* x, index n) {
  const P negative_zero = {-typename P::vector{}};
  unsigned ascending = every_lane<P>;
  unsigned numbers = every_lane<P>;
  unsigned zeros = lanes_alike(splat<P>(x[0]), negative_zero);
  const auto look_at = [&](P here, P later) SIGPAK_LAMBDA {
    ascending &= lanes_at_most(here, later);
    numbers &= lanes_at_most(later, later);
    zeros |= lanes_alike(later, negative_zero);
  };
  const index pairs = n - 1;
  if (pairs < P::width) {
    const P none = splat<P>(1);
    look_at(load_first(x, pairs, none), load_first(x + 1, pairs, none));
  } else {
    for (index i = 0; i + P::width < pairs; i += P::width) look_at(load<P>(x + i), load<P>(x + i + 1));
    const T* const last = x + pairs - P::width;
    look_at(load<P>(last), load<P>(last + 1));
  }
  return (zeros != 0 ? negative_zeros : 0U) | (ascending != every_lane<P> ? descents : 0U) |
         (numbers != every_lane<P> || x[0] != x[0] ? nan : 0U);
}

// While vectors of 512 bits are under way, one of the ports for narrower ones is closed: what a network of
// 256 bits sorts is looked at by as many.
template <class T> SIGPAK_INLINE unsigned traits_of_short(const T* x, index n) {
  constexpr index most_narrow = sizeof(T) == 8 ? 32 : 128;
  return n <= most_narrow ? traits_of<pack<T, 32 / sizeof(T)>>(x, n) : traits_of<widest<T>>(x, n);
}

template <class T> kernels::short_order sort_short(T* x, index n) {
  const unsigned found = traits_of_short(x, n);
  if ((found & nan) != 0) return kernels::short_order::refused;
  if ((found & descents) != 0) sort_few(x, n);
  return (found & negative_zeros) != 0 ? kernels::short_order::with_negative_zeros
                                       : kernels::short_order::done;
}

// From where a NaN may be.
template <class T> index skip_numbers(const T* x, index n) {
  using P = widest<T>;
  constexpr int vectors = 4;
  index i = to_whole_vectors(x, n);
  for (index at = 0; at < i; ++at) {
    if (x[at] != x[at]) return at;
  }
  for (; i + vectors * P::width <= n; i += vectors * P::width) {
    unsigned numbers = every_lane<P>;
    unroll<vectors>([&](auto k) SIGPAK_LAMBDA {
      const P a = load<P>(x + i + k * P::width);
      numbers &= lanes_at_most(a, a);
    });
    if (numbers != every_lane<P>) return i;
  }
  return i;
}

template <class T> index put_numbers_first(T* x, index n) {
  const index at_least = skip_numbers(x, n);
  if (n - at_least > most_in_registers<T>) {
    return at_least + partition(x + at_least, n - at_least, is_number<widest<T>>{});
  }
  index end = n;
  for (index i = at_least; i < end;) {
    if (x[i] == x[i]) {
      ++i;
      continue;
    }
    const T nan = x[i];
    x[i] = x[--end];
    x[end] = nan;
  }
  return end;
}

// NaN are neither before nor behind, and found.
template <class T>
kernels::collected collect(const T* x, index n, kernels::bracket<T> range, T* found, index room) {
  using P = widest<T>;
  constexpr int vectors = 4;
  constexpr index block = vectors * P::width;
  const P low = splat<P>(range.low);
  const P high = splat<P>(range.high);
  kernels::collected all = {0, 0};
  const auto add = [&](P a, unsigned given) SIGPAK_LAMBDA {
    const unsigned before = lanes_at_most(a, low) & given;
    const unsigned between = ~(before | lanes_at_most(high, a)) & given;
    store(found + all.count, left_only(a, between));
    all.count += __builtin_popcount(between);
    all.before += __builtin_popcount(before);
  };
  index i = 0;
  for (; i + block <= n; i += block) {
    if (all.count + block > room) return {-1, 0};
    unroll<vectors>([&](auto j) SIGPAK_LAMBDA { add(load<P>(x + i + j * P::width), every_lane<P>); });
  }
  for (; i < n; i += P::width) {
    if (all.count + P::width > room) return {-1, 0};
    const index count = n - i < P::width ? n - i : P::width;
    add(load_first(x + i, count, splat<P>(0)), every_lane<P> >> (P::width - count));
  }
  return all;
}

template <class T>
constexpr kernels::order_table<T> table = {
    most_in_registers<T>,     sort_short<T>,   find_rank<T>,         sort<T>,   sort_few_values<T>,
    find_among_few_values<T>, is_ascending<T>, put_numbers_first<T>, collect<T>};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::order_table<double>) = SIGPAK_LEVEL::table<double>;
SIGPAK_LEVEL_TABLE(kernels::order_table<float>) = SIGPAK_LEVEL::table<float>;

}  // namespace sigpak
