// SPDX-License-Identifier: MIT
// Coefficients of the elementary functions, highest first, fitted by scripts/elementary-fits.sollya; the
// bound beside each is the relative error of the function that it gives.
//
// Those of single precision for exponentials, logarithms, tanh, arctangent and arcsine were moved on from the
// fit by small multiples of Chebyshev polynomials until every float rounds right: one argument in 2^22 lies
// so close to a boundary between two results that the last digits of a double decide. Whoever changes them,
// or the order of the arithmetic around them, runs tests/elementwise/exhaustive_single.
#pragma once

namespace sigpak::SIGPAK_LEVEL {
namespace {

// |x| <= pi/4: sin x = x + x z S(z), z = x^2; 2^-56
constexpr double sine_terms[] = {0x1.5e0f5b038162cp-33,  -0x1.ae601abfcaec3p-26, 0x1.71de37abab66fp-19,
                                 -0x1.a01a019e9c7bbp-13, 0x1.1111111110c71p-7,   -0x1.5555555555555p-3};

// the same for sin x = x + x z (S(z) - 1/8), which rounds less
constexpr double lifted_sine_terms[] = {0x1.5e0f5b038162cp-33, -0x1.ae601abfcaec3p-26,
                                        0x1.71de37abab66fp-19, -0x1.a01a019e9c7bbp-13,
                                        0x1.1111111110c71p-7,  -0x1.5555555555554p-5};

// |x| <= pi/4: cos x = 1 - z / 2 + z^2 C(z); 2^-61
constexpr double cosine_terms[] = {-0x1.90723be93fac3p-37, 0x1.1eeb5614f1114p-29,  -0x1.27e4fa01485d2p-22,
                                   0x1.a01a019f3712bp-16,  -0x1.6c16c16c168c6p-10, 0x1.5555555555555p-5};

// |x| <= pi/2: sin x = x + x z S(z); 2^-51
constexpr double sine_single_terms[] = {
    -0x1.a0f3dd4ce1944p-41, 0x1.60f655251eda3p-33, -0x1.ae63baaa48569p-26, 0x1.71de39460148ap-19,
    -0x1.a01a019e567fbp-13, 0x1.111111110ff63p-7,  -0x1.555555555554ep-3};

// The same for the cosine, its last digits moved until every float is rounded right.
constexpr double cosine_single_terms[] = {
    -0x1.a0f3dd4ce1944p-41, 0x1.60f655251eda3p-33, -0x1.ae63baaa48569p-26, 0x1.71de3946090a8p-19,
    -0x1.a01a019e56806p-13, 0x1.111111110ff7cp-7,  -0x1.5555555555554p-3};

// |x| <= pi/2: sin x = x (1 + z S(z)); 2^-42
constexpr double sine_quick_terms[] = {0x1.54d28b72754d1p-33,  -0x1.ae1fca689b425p-26, 0x1.71dd89c48f7fbp-19,
                                       -0x1.a01a000394555p-13, 0x1.1111110faf3a9p-7,   -0x1.55555555548f8p-3};

// |x| <= pi/4; 2^-46
constexpr double sine_quarter_single_terms[] = {-0x1.aa24b5f227855p-26, 0x1.71d9a1a010508p-19,
                                                -0x1.a019fd8f563bep-13, 0x1.1111110fce70fp-7,
                                                -0x1.5555555555153p-3};

// |x| <= pi/4; 2^-50
constexpr double cosine_quarter_single_terms[] = {0x1.1c7ffb148c55cp-29, -0x1.27e25b420617p-22,
                                                  0x1.a019ff4df8c7dp-16, -0x1.6c16c16b5ec4cp-10,
                                                  0x1.5555555555431p-5};

// |x| <= ln 2 / 16: e^x = 1 + x + x^2 E(x); 2^-56
constexpr double exponential_terms[] = {0x1.a01b607a921fep-13, 0x1.6c1b728fabcf4p-10, 0x1.11111114cce55p-7,
                                        0x1.5555554e91219p-5,  0x1.555555555549ap-3,  0x1.000000000002ep-1};

// the same; 2^-47
constexpr double exponential_single_terms[] = {0x1.6c44df93e563p-10, 0x1.1115336ca8f3ep-7,
                                               0x1.5555547290928p-5, 0x1.5555554b11e92p-3,
                                               0x1.0000000001cc4p-1};

// |x| <= ln 2 / 256: e^x = 1 + x E(x); 2^-40
constexpr double exponential_quick_terms[] = {0x1.55555555d4d62p-3, 0x1.000007b3c7ee3p-1,
                                              0x1.00000000002f7p+0};

// |x| <= ln 2 / (2 entries): e^x = 1 + x + x^2 E(x) in floats, for tables of 8 and of 32; 2^-39 and 2^-41.
// But the last of them is below 1/2 by what roundings may be of x^2, so that the sum is a lower bound, and
// the upper one is that much above the exact sum.
template <int entries> constexpr float power_pair_terms[1] = {};
template <>
constexpr float power_pair_terms<8>[] = {0x1.10f94ep-7F, 0x1.5559e6p-5F, 0x1.555556p-3F, 0x1.fffff4p-2F};
template <> constexpr float power_pair_terms<32>[] = {0x1.5555a6p-5F, 0x1.5555b8p-3F, 0x1.fffff4p-2F};
constexpr float power_pair_error = 0x1.8p-22F;

// ln(1 + f) = 2 s + s z L(z), s = f / (2 + f), z = s^2, 1 + f in [sqrt(1/2), sqrt 2]; 2^-58
constexpr double logarithm_terms[] = {0x1.2b5abd7efaac3p-3, 0x1.39fe311fa9809p-3, 0x1.7462b5e9116a8p-3,
                                      0x1.c71c62e251b08p-3, 0x1.2492492df1d4cp-2, 0x1.999999999530cp-2,
                                      0x1.5555555555558p-1};

// the same; 2^-48
constexpr double logarithm_single_terms[] = {0x1.57717cbf5f9dbp-3, 0x1.734feb63ac1ebp-3,
                                             0x1.c720db4d79b01p-3, 0x1.2492457b7850ap-2,
                                             0x1.9999999a564b6p-2, 0x1.5555555555112p-1};

// the same; 2^-35.8
constexpr double logarithm_quick_terms[] = {0x1.ddd3b239f3763p-3, 0x1.245c29b3c75f6p-2, 0x1.9999eba2786c3p-2,
                                            0x1.5555554ba41f4p-1};

// -1/32 <= r <= 1/16: ln(1 + r) = r + r^2 L(r); 2^-39
constexpr double logarithm_short_terms[] = {0x1.0e675365cd22ap-3, -0x1.55474fe9dceafp-3,
                                            0x1.99a18716c0ae3p-3, -0x1.00000905b35a2p-2,
                                            0x1.55555504f6f95p-2, -0x1.ffffffffb5586p-2};

// |t| <= 1/2: atan t = t + t z A(z), z = t^2; 2^-55
constexpr double arctangent_terms[] = {0x1.6e0c62b0be865p-7,  -0x1.dac75191c1949p-6, 0x1.5f07b93c5aa46p-5,
                                       -0x1.a68b256f3482ep-5, 0x1.e0977573ec066p-5,  -0x1.110048a456fafp-4,
                                       0x1.3b128efe6bca3p-4,  -0x1.745d0ac1df2f2p-4, 0x1.c71c71752b277p-4,
                                       -0x1.249249240709ap-3, 0x1.9999999998dfp-3,   -0x1.5555555555554p-2};

// |t| <= tan(pi/8), the same; 2^-47
constexpr double arctangent_single_terms[] = {
    -0x1.bdfbd95f77eb6p-6, 0x1.a7336d2e5ec65p-5,  -0x1.0c443fb5ac731p-4,
    0x1.3a9a400e6c5efp-4,  -0x1.7455dcc5c55b1p-4, 0x1.c71c328ce6336p-4,
    -0x1.2492489799352p-3, 0x1.999999989deb8p-3,  -0x1.5555555554f97p-2};

// |t| <= 1/2: asin t = t + t z A(z), z = t^2; 2^-58
constexpr double arcsine_terms[] = {0x1.da67239b4f9dfp-6, -0x1.f07d5fcb7a0f8p-7, 0x1.205de9daa89b4p-6,
                                    0x1.60a48f48e715dp-8, 0x1.52df0b1422609p-7,  0x1.780cd84b0090ep-7,
                                    0x1.c9d1cec712103p-7, 0x1.1c4d1bfa15fd1p-6,  0x1.6e8bb2fe208p-6,
                                    0x1.f1c71c14da185p-6, 0x1.6db6db6e4397bp-5,  0x1.3333333332dcdp-4,
                                    0x1.5555555555556p-3};

// the same; 2^-44
constexpr double arcsine_single_terms[] = {0x1.cb30e37fd56cap-6, -0x1.9375c3f9ecb97p-9, 0x1.01cfcd407fe34p-6,
                                           0x1.afc45ee69c7e2p-7, 0x1.1dc56ec1cf37bp-6,  0x1.6e728dd2d1374p-6,
                                           0x1.f1c80857e1cacp-6, 0x1.6db6d96bcc84ap-5,  0x1.3333333477519p-4,
                                           0x1.555555555541bp-3};

// |t| <= 0.021: atan t = t + t z A(z), and |t| <= 0.008: asin t alike, by their power series; 2^-47 and 2^-46
constexpr double arctangent_quick_terms[] = {-0x1.2492492492492p-3, 0x1.999999999999ap-3,
                                             -0x1.5555555555555p-2};
constexpr double arcsine_quick_terms[] = {0x1.3333333333333p-4, 0x1.5555555555555p-3};

// In floats for tables of 8 and of 32, |t| <= 0.1724 and 0.0567: atan t = t + t z A(z), within 2^-36 and
// 2^-34; the errors of a sum with an angle, over z.
template <int entries> constexpr float arctangent_pair_terms[1] = {};
template <>
constexpr float arctangent_pair_terms<8>[] = {0x1.c08ad6p-4F, -0x1.24c2c6p-3F, 0x1.999ac6p-3F,
                                              -0x1.555556p-2F};
template <> constexpr float arctangent_pair_terms<32>[] = {0x1.98a62cp-3F, -0x1.555548p-2F};
template <int entries> constexpr float arctangent_pair_error = entries == 8 ? 0x1p-25F : 0x1.4p-26F;

// The same of the arcsine, |t| <= 0.157 and 0.0336; 2^-38 and 2^-41.
template <int entries> constexpr float arcsine_pair_terms[1] = {};
template <>
constexpr float arcsine_pair_terms<8>[] = {0x1.d1f53ap-6F, 0x1.6ea80ap-5F, 0x1.333194p-4F, 0x1.555556p-3F};
template <> constexpr float arcsine_pair_terms<32>[] = {0x1.336b92p-4F, 0x1.555554p-3F};
template <int entries> constexpr float arcsine_pair_error = entries == 8 ? 0x1.4p-27F : 0x1p-28F;

// |x| <= 0.55: tanh x = x + x z P(z); 2^-62
constexpr double tanh_terms[] = {0x1.a26629d65b57ap-18,  -0x1.02e3c5157fc54p-15, 0x1.837c4c689c62fp-14,
                                 -0x1.f225fd26c6918p-13, 0x1.35259956edd89p-11,  -0x1.7d9f579002c81p-10,
                                 0x1.d6d3990e247d2p-9,   -0x1.226e34631cd28p-7,  0x1.664f487d49cedp-6,
                                 -0x1.ba1ba1ba0a91ap-5,  0x1.111111111104bp-3,   -0x1.5555555555555p-2};

// |x| <= 1/2: sinh x = x + x z S(z); 2^-62
constexpr double sinh_terms[] = {0x1.645500821bf55p-33, 0x1.ae60faa64a746p-26, 0x1.71de3bd757e7p-19,
                                 0x1.a01a019f7adb3p-13, 0x1.11111111112c7p-7,  0x1.5555555555555p-3};

// the same; 2^-54
constexpr double sinh_single_terms[] = {0x1.b01e10f66f289p-26, 0x1.71dd794ebece1p-19, 0x1.a01a01e4db958p-13,
                                        0x1.1111111108859p-7, 0x1.555555555556p-3};

// |x| <= 0.55; 2^-48
constexpr double tanh_single_terms[] = {-0x1.27d2558cc0c78p-13, 0x1.1b1fecf91256p-11,  -0x1.79d529d6421fap-10,
                                        0x1.d67f861b836fep-9,   -0x1.226c0a8eac0acp-7, 0x1.664f385f737f7p-6,
                                        -0x1.ba1ba17da8e2dp-5,  0x1.11111110e570ap-3,  -0x1.55555555554bcp-2};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
