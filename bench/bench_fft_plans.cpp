// SPDX-License-Identifier: MIT
// What the planner of the transforms of powers of two chooses on this machine, and what its neighbours cost:
// the time of a forward and an inverse transform, and the speed of the choices that it holds for the next
// best, relative to its own. A neighbour that is faster by more than the noise is a wrong choice.
//
// bench_fft_plans [--level avx2|avx512] [--precision double|single] [--least N] [--most N] [--neighbours N]
//                 [--rounds N]
#include <algorithm>
#include <cstdio>
#include <string>

#include "core/machine.h"
#include "fft/plans/lane_plan.h"
#include "fft/plans/pass_costs.h"
#include "fft/transform.h"
#include "fft/wide/kernels.h"
#include "fft_record.h"
#include "options.h"
#include "rounds.h"
#include "vectors/levels.h"

namespace {

namespace kernels = sigpak::kernels;
using bench::contender;
using bench::record;

std::string name_of(const kernels::lane_choice& choice) {
  std::string name;
  for (int pass = 0; pass < choice.radices.passes; ++pass) {
    if (pass > 0) name += ' ';
    name += std::to_string(choice.radices.radix[pass]);
  }
  switch (choice.at_line) {
    case kernels::course::direct:
      return name;
    case kernels::course::collected:
      return name + " collected";
    case kernels::course::by_blocks:
      return name + " by blocks";
    case kernels::course::in_place:
      return name + " in place";
  }
  return name;
}

// All choices that the search meets, the cheapest first.
template <class T> std::vector<kernels::lane_choice> ranked(sigpak::index points, int lanes) {
  std::vector<kernels::lane_choice> all;
  const auto costs = kernels::costs_of<T>(lanes);
  const auto cost = [&](const kernels::radix_list& list) {
    all.push_back(kernels::choice_of<T>(list, points, lanes));
    return all.back().cost;
  };
  kernels::radix_search(costs, cost).run(points / lanes);
  // As the search takes the last of equal ones.
  std::reverse(all.begin(), all.end());
  std::stable_sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.cost < b.cost; });
  return all;
}

// The plan is made anew before every batch, as there is one for a length.
template <class T>
contender with_choice(const kernels::lane_choice& choice, const record<T>& r, std::size_t n, int lanes) {
  const auto points = static_cast<sigpak::index>(n);
  T* const x = r.data();
  return {name_of(choice),
          [=, &r] {
            kernels::release_lane_plans<T>();
            kernels::make_lane_plan<T>(points, lanes, choice);
            r.refill(1);
            sigpak::transform(x, points, false);
          },
          [=] {
            sigpak::transform(x, points, false);
            sigpak::transform(x, points, true);
          },
          static_cast<int>(std::clamp<std::size_t>((std::size_t{1} << 18) / n, 1, 100))};
}

template <class T> void print_row(std::size_t n, const bench::options& o) {
  const int lanes = sigpak::at_level<kernels::fft_kernels<T>>()->widest_lanes;
  const record<T> r(n);
  auto choices = ranked<T>(static_cast<sigpak::index>(n), lanes);
  const auto most = static_cast<std::size_t>(o.number("--neighbours", 4)) + 1;
  if (choices.size() > most) choices.resize(most);
  std::vector<contender> contenders;
  for (const auto& choice : choices) contenders.push_back(with_choice(choice, r, n, lanes));
  const auto timings = bench::compare(contenders, static_cast<int>(o.number("--rounds", 15)), 2e-4);
  std::printf("| %s | %zu | %s | %.2f |", bench::is_double<T> ? "double" : "single", n,
              contenders[0].name.c_str(), timings[0].seconds * 1e6);
  for (std::size_t i = 1; i < contenders.size(); ++i) {
    std::printf(" %s: %.2f |", contenders[i].name.c_str(), timings[i].ratio);
  }
  std::printf("\n");
  std::fflush(stdout);
  kernels::release_lane_plans<T>();
}

template <class T> void print_rows(const bench::options& o) {
  for (const std::size_t n : bench::powers_of_two(8, 22)) {
    const long size = static_cast<long>(n);
    if (size >= o.number("--least", 256) && size <= o.number("--most", 1 << 20)) print_row<T>(n, o);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const bench::options o(argc, argv,
                         {"--level", "--precision", "--least", "--most", "--neighbours", "--rounds"});
  const auto& caches = sigpak::machine::caches();
  std::printf("level %s, caches of %ld KiB in %ld ways, %ld KiB, %ld KiB\n", o.level(),
              static_cast<long>(caches.first / 1024), static_cast<long>(caches.first_ways),
              static_cast<long>(caches.second / 1024), static_cast<long>(caches.last / 1024));
  if (sigpak::at_level<kernels::fft_kernels<double>>() == nullptr) {
    std::printf("without wide vectors there is nothing to choose\n");
    return 0;
  }
  std::printf(
      "\n| precision | N | choice | us | neighbours: speed relative to it |\n|---|---|---|---|---|\n");
  if (o.wants("--precision", "double")) print_rows<double>(o);
  if (o.wants("--precision", "single")) print_rows<float>(o);
}
