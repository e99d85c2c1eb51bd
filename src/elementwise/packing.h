// SPDX-License-Identifier: MIT
// Walks over one record whose points change their width: packed to scalars, or spread to pairs.
#pragma once

#include "core/each.h"
#include "core/isa.h"
#include "core/product.h"
#include "core/storage.h"

namespace sigpak {

// out[i] = f(z[i]), forwards: out may be z.
template <class T, class F> void pack(const T* z, T* out, index points, F f) noexcept {
  isa::run(points, [=] { each(out, points, [=](index i) { out[i] = f(point_at(z, i)); }); });
}

// z[i] = f(x[i]), backwards: z may be x.
template <class T, class F> void spread(const T* x, T* z, index points, F f) noexcept {
  isa::run(points, [=] { each_from_end<2>(z, points, [=](index i) { put_point(z, i, f(x[i])); }); });
}

// out[i] = f(x[i]); out may be x.
template <class T, class F> void map_reals(const T* x, T* out, index points, F f) noexcept {
  isa::run(points, [=] { each(out, points, [=](index i) { out[i] = f(x[i]); }); });
}

// out[i] = f(z[i]), both complex; out may be z.
template <class T, class F> void map_points(const T* z, T* out, index points, F f) noexcept {
  isa::run(points, [=] { each<2>(out, points, [=](index i) { put_point(out, i, f(point_at(z, i))); }); });
}

// The record becomes f of itself in real form; f takes a scalar or a complex value.
template <record V, class F> status turn_real(V* v, F f) noexcept {
  if (is_complex(v)) {
    pack(v->data, v->data, length(v), f);
  } else {
    map_reals(v->data, v->data, length(v), f);
  }
  v->complex = 0;
  return ok;
}

// A real record becomes f of itself in complex form.
template <record V, class F> status spread_reals(V* v, F f) noexcept {
  const auto points = v->points;
  v->complex = 1;
  if (reallocate(v, points, 0) != ok) return failed;
  spread(v->data, v->data, length(v), f);
  return ok;
}

// The same of any record.
template <record V, class F> status turn_complex(V* v, F f) noexcept {
  if (!is_complex(v)) return spread_reals(v, f);
  map_points(v->data, v->data, length(v), f);
  return ok;
}

}  // namespace sigpak
