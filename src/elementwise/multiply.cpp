// The point-by-point product.
#include "core/isa.h"
#include "elementwise/elementwise.h"
#include "elementwise/prepare.h"

namespace sigpak {
namespace {

template <class T> void multiply_real(const T* a, const T* b, T* out, index n) noexcept {
  isa::run([=] {
    for (index i = 0; i < n; ++i) out[i] = a[i] * b[i];
  });
}

// Backwards: out may hold the real operand at its start.
template <class T> void multiply_mixed(const T* z, const T* x, T* out, index points) noexcept {
  isa::run([=] {
    for (index i = points - 1; i >= 0; --i) {
      const T factor = x[i];
      out[2 * i] = z[2 * i] * factor;
      out[2 * i + 1] = z[2 * i + 1] * factor;
    }
  });
}

template <class T> void multiply_complex(const T* a, const T* b, T* out, index points) noexcept {
  isa::run([=] {
    for (index i = 0; i < 2 * points; i += 2) {
      const T ar = a[i];
      const T ai = a[i + 1];
      const T br = b[i];
      const T bi = b[i + 1];
      out[i] = ar * br - ai * bi;
      out[i + 1] = ar * bi + ai * br;
    }
  });
}

}  // namespace

template <record V> status multiply(const V* a, const V* b, V* out) noexcept {
  const bool a_complex = is_complex(a);  // asked first: out may be an operand, and takes its form in prepare
  const bool b_complex = is_complex(b);
  if (prepare(a, b, out, a_complex || b_complex) != ok) return failed;
  const index points = length(out);
  if (a_complex && b_complex) {
    multiply_complex(a->data, b->data, out->data, points);
  } else if (a_complex) {
    multiply_mixed(a->data, b->data, out->data, points);
  } else if (b_complex) {
    multiply_mixed(b->data, a->data, out->data, points);
  } else {
    multiply_real(a->data, b->data, out->data, points);
  }
  return ok;
}

template status multiply(const dsp_vec*, const dsp_vec*, dsp_vec*) noexcept;
template status multiply(const dspf_vec*, const dspf_vec*, dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspb_mul(const dsp_vec* a, const dsp_vec* b, dsp_vec* out) { return multiply(a, b, out); }
int32_t dspfb_mul(const dspf_vec* a, const dspf_vec* b, dspf_vec* out) { return multiply(a, b, out); }
