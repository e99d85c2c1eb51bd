// Every operation of sigpak.h for the records of sigpak.hpp, which includes this file. Made by docs/cxx.py from
// sigpak.h: whoever changes the one makes the other anew with scripts/manual.
// clang-format off
#ifndef SIGPAK_OPERATIONS_HPP
#define SIGPAK_OPERATIONS_HPP

namespace sigpak {

using ::dsp_version;
using ::dspf_fclose;
using ::dspf_fopen;
using ::dspf_version;
using ::dspff_fclose;
using ::dspff_fopen;

namespace status {

[[nodiscard]] inline std::int32_t dsp_alloc(record& v) noexcept { return ::dsp_alloc(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dsp_alloc(recordf& v) noexcept { return ::dspf_alloc(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dsp_realloc(record& v, uint32_t old_points, int32_t old_complex) noexcept {
  return ::dsp_realloc(detail::raw(v), old_points, old_complex);
}
[[nodiscard]] inline std::int32_t dsp_realloc(recordf& v, uint32_t old_points, int32_t old_complex) noexcept {
  return ::dspf_realloc(detail::raw(v), old_points, old_complex);
}
[[nodiscard]] inline std::int32_t dsp_append(record& dst, const record& src) noexcept {
  return ::dsp_append(detail::raw(dst), detail::raw(src));
}
[[nodiscard]] inline std::int32_t dsp_append(recordf& dst, const recordf& src) noexcept {
  return ::dspf_append(detail::raw(dst), detail::raw(src));
}
[[nodiscard]] inline std::int32_t dsp_copy(record& dst, const record& src) noexcept {
  return ::dsp_copy(detail::raw(dst), detail::raw(src));
}
[[nodiscard]] inline std::int32_t dsp_copy(recordf& dst, const recordf& src) noexcept {
  return ::dspf_copy(detail::raw(dst), detail::raw(src));
}
[[nodiscard]] inline std::int32_t dsp_copy_at_most(record& dst, const record& src, int32_t count) noexcept {
  return ::dsp_copy_at_most(detail::raw(dst), detail::raw(src), count);
}
[[nodiscard]] inline std::int32_t dsp_copy_at_most(recordf& dst, const recordf& src, int32_t count) noexcept {
  return ::dspf_copy_at_most(detail::raw(dst), detail::raw(src), count);
}
[[nodiscard]] inline std::int32_t dsp_cmp(const record& a, const record& b, double tolerance, int32_t* order)
    noexcept {
  return ::dsp_cmp(detail::raw(a), detail::raw(b), tolerance, order);
}
[[nodiscard]] inline std::int32_t dsp_cmp(const recordf& a, const recordf& b, float tolerance, int32_t* order)
    noexcept {
  return ::dspf_cmp(detail::raw(a), detail::raw(b), tolerance, order);
}
[[nodiscard]] inline std::int32_t dsp_lib_alloc(dsp_alloc_hook hook, dsp_alloc_hook* previous) noexcept {
  return ::dsp_lib_alloc(hook, previous);
}
[[nodiscard]] inline std::int32_t dsp_lib_alloc(dspf_alloc_hook hook, dspf_alloc_hook* previous) noexcept {
  return ::dspf_lib_alloc(hook, previous);
}
[[nodiscard]] inline std::int32_t dsp_lib_realloc(dsp_realloc_hook hook, dsp_realloc_hook* previous) noexcept
    {
  return ::dsp_lib_realloc(hook, previous);
}
[[nodiscard]] inline std::int32_t dsp_lib_realloc(dspf_realloc_hook hook, dspf_realloc_hook* previous)
    noexcept {
  return ::dspf_lib_realloc(hook, previous);
}
[[nodiscard]] inline std::int32_t dsp_lib_free(dsp_free_hook hook, dsp_free_hook* previous) noexcept {
  return ::dsp_lib_free(hook, previous);
}
[[nodiscard]] inline std::int32_t dsp_lib_free(dspf_free_hook hook, dspf_free_hook* previous) noexcept {
  return ::dspf_lib_free(hook, previous);
}
[[nodiscard]] inline std::int32_t dsp_lib_init() noexcept { return ::dsp_lib_init(); }
[[nodiscard]] inline std::int32_t dspf_lib_init() noexcept { return ::dspf_lib_init(); }
[[nodiscard]] inline std::int32_t dsp_free_internal() noexcept { return ::dsp_free_internal(); }
[[nodiscard]] inline std::int32_t dspf_free_internal() noexcept { return ::dspf_free_internal(); }
[[nodiscard]] inline std::int32_t dspi_scale(record& v, double factor) noexcept {
  return ::dspi_scale(detail::raw(v), factor);
}
[[nodiscard]] inline std::int32_t dspi_scale(recordf& v, float factor) noexcept {
  return ::dspfi_scale(detail::raw(v), factor);
}
[[nodiscard]] inline std::int32_t dspi_offset(record& v, double amount) noexcept {
  return ::dspi_offset(detail::raw(v), amount);
}
[[nodiscard]] inline std::int32_t dspi_offset(recordf& v, float amount) noexcept {
  return ::dspfi_offset(detail::raw(v), amount);
}
[[nodiscard]] inline std::int32_t dspi_cscale(record& v, double re, double im) noexcept {
  return ::dspi_cscale(detail::raw(v), re, im);
}
[[nodiscard]] inline std::int32_t dspi_cscale(recordf& v, float re, float im) noexcept {
  return ::dspfi_cscale(detail::raw(v), re, im);
}
[[nodiscard]] inline std::int32_t dspi_neg(record& v) noexcept { return ::dspi_neg(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_neg(recordf& v) noexcept { return ::dspfi_neg(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_abs(record& v) noexcept { return ::dspi_abs(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_abs(recordf& v) noexcept { return ::dspfi_abs(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_square(record& v) noexcept { return ::dspi_square(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_square(recordf& v) noexcept { return ::dspfi_square(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_recip(record& v) noexcept { return ::dspi_recip(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_recip(recordf& v) noexcept { return ::dspfi_recip(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_sqrt(record& v) noexcept { return ::dspi_sqrt(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_sqrt(recordf& v) noexcept { return ::dspfi_sqrt(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_exp(record& v) noexcept { return ::dspi_exp(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_exp(recordf& v) noexcept { return ::dspfi_exp(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_exp10(record& v) noexcept { return ::dspi_exp10(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_exp10(recordf& v) noexcept { return ::dspfi_exp10(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_log(record& v) noexcept { return ::dspi_log(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_log(recordf& v) noexcept { return ::dspfi_log(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_log10(record& v) noexcept { return ::dspi_log10(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_log10(recordf& v) noexcept { return ::dspfi_log10(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_db(record& v, double factor) noexcept {
  return ::dspi_db(detail::raw(v), factor);
}
[[nodiscard]] inline std::int32_t dspi_db(recordf& v, float factor) noexcept {
  return ::dspfi_db(detail::raw(v), factor);
}
[[nodiscard]] inline std::int32_t dspi_limit(record& v, int32_t mode, double a, double b, int32_t* clipped)
    noexcept {
  return ::dspi_limit(detail::raw(v), mode, a, b, clipped);
}
[[nodiscard]] inline std::int32_t dspi_limit(recordf& v, int32_t mode, float a, float b, int32_t* clipped)
    noexcept {
  return ::dspfi_limit(detail::raw(v), mode, a, b, clipped);
}
[[nodiscard]] inline std::int32_t dspi_sin(record& v) noexcept { return ::dspi_sin(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_sin(recordf& v) noexcept { return ::dspfi_sin(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_cos(record& v) noexcept { return ::dspi_cos(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_cos(recordf& v) noexcept { return ::dspfi_cos(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_tan(record& v) noexcept { return ::dspi_tan(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_tan(recordf& v) noexcept { return ::dspfi_tan(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_sinc(record& v) noexcept { return ::dspi_sinc(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_sinc(recordf& v) noexcept { return ::dspfi_sinc(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_atan(record& v) noexcept { return ::dspi_atan(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_atan(recordf& v) noexcept { return ::dspfi_atan(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_asin(record& v) noexcept { return ::dspi_asin(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_asin(recordf& v) noexcept { return ::dspfi_asin(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_acos(record& v) noexcept { return ::dspi_acos(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_acos(recordf& v) noexcept { return ::dspfi_acos(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_sinh(record& v) noexcept { return ::dspi_sinh(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_sinh(recordf& v) noexcept { return ::dspfi_sinh(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_cosh(record& v) noexcept { return ::dspi_cosh(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_cosh(recordf& v) noexcept { return ::dspfi_cosh(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_tanh(record& v) noexcept { return ::dspi_tanh(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_tanh(recordf& v) noexcept { return ::dspfi_tanh(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_besi0(record& v) noexcept { return ::dspi_besi0(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_besi0(recordf& v) noexcept { return ::dspfi_besi0(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_besj0(record& v) noexcept { return ::dspi_besj0(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_besj0(recordf& v) noexcept { return ::dspfi_besj0(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_besj1(record& v) noexcept { return ::dspi_besj1(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_besj1(recordf& v) noexcept { return ::dspfi_besj1(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_besy0(record& v) noexcept { return ::dspi_besy0(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_besy0(recordf& v) noexcept { return ::dspfi_besy0(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_besy1(record& v) noexcept { return ::dspi_besy1(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_besy1(recordf& v) noexcept { return ::dspfi_besy1(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_erf(record& v) noexcept { return ::dspi_erf(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_erf(recordf& v) noexcept { return ::dspfi_erf(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_erfc(record& v) noexcept { return ::dspi_erfc(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_erfc(recordf& v) noexcept { return ::dspfi_erfc(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_gamma(record& v) noexcept { return ::dspi_gamma(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_gamma(recordf& v) noexcept { return ::dspfi_gamma(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_lgamma(record& v) noexcept { return ::dspi_lgamma(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_lgamma(recordf& v) noexcept { return ::dspfi_lgamma(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspb_add(const record& a, const record& b, record& out) noexcept {
  return ::dspb_add(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_add(const recordf& a, const recordf& b, recordf& out) noexcept {
  return ::dspfb_add(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_sub(const record& a, const record& b, record& out) noexcept {
  return ::dspb_sub(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_sub(const recordf& a, const recordf& b, recordf& out) noexcept {
  return ::dspfb_sub(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_mul(const record& a, const record& b, record& out) noexcept {
  return ::dspb_mul(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_mul(const recordf& a, const recordf& b, recordf& out) noexcept {
  return ::dspfb_mul(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_conj_mul(const record& a, const record& b, record& out) noexcept {
  return ::dspb_conj_mul(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_conj_mul(const recordf& a, const recordf& b, recordf& out) noexcept {
  return ::dspfb_conj_mul(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_div(const record& a, const record& b, record& out) noexcept {
  return ::dspb_div(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_div(const recordf& a, const recordf& b, recordf& out) noexcept {
  return ::dspfb_div(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_avg_add(const record& a, const record& b, record& out, double weight)
    noexcept {
  return ::dspb_avg_add(detail::raw(a), detail::raw(b), detail::raw(out), weight);
}
[[nodiscard]] inline std::int32_t dspb_avg_add(const recordf& a, const recordf& b, recordf& out, float weight)
    noexcept {
  return ::dspfb_avg_add(detail::raw(a), detail::raw(b), detail::raw(out), weight);
}
[[nodiscard]] inline std::int32_t dspb_min(const record& a, const record& b, record& out) noexcept {
  return ::dspb_min(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_min(const recordf& a, const recordf& b, recordf& out) noexcept {
  return ::dspfb_min(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_max(const record& a, const record& b, record& out) noexcept {
  return ::dspb_max(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_max(const recordf& a, const recordf& b, recordf& out) noexcept {
  return ::dspfb_max(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_ritoc(const record& re, const record& im, record& out) noexcept {
  return ::dspb_ritoc(detail::raw(re), detail::raw(im), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_ritoc(const recordf& re, const recordf& im, recordf& out) noexcept {
  return ::dspfb_ritoc(detail::raw(re), detail::raw(im), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_inter(const record& a, const record& b, record& out) noexcept {
  return ::dspb_inter(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_inter(const recordf& a, const recordf& b, recordf& out) noexcept {
  return ::dspfb_inter(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspbs_dot(const record& a, const record& b, record& out) noexcept {
  return ::dspbs_dot(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspbs_dot(const recordf& a, const recordf& b, recordf& out) noexcept {
  return ::dspfbs_dot(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_pmul(const record& a, const record& b, record& out) noexcept {
  return ::dspb_pmul(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspb_pmul(const recordf& a, const recordf& b, recordf& out) noexcept {
  return ::dspfb_pmul(detail::raw(a), detail::raw(b), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspi_rtoc(record& v) noexcept { return ::dspi_rtoc(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_rtoc(recordf& v) noexcept { return ::dspfi_rtoc(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_real(record& v) noexcept { return ::dspi_real(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_real(recordf& v) noexcept { return ::dspfi_real(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_imag(record& v) noexcept { return ::dspi_imag(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_imag(recordf& v) noexcept { return ::dspfi_imag(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_conj(record& v) noexcept { return ::dspi_conj(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_conj(recordf& v) noexcept { return ::dspfi_conj(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_timesi(record& v) noexcept { return ::dspi_timesi(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_timesi(recordf& v) noexcept { return ::dspfi_timesi(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_mag(record& v) noexcept { return ::dspi_mag(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_mag(recordf& v) noexcept { return ::dspfi_mag(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_magsq(record& v) noexcept { return ::dspi_magsq(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_magsq(recordf& v) noexcept { return ::dspfi_magsq(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_phase(record& v) noexcept { return ::dspi_phase(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_phase(recordf& v) noexcept { return ::dspfi_phase(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_rtop(record& v) noexcept { return ::dspi_rtop(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_rtop(recordf& v) noexcept { return ::dspfi_rtop(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_ptor(record& v) noexcept { return ::dspi_ptor(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_ptor(recordf& v) noexcept { return ::dspfi_ptor(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_unwrap(record& v) noexcept { return ::dspi_unwrap(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_unwrap(recordf& v) noexcept { return ::dspfi_unwrap(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspu_mag(const record& in, record& out) noexcept {
  return ::dspu_mag(detail::raw(in), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspu_mag(const recordf& in, recordf& out) noexcept {
  return ::dspfu_mag(detail::raw(in), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspu_magsq(const record& in, record& out) noexcept {
  return ::dspu_magsq(detail::raw(in), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspu_magsq(const recordf& in, recordf& out) noexcept {
  return ::dspfu_magsq(detail::raw(in), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspu_sqrt(const record& in, record& out) noexcept {
  return ::dspu_sqrt(detail::raw(in), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspu_sqrt(const recordf& in, recordf& out) noexcept {
  return ::dspfu_sqrt(detail::raw(in), detail::raw(out));
}
[[nodiscard]] inline std::int32_t dspu_subvec(const record& in, record& out, int32_t start, int32_t count)
    noexcept {
  return ::dspu_subvec(detail::raw(in), detail::raw(out), start, count);
}
[[nodiscard]] inline std::int32_t dspu_subvec(const recordf& in, recordf& out, int32_t start, int32_t count)
    noexcept {
  return ::dspfu_subvec(detail::raw(in), detail::raw(out), start, count);
}
[[nodiscard]] inline std::int32_t dspc_cos(record& v, double f, double phase) noexcept {
  return ::dspc_cos(detail::raw(v), f, phase);
}
[[nodiscard]] inline std::int32_t dspc_cos(recordf& v, float f, float phase) noexcept {
  return ::dspfc_cos(detail::raw(v), f, phase);
}
[[nodiscard]] inline std::int32_t dspc_cexp(record& v, double f, double phase) noexcept {
  return ::dspc_cexp(detail::raw(v), f, phase);
}
[[nodiscard]] inline std::int32_t dspc_cexp(recordf& v, float f, float phase) noexcept {
  return ::dspfc_cexp(detail::raw(v), f, phase);
}
[[nodiscard]] inline std::int32_t dspc_line(record& v, double slope, double start) noexcept {
  return ::dspc_line(detail::raw(v), slope, start);
}
[[nodiscard]] inline std::int32_t dspc_line(recordf& v, float slope, float start) noexcept {
  return ::dspfc_line(detail::raw(v), slope, start);
}
[[nodiscard]] inline std::int32_t dspi_addcos(record& v, int32_t mode, double f, double amp, double phase)
    noexcept {
  return ::dspi_addcos(detail::raw(v), mode, f, amp, phase);
}
[[nodiscard]] inline std::int32_t dspi_addcos(recordf& v, int32_t mode, float f, float amp, float phase)
    noexcept {
  return ::dspfi_addcos(detail::raw(v), mode, f, amp, phase);
}
[[nodiscard]] inline std::int32_t dspc_rand(record& v, int32_t distribution) noexcept {
  return ::dspc_rand(detail::raw(v), distribution);
}
[[nodiscard]] inline std::int32_t dspc_rand(recordf& v, int32_t distribution) noexcept {
  return ::dspfc_rand(detail::raw(v), distribution);
}
[[nodiscard]] inline std::int32_t dspi_rev(record& v) noexcept { return ::dspi_rev(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_rev(recordf& v) noexcept { return ::dspfi_rev(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_shift(record& v, uint32_t n) noexcept {
  return ::dspi_shift(detail::raw(v), n);
}
[[nodiscard]] inline std::int32_t dspi_shift(recordf& v, uint32_t n) noexcept {
  return ::dspfi_shift(detail::raw(v), n);
}
[[nodiscard]] inline std::int32_t dspi_shuffle(record& v) noexcept { return ::dspi_shuffle(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_shuffle(recordf& v) noexcept {
  return ::dspfi_shuffle(detail::raw(v));
}
[[nodiscard]] inline std::int32_t dspi_sort(record& v) noexcept { return ::dspi_sort(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_sort(recordf& v) noexcept { return ::dspfi_sort(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_swap_halves(record& v) noexcept {
  return ::dspi_swap_halves(detail::raw(v));
}
[[nodiscard]] inline std::int32_t dspi_swap_halves(recordf& v) noexcept {
  return ::dspfi_swap_halves(detail::raw(v));
}
[[nodiscard]] inline std::int32_t dspi_swap_halves2(record& v) noexcept {
  return ::dspi_swap_halves2(detail::raw(v));
}
[[nodiscard]] inline std::int32_t dspi_swap_halves2(recordf& v) noexcept {
  return ::dspfi_swap_halves2(detail::raw(v));
}
[[nodiscard]] inline std::int32_t dspi_zpad(record& v, int32_t points) noexcept {
  return ::dspi_zpad(detail::raw(v), points);
}
[[nodiscard]] inline std::int32_t dspi_zpad(recordf& v, int32_t points) noexcept {
  return ::dspfi_zpad(detail::raw(v), points);
}
[[nodiscard]] inline std::int32_t dspi_zero(record& v) noexcept { return ::dspi_zero(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_zero(recordf& v) noexcept { return ::dspfi_zero(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_zinter(record& v) noexcept { return ::dspi_zinter(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_zinter(recordf& v) noexcept { return ::dspfi_zinter(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_zpad2(record& v, int32_t n, int32_t flags) noexcept {
  return ::dspi_zpad2(detail::raw(v), n, flags);
}
[[nodiscard]] inline std::int32_t dspi_zpad2(recordf& v, int32_t n, int32_t flags) noexcept {
  return ::dspfi_zpad2(detail::raw(v), n, flags);
}
[[nodiscard]] inline std::int32_t dspi_unzpad(record& v, int32_t n, int32_t flags) noexcept {
  return ::dspi_unzpad(detail::raw(v), n, flags);
}
[[nodiscard]] inline std::int32_t dspi_unzpad(recordf& v, int32_t n, int32_t flags) noexcept {
  return ::dspfi_unzpad(detail::raw(v), n, flags);
}
[[nodiscard]] inline std::int32_t dspi_differ(record& v) noexcept { return ::dspi_differ(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_differ(recordf& v) noexcept { return ::dspfi_differ(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_integ(record& v) noexcept { return ::dspi_integ(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_integ(recordf& v) noexcept { return ::dspfi_integ(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_pdiffer(record& v) noexcept { return ::dspi_pdiffer(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_pdiffer(recordf& v) noexcept {
  return ::dspfi_pdiffer(detail::raw(v));
}
[[nodiscard]] inline std::int32_t dspi_edge(record& v, int32_t flags, double level) noexcept {
  return ::dspi_edge(detail::raw(v), flags, level);
}
[[nodiscard]] inline std::int32_t dspi_edge(recordf& v, int32_t flags, float level) noexcept {
  return ::dspfi_edge(detail::raw(v), flags, level);
}
[[nodiscard]] inline std::int32_t dsps_sum(const record& v, record& result) noexcept {
  return ::dsps_sum(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_sum(const recordf& v, recordf& result) noexcept {
  return ::dspfs_sum(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_mean(const record& v, record& result) noexcept {
  return ::dsps_mean(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_mean(const recordf& v, recordf& result) noexcept {
  return ::dspfs_mean(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_min(const record& v, record& result) noexcept {
  return ::dsps_min(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_min(const recordf& v, recordf& result) noexcept {
  return ::dspfs_min(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_max(const record& v, record& result) noexcept {
  return ::dsps_max(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_max(const recordf& v, recordf& result) noexcept {
  return ::dspfs_max(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_magsq_sum(const record& v, record& result) noexcept {
  return ::dsps_magsq_sum(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_magsq_sum(const recordf& v, recordf& result) noexcept {
  return ::dspfs_magsq_sum(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_rms(const record& v, record& result) noexcept {
  return ::dsps_rms(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_rms(const recordf& v, recordf& result) noexcept {
  return ::dspfs_rms(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_pop_var(const record& v, record& result) noexcept {
  return ::dsps_pop_var(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_pop_var(const recordf& v, recordf& result) noexcept {
  return ::dspfs_pop_var(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_samp_var(const record& v, record& result) noexcept {
  return ::dsps_samp_var(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_samp_var(const recordf& v, recordf& result) noexcept {
  return ::dspfs_samp_var(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_pop_stddev(const record& v, record& result) noexcept {
  return ::dsps_pop_stddev(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_pop_stddev(const recordf& v, recordf& result) noexcept {
  return ::dspfs_pop_stddev(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_samp_stddev(const record& v, record& result) noexcept {
  return ::dsps_samp_stddev(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_samp_stddev(const recordf& v, recordf& result) noexcept {
  return ::dspfs_samp_stddev(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_skew(const record& v, record& result) noexcept {
  return ::dsps_skew(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_skew(const recordf& v, recordf& result) noexcept {
  return ::dspfs_skew(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_excess(const record& v, record& result) noexcept {
  return ::dsps_excess(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_excess(const recordf& v, recordf& result) noexcept {
  return ::dspfs_excess(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_gmean(const record& v, record& result) noexcept {
  return ::dsps_gmean(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_gmean(const recordf& v, recordf& result) noexcept {
  return ::dspfs_gmean(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_hmean(const record& v, record& result) noexcept {
  return ::dsps_hmean(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_hmean(const recordf& v, recordf& result) noexcept {
  return ::dspfs_hmean(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_median(const record& v, record& result) noexcept {
  return ::dsps_median(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_median(const recordf& v, recordf& result) noexcept {
  return ::dspfs_median(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_peval(const record& p, record& result, double x) noexcept {
  return ::dsps_peval(detail::raw(p), detail::raw(result), x);
}
[[nodiscard]] inline std::int32_t dsps_peval(const recordf& p, recordf& result, float x) noexcept {
  return ::dspfs_peval(detail::raw(p), detail::raw(result), x);
}
[[nodiscard]] inline std::int32_t dsps_proots(const record& p, record& result) noexcept {
  return ::dsps_proots(detail::raw(p), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_proots(const recordf& p, recordf& result) noexcept {
  return ::dspfs_proots(detail::raw(p), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_psolve(const record& p, record& result, double guess) noexcept {
  return ::dsps_psolve(detail::raw(p), detail::raw(result), guess);
}
[[nodiscard]] inline std::int32_t dsps_psolve(const recordf& p, recordf& result, float guess) noexcept {
  return ::dspfs_psolve(detail::raw(p), detail::raw(result), guess);
}
[[nodiscard]] inline std::int32_t dsps_pcsolve(const record& p, record& result, double re, double im) noexcept
    {
  return ::dsps_pcsolve(detail::raw(p), detail::raw(result), re, im);
}
[[nodiscard]] inline std::int32_t dsps_pcsolve(const recordf& p, recordf& result, float re, float im) noexcept
    {
  return ::dspfs_pcsolve(detail::raw(p), detail::raw(result), re, im);
}
[[nodiscard]] inline std::int32_t dspi_proots(record& v) noexcept { return ::dspi_proots(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_proots(recordf& v) noexcept { return ::dspfi_proots(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_pztoc(record& v) noexcept { return ::dspi_pztoc(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_pztoc(recordf& v) noexcept { return ::dspfi_pztoc(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_recon(record& v) noexcept { return ::dspi_recon(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_recon(recordf& v) noexcept { return ::dspfi_recon(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_orecon(record& v, int32_t odd) noexcept {
  return ::dspi_orecon(detail::raw(v), odd);
}
[[nodiscard]] inline std::int32_t dspi_orecon(recordf& v, int32_t odd) noexcept {
  return ::dspfi_orecon(detail::raw(v), odd);
}
[[nodiscard]] inline std::int32_t dsps_peak(const record& v, record& result, int32_t flags, int32_t index)
    noexcept {
  return ::dsps_peak(detail::raw(v), detail::raw(result), flags, index);
}
[[nodiscard]] inline std::int32_t dsps_peak(const recordf& v, recordf& result, int32_t flags, int32_t index)
    noexcept {
  return ::dspfs_peak(detail::raw(v), detail::raw(result), flags, index);
}
[[nodiscard]] inline std::int32_t dsps_hist(const record& v, record& result, double lo, double width, int32_t
    bins) noexcept {
  return ::dsps_hist(detail::raw(v), detail::raw(result), lo, width, bins);
}
[[nodiscard]] inline std::int32_t dsps_hist(const recordf& v, recordf& result, float lo, float width, int32_t
    bins) noexcept {
  return ::dspfs_hist(detail::raw(v), detail::raw(result), lo, width, bins);
}
[[nodiscard]] inline std::int32_t dsps_lin_regres(const record& v, record& result) noexcept {
  return ::dsps_lin_regres(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_lin_regres(const recordf& v, recordf& result) noexcept {
  return ::dspfs_lin_regres(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_lin_regres2(const record& v, record& result) noexcept {
  return ::dsps_lin_regres2(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsps_lin_regres2(const recordf& v, recordf& result) noexcept {
  return ::dspfs_lin_regres2(detail::raw(v), detail::raw(result));
}
[[nodiscard]] inline std::int32_t dsp_cspline(const record* x, const record& y, record& spline, int32_t ends,
    double start, double end) noexcept {
  return ::dsp_cspline(detail::raw(x), detail::raw(y), detail::raw(spline), ends, start, end);
}
[[nodiscard]] inline std::int32_t dsp_cspline(const recordf* x, const recordf& y, recordf& spline, int32_t
    ends, float start, float end) noexcept {
  return ::dspf_cspline(detail::raw(x), detail::raw(y), detail::raw(spline), ends, start, end);
}
[[nodiscard]] inline std::int32_t dsp_interp(const record* x, const record& y, const record& at, record& out,
    int32_t flags) noexcept {
  return ::dsp_interp(detail::raw(x), detail::raw(y), detail::raw(at), detail::raw(out), flags);
}
[[nodiscard]] inline std::int32_t dsp_interp(const recordf* x, const recordf& y, const recordf& at, recordf&
    out, int32_t flags) noexcept {
  return ::dspf_interp(detail::raw(x), detail::raw(y), detail::raw(at), detail::raw(out), flags);
}
[[nodiscard]] inline std::int32_t dspb_cspline_2d(const record& x, const record& y, record& out, const record&
    gx, const record& gy, const record& z, int32_t flags) noexcept {
  return ::dspb_cspline_2d(detail::raw(x), detail::raw(y), detail::raw(out), detail::raw(gx), detail::raw(gy),
      detail::raw(z), flags);
}
[[nodiscard]] inline std::int32_t dspb_cspline_2d(const recordf& x, const recordf& y, recordf& out, const
    recordf& gx, const recordf& gy, const recordf& z, int32_t flags) noexcept {
  return ::dspfb_cspline_2d(detail::raw(x), detail::raw(y), detail::raw(out), detail::raw(gx),
      detail::raw(gy), detail::raw(z), flags);
}
[[nodiscard]] inline std::int32_t dspi_fft(record& v, int32_t direction) noexcept {
  return ::dspi_fft(detail::raw(v), direction);
}
[[nodiscard]] inline std::int32_t dspi_fft(recordf& v, int32_t direction) noexcept {
  return ::dspfi_fft(detail::raw(v), direction);
}
[[nodiscard]] inline std::int32_t dspi_rfft(record& v) noexcept { return ::dspi_rfft(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_rfft(recordf& v) noexcept { return ::dspfi_rfft(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_irfft(record& v) noexcept { return ::dspi_irfft(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_irfft(recordf& v) noexcept { return ::dspfi_irfft(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_dft(record& v, int32_t direction) noexcept {
  return ::dspi_dft(detail::raw(v), direction);
}
[[nodiscard]] inline std::int32_t dspi_dft(recordf& v, int32_t direction) noexcept {
  return ::dspfi_dft(detail::raw(v), direction);
}
[[nodiscard]] inline std::int32_t dspi_rdft(record& v) noexcept { return ::dspi_rdft(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_rdft(recordf& v) noexcept { return ::dspfi_rdft(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_irdft(record& v, int32_t odd) noexcept {
  return ::dspi_irdft(detail::raw(v), odd);
}
[[nodiscard]] inline std::int32_t dspi_irdft(recordf& v, int32_t odd) noexcept {
  return ::dspfi_irdft(detail::raw(v), odd);
}
[[nodiscard]] inline std::int32_t dspi_dct(record& v, int32_t flags) noexcept {
  return ::dspi_dct(detail::raw(v), flags);
}
[[nodiscard]] inline std::int32_t dspi_dct(recordf& v, int32_t flags) noexcept {
  return ::dspfi_dct(detail::raw(v), flags);
}
[[nodiscard]] inline std::int32_t dspi_bitrev(record& v) noexcept { return ::dspi_bitrev(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_bitrev(recordf& v) noexcept { return ::dspfi_bitrev(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_bitrev_scale(record& v) noexcept {
  return ::dspi_bitrev_scale(detail::raw(v));
}
[[nodiscard]] inline std::int32_t dspi_bitrev_scale(recordf& v) noexcept {
  return ::dspfi_bitrev_scale(detail::raw(v));
}
[[nodiscard]] inline std::int32_t dspi_hilbert(record& v) noexcept { return ::dspi_hilbert(detail::raw(v)); }
[[nodiscard]] inline std::int32_t dspi_hilbert(recordf& v) noexcept {
  return ::dspfi_hilbert(detail::raw(v));
}
[[nodiscard]] inline std::int32_t dspi_analytic(record& v) noexcept {
  return ::dspi_analytic(detail::raw(v));
}
[[nodiscard]] inline std::int32_t dspi_analytic(recordf& v) noexcept {
  return ::dspfi_analytic(detail::raw(v));
}
[[nodiscard]] inline std::int32_t dsph_avg(const record& in, record& avg, record* scratch, int32_t flags,
    int32_t count, int32_t every, double weight, double maxcount) noexcept {
  return ::dsph_avg(detail::raw(in), detail::raw(avg), detail::raw(scratch), flags, count, every, weight,
      maxcount);
}
[[nodiscard]] inline std::int32_t dsph_avg(const recordf& in, recordf& avg, recordf* scratch, int32_t flags,
    int32_t count, int32_t every, float weight, float maxcount) noexcept {
  return ::dspfh_avg(detail::raw(in), detail::raw(avg), detail::raw(scratch), flags, count, every, weight,
      maxcount);
}
[[nodiscard]] inline std::int32_t dsph_fft(const record& a, const record* b, record& avg, record* history,
    const record* window, int32_t flags, int32_t hop, int32_t* count, double maxcount) noexcept {
  return ::dsph_fft(detail::raw(a), detail::raw(b), detail::raw(avg), detail::raw(history),
      detail::raw(window), flags, hop, count, maxcount);
}
[[nodiscard]] inline std::int32_t dsph_fft(const recordf& a, const recordf* b, recordf& avg, recordf* history,
    const recordf* window, int32_t flags, int32_t hop, int32_t* count, float maxcount) noexcept {
  return ::dspfh_fft(detail::raw(a), detail::raw(b), detail::raw(avg), detail::raw(history),
      detail::raw(window), flags, hop, count, maxcount);
}
[[nodiscard]] inline std::int32_t dsph_dft(const record& a, const record* b, record& avg, record* history,
    const record* window, int32_t flags, int32_t hop, int32_t* count, double maxcount) noexcept {
  return ::dsph_dft(detail::raw(a), detail::raw(b), detail::raw(avg), detail::raw(history),
      detail::raw(window), flags, hop, count, maxcount);
}
[[nodiscard]] inline std::int32_t dsph_dft(const recordf& a, const recordf* b, recordf& avg, recordf* history,
    const recordf* window, int32_t flags, int32_t hop, int32_t* count, float maxcount) noexcept {
  return ::dspfh_dft(detail::raw(a), detail::raw(b), detail::raw(avg), detail::raw(history),
      detail::raw(window), flags, hop, count, maxcount);
}
[[nodiscard]] inline std::int32_t dsph_corr(const record& a, const record& b, record* out, record* history,
    int32_t lags, int32_t flags) noexcept {
  return ::dsph_corr(detail::raw(a), detail::raw(b), detail::raw(out), detail::raw(history), lags, flags);
}
[[nodiscard]] inline std::int32_t dsph_corr(const recordf& a, const recordf& b, recordf* out, recordf*
    history, int32_t lags, int32_t flags) noexcept {
  return ::dspfh_corr(detail::raw(a), detail::raw(b), detail::raw(out), detail::raw(history), lags, flags);
}
[[nodiscard]] inline std::int32_t dspb_corr(const record& a, const record& b, record& out, int32_t lags,
    int32_t flags) noexcept {
  return ::dspb_corr(detail::raw(a), detail::raw(b), detail::raw(out), lags, flags);
}
[[nodiscard]] inline std::int32_t dspb_corr(const recordf& a, const recordf& b, recordf& out, int32_t lags,
    int32_t flags) noexcept {
  return ::dspfb_corr(detail::raw(a), detail::raw(b), detail::raw(out), lags, flags);
}
[[nodiscard]] inline std::int32_t dspi_window(record& v, int32_t window, int32_t flags) noexcept {
  return ::dspi_window(detail::raw(v), window, flags);
}
[[nodiscard]] inline std::int32_t dspi_window(recordf& v, int32_t window, int32_t flags) noexcept {
  return ::dspfi_window(detail::raw(v), window, flags);
}
[[nodiscard]] inline std::int32_t dspi_window2(record& v, int32_t window, int32_t flags, double width)
    noexcept {
  return ::dspi_window2(detail::raw(v), window, flags, width);
}
[[nodiscard]] inline std::int32_t dspi_window2(recordf& v, int32_t window, int32_t flags, float width)
    noexcept {
  return ::dspfi_window2(detail::raw(v), window, flags, width);
}
[[nodiscard]] inline std::int32_t dsp_window_to_str(int32_t window, char* buffer, int32_t size) noexcept {
  return ::dsp_window_to_str(window, buffer, size);
}
[[nodiscard]] inline std::int32_t dspf_window_to_str(int32_t window, char* buffer, int32_t size) noexcept {
  return ::dspf_window_to_str(window, buffer, size);
}
[[nodiscard]] inline std::int32_t dsp_window_from_str(const char* name, int32_t* window) noexcept {
  return ::dsp_window_from_str(name, window);
}
[[nodiscard]] inline std::int32_t dspf_window_from_str(const char* name, int32_t* window) noexcept {
  return ::dspf_window_from_str(name, window);
}
[[nodiscard]] inline std::int32_t dsp_window_scale(double* scale, int32_t window, int32_t flags, int32_t
    points) noexcept {
  return ::dsp_window_scale(scale, window, flags, points);
}
[[nodiscard]] inline std::int32_t dsp_window_scale(float* scale, int32_t window, int32_t flags, int32_t
    points) noexcept {
  return ::dspf_window_scale(scale, window, flags, points);
}
[[nodiscard]] inline std::int32_t dsp_window2_scale(double* scale, int32_t window, int32_t flags, int32_t
    points, double width) noexcept {
  return ::dsp_window2_scale(scale, window, flags, points, width);
}
[[nodiscard]] inline std::int32_t dsp_window2_scale(float* scale, int32_t window, int32_t flags, int32_t
    points, float width) noexcept {
  return ::dspf_window2_scale(scale, window, flags, points, width);
}
[[nodiscard]] inline std::int32_t dsp_window_enbw(double* bins, int32_t window, int32_t points) noexcept {
  return ::dsp_window_enbw(bins, window, points);
}
[[nodiscard]] inline std::int32_t dsp_window_enbw(float* bins, int32_t window, int32_t points) noexcept {
  return ::dspf_window_enbw(bins, window, points);
}
[[nodiscard]] inline std::int32_t dsp_window2_enbw(double* bins, int32_t window, int32_t points, double width)
    noexcept {
  return ::dsp_window2_enbw(bins, window, points, width);
}
[[nodiscard]] inline std::int32_t dsp_window2_enbw(float* bins, int32_t window, int32_t points, float width)
    noexcept {
  return ::dspf_window2_enbw(bins, window, points, width);
}
[[nodiscard]] inline std::int32_t dspi_window_kaiser(record& v, double beta, int32_t flags) noexcept {
  return ::dspi_window_kaiser(detail::raw(v), beta, flags);
}
[[nodiscard]] inline std::int32_t dspi_window_kaiser(recordf& v, float beta, int32_t flags) noexcept {
  return ::dspfi_window_kaiser(detail::raw(v), beta, flags);
}
[[nodiscard]] inline std::int32_t dspi_window_gauss(record& v, double a, int32_t flags) noexcept {
  return ::dspi_window_gauss(detail::raw(v), a, flags);
}
[[nodiscard]] inline std::int32_t dspi_window_gauss(recordf& v, float a, int32_t flags) noexcept {
  return ::dspfi_window_gauss(detail::raw(v), a, flags);
}
[[nodiscard]] inline std::int32_t dspi_window_sinc(record& v, double edge, double power, int32_t flags)
    noexcept {
  return ::dspi_window_sinc(detail::raw(v), edge, power, flags);
}
[[nodiscard]] inline std::int32_t dspi_window_sinc(recordf& v, float edge, float power, int32_t flags)
    noexcept {
  return ::dspfi_window_sinc(detail::raw(v), edge, power, flags);
}
[[nodiscard]] inline std::int32_t dspi_window_cos(record& v, const record& terms, int32_t flags) noexcept {
  return ::dspi_window_cos(detail::raw(v), detail::raw(terms), flags);
}
[[nodiscard]] inline std::int32_t dspi_window_cos(recordf& v, const recordf& terms, int32_t flags) noexcept {
  return ::dspfi_window_cos(detail::raw(v), detail::raw(terms), flags);
}
[[nodiscard]] inline std::int32_t dspi_window_fir(record& v, double attenuation, int32_t flags) noexcept {
  return ::dspi_window_fir(detail::raw(v), attenuation, flags);
}
[[nodiscard]] inline std::int32_t dspi_window_fir(recordf& v, float attenuation, int32_t flags) noexcept {
  return ::dspfi_window_fir(detail::raw(v), attenuation, flags);
}
[[nodiscard]] inline std::int32_t dspc_fir(record& v, int32_t kind, double param1, double param2) noexcept {
  return ::dspc_fir(detail::raw(v), kind, param1, param2);
}
[[nodiscard]] inline std::int32_t dspc_fir(recordf& v, int32_t kind, float param1, float param2) noexcept {
  return ::dspfc_fir(detail::raw(v), kind, param1, param2);
}
[[nodiscard]] inline std::int32_t dspc_fir2(record& v, int32_t code) noexcept {
  return ::dspc_fir2(detail::raw(v), code);
}
[[nodiscard]] inline std::int32_t dspc_fir2(recordf& v, int32_t code) noexcept {
  return ::dspfc_fir2(detail::raw(v), code);
}
[[nodiscard]] inline std::int32_t dspd_fir(const record& in, record& out, const record& taps, record* history)
    noexcept {
  return ::dspd_fir(detail::raw(in), detail::raw(out), detail::raw(taps), detail::raw(history));
}
[[nodiscard]] inline std::int32_t dspd_fir(const recordf& in, recordf& out, const recordf& taps, recordf*
    history) noexcept {
  return ::dspfd_fir(detail::raw(in), detail::raw(out), detail::raw(taps), detail::raw(history));
}
[[nodiscard]] inline std::int32_t dspd_sfir(const record& in, record& out, const record& half, int32_t odd,
    int32_t antisymmetric, record* history) noexcept {
  return ::dspd_sfir(detail::raw(in), detail::raw(out), detail::raw(half), odd, antisymmetric,
      detail::raw(history));
}
[[nodiscard]] inline std::int32_t dspd_sfir(const recordf& in, recordf& out, const recordf& half, int32_t odd,
    int32_t antisymmetric, recordf* history) noexcept {
  return ::dspfd_sfir(detail::raw(in), detail::raw(out), detail::raw(half), odd, antisymmetric,
      detail::raw(history));
}
[[nodiscard]] inline std::int32_t dspd_deci(const record& in, record& out, int32_t factor, record* state)
    noexcept {
  return ::dspd_deci(detail::raw(in), detail::raw(out), factor, detail::raw(state));
}
[[nodiscard]] inline std::int32_t dspd_deci(const recordf& in, recordf& out, int32_t factor, recordf* state)
    noexcept {
  return ::dspfd_deci(detail::raw(in), detail::raw(out), factor, detail::raw(state));
}
[[nodiscard]] inline std::int32_t dspc_rsmp(record& v, int32_t up, int32_t down, double passband, double
    attenuation) noexcept {
  return ::dspc_rsmp(detail::raw(v), up, down, passband, attenuation);
}
[[nodiscard]] inline std::int32_t dspc_rsmp(recordf& v, int32_t up, int32_t down, float passband, float
    attenuation) noexcept {
  return ::dspfc_rsmp(detail::raw(v), up, down, passband, attenuation);
}
[[nodiscard]] inline std::int32_t dspc_rsmp_cos(record& v, int32_t up, int32_t span, double rolloff) noexcept
    {
  return ::dspc_rsmp_cos(detail::raw(v), up, span, rolloff);
}
[[nodiscard]] inline std::int32_t dspc_rsmp_cos(recordf& v, int32_t up, int32_t span, float rolloff) noexcept
    {
  return ::dspfc_rsmp_cos(detail::raw(v), up, span, rolloff);
}
[[nodiscard]] inline std::int32_t dspc_rsmp_pcos(record& v, int32_t up, int32_t span, double rolloff) noexcept
    {
  return ::dspc_rsmp_pcos(detail::raw(v), up, span, rolloff);
}
[[nodiscard]] inline std::int32_t dspc_rsmp_pcos(recordf& v, int32_t up, int32_t span, float rolloff) noexcept
    {
  return ::dspfc_rsmp_pcos(detail::raw(v), up, span, rolloff);
}
[[nodiscard]] inline std::int32_t dspd_rsmp(const record* in, record& out, const record& taps, int32_t up,
    int32_t down, record* state) noexcept {
  return ::dspd_rsmp(detail::raw(in), detail::raw(out), detail::raw(taps), up, down, detail::raw(state));
}
[[nodiscard]] inline std::int32_t dspd_rsmp(const recordf* in, recordf& out, const recordf& taps, int32_t up,
    int32_t down, recordf* state) noexcept {
  return ::dspfd_rsmp(detail::raw(in), detail::raw(out), detail::raw(taps), up, down, detail::raw(state));
}
[[nodiscard]] inline std::int32_t dspd_rsmp2(const record* in, record& out, const record& taps, const record*
    at, double step, record* state) noexcept {
  return ::dspd_rsmp2(detail::raw(in), detail::raw(out), detail::raw(taps), detail::raw(at), step,
      detail::raw(state));
}
[[nodiscard]] inline std::int32_t dspd_rsmp2(const recordf* in, recordf& out, const recordf& taps, const
    record* at, double step, recordf* state) noexcept {
  return ::dspfd_rsmp2(detail::raw(in), detail::raw(out), detail::raw(taps), detail::raw(at), step,
      detail::raw(state));
}
[[nodiscard]] inline std::int32_t dspd_hwfilt(const record& in, record& out, int32_t reserved, record* state)
    noexcept {
  return ::dspd_hwfilt(detail::raw(in), detail::raw(out), reserved, detail::raw(state));
}
[[nodiscard]] inline std::int32_t dspd_hwfilt(const recordf& in, recordf& out, int32_t reserved, recordf*
    state) noexcept {
  return ::dspfd_hwfilt(detail::raw(in), detail::raw(out), reserved, detail::raw(state));
}
[[nodiscard]] inline std::int32_t dspi_hwfilt(record& v, int32_t reserved) noexcept {
  return ::dspi_hwfilt(detail::raw(v), reserved);
}
[[nodiscard]] inline std::int32_t dspi_hwfilt(recordf& v, int32_t reserved) noexcept {
  return ::dspfi_hwfilt(detail::raw(v), reserved);
}
[[nodiscard]] inline std::int32_t dspf_fread(record& v, FILE* f) noexcept {
  return ::dspf_fread(detail::raw(v), f);
}
[[nodiscard]] inline std::int32_t dspf_fread(recordf& v, FILE* f) noexcept {
  return ::dspff_fread(detail::raw(v), f);
}
[[nodiscard]] inline std::int32_t dspf_fwrite(const record& v, FILE* f) noexcept {
  return ::dspf_fwrite(detail::raw(v), f);
}
[[nodiscard]] inline std::int32_t dspf_fwrite(const recordf& v, FILE* f) noexcept {
  return ::dspff_fwrite(detail::raw(v), f);
}
[[nodiscard]] inline std::int32_t dspf_fwrite_ascii(const record& v, FILE* f) noexcept {
  return ::dspf_fwrite_ascii(detail::raw(v), f);
}
[[nodiscard]] inline std::int32_t dspf_fwrite_ascii(const recordf& v, FILE* f) noexcept {
  return ::dspff_fwrite_ascii(detail::raw(v), f);
}
[[nodiscard]] inline std::int32_t dspf_fwrite2(const record& v, FILE* f, int32_t flags) noexcept {
  return ::dspf_fwrite2(detail::raw(v), f, flags);
}
[[nodiscard]] inline std::int32_t dspf_fwrite2(const recordf& v, FILE* f, int32_t flags) noexcept {
  return ::dspff_fwrite2(detail::raw(v), f, flags);
}

}  // namespace status

#if defined(__cpp_exceptions)

inline record& dsp_alloc(record& v) { detail::checked(::dsp_alloc(detail::raw(v)), "dsp_alloc"); return v; }
inline recordf& dsp_alloc(recordf& v) {
  detail::checked(::dspf_alloc(detail::raw(v)), "dsp_alloc");
  return v;
}
inline record& dsp_realloc(record& v, uint32_t old_points, int32_t old_complex) {
  detail::checked(::dsp_realloc(detail::raw(v), old_points, old_complex), "dsp_realloc");
  return v;
}
inline recordf& dsp_realloc(recordf& v, uint32_t old_points, int32_t old_complex) {
  detail::checked(::dspf_realloc(detail::raw(v), old_points, old_complex), "dsp_realloc");
  return v;
}
inline record& dsp_append(record& dst, const record& src) {
  detail::checked(::dsp_append(detail::raw(dst), detail::raw(src)), "dsp_append");
  return dst;
}
inline recordf& dsp_append(recordf& dst, const recordf& src) {
  detail::checked(::dspf_append(detail::raw(dst), detail::raw(src)), "dsp_append");
  return dst;
}
inline record& dsp_copy(record& dst, const record& src) {
  detail::checked(::dsp_copy(detail::raw(dst), detail::raw(src)), "dsp_copy");
  return dst;
}
inline recordf& dsp_copy(recordf& dst, const recordf& src) {
  detail::checked(::dspf_copy(detail::raw(dst), detail::raw(src)), "dsp_copy");
  return dst;
}
inline record& dsp_copy_at_most(record& dst, const record& src, int32_t count) {
  detail::checked(::dsp_copy_at_most(detail::raw(dst), detail::raw(src), count), "dsp_copy_at_most");
  return dst;
}
inline recordf& dsp_copy_at_most(recordf& dst, const recordf& src, int32_t count) {
  detail::checked(::dspf_copy_at_most(detail::raw(dst), detail::raw(src), count), "dsp_copy_at_most");
  return dst;
}
inline void dsp_cmp(const record& a, const record& b, double tolerance, int32_t* order) {
  detail::checked(::dsp_cmp(detail::raw(a), detail::raw(b), tolerance, order), "dsp_cmp");
}
inline void dsp_cmp(const recordf& a, const recordf& b, float tolerance, int32_t* order) {
  detail::checked(::dspf_cmp(detail::raw(a), detail::raw(b), tolerance, order), "dsp_cmp");
}
inline void dsp_lib_alloc(dsp_alloc_hook hook, dsp_alloc_hook* previous) {
  detail::checked(::dsp_lib_alloc(hook, previous), "dsp_lib_alloc");
}
inline void dsp_lib_alloc(dspf_alloc_hook hook, dspf_alloc_hook* previous) {
  detail::checked(::dspf_lib_alloc(hook, previous), "dsp_lib_alloc");
}
inline void dsp_lib_realloc(dsp_realloc_hook hook, dsp_realloc_hook* previous) {
  detail::checked(::dsp_lib_realloc(hook, previous), "dsp_lib_realloc");
}
inline void dsp_lib_realloc(dspf_realloc_hook hook, dspf_realloc_hook* previous) {
  detail::checked(::dspf_lib_realloc(hook, previous), "dsp_lib_realloc");
}
inline void dsp_lib_free(dsp_free_hook hook, dsp_free_hook* previous) {
  detail::checked(::dsp_lib_free(hook, previous), "dsp_lib_free");
}
inline void dsp_lib_free(dspf_free_hook hook, dspf_free_hook* previous) {
  detail::checked(::dspf_lib_free(hook, previous), "dsp_lib_free");
}
inline void dsp_lib_init() { detail::checked(::dsp_lib_init(), "dsp_lib_init"); }
inline void dspf_lib_init() { detail::checked(::dspf_lib_init(), "dspf_lib_init"); }
inline void dsp_free_internal() { detail::checked(::dsp_free_internal(), "dsp_free_internal"); }
inline void dspf_free_internal() { detail::checked(::dspf_free_internal(), "dspf_free_internal"); }
inline record& dspi_scale(record& v, double factor) {
  detail::checked(::dspi_scale(detail::raw(v), factor), "dspi_scale");
  return v;
}
inline recordf& dspi_scale(recordf& v, float factor) {
  detail::checked(::dspfi_scale(detail::raw(v), factor), "dspi_scale");
  return v;
}
inline record& dspi_offset(record& v, double amount) {
  detail::checked(::dspi_offset(detail::raw(v), amount), "dspi_offset");
  return v;
}
inline recordf& dspi_offset(recordf& v, float amount) {
  detail::checked(::dspfi_offset(detail::raw(v), amount), "dspi_offset");
  return v;
}
inline record& dspi_cscale(record& v, double re, double im) {
  detail::checked(::dspi_cscale(detail::raw(v), re, im), "dspi_cscale");
  return v;
}
inline recordf& dspi_cscale(recordf& v, float re, float im) {
  detail::checked(::dspfi_cscale(detail::raw(v), re, im), "dspi_cscale");
  return v;
}
inline record& dspi_neg(record& v) { detail::checked(::dspi_neg(detail::raw(v)), "dspi_neg"); return v; }
inline recordf& dspi_neg(recordf& v) { detail::checked(::dspfi_neg(detail::raw(v)), "dspi_neg"); return v; }
inline record& dspi_abs(record& v) { detail::checked(::dspi_abs(detail::raw(v)), "dspi_abs"); return v; }
inline recordf& dspi_abs(recordf& v) { detail::checked(::dspfi_abs(detail::raw(v)), "dspi_abs"); return v; }
inline record& dspi_square(record& v) {
  detail::checked(::dspi_square(detail::raw(v)), "dspi_square");
  return v;
}
inline recordf& dspi_square(recordf& v) {
  detail::checked(::dspfi_square(detail::raw(v)), "dspi_square");
  return v;
}
inline record& dspi_recip(record& v) {
  detail::checked(::dspi_recip(detail::raw(v)), "dspi_recip");
  return v;
}
inline recordf& dspi_recip(recordf& v) {
  detail::checked(::dspfi_recip(detail::raw(v)), "dspi_recip");
  return v;
}
inline record& dspi_sqrt(record& v) { detail::checked(::dspi_sqrt(detail::raw(v)), "dspi_sqrt"); return v; }
inline recordf& dspi_sqrt(recordf& v) {
  detail::checked(::dspfi_sqrt(detail::raw(v)), "dspi_sqrt");
  return v;
}
inline record& dspi_exp(record& v) { detail::checked(::dspi_exp(detail::raw(v)), "dspi_exp"); return v; }
inline recordf& dspi_exp(recordf& v) { detail::checked(::dspfi_exp(detail::raw(v)), "dspi_exp"); return v; }
inline record& dspi_exp10(record& v) {
  detail::checked(::dspi_exp10(detail::raw(v)), "dspi_exp10");
  return v;
}
inline recordf& dspi_exp10(recordf& v) {
  detail::checked(::dspfi_exp10(detail::raw(v)), "dspi_exp10");
  return v;
}
inline record& dspi_log(record& v) { detail::checked(::dspi_log(detail::raw(v)), "dspi_log"); return v; }
inline recordf& dspi_log(recordf& v) { detail::checked(::dspfi_log(detail::raw(v)), "dspi_log"); return v; }
inline record& dspi_log10(record& v) {
  detail::checked(::dspi_log10(detail::raw(v)), "dspi_log10");
  return v;
}
inline recordf& dspi_log10(recordf& v) {
  detail::checked(::dspfi_log10(detail::raw(v)), "dspi_log10");
  return v;
}
inline record& dspi_db(record& v, double factor) {
  detail::checked(::dspi_db(detail::raw(v), factor), "dspi_db");
  return v;
}
inline recordf& dspi_db(recordf& v, float factor) {
  detail::checked(::dspfi_db(detail::raw(v), factor), "dspi_db");
  return v;
}
inline record& dspi_limit(record& v, int32_t mode, double a, double b, int32_t* clipped) {
  detail::checked(::dspi_limit(detail::raw(v), mode, a, b, clipped), "dspi_limit");
  return v;
}
inline recordf& dspi_limit(recordf& v, int32_t mode, float a, float b, int32_t* clipped) {
  detail::checked(::dspfi_limit(detail::raw(v), mode, a, b, clipped), "dspi_limit");
  return v;
}
inline record& dspi_sin(record& v) { detail::checked(::dspi_sin(detail::raw(v)), "dspi_sin"); return v; }
inline recordf& dspi_sin(recordf& v) { detail::checked(::dspfi_sin(detail::raw(v)), "dspi_sin"); return v; }
inline record& dspi_cos(record& v) { detail::checked(::dspi_cos(detail::raw(v)), "dspi_cos"); return v; }
inline recordf& dspi_cos(recordf& v) { detail::checked(::dspfi_cos(detail::raw(v)), "dspi_cos"); return v; }
inline record& dspi_tan(record& v) { detail::checked(::dspi_tan(detail::raw(v)), "dspi_tan"); return v; }
inline recordf& dspi_tan(recordf& v) { detail::checked(::dspfi_tan(detail::raw(v)), "dspi_tan"); return v; }
inline record& dspi_sinc(record& v) { detail::checked(::dspi_sinc(detail::raw(v)), "dspi_sinc"); return v; }
inline recordf& dspi_sinc(recordf& v) {
  detail::checked(::dspfi_sinc(detail::raw(v)), "dspi_sinc");
  return v;
}
inline record& dspi_atan(record& v) { detail::checked(::dspi_atan(detail::raw(v)), "dspi_atan"); return v; }
inline recordf& dspi_atan(recordf& v) {
  detail::checked(::dspfi_atan(detail::raw(v)), "dspi_atan");
  return v;
}
inline record& dspi_asin(record& v) { detail::checked(::dspi_asin(detail::raw(v)), "dspi_asin"); return v; }
inline recordf& dspi_asin(recordf& v) {
  detail::checked(::dspfi_asin(detail::raw(v)), "dspi_asin");
  return v;
}
inline record& dspi_acos(record& v) { detail::checked(::dspi_acos(detail::raw(v)), "dspi_acos"); return v; }
inline recordf& dspi_acos(recordf& v) {
  detail::checked(::dspfi_acos(detail::raw(v)), "dspi_acos");
  return v;
}
inline record& dspi_sinh(record& v) { detail::checked(::dspi_sinh(detail::raw(v)), "dspi_sinh"); return v; }
inline recordf& dspi_sinh(recordf& v) {
  detail::checked(::dspfi_sinh(detail::raw(v)), "dspi_sinh");
  return v;
}
inline record& dspi_cosh(record& v) { detail::checked(::dspi_cosh(detail::raw(v)), "dspi_cosh"); return v; }
inline recordf& dspi_cosh(recordf& v) {
  detail::checked(::dspfi_cosh(detail::raw(v)), "dspi_cosh");
  return v;
}
inline record& dspi_tanh(record& v) { detail::checked(::dspi_tanh(detail::raw(v)), "dspi_tanh"); return v; }
inline recordf& dspi_tanh(recordf& v) {
  detail::checked(::dspfi_tanh(detail::raw(v)), "dspi_tanh");
  return v;
}
inline record& dspi_besi0(record& v) {
  detail::checked(::dspi_besi0(detail::raw(v)), "dspi_besi0");
  return v;
}
inline recordf& dspi_besi0(recordf& v) {
  detail::checked(::dspfi_besi0(detail::raw(v)), "dspi_besi0");
  return v;
}
inline record& dspi_besj0(record& v) {
  detail::checked(::dspi_besj0(detail::raw(v)), "dspi_besj0");
  return v;
}
inline recordf& dspi_besj0(recordf& v) {
  detail::checked(::dspfi_besj0(detail::raw(v)), "dspi_besj0");
  return v;
}
inline record& dspi_besj1(record& v) {
  detail::checked(::dspi_besj1(detail::raw(v)), "dspi_besj1");
  return v;
}
inline recordf& dspi_besj1(recordf& v) {
  detail::checked(::dspfi_besj1(detail::raw(v)), "dspi_besj1");
  return v;
}
inline record& dspi_besy0(record& v) {
  detail::checked(::dspi_besy0(detail::raw(v)), "dspi_besy0");
  return v;
}
inline recordf& dspi_besy0(recordf& v) {
  detail::checked(::dspfi_besy0(detail::raw(v)), "dspi_besy0");
  return v;
}
inline record& dspi_besy1(record& v) {
  detail::checked(::dspi_besy1(detail::raw(v)), "dspi_besy1");
  return v;
}
inline recordf& dspi_besy1(recordf& v) {
  detail::checked(::dspfi_besy1(detail::raw(v)), "dspi_besy1");
  return v;
}
inline record& dspi_erf(record& v) { detail::checked(::dspi_erf(detail::raw(v)), "dspi_erf"); return v; }
inline recordf& dspi_erf(recordf& v) { detail::checked(::dspfi_erf(detail::raw(v)), "dspi_erf"); return v; }
inline record& dspi_erfc(record& v) { detail::checked(::dspi_erfc(detail::raw(v)), "dspi_erfc"); return v; }
inline recordf& dspi_erfc(recordf& v) {
  detail::checked(::dspfi_erfc(detail::raw(v)), "dspi_erfc");
  return v;
}
inline record& dspi_gamma(record& v) {
  detail::checked(::dspi_gamma(detail::raw(v)), "dspi_gamma");
  return v;
}
inline recordf& dspi_gamma(recordf& v) {
  detail::checked(::dspfi_gamma(detail::raw(v)), "dspi_gamma");
  return v;
}
inline record& dspi_lgamma(record& v) {
  detail::checked(::dspi_lgamma(detail::raw(v)), "dspi_lgamma");
  return v;
}
inline recordf& dspi_lgamma(recordf& v) {
  detail::checked(::dspfi_lgamma(detail::raw(v)), "dspi_lgamma");
  return v;
}
inline record& dspb_add(const record& a, const record& b, record& out) {
  detail::checked(::dspb_add(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_add");
  return out;
}
[[nodiscard]] inline record dspb_add(const record& a, const record& b) {
  record out;
  detail::checked(::dspb_add(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_add");
  return out;
}
inline recordf& dspb_add(const recordf& a, const recordf& b, recordf& out) {
  detail::checked(::dspfb_add(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_add");
  return out;
}
[[nodiscard]] inline recordf dspb_add(const recordf& a, const recordf& b) {
  recordf out;
  detail::checked(::dspfb_add(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_add");
  return out;
}
inline record& dspb_sub(const record& a, const record& b, record& out) {
  detail::checked(::dspb_sub(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_sub");
  return out;
}
[[nodiscard]] inline record dspb_sub(const record& a, const record& b) {
  record out;
  detail::checked(::dspb_sub(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_sub");
  return out;
}
inline recordf& dspb_sub(const recordf& a, const recordf& b, recordf& out) {
  detail::checked(::dspfb_sub(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_sub");
  return out;
}
[[nodiscard]] inline recordf dspb_sub(const recordf& a, const recordf& b) {
  recordf out;
  detail::checked(::dspfb_sub(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_sub");
  return out;
}
inline record& dspb_mul(const record& a, const record& b, record& out) {
  detail::checked(::dspb_mul(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_mul");
  return out;
}
[[nodiscard]] inline record dspb_mul(const record& a, const record& b) {
  record out;
  detail::checked(::dspb_mul(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_mul");
  return out;
}
inline recordf& dspb_mul(const recordf& a, const recordf& b, recordf& out) {
  detail::checked(::dspfb_mul(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_mul");
  return out;
}
[[nodiscard]] inline recordf dspb_mul(const recordf& a, const recordf& b) {
  recordf out;
  detail::checked(::dspfb_mul(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_mul");
  return out;
}
inline record& dspb_conj_mul(const record& a, const record& b, record& out) {
  detail::checked(::dspb_conj_mul(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_conj_mul");
  return out;
}
[[nodiscard]] inline record dspb_conj_mul(const record& a, const record& b) {
  record out;
  detail::checked(::dspb_conj_mul(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_conj_mul");
  return out;
}
inline recordf& dspb_conj_mul(const recordf& a, const recordf& b, recordf& out) {
  detail::checked(::dspfb_conj_mul(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_conj_mul");
  return out;
}
[[nodiscard]] inline recordf dspb_conj_mul(const recordf& a, const recordf& b) {
  recordf out;
  detail::checked(::dspfb_conj_mul(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_conj_mul");
  return out;
}
inline record& dspb_div(const record& a, const record& b, record& out) {
  detail::checked(::dspb_div(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_div");
  return out;
}
[[nodiscard]] inline record dspb_div(const record& a, const record& b) {
  record out;
  detail::checked(::dspb_div(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_div");
  return out;
}
inline recordf& dspb_div(const recordf& a, const recordf& b, recordf& out) {
  detail::checked(::dspfb_div(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_div");
  return out;
}
[[nodiscard]] inline recordf dspb_div(const recordf& a, const recordf& b) {
  recordf out;
  detail::checked(::dspfb_div(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_div");
  return out;
}
inline record& dspb_avg_add(const record& a, const record& b, record& out, double weight) {
  detail::checked(::dspb_avg_add(detail::raw(a), detail::raw(b), detail::raw(out), weight), "dspb_avg_add");
  return out;
}
[[nodiscard]] inline record dspb_avg_add(const record& a, const record& b, double weight) {
  record out;
  detail::checked(::dspb_avg_add(detail::raw(a), detail::raw(b), detail::raw(out), weight), "dspb_avg_add");
  return out;
}
inline recordf& dspb_avg_add(const recordf& a, const recordf& b, recordf& out, float weight) {
  detail::checked(::dspfb_avg_add(detail::raw(a), detail::raw(b), detail::raw(out), weight), "dspb_avg_add");
  return out;
}
[[nodiscard]] inline recordf dspb_avg_add(const recordf& a, const recordf& b, float weight) {
  recordf out;
  detail::checked(::dspfb_avg_add(detail::raw(a), detail::raw(b), detail::raw(out), weight), "dspb_avg_add");
  return out;
}
inline record& dspb_min(const record& a, const record& b, record& out) {
  detail::checked(::dspb_min(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_min");
  return out;
}
[[nodiscard]] inline record dspb_min(const record& a, const record& b) {
  record out;
  detail::checked(::dspb_min(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_min");
  return out;
}
inline recordf& dspb_min(const recordf& a, const recordf& b, recordf& out) {
  detail::checked(::dspfb_min(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_min");
  return out;
}
[[nodiscard]] inline recordf dspb_min(const recordf& a, const recordf& b) {
  recordf out;
  detail::checked(::dspfb_min(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_min");
  return out;
}
inline record& dspb_max(const record& a, const record& b, record& out) {
  detail::checked(::dspb_max(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_max");
  return out;
}
[[nodiscard]] inline record dspb_max(const record& a, const record& b) {
  record out;
  detail::checked(::dspb_max(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_max");
  return out;
}
inline recordf& dspb_max(const recordf& a, const recordf& b, recordf& out) {
  detail::checked(::dspfb_max(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_max");
  return out;
}
[[nodiscard]] inline recordf dspb_max(const recordf& a, const recordf& b) {
  recordf out;
  detail::checked(::dspfb_max(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_max");
  return out;
}
inline record& dspb_ritoc(const record& re, const record& im, record& out) {
  detail::checked(::dspb_ritoc(detail::raw(re), detail::raw(im), detail::raw(out)), "dspb_ritoc");
  return out;
}
[[nodiscard]] inline record dspb_ritoc(const record& re, const record& im) {
  record out;
  detail::checked(::dspb_ritoc(detail::raw(re), detail::raw(im), detail::raw(out)), "dspb_ritoc");
  return out;
}
inline recordf& dspb_ritoc(const recordf& re, const recordf& im, recordf& out) {
  detail::checked(::dspfb_ritoc(detail::raw(re), detail::raw(im), detail::raw(out)), "dspb_ritoc");
  return out;
}
[[nodiscard]] inline recordf dspb_ritoc(const recordf& re, const recordf& im) {
  recordf out;
  detail::checked(::dspfb_ritoc(detail::raw(re), detail::raw(im), detail::raw(out)), "dspb_ritoc");
  return out;
}
inline record& dspb_inter(const record& a, const record& b, record& out) {
  detail::checked(::dspb_inter(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_inter");
  return out;
}
[[nodiscard]] inline record dspb_inter(const record& a, const record& b) {
  record out;
  detail::checked(::dspb_inter(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_inter");
  return out;
}
inline recordf& dspb_inter(const recordf& a, const recordf& b, recordf& out) {
  detail::checked(::dspfb_inter(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_inter");
  return out;
}
[[nodiscard]] inline recordf dspb_inter(const recordf& a, const recordf& b) {
  recordf out;
  detail::checked(::dspfb_inter(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_inter");
  return out;
}
inline record& dspbs_dot(const record& a, const record& b, record& out) {
  detail::checked(::dspbs_dot(detail::raw(a), detail::raw(b), detail::raw(out)), "dspbs_dot");
  return out;
}
[[nodiscard]] inline record dspbs_dot(const record& a, const record& b) {
  record out;
  detail::checked(::dspbs_dot(detail::raw(a), detail::raw(b), detail::raw(out)), "dspbs_dot");
  return out;
}
inline recordf& dspbs_dot(const recordf& a, const recordf& b, recordf& out) {
  detail::checked(::dspfbs_dot(detail::raw(a), detail::raw(b), detail::raw(out)), "dspbs_dot");
  return out;
}
[[nodiscard]] inline recordf dspbs_dot(const recordf& a, const recordf& b) {
  recordf out;
  detail::checked(::dspfbs_dot(detail::raw(a), detail::raw(b), detail::raw(out)), "dspbs_dot");
  return out;
}
inline record& dspb_pmul(const record& a, const record& b, record& out) {
  detail::checked(::dspb_pmul(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_pmul");
  return out;
}
[[nodiscard]] inline record dspb_pmul(const record& a, const record& b) {
  record out;
  detail::checked(::dspb_pmul(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_pmul");
  return out;
}
inline recordf& dspb_pmul(const recordf& a, const recordf& b, recordf& out) {
  detail::checked(::dspfb_pmul(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_pmul");
  return out;
}
[[nodiscard]] inline recordf dspb_pmul(const recordf& a, const recordf& b) {
  recordf out;
  detail::checked(::dspfb_pmul(detail::raw(a), detail::raw(b), detail::raw(out)), "dspb_pmul");
  return out;
}
inline record& dspi_rtoc(record& v) { detail::checked(::dspi_rtoc(detail::raw(v)), "dspi_rtoc"); return v; }
inline recordf& dspi_rtoc(recordf& v) {
  detail::checked(::dspfi_rtoc(detail::raw(v)), "dspi_rtoc");
  return v;
}
inline record& dspi_real(record& v) { detail::checked(::dspi_real(detail::raw(v)), "dspi_real"); return v; }
inline recordf& dspi_real(recordf& v) {
  detail::checked(::dspfi_real(detail::raw(v)), "dspi_real");
  return v;
}
inline record& dspi_imag(record& v) { detail::checked(::dspi_imag(detail::raw(v)), "dspi_imag"); return v; }
inline recordf& dspi_imag(recordf& v) {
  detail::checked(::dspfi_imag(detail::raw(v)), "dspi_imag");
  return v;
}
inline record& dspi_conj(record& v) { detail::checked(::dspi_conj(detail::raw(v)), "dspi_conj"); return v; }
inline recordf& dspi_conj(recordf& v) {
  detail::checked(::dspfi_conj(detail::raw(v)), "dspi_conj");
  return v;
}
inline record& dspi_timesi(record& v) {
  detail::checked(::dspi_timesi(detail::raw(v)), "dspi_timesi");
  return v;
}
inline recordf& dspi_timesi(recordf& v) {
  detail::checked(::dspfi_timesi(detail::raw(v)), "dspi_timesi");
  return v;
}
inline record& dspi_mag(record& v) { detail::checked(::dspi_mag(detail::raw(v)), "dspi_mag"); return v; }
inline recordf& dspi_mag(recordf& v) { detail::checked(::dspfi_mag(detail::raw(v)), "dspi_mag"); return v; }
inline record& dspi_magsq(record& v) {
  detail::checked(::dspi_magsq(detail::raw(v)), "dspi_magsq");
  return v;
}
inline recordf& dspi_magsq(recordf& v) {
  detail::checked(::dspfi_magsq(detail::raw(v)), "dspi_magsq");
  return v;
}
inline record& dspi_phase(record& v) {
  detail::checked(::dspi_phase(detail::raw(v)), "dspi_phase");
  return v;
}
inline recordf& dspi_phase(recordf& v) {
  detail::checked(::dspfi_phase(detail::raw(v)), "dspi_phase");
  return v;
}
inline record& dspi_rtop(record& v) { detail::checked(::dspi_rtop(detail::raw(v)), "dspi_rtop"); return v; }
inline recordf& dspi_rtop(recordf& v) {
  detail::checked(::dspfi_rtop(detail::raw(v)), "dspi_rtop");
  return v;
}
inline record& dspi_ptor(record& v) { detail::checked(::dspi_ptor(detail::raw(v)), "dspi_ptor"); return v; }
inline recordf& dspi_ptor(recordf& v) {
  detail::checked(::dspfi_ptor(detail::raw(v)), "dspi_ptor");
  return v;
}
inline record& dspi_unwrap(record& v) {
  detail::checked(::dspi_unwrap(detail::raw(v)), "dspi_unwrap");
  return v;
}
inline recordf& dspi_unwrap(recordf& v) {
  detail::checked(::dspfi_unwrap(detail::raw(v)), "dspi_unwrap");
  return v;
}
inline record& dspu_mag(const record& in, record& out) {
  detail::checked(::dspu_mag(detail::raw(in), detail::raw(out)), "dspu_mag");
  return out;
}
[[nodiscard]] inline record dspu_mag(const record& in) {
  record out;
  detail::checked(::dspu_mag(detail::raw(in), detail::raw(out)), "dspu_mag");
  return out;
}
inline recordf& dspu_mag(const recordf& in, recordf& out) {
  detail::checked(::dspfu_mag(detail::raw(in), detail::raw(out)), "dspu_mag");
  return out;
}
[[nodiscard]] inline recordf dspu_mag(const recordf& in) {
  recordf out;
  detail::checked(::dspfu_mag(detail::raw(in), detail::raw(out)), "dspu_mag");
  return out;
}
inline record& dspu_magsq(const record& in, record& out) {
  detail::checked(::dspu_magsq(detail::raw(in), detail::raw(out)), "dspu_magsq");
  return out;
}
[[nodiscard]] inline record dspu_magsq(const record& in) {
  record out;
  detail::checked(::dspu_magsq(detail::raw(in), detail::raw(out)), "dspu_magsq");
  return out;
}
inline recordf& dspu_magsq(const recordf& in, recordf& out) {
  detail::checked(::dspfu_magsq(detail::raw(in), detail::raw(out)), "dspu_magsq");
  return out;
}
[[nodiscard]] inline recordf dspu_magsq(const recordf& in) {
  recordf out;
  detail::checked(::dspfu_magsq(detail::raw(in), detail::raw(out)), "dspu_magsq");
  return out;
}
inline record& dspu_sqrt(const record& in, record& out) {
  detail::checked(::dspu_sqrt(detail::raw(in), detail::raw(out)), "dspu_sqrt");
  return out;
}
[[nodiscard]] inline record dspu_sqrt(const record& in) {
  record out;
  detail::checked(::dspu_sqrt(detail::raw(in), detail::raw(out)), "dspu_sqrt");
  return out;
}
inline recordf& dspu_sqrt(const recordf& in, recordf& out) {
  detail::checked(::dspfu_sqrt(detail::raw(in), detail::raw(out)), "dspu_sqrt");
  return out;
}
[[nodiscard]] inline recordf dspu_sqrt(const recordf& in) {
  recordf out;
  detail::checked(::dspfu_sqrt(detail::raw(in), detail::raw(out)), "dspu_sqrt");
  return out;
}
inline record& dspu_subvec(const record& in, record& out, int32_t start, int32_t count) {
  detail::checked(::dspu_subvec(detail::raw(in), detail::raw(out), start, count), "dspu_subvec");
  return out;
}
[[nodiscard]] inline record dspu_subvec(const record& in, int32_t start, int32_t count) {
  record out;
  detail::checked(::dspu_subvec(detail::raw(in), detail::raw(out), start, count), "dspu_subvec");
  return out;
}
inline recordf& dspu_subvec(const recordf& in, recordf& out, int32_t start, int32_t count) {
  detail::checked(::dspfu_subvec(detail::raw(in), detail::raw(out), start, count), "dspu_subvec");
  return out;
}
[[nodiscard]] inline recordf dspu_subvec(const recordf& in, int32_t start, int32_t count) {
  recordf out;
  detail::checked(::dspfu_subvec(detail::raw(in), detail::raw(out), start, count), "dspu_subvec");
  return out;
}
inline record& dspc_cos(record& v, double f, double phase) {
  detail::checked(::dspc_cos(detail::raw(v), f, phase), "dspc_cos");
  return v;
}
inline recordf& dspc_cos(recordf& v, float f, float phase) {
  detail::checked(::dspfc_cos(detail::raw(v), f, phase), "dspc_cos");
  return v;
}
inline record& dspc_cexp(record& v, double f, double phase) {
  detail::checked(::dspc_cexp(detail::raw(v), f, phase), "dspc_cexp");
  return v;
}
inline recordf& dspc_cexp(recordf& v, float f, float phase) {
  detail::checked(::dspfc_cexp(detail::raw(v), f, phase), "dspc_cexp");
  return v;
}
inline record& dspc_line(record& v, double slope, double start) {
  detail::checked(::dspc_line(detail::raw(v), slope, start), "dspc_line");
  return v;
}
inline recordf& dspc_line(recordf& v, float slope, float start) {
  detail::checked(::dspfc_line(detail::raw(v), slope, start), "dspc_line");
  return v;
}
inline record& dspi_addcos(record& v, int32_t mode, double f, double amp, double phase) {
  detail::checked(::dspi_addcos(detail::raw(v), mode, f, amp, phase), "dspi_addcos");
  return v;
}
inline recordf& dspi_addcos(recordf& v, int32_t mode, float f, float amp, float phase) {
  detail::checked(::dspfi_addcos(detail::raw(v), mode, f, amp, phase), "dspi_addcos");
  return v;
}
inline record& dspc_rand(record& v, int32_t distribution) {
  detail::checked(::dspc_rand(detail::raw(v), distribution), "dspc_rand");
  return v;
}
inline recordf& dspc_rand(recordf& v, int32_t distribution) {
  detail::checked(::dspfc_rand(detail::raw(v), distribution), "dspc_rand");
  return v;
}
inline record& dspi_rev(record& v) { detail::checked(::dspi_rev(detail::raw(v)), "dspi_rev"); return v; }
inline recordf& dspi_rev(recordf& v) { detail::checked(::dspfi_rev(detail::raw(v)), "dspi_rev"); return v; }
inline record& dspi_shift(record& v, uint32_t n) {
  detail::checked(::dspi_shift(detail::raw(v), n), "dspi_shift");
  return v;
}
inline recordf& dspi_shift(recordf& v, uint32_t n) {
  detail::checked(::dspfi_shift(detail::raw(v), n), "dspi_shift");
  return v;
}
inline record& dspi_shuffle(record& v) {
  detail::checked(::dspi_shuffle(detail::raw(v)), "dspi_shuffle");
  return v;
}
inline recordf& dspi_shuffle(recordf& v) {
  detail::checked(::dspfi_shuffle(detail::raw(v)), "dspi_shuffle");
  return v;
}
inline record& dspi_sort(record& v) { detail::checked(::dspi_sort(detail::raw(v)), "dspi_sort"); return v; }
inline recordf& dspi_sort(recordf& v) {
  detail::checked(::dspfi_sort(detail::raw(v)), "dspi_sort");
  return v;
}
inline record& dspi_swap_halves(record& v) {
  detail::checked(::dspi_swap_halves(detail::raw(v)), "dspi_swap_halves");
  return v;
}
inline recordf& dspi_swap_halves(recordf& v) {
  detail::checked(::dspfi_swap_halves(detail::raw(v)), "dspi_swap_halves");
  return v;
}
inline record& dspi_swap_halves2(record& v) {
  detail::checked(::dspi_swap_halves2(detail::raw(v)), "dspi_swap_halves2");
  return v;
}
inline recordf& dspi_swap_halves2(recordf& v) {
  detail::checked(::dspfi_swap_halves2(detail::raw(v)), "dspi_swap_halves2");
  return v;
}
inline record& dspi_zpad(record& v, int32_t points) {
  detail::checked(::dspi_zpad(detail::raw(v), points), "dspi_zpad");
  return v;
}
inline recordf& dspi_zpad(recordf& v, int32_t points) {
  detail::checked(::dspfi_zpad(detail::raw(v), points), "dspi_zpad");
  return v;
}
inline record& dspi_zero(record& v) { detail::checked(::dspi_zero(detail::raw(v)), "dspi_zero"); return v; }
inline recordf& dspi_zero(recordf& v) {
  detail::checked(::dspfi_zero(detail::raw(v)), "dspi_zero");
  return v;
}
inline record& dspi_zinter(record& v) {
  detail::checked(::dspi_zinter(detail::raw(v)), "dspi_zinter");
  return v;
}
inline recordf& dspi_zinter(recordf& v) {
  detail::checked(::dspfi_zinter(detail::raw(v)), "dspi_zinter");
  return v;
}
inline record& dspi_zpad2(record& v, int32_t n, int32_t flags) {
  detail::checked(::dspi_zpad2(detail::raw(v), n, flags), "dspi_zpad2");
  return v;
}
inline recordf& dspi_zpad2(recordf& v, int32_t n, int32_t flags) {
  detail::checked(::dspfi_zpad2(detail::raw(v), n, flags), "dspi_zpad2");
  return v;
}
inline record& dspi_unzpad(record& v, int32_t n, int32_t flags) {
  detail::checked(::dspi_unzpad(detail::raw(v), n, flags), "dspi_unzpad");
  return v;
}
inline recordf& dspi_unzpad(recordf& v, int32_t n, int32_t flags) {
  detail::checked(::dspfi_unzpad(detail::raw(v), n, flags), "dspi_unzpad");
  return v;
}
inline record& dspi_differ(record& v) {
  detail::checked(::dspi_differ(detail::raw(v)), "dspi_differ");
  return v;
}
inline recordf& dspi_differ(recordf& v) {
  detail::checked(::dspfi_differ(detail::raw(v)), "dspi_differ");
  return v;
}
inline record& dspi_integ(record& v) {
  detail::checked(::dspi_integ(detail::raw(v)), "dspi_integ");
  return v;
}
inline recordf& dspi_integ(recordf& v) {
  detail::checked(::dspfi_integ(detail::raw(v)), "dspi_integ");
  return v;
}
inline record& dspi_pdiffer(record& v) {
  detail::checked(::dspi_pdiffer(detail::raw(v)), "dspi_pdiffer");
  return v;
}
inline recordf& dspi_pdiffer(recordf& v) {
  detail::checked(::dspfi_pdiffer(detail::raw(v)), "dspi_pdiffer");
  return v;
}
inline record& dspi_edge(record& v, int32_t flags, double level) {
  detail::checked(::dspi_edge(detail::raw(v), flags, level), "dspi_edge");
  return v;
}
inline recordf& dspi_edge(recordf& v, int32_t flags, float level) {
  detail::checked(::dspfi_edge(detail::raw(v), flags, level), "dspi_edge");
  return v;
}
inline record& dsps_sum(const record& v, record& result) {
  detail::checked(::dsps_sum(detail::raw(v), detail::raw(result)), "dsps_sum");
  return result;
}
[[nodiscard]] inline record dsps_sum(const record& v) {
  record result;
  detail::checked(::dsps_sum(detail::raw(v), detail::raw(result)), "dsps_sum");
  return result;
}
inline recordf& dsps_sum(const recordf& v, recordf& result) {
  detail::checked(::dspfs_sum(detail::raw(v), detail::raw(result)), "dsps_sum");
  return result;
}
[[nodiscard]] inline recordf dsps_sum(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_sum(detail::raw(v), detail::raw(result)), "dsps_sum");
  return result;
}
inline record& dsps_mean(const record& v, record& result) {
  detail::checked(::dsps_mean(detail::raw(v), detail::raw(result)), "dsps_mean");
  return result;
}
[[nodiscard]] inline record dsps_mean(const record& v) {
  record result;
  detail::checked(::dsps_mean(detail::raw(v), detail::raw(result)), "dsps_mean");
  return result;
}
inline recordf& dsps_mean(const recordf& v, recordf& result) {
  detail::checked(::dspfs_mean(detail::raw(v), detail::raw(result)), "dsps_mean");
  return result;
}
[[nodiscard]] inline recordf dsps_mean(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_mean(detail::raw(v), detail::raw(result)), "dsps_mean");
  return result;
}
inline record& dsps_min(const record& v, record& result) {
  detail::checked(::dsps_min(detail::raw(v), detail::raw(result)), "dsps_min");
  return result;
}
[[nodiscard]] inline record dsps_min(const record& v) {
  record result;
  detail::checked(::dsps_min(detail::raw(v), detail::raw(result)), "dsps_min");
  return result;
}
inline recordf& dsps_min(const recordf& v, recordf& result) {
  detail::checked(::dspfs_min(detail::raw(v), detail::raw(result)), "dsps_min");
  return result;
}
[[nodiscard]] inline recordf dsps_min(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_min(detail::raw(v), detail::raw(result)), "dsps_min");
  return result;
}
inline record& dsps_max(const record& v, record& result) {
  detail::checked(::dsps_max(detail::raw(v), detail::raw(result)), "dsps_max");
  return result;
}
[[nodiscard]] inline record dsps_max(const record& v) {
  record result;
  detail::checked(::dsps_max(detail::raw(v), detail::raw(result)), "dsps_max");
  return result;
}
inline recordf& dsps_max(const recordf& v, recordf& result) {
  detail::checked(::dspfs_max(detail::raw(v), detail::raw(result)), "dsps_max");
  return result;
}
[[nodiscard]] inline recordf dsps_max(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_max(detail::raw(v), detail::raw(result)), "dsps_max");
  return result;
}
inline record& dsps_magsq_sum(const record& v, record& result) {
  detail::checked(::dsps_magsq_sum(detail::raw(v), detail::raw(result)), "dsps_magsq_sum");
  return result;
}
[[nodiscard]] inline record dsps_magsq_sum(const record& v) {
  record result;
  detail::checked(::dsps_magsq_sum(detail::raw(v), detail::raw(result)), "dsps_magsq_sum");
  return result;
}
inline recordf& dsps_magsq_sum(const recordf& v, recordf& result) {
  detail::checked(::dspfs_magsq_sum(detail::raw(v), detail::raw(result)), "dsps_magsq_sum");
  return result;
}
[[nodiscard]] inline recordf dsps_magsq_sum(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_magsq_sum(detail::raw(v), detail::raw(result)), "dsps_magsq_sum");
  return result;
}
inline record& dsps_rms(const record& v, record& result) {
  detail::checked(::dsps_rms(detail::raw(v), detail::raw(result)), "dsps_rms");
  return result;
}
[[nodiscard]] inline record dsps_rms(const record& v) {
  record result;
  detail::checked(::dsps_rms(detail::raw(v), detail::raw(result)), "dsps_rms");
  return result;
}
inline recordf& dsps_rms(const recordf& v, recordf& result) {
  detail::checked(::dspfs_rms(detail::raw(v), detail::raw(result)), "dsps_rms");
  return result;
}
[[nodiscard]] inline recordf dsps_rms(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_rms(detail::raw(v), detail::raw(result)), "dsps_rms");
  return result;
}
inline record& dsps_pop_var(const record& v, record& result) {
  detail::checked(::dsps_pop_var(detail::raw(v), detail::raw(result)), "dsps_pop_var");
  return result;
}
[[nodiscard]] inline record dsps_pop_var(const record& v) {
  record result;
  detail::checked(::dsps_pop_var(detail::raw(v), detail::raw(result)), "dsps_pop_var");
  return result;
}
inline recordf& dsps_pop_var(const recordf& v, recordf& result) {
  detail::checked(::dspfs_pop_var(detail::raw(v), detail::raw(result)), "dsps_pop_var");
  return result;
}
[[nodiscard]] inline recordf dsps_pop_var(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_pop_var(detail::raw(v), detail::raw(result)), "dsps_pop_var");
  return result;
}
inline record& dsps_samp_var(const record& v, record& result) {
  detail::checked(::dsps_samp_var(detail::raw(v), detail::raw(result)), "dsps_samp_var");
  return result;
}
[[nodiscard]] inline record dsps_samp_var(const record& v) {
  record result;
  detail::checked(::dsps_samp_var(detail::raw(v), detail::raw(result)), "dsps_samp_var");
  return result;
}
inline recordf& dsps_samp_var(const recordf& v, recordf& result) {
  detail::checked(::dspfs_samp_var(detail::raw(v), detail::raw(result)), "dsps_samp_var");
  return result;
}
[[nodiscard]] inline recordf dsps_samp_var(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_samp_var(detail::raw(v), detail::raw(result)), "dsps_samp_var");
  return result;
}
inline record& dsps_pop_stddev(const record& v, record& result) {
  detail::checked(::dsps_pop_stddev(detail::raw(v), detail::raw(result)), "dsps_pop_stddev");
  return result;
}
[[nodiscard]] inline record dsps_pop_stddev(const record& v) {
  record result;
  detail::checked(::dsps_pop_stddev(detail::raw(v), detail::raw(result)), "dsps_pop_stddev");
  return result;
}
inline recordf& dsps_pop_stddev(const recordf& v, recordf& result) {
  detail::checked(::dspfs_pop_stddev(detail::raw(v), detail::raw(result)), "dsps_pop_stddev");
  return result;
}
[[nodiscard]] inline recordf dsps_pop_stddev(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_pop_stddev(detail::raw(v), detail::raw(result)), "dsps_pop_stddev");
  return result;
}
inline record& dsps_samp_stddev(const record& v, record& result) {
  detail::checked(::dsps_samp_stddev(detail::raw(v), detail::raw(result)), "dsps_samp_stddev");
  return result;
}
[[nodiscard]] inline record dsps_samp_stddev(const record& v) {
  record result;
  detail::checked(::dsps_samp_stddev(detail::raw(v), detail::raw(result)), "dsps_samp_stddev");
  return result;
}
inline recordf& dsps_samp_stddev(const recordf& v, recordf& result) {
  detail::checked(::dspfs_samp_stddev(detail::raw(v), detail::raw(result)), "dsps_samp_stddev");
  return result;
}
[[nodiscard]] inline recordf dsps_samp_stddev(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_samp_stddev(detail::raw(v), detail::raw(result)), "dsps_samp_stddev");
  return result;
}
inline record& dsps_skew(const record& v, record& result) {
  detail::checked(::dsps_skew(detail::raw(v), detail::raw(result)), "dsps_skew");
  return result;
}
[[nodiscard]] inline record dsps_skew(const record& v) {
  record result;
  detail::checked(::dsps_skew(detail::raw(v), detail::raw(result)), "dsps_skew");
  return result;
}
inline recordf& dsps_skew(const recordf& v, recordf& result) {
  detail::checked(::dspfs_skew(detail::raw(v), detail::raw(result)), "dsps_skew");
  return result;
}
[[nodiscard]] inline recordf dsps_skew(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_skew(detail::raw(v), detail::raw(result)), "dsps_skew");
  return result;
}
inline record& dsps_excess(const record& v, record& result) {
  detail::checked(::dsps_excess(detail::raw(v), detail::raw(result)), "dsps_excess");
  return result;
}
[[nodiscard]] inline record dsps_excess(const record& v) {
  record result;
  detail::checked(::dsps_excess(detail::raw(v), detail::raw(result)), "dsps_excess");
  return result;
}
inline recordf& dsps_excess(const recordf& v, recordf& result) {
  detail::checked(::dspfs_excess(detail::raw(v), detail::raw(result)), "dsps_excess");
  return result;
}
[[nodiscard]] inline recordf dsps_excess(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_excess(detail::raw(v), detail::raw(result)), "dsps_excess");
  return result;
}
inline record& dsps_gmean(const record& v, record& result) {
  detail::checked(::dsps_gmean(detail::raw(v), detail::raw(result)), "dsps_gmean");
  return result;
}
[[nodiscard]] inline record dsps_gmean(const record& v) {
  record result;
  detail::checked(::dsps_gmean(detail::raw(v), detail::raw(result)), "dsps_gmean");
  return result;
}
inline recordf& dsps_gmean(const recordf& v, recordf& result) {
  detail::checked(::dspfs_gmean(detail::raw(v), detail::raw(result)), "dsps_gmean");
  return result;
}
[[nodiscard]] inline recordf dsps_gmean(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_gmean(detail::raw(v), detail::raw(result)), "dsps_gmean");
  return result;
}
inline record& dsps_hmean(const record& v, record& result) {
  detail::checked(::dsps_hmean(detail::raw(v), detail::raw(result)), "dsps_hmean");
  return result;
}
[[nodiscard]] inline record dsps_hmean(const record& v) {
  record result;
  detail::checked(::dsps_hmean(detail::raw(v), detail::raw(result)), "dsps_hmean");
  return result;
}
inline recordf& dsps_hmean(const recordf& v, recordf& result) {
  detail::checked(::dspfs_hmean(detail::raw(v), detail::raw(result)), "dsps_hmean");
  return result;
}
[[nodiscard]] inline recordf dsps_hmean(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_hmean(detail::raw(v), detail::raw(result)), "dsps_hmean");
  return result;
}
inline record& dsps_median(const record& v, record& result) {
  detail::checked(::dsps_median(detail::raw(v), detail::raw(result)), "dsps_median");
  return result;
}
[[nodiscard]] inline record dsps_median(const record& v) {
  record result;
  detail::checked(::dsps_median(detail::raw(v), detail::raw(result)), "dsps_median");
  return result;
}
inline recordf& dsps_median(const recordf& v, recordf& result) {
  detail::checked(::dspfs_median(detail::raw(v), detail::raw(result)), "dsps_median");
  return result;
}
[[nodiscard]] inline recordf dsps_median(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_median(detail::raw(v), detail::raw(result)), "dsps_median");
  return result;
}
inline record& dsps_peval(const record& p, record& result, double x) {
  detail::checked(::dsps_peval(detail::raw(p), detail::raw(result), x), "dsps_peval");
  return result;
}
[[nodiscard]] inline record dsps_peval(const record& p, double x) {
  record result;
  detail::checked(::dsps_peval(detail::raw(p), detail::raw(result), x), "dsps_peval");
  return result;
}
inline recordf& dsps_peval(const recordf& p, recordf& result, float x) {
  detail::checked(::dspfs_peval(detail::raw(p), detail::raw(result), x), "dsps_peval");
  return result;
}
[[nodiscard]] inline recordf dsps_peval(const recordf& p, float x) {
  recordf result;
  detail::checked(::dspfs_peval(detail::raw(p), detail::raw(result), x), "dsps_peval");
  return result;
}
inline record& dsps_proots(const record& p, record& result) {
  detail::checked(::dsps_proots(detail::raw(p), detail::raw(result)), "dsps_proots");
  return result;
}
[[nodiscard]] inline record dsps_proots(const record& p) {
  record result;
  detail::checked(::dsps_proots(detail::raw(p), detail::raw(result)), "dsps_proots");
  return result;
}
inline recordf& dsps_proots(const recordf& p, recordf& result) {
  detail::checked(::dspfs_proots(detail::raw(p), detail::raw(result)), "dsps_proots");
  return result;
}
[[nodiscard]] inline recordf dsps_proots(const recordf& p) {
  recordf result;
  detail::checked(::dspfs_proots(detail::raw(p), detail::raw(result)), "dsps_proots");
  return result;
}
inline record& dsps_psolve(const record& p, record& result, double guess) {
  detail::checked(::dsps_psolve(detail::raw(p), detail::raw(result), guess), "dsps_psolve");
  return result;
}
[[nodiscard]] inline record dsps_psolve(const record& p, double guess) {
  record result;
  detail::checked(::dsps_psolve(detail::raw(p), detail::raw(result), guess), "dsps_psolve");
  return result;
}
inline recordf& dsps_psolve(const recordf& p, recordf& result, float guess) {
  detail::checked(::dspfs_psolve(detail::raw(p), detail::raw(result), guess), "dsps_psolve");
  return result;
}
[[nodiscard]] inline recordf dsps_psolve(const recordf& p, float guess) {
  recordf result;
  detail::checked(::dspfs_psolve(detail::raw(p), detail::raw(result), guess), "dsps_psolve");
  return result;
}
inline record& dsps_pcsolve(const record& p, record& result, double re, double im) {
  detail::checked(::dsps_pcsolve(detail::raw(p), detail::raw(result), re, im), "dsps_pcsolve");
  return result;
}
[[nodiscard]] inline record dsps_pcsolve(const record& p, double re, double im) {
  record result;
  detail::checked(::dsps_pcsolve(detail::raw(p), detail::raw(result), re, im), "dsps_pcsolve");
  return result;
}
inline recordf& dsps_pcsolve(const recordf& p, recordf& result, float re, float im) {
  detail::checked(::dspfs_pcsolve(detail::raw(p), detail::raw(result), re, im), "dsps_pcsolve");
  return result;
}
[[nodiscard]] inline recordf dsps_pcsolve(const recordf& p, float re, float im) {
  recordf result;
  detail::checked(::dspfs_pcsolve(detail::raw(p), detail::raw(result), re, im), "dsps_pcsolve");
  return result;
}
inline record& dspi_proots(record& v) {
  detail::checked(::dspi_proots(detail::raw(v)), "dspi_proots");
  return v;
}
inline recordf& dspi_proots(recordf& v) {
  detail::checked(::dspfi_proots(detail::raw(v)), "dspi_proots");
  return v;
}
inline record& dspi_pztoc(record& v) {
  detail::checked(::dspi_pztoc(detail::raw(v)), "dspi_pztoc");
  return v;
}
inline recordf& dspi_pztoc(recordf& v) {
  detail::checked(::dspfi_pztoc(detail::raw(v)), "dspi_pztoc");
  return v;
}
inline record& dspi_recon(record& v) {
  detail::checked(::dspi_recon(detail::raw(v)), "dspi_recon");
  return v;
}
inline recordf& dspi_recon(recordf& v) {
  detail::checked(::dspfi_recon(detail::raw(v)), "dspi_recon");
  return v;
}
inline record& dspi_orecon(record& v, int32_t odd) {
  detail::checked(::dspi_orecon(detail::raw(v), odd), "dspi_orecon");
  return v;
}
inline recordf& dspi_orecon(recordf& v, int32_t odd) {
  detail::checked(::dspfi_orecon(detail::raw(v), odd), "dspi_orecon");
  return v;
}
inline record& dsps_peak(const record& v, record& result, int32_t flags, int32_t index) {
  detail::checked(::dsps_peak(detail::raw(v), detail::raw(result), flags, index), "dsps_peak");
  return result;
}
[[nodiscard]] inline record dsps_peak(const record& v, int32_t flags, int32_t index) {
  record result;
  detail::checked(::dsps_peak(detail::raw(v), detail::raw(result), flags, index), "dsps_peak");
  return result;
}
inline recordf& dsps_peak(const recordf& v, recordf& result, int32_t flags, int32_t index) {
  detail::checked(::dspfs_peak(detail::raw(v), detail::raw(result), flags, index), "dsps_peak");
  return result;
}
[[nodiscard]] inline recordf dsps_peak(const recordf& v, int32_t flags, int32_t index) {
  recordf result;
  detail::checked(::dspfs_peak(detail::raw(v), detail::raw(result), flags, index), "dsps_peak");
  return result;
}
inline record& dsps_hist(const record& v, record& result, double lo, double width, int32_t bins) {
  detail::checked(::dsps_hist(detail::raw(v), detail::raw(result), lo, width, bins), "dsps_hist");
  return result;
}
[[nodiscard]] inline record dsps_hist(const record& v, double lo, double width, int32_t bins) {
  record result;
  detail::checked(::dsps_hist(detail::raw(v), detail::raw(result), lo, width, bins), "dsps_hist");
  return result;
}
inline recordf& dsps_hist(const recordf& v, recordf& result, float lo, float width, int32_t bins) {
  detail::checked(::dspfs_hist(detail::raw(v), detail::raw(result), lo, width, bins), "dsps_hist");
  return result;
}
[[nodiscard]] inline recordf dsps_hist(const recordf& v, float lo, float width, int32_t bins) {
  recordf result;
  detail::checked(::dspfs_hist(detail::raw(v), detail::raw(result), lo, width, bins), "dsps_hist");
  return result;
}
inline record& dsps_lin_regres(const record& v, record& result) {
  detail::checked(::dsps_lin_regres(detail::raw(v), detail::raw(result)), "dsps_lin_regres");
  return result;
}
[[nodiscard]] inline record dsps_lin_regres(const record& v) {
  record result;
  detail::checked(::dsps_lin_regres(detail::raw(v), detail::raw(result)), "dsps_lin_regres");
  return result;
}
inline recordf& dsps_lin_regres(const recordf& v, recordf& result) {
  detail::checked(::dspfs_lin_regres(detail::raw(v), detail::raw(result)), "dsps_lin_regres");
  return result;
}
[[nodiscard]] inline recordf dsps_lin_regres(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_lin_regres(detail::raw(v), detail::raw(result)), "dsps_lin_regres");
  return result;
}
inline record& dsps_lin_regres2(const record& v, record& result) {
  detail::checked(::dsps_lin_regres2(detail::raw(v), detail::raw(result)), "dsps_lin_regres2");
  return result;
}
[[nodiscard]] inline record dsps_lin_regres2(const record& v) {
  record result;
  detail::checked(::dsps_lin_regres2(detail::raw(v), detail::raw(result)), "dsps_lin_regres2");
  return result;
}
inline recordf& dsps_lin_regres2(const recordf& v, recordf& result) {
  detail::checked(::dspfs_lin_regres2(detail::raw(v), detail::raw(result)), "dsps_lin_regres2");
  return result;
}
[[nodiscard]] inline recordf dsps_lin_regres2(const recordf& v) {
  recordf result;
  detail::checked(::dspfs_lin_regres2(detail::raw(v), detail::raw(result)), "dsps_lin_regres2");
  return result;
}
inline record& dsp_cspline(const record* x, const record& y, record& spline, int32_t ends, double start,
    double end) {
  detail::checked(::dsp_cspline(detail::raw(x), detail::raw(y), detail::raw(spline), ends, start, end),
      "dsp_cspline");
  return spline;
}
[[nodiscard]] inline record dsp_cspline(const record* x, const record& y, int32_t ends, double start, double
    end) {
  record spline;
  detail::checked(::dsp_cspline(detail::raw(x), detail::raw(y), detail::raw(spline), ends, start, end),
      "dsp_cspline");
  return spline;
}
inline recordf& dsp_cspline(const recordf* x, const recordf& y, recordf& spline, int32_t ends, float start,
    float end) {
  detail::checked(::dspf_cspline(detail::raw(x), detail::raw(y), detail::raw(spline), ends, start, end),
      "dsp_cspline");
  return spline;
}
[[nodiscard]] inline recordf dsp_cspline(const recordf* x, const recordf& y, int32_t ends, float start, float
    end) {
  recordf spline;
  detail::checked(::dspf_cspline(detail::raw(x), detail::raw(y), detail::raw(spline), ends, start, end),
      "dsp_cspline");
  return spline;
}
inline record& dsp_interp(const record* x, const record& y, const record& at, record& out, int32_t flags) {
  detail::checked(::dsp_interp(detail::raw(x), detail::raw(y), detail::raw(at), detail::raw(out), flags),
      "dsp_interp");
  return out;
}
[[nodiscard]] inline record dsp_interp(const record* x, const record& y, const record& at, int32_t flags) {
  record out;
  detail::checked(::dsp_interp(detail::raw(x), detail::raw(y), detail::raw(at), detail::raw(out), flags),
      "dsp_interp");
  return out;
}
inline recordf& dsp_interp(const recordf* x, const recordf& y, const recordf& at, recordf& out, int32_t flags)
    {
  detail::checked(::dspf_interp(detail::raw(x), detail::raw(y), detail::raw(at), detail::raw(out), flags),
      "dsp_interp");
  return out;
}
[[nodiscard]] inline recordf dsp_interp(const recordf* x, const recordf& y, const recordf& at, int32_t flags)
    {
  recordf out;
  detail::checked(::dspf_interp(detail::raw(x), detail::raw(y), detail::raw(at), detail::raw(out), flags),
      "dsp_interp");
  return out;
}
inline record& dspb_cspline_2d(const record& x, const record& y, record& out, const record& gx, const record&
    gy, const record& z, int32_t flags) {
  detail::checked(::dspb_cspline_2d(detail::raw(x), detail::raw(y), detail::raw(out), detail::raw(gx),
      detail::raw(gy), detail::raw(z), flags), "dspb_cspline_2d");
  return out;
}
[[nodiscard]] inline record dspb_cspline_2d(const record& x, const record& y, const record& gx, const record&
    gy, const record& z, int32_t flags) {
  record out;
  detail::checked(::dspb_cspline_2d(detail::raw(x), detail::raw(y), detail::raw(out), detail::raw(gx),
      detail::raw(gy), detail::raw(z), flags), "dspb_cspline_2d");
  return out;
}
inline recordf& dspb_cspline_2d(const recordf& x, const recordf& y, recordf& out, const recordf& gx, const
    recordf& gy, const recordf& z, int32_t flags) {
  detail::checked(::dspfb_cspline_2d(detail::raw(x), detail::raw(y), detail::raw(out), detail::raw(gx),
      detail::raw(gy), detail::raw(z), flags), "dspb_cspline_2d");
  return out;
}
[[nodiscard]] inline recordf dspb_cspline_2d(const recordf& x, const recordf& y, const recordf& gx, const
    recordf& gy, const recordf& z, int32_t flags) {
  recordf out;
  detail::checked(::dspfb_cspline_2d(detail::raw(x), detail::raw(y), detail::raw(out), detail::raw(gx),
      detail::raw(gy), detail::raw(z), flags), "dspb_cspline_2d");
  return out;
}
inline record& dspi_fft(record& v, int32_t direction) {
  detail::checked(::dspi_fft(detail::raw(v), direction), "dspi_fft");
  return v;
}
inline recordf& dspi_fft(recordf& v, int32_t direction) {
  detail::checked(::dspfi_fft(detail::raw(v), direction), "dspi_fft");
  return v;
}
inline record& dspi_rfft(record& v) { detail::checked(::dspi_rfft(detail::raw(v)), "dspi_rfft"); return v; }
inline recordf& dspi_rfft(recordf& v) {
  detail::checked(::dspfi_rfft(detail::raw(v)), "dspi_rfft");
  return v;
}
inline record& dspi_irfft(record& v) {
  detail::checked(::dspi_irfft(detail::raw(v)), "dspi_irfft");
  return v;
}
inline recordf& dspi_irfft(recordf& v) {
  detail::checked(::dspfi_irfft(detail::raw(v)), "dspi_irfft");
  return v;
}
inline record& dspi_dft(record& v, int32_t direction) {
  detail::checked(::dspi_dft(detail::raw(v), direction), "dspi_dft");
  return v;
}
inline recordf& dspi_dft(recordf& v, int32_t direction) {
  detail::checked(::dspfi_dft(detail::raw(v), direction), "dspi_dft");
  return v;
}
inline record& dspi_rdft(record& v) { detail::checked(::dspi_rdft(detail::raw(v)), "dspi_rdft"); return v; }
inline recordf& dspi_rdft(recordf& v) {
  detail::checked(::dspfi_rdft(detail::raw(v)), "dspi_rdft");
  return v;
}
inline record& dspi_irdft(record& v, int32_t odd) {
  detail::checked(::dspi_irdft(detail::raw(v), odd), "dspi_irdft");
  return v;
}
inline recordf& dspi_irdft(recordf& v, int32_t odd) {
  detail::checked(::dspfi_irdft(detail::raw(v), odd), "dspi_irdft");
  return v;
}
inline record& dspi_dct(record& v, int32_t flags) {
  detail::checked(::dspi_dct(detail::raw(v), flags), "dspi_dct");
  return v;
}
inline recordf& dspi_dct(recordf& v, int32_t flags) {
  detail::checked(::dspfi_dct(detail::raw(v), flags), "dspi_dct");
  return v;
}
inline record& dspi_bitrev(record& v) {
  detail::checked(::dspi_bitrev(detail::raw(v)), "dspi_bitrev");
  return v;
}
inline recordf& dspi_bitrev(recordf& v) {
  detail::checked(::dspfi_bitrev(detail::raw(v)), "dspi_bitrev");
  return v;
}
inline record& dspi_bitrev_scale(record& v) {
  detail::checked(::dspi_bitrev_scale(detail::raw(v)), "dspi_bitrev_scale");
  return v;
}
inline recordf& dspi_bitrev_scale(recordf& v) {
  detail::checked(::dspfi_bitrev_scale(detail::raw(v)), "dspi_bitrev_scale");
  return v;
}
inline record& dspi_hilbert(record& v) {
  detail::checked(::dspi_hilbert(detail::raw(v)), "dspi_hilbert");
  return v;
}
inline recordf& dspi_hilbert(recordf& v) {
  detail::checked(::dspfi_hilbert(detail::raw(v)), "dspi_hilbert");
  return v;
}
inline record& dspi_analytic(record& v) {
  detail::checked(::dspi_analytic(detail::raw(v)), "dspi_analytic");
  return v;
}
inline recordf& dspi_analytic(recordf& v) {
  detail::checked(::dspfi_analytic(detail::raw(v)), "dspi_analytic");
  return v;
}
inline record& dsph_avg(const record& in, record& avg, record* scratch, int32_t flags, int32_t count, int32_t
    every, double weight, double maxcount) {
  detail::checked(::dsph_avg(detail::raw(in), detail::raw(avg), detail::raw(scratch), flags, count, every,
      weight, maxcount), "dsph_avg");
  return avg;
}
inline recordf& dsph_avg(const recordf& in, recordf& avg, recordf* scratch, int32_t flags, int32_t count,
    int32_t every, float weight, float maxcount) {
  detail::checked(::dspfh_avg(detail::raw(in), detail::raw(avg), detail::raw(scratch), flags, count, every,
      weight, maxcount), "dsph_avg");
  return avg;
}
inline record& dsph_fft(const record& a, const record* b, record& avg, record* history, const record* window,
    int32_t flags, int32_t hop, int32_t* count, double maxcount) {
  detail::checked(::dsph_fft(detail::raw(a), detail::raw(b), detail::raw(avg), detail::raw(history),
      detail::raw(window), flags, hop, count, maxcount), "dsph_fft");
  return avg;
}
inline recordf& dsph_fft(const recordf& a, const recordf* b, recordf& avg, recordf* history, const recordf*
    window, int32_t flags, int32_t hop, int32_t* count, float maxcount) {
  detail::checked(::dspfh_fft(detail::raw(a), detail::raw(b), detail::raw(avg), detail::raw(history),
      detail::raw(window), flags, hop, count, maxcount), "dsph_fft");
  return avg;
}
inline record& dsph_dft(const record& a, const record* b, record& avg, record* history, const record* window,
    int32_t flags, int32_t hop, int32_t* count, double maxcount) {
  detail::checked(::dsph_dft(detail::raw(a), detail::raw(b), detail::raw(avg), detail::raw(history),
      detail::raw(window), flags, hop, count, maxcount), "dsph_dft");
  return avg;
}
inline recordf& dsph_dft(const recordf& a, const recordf* b, recordf& avg, recordf* history, const recordf*
    window, int32_t flags, int32_t hop, int32_t* count, float maxcount) {
  detail::checked(::dspfh_dft(detail::raw(a), detail::raw(b), detail::raw(avg), detail::raw(history),
      detail::raw(window), flags, hop, count, maxcount), "dsph_dft");
  return avg;
}
inline void dsph_corr(const record& a, const record& b, record* out, record* history, int32_t lags, int32_t
    flags) {
  detail::checked(::dsph_corr(detail::raw(a), detail::raw(b), detail::raw(out), detail::raw(history), lags,
      flags), "dsph_corr");
}
inline void dsph_corr(const recordf& a, const recordf& b, recordf* out, recordf* history, int32_t lags,
    int32_t flags) {
  detail::checked(::dspfh_corr(detail::raw(a), detail::raw(b), detail::raw(out), detail::raw(history), lags,
      flags), "dsph_corr");
}
inline record& dspb_corr(const record& a, const record& b, record& out, int32_t lags, int32_t flags) {
  detail::checked(::dspb_corr(detail::raw(a), detail::raw(b), detail::raw(out), lags, flags), "dspb_corr");
  return out;
}
[[nodiscard]] inline record dspb_corr(const record& a, const record& b, int32_t lags, int32_t flags) {
  record out;
  detail::checked(::dspb_corr(detail::raw(a), detail::raw(b), detail::raw(out), lags, flags), "dspb_corr");
  return out;
}
inline recordf& dspb_corr(const recordf& a, const recordf& b, recordf& out, int32_t lags, int32_t flags) {
  detail::checked(::dspfb_corr(detail::raw(a), detail::raw(b), detail::raw(out), lags, flags), "dspb_corr");
  return out;
}
[[nodiscard]] inline recordf dspb_corr(const recordf& a, const recordf& b, int32_t lags, int32_t flags) {
  recordf out;
  detail::checked(::dspfb_corr(detail::raw(a), detail::raw(b), detail::raw(out), lags, flags), "dspb_corr");
  return out;
}
inline record& dspi_window(record& v, int32_t window, int32_t flags) {
  detail::checked(::dspi_window(detail::raw(v), window, flags), "dspi_window");
  return v;
}
inline recordf& dspi_window(recordf& v, int32_t window, int32_t flags) {
  detail::checked(::dspfi_window(detail::raw(v), window, flags), "dspi_window");
  return v;
}
inline record& dspi_window2(record& v, int32_t window, int32_t flags, double width) {
  detail::checked(::dspi_window2(detail::raw(v), window, flags, width), "dspi_window2");
  return v;
}
inline recordf& dspi_window2(recordf& v, int32_t window, int32_t flags, float width) {
  detail::checked(::dspfi_window2(detail::raw(v), window, flags, width), "dspi_window2");
  return v;
}
inline void dsp_window_to_str(int32_t window, char* buffer, int32_t size) {
  detail::checked(::dsp_window_to_str(window, buffer, size), "dsp_window_to_str");
}
inline void dspf_window_to_str(int32_t window, char* buffer, int32_t size) {
  detail::checked(::dspf_window_to_str(window, buffer, size), "dspf_window_to_str");
}
inline void dsp_window_from_str(const char* name, int32_t* window) {
  detail::checked(::dsp_window_from_str(name, window), "dsp_window_from_str");
}
[[nodiscard]] inline int32_t dsp_window_from_str(const char* name) {
  int32_t window = 0;
  detail::checked(::dsp_window_from_str(name, &window), "dsp_window_from_str");
  return window;
}
inline void dspf_window_from_str(const char* name, int32_t* window) {
  detail::checked(::dspf_window_from_str(name, window), "dspf_window_from_str");
}
[[nodiscard]] inline int32_t dspf_window_from_str(const char* name) {
  int32_t window = 0;
  detail::checked(::dspf_window_from_str(name, &window), "dspf_window_from_str");
  return window;
}
inline void dsp_window_scale(double* scale, int32_t window, int32_t flags, int32_t points) {
  detail::checked(::dsp_window_scale(scale, window, flags, points), "dsp_window_scale");
}
[[nodiscard]] inline double dsp_window_scale(int32_t window, int32_t flags, int32_t points) {
  double scale = 0;
  detail::checked(::dsp_window_scale(&scale, window, flags, points), "dsp_window_scale");
  return scale;
}
inline void dsp_window_scale(float* scale, int32_t window, int32_t flags, int32_t points) {
  detail::checked(::dspf_window_scale(scale, window, flags, points), "dsp_window_scale");
}
inline void dsp_window2_scale(double* scale, int32_t window, int32_t flags, int32_t points, double width) {
  detail::checked(::dsp_window2_scale(scale, window, flags, points, width), "dsp_window2_scale");
}
[[nodiscard]] inline double dsp_window2_scale(int32_t window, int32_t flags, int32_t points, double width) {
  double scale = 0;
  detail::checked(::dsp_window2_scale(&scale, window, flags, points, width), "dsp_window2_scale");
  return scale;
}
inline void dsp_window2_scale(float* scale, int32_t window, int32_t flags, int32_t points, float width) {
  detail::checked(::dspf_window2_scale(scale, window, flags, points, width), "dsp_window2_scale");
}
inline void dsp_window_enbw(double* bins, int32_t window, int32_t points) {
  detail::checked(::dsp_window_enbw(bins, window, points), "dsp_window_enbw");
}
[[nodiscard]] inline double dsp_window_enbw(int32_t window, int32_t points) {
  double bins = 0;
  detail::checked(::dsp_window_enbw(&bins, window, points), "dsp_window_enbw");
  return bins;
}
inline void dsp_window_enbw(float* bins, int32_t window, int32_t points) {
  detail::checked(::dspf_window_enbw(bins, window, points), "dsp_window_enbw");
}
inline void dsp_window2_enbw(double* bins, int32_t window, int32_t points, double width) {
  detail::checked(::dsp_window2_enbw(bins, window, points, width), "dsp_window2_enbw");
}
[[nodiscard]] inline double dsp_window2_enbw(int32_t window, int32_t points, double width) {
  double bins = 0;
  detail::checked(::dsp_window2_enbw(&bins, window, points, width), "dsp_window2_enbw");
  return bins;
}
inline void dsp_window2_enbw(float* bins, int32_t window, int32_t points, float width) {
  detail::checked(::dspf_window2_enbw(bins, window, points, width), "dsp_window2_enbw");
}
inline record& dspi_window_kaiser(record& v, double beta, int32_t flags) {
  detail::checked(::dspi_window_kaiser(detail::raw(v), beta, flags), "dspi_window_kaiser");
  return v;
}
inline recordf& dspi_window_kaiser(recordf& v, float beta, int32_t flags) {
  detail::checked(::dspfi_window_kaiser(detail::raw(v), beta, flags), "dspi_window_kaiser");
  return v;
}
inline record& dspi_window_gauss(record& v, double a, int32_t flags) {
  detail::checked(::dspi_window_gauss(detail::raw(v), a, flags), "dspi_window_gauss");
  return v;
}
inline recordf& dspi_window_gauss(recordf& v, float a, int32_t flags) {
  detail::checked(::dspfi_window_gauss(detail::raw(v), a, flags), "dspi_window_gauss");
  return v;
}
inline record& dspi_window_sinc(record& v, double edge, double power, int32_t flags) {
  detail::checked(::dspi_window_sinc(detail::raw(v), edge, power, flags), "dspi_window_sinc");
  return v;
}
inline recordf& dspi_window_sinc(recordf& v, float edge, float power, int32_t flags) {
  detail::checked(::dspfi_window_sinc(detail::raw(v), edge, power, flags), "dspi_window_sinc");
  return v;
}
inline record& dspi_window_cos(record& v, const record& terms, int32_t flags) {
  detail::checked(::dspi_window_cos(detail::raw(v), detail::raw(terms), flags), "dspi_window_cos");
  return v;
}
inline recordf& dspi_window_cos(recordf& v, const recordf& terms, int32_t flags) {
  detail::checked(::dspfi_window_cos(detail::raw(v), detail::raw(terms), flags), "dspi_window_cos");
  return v;
}
inline record& dspi_window_fir(record& v, double attenuation, int32_t flags) {
  detail::checked(::dspi_window_fir(detail::raw(v), attenuation, flags), "dspi_window_fir");
  return v;
}
inline recordf& dspi_window_fir(recordf& v, float attenuation, int32_t flags) {
  detail::checked(::dspfi_window_fir(detail::raw(v), attenuation, flags), "dspi_window_fir");
  return v;
}
inline record& dspc_fir(record& v, int32_t kind, double param1, double param2) {
  detail::checked(::dspc_fir(detail::raw(v), kind, param1, param2), "dspc_fir");
  return v;
}
inline recordf& dspc_fir(recordf& v, int32_t kind, float param1, float param2) {
  detail::checked(::dspfc_fir(detail::raw(v), kind, param1, param2), "dspc_fir");
  return v;
}
inline record& dspc_fir2(record& v, int32_t code) {
  detail::checked(::dspc_fir2(detail::raw(v), code), "dspc_fir2");
  return v;
}
inline recordf& dspc_fir2(recordf& v, int32_t code) {
  detail::checked(::dspfc_fir2(detail::raw(v), code), "dspc_fir2");
  return v;
}
inline record& dspd_fir(const record& in, record& out, const record& taps, record* history) {
  detail::checked(::dspd_fir(detail::raw(in), detail::raw(out), detail::raw(taps), detail::raw(history)),
      "dspd_fir");
  return out;
}
[[nodiscard]] inline record dspd_fir(const record& in, const record& taps, record* history) {
  record out;
  detail::checked(::dspd_fir(detail::raw(in), detail::raw(out), detail::raw(taps), detail::raw(history)),
      "dspd_fir");
  return out;
}
inline recordf& dspd_fir(const recordf& in, recordf& out, const recordf& taps, recordf* history) {
  detail::checked(::dspfd_fir(detail::raw(in), detail::raw(out), detail::raw(taps), detail::raw(history)),
      "dspd_fir");
  return out;
}
[[nodiscard]] inline recordf dspd_fir(const recordf& in, const recordf& taps, recordf* history) {
  recordf out;
  detail::checked(::dspfd_fir(detail::raw(in), detail::raw(out), detail::raw(taps), detail::raw(history)),
      "dspd_fir");
  return out;
}
inline record& dspd_sfir(const record& in, record& out, const record& half, int32_t odd, int32_t
    antisymmetric, record* history) {
  detail::checked(::dspd_sfir(detail::raw(in), detail::raw(out), detail::raw(half), odd, antisymmetric,
      detail::raw(history)), "dspd_sfir");
  return out;
}
[[nodiscard]] inline record dspd_sfir(const record& in, const record& half, int32_t odd, int32_t
    antisymmetric, record* history) {
  record out;
  detail::checked(::dspd_sfir(detail::raw(in), detail::raw(out), detail::raw(half), odd, antisymmetric,
      detail::raw(history)), "dspd_sfir");
  return out;
}
inline recordf& dspd_sfir(const recordf& in, recordf& out, const recordf& half, int32_t odd, int32_t
    antisymmetric, recordf* history) {
  detail::checked(::dspfd_sfir(detail::raw(in), detail::raw(out), detail::raw(half), odd, antisymmetric,
      detail::raw(history)), "dspd_sfir");
  return out;
}
[[nodiscard]] inline recordf dspd_sfir(const recordf& in, const recordf& half, int32_t odd, int32_t
    antisymmetric, recordf* history) {
  recordf out;
  detail::checked(::dspfd_sfir(detail::raw(in), detail::raw(out), detail::raw(half), odd, antisymmetric,
      detail::raw(history)), "dspd_sfir");
  return out;
}
inline record& dspd_deci(const record& in, record& out, int32_t factor, record* state) {
  detail::checked(::dspd_deci(detail::raw(in), detail::raw(out), factor, detail::raw(state)), "dspd_deci");
  return out;
}
[[nodiscard]] inline record dspd_deci(const record& in, int32_t factor, record* state) {
  record out;
  detail::checked(::dspd_deci(detail::raw(in), detail::raw(out), factor, detail::raw(state)), "dspd_deci");
  return out;
}
inline recordf& dspd_deci(const recordf& in, recordf& out, int32_t factor, recordf* state) {
  detail::checked(::dspfd_deci(detail::raw(in), detail::raw(out), factor, detail::raw(state)), "dspd_deci");
  return out;
}
[[nodiscard]] inline recordf dspd_deci(const recordf& in, int32_t factor, recordf* state) {
  recordf out;
  detail::checked(::dspfd_deci(detail::raw(in), detail::raw(out), factor, detail::raw(state)), "dspd_deci");
  return out;
}
inline record& dspc_rsmp(record& v, int32_t up, int32_t down, double passband, double attenuation) {
  detail::checked(::dspc_rsmp(detail::raw(v), up, down, passband, attenuation), "dspc_rsmp");
  return v;
}
inline recordf& dspc_rsmp(recordf& v, int32_t up, int32_t down, float passband, float attenuation) {
  detail::checked(::dspfc_rsmp(detail::raw(v), up, down, passband, attenuation), "dspc_rsmp");
  return v;
}
inline record& dspc_rsmp_cos(record& v, int32_t up, int32_t span, double rolloff) {
  detail::checked(::dspc_rsmp_cos(detail::raw(v), up, span, rolloff), "dspc_rsmp_cos");
  return v;
}
inline recordf& dspc_rsmp_cos(recordf& v, int32_t up, int32_t span, float rolloff) {
  detail::checked(::dspfc_rsmp_cos(detail::raw(v), up, span, rolloff), "dspc_rsmp_cos");
  return v;
}
inline record& dspc_rsmp_pcos(record& v, int32_t up, int32_t span, double rolloff) {
  detail::checked(::dspc_rsmp_pcos(detail::raw(v), up, span, rolloff), "dspc_rsmp_pcos");
  return v;
}
inline recordf& dspc_rsmp_pcos(recordf& v, int32_t up, int32_t span, float rolloff) {
  detail::checked(::dspfc_rsmp_pcos(detail::raw(v), up, span, rolloff), "dspc_rsmp_pcos");
  return v;
}
inline record& dspd_rsmp(const record* in, record& out, const record& taps, int32_t up, int32_t down, record*
    state) {
  detail::checked(::dspd_rsmp(detail::raw(in), detail::raw(out), detail::raw(taps), up, down,
      detail::raw(state)), "dspd_rsmp");
  return out;
}
[[nodiscard]] inline record dspd_rsmp(const record* in, const record& taps, int32_t up, int32_t down, record*
    state) {
  record out;
  detail::checked(::dspd_rsmp(detail::raw(in), detail::raw(out), detail::raw(taps), up, down,
      detail::raw(state)), "dspd_rsmp");
  return out;
}
inline recordf& dspd_rsmp(const recordf* in, recordf& out, const recordf& taps, int32_t up, int32_t down,
    recordf* state) {
  detail::checked(::dspfd_rsmp(detail::raw(in), detail::raw(out), detail::raw(taps), up, down,
      detail::raw(state)), "dspd_rsmp");
  return out;
}
[[nodiscard]] inline recordf dspd_rsmp(const recordf* in, const recordf& taps, int32_t up, int32_t down,
    recordf* state) {
  recordf out;
  detail::checked(::dspfd_rsmp(detail::raw(in), detail::raw(out), detail::raw(taps), up, down,
      detail::raw(state)), "dspd_rsmp");
  return out;
}
inline record& dspd_rsmp2(const record* in, record& out, const record& taps, const record* at, double step,
    record* state) {
  detail::checked(::dspd_rsmp2(detail::raw(in), detail::raw(out), detail::raw(taps), detail::raw(at), step,
      detail::raw(state)), "dspd_rsmp2");
  return out;
}
[[nodiscard]] inline record dspd_rsmp2(const record* in, const record& taps, const record* at, double step,
    record* state) {
  record out;
  detail::checked(::dspd_rsmp2(detail::raw(in), detail::raw(out), detail::raw(taps), detail::raw(at), step,
      detail::raw(state)), "dspd_rsmp2");
  return out;
}
inline recordf& dspd_rsmp2(const recordf* in, recordf& out, const recordf& taps, const record* at, double
    step, recordf* state) {
  detail::checked(::dspfd_rsmp2(detail::raw(in), detail::raw(out), detail::raw(taps), detail::raw(at), step,
      detail::raw(state)), "dspd_rsmp2");
  return out;
}
[[nodiscard]] inline recordf dspd_rsmp2(const recordf* in, const recordf& taps, const record* at, double step,
    recordf* state) {
  recordf out;
  detail::checked(::dspfd_rsmp2(detail::raw(in), detail::raw(out), detail::raw(taps), detail::raw(at), step,
      detail::raw(state)), "dspd_rsmp2");
  return out;
}
inline record& dspd_hwfilt(const record& in, record& out, int32_t reserved, record* state) {
  detail::checked(::dspd_hwfilt(detail::raw(in), detail::raw(out), reserved, detail::raw(state)),
      "dspd_hwfilt");
  return out;
}
[[nodiscard]] inline record dspd_hwfilt(const record& in, int32_t reserved, record* state) {
  record out;
  detail::checked(::dspd_hwfilt(detail::raw(in), detail::raw(out), reserved, detail::raw(state)),
      "dspd_hwfilt");
  return out;
}
inline recordf& dspd_hwfilt(const recordf& in, recordf& out, int32_t reserved, recordf* state) {
  detail::checked(::dspfd_hwfilt(detail::raw(in), detail::raw(out), reserved, detail::raw(state)),
      "dspd_hwfilt");
  return out;
}
[[nodiscard]] inline recordf dspd_hwfilt(const recordf& in, int32_t reserved, recordf* state) {
  recordf out;
  detail::checked(::dspfd_hwfilt(detail::raw(in), detail::raw(out), reserved, detail::raw(state)),
      "dspd_hwfilt");
  return out;
}
inline record& dspi_hwfilt(record& v, int32_t reserved) {
  detail::checked(::dspi_hwfilt(detail::raw(v), reserved), "dspi_hwfilt");
  return v;
}
inline recordf& dspi_hwfilt(recordf& v, int32_t reserved) {
  detail::checked(::dspfi_hwfilt(detail::raw(v), reserved), "dspi_hwfilt");
  return v;
}
inline bool dspf_fread(record& v, FILE* f) {
  return detail::checked(::dspf_fread(detail::raw(v), f), "dspf_fread") != 0;
}
inline bool dspf_fread(recordf& v, FILE* f) {
  return detail::checked(::dspff_fread(detail::raw(v), f), "dspf_fread") != 0;
}
inline void dspf_fwrite(const record& v, FILE* f) {
  detail::checked(::dspf_fwrite(detail::raw(v), f), "dspf_fwrite");
}
inline void dspf_fwrite(const recordf& v, FILE* f) {
  detail::checked(::dspff_fwrite(detail::raw(v), f), "dspf_fwrite");
}
inline void dspf_fwrite_ascii(const record& v, FILE* f) {
  detail::checked(::dspf_fwrite_ascii(detail::raw(v), f), "dspf_fwrite_ascii");
}
inline void dspf_fwrite_ascii(const recordf& v, FILE* f) {
  detail::checked(::dspff_fwrite_ascii(detail::raw(v), f), "dspf_fwrite_ascii");
}
inline void dspf_fwrite2(const record& v, FILE* f, int32_t flags) {
  detail::checked(::dspf_fwrite2(detail::raw(v), f, flags), "dspf_fwrite2");
}
inline void dspf_fwrite2(const recordf& v, FILE* f, int32_t flags) {
  detail::checked(::dspff_fwrite2(detail::raw(v), f, flags), "dspf_fwrite2");
}

#endif

}  // namespace sigpak

#endif
