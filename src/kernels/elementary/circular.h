// SPDX-License-Identifier: MIT
// The circular functions of one number, whatever its size: for the arguments that vectors and the C library
// leave out.
#pragma once

namespace sigpak::kernels {

// Rounded to T once: in single precision the result is a double that converts to the float nearest to the
// exact value.
template <class T> double careful_sine(double x) noexcept;
template <class T> double careful_cosine(double x) noexcept;
template <class T> double careful_tangent(double x) noexcept;
template <class T> double careful_sine_quotient(double x) noexcept;

// sin x and cos x, each with what its leading double leaves out.
struct both_sines {
  double sine;
  double sine_rest;
  double cosine;
  double cosine_rest;
};
both_sines careful_sine_and_cosine(double x) noexcept;

}  // namespace sigpak::kernels
