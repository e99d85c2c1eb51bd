// ln x with some 60 good bits, for what is built on it.
#pragma once

#include <bit>
#include <cstdint>

#include "core/double_double.h"

namespace sigpak {

struct logarithm_entry {
  double reciprocal;    // short: its product with half a significand is exact
  double_double value;  // -ln reciprocal; hi is a multiple of 2^-42
};

// One entry for each of 128 intervals of [0.6875, 1.375): the reciprocal of its middle to 9 bits, 1 on both
// sides of
// 1. From 60-digit arithmetic (scripts/elementary-tables logarithm).
inline constexpr logarithm_entry logarithm_table[128] = {
    {1.451171875, {-0x1.7d4eeef5ef000p-2, 0x1.c9018f8f27d8fp-45}},
    {1.44140625, {-0x1.7664e1239e000p-2, 0x1.0c4fb6aeb27afp-44}},
    {1.43359375, {-0x1.70d42e2789000p-2, -0x1.1aead337ee287p-45}},
    {1.42578125, {-0x1.6b3bb22359000p-2, -0x1.0f6257a933268p-44}},
    {1.41796875, {-0x1.659b57303e000p-2, -0x1.f281db0af8efcp-46}},
    {1.41015625, {-0x1.5ff3070a79000p-2, -0x1.e9e439f105039p-45}},
    {1.40234375, {-0x1.5a42ab0f4d000p-2, 0x1.e63af2df7ba69p-50}},
    {1.39453125, {-0x1.548a2c3add000p-2, -0x1.3167e63081cf7p-45}},
    {1.38671875, {-0x1.4ec9732600000p-2, -0x1.34d7aaf04d104p-45}},
    {1.380859375, {-0x1.4a7373ced0000p-2, 0x1.9a234ebf35449p-44}},
    {1.373046875, {-0x1.44a41b463c000p-2, -0x1.1ee28f37cf612p-44}},
    {1.365234375, {-0x1.3ecc460ef6000p-2, 0x1.6028627c1300fp-47}},
    {1.357421875, {-0x1.38ebdb38ed000p-2, -0x1.90582e67d4ca0p-45}},
    {1.3515625, {-0x1.347dd9a988000p-2, 0x1.5594dd4c58092p-45}},
    {1.34375, {-0x1.2e8e2bae12000p-2, 0x1.67b1e99b72bd8p-45}},
    {1.3359375, {-0x1.2895a13de8000p-2, -0x1.a8d7ad24c13f0p-44}},
    {1.330078125, {-0x1.241558bfd1000p-2, -0x1.00fff3228fcadp-44}},
    {1.322265625, {-0x1.1e0d0c3371000p-2, -0x1.af8f2a9b0d4a0p-44}},
    {1.31640625, {-0x1.1980d2dd42000p-2, -0x1.b7b3a7a361c9ap-45}},
    {1.30859375, {-0x1.136870293b000p-2, 0x1.d3e8499d67123p-44}},
    {1.302734375, {-0x1.0ed005f658000p-2, 0x1.2dc75285aa803p-45}},
    {1.296875, {-0x1.0a324e2739000p-2, -0x1.c6bee7ef4030ep-47}},
    {1.2890625, {-0x1.0402594b4d000p-2, -0x1.036b89ef42d7fp-48}},
    {1.283203125, {-0x1.feb0233e60000p-3, -0x1.f316e32d5e8c7p-45}},
    {1.27734375, {-0x1.f550a564b8000p-3, 0x1.323e3a09202fep-45}},
    {1.26953125, {-0x1.e8c0252aa6000p-3, 0x1.6805b80e8e6ffp-45}},
    {1.263671875, {-0x1.df46c0c722000p-3, -0x1.a5e82b0b79039p-44}},
    {1.2578125, {-0x1.d5c216b4fc000p-3, 0x1.1ba91bbca681bp-45}},
    {1.251953125, {-0x1.cc320c0176000p-3, -0x1.409039a653794p-45}},
    {1.24609375, {-0x1.c2968558c2000p-3, 0x1.cfd73dee38a40p-45}},
    {1.240234375, {-0x1.b8ef670420000p-3, -0x1.87533321788e0p-44}},
    {1.234375, {-0x1.af3c94e80c000p-3, 0x1.a4e633fcd9066p-52}},
    {1.228515625, {-0x1.a57df28244000p-3, -0x1.b99c8ca1d9abbp-44}},
    {1.22265625, {-0x1.9bb362e7e0000p-3, 0x1.1f2a8a1ce0ffcp-45}},
    {1.216796875, {-0x1.91dcc8c340000p-3, -0x1.7bc6abddeff46p-44}},
    {1.2109375, {-0x1.87fa06520c000p-3, -0x1.22120401202fcp-44}},
    {1.205078125, {-0x1.7e0afd630c000p-3, -0x1.39e7c1d8f1034p-46}},
    {1.19921875, {-0x1.740f8f5404000p-3, 0x1.0b66c99018aa1p-44}},
    {1.193359375, {-0x1.6a079d0f7a000p-3, -0x1.5a3f8448d14f5p-44}},
    {1.1875, {-0x1.5ff3070a7a000p-3, 0x1.8586f183bebf2p-44}},
    {1.181640625, {-0x1.55d1ad4232000p-3, -0x1.add94dda647e8p-44}},
    {1.177734375, {-0x1.4f099f4a24000p-3, 0x1.e9bf2fafeaf27p-44}},
    {1.171875, {-0x1.44d2b6ccb8000p-3, 0x1.70cc16135783cp-46}},
    {1.166015625, {-0x1.3a8eb2d31a000p-3, -0x1.bafb77d5d503ep-46}},
    {1.16015625, {-0x1.303d718e48000p-3, 0x1.680b5ce3ecb05p-50}},
    {1.15625, {-0x1.29552f8200000p-3, 0x1.5b967f4471dfcp-44}},
    {1.150390625, {-0x1.1eed90e2dc000p-3, -0x1.615637097648fp-46}},
    {1.14453125, {-0x1.1478584674000p-3, -0x1.563451027c750p-46}},
    {1.140625, {-0x1.0d77e7cd08000p-3, -0x1.cb2cd2ee2f482p-44}},
    {1.134765625, {-0x1.02ebb42bf4000p-3, 0x1.5a8fa5ce00e5dp-46}},
    {1.130859375, {-0x1.f7b79fec38000p-4, 0x1.10987e897ed01p-47}},
    {1.125, {-0x1.e27076e2b0000p-4, 0x1.a342c2af0003cp-45}},
    {1.12109375, {-0x1.d4313d66cc000p-4, 0x1.9454379135713p-45}},
    {1.115234375, {-0x1.beba818148000p-4, 0x1.89b78b6df1f57p-44}},
    {1.111328125, {-0x1.b05b49bee4000p-4, -0x1.ff22c18f84a5ep-47}},
    {1.10546875, {-0x1.9ab4246204000p-4, 0x1.8a64826787061p-45}},
    {1.1015625, {-0x1.8c345d6318000p-4, -0x1.b20f5acb42a66p-44}},
    {1.095703125, {-0x1.765bf23a6c000p-4, 0x1.ecbc035c4256ap-48}},
    {1.091796875, {-0x1.67bb0726ec000p-4, -0x1.f724b69ef5912p-49}},
    {1.087890625, {-0x1.590cafdf00000p-4, -0x1.c284f5722abaap-44}},
    {1.08203125, {-0x1.42edcbea64000p-4, -0x1.bc0eeea7c9acdp-46}},
    {1.078125, {-0x1.341d7961bc000p-4, -0x1.1d09299837610p-44}},
    {1.07421875, {-0x1.253f62f0a0000p-4, -0x1.416f8fb69a701p-44}},
    {1.068359375, {-0x1.0ed839b554000p-4, 0x1.901f46d48abb4p-44}},
    {1.064453125, {-0x1.ffae9119b8000p-5, -0x1.303374262c554p-45}},
    {1.060546875, {-0x1.e19070c278000p-5, 0x1.fea4664629e86p-45}},
    {1.056640625, {-0x1.c355dd0920000p-5, -0x1.f2ccc9abf8388p-45}},
    {1.05078125, {-0x1.95c830ec90000p-5, 0x1.c148297c5feb8p-45}},
    {1.046875, {-0x1.77458f6330000p-5, 0x1.181dce586af09p-44}},
    {1.04296875, {-0x1.58a5bafc90000p-5, 0x1.b2b739570ad39p-45}},
    {1.0390625, {-0x1.39e87b9fe8000p-5, -0x1.eafd480ad9015p-44}},
    {1.03515625, {-0x1.1b0d989240000p-5, 0x1.3401e9ae889bbp-44}},
    {1.029296875, {-0x1.d91a66c540000p-6, -0x1.e61f1658cfb9ap-45}},
    {1.025390625, {-0x1.9ace7551d0000p-6, 0x1.d75d97ec7c410p-45}},
    {1.021484375, {-0x1.5c45a51b90000p-6, 0x1.63bb6216d87d8p-45}},
    {1.017578125, {-0x1.1d7f7eb9f0000p-6, 0x1.4193a83fcc7a6p-46}},
    {1.013671875, {-0x1.bcf712c740000p-7, -0x1.c25e097bd9771p-46}},
    {1.009765625, {-0x1.3e7295d260000p-7, 0x1.609c1ff29a114p-45}},
    {1.005859375, {-0x1.7ee11ebd80000p-8, -0x1.749d3c2d23a07p-47}},
    {1.0, {0x0.0p+0, 0x0.0p+0}},
    {1.0, {0x0.0p+0, 0x0.0p+0}},
    {0.98828125, {0x1.82448a3880000p-7, 0x1.4554412c584e0p-44}},
    {0.98046875, {0x1.432a925980000p-6, 0x1.98139928637fep-47}},
    {0.97265625, {0x1.c63d2ec150000p-6, -0x1.5439ce030a687p-44}},
    {0.966796875, {0x1.149e3e4008000p-5, -0x1.2b98a9a4168fdp-44}},
    {0.958984375, {0x1.5715c4c040000p-5, -0x1.8888ddfc47628p-44}},
    {0.951171875, {0x1.9a187b5740000p-5, -0x1.0c22e4ec4d90dp-44}},
    {0.9453125, {0x1.ccb73cddd8000p-5, 0x1.965c36e09f5fep-44}},
    {0.9375, {0x1.08598b59e4000p-4, -0x1.7e5dd7009902cp-46}},
    {0.931640625, {0x1.2207b5c784000p-4, 0x1.49d8cfc10c7bfp-44}},
    {0.923828125, {0x1.4485e03dbc000p-4, 0x1.fad46e8d26ab7p-44}},
    {0.91796875, {0x1.5e95a4d978000p-4, 0x1.1cb7ce1d17171p-44}},
    {0.91015625, {0x1.8197e2f410000p-4, -0x1.c0fe460d20041p-44}},
    {0.904296875, {0x1.9c0c32d4d4000p-4, -0x1.ab7c09e838668p-44}},
    {0.8984375, {0x1.b6ac88dad4000p-4, 0x1.b1bdff50225c7p-44}},
    {0.892578125, {0x1.d179788218000p-4, 0x1.36433b5efbeedp-44}},
    {0.88671875, {0x1.ec739830a0000p-4, 0x1.11fcba80cdd10p-44}},
    {0.87890625, {0x1.08598b59e4000p-3, -0x1.7e5dd7009902cp-45}},
    {0.873046875, {0x1.160c8024b2000p-3, 0x1.ec2d2a9009e3dp-45}},
    {0.8671875, {0x1.23d712a49c000p-3, 0x1.00d238fd3df5cp-46}},
    {0.861328125, {0x1.31b994d3a4000p-3, 0x1.f098ee3a50810p-44}},
    {0.85546875, {0x1.3fb45a5992000p-3, 0x1.19713c0cae559p-44}},
    {0.849609375, {0x1.4dc7b897bc000p-3, 0x1.c79b60ae1ff0fp-47}},
    {0.845703125, {0x1.5737cc9018000p-3, 0x1.9baa7a6b887f6p-44}},
    {0.83984375, {0x1.6574ebe8c2000p-3, -0x1.98c1d34f0f462p-44}},
    {0.833984375, {0x1.73cb9074fe000p-3, -0x1.d66a90d0005a6p-44}},
    {0.828125, {0x1.823c16551a000p-3, 0x1.e0ddb9a631e83p-46}},
    {0.822265625, {0x1.90c6db9fcc000p-3, -0x1.935f57718d7cap-46}},
    {0.818359375, {0x1.9a8778deba000p-3, 0x1.470fa3efec390p-44}},
    {0.8125, {0x1.a93ed3c8ae000p-3, -0x1.8724350562169p-45}},
    {0.806640625, {0x1.b811730b82000p-3, 0x1.e90683b9cd768p-46}},
    {0.802734375, {0x1.c2028ab180000p-3, -0x1.92e0ee55c7ac6p-45}},
    {0.796875, {0x1.d1037f2656000p-3, -0x1.84a7e75b6f6e4p-47}},
    {0.79296875, {0x1.db13db0d48000p-3, 0x1.2806a847527e6p-44}},
    {0.787109375, {0x1.ea4449f04a000p-3, 0x1.5e91663732a36p-44}},
    {0.783203125, {0x1.f474b134e0000p-3, -0x1.bae49f1df7b5ep-44}},
    {0.77734375, {0x1.01eae5626c000p-2, 0x1.a43dcfade85aep-44}},
    {0.7734375, {0x1.07138604d6000p-2, -0x1.e76324e912b17p-44}},
    {0.76953125, {0x1.0c42d67616000p-2, 0x1.7188b163ceae9p-45}},
    {0.763671875, {0x1.14167ef367000p-2, 0x1.e0c07824daaf5p-44}},
    {0.759765625, {0x1.1956d3b9bc000p-2, 0x1.7d2f73ad1aa14p-45}},
    {0.755859375, {0x1.1e9e16788a000p-2, -0x1.82eaed3c8b65ep-44}},
    {0.75, {0x1.269621134e000p-2, -0x1.1b61f10522625p-44}},
    {0.74609375, {0x1.2bef07cdc9000p-2, 0x1.a9cfa4a5004f4p-45}},
    {0.7421875, {0x1.314f1e1d36000p-2, -0x1.8e27ad3213cb8p-45}},
    {0.73828125, {0x1.36b6776be1000p-2, 0x1.16ecdb0f177c8p-46}},
    {0.734375, {0x1.3c25277333000p-2, 0x1.83b54b606bd5cp-46}},
    {0.728515625, {0x1.44591e053a000p-2, -0x1.6e95892923d88p-47}},
};

// ln(1 + r) - r for |r| <= 2^-7; the Taylor series, whose next term is below 2^-65 of r.
constexpr double log1p_rest(double r) noexcept {
  const double s = r * r;
  const double odd = ((s * (1.0 / 9) + 1.0 / 7) * s + 1.0 / 5) * s + 1.0 / 3;
  const double even = ((s * (1.0 / 8) + 1.0 / 6) * s + 1.0 / 4) * s + 1.0 / 2;
  return s * (r * odd - even);
}

// lo may reach 2^-8 of hi. x normal and positive, not infinite: x = 2^k m with m in [0.6875, 1.375), ln x = k
// ln 2 - ln c + ln(1 + r), r = m c - 1.
constexpr double_double logarithm(double x) noexcept {
  constexpr std::uint64_t start = 0x3fe6000000000000;
  const auto bits = std::bit_cast<std::uint64_t>(x);
  const std::uint64_t above = bits - start;
  const auto k = static_cast<double>(static_cast<std::int64_t>(above) >> 52);
  const logarithm_entry entry = logarithm_table[(above >> 45) & 127];
  const std::uint64_t m_bits = bits - (above & (std::uint64_t(0xfff) << 52));
  const double m = std::bit_cast<double>(m_bits);
  const double m_hi = upper_half(m);

  // where the first part is the smaller, the sum has few digits and is exact
  const double_double r = fast_sum(m_hi * entry.reciprocal - 1, (m - m_hi) * entry.reciprocal);
  constexpr double ln2_hi = 0x1.62e42fefa3800p-1;  // a multiple of 2^-42
  constexpr double ln2_lo = 0x1.ef35793c76730p-45;
  const double_double top = fast_sum(k * ln2_hi + entry.value.hi, r.hi);
  return {top.hi, top.lo + (k * ln2_lo + entry.value.lo + r.lo) + log1p_rest(r.hi)};
}

// hi + lo + rest, each below half an ulp of the one before.
struct square_sum {
  double hi;
  double lo;
  double rest;
};

// a^2 + b^2, exactly but for the rounding of `rest`; for magnitudes whose squares do not overflow.
constexpr square_sum sum_of_squares(double a, double b) noexcept {
  const double_double aa = exact_product(a, a);
  const double_double bb = exact_product(b, b);
  const double_double top = exact_sum(aa.hi, bb.hi);
  const double_double low = exact_sum(aa.lo, bb.lo);
  const double_double middle = exact_sum(top.lo, low.hi);
  const double_double sum = fast_sum(top.hi, middle.hi);
  return {sum.hi, sum.lo, middle.lo + low.lo};
}

// ln s. Around 1 the leading parts cancel, and lo and rest carry the digits: ln s = ln hi + (lo + rest) / hi
// - lo^2 / 2, with lo / hi = lo + lo (1 - hi) / hi.
constexpr double_double logarithm(square_sum s) noexcept {
  const double_double leading = logarithm(s.hi);
  if (s.hi < 0.5 || s.hi > 2) return {leading.hi, leading.lo + s.lo / s.hi};
  const double_double sum = exact_sum(leading.hi, s.lo);
  return {sum.hi, sum.lo + (leading.lo + (s.rest + s.lo * (1 - s.hi - 0.5 * s.lo)) / s.hi)};
}

}  // namespace sigpak
