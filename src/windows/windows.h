// Workers of the windows that other families call. A generator fills all points of a real record.
#pragma once

#include "core/record.h"

namespace sigpak {

// Any window of the catalogue; the width counts when the flags say that one is given.
template <record V> status generate_window(V* v, int window, int flags, scalar<V> width) noexcept;

// Standard deviation a * points samples.
template <record V> status gaussian(V* v, scalar<V> a, int flags) noexcept;
template <record V> status kaiser(V* v, scalar<V> beta, int flags) noexcept;

}  // namespace sigpak
