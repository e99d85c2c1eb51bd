// Sinusoids and straight lines.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/blocks.h"
#include "core/isa.h"
#include "core/storage.h"

namespace sigpak {
namespace {

constexpr index lanes = 8;  // blocks turned side by side: the recurrence of one is a chain of dependent steps
constexpr index stretch = 32;  // steps between two visits to the record

// The angle of point i is i * step + phase.
struct sweep {
  double step;
  double phase;
};

template <record V> sweep sweep_of(const V* v, scalar<V> frequency, scalar<V> phase) noexcept {
  return {2 * std::numbers::pi * static_cast<double>(frequency) * static_cast<double>(v->delta),
          static_cast<double>(phase)};
}

// One block of the record in each lane, at the same place of each.
using side_by_side [[gnu::vector_size(lanes * sizeof(double))]] = double;

struct phasors {
  side_by_side re;
  side_by_side im;
};

// A block alone, whose chain of steps nothing runs beside.
template <class Put> void sweep_block(sweep angle, double c, double s, index n, Put put) noexcept {
  double re = std::cos(angle.phase);
  double im = std::sin(angle.phase);
  for (index i = 0; i < n; ++i) {
    put(i, re, im);
    const double next = re * c - im * s;
    im = re * s + im * c;
    re = next;
  }
}

// put(i, cos, sin) for every point of n, by rotation from an exact angle at the head of every block:
// z' = z * exp(i step). Calls come in the order of the points inside a stretch only.
template <class Put> void sweep_points(sweep angle, index n, Put put) noexcept {
  const double c = std::cos(angle.step);
  const double s = std::sin(angle.step);
  if (n <= rotation_block) return sweep_block(angle, c, s, n, put);
  for (index first = 0; first < n; first += lanes * rotation_block) {
    side_by_side re{};
    side_by_side im{};
    for (index lane = 0; lane < lanes && first + lane * rotation_block < n; ++lane) {
      const double anchor = static_cast<double>(first + lane * rotation_block) * angle.step + angle.phase;
      re[lane] = std::cos(anchor);
      im[lane] = std::sin(anchor);
    }
    const index longest = std::min(rotation_block, n - first);
    for (index begin = 0; begin < longest; begin += stretch) {
      phasors turned[stretch];
      for (phasors& z : turned) {
        z = {re, im};
        const side_by_side next = re * c - im * s;
        im = re * s + im * c;
        re = next;
      }
      for (index lane = 0; lane < lanes; ++lane) {
        const index at = first + lane * rotation_block + begin;
        const index count = std::min(stretch, n - at);
        for (index i = 0; i < count; ++i) put(at + i, turned[i].re[lane], turned[i].im[lane]);
      }
    }
  }
}

template <class T> void write_cosine(T* x, index n, sweep angle) noexcept {
  isa::run([=] { sweep_points(angle, n, [=](index i, double c, double) { x[i] = static_cast<T>(c); }); });
}

template <class T> void write_exponential(T* z, index points, sweep angle) noexcept {
  isa::run([=] {
    sweep_points(angle, points, [=](index i, double c, double s) {
      z[2 * i] = static_cast<T>(c);
      z[2 * i + 1] = static_cast<T>(s);
    });
  });
}

// Into every `width`-th scalar.
template <class T> void add_cosine(T* x, index points, index width, sweep angle, double amplitude) noexcept {
  isa::run([=] {
    sweep_points(angle, points, [=](index i, double c, double) {
      x[i * width] = static_cast<T>(static_cast<double>(x[i * width]) + amplitude * c);
    });
  });
}

template <class T> void add_exponential(T* z, index points, sweep angle, double amplitude) noexcept {
  isa::run([=] {
    sweep_points(angle, points, [=](index i, double c, double s) {
      z[2 * i] = static_cast<T>(static_cast<double>(z[2 * i]) + amplitude * c);
      z[2 * i + 1] = static_cast<T>(static_cast<double>(z[2 * i + 1]) + amplitude * s);
    });
  });
}

// Sizes the record as preset, lets `write` fill it as a real one, and gives it its form back.
template <record V, class Write> status generate_real(V* v, Write write) noexcept {
  if (allocate(v) != ok) return failed;
  const bool complex = is_complex(v);
  v->complex = 0;
  write(v->data, length(v));
  return complex ? to_complex(v) : ok;
}

template <record V> status generate_cosine(V* v, scalar<V> frequency, scalar<V> phase) noexcept {
  const sweep angle = sweep_of(v, frequency, phase);
  return generate_real(v, [=](scalar<V>* x, index n) { write_cosine(x, n, angle); });
}

template <record V> status generate_exponential(V* v, scalar<V> frequency, scalar<V> phase) noexcept {
  if (!is_complex(v)) return generate_cosine(v, frequency, phase);
  if (allocate(v) != ok) return failed;
  write_exponential(v->data, length(v), sweep_of(v, frequency, phase));
  return ok;
}

template <record V> status generate_line(V* v, scalar<V> slope, scalar<V> start) noexcept {
  return generate_real(v, [step = slope * v->delta, start](scalar<V>* x, index n) {
    scalar<V> value = start;
    for (index i = 0; i < n; ++i) {
      x[i] = value;
      value += step;
    }
  });
}

constexpr std::int32_t exponential_mode = 1;

template <record V>
status add_sinusoid(V* v, std::int32_t mode, scalar<V> frequency, scalar<V> amplitude,
                    scalar<V> phase) noexcept {
  const sweep angle = sweep_of(v, frequency, phase);
  if (is_complex(v) && (mode & exponential_mode) != 0) {
    add_exponential(v->data, length(v), angle, static_cast<double>(amplitude));
  } else {
    add_cosine(v->data, length(v), width(v), angle, static_cast<double>(amplitude));
  }
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspc_cos(dsp_vec* v, double f, double phase) { return generate_cosine(v, f, phase); }
int32_t dspfc_cos(dspf_vec* v, float f, float phase) { return generate_cosine(v, f, phase); }

int32_t dspc_cexp(dsp_vec* v, double f, double phase) { return generate_exponential(v, f, phase); }
int32_t dspfc_cexp(dspf_vec* v, float f, float phase) { return generate_exponential(v, f, phase); }

int32_t dspc_line(dsp_vec* v, double slope, double start) { return generate_line(v, slope, start); }
int32_t dspfc_line(dspf_vec* v, float slope, float start) { return generate_line(v, slope, start); }

int32_t dspi_addcos(dsp_vec* v, int32_t mode, double f, double amp, double phase) {
  return add_sinusoid(v, mode, f, amp, phase);
}
int32_t dspfi_addcos(dspf_vec* v, int32_t mode, float f, float amp, float phase) {
  return add_sinusoid(v, mode, f, amp, phase);
}
