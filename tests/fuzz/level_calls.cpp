// SPDX-License-Identifier: MIT
// Any operation on any records, at the baseline and at the wide levels: the same bits where only sums and
// products in a given order are involved, elsewhere results that lie no farther apart than the bounds of the
// header let both of them.
#include <cmath>
#include <string>
#include <vector>

#include "core/isa.h"
#include "fuzz/target.h"
#include "support/calls.h"
#include "support/failing.h"

namespace {

using namespace sigpak;
using namespace sigpak::test;

// What the distance of two levels is measured in, u being the unit roundoff.
enum class measure {
  ulps,      // of every scalar
  norm,      // u sqrt(log2 n) times the norm of the result
  inverse,   // u sqrt(log2 n) times that of the spectrum, whose unused parts count
  operand,   // u sqrt(log2 n) times that of the operand
  products,  // u log2 n times the norms of both operands, in every lag
  sums,      // u times the largest sample and the sum of the taps, in every output
  long_sums  // that times the taps and one more
};

// How far apart two levels may be: twice what the header lets one of them err, or what it leaves open.
// Operations that are not listed give the same bits.
struct bound {
  measure of;
  double limit;
  std::string_view operations;
};
constexpr bound bounds[] = {
    {measure::ulps, 2,
     " dspi_acos dspi_asin dspi_atan dspi_cos dspi_cosh dspi_exp dspi_exp10 dspi_log dspi_mag dspi_phase "
     "dspi_ptor dspi_rtop dspi_sin dspi_sinc dspi_sinh dspi_sqrt dspi_tan dspi_tanh dspu_mag dspu_sqrt "},
    {measure::ulps, 4, " dspi_log10 "},          // 2 ulp of an angle, which is a product
    {measure::ulps, 6, " dspi_db "},             // 3 ulp of one with a large factor
    {measure::norm, 3, " dspi_fft dspi_rfft "},  // 1.5 each
    {measure::norm, 8, " dspi_dft dspi_rdft dspi_dct "},
    {measure::norm, 16, " dsph_fft dsph_dft "},  // 4 each, of a power twice as much
    {measure::inverse, 4, " dspi_irfft "},       // 1.5 each, of a spectrum given by half: times sqrt(2)
    {measure::inverse, 12, " dspi_irdft "},      // 4 each, likewise
    {measure::operand, 16, " dspi_hilbert dspi_analytic "},
    {measure::products, 8, " dspb_corr dsph_corr "},
    {measure::long_sums, 2, " dspd_rsmp "},    // every product and addition rounded once
    {measure::long_sums, 16, " dspd_rsmp2 "},  // and every weight, a cubic between the taps
    {measure::sums, 16, " dspd_fir "},         // 4 each by transforms; of direct sums an eighth of their taps
    {measure::sums, 32, " dspd_sfir "},        // likewise, of both halves of the taps
};

const bound* bound_of(const exported& op) {
  const std::string name = ' ' + std::string(op.name) + ' ';
  const auto* const found = std::find_if(std::begin(bounds), std::end(bounds), [&](const bound& b) {
    return b.operations.find(name) != b.operations.npos;
  });
  return found != std::end(bounds) ? found : nullptr;
}

// A number's place in the order of all numbers, both zeros in one.
std::int64_t rank(double x) {
  const auto bits = std::bit_cast<std::int64_t>(x);
  return bits >= 0 ? bits : std::numeric_limits<std::int64_t>::min() - bits;
}
std::int64_t rank(float x) {
  const auto bits = std::bit_cast<std::int32_t>(x);
  return bits >= 0 ? bits : std::numeric_limits<std::int32_t>::min() - std::int64_t{bits};
}
double ranks_apart(std::int64_t a, std::int64_t b) {
  return static_cast<double>(static_cast<std::uint64_t>(std::max(a, b)) -
                             static_cast<std::uint64_t>(std::min(a, b)));
}

template <class T> double distance_in_ulps(const std::vector<T>& a, const std::vector<T>& b) {
  double most = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (std::isnan(a[i]) != std::isnan(b[i])) return INFINITY;
    if (!std::isnan(a[i])) most = std::max(most, ranks_apart(rank(a[i]), rank(b[i])));
  }
  return most;
}

