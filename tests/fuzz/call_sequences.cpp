// SPDX-License-Identifier: MIT
// Any bytes as calls of any operations, one after the other, on a few records: in any order, with records
// that are each other's operands, lent or odd, and memory that is refused. Both precisions agree in status
// and shape.
#include "fuzz/target.h"
#include "support/calls.h"
#include "support/failing.h"

namespace {

using namespace sigpak;
using namespace sigpak::test;

constexpr std::size_t most_bytes = std::size_t{1} << 15;
constexpr int most_calls = 12;

// Their status, or how many points they leave, lies in values that the precisions round differently:
// crossings, roots that are found or count as real, places of peaks, sums that overflow, starts in a state,
// knots that rise, means of windows, times.
constexpr std::string_view by_value[] = {"dspi_edge",    "dspi_proots", "dsps_proots",     "dsps_psolve",
                                         "dsps_pcsolve", "dsps_peak",   "dspc_fir",        "dspi_window_cos",
                                         "dspd_deci",    "dsp_cspline", "dspb_cspline_2d", "dsp_interp",
                                         "dsph_fft",     "dsph_dft",    "dspd_rsmp2"};

bool depends_on_values(const exported& op) {
  return std::any_of(std::begin(by_value), std::end(by_value),
                     [&](std::string_view name) { return op.is(name); });
}

struct scene {
  failing_memory memory;
  place<dsp_vec> doubles;
  place<dspf_vec> floats;

  // Whether the records of a call have the same shape in both precisions; with states, which each keeps in
  // its own way, too.
  bool alike(const exported& op, const arguments& a, bool states) {
    for (std::size_t i = 0; i < most_arguments && op.parameters[i] != nullptr; ++i) {
      const dsp_vec* const v = doubles.at(a[i].record);
      const dspf_vec* const w = floats.at(a[i].record);
      const bool same = v->points == w->points && (v->complex != 0) == (w->complex != 0);
      if (!same && (states || !is_state(op.parameters[i]))) return false;
    }
    return true;
  }

  void settle() {
    for (const char* const fault : {doubles.settle(), floats.settle()}) require(fault == nullptr, fault);
  }

  // What led to a fault, with SIGPAK_FUZZ_TRACE set.
  void tell(const exported& op, const arguments& a) {
    std::fprintf(stderr, "%s", op.name);
    for (std::size_t i = 0; i < most_arguments && op.parameters[i] != nullptr; ++i) {
      const dsp_vec& v = *doubles.at(a[i].record);
      std::fprintf(stderr, "  %s: %d%s (%d %s, alloc %d, delta %g) %g %d;", op.parameters[i], a[i].record,
                   a[i].missing ? " null" : "", static_cast<std::int32_t>(v.points),
                   v.complex != 0 ? "points" : "reals", v.alloc, v.delta, a[i].number, a[i].integer);
    }
    std::fprintf(stderr, "\n");
  }

  void call(const exported& op, choices& from) {
    static const bool traced = std::getenv("SIGPAK_FUZZ_TRACE") != nullptr;
    const arguments a = chosen_arguments(op, from);
    if (traced) tell(op, a);
    const bool both = alike(op, a, true);
    const long refused = failing_memory::refused();
    if (!prepare(op, a, doubles) || !prepare(op, a, floats)) return settle();
    const status first = op.call(doubles, a);
    const status second = op.call(floats, a);
    if (traced)
      std::fprintf(stderr, "    %d %d, %ld refused\n", first, second, failing_memory::refused() - refused);
    settle();
    if (!both || refused != failing_memory::refused() || depends_on_values(op)) return;
    require(first == second && alike(op, a, false), op.name);
  }

  void make(std::size_t i, const recipe& r) {
    doubles.make(i, r);
    floats.make(i, r);
  }

  void resize(choices& from) {
    const std::size_t i = from.below(place<dsp_vec>::count);
    const recipe shape = chosen_recipe(from);
    doubles.resize(i, shape.points, shape.complex, shape.seed % 2 != 0);
    floats.resize(i, shape.points, shape.complex, shape.seed % 2 != 0);
    settle();
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static scene s;
  choices from(data, size);
  s.memory.refuse({.most_bytes = most_bytes});
  for (int calls = 0; from.any() && calls < most_calls;) {
    const std::uint8_t what = from.byte();
    if (what < 96) {
      s.make(what % place<dsp_vec>::count, chosen_recipe(from));
    } else if (what < 100) {
      s.resize(from);
    } else if (what < 104) {
      const long first = from.byte();
      s.memory.refuse({.first = first, .last = what % 2 != 0 ? first : LONG_MAX, .most_bytes = most_bytes});
    } else {
      s.call(export_at(from.below(256) % export_count()), from), ++calls;
    }
  }
  s.memory.refuse({.most_bytes = most_bytes});
  s.doubles.clear();
  s.floats.clear();
  return 0;
}
