// SPDX-License-Identifier: MIT
// Half a spectrum to the whole.
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class Reconstruction : public testing::Test {};
TYPED_TEST_SUITE(Reconstruction, records, record_names);

TYPED_TEST(Reconstruction, MirrorsTheHalf) {
  using V = TypeParam;
  for (const std::int32_t odd : {0, 1, 5}) {
    const auto mirror = [odd](contents<V>& c) {
      for (std::size_t i = c.points.size() - (odd != 0 ? 0 : 1); i > 1 && i < 100; --i) {
        c.points.push_back(c.complex ? std::conj(c.points[i - 1]) : c.points[i - 1]);
      }
    };
    const std::vector<index> sizes{0, 1, 2, 3, 4, 50, 64};
    expect_in_place<V>([odd](V* v) { return TWIN(i_orecon)(v, odd); }, mirror, sizes);
    if (odd == 0) expect_in_place<V>(TWIN(i_recon), mirror, sizes);
  }
}

}  // namespace
}  // namespace sigpak::test
