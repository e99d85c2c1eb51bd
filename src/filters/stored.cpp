// SPDX-License-Identifier: MIT
// Two stored filters.
#include <algorithm>
#include <span>

#include "core/storage.h"

namespace sigpak {
namespace {

constexpr int first_code = 100;

// Neither is symmetric; the digits are the definition.
constexpr double twelve_taps[] = {0.000652614993819046, 0.00161398511533566,  0.000548992786994134,
                                  0.0116567216928761,   -0.00562175791231776, 0.0468479126026349,
                                  -0.0276748405838295,  0.135579125376994,    -0.075108484786155,
                                  0.303557392557081,    -0.139425088639288,   0.494746834127881};
constexpr double twenty_taps[] = {
    0.000368132791542899, 0.000967915759393971, 0.000171001256853212, -0.00209709414433782,
    -0.00134559393257076, 0.00376444811111315,  0.00369259510337955,  -0.00616294219783637,
    -0.00824555590147736, 0.00885290712394496,  0.0157666480717501,   -0.0118857692786052,
    -0.0283982005099745,  0.014655079795871,    0.0502662469080564,   -0.0170833584807637,
    -0.0976221957445371,  0.0185823751149414,   0.315351886691414,    0.480803804305858};

std::span<const double> stored_taps(int code) noexcept {
  if (code == first_code) return twelve_taps;
  if (code == first_code + 1) return twenty_taps;
  return {};
}

template <record V> status store_taps(V* v, std::int32_t code) noexcept {
  const std::span<const double> taps = stored_taps(code);
  if (taps.empty()) return failed;
  v->points = static_cast<std::uint32_t>(taps.size());
  if (allocate(v) != ok) return failed;
  const bool complex = is_complex(v);
  v->complex = 0;
  std::ranges::transform(taps, v->data, [](double tap) { return static_cast<scalar<V>>(tap); });
  return complex ? to_complex(v) : ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspc_fir2(dsp_vec* v, int32_t code) { return store_taps(v, code); }
int32_t dspfc_fir2(dspf_vec* v, int32_t code) { return store_taps(v, code); }
