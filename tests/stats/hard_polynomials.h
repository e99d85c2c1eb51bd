// Polynomials that are hard for their degree, coefficients in ascending order as stored in double, and the
// roots of just these coefficients, computed with 30 digits; of a pair of conjugates the upper one.
#pragma once

#include <complex>
#include <vector>

namespace sigpak::test::reference {

struct hard_polynomial {
  const char* name;
  std::vector<double> coefficients;
  std::vector<std::complex<double>> roots;
};

// Coefficients of the monic polynomial with these roots.
inline std::vector<double> expanded(const std::vector<std::complex<double>>& roots) {
  std::vector<std::complex<long double>> a{1};
  for (const auto r : roots) {
    a.insert(a.begin(), 0);
    for (std::size_t k = 0; k + 1 < a.size(); ++k) a[k] -= std::complex<long double>(r) * a[k + 1];
  }
  std::vector<double> out;
  for (const auto c : a) out.push_back(static_cast<double>(c.real()));
  return out;
}

// The product of low + 1 ... high; exact where it is needed here, as are the sums that make up `expanded`.
inline long double product(int low, int high) {
  long double p = 1;
  for (int k = low + 1; k <= high; ++k) p *= k;
  return p;
}

inline std::vector<double> wilkinson() {
  std::vector<std::complex<double>> roots;
  for (int k = 1; k <= 20; ++k) roots.emplace_back(k);
  return expanded(roots);
}

// 20! L20(x) = sum of (-1)^k 20! / k! C(20, k) x^k
inline std::vector<double> laguerre() {
  std::vector<double> a;
  for (int k = 0; k <= 20; ++k) {
    const long double c = product(k, 20) * (product(k, 20) / product(0, 20 - k));
    a.push_back(static_cast<double>(k % 2 == 0 ? c : -c));
  }
  return a;
}

// P20(x) = 2^-20 sum of (-1)^k C(20, k) C(40 - 2k, 20) x^(20 - 2k)
inline std::vector<double> legendre() {
  std::vector<double> a(21);
  for (int k = 0; k <= 10; ++k) {
    const long double c =
        product(20 - k, 20) / product(0, k) * (product(20 - 2 * k, 40 - 2 * k) / product(0, 20));
    a[static_cast<std::size_t>(20 - 2 * k)] = static_cast<double>((k % 2 == 0 ? c : -c) * 0x1p-20L);
  }
  return a;
}

inline const std::vector<hard_polynomial>& hard_polynomials() {
  static const std::vector<hard_polynomial> all{
      {"Wilkinson",
       wilkinson(),
       {1.0000000000000013, 2.0000000000009597, 2.9999999998663998, 4.000000004959441,  4.9999999147341425,
        6.000000845716607,  6.999994555448452,  8.000024432568939,  8.999920011868348,  10.000196964905369,
        10.999628430240644, 12.000543743635912, 12.999380734557898, 14.0005479886738,   14.999626582170547,
        16.000192083038474, 16.99992773461773,  18.00001875170604,  18.999996997743892, 20.0000002235464}},
      {"Laguerre",
       laguerre(),
       {0.07053988969198875, 0.37212681800161135, 0.9165821024832783, 1.707306531028283,  2.7491992553097813,
        4.048925313849736,   5.615174970864115,   7.459017453667211,  9.594392869585509,  12.038802546960463,
        14.814293442633343,  17.948895520518008,  21.478788240285567, 25.451702793186733, 29.932554631700654,
        35.01343424047899,   40.83305705672857,   47.6199940473465,   55.810795750063896, 66.52441652561575}},
      {"Legendre",
       legendre(),
       {-0.9931285991850949,  -0.9639719272779138,  -0.912234428251326,  -0.8391169718222188,
        -0.7463319064601508,  -0.636053680726515,   -0.5108670019508271, -0.37370608871541955,
        -0.22778585114164507, -0.07652652113349734, 0.07652652113349734, 0.22778585114164507,
        0.37370608871541955,  0.5108670019508271,   0.636053680726515,   0.7463319064601508,
        0.8391169718222188,   0.912234428251326,    0.9639719272779138,  0.9931285991850949}},
      // clang-format off
      {"Curtz",
       {0.047619047619047616, -0.3426418721089221, 1.6210810566673306, -6.046127488615234,
        18.87883404999133, -50.732774592627024, 119.03293759222531, -245.698590761519, 447.6844646497315,
        -720.3699166140573, 1021.5629481509039, -1271.174826388889, 1378.5091272597, -1290.179398148148,
        1028.197833994709, -684.8333333333334, 371.2611111111111, -157.5, 49.083333333333336, -10.0, 1.0},
       {{-0.1761140089730377, 0.416051945876908}, {-0.1027719911420992, 0.5888544760331226},
        {0.0343666077009653, 0.7188713443492339}, {0.2131659581215492, 0.7969099881289528},
        {0.41435070636237475, 0.8162191539678828}, {0.6189665546386539, 0.7744230292511939},
        {0.808794231625476, 0.6739991091151355}, {0.9673901832438682, 0.5221569220465692},
        {1.0812165889973822, 0.3302770528101429}, {1.1406351694248675, 0.1129936215207297}}},
      {"Sendra",
       {1599.1549333771477, 22573.779206639152, 151025.0537886696, 636741.4737424213, 1897410.0111574996,
        4247868.417104564, 7413551.974380594, 10328367.213291263, 11666086.392550545, 10788813.941685451,
        8213923.705366775, 5157291.506915944, 2665821.389655601, 1128275.6686002344, 387183.88924421876,
        106074.00144375, 22656.6371625, 3636.24375, 412.5375, 29.5, 1.0},
       {-2.0464048251014697, {-2.010354150286383, 0.11615623644468633},
        {-1.9306971444053223, 0.2173087232788784}, {-1.812583515329461, 0.3145416694495268},
        {-1.652895395227717, 0.38135030808109865}, {-1.4762870901072631, 0.4029160820502721},
        {-1.3021240618978225, 0.38125359433089157}, {-1.1444009038324494, 0.32106791512765254},
        {-1.016483889462733, 0.22962403407724585}, {-0.9309679800602375, 0.11826935724656444},
        -0.9000069136797538}},
      // clang-format on
  };
  return all;
}

}  // namespace sigpak::test::reference
