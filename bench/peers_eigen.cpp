// SPDX-License-Identifier: MIT
// Eigen with the vectors of this machine.
#include <Eigen/Core>

#include "vector_peers.h"

namespace bench {
namespace {

template <class T> using column = Eigen::Map<Eigen::Array<T, Eigen::Dynamic, 1>>;
template <class T> using fixed_column = Eigen::Map<const Eigen::Array<T, Eigen::Dynamic, 1>>;

template <class T> struct views {
  using C = std::complex<T>;

  explicit views(const arrays<T>& on)
      : a(on.a, on.points),
        b(on.b, on.points),
        out(on.out, on.points),
        za(reinterpret_cast<const C*>(on.a), on.points),
        zb(reinterpret_cast<const C*>(on.b), on.points),
        zout(reinterpret_cast<C*>(on.out), on.points) {}

  fixed_column<T> a, b;
  column<T> out;
  fixed_column<C> za, zb;
  column<C> zout;
};

template <class T> struct entry {
  std::string_view job;
  void (*run)(views<T>);
};

template <class T>
constexpr entry<T> entries[] = {
    {"scale", [](views<T> v) { v.out *= T(-1); }},
    {"add", [](views<T> v) { v.out = v.a + v.b; }},
    {"multiply", [](views<T> v) { v.out = v.a * v.b; }},
    {"divide", [](views<T> v) { v.out = v.a / v.b; }},
    {"minimum", [](views<T> v) { v.out = v.a.min(v.b); }},
    {"complex multiply", [](views<T> v) { v.zout = v.za * v.zb; }},
    {"complex divide", [](views<T> v) { v.zout = v.za / v.zb; }},
    {"squared magnitude", [](views<T> v) { v.out = v.za.abs2(); }},
    {"magnitude", [](views<T> v) { v.out = v.za.abs(); }},
    {"real part", [](views<T> v) { v.out = v.za.real(); }},
    {"parts to complex",
     [](views<T> v) {
       v.zout.real() = v.a;
       v.zout.imag() = v.b;
     }},
    {"sum", [](views<T> v) { v.out[0] = v.a.sum(); }},
    {"mean", [](views<T> v) { v.out[0] = v.a.mean(); }},
    {"sum of squares", [](views<T> v) { v.out[0] = v.a.square().sum(); }},
    {"variance", [](views<T> v) { v.out[0] = (v.a - v.a.mean()).square().mean(); }},
    {"smallest", [](views<T> v) { v.out[0] = v.a.minCoeff(); }},
    {"dot product", [](views<T> v) { v.out[0] = v.a.matrix().dot(v.b.matrix()); }},
    {"square root", [](views<T> v) { v.out = v.a.sqrt(); }},
    {"exp", [](views<T> v) { v.out = v.a.exp(); }},
    {"log", [](views<T> v) { v.out = v.a.log(); }},
    {"log10", [](views<T> v) { v.out = v.a.log10(); }},
    {"sin", [](views<T> v) { v.out = v.a.sin(); }},
    {"cos", [](views<T> v) { v.out = v.a.cos(); }},
    {"tan", [](views<T> v) { v.out = v.a.tan(); }},
    {"atan", [](views<T> v) { v.out = v.a.atan(); }},
    {"asin", [](views<T> v) { v.out = v.a.asin(); }},
    {"acos", [](views<T> v) { v.out = v.a.acos(); }},
    {"sinh", [](views<T> v) { v.out = v.a.sinh(); }},
    {"cosh", [](views<T> v) { v.out = v.a.cosh(); }},
    {"tanh", [](views<T> v) { v.out = v.a.tanh(); }},
};

}  // namespace

template <class T> void add_eigen(std::vector<vector_peer>& to, std::string_view job, const arrays<T>& on) {
  for (const entry<T>& e : entries<T>) {
    if (e.job == job) to.push_back({"Eigen", [run = e.run, v = views<T>(on)] { run(v); }});
  }
}

template void add_eigen(std::vector<vector_peer>&, std::string_view, const arrays<double>&);
template void add_eigen(std::vector<vector_peer>&, std::string_view, const arrays<float>&);

}  // namespace bench
