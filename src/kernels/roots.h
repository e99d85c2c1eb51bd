// Roots of unity, good to the last digit of a double.
#pragma once

#include "core/roots.h"

namespace sigpak::kernels {

// Cosines of k / 64 of a turn in the first quarter, nearest long doubles.
constexpr long double cosines[17] = {1.0L,
                                     0.995184726672196886244836953109479921L,
                                     0.980785280403230449126182236134239037L,
                                     0.956940335732208864935797886980269968L,
                                     0.923879532511286756128183189396788287L,
                                     0.881921264348355029712756863660388350L,
                                     0.831469612302545237078788377617905756L,
                                     0.773010453362736960810906609758469801L,
                                     0.707106781186547524400844362104849039L,
                                     0.634393284163645498215171613225493370L,
                                     0.555570233019602224742830813948532874L,
                                     0.471396736825997648556387625905254378L,
                                     0.382683432365089771728459984030398866L,
                                     0.290284677254462367636192375817395275L,
                                     0.195090322016128267848284868477022241L,
                                     0.098017140329560601994195563888641846L,
                                     0.0L};

constexpr long double cosine(int k) {
  k %= 64;
  if (k > 32) k = 64 - k;
  return k <= 16 ? cosines[k] : -cosines[32 - k];
}
constexpr long double sine(int k) { return cosine(k + 48); }

using root = unit_root<long double>;

// cos and sin of 2 pi k / n for k = 0 ... n - 1, each as the product of one of 64 coarse roots and one of n /
// 64 fine ones in long double, so that rounding to double is all but exact.
class roots {
 public:
  explicit roots(index n) noexcept;
  ~roots();
  roots(const roots&) = delete;
  roots& operator=(const roots&) = delete;

  bool good() const noexcept { return fine_ != nullptr; }
  root operator[](index k) const noexcept {
    const root a = coarse_[k / fines_];
    const root b = fine_[k % fines_];
    return {a.cosine * b.cosine - a.sine * b.sine, a.sine * b.cosine + a.cosine * b.sine};
  }

 private:
  static constexpr int coarse_roots = 64;
  root coarse_[coarse_roots];
  root* fine_;
  index fines_;
};

}  // namespace sigpak::kernels
