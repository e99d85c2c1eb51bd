// SPDX-License-Identifier: MIT
// The vectors of liquid-dsp.
#include <complex>  // before its header, which then speaks C++

#include <liquid/liquid.h>

#include <memory>

#include "vector_peers.h"

namespace bench {
namespace {

struct entry {
  std::string_view job;
  void (*run)(const arrays<float>&);
};

unsigned count(const arrays<float>& on) { return static_cast<unsigned>(on.points); }
float* mutable_data(const float* x) { return const_cast<float*>(x); }
liquid_float_complex* points(const float* x) {
  return reinterpret_cast<liquid_float_complex*>(const_cast<float*>(x));
}

constexpr entry entries[] = {
    {"scale", [](const arrays<float>& on) { liquid_vectorf_mulscalar(on.out, count(on), -1.0F, on.out); }},
    {"add",
     [](const arrays<float>& on) {
       liquid_vectorf_add(mutable_data(on.a), mutable_data(on.b), count(on), on.out);
     }},
    {"multiply",
     [](const arrays<float>& on) {
       liquid_vectorf_mul(mutable_data(on.a), mutable_data(on.b), count(on), on.out);
     }},
    {"complex multiply",
     [](const arrays<float>& on) {
       liquid_vectorcf_mul(points(on.a), points(on.b), count(on), points(on.out));
     }},
    {"magnitude", [](const arrays<float>& on) { liquid_vectorcf_abs(points(on.a), count(on), on.out); }},
};

}  // namespace

void add_liquid(std::vector<vector_peer>& to, std::string_view job, const arrays<float>& on) {
  for (const entry& e : entries) {
    if (e.job == job) to.push_back({"liquid", [run = e.run, on] { run(on); }});
  }
  if (job == "dot product") {
    const std::shared_ptr<dotprod_rrrf_s> made(dotprod_rrrf_create(mutable_data(on.b), count(on)),
                                               dotprod_rrrf_destroy);
    to.push_back({"liquid", [made, on] { dotprod_rrrf_execute(made.get(), mutable_data(on.a), on.out); }});
  }
}

}  // namespace bench