double steps(std::size_t n) { return std::log2(std::max<double>(static_cast<double>(n), 2)); }

using reals = std::vector<long double>;

template <class T> reals difference(const std::vector<T>& a, const std::vector<T>& b) {
  reals all(a.begin(), a.end());
  for (std::size_t i = 0; i < a.size(); ++i) all[i] -= static_cast<long double>(b[i]);
  return all;
}

// What is not finite has made results that are not, which have no bound, or is not used.
template <class T> reals finite(const std::vector<T>& a) {
  reals all(a.begin(), a.end());
  for (long double& x : all) x = std::isfinite(x) ? x : 0;
  return all;
}

template <class T> long double norm(const std::vector<T>& a) {
  long double sum = 0;
  for (const long double x : a) sum += x * x;
  return std::sqrt(sum);
}

template <class T> long double largest(const std::vector<T>& a) {
  long double most = 0;
  for (const long double x : a) most = std::max(most, std::abs(x));
  return most;
}

template <class T> long double sum_of_magnitudes(const std::vector<T>& a) {
  long double sum = 0;
  for (const long double x : a) sum += std::abs(x);
  return sum;
}

template <record V> struct held {
  V shape = {};
  std::vector<scalar<V>> data;
};
template <record V> struct outcome {
  status returned = failed;
  held<V> before[place<V>::count];
  held<V> after[place<V>::count];
};

// A call with its records, which can be made at any level.
template <record V> class scene {
 public:
  scene(const exported& op, choices from) : op_(op), call_(any_call(op, from)) {}

  bool run(isa::level level, outcome<V>& to) {
    isa::force(level);
    TWIN(_free_internal)();
    std::srand(1);
    if (!records_.make(op_, call_)) return false;
    for (std::size_t i = 0; i < place<V>::count; ++i)
      to.before[i] = contents(records_.at(i), !op_.generates());
    to.returned = op_.call(records_, call_.given);
    const char* const fault = records_.settle();
    require(fault == nullptr, fault);
    for (std::size_t i = 0; i < place<V>::count; ++i) to.after[i] = contents(records_.at(i), true);
    return true;
  }

  // Means of reciprocals and logarithms, the least of spectra, their mean with phases, and what is left where
  // the mean is taken out, may be rounding errors alone.
  bool has_bound() const {
    if (op_.is("dsph_avg")) return (call_.given[3].integer & 15) != 4 && (call_.given[3].integer & 15) != 5;
    if (!op_.is("dsph_fft") && !op_.is("dsph_dft")) return true;
    const std::int32_t flags = call_.given[5].integer;
    const bool with_phases =
        call_.given[1].missing && (flags & 15) == 1 && (flags & DSP_SPECTRUM_SQUARE) == 0;
    return (flags & 15) < 3 && (flags & DSP_SPECTRUM_CENTRE) == 0 && !with_phases;
  }

  // In units of the bound, or ulps without one.
  double distance(const bound* known, const outcome<V>& o, const held<V>& x, const held<V>& y) const {
    if (known == nullptr || known->of == measure::ulps) return distance_in_ulps(x.data, y.data);
    const reals apart = difference(x.data, y.data);
    const bool finite = std::isfinite(sum_of_magnitudes(x.data)) && std::isfinite(sum_of_magnitudes(y.data));
    if (!finite || largest(apart) == 0) return 0;  // sums may overflow at different places
    const bool each = known->of >= measure::products;
    const long double least = std::numeric_limits<scalar<V>>::min();
    return static_cast<double>((each ? largest(apart) : norm(apart)) / (worth(known->of, o, x) + least));
  }

  void tell(double far, const held<V>& x, const held<V>& y) const {
    std::fprintf(stderr, "%s, %s: %g of %zu;", op_.name, is_double<V> ? "double" : "single", far,
                 x.data.size());
    for (std::size_t i = 0; i < most_arguments && op_.parameters[i] != nullptr; ++i)
      std::fprintf(stderr, " %s %d %g %d", op_.parameters[i], call_.given[i].record, call_.given[i].number,
                   call_.given[i].integer);
    std::size_t worst = 0;
    double most = 0;
    for (std::size_t i = 0; i < x.data.size(); ++i) {
      const double here = distance_in_ulps<scalar<V>>({x.data[i]}, {y.data[i]});
      if (here > most) most = here, worst = i;
    }
    std::fprintf(stderr, "; %g ulps at %zu: %.17g %.17g\n", most, worst, static_cast<double>(x.data[worst]),
                 static_cast<double>(y.data[worst]));
  }

 private:
  // One unit of a measure in this call.
  long double worth(measure of, const outcome<V>& o, const held<V>& x) const {
    const held<V>&first = o.before[call_.given[0].record], &second = o.before[call_.given[1].record];
    const held<V>&taps = o.before[call_.given[2].record], &history = o.before[place<V>::count - 1];
    const long double u = unit_roundoff<V>;
    const long double root = u * std::sqrt(steps(x.data.size()));
    const long double sums = u * std::max(largest(finite(first.data)), largest(finite(history.data))) *
                             sum_of_magnitudes(finite(taps.data));
    const std::size_t count = taps.data.size() * (op_.is("dspd_sfir") ? 2 : 1);  // of which half are given
    const auto terms = static_cast<long double>(count + 1);
    switch (of) {
      case measure::norm:
        return root * norm(x.data);
      case measure::inverse:
        return root * std::sqrt(static_cast<long double>(x.data.size())) * norm(finite(first.data));
      case measure::operand:
        return root * norm(finite(first.data));
      case measure::products:
        return u * steps(first.data.size() + second.data.size()) *
               std::max(1.0L, norm(finite(first.data)) * norm(finite(second.data)));
      case measure::long_sums:
        return sums * terms;
      default: {
        // Complex signals, few taps and short blocks are summed one after the other.
        const bool transformed = first.shape.complex == 0 && taps.shape.complex == 0 && terms > 129 &&
                                 first.data.size() + 1 >= count;
        return transformed ? sums : sums * std::max(1.0L, terms / 8);
      }
    }
  }

  static held<V> contents(const V* v, bool filled) {
    if (!filled) return {*v, {}};
    return {*v, {v->data, v->data + scalars(v)}};
  }
  const exported& op_;
  const chosen_call call_;
  static inline place<V> records_;
};

