// SPDX-License-Identifier: MIT
// Two threads at the same operation of the same length, each on records of its own: how much more they do
// than one. Options: --operation NAME, --level NAME, --rounds N.
#include <atomic>
#include <cmath>
#include <functional>
#include <memory>
#include <thread>

#include "options.h"
#include "rounds.h"
#include "sigpak.h"
#include "table.h"

namespace {

struct record : dsp_vec {
  record(int n, bool pairs) : dsp_vec{} {
    dsp_init(this);
    points = static_cast<std::uint32_t>(n);
    this->complex = pairs ? 1 : 0;
    dsp_alloc(this);
    for (int i = 0; i < n * (pairs ? 2 : 1); ++i) data[i] = std::sin(0.7 * i);
  }
  ~record() { dsp_destroy(this); }
  record(const record&) = delete;
  record& operator=(const record&) = delete;
};

struct operation {
  std::string name;
  std::function<std::function<void()>()> make;  // with records of its own
};

operation transform(int n) {
  return {"fft " + std::to_string(n), [n] {
            const auto v = std::make_shared<record>(n, true);
            return [v] {
              dspi_fft(v.get(), 0);
              dspi_fft(v.get(), 1);
              v->delta = 1;
            };
          }};
}
operation real_transform(int n) {
  return {"rfft " + std::to_string(n), [n] {
            const auto v = std::make_shared<record>(n, false);
            return [v] {
              dspi_rfft(v.get());
              dspi_irfft(v.get());
              v->delta = 1;
            };
          }};
}
operation any_transform(int n) {
  return {"dft " + std::to_string(n), [n] {
            const auto v = std::make_shared<record>(n, true);
            return [v] {
              dspi_dft(v.get(), 0);
              dspi_dft(v.get(), 1);
              v->delta = 1;
            };
          }};
}
operation window(int n) {
  return {"window " + std::to_string(n), [n] {
            const auto v = std::make_shared<record>(n, false);
            std::fill_n(v->data, n, 0.0);
            return [v] { dspi_window(v.get(), DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE); };
          }};
}
operation fir(int n, int count, bool in_place) {
  return {"fir " + std::to_string(n) + " x " + std::to_string(count) + (in_place ? " in place" : ""), [=] {
            const auto v = std::make_shared<record>(n, false);
            const auto out = std::make_shared<record>(n, false);
            const auto taps = std::make_shared<record>(count, false);
            const auto history = std::make_shared<record>(count - 1, false);
            for (int i = 0; i < count; ++i) taps->data[i] = i == 0 ? 1 : 0;  // what is in place does not fade
            return [=] { dspd_fir(v.get(), in_place ? v.get() : out.get(), taps.get(), history.get()); };
          }};
}

std::vector<operation> operations() {
  std::vector<operation> all;
  for (int bits = 8; bits <= 16; ++bits) all.push_back(transform(1 << bits));
  for (int bits = 8; bits <= 16; bits += 2) all.push_back(real_transform(1 << bits));
  for (const int n : {120, 480, 1000, 251, 1009}) all.push_back(any_transform(n));
  for (int bits = 6; bits <= 16; bits += 2) all.push_back(window(1 << bits));
  for (const int n : {64, 1024}) all.push_back(fir(n, 32, false));
  for (const bool in_place : {false, true}) {
    all.push_back(fir(64, 16, in_place));
    all.push_back(fir(4096, 256, in_place));
  }
  return all;
}

double wall_seconds() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Seconds of one call; below 0 where the system took the processor away meanwhile.
double timed(const std::function<void()>& once, int calls) {
  const double wall = wall_seconds();
  const double own = bench::thread_seconds();
  for (int i = 0; i < calls; ++i) once();
  const double used = bench::thread_seconds() - own;
  return wall_seconds() - wall < 1.05 * used ? used / calls : -1;
}

// The other thread, which does what the first one does from the same moment on.
class companion {
 public:
  explicit companion(std::function<void()> once, int calls)
      : thread_([this, once = std::move(once), calls] {
          once();
          for (int round = 1; wait_for(round); ++round) {
            seconds_ = timed(once, calls);
            done_ = round;
          }
        }) {}
  ~companion() {
    go_ = -1;
    thread_.join();
  }
  companion(const companion&) = delete;
  companion& operator=(const companion&) = delete;

  void start(int round) { go_ = round; }
  double finish(int round) const {
    while (done_ != round) {
    }
    return seconds_;
  }

 private:
  bool wait_for(int round) const {
    int now = 0;
    while ((now = go_) != round && now >= 0) {
    }
    return now >= 0;
  }
  std::atomic<int> go_ = 0;
  std::atomic<int> done_ = 0;
  std::atomic<double> seconds_ = 0;
  std::thread thread_;
};

int calls_in(const std::function<void()>& once, double seconds) {
  once();
  for (int calls = 1;;) {
    const double each = timed(once, calls);
    if (each * calls > seconds / 4) return std::max(1, static_cast<int>(seconds / each));
    if (each > 0) calls *= 2;
  }
}

void compare(const operation& op, double alone, int rounds) {
  const auto once = op.make();
  constexpr double round_seconds = 1e-3;
  const int calls = calls_in(once, round_seconds);
  std::vector<double> ones;
  std::vector<double> twos;
  std::vector<double> gains;
  companion other(op.make(), calls);
  for (int round = 1; round <= rounds; ++round) {
    const double one = timed(once, calls);
    other.start(round);
    const double mine = timed(once, calls);
    const double its = other.finish(round);
    if (one < 0 || mine < 0 || its < 0) continue;
    ones.push_back(one);
    twos.push_back((mine + its) / 2);
    gains.push_back(one / mine + one / its);
  }
  if (gains.empty()) return;
  std::printf("| %s | %.1f | %.1f | %.1f | %.2f | %zu |\n", op.name.c_str(), alone * 1e9,
              bench::median(ones) * 1e9, bench::median(twos) * 1e9, bench::median(gains), gains.size());
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  const bench::options wanted(argc, argv, {"--operation", "--level", "--rounds"});
  std::printf("level %s\n", wanted.level());
  const int rounds = static_cast<int>(wanted.number("--rounds", 300));
  std::vector<operation> all;
  std::vector<double> alone;
  for (operation& op : operations()) {
    if (!wanted.wants("--operation", op.name)) continue;
    const auto once = op.make();
    const int calls = calls_in(once, 1e-3);
    std::vector<double> seconds;
    for (int round = 0; round < rounds; ++round) seconds.push_back(timed(once, calls));
    std::erase_if(seconds, [](double s) { return s < 0; });
    alone.push_back(seconds.empty() ? 0 : bench::median(seconds));
    all.push_back(std::move(op));
  }
  bench::print_head({"ns a call", "alone", "one of two threads", "both", "throughput", "rounds"});
  for (std::size_t i = 0; i < all.size(); ++i) compare(all[i], alone[i], rounds);
}
