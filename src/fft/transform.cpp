// The power-of-two transform by the kernel that fits this processor.
#include "fft/wide_fft.h"
#include "fft/transform.h"
#include "fft/baseline/split_radix.h"

namespace sigpak {

template <class T> status transform(T* data, index points, bool inverse) noexcept {
  if (kernels::small_wide_fft(data, points, inverse)) return ok;
  if (kernels::has_wide_fft<T>(points)) {
    own_twiddle_cache<T>();
    return kernels::wide_fft(data, points, inverse);
  }
  split_radix<T> plan;
  if (plan.prepare(points, inverse) != ok) return failed;
  plan.run(data);
  return ok;
}

template status transform(double*, index, bool) noexcept;
template status transform(float*, index, bool) noexcept;

}  // namespace sigpak
