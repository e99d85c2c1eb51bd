// SPDX-License-Identifier: MIT
// Runs a target of the fuzzers over a corpus and over inputs made of it:
//   PROGRAM [--runs N] [--seed S] [--from I] [--noise] FILE|DIRECTORY...
// The corpus comes first, as it stands. With --noise the inputs are random bytes, for targets to which all
// mean something. Input I is made from the seed and I alone, so that the one that a fault names comes back
// with --from I --runs 1.
#include <sys/time.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/target.h"

// Of the sanitizers, where the target is built with them.
extern "C" [[gnu::weak]] void __sanitizer_set_death_callback(void (*callback)());

// What is freed need not be watched for long: an input is soon over.
extern "C" const char* __asan_default_options() { return "quarantine_size_mb=4:malloc_context_size=4"; }

namespace {

using namespace std::string_view_literals;
using bytes = std::vector<std::uint8_t>;

constexpr std::size_t most_bytes = 384;
constexpr int most_seconds = 30;  // for one input, of whatever size

// What readers of numbers and headers look for.
// clang-format off
constexpr std::string_view words[] = {
    "#DSP points = "sv, "#DSP complex = "sv, "#DSP delta = "sv, "#"sv, "\n"sv, " "sv, "0x"sv,
    "0x7fffffff"sv, "-"sv, "+"sv, "e"sv, "e-"sv, "E+"sv, "1e308"sv, "4.9e-324"sv, "inf"sv, "infinity"sv,
    "nan"sv, "nan("sv, ")"sv, "nan(a_1)"sv, "."sv, "1."sv, "0"sv, "9999999999999999999"sv, "-1"sv,
    "2147483648"sv, "2147483647"sv, "\xBE\x30\x03\xEB"sv, "\xEB\x03\x30\xBE"sv, "\xBE\x10\x01\xEB"sv,
    "\xEB\x02\x20\xBE"sv, "\x08\x04\x00\x00"sv, "\x04\x04\x00\x00"sv, "\x01\x00\x00\x00"sv,
    "\x00\x00\x00\x01"sv, "\xFF\xFF\xFF\xFF"sv, "\xFF\xFF\xFF\x7F"sv, "\x00\x00\x02\x00"sv,
    "\x00\x00\x00\x00\x00\x00\xF8\x7F"sv};
// clang-format on

struct current {
  std::uint64_t seed = 1;
  std::uint64_t run = 0;
  const std::uint8_t* data = nullptr;
  std::size_t size = 0;
  std::uint64_t watched = ~std::uint64_t{0};
} now;

// SplitMix64, G. L. Steele and others (2014).
class draws {
 public:
  draws(std::uint64_t seed, std::uint64_t run)
      : state_(seed * 0x9E3779B97F4A7C15U ^ run * 0xD1B54A32D192ED03U) {}
  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t z = (state_ ^ state_ >> 30) * 0xBF58476D1CE4E5B9U;
    z = (z ^ z >> 27) * 0x94D049BB133111EBU;
    return z ^ z >> 31;
  }
  std::size_t below(std::size_t n) { return static_cast<std::size_t>((next() >> 32) * n >> 32); }

 private:
  std::uint64_t state_;
};

void tell_input() {
  std::fprintf(stderr,
               "\nfault in run %llu of seed %llu, %zu bytes:", static_cast<unsigned long long>(now.run),
               static_cast<unsigned long long>(now.seed), now.size);
  for (std::size_t i = 0; i < now.size; ++i) std::fprintf(stderr, " %02x", now.data[i]);
  std::fprintf(stderr, "\n");
}

void on_abort(int) { tell_input(); }

volatile std::sig_atomic_t interrupted = 0;  // ends the run, which then tells how far it came

void on_alarm(int) {
  if (now.watched == now.run) {
    std::fprintf(stderr, "more than %d seconds for one input\n", most_seconds);
    std::abort();
  }
  now.watched = now.run;
}

void watch() {
  if (__sanitizer_set_death_callback != nullptr) __sanitizer_set_death_callback(tell_input);
  std::signal(SIGABRT, on_abort);
  std::signal(SIGALRM, on_alarm);
  for (const int end : {SIGINT, SIGTERM}) std::signal(end, [](int) { interrupted = 1; });
  const itimerval each = {{most_seconds, 0}, {most_seconds, 0}};
  setitimer(ITIMER_REAL, &each, nullptr);
}