template <record V>
void compare(const exported& op, const scene<V>& s, const outcome<V>& a, const outcome<V>& b) {
  require(a.returned == b.returned, op.name);
  if (a.returned != ok || !s.has_bound()) return;
  const bound* const known = bound_of(op);
  for (std::size_t i = 0; i + 1 < place<V>::count; ++i) {
    const held<V>&x = a.after[i], &y = b.after[i];
    require(x.shape.points == y.shape.points && x.shape.complex == y.shape.complex, op.name);
    require(distance_in_ulps<scalar<V>>({x.shape.delta}, {y.shape.delta}) == 0, op.name);
    const double far = s.distance(known, a, x, y);
    if (far <= (known != nullptr ? known->limit : 0)) continue;
    s.tell(far, x, y);
    require(false, "two levels give what their bounds allow");
  }
}

template <record V> void run(const exported& op, choices from, isa::level wide) {
  static outcome<V> first, second;
  scene<V> s(op, from);
  if (!s.run(isa::level::baseline, first)) return;
  s.run(wide, second);
  compare<V>(op, s, first, second);
}

// The first draw of a process seeds from the time.
bool is_seeded() {
  double x = 0;
  dsp_vec one = {1, &x, 1, 1, 0, 0};
  return dspc_rand(&one, DSP_RAND_UNIFORM) == ok;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const small_machine limited;
  static const bool seeded = is_seeded();
  static_cast<void>(seeded);
  choices from(data, size);
  std::uint64_t hash = 0xcbf29ce484222325U;  // FNV-1a: any change is another operation
  for (std::size_t i = 0; i < size; ++i) hash = (hash ^ data[i]) * 0x100000001b3U;
  const std::uint64_t what = hash >> 60;
  const exported& op = export_at((hash >> 20) % export_count());
  if (op.is("dspc_rand") || op.is("dspd_hwfilt") || op.is("dspi_hwfilt")) return 0;
  const isa::level wide = what % 4 < 2 ? isa::level::avx2 : isa::level::avx512;
  if (what % 2 == 0) {
    run<dsp_vec>(op, from, wide);
  } else {
    run<dspf_vec>(op, from, wide);
  }
  return 0;
}
