// SPDX-License-Identifier: MIT
// Any operation on any records, at the baseline and at the wide levels: the same bits where only sums and
// products in a given order are involved, elsewhere results that lie no farther apart than the bounds of the
// header let both of them.
#include <cmath>
#include <vector>

#include "core/isa.h"
#include "fuzz/calls.h"
#include "fuzz/target.h"

namespace {

using namespace sigpak;
using namespace sigpak::test;

constexpr std::size_t most_bytes = std::size_t{1} << 20;

// How far apart two levels may be, twice what the header lets one of them err.
struct bound {
  std::string_view name;
  enum {
    ulps,      // units in the last place, of every scalar
    norm,      // u sqrt(log2 n) times the norm of the result
    inverse,   // u sqrt(log2 n) times that of the spectrum, whose unused parts count
    operand,   // u sqrt(log2 n) times that of the operand
    products,  // u log2 n times the norms of both operands
    sums,      // u times the largest sample and the sum of the taps
    long_sums  // that times the taps and one more
  } of;
  double limit;
};
constexpr bound bounds[] = {
    {"dspi_acos", bound::ulps, 2},         {"dspi_asin", bound::ulps, 2},
    {"dspi_atan", bound::ulps, 2},         {"dspi_cos", bound::ulps, 2},
    {"dspi_cosh", bound::ulps, 2},         {"dspi_db", bound::ulps, 6},
    {"dspi_exp", bound::ulps, 2},          {"dspi_exp10", bound::ulps, 2},
    {"dspi_log", bound::ulps, 2},          {"dspi_log10", bound::ulps, 4},
    {"dspi_mag", bound::ulps, 2},          {"dspi_phase", bound::ulps, 2},
    {"dspi_ptor", bound::ulps, 2},         {"dspi_rtop", bound::ulps, 2},
    {"dspi_sin", bound::ulps, 2},          {"dspi_sinc", bound::ulps, 2},
    {"dspi_sinh", bound::ulps, 2},         {"dspi_sqrt", bound::ulps, 2},
    {"dspi_tan", bound::ulps, 2},          {"dspi_tanh", bound::ulps, 2},
    {"dspu_mag", bound::ulps, 2},          {"dspu_sqrt", bound::ulps, 2},
    {"dspi_fft", bound::norm, 3},          {"dspi_rfft", bound::norm, 3},
    {"dspi_irfft", bound::inverse, 4},     {"dspi_dft", bound::norm, 8},
    {"dspi_rdft", bound::norm, 8},         {"dspi_irdft", bound::inverse, 12},
    {"dspi_dct", bound::norm, 8},          {"dspi_hilbert", bound::operand, 16},
    {"dspi_analytic", bound::operand, 16}, {"dsph_fft", bound::norm, 16},
    {"dsph_dft", bound::norm, 16},         {"dspb_corr", bound::products, 8},
    {"dsph_corr", bound::products, 8},     {"dspd_rsmp", bound::long_sums, 2},
    {"dspd_rsmp2", bound::long_sums, 16},  {"dspd_fir", bound::sums, 16},
    {"dspd_sfir", bound::sums, 32},
};

const bound* bound_of(const exported& op) {
  const auto* const found =
      std::find_if(std::begin(bounds), std::end(bounds), [&](const bound& b) { return op.is(b.name); });
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

template <class T> constexpr double unit = std::is_same_v<T, double> ? 0x1p-53 : 0x1p-24;

double steps(std::size_t n) { return std::log2(std::max<double>(static_cast<double>(n), 2)); }

template <class T> bool all_finite(const std::vector<T>& a) {
  return std::all_of(a.begin(), a.end(), [](T x) { return std::isfinite(x); });
}

template <class T> long double norm(const std::vector<T>& a) {
  long double sum = 0;
  for (const long double x : a) sum += x * x;
  return std::sqrt(sum);
}

template <class T> long double norm_of_difference(const std::vector<T>& a, const std::vector<T>& b) {
  long double sum = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const long double d = static_cast<long double>(a[i]) - static_cast<long double>(b[i]);
    sum += d * d;
  }
  return std::sqrt(sum);
}

template <class T> long double largest(const std::vector<T>& a) {
  long double most = 0;
  for (const long double x : a) most = std::max(most, std::abs(x));
  return most;
}

template <class T> long double largest_difference(const std::vector<T>& a, const std::vector<T>& b) {
  long double most = 0;
  for (std::size_t i = 0; i < a.size(); ++i)
    most = std::max(most, std::abs(static_cast<long double>(a[i]) - static_cast<long double>(b[i])));
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
  scene(const exported& op, choices from) : op_(op) {
    for (recipe& r : recipes_) r = chosen_recipe(from);
    arguments_ = chosen_arguments(op, from);
  }

  bool run(isa::level level, outcome<V>& to) {
    isa::force(level);
    TWIN(_free_internal)();
    std::srand(1);
    for (std::size_t i = 0; i < place<V>::count; ++i) records_.make(i, recipes_[i]);
    if (!prepare(op_, arguments_, records_)) return false;
    for (std::size_t i = 0; i < place<V>::count; ++i)
      to.before[i] = contents(records_.at(i), !op_.generates());
    to.returned = op_.call(records_, arguments_);
    const char* const fault = records_.settle();
    require(fault == nullptr, fault);
    for (std::size_t i = 0; i < place<V>::count; ++i) to.after[i] = contents(records_.at(i), true);
    return true;
  }

  // Means of reciprocals and logarithms, and what is left where the mean is taken out, may be rounding errors
  // alone.
  bool has_bound() const {
    if (op_.is("dsph_avg")) return (arguments_[3].integer & 15) != 4 && (arguments_[3].integer & 15) != 5;
    const std::int32_t flags = arguments_[5].integer;
    return !(op_.is("dsph_fft") || op_.is("dsph_dft")) ||
           ((flags & 15) < 4 && (flags & DSP_SPECTRUM_CENTRE) == 0);
  }

  // In units of the bound, or ulps without one.
  double distance(const bound* known, const outcome<V>& o, const held<V>& x, const held<V>& y) const {
    using T = scalar<V>;
    if (known == nullptr || known->of == bound::ulps) return distance_in_ulps(x.data, y.data);
    if (!all_finite(x.data) || !all_finite(y.data)) return 0;  // sums may overflow at different places
    if (largest_difference(x.data, y.data) == 0) return 0;
    const held<V>&first = o.before[arguments_[0].record], &second = o.before[arguments_[1].record];
    const held<V>& taps = o.before[arguments_[2].record];
    const held<V>& history = o.before[place<V>::count - 1];
    const double n = steps(x.data.size());
    const long double u = unit<T>;
    const bool each =
        known->of == bound::products || known->of == bound::sums || known->of == bound::long_sums;
    const long double apart = each ? largest_difference(x.data, y.data) : norm_of_difference(x.data, y.data);
    const long double sums =
        u * std::max(largest(first.data), largest(history.data)) * sum_of_magnitudes(taps.data);
    // Complex signals, few taps and short blocks are summed one after the other.
    const auto products_each = static_cast<long double>(taps.data.size() + 1);
    const bool transformed = first.shape.complex == 0 && taps.shape.complex == 0 && taps.data.size() > 128 &&
                             first.data.size() >= taps.data.size();
    const long double filtered = transformed ? sums : sums * std::max(1.0L, products_each / 8);
    const long double products =
        u * steps(first.data.size() + second.data.size()) * norm(first.data) * norm(second.data);
    const long double scale = known->of == bound::norm ? u * std::sqrt(n) * norm(x.data)
                              : known->of == bound::inverse
                                  ? u * std::sqrt(n * static_cast<double>(x.data.size())) * norm(first.data)
                              : known->of == bound::operand ? u * std::sqrt(n) * norm(first.data)
                              : known->of == bound::products
                                  ? std::max(products, u * steps(first.data.size() + second.data.size()))
                              : known->of == bound::long_sums ? sums * products_each
                                                              : filtered;
    return static_cast<double>(apart / (scale + static_cast<long double>(std::numeric_limits<T>::min())));
  }

  void tell(double far, const held<V>& x, const held<V>& y) const {
    std::fprintf(stderr, "%s, %s: %g of %zu;", op_.name, is_double<V> ? "double" : "single", far,
                 x.data.size());
    for (std::size_t i = 0; i < most_arguments && op_.parameters[i] != nullptr; ++i)
      std::fprintf(stderr, " %s %d %g %d", op_.parameters[i], arguments_[i].record, arguments_[i].number,
                   arguments_[i].integer);
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
  static held<V> contents(const V* v, bool filled) {
    if (!filled) return {*v, {}};
    return {*v, {v->data, v->data + scalars(v)}};
  }
  const exported& op_;
  recipe recipes_[place<V>::count];
  arguments arguments_;
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
  static rationed_memory memory(most_bytes);
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
