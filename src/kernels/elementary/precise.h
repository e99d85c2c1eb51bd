// SPDX-License-Identifier: MIT
// Elementary functions of single precision where a double leaves open to which float a result rounds.
#pragma once

namespace sigpak::kernels {

// f(x) rounded to odd: rounding it once more to a float gives the float nearest to f(x).
double precise_exp(double x) noexcept;
double precise_exp10(double x) noexcept;
double precise_log(double x) noexcept;
double precise_scaled_log(double x, double scale, double scale_rest) noexcept;  // ln x times the sum of both
double precise_atan(double x) noexcept;
double precise_asin(double x) noexcept;
double precise_acos(double x) noexcept;
double precise_sinh(double x) noexcept;
double precise_cosh(double x) noexcept;
double precise_tanh(double x) noexcept;

}  // namespace sigpak::kernels
