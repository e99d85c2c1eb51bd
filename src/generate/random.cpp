// SPDX-License-Identifier: MIT
// Random numbers from the standard library's generator, and records filled with them.
#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <numbers>

#include "core/guard.h"
#include "core/storage.h"
#include "generate/generate.h"

namespace sigpak {
namespace {

constexpr std::uint32_t seed_word = 0xEB0330BE;

constinit std::atomic<bool> seeded = false;

// The second value of a polar pair, for the next draw of either precision; NaN where there is none.
constexpr double no_value = std::numeric_limits<double>::quiet_NaN();
constinit std::atomic<double> spare = no_value;

// The place of the stack differs from run to run where the system lays memory out at random, the processor
// time from start to start.
void seed() noexcept {
  std::uint32_t word = seed_word;
  word ^= static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&word) >> 4);
  word += static_cast<std::uint32_t>(std::clock());
  std::srand(static_cast<unsigned>(word ^ static_cast<std::uint32_t>(std::time(nullptr))));
}

// The 15 bits that rand() gives at least, whatever it gives here.
std::int32_t draw_bits() noexcept {
  if (!seeded.load(std::memory_order_relaxed) && !seeded.exchange(true, std::memory_order_relaxed)) seed();
  return std::rand() & 0x7FFF;
}

// 60 bits, the last ones drawn the most significant, rounded to a double in [0, 1].
double uniform() noexcept {
  double u = 0;
  for (int i = 0; i < 4; ++i) u = (draw_bits() + u) * 0x1p-15;
  return u;
}

double symmetric() noexcept { return 2 * uniform() - 1; }

double floored_logarithm(double u) noexcept { return std::log(std::max(u, guard<double>::tiny)); }

double exponential() noexcept { return -floored_logarithm(uniform()); }

double laplace() noexcept {
  const bool negative = (random_integer() & 1) != 0;
  const double magnitude = exponential();
  return negative ? -magnitude : magnitude;
}

struct pair {
  double x;
  double y;
};

// Uniform in the open unit disc.
pair disc() noexcept {
  for (;;) {
    const double x = symmetric();
    const double y = symmetric();
    if (x * x + y * y < 1) return {x, y};
  }
}

// G. Marsaglia, T. A. Bray, A convenient method for generating normal variables, SIAM Review 6 (1964). At the
// very centre of the disc the stretch would overflow; the pair there is (0, 0).
double normal() noexcept {
  if (const double kept = spare.load(std::memory_order_relaxed); kept == kept) {
    spare.store(no_value, std::memory_order_relaxed);
    return kept;
  }
  const auto [x, y] = disc();
  const double s = x * x + y * y;
  const double stretch = s > guard<double>::tiny ? std::sqrt(-2 * std::log(s) / s) : 0.0;
  spare.store(x * stretch, std::memory_order_relaxed);
  return y * stretch;
}

// G. E. P. Box, M. E. Muller, A note on the generation of random normal deviates, Ann. Math. Stat. 29 (1958).
pair normal_pair() noexcept {
  const double radius = std::sqrt(-2 * floored_logarithm(uniform()));
  const double angle = 2 * std::numbers::pi * uniform();
  return {radius * std::cos(angle), radius * std::sin(angle)};
}

// `draw` is known when this is compiled, and inlined.
template <double (*draw)(), record V> status fill(V* v) noexcept {
  for (index i = 0; i < length(v); ++i) v->data[i] = static_cast<scalar<V>>(draw());
  return ok;
}

template <pair (*draw)(), record V> status fill(V* v) noexcept {
  for (index i = 0; i < length(v); ++i) {
    const auto [re, im] = draw();
    v->data[2 * i] = static_cast<scalar<V>>(re);
    v->data[2 * i + 1] = static_cast<scalar<V>>(im);
  }
  return ok;
}

template <record V> status generate_random(V* v, std::int32_t code) noexcept {
  if (allocate(v) != ok) return failed;
  switch (code) {
    case DSP_RAND_UNIFORM:
      return is_complex(v) ? fill<disc>(v) : fill<symmetric>(v);
    case DSP_RAND_NORMAL:
      return is_complex(v) ? fill<normal_pair>(v) : fill<normal>(v);
    case DSP_RAND_EXPONENTIAL:
      return is_complex(v) ? failed : fill<exponential>(v);
    case DSP_RAND_LAPLACE:
      return is_complex(v) ? failed : fill<laplace>(v);
    default:
      return failed;
  }
}

}  // namespace

std::int32_t random_integer() noexcept {
  const std::int32_t high = draw_bits();
  const std::int32_t middle = draw_bits();
  const std::int32_t low = draw_bits();
  return (high << 16) | ((middle & 1) << 15) | low;
}

}  // namespace sigpak

using namespace sigpak;

int32_t dspc_rand(dsp_vec* v, int32_t distribution) { return generate_random(v, distribution); }
int32_t dspfc_rand(dspf_vec* v, int32_t distribution) { return generate_random(v, distribution); }
