// SPDX-License-Identifier: MIT
// Records at the end of what a count can say: what would need more ends in -1, and nothing is touched.
#include <sys/mman.h>

#include "support/calls.h"
#include "support/failing.h"

namespace sigpak::test {
namespace {

constexpr std::uint32_t most = 0x7fffffff;

// Addresses for the largest record, none of which may be read or written.
class fenced_room {
 public:
  fenced_room()
      : start_(mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {}
  ~fenced_room() { munmap(start_, bytes); }
  fenced_room(const fenced_room&) = delete;
  fenced_room& operator=(const fenced_room&) = delete;
  bool stands() const { return start_ != MAP_FAILED; }
  template <record V> V lent(std::uint32_t points, bool complex) const {
    return {1, static_cast<scalar<V>*>(start_), 0, points, complex ? 1 : 0, 0};
  }

 private:
  static constexpr std::size_t bytes = std::size_t{1} << 35;
  void* start_;
};

template <record V> struct huge_case {
  const char* name;
  std::vector<std::pair<std::uint32_t, bool>> shapes;  // points, and whether they are complex
  std::int32_t (*run)(V* v, V* out);
};

template <record V> std::vector<huge_case<V>> huge_cases() {
  static scalar<V> tap_values[3] = {1, 1, 1};
  static V taps{scalar<V>(0.5), tap_values, 0, 3, 0, 0};
  constexpr std::uint32_t half = 1U << 30;
  constexpr std::uint32_t negative = 0xffffffff;
  return {
      {"append", {{half, false}, {most, true}}, [](V* v, V*) { return TWIN(_append)(v, v); }},
      {"rtoc", {{half, false}, {most, false}, {negative, false}}, [](V* v, V*) { return TWIN(i_rtoc)(v); }},
      {"copy", {{most, true}, {most, false}}, [](V* v, V* out) { return TWIN(_copy)(out, v); }},
      {"zinter", {{half, false}, {most, true}}, [](V* v, V*) { return TWIN(i_zinter)(v); }},
      {"inter", {{half, false}, {most, true}}, [](V* v, V* out) { return TWIN(b_inter)(v, v, out); }},
      {"ritoc", {{most, false}}, [](V* v, V* out) { return TWIN(b_ritoc)(v, v, out); }},
      {"add", {{most, true}}, [](V* v, V* out) { return TWIN(b_add)(v, v, out); }},
      {"mul", {{most, false}}, [](V* v, V* out) { return TWIN(b_mul)(v, v, out); }},
      {"fir",
       {{most, false}, {most, true}, {negative, false}},
       [](V* v, V* out) { return TWIN(d_fir)(v, out, &taps, nullptr); }},
      {"sfir", {{most, true}}, [](V* v, V* out) { return TWIN(d_sfir)(v, out, &taps, 1, 0, nullptr); }},
      {"deci", {{most, true}}, [](V* v, V* out) { return TWIN(d_deci)(v, out, 3, nullptr); }},
      {"rsmp",
       {{most, false}, {most, true}},
       [](V* v, V* out) { return TWIN(d_rsmp)(v, out, &taps, 1 << 24, 1, nullptr); }},
      {"rsmp2",
       {{most, false}},
       [](V* v, V* out) { return TWIN(d_rsmp2)(v, out, &taps, nullptr, 1e-9, nullptr); }},
      {"corr", {{most, false}, {most, true}}, [](V* v, V* out) { return TWIN(b_corr)(v, v, out, -1, 0); }},
      {"dft", {{most, false}}, [](V* v, V*) { return TWIN(i_dft)(v, 0); }},
      {"rdft", {{most, false}}, [](V* v, V*) { return TWIN(i_rdft)(v); }},
      {"analytic", {{most, false}}, [](V* v, V*) { return TWIN(i_analytic)(v); }},
      {"window", {{most, false}}, [](V* v, V*) { return TWIN(i_window)(v, DSP_WINDOW_HANN, 0); }},
      {"mag", {{most, true}}, [](V* v, V* out) { return TWIN(u_mag)(v, out); }},
      {"cos",
       {{most, false}, {most, true}, {0x80000000U, false}},
       [](V* v, V*) { return TWIN(c_cos)(v, scalar<V>(0.1), 0); }},
      {"line", {{most, true}}, [](V* v, V*) { return TWIN(c_line)(v, 1, 0); }},
      {"rand", {{half, true}}, [](V* v, V*) { return TWIN(c_rand)(v, 0); }},
      {"fir taps",
       {{most, false}},
       [](V* v, V*) { return TWIN(c_fir)(v, DSP_FIR_LOW_PASS, scalar<V>(0.1), 0); }},
      {"rsmp taps",
       {{1, false}},
       [](V* v, V*) { return TWIN(c_rsmp_cos)(v, 1 << 24, 1 << 30, scalar<V>(0.5)); }},
      {"alloc", {{most, true}, {0x80000000U, false}, {negative, true}}, [](V* v, V*) {
         return TWIN(_alloc)(v);
       }}};
}

template <class V> class Sizes : public testing::Test {};
TYPED_TEST_SUITE(Sizes, records, record_names);

TYPED_TEST(Sizes, BeyondWhatCanBeHadAreRefusedBeforeAnythingIsTouched) {
  using V = TypeParam;
  const fenced_room room;
  if (!room.stands()) GTEST_SKIP() << "no addresses for a record of 2^31 points";
  for (const auto& [name, shapes, run] : huge_cases<V>()) {
    for (const auto& [points, complex] : shapes) {
      SCOPED_TRACE(testing::Message() << name << ' ' << points << (complex ? " complex" : " real"));
      V v = room.template lent<V>(points, complex);
      V out{};
      {
        const failing_memory refusing({.first = 0});
        EXPECT_EQ(run(&v, &out), -1);
        EXPECT_LE(refusing.largest<V>(), index{most}) << "asked for";
      }
      EXPECT_TRUE(v.alloc == 0 && out.alloc == 0 && out.data == nullptr);
      EXPECT_EQ(TWIN(_destroy)(&v), 0);
    }
  }
}

// Counts that read as negative are no points, to every operation.
TYPED_TEST(Sizes, ThatReadAsNegativeAreNoPoints) {
  using V = TypeParam;
  const small_machine limited;
  each_fitting_call<V>(20, 3, [](const exported& op, place<V>& at, const arguments& given) {
    for (const std::uint32_t points : {0x80000000U, 0xffffffffU}) {
      for (std::size_t i = 0; i < place<V>::count; ++i) at.at(i)->points = points;
      op.call(at, given);
      EXPECT_EQ(at.settle(), nullptr) << op.name << ' ' << points;
    }
  });
}

}  // namespace
}  // namespace sigpak::test
