// SPDX-License-Identifier: MIT
// VOLK, every kernel that takes data at any address, as a tuned installation would choose among them.
#include <volk/volk.h>

#include "vector_peers.h"

namespace bench {
namespace {

// A pointer to whatever the kernel wants.
struct place {
  const float* start;
  template <class P> operator P*() const { return reinterpret_cast<P*>(const_cast<float*>(start)); }
};

using runner = void (*)(const arrays<float>&, const char* kernel);

template <auto kernels> void one(const arrays<float>& on, const char* kernel) {
  kernels(place{on.out}, place{on.a}, static_cast<unsigned>(on.points), kernel);
}
template <auto kernels> void two(const arrays<float>& on, const char* kernel) {
  kernels(place{on.out}, place{on.a}, place{on.b}, static_cast<unsigned>(on.points), kernel);
}
void scale(const arrays<float>& on, const char* kernel) {
  volk_32f_s32f_multiply_32f_manual(on.out, on.out, -1.0F, static_cast<unsigned>(on.points), kernel);
}
void variance(const arrays<float>& on, const char* kernel) {
  volk_32f_stddev_and_mean_32f_x2_manual(on.out, on.out + 1, on.a, static_cast<unsigned>(on.points), kernel);
}

struct entry {
  std::string_view job;
  volk_func_desc_t (*kernels)();
  runner run;
};

constexpr entry entries[] = {
    {"scale", volk_32f_s32f_multiply_32f_get_func_desc, scale},
    {"add", volk_32f_x2_add_32f_get_func_desc, two<volk_32f_x2_add_32f_manual>},
    {"multiply", volk_32f_x2_multiply_32f_get_func_desc, two<volk_32f_x2_multiply_32f_manual>},
    {"divide", volk_32f_x2_divide_32f_get_func_desc, two<volk_32f_x2_divide_32f_manual>},
    {"minimum", volk_32f_x2_min_32f_get_func_desc, two<volk_32f_x2_min_32f_manual>},
    {"complex multiply", volk_32fc_x2_multiply_32fc_get_func_desc, two<volk_32fc_x2_multiply_32fc_manual>},
    {"complex divide", volk_32fc_x2_divide_32fc_get_func_desc, two<volk_32fc_x2_divide_32fc_manual>},
    {"squared magnitude", volk_32fc_magnitude_squared_32f_get_func_desc,
     one<volk_32fc_magnitude_squared_32f_manual>},
    {"magnitude", volk_32fc_magnitude_32f_get_func_desc, one<volk_32fc_magnitude_32f_manual>},
    {"real part", volk_32fc_deinterleave_real_32f_get_func_desc, one<volk_32fc_deinterleave_real_32f_manual>},
    {"parts to complex", volk_32f_x2_interleave_32fc_get_func_desc, two<volk_32f_x2_interleave_32fc_manual>},
    {"sum", volk_32f_accumulator_s32f_get_func_desc, one<volk_32f_accumulator_s32f_manual>},
    {"variance", volk_32f_stddev_and_mean_32f_x2_get_func_desc, variance},
    {"smallest", volk_32f_index_min_32u_get_func_desc, one<volk_32f_index_min_32u_manual>},
    {"dot product", volk_32f_x2_dot_prod_32f_get_func_desc, two<volk_32f_x2_dot_prod_32f_manual>},
    {"square root", volk_32f_sqrt_32f_get_func_desc, one<volk_32f_sqrt_32f_manual>},
    {"exp", volk_32f_exp_32f_get_func_desc, one<volk_32f_exp_32f_manual>},
    {"log", volk_32f_log2_32f_get_func_desc, one<volk_32f_log2_32f_manual>},
    {"sin", volk_32f_sin_32f_get_func_desc, one<volk_32f_sin_32f_manual>},
    {"cos", volk_32f_cos_32f_get_func_desc, one<volk_32f_cos_32f_manual>},
    {"tan", volk_32f_tan_32f_get_func_desc, one<volk_32f_tan_32f_manual>},
    {"atan", volk_32f_atan_32f_get_func_desc, one<volk_32f_atan_32f_manual>},
    {"asin", volk_32f_asin_32f_get_func_desc, one<volk_32f_asin_32f_manual>},
    {"acos", volk_32f_acos_32f_get_func_desc, one<volk_32f_acos_32f_manual>},
    {"tanh", volk_32f_tanh_32f_get_func_desc, one<volk_32f_tanh_32f_manual>},
};

}  // namespace

void add_volk(std::vector<vector_peer>& to, std::string_view job, const arrays<float>& on) {
  for (const entry& e : entries) {
    if (e.job != job) continue;
    const volk_func_desc_t kernels = e.kernels();
    for (std::size_t i = 0; i < kernels.n_impls; ++i) {
      if (kernels.impl_alignment[i]) continue;
      to.push_back({"VOLK", [run = e.run, on, kernel = kernels.impl_names[i]] { run(on, kernel); }});
    }
  }
}

}  // namespace bench
