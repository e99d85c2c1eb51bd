// Transforms against other libraries, as one Markdown table: GFLOP/s of FFTW (5 N log2 N, half of it for real
// data) and ratios of speed to FFTW_MEASURE. Speeds include natural order, and the 1/N of the forward
// transform here.
//
// bench_fft [--level baseline|avx2|avx512] [--class pair|real|real-pair|any] [--precision double|single]
//           [--least N] [--most N] [--rounds N]
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string_view>

#include "core/isa.h"
#include "core/record.h"
#include "peers.h"
#include "rounds.h"
#include "sigpak.h"

namespace {

using bench::contender;
using bench::job;

struct options {
  std::string_view kind;
  std::string_view precision;
  long least = 16;
  long most = 1L << 22;
  int rounds = 0;
};

// A record on storage that starts 16 bytes behind a cache line, as malloc gives large blocks, with the
// samples that every batch starts from.
template <class T> class record {
 public:
  using V = std::conditional_t<sizeof(T) == sizeof(double), dsp_vec, dspf_vec>;

  explicit record(std::size_t n)
      : random_(2 * n),
        capacity_(std::has_single_bit(n) ? 2 * n + 4 : 8 * n),
        block_(std::aligned_alloc(line, capacity_ * sizeof(T) / line * line + 2 * line), std::free) {
    std::mt19937_64 engine(n);
    std::uniform_real_distribution<T> uniform(-1, 1);
    for (T& x : random_) x = uniform(engine);
    vector_.data = data();
    vector_.alloc = static_cast<int32_t>(capacity_);
    vector_.delta = 1;
  }
  T* data() const { return reinterpret_cast<T*>(static_cast<char*>(block_.get()) + 16); }
  V* shaped(std::size_t points, bool complex) {
    vector_.points = static_cast<uint32_t>(points);
    vector_.complex = complex ? 1 : 0;
    return &vector_;
  }
  void refill(T scale) const {
    for (std::size_t i = 0; i < random_.size(); ++i) data()[i] = random_[i] * scale;
  }

 private:
  static constexpr std::size_t line = 64;
  std::vector<T> random_;
  std::size_t capacity_;  // enough that the library never needs storage of its own
  std::unique_ptr<void, decltype(&std::free)> block_;
  V vector_{};
};

template <class T> constexpr bool is_double = sizeof(T) == sizeof(double);
template <class T, class D, class F> constexpr auto twin(D of_double, F of_float) {
  if constexpr (is_double<T>) {
    return of_double;
  } else {
    return of_float;
  }
}

template <class T> std::function<void()> own(job kind, std::shared_ptr<record<T>> r, std::size_t n) {
  const auto fft = std::has_single_bit(n) ? twin<T>(dspi_fft, dspfi_fft) : twin<T>(dspi_dft, dspfi_dft);
  const auto forward = twin<T>(dspi_rfft, dspfi_rfft);
  const auto backward = twin<T>(dspi_irfft, dspfi_irfft);
  switch (kind) {
    case job::pair:
      return [=] {
        auto* const v = r->shaped(n, true);
        fft(v, 0);
        fft(v, 1);
      };
    case job::real:
      return [=] { forward(r->shaped(n, false)); };
    default:
      return [=] {
        auto* const v = r->shaped(n, false);
        forward(v);
        backward(v);
      };
  }
}

// Repeats that keep unscaled pairs, which grow N times, and scaled forward transforms of real data, which
// shrink sqrt(N) times, inside the range of numbers.
template <class T> int repeats(std::size_t n) {
  constexpr double decades = is_double<T> ? 500 : 50;
  return static_cast<int>(std::clamp(decades / std::log10(static_cast<double>(n)), 1.0, 1000.0));
}

template <class T> std::vector<contender> contenders(job kind, std::size_t n) {
  constexpr T low = is_double<T> ? T(1e-250) : T(1e-25F);
  auto r = std::make_shared<record<T>>(n);
  std::vector<contender> out;
  for (const bench::peer& p : bench::peers<T>(kind, r->data(), n)) {
    out.push_back({p.name, [=] { r->refill(low); }, p.run, repeats<T>(n)});
  }
  const T start = kind == job::real ? T(1) / low : T(1);
  out.insert(out.begin() + 1, {"sigpak", [=] { r->refill(start); }, own<T>(kind, r, n), repeats<T>(n)});
  return out;
}

template <class T> void print_row(const char* name, job kind, std::size_t n, const options& o) {
  const bool large = n >= std::size_t{1} << 18;
  const int rounds = o.rounds > 0 ? o.rounds : large ? 9 : 25;
  const auto all = contenders<T>(kind, n);
  const auto timings = bench::compare(all, rounds, large ? 0 : 3e-4);
  const double size = static_cast<double>(n);
  const double flops = 5 * size * std::log2(size) * (kind == job::pair ? 2 : kind == job::real ? 0.5 : 1);
  std::printf("| %s | %s | %zu | %.1f |", name, is_double<T> ? "double" : "single", n,
              flops / timings[0].seconds * 1e-9);
  for (std::size_t i = 1; i < all.size(); ++i) {
    !all[i].once ? std::printf(" - |") : std::printf(" %.2f |", timings[i].ratio);
  }
  std::printf("\n");
  std::fflush(stdout);
}

struct table_row {
  const char* name;
  job kind;
  std::vector<std::size_t> sizes;
};

std::vector<std::size_t> powers(int first, int last) {
  std::vector<std::size_t> out;
  for (int bits = first; bits <= last; ++bits) out.push_back(std::size_t{1} << bits);
  return out;
}

template <class T> void print_rows(const options& o) {
  const table_row rows[] = {{"pair", job::pair, powers(4, 22)},
                            {"real", job::real, powers(4, 22)},
                            {"real-pair", job::real_pair, powers(4, 22)},
                            {"any", job::pair, {1000, 4095, 4099, 10000, 10007, 65537, 100000}}};
  for (const table_row& row : rows) {
    if (!o.kind.empty() && o.kind != row.name) continue;
    for (const std::size_t n : row.sizes) {
      const long size = static_cast<long>(n);
      if (size >= o.least && size <= o.most) print_row<T>(row.name, row.kind, n, o);
    }
  }
}

options parse(int argc, char** argv) {
  using sigpak::isa::level;
  options o;
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string_view name = argv[i];
    const std::string_view value = argv[i + 1];
    if (name == "--level") {
      sigpak::isa::force(value == "avx512" ? level::avx512 : value == "avx2" ? level::avx2 : level::baseline);
    } else if (name == "--class") {
      o.kind = value;
    } else if (name == "--precision") {
      o.precision = value;
    } else if (name == "--least") {
      o.least = std::atol(argv[i + 1]);
    } else if (name == "--most") {
      o.most = std::atol(argv[i + 1]);
    } else if (name == "--rounds") {
      o.rounds = std::atoi(argv[i + 1]);
    } else {
      std::fprintf(stderr, "bench_fft: unknown option %s\n", argv[i]);
      std::exit(2);
    }
  }
  return o;
}

}  // namespace

int main(int argc, char** argv) {
  const options o = parse(argc, argv);
  constexpr const char* levels[] = {"baseline", "avx2", "avx512"};
  std::printf("level %s\n\n| transform | precision | N | FFTW GFLOP/s | sigpak |",
              levels[static_cast<int>(sigpak::isa::current())]);
  std::size_t columns = 5;
  double room[8] = {};
  for (const bench::peer& p : bench::peers<double>(job::pair, room, 2)) {
    if (p.name != "FFTW") {
      std::printf(" %s |", p.name.c_str());
      ++columns;
    }
  }
  std::printf("\n|");
  for (std::size_t i = 0; i < columns; ++i) std::printf("---|");
  std::printf("\n");
  if (o.precision != "single") print_rows<double>(o);
  if (o.precision != "double") print_rows<float>(o);
}
