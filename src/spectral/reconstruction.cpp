// SPDX-License-Identifier: MIT
// Half a spectrum to the whole: the mirrored second half is appended.
#include "core/storage.h"
#include "spectral/spectral.h"

namespace sigpak {
namespace {

// Fills the points from `half` on with those from `source` down to 1, conjugated.
template <class T> void mirror_complex(T* z, index half, index source) noexcept {
  for (index to = half; source >= 1; ++to, --source) {
    z[2 * to] = z[2 * source];
    z[2 * to + 1] = -z[2 * source + 1];
  }
}

template <class T> void mirror_real(T* x, index half, index source) noexcept {
  for (index to = half; source >= 1; ++to, --source) x[to] = x[source];
}

}  // namespace

template <record V> status reconstruct(V* v, bool odd) noexcept {
  const index half = length(v);
  if (half < (odd ? 2 : 3)) return ok;
  if (reshape(v, odd ? 2 * half - 1 : 2 * (half - 1), is_complex(v)) != ok) return failed;
  const index source = odd ? half - 1 : half - 2;
  if (is_complex(v)) {
    mirror_complex(v->data, half, source);
  } else {
    mirror_real(v->data, half, source);
  }
  return ok;
}

template status reconstruct(dsp_vec*, bool) noexcept;
template status reconstruct(dspf_vec*, bool) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_recon(dsp_vec* v) { return reconstruct(v, false); }
int32_t dspfi_recon(dspf_vec* v) { return reconstruct(v, false); }

int32_t dspi_orecon(dsp_vec* v, int32_t odd) { return reconstruct(v, odd != 0); }
int32_t dspfi_orecon(dspf_vec* v, int32_t odd) { return reconstruct(v, odd != 0); }
