// The elementary functions at the wide levels; null where the library runs at the baseline.
#pragma once

#include "core/isa.h"
#include "kernels/elementary/functions.h"

namespace sigpak::kernels {

template <class T> const circular_functions<T>* circular() noexcept;
template <class T> const exponential_functions<T>* exponential() noexcept;
template <class T> const inverse_functions<T>* inverse() noexcept;
template <class T> const logarithm_functions<T>* logarithm() noexcept;
template <class T> const root_function<T>* square_root_points() noexcept;

}  // namespace sigpak::kernels