void run_on(const bytes& input) {
  now.data = input.data();
  now.size = input.size();
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

void insert(bytes& to, std::size_t at, const std::uint8_t* from, std::size_t count) {
  to.insert(to.begin() + static_cast<std::ptrdiff_t>(at), from, from + count);
}

void insert_word(bytes& b, draws& draw) {
  const std::string_view word = words[draw.below(std::size(words))];
  const std::size_t at = draw.below(b.size() + 1);
  const auto* const from = reinterpret_cast<const std::uint8_t*>(word.data());
  if (draw.below(2) == 0) return insert(b, at, from, word.size());
  const std::size_t room = std::min(word.size(), b.size() - at);
  if (room != 0) std::memcpy(b.data() + at, from, room);
}

void splice(bytes& b, const bytes& other, draws& draw) {
  const std::size_t from = draw.below(other.size() + 1);
  const std::size_t count = draw.below(other.size() - from + 1);
  const std::size_t at = draw.below(b.size() + 1);
  if (draw.below(2) == 0) b.resize(at);
  if (count != 0) insert(b, std::min(at, b.size()), other.data() + from, count);
}

void erase_some(bytes& b, draws& draw) {
  const std::size_t at = draw.below(b.size());
  const std::size_t count = std::min(b.size() - at, draw.below(draw.below(4) == 0 ? b.size() + 1 : 5) + 1);
  b.erase(b.begin() + static_cast<std::ptrdiff_t>(at), b.begin() + static_cast<std::ptrdiff_t>(at + count));
}

void append_noise(bytes& b, draws& draw) {
  for (std::size_t count = draw.below(most_bytes); count > 0; --count)
    b.push_back(static_cast<std::uint8_t>(draw.next()));
}

void change(bytes& b, const std::vector<bytes>& corpus, draws& draw) {
  constexpr std::uint8_t telling[] = {0, 1, 2, 0x7f, 0x80, 0xff, ' ', '\n'};
  const std::size_t way = draw.below(10);
  const std::size_t at = b.empty() ? 0 : draw.below(b.size());
  const auto byte = static_cast<std::uint8_t>(draw.next());
  if (way == 0) return insert_word(b, draw);
  if (way == 1) return splice(b, corpus[draw.below(corpus.size())], draw);
  if (way == 9) return append_noise(b, draw);
  if (b.empty() || way == 2) return insert(b, at, &byte, 1);
  if (way == 3) return erase_some(b, draw);
  if (way == 4) return b.resize(at);
  if (way == 5) b[at] ^= static_cast<std::uint8_t>(1U << byte % 8);
  if (way == 6) b[at] = telling[byte % std::size(telling)];
  if (way == 7) b[at] = static_cast<std::uint8_t>(b[at] + byte % 9 - 4);
  if (way == 8) b[at] = byte;
}

void make_input(bytes& b, const std::vector<bytes>& corpus, bool of_noise, draws draw) {
  if (of_noise) {
    b.clear();
    return append_noise(b, draw);
  }
  b = corpus[draw.below(corpus.size())];
  for (std::size_t changes = 1 + draw.below(6); changes > 0; --changes) change(b, corpus, draw);
  if (b.size() > most_bytes) b.resize(most_bytes);
}

bytes contents_of(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void gather(const std::filesystem::path& place, std::vector<bytes>& corpus) {
  if (!std::filesystem::is_directory(place)) return corpus.push_back(contents_of(place));
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(place)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  for (const auto& file : files) corpus.push_back(contents_of(file));
}

}  // namespace

int main(int argc, char** argv) {
  std::uint64_t runs = 0, from = 0;
  bool of_noise = false;
  std::vector<bytes> corpus;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    std::uint64_t* const number = word == "--runs"   ? &runs
                                  : word == "--seed" ? &now.seed
                                  : word == "--from" ? &from
                                                     : nullptr;
    if (number != nullptr && i + 1 < argc) {
      *number = std::strtoull(argv[++i], nullptr, 10);
    } else if (word == "--noise") {
      of_noise = true;
    } else {
      gather(argv[i], corpus);
    }
  }
  if (corpus.empty()) corpus.emplace_back();
  watch();
  for (const bytes& input : corpus) run_on(input);
  const auto start = std::chrono::steady_clock::now();
  bytes input;
  for (now.run = from; now.run < from + runs && interrupted == 0; ++now.run) {
    make_input(input, corpus, of_noise, {now.seed, now.run});
    run_on(input);
  }
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  std::printf(
      "%zu inputs as they stand, %llu made of them with seed %llu in %.0f s, %.0f a second: no fault\n",
      corpus.size(), static_cast<unsigned long long>(now.run - from),
      static_cast<unsigned long long>(now.seed), took.count(),
      static_cast<double>(now.run - from) / took.count());
}
