// SPDX-License-Identifier: MIT
// The windows of the catalogue: names, shapes, and where their digits come from.
#include "windows/catalogue.h"

#include <iterator>

namespace sigpak {
namespace {

using enum window_kind;

// Hann, Hamming and Blackman are the textbook ones (F. J. Harris, "On the use of windows for harmonic
// analysis with the DFT", Proc. IEEE 66, 1978). The Blackman-Harris windows are the three-term minimum
// side-lobe window and the four-term window with continuous first derivative of A. H. Nuttall, "Some windows
// with very good sidelobe behavior", IEEE Trans. ASSP 29, 1981. The five terms of Gausstop extend the family
// of minimum side lobes. The rest are flat tops, which trade width for a main lobe without scalloping; G.
// Heinzel, A. Ruediger, R. Schilling, "Spectrum and spectral density estimation by the DFT", MPI fuer
// Gravitationsphysik, 2002, compare such windows. In a flat top's first set the leading term is slightly
// below 1, which centres the ripple of its main lobe on 1.
//
// The three sets of a window are stored, not derived from one another: they are rounded apart, and their last
// digits are part of the catalogue.
//
// The side lobes of KaiserNN stay below -NN dB, those of GaussNN likewise.
constexpr catalogued_window windows[] = {
    {.window = DSP_WINDOW_UNIFORM,
     .names = {"Uniform", "Rectangular", "None", "P000"},
     .kind = constant,
     .terms = 1,
     .sets = {{1.0}, {1.0}, {1.0}}},
    {.window = DSP_WINDOW_TRIANGULAR, .names = {"Bartlett", "Triangular"}, .kind = triangle},
    {.window = DSP_WINDOW_HANN,
     .names = {"Hann", "P110"},
     .kind = cosine_sum,
     .terms = 2,
     .sets = {{1.0, 1.0}, {0.816496580927726, 0.816496580927726}, {0.5, 0.5}}},
    {.window = DSP_WINDOW_HAMMING,
     .names = {"Hamming", "P100"},
     .kind = cosine_sum,
     .terms = 2,
     .sets = {{1.0, 0.8518518518518519}, {0.8566034682170329, 0.729699250703398}, {0.54, 0.46}}},
    {.window = DSP_WINDOW_BLACKMAN,
     .names = {"Blackman"},
     .kind = cosine_sum,
     .terms = 3,
     .sets = {{1.0, 1.1904761904761905, 0.19047619047619047},
              {0.76099944650684, 0.905951722031952, 0.144952275525112},
              {0.42, 0.5, 0.08}}},
    {.window = DSP_WINDOW_BLACKMAN_HARRIS3,
     .names = {"Blackman_Harris3", "P200"},
     .kind = cosine_sum,
     .terms = 3,
     .sets = {{1.0, 1.171912, 0.184449},
              {0.766131803818887, 0.897839054477, 0.14131224508259},
              {0.424383190860823, 0.497339753968089, 0.078277055171088}}},
    {.window = DSP_WINDOW_BLACKMAN_HARRIS4,
     .names = {"Blackman_Harris4", "P310", "Lowleak"},
     .kind = cosine_sum,
     .terms = 4,
     .sets = {{1.0, 1.36998268534551, 0.405410267365249, 0.0354275820197432},
              {0.703382979783909, 0.963622503470687, 0.28515868189436, 0.0249191582075858},
              {0.355768, 0.487396, 0.144232, 0.012604}}},
    {.window = DSP_WINDOW_GAUSSTOP,
     .names = {"Gausstop", "P400"},
     .kind = cosine_sum,
     .terms = 5,
     .sets = {{1.0, 1.45875529058, 0.543087184, 0.08816718498, 0.00390252806},
              {0.67186010909274, 0.98007948866869, 0.364878614689109, 0.0592360145190626,
               0.00262195292812908},
              {0.3232153788984078, 0.47149214396487166, 0.1755341299514293, 0.028496990099716707,
               0.0012613570855745683}}},
    {.window = DSP_WINDOW_FLAT4,
     .names = {"Flat4", "P301"},
     .kind = cosine_sum,
     .terms = 4,
     .sets = {{0.9994484, 1.911456, 1.078578, 0.183162},
              {0.540110737248871, 1.03296769435899, 0.582873071546678, 0.0989823615265958},
              {0.239523981482822, 0.458092235226179, 0.258487878813733, 0.0438959044772663}}},
    {.window = DSP_WINDOW_FLATTOP,
     .names = {"Flattop", "Flat5", "P401"},
     .kind = cosine_sum,
     .terms = 5,
     .sets = {{0.9996403, 1.940411, 1.3079112, 0.4038558, 0.0350962},
              {0.511503346408074, 0.992883860231563, 0.669241681837557, 0.206647924424725,
               0.0179582833407247},
              {0.213283237831627, 0.414006058783449, 0.279055911943774, 0.0861666667911267,
               0.00748812465002295}}},
    {.window = DSP_WINDOW_FLAT6,
     .names = {"Flat6", "P511"},
     .kind = cosine_sum,
     .terms = 6,
     .sets = {{0.999760855, 1.959279864368, 1.482207318028, 0.639636244612, 0.1236443547086,
               0.00669641875546},
              {0.486122572817733, 0.952677996716077, 0.720706788313935, 0.311015994818339, 0.0601206893875967,
               0.00325605898429494},
              {0.191847568346755, 0.375972989750395, 0.28442588877861, 0.122742011293553, 0.0237265428747444,
               0.00128499895594193}}},
    {.window = DSP_WINDOW_FLAT7,
     .names = {"Flat7", "P611"},
     .kind = cosine_sum,
     .terms = 7,
     .sets = {{0.999820406, 1.968927018592, 1.58314833527, 0.813811630104, 0.226727679792, 0.0278660778114,
               0.000908305448086},
              {0.468805828779846, 0.923210265782527, 0.742322484061889, 0.381588166666788, 0.106310350533314,
               0.013066126301104, 0.000425895376629477},
              {0.177865709213752, 0.350267506494545, 0.281638382006947, 0.144775183509154, 0.0403343233670632,
               0.00495730999606168, 0.000161585412477099}}},
    {.window = DSP_WINDOW_P501,
     .names = {"P501"},
     .kind = cosine_sum,
     .terms = 6,
     .sets = {{0.99974762, 1.95719157697, 1.462421292406, 0.611433912448, 0.11186507767, 0.00553658087878},
              {0.489148752531658, 0.957599497301472, 0.715522134332392, 0.299157636933899, 0.0547324765765759,
               0.00270889530114197},
              {0.194193773561842, 0.380170365312055, 0.284064801584131, 0.118766633064811, 0.0217289855238924,
               0.00107544095326841}}},
    {.window = DSP_WINDOW_P601,
     .names = {"P601"},
     .kind = cosine_sum,
     .terms = 7,
     .sets = {{0.999813874, 1.967871907162, 1.57208459675, 0.79456597081, 0.21505509556, 0.0252934034374,
               0.00076928806393},
              {0.470756142359013, 0.926560244624348, 0.740206251856888, 0.374116444065528, 0.101257353806709,
               0.0119092416488318, 0.000362214498874338},
              {0.179324203849725, 0.352952756714861, 0.281965299769994, 0.142511435204976, 0.0385717630030842,
               0.0045365638065367, 0.00013797765082358}}},
    {.window = DSP_WINDOW_KAISER70, .names = {"Kaiser70"}, .kind = kaiser, .parameter = 9.473960131326246},
    {.window = DSP_WINDOW_KAISER80, .names = {"Kaiser80"}, .kind = kaiser, .parameter = 10.751776690564654},
    {.window = DSP_WINDOW_KAISER90, .names = {"Kaiser90"}, .kind = kaiser, .parameter = 12.014077292090791},
    {.window = DSP_WINDOW_KAISER100, .names = {"Kaiser100"}, .kind = kaiser, .parameter = 13.264372446115681},
    {.window = DSP_WINDOW_KAISER110, .names = {"Kaiser110"}, .kind = kaiser, .parameter = 14.505082414495599},
    {.window = DSP_WINDOW_KAISER120, .names = {"Kaiser120"}, .kind = kaiser, .parameter = 15.73795091271457},
    {.window = DSP_WINDOW_GAUSS60, .names = {"Gauss60"}, .kind = gaussian, .parameter = 0.1583722},
    {.window = DSP_WINDOW_GAUSS70, .names = {"Gauss70"}, .kind = gaussian, .parameter = 0.1442161},
    {.window = DSP_WINDOW_GAUSS80, .names = {"Gauss80"}, .kind = gaussian, .parameter = 0.1328102},
    {.window = DSP_WINDOW_RIEMANN, .names = {"Riemann", "Sinc_Lobe"}, .kind = sinc_lobe},
};

constexpr bool in_order() noexcept {
  int number = 0;
  for (const catalogued_window& w : windows) {
    if (w.window != number++) return false;
  }
  return true;
}
static_assert(in_order(), "a window is found by its number");

}  // namespace

std::span<const catalogued_window> window_catalogue() noexcept { return windows; }

const catalogued_window* find_window(int window) noexcept {
  return window >= 0 && window < static_cast<int>(std::size(windows)) ? &windows[window] : nullptr;
}

}  // namespace sigpak
