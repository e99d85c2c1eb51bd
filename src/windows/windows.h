// SPDX-License-Identifier: MIT
// Workers of the windows that other families call. A generator fills all points of a real record.
#pragma once

#include "core/record.h"

namespace sigpak {

// Any window of the catalogue; the width counts when the flags say that one is given.
template <record V> status generate_window(V* v, int window, int flags, double width) noexcept;

// Standard deviation a * points samples.
template <record V> status gaussian(V* v, double a, int flags) noexcept;
template <record V> status kaiser(V* v, double beta, int flags) noexcept;

// The shape of the Kaiser window for a filter whose stop band lies so many decibels down.
double kaiser_shape(double attenuation) noexcept;

}  // namespace sigpak
